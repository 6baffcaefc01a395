// What the program asked of the system, call by call, across all interfaces.
//
//   CallJournal journal;
//   journal.OnCall = [&](const std::string &call) { ... };  // look around at that moment
//   ...
//   EXPECT_THAT(journal.Calls, ElementsAre("claim instance", "user name", ...));

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace cvl {

class CallJournal {
 public:
  std::vector<std::string> Calls;

  /// Called with each call before it is carried out. What it raises comes out of the call.
  std::function<void(const std::string &)> OnCall;

  void Add(const std::string &call) {
    Calls.push_back(call);
    if (OnCall) OnCall(call);
  }
};

}  // namespace cvl
