#include "m_Gerinne/m_Gerinne.h"

#include <algorithm>

#include "m_Gerinne/filled_tables.h"
#include "m_System/companion_file.h"
#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_strings/m_strings.h"
#include "runtime/fixed_text.h"
#include "runtime/read.h"

namespace m_Gerinne {
namespace {

using m_System::system_logic;

float value_of(std::string_view line) {
  auto field = runtime::columns<11, 18>(line);
  return m_strings::ParseReal(field.bytes);
}

// A kind-2 record goes on in the next line. Behind the last line of the file the line itself is read again.
void read_reach(m_System::CompanionFile& file, const m_System::ElementLine& reach) {
  ReachTables& tables = filled_tables;
  tables.kind.at(reach.number) = 1;
  std::string_view line = reach.text;
  if (runtime::columns<57, 66>(line).blank()) return;
  tables.kind.at(reach.number) = 2;
  tables.first_value.at(reach.number) = value_of(line);
  file.next(line);
  tables.station_value.at(reach.number) = value_of(line);
}

}  // namespace

ReachTables filled_tables;
const ReachTables& reach_tables = filled_tables;

std::int32_t AllocateReachTables() {
  ReachTables& tables = filled_tables;
  tables.reach_count = system_logic.count('T');
  const std::int32_t entries = std::max(tables.reach_count, 1);
  const bool kind_ready = tables.kind.allocate_zeroed(entries);
  const bool first_ready = tables.first_value.allocate_zeroed(entries);
  const bool station_ready = tables.station_value.allocate_zeroed(entries);
  return kind_ready && first_ready && station_ready ? 0 : m_WLM_error::allocation_failed;
}

void ReadReaches(std::string_view variant_name) {
  m_System::read_companion_file(variant_name, {.extension = ".trs",
                                               .type = 'T',
                                               .numbered_with = 'T',
                                               .allocate = AllocateReachTables,
                                               .read = read_reach});
}

void reset() {
  filled_tables = ReachTables();
}

}  // namespace m_Gerinne
