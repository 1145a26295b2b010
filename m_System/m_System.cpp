#include "m_System/m_System.h"

#include <algorithm>
#include <map>
#include <new>

#include "m_System/filled_tables.h"
#include "m_System/name_index.h"
#include "m_WLM_error/m_WLM_error.h"

namespace m_System {
namespace {

// Running counts of the types that were asked for.
std::map<char, runtime::OneBased<std::int32_t>> ordinals;

void take_ordinals(char letter, runtime::OneBased<std::int32_t>& counts) {
  std::int32_t count = 0;
  for (std::int32_t i = 1; i <= counts.size(); ++i) {
    if (system_logic.type.at(i) == letter) ++count;
    counts.at(i) = count;
  }
}

template <class T>
void allocate(runtime::OneBased<T>& table, std::int32_t count, std::int32_t& status, const T& initial = T{}) {
  if (!table.allocate(count, initial)) status = m_WLM_error::allocation_failed;
}

}  // namespace

SystemLogic filled_tables;
const SystemLogic& system_logic = filled_tables;

std::int32_t ElementIndex(std::string_view name) {
  const bool fits = runtime::trimmed_length(name) <= sizeof(ElementName);
  if (system_logic.element_count < 1 || !fits) return 0;
  return first_of_name(element_names(), ElementName(name));
}

std::int32_t TypeOrdinal(char letter, std::int32_t i) {
  if (i < 1 || system_logic.element_count < 1) return 0;
  const std::int32_t last = std::min(i, system_logic.element_count);
  runtime::OneBased<std::int32_t>& counts = ordinals[letter];
  if (counts.size() == 0) {
    if (!counts.allocate_zeroed(system_logic.element_count)) throw std::bad_alloc();
    take_ordinals(letter, counts);
  }
  return counts.at(last);
}

std::int32_t SystemLogic::count(char letter) const {
  if (!is_element_type(letter)) return 0;
  return type_counts[static_cast<std::size_t>(&type_of(letter) - element_types.data())];
}

std::int32_t AllocateSystemTables() {
  SystemLogic& logic = filled_tables;
  forget_element_names();
  ordinals.clear();
  logic.element_count = logic.total_count;
  const std::int32_t entries = logic.element_count + 1;
  std::int32_t status = 0;
  allocate(logic.name, entries, status);
  allocate(logic.type, entries, status, ' ');
  allocate(logic.tag3, entries, status);
  allocate(logic.tag7, entries, status);
  allocate(logic.text17, entries, status);
  allocate(logic.inflow_name, entries, status);
  allocate(logic.outflow_name, entries, status);
  allocate(logic.inflow_index, entries, status);
  allocate(logic.outflow_index, entries, status);
  allocate(logic.data_seen, entries, status);
  allocate(logic.mark, entries + 1, status, ' ');
  return status;
}

void reset() {
  filled_tables = SystemLogic();
}

}  // namespace m_System
