#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace runtime {

/// The source text of a literal: UTF-8 as the source files hold it.
template <std::size_t N>
struct SourceText {
  std::array<char, N> bytes{};

  // Literals convert by themselves, so that a text can stand as a template argument.
  consteval SourceText(const char (&text)[N]) {
    for (std::size_t i = 0; i < N; ++i) bytes[i] = text[i];
  }
  [[nodiscard]] consteval std::string_view view() const { return {bytes.data(), N - 1}; }
};

/// One character decoded from UTF-8: its code point and the bytes it took; 0 bytes when it is malformed.
struct DecodedCharacter {
  char32_t code_point = 0;
  std::size_t size = 0;
};

constexpr DecodedCharacter decode_utf8(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (text.empty()) return {};
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  std::size_t size = 0;
  if ((lead & 0xE0U) == 0xC0U) size = 2;
  if ((lead & 0xF0U) == 0xE0U) size = 3;
  if (size == 0 || text.size() < size) return {};
  char32_t code_point = size == 2 ? (lead & 0x1FU) : (lead & 0x0FU);
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return {};
    code_point = (code_point << 6U) | (byte(i) & 0x3FU);
  }
  // A longer form than the character needs is malformed.
  if (code_point < (size == 2 ? 0x80U : 0x800U)) return {};
  return {code_point, size};
}

/// The code points of the Windows-1252 bytes 0x80 to 0x9F; 0 for the five that the code page leaves
/// undefined.
inline constexpr std::array<char32_t, 32> cp1252_upper_controls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

/// The Windows-1252 byte of a code point, or -1 when the code page lacks it.
constexpr int cp1252_byte(char32_t code_point) {
  if (code_point < 0x80 || (code_point >= 0xA0 && code_point <= 0xFF)) return static_cast<int>(code_point);
  for (std::size_t i = 0; i < cp1252_upper_controls.size(); ++i) {
    if (cp1252_upper_controls[i] != 0 && cp1252_upper_controls[i] == code_point)
      return static_cast<int>(0x80 + i);
  }
  return -1;
}

/// The code point of a Windows-1252 byte. The five undefined ones (0x81, 0x8D, 0x8F, 0x90, 0x9D) are the
/// replacement character U+FFFD: as controls they could do something to the terminal that shows them.
constexpr char32_t cp1252_code_point(unsigned char byte) {
  if (byte < 0x80 || byte >= 0xA0) return byte;
  const char32_t code_point = cp1252_upper_controls[byte - 0x80U];
  return code_point == 0 ? 0xFFFD : code_point;
}

/// A text in Windows-1252 as UTF-8, an undefined byte as U+FFFD.
inline std::string to_utf8(std::string_view windows_1252) {
  std::string text;
  text.reserve(windows_1252.size());
  for (const char character : windows_1252) {
    const char32_t code_point = cp1252_code_point(static_cast<unsigned char>(character));
    if (code_point < 0x80) {
      text += character;
      continue;
    }
    if (code_point < 0x800) {
      text += static_cast<char>(0xC0U | (code_point >> 6U));
    } else {
      text += static_cast<char>(0xE0U | (code_point >> 12U));
      text += static_cast<char>(0x80U | ((code_point >> 6U) & 0x3FU));
    }
    text += static_cast<char>(0x80U | (code_point & 0x3FU));
  }
  return text;
}

/// A UTF-8 source text in Windows-1252 bytes: `bytes[0 .. size)`; `valid` is false when the text is
/// malformed or holds a character that the code page lacks.
template <std::size_t Capacity>
struct Cp1252Text {
  std::array<char, Capacity> bytes{};
  std::size_t size = 0;
  bool valid = true;

  constexpr void append(std::string_view utf8) {
    while (!utf8.empty()) {
      const DecodedCharacter character = decode_utf8(utf8);
      const int byte = character.size == 0 ? -1 : cp1252_byte(character.code_point);
      if (byte < 0 || size == Capacity) {
        valid = false;
        return;
      }
      bytes[size++] = static_cast<char>(static_cast<unsigned char>(byte));
      utf8.remove_prefix(character.size);
    }
  }
  [[nodiscard]] constexpr std::string_view view() const { return {bytes.data(), size}; }
};

template <SourceText text>
inline constexpr auto cp1252_text = [] {
  Cp1252Text<text.bytes.size()> converted;
  converted.append(text.view());
  return converted;
}();

namespace literals {

/// `"größer"_w1252`: the text in single Windows-1252 bytes, converted at compile time. A character that
/// the code page lacks does not compile. The view stays valid for the whole run.
template <SourceText text>
consteval std::string_view operator""_w1252() {
  static_assert(cp1252_text<text>.valid, "a character is missing from Windows-1252");
  return cp1252_text<text>.view();
}

}  // namespace literals
}  // namespace runtime
