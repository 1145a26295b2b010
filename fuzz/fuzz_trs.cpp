// `NAME.trs`: the reader of the transport reaches.

#include "fuzz/fuzz_bed.h"
#include "m_Gerinne/m_Gerinne.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz_bed::Bed bed;
  bed.put("v.trs", fuzz_bed::text_of(bytes, size));
  fuzz_bed::start_with_network();
  m_Gerinne::ReadReaches("v");
  for (std::int32_t reach = 1; reach <= m_Gerinne::reach_tables.kind.size(); ++reach) {
    const std::int32_t kind = m_Gerinne::reach_tables.kind.at(reach);
    fuzz_bed::require(kind >= 0 && kind <= 2, "a reach is of kind 1 or 2, or was not read");
  }
  fuzz_bed::accumulate_and_check(bed);
  return 0;
}
