#include <array>
#include <cmath>
#include <string>

#include "m_strings/m_strings.h"
#include "runtime/arithmetic.h"

namespace m_strings {
namespace {

constexpr float sixty = 60.0F;

void append_two_digits(std::string& text, std::int32_t value) {
  std::array<char, 2> digits{};
  IntToText(2, value, '0', digits);
  text.push_back(':');
  text.append(digits.data(), digits.size());
}

void append_minutes(std::string& text, float hours) {
  const float minutes = (hours - std::trunc(hours)) * sixty;
  append_two_digits(text, runtime::nearest_integer(minutes));
}

void append_minutes_and_seconds(std::string& text, float hours) {
  const float minutes = (hours - std::trunc(hours)) * sixty;
  const float seconds = (minutes - std::trunc(minutes)) * sixty;
  append_two_digits(text, runtime::truncated_integer(minutes));
  append_two_digits(text, runtime::nearest_integer(seconds));
}

}  // namespace

void HoursToText(Text20& text, float hours, std::string_view layout) {
  std::string written(IntToText20(runtime::truncated_integer(hours)).trimmed());
  if (runtime::equal_padded(layout, "hh")) {
    text = IntToText20(runtime::nearest_integer(hours));
  } else if (runtime::equal_padded(layout, "hhmm")) {
    append_minutes(written, hours);
    text = written;
  } else if (runtime::equal_padded(layout, "hhmmss")) {
    append_minutes_and_seconds(written, hours);
    text = written;
  }
}

}  // namespace m_strings
