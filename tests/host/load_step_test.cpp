// What happens between the start of the process and the moment at which it waits for
// events, and in which order.

#include <optional>

#include "tests/host/host_bench.h"
#include "tests/support/posted_work.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class LoadStepTest : public HostTest {
 protected:
  /// Puts the clock into millisecond 999, which has no timestamp.
  void StandInMillisecond999() { System.Clock.UtcMs += 749; }
};

TEST_F(LoadStepTest, TheServerRunsWhenItIsDone) {
  EXPECT_EQ(Load(), Loaded::Running);
  EXPECT_FALSE(System.Loop.IsQuitting());
}

TEST_F(LoadStepTest, AnotherInstanceEndsItAtOnceWhateverTheCommandLineSays) {
  System.Machine.IsAnotherInstance = true;
  for (const char *tail : {"", "-rs", "-install", "-uninstall", "-config", "-debug"}) {
    System.Journal.Calls.clear();
    EXPECT_EQ(Load(tail), Loaded::AnotherInstance) << tail;
    EXPECT_EQ(Server->Obstacle(), "another one") << tail;
    EXPECT_THAT(Calls(), ElementsAre("claim instance")) << tail;
    EXPECT_EQ(Server->State.Start.ProgramVersion, "");
  }
  EXPECT_THAT(System.Store.Writes, IsEmpty());
}

TEST_F(LoadStepTest, TheSystemIsAskedInOrder) {
  System.Store.Put(FakeRegistry::SettingsKey, "SNTP123", "YES:YES:NO:123");
  Load();
  std::vector<std::string> calls;
  std::copy_if(Calls().begin(), Calls().end(), std::back_inserter(calls),
               [](const std::string &call) { return !call.starts_with("read key"); });
  EXPECT_THAT(calls, ElementsAre("claim instance", "user name", "exists QRB_CVLS4.CVL",
                                 "open QRB_CVLS4.CVL", "open tcp 123", "close tcp 123",
                                 "open tcp 123", "host name", "local address", "start service",
                                 testing::MatchesRegex("open udp [0-9]+"), "send to 10.0.0.1:123"));
}

TEST_F(LoadStepTest, DatesStampGuardAndZoneComeBeforeTheUserName) {
  System.Clock.Zone.Bias = 300;
  System.Clock.StandAtUtc(DateTime::Of(2002, 10, 3, 12, 0, 0), 250);
  When("user name", [&] {
    const RunState &state = Server->State;
    EXPECT_EQ(state.Start.ProgramVersion, "5.1.1");
    EXPECT_EQ(state.Dates.DateBase100, DateTime::Of(100, 1, 1));
    EXPECT_EQ(state.Dates.NTPEpoch, DateTime::Of(1900, 1, 1));
    EXPECT_EQ(state.Dates.UnixEpoch, DateTime::Of(1970, 1, 1));
    EXPECT_EQ(state.Dates.StampEpoch, DateTime::Of(1978, 8, 3));
    EXPECT_EQ(state.Dates.ClientEpoch, DateTime::Of(2002, 1, 1));
    EXPECT_EQ(state.Dates.Guard, DateTime::Of(100, 1, 1));
    EXPECT_FALSE(state.Dates.UseStampEpoch);
    EXPECT_NE(state.Sync.SyncStamp, NtpTimestamp{});
    EXPECT_EQ(state.Zone.TZBias, 300);
    EXPECT_THAT(Server->Window.CVL_TV.Nodes, IsEmpty());
    EXPECT_EQ(state.RegionCode, "");
  });
  Load();
  EXPECT_TRUE(HasLooked);
}

TEST_F(LoadStepTest, TheStaticContentsComeBeforeTheSettings) {
  When("exists QRB_CVLS4.CVL", [&] {
    EXPECT_EQ(Server->State.Start.OSUserName, "SYSTEM");
    EXPECT_EQ(Server->State.RegionCode, "NA");
    EXPECT_THAT(Server->Window.CVL_TV.Nodes, SizeIs(8));
    for (const Picture &lamp : Server->Window.LED) {
      EXPECT_EQ(lamp.Image, 33);
    }
    EXPECT_THAT(Server->Window.SyncIntC.List,
                ElementsAre("Second/s", "Minute/s", "Hour/s", "Day/s"));
    EXPECT_EQ(Server->State.Sync.SyncMessage, "");
    EXPECT_EQ(Server->State.Sync.LastSync, DateTime{});
    EXPECT_EQ(Server->State.Start.StartTimeText, "");
    EXPECT_EQ(Server->State.Sync.ReferenceStamp, NtpTimestamp{});
  });
  Load();
  EXPECT_TRUE(HasLooked);
}

TEST_F(LoadStepTest, TheStartIsTakenBehindTheSettings) {
  Store("EnableLogging", "NO");
  When("host name", [&] {
    EXPECT_EQ(Server->Window.Servers.Count(), 2);
    EXPECT_EQ(Server->State.Sync.SyncMessage, "Chronvale Server");
    EXPECT_EQ(Server->State.Sync.LastSync, DateTime::Of(2002, 10, 3, 12, 0, 0));
    EXPECT_EQ(Server->State.Start.StartTimeText, NoonText);
    EXPECT_TRUE(Server->State.Flags.EnableLogging);
    EXPECT_EQ(Server->State.Sync.ReferenceStamp,
              (NtpTimestamp{0xC1, 0x46, 0xAF, 0xC0, 0x40, 0x0A, 0x0A, 0x0A}));
    EXPECT_TRUE(Server->Window.InTaskList) << "it is hidden behind that";
  });
  Load();
  EXPECT_TRUE(HasLooked);
}

TEST_F(LoadStepTest, TheServiceStartsBeforeThePanelAndTheFirstSync) {
  When("start service", [&] {
    EXPECT_EQ(Server->State.Start.LocalHostName, "timehost");
    EXPECT_EQ(Server->State.Start.LocalIP, "10.77.0.1");
    EXPECT_FALSE(Server->Window.InTaskList);
    EXPECT_FALSE(Server->State.Sync.SyncWaiting);
    EXPECT_THAT(System.Net.Sent, IsEmpty());
  });
  Load();
  EXPECT_TRUE(HasLooked);
  EXPECT_TRUE(Server->State.Sync.SyncWaiting);
  ASSERT_THAT(System.Net.Sent, SizeIs(1));
  EXPECT_EQ(System.Net.Sent[0].To, At("10.0.0.1", 123));
}

TEST_F(LoadStepTest, ThePanelOfTheFirstServiceIsSelectedBeforeTheFirstSync) {
  When("send to 10.0.0.1:123", [&] {
    EXPECT_EQ(Server->Window.svrStatlbl.Caption,
              "Server is: Disabled\r\nTCP: OFF - UDP: OFF\r\nRequests: 0/t - 0/u");
  });
  Load("-config");
  EXPECT_TRUE(HasLooked);
}

TEST_F(LoadStepTest, TheStampOfTheRunIsCountedFrom1978) {
  Load();
  EXPECT_EQ(Server->State.Sync.SyncStamp,
            (NtpTimestamp{0x2D, 0x75, 0xD1, 0x40, 0x40, 0x0A, 0x0A, 0x0A}));
  const Bytes &request = System.Net.Sent.at(0).Data;
  EXPECT_TRUE(
      std::equal(request.begin() + 40, request.end(), Server->State.Sync.SyncStamp.begin()));
}

TEST_F(LoadStepTest, TheTreeHasItsEightEntries) {
  Load();
  struct Row {
    const char *Text;
    std::int16_t Parent;
    int Image;
  };
  const Row rows[] = {{"CVL Servers", 0, 1},
                      {"Time Service Server", 1, 35},
                      {"Daytime Service Server", 1, 35},
                      {"SNTP v4 Service Server", 1, 35},
                      {"UnixTime Service Server", 1, 35},
                      {"CVL Server Client Server", 1, 35},
                      {"CVL About/Help", 0, 1},
                      {"CVL Advanced Config", 0, 1}};
  const std::vector<TreeView::Node> &nodes = Server->Window.CVL_TV.Nodes;
  ASSERT_THAT(nodes, SizeIs(8));
  for (std::size_t node = 0; node < 8; ++node) {
    EXPECT_EQ(nodes[node].Text, rows[node].Text);
    EXPECT_EQ(nodes[node].Parent, rows[node].Parent);
    EXPECT_EQ(nodes[node].Image, rows[node].Image);
    EXPECT_EQ(nodes[node].Expanded, node == 0);
  }
}

TEST_F(LoadStepTest, TheTrayTipIsTheTitleABlankAndATerminator) {
  System.Service.StartError = 5;  // the first sync would put another there
  Load();
  std::string tip = "Chronvale SERVER ";
  tip += '\0';
  tip.resize(64, ' ');
  EXPECT_EQ(Server->State.Status.TipText.Text(), tip);
  EXPECT_EQ(Server->State.Status.TrayImage, 0);
  EXPECT_THAT(System.Tray.Calls, IsEmpty()) << "the entry itself isn't added";
}

TEST_F(LoadStepTest, AMachineWithoutAUserNameLeavesItEmpty) {
  System.Machine.User = "";
  Load();
  EXPECT_EQ(Server->State.Start.OSUserName, "");
}

TEST_F(LoadStepTest, BothTimersTickFromTheFirstSecondOn) {
  Load("-config");
  EXPECT_EQ(Server->Window.svrCurrent.Text(), "");
  EXPECT_NE(Server->Window.svrStatlbl.Caption, "");
  Server->Window.svrStatlbl.Caption = "old";
  System.Loop.Advance(1000);
  EXPECT_NE(Server->Window.svrCurrent.Text(), "") << "SvrTime";
  EXPECT_NE(Server->Window.svrStatlbl.Caption, "old") << "SyncNow";
}

// Settings.

TEST_F(LoadStepTest, LoggingIsOnInEveryRunWhateverTheStoreSays) {
  Store("EnableLogging", "NO");
  Load();
  EXPECT_TRUE(Server->State.Flags.EnableLogging);
  Server->Unload(UnloadMode::CloseButton);
  EXPECT_EQ(System.Store.Text(FakeRegistry::SettingsKey, "EnableLogging"), "YES");
}

TEST_F(LoadStepTest, OpenMinimizedMinimisesARunWithAWindow) {
  Store("OpenMinimized", "YES");
  Load("-config");
  EXPECT_EQ(Server->Window.State, WindowState::Minimized);
}

TEST_F(LoadStepTest, WithoutTheServerFileTheRunGoesOnWithDesignValues) {
  System.Files.Contents.clear();
  Store("Settings", "NO:5:Second/s:EU:36");
  EXPECT_EQ(Load(), Loaded::Running);

  EXPECT_THAT(System.Resolver.Asked, SizeIs(1)) << "the maker's server is asked for the file";
  EXPECT_EQ(Server->State.RegionCode, "NA");
  EXPECT_TRUE(Server->Window.RandomCheck.IsTicked());
  EXPECT_EQ(Server->Window.SyncN.Text(), "59");
  EXPECT_EQ(Server->Window.SyncIntC.Text(), "Minute/s");
  EXPECT_FALSE(System.Net.IsListening(123));
  EXPECT_FALSE(System.Net.IsDatagramOpen(123));
  EXPECT_TRUE(HasCalled("start service"));
  EXPECT_THAT(System.Net.Sent, IsEmpty());

  System.Loop.Advance(3000);
  EXPECT_THAT(System.Net.Sent, IsEmpty()) << "every tick tries, on an empty list";
}

TEST_F(LoadStepTest, AServerFileWithoutServersLoadsAllElse) {
  for (const char *file :
       {"", "1\n2\n3\n", "1\n2\n3\n4\n5\n", "1\n2\n3\n4\n5\n\nhost:::x:::1:::\n"}) {
    Server.reset();
    System.Files.Contents[ServerFile] = file;
    EXPECT_EQ(Load(), Loaded::Running);
    EXPECT_EQ(Server->Window.Servers.Count(), 0);
    EXPECT_TRUE(System.Net.IsListening(123));
    EXPECT_TRUE(System.Net.IsDatagramOpen(123));
    EXPECT_FALSE(Server->Window.RandomCheck.IsTicked());
    EXPECT_THAT(System.Net.Sent, IsEmpty());
  }
}

TEST_F(LoadStepTest, ABadServerFileEndsTheProgram) {
  System.Files.Contents[ServerFile] = "1\n2\n3\n4\n5\nhost:::Text NA:::36:::0\n";
  ExpectRuntimeError(380, [&] { Load(); });

  std::string lines = "1\n2\n3\n4\n5\n";
  for (int line = 0; line <= 300; ++line) {
    lines += "host:::Text NA:::1:::0\n";
  }
  System.Files.Contents[ServerFile] = lines;
  ExpectRuntimeError(9, [&] { Load(); });
  EXPECT_FALSE(HasCalled("start service"));
}

TEST_F(LoadStepTest, AnIntervalBeyond32BitsEndsTheProgram) {
  Store("Settings", "NO:99999:Day/s:NA:36");
  ExpectRuntimeError(6, [&] { Load(); });
}

TEST_F(LoadStepTest, ATakenPortStopsNothing) {
  System.Net.TakenPorts.insert(123);
  EXPECT_EQ(Load(), Loaded::Running);
  EXPECT_TRUE(Server->State.Status.StatusText.Text().starts_with(
      "That address is already in use.  Please select a different port than 123"));
  EXPECT_EQ(Server->Window.Status.Caption, "Synchronizing CVL Server...please wait.");
}

TEST_F(LoadStepTest, ATakenPortReachesTheStatusLineWithTheNextTick) {
  System.Net.TakenPorts.insert(123);
  Load("-config");
  System.Loop.Advance(1000);
  EXPECT_TRUE(Server->Window.Status.Caption.starts_with("That address is already in use."));
}

// Failures.

TEST_F(LoadStepTest, Millisecond999EndsTheProgramAtTheStamp) {
  StandInMillisecond999();
  ExpectRuntimeError(6, [&] { Load(); });
  EXPECT_THAT(Calls(), ElementsAre("claim instance"));
}

TEST_F(LoadStepTest, Millisecond998IsNoTrouble) {
  System.Clock.UtcMs += 748;
  EXPECT_EQ(Load(), Loaded::Running);
}

TEST_F(LoadStepTest, Millisecond999EndsTheProgramAtTheReference) {
  When("open tcp 123", [&] { StandInMillisecond999(); });
  ExpectRuntimeError(6, [&] { Load(); });
  EXPECT_EQ(Server->State.Start.StartTimeText, NoonText);
  EXPECT_FALSE(HasCalled("host name"));
}

TEST_F(LoadStepTest, AFailingStartOfTheServiceSkipsPanelAndSync) {
  System.Service.StartError = 1063;
  EXPECT_EQ(Load("-config"), Loaded::Running);
  EXPECT_THAT(System.Net.Sent, IsEmpty());
  EXPECT_EQ(Server->Window.svrStatlbl.Caption, "Server is: ON");
  EXPECT_THAT(System.Service.Log, IsEmpty());
  EXPECT_TRUE(System.Net.IsListening(123)) << "the listeners stay open";
  EXPECT_FALSE(System.Loop.IsQuitting());
}

TEST_F(LoadStepTest, BehindAFailingStartTheFirstSyncComesFromTheSchedule) {
  System.Service.StartError = 1063;
  Store("Settings", "NO:5:Second/s:NA:36");
  Load();
  System.Loop.Advance(4999);
  EXPECT_THAT(System.Net.Sent, IsEmpty());
  System.Loop.Advance(1);
  EXPECT_THAT(System.Net.Sent, SizeIs(1));
}

TEST_F(LoadStepTest, AStopInsideTheFirstSyncEndsTheRunBeforeItBegins) {
  std::optional<PostedWork> stop;
  When("send to 10.0.0.1:123", [&] { stop.emplace(System.Loop, [&] { System.Service.Stop(); }); });
  EXPECT_EQ(Load(), Loaded::Running);
  EXPECT_TRUE(System.Loop.IsQuitting());
  System.Loop.Run();
  EXPECT_FALSE(System.Net.IsListening(123));
}

}  // namespace
}  // namespace cvl
