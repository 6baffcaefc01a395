#include "sync/server_draw.h"

#include <array>
#include <set>

#include "tests/sync/sync_bench.h"

namespace cvl {
namespace {

using testing::UnorderedElementsAre;

constexpr std::int64_t DayMs = 86400000;

class ServerDrawTest : public SyncTest {
 protected:
  /// Puts the clock to a moment of the day.
  void StandAt(std::int64_t ms_of_day) {
    Clock.UtcMs = UtcMsOf(DateTime::Of(2002, 10, 3)) + ms_of_day;
  }

  /// The host drawn at a moment of the day.
  std::string DrawnAt(std::int64_t ms_of_day) {
    StandAt(ms_of_day);
    Draw.GrabRandom();
    return Servers.CurrentServer;
  }
};

TEST_F(ServerDrawTest, ARegionHasTheItemsWhoseTextEndsInItsCode) {
  ReadLines(
      "a:::Alpha NA:::1:::0\nb:::Beta EU:::1:::0\nc:::NA:::1:::0\nd:::NA Delta:::1:::0\n"
      "e:::Epsilonna:::1:::0\nf:::Zeta nA:::1:::0\ng:::Eta NA :::1:::0\n");
  EXPECT_EQ(Draw.RegionCount(), 2);

  State.RegionCode = "EU";
  Draw.CalcRandR();
  EXPECT_EQ(Draw.RegionCount(), 1);

  State.RegionCode = "XX";
  Draw.CalcRandR();
  EXPECT_EQ(Draw.RegionCount(), 0);
}

TEST_F(ServerDrawTest, ATextShorterThanTwoCharactersIsOfNoRegion) {
  for (const char *code : {"", "N", "NA"}) {
    State.RegionCode = code;
    Window.Servers.Clear();
    ReadLines("a:::N:::1:::0\nb::::::1:::0\n");
    EXPECT_EQ(Draw.RegionCount(), 0) << '"' << code << '"';
  }
}

TEST_F(ServerDrawTest, ACodeOfAnotherLengthMatchesNothing) {
  for (const char *code : {"", "A", " NA"}) {
    State.RegionCode = code;
    Window.Servers.Clear();
    ReadLines("a:::Alpha NA:::1:::0\n");
    EXPECT_EQ(Draw.RegionCount(), 0) << '"' << code << '"';
  }
}

TEST_F(ServerDrawTest, ARegionOfMoreThanThreeHundredRaises9) {
  for (int item = 1; item <= 300; ++item) {
    Window.Servers.Add("Server NA", 1);
  }
  EXPECT_NO_THROW(Draw.CalcRandR());
  EXPECT_EQ(Draw.RegionCount(), 300);

  Window.Servers.Add("Elsewhere EU", 1);
  EXPECT_NO_THROW(Draw.CalcRandR());

  Window.Servers.Add("Server NA", 1);
  ExpectRuntimeError(9, [&] { Draw.CalcRandR(); });
}

TEST_F(ServerDrawTest, ADrawChoosesTheHostAndSelectsTheItem) {
  AddServer("a", "Alpha EU");
  AddServer("b", "Beta NA");

  Draw.GrabRandom();

  EXPECT_EQ(Draw.ServerIndex(), 2);
  EXPECT_EQ(Servers.CurrentServer, "b");
  EXPECT_EQ(Window.Servers.Selected(), 2);
}

TEST_F(ServerDrawTest, ADrawRaisesNoClickOfTheBox) {
  AddServers(2);
  Window.Servers.OnClick = [] { ADD_FAILURE() << "clicked"; };
  Draw.GrabRandom();
}

TEST_F(ServerDrawTest, ARegionOfOneServerAlwaysYieldsIt) {
  AddServer("a", "Alpha EU");
  AddServer("b", "Beta NA");
  for (std::int64_t ms = 0; ms < DayMs; ms += 9973) {
    ASSERT_EQ(DrawnAt(ms), "b") << ms;
  }
}

TEST_F(ServerDrawTest, ADrawComesFromTheTimeOfDayAlone) {
  AddServers(10);
  struct Row {
    std::int64_t MsOfDay;
    const char *Host;
  };
  // The generator's states behind these moments are 0x395886, 0x072886, 0x229186, 0xEAB986,
  // 0x994486 and 0xD7DF86, in parts of 2^24.
  for (const Row &row :
       {Row{0, "10.0.0.3"}, Row{1, "10.0.0.1"}, Row{43200250, "10.0.0.2"},
        Row{43200251, "10.0.0.9"}, Row{43200252, "10.0.0.6"}, Row{86399998, "10.0.0.9"}}) {
    EXPECT_EQ(DrawnAt(row.MsOfDay), row.Host) << row.MsOfDay;
    Clock.UtcMs += 17 * DayMs;
    Draw.GrabRandom();
    EXPECT_EQ(Servers.CurrentServer, row.Host) << row.MsOfDay << " on another day";
  }
}

TEST_F(ServerDrawTest, TwoDrawsOfOneMillisecondAreEqual) {
  AddServers(10);
  const std::string first = DrawnAt(43200250);
  EXPECT_EQ(DrawnAt(43200250), first);
}

TEST_F(ServerDrawTest, TheFirstAndTheLastServerGetHalfTheChanceOfTheOthers) {
  AddServers(5);
  std::array<int, 6> drawn{};
  constexpr std::int64_t Stride = 97;  // enough of the day's milliseconds, spread evenly
  for (std::int64_t ms = 0; ms < DayMs; ms += Stride) {
    StandAt(ms);
    Draw.GrabRandom();
    ++drawn[static_cast<std::size_t>(Draw.ServerIndex())];
  }
  const double all = static_cast<double>(DayMs) / Stride;
  EXPECT_EQ(drawn[0], 0);
  EXPECT_NEAR(drawn[1] / all, 0.125, 0.002);
  EXPECT_NEAR(drawn[2] / all, 0.25, 0.002);
  EXPECT_NEAR(drawn[3] / all, 0.25, 0.002);
  EXPECT_NEAR(drawn[4] / all, 0.25, 0.002);
  EXPECT_NEAR(drawn[5] / all, 0.125, 0.002);
}

TEST_F(ServerDrawTest, OfTwoServersEachIsDrawnHalfTheTime) {
  AddServers(2);
  int first = 0;
  int draws = 0;
  for (std::int64_t ms = 0; ms < DayMs; ms += 997) {
    first += DrawnAt(ms) == "10.0.0.1" ? 1 : 0;
    ++draws;
  }
  EXPECT_NEAR(static_cast<double>(first) / draws, 0.5, 0.005);
}

TEST_F(ServerDrawTest, EveryServerOfALargeRegionCanBeDrawn) {
  for (int number = 1; number <= 300; ++number) {
    Window.Servers.Add("Server NA", 1);
  }
  Draw.CalcRandR();
  std::set<std::int32_t> drawn;
  for (std::int64_t ms = 0; ms < DayMs; ms += 997) {
    StandAt(ms);
    Draw.GrabRandom();
    drawn.insert(Draw.ServerIndex());
  }
  EXPECT_EQ(drawn.size(), 300U);
  EXPECT_EQ(*drawn.begin(), 1);
  EXPECT_EQ(*drawn.rbegin(), 300);
}

TEST_F(ServerDrawTest, WithoutAServerOfTheRegionCurrentServerBecomesEmpty) {
  AddServer("a", "Alpha EU");
  for (std::int64_t ms = 0; ms < DayMs; ms += 99991) {
    Servers.CurrentServer = "old";
    ASSERT_EQ(DrawnAt(ms), "") << ms;
    ASSERT_EQ(Draw.ServerIndex(), 0) << ms;
    ASSERT_EQ(Window.Servers.Selected(), 1) << ms;
  }
}

TEST_F(ServerDrawTest, ARegionWithoutServersMayDrawTheFirstOfTheRegionBefore) {
  AddServer("a", "Alpha EU");
  AddServer("b", "Beta NA");
  AddServer("c", "Gamma NA");
  State.RegionCode = "XX";
  Draw.CalcRandR();
  ASSERT_EQ(Draw.RegionCount(), 0);

  std::set<std::string> drawn;
  for (std::int64_t ms = 0; ms < DayMs; ms += 99991) {
    drawn.insert(DrawnAt(ms));
  }
  // A draw above one half comes to no slot, any other to the first, which was left over.
  EXPECT_THAT(drawn, UnorderedElementsAre("", "b"));
  EXPECT_EQ(DrawnAt(43200250), "b");  // 0.135
  EXPECT_EQ(DrawnAt(43200251), "");   // 0.917
}

TEST_F(ServerDrawTest, ASmallerRegionDrawsNoneOfThePlacesLeftOver) {
  AddServers(8);
  AddServer("eu", "Alpha EU");
  State.RegionCode = "EU";
  Draw.CalcRandR();
  for (std::int64_t ms = 0; ms < DayMs; ms += 99991) {
    ASSERT_EQ(DrawnAt(ms), "eu") << ms;
  }
}

TEST_F(ServerDrawTest, AnItemThatIsGoneLeavesTheSelectionButGivesItsHost) {
  AddServer("a", "Alpha EU");
  AddServer("b", "Beta NA");
  Window.Servers.Clear();
  Window.Servers.Add("Only EU", 1);
  Window.Servers.Select(1);

  Draw.GrabRandom();

  EXPECT_EQ(Servers.CurrentServer, "b");
  EXPECT_EQ(Window.Servers.Selected(), 1);
}

TEST_F(ServerDrawTest, ChangingTheRegionLeavesCurrentServerUntilTheNextDraw) {
  AddServer("a", "Alpha EU");
  AddServer("b", "Beta NA");
  Draw.GrabRandom();
  State.RegionCode = "EU";

  Draw.CalcRandR();
  EXPECT_EQ(Servers.CurrentServer, "b");

  Draw.GrabRandom();
  EXPECT_EQ(Servers.CurrentServer, "a");
}

TEST_F(ServerDrawTest, ChoosingARegionTakesTheFirstTwoLettersOfItsEntry) {
  AddServer("a", "Alpha EU");
  AddServer("b", "Beta NA");
  Draw.GrabRandom();

  Draw.ChooseRegion("EU - Europe [UK, Spain, Italy, France]");
  EXPECT_EQ(State.RegionCode, "EU");
  EXPECT_EQ(Draw.RegionCount(), 1);
  EXPECT_EQ(Servers.CurrentServer, "b") << "stays until the next draw";

  Draw.ChooseRegion("E");
  EXPECT_EQ(State.RegionCode, "E");
  EXPECT_EQ(Draw.RegionCount(), 0);
}

}  // namespace
}  // namespace cvl
