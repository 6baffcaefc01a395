// The server file: whatever its bytes, reading ends with a list that holds together, or with
// one of the failures that the program knows.

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "base/runtime_error.h"
#include "sync/server_list.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  cvl::MainWindow window;
  cvl::ServerList servers(window);
  std::istringstream file(std::string(reinterpret_cast<const char *>(data), size));
  try {
    servers.Read(file);
  } catch (const cvl::RuntimeError &error) {
    const int number = error.Number();
    if (number != cvl::error_number::SubscriptOutOfRange &&
        number != cvl::error_number::InvalidPropertyValue &&
        number != cvl::error_number::Overflow) {
      std::abort();
    }
  }
  if (!servers.Host(0).empty() || window.Servers.Count() > 301) std::abort();
  for (std::int32_t item = 1; item <= window.Servers.Count(); ++item) {
    const int image = window.Servers.At(item).Image;
    if (image < 1 || image > cvl::ImageCount) std::abort();
    window.Servers.Choose(item);
    servers.ChooseSelected();
  }
  return 0;
}
