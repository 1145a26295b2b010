#include "KV_Schau/variant/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>

namespace schau::variant {
namespace {

using State = ReadNumber::State;

// From here on a value is rounded to the infinity of single precision.
constexpr double beyond_single = 340282356779733661637539395458142568448.0;
constexpr int largest_power = 38;

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

bool is_sign(char character) {
  return character == '+' || character == '-';
}

ReadNumber in_single_range(double value) {
  if (std::abs(value) < beyond_single) return {State::good, value};
  return {State::out_of_range, std::copysign(std::numeric_limits<double>::infinity(), value)};
}

// Blanks, digits and at most one point, as nearly all fields are; false for all others.
bool read_plain(std::string_view field, double& value) {
  static constexpr std::array<double, 10> powers = {1E0, 1E1, 1E2, 1E3, 1E4, 1E5, 1E6, 1E7, 1E8, 1E9};
  if (field.size() >= powers.size()) return false;
  std::uint32_t whole = 0;
  std::size_t decimals = 0;
  bool point = false;
  for (const char character : field) {
    if (character == ' ') continue;
    if (is_digit(character)) {
      whole = whole * 10 + static_cast<std::uint32_t>(character - '0');
      decimals += point ? 1 : 0;
    } else if (character == '.' && !point) {
      point = true;
    } else {
      return false;
    }
  }
  value = whole / powers[decimals];
  return true;
}

// Takes the characters from the front of a text as long as they are digits.
std::string_view take_digits(std::string_view& text) {
  const std::size_t length = std::min(text.find_first_not_of("0123456789"), text.size());
  const std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  return digits;
}

bool take_one_of(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

// The exponent at the front of the text, for the standard's conversion; false when it lacks its digits.
bool take_exponent(std::string_view& text, std::string& number) {
  if (text.empty()) return true;
  if (!take_one_of(text, "EeDd") && !is_sign(text.front())) return false;
  const bool negative = !text.empty() && text.front() == '-';
  take_one_of(text, "+-");
  const std::string_view digits = take_digits(text);
  number.append(negative ? "e-" : "e").append(digits);
  return !digits.empty();
}

double converted(const std::string& number) {
  double value = 0.0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error != std::errc::result_out_of_range) return value;
  const bool tiny = number.find("e-") != std::string::npos;
  const double size = tiny ? 0.0 : std::numeric_limits<double>::infinity();
  return number.starts_with('-') ? -size : size;
}

// The whole number in the five columns behind an "E"; 0 when there is none.
int exponent_of(std::string_view text) {
  std::string digits;
  std::ranges::copy_if(text.substr(0, 5), std::back_inserter(digits), [](char c) { return c != ' '; });
  if (digits.starts_with("+") && !digits.starts_with("+-")) digits.erase(0, 1);
  int exponent = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  return error == std::errc() && end == digits.data() + digits.size() ? exponent : 0;
}

double power_of_ten(int exponent) {
  if (exponent > largest_power) return std::numeric_limits<double>::infinity();
  return exponent < -largest_power ? 0.0 : std::pow(10.0, exponent);
}

// The digits from the first one on, with at most one point.
std::string_view digit_run(std::string_view text, std::size_t first, bool fraction) {
  bool point = fraction;
  std::size_t end = first;
  for (; end < text.size(); ++end) {
    if (text[end] == '.' && !point) {
      point = true;
    } else if (!is_digit(text[end])) {
      break;
    }
  }
  return text.substr(first, end - first);
}

}  // namespace

ReadNumber read_area_field(std::string_view field) {
  double plain = 0.0;
  if (read_plain(field, plain)) return {State::good, plain};
  std::string compact;
  std::ranges::copy_if(field, std::back_inserter(compact), [](char character) { return character != ' '; });
  std::string_view rest = compact;
  std::string number = !rest.empty() && rest.front() == '-' ? "-" : "";
  take_one_of(rest, "+-");
  const std::string_view whole = take_digits(rest);
  const bool point = take_one_of(rest, ".");
  const std::string_view fraction = point ? take_digits(rest) : std::string_view();
  number.append(whole).append(".").append(fraction);
  if (!take_exponent(rest, number) || !rest.empty()) return {State::bad, 0.0};
  if (whole.empty() && fraction.empty()) return {};
  return in_single_range(converted(number));
}

ReadNumber read_loose_field(std::string_view field) {
  double plain = 0.0;
  const std::string_view trimmed_left = field.substr(std::min(field.find_first_not_of(' '), field.size()));
  const std::size_t trimmed_length = trimmed_left.find_last_not_of(' ') + 1;
  const std::string_view text = trimmed_left.substr(0, trimmed_length);
  if (text.find(' ') == std::string_view::npos && read_plain(text, plain)) return {State::good, plain};
  const std::size_t first = text.find_first_of("0123456789");
  if (first == std::string_view::npos) return {};
  const char before = first == 0 ? ' ' : text[first - 1];
  const std::string_view run = digit_run(text, first, before == '.');
  const std::string number = (before == '.' ? "0." : "") + std::string(run);
  const double mantissa = converted(number) * (before == '-' ? -1.0 : 1.0);
  const std::size_t letter = text.find_first_of("Ee");
  const int exponent = letter == std::string_view::npos ? 0 : exponent_of(text.substr(letter + 1));
  return in_single_range(mantissa * power_of_ten(exponent));
}

}  // namespace schau::variant
