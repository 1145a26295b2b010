#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace runtime {

enum class NumberState : std::uint8_t {
  good,
  bad,          ///< not a number
  out_of_range  ///< a number, but beyond the largest finite value of its kind
};

struct SingleEdit {
  float value = 0.0F;  ///< infinite with its sign when out of range, 0.0 when bad
  NumberState state = NumberState::good;
};
struct DoubleEdit {
  double value = 0.0;
  NumberState state = NumberState::good;
};
struct IntegerEdit {
  std::int32_t value = 0;
  NumberState state = NumberState::good;
};

/// `Fw.d` on input (ISO/IEC 1539-1, "F editing"): blanks count nowhere; an all-blank field is 0.0. An
/// optional sign, digits with at most one point, an optional exponent (E, e, D, d with an optional sign, or
/// a sign alone, then digits). A lone sign, point or sign and point is zero, and so is an exponent without
/// digits before it. Correctly rounded; a value too small is 0.0. Without a point the last `decimals`
/// digits are decimals. A comma, a tab, "Inf" and "NaN" are no numbers.
SingleEdit edit_single(std::string_view field, std::size_t decimals = 0);
/// The same in double precision.
DoubleEdit edit_double(std::string_view field, std::size_t decimals = 0);

/// `Iw` on input: blanks count nowhere; an all-blank field is 0; an optional sign, then digits. Anything
/// else, a point or a lone sign included, is bad.
IntegerEdit edit_integer(std::string_view field);

}  // namespace runtime
