#include "KV_Schau/variant/shown_text.h"

#include <algorithm>
#include <cstdint>

#include "runtime/cp1252.h"

namespace schau::variant {
namespace {

constexpr std::size_t tab_stop = 8;

// A sign for a character that would act on the terminal or that nobody sees.
char32_t visible(char32_t code_point) {
  constexpr char32_t control_pictures = 0x2400;
  constexpr char32_t delete_picture = 0x2421;
  constexpr char32_t arrow = 0x2192;
  constexpr char32_t open_box = 0x2423;
  constexpr char32_t replacement = 0xFFFD;
  if (code_point == '\t') return arrow;
  if (code_point < 0x20) return control_pictures + code_point;
  if (code_point == 0x7F) return delete_picture;
  if (code_point < 0xA0 && code_point > 0x7F) return replacement;
  if (code_point == 0xA0) return open_box;
  const bool turns_direction = (code_point >= 0x202A && code_point <= 0x202E) ||
                               (code_point >= 0x2066 && code_point <= 0x2069) || code_point == 0x2028 ||
                               code_point == 0x2029 || code_point == 0xFEFF;
  return turns_direction ? replacement : code_point;
}

struct Decoded {
  char32_t code_point;
  std::size_t size;
};

Decoded first_character(std::string_view bytes, Encoding encoding) {
  const auto byte = static_cast<unsigned char>(bytes.front());
  if (byte < 0x80) return {byte, 1};
  if (encoding != Encoding::utf_8) return {runtime::cp1252_code_point(byte), 1};
  const Utf8Character character = first_utf8_character(bytes);
  return {character.code_point, character.size};
}

// Adds the characters of a line and keeps count of the places that they take.
class LineShower {
 public:
  LineShower(std::string& text, Encoding encoding) : text_(text), encoding_(encoding) {}
  [[nodiscard]] std::size_t places() const { return places_; }

  void add(std::string_view bytes) {
    while (!bytes.empty()) {
      const Decoded character = first_character(bytes, encoding_);
      add_character(character.code_point);
      bytes.remove_prefix(character.size);
    }
  }
  void add_character(char32_t code_point) {
    append_utf8(text_, visible(code_point));
    ++places_;
    if (code_point != '\t') return;
    const std::size_t fill = (tab_stop - places_ % tab_stop) % tab_stop;
    text_.append(fill, ' ');
    places_ += fill;
  }

 private:
  std::string& text_;
  Encoding encoding_;
  std::size_t places_ = 0;
};

struct Range {
  std::size_t begin = 0;
  std::size_t end = 0;
};

// A column of KV_Akum's may lie inside a character of several bytes.
std::size_t character_begin(std::string_view text, std::size_t place, Encoding encoding) {
  if (encoding != Encoding::utf_8) return place;
  const std::size_t first = place < 4 ? 0 : place - 3;
  for (std::size_t begin = first; begin < std::min(place, text.size()); ++begin) {
    const Utf8Character character = first_utf8_character(text.substr(begin));
    if (character.size > 1 && begin + character.size > place) return begin;
  }
  return place;
}

// What is shown of a line around a mark.
Range window_around(std::string_view text, Range mark, Encoding encoding) {
  constexpr std::size_t widest_line = 160;
  constexpr std::size_t context = 60;
  Range window{0, std::min(text.size(), widest_line)};
  if (mark.end > widest_line && text.size() > widest_line) {
    window.begin = mark.begin - std::min(context, mark.begin);
    window.end = std::min(text.size(), std::max(window.begin + widest_line, mark.end));
  }
  return {character_begin(text, window.begin, encoding), character_begin(text, window.end, encoding)};
}

std::string_view piece(std::string_view text, std::size_t begin, std::size_t end) {
  begin = std::min(begin, text.size());
  return text.substr(begin, std::max(begin, std::min(end, text.size())) - begin);
}

}  // namespace

std::string shown(std::string_view bytes, Encoding encoding) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const Decoded character = first_character(bytes, encoding);
    append_utf8(text, visible(character.code_point));
    bytes.remove_prefix(character.size);
  }
  return text;
}

std::string shown_utf8(std::string_view text) {
  return shown(text, Encoding::utf_8);
}

ShownLine show_line(const TextFile& file, std::uint32_t line, std::size_t byte_column,
                    std::size_t byte_count) {
  const Encoding encoding = file.encoding();
  std::string_view text = file.line(line);
  const std::size_t hidden = line == 1 ? byte_order_mark_length(text) : 0;
  text.remove_prefix(hidden);
  const std::size_t begin = std::max(byte_column - 1, hidden) - hidden;
  const std::size_t end = std::max(byte_column - 1 + byte_count, hidden) - hidden;
  const Range mark{character_begin(text, begin, encoding), std::max(begin + 1, end)};
  const Range window = window_around(text, mark, encoding);

  ShownLine line_shown;
  LineShower shower(line_shown.text, encoding);
  const std::size_t mark_end = std::max(mark.begin + 1, character_begin(text, mark.end, encoding));
  if (window.begin > 0) shower.add_character(U'…');
  shower.add(piece(text, window.begin, mark.begin));
  line_shown.begin = shower.places() + (mark.begin - std::min(mark.begin, text.size()));
  shower.add(piece(text, mark.begin, std::min(mark_end, window.end)));
  // Behind the line's end each column is a place of its own.
  const std::size_t behind_end = mark.end - std::min(mark.end, std::max(mark.begin, text.size()));
  const std::size_t in_line = shower.places() - std::min(shower.places(), line_shown.begin);
  line_shown.length = std::max<std::size_t>(1, in_line + behind_end);
  shower.add(piece(text, mark_end, window.end));
  if (window.end < text.size()) shower.add_character(U'…');
  return line_shown;
}

}  // namespace schau::variant
