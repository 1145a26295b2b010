#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "m_strings/m_strings.h"
#include "runtime/arithmetic.h"
#include "runtime/edit_output.h"
#include "runtime/format.h"

namespace m_strings {
namespace {

std::span<char> field_of(std::span<char> text, std::int32_t width) {
  const auto length = static_cast<std::size_t>(std::max(width, 0));
  return text.first(std::min(length, text.size()));
}

std::int32_t digit_count(float magnitude) {
  std::int32_t count = 0;
  float quotient = magnitude;
  do {
    quotient /= 10.0F;
    ++count;
  } while (quotient >= 1.0F);
  return count;
}

// The small summand lifts a quotient that single precision left just below its digit; it also lifts one
// that belongs there, so what is left over may be negative and its digits are 0.
std::string digits_in_single_precision(float magnitude) {
  std::string digits;
  for (std::int32_t position = digit_count(magnitude) - 1; position >= 0; --position) {
    const float place = runtime::integer_power(10.0F, position);
    const float digit = std::clamp(std::trunc(magnitude / place + 0.0001F), 0.0F, 9.0F);
    digits.push_back(static_cast<char>('0' + static_cast<int>(digit)));
    magnitude -= digit * place;
  }
  return digits;
}

void put(std::string_view piece, std::span<char> field, std::size_t place) {
  std::ranges::copy(piece, field.begin() + static_cast<std::ptrdiff_t>(place));
}

// The digits of a whole number that a single-precision value holds exactly.
std::string exact_digits(float whole) {
  std::array<char, 48> bytes{};
  const auto end =
      std::to_chars(bytes.data(), bytes.data() + bytes.size(), whole, std::chars_format::fixed, 0);
  return {bytes.data(), end.ptr};
}

// The text of `RealToFixedText` before it is aligned; empty when it does not fit.
std::string fixed_text(std::size_t width, float value, std::size_t decimals) {
  const float scaled =
      std::round(std::abs(value) * runtime::integer_power(10.0F, static_cast<std::int32_t>(decimals)));
  if (!std::isfinite(scaled) || decimals >= width) return {};
  std::string text = exact_digits(scaled);
  if (text.size() < decimals) text.insert(0, decimals - text.size(), '0');
  text.insert(text.size() - decimals, 1, '.');
  if (text.front() == '.' && text.size() < width) text.insert(0, 1, '0');
  if (value < 0.0F) text.insert(0, 1, '-');
  return text.size() > width ? std::string() : text;
}

Text20 left_aligned(std::int64_t value) {
  return {std::to_string(value)};
}

runtime::Value value_for(std::string_view format, float value) {
  if (format.find_first_of("Ii") == std::string_view::npos) return value;
  return runtime::nearest_integer(value);
}

}  // namespace

void IntToText(std::int32_t width, std::int32_t value, char fill, std::span<char> text) {
  const std::span<char> field = field_of(text, width);
  if (field.empty()) return;
  const bool negative = value < 0;
  const float magnitude = std::abs(static_cast<float>(value));
  const auto places = static_cast<std::int32_t>(field.size()) - (negative ? 1 : 0);
  if (magnitude >= runtime::integer_power(10.0F, places)) {
    std::ranges::fill(field, negative ? '+' : '*');
    return;
  }
  const std::string digits = digits_in_single_precision(magnitude);
  const bool left = fill == 'N';
  std::ranges::fill(field, left ? ' ' : fill);
  const std::size_t first_digit = left ? (negative ? 1 : 0) : field.size() - digits.size();
  put(digits, field, first_digit);
  if (negative) field[fill == '0' ? 0 : first_digit - 1] = '-';
}

Text20 IntToText20(std::int32_t value) {
  return left_aligned(value);
}

Text20 LongToText20(std::int64_t value) {
  return left_aligned(value);
}

void FillText(std::span<char> text, std::int32_t length, char fill) {
  std::ranges::fill(field_of(text, length), fill);
}

void RealToText(Text20& text, float value, std::string_view format, std::int32_t decimal_comma) {
  const runtime::ParsedFormat parsed = runtime::parse_format(runtime::trimmed(format));
  const std::array<runtime::Value, 1> values{value_for(format, value)};
  std::string written = parsed.valid ? runtime::formatted(parsed.view(), values) : std::string();
  if (!parsed.valid || written.size() > text.bytes.size()) written.assign(text.bytes.size(), '*');
  if (decimal_comma != 0) std::ranges::replace(written, '.', ',');
  text = written;
}

void RealToFixedText(std::int32_t width, char alignment, float value, std::int32_t decimals,
                     std::span<char> text) {
  const std::span<char> field = field_of(text, width);
  const std::string written =
      fixed_text(field.size(), value, static_cast<std::size_t>(std::max(decimals, 0)));
  std::ranges::fill(field, written.empty() ? '*' : ' ');
  put(written, field, alignment == 'R' ? field.size() - written.size() : 0);
}

}  // namespace m_strings
