// What KV_Schau says that a run takes is held against what KV_Akum takes, on random networks with mistakes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Akum/KV_Akum.h"
#include "KV_Schau/network/flow.h"
#include "KV_Schau/network/network.h"
#include "KV_Schau/network/order.h"
#include "KV_Schau/network/values.h"
#include "KV_Schau/variant/numbers.h"
#include "KV_Schau/variant/records.h"
#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_System/m_System.h"
#include "runtime/units.h"
#include "tests/dice.h"
#include "tests/schau/bed.h"
#include "tests/schau/clean_network.h"
#include "tests/schau/mistakes.h"
#include "tests/shown_text.h"
#include "tests/test_files.h"
#include "tests/variant_files.h"

namespace schau_test {
namespace {

using m_System::system_logic;
using schau::network::Element;

// With every code suppressed a run goes on whatever it finds.
constexpr std::string_view all_codes =
    "Y01Y02Y03Y04Y05Y06Y07Y08Y09Y10Y12Y21Y22Y23Y24Y25Y26Y27\nW01W02W03A00A03A14F02Ver1\n";

// Exchanges a character of a random line for one that matters in these files.
void scribble(Bed& bed, Dice& dice) {
  static constexpr std::string_view characters = " .,-+0123456789EeNKETVBPZnqkmha\t";
  const auto file = static_cast<FileId>(dice.roll(5));
  if (bed.lines(file).empty()) return;
  std::string& line = bed.line(file, 1 + dice.roll(bed.lines(file).size()));
  if (!line.empty()) line[dice.roll(line.size())] = characters[dice.roll(characters.size())];
}

// Brings the lines of a file into another order.
void shuffle(Bed& bed, FileId file, Dice& dice) {
  dice.shuffle(bed.lines(file));
}

Bed faulty_bed(Dice& dice) {
  CleanNetwork network = clean_network(dice, 12 + dice.roll(30));
  if (dice.one_in(2)) mistakes()[dice.roll(mistakes().size())].plant(network, dice);
  for (std::size_t k = dice.roll(4); k > 0; --k) scribble(network.bed, dice);
  if (dice.one_in(4)) shuffle(network.bed, FileId::nfl, dice);
  if (dice.one_in(4)) shuffle(network.bed, FileId::kfl, dice);
  if (dice.one_in(8)) shuffle(network.bed, FileId::trs, dice);
  return network.bed;
}

void write_files(const Bed& bed) {
  for (const FileId file : {FileId::sys, FileId::nfl, FileId::kfl, FileId::trs, FileId::ver}) {
    if (!bed.is_missing(file))
      test_files::write_bytes("v." + std::string(extension_of(file)), bed.bytes(file));
  }
  test_files::write_bytes("fehlercode.ex", all_codes);
}

std::vector<Element> links_of_run(std::int32_t i, bool inflows) {
  std::vector<Element> links;
  for (std::int32_t k = 1; k <= (inflows ? 3 : 2); ++k) {
    const std::int32_t j =
        inflows ? system_logic.inflow_index.at(i).at(k) : system_logic.outflow_index.at(i).at(k);
    links.push_back(j > system_logic.element_count ? 0 : static_cast<Element>(j));
  }
  return links;
}

void expect_same_network(const schau::variant::Variant& variant, const schau::network::Network& network) {
  ASSERT_EQ(static_cast<std::int32_t>(network.count()), system_logic.element_count);
  for (Element i = 1; i <= network.count(); ++i) {
    const auto position = static_cast<std::int32_t>(i);
    EXPECT_EQ(schau::variant::text_of(variant.names[i], false), system_logic.name.at(position).view());
    EXPECT_EQ(std::vector<Element>(network.inflow[i].begin(), network.inflow[i].end()),
              links_of_run(position, true));
    EXPECT_EQ(std::vector<Element>(network.outflow[i].begin(), network.outflow[i].end()),
              links_of_run(position, false));
  }
}

// Equal but for the rounding of single precision.
void expect_near(double value, float of_run, std::string_view what) {
  EXPECT_NEAR(value, static_cast<double>(of_run), 1e-6 + std::abs(value) * 1e-5) << what;
}

bool is_bad_area(const schau::variant::Variant& variant, std::uint32_t line, FileId file) {
  using State = schau::variant::ReadNumber::State;
  const std::string_view text = variant.file(file).line(line);
  const auto state = [&](schau::variant::Span span) {
    return schau::variant::read_area_field(span.of(text)).state;
  };
  return state(schau::variant::data_columns::area) != State::good ||
         state(schau::variant::data_columns::sealing) != State::good;
}

// The tables of the run are numbered by kind, in system order.
class ValueComparison {
 public:
  ValueComparison(const schau::variant::Variant& variant, const schau::variant::Records& records)
      : variant_(variant), records_(records), taken_(schau::network::take_values(variant, records)) {}

  void run() {
    for (Element i = 1; i <= variant_.element_count(); ++i) compare(i);
  }

 private:
  void compare(Element i) {
    const char type = variant_.type(i);
    if (type == 'N' || type == 'K') compare_area(i, ++sources_);
    if (type == 'T') compare_reach(i, ++reaches_);
    if (type == 'V') compare_branching(i, ++branchings_);
  }

  void compare_area(Element i, std::int32_t source) {
    const FileId file = variant_.type(i) == 'N' ? FileId::nfl : FileId::kfl;
    if (is_bad_area(variant_, records_.line[i], file)) return;
    expect_near(taken_[i].value, m_Einleiter::source_tables.area.at(source), "area");
    expect_near(taken_[i].fraction, m_Einleiter::source_tables.sealing.at(source), "sealing");
  }
  void compare_reach(Element i, std::int32_t reach) {
    if (std::isfinite(taken_[i].value))
      expect_near(taken_[i].value, m_Gerinne::reach_tables.station_value.at(reach), "station");
  }
  void compare_branching(Element i, std::int32_t branching) {
    EXPECT_EQ(taken_[i].value, m_Bauwerke::branching_tables.code.at(branching));
    if (std::isfinite(taken_[i].fraction))
      expect_near(taken_[i].fraction, m_Bauwerke::branching_tables.share.at(branching), "share");
  }

  const schau::variant::Variant& variant_;
  const schau::variant::Records& records_;
  std::vector<schau::network::Taken> taken_;
  std::int32_t sources_ = 0;
  std::int32_t reaches_ = 0;
  std::int32_t branchings_ = 0;
};

bool has_all_records(const schau::variant::Variant& variant, const schau::variant::Records& records) {
  for (Element i = 1; i <= variant.element_count(); ++i) {
    if (schau::variant::data_file_of(variant.type(i)) && records.line[i] == 0) return false;
  }
  return true;
}

double number_in(std::string_view line, std::size_t column, std::size_t width) {
  return std::stod(std::string(line.substr(column - 1, width)));
}

// The totals of the reaches in the result of the run. Continuation lines begin with blanks.
void expect_same_totals(const schau::variant::Variant& variant, const schau::network::Flow& flow) {
  const variant_files::Lines lines = variant_files::written_lines("v.Akum");
  std::size_t row = 6;
  for (Element i = 1; i <= variant.element_count(); ++i) {
    if (variant.type(i) != 'T') continue;
    while (row < lines.size() && lines[row].starts_with("     ")) ++row;
    ASSERT_LT(row, lines.size());
    const std::string& line = lines[row++];
    EXPECT_EQ(line.substr(0, 5), schau::variant::text_of(variant.names[i], false));
    const schau::network::Areas& total = flow.total[i];
    const auto near = [&](double value, std::size_t column) {
      EXPECT_NEAR(value, number_in(line, column, 10), 0.0006 + std::abs(value) * 2e-5) << line;
    };
    near(total.natural, 33);
    near(total.canalised, 55);
    near(total.impervious, 77);
  }
}

bool is_plain(const schau::network::Flow& flow) {
  return std::ranges::all_of(flow.total, [](const schau::network::Areas& areas) {
    return areas.all() < 9e4 && areas.all() > -9e3 && std::abs(areas.impervious) < 9e4;
  });
}

bool stands_in_order(const std::vector<Element>& order) {
  return std::ranges::is_sorted(order);
}

void run() {
  const ShownText shown;
  variant_files::start_protocol();
  KV_Akum::ReadAllInputs("v");
  KV_Akum::AccumulateAreas("v");
  runtime::close_all();
}

struct Compared {
  std::size_t networks = 0;
  std::size_t values = 0;
  std::size_t totals = 0;
};

void compare_with_run(const Bed& bed, Compared& compared) {
  const variant_files::FreshRun folder;
  write_files(bed);
  run();
  const schau::variant::Variant variant = bed.variant();
  if (!variant.lines_behind_end.empty() || variant.element_count() == 0) return;
  const schau::network::Network network = schau::network::link(variant);
  expect_same_network(variant, network);
  ++compared.networks;
  const schau::variant::Records records = schau::variant::find_records(variant);
  if (!has_all_records(variant, records)) return;
  ValueComparison(variant, records).run();
  ++compared.values;
  const std::vector<Element> order = schau::network::flow_order(network);
  const std::vector<schau::network::Taken> taken = schau::network::take_values(variant, records);
  const schau::network::Flow flow = schau::network::accumulate(variant, network, order, records, taken);
  const bool has_bad_area = std::ranges::any_of(order, [&](Element i) {
    const auto file = schau::variant::data_file_of(variant.type(i));
    return (file == FileId::nfl || file == FileId::kfl) && is_bad_area(variant, records.line[i], *file);
  });
  if (!stands_in_order(order) || has_bad_area || !is_plain(flow)) return;
  expect_same_totals(variant, flow);
  ++compared.totals;
}

TEST(SameAsRun, OnRandomNetworksWithMistakes) {
  Dice dice(77);
  Compared compared;
  constexpr int rounds = 3000;
  for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
    const Bed bed = faulty_bed(dice);
    compare_with_run(bed, compared);
    if (!testing::Test::HasFailure()) continue;
    for (const FileId file : {FileId::sys, FileId::nfl, FileId::kfl, FileId::trs, FileId::ver}) {
      ADD_FAILURE() << "round " << round << ", " << extension_of(file) << ":\n" << bed.bytes(file);
    }
  }
  // Most of the networks must have come so far.
  EXPECT_GT(compared.networks, rounds * 8 / 10);
  EXPECT_GT(compared.values, rounds * 5 / 10);
  EXPECT_GT(compared.totals, rounds * 3 / 10);
}

}  // namespace
}  // namespace schau_test
