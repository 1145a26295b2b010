// What a person does not see in a text: its encoding, invisible characters, line ends.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "KV_Schau/network/values.h"
#include "KV_Schau/rules/rule.h"
#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::rules {
namespace {

using findings::Severity;
using variant::Encoding;
using variant::FileId;
using variant::LineEnd;
using variant::Place;
using variant::Span;
using variant::TextFile;
namespace data = variant::data_columns;
namespace sys = variant::sys_columns;

constexpr std::string_view save_as = "Datei in Windows-1252 (\"ANSI\") speichern";

std::uint32_t width_of(FileId file) {
  return file == FileId::sys ? variant::sys_line_width : data::line_width;
}

const std::vector<std::uint32_t>& high_lines(const Context& context, FileId file) {
  return context.high_lines[static_cast<std::size_t>(file)];
}

const std::vector<std::uint32_t>& unseen_lines(const Context& context, FileId file) {
  return context.unseen_lines[static_cast<std::size_t>(file)];
}

Place place_at(FileId file, std::uint32_t line, std::size_t offset, std::size_t length) {
  return {file, line, static_cast<std::uint32_t>(offset) + 1, static_cast<std::uint32_t>(length)};
}

// "(und 3 weitere Zeilen)"; nothing for 0.
std::string further_lines(std::size_t further) {
  if (further == 0) return "";
  return further == 1 ? " (und eine weitere Zeile)" : fmt::format(" (und {} weitere Zeilen)", further);
}

// Encodings.

void check_utf16(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    if (context.variant.file(file).encoding() != Encoding::utf_16) continue;
    sink.add({file, 0}, "Die Datei ist in UTF-16 geschrieben; KV_Akum erkennt keine ihrer Zeilen",
             std::string(save_as));
  }
}

void check_byte_order_mark(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    const std::size_t length = variant::byte_order_mark_length(context.variant.file(file).bytes());
    if (length == 0) continue;
    sink.add(place_at(file, 1, 0, length),
             "Die Datei beginnt mit einer Bytereihenfolge-Marke (UTF-8); sie schiebt die erste Zeile um drei "
             "Spalten",
             std::string(save_as));
  }
}

Place first_utf8_place(FileId file, std::uint32_t number, std::string_view line) {
  const auto is_high = [](char character) { return static_cast<unsigned char>(character) >= 0x80; };
  const auto offset = static_cast<std::size_t>(std::ranges::find_if(line, is_high) - line.begin());
  return place_at(file, number, offset, variant::first_utf8_character(line.substr(offset)).size);
}

// True when the run would read something else from the line if its characters had one byte each.
bool is_shifted_system_line(const Context& context, std::uint32_t number, std::string_view line) {
  if (context.variant.has_end && number > context.variant.element_lines.back()) return false;
  const std::string meant = variant::utf8_to_windows_1252(line);
  if (!variant::is_element_line(meant)) return false;
  return !variant::is_element_line(line) || variant::columns(line, sys::name.first, sys::last_read) !=
                                                variant::columns(meant, sys::name.first, sys::last_read);
}

bool is_known_name(const Context& context, variant::NameKey name) {
  return context.variant.elements.first(name) != 0 || context.near_elements.by_name.contains(name);
}

bool is_shifted_record(const Context& context, FileId file, std::string_view line) {
  const std::string meant = variant::utf8_to_windows_1252(line);
  if (!is_known_name(context, variant::name_at(meant, data::name.first))) return false;
  const std::uint32_t last = file == FileId::trs ? data::station.last : data::sealing.last;
  if (variant::columns(line, data::name.first, last) != variant::columns(meant, data::name.first, last))
    return true;
  return file == FileId::trs && network::is_kind_2(line) != network::is_kind_2(meant);
}

bool is_shifted_by_utf8(const Context& context, FileId file, std::uint32_t number, std::string_view line) {
  return file == FileId::sys ? is_shifted_system_line(context, number, line)
                             : is_shifted_record(context, file, line);
}

void check_shifting_utf8(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    if (!is_readable(context, file)) continue;
    for (const std::uint32_t number : high_lines(context, file)) {
      const std::string_view line = context.variant.file(file).line(number).substr(0, width_of(file));
      if (!variant::has_utf8_characters(line) || !is_shifted_by_utf8(context, file, number, line)) continue;
      const Place place = first_utf8_place(file, number, line);
      const std::string character =
          variant::shown(line.substr(place.column - 1, place.length), Encoding::utf_8);
      sink.add(place,
               fmt::format("UTF-8: \"{}\" belegt für KV_Akum {} Spalten und verschiebt, was dahinter steht",
                           character, place.length),
               std::string(save_as));
    }
  }
}

void check_utf8(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    if (!is_readable(context, file)) continue;
    std::optional<Place> first;
    std::size_t further = 0;
    for (const std::uint32_t number : high_lines(context, file)) {
      const std::string_view line = context.variant.file(file).line(number).substr(0, width_of(file));
      if (!variant::has_utf8_characters(line) || is_shifted_by_utf8(context, file, number, line)) continue;
      further += first ? 1 : 0;
      if (!first) first = first_utf8_place(file, number, line);
    }
    if (!first) continue;
    sink.add(*first, "UTF-8 statt Windows-1252, hier noch ohne Folgen" + further_lines(further),
             std::string(save_as));
  }
}

bool is_letter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

// In Windows-1252 the bytes are quotation marks and rare letters, which stand otherwise: a small umlaut is
// preceded by a letter, a capital one followed by one.
bool is_dos_umlaut(std::string_view line, std::size_t place) {
  const bool behind_letter = place > 0 && is_letter(line[place - 1]);
  const bool before_letter = place + 1 < line.size() && is_letter(line[place + 1]);
  switch (static_cast<unsigned char>(line[place])) {
    case 0x81:  // ü
      return true;
    case 0x84:  // ä
    case 0x94:  // ö
      return behind_letter && before_letter;
    case 0xE1:  // ß
      return behind_letter;
    case 0x8E:  // Ä
    case 0x99:  // Ö
    case 0x9A:  // Ü
      return before_letter && !behind_letter;
    default:
      return false;
  }
}

std::optional<std::size_t> first_dos_umlaut(std::string_view line) {
  for (std::size_t place = 0; place < line.size(); ++place) {
    if (is_dos_umlaut(line, place)) return place;
  }
  return std::nullopt;
}

void check_dos_umlauts(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    if (context.variant.file(file).encoding() != Encoding::windows_1252) continue;
    std::optional<Place> first;
    std::size_t further = 0;
    for (const std::uint32_t number : high_lines(context, file)) {
      const std::string_view line = context.variant.file(file).line(number).substr(0, width_of(file));
      const std::optional<std::size_t> offset = first_dos_umlaut(line);
      if (!offset) continue;
      further += first ? 1 : 0;
      if (!first) first = place_at(file, number, *offset, 1);
    }
    if (!first) continue;
    sink.add(*first, "Umlaut aus dem alten DOS-Zeichensatz" + further_lines(further), std::string(save_as));
  }
}

// Characters that nobody sees.

enum class Unseen { tab, blank, control };

std::optional<Unseen> unseen(char character) {
  const auto byte = static_cast<unsigned char>(character);
  if (byte == '\t') return Unseen::tab;
  if (byte == 0xA0) return Unseen::blank;
  if (byte < 0x20 || byte == 0x7F) return Unseen::control;
  return std::nullopt;
}

std::string_view words_for(Unseen kind) {
  switch (kind) {
    case Unseen::tab:
      return "Tabulator";
    case Unseen::blank:
      return "Geschütztes Leerzeichen";
    default:
      return "Steuerzeichen";
  }
}

std::string_view pronoun_for(Unseen kind) {
  return kind == Unseen::tab ? "ihn" : "es";
}

// The columns that the run takes from a line.
class ReadColumns {
 public:
  ReadColumns(const Context& context, FileId file, std::uint32_t number) {
    const TextFile& text = context.variant.file(file);
    const std::string_view line = text.line(number);
    if (file == FileId::sys) {
      if (variant::is_element_line(line.substr(0, variant::sys_line_width))) take_element();
      return;
    }
    const bool is_record = is_record_of(context, file, line);
    if (is_record) take_record(file);
    const bool may_be_station = file == FileId::trs && !is_record && number > 1;
    if (may_be_station && is_kind_2_record(context, text.line(number - 1))) add(data::station);
  }

  [[nodiscard]] bool contain(std::uint32_t column) const {
    const auto covers = [column](Span span) { return span.first <= column && column <= span.last; };
    return std::ranges::any_of(std::span(spans_).first(count_), covers);
  }

 private:
  static bool is_record_of(const Context& context, FileId file, std::string_view line) {
    const Element element = context.variant.elements.first(variant::name_at(line, data::name.first));
    return element != 0 && context.variant.type(element) == variant::type_of_file(file);
  }
  static bool is_kind_2_record(const Context& context, std::string_view line) {
    return is_record_of(context, FileId::trs, line) && network::is_kind_2(line);
  }

  void add(Span span) { spans_[count_++] = span; }

  void take_element() {
    add(sys::name);
    for (const Span span : sys::inflow) add(span);
    for (const Span span : sys::outflow) add(span);
  }

  void take_record(FileId file) {
    add(data::name);
    if (file == FileId::ver) {
      add(data::code);
      add(data::share);
    } else if (file == FileId::trs) {
      add(data::station);
      add(data::profile);
    } else {
      add(data::area);
      add(data::sealing);
    }
  }

  std::array<Span, 6> spans_{};
  std::size_t count_ = 0;
};

// A byte of a longer character in UTF-8 is no blank.
bool is_counted(const TextFile& file, Unseen kind) {
  return kind != Unseen::blank || file.encoding() == Encoding::windows_1252;
}

// In the area fields the run reports what is no number; that has a rule of its own.
bool is_reported_as_number(FileId file, std::uint32_t column) {
  const bool is_area_file = file == FileId::nfl || file == FileId::kfl;
  return is_area_file && column >= data::area.first && column <= data::sealing.last;
}

std::optional<Place> first_unseen(const Context& context, FileId file, std::uint32_t number, Unseen wanted,
                                  bool in_read_columns) {
  const TextFile& text = context.variant.file(file);
  const std::string_view line = text.line(number).substr(0, width_of(file));
  const ReadColumns read(context, file, number);
  for (std::uint32_t column = 1; column <= line.size(); ++column) {
    const std::optional<Unseen> kind = unseen(line[column - 1]);
    if (kind != wanted || !is_counted(text, wanted)) continue;
    if (read.contain(column) != in_read_columns) continue;
    if (in_read_columns && is_reported_as_number(file, column)) continue;
    return Place{file, number, column, 1};
  }
  return std::nullopt;
}

void check_unseen_in_fields(const Context& context, Sink& sink, Unseen kind) {
  for (const FileId file : input_files) {
    if (!is_readable(context, file)) continue;
    for (const std::uint32_t number : unseen_lines(context, file)) {
      const std::optional<Place> place = first_unseen(context, file, number, kind, true);
      if (!place) continue;
      sink.add(*place,
               fmt::format("{} in Spalten, die gelesen werden; KV_Akum zählt {} als ein Zeichen des Feldes",
                           words_for(kind), pronoun_for(kind)));
    }
  }
}

void check_tabs(const Context& context, Sink& sink) {
  check_unseen_in_fields(context, sink, Unseen::tab);
}
void check_fixed_blanks(const Context& context, Sink& sink) {
  check_unseen_in_fields(context, sink, Unseen::blank);
}
void check_controls(const Context& context, Sink& sink) {
  check_unseen_in_fields(context, sink, Unseen::control);
}

bool is_near_element(const Context& context, FileId file, std::uint32_t number) {
  return file == FileId::sys &&
         std::ranges::binary_search(context.near_elements.list, number, {}, &NearElement::line);
}

void check_unseen_elsewhere(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    if (!is_readable(context, file)) continue;
    for (const Unseen kind : {Unseen::tab, Unseen::blank, Unseen::control}) {
      std::optional<Place> first;
      std::size_t further = 0;
      for (const std::uint32_t number : unseen_lines(context, file)) {
        if (is_near_element(context, file, number)) continue;
        const std::optional<Place> place = first_unseen(context, file, number, kind, false);
        if (!place) continue;
        further += first ? 1 : 0;
        if (!first) first = place;
      }
      if (!first) continue;
      sink.add(*first, fmt::format("{} außerhalb der gelesenen Spalten{}; KV_Akum zählt {} als ein Zeichen",
                                   words_for(kind), further_lines(further), pronoun_for(kind)));
    }
  }
}

// Line ends.

Place end_of_line(const TextFile& text, FileId file, std::uint32_t number) {
  return place_at(file, number, text.line(number).size(), 1);
}

bool is_doubled_end(const TextFile& text, std::uint32_t number) {
  return text.line_end(number) == LineEnd::cr && number < text.line_count() &&
         text.line(number + 1).empty() && text.line_end(number + 1) == LineEnd::crlf;
}

bool has_mostly_cr(const TextFile& text) {
  return text.count_of(LineEnd::cr) > text.count_of(LineEnd::lf) + text.count_of(LineEnd::crlf);
}

void check_mixed_ends(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    if (!is_readable(context, file)) continue;
    const TextFile& text = context.variant.file(file);
    const std::uint32_t lf = text.count_of(LineEnd::lf);
    const std::uint32_t crlf = text.count_of(LineEnd::crlf);
    const bool mixed = has_mostly_cr(text) ? lf + crlf > 0 : lf > 0 && crlf > 0;
    if (!mixed) continue;
    const LineEnd rare = lf == 0 || (crlf > 0 && crlf < lf) ? LineEnd::crlf : LineEnd::lf;
    std::uint32_t number = 1;
    while (text.line_end(number) != rare) ++number;
    sink.add(end_of_line(text, file, number),
             fmt::format("Gemischte Zeilenenden: {} mit LF, {} mit CR LF, {} mit CR; KV_Akum liest alle drei",
                         lf, crlf, text.count_of(LineEnd::cr)));
  }
}

void check_doubled_ends(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    if (!is_readable(context, file)) continue;
    const TextFile& text = context.variant.file(file);
    if (text.count_of(LineEnd::cr) == 0 || text.count_of(LineEnd::crlf) == 0) continue;
    std::uint32_t first = 0;
    std::size_t further = 0;
    for (std::uint32_t number = 1; number <= text.line_count(); ++number) {
      if (!is_doubled_end(text, number)) continue;
      further += first == 0 ? 0 : 1;
      if (first == 0) first = number;
    }
    if (first == 0) continue;
    sink.add(end_of_line(text, file, first),
             fmt::format("Doppeltes Zeilenende CR CR LF{}: KV_Akum liest dahinter eine leere Zeile",
                         further_lines(further)));
  }
}

void check_lone_cr(const Context& context, Sink& sink) {
  for (const FileId file : input_files) {
    if (!is_readable(context, file)) continue;
    const TextFile& text = context.variant.file(file);
    if (text.count_of(LineEnd::cr) == 0 || has_mostly_cr(text)) continue;
    for (std::uint32_t number = 1; number <= text.line_count(); ++number) {
      if (text.line_end(number) != LineEnd::cr || is_doubled_end(text, number)) continue;
      // The last line of a file may have lost its LF.
      if (number == text.line_count()) continue;
      sink.add(end_of_line(text, file, number), "Ein einzelnes CR; KV_Akum lässt die Zeile hier enden");
    }
  }
}

constexpr std::array<CheckedRule, 12> rules = {{
    {{"utf-16", Severity::error, "Datei in UTF-16: KV_Akum erkennt keine Zeile darin"}, check_utf16},
    {{"bytereihenfolge-marke", Severity::note,
      "Bytereihenfolge-Marke am Anfang: verschiebt die erste Zeile um drei Spalten"},
     check_byte_order_mark},
    {{"utf-8-verschiebt", Severity::error,
      "Zeichen in UTF-8 vor oder in gelesenen Spalten: KV_Akum überliest die Zeile oder liest sie versetzt"},
     check_shifting_utf8},
    {{"utf-8", Severity::note, "Zeichen in UTF-8 an Stellen, an denen sie (noch) nicht stören"}, check_utf8},
    {{"dos-umlaut", Severity::note,
      "Umlaut aus dem DOS-Zeichensatz: erscheint in Meldungen als anderes Zeichen"},
     check_dos_umlauts},
    {{"tabulator", Severity::warning,
      "Tabulator in gelesenen Spalten: zählt als ein Zeichen, nicht als Leerraum"},
     check_tabs},
    {{"geschuetztes-leerzeichen", Severity::warning,
      "Geschütztes Leerzeichen in gelesenen Spalten: zählt nicht als Leerzeichen"},
     check_fixed_blanks},
    {{"steuerzeichen", Severity::warning, "Steuerzeichen in gelesenen Spalten"}, check_controls},
    {{"unsichtbares-zeichen", Severity::note,
      "Tabulator, geschütztes Leerzeichen oder Steuerzeichen außerhalb der gelesenen Spalten"},
     check_unseen_elsewhere},
    {{"zeilenenden-gemischt", Severity::note, "Zeilenenden verschiedener Art in einer Datei"},
     check_mixed_ends},
    {{"zeilenende-doppelt", Severity::warning,
      "Zeilenende CR CR LF: KV_Akum liest eine leere Zeile; hinter einem Transportelement der Art 2 gibt das "
      "die "
      "Station 0.000"},
     check_doubled_ends},
    {{"zeilenende-cr", Severity::warning,
      "Einzelnes CR zwischen anderen Zeilenenden: KV_Akum trennt die Zeile dort"},
     check_lone_cr},
}};

}  // namespace

std::span<const CheckedRule> text_rules() {
  return rules;
}

}  // namespace schau::rules
