// The stations of reaches. They enter no area, but are printed in the result.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "KV_Schau/network/values.h"
#include "KV_Schau/rules/field_words.h"
#include "KV_Schau/rules/rule.h"

namespace schau::rules {
namespace {

using findings::Severity;
using variant::FileId;
using variant::Place;
using variant::TextFile;
namespace columns = variant::data_columns;

template <class Report>
void for_each_station(const Context& context, const Report& report) {
  for (const Field& field : context.fields) {
    if (field.kind == FieldKind::station) report(field);
  }
}

std::string prints(const Field& field) {
  return fmt::format("KV_Akum druckt {:.3f}", field.read);
}

void check_commas(const Context& context, Sink& sink) {
  for_each_station(context, [&](const Field& field) {
    if (field.fault != FieldFault::comma) return;
    sink.add(field.place(), fmt::format("Dezimalkomma in der Station {}", quoted(context, field)),
             comma_hint(context, field));
  });
}

bool is_no_clear_number(FieldFault fault) {
  switch (fault) {
    case FieldFault::no_number:
    case FieldFault::stray_text:
    case FieldFault::read_otherwise:
    case FieldFault::two_numbers:
    case FieldFault::inner_blank:
      return true;
    default:
      return false;
  }
}

void check_no_numbers(const Context& context, Sink& sink) {
  for_each_station(context, [&](const Field& field) {
    if (!is_no_clear_number(field.fault)) return;
    sink.add(field.place(), fmt::format("Die Station {} ist keine einzelne Zahl; {}", quoted(context, field),
                                        prints(field)));
  });
}

void check_columns(const Context& context, Sink& sink) {
  for_each_station(context, [&](const Field& field) {
    const bool is_cut = field.fault == FieldFault::cut || field.fault == FieldFault::too_many_digits;
    if (!is_cut && field.fault != FieldFault::outside) return;
    sink.add(field.place(),
             fmt::format("Die Station {} steht nicht in den Spalten 11 bis 18; {}", quoted(context, field),
                         prints(field)),
             "gemeint: " + number_words(field.meant));
  });
}

void check_range(const Context& context, Sink& sink) {
  for_each_station(context, [&](const Field& field) {
    const bool is_too_wide = field.read >= highest_station || field.read <= lowest_station;
    const bool is_number = field.fault == FieldFault::none || field.fault == FieldFault::out_of_range;
    if (!is_number || !is_too_wide) return;
    const bool is_infinite = field.fault == FieldFault::out_of_range;
    sink.add(field.place(), fmt::format("Die Station {} ist zu groß für ihre Spalte; KV_Akum druckt {}",
                                        quoted(context, field), is_infinite ? "Infinity" : "Sterne"));
  });
}

// Records of kind 2 and the line behind them.

Element element_of_line(const Context& context, std::string_view line) {
  return context.variant.elements.first(variant::name_at(line, columns::name.first));
}

void report_end_of_file(const Context& context, Sink& sink, Element reach) {
  sink.add(
      {FileId::trs, context.records.line[reach], columns::profile.first, columns::profile.width()},
      fmt::format(
          "{} hat einen Eintrag in den Spalten 57 bis 66, doch die Zeile mit der Station fehlt: die Datei "
          "endet hier; KV_Akum druckt {:.3f}",
          name_of(context, reach), context.taken[reach].value));
}

void check_missing(const Context& context, Sink& sink) {
  const TextFile& file = context.variant.file(FileId::trs);
  for (const Element reach : context.kind_2_reaches) {
    const std::uint32_t line = context.records.line[reach];
    if (line == file.line_count()) {
      report_end_of_file(context, sink, reach);
    } else if (variant::is_blank(file.line(line + 1))) {
      sink.add(
          {FileId::trs, line + 1, columns::station.first, columns::station.width()},
          fmt::format("Hier muss die Station von {} stehen; die Zeile ist leer, und KV_Akum druckt 0.000",
                      name_of(context, reach)));
    }
  }
  for_each_station(context, [&](const Field& field) {
    if (field.fault != FieldFault::blank) return;
    sink.add(field.place(),
             fmt::format("Hier muss die Station von {} stehen; das Feld ist leer, und KV_Akum druckt 0.000",
                         name_of(context, field.element)));
  });
}

void check_other_element(const Context& context, Sink& sink) {
  const TextFile& file = context.variant.file(FileId::trs);
  for (const Element reach : context.kind_2_reaches) {
    const std::uint32_t line = context.records.line[reach];
    if (line == file.line_count()) continue;
    const Element other = element_of_line(context, file.line(line + 1));
    if (other == 0) continue;
    sink.add({FileId::trs, line + 1, columns::name.first, columns::name.width()},
             fmt::format("Hier muss die Station von {} stehen, nicht {}; KV_Akum druckt {:.3f}",
                         name_of(context, reach), name_of(context, other), context.taken[reach].value));
  }
}

// A line with nothing but a number in the columns of the station.
bool looks_like_station(std::string_view line) {
  const std::string_view text = variant::without_blanks(columns::station.of(line));
  return variant::is_blank(variant::columns(line, 1, columns::station.first - 1)) && !text.empty() &&
         text.find_first_not_of("0123456789.,") == std::string_view::npos;
}

// Where the entry of a kind-2 reach stands when it stands beside its columns; "" when there is none.
std::string misplaced_profile(std::string_view line) {
  const std::size_t place = line.find_first_not_of(' ', columns::station.last);
  if (place == std::string_view::npos) return "";
  return fmt::format("der Eintrag in Spalte {} gehört in die Spalten 57 bis 66", place + 1);
}

// By line: true for the second lines of the records.
std::vector<bool> read_station_lines(const Context& context) {
  std::vector<bool> read(context.variant.file(FileId::trs).line_count() + 2, false);
  for (const Element reach : context.kind_2_reaches) read[context.records.line[reach] + 1] = true;
  return read;
}

void check_unused(const Context& context, Sink& sink) {
  const TextFile& file = context.variant.file(FileId::trs);
  const std::vector<bool> is_read = read_station_lines(context);
  for (const std::uint32_t number : context.variant.other_lines_of(FileId::trs)) {
    if (is_read[number] || !looks_like_station(file.line(number))) continue;
    const std::string_view before = number > 1 ? file.line(number - 1) : std::string_view();
    const Element reach = element_of_line(context, before);
    const bool is_reach = reach != 0 && context.variant.type(reach) == 'T';
    const Place place{FileId::trs, number, columns::station.first, columns::station.width()};
    if (is_reach) {
      sink.add(place,
               fmt::format(
                   "Diese Station liest KV_Akum nicht, da {} in den Spalten 57 bis 66 keinen Eintrag hat; es "
                   "druckt 0.000",
                   name_of(context, reach)),
               misplaced_profile(before));
    } else {
      sink.add(place, "Diese Station liest KV_Akum nicht: in der Zeile davor steht kein Transportelement");
    }
  }
}

// The reach from which an element takes its water when there is only one; 0 otherwise. Gauges pass it on.
std::vector<Element> single_reach_above(const Context& context) {
  std::vector<Element> nearest(context.network.count() + 1, 0);
  std::vector<Element> above(context.network.count() + 1, 0);
  for (const Element i : context.order) {
    std::size_t branches = 0;
    for (const Element j : context.network.inflow[i]) {
      const char type = context.variant.type(j);
      if (j == 0 || type == 'N' || type == 'K' || type == 'E') continue;
      ++branches;
      above[i] = nearest[j];
    }
    if (branches > 1) above[i] = 0;
    const char type = context.variant.type(i);
    if (type == 'T') nearest[i] = i;
    if (type == 'P') nearest[i] = above[i];
  }
  return above;
}

void check_direction(const Context& context, Sink& sink) {
  if (!context.variant.file(FileId::trs).was_read()) return;
  const std::vector<Element> above = single_reach_above(context);
  std::vector<bool> has_station(context.network.count() + 1, false);
  for (const Element reach : context.kind_2_reaches) has_station[reach] = true;
  for (const Element reach : context.kind_2_reaches) {
    const Element upper = above[reach];
    if (upper == 0 || !has_station[upper]) continue;
    const double station = context.taken[reach].value;
    const double upper_station = context.taken[upper].value;
    if (station <= upper_station) continue;
    const std::uint32_t line = network::station_line(context.variant, context.records.line[reach]);
    sink.add({FileId::trs, line, columns::station.first, columns::station.width()},
             fmt::format("Die Station von {} ({:.3f}) liegt höher als die von {} darüber ({:.3f})",
                         name_of(context, reach), station, name_of(context, upper), upper_station));
  }
}

void check_first_values(const Context& context, Sink& sink) {
  for (const Field& field : context.fields) {
    if (field.kind != FieldKind::first_value || field.fault == FieldFault::none) continue;
    sink.add(field.place(), fmt::format("Der erste Wert {} von {} ist keine einzelne Zahl in den Spalten 11 "
                                        "bis 18; KV_Akum druckt ihn nicht",
                                        quoted(context, field), name_of(context, field.element)));
  }
}

constexpr std::array<CheckedRule, 9> rules = {{
    {{"station-dezimalkomma", Severity::warning,
      "Dezimalkomma in einer Station: KV_Akum liest nur, was vor dem Komma steht"},
     check_commas},
    {{"station-keine-zahl", Severity::warning,
      "Text, Leerzeichen oder zwei Zahlen in einer Station: KV_Akum liest die erste Zahl oder 0"},
     check_no_numbers},
    {{"station-spalten", Severity::warning,
      "Station neben den Spalten 11 bis 18: KV_Akum liest einen Teil oder 0"},
     check_columns},
    {{"station-zu-gross", Severity::warning,
      "Station, die nicht in ihre Spalte passt: KV_Akum druckt Sterne oder Infinity"},
     check_range},
    {{"station-fehlt", Severity::warning,
      "Transportelement der Art 2 ohne Station in der nächsten Zeile: KV_Akum druckt 0.000"},
     check_missing},
    {{"station-fremd", Severity::warning,
      "Transportelement der Art 2, dessen nächste Zeile zu einem anderen Element gehört: KV_Akum liest dort "
      "die Station"},
     check_other_element},
    {{"station-ungelesen", Severity::warning,
      "Station hinter einem Transportelement der Art 1 oder ohne Transportelement davor"},
     check_unused},
    {{"station-steigt", Severity::note, "Station, die in Fließrichtung nicht fällt"}, check_direction},
    {{"erster-wert", Severity::note,
      "Erster Wert eines Transportelements, der keine Zahl ist: KV_Akum druckt ihn nicht"},
     check_first_values},
}};

}  // namespace

std::span<const CheckedRule> station_rules() {
  return rules;
}

}  // namespace schau::rules
