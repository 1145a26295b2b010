#include "KV_Schau/variant/encoding.h"

#include <algorithm>
#include <array>
#include <boost/nowide/utf/utf.hpp>
#include <cstring>
#include <iterator>

#include "runtime/cp1252.h"

namespace schau::variant {
namespace {

namespace utf = boost::nowide::utf;

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";

bool is_ascii(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

// The text from its first byte above 127 on. Most files hold few of them.
std::string_view behind_ascii(std::string_view text) {
  for (std::uint64_t bytes = 0; text.size() >= sizeof(bytes); text.remove_prefix(sizeof(bytes))) {
    std::memcpy(&bytes, text.data(), sizeof(bytes));
    if ((bytes & 0x8080808080808080U) != 0) break;
  }
  while (!text.empty() && is_ascii(text.front())) text.remove_prefix(1);
  return text;
}

// Latin text in UTF-16 has a NUL in every second byte.
bool looks_like_utf16(std::string_view bytes) {
  const std::string_view beginning = bytes.substr(0, 4096);
  if (beginning.size() < 4) return false;
  std::array<std::size_t, 2> nuls{};
  for (std::size_t i = 0; i < beginning.size(); ++i) nuls[i % 2] += beginning[i] == '\0' ? 1 : 0;
  const auto [fewer, more] = std::minmax(nuls[0], nuls[1]);
  return more * 10 >= beginning.size() * 4 && fewer * 20 <= beginning.size();
}

}  // namespace

std::size_t byte_order_mark_length(std::string_view bytes) {
  return bytes.starts_with(utf8_mark) ? utf8_mark.size() : 0;
}

Encoding encoding_of(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF") || looks_like_utf16(bytes)) {
    return Encoding::utf_16;
  }
  return has_utf8_characters(bytes) ? Encoding::utf_8 : Encoding::windows_1252;
}

Utf8Character first_utf8_character(std::string_view text) {
  const char* place = text.data();
  const utf::code_point code_point = utf::utf_traits<char>::decode(place, text.data() + text.size());
  if (code_point == utf::illegal || code_point == utf::incomplete) return {};
  return {code_point, static_cast<std::size_t>(place - text.data())};
}

bool has_utf8_characters(std::string_view text) {
  std::string_view rest = behind_ascii(text);
  if (rest.empty()) return false;
  for (; !rest.empty(); rest = behind_ascii(rest)) {
    const Utf8Character character = first_utf8_character(rest);
    if (character.size == 1) return false;
    rest.remove_prefix(character.size);
  }
  return true;
}

std::size_t utf8_length(std::string_view text) {
  std::size_t length = 0;
  for (; !text.empty(); ++length) text.remove_prefix(first_utf8_character(text).size);
  return length;
}

std::string utf8_to_windows_1252(std::string_view text) {
  std::string converted;
  while (!text.empty()) {
    const Utf8Character character = first_utf8_character(text);
    const int byte = character.size == 1 ? static_cast<unsigned char>(text.front())
                                         : runtime::cp1252_byte(character.code_point);
    converted += byte < 0 ? '?' : static_cast<char>(static_cast<unsigned char>(byte));
    text.remove_prefix(character.size);
  }
  return converted;
}

void append_utf8(std::string& text, char32_t code_point) {
  utf::utf_traits<char>::encode(code_point, std::back_inserter(text));
}

}  // namespace schau::variant
