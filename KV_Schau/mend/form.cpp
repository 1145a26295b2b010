// What is not seen in a text: line ends, encodings, blanks behind it.

#include <fmt/format.h>

#include <algorithm>

#include "KV_Schau/mend/steps.h"
#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::mend {
namespace {

using variant::Encoding;
using variant::FileId;
using variant::LineEnd;
using variant::TextFile;

std::array<std::uint32_t, 4> count_ends(const MendedFile& file) {
  std::array<std::uint32_t, 4> counts{};
  for (const Line& line : file.lines) ++counts.at(static_cast<std::size_t>(line.end));
  return counts;
}

void join_doubled_ends(MendedFile& file) {
  std::vector<Line> joined;
  joined.reserve(file.lines.size());
  for (const Line& line : file.lines) {
    const bool is_rest =
        line.text.empty() && line.end == LineEnd::crlf && !joined.empty() && joined.back().end == LineEnd::cr;
    if (!is_rest) {
      joined.push_back(line);
      continue;
    }
    joined.back().end = LineEnd::crlf;
    ++file.changed(Repair::doubled_ends);
  }
  file.lines = std::move(joined);
}

std::optional<std::size_t> first_missing_character(std::string_view text) {
  for (std::size_t place = 0; place < text.size();) {
    const variant::Utf8Character character = variant::first_utf8_character(text.substr(place));
    if (character.size > 1 && variant::utf8_to_windows_1252(text.substr(place, character.size)) == "?")
      return place;
    place += character.size;
  }
  return std::nullopt;
}

bool is_ascii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// In its columns as bytes, but not as characters: somebody has made room for the bytes.
bool stands_right_as_bytes(FileId file, std::string_view bytes, std::string_view characters,
                           const variant::Variant& variant) {
  if (file == FileId::sys) return is_clear_element_line(bytes) && !is_clear_element_line(characters);
  return is_record(file, bytes, variant.elements) && !is_record(file, characters, variant.elements);
}

}  // namespace

MendedFile lines_of(const TextFile& file, FileId id) {
  MendedFile lines;
  lines.id = id;
  lines.encoding = file.encoding();
  lines.lines.reserve(file.line_count());
  for (std::uint32_t number = 1; number <= file.line_count(); ++number)
    lines.lines.push_back({file.line(number), file.line_end(number), number, false});
  return lines;
}

void mend_line_ends(MendedFile& file) {
  const auto count_of = [](const auto& counts, LineEnd end) { return counts[static_cast<std::size_t>(end)]; };
  if (count_of(count_ends(file), LineEnd::cr) > 0) join_doubled_ends(file);
  const auto counts = count_ends(file);
  const std::uint32_t cr = count_of(counts, LineEnd::cr);
  const std::uint32_t lf = count_of(counts, LineEnd::lf);
  const std::uint32_t crlf = count_of(counts, LineEnd::crlf);
  const bool cr_is_usual = cr > lf + crlf;
  if (!cr_is_usual && (lf == 0 || crlf == 0)) return;
  const LineEnd usual = cr_is_usual ? LineEnd::cr : lf > crlf ? LineEnd::lf : LineEnd::crlf;
  for (Line& line : file.lines) {
    const bool stays = line.end == usual || line.end == LineEnd::none || line.end == LineEnd::cr;
    if (stays) continue;
    line.end = usual;
    ++file.changed(Repair::line_ends);
  }
}

void mend_encoding(MendedFile& file, const variant::Variant& variant, Mended& mended) {
  if (file.encoding != Encoding::utf_8) return;
  std::vector<std::pair<std::size_t, std::string>> changed;
  for (std::size_t i = 0; i < file.lines.size(); ++i) {
    std::string_view text = file.lines[i].text;
    if (is_ascii(text)) continue;
    if (i == 0) text.remove_prefix(variant::byte_order_mark_length(text));
    if (const auto place = first_missing_character(text)) {
      const std::size_t size = variant::first_utf8_character(text.substr(*place)).size;
      mended.left.push_back(
          {file.id, file.lines[i].old_number,
           fmt::format("UTF-8 bleibt: \"{}\" gibt es in Windows-1252 nicht", text.substr(*place, size))});
      return;
    }
    std::string converted = variant::utf8_to_windows_1252(text);
    if (stands_right_as_bytes(file.id, file.lines[i].text, converted, variant)) {
      mended.left.push_back(
          {file.id, file.lines[i].old_number,
           "UTF-8 bleibt: die Zeile ist auf ihre Bytes ausgerichtet; in Windows-1252 stünde sie "
           "in anderen Spalten"});
      return;
    }
    changed.emplace_back(i, std::move(converted));
  }
  for (auto& [i, text] : changed) file.lines[i].text = mended.texts.emplace_back(std::move(text));
  file.changed(Repair::encoding) = static_cast<std::uint32_t>(changed.size());
  file.encoding = Encoding::windows_1252;
}

void mend_trailing_blanks(MendedFile& file) {
  for (Line& line : file.lines) {
    const std::size_t length = line.text.find_last_not_of(' ') + 1;
    if (length == line.text.size()) continue;
    line.text = line.text.substr(0, length);
    ++file.changed(Repair::trailing_blanks);
  }
}

}  // namespace schau::mend
