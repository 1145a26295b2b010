#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "KV_Schau/mend/steps.h"
#include "KV_Schau/network/values.h"

namespace schau::mend {
namespace {

using variant::FileId;
using variant::Span;
namespace columns = variant::data_columns;

bool belongs_to_number(char character) {
  return (character >= '0' && character <= '9') || character == '.' || character == ',' || character == '+' ||
         character == '-';
}

char at(std::string_view line, std::uint32_t column) {
  return column <= line.size() ? line[column - 1] : ' ';
}

// Nothing of the number lies outside its columns.
bool is_whole(std::string_view line, Span span) {
  const bool goes_on_left =
      belongs_to_number(at(line, span.first)) && belongs_to_number(at(line, span.first - 1));
  const bool goes_on_right =
      belongs_to_number(at(line, span.last)) && belongs_to_number(at(line, span.last + 1));
  return !goes_on_left && !goes_on_right;
}

// The comma of a field that is a number but for it; npos when there is none or when it is not clear.
std::size_t decimal_comma(std::string_view line, Span span) {
  const std::string_view text = variant::without_blanks(span.of(line));
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos || !is_whole(line, span)) return std::string_view::npos;
  std::string number(text);
  number[comma] = '.';
  if (!is_plain_number(number)) return std::string_view::npos;
  return static_cast<std::size_t>(text.data() - line.data()) + comma;
}

std::span<const Span> fields_of(FileId file) {
  static constexpr std::array<Span, 2> area_fields = {columns::area, columns::sealing};
  static constexpr std::array<Span, 2> branching_fields = {columns::code, columns::share};
  static constexpr std::array<Span, 1> reach_fields = {columns::station};
  if (file == FileId::ver) return branching_fields;
  if (file == FileId::trs) return reach_fields;
  return area_fields;
}

// "1,234": where other areas of the file have points, the comma may set off thousands.
bool may_set_off_thousands(std::string_view number) {
  const std::size_t comma = number.find(',');
  return comma > 0 && number.front() != '0' && number.size() - comma - 1 == 3;
}

bool has_areas_with_points(const MendedFile& file, const variant::NameIndex& names) {
  if (file.id != FileId::nfl && file.id != FileId::kfl) return false;
  return std::ranges::any_of(file.lines, [&](const Line& line) {
    return is_record(file.id, line.text, names) &&
           columns::area.of(line.text).find('.') != std::string_view::npos;
  });
}

void mend_commas_of(Line& line, MendedFile& file, bool has_points, Mended& mended) {
  std::string text(line.text);
  bool is_changed = false;
  for (const Span field : fields_of(file.id)) {
    const std::size_t comma = decimal_comma(line.text, field);
    if (comma == std::string_view::npos) continue;
    const std::string_view number = variant::without_blanks(field.of(line.text));
    if (has_points && field.first == columns::area.first && may_set_off_thousands(number)) {
      mended.left.push_back({file.id, line.old_number,
                             fmt::format("\"{}\" bleibt: andere Flächen haben einen Dezimalpunkt, das Komma "
                                         "könnte Tausender abtrennen",
                                         number)});
      continue;
    }
    text[comma] = '.';
    is_changed = true;
  }
  if (!is_changed) return;
  line.text = mended.texts.emplace_back(std::move(text));
  ++file.changed(Repair::decimal_commas);
}

}  // namespace

bool is_plain_number(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  const auto points = std::ranges::count(text, '.');
  return text.find_first_not_of("0123456789.") == std::string_view::npos && points <= 1 &&
         static_cast<std::ptrdiff_t>(text.size()) > points;
}

bool is_record(FileId file, std::string_view line, const variant::NameIndex& names) {
  const variant::NameKey name = variant::name_at(line, columns::name.first);
  return variant::letter_of(name) == variant::type_of_file(file) && names.first(name) != 0;
}

void mend_decimal_commas(MendedFile& file, const variant::NameIndex& names, Mended& mended) {
  const bool has_points = has_areas_with_points(file, names);
  bool station_follows = false;
  for (Line& line : file.lines) {
    const bool is_value_line = is_record(file.id, line.text, names);
    if ((is_value_line || station_follows) && line.text.find(',') != std::string_view::npos)
      mend_commas_of(line, file, has_points, mended);
    station_follows = file.id == FileId::trs && is_value_line && network::is_kind_2(line.text);
  }
}

}  // namespace schau::mend
