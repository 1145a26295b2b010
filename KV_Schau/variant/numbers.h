#pragma once

#include <cstdint>
#include <string_view>

namespace schau::variant {

/// A number as KV_Akum takes it from a field, here in double precision.
struct ReadNumber {
  enum class State : std::uint8_t {
    good,
    bad,          ///< no number: the run reports it (A03)
    out_of_range  ///< beyond single precision; `value` is infinite
  };
  State state = State::good;
  double value = 0.0;
};

/// A field of an area file, by the rules of F5.0: blanks count nowhere and a blank field is 0; a sign, digits
/// with at most one point, an exponent. Anything else is bad, a comma too.
ReadNumber read_area_field(std::string_view field);

/// A field of the other files, by the suite's own rules: the number begins at the first digit, the character
/// before it decides on sign or fraction, it ends at the first character that does not belong to it; an "E"
/// or "e" anywhere brings an exponent. Never bad; without a digit it is 0.
ReadNumber read_loose_field(std::string_view field);

}  // namespace schau::variant
