#include "net/lingering_closes.h"

#include <array>
#include <iterator>
#include <utility>

#include "base/failure_modes.h"

namespace cvl {

class LingeringCloses::Closing final : public ReadyHandler {
 public:
  Closing(LingeringCloses &owner, SocketHandle socket, std::vector<std::uint8_t> unsent)
      : Owner_(owner),
        Socket_(socket),
        Unsent_(std::move(unsent)),
        EndMs_(owner.Loop_.MonotonicMs() + LingerMs) {}

  ~Closing() {
    if (Watched_) Owner_.Loop_.Unwatch(Socket_);
    Owner_.Network_.Close(Socket_);
  }

  std::int64_t EndMs() const { return EndMs_; }

  /// Where in the owner's list this stands, so that it is found in one step.
  std::list<std::unique_ptr<Closing>>::iterator Place;

  /// Whether it has had its look.
  bool IsSeen = false;

  /// Sends what is left, and ends our stream once all of it is out. False when the peer is
  /// gone, or can't be watched, and nothing is left to be done.
  bool SendRest() {
    if (!Unsent_.empty()) {
      const Network::Transferred sent = Owner_.Network_.Send(Socket_, Unsent_, HoldBack::No);
      if (sent.Error != 0 && sent.Error != error_number::WouldBlock) return false;
      Unsent_.erase(Unsent_.begin(), Unsent_.begin() + static_cast<std::ptrdiff_t>(sent.Bytes));
    }
    if (Unsent_.empty()) Owner_.Network_.FinishSending(Socket_);
    return (Watched_ || !Unsent_.empty()) ? Watch() : true;
  }

  /// Sees whether the peer has ended already, and has it watched otherwise. False when
  /// nothing is left to be done.
  bool Look() {
    if (Watched_) return true;
    return Proceed({.Read = true}) && Watch();
  }

  void OnReady(Readiness readiness) override {
    if (!Proceed(readiness)) Owner_.Remove(*this);
  }

 private:
  /// False when the system refuses: then nothing would report the peer's end.
  bool Watch() {
    const Readiness interest{.Read = !PeerEnded_, .Write = !Unsent_.empty()};
    Watched_ = !Trap([&] { Owner_.Loop_.Watch(Socket_, interest, *this); });
    return Watched_;
  }

  /// False when the connection is at its end.
  bool Proceed(Readiness readiness) {
    // An error may be no more than the end of both streams, with input still unread: what
    // it is shows in the sending and the reading.
    const bool sends = readiness.Write || readiness.Error;
    const bool reads = readiness.Read || readiness.Error;
    if (sends && !Unsent_.empty() && !SendRest()) return false;
    if (reads && !PeerEnded_) {
      std::array<std::uint8_t, 4096> unread;
      const Network::Transferred received = Owner_.Network_.Receive(Socket_, unread);
      if (received.Error != 0 && received.Error != error_number::WouldBlock) return false;
      PeerEnded_ = received.Error == 0 && received.Bytes == 0;
    }
    if (!PeerEnded_) return true;
    // The peer has said all it will, but still takes in what we have left for it.
    return !Unsent_.empty() && Watch();
  }

  LingeringCloses &Owner_;
  SocketHandle Socket_;
  std::vector<std::uint8_t> Unsent_;
  std::int64_t EndMs_;
  bool PeerEnded_ = false;
  bool Watched_ = false;
};

LingeringCloses::LingeringCloses(EventLoop &loop, Network &network)
    : Loop_(loop),
      Network_(network),
      LookTimer_(loop, [this] { LookAtUnseen(Unseen_); }),
      Timer_(loop, [this] { Expire(); }),
      FirstUnseen_(Closing_.end()) {}

LingeringCloses::~LingeringCloses() = default;

void LingeringCloses::Add(SocketHandle socket, std::vector<std::uint8_t> unsent) {
  if (Closing_.size() >= MostLingering) LookAtUnseen(Unseen_);
  if (Closing_.size() >= MostLingering) {
    Network_.Close(socket);
    return;
  }
  // The entry comes first: a Closing that is made closes its socket when it goes.
  std::list<std::unique_ptr<Closing>> added;
  const Failure failure = Trap([&] {
    added.emplace_back();
    added.back() = std::make_unique<Closing>(*this, socket, std::move(unsent));
  });
  if (failure) {
    Network_.Close(socket);
    return;
  }
  Closing_.splice(Closing_.end(), added);
  Closing &closing = *Closing_.back();
  closing.Place = std::prev(Closing_.end());
  if (FirstUnseen_ == Closing_.end()) FirstUnseen_ = closing.Place;
  ++Unseen_;
  if (!closing.SendRest()) {
    Remove(closing);
    return;
  }
  if (Unseen_ > MostUnseen) LookAtUnseen(LooksInARow);
  if (!LookTimer_.IsRunning()) LookTimer_.Start(LookMs, LoopTimer::Repeat::No);
  if (!Timer_.IsRunning()) Timer_.Start(LingerMs, LoopTimer::Repeat::No);
}

void LingeringCloses::LookAtUnseen(std::size_t most) {
  for (; most > 0 && FirstUnseen_ != Closing_.end(); --most) {
    Closing &closing = **FirstUnseen_++;
    closing.IsSeen = true;
    --Unseen_;
    if (!closing.Look()) Remove(closing);
  }
}

void LingeringCloses::Remove(Closing &closing) {
  if (FirstUnseen_ == closing.Place) ++FirstUnseen_;
  if (!closing.IsSeen) --Unseen_;
  Closing_.erase(closing.Place);
}

void LingeringCloses::Expire() {
  const std::int64_t now = Loop_.MonotonicMs();
  while (!Closing_.empty() && Closing_.front()->EndMs() <= now) {
    Remove(*Closing_.front());
  }
  if (!Closing_.empty()) {
    Timer_.Start(Closing_.front()->EndMs() - now, LoopTimer::Repeat::No);
  }
}

}  // namespace cvl
