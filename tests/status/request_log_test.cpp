#include "status/request_log.h"

#include "tests/status/status_bench.h"
#include "tests/support/fake_files.h"
#include "tests/support/watched_files.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Ipv4Address Client = 0xC0000207;  // 192.0.2.7
constexpr const char *Today = "/program/Logs/CVLS141102.LOG";

class RequestLogTest : public StatusTest {
 protected:
  RequestLogTest() {
    State.Flags.EnableLogging = true;
    State.Start = {"5.1.1", "11/14/2002 9:00:00 AM", "TIMEHOST", "192.0.2.1", "SYSTEM"};
  }

  /// A Daytime request over TCP.
  void LogDaytime() { Log.CVLWLOG("DayTime Request", Client, 13, 57, "DayTime", "TCP", 0); }

  /// The bytes of a line at 09:26:13 from 192.0.2.7, from the bytes sent on.
  static std::string Line(const std::string &rest) {
    return "2002-11-14 09:26:13 192.0.2.7 - CVLS5 TIMEHOST SYSTEM 192.0.2.1 GET TIME - 0 0 " +
           rest + "\r\n";
  }
  static std::string Header(const std::string &date) {
    return "#Software Service: Chronvale(SM) Server\r\n"
           "#Version: 5.1.1\r\n"
           "#UPDate: 11/14/2002 9:00:00 AM\r\n"
           "#Date: " +
           date +
           "\r\n"
           "#Fields: date time c-ip cs-username s-sitename s-computername s-ip cs-method "
           "cs-uri-stem cs-uri-query sc-status sc-win32-status sc-bytes cs-bytes time-taken "
           "s-port cs-version cs(User-Agent) cs(Cookie) cs(Referer)\r\n";
  }

  /// A file of today that an earlier request has left.
  void HaveAFile() {
    Files.Directories.insert("/program/Logs");
    Files.Contents[Today] = "";
  }

  FakeFiles Files;
  CallJournal Journal;
  WatchedFiles Watched{Files, Journal};
  RequestLog Log{State, Time, Watched};
};

// The line.

TEST_F(RequestLogTest, ADaytimeRequestLeavesItsLineByteForByte) {
  HaveAFile();
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today],
            "2002-11-14 09:26:13 192.0.2.7 - CVLS5 TIMEHOST SYSTEM 192.0.2.1 GET TIME - 0 0 57 15 "
            "0 13 DayTime TCP - \r\n");
}

TEST_F(RequestLogTest, EachServicesArgumentsMakeItsLine) {
  struct Row {
    std::string BytesD;
    std::int32_t Port;
    std::int32_t Sent;
    const char *Code;
    const char *Type;
    std::int32_t Total;
    const char *Rest;
  };
  const Row rows[] = {
      {"DayTime Request", 13, 57, "DayTime", "TCP", 0, "57 15 0 13 DayTime TCP - "},
      {"hello", 13, 51, "DayTime", "UDP", 0, "51 5 0 13 DayTime UDP - "},
      {"", 13, 51, "DayTime", "UDP", 0, "51 0 0 13 DayTime UDP - "},
      {"Time 4 Bytes", 37, 4, "Time", "TCP", 0, "4 12 0 37 Time TCP - "},
      {"Time 4 Bytes", 37, 4, "Time", "UDP", 0, "4 12 0 37 Time UDP - "},
      {"UnixTime REQ", 519, 4, "UnixTime", "TCP", 0, "4 12 0 519 UnixTime TCP - "},
      {"UnixTime REQ", 519, 4, "UnixTime", "UDP", 0, "4 12 0 519 UnixTime UDP - "},
      {"48 Bytes NTP...", 123, 48, "NTPv4", "UDP", 0, "48 48 0 123 NTPv4 UDP - "},
      {"48 Bytes NTP...", 123, 48, "NTPv4", "TCP", 0, "48 48 0 123 NTPv4 TCP - "},
      {"47 Bytes NTP ERROR: 0", 123, 0, "NTPv4", "UDP", 47, "0 47 0 123 NTPv4 UDP - "},
      {"68 Bytes NTP ERROR: 0", 123, 0, "NTPv4", "TCP", 68, "0 68 0 123 NTPv4 TCP - "},
      {"CV CVLSC", 3777, 24, "CVL Server Client", "TCP", 24,
       "24 24 0 3777 CVL Server Client TCP - "},
      {"CV CVLSP", 3777, 24, "CVL Server Client", "UDP", 0, "24 8 0 3777 CVL Server Client UDP - "},
  };
  for (const Row &row : rows) {
    HaveAFile();
    Log.CVLWLOG(row.BytesD, Client, row.Port, row.Sent, row.Code, row.Type, row.Total);
    EXPECT_EQ(Files.Contents[Today], Line(row.Rest)) << row.BytesD << row.Type;
  }
}

TEST_F(RequestLogTest, TheSizeOfAnNtpRequestDependsOnWhatWasSent) {
  HaveAFile();
  Log.CVLWLOG("text", Client, 123, 48, "NTPv4", "UDP", 99);
  Log.CVLWLOG("text", Client, 123, 0, "NTPv4", "UDP", 99);
  Log.CVLWLOG("text", Client, 123, 7, "NTPv4", "UDP", 99);
  EXPECT_EQ(Files.Contents[Today], Line("48 48 0 123 NTPv4 UDP - ") +
                                       Line("0 99 0 123 NTPv4 UDP - ") +
                                       Line("7 0 0 123 NTPv4 UDP - "));
}

TEST_F(RequestLogTest, ALineHasTwentyValuesForTwentyNamesThatStandOneFurtherAlong) {
  LogDaytime();
  const std::vector<std::string> lines = Split(Files.Contents[Today], "\r\n");
  const std::vector<std::string> names = Split(lines.at(4), " ");
  std::vector<std::string> values = Split(lines.at(5), " ");
  ASSERT_EQ(values.back(), "") << "a blank ends the line";
  values.pop_back();
  // The list of names has "#Fields:" in front of it.
  ASSERT_EQ(names.size() - 1, 20U);
  ASSERT_EQ(values.size(), 20U);
  EXPECT_EQ(names[1 + 6], "s-ip");
  EXPECT_EQ(values[6], "SYSTEM") << "the user has no column of its own";
  EXPECT_EQ(values[7], "192.0.2.1");
  EXPECT_EQ(names[1 + 19], "cs(Referer)");
  EXPECT_EQ(values[19], "-");
}

TEST_F(RequestLogTest, TheRequestsTextNeverReachesTheLine) {
  HaveAFile();
  Log.CVLWLOG(std::string_view("a\r\nb\0%s", 8), Client, 13, 51, "DayTime", "UDP", 0);
  EXPECT_EQ(Files.Contents[Today], Line("51 8 0 13 DayTime UDP - "));
}

TEST_F(RequestLogTest, NamesWithBlanksTakeMoreColumns) {
  HaveAFile();
  State.Start.OSUserName = "Local System";
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today],
            "2002-11-14 09:26:13 192.0.2.7 - CVLS5 TIMEHOST Local System 192.0.2.1 GET TIME - 0 0 "
            "57 15 0 13 DayTime TCP - \r\n");
}

TEST_F(RequestLogTest, DateAndTimeHaveLeadingZeros) {
  Clock.StandAtUtc(DateTime::Of(2003, 1, 2, 3, 4, 5));
  LogDaytime();
  EXPECT_NE(Files.Contents["/program/Logs/CVLS020103.LOG"].find("2003-01-02 03:04:05 "),
            std::string::npos);
}

TEST_F(RequestLogTest, TheHourIsOfTheTwentyFourHourClock) {
  HaveAFile();
  Clock.StandAtUtc(DateTime::Of(2002, 11, 14, 21, 26, 13));
  LogDaytime();
  EXPECT_TRUE(Files.Contents[Today].starts_with("2002-11-14 21:26:13 "));
}

TEST_F(RequestLogTest, LocalTimeNamesFileAndLine) {
  Clock.Zone.Bias = 600;
  LogDaytime();
  EXPECT_NE(Files.Contents["/program/Logs/CVLS131102.LOG"].find("2002-11-13 23:26:13 "),
            std::string::npos);
}

// The file.

TEST_F(RequestLogTest, ANewFileBeginsWithItsHeader) {
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today],
            Header("11/14/2002 9:26:13 AM") + Line("57 15 0 13 DayTime TCP - "));
}

TEST_F(RequestLogTest, AFurtherLineIsAppendedWithoutAHeader) {
  LogDaytime();
  const std::string first = Files.Contents[Today];
  Clock.Pass(1000);
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today],
            first +
                "2002-11-14 09:26:14 192.0.2.7 - CVLS5 TIMEHOST SYSTEM 192.0.2.1 GET TIME - 0 0 57 "
                "15 0 13 DayTime TCP - \r\n");
}

TEST_F(RequestLogTest, AFileOfAnEarlierRunKeepsItsHeader) {
  HaveAFile();
  Files.Contents[Today] = "#UPDate: an earlier start\r\n";
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today],
            "#UPDate: an earlier start\r\n" + Line("57 15 0 13 DayTime TCP - "));
}

TEST_F(RequestLogTest, ADeletedFileIsMadeAnew) {
  LogDaytime();
  Files.Contents.erase(Today);
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today],
            Header("11/14/2002 9:26:13 AM") + Line("57 15 0 13 DayTime TCP - "));
}

TEST_F(RequestLogTest, ADeletedDirectoryIsMadeAnew) {
  LogDaytime();
  Files.Contents.clear();
  Files.Directories.clear();
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today],
            Header("11/14/2002 9:26:13 AM") + Line("57 15 0 13 DayTime TCP - "));
}

TEST_F(RequestLogTest, MidnightBeginsANewFileAndLeavesTheOldOne) {
  Clock.StandAtUtc(DateTime::Of(2002, 11, 14, 23, 59, 59), 999);
  LogDaytime();
  const std::string old = Files.Contents[Today];
  Clock.Pass(1);
  LogDaytime();

  EXPECT_EQ(Files.Contents[Today], old);
  const std::string &file = Files.Contents["/program/Logs/CVLS151102.LOG"];
  EXPECT_TRUE(file.starts_with(Header("11/15/2002 12:00:00 AM") + "2002-11-15 00:00:00 ")) << file;
}

TEST_F(RequestLogTest, ADayThatEndsInBetweenPutsALineOfTheNewDayIntoTheOldFile) {
  HaveAFile();
  const std::int64_t last = UtcMsOf(DateTime::Of(2002, 11, 14, 23, 59, 59));
  Clock.Script = {last, last, last, last + 1000};
  LogDaytime();
  EXPECT_TRUE(Files.Contents[Today].starts_with("2002-11-15 00:00:00 "));
}

TEST_F(RequestLogTest, ClockIsReadForEachPartOfNameAndLine) {
  HaveAFile();
  Files.Contents["/program/Logs/CVLS311203.LOG"] = "";
  // Day, month and year of the name; then date and time of the line.
  Clock.Script = {UtcMsOf(DateTime::Of(2002, 1, 31)), UtcMsOf(DateTime::Of(2002, 12, 1)),
                  UtcMsOf(DateTime::Of(2003, 5, 5)), UtcMsOf(DateTime::Of(2004, 6, 7, 8, 9, 10)),
                  UtcMsOf(DateTime::Of(2005, 6, 7, 11, 12, 13))};
  LogDaytime();
  EXPECT_TRUE(
      Files.Contents["/program/Logs/CVLS311203.LOG"].starts_with("2004-06-07 11:12:13 192.0.2.7"));
  EXPECT_EQ(Clock.NowReadings, 5);
}

TEST_F(RequestLogTest, TheHeaderIsOfAnEarlierMomentThanItsFirstLine) {
  const std::int64_t noon = UtcMsOf(DateTime::Of(2002, 11, 14, 12, 0, 0));
  // Day, month and year of the name; then header and line.
  Clock.Script = {noon, noon, noon, noon + 1000, noon + 2000, noon + 2000};
  LogDaytime();
  const std::string &file = Files.Contents[Today];
  EXPECT_TRUE(file.starts_with(Header("11/14/2002 12:00:01 PM") + "2002-11-14 12:00:02 ")) << file;
}

// The operations.

TEST_F(RequestLogTest, ALineCostsOneOpeningForAppending) {
  HaveAFile();
  LogDaytime();
  LogDaytime();
  EXPECT_THAT(Journal.Calls, ElementsAre("append Logs/CVLS141102.LOG", "write", "close",
                                         "append Logs/CVLS141102.LOG", "write", "close"));
}

TEST_F(RequestLogTest, TheFirstLineOfADayCreatesItsFile) {
  Files.Directories.insert("/program/Logs");
  LogDaytime();
  EXPECT_THAT(Journal.Calls, ElementsAre("append Logs/CVLS141102.LOG",
                                         "append or create Logs/CVLS141102.LOG", "write", "close"));
}

TEST_F(RequestLogTest, TheFirstLineOfAllMakesTheDirectory) {
  LogDaytime();
  EXPECT_THAT(
      Journal.Calls,
      ElementsAre("append Logs/CVLS141102.LOG", "append or create Logs/CVLS141102.LOG",
                  "make directory Logs", "append or create Logs/CVLS141102.LOG", "write", "close"));
}

TEST_F(RequestLogTest, WhileItIsOffNoFileIsTouched) {
  State.Flags.EnableLogging = false;
  LogDaytime();
  EXPECT_THAT(Journal.Calls, IsEmpty());
  EXPECT_THAT(Files.Contents, IsEmpty());
  EXPECT_EQ(Clock.NowReadings, 0);
}

// Failures.

TEST_F(RequestLogTest, AFileThatCannotBeOpenedCostsThatOneCall) {
  HaveAFile();
  Files.AppendError = error_number::PermissionDenied;
  EXPECT_NO_THROW(LogDaytime());
  EXPECT_THAT(Journal.Calls, ElementsAre("append Logs/CVLS141102.LOG"));
  EXPECT_EQ(Clock.NowReadings, 3) << "no line is made";

  Files.AppendError = 0;
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today], Line("57 15 0 13 DayTime TCP - "));
}

TEST_F(RequestLogTest, AFileThatTakesNothingIsClosedAndTriedAgain) {
  HaveAFile();
  Files.AppendWriteError = error_number::DiskFull;
  EXPECT_NO_THROW(LogDaytime());
  EXPECT_TRUE(Files.Appended.empty());

  Files.AppendWriteError = 0;
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today], Line("57 15 0 13 DayTime TCP - "));
  EXPECT_TRUE(Files.Appended.empty());
}

TEST_F(RequestLogTest, ADirectoryThatCannotBeMadeCostsNoLineAndNoHeader) {
  Files.DirectoryError = error_number::PathFileAccess;
  EXPECT_NO_THROW(LogDaytime());
  EXPECT_THAT(Files.Contents, IsEmpty());
  EXPECT_EQ(Clock.NowReadings, 3);

  Files.DirectoryError = 0;
  LogDaytime();
  EXPECT_FALSE(Files.Contents[Today].empty());
}

TEST_F(RequestLogTest, AFailureWithinTheRoutineStaysThere) {
  HaveAFile();
  Journal.OnCall = [](const std::string &) { throw RuntimeError(error_number::DiskFull); };
  EXPECT_NO_THROW(LogDaytime());
}

TEST_F(RequestLogTest, AFileLeftWithoutAHeaderIsAppendedTo) {
  HaveAFile();
  LogDaytime();
  EXPECT_EQ(Files.Contents[Today], Line("57 15 0 13 DayTime TCP - "));
}

}  // namespace
}  // namespace cvl
