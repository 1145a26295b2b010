#include "KV_Schau/plan/text_width.h"

#include <array>

#include "KV_Schau/variant/encoding.h"

namespace schau::plan {
namespace {

// Hundredths of the type size, for the characters from blank to tilde: DejaVu Sans Bold.
constexpr std::array<unsigned char, 95> bold_widths = {
    35, 46, 52, 84, 70, 100, 87, 31,  46,  46, 52, 84, 38, 42, 38, 37, 70, 70, 70, 70, 70, 70,  70, 70,
    70, 70, 40, 40, 84, 84,  84, 58,  100, 77, 76, 73, 83, 68, 68, 82, 84, 37, 37, 77, 64, 100, 84, 85,
    73, 85, 77, 72, 68, 81,  77, 110, 77,  72, 73, 46, 37, 46, 84, 50, 50, 67, 72, 59, 72, 68,  44, 72,
    71, 34, 34, 67, 34, 104, 71, 69,  72,  72, 49, 60, 48, 71, 65, 92, 65, 65, 58, 71, 37, 71,  84};
// Of the others none is wider than this, but for some signs that names do not have.
constexpr double other_width = 1.0;
// Letters of the Latin supplement.
constexpr double letter_width = 0.85;
constexpr double regular_to_bold = 0.93;

double bold_width(char32_t code_point) {
  constexpr char32_t first = U' ';
  constexpr char32_t first_letter = 0xC0;
  constexpr char32_t last_letter = 0x17F;
  if (code_point >= first && code_point < first + bold_widths.size()) {
    return bold_widths[code_point - first] / 100.0;
  }
  return code_point >= first_letter && code_point <= last_letter ? letter_width : other_width;
}

}  // namespace

double text_width(std::string_view text, bool bold) {
  double width = 0.0;
  while (!text.empty()) {
    const variant::Utf8Character character = variant::first_utf8_character(text);
    width += bold_width(character.code_point);
    text.remove_prefix(character.size);
  }
  return bold ? width : width * regular_to_bold;
}

}  // namespace schau::plan
