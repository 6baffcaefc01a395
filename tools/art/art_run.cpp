#include "tools/art/art_run.h"

#include <charconv>
#include <fstream>
#include <optional>
#include <system_error>

#include "tools/art/art_output.h"

namespace cvl::tools {

namespace {

constexpr const char *Usage =
    "usage: cvlart --source OUTPUT FOLDER\n"
    "       cvlart --sheet OUTPUT [--scale 1..32] FOLDER\n";
constexpr int MaxScale = 32;

enum Status : int { Good = 0, Failed = 1, BadArguments = 2 };

struct Task {
  bool Sheet = false;
  std::string Output;
  int Scale = 1;
  std::string Folder;
};

std::optional<int> Scale(const std::string &text) {
  int scale = 0;
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, scale);
  if (error != std::errc{} || stop != end || scale < 1 || scale > MaxScale) return std::nullopt;
  return scale;
}

std::optional<Task> Parse(const std::vector<std::string> &arguments) {
  if (arguments.size() != 3 && arguments.size() != 5) return std::nullopt;
  Task task{arguments[0] == "--sheet", arguments[1], 1, arguments.back()};
  if (!task.Sheet && arguments[0] != "--source") return std::nullopt;
  if (arguments.size() == 5) {
    const std::optional<int> scale = Scale(arguments[3]);
    if (!task.Sheet || arguments[2] != "--scale" || !scale) return std::nullopt;
    task.Scale = *scale;
  }
  return task;
}

void Write(const std::string &path, const std::string &content) {
  std::ofstream file(path, std::ios::binary);
  file << content;
  file.close();
  if (!file) throw ArtError(std::string(path).append(": can't be written"));
}

}  // namespace

int RunArt(const std::vector<std::string> &arguments, std::ostream &errors) {
  const std::optional<Task> task = Parse(arguments);
  if (!task) {
    errors << Usage;
    return BadArguments;
  }
  try {
    const ArtFolder art = LoadArtFolder(task->Folder);
    Write(task->Output, task->Sheet ? ArtSheet(art, task->Scale) : ArtSource(art));
    return Good;
  } catch (const ArtError &error) {
    errors << error.what() << '\n';
  } catch (const std::system_error &error) {
    errors << "cvlart: " << error.what() << '\n';
  }
  return Failed;
}

}  // namespace cvl::tools
