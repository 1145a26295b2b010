#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace schau::variant {

/// In what a file is written, as an editor would open it.
enum class Encoding : std::uint8_t {
  windows_1252,  ///< one byte a character, as KV_Akum reads; also every file of ASCII alone
  utf_8,         ///< well-formed as a whole, with at least one character of several bytes
  utf_16         ///< with its byte-order mark, or known by its NUL bytes
};

/// The length of a UTF-8 byte-order mark at the beginning: 3 or 0.
std::size_t byte_order_mark_length(std::string_view bytes);

Encoding encoding_of(std::string_view bytes);

/// One character: its code point and its bytes. A byte that begins no well-formed character is one of its
/// own, U+FFFD.
struct Utf8Character {
  char32_t code_point = 0xFFFD;
  std::size_t size = 1;
};
/// The first character of a text that is not empty.
Utf8Character first_utf8_character(std::string_view text);

/// True when all bytes above 127 belong to well-formed UTF-8 and there is at least one.
bool has_utf8_characters(std::string_view text);

/// The number of characters of a text in UTF-8.
std::size_t utf8_length(std::string_view text);

/// A line in UTF-8 as Windows-1252, "?" for a character that the code page lacks: what its writer meant the
/// run to read.
std::string utf8_to_windows_1252(std::string_view text);

/// Appends a code point in UTF-8.
void append_utf8(std::string& text, char32_t code_point);

}  // namespace schau::variant
