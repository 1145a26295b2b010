#include <algorithm>
#include <string>

#include "m_strings/m_strings.h"
#include "runtime/stop.h"

namespace m_strings {
namespace {

constexpr std::string_view number_characters = ".0123456789eE";
constexpr std::string_view first_characters = "0123456789-.";
constexpr std::string_view digits = "0123456789";

bool exponent_letter(char character) {
  return character == 'e' || character == 'E';
}

// The length of the number at the beginning of the text.
std::size_t token_length(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size()) {
    const bool exponent_sign = text[length] == '-' && exponent_letter(text[length - 1]);
    if (!exponent_sign && number_characters.find(text[length]) == std::string_view::npos) break;
    ++length;
  }
  return length;
}

// The next number of the line, taken away from its front; empty when there is none.
std::string_view next_token(std::string_view& line) {
  while (true) {
    line.remove_prefix(std::min(line.find_first_of(first_characters), line.size()));
    if (line.empty()) return {};
    const std::string_view token = line.substr(0, token_length(line));
    line.remove_prefix(token.size());
    if (token.find_first_of(digits) != std::string_view::npos) return token;
  }
}

void serve_control_lines_only(std::string_view routine, std::string_view called_by) {
  if (runtime::equal_padded(called_by, "steuer") || runtime::equal_padded(called_by, "STEUER")) return;
  std::string text = "m_strings ";
  text.append(routine).append(": called_by not implemented for the caller: ");
  runtime::stop(text.append(runtime::trimmed(called_by)));
}

template <class Real>
std::int32_t number_tokens(std::string_view line, std::span<Real> numbers) {
  std::int32_t count = 0;
  for (Real& number : numbers) {
    std::string token(next_token(line));
    if (token.empty()) break;
    number = ParseReal(token);
    ++count;
  }
  return count;
}

}  // namespace

std::int32_t NumberTokens8(std::string_view text, std::span<double> numbers, std::string_view called_by) {
  serve_control_lines_only("z8strng", called_by);
  return number_tokens(text, numbers);
}

std::int32_t NumberTokens4(std::string_view text, std::span<float> numbers, std::string_view called_by) {
  serve_control_lines_only("z4strng", called_by);
  return number_tokens(text, numbers);
}

}  // namespace m_strings
