// Holds the search for the lines of elements, the links between the elements and the checks against the plain
// procedures: going through the lines and the names one after the other.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_System/companion_file.h"
#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_strings/m_strings.h"
#include "runtime/fixed_text.h"
#include "runtime/read.h"
#include "runtime/read_fields.h"
#include "runtime/units.h"
#include "tests/dice.h"
#include "tests/memory_host.h"
#include "tests/plain_search.h"
#include "tests/variant_files.h"

namespace {

using m_System::ElementName;
using m_System::inflow_slots;
using m_System::outflow_slots;
using m_System::system_logic;
using m_System::TypeOrdinal;
using plain_search::MarkOf;
using plain_search::plain_find;
using plain_search::PlainFile;
using plain_search::PlainFind;
using runtime::columns;
using variant_files::columns_line;
using variant_files::Element;
using variant_files::Lines;
using variant_files::Network;

std::string numbered(std::string_view prefix, std::size_t number) {
  return std::string(prefix).append(std::to_string(number));
}

// Lines that change something for the records behind them; here the mark is the digit behind an "@".
std::int32_t mark_of_line(std::string_view line) {
  return line.size() > 11 && line[10] == '@' ? line[11] - '0' : 0;
}

// The mark that a search has put into force; 0 when it met none.
std::int32_t mark_in_force = 0;

void put_into_force(std::int32_t mark) {
  mark_in_force = mark;
}

const m_System::CompanionKind plain_kind{
    .extension = ".dat", .type = 'N', .numbered_with = 'N', .allocate = nullptr, .read = nullptr};
const m_System::CompanionKind marked_kind{.extension = ".dat",
                                          .type = 'N',
                                          .numbered_with = 'N',
                                          .allocate = nullptr,
                                          .read = nullptr,
                                          .marks = {mark_of_line, put_into_force}};
// On which `CompanionFile` opens its file.
constexpr int file_unit = 100;

const std::vector<std::string>& hostile_names() {
  static const std::vector<std::string> names = {"N0010", "N0011", "N1",    "N1  1", "T0010",  "T0011",
                                                 "n0010", "",      " N001", "K0010", "N\0010", "V\xE4\xFF"};
  return names;
}

std::string line_end(Dice& dice) {
  static const std::vector<std::string> ends = {"\n", "\n", "\r\n", "\r", "\n\n", "\r\r\n"};
  return dice.pick(ends);
}

// Every line has a number of its own, so that a found line tells where it stands.
std::string random_line(Dice& dice, const std::vector<std::string>& names, std::size_t number) {
  const std::string own = std::to_string(number);
  const std::string mark = dice.one_in(4) ? numbered("@", 1 + dice.roll(3)) : "";
  switch (dice.roll(12)) {
    case 0:
      return "";
    case 1:
      return numbered("remark ", number);
    case 2:
      return columns_line({{4, "X9999"}, {11, mark}, {20, own}});
    case 3:
      return columns_line({{5, dice.pick(names)}, {11, mark}, {20, own}});
    case 4:
      return columns_line({{4, dice.pick(names)}});
    case 5: {
      std::string wide = columns_line({{4, dice.pick(names)}, {11, mark}, {20, own}});
      wide.resize(480 + dice.roll(60), 'w');
      return wide;
    }
    default:
      return columns_line({{4, dice.pick(names)}, {11, mark}, {20, own}});
  }
}

std::string random_file(Dice& dice, const std::vector<std::string>& names, std::size_t most_lines) {
  std::string bytes;
  const std::size_t lines = dice.roll(most_lines + 1);
  const bool mixed = dice.one_in(3);
  const std::string usual_end = line_end(dice);
  for (std::size_t i = 0; i < lines; ++i) {
    bytes += random_line(dice, names, i);
    bytes += mixed ? line_end(dice) : usual_end;
  }
  if (dice.one_in(3)) bytes += "   N0010 without an end";
  return bytes;
}

Network elements_of(const std::vector<std::string>& names) {
  Network network;
  for (const std::string& name : names) network.push_back({name, {}, {}});
  return network;
}

std::vector<std::string> some_names(Dice& dice, std::size_t most) {
  std::vector<std::string> names;
  const std::size_t count = 1 + dice.roll(most);
  for (std::size_t i = 0; i < count; ++i) {
    names.push_back(dice.one_in(3) ? dice.pick(hostile_names()) : numbered("N", dice.roll(30)));
  }
  return names;
}

class PlainSearch : public testing::Test {
 protected:
  void SetUp() override { variant_files::reset_modules(); }
  void TearDown() override { variant_files::reset_modules(); }

  MemoryHost host;
};

// The file stands where the plain search stands: it reads on from there to the end.
void expect_same_place(PlainFile plain) {
  runtime::LineReader reader(file_unit, plain_search::record_width);
  const runtime::RecordPosition before = reader.position();
  std::string_view line;
  while (const auto expected = plain.read()) {
    ASSERT_TRUE(reader.next(line));
    ASSERT_EQ(line, *expected);
  }
  EXPECT_FALSE(reader.next(line));
  reader.go_to(before);
}

void expect_same_line(m_System::CompanionFile& file, PlainFile& plain, std::int32_t i, MarkOf mark_of) {
  mark_in_force = 0;
  const std::optional<std::string_view> found = file.find(i);
  const PlainFind expected = plain_find(plain, m_System::system_logic.name.at(i), mark_of);
  ASSERT_EQ(found, expected.line);
  EXPECT_EQ(mark_in_force, expected.last_mark);
  if (!expected.line) {
    // A reader gives up here: where the file stands is of no account.
    runtime::rewind(file_unit);
    plain.rewind();
    return;
  }
  expect_same_place(plain);
}

// Between two searches a reader may take a line more.
void read_on_both(Dice& dice, m_System::CompanionFile& file, PlainFile& plain) {
  std::string_view line;
  for (std::size_t lines = dice.one_in(4) ? 1 + dice.roll(3) : 0; lines > 0; --lines) {
    const auto expected = plain.read();
    ASSERT_EQ(file.next(line), expected.has_value());
    if (expected) {
      EXPECT_EQ(line, *expected);
    }
  }
}

void search_random_file(MemoryHost& host, std::uint32_t seed, std::size_t most_lines) {
  Dice dice(seed);
  const std::vector<std::string> names = some_names(dice, most_lines / 3 + 3);
  variant_files::fill_system_logic(elements_of(names));
  std::vector<std::string> in_file = names;
  if (dice.one_in(2)) in_file.push_back(dice.pick(hostile_names()));
  const std::string bytes = random_file(dice, in_file, most_lines);
  host.put("v.dat", bytes);
  PlainFile plain(bytes);
  const m_System::CompanionKind& kind = dice.one_in(4) ? plain_kind : marked_kind;
  m_System::CompanionFile file("v", kind);
  ASSERT_TRUE(file.open());
  std::vector<std::int32_t> wanted(names.size());
  std::iota(wanted.begin(), wanted.end(), 1);
  if (dice.one_in(2)) dice.shuffle(wanted);
  for (const std::int32_t i : wanted) {
    expect_same_line(file, plain, i, kind.marks.mark_of);
    if (testing::Test::HasFailure()) break;
    read_on_both(dice, file, plain);
  }
  file.close();
}

TEST_F(PlainSearch, FindsTheSameLinesInSmallFiles) {
  for (std::uint32_t seed = 1; seed <= 10000; ++seed) {
    search_random_file(host, seed, 12);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

TEST_F(PlainSearch, FindsTheSameLinesInFilesThatNeedAnIndex) {
  for (std::uint32_t seed = 1; seed <= 4000; ++seed) {
    search_random_file(host, seed, 90);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

TEST_F(PlainSearch, FindsTheSameLinesInLargeFiles) {
  for (std::uint32_t seed = 1; seed <= 12; ++seed) {
    search_random_file(host, seed, 1500);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

// Records in any order, each once, as a variant has them.
void search_permuted_file(MemoryHost& host, std::uint32_t seed) {
  Dice dice(seed);
  std::vector<std::string> names;
  for (std::size_t i = 0; i < 40; ++i) names.push_back(numbered("N", 1000 + i));
  variant_files::fill_system_logic(elements_of(names));
  std::vector<std::string> order = names;
  // Rotated, reversed, with a few exchanged or wholly mixed: the orders that editing leaves behind.
  const std::size_t kind = dice.roll(4);
  if (kind == 0) std::rotate(order.begin(), order.begin() + 17, order.end());
  if (kind == 1) std::reverse(order.begin(), order.end());
  if (kind == 2) std::swap(order[dice.roll(40)], order[dice.roll(40)]);
  if (kind == 3) dice.shuffle(order);
  std::string bytes;
  for (const std::string& name : order) {
    if (dice.one_in(5)) bytes += columns_line({{11, numbered("@", 1 + dice.roll(3))}}) + "\n";
    bytes += columns_line({{4, name}, {20, "x"}}) + "\n";
  }
  host.put("v.dat", bytes);
  PlainFile plain(bytes);
  m_System::CompanionFile file("v", marked_kind);
  ASSERT_TRUE(file.open());
  for (std::int32_t i = 1; i <= 40; ++i) expect_same_line(file, plain, i, mark_of_line);
  file.close();
}

TEST_F(PlainSearch, FindsTheSameLinesInPermutedFiles) {
  for (std::uint32_t seed = 1; seed <= 400; ++seed) {
    search_permuted_file(host, seed);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

// The readers, by reading one line after the other.

struct PlainUnit {
  float factor = 1.0F;
};

void apply_unit(PlainUnit& unit, std::string_view line) {
  const auto field = columns<11, 15>(line);
  const auto holds = [&](std::string_view keyword) {
    return field.view().find(keyword) != std::string_view::npos;
  };
  if (holds("qkm")) {
    unit.factor = 1.0F;
  } else if (holds("ha")) {
    unit.factor = 0.01F;
  } else if (holds("qm")) {
    unit.factor = 1.0e-6F;
  }
}

// The element's line; every line on the way is tested for a unit.
std::optional<std::string> plain_area_line(PlainFile& file, const ElementName& name, PlainUnit& unit) {
  for (int pass = 1; pass <= 2; ++pass) {
    while (auto line = file.read()) {
      apply_unit(unit, *line);
      if (columns<4, 8>(*line) == name) return line;
    }
    if (pass == 1) file.rewind();
  }
  return std::nullopt;
}

struct PlainAreas {
  std::vector<float> area;
  std::vector<float> sealing;
  bool complete = true;
};

void plain_read_areas(PlainAreas& areas, PlainFile file, char type, PlainUnit& unit) {
  std::size_t source = 0;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    const char own = system_logic.type.at(i);
    if (own == type) {
      const auto line = plain_area_line(file, system_logic.name.at(i), unit);
      if (!line) {
        areas.complete = false;
        return;
      }
      runtime::read_fields(*line, runtime::format<"(10X,2F5.0)">,
                           {areas.area[source], areas.sealing[source]});
      areas.area[source] *= unit.factor;
    }
    if (own == 'N' || own == 'K') ++source;
  }
}

std::string random_area_line(Dice& dice, const std::vector<std::string>& names) {
  static const std::vector<std::string> units = {"qkm", "ha", "qm", "  ha", "haqm", "QM", "[qm]"};
  static const std::vector<std::string> numbers = {"1",   "25", "3e2", "",      "  7",
                                                   "abc", "-4", "ha",  "12345", "2,5"};
  if (dice.one_in(5)) return columns_line({{11, dice.pick(units)}});
  if (dice.one_in(8)) return columns_line({{4, "X9999"}, {11, dice.pick(numbers)}, {16, dice.pick(numbers)}});
  return columns_line({{4, dice.pick(names)}, {11, dice.pick(numbers)}, {16, dice.pick(numbers)}});
}

std::string random_area_file(Dice& dice, std::vector<std::string> names) {
  std::string bytes;
  const std::string end = line_end(dice);
  const bool with_all = !dice.one_in(6);
  dice.shuffle(names);
  const std::size_t steps = names.size() + dice.roll(10);
  for (std::size_t i = 0; i < steps; ++i) {
    if (with_all && i < names.size()) bytes += columns_line({{4, names[i]}, {11, "17"}, {16, "1"}}) + end;
    if (dice.one_in(2)) bytes += random_area_line(dice, names) + end;
  }
  return bytes;
}

std::vector<float> table_of(const runtime::OneBased<float>& table, std::size_t count) {
  std::vector<float> values;
  for (std::size_t i = 1; i <= count; ++i) values.push_back(table.at_or_zero(static_cast<std::int32_t>(i)));
  return values;
}

void read_random_areas(MemoryHost& host, std::uint32_t seed) {
  Dice dice(seed);
  variant_files::reset_modules();
  // All findings are suppressed: the second reader runs whatever the first one finds.
  host.put("fehlercode.ex", "A00A03A14F02\n");
  variant_files::start_protocol();
  std::vector<std::string> names;
  const std::size_t count = 2 + dice.roll(30);
  for (std::size_t i = 0; i < count; ++i) {
    names.push_back(numbered(dice.one_in(2) ? "N" : "K", dice.roll(40)));
  }
  names.emplace_back("N99");
  names.emplace_back("K99");
  variant_files::fill_system_logic(elements_of(names));
  const std::string natural = random_area_file(dice, names);
  const std::string canalised = random_area_file(dice, names);
  host.put("v.nfl", natural);
  host.put("v.kfl", canalised);
  PlainAreas expected{std::vector<float>(names.size()), std::vector<float>(names.size())};
  PlainUnit unit;
  plain_read_areas(expected, PlainFile(natural), 'N', unit);
  m_Einleiter::ReadNaturalAreas("v");
  EXPECT_EQ(runtime::unit_of("v.nfl").has_value(), !expected.complete);
  EXPECT_EQ(m_Einleiter::source_tables.unit_factor, unit.factor);
  plain_read_areas(expected, PlainFile(canalised), 'K', unit);
  m_Einleiter::ReadCanalisedAreas("v");
  EXPECT_EQ(table_of(m_Einleiter::source_tables.area, names.size()), expected.area);
  EXPECT_EQ(table_of(m_Einleiter::source_tables.sealing, names.size()), expected.sealing);
  EXPECT_EQ(m_Einleiter::source_tables.unit_factor, unit.factor);
}

TEST_F(PlainSearch, ReadsTheSameAreas) {
  for (std::uint32_t seed = 1; seed <= 4000; ++seed) {
    read_random_areas(host, seed);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

struct PlainReaches {
  std::vector<std::int32_t> kind;
  std::vector<float> first;
  std::vector<float> station;
};

float value_of(std::string_view line) {
  auto field = columns<11, 18>(line);
  return m_strings::ParseReal(field.bytes);
}

void plain_read_reaches(PlainReaches& reaches, PlainFile file) {
  std::size_t reach = 0;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    if (system_logic.type.at(i) != 'T') continue;
    auto line = plain_find(file, system_logic.name.at(i), nullptr).line;
    if (!line) return;
    reaches.kind[reach] = runtime::is_blank(columns<57, 66>(*line).view()) ? 1 : 2;
    if (reaches.kind[reach] == 2) {
      reaches.first[reach] = value_of(*line);
      // Behind the last line the buffer still holds the reach's own.
      if (const auto next = file.read()) line = next;
      reaches.station[reach] = value_of(*line);
    }
    ++reach;
  }
}

std::string random_reach_file(Dice& dice, const std::vector<std::string>& names) {
  std::string bytes;
  const std::string end = line_end(dice);
  const std::size_t steps = names.size() + dice.roll(20);
  for (std::size_t i = 0; i < steps; ++i) {
    const std::string& name = dice.one_in(3) ? dice.pick(names) : names[i % names.size()];
    bytes += columns_line({{4, dice.one_in(8) ? "X9999" : name},
                           {11, std::to_string(dice.roll(100000))},
                           {57, dice.one_in(2) ? "profil" : ""}});
    bytes += end;
    if (dice.one_in(2)) bytes += columns_line({{11, std::to_string(dice.roll(100000))}}) + end;
  }
  return bytes;
}

void read_random_reaches(MemoryHost& host, std::uint32_t seed) {
  Dice dice(seed);
  variant_files::start_afresh();
  std::vector<std::string> names;
  const std::size_t count = 1 + dice.roll(25);
  for (std::size_t i = 0; i < count; ++i) names.push_back(numbered("T", dice.roll(60)));
  variant_files::fill_system_logic(elements_of(names));
  dice.shuffle(names);
  const std::string bytes = random_reach_file(dice, names);
  host.put("v.trs", bytes);
  PlainReaches expected{std::vector<std::int32_t>(names.size()), std::vector<float>(names.size()),
                        std::vector<float>(names.size())};
  plain_read_reaches(expected, PlainFile(bytes));
  m_Gerinne::ReadReaches("v");
  for (std::size_t r = 0; r < names.size(); ++r) {
    const auto reach = static_cast<std::int32_t>(r) + 1;
    EXPECT_EQ(m_Gerinne::reach_tables.kind.at(reach), expected.kind[r]);
    EXPECT_EQ(m_Gerinne::reach_tables.first_value.at(reach), expected.first[r]);
    EXPECT_EQ(m_Gerinne::reach_tables.station_value.at(reach), expected.station[r]);
  }
}

TEST_F(PlainSearch, ReadsTheSameReaches) {
  for (std::uint32_t seed = 1; seed <= 4000; ++seed) {
    read_random_reaches(host, seed);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

// The system logic, by going through all names.

constexpr std::string_view letters = "NKETVBP";

bool plain_link_fits(std::string_view line, std::size_t first, std::size_t last) {
  const std::string padded = [&] {
    std::string text(line);
    text.resize(100, ' ');
    return text;
  }();
  if (letters.find(padded[first - 1]) != std::string_view::npos) return true;
  return runtime::is_blank(std::string_view(padded).substr(first - 1, last - first + 1));
}

bool plain_element_line(std::string_view line) {
  if (runtime::trimmed_length(line) < 36 || letters.find(line[35]) == std::string_view::npos) return false;
  return plain_link_fits(line, 44, 60) && plain_link_fits(line, 50, 60) && plain_link_fits(line, 56, 60) &&
         plain_link_fits(line, 64, 68) && plain_link_fits(line, 70, 74);
}

// The elements, those behind the end marker blank.
Network plain_elements(const Lines& lines) {
  Network network;
  bool ended = false;
  for (const std::string& whole : lines) {
    const std::string_view line = std::string_view(whole).substr(0, 100);
    if (!plain_element_line(line)) continue;
    if (ended) {
      network.push_back({"", {}, {}});
      continue;
    }
    network.push_back({std::string(columns<36, 40>(line).view()),
                       {std::string(columns<44, 48>(line).view()), std::string(columns<50, 54>(line).view()),
                        std::string(columns<56, 60>(line).view())},
                       {std::string(columns<64, 68>(line).view()), std::string(columns<70, 74>(line).view())},
                       std::string(columns<4, 6>(line).view()),
                       std::string(columns<8, 14>(line).view())});
    ended = network.back().outflows[0] == "ENDE ";
  }
  return network;
}

using Finding = std::vector<std::string>;

std::string first_line(std::string_view code, std::string_view name) {
  return std::string(code) + ":" + std::string(runtime::trimmed(name));
}

bool given(const ElementName& name) {
  return !name.blank();
}

bool starts_badly(const ElementName& name) {
  return std::string_view(" NKETVBP").find(name.first()) == std::string_view::npos;
}

// Both stages go through the table as it was filled by going through all names.
void plain_inflow_fields(std::int32_t i, Finding& findings) {
  const auto& logic = system_logic;
  const std::string_view name = logic.name.at(i).view();
  const auto& inflow = logic.inflow_name.at(i);
  if (std::string_view("NKE").find(logic.type.at(i)) != std::string_view::npos) {
    for (std::int32_t k = 1; k <= 3; ++k) {
      if (given(inflow.at(k))) findings.push_back(first_line("Y05", name));
    }
    return;
  }
  if (!given(inflow.at(1))) findings.push_back(first_line("Y06", name));
  if (!given(inflow.at(2)) && given(inflow.at(3))) findings.push_back(first_line("Y07", name));
}

void plain_outflow_fields(std::int32_t i, Finding& findings) {
  const auto& logic = system_logic;
  const std::string_view name = logic.name.at(i).view();
  const bool first = given(logic.outflow_name.at(i).at(1));
  const bool second = given(logic.outflow_name.at(i).at(2));
  const char type = logic.type.at(i);
  if (std::string_view("NKETP").find(type) != std::string_view::npos) {
    if (!first) findings.push_back(first_line("Y08", name));
    if (second) findings.push_back(first_line("Y09", name));
  }
  if (type != 'V' && type != 'B') return;
  if (first && !second) findings.push_back(first_line("W02", name));
  if (!first && second) findings.push_back(first_line("W01", name));
  if (!first && !second) findings.push_back(first_line(type == 'V' ? "Y10" : "W03", name));
  if (!logic.tag3.at(i).blank() && logic.tag7.at(i).blank()) findings.push_back(first_line("Y12", name));
}

Finding plain_formal_stage() {
  Finding findings;
  const auto& logic = system_logic;
  for (std::int32_t i = 1; i <= logic.element_count; ++i) {
    const std::string_view name = logic.name.at(i).view();
    if (letters.find(logic.type.at(i)) == std::string_view::npos) findings.push_back(first_line("Y01", name));
    for (const ElementName& inflow : logic.inflow_name.at(i).values) {
      if (starts_badly(inflow)) findings.push_back(first_line("Y02", inflow.view()));
    }
    for (const ElementName& outflow : logic.outflow_name.at(i).values) {
      if (starts_badly(outflow)) findings.push_back(first_line("Y03", outflow.view()));
    }
    for (std::int32_t j = 1; j < i; ++j) {
      if (logic.name.at(j) == logic.name.at(i)) findings.push_back(first_line("Y04", name));
    }
    plain_inflow_fields(i, findings);
    plain_outflow_fields(i, findings);
  }
  return findings;
}

template <class Slots>
bool names_position(const Slots& slots, std::int32_t i) {
  return std::ranges::find(slots.values, i) != slots.values.end();
}

void plain_inflow_links(std::int32_t i, Finding& findings) {
  const auto& logic = system_logic;
  const std::string_view name = logic.name.at(i).view();
  for (std::int32_t k = 1; k <= inflow_slots; ++k) {
    const ElementName& inflow = logic.inflow_name.at(i).at(k);
    const std::int32_t j = logic.inflow_index.at(i).at(k);
    if (given(inflow) && j == 0) findings.push_back(first_line("Y21", inflow.view()));
    if (j >= i && j >= 1) findings.push_back(first_line("Y23", inflow.view()));
    if (j == 0) continue;
    if (!names_position(logic.outflow_index.at(j), i)) findings.push_back(first_line("Y25", name));
    for (std::int32_t m = k + 1; m <= inflow_slots; ++m) {
      if (logic.inflow_index.at(i).at(m) == j) findings.push_back(first_line("Y27", name));
    }
  }
}

void plain_outflow_links(std::int32_t i, Finding& findings) {
  const auto& logic = system_logic;
  const std::int32_t last = logic.element_count;
  for (std::int32_t k = 1; k <= outflow_slots; ++k) {
    const ElementName& outflow = logic.outflow_name.at(i).at(k);
    const std::int32_t j = logic.outflow_index.at(i).at(k);
    if (i < last && given(outflow) && j == 0) findings.push_back(first_line("Y22", outflow.view()));
    // The printed line names the element first.
    if (j >= 1 && j <= i) findings.push_back(first_line("Y24", logic.name.at(i).view()));
    if (j != 0 && i != last && !names_position(logic.inflow_index.at(j), i)) {
      findings.push_back(first_line("Y26", logic.name.at(i).view()));
    }
  }
}

bool has_error(const Finding& findings) {
  return std::ranges::any_of(findings, [](const std::string& finding) { return finding[0] == 'Y'; });
}

// Repeated warnings end after the fifth.
Finding without_the_capped(const Finding& all) {
  Finding findings;
  for (const std::string& finding : all) {
    const auto same_code = [&](const std::string& other) {
      return other.substr(0, 3) == finding.substr(0, 3);
    };
    if (finding[0] == 'W' && std::ranges::count_if(findings, same_code) == 5) continue;
    findings.push_back(finding);
  }
  return findings;
}

Finding plain_findings() {
  Finding findings = plain_formal_stage();
  if (!has_error(findings)) {
    for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
      plain_inflow_links(i, findings);
      plain_outflow_links(i, findings);
    }
  }
  return without_the_capped(findings);
}

// The code and the first name of each message in the protocol.
Finding protocol_findings(const MemoryHost& host) {
  Finding findings;
  runtime::close_all();
  for (const std::string& line : variant_files::lines_of(host.bytes("v.pkl"))) {
    if (line.starts_with(' ') || line.starts_with("Pr")) continue;
    constexpr std::string_view undefined = "-Kommentar bei ";
    const std::size_t at = line.find(undefined);
    std::string name =
        at == std::string::npos ? line.substr(line.find(" : ") + 3) : line.substr(at + undefined.size());
    if (at != std::string::npos) name = name.substr(0, name.find(" nicht definiert!"));
    findings.push_back(first_line(line.substr(0, 3), name));
  }
  return findings;
}

// The links and counts of the table, to be held against those of the plain procedure.
struct Table {
  std::vector<std::string> names;
  std::vector<std::int32_t> links;
  std::vector<std::int32_t> ordinals;
  friend bool operator==(const Table&, const Table&) = default;
};

template <class Ordinal>
Table table_now(Ordinal ordinal) {
  Table table;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    table.names.emplace_back(system_logic.name.at(i).view());
    for (const std::int32_t link : system_logic.inflow_index.at(i).values) table.links.push_back(link);
    for (const std::int32_t link : system_logic.outflow_index.at(i).values) table.links.push_back(link);
    for (const char letter : std::string_view("NTVX ")) table.ordinals.push_back(ordinal(letter, i));
  }
  return table;
}

std::int32_t plain_ordinal(char letter, std::int32_t i) {
  std::int32_t count = 0;
  for (std::int32_t j = 1; j <= i; ++j) count += system_logic.type.at(j) == letter ? 1 : 0;
  return count;
}

// A network of a few names, mostly linked upwards, with faults of every kind.
Lines random_sys_lines(Dice& dice, bool tidy) {
  static const std::vector<std::string> wild = {"N1", "T1", "T2", "V1", "B1", "P1", "X1", "x", "Z1", "N1x"};
  Lines lines;
  const std::size_t count = dice.roll(14);
  const auto name_at = [&](std::size_t i) {
    return numbered(std::string_view("NKETTVBPTT").substr(i % 10, 1), i % 11);
  };
  const auto link = [&](std::size_t i) {
    if (dice.one_in(tidy ? 40 : 8)) return dice.pick(wild);
    return name_at(i);
  };
  for (std::size_t i = 0; i < count; ++i) {
    Element element{name_at(i), {}, {}};
    const bool source = std::string_view("NKE").find(element.name[0]) != std::string_view::npos;
    if (!source || dice.one_in(30)) {
      const std::size_t inflows = 1 + dice.roll(3);
      for (std::size_t k = 0; k < inflows; ++k) element.inflows.push_back(link(dice.roll(i + 1)));
    }
    element.outflows.push_back(i + 1 == count || dice.one_in(40) ? "ENDE" : link(i + 1 + dice.roll(3)));
    if (std::string_view("VB").find(element.name[0]) != std::string_view::npos && !dice.one_in(4)) {
      element.outflows.push_back(link(i + 1 + dice.roll(3)));
    }
    if (dice.one_in(10)) element.outflows[0] = "";
    if (dice.one_in(20)) element.tag3 = "BW";
    lines.push_back(variant_files::sys_line(element));
    if (dice.one_in(10)) lines.push_back("remark " + std::string(dice.roll(60), '-'));
  }
  return lines;
}

std::string joined(const Lines& lines) {
  std::string bytes;
  for (const std::string& line : lines) bytes += line + "\n";
  return bytes;
}

void read_random_system(MemoryHost& host, std::uint32_t seed, bool tidy) {
  Dice dice(seed);
  const Lines lines = random_sys_lines(dice, tidy);
  variant_files::start_afresh();
  host.forget_output();
  host.put("v.sys", joined(lines));
  m_System::ReadSystemFile("v");
  const Table read = table_now(TypeOrdinal);
  const std::int32_t level = m_WLM_error::ErrorLevel;
  const Finding reported = protocol_findings(host);

  variant_files::fill_system_logic(plain_elements(lines));
  EXPECT_EQ(read, table_now(plain_ordinal));
  const Finding expected = plain_findings();
  EXPECT_EQ(reported, expected);
  EXPECT_EQ(level, has_error(expected) ? 2 : static_cast<std::int32_t>(!expected.empty()));
  EXPECT_EQ(host.output().empty(), level < 2);
}

TEST_F(PlainSearch, LinksAndChecksHostileNetworksAlike) {
  for (std::uint32_t seed = 1; seed <= 6000; ++seed) {
    read_random_system(host, seed, false);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

TEST_F(PlainSearch, LinksAndChecksTidyNetworksAlike) {
  for (std::uint32_t seed = 1; seed <= 6000; ++seed) {
    read_random_system(host, seed, true);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

// Names that only differ in one byte, and many alike: what an index of names could mix up.
TEST_F(PlainSearch, FindsTheSameElementOfManyNames) {
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    Dice dice(seed);
    std::vector<std::string> names;
    for (int i = 0; i < 300; ++i) {
      std::string name(dice.roll(6), ' ');
      for (char& c : name) c = static_cast<char>(dice.one_in(4) ? dice.roll(256) : 'A' + dice.roll(3));
      names.push_back(name);
    }
    variant_files::fill_system_logic(elements_of(names));
    for (int i = 0; i < 300; ++i) {
      const std::string& wanted = dice.one_in(4) ? std::string("AAA") : dice.pick(names);
      const auto found = std::ranges::find_if(
          names, [&](const std::string& name) { return runtime::equal_padded(name, wanted); });
      const auto expected = found == names.end() ? 0 : static_cast<std::int32_t>(found - names.begin()) + 1;
      ASSERT_EQ(m_System::ElementIndex(wanted), expected) << "seed " << seed;
    }
  }
}

}  // namespace
