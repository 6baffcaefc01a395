// The machine's own address, in networks made for the purpose.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/linux/linux_network.h"
#include "tests/support/net_namespace.h"

namespace cvl {
namespace {

void Ip(const std::string &arguments) {
  ASSERT_EQ(std::system(("ip " + arguments).c_str()), 0) << arguments;
}

std::string OwnAddress() {
  LinuxNetwork network;
  return AddressText(network.LocalAddress());
}

TEST(LocalAddress, IsLoopbackWhereThereIsNothingElse) {
  ExpectInNetworkNamespace([] { EXPECT_EQ(OwnAddress(), "127.0.0.1"); });
}

TEST(LocalAddress, IsThatOfTheInterfaceThatIsUp) {
  ExpectInNetworkNamespace([] {
    Ip("link add one type veth peer name other");
    Ip("address add 10.77.0.1/24 dev one");
    EXPECT_EQ(OwnAddress(), "127.0.0.1");
    Ip("link set one up");
    EXPECT_EQ(OwnAddress(), "10.77.0.1");
    Ip("link set one down");
    EXPECT_EQ(OwnAddress(), "127.0.0.1");
  });
}

TEST(LocalAddress, IsTheFirstOfSeveral) {
  ExpectInNetworkNamespace([] {
    Ip("link add one index 11 type veth peer name other index 12");
    Ip("address add 10.77.0.1/24 dev one");
    Ip("address add 10.77.0.9/24 dev one");
    Ip("address add 10.78.0.1/24 dev other");
    Ip("link set one up");
    Ip("link set other up");
    EXPECT_EQ(OwnAddress(), "10.77.0.1");
    Ip("link set one down");
    EXPECT_EQ(OwnAddress(), "10.78.0.1");
  });
}

}  // namespace
}  // namespace cvl
