// One exchange with the maker's server, up to where the body is known to be complete.

#include "tests/update/update_bench.h"

namespace cvl {
namespace {

using ExchangeTest = UpdateTest;

TEST_F(ExchangeTest, GoesToPort80OfTheMakersServer) {
  Update.QRBUpdate();
  ASSERT_EQ(Net.Connections.size(), 1U);
  EXPECT_EQ(Net.Connections[0].Peer, At("10.0.0.80", 80));
}

TEST_F(ExchangeTest, LooksTheMakersNameUp) {
  State.Start.MakerHost = "www.chronvale.example";
  Update.QRBUpdate();
  EXPECT_TRUE(Net.Connections.empty());
  Resolver.Tell("www.chronvale.example", 0x0A000050);
  ASSERT_EQ(Net.Connections.size(), 1U);
  EXPECT_EQ(Net.Connections[0].Peer, At("10.0.0.80", 80));
}

TEST_F(ExchangeTest, SendsItsRequestInOnePiece) {
  const FakeConnection &maker = Begin();
  ASSERT_EQ(maker.Pieces.size(), 1U);
  EXPECT_EQ(TextOf(maker.Received),
            "GET /Chronvale/CVLVCS4.IPF HTTP/1.1\r\n"
            "Accept: */*\r\n"
            "Host: 10.0.0.80\r\n"
            "Referer: Chronvale SS v5.1.1\r\n"
            "User-Agent: Chronvale SS v5.1.1\r\n"
            "\r\n");
}

TEST_F(ExchangeTest, SendsNothingBeforeTheConnectionStands) {
  Update.QRBUpdate();
  Loop.Drain();
  EXPECT_TRUE(Net.Connections[0].Received.empty());
}

TEST_F(ExchangeTest, AsksForTheServerFileWhenThatIsRequested) {
  Settings.FileRequested = true;
  EXPECT_EQ(RequestLine(Begin()), GetServerFile);
}

TEST_F(ExchangeTest, AClickDisablesTheButtonUntilTheCheckEnds) {
  Button.Enabled = true;
  Update.ClickCheckUpdate();
  EXPECT_FALSE(Button.Enabled);
  EXPECT_TRUE(Update.ManualCheck);
  PutServerFile("12345");
  Send(Established(), Answer(VersionText("5.1.1", 5)));
  EXPECT_TRUE(Button.Enabled);
  EXPECT_FALSE(Update.ManualCheck);
}

// How an exchange ends without an answer.

TEST_F(ExchangeTest, WithAnUnknownHostEndsInSilence) {
  State.Start.MakerHost = "gone.example";
  Settings.FileRequested = true;
  Update.QRBUpdate();
  Resolver.Tell("gone.example", std::nullopt);
  Loop.Drain();
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(Button.Enabled);
  EXPECT_TRUE(Dialogs.Boxes.empty());
  EXPECT_TRUE(Settings.FileRequested);
}

TEST_F(ExchangeTest, ThatIsRefusedEndsInSilence) {
  Update.QRBUpdate();
  Net.Connections[0].Refuse();
  Loop.Drain();
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(Button.Enabled);
  EXPECT_TRUE(Dialogs.Boxes.empty());
  EXPECT_EQ(Net.Connections.size(), 1U);  // no second try
}

TEST_F(ExchangeTest, ThatIsLostEndsInSilence) {
  FakeConnection &maker = Begin();
  Send(maker, Header(100) + "only a part");
  EXPECT_FALSE(Button.Enabled);
  maker.Break();
  Loop.Drain();
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(Button.Enabled);
  EXPECT_TRUE(Dialogs.Boxes.empty());
}

TEST_F(ExchangeTest, ThatIsLostBeforeTheRequestEndsInSilenceToo) {
  Update.QRBUpdate();
  FakeConnection &maker = Net.Connections[0];
  Update.CheckUpdate().Enabled = false;
  Net.Fail(Operation::Send, error_number::ConnectionReset);
  maker.Establish();
  Loop.Drain();
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(Button.Enabled);
}

TEST_F(ExchangeTest, AnErrorLeavesManualCheckAsItIs) {
  Update.ClickCheckUpdate();
  Net.Connections[0].Refuse();
  Loop.Drain();
  EXPECT_TRUE(Update.ManualCheck);
}

TEST_F(ExchangeTest, ARequestThatCanNotBeSentIsNoFailure) {
  Update.OnConnect();  // without a connection
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
}

TEST_F(ExchangeTest, AReadErrorClosesTheSocketAndLeavesTheButtonDisabled) {
  FakeConnection &maker = Begin();
  Update.OnDataArrival(5);  // of which none is there
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(maker.HasEnded);
  EXPECT_FALSE(Button.Enabled);
  EXPECT_TRUE(Dialogs.Boxes.empty());
}

TEST_F(ExchangeTest, TheEndOfTheStreamIsHeardByNobody) {
  FakeConnection &maker = Begin();
  maker.End();
  Loop.Drain();
  EXPECT_EQ(Update.qrb().State(), SocketState::Closing);
  EXPECT_FALSE(Button.Enabled);
  EXPECT_EQ(WindowTouches, 0);
}

TEST_F(ExchangeTest, ANewOneCutsOffTheOneUnderWay) {
  FakeConnection &former = Begin();
  Send(former, Header(100) + "forty bytes that belong to the first one");
  FakeConnection &maker = Begin();
  EXPECT_TRUE(former.HasEnded);
  PutServerFile("12345");
  Send(maker, Answer(VersionText("5.1.1", 5)));  // counted from 0
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
}

TEST_F(ExchangeTest, StartsNothingOnceThePlaceIsBeingLeft) {
  Layer.Shut();
  Update.QRBUpdate();
  Loop.Drain();
  EXPECT_TRUE(Net.Connections.empty());
}

// How the end of the body is found.

TEST_F(ExchangeTest, TheStatusLineIsNeverRead) {
  PutServerFile("12345");
  const std::string version = VersionText("5.1.1", 5);
  Send(Begin(), "HTTP/1.1 500 Oh\r\nContent-Length: " + std::to_string(version.size()) +
                    "\r\nServer: x\r\n\r\n" + version);
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
}

TEST_F(ExchangeTest, AnAnswerWithoutTheHeaderStaysOpenForGood) {
  FakeConnection &maker = Begin();
  Send(maker, "HTTP/1.1 200 OK\r\nServer: x\r\n\r\n" + VersionText("5.2.0", 5));
  EXPECT_EQ(Update.qrb().State(), SocketState::Connected);
  EXPECT_FALSE(Button.Enabled);
  EXPECT_TRUE(Dialogs.Boxes.empty());
}

TEST_F(ExchangeTest, AnAnswerInChunksStaysOpenForGood) {
  FakeConnection &maker = Begin();
  Send(maker, "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n24\r\n" +
                  VersionText("5.2.0", 5) + "\r\n0\r\n\r\n");
  EXPECT_EQ(Update.qrb().State(), SocketState::Connected);
  EXPECT_FALSE(Button.Enabled);
  EXPECT_TRUE(Dialogs.Boxes.empty());
}

TEST_F(ExchangeTest, ALengthOfMoreThanSevenDigitsIsCut) {
  // Ten million and five bytes are announced, one million counted on.
  FakeConnection &maker = Begin();
  Send(maker, "HTTP/1.1 200 OK\r\nContent-Length: 10000005\r\n\r\n");
  const std::string piece(50000, 'x');
  for (int sent = 0; sent < 19; ++sent) {
    Send(maker, piece);
  }
  EXPECT_EQ(Update.qrb().State(), SocketState::Connected);
  Send(maker, piece);
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
}

TEST_F(ExchangeTest, TheHeaderMayArriveAlone) {
  PutServerFile("12345");
  const std::string version = VersionText("5.1.1", 5);
  FakeConnection &maker = Begin();
  Send(maker, Header(version.size()));
  EXPECT_EQ(Update.qrb().State(), SocketState::Connected);
  // Read without its header, the text starts at the fourth character: in the middle of a
  // field that nobody reads.
  Send(maker, version);
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
}

TEST_F(ExchangeTest, AHeaderThatArrivesAloneCostsTheVersionFileThreeCharacters) {
  PutServerFile("12345");
  const std::string version = "-:-5.1.1-:-two-:-three-:-5-:-five";
  FakeConnection &maker = Begin();
  Send(maker, Header(version.size()));
  Send(maker, version);
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(Dialogs.Boxes.empty());  // five fields are too few
  Send(Begin(), Answer(version));
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
}

TEST_F(ExchangeTest, AVersionFileInTwoPiecesIsReadFromTheLastOne) {
  const std::string version = VersionText("5.2.0", 5);
  FakeConnection &maker = Begin();
  Send(maker, Header(version.size()) + version.substr(0, 10));
  Send(maker, version.substr(10));
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_TRUE(Dialogs.Boxes.empty());
  EXPECT_FALSE(Button.Enabled);
}

TEST_F(ExchangeTest, AHeaderThatIsCutBehindTheLengthNeverEnds) {
  const std::string version = VersionText("5.2.0", 5);
  const std::string answer = Answer(version);
  const std::size_t cut = answer.find("Server:");
  FakeConnection &maker = Begin();
  Send(maker, answer.substr(0, cut));
  Send(maker, answer.substr(cut));
  EXPECT_EQ(Update.qrb().State(), SocketState::Connected);
}

TEST_F(ExchangeTest, ALengthOfNothingIsCompleteWithTheHeader) {
  Send(Begin(), "HTTP/1.1 304 Not Modified\r\nContent-Length: 0\r\nServer: x\r\n\r\n");
  EXPECT_EQ(Update.qrb().State(), SocketState::Closed);
  EXPECT_FALSE(Button.Enabled);
}

TEST_F(ExchangeTest, ALengthThatDoesNotFitLeavesTheFormerOne) {
  PutServerFile("12345");
  const std::string version = VersionText("5.1.1", 5);
  Check(version);
  Send(Begin(), "HTTP/1.1 200 OK\r\nContent-Length: 9E9999\r\n\r\n" + version);
  EXPECT_EQ(Dialogs.Boxes, (std::vector{NothingNew(), NothingNew()}));
}

TEST_F(ExchangeTest, TheLengthOfTheLastAnswerStaysInForce) {
  PutServerFile("12345");
  Check(VersionText("5.1.1", 5));
  Dialogs.Boxes.clear();
  // No header of that name, and as many bytes in all as the last body had.
  std::string answer = "H/1\r\n\r\n0-:-5.1.1-:--:--:-5-:-";
  answer.resize(VersionText("5.1.1", 5).size(), '.');
  Send(Begin(), answer);
  EXPECT_EQ(Dialogs.Boxes, std::vector{NothingNew()});
}

TEST_F(ExchangeTest, BytesBeyondTheLengthAreOneTooMany) {
  const std::string version = VersionText("5.1.1", 5);
  FakeConnection &maker = Begin();
  Send(maker, Header(version.size() - 1) + version);
  EXPECT_EQ(Update.qrb().State(), SocketState::Connected);
}

TEST_F(ExchangeTest, TheSocketIsClosedBeforeTheVersionFileIsRead) {
  SocketState state = SocketState::Connected;
  Dialogs.OnShow = [&] { state = Update.qrb().State(); };
  PutServerFile("12345");
  Check(VersionText("5.1.1", 5));
  EXPECT_EQ(state, SocketState::Closed);
}

TEST_F(ExchangeTest, PendingEventsRunBeforeTheVersionFileIsRead) {
  PutServerFile("12345");
  FakeConnection &maker = Begin();
  TcpEvents events;
  TcpSocket other{Layer, events};
  std::vector<std::size_t> boxes_shown;
  events.Connect = [&](std::int16_t) { boxes_shown.push_back(Dialogs.Boxes.size()); };
  other.SetRemoteHost("10.0.0.99");
  other.Connect();
  maker.Send(Answer(VersionText("5.1.1", 5)));
  Net.Connections.back().Establish();  // behind what the maker sent
  Loop.RunOnePass();
  EXPECT_EQ(boxes_shown, std::vector<std::size_t>{0});
  EXPECT_EQ(Dialogs.Boxes.size(), 1U);
}

}  // namespace
}  // namespace cvl
