#include "runtime/blocks.h"

#include <cstdlib>
#include <cstring>

#include "runtime/host.h"

namespace runtime {
namespace {

// Below this a large page would cost more memory than it saves time.
constexpr std::size_t least_large = std::size_t{1} << 20U;

std::size_t largest_allocation = std::numeric_limits<std::size_t>::max();

}  // namespace

void* allocate_block(std::size_t bytes) {
  return bytes < least_large ? std::malloc(bytes == 0 ? 1 : bytes) : allocate_on_large_pages(bytes);
}

void* allocate_zeroed_block(std::size_t bytes) {
  if (bytes > largest_allocation) return nullptr;
  void* const block = allocate_block(bytes);
  if (block != nullptr) std::memset(block, 0, bytes);
  return block;
}

void release_block(void* released) {
  std::free(released);
}

void limit_allocations(std::size_t bytes) {
  largest_allocation = bytes;
}

void unlimit_allocations() {
  largest_allocation = std::numeric_limits<std::size_t>::max();
}

}  // namespace runtime
