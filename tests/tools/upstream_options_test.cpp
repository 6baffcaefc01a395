#include "tools/upstream/upstream_options.h"

#include <gtest/gtest.h>

#include "tools/system/arguments.h"

namespace cvl::tools {
namespace {

/// The complaint about a command line, or "" when there is none.
std::string UpstreamComplaintAbout(const std::vector<std::string> &arguments) {
  try {
    ParseUpstreamOptions(arguments);
  } catch (const UsageError &error) {
    return error.what();
  }
  return "";
}

TEST(UpstreamOptions, DefaultToLoopbackAndPort123) {
  const UpstreamOptions options = ParseUpstreamOptions({});
  EXPECT_EQ(options.What, UpstreamOptions::Task::Serve);
  EXPECT_EQ(options.Listen, (Endpoint{LoopbackAddress, 123}));
  EXPECT_FALSE(options.Log);
  EXPECT_FALSE(options.Control);
}

TEST(UpstreamOptions, TakeAddressPortAndSwitches) {
  const UpstreamOptions options =
      ParseUpstreamOptions({"--address", "0.0.0.0", "--port=0", "--log", "--control"});
  EXPECT_EQ(options.Listen, (Endpoint{0, 0}));
  EXPECT_TRUE(options.Log);
  EXPECT_TRUE(options.Control);
}

TEST(UpstreamOptions, TakeBehaviours) {
  const UpstreamOptions options =
      ParseUpstreamOptions({"--shift", "-1500", "--silent", "--count=2", "--one-byte"});
  EXPECT_EQ(options.Start.ShiftMs, -1500);
  EXPECT_TRUE(options.Start.Silent);
  EXPECT_EQ(options.Start.Count, 2);
  EXPECT_EQ(options.Start.Length, 1U);
}

TEST(UpstreamOptions, HelpAndVersionNeedNothingElse) {
  EXPECT_EQ(ParseUpstreamOptions({"--help"}).What, UpstreamOptions::Task::ShowHelp);
  EXPECT_EQ(ParseUpstreamOptions({"--version", "--nonsense"}).What,
            UpstreamOptions::Task::ShowVersion);
}

TEST(UpstreamOptions, ComplainAboutAnAddressThatIsNone) {
  EXPECT_EQ(UpstreamComplaintAbout({"--address", "localhost"}),
            "--address needs a dotted IPv4 address");
}

TEST(UpstreamOptions, ComplainAboutAPortThatIsNone) {
  EXPECT_EQ(UpstreamComplaintAbout({"--port", "65536"}),
            "--port needs a whole number from 0 to 65535");
  EXPECT_EQ(UpstreamComplaintAbout({"--port", "65535"}), "");
}

TEST(UpstreamOptions, ComplainAboutAMissingValue) {
  for (const char *option :
       {"--address", "--port", "--delay", "--shift", "--echo-bytes", "--repeat", "--length",
        "--fraction", "--seconds", "--from", "--count"}) {
    EXPECT_EQ(UpstreamComplaintAbout({option}), std::string{option} + " needs a value");
  }
}

TEST(UpstreamOptions, ComplainAboutAValueTooMany) {
  for (const char *option :
       {"--log", "--control", "--silent", "--one-byte", "--wrong-echo", "--zero-transmit"}) {
    EXPECT_EQ(UpstreamComplaintAbout({std::string{option} + "=1"}),
              std::string{option} + " takes no value");
  }
}

TEST(UpstreamOptions, ComplainAboutABadBehaviour) {
  EXPECT_EQ(UpstreamComplaintAbout({"--fraction", "12"}),
            "fraction needs eight hexadecimal digits");
  EXPECT_EQ(UpstreamComplaintAbout({"--delay="}), "delay needs a value");
}

TEST(UpstreamOptions, ComplainAboutUnknownWords) {
  EXPECT_EQ(UpstreamComplaintAbout({"--quiet"}), "unknown option --quiet");
  EXPECT_EQ(UpstreamComplaintAbout({"-silent"}), "unknown option -silent");
  EXPECT_EQ(UpstreamComplaintAbout({"--normal"}), "unknown option --normal");
  EXPECT_EQ(UpstreamComplaintAbout({"silent"}), "unexpected argument silent");
}

}  // namespace
}  // namespace cvl::tools
