#include "m_System/name_index.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <new>
#include <optional>
#include <random>

namespace m_System {
namespace {

std::optional<NameIndex> current_index;

// A direct table may hold this many cells an element and as many more.
constexpr std::uint64_t cells_an_element = 12;
constexpr std::uint64_t cells_at_any_rate = 4096;
constexpr std::uint64_t most_cells = std::uint64_t{1} << 30U;

void draw_random_weights(NameIndex& index) {
  std::mt19937 random(std::random_device{}());
  for (auto& weights : index.weight) {
    for (std::uint32_t& weight : weights) weight = static_cast<std::uint32_t>(random());
  }
}

std::size_t hash_of(const NameIndex& index, const ElementName& name) {
  std::uint32_t hash = 0;
  for (std::size_t place = 0; place < NameIndex::name_length; ++place) {
    hash ^= index.weight[place][static_cast<unsigned char>(name.bytes[place])];
  }
  return hash;
}

// The cell, from 1, that holds the first element of that name, or the free one where it would stand.
std::int32_t hashed_cell(const NameIndex& index, const ElementName& name) {
  const auto mask = static_cast<std::size_t>(index.cells.size()) - 1;
  for (std::size_t hash = hash_of(index, name);; ++hash) {
    const auto cell = static_cast<std::int32_t>(hash & mask) + 1;
    const std::int32_t element = index.cells.at(cell);
    if (element == 0 || index.names->at(element) == name) return cell;
  }
}

// The number of cells that the characters of the names span, or more than `limit`. Sets the weights.
std::uint64_t weigh_characters(NameIndex& index, const SystemLogic& logic, std::uint64_t limit) {
  std::array<std::array<bool, 256>, NameIndex::name_length> met{};
  for (std::int32_t i = 1; i <= logic.element_count; ++i) {
    const ElementName& name = logic.name.at(i);
    for (std::size_t place = 0; place < NameIndex::name_length; ++place) {
      met[place][static_cast<unsigned char>(name.bytes[place])] = true;
    }
  }
  std::uint64_t cells = 1;
  for (std::size_t place = NameIndex::name_length; place-- > 0 && cells <= limit;) {
    index.weight[place].fill(NameIndex::foreign);
    std::uint64_t rank = 0;
    for (std::size_t character = 0; character < met[place].size() && rank * cells <= limit; ++character) {
      if (met[place][character]) index.weight[place][character] = static_cast<std::uint32_t>(rank++ * cells);
    }
    cells *= rank;
  }
  return cells;
}

void allocate_cells(NameIndex& index, const SystemLogic& logic) {
  const auto count = static_cast<std::uint64_t>(logic.element_count);
  const std::uint64_t limit = std::min(cells_an_element * count + cells_at_any_rate, most_cells);
  const std::uint64_t spanned = weigh_characters(index, logic, limit);
  index.direct = spanned <= limit;
  if (!index.direct) draw_random_weights(index);
  const std::uint64_t cells = index.direct ? spanned : std::bit_ceil(2 * count);
  if (cells > most_cells || !index.cells.allocate_zeroed(static_cast<std::int32_t>(cells)))
    throw std::bad_alloc();
}

std::int32_t cell_of(const NameIndex& index, const ElementName& name) {
  return index.direct ? static_cast<std::int32_t>(direct_cell(index, name)) : hashed_cell(index, name);
}

}  // namespace

NameIndex index_names(const SystemLogic& logic) {
  NameIndex index;
  index.names = &logic.name;
  if (logic.element_count < 1) return index;
  allocate_cells(index, logic);
  for (std::int32_t i = 1; i <= logic.element_count; ++i) {
    const ElementName& name = logic.name.at(i);
    std::int32_t& first = index.cells.at(cell_of(index, name));
    if (first == 0) {
      first = i;
    } else {
      index.last[first] = i;
    }
  }
  return index;
}

std::int32_t first_of_hashed_name(const NameIndex& index, const ElementName& name) {
  return index.cells.size() == 0 ? 0 : index.cells.at(hashed_cell(index, name));
}

std::int32_t last_of_repeated_name(const NameIndex& index, std::int32_t first) {
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
