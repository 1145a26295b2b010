#include "KV_Schau/run/shown_output.h"

#include <algorithm>

#include "KV_Schau/variant/shown_text.h"

namespace schau::run {
namespace {

bool has_high_byte(std::string_view text) {
  return std::ranges::any_of(text, [](char byte) { return static_cast<unsigned char>(byte) > 0x7F; });
}

// One line, which may hold the name.
std::string shown_piece(std::string_view bytes, std::string_view name) {
  std::string text;
  while (has_high_byte(name)) {
    const std::size_t place = bytes.find(name);
    if (place == std::string_view::npos) break;
    text += variant::shown(bytes.substr(0, place), variant::Encoding::windows_1252);
    text += variant::shown_utf8(name);
    bytes.remove_prefix(place + name.size());
  }
  return text + variant::shown(bytes, variant::Encoding::windows_1252);
}

std::string shown_lines(std::string_view bytes, std::string_view name, std::string_view between) {
  bytes = bytes.substr(0, bytes.find_last_not_of("\r\n") + 1);
  std::string text;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    std::string_view line = bytes.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    if (line.empty() && between != "\n") continue;
    text += shown_piece(line, name);
    if (!bytes.empty()) text += between;
  }
  return text;
}

}  // namespace

std::string shown_output(std::string_view bytes, std::string_view variant_name) {
  return shown_lines(bytes, variant_name, "\n");
}

std::string shown_line(std::string_view bytes, std::string_view variant_name) {
  return shown_lines(bytes, variant_name, " ");
}

}  // namespace schau::run
