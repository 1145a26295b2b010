#include "m_Bauwerke/m_Bauwerke.h"

#include <algorithm>

#include "m_System/m_System.h"
#include "m_System/record_search.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_strings/m_strings.h"
#include "runtime/arithmetic.h"
#include "runtime/fixed_text.h"
#include "runtime/units.h"

namespace m_Bauwerke {
namespace {

using m_System::FileName;
using m_System::system_logic;
using m_WLM_error::report;

constexpr std::int32_t highest_code = 3;
constexpr float per_cent = 0.01F;

void read_branching(std::string_view line, std::int32_t branching) {
  auto code = runtime::columns<11, 14>(line);
  auto share = runtime::columns<16, 20>(line);
  branching_tables.code.at(branching) = runtime::nearest_integer(m_strings::ParseReal(code.bytes));
  branching_tables.share.at(branching) = m_strings::ParseReal(share.bytes);
  branching_tables.share.at(branching) *= per_cent;
}

void read_branchings(const FileName& file_name, m_System::RecordSearch& search) {
  std::int32_t branching = 0;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    if (system_logic.type.at(i) != 'V') continue;
    const std::string_view name = system_logic.name.at(i).view();
    const m_System::FoundRecord record = m_System::find_record(search, i);
    if (!record.found) {
      // The rest of the file is not read; it stays open to the end of the run.
      report("A00", {.text1 = file_name.view(), .text2 = name});
      return;
    }
    ++branching;
    read_branching(record.line, branching);
    const std::int32_t code = branching_tables.code.at(branching);
    if (code > highest_code) report("Ver1", {.text1 = file_name.view(), .text2 = name, .int1 = code});
  }
  runtime::close(search.unit);
}

}  // namespace

BranchingTables branching_tables;

std::int32_t AllocateBranchingTables() {
  BranchingTables& tables = branching_tables;
  tables.branching_count = system_logic.count_V;
  tables.B_count = system_logic.count_B;
  const std::int32_t entries = std::max(tables.branching_count, 1);
  const bool code_ready = tables.code.allocate_zeroed(entries);
  const bool share_ready = tables.share.allocate_zeroed(entries);
  return code_ready && share_ready ? 0 : m_WLM_error::allocation_failed;
}

void ReadBranchings(std::string_view variant_name) {
  const FileName file_name = m_System::file_name_of(variant_name, ".ver");
  m_System::RecordSearch search = m_System::OpenCompanionFile(file_name, 'V');
  if (search.unit == 0) return;
  if (m_System::ReadyToRead(search.unit, AllocateBranchingTables())) read_branchings(file_name, search);
}

void reset() {
  branching_tables = BranchingTables();
}

}  // namespace m_Bauwerke
