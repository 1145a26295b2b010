// `NAME.nfl` and `NAME.kfl`, one input for both, because a unit carries from the first into the second.

#include "fuzz/fuzz_bed.h"
#include "m_Einleiter/m_Einleiter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz_bed::Bed bed;
  bed.put_all(fuzz_bed::text_of(bytes, size));
  fuzz_bed::start_with_network();
  m_Einleiter::ReadNaturalAreas("v");
  m_Einleiter::ReadCanalisedAreas("v");
  const float factor = m_Einleiter::source_tables.unit_factor;
  fuzz_bed::require(factor == 1.0F || factor == 0.01F || factor == 1.0e-6F, "the unit is one of three");
  fuzz_bed::accumulate_and_check(bed);
  return 0;
}
