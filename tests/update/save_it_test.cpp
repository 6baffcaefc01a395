// What the version file sets off.

#include "tests/update/update_bench.h"

namespace cvl {
namespace {

class SaveItTest : public UpdateTest {
 protected:
  /// Answers the first box with Yes or No, and the boxes behind it with THEN.
  void AnswerBoxes(BoxAnswer first, BoxAnswer then) {
    Dialogs.OnShow = [this, first, then] {
      Dialogs.Answer = Dialogs.Boxes.size() == 1 ? first : then;
    };
  }
};

TEST_F(SaveItTest, OfTheSameVersionAndSizeSaysThatNothingIsNew) {
  PutServerFile("12345");
  Check(VersionText("5.1.1", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
  EXPECT_FALSE(Settings.FileRequested);
  EXPECT_TRUE(Button.Enabled);
  EXPECT_EQ(Net.Connections.size(), 1U);
}

TEST_F(SaveItTest, EndsTheCheckBeforeItSaysThatNothingIsNew) {
  PutServerFile("12345");
  Dialogs.OnShow = [this] { EXPECT_TRUE(Button.Enabled); };
  Update.ManualCheck = true;
  Check(VersionText("5.1.1", 5));
  EXPECT_FALSE(Update.ManualCheck);
  EXPECT_EQ(Dialogs.Boxes.size(), 1U);
}

TEST_F(SaveItTest, OfFewerThanSixFieldsIsSilenceWithTheButtonDisabled) {
  PutServerFile("12345");
  Check("0-:-9.9.9-:-2-:-3-:-4");
  EXPECT_TRUE(Dialogs.Boxes.empty());
  EXPECT_FALSE(Button.Enabled);
  EXPECT_EQ(WindowTouches, 0);
  Check("0-:-9.9.9-:-2-:-3-:-4-:-");
  EXPECT_EQ(Dialogs.Boxes.size(), 1U);
}

// The server file.

TEST_F(SaveItTest, AServerFileOneByteLongerIsOffered) {
  PutServerFile("123456");
  Check(VersionText("5.1.1", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NewServerFile()});
}

TEST_F(SaveItTest, AServerFileOneByteShorterIsOffered) {
  PutServerFile("1234");
  Check(VersionText("5.1.1", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NewServerFile()});
}

TEST_F(SaveItTest, AServerFileThatIsRefusedEndsTheCheck) {
  PutServerFile("1234");
  Dialogs.Answer = BoxAnswer::No;
  Check(VersionText("5.1.1", 5));
  EXPECT_FALSE(Settings.FileRequested);
  EXPECT_TRUE(Button.Enabled);
  EXPECT_EQ(Net.Connections.size(), 1U);
}

TEST_F(SaveItTest, AServerFileThatIsWantedIsFetched) {
  PutServerFile("1234");
  Dialogs.Answer = BoxAnswer::Yes;
  Update.ManualCheck = true;
  const std::string file = ServerFile({"10.1.1.1"});
  Check(VersionText("5.1.1", file.size()));
  EXPECT_TRUE(Settings.FileRequested);
  EXPECT_FALSE(Button.Enabled);
  EXPECT_TRUE(Update.ManualCheck);
  ASSERT_EQ(Net.Connections.size(), 2U);
  FakeConnection &maker = Established();
  EXPECT_EQ(RequestLine(maker), GetServerFile);
  Send(maker, Answer(file));
  EXPECT_EQ(ServerFileNow(), file);
  EXPECT_EQ(Syncs, 1);
  EXPECT_TRUE(Button.Enabled);
}

TEST_F(SaveItTest, TheServerFileIsOfferedWithAWindowAndWithout) {
  PutServerFile("1234");
  for (const bool interactive : {false, true}) {
    State.Flags.Interactive = interactive;
    Dialogs.Boxes.clear();
    Check(VersionText("5.1.1", 5));
    EXPECT_EQ(Dialogs.Boxes, std::vector{NewServerFile()});
  }
}

TEST_F(SaveItTest, AMissingServerFileIsFetchedUnasked) {
  Check(VersionText("5.1.1", 5));
  EXPECT_TRUE(Settings.FileRequested);
  ASSERT_EQ(Net.Connections.size(), 2U);
  EXPECT_EQ(RequestLine(Established()), GetServerFile);
  EXPECT_FALSE(Button.Enabled);
}

TEST_F(SaveItTest, AtTheFirstStartNothingIsSaidToBeNewWhileTheFileIsOnItsWay) {
  std::size_t connections = 0;
  Dialogs.OnShow = [&] { connections = Net.Connections.size(); };
  Check(VersionText("5.1.1", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
  EXPECT_EQ(connections, 2U);
}

TEST_F(SaveItTest, ASizeThatIsNoNumberCountsAsZero) {
  PutServerFile("1");
  Check(VersionText("5.1.1", "unknown"));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NewServerFile()});
  Dialogs.Boxes.clear();
  PutServerFile("");
  Check(VersionText("5.1.1", "unknown"));
  EXPECT_TRUE(Dialogs.Boxes.empty());  // something has been offered before
  EXPECT_EQ(Net.Connections.size(), 2U);
}

TEST_F(SaveItTest, ASizeThatIsNoWholeNumberDiffersFromEveryFile) {
  PutServerFile("12345");
  Check(VersionText("5.1.1", "5.2"));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NewServerFile()});
}

TEST_F(SaveItTest, ASizeThatIsTooLargeEndsItInSilence) {
  PutServerFile("12345");
  Check(VersionText("5.1.1", "1e999"));
  EXPECT_TRUE(Dialogs.Boxes.empty());
  EXPECT_FALSE(Button.Enabled);
}

// The program.

TEST_F(SaveItTest, ANewerProgramIsOfferedWhereThereIsAWindow) {
  State.Flags.Interactive = true;
  PutServerFile("12345");
  Check(VersionText("5.1.2", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NewProgram("5.1.2")});
}

TEST_F(SaveItTest, WithoutAWindowANewerProgramIsNotedAndNothingMore) {
  PutServerFile("12345");
  Dialogs.Answer = BoxAnswer::Yes;
  Check(VersionText("5.1.2", 5));
  EXPECT_TRUE(Dialogs.Boxes.empty());  // noted: nothing is said to be new either
  EXPECT_TRUE(Programs.Programs.empty());
  EXPECT_TRUE(Button.Enabled);
}

TEST_F(SaveItTest, VersionsAreComparedAsPlainTexts) {
  State.Flags.Interactive = true;
  PutServerFile("12345");
  State.Start.ProgramVersion = "5.1.9";
  Check(VersionText("5.1.10", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
  Dialogs.Boxes.clear();
  State.Start.ProgramVersion = "5.1.10";
  Check(VersionText("5.1.9", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NewProgram("5.1.9")});
}

TEST_F(SaveItTest, AnOlderProgramIsNotOffered) {
  State.Flags.Interactive = true;
  PutServerFile("12345");
  Check(VersionText("5.1.0", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
}

TEST_F(SaveItTest, NoToTheProgramGoesOnToTheServerFile) {
  State.Flags.Interactive = true;
  PutServerFile("1234");
  AnswerBoxes(BoxAnswer::No, BoxAnswer::Yes);
  Check(VersionText("5.2.0", 5));
  EXPECT_EQ(Dialogs.Boxes, (std::vector{NewProgram("5.2.0"), NewServerFile()}));
  EXPECT_TRUE(Programs.Programs.empty());
  EXPECT_TRUE(Settings.FileRequested);
  EXPECT_EQ(Window.Caption, "Chronvale Server");
}

TEST_F(SaveItTest, YesToTheProgramStartsTheUpdaterAndSkipsTheServerFile) {
  State.Flags.Interactive = true;
  PutServerFile("1234");
  AnswerBoxes(BoxAnswer::Yes, BoxAnswer::Yes);
  Check(VersionText("5.2.0", 5));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NewProgram("5.2.0")});
  EXPECT_EQ(Programs.Programs,
            (std::vector<FakeProgramStarter::Started>{
                {"/program/QRBUpdate.exe", {"/v5.2.0", "/tUPDATEING Chronvale Server"}}}));
  EXPECT_EQ(Window.Caption, "UPDATEING Chronvale Server");
  EXPECT_FALSE(Settings.FileRequested);
  EXPECT_FALSE(Button.Enabled);
  EXPECT_EQ(Net.Connections.size(), 1U);
  EXPECT_FALSE(Loop.IsQuitting());
}

TEST_F(SaveItTest, TheTitleIsBuiltFromTheOneAtTheStart) {
  State.Flags.Interactive = true;
  PutServerFile("12345");
  Dialogs.Answer = BoxAnswer::Yes;
  Check(VersionText("5.2.0", 5));
  Check(VersionText("5.2.0", 5));
  EXPECT_EQ(Window.Caption, "UPDATEING Chronvale Server");
}

TEST_F(SaveItTest, AMissingUpdaterLeavesTheTitleAsItWasSet) {
  State.Flags.Interactive = true;
  PutServerFile("12345");
  Dialogs.Answer = BoxAnswer::Yes;
  Programs.Error = error_number::FileNotFound;
  Check(VersionText("5.2.0", 5));
  EXPECT_EQ(Window.Caption, "UPDATEING Chronvale Server");
  EXPECT_EQ(Dialogs.Boxes.size(), 1U);
}

// What stays behind.

TEST_F(SaveItTest, ARunThatHasOfferedSomethingStaysSilentAtLaterChecks) {
  PutServerFile("1234");
  Check(VersionText("5.1.1", 5));
  Dialogs.Boxes.clear();
  PutServerFile("12345");
  Check(VersionText("5.1.1", 5));
  EXPECT_TRUE(Dialogs.Boxes.empty());
}

TEST_F(SaveItTest, ARunThatHasOfferedNothingSaysSoEachTime) {
  PutServerFile("12345");
  Check(VersionText("5.1.1", 5));
  Check(VersionText("5.1.1", 5));
  EXPECT_EQ(Dialogs.Boxes, (std::vector{NothingNew(), NothingNew()}));
}

TEST_F(SaveItTest, TheBoxBringsItsWindowIntoBeing) {
  int touches = -1;
  Dialogs.OnShow = [&] { touches = WindowTouches; };
  Check(VersionText("5.1.1", 5));  // the file is missing, so the button stays untouched
  EXPECT_EQ(touches, 1);
}

TEST_F(SaveItTest, ABoxMayStayUpWhileTheExchangeGoesOn) {
  // The second exchange ends while the box of the first is still up.
  const std::string file = ServerFile({"10.1.1.1"});
  Dialogs.OnShow = [&] { Send(Established(), Answer(file)); };
  Check(VersionText("5.1.1", file.size()));
  EXPECT_EQ(ServerFileNow(), file);
  EXPECT_EQ(Window.Servers.Count(), 1);
  EXPECT_TRUE(Button.Enabled);
}

}  // namespace
}  // namespace cvl
