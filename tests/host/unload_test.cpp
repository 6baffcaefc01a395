#include <optional>

#include "tests/host/host_bench.h"
#include "tests/support/posted_work.h"

namespace cvl {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class UnloadTest : public HostTest {
 protected:
  /// The calls that END causes.
  std::vector<std::string> CallsOf(const std::function<void()> &end) {
    System.Journal.Calls.clear();
    end();
    return Calls();
  }

  /// No socket was opened in these calls.
  static void ExpectNoOpening(const std::vector<std::string> &calls) {
    for (const std::string &call : calls) {
      EXPECT_FALSE(call.starts_with("open ")) << call;
    }
  }
};

const std::vector<std::string> StoresAndTray = {
    "store Settings", "store EnableLogging", "store NTP37", "store UNIX519",
    "store SNTP123",  "store CVL3777",       "store DTS13", "tray 2"};

TEST_F(UnloadTest, SocketsThenSettingsThenTheTrayEntry) {
  StoreAllServices();
  Store("UNIX519", "YES:YES:NO:519");
  Load();
  std::vector<std::string> expected = {"close tcp 37",  "close tcp 13",   "close tcp 123",
                                       "close tcp 519", "close tcp 3777", "close udp 3777",
                                       "close udp 123", "close udp 13",   "close udp 37"};
  expected.insert(expected.end(), StoresAndTray.begin(), StoresAndTray.end());
  EXPECT_EQ(CallsOf([&] { Server->Unload(UnloadMode::CloseButton); }), expected);
}

TEST_F(UnloadTest, TheStreamSocketOfUdp519HasItsPlaceAmongTheDatagramSockets) {
  StoreAllServices();
  Store("UNIX519", "YES:NO:YES:519");
  Load();
  std::vector<std::string> expected = {"close tcp 37",   "close tcp 13",   "close tcp 123",
                                       "close tcp 3777", "close udp 3777", "close tcp 519",
                                       "close udp 123",  "close udp 13",   "close udp 37"};
  expected.insert(expected.end(), StoresAndTray.begin(), StoresAndTray.end());
  EXPECT_EQ(CallsOf([&] { Server->Unload(UnloadMode::CloseButton); }), expected);
}

TEST_F(UnloadTest, EveryWayOutIsTheSame) {
  using End = void (*)(CVL_Server &, TestPlatform &);
  const End ends[] = {
      [](CVL_Server &server, TestPlatform &) { server.Unload(UnloadMode::CloseButton); },
      [](CVL_Server &server, TestPlatform &) { server.Unload(UnloadMode::SystemEnds); },
      [](CVL_Server &server, TestPlatform &) { server.MnuExit(); },
      [](CVL_Server &, TestPlatform &system) { system.Service.Stop(); },
  };
  std::vector<std::string> expected = {"close tcp 123", "close udp 123"};
  expected.insert(expected.end(), StoresAndTray.begin(), StoresAndTray.end());
  for (const End end : ends) {
    TestPlatform system;
    system.Files.Contents = System.Files.Contents;
    system.Store = System.Store;
    CVL_Server server(system.Interfaces(), "");
    server.Load();
    system.Journal.Calls.clear();
    end(server, system);
    EXPECT_EQ(system.Journal.Calls, expected);
    EXPECT_TRUE(system.Loop.IsQuitting());
  }
}

TEST_F(UnloadTest, TheCloseButtonOfAWindowEndsItsListenersToo) {
  StoreAllServices();
  Load("-config");
  ASSERT_TRUE(System.Net.IsListening(13));
  Server->Unload(UnloadMode::CloseButton);
  EXPECT_TRUE(System.Loop.IsQuitting());
  EXPECT_EQ(System.Net.OpenCount(), 0U);
  EXPECT_FALSE(System.Net.IsDatagramOpen(123));
}

TEST_F(UnloadTest, ARunBehindAFirstRunOpensNoPortAndStoresTheSame) {
  System.Store = FakeRegistry();
  Load();
  Server->Unload(UnloadMode::FromCode);
  const auto stored = [this] { return System.Store.Text(FakeRegistry::SettingsKey, "NTP37"); };
  EXPECT_EQ(stored(), "YES:NO:NO:37");

  TestPlatform next;
  next.Files.Contents = System.Files.Contents;
  next.Store = System.Store;
  CVL_Server server(next.Interfaces(), "");
  server.Load();
  EXPECT_EQ(next.Net.OpenCount(), 1U) << "the socket of the sync exchange";
  EXPECT_FALSE(next.Net.IsListening(37));
  server.Unload(UnloadMode::FromCode);
  EXPECT_EQ(next.Store.Text(FakeRegistry::SettingsKey, "NTP37"), "YES:NO:NO:37");
}

TEST_F(UnloadTest, ASecondUnloadIsHarmless) {
  Load();
  Server->Unload(UnloadMode::FromCode);
  EXPECT_THAT(CallsOf([&] { Server->Unload(UnloadMode::CloseButton); }), IsEmpty());
  EXPECT_THAT(CallsOf([&] { Server->MnuExit(); }), IsEmpty());
  EXPECT_THAT(CallsOf([&] { System.Service.Stop(); }), IsEmpty());
}

TEST_F(UnloadTest, TheTimersAreOffBeforeAnySocketIsClosed) {
  Store("Settings", "NO:1:Second/s:NA:36");
  Load();
  // Timers that still ran would be due now.
  When("close tcp 123", [&] { System.Loop.Advance(5000); });
  Server->Unload(UnloadMode::FromCode);
  EXPECT_TRUE(HasLooked);
  EXPECT_EQ(Server->Window.svrCurrent.Text(), "") << "SvrTime";
  EXPECT_THAT(System.Net.Sent, SizeIs(1)) << "SyncNow; one request is the start's";
}

TEST_F(UnloadTest, AcceptedConnectionsAreNotClosedOneByOne) {
  Load();
  Synchronise();
  FakeConnection &client = System.Net.Dial(123, At("10.0.0.7", 4000));
  System.Loop.Drain();
  ASSERT_TRUE(client.IsAccepted);
  Server->Unload(UnloadMode::FromCode);
  EXPECT_FALSE(client.IsClosed);
  EXPECT_FALSE(System.Net.IsListening(123));

  Server.reset();
  EXPECT_EQ(System.Net.OpenCount(), 0U) << "they go down with the process";
}

TEST_F(UnloadTest, TheTrayEntryIsRemovedWhetherItIsThereOrNot) {
  Load();
  Server->Unload(UnloadMode::FromCode);
  ASSERT_THAT(System.Tray.Calls, SizeIs(1));
  EXPECT_EQ(System.Tray.Calls[0].Message, TrayMessage::Remove);
}

TEST_F(UnloadTest, TheBoxesAreStored) {
  Load();
  Server->Window.SyncN.SetText("7");
  Server->Window.SyncIntC.SetText("Hour/s");
  Server->Window.RandomCheck.SetValue(Tick::On);
  Server->Window.SNTP_Ptxt.SetText("1123");
  Server->Unload(UnloadMode::FromCode);
  EXPECT_EQ(System.Store.Text(FakeRegistry::SettingsKey, "Settings"), "YES:7:Hour/s:NA:36");
  EXPECT_EQ(System.Store.Text(FakeRegistry::SettingsKey, "SNTP123"), "YES:YES:YES:1123");
}

// Failures.

TEST_F(UnloadTest, SettingsThatCannotBeStoredStopNothing) {
  Load();
  System.Store.CreateResult = registry_result::AccessDenied;
  Server->Unload(UnloadMode::FromCode);
  EXPECT_TRUE(HasCalled("tray 2"));
  EXPECT_TRUE(System.Loop.IsQuitting());
}

TEST_F(UnloadTest, AFailureWhileStoringSkipsToTheTray) {
  Load();
  When("store EnableLogging", [] { throw RuntimeError(error_number::DiskFull); });
  EXPECT_NO_THROW(Server->Unload(UnloadMode::FromCode));
  EXPECT_TRUE(HasCalled("tray 2"));
  EXPECT_TRUE(System.Loop.IsQuitting());
}

TEST_F(UnloadTest, AFailingTrayStopsNothing) {
  Load();
  When("tray 2", [] { throw RuntimeError(error_number::InvalidProcedureCall); });
  EXPECT_NO_THROW(Server->Unload(UnloadMode::FromCode));
  EXPECT_TRUE(System.Loop.IsQuitting());
}

TEST_F(UnloadTest, AFailureBeforeTheSettingsComesOut) {
  Load();
  When("close udp 123", [] { throw RuntimeError(error_number::Overflow); });
  ExpectRuntimeError(6, [&] { Server->Unload(UnloadMode::CloseButton); });
  EXPECT_FALSE(HasCalled("store Settings"));
}

// In the middle of something.

TEST_F(UnloadTest, InsideANestedPassItStopsEverythingAtOnce) {
  Load("-config");
  std::vector<std::string> calls;
  System.Journal.Calls.clear();
  const PostedWork stop(System.Loop, [&] {
    System.Service.Stop();
    calls = Calls();
  });
  // The tick of the schedule asks a server and lets the loop run one pass.
  Server->Window.SyncN.SetText("0");
  Server->Window.SyncN.Press(EnterKey);
  System.Loop.Advance(1000);

  EXPECT_TRUE(System.Loop.IsQuitting());
  ExpectNoOpening(Calls());
  EXPECT_EQ(Calls(), calls) << "nothing is asked of the system behind the stop";
  EXPECT_EQ(System.Net.OpenCount(), 0U);
}

TEST_F(UnloadTest, AStopInTheMiddleOfTheSyncLeavesTheObjectsAlive) {
  Load("-config");
  Server->Window.SyncN.SetText("0");
  Server->Window.SyncN.Press(EnterKey);
  std::optional<PostedWork> stop;
  When("send to 10.0.0.1:123", [&] { stop.emplace(System.Loop, [&] { System.Service.Stop(); }); });
  System.Loop.Advance(1000);
  EXPECT_TRUE(HasLooked);
  EXPECT_TRUE(System.Loop.IsQuitting());
  EXPECT_EQ(Server->Window.LED[0].Image, LampLitImage) << "the exchange ran to its end";
}

TEST_F(UnloadTest, NoSocketOpensBehindIt) {
  Load();
  Server->Unload(UnloadMode::FromCode);
  const std::vector<std::string> calls = CallsOf([&] {
    Server->Window.eDTS.SetValue(Tick::On);
    Server->Window.eTCP13.SetValue(Tick::On);
    Server->Window.eUDP13.SetValue(Tick::On);
    Server->Window.SNTP_Ptxt.Press(EnterKey);
  });
  ExpectNoOpening(calls);
  EXPECT_EQ(System.Net.OpenCount(), 0U);
}

TEST_F(UnloadTest, AnExchangeThatWaitsForANameIsDropped) {
  System.Files.Contents[ServerFile] = "1\n2\n3\n4\n5\ntime.example:::One NA:::7:::0\n";
  Load();
  ASSERT_TRUE(System.Resolver.IsWaitingFor("time.example"));
  // The socket of the exchange is still open at this moment.
  When("close tcp 123", [&] { System.Resolver.Tell("time.example", 0x0A000001); });
  Server->Unload(UnloadMode::FromCode);
  EXPECT_TRUE(HasLooked);
  EXPECT_THAT(System.Net.Sent, IsEmpty());
  EXPECT_FALSE(Server->State.Sync.SyncWaiting);
}

TEST_F(UnloadTest, AnAddressThatComesBehindItIsNotAsked) {
  System.Files.Contents[ServerFile] = "1\n2\n3\n4\n5\ntime.example:::One NA:::7:::0\n";
  Load();
  Server->Unload(UnloadMode::FromCode);
  System.Resolver.Tell("time.example", 0x0A000001);
  EXPECT_THAT(System.Net.Sent, IsEmpty());
}

TEST_F(UnloadTest, TheServerMayBeDestroyedBehindIt) {
  Load();
  Synchronise();
  Server->Unload(UnloadMode::FromCode);
  EXPECT_NO_THROW(Server.reset());
  EXPECT_EQ(System.Loop.WatchCount(), 0U);
}

}  // namespace
}  // namespace cvl
