// Numbers, fields and paths in any text: its first line is the control line, the second one the path, the
// third, fourth and fifth the new extension, the prefix and the suffix.

#include <array>
#include <cmath>
#include <span>

#include "fuzz/fuzz_bed.h"
#include "m_strings/m_strings.h"
#include "runtime/fixed_text.h"

namespace {

constexpr std::size_t capacity = 8;
constexpr float untouched = -77.25F;

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

bool is_exponent(char character) {
  return character == 'e' || character == 'E';
}

bool goes_on(char before, char character) {
  if (character == '-') return is_exponent(before);
  return is_digit(character) || character == '.' || is_exponent(character);
}

// The next number of the line, character by character; empty when there is none.
std::string plain_token(std::string_view line, std::size_t& place) {
  while (place < line.size()) {
    std::string token;
    const char first = line[place++];
    if (!is_digit(first) && first != '.' && first != '-') continue;
    token += first;
    while (place < line.size() && goes_on(token.back(), line[place])) token += line[place++];
    for (const char character : token) {
      if (is_digit(character)) return token;
    }
  }
  return {};
}

bool same(float left, float right) {
  return left == right || (std::isnan(left) && std::isnan(right));
}

void require_tokens(std::string_view line) {
  std::array<float, capacity> single{};
  std::array<double, capacity> wide{};
  single.fill(untouched);
  const std::int32_t count = m_strings::NumberTokens4(line, single, "steuer");
  fuzz_bed::require(m_strings::NumberTokens8(line, wide, "STEUER") == count, "both count the same numbers");
  std::size_t place = 0;
  for (std::size_t i = 0; i < capacity; ++i) {
    std::string token = plain_token(line, place);
    const bool stored = i < static_cast<std::size_t>(count);
    fuzz_bed::require(stored == !token.empty(), "every number of the line is stored");
    fuzz_bed::require(same(single.at(i), stored ? m_strings::ParseReal(token) : untouched), "as it is read");
    fuzz_bed::require(same(static_cast<float>(wide.at(i)), stored ? single.at(i) : 0.0F),
                      "in both precisions");
  }
}

void require_field(std::string_view line) {
  const char kind = m_strings::ClassifyField(line);
  fuzz_bed::require(std::string_view("BIRC").find(kind) != std::string_view::npos,
                    "a field is of four kinds");
  fuzz_bed::require((kind == 'B') == runtime::is_blank(line), "blank is what holds blanks only");
  const std::int32_t decimals = m_strings::DecimalsAfterPoint(line);
  fuzz_bed::require(decimals >= 0 && decimals <= static_cast<std::int32_t>(line.size()), "behind the point");
}

void require_path(std::string_view path, const m_strings::SplitPathOptions& options) {
  std::string built;
  m_strings::SplitPathOptions asked = options;
  asked.new_path = &built;
  const m_strings::PathParts old = m_strings::SplitPath(path);
  const m_strings::PathParts parts = m_strings::SplitPath(path, asked);
  const std::string_view text = runtime::trimmed(path);
  fuzz_bed::require(old.length == static_cast<std::int32_t>(text.size()), "the length is the trimmed one");
  fuzz_bed::require(0 <= old.last_separator && old.last_separator < old.extension, "the separator is before");
  fuzz_bed::require(old.extension <= old.length + 1, "the extension is within the path");
  const bool has_extension = old.extension <= old.length;
  if (has_extension) {
    fuzz_bed::require(text[static_cast<std::size_t>(old.extension) - 1] == '.', "an extension has its point");
  }
  fuzz_bed::require(parts.last_separator == old.last_separator, "the folder stays");
  fuzz_bed::require(parts.length == static_cast<std::int32_t>(built.size()),
                    "the length is that of the new path");
  if (!options.new_extension || has_extension) {
    fuzz_bed::require(parts.extension == old.extension, "what has an extension keeps it");
    return;
  }
  const std::size_t added = runtime::trimmed(options.prefix.value_or("")).size() +
                            runtime::trimmed(options.suffix.value_or("")).size();
  fuzz_bed::require(parts.extension == old.extension + static_cast<std::int32_t>(added),
                    "what stands before it");
  fuzz_bed::require(built.ends_with("." + std::string(runtime::trimmed(*options.new_extension))),
                    "the new extension is the last");
}

std::string_view next_line(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const fuzz_bed::Bed bed;
  std::string_view text = fuzz_bed::text_of(bytes, size);
  const std::string_view line = next_line(text);
  require_tokens(line);
  require_field(line);
  const std::string_view path = next_line(text);
  m_strings::SplitPathOptions options;
  if (!text.empty()) options.new_extension = next_line(text);
  if (!text.empty()) options.prefix = next_line(text);
  if (!text.empty()) options.suffix = next_line(text);
  require_path(path, options);
  return 0;
}
