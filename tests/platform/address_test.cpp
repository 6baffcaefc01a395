#include "platform/address.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace cvl {
namespace {

using namespace std::string_view_literals;

TEST(AddressText, WritesFourNumbersWithoutLeadingZeros) {
  EXPECT_EQ(AddressText(0), "0.0.0.0");
  EXPECT_EQ(AddressText(0x7F000001), "127.0.0.1");
  EXPECT_EQ(AddressText(0x0A4D0002), "10.77.0.2");
  EXPECT_EQ(AddressText(0x09630A64), "9.99.10.100");
  EXPECT_EQ(AddressText(0xFFFFFFFF), "255.255.255.255");
}

TEST(ParseAddress, ReadsBackWhatAddressTextWrites) {
  for (unsigned octet = 0; octet <= 255; ++octet) {
    const Ipv4Address address = octet << 24 | (255 - octet) << 16 | (octet ^ 0x55) << 8 | octet;
    EXPECT_EQ(ParseAddress(AddressText(address)), address);
  }
}

TEST(ParseAddress, TakesLeadingZerosAsDecimal) {
  EXPECT_EQ(ParseAddress("010.001.000.008"), 0x0A010008U);
}

TEST(ParseAddress, EndsEachNumberAt255) {
  EXPECT_EQ(ParseAddress("255.255.255.255"), 0xFFFFFFFFU);
  EXPECT_EQ(ParseAddress("256.0.0.1"), std::nullopt);
  EXPECT_EQ(ParseAddress("0.0.0.256"), std::nullopt);
  EXPECT_EQ(ParseAddress("0.999.0.0"), std::nullopt);
  EXPECT_EQ(ParseAddress("0.0.0.0001"), std::nullopt);
}

TEST(ParseAddress, RefusesEveryOtherText) {
  for (const std::string_view text :
       {""sv,         "."sv,          "..."sv,         "1.2.3"sv,     "1.2.3."sv,     ".1.2.3"sv,
        "1..2.3"sv,   "1.2.3.4."sv,   "1.2.3.4.5"sv,   "1.2.3.4 "sv,  " 1.2.3.4"sv,   "1 .2.3.4"sv,
        "1.2.3.-4"sv, "+1.2.3.4"sv,   "1,2,3,4"sv,     "localhost"sv, "0x7F.0.0.1"sv, "1.2.3.4\0"sv,
        "127.1"sv,    "2130706433"sv, "1.2.3.4:123"sv, "1.2.3.4/8"sv, "1.2.3.a"sv,    "::1"sv,
        "1.2.3.4\n"sv}) {
    EXPECT_EQ(ParseAddress(text), std::nullopt) << text;
  }
  EXPECT_EQ(ParseAddress("1.2.3.4"), 0x01020304U);
}

TEST(ParseAddress, ReadsNoFurtherThanItsText) {
  EXPECT_EQ(ParseAddress("10.77.0.12"sv.substr(0, 9)), 0x0A4D0001U);
  EXPECT_EQ(ParseAddress("10.77.0.12"sv.substr(0, 8)), std::nullopt);
}

}  // namespace
}  // namespace cvl
