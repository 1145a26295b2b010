// A whole run of the program over all its input files. A second run over the same files leaves the same.

#include <array>

#include "KV_Akum/KV_Akum.h"
#include "fuzz/fuzz_bed.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/arguments.h"
#include "runtime/units.h"

namespace {

struct Traces {
  std::int32_t level = 0;
  std::string output{};
  std::array<std::string, 3> files{};

  friend bool operator==(const Traces&, const Traces&) = default;
};

Traces run(std::string_view container) {
  constexpr std::array<const char*, 2> arguments = {"KV_Akum", "v"};
  fuzz_bed::Bed bed;
  // Without a system file the program ends at once.
  bed.put("v.sys", "");
  bed.put_all(container);
  runtime::set_arguments(static_cast<int>(arguments.size()), arguments.data());
  KV_Akum::ProgramDriver();
  Traces traces{.level = m_WLM_error::ErrorLevel};
  runtime::close_all();
  traces.output = bed.output();
  fuzz_bed::require_layout(bed);
  traces.files = {bed.bytes("code.pkl"), bed.bytes("v.pkl"), bed.bytes("v.Akum")};
  return traces;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view container = fuzz_bed::text_of(bytes, size);
  const Traces traces = run(container);
  fuzz_bed::require(traces.output.ends_with("Ergebnis: v.Akum\x03"), "the run ends with its notice");
  fuzz_bed::require(traces == run(container), "the same files give the same run");
  return 0;
}
