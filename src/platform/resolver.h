// Looking up host names, away from the event loop's thread.

#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/address.h"

namespace cvl {

class Resolver {
 public:
  /// The first IPv4 address of a name, or nothing if it has none.
  using Answer = std::function<void(std::optional<Ipv4Address>)>;

  virtual ~Resolver() = default;

  /// Looks NAME up and calls ANSWER as an event of the loop, never from inside this call.
  virtual void LookUp(const std::string &name, Answer answer) = 0;
};

}  // namespace cvl
