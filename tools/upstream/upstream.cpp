#include "tools/upstream/upstream.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <ostream>
#include <string_view>

namespace cvl::tools {

namespace {

/// At most so many datagrams a pass, so that a flood can't keep due answers waiting.
constexpr int MostDatagramsPerPass = 32;

}  // namespace

Upstream::Upstream(const UpstreamOptions &options, const UpstreamInputs &inputs, const Clock &clock,
                   std::ostream &out, std::ostream &err)
    : Clock_{clock},
      Inputs_{inputs},
      Out_{out},
      Err_{err},
      Log_{options.Log},
      Port_{options.Listen},
      Responder_{clock} {
  Responder_.SetBehaviour(options.Start);
}

bool Upstream::Pass(int longest_wait_ms) {
  SendDue();
  // poll() passes over negative descriptors.
  std::array<pollfd, 3> watched{
      {{Port_.Number(), POLLIN, 0}, {Inputs_.Control, POLLIN, 0}, {Inputs_.Stop, POLLIN, 0}}};
  if (poll(watched.data(), watched.size(), WaitFor(longest_wait_ms)) < 0) {
    const int error = errno;
    if (error != EINTR) {
      RaiseSystemError(error, "cannot wait for input");
    }
    return true;
  }
  if (watched[2].revents != 0 || (watched[1].revents != 0 && !TakeCommands())) {
    return false;
  }
  if (watched[0].revents != 0) {
    TakeDatagrams();
  }
  SendDue();
  return true;
}

int Upstream::WaitFor(int longest_wait_ms) const {
  const auto next = Responder_.MsToNext();
  if (!next) {
    return longest_wait_ms;
  }
  const int wait = static_cast<int>(std::min<std::int64_t>(*next, std::numeric_limits<int>::max()));
  return longest_wait_ms < 0 ? wait : std::min(wait, longest_wait_ms);
}

void Upstream::SendDue() {
  for (const OutgoingAnswer &answer : Responder_.TakeDue()) {
    const std::string failure = Port_.Send(answer.Data, answer.To, answer.From);
    if (!failure.empty()) {
      Err_ << "cvlupstream: cannot answer " << EndpointText(answer.To) << ": " << failure
           << std::endl;
    }
  }
}

void Upstream::TakeDatagrams() {
  for (int i = 0; i < MostDatagramsPerPass; ++i) {
    const auto arrival = Port_.Receive();
    if (!arrival) {
      return;
    }
    Responder_.Take(arrival->Data, arrival->Sender, arrival->To);
    if (Log_) {
      WriteLog(*arrival);
    }
  }
}

bool Upstream::TakeCommands() {
  std::array<char, 4096> buffer{};
  const ssize_t count = read(Inputs_.Control, buffer.data(), buffer.size());
  if (count <= 0) {
    return count < 0 && errno == EINTR;
  }
  bool go_on = true;
  Lines_.Add({buffer.data(), static_cast<std::size_t>(count)}, [&](std::string_view line) {
    if (!go_on) {
      return;
    }
    Behaviour behaviour = Responder_.Current();
    const ControlOutcome outcome = ObeyControlLine(line, behaviour);
    Responder_.SetBehaviour(behaviour);
    Out_ << outcome.Reply << std::endl;
    go_on = !outcome.Quit;
  });
  return go_on;
}

void Upstream::WriteLog(const DatagramPort::Arrival &arrival) {
  Out_ << Clock_.MonotonicMs() << ' ' << EndpointText(arrival.Sender) << ' ' << arrival.Data.size()
       << ' ' << (arrival.Data.empty() ? "-" : Hex(arrival.Data)) << std::endl;
}

}  // namespace cvl::tools
