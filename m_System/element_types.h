#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The types of system elements, as data: reader, checks and accumulation ask this table. A new type is a new
/// row, and its computation where it brings or passes on something else than the types that there are.
namespace m_System {

inline constexpr std::int32_t inflow_slots = 3;
inline constexpr std::int32_t outflow_slots = 2;

/// The area that an element brings into the sums itself.
enum class OwnArea : std::uint8_t { none, natural, canalised };

/// What an element passes on to the elements below it.
enum class PassesOn : std::uint8_t {
  everything,       ///< its direct and its total sums
  divided_totals,   ///< its totals, divided between its outflows by the code and the share of its kind
  totals_to_second  ///< its totals, to its second outflow only
};

/// Columns of a line, from 1; 0 to 0 are none.
struct ColumnRange {
  std::size_t first = 0;
  std::size_t last = 0;
};

struct ElementType {
  char letter;  ///< with which the names of its elements begin
  std::int32_t most_inflows;
  std::int32_t fewest_outflows;
  std::int32_t most_outflows;
  /// Where its line in a data file holds a number with a decimal point if it is a line of values.
  ColumnRange value_columns;
  OwnArea own_area;
  PassesOn passes_on;

  /// An element without inflows.
  [[nodiscard]] constexpr bool is_source() const { return most_inflows == 0; }
  /// An element that can have two outflows ("Bauwerk").
  [[nodiscard]] constexpr bool is_structure() const { return most_outflows > 1; }
};

inline constexpr std::array<ElementType, 7> element_types = {{
    {'N', 0, 1, 1, {11, 15}, OwnArea::natural, PassesOn::everything},
    {'K', 0, 1, 1, {11, 15}, OwnArea::canalised, PassesOn::everything},
    {'E', 0, 1, 1, {11, 16}, OwnArea::none, PassesOn::everything},
    {'T', inflow_slots, 1, 1, {11, 19}, OwnArea::none, PassesOn::everything},
    {'V', inflow_slots, 1, outflow_slots, {22, 26}, OwnArea::none, PassesOn::divided_totals},
    {'B', inflow_slots, 0, outflow_slots, {24, 30}, OwnArea::none, PassesOn::totals_to_second},
    {'P', inflow_slots, 1, 1, {}, OwnArea::none, PassesOn::everything},
}};

/// The row of an element whose letter is none of these: its outflows are not looked at.
inline constexpr ElementType no_element_type{'\0',          inflow_slots,        0, 0, {},
                                             OwnArea::none, PassesOn::everything};

namespace detail {

inline constexpr auto row_of_letter = [] {
  std::array<const ElementType*, 256> rows{};
  rows.fill(&no_element_type);
  for (const ElementType& type : element_types) rows[static_cast<unsigned char>(type.letter)] = &type;
  return rows;
}();

}  // namespace detail

/// The row of a letter; `no_element_type` when it is none. Case matters.
constexpr const ElementType& type_of(char letter) {
  return *detail::row_of_letter[static_cast<unsigned char>(letter)];
}

constexpr bool is_element_type(char letter) {
  return &type_of(letter) != &no_element_type;
}

}  // namespace m_System
