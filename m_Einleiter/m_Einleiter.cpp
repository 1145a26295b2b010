#include "m_Einleiter/m_Einleiter.h"

#include <algorithm>
#include <array>

#include "m_System/m_System.h"
#include "m_System/record_search.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/format.h"
#include "runtime/units.h"

namespace m_Einleiter {
namespace {

using m_System::FileName;
using m_System::system_logic;
using m_WLM_error::report;

// A five-column field cannot hold this limit exactly: 1.000 passes, 1.001 does not.
constexpr float highest_sealing = 1.00001F;

struct AreaUnit {
  std::string_view keyword;
  float factor;
};
// In the order of the test: the first keyword found in a line's unit columns wins.
constexpr std::array<AreaUnit, 3> area_units = {{{"qkm", 1.0F}, {"ha", 0.01F}, {"qm", 1.0e-6F}}};

// What the two area files differ in.
struct AreaFile {
  std::string_view extension;
  char type;
  runtime::ReadStatus (*read_data)(std::string_view line, float& area, float& sealing);
};

// The number of the unit that a line sets, from 1; 0 for a line that sets none.
std::int32_t unit_of_line(std::string_view line) {
  const auto field = runtime::columns<11, 15>(line);
  // Every keyword has one of these letters, and a number has none.
  if (std::ranges::none_of(field.bytes, [](char letter) { return letter == 'q' || letter == 'h'; })) return 0;
  for (std::size_t i = 0; i < area_units.size(); ++i) {
    if (field.view().find(area_units[i].keyword) != std::string_view::npos) {
      return static_cast<std::int32_t>(i) + 1;
    }
  }
  return 0;
}

void set_unit(std::int32_t number) {
  if (number == 0) return;
  const AreaUnit& unit = area_units[static_cast<std::size_t>(number) - 1];
  source_tables.unit_factor = unit.factor;
  source_tables.unit_name = unit.keyword;
}

runtime::ReadStatus read_natural(std::string_view line, float& area, float& sealing) {
  return runtime::read_fields(line, runtime::format<"(10X,2F5.0)">, {area, sealing});
}

runtime::ReadStatus read_canalised(std::string_view line, float& area, float& sealing) {
  m_System::ElementName name;
  return runtime::read_fields(line, runtime::format<"(3X,A5,2X,2F5.0)">,
                              {std::span<char>(name.bytes), area, sealing});
}

void read_source(const AreaFile& file, const FileName& file_name, std::string_view line, std::int32_t element,
                 std::int32_t source) {
  float& area = source_tables.area.at(source);
  float& sealing = source_tables.sealing.at(source);
  const std::string_view name = system_logic.name.at(element).view();
  const runtime::ReadStatus status = file.read_data(line, area, sealing);
  area *= source_tables.unit_factor;
  if (status == runtime::ReadStatus::bad_value) {
    report("A03", {.text1 = file_name.view(), .text2 = name});
  } else if (sealing > highest_sealing) {
    report("F02", {.text1 = file_name.view(), .text2 = name, .real1 = sealing});
  }
}

void read_sources(const AreaFile& file, const FileName& file_name, m_System::RecordSearch& search) {
  std::int32_t source = 0;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    const char type = system_logic.type.at(i);
    if (type != 'N' && type != 'K') continue;
    ++source;
    if (type != file.type) continue;
    const m_System::FoundRecord record = m_System::find_record(search, i);
    set_unit(record.last_mark);
    if (!record.found) {
      // The rest of the file is not read; it stays open to the end of the run.
      report("A00", {.text1 = file_name.view(), .text2 = system_logic.name.at(i).view()});
      return;
    }
    read_source(file, file_name, record.line, i, source);
  }
  runtime::close(search.unit);
}

void read_areas(const AreaFile& file, std::string_view variant_name, bool allocate) {
  const FileName file_name = m_System::file_name_of(variant_name, file.extension);
  m_System::RecordSearch search = m_System::OpenCompanionFile(file_name, file.type, unit_of_line);
  if (search.unit == 0) return;
  const std::int32_t status = allocate ? AllocateSourceTables() : 0;
  if (m_System::ReadyToRead(search.unit, status)) read_sources(file, file_name, search);
}

}  // namespace

SourceTables source_tables;

std::int32_t AllocateSourceTables() {
  SourceTables& tables = source_tables;
  tables.natural_count = system_logic.count_N;
  tables.canalised_count = system_logic.count_K;
  tables.E_count = system_logic.count_E;
  tables.source_count = tables.natural_count + tables.canalised_count;
  const std::int32_t entries = std::max(tables.natural_count, 1) + std::max(tables.canalised_count, 1);
  const bool area_ready = tables.area.allocate_zeroed(entries);
  const bool sealing_ready = tables.sealing.allocate_zeroed(entries);
  return area_ready && sealing_ready ? 0 : m_WLM_error::allocation_failed;
}

void ReadNaturalAreas(std::string_view variant_name) {
  read_areas({".nfl", 'N', read_natural}, variant_name, true);
}

void ReadCanalisedAreas(std::string_view variant_name) {
  read_areas({".kfl", 'K', read_canalised}, variant_name, source_tables.natural_count == 0);
}

void reset() {
  source_tables = SourceTables();
}

}  // namespace m_Einleiter
