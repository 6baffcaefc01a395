// cvlquery from its arguments to its exit status, with the network handed in.

#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/query/exchange.h"

namespace cvl::tools {

enum QueryStatus : int { QueryAnswered = 0, QueryNotAnswered = 1, QueryUsage = 2 };

/// What cvlquery needs of the world.
struct QueryNetwork {
  std::function<std::optional<std::uint32_t>(const std::string &host)> Resolve;
  std::function<Exchange(const Question &, const Endpoint &, std::chrono::milliseconds timeout)>
      Ask;
};

/// Does what the arguments ask for. Reports go to `out`, one after the other as they
/// come; complaints about the command line or an unknown host go to `err`. Returns the
/// exit status.
QueryStatus RunQuery(const std::vector<std::string> &arguments, const QueryNetwork &network,
                     std::ostream &out, std::ostream &err);

}  // namespace cvl::tools
