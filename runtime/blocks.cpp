#include "runtime/blocks.h"

#include <array>
#include <cstdlib>
#include <cstring>

#include "runtime/host.h"

namespace runtime {
namespace {

// Below half a large page the rounding would cost more memory than the page saves time.
constexpr std::size_t large_page = std::size_t{2} << 20U;
constexpr std::size_t least_large = large_page / 2;

struct LargeBlock {
  void* memory = nullptr;
  std::size_t size = 0;
  bool used = false;
};
// More than a run has tables and files at a time; what does not fit here is an ordinary block.
std::array<LargeBlock, 64> large_blocks;

std::size_t largest_allocation = std::numeric_limits<std::size_t>::max();

constexpr std::size_t whole_pages(std::size_t bytes) {
  return (bytes + large_page - 1) / large_page * large_page;
}

LargeBlock* free_entry() {
  for (LargeBlock& block : large_blocks) {
    if (block.memory == nullptr) return &block;
  }
  return nullptr;
}

// What a block has beyond the request becomes a kept block of its own.
void split(LargeBlock& block, std::size_t size) {
  LargeBlock* const rest = block.size > size ? free_entry() : nullptr;
  if (rest == nullptr) return;
  *rest = {static_cast<char*>(block.memory) + size, block.size - size, false};
  block.size = size;
}

// The smallest block that was given back and is large enough.
LargeBlock* kept_block(std::size_t size) {
  LargeBlock* best = nullptr;
  for (LargeBlock& block : large_blocks) {
    const bool fits = block.memory != nullptr && !block.used && block.size >= size;
    if (fits && (best == nullptr || block.size < best->size)) best = &block;
  }
  if (best != nullptr) split(*best, size);
  return best;
}

struct Request {
  std::size_t bytes;
  bool zeroed;
};

void* ordinary_block(Request request) {
  const std::size_t bytes = request.bytes == 0 ? 1 : request.bytes;
  return request.zeroed ? std::calloc(bytes, 1) : std::malloc(bytes);
}

void* large_block(Request request) {
  const std::size_t size = whole_pages(request.bytes);
  if (LargeBlock* const kept = kept_block(size)) {
    kept->used = true;
    if (request.zeroed) std::memset(kept->memory, 0, request.bytes);
    return kept->memory;
  }
  LargeBlock* const entry = free_entry();
  if (entry == nullptr) return ordinary_block(request);
  // Fresh memory is zero already.
  entry->memory = map_memory(size, large_page);
  entry->size = size;
  entry->used = entry->memory != nullptr;
  return entry->memory;
}

void* block_for(Request request) {
  if (request.bytes < least_large) return ordinary_block(request);
  const bool too_large = request.bytes > std::numeric_limits<std::size_t>::max() - 2 * large_page;
  return too_large ? nullptr : large_block(request);
}

}  // namespace

void* allocate_block(std::size_t bytes) {
  return block_for({bytes, false});
}

void* allocate_zeroed_block(std::size_t bytes) {
  return bytes > largest_allocation ? nullptr : block_for({bytes, true});
}

void release_block(void* released) {
  if (released == nullptr) return;
  for (LargeBlock& block : large_blocks) {
    if (block.memory != released) continue;
    block.used = false;
    return;
  }
  std::free(released);
}

void limit_allocations(std::size_t bytes) {
  largest_allocation = bytes;
}

void unlimit_allocations() {
  largest_allocation = std::numeric_limits<std::size_t>::max();
}

}  // namespace runtime
