#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace runtime {

/// The nearest whole number, halves away from zero; the ends of the 32-bit range beyond it, 0 for a
/// not-a-number.
inline std::int32_t nearest_integer(double value) {
  if (std::isnan(value)) return 0;
  const double rounded = std::round(value);
  if (rounded <= std::numeric_limits<std::int32_t>::min()) return std::numeric_limits<std::int32_t>::min();
  if (rounded >= std::numeric_limits<std::int32_t>::max()) return std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(rounded);
}

/// The whole part of a number, cut toward zero, with the same ends.
inline std::int32_t truncated_integer(double value) {
  return nearest_integer(std::trunc(value));
}

/// base ^ exponent in single precision by repeated squaring from the low bit (Knuth, The Art of Computer
/// Programming 2, 4.6.3); a negative exponent is 1 divided by the positive power.
constexpr float integer_power(float base, std::int32_t exponent) {
  std::uint32_t rest =
      exponent < 0 ? 0U - static_cast<std::uint32_t>(exponent) : static_cast<std::uint32_t>(exponent);
  float power = (rest & 1U) != 0 ? base : 1.0F;
  for (rest >>= 1U; rest != 0; rest >>= 1U) {
    base *= base;
    if ((rest & 1U) != 0) power *= base;
  }
  return exponent < 0 ? 1.0F / power : power;
}

}  // namespace runtime
