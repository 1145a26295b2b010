#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>
#include <utility>

#include "runtime/blocks.h"

namespace runtime {

/// A few values of one element, at the places 1 .. K (the inflows or outflows of a system element).
template <class T, std::int32_t K>
struct Slots {
  std::array<T, static_cast<std::size_t>(K)> values{};

  constexpr T& at(std::int32_t k) { return values[static_cast<std::size_t>(k) - 1]; }
  constexpr const T& at(std::int32_t k) const { return values[static_cast<std::size_t>(k) - 1]; }
};

/// A table of plain values with the positions 1 .. size, allocated once from the counts of the input.
/// Positions are checked in the builds that define KV_CHECKED: a wrong one ends the program there.
template <class T>
class OneBased {
 public:
  static_assert(std::is_trivially_copyable_v<T>);
  // The bytes of every table can then be told.
  static_assert(sizeof(std::size_t) > sizeof(std::int32_t));

  /// Makes `count` entries that hold `initial`. Frees the old ones first. False, with an empty table,
  /// when the memory is not there.
  bool allocate(std::int32_t count, const T& initial = T{}) {
    if (!take(count, allocate_block)) return false;
    std::uninitialized_fill_n(data_.get(), size_, initial);
    return true;
  }

  /// The same with entries whose bytes are zero, for tables of numbers.
  bool allocate_zeroed(std::int32_t count) { return take(count, allocate_zeroed_block); }

  void release() {
    data_.reset();
    size_ = 0;
  }

  /// The number of entries; 0 while nothing is allocated.
  [[nodiscard]] std::int32_t size() const { return size_; }
  [[nodiscard]] bool holds(std::int32_t position) const { return position >= 1 && position <= size_; }

  T& at(std::int32_t position) { return data_[checked(position)]; }
  const T& at(std::int32_t position) const { return data_[checked(position)]; }

  /// The entry, or a zero value where the table has none: a table that was never allocated reads as zeros.
  [[nodiscard]] T at_or_zero(std::int32_t position) const { return holds(position) ? at(position) : T{}; }

 private:
  bool take(std::int32_t count, void* (*allocate_bytes)(std::size_t)) {
    release();
    const auto entries = static_cast<std::size_t>(count < 0 ? 0 : count);
    if (is_allowed(entries * sizeof(T))) data_.reset(static_cast<T*>(allocate_bytes(entries * sizeof(T))));
    if (!data_) return false;
    size_ = static_cast<std::int32_t>(entries);
    return true;
  }

  [[nodiscard]] std::size_t checked(std::int32_t position) const {
#ifdef KV_CHECKED
    if (!holds(position)) std::abort();
#endif
    return static_cast<std::size_t>(position) - 1;
  }

  std::unique_ptr<T[], ReleaseBlock> data_;
  std::int32_t size_ = 0;
};

}  // namespace runtime
