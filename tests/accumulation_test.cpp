#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Akum/KV_Akum.h"
#include "m_Bauwerke/filled_tables.h"
#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/filled_tables.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/filled_tables.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_System/m_System.h"
#include "runtime/array.h"
#include "runtime/units.h"
#include "tests/german.h"
#include "tests/test_files.h"
#include "tests/variant_files.h"

namespace {

using KV_Akum::AccumulateAreas;
using testing::ElementsAre;
using variant_files::fill_system_logic;
using variant_files::Lines;
using variant_files::Network;
using variant_files::written_lines;

constexpr std::size_t header_lines = 6;

struct Source {
  float area;
  float sealing = 0.0F;
};

struct Branching {
  std::int32_t code;
  float share;
};

class AccumulationTest : public testing::Test {
 protected:
  static void fill_sources(std::initializer_list<Source> sources) {
    ASSERT_EQ(m_Einleiter::AllocateSourceTables(), 0);
    std::int32_t s = 0;
    for (const Source& source : sources) {
      ++s;
      m_Einleiter::filled_tables.area.at(s) = source.area;
      m_Einleiter::filled_tables.sealing.at(s) = source.sealing;
    }
  }

  static void fill_branchings(std::initializer_list<Branching> branchings) {
    ASSERT_EQ(m_Bauwerke::AllocateBranchingTables(), 0);
    std::int32_t b = 0;
    for (const Branching& branching : branchings) {
      ++b;
      m_Bauwerke::filled_tables.code.at(b) = branching.code;
      m_Bauwerke::filled_tables.share.at(b) = branching.share;
    }
  }

  static void fill_stations(std::initializer_list<float> stations) {
    ASSERT_EQ(m_Gerinne::AllocateReachTables(), 0);
    std::int32_t r = 0;
    for (const float station : stations) m_Gerinne::filled_tables.station_value.at(++r) = station;
  }

  // The lines of the reaches.
  static Lines accumulated() {
    AccumulateAreas("v");
    Lines lines = written_lines("v.Akum");
    lines.erase(lines.begin(), lines.begin() + header_lines);
    return lines;
  }

 private:
  variant_files::FreshRun folder_;
};

TEST_F(AccumulationTest, WithoutElementsTheTableHasItsHeaderOnly) {
  fill_system_logic({});
  AccumulateAreas("v   ");
  const std::string ruler(99, '-');
  EXPECT_THAT(
      written_lines("v.Akum"),
      ElementsAre(
          german("v: akkumulierte Flächen [qkm]"), "",
          german("Gew.      km     Einl.   natürliche Fläche       kanal. Fläche        undurchl. Fläche "
                 "Gesamtfläche"),
          "                            Ad       Ages         Ad       Ages        Au,d     Au,ges        "
          "Ages",
          "(1)       (2)     (3)       (4)       (5)         (6)       (7)         (8)       (9)        "
          "(5+7)",
          ruler));
}

TEST_F(AccumulationTest, WithoutReachesToo) {
  fill_system_logic({{"N1", {}, {"P1"}}, {"P1", {"N1"}, {"ENDE"}}});
  fill_sources({{1.0F}});
  EXPECT_THAT(accumulated(), testing::IsEmpty());
}

TEST_F(AccumulationTest, AReachGathersItsSources) {
  fill_system_logic({{"K0010", {}, {"T0010"}},
                     {"N0010", {}, {"T0010"}},
                     {"E0010", {}, {"T0010"}},
                     {"T0010", {"K0010", "N0010", "E0010"}, {"ENDE"}}});
  fill_sources({{2.0F, 0.25F}, {3.0F, 0.5F}});
  fill_stations({12.3456F});
  EXPECT_THAT(accumulated(),
              ElementsAre("T0010    12.346  K0010     3.000     3.000       2.000     2.000       0.500     "
                          "0.500        5.000",
                          "                 N0010", "                 E0010"));
}

TEST_F(AccumulationTest, DirectAreasRunThroughReachesAndGauges) {
  fill_system_logic({{"N1", {}, {"T1"}},
                     {"T1", {"N1"}, {"P1"}},
                     {"P1", {"T1"}, {"T2"}},
                     {"K1", {}, {"T2"}},
                     {"T2", {"P1", "K1"}, {"ENDE"}}});
  fill_sources({{1.5F}, {2.0F, 1.0F}});
  fill_stations({1.0F, 2.0F});
  EXPECT_THAT(accumulated(),
              ElementsAre("T1        1.000  N1        1.500     1.500       0.000     0.000       0.000     "
                          "0.000        1.500",
                          "T2        2.000  P1        1.500     1.500       2.000     2.000       2.000     "
                          "2.000        3.500",
                          "                 K1   "));
}

// N1 and K1 drain through a branching or basin to two reaches.
Network divided(std::string_view divider) {
  const std::string name(divider);
  return {{"N1", {}, {name}},
          {"K1", {}, {name}},
          {name, {"N1", "K1"}, {"T1", "T2"}},
          {"T1", {name}, {"T2"}},
          {"T2", {name, "T1"}, {"ENDE"}}};
}

TEST_F(AccumulationTest, ABranchingOfCode1DividesTheTotals) {
  fill_system_logic(divided("V1"));
  fill_sources({{10.0F}, {20.0F, 0.5F}});
  fill_branchings({{1, 0.3F}});
  const Lines lines = accumulated();
  EXPECT_EQ(
      lines.at(0),
      "T1        0.000  V1        0.000     3.000       0.000     6.000       0.000     3.000        9.000");
  EXPECT_EQ(
      lines.at(1),
      "T2        0.000  V1        0.000    10.000       0.000    20.000       0.000    10.000       30.000");
}

TEST_F(AccumulationTest, WithAnyOtherCodeTheSecondOutflowTakesAll) {
  for (const std::int32_t code : {0, 2, 3, -1, 4}) {
    fill_system_logic(divided("V1"));
    fill_sources({{10.0F}, {20.0F, 0.5F}});
    fill_branchings({{code, 0.3F}});
    const Lines lines = accumulated();
    EXPECT_EQ(lines.at(0).substr(22),
              "     0.000     0.000       0.000     0.000       0.000     0.000        0.000");
    EXPECT_EQ(lines.at(1).substr(22),
              "     0.000    10.000       0.000    20.000       0.000    10.000       30.000");
  }
}

TEST_F(AccumulationTest, ABasinPassesItsAreaToTheSecondOutflow) {
  fill_system_logic(divided("B1"));
  fill_sources({{10.0F}, {20.0F, 0.5F}});
  const Lines lines = accumulated();
  EXPECT_EQ(lines.at(0).substr(22),
            "     0.000     0.000       0.000     0.000       0.000     0.000        0.000");
  EXPECT_EQ(lines.at(1).substr(22),
            "     0.000    10.000       0.000    20.000       0.000    10.000       30.000");
}

// Links that do not answer each other are errors, but their codes can be suppressed.
TEST_F(AccumulationTest, WhatIsNoOutflowOfABranchingOrBasinTakesNothing) {
  const auto totals = [](std::string_view divider, std::int32_t code) {
    const std::string name(divider);
    fill_system_logic({{"N1", {}, {name}},
                       {"K1", {}, {name}},
                       {name, {"N1", "K1"}, {"T2", "T3"}},
                       {"T1", {name}, {"T2"}},
                       {"T2", {name, "T1"}, {"T3"}},
                       {"T3", {name, "T2"}, {"ENDE"}}});
    fill_sources({{10.0F}, {20.0F, 0.5F}});
    fill_branchings({{code, 0.25F}});
    const Lines lines = accumulated();
    return Lines{lines.at(0).substr(88), lines.at(1).substr(88), lines.at(3).substr(88)};
  };
  EXPECT_THAT(totals("V1", 1), ElementsAre("      0.000", "      7.500", "     30.000"));
  EXPECT_THAT(totals("V1", 2), ElementsAre("      0.000", "      0.000", "     30.000"));
  EXPECT_THAT(totals("B1", 0), ElementsAre("      0.000", "      0.000", "     30.000"));
}

TEST_F(AccumulationTest, DirectAreasBeginAgainBelowABranching) {
  fill_system_logic({{"N1", {}, {"V1"}},
                     {"V1", {"N1"}, {"T1", "T2"}},
                     {"N2", {}, {"T1"}},
                     {"T1", {"V1", "N2"}, {"T2"}},
                     {"T2", {"T1", "V1"}, {"ENDE"}}});
  fill_sources({{8.0F}, {1.0F}});
  fill_branchings({{1, 0.25F}});
  const Lines lines = accumulated();
  EXPECT_EQ(lines.at(0).substr(22, 20), "     1.000     3.000");
  EXPECT_EQ(lines.at(2).substr(22, 20), "     1.000     9.000");
}

TEST_F(AccumulationTest, EachBranchingHasItsOwnRecord) {
  fill_system_logic({{"N1", {}, {"V1"}},
                     {"V1", {"N1"}, {"V2", "T1"}},
                     {"V2", {"V1"}, {"T1", "T2"}},
                     {"T1", {"V1", "V2"}, {"T2"}},
                     {"T2", {"T1", "V2"}, {"ENDE"}}});
  fill_sources({{16.0F}});
  fill_branchings({{1, 0.5F}, {1, 0.25F}});
  const Lines lines = accumulated();
  // 16 is halved, a quarter of the one half comes back.
  EXPECT_EQ(lines.at(0).substr(32, 10), "    10.000");
  EXPECT_EQ(lines.at(2).substr(32, 10), "    16.000");
}

TEST_F(AccumulationTest, BothOutflowsIntoOneElementCountAsTheFirst) {
  fill_system_logic({{"N1", {}, {"V1"}}, {"V1", {"N1"}, {"T1", "T1"}}, {"T1", {"V1"}, {"ENDE"}}});
  fill_sources({{10.0F}});
  fill_branchings({{1, 0.25F}});
  EXPECT_EQ(accumulated().at(0).substr(32, 10), "     2.500");
  fill_branchings({{2, 0.25F}});
  EXPECT_EQ(accumulated().at(0).substr(32, 10), "    10.000");
}

TEST_F(AccumulationTest, SumsAreInSinglePrecisionInTheOrderOfTheInflows) {
  const auto total_of = [](std::vector<std::string> inflows) {
    fill_system_logic(
        {{"N1", {}, {"T1"}}, {"N2", {}, {"T1"}}, {"N3", {}, {"T1"}}, {"T1", inflows, {"ENDE"}}});
    fill_sources({{16777216.0F}, {1.0F}, {-16777216.0F}});
    return accumulated().at(0).substr(32, 10);
  };
  EXPECT_EQ(total_of({"N1", "N2", "N3"}), "     0.000");
  EXPECT_EQ(total_of({"N1", "N3", "N2"}), "     1.000");
}

TEST_F(AccumulationTest, AValueTooWideIsAsterisks) {
  fill_system_logic({{"N1", {}, {"T1"}}, {"T1", {"N1"}, {"ENDE"}}});
  fill_sources({{1.0e6F}});
  fill_stations({12345.0F});
  EXPECT_EQ(
      accumulated().at(0),
      "T1     ********  N1   ********************       0.000     0.000       0.000     0.000  1000000.000");
}

TEST_F(AccumulationTest, TablesThatWereNeverReadAreZero) {
  fill_system_logic(divided("V1"));
  const Lines lines = accumulated();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(
      lines.at(1),
      "T2        0.000  V1        0.000     0.000       0.000     0.000       0.000     0.000        0.000");
}

TEST_F(AccumulationTest, AReachWithoutAResolvedInflowPrintsBlanks) {
  fill_system_logic({{"T1", {"N9"}, {"ENDE"}}});
  EXPECT_EQ(
      accumulated().at(0),
      "T1        0.000            0.000     0.000       0.000     0.000       0.000     0.000        0.000");
}

TEST_F(AccumulationTest, AGapInTheInflowsHasNoLine) {
  fill_system_logic({{"N1", {}, {"T1"}}, {"T1", {"N1", "N8", "N1"}, {"ENDE"}}});
  const Lines lines = accumulated();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines.at(1), "                 N1   ");
}

TEST_F(AccumulationTest, AnOlderResultIsReplaced) {
  test_files::write_bytes("v.Akum", std::string(5000, 'x'));
  fill_system_logic({});
  EXPECT_THAT(accumulated(), testing::IsEmpty());
}

TEST_F(AccumulationTest, TheNameOfTheResultHas200Characters) {
  fill_system_logic({});
  const std::string name(197, 'v');
  AccumulateAreas(name);
  EXPECT_EQ(written_lines(name + ".Ak").at(0), german(name + ": akkumulierte Flächen [qkm]"));
}

TEST_F(AccumulationTest, TheResultStaysOpen) {
  fill_system_logic({});
  AccumulateAreas("v");
  EXPECT_EQ(runtime::unit_of("v.Akum"), 100);
}

TEST_F(AccumulationTest, ShortOfMemoryTheRunStops) {
  fill_system_logic({{"N1", {}, {"T1"}}, {"T1", {"N1"}, {"ENDE"}}});
  // The sums come before the table: that it cannot be opened does not matter yet.
  std::filesystem::create_directory("v.Akum");
  runtime::limit_allocations(7);
  EXPECT_EXIT(AccumulateAreas("v"), testing::ExitedWithCode(0),
              "^In file 'accumulation\\.cpp', around line [0-9]+: Error allocating 8 bytes\n$");
}

}  // namespace
