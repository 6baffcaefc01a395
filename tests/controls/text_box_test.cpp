#include "controls/text_box.h"

#include <gtest/gtest.h>

#include <string>

namespace cvl {
namespace {

/// A box that counts its changes.
struct CountedBox {
  explicit CountedBox(std::string text, std::size_t max_length = 0)
      : Box(std::move(text), max_length) {
    Box.OnChange = [this] { ++Changes; };
  }

  TextBox Box;
  int Changes = 0;
};

TEST(TextBox, HoldsItsFirstText) {
  const TextBox box("123", 5);
  EXPECT_EQ(box.Text(), "123");
  EXPECT_EQ(box.MaxLength(), 5U);
}

TEST(TextBox, ChangesOnlyWhenItsTextDoes) {
  CountedBox counted("123");
  counted.Box.SetText("123");
  EXPECT_EQ(counted.Changes, 0);
  counted.Box.SetText("124");
  EXPECT_EQ(counted.Changes, 1);
  counted.Box.SetText("");
  EXPECT_EQ(counted.Changes, 2);
  counted.Box.SetText("");
  EXPECT_EQ(counted.Changes, 2);
}

TEST(TextBox, HasItsNewTextWhenItChanges) {
  TextBox box;
  std::string seen;
  box.OnChange = [&] { seen = box.Text(); };
  box.SetText("59");
  EXPECT_EQ(seen, "59");
}

TEST(TextBox, CutsTextAtItsLimit) {
  CountedBox counted("", 5);
  counted.Box.SetText("12345");
  EXPECT_EQ(counted.Box.Text(), "12345");
  counted.Box.SetText("678901");
  EXPECT_EQ(counted.Box.Text(), "67890");
  EXPECT_EQ(counted.Changes, 2);
}

TEST(TextBox, ComparesWhatIsLeftAfterTheCut) {
  CountedBox counted("12345", 5);
  counted.Box.SetText("123456");
  EXPECT_EQ(counted.Changes, 0);
  counted.Box.SetText("12346");
  EXPECT_EQ(counted.Changes, 1);
}

TEST(TextBox, HasNoLimitWhenItsLimitIsZero) {
  CountedBox counted("");
  const std::string text(100000, 'x');
  counted.Box.SetText(text);
  EXPECT_EQ(counted.Box.Text(), text);
}

TEST(TextBox, ShowsAnAddressAsItsText) {
  CountedBox counted("None");
  counted.Box.SetAddress(0x0A000007);
  EXPECT_EQ(counted.Box.Text(), "10.0.0.7");
  counted.Box.SetAddress(0x0A000007);
  EXPECT_EQ(counted.Changes, 1);
  counted.Box.SetAddress(0x0A000008);
  counted.Box.SetAddress(std::nullopt);
  EXPECT_EQ(counted.Box.Text(), "");
  EXPECT_EQ(counted.Changes, 3);
}

TEST(TextBox, ComparesAnAddressWithAText) {
  CountedBox counted("10.0.0.7");
  counted.Box.SetAddress(0x0A000007);
  EXPECT_EQ(counted.Changes, 0);
  counted.Box.SetText("10.0.0.7");
  EXPECT_EQ(counted.Changes, 0);
  counted.Box.SetText("10054");
  EXPECT_EQ(counted.Changes, 1);
  counted.Box.SetAddress(0x0A000007);
  EXPECT_EQ(counted.Changes, 2);
  EXPECT_EQ(counted.Box.Text(), "10.0.0.7");
}

TEST(TextBox, TakesAPartOfItsOwnText) {
  CountedBox counted("12345");
  counted.Box.SetText(std::string_view(counted.Box.Text()).substr(1, 3));
  EXPECT_EQ(counted.Box.Text(), "234");
}

TEST(TextBox, PassesOnKeysAndKeepsItsText) {
  CountedBox counted("123");
  int pressed = 0;
  counted.Box.Press(EnterKey);  // nobody listens yet
  counted.Box.OnKeyPress = [&](int key) { pressed = key; };
  counted.Box.Press(EnterKey);
  EXPECT_EQ(pressed, 13);
  EXPECT_EQ(counted.Box.Text(), "123");
  EXPECT_EQ(counted.Changes, 0);
}

}  // namespace
}  // namespace cvl
