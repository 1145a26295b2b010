#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>

#include "array.h"
#include "m_System.h"

namespace m_System {

/// Finds the elements of a name without going through the table. Blank names count like any other.
///
/// Names are mostly numbered, so that the characters at one place are few and most of their combinations
/// occur: then a name is read as a number in a mixed radix and leads straight to its cell, and neighbours in
/// the network to neighbouring cells. Where the names are too scattered for that, they are hashed.
struct NameIndex {
  static constexpr std::size_t name_length = 5;
  /// By place and character: the character's rank among those met at that place times the cells below it, or
  /// `foreign` for a character that no name has there.
  std::array<std::array<std::uint32_t, 256>, name_length> weight;
  static constexpr std::uint32_t foreign = 0xFFFFFFFF;

  bool direct = false;
  runtime::OneBased<std::int32_t> cells;                ///< first element of each name; 0 is free
  std::unordered_map<std::int32_t, std::int32_t> last;  ///< of the names that several elements bear
};

/// Indexes the names at the positions 1 .. N of the table.
NameIndex index_names(const SystemLogic& logic);

/// The first or the last element of a name in system order; 0 when there is none. The index must be that of
/// the system logic as it stands.
std::int32_t first_of_name(const NameIndex& index, const ElementName& name);
std::int32_t last_of_name(const NameIndex& index, const ElementName& name);
/// The first element that bears the name of element i (1 .. N).
std::int32_t first_of_same_name(const NameIndex& index, std::int32_t i);

/// The index of the table as it stands; built at the first call after the table was filled.
const NameIndex& element_names();
/// Drops that index, because the table changes.
void forget_element_names();

}  // namespace m_System
