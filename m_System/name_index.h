#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>

#include "m_System/m_System.h"
#include "runtime/array.h"

namespace m_System {

/// Finds the elements of a name without going through the table. Blank names count like any other.
///
/// The characters of a name have weights by their place. Names are mostly numbered, so that the characters at
/// one place are few and most of their combinations occur: then a name is a number in a mixed radix, the sum
/// of the weights, and leads straight to its cell, and neighbours in the network to neighbouring cells. Names
/// too scattered for that are hashed by random weights (simple tabulation hashing with linear probing:
/// Pătraşcu and Thorup, The Power of Simple Tabulation Hashing, J. ACM 59, 2012), so that nobody can choose
/// names that collide.
struct NameIndex {
  static constexpr std::size_t name_length = 5;
  /// The names that are indexed, by element.
  const runtime::OneBased<ElementName>* names = nullptr;
  /// By place and character; `foreign` in a direct index for a character that no name has there.
  std::array<std::array<std::uint32_t, 256>, name_length> weight{};
  static constexpr std::uint32_t foreign = 0xFFFFFFFF;

  bool direct = false;
  runtime::OneBased<std::int32_t> cells;                ///< first element of each name; 0 is free
  std::unordered_map<std::int32_t, std::int32_t> last;  ///< of the names that several elements bear
};

/// Indexes the names of the elements 1 .. N of a table, which must stay where it is and as it is.
NameIndex index_names(const SystemLogic& logic);

/// The cell, from 1, of a name in a direct index; behind the last cell when it has a foreign character.
inline std::uint64_t direct_cell(const NameIndex& index, const ElementName& name) {
  std::uint64_t cell = 1;
  for (std::size_t place = 0; place < NameIndex::name_length; ++place) {
    cell += index.weight[place][static_cast<unsigned char>(name.bytes[place])];
  }
  return cell;
}

/// `first_of_name` in an index that hashes the names or has none.
std::int32_t first_of_hashed_name(const NameIndex& index, const ElementName& name);

/// The first element of a name in system order; 0 when there is none.
inline std::int32_t first_of_name(const NameIndex& index, const ElementName& name) {
  if (!index.direct) return first_of_hashed_name(index, name);
  const std::uint64_t cell = direct_cell(index, name);
  const bool known = cell <= static_cast<std::uint64_t>(index.cells.size());
  return known ? index.cells.at(static_cast<std::int32_t>(cell)) : 0;
}

/// The last element of the name whose first element is given.
std::int32_t last_of_repeated_name(const NameIndex& index, std::int32_t first);

/// The last element of a name; 0 when there is none.
inline std::int32_t last_of_name(const NameIndex& index, const ElementName& name) {
  const std::int32_t first = first_of_name(index, name);
  return index.last.empty() ? first : last_of_repeated_name(index, first);
}

/// The first element that bears the name of element i (1 .. N).
inline std::int32_t first_of_same_name(const NameIndex& index, std::int32_t i) {
  return index.last.empty() ? i : first_of_name(index, index.names->at(i));
}

/// The index of the system logic as it stands; built at the first call after the table was filled.
const NameIndex& element_names();
/// Drops that index, because the table changes.
void forget_element_names();

}  // namespace m_System
