#include "KV_Schau/import/variant_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <optional>

#include "KV_Schau/import/five_columns.h"
#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/variant.h"

namespace schau::imports {
namespace {

using variant::AreaUnit;

void put_into(std::string& line, std::uint32_t column, std::string_view text) {
  if (text.empty()) return;
  line.resize(column - 1, ' ');
  line += text;
}

// The description's columns hold so many characters of the name; what has no place in a line becomes blank.
std::string description(std::string_view name) {
  constexpr std::size_t width = 17;
  std::string text = variant::utf8_to_windows_1252(name).substr(0, width);
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

// With a leading blank where nothing is lost by it, so that it stands apart from the number before it.
std::string set_apart(double number, const Written& written) {
  const std::string text = fmt::format("{:.2f}", number);
  const bool is_enough = text.size() == 4 && std::strtod(text.c_str(), nullptr) == written.value;
  return fmt::format("{:>5}", is_enough ? text : written.text);
}

std::string csv_field(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char character : text) quoted.append(character == '"' ? 2 : 1, character);
  return quoted + "\"";
}

std::string_view words_for(const Element& element) {
  switch (element.role) {
    case Role::joined_outlet:
      return "Pegel, führt die Auslässe zusammen";
    case Role::gauge:
      return "Pegel, sammelt Zuläufe";
    case Role::dry_source:
      return "Quelle ohne Fläche";
    default:
      break;
  }
  switch (element.type) {
    case 'N':
      return "natürliche Fläche";
    case 'K':
      return "kanalisierte Fläche";
    case 'E':
      return "Quelle ohne Fläche";
    case 'T':
      return "Transportstrecke";
    case 'V':
      return "Verzweigung";
    case 'B':
      return "Becken";
    default:
      return "Pegel";
  }
}

class Writer {
 public:
  Writer(const NetTable& table, const std::vector<Element>& elements) : table_(table), elements_(elements) {
    constexpr std::size_t usual_line = 70;
    sys().reserve(elements.size() * usual_line);
  }

  VariantText run() {
    // Column 44 must hold no letter of a type, or the heading would pass for an element.
    sys() =
        "Systemlogik\n"
        "   Tag Kennung Bezeichnung         Name    Zulauf 1-3          Ablauf 1-2\n"
        "--------------------------------------------------------------------------\n";
    names() = "name,id,was,zeile,bezeichnung\n";
    for (std::uint32_t i = 1; i < elements_.size(); ++i) write(i);
    std::ranges::stable_sort(text_.roundings, {}, &Rounding::row);
    return std::move(text_);
  }

 private:
  std::string& sys() { return text_.files[0].bytes; }
  std::string& trs() { return text_.files[3].bytes; }
  std::string& ver() { return text_.files[4].bytes; }
  std::string& names() { return text_.files[5].bytes; }

  void write(std::uint32_t i) {
    const Element& element = elements_[i];
    name_ = variant::text_of(element.name);
    write_element(i);
    write_name(element);
    switch (element.type) {
      case 'N':
        return write_area(element, 1);
      case 'K':
        return write_area(element, 2);
      case 'T':
        return write_reach(table_.rows[element.row]);
      case 'V':
        return write_branching(element);
      default:
        return;
    }
  }

  void write_element(std::uint32_t i) {
    namespace columns = variant::sys_columns;
    const Element& element = elements_[i];
    std::string line;
    if (element.row != no_row && element.role != Role::gauge)
      put_into(line, 17, description(table_.rows[element.row].name));
    put_into(line, columns::name.first, name_);
    for (std::size_t k = 0; k < element.inflow.size(); ++k)
      put_into(line, columns::inflow[k].first, name_of(element.inflow[k]));
    const bool is_outlet = i + 1 == elements_.size();
    put_into(line, columns::outflow[0].first, is_outlet ? "ENDE" : name_of(element.outflow[0]));
    put_into(line, columns::outflow[1].first, name_of(element.outflow[1]));
    sys().append(line).append("\n");
  }

  [[nodiscard]] std::string name_of(std::uint32_t element) const {
    return element == 0 ? "" : variant::text_of(elements_[element].name);
  }

  void write_name(const Element& element) {
    std::string& out = names();
    out.append(name_).append(",");
    const bool is_of_row = element.row != no_row && element.role != Role::gauge;
    if (is_of_row) out += csv_field(table_.rows[element.row].id);
    out.append(",").append(csv_field(words_for(element))).append(",");
    if (element.row != no_row) out += fmt::format_int(table_.rows[element.row].line).c_str();
    out += ",";
    if (is_of_row) out += csv_field(table_.rows[element.row].name);
    out += "\n";
  }

  void write_area(const Element& element, std::size_t file) {
    std::string& out = text_.files.at(file).bytes;
    std::optional<AreaUnit>& unit = unit_.at(file - 1);
    if (out.empty()) out = file == 1 ? "   Name   Areal\n" : "   Name   Areal Bef.\n";
    const Row& row = table_.rows[element.row];
    const WrittenArea area = best_area(row.area, unit.value_or(AreaUnit::qkm));
    if (!area.field.fits()) {
      text_.too_wide.push_back(element.row);
      return;
    }
    if (unit != area.unit) out.append("          ").append(variant::word_of(area.unit)).append("\n");
    unit = area.unit;
    fmt::format_to(std::back_inserter(out), "   {}  {:>5}", name_, area.field.text);
    note(element.row, "flaeche_km2", row.area, area.field);
    text_.area += row.area;
    text_.written_area += area.field.value;
    if (file == 2) {
      const Written sealing = in_five_columns(row.sealing);
      note(element.row, "befestigung", row.sealing, sealing);
      out += set_apart(row.sealing, sealing);
    }
    out += "\n";
  }

  void write_reach(const Row& row) {
    if (trs().empty()) trs() = "   Name        km                                      Profil\n";
    fmt::format_to(std::back_inserter(trs()), "   {}", name_);
    if (row.station)
      fmt::format_to(std::back_inserter(trs()), "{:48}Profil\n{:10}{:8.3f}", "", "", *row.station);
    trs() += "\n";
  }

  void write_branching(const Element& element) {
    if (ver().empty()) ver() = "   Name   Ken. Anteil\n";
    const double share = table_.rows[element.row].share;
    const Written written = in_five_columns(share);
    note(element.row, "anteil", share, written);
    fmt::format_to(std::back_inserter(ver()), "   {}     1 {:>5}\n", name_, written.text);
  }

  void note(std::uint32_t row, std::string_view column, double meant, const Written& written) {
    if (relative_rounding(meant, written) > least_rounding_told)
      text_.roundings.push_back({row, column, meant, written.value});
  }

  const NetTable& table_;
  const std::vector<Element>& elements_;
  VariantText text_;
  std::array<std::optional<AreaUnit>, 2> unit_;
  std::string name_;
};

}  // namespace

VariantText variant_text(const NetTable& table, const std::vector<Element>& elements) {
  return Writer(table, elements).run();
}

}  // namespace schau::imports
