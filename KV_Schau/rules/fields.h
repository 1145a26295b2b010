#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "KV_Schau/network/network.h"
#include "KV_Schau/variant/records.h"

namespace schau::rules {

using network::Element;

enum class FieldKind : std::uint8_t {
  area,
  sealing,
  code,
  share,
  station,     ///< in the second line of a kind-2 reach
  first_value  ///< of a reach; kept by KV_Akum, but not printed
};

/// What is wrong with a number as it is written. One fault a field, the first that applies.
enum class FieldFault : std::uint8_t {
  none,
  blank,
  outside,          ///< blank, but a number stands in columns beside it that are not read
  too_many_digits,  ///< fills its columns and goes on behind them
  cut,              ///< begins before its columns, or ends behind them without filling them
  odd_character,    ///< a tab, a non-breaking blank or a control character
  comma,
  two_numbers,
  inner_blank,     ///< blanks between the digits; area files ignore them
  no_number,       ///< no digit, or in an area file something that the run reports
  stray_text,      ///< a number with other characters around it
  read_otherwise,  ///< a number, but the run reads another one
  out_of_range     ///< beyond single precision
};

/// A number field of a record that is not simply in order.
struct Field {
  double read = 0.0;  ///< what KV_Akum takes, in the units of the file
  double meant =
      0.0;  ///< the number as it is written, with its parts in columns beside; equals `read` in doubt
  std::uint32_t line = 0;
  Element element = 0;
  std::uint32_t column = 0;  ///< of what is wrong, from 1
  std::uint32_t length = 0;
  variant::FileId file = variant::FileId::nfl;
  FieldKind kind = FieldKind::area;
  FieldFault fault = FieldFault::none;
  bool reported = false;  ///< the run reports it as a bad number

  [[nodiscard]] variant::Place place() const { return {file, line, column, length}; }
};

/// The fields of all records, second ones of an element too, that have a fault or a value that some rule asks
/// about: none, below 0, a degree of sealing from 1 on, a share up to 1 or above 100, a code other than 1, 2
/// and 3, a station that is too wide for its column. Sorted by file, then line.
std::vector<Field> noteworthy_fields(const variant::Variant& variant);

/// The widest stations that the result has room for lie below and above these.
inline constexpr double highest_station = 9999.9995;
inline constexpr double lowest_station = -999.9995;

}  // namespace schau::rules
