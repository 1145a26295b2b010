#include "name_index.h"

#include <bit>
#include <cstring>
#include <optional>

namespace m_System {
namespace {

std::optional<NameIndex> current_index;

std::size_t hash_of(const ElementName& name) {
  std::uint64_t key = 0;
  std::memcpy(&key, name.bytes.data(), name.bytes.size());
  // The finaliser of MurmurHash3 (Austin Appleby, public domain) spreads the five bytes over the table.
  key ^= key >> 33U;
  key *= 0xFF51AFD7ED558CCDU;
  key ^= key >> 33U;
  key *= 0xC4CEB9FE1A85EC53U;
  key ^= key >> 33U;
  return static_cast<std::size_t>(key);
}

// The slot that holds the first element of that name, or the free one where it would stand.
std::size_t slot_of(const NameIndex& index, const ElementName& name) {
  const std::size_t mask = index.slots.size() - 1;
  std::size_t slot = hash_of(name) & mask;
  while (index.slots[slot] != 0 && !(system_logic.name.at(index.slots[slot]) == name))
    slot = (slot + 1) & mask;
  return slot;
}

}  // namespace

NameIndex index_names(const SystemLogic& logic) {
  NameIndex index;
  const auto count = static_cast<std::size_t>(logic.element_count);
  index.slots.resize(std::bit_ceil(2 * count + 1));
  for (std::int32_t i = 1; i <= logic.element_count; ++i) {
    std::int32_t& first = index.slots[slot_of(index, logic.name.at(i))];
    if (first == 0) {
      first = i;
    } else {
      index.last[first] = i;
    }
  }
  return index;
}

std::int32_t first_of_name(const NameIndex& index, const ElementName& name) {
  return index.slots[slot_of(index, name)];
}

std::int32_t last_of_name(const NameIndex& index, const ElementName& name) {
  const std::int32_t first = first_of_name(index, name);
  if (index.last.empty()) return first;
  const auto found = index.last.find(first);
  return found == index.last.end() ? first : found->second;
}

const NameIndex& element_names() {
  if (!current_index) current_index = index_names(system_logic);
  return *current_index;
}

void forget_element_names() {
  current_index.reset();
}

}  // namespace m_System
