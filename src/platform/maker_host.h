// The maker's web server.

#pragma once

#include <string>

namespace cvl {

/// Its host name: CHRONVALE_MAKER_HOST of the environment, or the usual one where that is
/// missing or empty.
std::string MakerHostName();

}  // namespace cvl
