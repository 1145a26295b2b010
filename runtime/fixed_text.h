#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace runtime {

/// The text without its trailing blanks. Only the blank counts: tabs and NULs are characters.
constexpr std::string_view trimmed(std::string_view text) {
  std::size_t length = text.size();
  while (length > 0 && text[length - 1] == ' ') --length;
  return text.substr(0, length);
}

/// The length of a text without its trailing blanks.
constexpr std::size_t trimmed_length(std::string_view text) {
  return trimmed(text).size();
}

/// True when every character is a blank; so is the empty text.
constexpr bool is_blank(std::string_view text) {
  if (!std::is_constant_evaluated()) {
    constexpr std::uint64_t blanks = 0x2020202020202020U;
    for (; text.size() >= sizeof(blanks); text.remove_prefix(sizeof(blanks))) {
      std::uint64_t bytes = 0;
      std::memcpy(&bytes, text.data(), sizeof(bytes));
      if (bytes != blanks) return false;
    }
  }
  return trimmed(text).empty();
}

/// Equality of two texts of any length: the shorter one counts as padded with blanks.
constexpr bool equal_padded(std::string_view left, std::string_view right) {
  return trimmed(left) == trimmed(right);
}

/// Copies `source` into `target`: cut at the target's length, or padded with blanks up to it.
constexpr void assign_padded(char* target, std::size_t length, std::string_view source) {
  const std::size_t copied = std::min(length, source.size());
  std::copy_n(source.data(), copied, target);
  std::fill(target + copied, target + length, ' ');
}

/// A text of exactly `N` single-byte characters, padded with blanks on the right.
/// It is blank at the beginning; assignment cuts or pads; comparison pads the shorter side.
template <std::size_t N>
struct FixedText {
  std::array<char, N> bytes;

  constexpr FixedText() { bytes.fill(' '); }
  constexpr FixedText(std::string_view text) : bytes() { assign_padded(bytes.data(), N, text); }

  /// The text of the N characters from `characters` on.
  static constexpr FixedText of_all(const char* characters) {
    FixedText text;
    std::copy_n(characters, N, text.bytes.data());
    return text;
  }

  constexpr FixedText& operator=(std::string_view text) {
    assign_padded(bytes.data(), N, text);
    return *this;
  }

  /// All N characters.
  [[nodiscard]] constexpr std::string_view view() const { return {bytes.data(), N}; }
  /// The characters without the trailing blanks; a view into this text.
  [[nodiscard]] constexpr std::string_view trimmed() const { return runtime::trimmed(view()); }
  [[nodiscard]] constexpr bool blank() const {
    if constexpr (N <= sizeof(std::uint64_t)) {
      return *this == FixedText();
    } else {
      return is_blank(view());
    }
  }
  [[nodiscard]] constexpr char first() const { return bytes[0]; }

  /// The characters of a short text as one number, to compare and to hash with.
  [[nodiscard]] constexpr std::uint64_t packed() const {
    static_assert(N <= sizeof(std::uint64_t));
    std::uint64_t number = 0;
    std::size_t i = 0;
    if constexpr (N >= sizeof(std::uint32_t) && std::endian::native == std::endian::little) {
      if (!std::is_constant_evaluated()) {
        std::uint32_t first = 0;
        std::memcpy(&first, bytes.data(), sizeof(first));
        number = first;
        i = sizeof(first);
      }
    }
    for (; i < N; ++i) number |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    return number;
  }

  friend constexpr bool operator==(const FixedText& left, const FixedText& right) {
    if constexpr (N <= sizeof(std::uint64_t)) {
      return left.packed() == right.packed();
    } else {
      return left.bytes == right.bytes;
    }
  }
  friend constexpr bool operator==(const FixedText& left, std::string_view right) {
    return equal_padded(left.view(), right);
  }
};

/// Columns `First` to `Last` (1-based, inclusive) of a record; columns past its end are blanks.
template <std::size_t First, std::size_t Last>
constexpr FixedText<Last - First + 1> columns(std::string_view record) {
  static_assert(First >= 1 && First <= Last);
  using Field = FixedText<Last - First + 1>;
  if (record.size() >= Last) return Field::of_all(record.data() + (First - 1));
  if (record.size() < First) return {};
  return Field(record.substr(First - 1));
}

}  // namespace runtime
