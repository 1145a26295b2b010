// `NAME.sys`: the reader of the system logic and its checks.

#include "fuzz/fuzz_bed.h"
#include "m_System/m_System.h"
#include "runtime/units.h"
#include "tests/variant_files.h"

namespace {

using m_System::system_logic;

void check_links(std::int32_t i) {
  const std::int32_t outlet = system_logic.element_count + 1;
  for (const std::int32_t j : system_logic.inflow_index.at(i).values) {
    fuzz_bed::require(j >= 0 && j < outlet, "an inflow is an element or none");
  }
  for (const std::int32_t j : system_logic.outflow_index.at(i).values) {
    fuzz_bed::require(j >= 0 && j <= outlet, "an outflow is an element, the outlet or none");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz_bed::Bed bed;
  bed.put("v.sys", fuzz_bed::text_of(bytes, size));
  variant_files::start_protocol();
  m_System::ReadSystemFile("v");
  runtime::close_all();
  const std::int32_t count = system_logic.element_count;
  for (std::int32_t i = 1; i <= count; ++i) check_links(i);
  fuzz_bed::require(bed.lines("code.pkl") == static_cast<std::size_t>(count) + 1,
                    "every element is listed once");
  fuzz_bed::require_layout(bed);
  return 0;
}
