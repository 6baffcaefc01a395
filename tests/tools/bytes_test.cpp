#include "tools/wire/bytes.h"

#include <gtest/gtest.h>

namespace cvl::tools {
namespace {

TEST(Bytes, Big32TakesTheMostSignificantByteFirst) {
  EXPECT_EQ(Big32(Bytes{0xFF, 0xC1, 0x46, 0xAF, 0xC0}, 1), 0xC146AFC0U);
}

TEST(Bytes, Little32TakesTheLeastSignificantByteFirst) {
  EXPECT_EQ(Little32(Bytes{0xFF, 0x0A, 0x0B, 0x0C, 0x40}, 1), 0x400C0B0AU);
}

TEST(Bytes, PutBig32IsReadBackByBig32) {
  Bytes bytes(6);
  PutBig32(bytes, 2, 0x01020304);
  EXPECT_EQ(bytes, (Bytes{0, 0, 1, 2, 3, 4}));
}

TEST(Hex, HasTwoDigitsForEachByte) {
  EXPECT_EQ(Hex(Bytes{0x00, 0x0F, 0xA5}), "000fa5");
  EXPECT_EQ(Hex(Bytes{}), "");
}

TEST(HexDump, BeginsALineAfterSixteenBytes) {
  Bytes bytes(17);
  bytes[16] = 0xEE;
  EXPECT_EQ(HexDump(bytes),
            "     0  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n"
            "    16  ee\n");
}

TEST(HexDump, ShowsThatThereIsNothing) {
  EXPECT_EQ(HexDump(Bytes{}), "  (empty)\n");
}

TEST(HexDump, CountsWhatItLeavesOut) {
  EXPECT_EQ(HexDump(Bytes(1024)).find("more"), std::string::npos);
  EXPECT_TRUE(HexDump(Bytes(1027)).ends_with("\n  and 3 bytes more\n"));
}

TEST(Printable, EscapesWhatATerminalCouldObey) {
  EXPECT_EQ(Printable(Bytes{'a', ' ', '~', '\\', 0x1B, '\n', 0x7F, 0xE9}),
            "a ~\\\\\\x1b\\x0a\\x7f\\xe9");
}

}  // namespace
}  // namespace cvl::tools
