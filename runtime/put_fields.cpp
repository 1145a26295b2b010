#include "runtime/put_fields.h"

#include <charconv>
#include <string>

namespace runtime::detail {
namespace {

char* put_right_justified(char* place, std::size_t width, std::string_view text) {
  if (text.size() > width) return put_asterisks(place, width);
  return put_bytes(put_blanks(place, width - text.size()), text);
}

// A field that is filled from its last column forward; more than it holds turns it into asterisks.
class FieldFromBehind {
 public:
  FieldFromBehind(char* place, std::size_t width) : first_(place), next_(place + width), end_(next_) {}

  void push(char character) {
    if (next_ == first_) {
      overflow_ = true;
    } else {
      *--next_ = character;
    }
  }
  /// The last `count` digits of a number, zeros included; what is left of it.
  std::uint64_t push_digits(std::uint64_t number, std::size_t count) {
    for (; count > 0; --count, number /= 10) push(static_cast<char>('0' + number % 10));
    return number;
  }
  /// The digits of a number without leading zeros; none for 0.
  void push_number(std::uint64_t number) {
    for (; number > 0; number /= 10) push(static_cast<char>('0' + number % 10));
  }
  [[nodiscard]] std::size_t columns_left() const { return static_cast<std::size_t>(next_ - first_); }

  /// Blanks before what was written, or asterisks; the place behind the field.
  char* finish() {
    if (overflow_) return put_asterisks(first_, static_cast<std::size_t>(end_ - first_));
    put_blanks(first_, columns_left());
    return end_;
  }

 private:
  char* first_;
  char* next_;
  char* end_;
  bool overflow_ = false;
};

std::uint64_t magnitude_of(std::int64_t value) {
  return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

std::size_t digit_count(std::uint64_t number) {
  std::size_t count = 1;
  for (; number > 9; number /= 10) ++count;
  return count;
}

// True when value x 10^decimals is exact in double precision: a single-precision value has 24 significant
// bits and 5^9 has 21.
bool scales_exactly(std::size_t decimals, double value) {
  return decimals <= fast_decimals && std::abs(value) * power_of_ten[decimals] < fast_limit &&
         static_cast<double>(static_cast<float>(value)) == value;
}

// To nearest, ties to even; for 0 .. fast_limit.
std::uint64_t rounded(double value) {
  const auto whole = static_cast<std::uint64_t>(value);
  const double rest = value - static_cast<double>(whole);
  const bool up = rest > 0.5 || (rest == 0.5 && whole % 2 == 1);
  return whole + (up ? 1 : 0);
}

char* put_scaled(char* place, std::size_t width, std::size_t decimals, double value) {
  const bool negative = std::signbit(value);
  FieldFromBehind field(place, width);
  const std::uint64_t whole = field.push_digits(rounded(std::abs(value) * power_of_ten[decimals]), decimals);
  field.push('.');
  // The zero before the point stands when it fits, or when nothing else would stand there.
  const bool leading_zero = decimals == 0 || field.columns_left() >= (negative ? 2U : 1U);
  if (whole == 0 && leading_zero) field.push('0');
  field.push_number(whole);
  if (negative) field.push('-');
  return field.finish();
}

// Infinities and not-a-number.
char* put_not_finite(char* place, std::size_t width, double value) {
  if (std::isnan(value)) return put_right_justified(place, width, "NaN");
  const bool negative = value < 0;
  const std::string_view whole = negative ? "-Infinity" : "Infinity";
  const std::string_view brief = negative ? "-Inf" : "Inf";
  return put_right_justified(place, width, whole.size() <= width ? whole : brief);
}

// 309 digits before the point, the point and as many decimals as a format can ask for.
constexpr std::size_t exact_capacity = 309 + 1 + 9999;

// Any finite number, by its exact decimal value.
char* put_exact(char* place, std::size_t width, std::size_t decimals, double value) {
  std::array<char, exact_capacity> bytes;
  const auto end = std::to_chars(bytes.data(), bytes.data() + bytes.size(), std::abs(value),
                                 std::chars_format::fixed, static_cast<int>(decimals));
  std::string text(bytes.data(), end.ptr);
  if (decimals == 0) text.push_back('.');
  if (std::signbit(value)) text.insert(text.begin(), '-');
  const std::size_t zero = std::signbit(value) ? 1 : 0;
  if (text.size() > width && decimals > 0 && text.compare(zero, 2, "0.") == 0) text.erase(zero, 1);
  return put_right_justified(place, width, text);
}

}  // namespace

char* put_integer(char* place, std::size_t width, std::size_t minimum, std::int64_t value) {
  const std::uint64_t magnitude = magnitude_of(value);
  const bool too_wide = width > 0 && width <= widest_limit && magnitude >= column_limits[width];
  if (too_wide) return put_asterisks(place, width);
  // A plain Iw shows zero as one digit; Iw.m shows as many as it asks for.
  minimum = std::max<std::size_t>(minimum, 1);
  if (width == 0) width = std::max(minimum, digit_count(magnitude)) + (value < 0 ? 1 : 0);
  FieldFromBehind field(place, width);
  field.push_number(field.push_digits(magnitude, minimum));
  if (value < 0) field.push('-');
  return field.finish();
}

char* put_fixed(char* place, std::size_t width, std::size_t decimals, double value) {
  if (!std::isfinite(value)) return put_not_finite(place, width, value);
  if (scales_exactly(decimals, value)) return put_scaled(place, width, decimals, value);
  return put_exact(place, width, decimals, value);
}

}  // namespace runtime::detail
