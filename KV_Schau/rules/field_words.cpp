#include "KV_Schau/rules/field_words.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace schau::rules {

std::string_view in_words(FieldKind kind) {
  static constexpr std::array<std::string_view, 6> words = {"in der Fläche",     "im Befestigungsgrad",
                                                            "in der Kennziffer", "im Anteil",
                                                            "in der Station",    "im ersten Wert"};
  return words[static_cast<std::size_t>(kind)];
}

std::string_view subject_words(FieldKind kind) {
  static constexpr std::array<std::string_view, 6> words = {
      "Die Fläche", "Der Befestigungsgrad", "Die Kennziffer", "Der Anteil", "Die Station", "Der erste Wert"};
  return words[static_cast<std::size_t>(kind)];
}

std::string_view in_its_columns(FieldKind kind) {
  const bool is_masculine =
      kind == FieldKind::sealing || kind == FieldKind::share || kind == FieldKind::first_value;
  return is_masculine ? "in seinen Spalten" : "in ihren Spalten";
}

std::string quoted(const Context& context, const Field& field) {
  return fmt::format("\"{}\"", text_at(context, field.place()));
}

std::string reading_words(const Field& field) {
  if (field.reported) return "KV_Akum meldet A03 und rechnet nicht";
  return "KV_Akum liest " + number_words(field.read);
}

std::string with_point(const std::string& text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string::npos || text.find(',', comma + 1) != std::string::npos) return "";
  std::string number = text;
  // A point before the comma stands between thousands.
  std::erase(number, '.');
  number[number.find(',')] = '.';
  const bool plain = number.find_first_not_of("+-0123456789.") == std::string::npos;
  const bool point_behind = text.find('.', comma) != std::string::npos;
  return plain && !point_behind ? number : "";
}

std::string comma_hint(const Context& context, const Field& field) {
  const std::string meant = with_point(text_at(context, field.place()));
  std::string reading = field.reported ? "" : reading_words(field);
  if (meant.empty()) return reading;
  return reading.empty() ? "gemeint: " + meant : fmt::format("gemeint: {}; {}", meant, reading);
}

}  // namespace schau::rules
