#include "platform/maker_host.h"

#include <cstdlib>

namespace cvl {

std::string MakerHostName() {
  const char *named = std::getenv("CHRONVALE_MAKER_HOST");
  return named != nullptr && *named != '\0' ? named : "www.chronvale.example";
}

}  // namespace cvl
