#include "tools/upstream/responder.h"

#include <algorithm>
#include <utility>

#include "tools/upstream/answer.h"

namespace cvl::tools {

namespace {

constexpr std::size_t MostWaiting = 10'000;

}  // namespace

void Responder::Take(ByteView datagram, const Endpoint &sender, std::uint32_t to) {
  const NtpTime received = Clock_.WallTime();
  if (!IsClientRequest(datagram)) {
    return;
  }
  if (!Current_.Silent && Queue_.size() < MostWaiting) {
    Queue_.emplace(Clock_.MonotonicMs() + Current_.DelayMs,
                   Waiting{{datagram.begin(), datagram.end()}, sender, to, received, Current_});
  }
  CountDown();
}

void Responder::CountDown() {
  if (Current_.Count && --*Current_.Count == 0) {
    Current_ = Behaviour{};
  }
}

std::vector<OutgoingAnswer> Responder::TakeDue() {
  std::vector<OutgoingAnswer> answers;
  const std::int64_t now = Clock_.MonotonicMs();
  while (!Queue_.empty() && Queue_.begin()->first <= now) {
    const Waiting waiting = std::move(Queue_.extract(Queue_.begin()).mapped());
    const OutgoingAnswer answer{
        BuildAnswer(waiting.Request, waiting.How, waiting.Received, Clock_.WallTime()),
        waiting.Sender, waiting.How.From.value_or(waiting.To)};
    answers.insert(answers.end(), static_cast<std::size_t>(waiting.How.Repeat), answer);
  }
  return answers;
}

std::optional<std::int64_t> Responder::MsToNext() const {
  if (Queue_.empty()) {
    return std::nullopt;
  }
  return std::max<std::int64_t>(0, Queue_.begin()->first - Clock_.MonotonicMs());
}

}  // namespace cvl::tools
