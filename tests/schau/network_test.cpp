// The graph of a variant: order, loops, dead ends, and the balance of its areas.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "KV_Schau/network/balance_view.h"
#include "KV_Schau/network/flow.h"
#include "KV_Schau/network/network.h"
#include "KV_Schau/network/order.h"
#include "KV_Schau/rules/rules.h"
#include "tests/dice.h"
#include "tests/schau/bed.h"
#include "tests/schau/clean_network.h"
#include "tests/schau/mistakes.h"

namespace {

using namespace schau::network;
using schau::variant::FileId;
using schau_test::Bed;
using schau_test::text_of;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A graph of links that both ends name: an element, and the elements that drain into it.
Network network_of(const std::vector<std::vector<Element>>& inflows) {
  Network network;
  network.inflow.resize(inflows.size() + 1);
  network.outflow.resize(inflows.size() + 1);
  network.given.resize(inflows.size() + 1);
  for (std::size_t i = 1; i <= inflows.size(); ++i) {
    for (std::size_t k = 0; k < inflows[i - 1].size(); ++k) {
      const Element j = inflows[i - 1][k];
      network.inflow[i].at(k) = j;
      auto& outflow = network.outflow[j];
      outflow.at(outflow[0] == 0 ? 0 : 1) = static_cast<Element>(i);
    }
  }
  return network;
}

TEST(Order, OfASystemInOrderIsItsOwn) {
  EXPECT_THAT(flow_order(network_of({{}, {}, {1, 2}, {3}})), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(flow_order(network_of({})), IsEmpty());
}

TEST(Order, OfASystemUpsideDownBeginsAtTheSources) {
  EXPECT_THAT(flow_order(network_of({{2}, {3, 4}, {}, {}})), ElementsAre(3, 4, 2, 1));
}

TEST(Loops, AreToldInTheDirectionOfFlow) {
  EXPECT_THAT(loops(network_of({{}, {1}, {2}})), IsEmpty());
  EXPECT_THAT(loops(network_of({{3}, {1}, {2}})), ElementsAre(ElementsAre(1, 2, 3)));
  EXPECT_THAT(loops(network_of({{1}})), ElementsAre(ElementsAre(1)));
  // Two loops; an element that only drains into one belongs to none.
  EXPECT_THAT(loops(network_of({{2, 5}, {1}, {4}, {3}, {}})),
              ElementsAre(ElementsAre(1, 2), ElementsAre(3, 4)));
}

TEST(Loops, NeedBothEnds) {
  Network network = network_of({{3}, {1}, {2}});
  network.outflow[3] = {0, 0};
  EXPECT_THAT(loops(network), IsEmpty());
}

TEST(Loops, OfAMillionElementsAreFound) {
  constexpr Element count = 1'000'000;
  Network network;
  network.inflow.resize(count + 1);
  network.outflow.resize(count + 1);
  for (Element i = 1; i <= count; ++i) {
    network.inflow[i][0] = i == 1 ? count : i - 1;
    network.outflow[i][0] = i == count ? 1 : i + 1;
  }
  const std::vector<std::vector<Element>> found = loops(network);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.front().size(), count);
  EXPECT_EQ(found.front()[1], 2U);
  EXPECT_EQ(flow_order(network).size(), count);
}

TEST(Outlet, IsReachedOrNot) {
  const Network network = network_of({{}, {1}, {}, {3}, {2}});
  const std::vector<bool> reaches = reaches_outlet(network);
  EXPECT_EQ(std::vector<bool>(reaches.begin() + 1, reaches.end()),
            (std::vector<bool>{true, true, false, false, true}));
  const std::vector<DeadEnd> ends = dead_ends(network, flow_order(network));
  ASSERT_EQ(ends.size(), 1U);
  EXPECT_EQ(ends.front().end, 4U);
  EXPECT_FALSE(ends.front().in_loop);
  EXPECT_THAT(ends.front().elements, ElementsAre(3, 4));
}

TEST(Outlet, IsNotReachedFromAboveALoop) {
  const Network network = network_of({{}, {1, 3}, {2}, {}});
  const std::vector<DeadEnd> ends = dead_ends(network, flow_order(network));
  ASSERT_EQ(ends.size(), 1U);
  EXPECT_TRUE(ends.front().in_loop);
  EXPECT_THAT(ends.front().elements, ElementsAre(1, 2, 3));
}

schau::rules::Result checked(const Bed& bed) {
  return schau::rules::check(bed.variant());
}

std::vector<std::string> losses_of(const Bed& bed) {
  const schau::variant::Variant variant = bed.variant();
  std::vector<std::string> losses;
  for (const Loss& loss : schau::rules::check(variant).flow.balance.losses) {
    losses.push_back(schau::variant::text_of(variant.names[loss.element]) + ": " +
                     std::string(words_for(loss.reason)));
  }
  return losses;
}

// T0010 carries 12.4 km² natural and 0.645 km² canalised area, 0.22575 of it impervious.
TEST(Balance, OfASoundNetworkHasNoDifference) {
  const Balance balance = checked(Bed()).flow.balance;
  EXPECT_NEAR(balance.sources.natural, 14.9, 1e-9);
  EXPECT_NEAR(balance.sources.canalised, 0.645, 1e-9);
  EXPECT_NEAR(balance.sources.impervious, 0.22575, 1e-9);
  EXPECT_NEAR(balance.outlet.natural, 14.9, 1e-9);
  EXPECT_NEAR(balance.outlet.all(), 15.545, 1e-9);
  EXPECT_THAT(balance.losses, IsEmpty());
  EXPECT_THAT(balance.without_record, IsEmpty());
}

// Shares of many digits, one branching behind the other, lead beyond all numbers.
TEST(Balance, TellsWhatIsBeyondAllNumbers) {
  const Bed bed;
  schau::rules::Result result = checked(bed);
  Balance& balance = result.flow.balance;
  balance.sources.natural = std::numeric_limits<double>::infinity();
  balance.outlet.natural = std::numeric_limits<double>::infinity();
  balance.outlet.canalised = std::numeric_limits<double>::infinity();
  const std::string text = text_of(bed.variant(), result.network, balance, 3);
  EXPECT_THAT(
      text,
      HasSubstr("  Quellen (N, K)               unendlich         0.645         0.226     unendlich\n"));
  EXPECT_THAT(
      text,
      HasSubstr("  Differenz                   unbestimmt    -unendlich         0.000    unbestimmt\n"));
  const nlohmann::ordered_json json = to_json(bed.variant(), result.network, balance);
  EXPECT_TRUE(json.at("quellen").at("natuerlich").is_null());
  EXPECT_EQ(json.at("quellen").at("kanalisiert"), 0.645);
}

TEST(Balance, NamesWhatIsLostAtABranching) {
  Bed bed;
  bed.line(FileId::sys, 6) = text_of({"V0010", {"T0010"}, {"T0020"}, "BW", "V-01"});
  EXPECT_THAT(losses_of(bed), ElementsAre("V0010: der Rest, der dem fehlenden zweiten Ablauf zukäme"));
  EXPECT_NEAR(checked(bed).flow.balance.losses.front().areas.natural, 12.4 * 0.35, 1e-9);
  bed.put(FileId::ver, 2, 14, "2");
  EXPECT_THAT(losses_of(bed), ElementsAre(HasSubstr("Kennziffer ungleich 1")));
  bed.line(FileId::sys, 6) = text_of({"V0010", {"T0010"}, {"     ", "T0030"}, "BW", "V-01"});
  bed.put(FileId::ver, 2, 14, "1");
  EXPECT_THAT(losses_of(bed), ElementsAre("V0010: der Anteil des fehlenden ersten Ablaufs"));
  bed.line(FileId::sys, 6) = text_of({"V0010", {"T0010"}, {"T0020", "T0020"}, "BW", "V-01"});
  EXPECT_THAT(losses_of(bed), ElementsAre(HasSubstr("beide Abläufe sind dasselbe Element")));
}

TEST(Balance, NamesWhatIsLostAtABasin) {
  Bed bed;
  bed.line(FileId::sys, 5) = text_of({"T0010", {"N0010", "K0010"}, {"B0010"}});
  bed.line(FileId::sys, 6) = text_of({"B0010", {"T0010"}, {"T0020"}, "BW", "B-01"});
  bed.line(FileId::sys, 7) = text_of({"T0020", {"B0010"}, {"T0040"}});
  EXPECT_THAT(losses_of(bed), ElementsAre(HasSubstr("B0010: Becken ohne zweiten Ablauf")));
  bed.line(FileId::sys, 6) = text_of({"B0010", {"T0010"}, {}, "BW", "B-01"});
  EXPECT_THAT(losses_of(bed), ElementsAre("B0010: Becken ohne Ablauf"));
  bed.line(FileId::sys, 6) = text_of({"B0010", {"T0010"}, {"T0020", "T0030"}, "BW", "B-01"});
  bed.line(FileId::sys, 8) = text_of({"T0030", {"B0010"}, {"T0040"}});
  EXPECT_THAT(losses_of(bed), IsEmpty());
}

TEST(Balance, NamesWhatNobodyTakesAndWhatIsTakenTwice) {
  Bed bed;
  bed.put(FileId::sys, 10, 56, "     ");
  EXPECT_THAT(losses_of(bed), ElementsAre("N0020: kein Element nimmt es als Zulauf auf"));
  Bed twice;
  twice.put(FileId::sys, 11, 50, "N0020");
  EXPECT_THAT(losses_of(twice), ElementsAre("N0020: mehrfach aufgenommen"));
  EXPECT_NEAR(checked(twice).flow.balance.losses.front().areas.natural, -2.5, 1e-9);
}

TEST(Balance, NamesWhatGoesRoundInALoop) {
  Bed bed;
  bed.line(FileId::sys, 7) = text_of({"T0020", {"V0010", "T0030"}, {"T0030"}});
  bed.line(FileId::sys, 8) = text_of({"T0030", {"V0010", "T0020"}, {"T0020"}});
  bed.line(FileId::sys, 10) = text_of({"T0040", {"N0020"}, {"P0010"}});
  EXPECT_THAT(losses_of(bed), ElementsAre("T0030: im Kreis geführt"));
}

TEST(Balance, NamesAreasWithoutARecord) {
  Bed bed;
  bed.erase(FileId::nfl, 5);
  EXPECT_THAT(checked(bed).flow.balance.without_record, ElementsAre(7));
}

// What enters through the sources leaves through the outlet or is told as lost, whatever is wrong.
TEST(Balance, ComesOutEvenOnRandomNetworks) {
  Dice dice(31);
  std::size_t with_losses = 0;
  for (int round = 0; round < 1000; ++round) {
    schau_test::CleanNetwork network = schau_test::clean_network(dice, 15 + dice.roll(60));
    schau_test::mistakes()[dice.roll(schau_test::mistakes().size())].plant(network, dice);
    const Balance balance = checked(network.bed).flow.balance;
    if (!std::isfinite(balance.sources.all()) || !std::isfinite(balance.outlet.all())) continue;
    double lost = 0.0;
    double impervious = 0.0;
    for (const Loss& loss : balance.losses) lost += loss.areas.all();
    for (const Loss& loss : balance.losses) impervious += loss.areas.impervious;
    with_losses += balance.losses.empty() ? 0 : 1;
    ASSERT_NEAR(balance.sources.all(), balance.outlet.all() + lost,
                1e-6 * (1.0 + std::abs(balance.sources.all())));
    ASSERT_NEAR(balance.sources.impervious, balance.outlet.impervious + impervious, 1e-6);
  }
  EXPECT_GT(with_losses, 100U);
}

TEST(BalanceText, ShowsSumsAndWhereTheDifferenceStays) {
  Bed bed;
  bed.line(FileId::sys, 6) = text_of({"V0010", {"T0010"}, {"T0020"}, "BW", "V-01"});
  const schau::variant::Variant variant = bed.variant();
  const schau::rules::Result result = schau::rules::check(variant);
  EXPECT_EQ(schau::network::text_of(variant, result.network, result.flow.balance, 20),
            "Bilanz [km²], in doppelter Genauigkeit (KV_Akum rechnet in einfacher)\n"
            "                               natürlich   kanalisiert     undurchl.        gesamt\n"
            "  Quellen (N, K)                  14.900         0.645         0.226        15.545\n"
            "  am Auslass T0050                10.560         0.419         0.147        10.979\n"
            "  Differenz                        4.340         0.226         0.079         4.566\n"
            "    bei V0010                      4.340         0.226         0.079         4.566\n"
            "      netz.sys:6: der Rest, der dem fehlenden zweiten Ablauf zukäme\n");
}

TEST(BalanceText, SumsUpTheSmallerLosses) {
  Bed bed;
  bed.put(FileId::sys, 5, 44, std::string(17, ' '));
  bed.put(FileId::sys, 10, 56, "     ");
  bed.erase(FileId::kfl, 3);
  const schau::variant::Variant variant = bed.variant();
  const schau::rules::Result result = schau::rules::check(variant);
  EXPECT_EQ(schau::network::text_of(variant, result.network, result.flow.balance, 1),
            "Bilanz [km²], in doppelter Genauigkeit (KV_Akum rechnet in einfacher)\n"
            "                               natürlich   kanalisiert     undurchl.        gesamt\n"
            "  Quellen (N, K)                  14.900         0.000         0.000        14.900\n"
            "  am Auslass T0050                 0.000         0.000         0.000         0.000\n"
            "  Differenz                       14.900         0.000         0.000        14.900\n"
            "    bei N0010                     12.400         0.000         0.000        12.400\n"
            "      netz.sys:3: kein Element nimmt es als Zulauf auf\n"
            "    bei einem weiteren             2.500         0.000         0.000         2.500\n"
            "  nicht enthalten, da ohne Zeile in ihrer Datei: 1 (K0010)\n");
}

TEST(BalanceJson, HoldsTheSame) {
  Bed bed;
  bed.put(FileId::sys, 10, 56, "     ");
  const schau::variant::Variant variant = bed.variant();
  const schau::rules::Result result = schau::rules::check(variant);
  const nlohmann::ordered_json json = to_json(variant, result.network, result.flow.balance);
  EXPECT_EQ(json.at("einheit"), "km²");
  EXPECT_EQ(json.at("auslass").at("element"), "T0050");
  EXPECT_NEAR(json.at("auslass").at("natuerlich").get<double>(), 12.4, 1e-9);
  ASSERT_EQ(json.at("verluste").size(), 1U);
  EXPECT_EQ(json.at("verluste").at(0).at("element"), "N0020");
  EXPECT_EQ(json.at("verluste").at(0).at("datei"), "netz.sys");
  EXPECT_EQ(json.at("verluste").at(0).at("zeile"), 9);
}

}  // namespace
