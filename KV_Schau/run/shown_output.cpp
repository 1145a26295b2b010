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

}  // namespace

std::vector<std::string> shown_lines(std::string_view bytes, std::string_view variant_name) {
  std::vector<std::string> lines;
  while (!bytes.empty()) {
    std::string_view line = bytes.substr(0, bytes.find('\n'));
    bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!line.empty()) lines.push_back(shown_piece(line, variant_name));
  }
  return lines;
}

std::string shown_line(std::string_view bytes, std::string_view variant_name) {
  std::string text;
  for (const std::string& line : shown_lines(bytes, variant_name))
    text.append(text.empty() ? "" : " ").append(line);
  return text;
}

}  // namespace schau::run
