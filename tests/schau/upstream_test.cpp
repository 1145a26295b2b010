// What lies upstream of an element: distinct sources, numbers of elements, stream orders.

#include "KV_Schau/network/upstream.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "KV_Schau/network/order.h"
#include "KV_Schau/variant/records.h"
#include "tests/dice.h"
#include "tests/schau/bed.h"
#include "tests/schau/clean_network.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using schau::network::Element;
using schau::network::Network;
using schau::network::Upstream;
using schau::network::Weights;
using schau::variant::Variant;

fs::path networks_folder() {
  const char* const chosen = std::getenv("KV_REAL_NETWORKS_DIR");
  return chosen != nullptr ? chosen : KV_REAL_NETWORKS_DIR;
}

// A network of inflows alone; elements count from 1.
Network network_of(const std::vector<std::vector<Element>>& inflows) {
  Network network;
  network.inflow.resize(inflows.size() + 1);
  network.outflow.resize(inflows.size() + 1);
  network.given.resize(inflows.size() + 1);
  for (std::size_t i = 0; i < inflows.size(); ++i) {
    for (std::size_t k = 0; k < inflows[i].size(); ++k) network.inflow[i + 1].at(k) = inflows[i][k];
  }
  return network;
}

// Every element with all its inflows has the union of their sets and itself.
std::vector<std::set<Element>> plain_unions(const Network& network) {
  std::vector<std::set<Element>> sets(network.count() + 1);
  for (Element i = 1; i <= network.count(); ++i) {
    sets[i].insert(i);
    for (const Element j : network.inflow[i]) {
      if (j != 0 && j < i) sets[i].insert(sets[j].begin(), sets[j].end());
    }
  }
  return sets;
}

void expect_plain_unions(const Network& network) {
  std::vector<Weights> weights(network.count() + 1);
  // Whole numbers below 2^53 are added without rounding.
  for (Element i = 1; i <= network.count(); ++i) weights[i] = {static_cast<double>(i * 7919U % 1009U), 1.0};
  const auto sums = schau::network::upstream_sums(network, schau::network::flow_order(network), weights);
  const auto sets = plain_unions(network);
  for (Element i = 1; i <= network.count(); ++i) {
    Weights expected{};
    for (const Element j : sets[i]) expected = {expected[0] + weights[j][0], expected[1] + 1.0};
    ASSERT_EQ(sums[i], expected) << "element " << i;
  }
}

TEST(UpstreamSums, CountBothArmsOnce) {
  //     1 - 2 (branching) - 3, 4 - 5 (joined) - 6
  const Network network = network_of({{}, {1}, {2}, {2}, {3, 4}, {5}});
  const std::vector<Weights> weights = {{0, 0}, {10, 1}, {20, 1}, {30, 1}, {40, 1}, {50, 1}, {60, 1}};
  const auto sums = schau::network::upstream_sums(network, {1, 2, 3, 4, 5, 6}, weights);
  EXPECT_EQ(sums[2], (Weights{30, 2}));
  EXPECT_EQ(sums[3], (Weights{60, 3}));
  EXPECT_EQ(sums[4], (Weights{70, 3}));
  EXPECT_EQ(sums[5], (Weights{150, 5}));
  EXPECT_EQ(sums[6], (Weights{210, 6}));
}

TEST(UpstreamSums, LeaveOutWhatALoopLeadsBack) {
  const Network network = network_of({{3}, {1}, {2}, {3}});
  const std::vector<Weights> weights(5, Weights{1, 1});
  const auto sums = schau::network::upstream_sums(network, {1, 2, 3, 4}, weights);
  EXPECT_EQ(sums[4], (Weights{4, 4}));
}

// Random acyclic graphs from trees to meshes: every element may drain into many others.
TEST(UpstreamSums, AreThoseOfPlainUnions) {
  for (std::uint32_t seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    const std::size_t count = 1 + dice.roll(seed % 20 == 0 ? 1500 : 150);
    const std::size_t reach = 1 + dice.roll(count);
    std::vector<std::vector<Element>> inflows(count);
    for (std::size_t i = 1; i < count; ++i) {
      for (std::size_t k = dice.roll(4); k-- > 0;) {
        inflows[i].push_back(static_cast<Element>(i - dice.roll(std::min(i, reach))));
      }
    }
    expect_plain_unions(network_of(inflows));
  }
}

// Most elements drain into one, as in rivers.
TEST(UpstreamSums, AreThoseOfPlainUnionsInRivers) {
  for (std::uint32_t seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    const Variant variant = schau_test::clean_network(dice, 50 + dice.roll(800)).bed.variant();
    expect_plain_unions(schau::network::link(variant));
  }
}

std::vector<Upstream> look(const Variant& variant) {
  const Network network = schau::network::link(variant);
  return schau::network::look_upstream(
      variant, network, schau::network::flow_order(network),
      schau::network::take_values(variant, schau::variant::find_records(variant)));
}

// Stream orders.

using schau_test::Bed;
using schau_test::FileId;
using Lines = std::vector<schau_test::SystemLine>;

std::map<std::string, std::uint32_t> orders_of(const Lines& lines) {
  Bed bed = Bed::empty();
  for (const schau_test::SystemLine& line : lines) {
    bed.insert(FileId::sys, bed.lines(FileId::sys).size() + 1, schau_test::text_of(line));
  }
  const Variant variant = bed.variant();
  const std::vector<Upstream> upstream = look(variant);
  std::map<std::string, std::uint32_t> orders;
  for (Element i = 1; i <= variant.element_count(); ++i)
    orders[schau::variant::text_of(variant.names[i])] = upstream[i].stream_order;
  return orders;
}

TEST(StreamOrder, RisesWhereTwoOfTheHighestMeet) {
  const auto orders = orders_of({{"N0001", {}, {"T0001"}},
                                 {"T0001", {"N0001"}, {"T0003"}},
                                 {"N0002", {}, {"T0002"}},
                                 {"T0002", {"N0002"}, {"T0003"}},
                                 {"T0003", {"T0001", "T0002"}, {"T0005"}},
                                 {"N0004", {}, {"T0004"}},
                                 {"T0004", {"N0004"}, {"T0005"}},
                                 {"T0005", {"T0003", "T0004"}, {"ENDE"}}});
  EXPECT_EQ(orders.at("N0001"), 0U);
  EXPECT_EQ(orders.at("T0001"), 1U);
  EXPECT_EQ(orders.at("T0003"), 2U);
  EXPECT_EQ(orders.at("T0005"), 2U) << "a tributary of lower order changes nothing";
}

TEST(StreamOrder, TakesGaugesForOneJunction) {
  // Streams of orders 1, 1 and 2 meet: the highest order is there once.
  Lines lines = {{"N0001", {}, {"T0001"}},
                 {"N0002", {}, {"T0002"}},
                 {"N0003", {}, {"T0003"}},
                 {"N0004", {}, {"T0004"}},
                 {"T0001", {"N0001"}, {"P0001"}},
                 {"T0002", {"N0002"}, {"P0001"}},
                 {"P0001", {"T0001", "T0002"}, {"T0006"}},
                 {"T0003", {"N0003"}, {"T0005"}},
                 {"T0004", {"N0004"}, {"T0005"}},
                 {"T0005", {"T0003", "T0004"}, {"T0006"}},
                 {"T0006", {"P0001", "T0005"}, {"ENDE"}}};
  EXPECT_EQ(orders_of(lines).at("T0006"), 2U);
}

TEST(StreamOrder, DoesNotRiseWhereTwoArmsMeetAgain) {
  const auto orders = orders_of({{"N0001", {}, {"T0001"}},
                                 {"N0002", {}, {"T0002"}},
                                 {"T0001", {"N0001"}, {"V0001"}},
                                 {"T0002", {"N0002"}, {"V0001"}},
                                 {"V0001", {"T0001", "T0002"}, {"T0003", "T0004"}},
                                 {"T0003", {"V0001"}, {"T0005"}},
                                 {"T0004", {"V0001"}, {"T0005"}},
                                 {"T0005", {"T0003", "T0004"}, {"ENDE"}}});
  EXPECT_EQ(orders.at("T0003"), 2U);
  EXPECT_EQ(orders.at("T0004"), 2U);
  EXPECT_EQ(orders.at("T0005"), 2U);
}

TEST(StreamOrder, BeginsAtABranchingBelowSources) {
  const auto orders = orders_of({{"N0001", {}, {"V0001"}},
                                 {"V0001", {"N0001"}, {"T0003", "T0004"}},
                                 {"T0003", {"V0001"}, {"T0005"}},
                                 {"T0004", {"V0001"}, {"T0005"}},
                                 {"T0005", {"T0003", "T0004"}, {"ENDE"}}});
  EXPECT_EQ(orders.at("T0003"), 1U);
  EXPECT_EQ(orders.at("T0005"), 1U);
}

// Published areas.

struct Published {
  std::string reach;
  double area = 0.0;       // km²
  double flow_lines = 0;   // upstream, itself included; negative when the source does not tell it
  double tolerance = 0.0;  // km²
};

std::vector<Published> all_published(const fs::path& file) {
  std::vector<Published> reaches;
  std::istringstream lines(test_files::read_bytes(file));
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    std::vector<std::string> fields;
    std::istringstream rest(line);
    for (std::string field; std::getline(rest, field, ',');) fields.push_back(field);
    reaches.push_back({fields.at(0), std::stod(fields.at(2)),
                       fields.at(3).empty() ? -1.0 : std::stod(fields.at(3)), std::stod(fields.at(4))});
  }
  return reaches;
}

class RealNetworks : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const std::string name = GetParam();
    const fs::path folder = networks_folder() / name;
    if (!fs::exists(folder))
      GTEST_SKIP() << "not run: the folder of real networks is not there (" << folder.string() << ")";
    variant_ = schau::variant::read_variant({folder, name, name});
    published_ = all_published(folder / "expected.csv");
    const std::map<std::string, std::size_t> counts = {
        {"walker", 62}, {"newhope", 746}, {"hopediv", 2691}, {"colorado", 1942}};
    ASSERT_EQ(published_.size(), counts.at(name));
  }

  [[nodiscard]] Element element_of(const Published& reach) const {
    return variant_.elements.first(schau::variant::name_of(reach.reach));
  }

  Variant variant_;
  std::vector<Published> published_;
};

// These sources count both sides of every divergence, whatever its shares.
class CountedOnce : public RealNetworks {};

TEST_P(CountedOnce, MeetsThePublishedAreaAtEveryReach) {
  const Network network = schau::network::link(variant_);
  std::vector<Weights> reaches(network.count() + 1);
  for (Element i = 1; i <= network.count(); ++i) reaches[i] = {variant_.type(i) == 'T' ? 1.0 : 0.0, 0.0};
  const auto numbers = schau::network::upstream_sums(network, schau::network::flow_order(network), reaches);
  const std::vector<Upstream> upstream = look(variant_);
  for (const Published& reach : published_) {
    const Element i = element_of(reach);
    ASSERT_NE(i, 0U) << reach.reach;
    EXPECT_NEAR(upstream[i].catchment, reach.area, reach.tolerance) << reach.reach;
    if (reach.flow_lines >= 0) {
      EXPECT_EQ(numbers[i][0], reach.flow_lines) << reach.reach;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Networks, CountedOnce, testing::Values("walker", "newhope", "colorado"),
                         [](const auto& network) { return std::string(network.param); });

// This source gives the whole of a river to one arm of a divergence and nothing to the other.
class GivenToOneArm : public RealNetworks {
 protected:
  // Takes away the links to arms that get nothing.
  void cut_dry_arms(Network& network) const {
    const auto taken = schau::network::take_values(variant_, schau::variant::find_records(variant_));
    for (Element i = 1; i <= network.count(); ++i) {
      if (variant_.type(i) != 'V') continue;
      const bool second_is_dry = taken[i].value == 1.0 && taken[i].fraction == 1.0;
      const bool first_is_dry = taken[i].value != 1.0 || taken[i].fraction == 0.0;
      ASSERT_NE(first_is_dry, second_is_dry) << schau::variant::text_of(variant_.names[i]);
      const Element dry = network.outflow[i][first_is_dry ? 0 : 1];
      std::ranges::replace(network.inflow[dry], i, Element{0});
    }
  }
};

TEST_P(GivenToOneArm, MeetsThePublishedAreaWhereDryArmsDoNotCount) {
  Network network = schau::network::link(variant_);
  cut_dry_arms(network);
  const std::vector<Upstream> upstream = schau::network::look_upstream(
      variant_, network, schau::network::flow_order(network),
      schau::network::take_values(variant_, schau::variant::find_records(variant_)));
  for (const Published& reach : published_)
    EXPECT_NEAR(upstream[element_of(reach)].catchment, reach.area, reach.tolerance) << reach.reach;
}

TEST_P(GivenToOneArm, IsNeverMoreThanWhatIsCountedOnce) {
  const std::vector<Upstream> upstream = look(variant_);
  std::size_t equal = 0;
  for (const Published& reach : published_) {
    const double catchment = upstream[element_of(reach)].catchment;
    EXPECT_GE(catchment, reach.area - reach.tolerance) << reach.reach;
    if (catchment <= reach.area + reach.tolerance) ++equal;
  }
  EXPECT_EQ(equal, 2201U) << "all but the reaches below an arm that gets nothing";
}

INSTANTIATE_TEST_SUITE_P(Networks, GivenToOneArm, testing::Values("hopediv"),
                         [](const auto& network) { return std::string(network.param); });

// Speed: a million elements, of which some branch.

Network large_river(std::size_t count, std::size_t branching_of) {
  Dice dice(17);
  std::vector<std::vector<Element>> inflows(count);
  std::vector<Element> open;  // outflows that lead nowhere yet
  for (std::size_t i = 0; i < count; ++i) {
    const auto element = static_cast<Element>(i + 1);
    const std::size_t inflow_count = open.size() < 2 || dice.one_in(2) ? 0 : 1 + dice.roll(2);
    for (std::size_t k = 0; k < inflow_count && !open.empty(); ++k) {
      const std::size_t place = open.size() - 1 - dice.roll(std::min<std::size_t>(open.size(), 20));
      inflows[i].push_back(open[place]);
      open.erase(open.begin() + static_cast<std::ptrdiff_t>(place));
    }
    open.push_back(element);
    if (inflow_count > 0 && dice.one_in(branching_of)) open.push_back(element);
  }
  return network_of(inflows);
}

double seconds_for(const Network& network) {
  const std::vector<Weights> weights(network.count() + 1, Weights{1.0, 1.0});
  const std::vector<Element> order = schau::network::flow_order(network);
  const auto begin = std::chrono::steady_clock::now();
  const auto sums = schau::network::upstream_sums(network, order, weights);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(sums.back()[1], 1.0);
  return time.count();
}

TEST(UpstreamSums, TakeSecondsForAMillionElements) {
  const double time = seconds_for(large_river(1'000'000, 50));
  RecordProperty("seconds", std::to_string(time));
  EXPECT_LT(time, 20.0);
}

}  // namespace
