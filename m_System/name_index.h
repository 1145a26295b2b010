#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "m_System.h"

namespace m_System {

/// Finds the elements of a name without going through the table. Blank names count like any other.
struct NameIndex {
  std::vector<std::int32_t> slots;                      ///< first element of each name, hashed; 0 is free
  std::unordered_map<std::int32_t, std::int32_t> last;  ///< of the names that several elements bear
};

/// Indexes the names at the positions 1 .. N of the table.
NameIndex index_names(const SystemLogic& logic);

/// The first or the last element of a name in system order; 0 when there is none.
std::int32_t first_of_name(const NameIndex& index, const ElementName& name);
std::int32_t last_of_name(const NameIndex& index, const ElementName& name);

/// The index of the table as it stands; built at the first call after the table was filled.
const NameIndex& element_names();
/// Drops that index, because the table changes.
void forget_element_names();

}  // namespace m_System
