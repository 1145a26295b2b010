#include <algorithm>
#include <array>
#include <cmath>

#include "m_files/m_files.h"
#include "m_info/filled_tables.h"
#include "m_info/m_info.h"
#include "m_strings/m_strings.h"
#include "runtime/arithmetic.h"
#include "runtime/format.h"
#include "runtime/read.h"
#include "runtime/read_fields.h"
#include "runtime/units.h"

namespace m_info {

CheckList filled_check_list;
const CheckList& check_list = filled_check_list;
Date run_date;

namespace {

constexpr int first_list_unit = 50;
constexpr std::size_t list_line_width = 40;

bool contains(std::string_view text, std::string_view piece) {
  return text.find(piece) != std::string_view::npos;
}

// Reading.

void set_flag(std::int32_t& flag, std::string_view line) {
  if (runtime::columns<21, 31>(line).view().find_first_of("Jj") != std::string_view::npos) flag = 1;
}

void read_report_numbers(std::string_view value) {
  std::array<double, report_number_count> numbers{};
  const std::int32_t count = m_strings::NumberTokens8(value, numbers, "steuer");
  if (count == 0) return;
  for (std::int32_t i = 1; i <= count; ++i) {
    filled_check_list.report_numbers.at(i) =
        runtime::nearest_integer(numbers[static_cast<std::size_t>(i) - 1]);
  }
  filled_check_list.report_max_kind =
      runtime::truncated_integer(*std::max_element(numbers.begin(), numbers.begin() + count));
}

bool read_number(std::string_view value, std::int32_t& number) {
  return runtime::read_fields(value, runtime::format<"(i20)">, {number});
}

bool read_station(std::string_view value, double& station) {
  return runtime::read_fields(value, runtime::format<"(f20.0)">, {station});
}

// A line counts even when its level cannot be read.
bool read_water_level(std::string_view value) {
  const std::int32_t count = ++filled_check_list.water_level_count;
  if (count > water_level_capacity) return true;
  double& level = filled_check_list.water_levels.at(count);
  return runtime::read_fields(value, runtime::format<"(f10.0)">, {level});
}

void read_element_name(std::string_view value) {
  value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
  filled_check_list.report_element_name = value;
}

// False when a number in the line cannot be read.
bool read_entry(std::string_view line) {
  const auto keyword_field = runtime::columns<1, 20>(line);
  const auto value_field = runtime::columns<21, 40>(line);
  const std::string_view keyword = keyword_field.view();
  const std::string_view value = value_field.view();
  if (contains(keyword, "Profile_")) {
    set_flag(filled_check_list.profiles_wanted, line);
  } else if (contains(keyword, "Abfluss_")) {
    set_flag(filled_check_list.discharge_wanted, line);
  } else if (contains(keyword, "WSP_")) {
    set_flag(filled_check_list.wsp_detail_wanted, line);
  } else if (contains(keyword, "Spiegellinie")) {
    read_report_numbers(value);
  } else if (contains(keyword, "richt")) {
    return read_number(value, filled_check_list.report_element_number);
  } else if (contains(keyword, "Element")) {
    read_element_name(value);
  } else if (contains(keyword, "xu...")) {
    return read_station(value, filled_check_list.station_min);
  } else if (contains(keyword, "xo...")) {
    return read_station(value, filled_check_list.station_max);
  } else if (contains(keyword, "Hvonh")) {
    return read_water_level(value);
  }
  return true;
}

// Queries.

bool same_date(const Date& left, const Date& right) {
  return left.values == right.values;
}

bool names_the_element(std::string_view name) {
  const std::string_view listed = check_list.report_element_name.view();
  if (contains(listed, "alle")) return true;
  return !runtime::is_blank(name) && contains(listed, runtime::trimmed(name));
}

bool detail_wanted(const CheckCase& wanted) {
  if (check_list.wsp_detail_wanted == 0) return false;
  if (!wanted.element_name || !names_the_element(*wanted.element_name)) return false;
  return check_list.report_max_kind == every_kind || wanted.kind == check_list.report_max_kind;
}

bool query_wanted(std::string_view query, const CheckCase& wanted) {
  if (runtime::equal_padded(query, "Profile")) return check_list.profiles_wanted != 0;
  if (runtime::equal_padded(query, "Abfluss")) return check_list.discharge_wanted != 0;
  if (runtime::equal_padded(query, "WSP_detail")) return detail_wanted(wanted);
  if (runtime::equal_padded(query, "WSPi")) {
    return wanted.date && same_date(*wanted.date, check_list.report_date());
  }
  return false;
}

bool at_a_water_level(double station) {
  constexpr float tolerance = 1E-5F;
  const auto end =
      check_list.water_levels.values.begin() + std::min(check_list.water_level_count, water_level_capacity);
  return std::any_of(check_list.water_levels.values.begin(), end,
                     [&](double level) { return std::abs(station - level) <= double{tolerance}; });
}

bool case_wanted(const CheckCase& wanted) {
  if (!wanted.element_number || !wanted.station) return false;
  if (wanted.water_levels && at_a_water_level(*wanted.station)) return true;
  return *wanted.element_number == check_list.report_element_number &&
         (!wanted.element_name || check_list.report_element_name == *wanted.element_name) &&
         *wanted.station > check_list.station_min && *wanted.station < check_list.station_max &&
         same_date(wanted.date.value_or(run_date), check_list.report_date());
}

}  // namespace

void read_check_list() {
  filled_check_list.report_element_name = "#";
  const int unit = m_files::free_unit(first_list_unit);
  if (!runtime::try_open(unit, "Pruefliste.lis", runtime::OpenStatus::input)) return;
  std::string_view line;
  for (runtime::LineReader list(unit, list_line_width); list.next(line);) {
    if (!line.starts_with('#') && !read_entry(line)) break;
  }
  runtime::close(unit);
}

std::int32_t check_list_wants(const CheckCase& wanted) {
  const bool yes = wanted.query ? query_wanted(*wanted.query, wanted) : case_wanted(wanted);
  return yes ? 1 : 0;
}

void reset() {
  filled_protocol = {};
  filled_check_list = {};
  run_date = {};
}

}  // namespace m_info
