#include "platform/intrusive_list.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace cvl {
namespace {

struct FirstTag;
struct SecondTag;

struct Member : ListLink<FirstTag>, ListLink<SecondTag> {
  explicit Member(char name) : Name(name) {}
  char Name;
};

using First = IntrusiveList<Member, FirstTag>;
using Second = IntrusiveList<Member, SecondTag>;

template <class List>
std::string Drained(List &list) {
  std::string names;
  while (const Member *member = list.PopFront()) {
    names += member->Name;
  }
  return names;
}

class IntrusiveListTest : public testing::Test {
 protected:
  bool IsInFirst(const Member &member) {
    return static_cast<const ListLink<FirstTag> &>(member).IsLinked();
  }
  void TakeOutOfFirst(Member &member) { static_cast<ListLink<FirstTag> &>(member).Unlink(); }

  Member A{'a'};
  Member B{'b'};
  Member C{'c'};
  First List;
};

TEST_F(IntrusiveListTest, IsEmptyAtFirst) {
  EXPECT_TRUE(List.IsEmpty());
  EXPECT_EQ(List.PopFront(), nullptr);
  EXPECT_FALSE(IsInFirst(A));
}

TEST_F(IntrusiveListTest, GivesItsMembersInTheOrderInWhichTheyCame) {
  List.PushBack(A);
  List.PushBack(B);
  List.PushBack(C);
  EXPECT_TRUE(IsInFirst(A));
  EXPECT_FALSE(List.IsEmpty());
  EXPECT_EQ(Drained(List), "abc");
  EXPECT_TRUE(List.IsEmpty());
  EXPECT_FALSE(IsInFirst(A));
}

TEST_F(IntrusiveListTest, HasAMemberOnceHoweverOftenItIsAdded) {
  List.PushBack(A);
  List.PushBack(B);
  List.PushBack(A);
  EXPECT_EQ(Drained(List), "ba");
}

TEST_F(IntrusiveListTest, LosesAMemberThatIsUnlinked) {
  List.PushBack(A);
  List.PushBack(B);
  List.PushBack(C);
  TakeOutOfFirst(B);
  TakeOutOfFirst(B);
  EXPECT_FALSE(IsInFirst(B));
  EXPECT_EQ(Drained(List), "ac");
}

TEST_F(IntrusiveListTest, LosesAMemberThatIsDestroyed) {
  std::optional<Member> passing;
  passing.emplace('x');
  List.PushBack(A);
  List.PushBack(*passing);
  List.PushBack(B);
  passing.reset();
  EXPECT_EQ(Drained(List), "ab");
}

TEST_F(IntrusiveListTest, MovesAMemberOfAnotherListOver) {
  First other;
  other.PushBack(A);
  other.PushBack(B);
  List.PushBack(A);
  EXPECT_EQ(Drained(List), "a");
  EXPECT_EQ(Drained(other), "b");
}

TEST_F(IntrusiveListTest, KeepsLinksOfDifferentTagsApart) {
  Second other;
  List.PushBack(A);
  other.PushBack(A);
  other.PushBack(B);
  TakeOutOfFirst(A);
  EXPECT_EQ(Drained(other), "ab");
  EXPECT_TRUE(List.IsEmpty());
}

TEST_F(IntrusiveListTest, TakesAllOfAnotherToItsEnd) {
  First other;
  List.PushBack(A);
  other.PushBack(B);
  other.PushBack(C);
  List.TakeAll(other);
  EXPECT_TRUE(other.IsEmpty());
  EXPECT_EQ(Drained(List), "abc");
  List.TakeAll(other);
  EXPECT_TRUE(List.IsEmpty());
  other.PushBack(A);
  List.TakeAll(other);
  TakeOutOfFirst(A);
  EXPECT_TRUE(List.IsEmpty());
}

TEST_F(IntrusiveListTest, MayEndBeforeItsMembers) {
  {
    First passing;
    passing.PushBack(A);
    passing.PushBack(B);
  }
  List.PushBack(B);
  List.PushBack(A);
  EXPECT_EQ(Drained(List), "ba");
}

}  // namespace
}  // namespace cvl
