// What an accepted connection costs when 10, 1,000 or 15,000 slots of its service are busy:
// three servers in the same run, each with so many clients of NTP that are connected and never
// ask. Medians are shown; the fewest come last, so that they are what is compared with.
//
//   busy_slots_bench [rounds]

#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "bench/connection_load.h"
#include "bench/contest.h"
#include "bench/own_network.h"
#include "bench/scratch_home.h"
#include "bench/server_process.h"

namespace {

using namespace cvl::bench;

constexpr std::size_t Depth = 8;
constexpr std::int64_t RoundNs = 300000000;
constexpr std::int64_t StartNs = 3000000000;

/// An NTP request, which is answered when all of it has come.
std::string NtpRequest() {
  std::string request(48, '\0');
  request[0] = 0x23;
  request[40] = 1;
  return request;
}

/// Connections to a port of 127.0.0.1 that never send anything. They come from addresses of
/// their own: the kernel would search long for a free port for the next one of the load.
class IdleClients {
 public:
  IdleClients(std::uint16_t port, std::size_t count) {
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(port);
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    sockaddr_in own{};
    own.sin_family = AF_INET;
    while (Connections_.size() < count) {
      const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
      if (connection >= 0) Connections_.push_back(connection);
      own.sin_addr.s_addr =
          htonl(INADDR_LOOPBACK + 1 + static_cast<std::uint32_t>(Connections_.size()) % Addresses);
      if (connection < 0 ||
          bind(connection, reinterpret_cast<const sockaddr *>(&own), sizeof own) != 0 ||
          connect(connection, reinterpret_cast<const sockaddr *>(&server), sizeof server) != 0) {
        throw std::system_error(errno, std::generic_category(), "idle clients");
      }
    }
  }
  ~IdleClients() {
    for (const int connection : Connections_) {
      close(connection);
    }
  }
  IdleClients(const IdleClients &) = delete;
  IdleClients &operator=(const IdleClients &) = delete;

 private:
  static constexpr std::uint32_t Addresses = 8;

  std::vector<int> Connections_;
};

class BusyServer final : public Contender {
 public:
  BusyServer(std::size_t busy, std::uint16_t port)
      : Contender(std::to_string(busy) + " busy slots"),
        Busy_(busy),
        Port_(port),
        Home_("127.0.0.1", std::to_string(port)),
        Process_({OwnDirectory() + "/bench_server"}, ServerCore),
        Load_(port, NtpRequest(), 48) {}

  bool WaitUntilReady() override {
    if (!Load_.WaitForAnswer(StartNs)) return false;
    Idle_ = std::make_unique<IdleClients>(Port_, Busy_);
    // Its connection comes behind all of theirs.
    return Load_.WaitForAnswer(StartNs);
  }

  LoadResult Load(std::size_t depth) override { return Load_.Run(depth, RoundNs); }
  std::int64_t ProcessorNs() const override { return Process_.ProcessorNs(); }

 private:
  std::size_t Busy_;
  std::uint16_t Port_;
  ScratchHome Home_;
  ServerProcess Process_;
  ConnectionLoad Load_;
  std::unique_ptr<IdleClients> Idle_;
};

/// The most busy slots that the limit of descriptors leaves room for, beside the others.
std::size_t MostBusy() {
  constexpr rlim_t Wanted = 15000;
  constexpr rlim_t Others = 2500;
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
  if (limit.rlim_max < Wanted + Others) {
    std::printf("no more than %llu descriptors are allowed\n",
                static_cast<unsigned long long>(limit.rlim_max));
  }
  return static_cast<std::size_t>(std::clamp(limit.rlim_max, Others + 1, Wanted + Others) - Others);
}

bool Measure(int rounds) {
  Contenders contenders;
  contenders.push_back(std::make_unique<BusyServer>(MostBusy(), 1123));
  contenders.push_back(std::make_unique<BusyServer>(1000, 1124));
  contenders.push_back(std::make_unique<BusyServer>(10, 1125));
  if (!AllReady(contenders)) return false;
  Compete(contenders, Depth, rounds);
  return true;
}

}  // namespace

int main(int count, char **arguments) {
  try {
    EnterOwnNetwork(arguments);
    StayOnCore(LoadCore);
    return Measure(RoundsOf(count, arguments)) ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "busy_slots_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
