// Lines of the system file that look like elements and are none, and what ends the system.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "KV_Schau/rules/rule.h"
#include "KV_Schau/rules/unseen.h"

namespace schau::rules {
namespace {

using findings::Severity;
using variant::FileId;
using variant::Place;
using variant::Span;
using variant::Variant;
namespace columns = variant::sys_columns;

std::string quoted_name(const Context& context, const NearElement& element) {
  return name_of(context, element.name);
}

Place place_of(const NearElement& element) {
  return {FileId::sys, element.line, element.column, element.length};
}

template <class Report>
void for_each_cause(const Context& context, NearElementCause cause, const Report& report) {
  for (const NearElement& element : context.near_elements.list) {
    if (element.cause == cause) report(element, text_at(context, place_of(element)));
  }
}

std::string passed_over(const Context& context, const NearElement& element) {
  return fmt::format("KV_Akum überliest die Zeile von {}", quoted_name(context, element));
}

void check_shifted(const Context& context, Sink& sink) {
  for_each_cause(context, NearElementCause::shifted,
                 [&](const NearElement& element, const std::string& text) {
                   sink.add(place_of(element),
                            fmt::format("\"{}\" beginnt in Spalte {} statt {}; {}", text, element.column,
                                        element.expected_column, passed_over(context, element)));
                 });
}

// The word with a capital letter, when the variant knows that name.
std::string capital_hint(const Context& context, const std::string& text) {
  std::string upper = text;
  std::ranges::transform(upper, upper.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  const variant::NameKey name = variant::name_of(upper);
  const bool known =
      context.variant.elements.first(name) != 0 || context.near_elements.by_name.contains(name);
  return known ? "gemeint: " + upper : "";
}

void check_lower_case(const Context& context, Sink& sink) {
  for_each_cause(
      context, NearElementCause::lower_case, [&](const NearElement& element, const std::string& text) {
        sink.add(
            place_of(element),
            fmt::format("\"{}\" beginnt mit einem Kleinbuchstaben; {}", text, passed_over(context, element)),
            capital_hint(context, text));
      });
}

std::string meant_hint(const Context& context, const std::string& text) {
  const variant::NameKey meant = context.meant_by(variant::name_of(text));
  return meant == 0 ? "" : fmt::format("meinten Sie {}?", name_of(context, meant));
}

void check_digits(const Context& context, Sink& sink) {
  for_each_cause(context, NearElementCause::digit, [&](const NearElement& element, const std::string& text) {
    sink.add(
        place_of(element),
        fmt::format(
            "\"{}\" beginnt mit einer Ziffer statt mit dem Buchstaben des Elementtyps; KV_Akum überliest "
            "die Zeile",
            text),
        meant_hint(context, text));
  });
}

void check_foreign_letters(const Context& context, Sink& sink) {
  for_each_cause(context, NearElementCause::foreign_letter,
                 [&](const NearElement& element, const std::string& text) {
                   sink.add(place_of(element),
                            fmt::format("\"{}\" beginnt mit keinem der Typbuchstaben N, K, E, T, V, B, P; "
                                        "KV_Akum überliest die Zeile",
                                        text),
                            meant_hint(context, text));
                 });
}

void check_z_elements(const Context& context, Sink& sink) {
  for_each_cause(context, NearElementCause::z_element,
                 [&](const NearElement& element, const std::string& text) {
                   sink.add(place_of(element),
                            fmt::format("Elemente mit Z überliest KV_Akum: \"{}\" zählt nicht mit", text));
                 });
}

void check_gaps(const Context& context, Sink& sink) {
  for_each_cause(context, NearElementCause::gap, [&](const NearElement& element, const std::string& text) {
    sink.add(place_of(element),
             fmt::format("Der Zulauf \"{}\" steht hinter einem leeren Feld (Spalte {}); {}", text,
                         element.expected_column, passed_over(context, element)),
             "Zuläufe von links auffüllen");
  });
}

std::string_view words_for_unseen(char character) {
  if (character == '\t') return "ein Tabulator";
  return character == '\xA0' ? "ein geschütztes Leerzeichen" : "ein Steuerzeichen";
}

void check_others(const Context& context, Sink& sink) {
  for_each_cause(context, NearElementCause::unseen, [&](const NearElement& element, const std::string&) {
    const char character = context.variant.file(FileId::sys).line(element.line)[element.column - 1];
    sink.add(place_of(element), fmt::format("Hier steht {} statt eines Leerzeichens; {}",
                                            words_for_unseen(character), passed_over(context, element)));
  });
  for_each_cause(context, NearElementCause::other, [&](const NearElement& element, const std::string&) {
    sink.add(place_of(element), fmt::format("Die Zeile sieht aus wie ein Element, ist aber keines; {}",
                                            passed_over(context, element)));
  });
}

// Names that go on beside their five columns.

// What nobody sees is no part of a name to a person.
bool holds(std::string_view line, std::uint32_t column) {
  return column >= 1 && column <= line.size() && line[column - 1] != ' ' && !is_unseen(line[column - 1]);
}

// The columns of what stands in a field and touches it on either side; the field itself when nothing does.
Span with_overhang(std::string_view line, Span field) {
  Span span = field;
  if (!holds(line, field.first)) return span;
  const bool may_follow_text = field.first == columns::name.first;
  while (!may_follow_text && holds(line, span.first - 1)) --span.first;
  if (!variant::is_blank(field.of(line)) && field.of(line).find(' ') == std::string_view::npos) {
    while (span.last < line.size() && holds(line, span.last + 1)) ++span.last;
  }
  return span;
}

bool touches_neighbour(std::string_view line, Span field) {
  const bool may_follow_text = field.first == columns::name.first;
  return (holds(line, field.last) && holds(line, field.last + 1)) ||
         (!may_follow_text && holds(line, field.first) && holds(line, field.first - 1));
}

constexpr std::array<Span, 6> name_fields = {columns::name,      columns::inflow[0],  columns::inflow[1],
                                             columns::inflow[2], columns::outflow[0], columns::outflow[1]};

void check_overhang_of(const Context& context, Sink& sink, std::uint32_t number, std::string_view line) {
  std::uint32_t reported_to = 0;
  for (const Span field : name_fields) {
    if (!touches_neighbour(line, field) || field.first <= reported_to) continue;
    const Span span = with_overhang(line, field);
    if (span.width() == field.width()) continue;
    reported_to = span.last;
    const Place place{FileId::sys, number, span.first, span.width()};
    const Place read{FileId::sys, number, field.first, field.width()};
    sink.add(place, fmt::format("\"{}\" reicht über die Spalten {} bis {} hinaus; KV_Akum liest \"{}\"",
                                text_at(context, place), field.first, field.last, text_at(context, read)));
  }
}

void check_overhang(const Context& context, Sink& sink) {
  for (Element i = 1; i <= context.network.count(); ++i) {
    const std::string_view line = context.variant.element_line(i).substr(0, variant::sys_line_width);
    check_overhang_of(context, sink, context.variant.element_lines[i], line);
  }
}

// The end of the system.

constexpr Span end_field = columns::outflow[0];

bool is_end_in_other_letters(std::string_view line) {
  std::string text(variant::without_blanks(end_field.of(line)));
  if (text == "ENDE") return false;
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  return text == "ENDE";
}

void check_end_in_lower_case(const Context& context, Sink& sink) {
  for_each_cause(
      context, NearElementCause::end_in_lower_case, [&](const NearElement& element, const std::string& text) {
        sink.add(place_of(element),
                 fmt::format("\"{}\" ist keine Endemarke; {}", text, passed_over(context, element)),
                 "gemeint: ENDE");
      });
}

void check_end_in_other_letters(const Context& context, Sink& sink) {
  for (Element i = 1; i <= context.network.count(); ++i) {
    const std::string_view line = context.variant.element_line(i);
    // A quick look before the letters are compared one by one.
    if (line.size() < end_field.first + 3 || line[end_field.first - 1] != 'E' ||
        !is_end_in_other_letters(line))
      continue;
    const Place place{FileId::sys, context.variant.element_lines[i], end_field.first, 4};
    sink.add(place,
             fmt::format("\"{}\" ist für KV_Akum ein Element dieses Namens, keine Endemarke",
                         text_at(context, place)),
             "gemeint: ENDE");
  }
}

void check_missing_end(const Context& context, Sink& sink) {
  const Variant& variant = context.variant;
  const Element last = variant.element_count();
  if (last == 0 || variant.has_end || is_end_in_other_letters(variant.element_line(last))) return;
  const std::vector<NearElement>& near = context.near_elements.list;
  const bool is_explained = !near.empty() && near.back().line > variant.element_lines[last];
  if (is_explained) return;
  sink.add({FileId::sys, variant.element_lines[last], end_field.first, end_field.width()},
           fmt::format(
               "Die Endemarke fehlt; KV_Akum nimmt {} als Auslass, weil es in der letzten Elementzeile steht",
               name_of(context, last)),
           "ENDE als erster Ablauf des letzten Elements");
}

void check_behind_end(const Context& context, Sink& sink) {
  const Variant& variant = context.variant;
  for (const std::uint32_t number : variant.lines_behind_end) {
    const Place place{FileId::sys, number, columns::name.first, columns::name.width()};
    sink.add(
        place,
        fmt::format(
            "{} steht hinter dem ENDE in Zeile {}; KV_Akum zählt die Zeile, liest sie aber nicht und meldet "
            "ein Element ohne Namen (Y01)",
            text_at(context, place), variant.element_lines.back()));
  }
}

void check_no_elements(const Context& context, Sink& sink) {
  if (!is_readable(context, FileId::sys) || context.network.count() > 0) return;
  const bool has_lines = context.variant.file(FileId::sys).line_count() > 0;
  sink.add({FileId::sys, has_lines ? 1U : 0U},
           "Die Systemdatei enthält kein Element; das Ergebnis hätte nur einen Kopf");
}

constexpr std::array<CheckedRule, 13> rules = {{
    {{"verrutscht", Severity::error,
      "Name oder Verweis beginnt in einer anderen Spalte als vorgesehen: KV_Akum überliest die Elementzeile"},
     check_shifted},
    {{"kleinbuchstabe", Severity::error,
      "Name oder Verweis beginnt mit einem Kleinbuchstaben: KV_Akum überliest die Elementzeile"},
     check_lower_case},
    {{"ziffer-statt-buchstabe", Severity::error,
      "Name oder Verweis beginnt mit einer Ziffer: KV_Akum überliest die Elementzeile"},
     check_digits},
    {{"unbekannter-typ", Severity::error,
      "Name oder Verweis beginnt mit einem Buchstaben, der kein Elementtyp ist: KV_Akum überliest die "
      "Elementzeile"},
     check_foreign_letters},
    {{"z-element", Severity::warning, "Elementzeile, deren Name mit Z beginnt: KV_Akum überliest sie"},
     check_z_elements},
    {{"zulauf-luecke", Severity::error,
      "Zuläufe nicht von links aufgefüllt: KV_Akum überliest die Elementzeile"},
     check_gaps},
    {{"kein-element", Severity::error,
      "Zeile, die wie ein Element aussieht, aus einem anderen Grund (etwa einem Tabulator) aber keines ist"},
     check_others},
    {{"name-ueberhang", Severity::warning,
      "Name oder Verweis reicht über seine fünf Spalten hinaus: KV_Akum schneidet ihn ab"},
     check_overhang},
    {{"ende-klein", Severity::error, "\"ende\" in Kleinbuchstaben: KV_Akum überliest das letzte Element"},
     check_end_in_lower_case},
    {{"ende-schreibweise", Severity::warning,
      "Endemarke nicht in Großbuchstaben: KV_Akum liest über sie hinweg"},
     check_end_in_other_letters},
    {{"ende-fehlt", Severity::warning,
      "Kein Element hat die Endemarke; KV_Akum nimmt das letzte als Auslass (ist die Datei vollständig?)"},
     check_missing_end},
    {{"hinter-ende", Severity::error,
      "Elementzeile hinter der Endemarke: KV_Akum meldet ein Element ohne Namen"},
     check_behind_end},
    {{"ohne-elemente", Severity::error, "Systemdatei ohne Element: das Ergebnis hat nur einen Kopf"},
     check_no_elements},
}};

}  // namespace

std::span<const CheckedRule> element_line_rules() {
  return rules;
}

}  // namespace schau::rules
