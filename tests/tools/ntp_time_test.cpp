#include "tools/wire/ntp_time.h"

#include <gtest/gtest.h>

namespace cvl::tools {
namespace {

TEST(NtpTimeOf, CountsFrom1900WithAllBitsOfTheFraction) {
  EXPECT_EQ(NtpTimeOf(0x3D9C3140, 250'000'000), (NtpTime{0xC146AFC0, 0x40000000}));
  EXPECT_EQ(NtpTimeOf(0x3D9C3140, 1), (NtpTime{0xC146AFC0, 4}));
  EXPECT_EQ(NtpTimeOf(0x3D9C3140, 999'999'999), (NtpTime{0xC146AFC0, 0xFFFFFFFB}));
}

TEST(Shifted, MovesBothWays) {
  const NtpTime moment{100, 0x80000000};
  EXPECT_EQ(Shifted(moment, 1250), (NtpTime{101, 0xC0000000}));
  EXPECT_EQ(Shifted(moment, -750), (NtpTime{99, 0xC0000000}));
  EXPECT_EQ(Shifted(moment, -1000), (NtpTime{99, 0x80000000}));
  EXPECT_EQ(Shifted(moment, 0), moment);
}

TEST(Shifted, WrapsAtTheEndOfTheEra) {
  EXPECT_EQ(Shifted({0xFFFFFFFF, 0x80000000}, 500), (NtpTime{0, 0}));
  EXPECT_EQ(Shifted({0, 0}, -500), (NtpTime{0xFFFFFFFF, 0x80000000}));
}

TEST(SecondsBetween, IsNegativeForAnEarlierMoment) {
  EXPECT_DOUBLE_EQ(SecondsBetween({100, 0}, {101, 0x80000000}), 1.5);
  EXPECT_DOUBLE_EQ(SecondsBetween({101, 0x80000000}, {100, 0}), -1.5);
}

TEST(SecondsBetween, CrossesTheEndOfTheEra) {
  EXPECT_DOUBLE_EQ(SecondsBetween({0xFFFFFFFF, 0}, {1, 0}), 2.0);
}

TEST(TimeText, CallsAllZeroNone) {
  EXPECT_EQ(TimeText({}), "none");
  EXPECT_EQ(TimeText({0xC146AFC0, 0x40000000}), "2002-10-03 12:00:00.250000 UTC");
}

TEST(ReadNtpTime, ReadsWhatWriteNtpTimeWrote) {
  Bytes bytes(10);
  WriteNtpTime(bytes, 1, {0x01020304, 0x05060708});
  EXPECT_EQ(bytes, (Bytes{0, 1, 2, 3, 4, 5, 6, 7, 8, 0}));
  EXPECT_EQ(ReadNtpTime(bytes, 1), (NtpTime{0x01020304, 0x05060708}));
}

}  // namespace
}  // namespace cvl::tools
