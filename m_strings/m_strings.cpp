#include "m_strings/m_strings.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "runtime/arithmetic.h"
#include "runtime/cp1252.h"
#include "runtime/edit_input.h"
#include "runtime/fixed_text.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "runtime/upper_case.h"

namespace m_strings {
namespace {

using namespace runtime::literals;

// Ä, Ö, Ü, ä, ö, Ø and ß in the DOS code page.
constexpr std::string_view oem_umlauts = "\x8E\x99\x9A\x84\x94\x9D\xE1";
constexpr std::size_t oem_line_width = 2000;

constexpr bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

// The powers that the columns of the input files need, worked out beforehand.
constexpr std::int32_t table_reach = 10;
constexpr auto powers_of_ten = [] {
  std::array<float, 2 * table_reach + 1> powers{};
  std::int32_t exponent = -table_reach;
  for (float& power : powers) power = runtime::integer_power(10.0F, exponent++);
  return powers;
}();

float power_of_ten(std::int32_t exponent) {
  if (exponent < -table_reach || exponent > table_reach) return runtime::integer_power(10.0F, exponent);
  const std::int32_t place = exponent + table_reach;
  return powers_of_ten[static_cast<std::size_t>(place)];
}

float digit_value(char digit) {
  return static_cast<float>(digit - '0');
}

bool replace_commas(std::span<char> text) {
  const bool any = std::ranges::find(text, ',') != text.end();
  std::ranges::replace(text, ',', '.');
  return any;
}

std::string_view view_of(std::span<const char> text) {
  return {text.data(), text.size()};
}

bool is_exponent_letter(char character) {
  return character == 'E' || character == 'e';
}

constexpr std::size_t exponent_columns = 5;

std::int32_t exponent_of(std::span<char> text) {
  if (std::ranges::none_of(text, is_exponent_letter)) return 0;
  ToUpper(text);
  const std::string_view trimmed = runtime::trimmed(view_of(text));
  const std::string_view behind = trimmed.substr(trimmed.find('E') + 1);
  const runtime::IntegerEdit exponent = runtime::edit_integer(behind.substr(0, exponent_columns));
  return exponent.state == runtime::NumberState::good ? exponent.value : 0;
}

struct Mantissa {
  std::string_view whole;
  std::string_view fraction;
  float sign = 1.0F;
};

std::string_view leading_digits(std::string_view text) {
  const auto end = std::ranges::find_if_not(text, is_digit);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

Mantissa mantissa_at(std::string_view text, std::size_t first_digit) {
  const char before = first_digit > 0 ? text[first_digit - 1] : ' ';
  std::string_view rest = text.substr(first_digit);
  if (before == '.') return {.whole = {}, .fraction = leading_digits(rest)};
  Mantissa mantissa{leading_digits(rest), {}, before == '-' ? -1.0F : 1.0F};
  rest.remove_prefix(mantissa.whole.size());
  if (!rest.empty() && rest.front() == '.') mantissa.fraction = leading_digits(rest.substr(1));
  return mantissa;
}

// So many digits are summed up exactly in single precision, in whatever order.
constexpr std::size_t exact_digits = 7;

float whole_value(std::string_view digits) {
  if (digits.size() <= exact_digits) {
    std::int32_t value = 0;
    for (const char digit : digits) value = 10 * value + (digit - '0');
    return static_cast<float>(value);
  }
  float sum = 0.0F;
  auto power = static_cast<std::int32_t>(digits.size());
  for (const char digit : digits) sum += digit_value(digit) * power_of_ten(--power);
  return sum;
}

float value_of(const Mantissa& mantissa) {
  float sum = whole_value(mantissa.whole);
  std::int32_t power = 0;
  for (const char digit : mantissa.fraction) sum += digit_value(digit) * power_of_ten(--power);
  return sum * mantissa.sign;
}

constexpr std::array<bool, 256> oem_umlaut_table = [] {
  std::array<bool, 256> table{};
  for (const char umlaut : oem_umlauts) table[static_cast<unsigned char>(umlaut)] = true;
  return table;
}();

bool holds_oem_umlaut(std::string_view text) {
  return std::ranges::any_of(text,
                             [](char byte) { return oem_umlaut_table[static_cast<unsigned char>(byte)]; });
}

// Without a way out, so that many bytes are looked at side by side.
bool is_ascii(std::string_view text) {
  unsigned char seen = 0;
  for (const char byte : text) seen |= static_cast<unsigned char>(byte);
  return seen < 0x80;
}

// The scan ends at the first of the bytes, all of which lie above 127.
void scan_for_oem_umlauts(int unit) {
  runtime::LineReader lines(unit, oem_line_width);
  if (is_ascii(lines.rest())) return;
  std::string_view line;
  while (lines.next(line)) {
    if (holds_oem_umlaut(line)) return;
  }
}

int free_unit_from(int start) {
  int unit = start;
  while (runtime::is_connected(unit)) ++unit;
  return unit;
}

}  // namespace

void ToUpper(std::span<char> text) {
  runtime::upper_case(text);
}

char ClassifyField(std::string_view text, char decimal) {
  const char* character = text.data();
  const char* const end = character + runtime::trimmed_length(text);
  while (character != end && *character == ' ') ++character;
  if (character == end) return 'B';
  if (*character == '+' || *character == '-') ++character;
  bool decimal_seen = false;
  for (; character != end; ++character) {
    if (is_digit(*character) || *character == ' ') continue;
    if (*character != decimal || decimal_seen) return 'C';
    decimal_seen = true;
  }
  return decimal_seen ? 'R' : 'I';
}

float ParseReal(std::span<char> text, std::int32_t* comma_flag) {
  if (comma_flag != nullptr && replace_commas(text)) *comma_flag = 1;
  const std::int32_t exponent = exponent_of(text);
  const std::string_view view = view_of(text);
  const auto digit = std::ranges::find_if(view, is_digit);
  if (digit == view.end()) return 0.0F;
  const auto first_digit = static_cast<std::size_t>(digit - view.begin());
  return value_of(mantissa_at(view, first_digit)) * power_of_ten(exponent);
}

std::int32_t DecimalsAfterPoint(std::string_view text) {
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return 0;
  return static_cast<std::int32_t>(runtime::trimmed_length(text) - (point + 1));
}

std::int32_t ContainsOemUmlauts(std::string_view file_name, std::optional<int> unit) {
  if (unit) {
    scan_for_oem_umlauts(*unit);
    runtime::rewind(*unit);
    return 0;
  }
  const int own = free_unit_from(101);
  runtime::open(own, file_name, runtime::OpenStatus::unknown);
  scan_for_oem_umlauts(own);
  runtime::close(own);
  return 0;
}

}  // namespace m_strings
