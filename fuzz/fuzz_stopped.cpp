// A target that every input stops, for the test of the exit guard.

#include "fuzz/fuzz_bed.h"
#include "runtime/stop.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* /*bytes*/, std::size_t /*size*/) {
  runtime::stop();
}
