// The server file: written as it comes, then read as the list.

#include "tests/update/update_bench.h"

namespace cvl {
namespace {

class DownloadTest : public UpdateTest {
 protected:
  DownloadTest() { Settings.FileRequested = true; }

  std::vector<std::string> Listed() const {
    std::vector<std::string> texts;
    for (std::int32_t item = 1; item <= Window.Servers.Count(); ++item) {
      texts.push_back(Window.Servers.At(item).Text);
    }
    return texts;
  }

  const std::string NewFile = ServerFile({"10.1.1.1", "10.1.1.2"});
  const std::vector<std::string> NewList{"Server 10.1.1.1 NA", "Server 10.1.1.2 NA"};
};

TEST_F(DownloadTest, SavesTheFileAndReadsTheList) {
  Send(Begin(), Answer(NewFile));
  EXPECT_EQ(ServerFileNow(), NewFile);
  EXPECT_EQ(Listed(), NewList);
  EXPECT_EQ(Servers.Host(2), "10.1.1.2");
  EXPECT_EQ(Files.OpenOutputs, 0);
}

TEST_F(DownloadTest, EndsTheCheckAndStartsASync) {
  Update.ManualCheck = true;
  Send(Begin(), Answer(NewFile));
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(Button.Enabled);
  EXPECT_FALSE(Update.ManualCheck);
  EXPECT_FALSE(Settings.FileRequested);
  EXPECT_EQ(Syncs, 1);
  EXPECT_TRUE(Dialogs.Boxes.empty());
}

TEST_F(DownloadTest, TakesTheFileInPieces) {
  FakeConnection &maker = Begin();
  Send(maker, Header(NewFile.size()));
  EXPECT_EQ(ServerFileNow(), "");
  EXPECT_EQ(Files.OpenOutputs, 1);
  for (const char byte : NewFile) {
    EXPECT_EQ(Syncs, 0);
    Send(maker, std::string(1, byte));
  }
  EXPECT_EQ(ServerFileNow(), NewFile);
  EXPECT_EQ(Listed(), NewList);
  EXPECT_EQ(Syncs, 1);
}

TEST_F(DownloadTest, WritesEachPieceAsItComes) {
  FakeConnection &maker = Begin();
  Send(maker, Header(NewFile.size()) + NewFile.substr(0, 4));
  EXPECT_EQ(ServerFileNow(), NewFile.substr(0, 4));
  Send(maker, NewFile.substr(4, 3));
  EXPECT_EQ(ServerFileNow(), NewFile.substr(0, 7));
  EXPECT_EQ(Syncs, 0);
}

TEST_F(DownloadTest, AShorterFileLeavesTheTailOfTheOldOne) {
  PutServerFile(ServerFile({"10.9.9.9", "10.9.9.8", "10.9.9.7"}));
  Send(Begin(), Answer(NewFile));
  EXPECT_EQ(ServerFileNow(), NewFile + "10.9.9.7:::Server 10.9.9.7 NA:::2:::\r\n");
  EXPECT_EQ(Listed().size(), 3U);
}

TEST_F(DownloadTest, TheNewListTakesThePlaceOfTheOldOne) {
  PutServerFile(ServerFile({"10.9.9.9"}));
  Settings.FileRequested = false;
  Settings.ReadCVLFile();
  Settings.FileRequested = true;
  Send(Begin(), Answer(NewFile));
  EXPECT_EQ(Listed(), NewList);
}

TEST_F(DownloadTest, AnErrorPageBecomesTheServerFile) {
  const std::string page = "<html>\r\n<h1>404 Not Found</h1>\r\n</html>\r\n";
  Send(Begin(), "HTTP/1.1 404 Not Found\r\nContent-Length: " + std::to_string(page.size()) +
                    "\r\nServer: x\r\n\r\n" + page);
  EXPECT_EQ(ServerFileNow(), page);
  EXPECT_TRUE(Listed().empty());
  EXPECT_FALSE(Settings.FileRequested);
}

TEST_F(DownloadTest, AnAnswerWithoutALengthIsWrittenWithItsHeaderAndNeverEnds) {
  FakeConnection &maker = Begin();
  Send(maker, "HTTP/1.1 200 OK\r\n\r\nbody");
  EXPECT_EQ(ServerFileNow(), "HTTP/1.1 200 OK\r\n\r\nbody");
  EXPECT_EQ(Update.qrb().State(), SocketState::Connected);
  EXPECT_FALSE(Button.Enabled);
}

TEST_F(DownloadTest, AServerFileThatLooksLikeAVersionFileOffersNothing) {
  Send(Begin(), Answer(VersionText("9.9.9", 4711)));
  EXPECT_EQ(ServerFileNow(), VersionText("9.9.9", 4711));
  EXPECT_TRUE(Dialogs.Boxes.empty());
  EXPECT_EQ(Net.Connections.size(), 1U);
}

TEST_F(DownloadTest, AnEmptyFileIsCompleteWithItsHeader) {
  Send(Begin(), "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nServer: x\r\n\r\n");
  EXPECT_EQ(ServerFileNow(), "");
  EXPECT_EQ(Syncs, 1);
}

// Bodies without an end.

TEST_F(DownloadTest, EndsLikeALostConnectionAt16MiB) {
  constexpr std::size_t Most = std::size_t{16} << 20;
  Update.ManualCheck = true;
  FakeConnection &maker = Begin();
  Send(maker, "HTTP/1.1 200 OK\r\nContent-Length: 2E9\r\nServer: x\r\n\r\n");
  Send(maker, std::string(Most - 3, 'x'));
  EXPECT_EQ(Update.qrb().State(), SocketState::Connected);
  EXPECT_FALSE(Button.Enabled);

  // Of this piece, three bytes fit.
  Send(maker, "abcdef");
  EXPECT_EQ(ServerFileNow(), std::string(Most - 3, 'x') + "abc");
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(Button.Enabled);
  EXPECT_TRUE(Settings.FileRequested);
  EXPECT_EQ(Syncs, 0);
  EXPECT_TRUE(Listed().empty());
}

TEST_F(DownloadTest, SavesNothingMoreInLaterExchangesOfTheRun) {
  Send(Begin(), std::string((std::size_t{16} << 20) + 1, 'x'));
  Send(Begin(), Answer(NewFile));
  EXPECT_EQ(ServerFileNow().size(), std::size_t{16} << 20);
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
}

TEST_F(DownloadTest, EndsAt16MiBWithoutAFileToo) {
  Files.BinaryError = error_number::PermissionDenied;
  Send(Begin(), std::string((std::size_t{16} << 20) + 1, 'x'));
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  // The next exchange counts from 0 again.
  PutServerFile(ServerFile({"10.9.9.9"}));
  Send(Begin(), Answer(NewFile));
  EXPECT_EQ(Syncs, 1);
}

// Files that can't be written.

TEST_F(DownloadTest, WithoutAFileToWriteTheListComesFromTheOldOne) {
  PutServerFile(ServerFile({"10.9.9.9"}));
  Files.BinaryError = error_number::PermissionDenied;
  FakeConnection &maker = Begin();
  Send(maker, Header(NewFile.size()) + NewFile.substr(0, 20));
  Send(maker, NewFile.substr(20));
  EXPECT_EQ(Files.BinaryOpens, 1);  // asked once, whatever comes of it
  EXPECT_EQ(Listed(), std::vector<std::string>{"Server 10.9.9.9 NA"});
  EXPECT_EQ(Syncs, 1);
  EXPECT_FALSE(Settings.FileRequested);
}

TEST_F(DownloadTest, WithoutAFileAtAllAnotherExchangeBegins) {
  Files.BinaryError = error_number::PermissionDenied;
  Send(Begin(), Answer(NewFile));
  EXPECT_TRUE(Settings.FileRequested);
  ASSERT_EQ(Net.Connections.size(), 2U);
  EXPECT_EQ(RequestLine(Established()), GetServerFile);
}

TEST_F(DownloadTest, OnAFullDiskTheListComesFromWhatIsThere) {
  PutServerFile(ServerFile({"10.9.9.9"}));
  Files.WriteError = error_number::DiskFull;
  Send(Begin(), Answer(NewFile));
  EXPECT_EQ(Listed(), std::vector<std::string>{"Server 10.9.9.9 NA"});
  EXPECT_EQ(Syncs, 1);
}

TEST_F(DownloadTest, AListThatFailsIsAFailedStepAndTheProgramGoesOn) {
  const std::string bad = "1\r\n2\r\n3\r\n4\r\n5\r\nhost:::text:::99:::\r\n";
  Send(Begin(), Answer(bad));
  EXPECT_EQ(ServerFileNow(), bad);
  EXPECT_EQ(Syncs, 0);
  EXPECT_TRUE(Button.Enabled);
  // Left early, so the next check fetches the server file again.
  EXPECT_TRUE(Settings.FileRequested);
  EXPECT_EQ(RequestLine(Begin()), GetServerFile);
}

// More than one download in a run.

TEST_F(DownloadTest, ASecondOneIsNotSaved) {
  Send(Begin(), Answer(NewFile));
  Settings.FileRequested = true;
  Send(Begin(), Answer(ServerFile({"10.2.2.2"})));
  EXPECT_EQ(Files.BinaryOpens, 1);
  EXPECT_EQ(ServerFileNow(), NewFile);
  EXPECT_EQ(Listed(), NewList);
  EXPECT_EQ(Syncs, 2);
}

TEST_F(DownloadTest, OneThatWasCutOffGoesOnWhereTheFirstStopped) {
  FakeConnection &former = Begin();
  Send(former, Header(NewFile.size()) + "half");
  former.Break();
  Loop.Drain();
  EXPECT_TRUE(Settings.FileRequested);
  Send(Begin(), Answer(NewFile));
  EXPECT_EQ(ServerFileNow(), "half" + NewFile);
  EXPECT_EQ(Files.OpenOutputs, 0);
}

}  // namespace
}  // namespace cvl
