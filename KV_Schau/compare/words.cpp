#include "KV_Schau/compare/words.h"

#include <fmt/format.h>

#include <array>
#include <cstddef>

#include "KV_Schau/variant/shown_text.h"

namespace schau::compare {

std::string_view words_for(Sum sum) {
  static constexpr std::array<std::string_view, sum_count> words = {"natürlich direkt",
                                                                    "natürlich gesamt",
                                                                    "kanalisiert direkt",
                                                                    "kanalisiert gesamt",
                                                                    "undurchlässig direkt",
                                                                    "undurchlässig gesamt",
                                                                    "gesamt"};
  return words.at(static_cast<std::size_t>(sum));
}

std::string_view words_for(Input input) {
  static constexpr std::array<std::string_view, 5> words = {"Fläche", "Befestigungsgrad", "Kennziffer",
                                                            "Anteil", "Station"};
  return words.at(static_cast<std::size_t>(input));
}

std::string shown(variant::NameKey name) {
  return variant::shown(variant::text_of(name), variant::Encoding::windows_1252);
}

std::string shown(const Links& links) {
  std::string text;
  for (const variant::NameKey name : links) {
    if (name != variant::blank_name) text.append(text.empty() ? "" : ", ").append(shown(name));
  }
  return text.empty() ? "keiner" : text;
}

std::string shown_input(Input input, double value) {
  constexpr double per_cent = 100.0;
  switch (input) {
    case Input::area:
      return fmt::format("{:.10g} km²", value);
    case Input::share:
      return fmt::format("{:.10g} %", value * per_cent);
    case Input::station:
      return fmt::format("{:.10g} km", value);
    case Input::sealing:
    case Input::code:
      break;
  }
  return fmt::format("{:.10g}", value);
}

std::string words_for(const Change& change) {
  const std::string_view link = change.links_are_inflows ? "Zuläufe" : "Abläufe";
  switch (change.kind) {
    case ChangeKind::input:
      return fmt::format("{}: {} → {}", words_for(change.input), shown_input(change.input, change.before),
                         shown_input(change.input, change.after));
    case ChangeKind::moved:
      return fmt::format("{}: {} → {}", link, shown(change.old_links), shown(change.new_links));
    case ChangeKind::added:
      return fmt::format("{}: {}", link, shown(change.new_links));
    case ChangeKind::gone:
      break;
  }
  return fmt::format("{}: {}", link, shown(change.old_links));
}

std::string words_for_cause(const Change& change) {
  static constexpr std::array<std::string_view, 3> words = {"neu", "entfallen", "anders verbunden"};
  const std::string_view what = change.kind == ChangeKind::input
                                    ? words_for(change.input)
                                    : words.at(static_cast<std::size_t>(change.kind));
  return fmt::format("{} ({})", shown(change.name), what);
}

std::string shown_place(const Comparison& comparison, const Change& change) {
  const bool is_new = change.new_place.has_value();
  const std::optional<variant::Place>& place = is_new ? change.new_place : change.old_place;
  if (!place) return "";
  const auto& files = is_new ? comparison.new_files : comparison.old_files;
  return fmt::format("{}:{}", files.at(static_cast<std::size_t>(place->file)), place->line);
}

}  // namespace schau::compare
