// Numbers of areas and branchings: as they are written, and as they are meant.

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "KV_Schau/rules/field_words.h"
#include "KV_Schau/rules/rule.h"

namespace schau::rules {
namespace {

using findings::Severity;
using variant::FileId;

constexpr double highest_sealing = 1.00001;

bool is_number_kind(FieldKind kind) {
  return kind != FieldKind::station && kind != FieldKind::first_value;
}

bool is_area_kind(FieldKind kind) {
  return kind == FieldKind::area || kind == FieldKind::sealing;
}

template <class Report>
void for_each_fault(const Context& context, FieldFault fault, const Report& report) {
  for (const Field& field : context.fields) {
    if (field.fault == fault && is_number_kind(field.kind)) report(field);
  }
}

// Fields of one kind that hold a number.
template <class Report>
void for_each_number(const Context& context, FieldKind kind, const Report& report) {
  for (const Field& field : context.fields) {
    if (field.fault == FieldFault::none && field.kind == kind) report(field);
  }
}

bool has_code_1(const Context& context, const Field& share) {
  return context.taken[share.element].value == 1.0;
}

void check_commas(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::comma, [&](const Field& field) {
    sink.add(field.place(), fmt::format("Dezimalkomma {} {}", in_words(field.kind), quoted(context, field)),
             comma_hint(context, field));
  });
}

void report_no_number(const Context& context, Sink& sink, const Field& field) {
  sink.add(field.place(), fmt::format("Keine Zahl {}: {}; {}", in_words(field.kind), quoted(context, field),
                                      reading_words(field)));
}

void check_no_numbers(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::no_number,
                 [&](const Field& field) { report_no_number(context, sink, field); });
  for_each_fault(context, FieldFault::odd_character, [&](const Field& field) {
    if (is_area_kind(field.kind)) report_no_number(context, sink, field);
  });
}

void check_stray_text(const Context& context, Sink& sink) {
  const auto report = [&](const Field& field) {
    sink.add(field.place(), fmt::format("Mehr als eine Zahl {}: {}; {}", in_words(field.kind),
                                        quoted(context, field), reading_words(field)));
  };
  for_each_fault(context, FieldFault::stray_text, report);
  for_each_fault(context, FieldFault::read_otherwise, report);
}

void check_two_numbers(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::two_numbers, [&](const Field& field) {
    sink.add(field.place(), fmt::format("Zwei Zahlen {}: {}; {}", in_words(field.kind),
                                        quoted(context, field), reading_words(field)));
  });
}

void check_inner_blanks(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::inner_blank, [&](const Field& field) {
    sink.add(field.place(),
             fmt::format("Leerzeichen {}: {}; KV_Akum beachtet sie nicht und liest {}", in_words(field.kind),
                         quoted(context, field), number_words(field.read)));
  });
}

std::string meant_number(const Field& field) {
  return field.meant == field.read ? "" : "gemeint: " + number_words(field.meant);
}

void check_cut(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::cut, [&](const Field& field) {
    sink.add(field.place(),
             fmt::format("{} {} steht nicht {}; {}", subject_words(field.kind), quoted(context, field),
                         in_its_columns(field.kind), reading_words(field)),
             meant_number(field));
  });
}

void check_too_many_digits(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::too_many_digits, [&](const Field& field) {
    sink.add(field.place(),
             fmt::format("{} {} hat mehr Stellen als Spalten; {}", subject_words(field.kind),
                         quoted(context, field), reading_words(field)),
             meant_number(field));
  });
}

void check_outside(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::outside, [&](const Field& field) {
    sink.add(field.place(),
             fmt::format("{} {} steht in Spalten, die nicht gelesen werden; {}", subject_words(field.kind),
                         quoted(context, field), reading_words(field)),
             meant_number(field));
  });
}

void check_blank(const Context& context, Sink& sink, FieldKind kind, std::string_view what) {
  for_each_fault(context, FieldFault::blank, [&](const Field& field) {
    if (field.kind != kind) return;
    sink.add(field.place(),
             fmt::format("{} hat {}; KV_Akum rechnet mit 0", name_of(context, field.element), what));
  });
}

void check_blank_areas(const Context& context, Sink& sink) {
  check_blank(context, sink, FieldKind::area, "keine Flächenangabe");
}

void check_blank_sealing(const Context& context, Sink& sink) {
  check_blank(context, sink, FieldKind::sealing, "keinen Befestigungsgrad");
}

void check_blank_shares(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::blank, [&](const Field& field) {
    if (field.kind != FieldKind::share || !has_code_1(context, field)) return;
    sink.add(field.place(),
             fmt::format("{} hat die Kennziffer 1, aber keinen Anteil; KV_Akum leitet alles zum zweiten "
                         "Ablauf",
                         name_of(context, field.element)));
  });
}

// The sealing of a natural area does not enter the sums, nor does a share beside a code other than 1.
bool enters_sums(const Context& context, const Field& field) {
  if (field.kind == FieldKind::sealing) return field.file == FileId::kfl;
  return field.kind != FieldKind::share || has_code_1(context, field);
}

void check_negative(const Context& context, Sink& sink) {
  for (const FieldKind kind : {FieldKind::area, FieldKind::sealing, FieldKind::share}) {
    for_each_number(context, kind, [&](const Field& field) {
      if (field.read >= 0.0 || !enters_sums(context, field)) return;
      sink.add(field.place(), fmt::format("{} {} ist negativ; KV_Akum rechnet damit", subject_words(kind),
                                          number_words(field.read)));
    });
  }
}

void check_high_shares(const Context& context, Sink& sink) {
  for_each_number(context, FieldKind::share, [&](const Field& field) {
    if (field.read <= 100.0 || !has_code_1(context, field)) return;
    sink.add(
        field.place(),
        fmt::format("Der Anteil {} % ist größer als 100 %; der zweite Ablauf erhält eine negative Fläche",
                    number_words(field.read)));
  });
}

void check_shares_as_fraction(const Context& context, Sink& sink) {
  for_each_number(context, FieldKind::share, [&](const Field& field) {
    if (field.read <= 0.0 || field.read > 1.0 || !has_code_1(context, field)) return;
    sink.add(
        field.place(),
        fmt::format("Der Anteil {} gilt als {} %", text_at(context, field.place()), number_words(field.read)),
        fmt::format("gemeint: {}? Anteile stehen in Prozent", number_words(field.read * 100.0)));
  });
}

void check_high_sealing(const Context& context, Sink& sink) {
  for_each_number(context, FieldKind::sealing, [&](const Field& field) {
    if (field.read <= highest_sealing) return;
    const bool may_be_per_cent = field.read <= 100.0;
    sink.add(field.place(),
             fmt::format("Der Befestigungsgrad {} ist größer als 1; KV_Akum meldet F02 und rechnet nicht",
                         number_words(field.read)),
             may_be_per_cent ? fmt::format("gemeint: {}? Befestigungsgrade sind Bruchteile",
                                           number_words(field.read / 100.0))
                             : "");
  });
}

void check_full_sealing(const Context& context, Sink& sink) {
  for_each_number(context, FieldKind::sealing, [&](const Field& field) {
    if (field.read < 1.0 || field.read > highest_sealing || field.file != FileId::kfl) return;
    sink.add(field.place(), "Der Befestigungsgrad 1 gilt als vollständig befestigt (100 %), nicht als 1 %");
  });
}

void check_natural_sealing(const Context& context, Sink& sink) {
  Element first = 0;
  std::size_t others = 0;
  for (Element i = 1; i <= context.network.count(); ++i) {
    if (context.variant.type(i) != 'N' || context.taken[i].fraction == 0.0) continue;
    others += first == 0 ? 0 : 1;
    if (first == 0) first = i;
  }
  if (first == 0) return;
  const std::string number = others == 1 ? "einer" : std::to_string(others);
  const std::string further = others == 0 ? "" : fmt::format(" (ebenso bei {} weiteren)", number);
  const variant::Span field = variant::data_columns::sealing;
  sink.add({FileId::nfl, context.records.line[first], field.first, field.width()},
           fmt::format("Der Befestigungsgrad der natürlichen Fläche {} geht in keine Summe ein{}",
                       name_of(context, first), further));
}

void check_out_of_range(const Context& context, Sink& sink) {
  for_each_fault(context, FieldFault::out_of_range, [&](const Field& field) {
    const char* const effect =
        field.reported ? "KV_Akum meldet A03 und rechnet nicht" : "KV_Akum rechnet mit unendlich";
    sink.add(field.place(), fmt::format("{} {} ist zu groß für einfache Genauigkeit; {}",
                                        subject_words(field.kind), quoted(context, field), effect));
  });
}

// What is wider than its columns in the result is printed as asterisks.
bool fits_result(const network::Areas& areas) {
  constexpr double highest = 999999.9995;
  constexpr double lowest = -99999.9995;
  constexpr double highest_sum = 9999999.9995;
  const auto fits = [](double area) { return area > lowest && area < highest; };
  return fits(areas.natural) && fits(areas.canalised) && fits(areas.impervious) && areas.all() < highest_sum;
}

// The area in km², exponential when its digits would say nothing.
std::string widest_words(const network::Areas& areas) {
  double widest = areas.all();
  for (const double area : {areas.natural, areas.canalised, areas.impervious}) {
    if (std::abs(area) > std::abs(widest)) widest = area;
  }
  return fmt::format("{:.10g} km²", widest);
}

void check_width_of_result(const Context& context, Sink& sink) {
  for (Element i = 1; i <= context.network.count(); ++i) {
    const network::Areas& total = context.flow.total[i];
    if (context.variant.type(i) != 'T' || fits_result(total)) continue;
    const std::string what =
        std::isfinite(total.all()) && std::isfinite(total.impervious)
            ? fmt::format("ist zu groß für ihre Spalte im Ergebnis: {}", widest_words(total))
            : "ist keine endliche Zahl";
    sink.add(variant::place_of_element(context.variant, i),
             fmt::format("Die Fläche von {} {}", name_of(context, i), what),
             "stimmen Einheiten und Anteile?");
  }
}

constexpr std::array<CheckedRule, 19> rules = {{
    {{"dezimalkomma", Severity::error,
      "Dezimalkomma: in .nfl und .kfl meldet KV_Akum A03, in .ver liest es nur, was vor dem Komma steht"},
     check_commas},
    {{"keine-zahl", Severity::error,
      "Text, wo eine Zahl stehen muss: in .nfl und .kfl meldet KV_Akum A03, in .ver liest es 0"},
     check_no_numbers},
    {{"text-neben-zahl", Severity::warning,
      "Zahl mit anderen Zeichen im selben Feld: KV_Akum nimmt einen Teil davon"},
     check_stray_text},
    {{"zwei-zahlen", Severity::error,
      "Zwei Zahlen in einem Feld: KV_Akum nimmt in .ver die erste, sonst keine"},
     check_two_numbers},
    {{"leerzeichen-in-zahl", Severity::warning,
      "Leerzeichen zwischen den Ziffern einer Fläche: KV_Akum beachtet sie nicht"},
     check_inner_blanks},
    {{"abgeschnitten", Severity::error,
      "Zahl, die vor ihren Spalten beginnt oder hinter ihnen endet: KV_Akum liest einen Teil"},
     check_cut},
    {{"zu-viele-stellen", Severity::error,
      "Zahl mit mehr Stellen, als ihr Feld Spalten hat: KV_Akum liest einen Teil"},
     check_too_many_digits},
    {{"ausserhalb-der-spalten", Severity::error,
      "Zahl in Spalten, die nicht gelesen werden, neben einem leeren Feld: gilt als 0"},
     check_outside},
    {{"flaeche-leer", Severity::warning, "Leere Flächenangabe: gilt ohne Meldung als 0"}, check_blank_areas},
    {{"befestigung-leer", Severity::note, "Kanalisierte Fläche ohne Befestigungsgrad: gilt als 0"},
     check_blank_sealing},
    {{"anteil-leer", Severity::warning, "Verzweigung der Kennziffer 1 ohne Anteil: gilt als 0 %"},
     check_blank_shares},
    {{"negative-zahl", Severity::error,
      "Negative Fläche, negativer Befestigungsgrad oder Anteil: KV_Akum rechnet damit"},
     check_negative},
    {{"anteil-ueber-100", Severity::error,
      "Anteil über 100 %: der zweite Ablauf erhält eine negative Fläche"},
     check_high_shares},
    {{"anteil-als-bruch", Severity::warning, "Anteil von höchstens 1: wohl ein Bruchteil statt Prozent"},
     check_shares_as_fraction},
    {{"befestigung-ueber-1", Severity::error,
      "Befestigungsgrad über 1, wohl Prozent statt Bruchteil: KV_Akum meldet F02"},
     check_high_sealing},
    {{"befestigung-1", Severity::note, "Befestigungsgrad von genau 1: gilt als 100 %, nicht als 1 %"},
     check_full_sealing},
    {{"befestigung-natuerlich", Severity::note,
      "Befestigungsgrad einer natürlichen Fläche: geht in keine Summe ein"},
     check_natural_sealing},
    {{"ausser-bereich", Severity::error,
      "Zahl jenseits der einfachen Genauigkeit: unendliche Flächen oder A03"},
     check_out_of_range},
    {{"ergebnis-zu-breit", Severity::warning,
      "Fläche, die im Ergebnis nicht in ihre Spalte passt: KV_Akum druckt Sterne"},
     check_width_of_result},
}};

}  // namespace

std::span<const CheckedRule> number_rules() {
  return rules;
}

}  // namespace schau::rules
