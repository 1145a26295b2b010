#include "array.h"

#include "host.h"

namespace runtime {
namespace {

std::size_t largest_allocation = std::numeric_limits<std::size_t>::max();

}  // namespace

void* allocate_zeroed(std::size_t bytes) {
  if (bytes > largest_allocation) return nullptr;
  void* memory = std::calloc(bytes == 0 ? 1 : bytes, 1);
  if (memory != nullptr) prefer_large_pages(memory, bytes);
  return memory;
}

void limit_allocations(std::size_t bytes) {
  largest_allocation = bytes;
}

void unlimit_allocations() {
  largest_allocation = std::numeric_limits<std::size_t>::max();
}

}  // namespace runtime
