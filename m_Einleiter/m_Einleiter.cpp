#include "m_Einleiter/m_Einleiter.h"

#include <algorithm>
#include <array>

#include "m_Einleiter/filled_tables.h"
#include "m_System/companion_file.h"
#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/format.h"
#include "runtime/read.h"
#include "runtime/read_fields.h"

namespace m_Einleiter {
namespace {

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
  const AreaUnit& unit = area_units[static_cast<std::size_t>(number) - 1];
  filled_tables.unit_factor = unit.factor;
  filled_tables.unit_name = unit.keyword;
}

constexpr m_System::LineMarks unit_lines{.mark_of = unit_of_line, .put_into_force = set_unit};

void report_source(std::string_view code, const m_System::CompanionFile& file,
                   const m_System::ElementLine& source, float sealing) {
  const std::string_view name = system_logic.name.at(source.element).view();
  report(code, {.text1 = file.name().view(), .text2 = name, .real1 = sealing});
}

// A number that cannot be read leaves its entry, and the ones behind it, as they were.
void read_source(m_System::CompanionFile& file, const m_System::ElementLine& source) {
  float& area = filled_tables.area.at(source.number);
  float& sealing = filled_tables.sealing.at(source.number);
  const bool good = runtime::read_fields(source.text, runtime::format<"(10X,2F5.0)">, {area, sealing});
  area *= filled_tables.unit_factor;
  if (!good) {
    report_source("A03", file, source, sealing);
  } else if (sealing > highest_sealing) {
    report_source("F02", file, source, sealing);
  }
}

// The tables of both files are made by the first of the two readers. When there was no memory for them and a
// suppressed code has lowered the level since, there still is none.
std::int32_t allocate_unless_natural_areas_were_read() {
  const SourceTables& tables = filled_tables;
  if (tables.natural_count == 0) return AllocateSourceTables();
  const bool ready = tables.area.size() > 0 && tables.sealing.size() > 0;
  return ready ? 0 : m_WLM_error::allocation_failed;
}

}  // namespace

SourceTables filled_tables;
const SourceTables& source_tables = filled_tables;

std::int32_t AllocateSourceTables() {
  SourceTables& tables = filled_tables;
  tables.natural_count = system_logic.count('N');
  tables.canalised_count = system_logic.count('K');
  tables.E_count = system_logic.count('E');
  tables.source_count = tables.natural_count + tables.canalised_count;
  const std::int32_t entries = std::max(tables.natural_count, 1) + std::max(tables.canalised_count, 1);
  const bool area_ready = tables.area.allocate_zeroed(entries);
  const bool sealing_ready = tables.sealing.allocate_zeroed(entries);
  return area_ready && sealing_ready ? 0 : m_WLM_error::allocation_failed;
}

void ReadNaturalAreas(std::string_view variant_name) {
  m_System::read_companion_file(variant_name, {.extension = ".nfl",
                                               .type = 'N',
                                               .numbered_with = 'K',
                                               .allocate = AllocateSourceTables,
                                               .read = read_source,
                                               .marks = unit_lines});
}

void ReadCanalisedAreas(std::string_view variant_name) {
  m_System::read_companion_file(variant_name, {.extension = ".kfl",
                                               .type = 'K',
                                               .numbered_with = 'N',
                                               .allocate = allocate_unless_natural_areas_were_read,
                                               .read = read_source,
                                               .marks = unit_lines});
}

void reset() {
  filled_tables = SourceTables();
}

}  // namespace m_Einleiter
