// Reading a command line and the numbers in it, for both programs.
//
//   ArgumentReader reader{arguments};
//   while (reader.Next()) {
//     if (reader.Name() == "--port") {
//       options.Port = WholeNumber(reader.Value(), 1, 65535, "--port");
//     }
//   }

#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace cvl::tools {

/// The command line, or a line of control input, can't be understood. The text is for
/// the person who typed it.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Walks through the arguments. An option's value is the next argument or follows an
/// equals sign: "--port 37", "--port=37".
class ArgumentReader {
 public:
  /// Without the name of the program.
  explicit ArgumentReader(std::vector<std::string> arguments);

  /// Moves to the next argument; false behind the last. Raises UsageError when the one
  /// just left was given a value and nobody asked for it.
  bool Next();

  /// The argument as typed, without a value that follows an equals sign.
  [[nodiscard]] const std::string &Name() const { return Name_; }

  /// True for whatever begins with a minus sign.
  [[nodiscard]] bool IsOption() const { return Name_.starts_with('-'); }

  /// The value of this option. Raises UsageError when there is none.
  std::string Value();

 private:
  std::vector<std::string> Arguments_;
  std::size_t Position_ = 0;
  std::string Name_;
  std::optional<std::string> AttachedValue_;
};

/// A whole decimal number from `low` to `high`, with nothing around it. Raises
/// UsageError, which names `what`, for any other text.
std::int64_t WholeNumber(std::string_view text, std::int64_t low, std::int64_t high,
                         std::string_view what);

/// "cvlquery 5.1.1" and a line end.
std::string VersionLine(std::string_view program);

}  // namespace cvl::tools
