// What lies around a variant and changes what a run does or leaves behind.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/rules/rule.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::rules {
namespace {

using findings::Severity;
using variant::FileId;
using variant::Place;
using variant::TextFile;

// The codes that a run can report, and the reserved word with which a reader gives up.
constexpr std::array<std::string_view, 27> codes = {
    "Y01", "Y02", "Y03", "Y04", "Y05", "Y06", "Y07", "Y08", "Y09", "Y10", "Y12", "Y21",  "Y22",       "Y23",
    "Y24", "Y25", "Y26", "Y27", "W01", "W02", "W03", "A00", "A03", "A14", "F02", "Ver1", "ErrorLevel"};

// The lines of the list as the run joins them: 100 characters each, without blanks at the end, 1000 in all.
std::string joined_list(const TextFile& file) {
  constexpr std::size_t line_width = 100;
  constexpr std::size_t list_width = 1000;
  std::string list;
  for (std::uint32_t number = 1; number <= file.line_count(); ++number) {
    list.append(file.line(number).substr(0, line_width));
    list.erase(list.find_last_not_of(' ') + 1);
    if (list.size() < list_width) continue;
    list.resize(list_width);
    list.erase(list.find_last_not_of(' ') + 1);
  }
  return list;
}

std::vector<std::string_view> suppressed_codes(const Context& context) {
  std::vector<std::string_view> found;
  const std::string list = joined_list(context.variant.file(FileId::suppression));
  for (const std::string_view code : codes) {
    if (list.find(code) != std::string::npos) found.push_back(code);
  }
  return found;
}

Place place_of_list(const Context& context) {
  const TextFile& file = context.variant.file(FileId::suppression);
  if (file.line_count() == 0) return {FileId::suppression, 0};
  const std::size_t length = std::min<std::size_t>(file.line(1).size(), 100);
  return {FileId::suppression, 1, 1, static_cast<std::uint32_t>(length)};
}

void check_suppression(const Context& context, Sink& sink) {
  if (!context.variant.file(FileId::suppression).was_read()) return;
  const std::vector<std::string_view> found = suppressed_codes(context);
  if (found.empty()) return;
  sink.add(place_of_list(context), fmt::format("Diese Liste unterdrückt {}; KV_Akum meldet das nicht und "
                                               "rechnet womöglich eine fehlerhafte Variante",
                                               fmt::join(found, ", ")));
}

void check_idle_suppression(const Context& context, Sink& sink) {
  if (!context.variant.file(FileId::suppression).was_read() || !suppressed_codes(context).empty()) return;
  sink.add(place_of_list(context), "Diese Liste unterdrückt keine Meldung von KV_Akum");
}

void check_old_result(const Context& context, Sink& sink) {
  const variant::Surroundings& around = context.variant.surroundings;
  if (!around.result) return;
  const std::string age = around.younger_input ? fmt::format(" (älter als {})", *around.younger_input) : "";
  sink.add({FileId::result, 0},
           fmt::format("Ergebnis eines früheren Laufs{}; es bleibt stehen, wenn KV_Akum nicht rechnet", age));
}

void check_old_protocol(const Context& context, Sink& sink) {
  if (!context.variant.surroundings.protocol) return;
  sink.add({FileId::protocol, 0}, "Protokoll eines früheren Laufs; KV_Akum löscht es beim Start");
}

void check_result_link(const Context& context, Sink& sink) {
  const variant::Surroundings& around = context.variant.surroundings;
  if (!around.result_link || around.result_is_input) return;
  sink.add({FileId::result, 0},
           fmt::format("Der Name des Ergebnisses ist ein Verweis; KV_Akum überschreibt die Datei \"{}\"",
                       *around.result_link));
}

void check_result_is_input(const Context& context, Sink& sink) {
  const variant::Surroundings& around = context.variant.surroundings;
  if (!around.result_is_input) return;
  sink.add({FileId::result, 0},
           fmt::format("Das Ergebnis und die Eingabe {} sind dieselbe Datei", *around.result_is_input),
           "den Verweis löschen, bevor gerechnet wird");
}

void check_name_of_listing(const Context& context, Sink& sink) {
  if (context.variant.path.name != "code") return;
  sink.add({FileId::protocol, 0},
           "Protokoll und Netzliste einer Variante namens \"code\" sind dieselbe Datei; KV_Akum bricht bei "
           "der ersten "
           "Meldung ab",
           "die Variante umbenennen");
}

constexpr std::array<CheckedRule, 7> rules = {{
    {{"unterdrueckung", Severity::warning,
      "fehlercode.ex unterdrückt Meldungen: auch eine fehlerhafte Variante kann gerechnet werden"},
     check_suppression},
    {{"unterdrueckung-wirkungslos", Severity::note, "fehlercode.ex liegt im Ordner, unterdrückt aber nichts"},
     check_idle_suppression},
    {{"altes-ergebnis", Severity::note,
      "Ergebnis eines früheren Laufs: bleibt stehen, wenn KV_Akum nicht rechnet"},
     check_old_result},
    {{"altes-protokoll", Severity::note, "Protokoll eines früheren Laufs"}, check_old_protocol},
    {{"ergebnis-verweis", Severity::warning,
      "Der Name des Ergebnisses ist ein Verweis auf eine andere Datei"},
     check_result_link},
    {{"ergebnis-ist-eingabe", Severity::error, "Das Ergebnis ist dieselbe Datei wie eine Eingabe"},
     check_result_is_input},
    {{"name-code", Severity::warning,
      "Variante namens \"code\": ihr Protokoll und die Netzliste sind dieselbe Datei"},
     check_name_of_listing},
}};

}  // namespace

std::span<const CheckedRule> surroundings_rules() {
  return rules;
}

}  // namespace schau::rules
