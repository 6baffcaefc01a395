#include "tools/system/descriptor.h"

#include <unistd.h>

#include <system_error>
#include <utility>

namespace cvl::tools {

Descriptor::Descriptor(Descriptor &&other) noexcept : Number_{std::exchange(other.Number_, -1)} {}

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept {
  if (this != &other) {
    Close();
    Number_ = std::exchange(other.Number_, -1);
  }
  return *this;
}

void Descriptor::Close() {
  if (IsOpen()) {
    close(std::exchange(Number_, -1));
  }
}

void RaiseSystemError(int error, const std::string &what) {
  throw std::system_error(error, std::generic_category(), what);
}

std::string ErrorText(int error) {
  return std::generic_category().message(error);
}

}  // namespace cvl::tools
