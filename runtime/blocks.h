#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

/// Memory for tables and files. A large block lies on large pages where the host has them: most of what
/// memory costs here is the first touch of its pages.
namespace runtime {

/// Memory for `bytes` bytes of any content, aligned for every plain type; null when there is none.
void* allocate_block(std::size_t bytes);
/// The same with all bytes zero.
void* allocate_zeroed_block(std::size_t bytes);
/// Gives a block back; null is passed over.
void release_block(void* block);

struct ReleaseBlock {
  void operator()(void* block) const { release_block(block); }
};

/// Makes every later table of more than `bytes` fail, as on a machine short of memory; files are still read.
/// For tests.
void limit_allocations(std::size_t bytes);
/// Makes one table fail: the first from now on, or the one behind so many others. For tests.
void refuse_table(std::int32_t others = 0);
/// Takes `limit_allocations` and `refuse_table` back.
void unlimit_allocations();
/// Whether the limit allows a table of so many bytes, and it is not the one to be refused.
bool is_allowed(std::size_t bytes);

/// Lets a standard container have its memory in blocks.
template <class T>
struct BlockAllocator {
  using value_type = T;

  BlockAllocator() = default;
  template <class Other>
  BlockAllocator(const BlockAllocator<Other>&) {}

  T* allocate(std::size_t count) {
    if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_alloc();
    void* const block = allocate_block(count * sizeof(T));
    if (block == nullptr) throw std::bad_alloc();
    return static_cast<T*>(block);
  }
  void deallocate(T* block, std::size_t) { release_block(block); }

  friend bool operator==(const BlockAllocator&, const BlockAllocator&) { return true; }
};

}  // namespace runtime
