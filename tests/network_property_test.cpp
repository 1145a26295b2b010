// What holds for every network, whatever its shape: nothing is lost on the way to the outlet.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Akum/KV_Akum.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/units.h"
#include "tests/dice.h"
#include "tests/memory_host.h"
#include "tests/variant_files.h"

namespace {

using variant_files::columns_line;
using variant_files::Element;
using variant_files::Lines;

constexpr std::size_t header_lines = 6;

// A record of a companion file: one line, or two for a reach with a station.
using Record = Lines;
using Records = std::vector<Record>;

struct Variant {
  std::vector<Element> elements;
  Records natural;
  Records canalised;
  Records reaches;
  Records branchings;
  double natural_area = 0.0;     // km²
  double canalised_area = 0.0;   // km²
  double impervious_area = 0.0;  // km²
};

struct Shape {
  std::size_t most_elements = 60;
  bool dividing = false;  // with branchings and basins
};

// Grows a network downstream: every element drains what still waits for a taker.
class Growth {
 public:
  Growth(Dice& dice, const Shape& shape) : dice_(dice), shape_(shape) {}

  Variant grow() {
    add_source();
    for (std::size_t i = dice_.roll(shape_.most_elements); i > 0; --i) add_any();
    while (waiting_.size() > 1) add('T', takers());
    add('T', takers());
    variant_.elements.back().outflows = {"ENDE"};
    return variant_;
  }

 private:
  void add_any() {
    const std::size_t kind = dice_.roll(shape_.dividing ? 10 : 8);
    if (kind < 4) {
      add_source();
    } else {
      add("TTPPVB"[kind - 4], takers());
    }
  }

  std::string new_name(char type) {
    std::string number = std::to_string(variant_.elements.size() + 1);
    number.insert(0, 4 - number.size(), '0');
    return std::string(1, type).append(number);
  }

  void add_source() {
    const char type = "NNKKE"[dice_.roll(5)];
    const std::string name = new_name(type);
    variant_.elements.push_back({name, {}, {}});
    waiting_.push_back(variant_.elements.size() - 1);
    // Quarters of a km², half of a canalised area sealed or all of it: every sum of these is exact.
    const auto quarters = static_cast<std::int32_t>(1 + dice_.roll(399));
    const double area = quarters / 4.0;
    const bool half = dice_.one_in(2);
    Record record{columns_line({{4, name}, {11, area_text(quarters)}, {16, half ? "  0.5" : "  1.0"}})};
    if (type == 'N') {
      variant_.natural.push_back(record);
      variant_.natural_area += area;
    } else if (type == 'K') {
      variant_.canalised.push_back(record);
      variant_.canalised_area += area;
      variant_.impervious_area += half ? area / 2 : area;
    }
  }

  static std::string area_text(std::int32_t quarters) {
    constexpr std::array<std::string_view, 4> parts = {".00", ".25", ".50", ".75"};
    return std::to_string(quarters / 4).append(parts[static_cast<std::size_t>(quarters % 4)]);
  }

  // Up to three elements that wait for a taker, no one twice: they wait no longer.
  std::vector<std::size_t> takers() {
    std::vector<std::size_t> taken;
    const std::size_t wanted = 1 + dice_.roll(3);
    dice_.shuffle(waiting_);
    for (std::size_t i = waiting_.size(); i > 0 && taken.size() < wanted; --i) {
      const std::size_t element = waiting_[i - 1];
      if (std::ranges::find(taken, element) != taken.end()) continue;
      taken.push_back(element);
      waiting_.erase(waiting_.begin() + static_cast<std::ptrdiff_t>(i - 1));
    }
    return taken;
  }

  void add(char type, const std::vector<std::size_t>& inflows) {
    const std::string name = new_name(type);
    Element element{name, {}, {}};
    for (const std::size_t inflow : inflows) {
      variant_.elements[inflow].outflows.push_back(name);
      element.inflows.push_back(variant_.elements[inflow].name);
    }
    variant_.elements.push_back(element);
    const std::size_t outflows = type == 'V' || type == 'B' ? 2 : 1;
    waiting_.insert(waiting_.end(), outflows, variant_.elements.size() - 1);
    if (type == 'T') add_reach(name);
    if (type == 'V') add_branching(name);
  }

  void add_reach(const std::string& name) {
    if (dice_.one_in(2)) {
      variant_.reaches.push_back({columns_line({{4, name}, {11, "1"}})});
      return;
    }
    const std::string station = std::to_string(dice_.roll(1000));
    variant_.reaches.push_back(
        {columns_line({{4, name}, {11, "1"}, {57, "profil"}}), columns_line({{11, station}})});
  }

  void add_branching(const std::string& name) {
    const std::string code = std::to_string(1 + dice_.roll(3));
    variant_.branchings.push_back(
        {columns_line({{4, name}, {11, code}, {16, std::to_string(dice_.roll(101))}})});
  }

  Dice& dice_;
  Shape shape_;
  Variant variant_;
  std::vector<std::size_t> waiting_;
};

std::string bytes_of(const Records& records, std::string_view first_line) {
  std::string bytes(first_line);
  for (const Record& record : records) {
    for (const std::string& line : record) bytes.append("\n").append(line);
  }
  return bytes;
}

void put(MemoryHost& host, const Variant& variant) {
  std::string system;
  for (const Element& element : variant.elements) system += variant_files::sys_line(element) + "\n";
  host.put("v.sys", system);
  host.put("v.nfl", bytes_of(variant.natural, "          qkm"));
  host.put("v.kfl", bytes_of(variant.canalised, "          qkm"));
  host.put("v.trs", bytes_of(variant.reaches, "reaches"));
  host.put("v.ver", bytes_of(variant.branchings, "branchings"));
}

// The result of a variant, which has no findings.
std::string result_of(MemoryHost& host, const Variant& variant) {
  variant_files::start_afresh();
  put(host, variant);
  KV_Akum::ReadAllInputs("v");
  EXPECT_EQ(m_WLM_error::ErrorLevel, 0);
  KV_Akum::AccumulateAreas("v");
  runtime::close_all();
  EXPECT_EQ(host.output(), "");
  EXPECT_EQ(host.bytes("v.pkl"), "");
  return host.bytes("v.Akum");
}

struct Pair {
  double direct = 0.0;
  double total = 0.0;
};

// The areas of one reach, km².
struct Reach {
  std::string name;
  Pair natural;
  Pair canalised;
  Pair impervious;
  double sum = 0.0;
};

double number_at(std::string_view line, std::size_t column, std::size_t width) {
  return std::stod(std::string(line.substr(column - 1, width)));
}

std::vector<Reach> reaches_of(const std::string& result) {
  std::vector<Reach> reaches;
  const Lines lines = variant_files::lines_of(result);
  for (std::size_t i = header_lines; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    if (line.starts_with(' ')) continue;
    reaches.push_back({.name = line.substr(0, 5),
                       .natural = {number_at(line, 23, 10), number_at(line, 33, 10)},
                       .canalised = {number_at(line, 45, 10), number_at(line, 55, 10)},
                       .impervious = {number_at(line, 67, 10), number_at(line, 77, 10)},
                       .sum = number_at(line, 89, 11)});
  }
  return reaches;
}

class NetworkProperties : public testing::Test {
 protected:
  void SetUp() override { variant_files::reset_modules(); }
  void TearDown() override { variant_files::reset_modules(); }

  MemoryHost host;
};

TEST_F(NetworkProperties, WithoutDivisionsEverythingReachesTheOutletExactly) {
  for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
    Dice dice(seed);
    const Variant variant = Growth(dice, {}).grow();
    const std::vector<Reach> reaches = reaches_of(result_of(host, variant));
    ASSERT_FALSE(reaches.empty());
    const Reach& outlet = reaches.back();
    ASSERT_EQ(outlet.name, variant.elements.back().name);
    EXPECT_EQ(outlet.natural.total, variant.natural_area);
    EXPECT_EQ(outlet.canalised.total, variant.canalised_area);
    EXPECT_EQ(outlet.impervious.total, variant.impervious_area);
    EXPECT_EQ(outlet.sum, variant.natural_area + variant.canalised_area);
    for (const Reach& reach : reaches) {
      EXPECT_EQ(reach.natural.direct, reach.natural.total);
      EXPECT_EQ(reach.canalised.direct, reach.canalised.total);
      EXPECT_EQ(reach.impervious.direct, reach.impervious.total);
    }
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

// Three decimals of the result, and single precision on the way.
double rounding_of(double area) {
  return 0.0005 + 1.0e-5 * area;
}

TEST_F(NetworkProperties, SharesOfDivisionsAddUpAgain) {
  for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
    Dice dice(seed);
    const Variant variant = Growth(dice, {.dividing = true}).grow();
    const Reach outlet = reaches_of(result_of(host, variant)).back();
    EXPECT_NEAR(outlet.natural.total, variant.natural_area, rounding_of(variant.natural_area));
    EXPECT_NEAR(outlet.canalised.total, variant.canalised_area, rounding_of(variant.canalised_area));
    EXPECT_NEAR(outlet.impervious.total, variant.impervious_area, rounding_of(variant.impervious_area));
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

void expect_in_bounds(const Pair& areas, double most) {
  EXPECT_GE(areas.direct, 0.0);
  EXPECT_LE(areas.direct, areas.total + rounding_of(areas.total));
  EXPECT_LE(areas.total, most + rounding_of(most));
}

TEST_F(NetworkProperties, NoReachHasMoreThanTheBasin) {
  for (std::uint32_t seed = 3001; seed <= 5000; ++seed) {
    Dice dice(seed);
    const Variant variant = Growth(dice, {.dividing = true}).grow();
    for (const Reach& reach : reaches_of(result_of(host, variant))) {
      expect_in_bounds(reach.natural, variant.natural_area);
      expect_in_bounds(reach.canalised, variant.canalised_area);
      expect_in_bounds(reach.impervious, variant.impervious_area);
      EXPECT_LE(reach.impervious.total, reach.canalised.total + rounding_of(reach.canalised.total));
      EXPECT_NEAR(reach.sum, reach.natural.total + reach.canalised.total, 0.0016);
    }
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

TEST_F(NetworkProperties, TheOrderOfTheRecordsDoesNotMatter) {
  for (std::uint32_t seed = 6001; seed <= 7500; ++seed) {
    Dice dice(seed);
    Variant variant = Growth(dice, {.most_elements = 120, .dividing = true}).grow();
    const std::string in_order = result_of(host, variant);
    dice.shuffle(variant.natural);
    dice.shuffle(variant.canalised);
    dice.shuffle(variant.reaches);
    dice.shuffle(variant.branchings);
    EXPECT_EQ(result_of(host, variant), in_order);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

TEST_F(NetworkProperties, HectaresGiveWhatKm2Give) {
  for (std::uint32_t seed = 8001; seed <= 8200; ++seed) {
    Dice dice(seed);
    const Variant variant = Growth(dice, {.dividing = true}).grow();
    const std::vector<Reach> in_km2 = reaches_of(result_of(host, variant));
    variant_files::start_afresh();
    put(host, variant);
    host.put("v.nfl", bytes_of(variant.natural, "          ha"));
    // The unit of the natural areas goes on to the other file.
    host.put("v.kfl", bytes_of(variant.canalised, ""));
    KV_Akum::ReadAllInputs("v");
    KV_Akum::AccumulateAreas("v");
    runtime::close_all();
    const std::vector<Reach> in_ha = reaches_of(host.bytes("v.Akum"));
    ASSERT_EQ(in_ha.size(), in_km2.size());
    for (std::size_t i = 0; i < in_ha.size(); ++i) {
      EXPECT_NEAR(in_ha[i].natural.total * 100.0, in_km2[i].natural.total, 0.06);
      if (variant.natural.empty()) continue;
      EXPECT_NEAR(in_ha[i].canalised.total * 100.0, in_km2[i].canalised.total, 0.06);
    }
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

}  // namespace
