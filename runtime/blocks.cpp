#include "runtime/blocks.h"

#include <algorithm>
#include <cstdlib>

#include "runtime/host.h"

namespace runtime {
namespace {

// Below this a large page would cost more memory than it saves time.
constexpr std::size_t least_large = std::size_t{1} << 20U;

std::size_t largest_table = std::numeric_limits<std::size_t>::max();

// Tables up to the one that is refused; 0 while none is to be.
std::int32_t tables_to_refusal = 0;

void* advised(void* block, std::size_t bytes) {
  if (block != nullptr && bytes >= least_large) advise_large_pages(block, bytes);
  return block;
}

}  // namespace

void* allocate_block(std::size_t bytes) {
  return advised(std::malloc(std::max<std::size_t>(bytes, 1)), bytes);
}

void* allocate_zeroed_block(std::size_t bytes) {
  return advised(std::calloc(std::max<std::size_t>(bytes, 1), 1), bytes);
}

void release_block(void* released) {
  std::free(released);
}

void limit_allocations(std::size_t bytes) {
  largest_table = bytes;
}

void refuse_table(std::int32_t others) {
  tables_to_refusal = others + 1;
}

void unlimit_allocations() {
  tables_to_refusal = 0;
  largest_table = std::numeric_limits<std::size_t>::max();
}

bool is_allowed(std::size_t bytes) {
  const bool refused = tables_to_refusal > 0 && --tables_to_refusal == 0;
  return !refused && bytes <= largest_table;
}

}  // namespace runtime
