#include "platform/linux/linux_resolver.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/epoll_loop.h"
#include "tests/platform/scripted_lookups.h"

namespace cvl {
namespace {

using Found = std::optional<Ipv4Address>;

class LinuxResolverTest : public testing::Test {
 protected:
  /// Asks for NAME and puts what comes back into Answers.
  void LookUp(const std::string &name) {
    Resolver->LookUp(name, [this](Found address) { Answers.push_back(address); });
  }

  /// Runs the loop until COUNT answers are there.
  void AwaitAnswers(std::size_t count) {
    while (Answers.size() < count) {
      RunNextPass();
    }
  }

  /// Waits until the loop has something to do, and lets it.
  void RunNextPass() {
    pollfd watched{static_cast<int>(Loop.Descriptor()), POLLIN, 0};
    poll(&watched, 1, -1);
    Loop.RunOnePass();
  }

  ScriptedLookups System;
  EpollLoop Loop;
  std::optional<LinuxResolver> Resolver{std::in_place, Loop};
  std::vector<Found> Answers;
};

TEST_F(LinuxResolverTest, FindsTheAddressOfLocalhost) {
  LookUp("localhost");
  AwaitAnswers(1);
  EXPECT_EQ(Answers, std::vector<Found>{0x7F000001U});
}

TEST_F(LinuxResolverTest, AnswersAsAnEventAndNeverInsideTheCall) {
  bool inside = true;
  bool answered_inside = false;
  bool answered = false;
  Resolver->LookUp("host", [&](Found) {
    answered_inside = inside;
    answered = true;
  });
  EXPECT_FALSE(answered);
  inside = false;
  while (!answered) {
    RunNextPass();
  }
  EXPECT_FALSE(answered_inside);
}

TEST_F(LinuxResolverTest, AnswersNothingForANameWithoutAnAddress) {
  LookUp("nobody");
  EXPECT_TRUE(Answers.empty());
  AwaitAnswers(1);
  EXPECT_EQ(Answers, std::vector<Found>{std::nullopt});
}

TEST_F(LinuxResolverTest, AsksTheSystemForNoNameWithAZeroInIt) {
  LookUp(std::string("host\0.example", 13));
  AwaitAnswers(1);
  EXPECT_EQ(Answers, std::vector<Found>{std::nullopt});
  EXPECT_EQ(System.Begun(), 0);
}

TEST_F(LinuxResolverTest, AnswersEachWhoAskedForTheSameNameByOneLookup) {
  LookUp("slow");
  LookUp("slow");
  System.AwaitBegun(1);
  LookUp("slow");
  System.Release();
  AwaitAnswers(3);
  EXPECT_EQ(Answers, std::vector<Found>(3, 0xC0000207U));
  EXPECT_EQ(System.Begun(), 1);
}

TEST_F(LinuxResolverTest, LooksANameUpAnewOnceItIsAnswered) {
  LookUp("host");
  AwaitAnswers(1);
  LookUp("host");
  AwaitAnswers(2);
  EXPECT_EQ(System.Begun(), 2);
}

TEST_F(LinuxResolverTest, GoesOnWhileASlowNameIsUnderWay) {
  LookUp("slow");
  System.AwaitBegun(1);
  LookUp("nobody");
  AwaitAnswers(1);
  EXPECT_EQ(Answers, std::vector<Found>{std::nullopt});
  System.Release();
  AwaitAnswers(2);
  EXPECT_EQ(Answers[1], 0xC0000207U);
}

TEST_F(LinuxResolverTest, HasNoAnswerForMoreNamesThanItLooksUpAtATime) {
  const int most = static_cast<int>(LinuxResolver::MostLookups);
  for (int number = 1; number <= most; ++number) {
    LookUp("slow" + std::to_string(number));
  }
  System.AwaitBegun(most);
  LookUp("slow-one-too-many");
  EXPECT_TRUE(Answers.empty());
  AwaitAnswers(1);
  EXPECT_EQ(Answers, std::vector<Found>{std::nullopt});

  System.Release();
  AwaitAnswers(1 + LinuxResolver::MostLookups);
  LookUp("host");  // there is room again
  AwaitAnswers(2 + LinuxResolver::MostLookups);
  EXPECT_EQ(Answers.back(), 0xC0000207U);
}

TEST_F(LinuxResolverTest, MayBeAskedAgainByAnAnswer) {
  Resolver->LookUp("host", [this](Found) { LookUp("host"); });
  AwaitAnswers(1);
  EXPECT_EQ(Answers, std::vector<Found>{0xC0000207U});
  EXPECT_EQ(System.Begun(), 2);
}

TEST_F(LinuxResolverTest, MayEndBeforeItsLookups) {
  LookUp("slow");
  System.AwaitBegun(1);
  Resolver.reset();
  System.Release();
  Loop.RunOnePass();
  EXPECT_TRUE(Answers.empty());
}

}  // namespace
}  // namespace cvl
