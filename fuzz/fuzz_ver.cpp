// `NAME.ver`: the reader of the branchings.

#include <algorithm>

#include "fuzz/fuzz_bed.h"
#include "m_Bauwerke/m_Bauwerke.h"
#include "m_WLM_error/m_WLM_error.h"

namespace {

std::int32_t highest_code() {
  const auto& code = m_Bauwerke::branching_tables.code;
  std::int32_t highest = 0;
  for (std::int32_t branching = 1; branching <= code.size(); ++branching) {
    highest = std::max(highest, code.at(branching));
  }
  return highest;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz_bed::Bed bed;
  bed.put("v.ver", fuzz_bed::text_of(bytes, size));
  fuzz_bed::start_with_network();
  m_Bauwerke::ReadBranchings("v");
  if (highest_code() > 3) fuzz_bed::require(m_WLM_error::ErrorLevel >= 2, "a code above 3 is an error");
  fuzz_bed::accumulate_and_check(bed);
  return 0;
}
