#include "tools/system/arguments.h"

#include <charconv>
#include <utility>

namespace cvl::tools {

ArgumentReader::ArgumentReader(std::vector<std::string> arguments)
    : Arguments_{std::move(arguments)} {}

bool ArgumentReader::Next() {
  if (AttachedValue_) {
    throw UsageError(Name_ + " takes no value");
  }
  if (Position_ == Arguments_.size()) {
    return false;
  }
  Name_ = Arguments_[Position_++];
  const std::size_t equals = Name_.find('=');
  if (IsOption() && equals != std::string::npos) {
    AttachedValue_ = Name_.substr(equals + 1);
    Name_.resize(equals);
  }
  return true;
}

std::string ArgumentReader::Value() {
  if (AttachedValue_) {
    return *std::exchange(AttachedValue_, std::nullopt);
  }
  if (Position_ == Arguments_.size()) {
    throw UsageError(Name_ + " needs a value");
  }
  return Arguments_[Position_++];
}

std::int64_t WholeNumber(std::string_view text, std::int64_t low, std::int64_t high,
                         std::string_view what) {
  std::int64_t number = 0;
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || stop != end || number < low || number > high) {
    throw UsageError(std::string{what} + " needs a whole number from " + std::to_string(low) +
                     " to " + std::to_string(high));
  }
  return number;
}

std::string VersionLine(std::string_view program) {
  return std::string{program} + " " CVL_TOOLS_VERSION "\n";
}

}  // namespace cvl::tools
