#include "platform/linux/linux_message_box.h"

#include <gtest/gtest.h>
#include <syslog.h>

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

namespace {

struct Record {
  std::string Name;
  int Facility;
  int Priority;
  std::string Text;
};

std::string OpenName;
int OpenFacility = 0;
std::vector<Record> Records;

}  // namespace

// The system log of this test program: nothing reaches the machine's own.
extern "C" {
void openlog(const char *name, int, int facility) {
  OpenName = name;
  OpenFacility = facility;
}

void closelog() {}

void syslog(int priority, const char *format, ...) {
  char text[1000];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  Records.push_back({OpenName, OpenFacility, priority, text});
}
}

namespace cvl {
namespace {

TEST(LoggedMessageBoxes, SendTheirTextToTheSystemLog) {
  Records.clear();
  LoggedMessageBoxes boxes;
  EXPECT_EQ(boxes.Show(BoxOwner::None, BoxStyle::Ok, "title", "100%s, it says"), BoxAnswer::Ok);
  ASSERT_EQ(Records.size(), 1U);
  EXPECT_EQ(Records[0].Name, "CVLServer");
  EXPECT_EQ(Records[0].Facility, LOG_DAEMON);
  EXPECT_EQ(Records[0].Priority, LOG_INFO);
  EXPECT_EQ(Records[0].Text, "100%s, it says");
}

TEST(LoggedMessageBoxes, AnswerNoToAQuestion) {
  LoggedMessageBoxes boxes;
  EXPECT_EQ(boxes.Show(BoxOwner::MainWindow, BoxStyle::YesNoInformation, "", ""), BoxAnswer::No);
  EXPECT_EQ(boxes.Show(BoxOwner::ConfigurationWindow, BoxStyle::OkExclamation, "", ""),
            BoxAnswer::Ok);
}

}  // namespace
}  // namespace cvl
