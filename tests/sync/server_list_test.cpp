#include "sync/server_list.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

constexpr const char *Header = "1\n2\n3\n4\n5\n";

class ServerListTest : public testing::Test {
 protected:
  /// Reads a file of five header lines and LINES.
  void ReadLines(const std::string &lines) { ReadFile(Header + lines); }
  void ReadFile(const std::string &bytes) {
    std::istringstream file(bytes);
    Servers.Read(file);
  }

  std::string TextAt(std::int32_t item) const { return Window.Servers.At(item).Text; }
  int ImageAt(std::int32_t item) const { return Window.Servers.At(item).Image; }

  MainWindow Window;
  ServerList Servers{Window};
};

/// COUNT good lines, numbered from 1.
std::string GoodLines(int count) {
  std::string lines;
  for (int number = 1; number <= count; ++number) {
    const std::string n = std::to_string(number);
    lines += "host" + n + ":::Server " + n + " NA:::7:::0\n";
  }
  return lines;
}

TEST_F(ServerListTest, ReadsAServerLine) {
  ReadLines("timehost:::Some Server NA:::7:::0\n");

  ASSERT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(TextAt(1), "Some Server NA");
  EXPECT_EQ(ImageAt(1), 7);
  EXPECT_EQ(Servers.Host(1), "timehost");
  EXPECT_EQ(Servers.Host(0), "");
  EXPECT_EQ(Servers.Host(2), "");
}

TEST_F(ServerListTest, ReadingNeitherSelectsNorChooses) {
  ReadLines(GoodLines(3));

  EXPECT_EQ(Window.Servers.Selected(), 0);
  EXPECT_EQ(Servers.CurrentServer, "");
}

TEST_F(ServerListTest, PassesOverFiveHeaderLinesWhateverTheyHold) {
  ReadFile("a:::b:::1:::\nc:::d:::99:::\n \n:::\ne:::f:::3:::0\nhost:::Text:::3:::\n");

  ASSERT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(Servers.Host(1), "host");
  EXPECT_EQ(Servers.Host(0), "");
}

TEST_F(ServerListTest, StopsAtAnEmptyHeaderLine) {
  ReadFile("1\n2\n\n4\n5\n6\nhost:::Text:::3:::0\n");
  EXPECT_EQ(Window.Servers.Count(), 0);
}

TEST_F(ServerListTest, StopsAtTheFirstEmptyLine) {
  ReadLines("one:::One NA:::1:::0\n\ntwo:::Two NA:::1:::0\n");

  EXPECT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(Servers.Host(2), "");
  EXPECT_EQ(Servers.Host(3), "");
}

TEST_F(ServerListTest, ALineOfOneBlankIsNotEmpty) {
  ReadLines(" \ntwo:::Two NA:::1:::0\n");

  EXPECT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(Servers.Host(2), "two");
}

TEST_F(ServerListTest, AFileOfFewerThanSixLinesHasNoServer) {
  ReadFile("");
  ReadFile("1\n2\n3\n4\n5");
  ReadFile(Header);
  EXPECT_EQ(Window.Servers.Count(), 0);
}

TEST_F(ServerListTest, AnEmptySixthLineLeavesTheListEmpty) {
  ReadLines("\none:::One NA:::1:::0\n");
  EXPECT_EQ(Window.Servers.Count(), 0);
}

TEST_F(ServerListTest, AMalformedLineShiftsItemsAgainstHosts) {
  ReadLines("one:::One NA:::1:::0\nbad:::Bad NA:::2\nthree:::Three NA:::3:::0\n");

  ASSERT_EQ(Window.Servers.Count(), 2);
  EXPECT_EQ(TextAt(2), "Three NA");
  EXPECT_EQ(Servers.Host(1), "one");
  EXPECT_EQ(Servers.Host(2), "");
  EXPECT_EQ(Servers.Host(3), "three");
}

TEST_F(ServerListTest, AMalformedLineLeavesItsSlotAsItWas) {
  ReadLines(GoodLines(3));
  Window.Servers.Clear();
  ReadLines("new1:::New NA:::1:::0\nbad\n");

  EXPECT_EQ(Servers.Host(1), "new1");
  EXPECT_EQ(Servers.Host(2), "host2");
  EXPECT_EQ(Servers.Host(3), "host3");
}

TEST_F(ServerListTest, ReadingAgainAddsToTheBoxAndOverwritesTheHosts) {
  ReadLines(GoodLines(2));
  ReadLines("other:::Other NA:::1:::0\n");

  EXPECT_EQ(Window.Servers.Count(), 3);
  EXPECT_EQ(Servers.Host(1), "other");
  EXPECT_EQ(Servers.Host(2), "host2");
}

TEST_F(ServerListTest, SurplusFieldsStayInTheFourth) {
  ReadLines("host:::Text NA:::4:::a:::b:::c\n");

  ASSERT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(TextAt(1), "Text NA");
  EXPECT_EQ(ImageAt(1), 4);
}

TEST_F(ServerListTest, TheFourthFieldMayBeEmptyButMustBeThere) {
  ReadLines("one:::One NA:::4\ntwo:::Two NA:::4:::\n");

  ASSERT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(TextAt(1), "Two NA");
}

TEST_F(ServerListTest, FourthColonBelongsToTheNextField) {
  ReadLines("host::::Text NA:::4:::0\n");

  ASSERT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(Servers.Host(1), "host");
  EXPECT_EQ(TextAt(1), ":Text NA");
}

TEST_F(ServerListTest, HostAndTextAreStoredAsTheyStand) {
  ReadLines(" time host:123 ::: :::4:::0\n::::::1:::\n");

  EXPECT_EQ(Servers.Host(1), " time host:123 ");
  EXPECT_EQ(TextAt(1), " ");
  EXPECT_EQ(Servers.Host(2), "");
  EXPECT_EQ(TextAt(2), "");
}

TEST_F(ServerListTest, APictureThatIsNoNumberIsTwo) {
  ReadLines("a:::A:::seven:::0\nb:::B::::::0\nc:::C:::7x:::0\nd:::D:::1e999:::0\n");

  ASSERT_EQ(Window.Servers.Count(), 4);
  for (std::int32_t item = 1; item <= 4; ++item) {
    EXPECT_EQ(ImageAt(item), 2) << item;
  }
}

TEST_F(ServerListTest, APictureIsAnyTextThatIsANumber) {
  ReadLines("a:::A::: 7 :::0\nb:::B:::+1e1:::0\nc:::C:::2.5:::0\nd:::D:::3.5:::0\n");

  EXPECT_EQ(ImageAt(1), 7);
  EXPECT_EQ(ImageAt(2), 10);
  EXPECT_EQ(ImageAt(3), 2);
  EXPECT_EQ(ImageAt(4), 4);
}

TEST_F(ServerListTest, APictureOutsideTheTableEndsTheReading) {
  ReadLines("a:::A:::1:::0\nb:::B:::35:::0\n");
  ExpectRuntimeError(380, [&] { ReadLines("a:::A:::36:::0\n"); });
  ExpectRuntimeError(380, [&] { ReadLines("a:::A:::0:::0\n"); });
  ExpectRuntimeError(380, [&] { ReadLines("a:::A:::-1:::0\n"); });
  ExpectRuntimeError(6, [&] { ReadLines("a:::A:::3000000000:::0\n"); });
}

TEST_F(ServerListTest, ALineThatEndsTheReadingLeavesItsSlotAsItWas) {
  ReadLines(GoodLines(1));
  ExpectRuntimeError(380, [&] { ReadLines("bad:::Bad NA:::36:::0\n"); });
  EXPECT_EQ(Servers.Host(1), "host1");
}

TEST_F(ServerListTest, TakesThreeHundredServers) {
  ReadLines(GoodLines(300));

  EXPECT_EQ(Window.Servers.Count(), 300);
  EXPECT_EQ(Servers.Host(300), "host300");
}

TEST_F(ServerListTest, AServerInLine306EndsTheReading) {
  ExpectRuntimeError(9, [&] { ReadLines(GoodLines(301)); });
  EXPECT_EQ(Window.Servers.Count(), 301) << "its item is there, its host is not";
}

TEST_F(ServerListTest, AMalformedLineInLine306IsPassedOver) {
  EXPECT_NO_THROW(ReadLines(GoodLines(300) + "bad\n\n"));
  EXPECT_EQ(Window.Servers.Count(), 300);
}

TEST_F(ServerListTest, ReadsFilesOfEverySystem) {
  ReadFile(
      "\xEF\xBB\xBF"
      "1\r\n2\r\n3\r\n4\r\n5\r\none:::One NA:::1:::0\r\ntwo:::Two EU:::2:::");

  ASSERT_EQ(Window.Servers.Count(), 2);
  EXPECT_EQ(Servers.Host(1), "one");
  EXPECT_EQ(TextAt(2), "Two EU");

  Window.Servers.Clear();
  ReadFile("1\r2\r3\r4\r5\rthree:::Three NA:::1:::0\r");
  ASSERT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(Servers.Host(1), "three");
}

TEST_F(ServerListTest, AMarkBeforeAnEmptyFirstLineLeavesItEmpty) {
  ReadFile("\xEF\xBB\xBF\r\n2\n3\n4\n5\n6\nhost:::Text:::1:::0\n");
  EXPECT_EQ(Window.Servers.Count(), 0);
}

TEST_F(ServerListTest, BytesOfAnyKindPassThrough) {
  const std::string host("h\0st\xE9", 5);
  ReadLines(host + ":::T\xE9xt NA:::1:::0\n");

  EXPECT_EQ(Servers.Host(1), host);
  EXPECT_EQ(TextAt(1), "T\xE9xt NA");
}

TEST_F(ServerListTest, AVeryLongLineIsHarmless) {
  ReadLines("host:::" + std::string(100000, 'x') + ":::1:::0\ntwo:::Two NA:::1:::0\n");

  // What is left of the long line has no four fields any more.
  ASSERT_EQ(Window.Servers.Count(), 1);
  EXPECT_EQ(TextAt(1), "Two NA");
  EXPECT_EQ(Servers.Host(2), "two");
}

TEST_F(ServerListTest, AClickTakesTheHostOfTheItemsNumber) {
  ReadLines(GoodLines(3));
  Window.Servers.OnClick = [&] { Servers.ChooseSelected(); };

  Window.Servers.Choose(2);

  EXPECT_EQ(Servers.CurrentServer, "host2");
}

TEST_F(ServerListTest, AClickOnAShiftedItemTakesTheHostOfTheLineBefore) {
  ReadLines("one:::One NA:::1:::0\nbad\nthree:::Three NA:::3:::0\n");
  Window.Servers.OnClick = [&] { Servers.ChooseSelected(); };
  Window.Servers.Choose(1);

  Window.Servers.Choose(2);

  EXPECT_EQ(Servers.CurrentServer, "");
}

TEST_F(ServerListTest, AClickWithNothingSelectedIsPassedOver) {
  Servers.CurrentServer = "host";
  Servers.ChooseSelected();
  EXPECT_EQ(Servers.CurrentServer, "host");
}

TEST_F(ServerListTest, SelectingFromCodeChoosesNothing) {
  ReadLines(GoodLines(2));
  Window.Servers.OnClick = [&] { Servers.ChooseSelected(); };

  Window.Servers.Select(1);

  EXPECT_EQ(Servers.CurrentServer, "");
}

TEST_F(ServerListTest, HostsBeyondTheTableRaise9) {
  EXPECT_NO_THROW(Servers.Host(300));
  ExpectRuntimeError(9, [&] { return Servers.Host(301); });
  ExpectRuntimeError(9, [&] { return Servers.Host(-1); });
}

}  // namespace
}  // namespace cvl
