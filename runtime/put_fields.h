#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The editing of single output fields, for the procedures that write records.
namespace runtime::detail {

// The `put_` procedures write into memory that is known to be large enough and return the place behind.

inline char* put_bytes(char* place, std::string_view bytes) {
  return std::copy(bytes.begin(), bytes.end(), place);
}

inline constexpr std::string_view blanks = "                ";

inline char* put_filled(char* place, std::size_t width, char character) {
  std::memset(place, character, width);
  return place + width;
}

inline char* put_blanks(char* place, std::size_t width) {
  return width <= blanks.size() ? put_bytes(place, blanks.substr(0, width)) : put_filled(place, width, ' ');
}

inline char* put_asterisks(char* place, std::size_t width) {
  constexpr std::string_view asterisks = "****************";
  return width <= asterisks.size() ? put_bytes(place, asterisks.substr(0, width))
                                   : put_filled(place, width, '*');
}

// The first number that a field of so many columns cannot hold, for the widths where 64 bits hold it.
inline constexpr std::size_t widest_limit = 19;
inline constexpr auto column_limits = [] {
  std::array<std::uint64_t, widest_limit + 1> limits{1};
  for (std::size_t width = 1; width <= widest_limit; ++width) limits[width] = 10 * limits[width - 1];
  return limits;
}();

inline constexpr std::size_t fast_decimals = 9;
inline constexpr std::array<double, fast_decimals + 1> power_of_ten = {1E0, 1E1, 1E2, 1E3, 1E4,
                                                                       1E5, 1E6, 1E7, 1E8, 1E9};
// Below 2^52 a double keeps its halves, so that a tie is seen as one.
inline constexpr double fast_limit = 4503599627370496.0;

/// A number in an Iw.m field, or in the columns that it takes when the width is 0.
char* put_integer(char* place, std::size_t width, std::size_t minimum, std::int64_t value);
/// A number in an Fw.d field, or in the columns that it takes when the width is 0; infinities and
/// not-a-number too.
char* put_fixed(char* place, std::size_t width, std::size_t decimals, double value);

// Short numbers in fields that the compiler knows: eight digits are worked out side by side in one word, its
// lowest byte the first digit (Hacker's Delight, 2nd ed., ch. 10: division by multiplication).
inline constexpr bool words_hold_text = std::endian::native == std::endian::little;
inline constexpr std::size_t word_digits = 8;

inline std::uint64_t digits_of(std::uint32_t number) {
  const std::uint64_t fours = number / 10000 | std::uint64_t{number % 10000} << 32U;
  const std::uint64_t hundreds = (fours * 10486U >> 20U) & 0x0000007F'0000007FU;
  const std::uint64_t twos = hundreds | (fours - 100U * hundreds) << 16U;
  const std::uint64_t tens = (twos * 103U >> 10U) & 0x000F000F'000F000FU;
  return tens | (twos - 10U * tens) << 8U;
}

// The digits as characters, with blanks for the leading zeros before the last `shown` ones.
inline std::uint64_t text_of_digits(std::uint64_t digits, std::size_t shown) {
  const std::uint64_t first_shown = std::uint64_t{1} << (8 * (word_digits - shown));
  const auto leading_bits = static_cast<unsigned>(std::countr_zero(digits | first_shown)) & ~7U;
  const std::uint64_t leading = (std::uint64_t{1} << leading_bits) - 1;
  constexpr std::uint64_t zeros = 0x3030303030303030U;
  constexpr std::uint64_t zeros_over_blanks = 0x1010101010101010U;
  return digits + zeros - (zeros_over_blanks & leading);
}

/// The same as above for a layout that the compiler knows.
template <std::size_t width, std::size_t minimum>
char* put_integer(char* place, std::int32_t value) {
  if constexpr (words_hold_text && width >= 1 && width <= word_digits) {
    if (value >= 0) {
      if (static_cast<std::uint64_t>(value) >= column_limits[width]) return put_filled(place, width, '*');
      constexpr std::size_t shown = std::max<std::size_t>(minimum, 1);
      const std::uint64_t text = text_of_digits(digits_of(static_cast<std::uint32_t>(value)), shown);
      const std::uint64_t last = text >> (8 * (word_digits - width));
      std::memcpy(place, &last, width);
      return place + width;
    }
  }
  return put_integer(place, width, minimum, value);
}

/// The same as above for a layout that the compiler knows.
template <std::size_t width, std::size_t decimals>
char* put_fixed(char* place, float value) {
  if constexpr (words_hold_text && decimals >= 1 && decimals < word_digits && width >= decimals + 2) {
    constexpr auto limit = static_cast<double>(column_limits[std::min(word_digits, width - 1)]);
    // Exact, as a single-precision value has 24 significant bits; the sum rounds it to a whole number, ties
    // to even, and holds that in its low bits.
    const double scaled = static_cast<double>(value) * power_of_ten[decimals];
    if (!std::signbit(value) && scaled < limit - 1) {
      const auto number = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(scaled + fast_limit));
      const std::uint64_t text = text_of_digits(digits_of(number), decimals + 1);
      constexpr std::size_t columns = width - 1 - decimals;
      constexpr std::size_t wholes = std::min(word_digits - decimals, columns);
      place = put_filled(place, columns - wholes, ' ');
      const std::uint64_t whole = text >> (8 * (word_digits - decimals - wholes));
      std::memcpy(place, &whole, wholes);
      place[wholes] = '.';
      const std::uint64_t fraction = text >> (8 * (word_digits - decimals));
      std::memcpy(place + wholes + 1, &fraction, decimals);
      return place + wholes + 1 + decimals;
    }
  }
  return put_fixed(place, width, decimals, static_cast<double>(value));
}

inline char* put_text(char* place, std::size_t width, std::string_view value) {
  if (width == 0 || width == value.size()) return put_bytes(place, value);
  if (width < value.size()) return put_bytes(place, value.substr(0, width));
  return put_bytes(put_blanks(place, width - value.size()), value);
}

}  // namespace runtime::detail
