// Endpoints in the system's own form. Only for sources that call the socket interface.

#pragma once

#include <netinet/in.h>

#include "tools/system/endpoint.h"

namespace cvl::tools {

sockaddr_in ToSocketAddress(const Endpoint &endpoint);
Endpoint FromSocketAddress(const sockaddr_in &address);

/// The local end of an open socket. Raises std::system_error.
Endpoint LocalEndOf(int socket_number);

}  // namespace cvl::tools
