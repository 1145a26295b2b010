// What a comparison says of two variants.

#include "KV_Schau/compare/comparison.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

#include "KV_Schau/compare/reach_results.h"
#include "KV_Schau/compare/words.h"
#include "KV_Schau/import/import.h"
#include "KV_Schau/run/table.h"
#include "KV_Schau/run/table_output.h"
#include "tests/dice.h"
#include "tests/program.h"
#include "tests/schau/bed.h"
#include "tests/schau/clean_network.h"
#include "tests/test_files.h"

namespace schau::compare {
namespace {

using schau_test::Bed;
using schau_test::FileId;
using schau_test::text_of;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The bed's network:
//   N0010, K0010 - T0010 - V0010 - T0020 (65 %), T0030 - T0040 (with N0020) - P0010 - T0050
constexpr std::size_t line_of_n0010 = 3;
constexpr std::size_t line_of_t0010 = 5;
constexpr std::size_t line_of_v0010 = 6;
constexpr std::size_t line_of_n0020 = 9;
constexpr std::size_t line_of_t0040 = 10;
constexpr std::size_t line_of_p0010 = 11;
constexpr std::size_t line_of_t0050 = 12;

Comparison comparison_of(const Bed& older, Bed newer, double tolerance = default_tolerance) {
  newer.name = "neu";
  return compare(older.variant(), newer.variant(), tolerance);
}

// "N0020 Abläufe: T0040 → T0020" each, with its place in the newer variant, or else in the older one.
std::vector<std::string> changes_of(const Comparison& comparison) {
  std::vector<std::string> texts;
  for (const Change& change : comparison.changes)
    texts.push_back(
        fmt::format("{} {} {}", shown_place(comparison, change), shown(change.name), words_for(change)));
  return texts;
}

// "T0040: N0010 (Fläche)" for each changed reach.
std::vector<std::string> causes_of(const Comparison& comparison) {
  std::vector<std::string> texts;
  for (const ReachChange& reach : comparison.reaches) {
    std::string text = fmt::format("{}:", shown(reach.name));
    for (const std::uint32_t cause : reach.causes)
      text += fmt::format(" {}", words_for_cause(comparison.changes[cause]));
    texts.push_back(fmt::format("{}{}", text, reach.has_more_causes ? " ..." : ""));
  }
  std::ranges::sort(texts);
  return texts;
}

TEST(Comparison, FindsAVariantEqualToItself) {
  const Comparison comparison = comparison_of(Bed(), Bed());
  EXPECT_TRUE(comparison.is_equal());
  EXPECT_EQ(comparison.old_count, 10U);
  EXPECT_EQ(comparison.compared_reaches, 5U);
}

TEST(Comparison, TakesOtherWritingsForTheSame) {
  Bed newer;
  newer.erase(FileId::sys, 1);
  newer.put(FileId::sys, 1, 1, "Kommentar");
  std::swap(newer.line(FileId::sys, 2), newer.line(FileId::sys, 3));  // N0010 and K0010
  newer.line(FileId::sys, 4) = text_of({"T0010", {"K0010", "N0010"}, {"V0010"}});
  newer.replace(FileId::nfl,
                {"          ha", "   N0010  1240. 0.00", "          qm", "   N0020  2.5E6 0.00"});
  EXPECT_THAT(changes_of(comparison_of(Bed(), newer)), IsEmpty());
}

TEST(Comparison, NamesWhatCameAndWent) {
  Bed newer;
  newer.line(FileId::sys, line_of_n0020) = text_of({"N0030", {}, {"T0040"}});
  newer.line(FileId::sys, line_of_t0040) = text_of({"T0040", {"T0020", "T0030", "N0030"}, {"P0010"}});
  newer.put(FileId::nfl, 5, 4, "N0030");
  const Comparison comparison = comparison_of(Bed(), newer);
  ASSERT_THAT(changes_of(comparison),
              ElementsAre("neu.sys:9 N0030 Abläufe: T0040", "netz.sys:9 N0020 Abläufe: T0040"));
  EXPECT_EQ(comparison.count_of(ChangeKind::added), 1U);
  EXPECT_EQ(comparison.count_of(ChangeKind::gone), 1U);
  EXPECT_DOUBLE_EQ(comparison.changes[0].effect, 2.5);
  EXPECT_THAT(comparison.reaches, IsEmpty()) << "the area is the same";
}

TEST(Comparison, NamesChangedInputsWithTheirLines) {
  Bed newer;
  newer.put(FileId::nfl, 3, 11, "12.90");
  newer.put(FileId::kfl, 3, 16, " 0.45");
  newer.put(FileId::ver, 2, 16, " 60.0");
  newer.put(FileId::trs, 11, 11, "   6.250");
  const Comparison comparison = comparison_of(Bed(), newer);
  ASSERT_THAT(changes_of(comparison), ElementsAre("neu.ver:2 V0010 Anteil: 65 % → 60 %",
                                                  "neu.nfl:3 N0010 Fläche: 12.4 km² → 12.9 km²",
                                                  "neu.kfl:3 K0010 Befestigungsgrad: 0.35 → 0.45",
                                                  "neu.trs:11 T0050 Station: 6.125 km → 6.25 km"));
  EXPECT_NEAR(comparison.changes[0].effect, 0.05 * (12.9 + 0.645), 1e-9);
  EXPECT_NEAR(comparison.changes[1].effect, 0.5, 1e-9);
  EXPECT_NEAR(comparison.changes[2].effect, 0.1 * 0.645, 1e-9);
  EXPECT_EQ(comparison.changes[3].effect, 0.0);
}

TEST(Comparison, KnowsWhatACodeDecides) {
  Bed newer;
  newer.put(FileId::ver, 2, 11, "   2");
  const Comparison comparison = comparison_of(Bed(), newer);
  ASSERT_THAT(changes_of(comparison), ElementsAre("neu.ver:2 V0010 Kennziffer: 1 → 2"));
  EXPECT_THAT(causes_of(comparison), ElementsAre("T0020: V0010 (Kennziffer)", "T0030: V0010 (Kennziffer)"));
  EXPECT_DOUBLE_EQ(comparison.changes[0].effect, 13.045);
}

TEST(Comparison, TellsEachSumThatDiffers) {
  Bed newer;
  newer.put(FileId::nfl, 3, 11, "12.90");
  const Comparison comparison = comparison_of(Bed(), newer);
  ASSERT_EQ(comparison.reaches.size(), 5U);
  const ReachChange& first = comparison.reaches[0];
  EXPECT_EQ(shown(first.name), "T0010");
  EXPECT_THAT(first.differs, ElementsAre(true, true, false, false, false, false, true));
  EXPECT_DOUBLE_EQ(first.before[1].value, 12.4);
  EXPECT_DOUBLE_EQ(first.after[1].value, 12.9);
  EXPECT_DOUBLE_EQ(first.before[3].value, 0.645);
  EXPECT_DOUBLE_EQ(first.before[5].value, 0.35 * 0.645);
  EXPECT_DOUBLE_EQ(first.before[6].value, 13.045);
  EXPECT_NEAR(first.difference(Sum::total), 0.5, 1e-12);
  // Below the branching nothing of it is direct any more.
  const ReachChange& below = comparison.reaches[1];
  EXPECT_EQ(shown(below.name), "T0040");
  EXPECT_THAT(below.differs, ElementsAre(false, true, false, false, false, false, true));
}

TEST(Comparison, SortsByEffect) {
  Bed newer;
  newer.put(FileId::nfl, 3, 11, "12.90");
  const Comparison comparison = comparison_of(Bed(), newer);
  std::vector<std::string> names;
  for (const ReachChange& reach : comparison.reaches) names.push_back(shown(reach.name));
  EXPECT_THAT(names, ElementsAre("T0010", "T0040", "T0050", "T0020", "T0030"));
}

TEST(Comparison, LetsDifferencesUpToTheTolerancePass) {
  Bed newer;
  newer.put(FileId::kfl, 3, 11, "64.60");  // 0.001 km² more
  EXPECT_THAT(comparison_of(Bed(), newer).reaches, IsEmpty());
  EXPECT_EQ(comparison_of(Bed(), newer).changes.size(), 1U) << "an input is an input";
  EXPECT_EQ(comparison_of(Bed(), newer, 0.0009).reaches.size(), 3U) << "the arms get parts of it";
  EXPECT_EQ(comparison_of(Bed(), newer, 0.0).reaches.size(), 5U);
}

// Causes.

TEST(Causes, LieUpstream) {
  Bed newer;
  newer.put(FileId::ver, 2, 16, " 60.0");
  newer.put(FileId::nfl, 5, 11, "260.0");
  EXPECT_THAT(causes_of(comparison_of(Bed(), newer)),
              ElementsAre("T0020: V0010 (Anteil)", "T0030: V0010 (Anteil)", "T0040: N0020 (Fläche)",
                          "T0050: N0020 (Fläche)"));
}

TEST(Causes, OfAMovedElementEndWhereItsWaysMeet) {
  Bed newer;
  newer.line(FileId::sys, line_of_n0010) = text_of({"N0010", {}, {"T0020"}});
  newer.line(FileId::sys, line_of_t0010) = text_of({"T0010", {"K0010"}, {"V0010"}});
  newer.line(FileId::sys, 7) = text_of({"T0020", {"V0010", "N0010"}, {"T0040"}});
  newer.put(FileId::nfl, 5, 11, "260.0");
  const Comparison comparison = comparison_of(Bed(), newer);
  EXPECT_THAT(changes_of(comparison), ElementsAre("neu.sys:3 N0010 Abläufe: T0010 → T0020",
                                                  "neu.nfl:5 N0020 Fläche: 2.5 km² → 2.6 km²"));
  EXPECT_THAT(
      causes_of(comparison),
      ElementsAre("T0010: N0010 (anders verbunden)", "T0020: N0010 (anders verbunden)",
                  "T0030: N0010 (anders verbunden)", "T0040: N0020 (Fläche)", "T0050: N0020 (Fläche)"));
}

TEST(Causes, AreNoElementsThatPassAllOn) {
  Bed newer;
  newer.line(FileId::sys, line_of_t0040) = text_of({"T0040", {"T0020", "T0030", "N0020"}, {"T0050"}});
  newer.line(FileId::sys, line_of_t0050) = text_of({"T0050", {"T0040"}, {"ENDE"}});
  newer.erase(FileId::sys, line_of_p0010);
  EXPECT_THAT(comparison_of(Bed(), newer).reaches, IsEmpty());
  newer.put(FileId::nfl, 5, 11, "260.0");
  EXPECT_THAT(causes_of(comparison_of(Bed(), newer)),
              ElementsAre("T0040: N0020 (Fläche)", "T0050: N0020 (Fläche)"));
}

TEST(Causes, AreElementsThatPassAllOnWhereTheyBreakTheFlow) {
  Bed newer;
  newer.line(FileId::sys, line_of_t0050) = text_of({"T0050", {}, {"ENDE"}});
  newer.erase(FileId::sys, line_of_p0010);
  EXPECT_THAT(causes_of(comparison_of(Bed(), newer)), ElementsAre("T0050: P0010 (entfallen)"));
}

TEST(Causes, AreElementsThatFallOutOfTheFlowBesideOtherChanges) {
  Bed newer;
  newer.put(FileId::sys, 7, 36, "t0020");  // no element any more
  newer.put(FileId::nfl, 3, 11, "12.90");
  EXPECT_THAT(
      causes_of(comparison_of(Bed(), newer)),
      ElementsAre("T0010: N0010 (Fläche)", "T0030: N0010 (Fläche)", "T0040: T0020 (entfallen) N0010 (Fläche)",
                  "T0050: T0020 (entfallen) N0010 (Fläche)"));
}

TEST(Causes, AreBasinsThatEndDirectAreas) {
  Bed newer;
  newer.line(FileId::sys, line_of_p0010) = text_of({"B0010", {"T0040"}, {"T0050", "T0050"}});
  newer.line(FileId::sys, line_of_t0040) = text_of({"T0040", {"T0020", "T0030", "N0020"}, {"B0010"}});
  newer.line(FileId::sys, line_of_t0050) = text_of({"T0050", {"B0010"}, {"ENDE"}});
  const Comparison comparison = comparison_of(Bed(), newer);
  ASSERT_THAT(causes_of(comparison), ElementsAre("T0050: B0010 (neu)"));
  EXPECT_THAT(comparison.reaches[0].differs, ElementsAre(true, false, false, false, false, false, false));
}

TEST(Causes, AreLinksThatOnlyTheLowerEndChanges) {
  Bed newer;
  newer.line(FileId::sys, line_of_t0040) = text_of({"T0040", {"T0020", "T0030"}, {"P0010"}});
  const Comparison comparison = comparison_of(Bed(), newer);
  EXPECT_THAT(changes_of(comparison),
              ElementsAre("neu.sys:10 T0040 Zuläufe: T0020, T0030, N0020 → T0020, T0030"));
  EXPECT_THAT(causes_of(comparison),
              ElementsAre("T0040: T0040 (anders verbunden)", "T0050: T0040 (anders verbunden)"));
}

TEST(Causes, AreTheLargestWhereThereAreMany) {
  Bed older;
  Bed newer;
  // Ten more areas above T0010, two to a reach, each larger in the newer variant.
  std::string last;
  for (std::size_t k = 1; k <= 5; ++k) {
    const std::string reach = fmt::format("T09{:02}", k);
    std::vector<std::string> names = {fmt::format("N09{:02}", 2 * k), fmt::format("N09{:02}", 2 * k + 1)};
    for (std::size_t n = 0; n < names.size(); ++n) {
      older.insert(FileId::nfl, older.lines(FileId::nfl).size() + 1, fmt::format("   {}  100.0", names[n]));
      newer.insert(FileId::nfl, newer.lines(FileId::nfl).size() + 1,
                   fmt::format("   {}  {:5}", names[n], 100 + 10 * (2 * k + n)));
    }
    for (Bed* bed : {&older, &newer}) {
      std::vector<std::string_view> inflows(names.begin(), names.end());
      if (!last.empty()) inflows.insert(inflows.begin(), last);
      const std::string below = k < 5 ? fmt::format("T09{:02}", k + 1) : "T0010";
      const std::size_t place = 3 * k;
      bed->insert(FileId::sys, place, text_of({names[0], {}, {reach}}));
      bed->insert(FileId::sys, place + 1, text_of({names[1], {}, {reach}}));
      bed->insert(FileId::sys, place + 2, text_of({reach, inflows, {below}}));
    }
    last = reach;
  }
  for (Bed* bed : {&older, &newer})
    bed->line(FileId::sys, line_of_t0010 + 15) = text_of({"T0010", {"N0010", "K0010", last}, {"V0010"}});
  const Comparison comparison = comparison_of(older, newer);
  ASSERT_EQ(comparison.changes.size(), 10U);
  const auto reach = std::ranges::find(comparison.reaches, variant::name_of("T0050"), &ReachChange::name);
  ASSERT_NE(reach, comparison.reaches.end());
  EXPECT_THAT(reach->causes, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
  EXPECT_TRUE(reach->has_more_causes);
  const auto upper = std::ranges::find(comparison.reaches, variant::name_of("T0902"), &ReachChange::name);
  ASSERT_NE(upper, comparison.reaches.end());
  EXPECT_THAT(upper->causes, ElementsAre(6, 7, 8, 9));
  EXPECT_FALSE(upper->has_more_causes);
}

// Names.

TEST(Comparison, PairsRepeatedNamesInTheirOrder) {
  Bed older;
  older.insert(FileId::sys, line_of_n0020, text_of({"N0010", {}, {"T0020"}}));
  Bed newer;
  newer.insert(FileId::sys, line_of_n0020, text_of({"N0010", {}, {"T0030"}}));
  EXPECT_THAT(changes_of(comparison_of(older, newer)), ElementsAre("neu.sys:9 N0010 Abläufe: T0020 → T0030"));
  EXPECT_THAT(changes_of(comparison_of(older, Bed())), ElementsAre("netz.sys:9 N0010 Abläufe: T0020"));
}

TEST(Comparison, TellsOtherNamesThatAreNoElements) {
  Bed newer;
  newer.line(FileId::sys, line_of_v0010) = text_of({"V0010", {"T0010"}, {"T0020", "T0039"}, "BW", "V-01"});
  EXPECT_THAT(changes_of(comparison_of(Bed(), newer)),
              ElementsAre("neu.sys:6 V0010 Abläufe: T0020, T0030 → T0020, T0039"));
}

TEST(Comparison, CountsTheOrderOfOutflows) {
  Bed newer;
  newer.line(FileId::sys, line_of_v0010) = text_of({"V0010", {"T0010"}, {"T0030", "T0020"}, "BW", "V-01"});
  const Comparison comparison = comparison_of(Bed(), newer);
  EXPECT_THAT(changes_of(comparison), ElementsAre("neu.sys:6 V0010 Abläufe: T0020, T0030 → T0030, T0020"));
  EXPECT_THAT(causes_of(comparison),
              ElementsAre("T0020: V0010 (anders verbunden)", "T0030: V0010 (anders verbunden)"));
}

// Random networks.

// A change that KV_Akum still takes: other areas, shares and codes.
void change_inputs(Dice& dice, schau_test::CleanNetwork& network) {
  for (const schau_test::PlacedElement& element : network.elements) {
    if (element.record_line == 0 || !dice.one_in(6)) continue;
    if (element.type == 'N' || element.type == 'K') {
      const FileId file = element.type == 'N' ? FileId::nfl : FileId::kfl;
      network.bed.put(file, element.record_line, 11,
                      fmt::format("{:5.2f}", 0.5 + static_cast<double>(dice.roll(90))));
    }
    if (element.type == 'V')
      network.bed.put(FileId::ver, element.record_line, 16, fmt::format("{:5}", dice.roll(101)));
  }
}

void expect_mirrored(const Comparison& forth, const Comparison& back) {
  ASSERT_EQ(forth.changes.size(), back.changes.size());
  EXPECT_EQ(forth.count_of(ChangeKind::added), back.count_of(ChangeKind::gone));
  EXPECT_EQ(forth.count_of(ChangeKind::moved), back.count_of(ChangeKind::moved));
  ASSERT_EQ(forth.reaches.size(), back.reaches.size());
  for (const ReachChange& reach : forth.reaches) {
    const auto other = std::ranges::find(back.reaches, reach.old_element, &ReachChange::new_element);
    ASSERT_NE(other, back.reaches.end());
    EXPECT_EQ(other->effect, reach.effect);
    EXPECT_EQ(other->before.back().value, reach.after.back().value);
  }
}

// Where a result differs there is a cause, and each cause lies upstream.
TEST(RandomNetworks, HaveACauseForEachDifference) {
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    schau_test::CleanNetwork network = schau_test::clean_network(dice, 20 + dice.roll(200));
    const variant::Variant older = network.bed.variant();
    change_inputs(dice, network);
    const variant::Variant newer = network.bed.variant();
    const Comparison comparison = compare(older, newer, 0.0);
    const network::Network links = network::link(newer);
    for (const ReachChange& reach : comparison.reaches) {
      EXPECT_THAT(reach.causes, testing::Not(IsEmpty())) << shown(reach.name);
      std::vector<bool> is_upstream(links.count() + 1, false);
      is_upstream[reach.new_element] = true;
      for (network::Element i = reach.new_element; i > 0; --i) {
        for (const network::Element j : links.inflow[i]) {
          if (is_upstream[i] && j != 0) is_upstream[j] = true;
        }
      }
      for (const std::uint32_t cause : reach.causes)
        EXPECT_TRUE(is_upstream[comparison.changes[cause].new_element]) << shown(reach.name);
    }
    expect_mirrored(comparison, compare(newer, older, 0.0));
  }
}

// The sums are those that KV_Akum prints, as far as single precision goes.
TEST(RandomNetworks, HaveTheSumsOfARun) {
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    const test_files::WorkingFolder working_folder;
    Dice dice(seed);
    const schau_test::CleanNetwork network = schau_test::clean_network(dice, 20 + dice.roll(200));
    for (const auto file : {FileId::sys, FileId::nfl, FileId::kfl, FileId::trs, FileId::ver})
      test_files::write_bytes("netz." + std::string(schau_test::extension_of(file)), network.bed.bytes(file));
    program::run({{"netz"}, "."});
    const run::Table table = run::parse_table(test_files::read_bytes("netz.Akum"));
    ASSERT_FALSE(table.fault);
    ASSERT_FALSE(table.reaches.empty());
    const variant::Variant variant = network.bed.variant();
    const Results results(variant);
    for (const run::Reach& reach : table.reaches) {
      const Sums sums = results.sums(variant.elements.first(reach.name));
      for (std::size_t k = 0; k < sum_count; ++k) {
        const double printed = run::number_columns().at(k + 1).number(reach).value;
        EXPECT_NEAR(sums.at(k).value, printed, 0.00051 + 2e-6 * printed) << shown(reach.name) << " " << k;
      }
    }
  }
}

// A river of so many reaches; every tenth area is larger by `more`.
variant::Variant large_river(std::size_t count, double more) {
  Dice dice(3);
  std::string text = "id,nach,flaeche_km2\n";
  for (std::size_t i = 0; i < count; ++i) {
    const std::string below =
        i + 1 < count ? fmt::format("{}", std::min(count - 1, i + 1 + dice.roll(30))) : "";
    text += fmt::format("{},{},{:.2f}\n", i, below,
                        1.0 + 0.01 * static_cast<double>(dice.roll(99)) + (i % 10 == 0 ? more : 0.0));
  }
  const variant::TextFile table = variant::TextFile::of_bytes(text, "fluss.csv");
  const imports::Import import = imports::import_table(table, false);
  variant::Variant variant;
  for (std::size_t k = 0; k < variant::file_count; ++k) {
    const bool is_input = k < 5 && !import.text.files.at(k).bytes.empty();
    const std::string shown = fmt::format("fluss.{}", k);
    variant.files.at(k) = is_input ? variant::TextFile::of_bytes(import.text.files.at(k).bytes, shown)
                                   : variant::TextFile::named(shown);
  }
  variant::take_in(variant);
  return variant;
}

TEST(Comparison, TakesSecondsForHalfAMillionElements) {
  const variant::Variant older = large_river(250'000, 0.0);
  const variant::Variant newer = large_river(250'000, 0.5);
  const auto begin = std::chrono::steady_clock::now();
  const Comparison comparison = compare(older, newer);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  RecordProperty("seconds", std::to_string(time.count()));
  EXPECT_EQ(comparison.changes.size(), 25'000U);
  EXPECT_GT(comparison.reaches.size(), 100'000U);
  EXPECT_LT(time.count(), 30.0);
}

}  // namespace
}  // namespace schau::compare
