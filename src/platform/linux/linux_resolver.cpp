#include "platform/linux/linux_resolver.h"

#include <netdb.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <list>
#include <mutex>
#include <utility>

#include "base/failure_modes.h"
#include "platform/linux/error_table.h"
#include "platform/linux/linux_datagrams.h"

namespace cvl {

/// Where the threads leave their answers. Everything in it is under its lock.
struct LinuxResolver::Mailbox {
  struct Letter {
    std::string Name;
    std::optional<Ipv4Address> Address;
  };
  /// One letter. It is made before its lookup begins and moved as a whole, so that the answer
  /// needs no memory.
  using Envelope = std::list<Letter>;

  Mailbox() : Bell(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (Bell < 0) throw RuntimeError(error_number::TooManyDescriptors);
  }
  ~Mailbox() { close(Bell); }
  Mailbox(const Mailbox &) = delete;
  Mailbox &operator=(const Mailbox &) = delete;

  void Put(Envelope &letter) {
    const std::lock_guard lock(Lock);
    Letters.splice(Letters.end(), letter);
    const std::uint64_t one = 1;
    if (write(Bell, &one, sizeof one) < 0) TraceFailure("eventfd", errno);
  }

  Envelope TakeAll() {
    const std::lock_guard lock(Lock);
    std::uint64_t rings = 0;
    if (read(Bell, &rings, sizeof rings) < 0) TraceFailure("eventfd", errno);
    return std::exchange(Letters, {});
  }

  const int Bell;
  std::mutex Lock;
  Envelope Letters;
};

namespace {

std::optional<Ipv4Address> Failed(const std::string &name, const char *reason) {
  TraceFailure("lookup of " + name, reason);
  return std::nullopt;
}

std::optional<Ipv4Address> Ask(const std::string &name) {
  if (name.find('\0') != std::string::npos) return Failed(name, "not a name");
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_DGRAM;
  addrinfo *found = nullptr;
  const int error = getaddrinfo(name.c_str(), nullptr, &hints, &found);
  if (error != 0) {
    return Failed(name, error == EAI_SYSTEM ? std::strerror(errno) : gai_strerror(error));
  }
  sockaddr_in address{};
  std::memcpy(&address, found->ai_addr, sizeof address);
  freeaddrinfo(found);
  return FromSystem(address).Address;
}

/// Starts a thread that nobody waits for, with a stack that fits a lookup. False when the
/// system gives no thread.
bool StartThread(std::function<void()> work) {
  auto owned = std::make_unique<std::function<void()>>(std::move(work));
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return false;
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  pthread_attr_setstacksize(&attributes, std::size_t{512} * 1024);
  pthread_t thread;
  const int error = pthread_create(
      &thread, &attributes,
      [](void *argument) -> void * {
        const std::unique_ptr<std::function<void()>> run(
            static_cast<std::function<void()> *>(argument));
        (*run)();
        return nullptr;
      },
      owned.get());
  pthread_attr_destroy(&attributes);
  if (error != 0) {
    TraceFailure("pthread_create", error);
    return false;
  }
  static_cast<void>(owned.release());  // the thread deletes it
  return true;
}

}  // namespace

LinuxResolver::LinuxResolver(EventLoop &loop) : Loop_(loop), Mailbox_(std::make_shared<Mailbox>()) {
  Loop_.Watch(SocketHandle{Mailbox_->Bell}, {.Read = true}, *this);
}

LinuxResolver::~LinuxResolver() {
  Loop_.Unwatch(SocketHandle{Mailbox_->Bell});
}

void LinuxResolver::LookUp(const std::string &name, Answer answer) {
  const auto known = Waiting_.find(name);
  if (known != Waiting_.end()) {
    known->second.push_back(std::move(answer));
    return;
  }
  const auto letter = std::make_shared<Mailbox::Envelope>(1, Mailbox::Letter{name, {}});
  std::vector<Answer> answers;
  answers.push_back(std::move(answer));
  Waiting_.emplace(name, std::move(answers));
  const bool has_room = Waiting_.size() <= MostLookups;
  bool is_asked = false;
  const Failure failure = Trap([&] {
    is_asked = has_room && StartThread([mailbox = Mailbox_, letter] {
                 // A thread that runs out of memory has no answer; nothing may leave it.
                 Mailbox::Letter &found = letter->front();
                 if (Trap([&] { found.Address = Ask(found.Name); })) found.Address.reset();
                 mailbox->Put(*letter);
               });
  });
  if (is_asked) return;
  // Before anything that takes memory: what waits for the name waits for this letter.
  Mailbox_->Put(*letter);
  Failed(name, !has_room ? "too many others are waiting" : failure ? "no memory" : "no thread");
}

void LinuxResolver::OnReady(Readiness) {
  for (const Mailbox::Letter &letter : Mailbox_->TakeAll()) {
    const auto waiting = Waiting_.find(letter.Name);
    if (waiting == Waiting_.end()) continue;
    const std::vector<Answer> answers = std::move(waiting->second);
    Waiting_.erase(waiting);
    for (const Answer &answer : answers) {
      Loop_.Dispatch([&] { answer(letter.Address); });
    }
  }
}

}  // namespace cvl
