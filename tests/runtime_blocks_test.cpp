#include "runtime/blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

bool all_zero(const void* block, std::size_t bytes) {
  const auto* begin = static_cast<const char*>(block);
  return std::all_of(begin, begin + bytes, [](char byte) { return byte == 0; });
}

TEST(Blocks, AreThereInEverySize) {
  for (const std::size_t bytes :
       {std::size_t{0}, std::size_t{1}, std::size_t{100}, mebibyte - 1, mebibyte, 5 * mebibyte}) {
    void* const block = runtime::allocate_block(bytes);
    ASSERT_NE(block, nullptr) << bytes;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U) << bytes;
    std::memset(block, 1, bytes);
    runtime::release_block(block);
  }
  runtime::release_block(nullptr);
}

TEST(Blocks, ComeBackZeroedWhenThatIsAskedFor) {
  void* const used = runtime::allocate_block(9 * mebibyte);
  ASSERT_NE(used, nullptr);
  std::memset(used, 1, 9 * mebibyte);
  runtime::release_block(used);
  for (const std::size_t bytes : {std::size_t{100}, 2 * mebibyte, 3 * mebibyte, 6 * mebibyte}) {
    void* const block = runtime::allocate_zeroed_block(bytes);
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(all_zero(block, bytes)) << bytes;
    std::memset(block, 1, bytes);
    runtime::release_block(block);
  }
}

TEST(Blocks, LieApartWhenALargeOneIsDivided) {
  runtime::release_block(runtime::allocate_block(16 * mebibyte));
  std::vector<char*> blocks;
  for (std::size_t i = 0; i < 8; ++i) {
    blocks.push_back(static_cast<char*>(runtime::allocate_block(2 * mebibyte)));
    ASSERT_NE(blocks.back(), nullptr);
    std::memset(blocks.back(), static_cast<int>(i), 2 * mebibyte);
  }
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    EXPECT_EQ(std::count(blocks[i], blocks[i] + 2 * mebibyte, static_cast<char>(i)), 2 * mebibyte) << i;
  }
  for (char* const block : blocks) runtime::release_block(block);
}

TEST(Blocks, AreAlsoThereWhenMoreAreLargeThanAreKept) {
  std::vector<void*> blocks(100);
  for (void*& block : blocks) block = runtime::allocate_zeroed_block(mebibyte);
  for (void* const block : blocks) {
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(all_zero(block, mebibyte));
  }
  for (void* const block : blocks) runtime::release_block(block);
}

TEST(Blocks, OfMoreThanThereIsAreRefused) {
  constexpr std::size_t most = std::numeric_limits<std::size_t>::max();
  for (const std::size_t bytes : {most, most - 2 * mebibyte - 1, most - 4 * mebibyte, most / 2}) {
    EXPECT_EQ(runtime::allocate_block(bytes), nullptr) << bytes;
    EXPECT_EQ(runtime::allocate_zeroed_block(bytes), nullptr) << bytes;
  }
  runtime::BlockAllocator<std::uint64_t> allocator;
  EXPECT_THROW((void)allocator.allocate(most / 4), std::bad_alloc);
  EXPECT_THROW((void)allocator.allocate(most / 16), std::bad_alloc);
}

TEST(Blocks, HoldTheElementsOfAContainer) {
  std::vector<std::size_t, runtime::BlockAllocator<std::size_t>> numbers;
  while (numbers.size() < 1000000) numbers.push_back(numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) ASSERT_EQ(numbers[i], i);
}

}  // namespace
