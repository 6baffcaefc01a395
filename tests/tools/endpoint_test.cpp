#include "tools/system/endpoint.h"

#include <gtest/gtest.h>

namespace cvl::tools {
namespace {

TEST(Endpoint, IsWrittenWithItsPort) {
  EXPECT_EQ(EndpointText({0xC0A80102, 3777}), "192.168.1.2:3777");
}

TEST(ParseAddress, TakesFourNumbersOnly) {
  EXPECT_EQ(ParseAddress("127.0.0.1"), LoopbackAddress);
  for (const char *text : {"", "127.1", "1.2.3.256", "1.2.3.4.5", "localhost", "1.2.3.4 "}) {
    EXPECT_FALSE(ParseAddress(text)) << text;
  }
}

TEST(ResolveHost, TakesADottedAddress) {
  EXPECT_EQ(ResolveHost("10.1.2.3"), 0x0A010203U);
}

TEST(IsLocalAddress, TellsOurAddressesFromOthers) {
  EXPECT_TRUE(IsLocalAddress(LoopbackAddress));
  EXPECT_TRUE(IsLocalAddress(LoopbackAddress + 1));
  EXPECT_FALSE(IsLocalAddress(0xC0000201));  // 192.0.2.1, an address for examples only
}

}  // namespace
}  // namespace cvl::tools
