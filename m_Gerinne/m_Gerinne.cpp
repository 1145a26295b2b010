#include "m_Gerinne/m_Gerinne.h"

#include <algorithm>

#include "m_System/m_System.h"
#include "m_System/record_search.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_strings/m_strings.h"
#include "runtime/fixed_text.h"
#include "runtime/units.h"

namespace m_Gerinne {
namespace {

using m_System::FileName;
using m_System::system_logic;

constexpr std::size_t line_width = 500;

float value_of(std::string_view line) {
  auto field = runtime::columns<11, 18>(line);
  return m_strings::ParseReal(field.bytes);
}

// A kind-2 record goes on in the next line. Behind the last line of the file the line itself is read again.
void read_reach(std::string_view line, int unit, std::int32_t reach) {
  ReachTables& tables = reach_tables;
  tables.kind.at(reach) = 1;
  tables.first_value.at(reach) = 0.0F;
  tables.station_value.at(reach) = 0.0F;
  if (runtime::columns<57, 66>(line).blank()) return;
  tables.kind.at(reach) = 2;
  tables.first_value.at(reach) = value_of(line);
  runtime::read_line(unit, line_width, line);
  tables.station_value.at(reach) = value_of(line);
}

void read_reaches(const FileName& file_name, m_System::RecordSearch& search) {
  std::int32_t reach = 0;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    if (system_logic.type.at(i) != 'T') continue;
    const m_System::FoundRecord record = m_System::find_record(search, i);
    if (!record.found) {
      // The rest of the file is not read; it stays open to the end of the run.
      m_WLM_error::report("A00", {.text1 = file_name.view(), .text2 = system_logic.name.at(i).view()});
      return;
    }
    ++reach;
    read_reach(record.line, search.unit, reach);
  }
  runtime::close(search.unit);
}

}  // namespace

ReachTables reach_tables;

std::int32_t AllocateReachTables() {
  ReachTables& tables = reach_tables;
  tables.reach_count = system_logic.count_T;
  const std::int32_t entries = std::max(tables.reach_count, 1);
  const bool kind_ready = tables.kind.allocate_zeroed(entries);
  const bool first_ready = tables.first_value.allocate_zeroed(entries);
  const bool station_ready = tables.station_value.allocate_zeroed(entries);
  return kind_ready && first_ready && station_ready ? 0 : m_WLM_error::allocation_failed;
}

void ReadReaches(std::string_view variant_name) {
  const FileName file_name = m_System::file_name_of(variant_name, ".trs");
  m_System::RecordSearch search = m_System::OpenCompanionFile(file_name, 'T');
  if (search.unit == 0) return;
  if (m_System::ReadyToRead(search.unit, AllocateReachTables())) read_reaches(file_name, search);
}

void reset() {
  reach_tables = ReachTables();
}

}  // namespace m_Gerinne
