#include "host/terminal_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cvl {

namespace {

using testing::HasSubstr;
using testing::Not;
using Condition = PortState::Condition;

TerminalFacts Facts() {
  return {.Version = "5.1.1",
          .ProgramDirectory = "/srv/time",
          .Ports = {{"Time", "TCP", "37", Condition::Open, 0},
                    {"NTP", "TCP", "123", Condition::Open, 0},
                    {"NTP", "UDP", "123", Condition::Failed, error_number::AddressInUse},
                    {"Daytime", "TCP", "13", Condition::Failed, error_number::AccessDenied},
                    {"Unix time", "UDP", "519", Condition::Off, 0}},
          .MissingServerFile = "",
          .SettingsObstacle = "",
          .CommandTail = ""};
}

TEST(TerminalReport, TellsWhatRunsWhereAndOnWhichPorts) {
  EXPECT_EQ(TerminalReport(Facts()),
            "Chronvale Server 5.1.1 runs in /srv/time\n"
            "  open:     Time TCP 37, NTP TCP 123\n"
            "  not open: NTP UDP 123: the port is in use\n"
            "  not open: Daytime TCP 13: a port below 1024, and no right to take it\n"
            "  off:      Unix time UDP 519\n");
}

TEST(TerminalReport, TellsWhatKeptTheServerFromItsFiles) {
  TerminalFacts facts = Facts();
  facts.Ports.clear();
  facts.MissingServerFile = "/srv/time/QRB_CVLS4.CVL";
  facts.SettingsObstacle = "/srv/time/registry.reg: Permission denied";
  EXPECT_EQ(TerminalReport(facts),
            "Chronvale Server 5.1.1 runs in /srv/time\n"
            "  servers:  there is no /srv/time/QRB_CVLS4.CVL; the maker is asked for one\n"
            "  settings: /srv/time/registry.reg: Permission denied\n"
            "  open:     no port\n");
}

TEST(TerminalReport, AddsTheSwitchesForAFirstWordThatIsNone) {
  TerminalFacts facts = Facts();
  const std::string without = TerminalReport(facts);
  facts.CommandTail = "--halp -install";
  const std::string with = TerminalReport(facts);
  EXPECT_EQ(with.substr(0, without.size()), without);
  EXPECT_THAT(with, HasSubstr("\"--halp\" is not a switch"));
  for (const char *word :
       {"-install ", "-uninstall ", "-config ", "-debug ", "-rs ", "--help ", "--version "}) {
    EXPECT_THAT(with, HasSubstr(std::string("\n  ") + word));
  }
}

TEST(TerminalReport, AddsThemForNoSwitchOfItsOwn) {
  TerminalFacts facts = Facts();
  const std::string without = TerminalReport(facts);
  for (const char *tail : {"-rs", "-config extra words", "-debug"}) {
    facts.CommandTail = tail;
    EXPECT_EQ(TerminalReport(facts), without) << tail;
  }
}

TEST(TerminalReport, TakesTheFirstWordWithItsCaseAndItsBlanks) {
  TerminalFacts facts = Facts();
  for (const char *tail : {"-RS", "-Debug", " -rs", "extra -install"}) {
    facts.CommandTail = tail;
    EXPECT_THAT(TerminalReport(facts), HasSubstr("is not a switch")) << tail;
  }
}

}  // namespace

}  // namespace cvl
