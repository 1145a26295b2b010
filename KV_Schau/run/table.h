#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/variant/names.h"

namespace schau::run {

/// A number as it stands in its columns.
struct Number {
  enum class Kind : std::uint8_t {
    number,       ///< `value`
    too_wide,     ///< asterisks: the columns did not hold it
    not_a_number  ///< NaN
  };
  Kind kind = Kind::number;
  double value = 0.0;  ///< also plus or minus infinity; not-a-number unless the kind is `number`

  static constexpr Number too_wide() { return {Kind::too_wide, std::numeric_limits<double>::quiet_NaN()}; }
  static constexpr Number not_a_number() {
    return {Kind::not_a_number, std::numeric_limits<double>::quiet_NaN()};
  }
};

/// The areas of one kind that reach a transport reach, km².
struct Areas {
  Number direct;  ///< gathered since the last branching or basin
  Number total;   ///< all upstream
};

inline constexpr std::size_t most_inflows = 3;

/// One reach of the result table.
struct Reach {
  variant::NameKey name = variant::blank_name;
  std::array<variant::NameKey, most_inflows> inflow{variant::blank_name, variant::blank_name,
                                                    variant::blank_name};
  std::size_t inflow_count = 0;  ///< a first one that is blank counts when others follow it
  Number station;                ///< km
  Areas natural;
  Areas canalised;
  Areas impervious;  ///< part of the canalised areas
  Number total;      ///< natural and canalised total
  std::size_t line = 0;

  [[nodiscard]] std::span<const variant::NameKey> inflows() const {
    return std::span(inflow).first(inflow_count);
  }
};

/// Why a table is not whole.
enum class TableFault : std::uint8_t {
  no_heading,            ///< the six lines of heading are not there as they are written
  line_cut,              ///< the last line has no end
  not_a_row,             ///< a line that is neither a reach nor a further inflow
  bad_number,            ///< columns of a number that hold none
  inflow_without_reach,  ///< a further inflow before the first reach, or a fourth one
};

/// A result table, NAME.Akum.
struct Table {
  std::string variant;  ///< the name in the first line, as bytes
  std::vector<Reach> reaches;
  std::size_t line_count = 0;
  std::optional<TableFault> fault;  ///< the first one; the reaches before it are there
  std::size_t fault_line = 0;       ///< from 1
};

/// Reads a table by its columns: name 1-5, station 8-15, inflow 18-22, natural direct and total 23-32 and
/// 33-42, canalised 45-54 and 55-64, impervious 67-76 and 77-86, sum 89-99; a second and third inflow stand
/// in columns 18-22 of lines of their own. Linear in the bytes.
Table parse_table(std::string_view bytes);

/// A fault as a German sentence without full stop.
std::string text_of(TableFault fault, std::size_t line);

/// A number with three decimals as the table prints it, without the blanks before it; for one that was too
/// wide as many asterisks as its columns are.
std::string text_of(const Number& number, std::size_t columns = 10);

}  // namespace schau::run
