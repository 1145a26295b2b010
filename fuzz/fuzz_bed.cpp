#include "fuzz/fuzz_bed.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "KV_Akum/KV_Akum.h"
#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/units.h"
#include "tests/variant_files.h"

namespace fuzz_bed {
namespace {

using m_System::system_logic;

constexpr std::size_t heading_lines = 6;
constexpr std::string_view marker = "=== ";
constexpr std::array<std::string_view, 9> known_files = {
    "v.sys", "v.nfl", "v.kfl", "v.trs", "v.ver", "v.pkl", "v.Akum", "code.pkl", "fehlercode.ex"};

// The place of the next marker that begins a line; npos when there is none.
std::size_t next_marker(std::string_view text, std::size_t from) {
  while (true) {
    const std::size_t place = text.find(marker, from);
    if (place == std::string_view::npos || place == 0 || text[place - 1] == '\n') return place;
    from = place + 1;
  }
}

// A reach has a line for itself and one for each further inflow.
std::size_t result_lines() {
  std::size_t lines = heading_lines;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    if (system_logic.type.at(i) != 'T') continue;
    const auto& inflow = system_logic.inflow_index.at(i);
    lines += 1U + (inflow.at(2) > 0 ? 1U : 0U) + (inflow.at(3) > 0 ? 1U : 0U);
  }
  return lines;
}

// Right-justified, with three decimals; asterisks where it is too wide.
bool is_number_field(std::string_view field) {
  if (field.find_first_not_of('*') == std::string_view::npos) return true;
  field.remove_prefix(std::min(field.find_first_not_of(' '), field.size()));
  if (field.starts_with('-')) field.remove_prefix(1);
  if (field == "Infinity" || field == "Inf" || field == "NaN") return true;
  const std::size_t point = field.find('.');
  return field.size() == point + 4 && field.find_first_not_of("0123456789.") == std::string_view::npos &&
         field.rfind('.') == point;
}

bool is_blank_at(std::string_view line, std::size_t column, std::size_t width) {
  return line.substr(column - 1, width).find_first_not_of(' ') == std::string_view::npos;
}

// The line of a reach, or one for a further inflow of it.
void require_result_line(std::string_view line) {
  constexpr std::size_t further_inflow = 22;
  constexpr std::size_t whole_line = 99;
  if (line.size() == further_inflow) {
    require(is_blank_at(line, 1, 17), "a further inflow stands alone");
    return;
  }
  require(line.size() == whole_line, "the line of a reach is 99 columns wide");
  require(is_blank_at(line, 6, 2) && is_blank_at(line, 16, 2), "blanks part the columns of the names");
  require(is_number_field(line.substr(7, 8)), "a station has three decimals");
  for (std::size_t pair = 0; pair < 3; ++pair) {
    const std::size_t column = 23 + 22 * pair;
    require(is_number_field(line.substr(column - 1, 10)) && is_number_field(line.substr(column + 9, 10)),
            "an area has three decimals");
    require(is_blank_at(line, column + 20, 2), "blanks part the pairs of areas");
  }
  require(is_number_field(line.substr(88, 11)), "the whole area has three decimals");
}

void for_each_line(std::string_view bytes, std::size_t skipped, void (*require_line)(std::string_view)) {
  require(bytes.empty() || bytes.ends_with('\n'), "the last line is complete");
  for (std::size_t number = 0; !bytes.empty(); ++number) {
    const std::size_t end = bytes.find('\n');
    if (number >= skipped) require_line(bytes.substr(0, end));
    bytes.remove_prefix(end + 1);
  }
}

void require_listing_line(std::string_view line) {
  // Six names with a blank behind each and six positions; wider ones show as asterisks.
  require(line.size() == 60, "a line of the listing is 60 columns wide");
  for (std::size_t field = 0; field < 6; ++field)
    require(line[6 * field + 5] == ' ', "blanks part the names");
}

}  // namespace

void require_layout(const Bed& bed) {
  if (bed.was_written("v.Akum")) for_each_line(bed.bytes("v.Akum"), heading_lines, require_result_line);
  if (bed.was_written("code.pkl")) for_each_line(bed.bytes("code.pkl"), 1, require_listing_line);
}

std::string_view text_of(const std::uint8_t* bytes, std::size_t size) {
  return size == 0 ? std::string_view() : std::string_view(reinterpret_cast<const char*>(bytes), size);
}

void require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

Bed::Bed() {
  variant_files::reset_modules();
}

Bed::~Bed() {
  variant_files::reset_modules();
}

void Bed::put(const std::string& file, std::string_view bytes) {
  host_.put(file, bytes);
  put_[file] = bytes;
}

bool Bed::was_written(const std::string& file) const {
  const auto found = put_.find(file);
  return bytes(file) != (found == put_.end() ? "" : found->second);
}

void Bed::put_all(std::string_view container) {
  std::size_t place = next_marker(container, 0);
  while (place != std::string_view::npos) {
    const std::size_t name_begin = place + marker.size();
    const std::size_t name_end = std::min(container.find('\n', name_begin), container.size());
    const std::size_t begin = std::min(name_end + 1, container.size());
    place = next_marker(container, begin);
    const std::size_t end = place == std::string_view::npos ? container.size() : std::max(begin, place - 1);
    const std::string_view name = container.substr(name_begin, name_end - name_begin);
    if (std::ranges::find(known_files, name) == known_files.end()) continue;
    put(std::string(name), container.substr(begin, end - begin));
  }
}

std::size_t Bed::lines(const std::string& file) const {
  return static_cast<std::size_t>(std::ranges::count(bytes(file), '\n'));
}

void start_with_network() {
  variant_files::fill_system_logic({{"N0010", {}, {"T0010"}},
                                    {"K0010", {}, {"T0010"}},
                                    {"N0020", {}, {"T0010"}},
                                    {"T0010", {"N0010", "K0010", "N0020"}, {"V0010"}},
                                    {"V0010", {"T0010"}, {"T0020", "T1"}},
                                    {"K 2", {}, {"T0020"}},
                                    {"T0020", {"V0010", "K 2"}, {"B0010"}},
                                    {"B0010", {"T0020"}, {"P0010", "V0020"}},
                                    {"P0010", {"B0010"}, {"T0030"}},
                                    {"V0020", {"B0010"}, {"T0030", "T1"}},
                                    {"T0030", {"P0010", "V0020"}, {"T1"}},
                                    {"E0010", {}, {"T0040"}},
                                    {"T1", {"V0010", "V0020", "T0030"}, {"T0040"}},
                                    {"T0040", {"T1", "E0010"}, {"ENDE"}}});
  variant_files::start_protocol();
}

void accumulate_and_check(const Bed& bed) {
  const bool accumulated = m_WLM_error::ErrorLevel < 2;
  if (accumulated) KV_Akum::AccumulateAreas("v");
  runtime::close_all();
  if (accumulated) require(bed.lines("v.Akum") == result_lines(), "every reach and inflow has its line");
  require_layout(bed);
}

}  // namespace fuzz_bed
