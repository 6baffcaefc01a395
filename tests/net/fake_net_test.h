// A socket layer on a network without a kernel, for the tests of this folder.

#pragma once

#include <gtest/gtest.h>

#include <array>

#include "net/socket_layer.h"
#include "tests/support/expect_error.h"
#include "tests/support/fake_network.h"
#include "tests/support/fake_resolver.h"
#include "tests/support/test_loop.h"

namespace cvl {

class FakeNetTest : public testing::Test {
 protected:
  TestLoop Loop;
  FakeNetwork Net{Loop};
  FakeResolver Resolver{Loop};
  SocketLayer Layer{Loop, Net, Resolver};

  const Endpoint Alice = At("10.0.0.1", 40001);
  const Endpoint Bob = At("10.0.0.2", 40002);
};

}  // namespace cvl
