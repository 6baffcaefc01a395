// How often each service reads the clock for a request: as often as its answer and its log line
// need. The tip of the client's box takes the moment of the first reading.

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

/// Three readings for the name of the log's file and two for the line.
constexpr int LogReadings = 5;

class ClockReadings : public ServiceTest {
 protected:
  ClockReadings() {
    for (const char *code : {"0", "1", "2", "3", "4", "5", "7", "8", "9"}) {
      Listening.LoadServers(code);
    }
    // The log has its file already, so that no header is written.
    Files.Directories.insert("/program/Logs");
    Files.Contents["/program/Logs/CVLS031002.LOG"] = "";
  }

  /// The readings that REQUEST causes, of whole seconds and of milliseconds.
  template <class Request>
  int Count(Request &&request) {
    Clock.NowReadings = 0;
    Clock.LocalTimeReadings = 0;
    Clock.ZoneReadings = 0;
    request();
    EXPECT_EQ(Clock.ZoneReadings, 0);
    return Clock.NowReadings + Clock.LocalTimeReadings;
  }

  /// Checks REQUEST with the log off and on. ANSWER is what its answer needs.
  template <class Request>
  void Expect(int answer, Request &&request) {
    State.Flags.EnableLogging = false;
    EXPECT_EQ(Count(request), answer);
    State.Flags.EnableLogging = true;
    const std::size_t lines = LogLines().size();
    EXPECT_EQ(Count(request), answer + LogReadings);
    EXPECT_EQ(LogLines().size(), lines + 1);
  }
};

TEST_F(ClockReadings, OfNtpAreTwoForEachOfTwoStamps) {
  Expect(4, [&] { Arrive(123, Bytes(48)); });
}

TEST_F(ClockReadings, OfARefusedNtpPacketAreNone) {
  Expect(0, [&] { Arrive(123, Bytes(47)); });
}

TEST_F(ClockReadings, OfTimeAreOne) {
  Expect(1, [&] { Arrive(37, "any"); });
  Expect(1, [&] { Dial(37); });
}

TEST_F(ClockReadings, OfDaytimeAreOne) {
  Expect(1, [&] { Arrive(13, "any"); });
  Expect(1, [&] { Dial(13); });
}

TEST_F(ClockReadings, OfUnixTimeAreOne) {
  Expect(1, [&] { Dial(519); });
}

TEST_F(ClockReadings, OfTheClientProtocolAreTwo) {
  Bytes request(24);
  request[0] = 'C';
  request[1] = 'V';
  Expect(2, [&] { Arrive(3777, request); });
}

TEST_F(ClockReadings, GiveTheClientsBoxItsMoment) {
  const std::int64_t noon = Clock.UtcMs;
  for (const int port : {37, 13, 519}) {
    Clock.Script = {noon, noon + 1000, noon + 2000};
    Dial(static_cast<std::uint16_t>(port));
    Clock.Script.clear();
    Clock.UtcMs = noon;
  }
  for (const std::size_t box : {panel::Time, panel::Daytime, panel::Unix}) {
    EXPECT_EQ(Window.CVLRemHost[box].Tip.Text(), NoonTip) << box;
    EXPECT_EQ(Window.CVLRemHost[box].Text(), "10.0.0.7") << box;
  }
}

}  // namespace
}  // namespace cvl
