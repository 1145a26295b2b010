#include "tests/schau/mistakes.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <utility>

namespace schau_test {
namespace {

using Plan = std::optional<Planted>;

// Places.

bool is_area(const PlacedElement& element) {
  return element.type == 'N' || element.type == 'K';
}

FileId file_of(char type) {
  switch (type) {
    case 'N':
      return FileId::nfl;
    case 'K':
      return FileId::kfl;
    case 'T':
      return FileId::trs;
    default:
      return FileId::ver;
  }
}

// A random element that a test holds for.
template <class Test>
const PlacedElement* pick(const CleanNetwork& network, Dice& dice, const Test& test) {
  const std::vector<std::size_t> places = network.where(test);
  return places.empty() ? nullptr : &network.elements[dice.pick(places)];
}

const PlacedElement* pick_type(const CleanNetwork& network, Dice& dice, std::string_view types) {
  return pick(network, dice, [&](const PlacedElement& element) {
    return types.find(element.type) != std::string_view::npos;
  });
}

const PlacedElement* pick_area(const CleanNetwork& network, Dice& dice) {
  return pick(network, dice, is_area);
}

const PlacedElement* pick_station(const CleanNetwork& network, Dice& dice) {
  return pick(network, dice, [](const PlacedElement& element) { return element.station_line != 0; });
}

const PlacedElement* pick_code_1(const CleanNetwork& network, Dice& dice) {
  return pick(network, dice, [&](const PlacedElement& element) {
    return element.type == 'V' && network.bed.lines(FileId::ver).at(element.record_line - 1)[13] == '1';
  });
}

// Not the outlet, whose outflows are nobody's.
const PlacedElement* pick_inner(const CleanNetwork& network, Dice& dice, std::string_view types = "NKETVBP") {
  return pick(network, dice, [&](const PlacedElement& element) {
    return types.find(element.type) != std::string_view::npos && &element != &network.elements.back();
  });
}

Plan in_sys(const PlacedElement& element, std::vector<std::string_view> rules) {
  return Planted{FileId::sys, element.sys_line, std::move(rules)};
}

Plan in_record(const PlacedElement& element, std::vector<std::string_view> rules) {
  return Planted{file_of(element.type), element.record_line, std::move(rules)};
}

std::string field(const CleanNetwork& network, FileId file, std::size_t line, std::size_t column,
                  std::size_t width) {
  return network.bed.lines(file).at(line - 1).substr(column - 1, width);
}

// Text.

Plan plant_utf8_in_element(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKETVBP");
  std::string& line = network.bed.line(FileId::sys, element->sys_line);
  line = line.substr(0, 16) + "Höhe" + line.substr(20);
  return in_sys(*element, {"utf-8-verschiebt"});
}

Plan plant_utf8_in_heading(CleanNetwork& network, Dice& dice) {
  const FileId file = dice.pick(std::vector<FileId>{FileId::kfl, FileId::trs, FileId::ver});
  network.bed.line(file, 1) = "Übersicht";
  return Planted{file, 1, {"utf-8"}};
}

Plan plant_utf16(CleanNetwork& network, Dice& dice) {
  const FileId file =
      dice.pick(std::vector<FileId>{FileId::sys, FileId::nfl, FileId::kfl, FileId::trs, FileId::ver});
  std::string wide = "\xFF\xFE";
  for (const char byte : network.bed.bytes(file)) wide.append({byte, '\0'});
  network.bed.set_bytes(file, wide);
  return Planted{file, 0, {"utf-16"}};
}

Plan plant_byte_order_mark(CleanNetwork& network, Dice& dice) {
  const FileId file =
      dice.pick(std::vector<FileId>{FileId::sys, FileId::nfl, FileId::kfl, FileId::trs, FileId::ver});
  network.bed.line(file, 1).insert(0, "\xEF\xBB\xBF");
  return Planted{file, 1, {"bytereihenfolge-marke"}};
}

Plan plant_dos_umlaut(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKETVBP");
  network.bed.put(FileId::sys, element->sys_line, 17, "M\x81hlenbach");
  return in_sys(*element, {"dos-umlaut"});
}

Plan plant_tab_in_element(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_inner(network, dice);
  std::string& line = network.bed.line(FileId::sys, element->sys_line);
  // The blanks before the outflow become tabs.
  const std::size_t outflow = 63;
  std::size_t begin = outflow;
  while (line[begin - 1] == ' ') --begin;
  line = line.substr(0, begin) + "\t\t" + line.substr(outflow);
  return in_sys(*element, {"kein-element", "verrutscht"});
}

Plan plant_fixed_blank(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKE");
  network.bed.put(FileId::sys, element->sys_line, 44 + dice.roll(15), "\xA0");
  return in_sys(*element, {"kein-element"});
}

Plan plant_control_byte(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_station(network, dice);
  if (element == nullptr) return std::nullopt;
  network.bed.put(FileId::trs, element->station_line, 11, "\x07");
  return Planted{FileId::trs, element->station_line, {"steuerzeichen"}};
}

Plan plant_shifted_line(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKETVBP");
  std::string& line = network.bed.line(FileId::sys, element->sys_line);
  if (dice.one_in(2)) {
    line.insert(0, 1, ' ');
  } else {
    line.erase(30, 1);
  }
  return in_sys(*element, {"verrutscht"});
}

Plan plant_shifted_link(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "TVBP");
  network.bed.line(FileId::sys, element->sys_line).insert(43, 1, ' ');
  return in_sys(*element, {"verrutscht"});
}

Plan plant_lower_case(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_inner(network, dice);
  const std::size_t column = dice.one_in(2) ? 36 : 64;
  char& letter = network.bed.line(FileId::sys, element->sys_line)[column - 1];
  letter = static_cast<char>(letter + ('a' - 'A'));
  return in_sys(*element, {"kleinbuchstabe"});
}

Plan plant_z(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKETVBP");
  network.bed.put(FileId::sys, element->sys_line, 36, "Z");
  return in_sys(*element, {"z-element"});
}

Plan plant_digit_for_letter(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_inner(network, dice);
  network.bed.put(FileId::sys, element->sys_line, dice.one_in(2) ? 36 : 64, "7");
  return in_sys(*element, {"ziffer-statt-buchstabe"});
}

Plan plant_gap(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element =
      pick(network, dice, [](const PlacedElement& one) { return one.inflows.size() > 1; });
  if (element == nullptr) return std::nullopt;
  network.bed.put(FileId::sys, element->sys_line, 44, "     ");
  return in_sys(*element, {"zulauf-luecke"});
}

Plan plant_end_in_lower_case(CleanNetwork& network, Dice& dice) {
  const PlacedElement& outlet = network.elements.back();
  const bool small = dice.one_in(2);
  network.bed.put(FileId::sys, outlet.sys_line, 64, small ? "ende" : "Ende");
  return in_sys(outlet, {small ? "ende-klein" : "ende-schreibweise"});
}

Plan plant_no_end(CleanNetwork& network, Dice& dice) {
  const PlacedElement& outlet = network.elements.back();
  network.bed.put(FileId::sys, outlet.sys_line, 64, dice.one_in(2) ? "T9999" : "Meer ");
  // A link with a letter that is no type is another mistake, on the same line.
  return in_sys(outlet, {"ende-fehlt", "unbekannter-typ", "kein-element"});
}

Plan plant_element_behind_end(CleanNetwork& network, Dice& dice) {
  const std::size_t line = network.bed.lines(FileId::sys).size() + 1;
  network.bed.insert(FileId::sys, line, text_of({"N9990", {}, {dice.one_in(2) ? "T0010" : "T0020"}}));
  return Planted{FileId::sys, line, {"hinter-ende"}};
}

Plan plant_no_elements(CleanNetwork& network, Dice& /*dice*/) {
  network.bed.replace(FileId::sys, {"Systemlogik"});
  return Planted{FileId::sys, 1, {"ohne-elemente"}};
}

Plan plant_mixed_ends(CleanNetwork& network, Dice& dice) {
  const FileId file = dice.pick(std::vector<FileId>{FileId::sys, FileId::nfl, FileId::kfl, FileId::trs});
  const std::size_t line = 1 + dice.roll(network.bed.lines(file).size());
  network.bed.line(file, line) += '\r';
  return Planted{file, line, {"zeilenenden-gemischt"}};
}

Plan plant_doubled_end(CleanNetwork& network, Dice& dice) {
  const FileId file = dice.pick(std::vector<FileId>{FileId::sys, FileId::nfl, FileId::kfl, FileId::trs});
  const std::size_t line = 1 + dice.roll(network.bed.lines(file).size());
  network.bed.line(file, line) += "\r\r";
  return Planted{file, line, {"zeilenende-doppelt"}};
}

Plan plant_lone_cr(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_area(network, dice);
  network.bed.line(file_of(element->type), element->record_line) += "\rBemerkung";
  return in_record(*element, {"zeilenende-cr"});
}

Plan plant_overhang(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_inner(network, dice);
  const std::size_t column = element->outflows.size() > 1 ? 75 : 69;
  network.bed.put(FileId::sys, element->sys_line, column, "1");
  return in_sys(*element, {"name-ueberhang"});
}

// Numbers.

// Writes another text into the columns of a field.
Plan plant_field(CleanNetwork& network, const PlacedElement& element, std::size_t column,
                 std::string_view text, std::vector<std::string_view> rules) {
  network.bed.put(file_of(element.type), element.record_line, column, text);
  return in_record(element, std::move(rules));
}

Plan plant_comma_in_area(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_area(network, dice);
  return plant_field(network, *element, 11, dice.one_in(2) ? " 64,5" : "64,50", {"dezimalkomma"});
}

Plan plant_comma_in_share(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "V");
  return plant_field(network, *element, 16, dice.one_in(2) ? " 65,5" : "65,0 ", {"dezimalkomma"});
}

Plan plant_comma_in_station(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_station(network, dice);
  std::string& line = network.bed.line(FileId::trs, element->station_line);
  line[line.find('.')] = ',';
  return Planted{FileId::trs, element->station_line, {"station-dezimalkomma"}};
}

Plan plant_text_in_area(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_area(network, dice);
  return plant_field(network, *element, 11, dice.one_in(2) ? "ca.64" : "  ?? ", {"keine-zahl"});
}

Plan plant_text_in_share(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "V");
  const bool only_text = dice.one_in(2);
  return plant_field(network, *element, 16, only_text ? "halb " : " 65% ",
                     {only_text ? "keine-zahl" : "text-neben-zahl"});
}

Plan plant_text_in_station(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_station(network, dice);
  network.bed.put(FileId::trs, element->station_line, 11, dice.one_in(2) ? "km 12.50" : "    oben");
  return Planted{FileId::trs, element->station_line, {"station-keine-zahl"}};
}

Plan plant_two_numbers(CleanNetwork& network, Dice& dice) {
  if (dice.one_in(2)) return plant_field(network, *pick_area(network, dice), 11, "1.2.3", {"zwei-zahlen"});
  return plant_field(network, *pick_type(network, dice, "V"), 16, "6 5.0", {"zwei-zahlen"});
}

Plan plant_two_stations(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_station(network, dice);
  network.bed.put(FileId::trs, element->station_line, 11, "1.50 1.2");
  return Planted{FileId::trs, element->station_line, {"station-keine-zahl"}};
}

Plan plant_blank_in_area(CleanNetwork& network, Dice& dice) {
  return plant_field(network, *pick_area(network, dice), 11, "1 2.5", {"leerzeichen-in-zahl"});
}

// The whole record but its name, one column to the left or right.
Plan plant_shifted_area(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_area(network, dice);
  std::string& line = network.bed.line(file_of(element->type), element->record_line);
  line = "   " + element->name + (dice.one_in(2) ? " 127.55 0.35" : "   12.345 0.35");
  return in_record(*element, {"abgeschnitten", "befestigung-ueber-1"});
}

Plan plant_shifted_share(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_code_1(network, dice);
  if (element == nullptr) return std::nullopt;
  return plant_field(network, *element, 15, "75.25 ", {"abgeschnitten"});
}

Plan plant_shifted_code(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_code_1(network, dice);
  if (element == nullptr) return std::nullopt;
  return plant_field(network, *element, 14, " 1", {"ausserhalb-der-spalten"});
}

Plan plant_shifted_station(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_station(network, dice);
  network.bed.line(FileId::trs, element->station_line) =
      dice.one_in(2) ? "         1234.567" : "               12.3456";
  return Planted{FileId::trs, element->station_line, {"station-spalten"}};
}

Plan plant_number_elsewhere(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_area(network, dice);
  network.bed.line(file_of(element->type), element->record_line) =
      "   " + element->name + std::string(14 + dice.roll(4), ' ') + "12.50";
  return in_record(*element, {"ausserhalb-der-spalten"});
}

Plan plant_too_many_digits(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_area(network, dice);
  return plant_field(network, *element, 11, dice.one_in(2) ? "123456    " : "12.3456   ",
                     {"zu-viele-stellen", "befestigung-ueber-1"});
}

Plan plant_negative(CleanNetwork& network, Dice& dice) {
  switch (dice.roll(3)) {
    case 0:
      return plant_field(network, *pick_area(network, dice), 11, "-12.5", {"negative-zahl"});
    case 1:
      return plant_field(network, *pick_type(network, dice, "K"), 16, "-0.35", {"negative-zahl"});
    default: {
      const PlacedElement* const element = pick_code_1(network, dice);
      if (element == nullptr) return std::nullopt;
      return plant_field(network, *element, 16, "-65.0", {"negative-zahl"});
    }
  }
}

Plan plant_odd_share(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_code_1(network, dice);
  if (element == nullptr) return std::nullopt;
  switch (dice.roll(3)) {
    case 0:
      return plant_field(network, *element, 16, "165.0", {"anteil-ueber-100"});
    case 1:
      return plant_field(network, *element, 16, " 0.65", {"anteil-als-bruch"});
    default:
      return plant_field(network, *element, 16, "     ", {"anteil-leer"});
  }
}

Plan plant_odd_sealing(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "K");
  const std::size_t per_cent = 1 + dice.roll(100);
  return plant_field(network, *element, 16, fmt::format("{:5}", per_cent),
                     {per_cent == 1 ? "befestigung-1" : "befestigung-ueber-1"});
}

Plan plant_blank_area(CleanNetwork& network, Dice& dice) {
  return plant_field(network, *pick_area(network, dice), 11, "     ", {"flaeche-leer"});
}

Plan plant_out_of_range(CleanNetwork& network, Dice& dice) {
  if (dice.one_in(2)) return plant_field(network, *pick_area(network, dice), 11, " 9E99", {"ausser-bereich"});
  const PlacedElement* const element = pick_station(network, dice);
  network.bed.put(FileId::trs, element->station_line, 11, "    9E99");
  return Planted{FileId::trs, element->station_line, {"station-zu-gross"}};
}

// Units.

Plan plant_wrong_unit_word(CleanNetwork& network, Dice& dice) {
  // Not the first unit of the natural areas: it is in force anyway.
  const PlacedElement* const element = pick(network, dice, [](const PlacedElement& one) {
    return is_area(one) && (one.type == 'K' || one.unit_line > 2);
  });
  if (element == nullptr) return std::nullopt;
  const FileId file = file_of(element->type);
  std::string& line = network.bed.line(file, element->unit_line);
  const bool in_hectares = line.find("ha") != std::string::npos;
  line = std::string(10, ' ') +
         (in_hectares ? (dice.one_in(2) ? "Ha" : "HA") : (dice.one_in(2) ? "km2" : bytes_of("km²")));
  return Planted{file, element->unit_line, {"einheit-unbekannt", "einheit-wirkungslos"}};
}

Plan plant_misplaced_unit(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick(network, dice, [](const PlacedElement& one) {
    return is_area(one) && (one.type == 'K' || one.unit_line > 2);
  });
  if (element == nullptr) return std::nullopt;
  const FileId file = file_of(element->type);
  network.bed.line(file, element->unit_line).erase(0, 3 + dice.roll(4));
  return Planted{file, element->unit_line, {"einheit-verrutscht", "einheit-wirkungslos"}};
}

// A remark that sets hectares where square kilometres are in force.
Plan plant_unit_in_remark(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick(network, dice, [&](const PlacedElement& one) {
    return one.type == 'N' &&
           network.bed.lines(FileId::nfl).at(one.unit_line - 1).find("qkm") != std::string::npos;
  });
  if (element == nullptr) return std::nullopt;
  network.bed.insert(FileId::nfl, element->record_line,
                     dice.one_in(2) ? "  Gebiet Schafbach" : "  zus.: 12 ha");
  const bool reaches =
      network.bed.line(FileId::nfl, element->record_line).substr(10, 5).find("ha") != std::string::npos;
  if (!reaches) network.bed.line(FileId::nfl, element->record_line) = "  am  Sch.haus";
  return Planted{FileId::nfl, element->record_line, {"einheit-in-bemerkung"}};
}

Plan plant_missing_first_unit(CleanNetwork& network, Dice& dice) {
  const FileId file = dice.one_in(2) ? FileId::nfl : FileId::kfl;
  // The canalised areas begin in hectares, the natural ones in the unit that is in force without a word.
  const auto& lines = network.bed.lines(file);
  const bool has_hectares = std::any_of(lines.begin() + 2, lines.end(),
                                        [](const std::string& line) { return line == "          ha"; });
  if (file == FileId::nfl && !has_hectares) return std::nullopt;
  network.bed.erase(file, 2);
  return Planted{file, 2, {"einheit-fehlt", "einheit-geerbt", "einheit-vorgabe"}};
}

Plan plant_wrong_magnitude(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick(network, dice, [&](const PlacedElement& one) {
    return one.type == 'N' &&
           network.bed.lines(FileId::nfl).at(one.unit_line - 1).find("qkm") != std::string::npos;
  });
  if (element == nullptr) return std::nullopt;
  return plant_field(network, *element, 11, dice.one_in(2) ? "95000" : ".0001", {"groessenordnung"});
}

// Tables.

Plan plant_missing_record(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKTV");
  network.bed.line(file_of(element->type), element->record_line) = "Bemerkung";
  return in_sys(*element, {"zeile-fehlt"});
}

Plan plant_misspelt_record(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKTV");
  // The names of the network end in 0.
  network.bed.put(file_of(element->type), element->record_line, 8, "7");
  return in_record(*element, {"zeile-ohne-element"});
}

Plan plant_shifted_record(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKTV");
  std::string& line = network.bed.line(file_of(element->type), element->record_line);
  if (dice.one_in(2)) {
    line.insert(0, 1, ' ');
  } else {
    line.erase(0, 1);
  }
  return in_record(*element, {"zeile-verrutscht"});
}

Plan plant_record_without_element(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKV");
  const FileId file = file_of(element->type);
  std::string line = network.bed.line(file, element->record_line);
  line.replace(4, 4, "9999");
  network.bed.insert(file, element->record_line + 1, line);
  return Planted{file, element->record_line + 1, {"zeile-ohne-element"}};
}

Plan plant_duplicate(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKV");
  const FileId file = file_of(element->type);
  const std::string line = network.bed.line(file, element->record_line);
  const std::size_t place = network.bed.lines(file).size() + 1;
  network.bed.insert(file, place, line);
  return Planted{file, place, {"zeile-doppelt", "zeile-doppelt-unbemerkt"}};
}

Plan plant_foreign_record(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "K");
  network.bed.insert(FileId::nfl, 2, "   " + element->name + "     12");
  return Planted{FileId::nfl, 2, {"zeile-fremd"}};
}

Plan plant_blank_station_line(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_station(network, dice);
  network.bed.insert(FileId::trs, element->station_line, "");
  return Planted{FileId::trs, element->station_line, {"station-fehlt"}};
}

Plan plant_missing_station_line(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_station(network, dice);
  const bool is_last = element->station_line == network.bed.lines(FileId::trs).size();
  network.bed.erase(FileId::trs, element->station_line);
  if (is_last) return in_record(*element, {"station-fehlt"});
  return Planted{FileId::trs, element->station_line, {"station-fremd"}};
}

Plan plant_missing_profile(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_station(network, dice);
  network.bed.line(FileId::trs, element->record_line).resize(18 + dice.roll(20), ' ');
  return Planted{FileId::trs, element->station_line, {"station-ungelesen"}};
}

Plan plant_odd_code(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "V");
  switch (dice.roll(4)) {
    case 0:
      return plant_field(network, *element, 11, "   4", {"kennziffer-ueber-3"});
    case 1:
      return plant_field(network, *element, 11, "   0", {"kennziffer-unter-1"});
    case 2:
      return plant_field(network, *element, 11, "    ", {"kennziffer-unter-1"});
    default:
      return plant_field(network, *element, 11, " 1.4", {"kennziffer-dezimal"});
  }
}

Plan plant_idle_share(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "V");
  return plant_field(network, *element, 11, dice.one_in(2) ? "   2  65.0" : "   3  35.0",
                     {"anteil-unbeachtet"});
}

Plan plant_rising_station(CleanNetwork& network, Dice& dice) {
  // A reach below a single other one.
  const PlacedElement* const element = pick(network, dice, [&](const PlacedElement& one) {
    const auto carries_water = [&](std::size_t i) {
      return std::string_view("TVBP").find(network.elements[i].type) != std::string_view::npos;
    };
    if (one.station_line == 0 || std::ranges::count_if(one.inflows, carries_water) != 1) return false;
    const PlacedElement& above = network.elements[*std::ranges::find_if(one.inflows, carries_water)];
    return above.type == 'T' && above.station_line != 0;
  });
  if (element == nullptr) return std::nullopt;
  network.bed.put(FileId::trs, element->station_line, 11, " 999.000");
  return Planted{FileId::trs, element->station_line, {"station-steigt"}};
}

// Network.

Plan plant_unknown_inflow(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "TVBP");
  network.bed.put(FileId::sys, element->sys_line, 48, "7");
  return in_sys(*element, {"zulauf-unbekannt"});
}

Plan plant_unknown_outflow(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_inner(network, dice);
  network.bed.put(FileId::sys, element->sys_line, 68, "7");
  return in_sys(*element, {"ablauf-unbekannt"});
}

Plan plant_exchanged_lines(CleanNetwork& network, Dice& dice) {
  // An element and the one that it drains into.
  const PlacedElement* const element = pick_inner(network, dice);
  const PlacedElement& below = network.elements[element->outflows.front()];
  std::swap(network.bed.line(FileId::sys, element->sys_line), network.bed.line(FileId::sys, below.sys_line));
  if (&below == &network.elements.back()) return Planted{FileId::sys, below.sys_line, {"hinter-ende"}};
  return Planted{FileId::sys, element->sys_line, {"zulauf-spaeter"}};
}

Plan plant_one_sided_link(CleanNetwork& network, Dice& dice) {
  // The outflow names an element further down that does not take it.
  const PlacedElement* const element = pick_inner(network, dice, "NKET");
  const PlacedElement& outlet = network.elements.back();
  if (&network.elements[element->outflows.front()] == &outlet) return std::nullopt;
  network.bed.put(FileId::sys, element->sys_line, 64, outlet.name);
  return in_sys(*element, {"ablauf-einseitig"});
}

Plan plant_loop(CleanNetwork& network, Dice& dice) {
  // A reach takes from the reach below it what that one gives back.
  const PlacedElement* const lower = pick(network, dice, [&](const PlacedElement& one) {
    return one.type == 'T' && &one != &network.elements.back() &&
           std::ranges::any_of(one.inflows, [&](std::size_t i) {
             return network.elements[i].type == 'T' && network.elements[i].inflows.size() < 3;
           });
  });
  if (lower == nullptr) return std::nullopt;
  const std::size_t i = *std::ranges::find_if(lower->inflows, [&](std::size_t k) {
    return network.elements[k].type == 'T' && network.elements[k].inflows.size() < 3;
  });
  const PlacedElement& upper = network.elements[i];
  network.bed.put(FileId::sys, lower->sys_line, 64, upper.name);
  network.bed.put(FileId::sys, upper.sys_line, 44 + 6 * upper.inflows.size(), lower->name);
  return in_sys(upper, {"kreis"});
}

Plan plant_missing_outflow(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_inner(network, dice);
  const bool is_structure = element->type == 'V' || element->type == 'B';
  if (!is_structure || dice.one_in(2)) {
    network.bed.put(FileId::sys, element->sys_line, 64, "     ");
    return in_sys(*element, {is_structure ? "erster-ablauf-fehlt" : "ablauf-fehlt"});
  }
  network.bed.line(FileId::sys, element->sys_line).resize(68);
  return in_sys(*element, {"zweiter-ablauf-fehlt"});
}

Plan plant_no_outflows(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "VB");
  network.bed.line(FileId::sys, element->sys_line).resize(60);
  return in_sys(*element, {element->type == 'B' ? "becken-ohne-ablauf" : "ablauf-fehlt"});
}

Plan plant_equal_outflows(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_code_1(network, dice);
  if (element == nullptr) return std::nullopt;
  network.bed.put(FileId::sys, element->sys_line, 70, field(network, FileId::sys, element->sys_line, 64, 5));
  return in_sys(*element, {"ablaeufe-gleich"});
}

Plan plant_missing_inflow(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "TVBP");
  network.bed.put(FileId::sys, element->sys_line, 44, std::string(17, ' '));
  return in_sys(*element, {"zulauf-fehlt"});
}

Plan plant_repeated_inflow(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element =
      pick(network, dice, [](const PlacedElement& one) { return one.inflows.size() == 2; });
  if (element == nullptr) return std::nullopt;
  network.bed.put(FileId::sys, element->sys_line, 56, network.elements[element->inflows.front()].name);
  return in_sys(*element, {"zulauf-doppelt"});
}

Plan plant_repeated_name(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_inner(network, dice);
  const std::string line = network.bed.line(FileId::sys, element->sys_line);
  network.bed.insert(FileId::sys, element->sys_line + 1, line);
  return Planted{FileId::sys, element->sys_line + 1, {"name-doppelt"}};
}

Plan plant_second_outflow(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_inner(network, dice, "NKETP");
  network.bed.put(FileId::sys, element->sys_line, 70, network.elements.back().name);
  return in_sys(*element, {"ablauf-zuviel"});
}

Plan plant_inflow_of_source(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "NKE");
  network.bed.put(FileId::sys, element->sys_line, 44, "N0010");
  return in_sys(*element, {"quelle-mit-zulauf"});
}

Plan plant_missing_tag(CleanNetwork& network, Dice& dice) {
  const PlacedElement* const element = pick_type(network, dice, "VB");
  network.bed.put(FileId::sys, element->sys_line, 8, "       ");
  return in_sys(*element, {"kennung-fehlt"});
}

Plan plant_missing_file(CleanNetwork& network, Dice& dice) {
  const char type = "NKTV"[dice.roll(4)];
  const auto first = std::ranges::find(network.elements, type, &PlacedElement::type);
  network.bed.remove(file_of(type));
  return in_sys(*first, {"datei-fehlt"});
}

// Surroundings.

Plan plant_suppression(CleanNetwork& network, Dice& dice) {
  network.bed.insert(FileId::suppression, 1, dice.one_in(2) ? "Y21" : "A03 W02");
  return Planted{FileId::suppression, 1, {"unterdrueckung"}};
}

Plan plant_old_files(CleanNetwork& network, Dice& dice) {
  switch (dice.roll(3)) {
    case 0:
      network.bed.surroundings.result = true;
      return Planted{FileId::result, 0, {"altes-ergebnis"}};
    case 1:
      network.bed.surroundings.protocol = true;
      return Planted{FileId::protocol, 0, {"altes-protokoll"}};
    default:
      network.bed.surroundings.result_link = "../anderswo.Akum";
      return Planted{FileId::result, 0, {"ergebnis-verweis"}};
  }
}

}  // namespace

const std::vector<Mistake>& mistakes() {
  static const std::vector<Mistake> list = {
      {"Text", "UTF-8 in an element line", plant_utf8_in_element},
      {"Text", "UTF-8 in a heading", plant_utf8_in_heading},
      {"Text", "UTF-16", plant_utf16},
      {"Text", "byte-order mark", plant_byte_order_mark},
      {"Text", "DOS umlaut", plant_dos_umlaut},
      {"Text", "tabs in an element line", plant_tab_in_element},
      {"Text", "non-breaking blank", plant_fixed_blank},
      {"Text", "control byte", plant_control_byte},
      {"Text", "shifted line", plant_shifted_line},
      {"Text", "shifted link", plant_shifted_link},
      {"Text", "lower case", plant_lower_case},
      {"Text", "Z", plant_z},
      {"Text", "digit for a letter", plant_digit_for_letter},
      {"Text", "gap in the inflows", plant_gap},
      {"Text", "ende, Ende", plant_end_in_lower_case},
      {"Text", "no ENDE", plant_no_end},
      {"Text", "element behind ENDE", plant_element_behind_end},
      {"Text", "no element", plant_no_elements},
      {"Text", "mixed line ends", plant_mixed_ends},
      {"Text", "doubled line end", plant_doubled_end},
      {"Text", "lone CR", plant_lone_cr},
      {"Text", "name of six characters", plant_overhang},
      {"Zahlen", "comma in an area", plant_comma_in_area},
      {"Zahlen", "comma in a share", plant_comma_in_share},
      {"Zahlen", "comma in a station", plant_comma_in_station},
      {"Zahlen", "text in an area", plant_text_in_area},
      {"Zahlen", "text in a share", plant_text_in_share},
      {"Zahlen", "text in a station", plant_text_in_station},
      {"Zahlen", "two numbers", plant_two_numbers},
      {"Zahlen", "two stations", plant_two_stations},
      {"Zahlen", "blank in an area", plant_blank_in_area},
      {"Zahlen", "area one column off", plant_shifted_area},
      {"Zahlen", "share one column off", plant_shifted_share},
      {"Zahlen", "code one column off", plant_shifted_code},
      {"Zahlen", "station one column off", plant_shifted_station},
      {"Zahlen", "area in unread columns", plant_number_elsewhere},
      {"Zahlen", "too many digits", plant_too_many_digits},
      {"Zahlen", "negative number", plant_negative},
      {"Zahlen", "odd share", plant_odd_share},
      {"Zahlen", "sealing in per cent", plant_odd_sealing},
      {"Zahlen", "empty area", plant_blank_area},
      {"Zahlen", "out of range", plant_out_of_range},
      {"Einheiten", "word that is no unit", plant_wrong_unit_word},
      {"Einheiten", "unit in other columns", plant_misplaced_unit},
      {"Einheiten", "remark that sets a unit", plant_unit_in_remark},
      {"Einheiten", "no first unit", plant_missing_first_unit},
      {"Einheiten", "order of magnitude", plant_wrong_magnitude},
      {"Tabellen", "element without a line", plant_missing_record},
      {"Tabellen", "misspelt name", plant_misspelt_record},
      {"Tabellen", "shifted line", plant_shifted_record},
      {"Tabellen", "line without an element", plant_record_without_element},
      {"Tabellen", "duplicate", plant_duplicate},
      {"Tabellen", "line in another file", plant_foreign_record},
      {"Tabellen", "blank station line", plant_blank_station_line},
      {"Tabellen", "no station line", plant_missing_station_line},
      {"Tabellen", "no profile", plant_missing_profile},
      {"Tabellen", "odd code", plant_odd_code},
      {"Tabellen", "idle share", plant_idle_share},
      {"Tabellen", "rising station", plant_rising_station},
      {"Netz", "unknown inflow", plant_unknown_inflow},
      {"Netz", "unknown outflow", plant_unknown_outflow},
      {"Netz", "exchanged lines", plant_exchanged_lines},
      {"Netz", "one-sided link", plant_one_sided_link},
      {"Netz", "loop", plant_loop},
      {"Netz", "missing outflow", plant_missing_outflow},
      {"Netz", "no outflows", plant_no_outflows},
      {"Netz", "equal outflows", plant_equal_outflows},
      {"Netz", "missing inflow", plant_missing_inflow},
      {"Netz", "repeated inflow", plant_repeated_inflow},
      {"Netz", "repeated name", plant_repeated_name},
      {"Netz", "second outflow", plant_second_outflow},
      {"Netz", "inflow of a source", plant_inflow_of_source},
      {"Netz", "missing tag", plant_missing_tag},
      {"Netz", "missing file", plant_missing_file},
      {"Umgebung", "suppression list", plant_suppression},
      {"Umgebung", "old files", plant_old_files},
  };
  return list;
}

}  // namespace schau_test
