// One NTP request over UDP, from the datagram to the reply, takes no memory from the heap, with
// or without its line in the log.

#include <cstdlib>
#include <filesystem>
#include <new>

#include "platform/linux/linux_files.h"
#include "services/ntp_service.h"
#include "tests/net/live_test.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_shell.h"
#include "time/base_dates.h"

namespace {

bool Counting = false;
int Allocations = 0;

}  // namespace

// The array forms and those without exceptions end in this one.
void *operator new(std::size_t size) {
  if (Counting) ++Allocations;
  void *memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void *memory) noexcept {
  std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept {
  std::free(memory);
}

namespace cvl {
namespace {

/// A new program directory, for as long as this exists.
class ProgramDirectory {
 public:
  ProgramDirectory() {
    std::string path = testing::TempDir() + "cvl-allocation-XXXXXX";
    Path_ = mkdtemp(path.data());
    setenv("CHRONVALE_HOME", Path_.c_str(), 1);
  }
  ~ProgramDirectory() {
    unsetenv("CHRONVALE_HOME");
    std::filesystem::remove_all(Path_);
  }
  ProgramDirectory(const ProgramDirectory &) = delete;
  ProgramDirectory &operator=(const ProgramDirectory &) = delete;

 private:
  std::string Path_;
};

class NtpAllocation : public LiveTest {
 protected:
  NtpAllocation() {
    State.Start = {"5.1.1", "10/3/2002 9:00:00 AM", "TIMEHOST", "192.0.2.1", "SYSTEM"};
    SetBaseDates(State.Dates);
    State.Flags.TimeSynced = true;
    State.Sync.ReplyHeaderByte = 36;
    Sockets.UDP123.SetLocalPort(0);
    Sockets.UDP123.Bind();
  }

  /// Has one request of each client answered and returns how many allocations that took.
  int CountAnswering(std::vector<UdpPeer> &clients) {
    const std::string request(48, '\0');
    const auto port = static_cast<std::uint16_t>(Sockets.UDP123.LocalPort());
    const int expected = State.Requests.ReqUDP123 + static_cast<int>(clients.size());
    for (UdpPeer &client : clients) {
      client.Send({Loopback, port}, request);
    }
    Allocations = 0;
    while (State.Requests.ReqUDP123 < expected && IsReady()) {
      Counting = true;
      Loop.RunOnePass();
      Counting = false;
    }
    EXPECT_EQ(State.Requests.ReqUDP123, expected);
    const int counted = Allocations;
    for (UdpPeer &client : clients) {
      std::optional<UdpPeer::Message> reply;
      EXPECT_TRUE(Until([&] { return (reply = client.Read()).has_value(); }));
      EXPECT_EQ(reply->Bytes.size(), 48U);
    }
    return counted;
  }

  ProgramDirectory Home;
  FakeClock Clock;
  LinuxFiles Files;
  FakeShell Tray;
  RunState State;
  MainWindow Window;
  TimeEngine Time{Clock, State.Dates, State.Zone, Window.svrCurrent};
  Panels Panel{Window, State};
  Lamps LampRow{Window, State.Flags};
  StatusTexts Texts{State, Window, Panel, LampRow, Time, Tray};
  RequestLog Log{State, Time, Files};
  ServiceSockets Sockets{Layer};
  ServerList Servers{Window};
  ServerDraw Draw{Window, State, Servers, Time};
  Timer SyncNow{Loop, 1000};
  SyncSchedule Schedule{State, Window, SyncNow, Texts, Panel};
  SyncExchange Exchange{
      {State, Window, Clock, Time, Servers, Draw, Schedule, Texts, Sockets.UDP123, Layer}};
  NtpService Ntp{{State, Window, Sockets, Time, LampRow, Texts, Log, Loop}, Exchange};
};

TEST_F(NtpAllocation, IsCounted) {
  Allocations = 0;
  Counting = true;
  const std::string text(100, 'x');
  Counting = false;
  EXPECT_EQ(text.size(), 100U);
  EXPECT_EQ(Allocations, 1);
}

TEST_F(NtpAllocation, IsNotNeededForARequest) {
  std::vector<UdpPeer> clients;
  clients.emplace_back(0x7FFFFFFE);  // 127.255.255.254, the longest text of an address
  CountAnswering(clients);           // buffers and boxes have been made from here on
  EXPECT_EQ(CountAnswering(clients), 0);
}

TEST_F(NtpAllocation, IsNotNeededForALineOfTheLog) {
  State.Flags.EnableLogging = true;
  std::vector<UdpPeer> clients;
  clients.emplace_back(0x7FFFFFFE);
  clients.emplace_back(Loopback);
  CountAnswering(clients);
  EXPECT_EQ(CountAnswering(clients), 0);
  const std::string path = Files.InProgramDirectory("Logs/CVLS031002.LOG");
  const std::optional<std::int64_t> length = Files.Length(path);
  EXPECT_EQ(CountAnswering(clients), 0);
  EXPECT_GT(Files.Length(path), length) << "lines were written";
}

TEST_F(NtpAllocation, IsNotNeededForManyClientsInOneBatchAtChangingMoments) {
  std::vector<UdpPeer> clients;
  for (const Ipv4Address address : {Loopback, SecondLoopback, Ipv4Address{0x7FFEFEFE}}) {
    clients.emplace_back(address);
  }
  CountAnswering(clients);
  for (int round = 0; round < 5; ++round) {
    Clock.Pass(101);
    EXPECT_EQ(CountAnswering(clients), 0);
  }
}

}  // namespace
}  // namespace cvl
