#include "runtime/edit_input.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

namespace runtime {
namespace {

// More significant digits than decide the rounding of any double; a last 1 stands for what was cut off.
constexpr std::size_t digit_capacity = 800;
constexpr std::int64_t exponent_limit = 1'000'000;

struct RealScan {
  bool valid = true;
  bool negative = false;
  bool any_digit = false;
  bool point = false;
  bool exponent_given = false;
  std::array<char, digit_capacity> digits;  // significant ones, without leading zeros
  std::size_t digit_count = 0;
  std::int64_t exponent = 0;  // of ten, for the digits read as one whole number
};

// The characters of a field without its blanks.
class FieldReader {
 public:
  explicit FieldReader(std::string_view field) : rest_(field) { skip_blanks(); }
  [[nodiscard]] bool done() const { return rest_.empty(); }
  [[nodiscard]] char peek() const { return rest_.empty() ? '\0' : rest_.front(); }
  [[nodiscard]] bool digit() const { return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9'; }
  [[nodiscard]] bool sign() const { return peek() == '+' || peek() == '-'; }
  void next() {
    rest_.remove_prefix(1);
    skip_blanks();
  }

 private:
  void skip_blanks() {
    while (!rest_.empty() && rest_.front() == ' ') rest_.remove_prefix(1);
  }
  std::string_view rest_;
};

void add_digit(RealScan& scan, char digit) {
  scan.any_digit = true;
  if (scan.point) --scan.exponent;
  if (scan.digit_count == 0 && digit == '0') return;
  if (scan.digit_count < digit_capacity) {
    scan.digits[scan.digit_count++] = digit;
    return;
  }
  if (digit != '0') scan.digits[digit_capacity - 1] = '1';
  ++scan.exponent;
}

void scan_mantissa(FieldReader& field, RealScan& scan) {
  while (field.digit() || field.peek() == '.') {
    if (field.peek() == '.') {
      if (scan.point) scan.valid = false;
      scan.point = true;
    } else {
      add_digit(scan, field.peek());
    }
    field.next();
  }
}

bool exponent_letter(char character) {
  return character == 'E' || character == 'e' || character == 'D' || character == 'd';
}

void scan_exponent(FieldReader& field, RealScan& scan) {
  scan.exponent_given = true;
  if (exponent_letter(field.peek())) field.next();
  const bool negative = field.peek() == '-';
  if (field.sign()) field.next();
  if (!field.digit()) scan.valid = false;
  std::int64_t exponent = 0;
  while (field.digit()) {
    exponent = std::min(exponent * 10 + (field.peek() - '0'), exponent_limit);
    field.next();
  }
  scan.exponent += negative ? -exponent : exponent;
}

RealScan scan_real(std::string_view text, std::size_t decimals) {
  RealScan scan;
  FieldReader field(text);
  const bool sign_given = field.sign();
  scan.negative = field.peek() == '-';
  if (sign_given) field.next();
  scan_mantissa(field, scan);
  if (!scan.point) scan.exponent -= static_cast<std::int64_t>(decimals);
  if (exponent_letter(field.peek()) || field.sign()) scan_exponent(field, scan);
  if (!field.done()) scan.valid = false;
  const bool lone_sign = sign_given && !scan.any_digit && !scan.point && !scan.exponent_given;
  if (lone_sign) scan.negative = false;
  return scan;
}

// A field of blanks, a few digits and at most one point, as nearly all are, has exact operands and one
// rounding: up to 7 digits are exact in single precision, and so is 10^10 (Clinger, How to Read Floating
// Point Numbers Accurately, 1990).
constexpr std::size_t plain_width = 7;
constexpr std::size_t plain_decimals = 10;
constexpr std::array<float, plain_decimals + 1> single_powers = {1E0F, 1E1F, 1E2F, 1E3F, 1E4F, 1E5F,
                                                                 1E6F, 1E7F, 1E8F, 1E9F, 1E10F};

bool read_plain(std::string_view field, std::size_t decimals, float& value) {
  if (field.size() > plain_width || decimals > plain_decimals) return false;
  std::int32_t whole = 0;
  bool point = false;
  for (const char character : field) {
    if (character == ' ') continue;
    if (character == '.' && !point) {
      point = true;
      decimals = 0;
    } else if (character >= '0' && character <= '9') {
      whole = whole * 10 + (character - '0');
      decimals += point ? 1 : 0;
    } else {
      return false;
    }
  }
  value = static_cast<float>(whole) / single_powers[decimals];
  return true;
}

template <class Real>
struct Converted {
  Real value = 0;
  bool overflow = false;
};

template <class Real>
Converted<Real> convert(const RealScan& scan) {
  if (scan.digit_count == 0) return {};
  std::array<char, digit_capacity + 16> text;
  std::copy_n(scan.digits.data(), scan.digit_count, text.data());
  char* end = text.data() + scan.digit_count;
  *end++ = 'e';
  end = std::to_chars(end, text.data() + text.size(), scan.exponent).ptr;
  Converted<Real> converted;
  const auto result = std::from_chars(text.data(), end, converted.value);
  if (result.ec == std::errc()) return converted;
  const bool large = static_cast<std::int64_t>(scan.digit_count) + scan.exponent > 0;
  return {large ? std::numeric_limits<Real>::infinity() : Real{0}, large};
}

template <class Edit, class Real>
Edit edited(const RealScan& scan, Converted<Real> converted) {
  const Real value = scan.negative ? -converted.value : converted.value;
  return {value, converted.overflow ? NumberState::out_of_range : NumberState::good};
}

}  // namespace

SingleEdit edit_single(std::string_view field, std::size_t decimals) {
  float plain = 0.0F;
  if (read_plain(field, decimals, plain)) return {plain, NumberState::good};
  const RealScan scan = scan_real(field, decimals);
  if (!scan.valid) return {0.0F, NumberState::bad};
  return edited<SingleEdit>(scan, convert<float>(scan));
}

DoubleEdit edit_double(std::string_view field, std::size_t decimals) {
  const RealScan scan = scan_real(field, decimals);
  if (!scan.valid) return {0.0, NumberState::bad};
  return edited<DoubleEdit>(scan, convert<double>(scan));
}

IntegerEdit edit_integer(std::string_view text) {
  FieldReader field(text);
  if (field.done()) return {};
  const bool negative = field.peek() == '-';
  if (field.sign()) field.next();
  if (!field.digit()) return {0, NumberState::bad};
  constexpr std::int64_t limit = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
  std::int64_t magnitude = 0;
  while (field.digit()) {
    magnitude = std::min(magnitude * 10 + (field.peek() - '0'), limit + 1);
    field.next();
  }
  if (!field.done()) return {0, NumberState::bad};
  if (magnitude > limit || (magnitude == limit && !negative)) return {0, NumberState::out_of_range};
  return {static_cast<std::int32_t>(negative ? -magnitude : magnitude), NumberState::good};
}

}  // namespace runtime
