#include "platform/linux/systemd_unit.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"
#include "platform/linux/durable_file.h"
#include "platform/linux/error_table.h"
#include "platform/linux/run_program.h"
#include "platform/linux/unit_template.h"

namespace cvl {

namespace {

constexpr std::string_view ServerFileName = "QRB_CVLS4.CVL";

using Gap = std::pair<std::string_view, std::string>;

/// TEXT with a second percent sign behind each, for systemd expands what follows one.
std::string Literally(std::string_view text) {
  std::string literal;
  for (const char character : text) {
    literal += character;
    if (character == '%') literal += '%';
  }
  return literal;
}

/// One word of a unit's line, with a backslash in front of each of SPECIAL.
std::string Word(std::string_view text, std::string_view special) {
  const bool plain = std::all_of(text.begin(), text.end(), [](unsigned char character) {
    return std::isalnum(character) != 0 ||
           std::string_view("/._-+").find(static_cast<char>(character)) != std::string_view::npos;
  });
  if (plain) return std::string(text);
  std::string word = "\"";
  for (const char character : Literally(text)) {
    if (special.find(character) != std::string_view::npos) word += '\\';
    word += character;
  }
  return word + "\"";
}

/// A path as the program of a command line.
std::string ProgramWord(const std::string &path) {
  return Word(path, "\\\"");
}

/// A path as an argument, in which systemd would look for variables too.
std::string ArgumentWord(const std::string &path) {
  std::string doubled;
  for (const char character : path) {
    doubled += character;
    if (character == '$') doubled += '$';
  }
  return Word(doubled, "\\\"");
}

std::string DirectoryOf(const std::string &path) {
  return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

/// Whether the unit's restrictions put an empty directory in the place of what is above PATH.
bool IsHidden(const std::string &path) {
  constexpr std::array Hidden = {"/home/", "/root/", "/run/user/", "/tmp/", "/var/tmp/"};
  return std::any_of(Hidden.begin(), Hidden.end(), [&path](const char *above) {
    return (path + "/").compare(0, std::string_view(above).size(), above) == 0;
  });
}

/// The lines that bring back, for reading, what would be hidden; each with its end.
std::string BindLines(const ServiceUnit &unit) {
  std::vector<std::string> bound;
  for (const std::string &directory :
       {DirectoryOf(unit.Executable), unit.ProgramDirectory, DirectoryOf(unit.SettingsFile)}) {
    if (!IsHidden(directory)) continue;
    if (std::find(bound.begin(), bound.end(), directory) == bound.end()) bound.push_back(directory);
  }
  std::string lines;
  for (const std::string &directory : bound) {
    lines += Joined({"BindReadOnlyPaths=", Word("-" + directory, "\\\":"), "\n"});
  }
  return lines;
}

/// The pause between two starts goes up to a minute in eight steps: a wrong clock may take
/// hours to be put right. The first one stays at RestartSec.
std::string RestartLines(const ServiceUnit &unit) {
  return unit.HasGrowingRestarts ? "RestartSteps=8\nRestartMaxDelaySec=60\n" : "";
}

std::string Filled(std::string_view text, const std::vector<Gap> &gaps) {
  std::string filled;
  while (!text.empty()) {
    const auto gap = std::find_if(gaps.begin(), gaps.end(), [text](const Gap &each) {
      return text.compare(0, each.first.size(), each.first) == 0;
    });
    if (gap == gaps.end()) {
      filled += text.front();
      text.remove_prefix(1);
    } else {
      filled += gap->second;
      text.remove_prefix(gap->first.size());
    }
  }
  return filled;
}

/// Whether a unit can hold all of it. A line end in a path would begin a line of the unit, and
/// systemd starts no program whose path has a quotation mark or a backslash.
bool IsFit(const ServiceUnit &unit) {
  const std::string all = Joined(
      {unit.Name, unit.Description, unit.Executable, unit.ProgramDirectory, unit.SettingsFile});
  return std::none_of(all.begin(), all.end(),
                      [](unsigned char character) { return std::iscntrl(character) != 0; }) &&
         unit.Executable.find_first_of("\"'\\") == std::string::npos;
}

bool Systemctl(std::vector<std::string> words) {
  words.insert(words.begin(), "systemctl");
  return RunProgram(std::move(words)) == 0;
}

std::string FileName(const std::string &name) {
  return name + ".service";
}

}  // namespace

std::string UnitText(const ServiceUnit &unit) {
  const std::string server_file = Joined({unit.ProgramDirectory, "/", ServerFileName});
  return Filled(UnitTemplate, {{"@Name@", unit.Name},
                               {"@Description@", Literally(unit.Description)},
                               {"@Executable@", ProgramWord(unit.Executable)},
                               {"@ServerFile@", ArgumentWord(server_file)},
                               {"@SettingsFile@", ArgumentWord(unit.SettingsFile)},
                               {"@RestartSteps@", RestartLines(unit)},
                               {"@BindReadOnlyPaths@", BindLines(unit)}});
}

bool KnowsGrowingRestarts() {
  constexpr int FirstVersion = 254;
  constexpr std::string_view Start = "systemd ";
  std::string output;
  if (RunProgram({"systemctl", "--version"}, output) != 0) return false;
  if (output.compare(0, Start.size(), Start) != 0) return false;
  int version = 0;
  std::from_chars(output.data() + Start.size(), output.data() + output.size(), version);
  return version >= FirstVersion;
}

std::string UnitDirectory() {
  const char *given = std::getenv("CHRONVALE_UNIT_DIR");
  return given != nullptr && *given != '\0' ? given : "/etc/systemd/system";
}

bool InstallUnit(const ServiceUnit &unit, const std::string &directory) {
  if (!IsFit(unit)) return false;
  const std::string file = FileName(unit.Name);
  if (ReplaceFile(Joined({directory, "/", file}), UnitText(unit)) != 0) return false;
  if (!Systemctl({"daemon-reload"})) return false;
  return !unit.StartsAutomatically || Systemctl({"enable", file});
}

bool UninstallUnit(const std::string &name, const std::string &directory) {
  const std::string file = FileName(name);
  const std::string path = Joined({directory, "/", file});
  if (access(path.c_str(), F_OK) != 0) {
    TraceFailure("access", errno);
    return false;
  }
  if (!Systemctl({"disable", file})) return false;
  if (unlink(path.c_str()) != 0) {
    TraceFailure("unlink", errno);
    return false;
  }
  return Systemctl({"daemon-reload"});
}

}  // namespace cvl
