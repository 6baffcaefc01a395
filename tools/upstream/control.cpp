#include "tools/upstream/control.h"

#include "tools/system/arguments.h"

namespace cvl::tools {

namespace {

constexpr std::size_t LongestLine = 1000;
constexpr std::string_view Blanks = " \t\r";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

void Obey(std::string_view word, const std::string &value, Behaviour &behaviour, bool &quit) {
  const bool is_quit = word == "quit";
  if (!is_quit && word != "normal") {
    ApplyBehaviour(behaviour, word, value);
    return;
  }
  if (!value.empty()) {
    throw UsageError(std::string{word} + " takes no value");
  }
  if (is_quit) {
    quit = true;
  } else {
    behaviour = Behaviour{};
  }
}

}  // namespace

ControlOutcome ObeyControlLine(std::string_view line, Behaviour &behaviour) {
  const std::string_view command = Trimmed(line);
  const std::string_view word = command.substr(0, command.find_first_of(Blanks));
  const std::string value{Trimmed(command.substr(word.size()))};
  ControlOutcome outcome;
  try {
    if (command.size() > LongestLine) {
      throw UsageError("the line is too long");
    }
    Obey(word, value, behaviour, outcome.Quit);
    outcome.Reply = "ok";
  } catch (const UsageError &error) {
    outcome.Reply = std::string{"error: "} + error.what();
  }
  return outcome;
}

void LineCutter::Add(std::string_view text,
                     const std::function<void(std::string_view line)> &take) {
  for (const char c : text) {
    if (c == '\n') {
      const std::string line = std::move(Pending_);
      Pending_.clear();
      take(line);
    } else if (Pending_.size() <= LongestLine) {
      Pending_ += c;
    }
  }
}

}  // namespace cvl::tools
