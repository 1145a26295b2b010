#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "KV_Schau/variant/variant.h"

namespace schau::variant {

/// The units of areas, in the order in which KV_Akum looks for their words.
enum class AreaUnit : std::uint8_t { qkm, ha, qm };
/// What turns a value into km².
double factor_of(AreaUnit unit);
/// The word that stands for a unit in an area file.
std::string_view word_of(AreaUnit unit);

/// The unit that a line of an area file sets by a word anywhere in its unit columns.
std::optional<AreaUnit> unit_set_by(std::string_view line);

/// A line that sets a unit, remark or not.
struct UnitLine {
  std::uint32_t line = 0;
  AreaUnit unit = AreaUnit::qkm;
};

/// The records that KV_Akum takes from the data files when it searches them in system order: from where the
/// last search ended, and from the beginning once the end is reached.
struct Records {
  /// By element: its line in the data file of its type; 0 when there is none, or no such file.
  std::vector<std::uint32_t> line;
  /// By element: the unit in force at the record of an area; a search sets it by all lines that it passes.
  std::vector<AreaUnit> unit;
  /// The lines that set a unit, in file order.
  std::vector<UnitLine> natural_units;
  std::vector<UnitLine> canalised_units;
  /// In force when the run begins with the file of the canalised areas.
  AreaUnit inherited_unit = AreaUnit::qkm;
};

Records find_records(const Variant& variant);

/// The name of an element in its record; nothing when there is none.
std::optional<Place> place_of_record(const Variant& variant, const Records& records, std::uint32_t element);

}  // namespace schau::variant
