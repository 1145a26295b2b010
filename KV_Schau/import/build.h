#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "KV_Schau/import/net_table.h"
#include "KV_Schau/variant/names.h"

namespace schau::imports {

/// What a system element is to the table.
enum class Role : std::uint8_t {
  row,           ///< the row itself
  catchment,     ///< the area of a row that is no area itself, as a source above it
  dry_source,    ///< a source without area, where nothing else drains into a row
  branching,     ///< below a reach with two targets
  gauge,         ///< gathers inflows where there are more than three
  joined_outlet  ///< gathers several outlets
};

/// A system element. Elements count from 1 in system order; 0 is none.
struct Element {
  char type = ' ';
  Role role = Role::row;
  std::uint32_t row = no_row;  ///< of a gauge the row for which it gathers
  std::array<std::uint32_t, 3> inflow{};
  std::array<std::uint32_t, 2> outflow{};
  variant::NameKey name = 0;
};

/// The elements of a table without faults; entry 0 is not used. Each stands behind its inflows, the last one
/// is the outlet; several outlets are joined by a gauge below them. A row becomes
/// - an element of its own type; a basin with one target passes on to it by its second outflow, as basins
///   pass on nothing by the first,
/// - a source of type N, or K with a degree of sealing, for the area of a row that is no area itself,
/// - a branching below a reach that has two targets,
/// - gauges where more than three elements drain into it. They take the inflows by threes in turn, so that no
///   inflow lies deeper than the logarithm of their number to the base 3 (Huffman's code for equal weights).
/// All elements have names of their own (see "KV_Schau/import/names.h"). Linear in the rows.
std::vector<Element> build(const NetTable& table);

}  // namespace schau::imports
