#include "KV_Schau/network/values.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "KV_Schau/variant/numbers.h"

namespace schau::network {
namespace {

using variant::FileId;
using variant::Records;
using variant::Variant;
namespace columns = variant::data_columns;

constexpr double per_cent = 0.01;

std::string_view record(const Variant& variant, const Records& records, FileId file, Element i) {
  return variant.file(file).line(records.line[i]).substr(0, columns::line_width);
}

// What the run reports as a bad number counts as 0.
double take_area_field(std::string_view field) {
  const variant::ReadNumber number = variant::read_area_field(field);
  return number.state == variant::ReadNumber::State::good ? number.value : 0.0;
}

Taken take_area(std::string_view line, variant::AreaUnit unit) {
  return {take_area_field(columns::area.of(line)) * variant::factor_of(unit),
          take_area_field(columns::sealing.of(line))};
}

// Halves go away from zero; the code is a 32-bit number.
double whole_code(double code) {
  constexpr double lowest = std::numeric_limits<std::int32_t>::min();
  constexpr double highest = std::numeric_limits<std::int32_t>::max();
  return std::clamp(std::round(code), lowest, highest);
}

Taken take_branching(std::string_view line) {
  return {whole_code(variant::read_loose_field(columns::code.of(line)).value),
          variant::read_loose_field(columns::share.of(line)).value * per_cent};
}

Taken take_reach(const Variant& variant, std::uint32_t line_number) {
  const variant::TextFile& file = variant.file(FileId::trs);
  if (!is_kind_2(file.line(line_number))) return {};
  const std::string_view line = file.line(station_line(variant, line_number));
  return {variant::read_loose_field(columns::station.of(line)).value, 0.0};
}

}  // namespace

bool is_kind_2(std::string_view reach_line) {
  return !variant::is_blank(columns::profile.of(reach_line));
}

std::uint32_t station_line(const Variant& variant, std::uint32_t reach_line) {
  return std::min(reach_line + 1, variant.file(FileId::trs).line_count());
}

std::vector<Taken> take_values(const Variant& variant, const Records& records) {
  std::vector<Taken> taken(variant.names.size());
  for (Element i = 1; i <= variant.element_count(); ++i) {
    if (records.line[i] == 0) continue;
    switch (variant.type(i)) {
      case 'N':
        taken[i] = take_area(record(variant, records, FileId::nfl, i), records.unit[i]);
        break;
      case 'K':
        taken[i] = take_area(record(variant, records, FileId::kfl, i), records.unit[i]);
        break;
      case 'V':
        taken[i] = take_branching(record(variant, records, FileId::ver, i));
        break;
      case 'T':
        taken[i] = take_reach(variant, records.line[i]);
        break;
      default:
        break;
    }
  }
  return taken;
}

}  // namespace schau::network
