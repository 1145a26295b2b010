// Plants mistakes at random places of clean random networks and asks whether each is named at its own line.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/rules/rules.h"
#include "tests/dice.h"
#include "tests/schau/bed.h"
#include "tests/schau/clean_network.h"
#include "tests/schau/mistakes.h"

namespace schau_test {
namespace {

constexpr std::size_t plantings = 2000;

bool is_named(const CleanNetwork& network, const Planted& planted) {
  const schau::variant::Variant variant = network.bed.variant();
  const std::vector<schau::findings::Finding> found = schau::rules::check(variant).findings;
  return std::ranges::any_of(found, [&](const schau::findings::Finding& finding) {
    const bool at_its_line = finding.place.file == planted.file && finding.place.line == planted.line;
    return at_its_line && std::ranges::find(planted.rules, finding.rule->identifier) != planted.rules.end();
  });
}

struct Tally {
  std::size_t planted = 0;
  std::size_t named = 0;
};

std::string place_of(const Planted& planted) {
  return fmt::format("{}:{}", extension_of(planted.file), planted.line);
}

TEST(Planting, CleanNetworksHaveNothingAboveAHint) {
  Dice dice(11);
  for (int round = 0; round < 100; ++round) {
    const CleanNetwork network = clean_network(dice, 20 + dice.roll(200));
    const schau::variant::Variant variant = network.bed.variant();
    for (const schau::findings::Finding& finding : schau::rules::check(variant).findings) {
      EXPECT_EQ(finding.rule->identifier, "erster-ablauf-leer")
          << place_words(finding.place) << ' ' << finding.text << '\n'
          << network.bed.bytes(finding.place.file);
    }
  }
}

TEST(Planting, NamesNearlyEveryMistakeAtItsOwnLine) {
  Dice dice(2025);
  std::map<std::string_view, Tally> families;
  Tally all;
  std::string missed;
  while (all.planted < plantings) {
    CleanNetwork network = clean_network(dice, 15 + dice.roll(60));
    const Mistake& mistake = mistakes()[all.planted % mistakes().size()];
    const std::optional<Planted> planted = mistake.plant(network, dice);
    if (!planted) continue;
    const bool named = is_named(network, *planted);
    for (Tally* tally : {&all, &families[mistake.family]}) {
      ++tally->planted;
      tally->named += named ? 1 : 0;
    }
    if (named) continue;
    missed += fmt::format("  {}, {}, {}\n", mistake.family, mistake.what, place_of(*planted));
  }
  for (const auto& [family, tally] : families) {
    std::cout << fmt::format("{}: {} of {} named\n", family, tally.named, tally.planted);
  }
  std::cout << fmt::format("all: {} of {} named; not named at their own line:\n{}", all.named, all.planted,
                           missed);
  EXPECT_GE(all.named * 100, all.planted * 95);
}

}  // namespace
}  // namespace schau_test
