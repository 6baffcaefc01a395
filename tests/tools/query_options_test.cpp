#include "tools/query/query_options.h"

#include <gtest/gtest.h>

#include "tools/system/arguments.h"

namespace cvl::tools {
namespace {

using Arguments = std::vector<std::string>;

/// The complaint about a command line, or "" when there is none.
std::string ComplaintAbout(const Arguments &arguments) {
  try {
    ParseQueryOptions(arguments);
  } catch (const UsageError &error) {
    return error.what();
  }
  return "";
}

TEST(QueryOptions, NeedOnlyServiceAndHost) {
  const QueryOptions options = ParseQueryOptions({"daytime", "localhost"});
  EXPECT_EQ(options.What, QueryOptions::Task::Ask);
  EXPECT_EQ(options.Of, Service::Daytime);
  EXPECT_EQ(options.Host, "localhost");
  EXPECT_FALSE(options.Over);
  EXPECT_FALSE(options.Port);
  EXPECT_EQ(options.Timeout.count(), 2000);
  EXPECT_EQ(options.Shown, Form::Readable);
}

TEST(QueryOptions, MayStandAnywhere) {
  const QueryOptions options =
      ParseQueryOptions({"ntp", "--tcp", "--port", "1234", "10.0.0.1", "--timeout=0.5", "--hex"});
  EXPECT_EQ(options.Of, Service::Ntp);
  EXPECT_EQ(options.Over, Transport::Tcp);
  EXPECT_EQ(options.Port, 1234);
  EXPECT_EQ(options.Timeout.count(), 500);
  EXPECT_EQ(options.Shown, Form::Hex);
  EXPECT_EQ(options.Host, "10.0.0.1");
}

TEST(QueryOptions, AllLeavesTheServiceOpen) {
  EXPECT_FALSE(ParseQueryOptions({"all", "localhost"}).Of);
}

TEST(QueryOptions, HelpAndVersionNeedNothingElse) {
  EXPECT_EQ(ParseQueryOptions({"--help"}).What, QueryOptions::Task::ShowHelp);
  EXPECT_EQ(ParseQueryOptions({"--version", "--nonsense"}).What, QueryOptions::Task::ShowVersion);
}

TEST(QueryOptions, RoundTheTimeoutUpToMilliseconds) {
  EXPECT_EQ(ParseQueryOptions({"--timeout", "0.0001", "ntp", "h"}).Timeout.count(), 1);
  EXPECT_EQ(ParseQueryOptions({"--timeout", "3600", "ntp", "h"}).Timeout.count(), 3'600'000);
}

TEST(QueryOptions, ComplainAboutATimeoutThatIsNone) {
  for (const char *text : {"0", "-1", "3600.1", "", "2s", "nan", "inf", "1e400", "1e1"}) {
    EXPECT_EQ(ComplaintAbout({"--timeout", text, "ntp", "h"}),
              "--timeout needs seconds, above 0 and up to 3600")
        << text;
  }
}

TEST(QueryOptions, ComplainAboutAPortThatIsNone) {
  for (const char *text : {"0", "65536", "", "http", "-1"}) {
    EXPECT_EQ(ComplaintAbout({"--port", text, "ntp", "h"}),
              "--port needs a whole number from 1 to 65535")
        << text;
  }
  EXPECT_EQ(ComplaintAbout({"--port", "65535", "ntp", "h"}), "");
}

TEST(QueryOptions, ComplainAboutAMissingValue) {
  EXPECT_EQ(ComplaintAbout({"ntp", "h", "--port"}), "--port needs a value");
  EXPECT_EQ(ComplaintAbout({"ntp", "h", "--timeout"}), "--timeout needs a value");
}

TEST(QueryOptions, ComplainAboutAValueTooMany) {
  EXPECT_EQ(ComplaintAbout({"--hex=yes", "ntp", "h"}), "--hex takes no value");
}

TEST(QueryOptions, ComplainAboutBothTransports) {
  EXPECT_EQ(ComplaintAbout({"--udp", "--tcp", "ntp", "h"}),
            "--udp and --tcp exclude each other; without either both are asked");
  EXPECT_EQ(ComplaintAbout({"--udp", "--udp", "ntp", "h"}), "");
}

TEST(QueryOptions, ComplainAboutAPortForAll) {
  EXPECT_EQ(ComplaintAbout({"--port", "37", "all", "h"}),
            "--port names the port of one service, not of all");
}

TEST(QueryOptions, ComplainAboutUnknownWords) {
  EXPECT_EQ(ComplaintAbout({"--quiet", "ntp", "h"}), "unknown option --quiet");
  EXPECT_EQ(ComplaintAbout({"-", "ntp", "h"}), "unknown option -");
  EXPECT_EQ(ComplaintAbout({"NTP", "h"}), "unknown service NTP");
}

TEST(QueryOptions, ComplainAboutTheNumberOfArguments) {
  EXPECT_EQ(ComplaintAbout({}), "a service and a host are needed");
  EXPECT_EQ(ComplaintAbout({"ntp"}), "a service and a host are needed");
  EXPECT_EQ(ComplaintAbout({"ntp", ""}), "the host has no name");
  EXPECT_EQ(ComplaintAbout({"ntp", "a", "b"}), "too many arguments");
}

}  // namespace
}  // namespace cvl::tools
