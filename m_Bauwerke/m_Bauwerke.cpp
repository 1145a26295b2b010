#include "m_Bauwerke/m_Bauwerke.h"

#include <algorithm>

#include "m_Bauwerke/filled_tables.h"
#include "m_System/companion_file.h"
#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_strings/m_strings.h"
#include "runtime/arithmetic.h"
#include "runtime/fixed_text.h"

namespace m_Bauwerke {
namespace {

using m_System::system_logic;

constexpr std::int32_t highest_code = 3;
constexpr float per_cent = 0.01F;

void read_branching(m_System::CompanionFile& file, const m_System::ElementLine& branching) {
  auto code_field = runtime::columns<11, 14>(branching.text);
  auto share_field = runtime::columns<16, 20>(branching.text);
  std::int32_t& code = filled_tables.code.at(branching.number);
  float& share = filled_tables.share.at(branching.number);
  code = runtime::nearest_integer(m_strings::ParseReal(code_field.bytes));
  share = m_strings::ParseReal(share_field.bytes);
  share *= per_cent;
  if (code <= highest_code) return;
  const std::string_view name = system_logic.name.at(branching.element).view();
  m_WLM_error::report("Ver1", {.text1 = file.name().view(), .text2 = name, .int1 = code});
}

}  // namespace

BranchingTables filled_tables;
const BranchingTables& branching_tables = filled_tables;

std::int32_t AllocateBranchingTables() {
  BranchingTables& tables = filled_tables;
  tables.branching_count = system_logic.count('V');
  tables.B_count = system_logic.count('B');
  const std::int32_t entries = std::max(tables.branching_count, 1);
  const bool code_ready = tables.code.allocate_zeroed(entries);
  const bool share_ready = tables.share.allocate_zeroed(entries);
  return code_ready && share_ready ? 0 : m_WLM_error::allocation_failed;
}

void ReadBranchings(std::string_view variant_name) {
  m_System::read_companion_file(variant_name, {.extension = ".ver",
                                               .type = 'V',
                                               .numbered_with = 'V',
                                               .allocate = AllocateBranchingTables,
                                               .read = read_branching});
}

void reset() {
  filled_tables = BranchingTables();
}

}  // namespace m_Bauwerke
