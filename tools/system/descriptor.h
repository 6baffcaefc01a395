// A file descriptor that is closed when its owner goes.

#pragma once

#include <string>

namespace cvl::tools {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : Number_{number} {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor &&other) noexcept;
  Descriptor &operator=(Descriptor &&other) noexcept;
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;

  /// -1 when there is none.
  [[nodiscard]] int Number() const { return Number_; }
  [[nodiscard]] bool IsOpen() const { return Number_ >= 0; }
  void Close();

 private:
  int Number_ = -1;
};

/// Raises std::system_error with `error`, a value of errno, and with `what` was tried.
[[noreturn]] void RaiseSystemError(int error, const std::string &what);

/// What a value of errno means, as a short text.
std::string ErrorText(int error);

}  // namespace cvl::tools
