// What an import says to people.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "KV_Schau/import/import.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::imports {
namespace {

std::string counted(std::size_t number, std::string_view one, std::string_view more) {
  return fmt::format("{} {}", number, number == 1 ? one : more);
}

std::size_t count_of(const Import& import, char type) {
  return static_cast<std::size_t>(std::ranges::count(import.elements, type, &Element::type));
}

std::size_t count_of(const Import& import, Role role) {
  return static_cast<std::size_t>(
      std::count_if(import.elements.begin() + 1, import.elements.end(),
                    [role](const Element& element) { return element.role == role; }));
}

// "62 Transportstrecken (T), 63 natürliche Flächen (N)": the kinds that there are.
std::string kinds(const Import& import) {
  struct Kind {
    char type;
    std::string_view one;
    std::string_view more;
  };
  static constexpr std::array<Kind, 7> all = {{{'T', "Transportstrecke", "Transportstrecken"},
                                               {'N', "natürliche Fläche", "natürliche Flächen"},
                                               {'K', "kanalisierte Fläche", "kanalisierte Flächen"},
                                               {'E', "Quelle ohne Fläche", "Quellen ohne Fläche"},
                                               {'V', "Verzweigung", "Verzweigungen"},
                                               {'B', "Becken", "Becken"},
                                               {'P', "Pegel", "Pegel"}}};
  std::string text;
  for (const Kind& kind : all) {
    const std::size_t number = count_of(import, kind.type);
    if (number == 0) continue;
    text +=
        (text.empty() ? "" : ", ") + counted(number, kind.one, kind.more) + fmt::format(" ({})", kind.type);
  }
  return text;
}

std::string_view words_for(char separator) {
  if (separator == ';') return "Semikolon";
  return separator == '\t' ? "Tabulator" : "Komma";
}

void append_gauges(std::string& out, const Import& import) {
  const std::size_t gauges = count_of(import, Role::gauge);
  if (gauges > 0) {
    fmt::format_to(std::back_inserter(out), "  {} zwischengesetzt, wo mehr als drei Elemente zufließen\n",
                   counted(gauges, "Pegel", "Pegel"));
  }
  if (count_of(import, Role::joined_outlet) > 0) {
    fmt::format_to(std::back_inserter(out), "  {} Auslässe im Pegel {} zusammengeführt\n",
                   import.table.outlets.size(), variant::text_of(import.elements.back().name));
  }
}

void append_roundings(std::string& out, const Import& import) {
  const std::vector<Rounding>& roundings = import.text.roundings;
  if (roundings.empty()) return;
  fmt::format_to(std::back_inserter(out), "  um mehr als 0.1 % gerundet: {}\n",
                 counted(roundings.size(), "Zahl", "Zahlen"));
  for (const Rounding& rounding : roundings) {
    const Row& row = import.table.rows[rounding.row];
    fmt::format_to(std::back_inserter(out), "    {}:{}: {} {} von {} wird {:.6g} ({:+.2f} %)\n",
                   import.table.shown, row.line, rounding.column, rounding.meant, row.id, rounding.written,
                   rounding.part() * 100.0);
  }
}

}  // namespace

std::string text_of(const Import& import, const std::string& variant_name) {
  const NetTable& table = import.table;
  std::string out = fmt::format("{}: {} aus {}: {}\n", variant_name,
                                counted(import.elements.size() - 1, "Element", "Elemente"),
                                counted(table.rows.size(), "Zeile", "Zeilen"), kinds(import));
  fmt::format_to(std::back_inserter(out), "  gelesen: {}, Trennzeichen {}, {}\n", table.shown,
                 words_for(table.separator), table.has_decimal_comma ? "Dezimalkomma" : "Dezimalpunkt");
  if (!table.unread_columns.empty())
    fmt::format_to(std::back_inserter(out), "  nicht gelesene Spalten: {}\n",
                   fmt::join(table.unread_columns, ", "));
  append_gauges(out, import);
  fmt::format_to(std::back_inserter(out), "  Fläche: {:.3f} km², in den Dateien {:.3f} km²\n",
                 import.text.area, import.text.written_area);
  append_roundings(out, import);
  return out;
}

std::string faults_text(const NetTable& table) {
  std::string out;
  for (const Fault& fault : table.faults) {
    const std::string place = fault.line == 0 ? "" : fmt::format("{}:", fault.line);
    fmt::format_to(std::back_inserter(out), "{}:{} Fehler: {}\n", table.shown, place,
                   variant::shown_utf8(fault.text));
  }
  if (table.fault_count > table.faults.size()) {
    fmt::format_to(std::back_inserter(out), "{}: ... und {} weitere Fehler\n", table.shown,
                   table.fault_count - table.faults.size());
  }
  return out;
}

}  // namespace schau::imports
