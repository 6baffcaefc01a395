#include "net/name_cache.h"

#include "tests/net/fake_net_test.h"

namespace cvl {
namespace {

constexpr Ipv4Address Address = 0x0A000009;

class NameCacheTest : public FakeNetTest {
 protected:
  void Learn(const std::string &name) {
    Layer.Names.LookUp(name, [](std::optional<Ipv4Address>) {});
    Resolver.Tell(name, Address);
  }
};

TEST_F(NameCacheTest, KnowsNumericAddressesWithoutALookup) {
  EXPECT_EQ(Layer.Names.Find("10.0.0.9"), Address);
  EXPECT_TRUE(Resolver.Asked.empty());
}

TEST_F(NameCacheTest, TakesNoHalfAddressForANumericOne) {
  for (const char *text :
       {"", "10.0.0", "10..0.9", "10.0.0.256", "10.0.0.9.", "10.0.0.9 ", "0x0A000009"}) {
    EXPECT_EQ(Layer.Names.Find(text), std::nullopt) << text;
  }
}

TEST_F(NameCacheTest, KeepsAnAnswerForSixtySeconds) {
  Learn("time.example");
  EXPECT_EQ(Layer.Names.Find("time.example"), Address);
  Loop.Advance(59999);
  EXPECT_EQ(Layer.Names.Find("time.example"), Address);
  Loop.Advance(1);
  EXPECT_EQ(Layer.Names.Find("time.example"), std::nullopt);
}

TEST_F(NameCacheTest, ALaterAnswerIsFreshAnew) {
  Learn("time.example");
  Loop.Advance(50000);
  Learn("time.example");
  Loop.Advance(50000);
  EXPECT_EQ(Layer.Names.Find("time.example"), Address);
}

TEST_F(NameCacheTest, KeepsNothingOfANameWithoutAnAddress) {
  std::optional<Ipv4Address> told = Address;
  Layer.Names.LookUp("gone.example", [&](std::optional<Ipv4Address> answer) { told = answer; });
  EXPECT_EQ(Resolver.Tell("gone.example", std::nullopt), 1);
  EXPECT_EQ(told, std::nullopt);
  EXPECT_EQ(Layer.Names.Find("gone.example"), std::nullopt);
}

TEST_F(NameCacheTest, AnswersThatComeTooLateFindNobody) {
  bool told = false;
  {
    NameCache names(Loop, Resolver);
    names.LookUp("time.example", [&](std::optional<Ipv4Address>) { told = true; });
  }
  EXPECT_EQ(Resolver.Tell("time.example", Address), 1);
  EXPECT_FALSE(told);
}

TEST_F(NameCacheTest, DropsTheOldestNameWhenItIsFull) {
  Learn("oldest.example");
  Loop.Advance(1);
  for (std::size_t count = 1; count < NameCache::MostNames; ++count) {
    Learn("name" + std::to_string(count) + ".example");
  }
  EXPECT_EQ(Layer.Names.Find("oldest.example"), Address);
  Loop.Advance(1);
  Learn("newest.example");
  EXPECT_EQ(Layer.Names.Find("oldest.example"), std::nullopt);
  EXPECT_EQ(Layer.Names.Find("newest.example"), Address);
  EXPECT_EQ(Layer.Names.Find("name1.example"), Address);
}

class NameWaitTest : public NameCacheTest {
 protected:
  void Start(const std::string &name, std::int64_t timeout_ms) {
    Wait.Start(name, timeout_ms, [this] { ++Done; });
  }

  NameWait Wait{Loop, Layer.Names};
  int Done = 0;
};

TEST_F(NameWaitTest, EndsWithTheAnswer) {
  Start("time.example", 2000);
  Loop.Drain();
  EXPECT_EQ(Done, 0);
  EXPECT_TRUE(Wait.IsWaiting());
  Resolver.Tell("time.example", Address);
  EXPECT_EQ(Done, 1);
  EXPECT_FALSE(Wait.IsWaiting());
  Loop.Advance(5000);
  EXPECT_EQ(Done, 1);
}

TEST_F(NameWaitTest, EndsAtItsTimeWithoutAnAnswer) {
  Start("time.example", 2000);
  Loop.Advance(1999);
  EXPECT_EQ(Done, 0);
  Loop.Advance(1);
  EXPECT_EQ(Done, 1);
  Resolver.Tell("time.example", Address);
  EXPECT_EQ(Done, 1);
}

TEST_F(NameWaitTest, AnAnswerThatComesTooLateIsKeptAllTheSame) {
  Start("time.example", 2000);
  Loop.Advance(3000);
  Resolver.Tell("time.example", Address);
  EXPECT_EQ(Layer.Names.Find("time.example"), Address);
}

TEST_F(NameWaitTest, WithoutATimeItWaitsForTheAnswerAlone) {
  Start("time.example", 0);
  Loop.Advance(600000);
  EXPECT_EQ(Done, 0);
  Resolver.Tell("time.example", std::nullopt);
  EXPECT_EQ(Done, 1);
}

TEST_F(NameWaitTest, ASecondWaitTakesThePlaceOfTheFirst) {
  Start("first.example", 2000);
  Start("second.example", 2000);
  Resolver.Tell("first.example", Address);
  EXPECT_EQ(Done, 0);
  Resolver.Tell("second.example", Address);
  EXPECT_EQ(Done, 1);
}

TEST_F(NameWaitTest, CancelDropsTheWait) {
  Start("time.example", 2000);
  Wait.Cancel();
  EXPECT_FALSE(Wait.IsWaiting());
  Resolver.Tell("time.example", Address);
  Start("other.example", 0);
  Loop.Advance(5000);
  EXPECT_EQ(Done, 0);
}

TEST_F(NameWaitTest, MayBeStartedAnewWhenItEnds) {
  Wait.Start("first.example", 2000, [this] { Start("second.example", 2000); });
  Resolver.Tell("first.example", Address);
  EXPECT_TRUE(Wait.IsWaiting());
  Resolver.Tell("second.example", Address);
  EXPECT_EQ(Done, 1);
}

}  // namespace
}  // namespace cvl
