// Units of areas: words that set one, words that only look so, and where a unit comes from.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "KV_Schau/rules/rule.h"
#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::rules {
namespace {

using findings::Severity;
using variant::AreaUnit;
using variant::FileId;
using variant::Place;
using variant::UnitLine;
namespace columns = variant::data_columns;

constexpr std::array<FileId, 2> area_files = {FileId::nfl, FileId::kfl};

const std::vector<UnitLine>& unit_lines(const Context& context, FileId file) {
  return file == FileId::nfl ? context.records.natural_units : context.records.canalised_units;
}

// The unit with which the run begins a file.
AreaUnit first_unit(const Context& context, FileId file) {
  return file == FileId::nfl ? AreaUnit::qkm : context.records.inherited_unit;
}

// The unit that a reader of the file takes to be in force behind a line.
AreaUnit unit_behind(const Context& context, FileId file, std::uint32_t line) {
  const std::vector<UnitLine>& lines = unit_lines(context, file);
  const auto behind = std::ranges::upper_bound(lines, line, {}, &UnitLine::line);
  return behind == lines.begin() ? first_unit(context, file) : std::prev(behind)->unit;
}

// Words.

std::string lower(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return result;
}

std::string_view without_brackets(std::string_view word) {
  constexpr std::string_view around = "[](){}:;,.";
  const std::size_t first = word.find_first_not_of(around);
  if (first == std::string_view::npos) return {};
  return word.substr(first, word.find_last_not_of(around) - first + 1);
}

// The unit that a word means to a person, in whatever spelling.
std::optional<AreaUnit> unit_meant_by(std::string_view word) {
  std::string text = lower(without_brackets(word));
  if (variant::has_utf8_characters(text)) text = variant::utf8_to_windows_1252(text);
  for (const std::string_view spelling : {"qkm", "km2", "km\xB2", "km^2", "km**2"}) {
    if (text == spelling) return AreaUnit::qkm;
  }
  for (const std::string_view spelling : {"ha", "hektar"}) {
    if (text == spelling) return AreaUnit::ha;
  }
  for (const std::string_view spelling : {"qm", "m2", "m\xB2", "m^2", "m**2"}) {
    if (text == spelling) return AreaUnit::qm;
  }
  return std::nullopt;
}

struct Word {
  std::string_view text;
  std::uint32_t column = 0;
};

// The word over the unit columns: the one that begins in them, or that reaches into them.
std::optional<Word> word_over_unit_columns(std::string_view line) {
  const std::size_t first = line.find_first_not_of(' ', columns::unit.first - 1);
  if (first >= columns::unit.last) return std::nullopt;
  std::size_t begin = first;
  while (begin > 0 && line[begin - 1] != ' ') --begin;
  const std::size_t end = std::min(line.find(' ', first), line.size());
  return Word{line.substr(begin, end - begin), static_cast<std::uint32_t>(begin) + 1};
}

// The only word of a line.
std::optional<Word> only_word(std::string_view line) {
  const std::string_view text = variant::without_blanks(line);
  if (text.empty() || text.find(' ') != std::string_view::npos) return std::nullopt;
  return Word{text, static_cast<std::uint32_t>(text.data() - line.data()) + 1};
}

std::string shown_word(const Context& context, FileId file, const Word& word) {
  return variant::shown(word.text, context.variant.file(file).encoding());
}

Place place_of(FileId file, std::uint32_t line, const Word& word) {
  return {file, line, word.column, static_cast<std::uint32_t>(word.text.size())};
}

// A line that names a unit for people, but sets none for the run.
struct IneffectiveUnit {
  FileId file = FileId::nfl;
  std::uint32_t line = 0;
  Word word;
  AreaUnit meant = AreaUnit::qkm;
  bool is_word = false;  ///< the right word, but not within its columns
  bool matters = false;  ///< another unit is in force
};

std::optional<IneffectiveUnit> ineffective_unit(const Context& context, FileId file, std::uint32_t number) {
  const std::string_view line = context.variant.file(file).line(number).substr(0, columns::line_width);
  if (variant::unit_set_by(line)) return std::nullopt;
  std::optional<Word> word = word_over_unit_columns(line);
  if (!word) word = only_word(line);
  if (!word) return std::nullopt;
  const std::optional<AreaUnit> meant = unit_meant_by(word->text);
  if (!meant) return std::nullopt;
  const bool is_word = without_brackets(word->text) == variant::word_of(*meant);
  return IneffectiveUnit{file, number, *word, *meant, is_word, unit_behind(context, file, number) != *meant};
}

template <class Report>
void for_each_ineffective_unit(const Context& context, const Report& report) {
  for (const FileId file : area_files) {
    if (!is_asked_for(context, file) || !is_readable(context, file)) continue;
    for (const std::uint32_t number : context.variant.other_lines_of(file)) {
      const std::optional<IneffectiveUnit> unit = ineffective_unit(context, file, number);
      if (unit) report(*unit);
    }
  }
}

void check_unknown_units(const Context& context, Sink& sink) {
  for_each_ineffective_unit(context, [&](const IneffectiveUnit& unit) {
    if (unit.is_word || !unit.matters) return;
    sink.add(place_of(unit.file, unit.line, unit.word),
             fmt::format("\"{}\" ist für KV_Akum kein Einheitenwort; es gilt weiter {}",
                         shown_word(context, unit.file, unit.word),
                         variant::word_of(unit_behind(context, unit.file, unit.line))),
             fmt::format("gemeint: {}", variant::word_of(unit.meant)));
  });
}

void check_misplaced_units(const Context& context, Sink& sink) {
  for_each_ineffective_unit(context, [&](const IneffectiveUnit& unit) {
    if (!unit.is_word || !unit.matters) return;
    sink.add(place_of(unit.file, unit.line, unit.word),
             fmt::format("Die Einheit \"{}\" steht nicht ganz in den Spalten 11 bis 15; es gilt weiter {}",
                         shown_word(context, unit.file, unit.word),
                         variant::word_of(unit_behind(context, unit.file, unit.line))));
  });
}

void check_harmless_units(const Context& context, Sink& sink) {
  for_each_ineffective_unit(context, [&](const IneffectiveUnit& unit) {
    if (unit.matters) return;
    sink.add(place_of(unit.file, unit.line, unit.word),
             fmt::format("\"{}\" setzt keine Einheit; {} gilt hier ohnehin",
                         shown_word(context, unit.file, unit.word), variant::word_of(unit.meant)));
  });
}

// Remarks that set a unit.

// A unit line as it is meant: the word alone in its columns, or as a word of its own in a heading.
bool is_meant_as_unit(std::string_view line, AreaUnit unit) {
  const std::string_view before = variant::columns(line, 1, columns::unit.first - 1);
  const std::string_view field = variant::without_blanks(columns::unit.of(line));
  if (variant::is_blank(before) && without_brackets(field) == variant::word_of(unit)) return true;
  const std::optional<Word> word = word_over_unit_columns(line);
  const bool is_heading = line.find_first_of("0123456789") == std::string_view::npos;
  return is_heading && word && without_brackets(word->text) == variant::word_of(unit);
}

bool is_record(const Context& context, FileId file, std::string_view line) {
  const Element element = context.variant.elements.first(variant::name_at(line, columns::name.first));
  return element != 0 && context.variant.type(element) == variant::type_of_file(file);
}

void check_units_of_remarks(const Context& context, Sink& sink) {
  for (const FileId file : area_files) {
    if (!is_asked_for(context, file) || !is_readable(context, file)) continue;
    AreaUnit before = first_unit(context, file);
    for (const UnitLine& unit_line : unit_lines(context, file)) {
      const std::string_view line =
          context.variant.file(file).line(unit_line.line).substr(0, columns::line_width);
      const bool changes = unit_line.unit != before;
      const AreaUnit former = before;
      before = unit_line.unit;
      if (!changes || is_meant_as_unit(line, unit_line.unit) || is_record(context, file, line)) continue;
      const std::string_view word = variant::word_of(unit_line.unit);
      const std::size_t offset = line.find(word, columns::unit.first - 1);
      sink.add(
          {file, unit_line.line, static_cast<std::uint32_t>(offset) + 1,
           static_cast<std::uint32_t>(word.size())},
          fmt::format("\"{}\" in den Spalten 11 bis 15 dieser Bemerkung setzt die Einheit {}; davor galt {}",
                      word, word, variant::word_of(former)));
    }
  }
}

// Areas before the first unit of their file.

struct EarlyAreas {
  Element first = 0;
  std::size_t others = 0;
};

EarlyAreas areas_before_unit(const Context& context, FileId file) {
  const std::vector<UnitLine>& lines = unit_lines(context, file);
  const std::uint32_t first_unit_line =
      lines.empty() ? context.variant.file(file).line_count() + 1 : lines.front().line;
  EarlyAreas areas;
  for (Element i = 1; i <= context.network.count(); ++i) {
    if (context.variant.type(i) != variant::type_of_file(file)) continue;
    const std::uint32_t line = context.records.line[i];
    if (line == 0 || line >= first_unit_line) continue;
    areas.others += areas.first == 0 ? 0 : 1;
    if (areas.first == 0 || line < context.records.line[areas.first]) areas.first = i;
  }
  return areas;
}

std::string others_words(std::size_t others) {
  if (others == 0) return "";
  return others == 1 ? " und einer weiteren Fläche" : fmt::format(" und {} weiteren Flächen", others);
}

Place place_of_area(const Context& context, FileId file, Element element) {
  return {file, context.records.line[element], columns::area.first, columns::area.width()};
}

void check_areas_before_unit(const Context& context, Sink& sink) {
  for (const FileId file : area_files) {
    const std::vector<UnitLine>& lines = unit_lines(context, file);
    if (lines.empty() || first_unit(context, file) != AreaUnit::qkm || lines.front().unit == AreaUnit::qkm)
      continue;
    const EarlyAreas areas = areas_before_unit(context, file);
    if (areas.first == 0) continue;
    sink.add(place_of_area(context, file, areas.first),
             fmt::format("Vor {}{} steht noch keine Einheit; KV_Akum nimmt qkm",
                         name_of(context, areas.first), others_words(areas.others)),
             fmt::format("die erste Einheit ({}) steht in Zeile {}", variant::word_of(lines.front().unit),
                         lines.front().line));
  }
}

void check_default_unit(const Context& context, Sink& sink) {
  for (const FileId file : area_files) {
    const FileId other = file == FileId::nfl ? FileId::kfl : FileId::nfl;
    const bool has_unit = !unit_lines(context, file).empty() || first_unit(context, file) != AreaUnit::qkm;
    if (has_unit || unit_lines(context, other).empty() || !is_asked_for(context, other)) continue;
    const EarlyAreas areas = areas_before_unit(context, file);
    if (areas.first == 0) continue;
    sink.add(place_of_area(context, file, areas.first),
             fmt::format("In dieser Datei steht keine Einheit, anders als in {}; KV_Akum nimmt qkm",
                         context.variant.file(other).shown()));
  }
}

void check_inherited_unit(const Context& context, Sink& sink) {
  const AreaUnit unit = context.records.inherited_unit;
  if (unit == AreaUnit::qkm || !is_readable(context, FileId::kfl)) return;
  const EarlyAreas areas = areas_before_unit(context, FileId::kfl);
  if (areas.first == 0) return;
  sink.add(place_of_area(context, FileId::kfl, areas.first),
           fmt::format("Vor {}{} steht noch keine Einheit; KV_Akum nimmt {}, die letzte Einheit der Datei {}",
                       name_of(context, areas.first), others_words(areas.others), variant::word_of(unit),
                       context.variant.file(FileId::nfl).shown()));
}

void check_unit_by_search(const Context& context, Sink& sink) {
  for (Element i = 1; i <= context.network.count(); ++i) {
    const std::optional<FileId> file = variant::data_file_of(context.variant.type(i));
    if (context.records.line[i] == 0 || (file != FileId::nfl && file != FileId::kfl)) continue;
    const AreaUnit shown = unit_behind(context, *file, context.records.line[i]);
    if (shown == context.records.unit[i]) continue;
    sink.add(place_of_area(context, *file, i),
             fmt::format("Für {} gilt {}, nicht {}: KV_Akum sucht die Zeilen in der Reihenfolge des Systems, "
                         "und die letzte "
                         "Einheit auf diesem Weg ist {}",
                         name_of(context, i), variant::word_of(context.records.unit[i]),
                         variant::word_of(shown), variant::word_of(context.records.unit[i])),
             "die Zeilen in die Reihenfolge der Systemdatei bringen");
  }
}

// Areas far off the others.

// The median of the areas of a type, km²; 0 when there are too few to tell.
double usual_area(const Context& context, char type) {
  constexpr std::size_t fewest = 5;
  std::vector<double> areas;
  for (Element i = 1; i <= context.network.count(); ++i) {
    const double area = context.taken[i].value;
    if (context.variant.type(i) == type && area > 0.0) areas.push_back(area);
  }
  if (areas.size() < fewest) return 0.0;
  const auto middle = areas.begin() + static_cast<std::ptrdiff_t>(areas.size() / 2);
  std::nth_element(areas.begin(), middle, areas.end());
  return *middle;
}

// To two significant digits.
double rounded(double value) {
  const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1.0);
  return std::round(value / unit) * unit;
}

// Catchments differ by three powers of ten downwards and two upwards in real networks.
void check_magnitude(const Context& context, Sink& sink) {
  constexpr double far_above = 1e3;
  constexpr double far_below = 1e-4;
  for (const FileId file : area_files) {
    const char type = variant::type_of_file(file);
    const double usual = usual_area(context, type);
    if (usual == 0.0) continue;
    for (Element i = 1; i <= context.network.count(); ++i) {
      const double area = context.taken[i].value;
      if (context.variant.type(i) != type || area <= 0.0) continue;
      if (area < usual * far_above && area > usual * far_below) continue;
      sink.add(place_of_area(context, file, i),
               fmt::format("{} hat {} km² (Einheit {}), die meisten Flächen dieser Datei um {} km²",
                           name_of(context, i), number_words(area), variant::word_of(context.records.unit[i]),
                           number_words(rounded(usual))),
               "stimmt die Einheit?");
    }
  }
}

constexpr std::array<CheckedRule, 9> rules = {{
    {{"einheit-unbekannt", Severity::error,
      "Wort, das eine Einheit sein soll (Ha, km2, m²), aber keine setzt: die alte gilt weiter"},
     check_unknown_units},
    {{"einheit-verrutscht", Severity::error, "Einheit neben den Spalten 11 bis 15: die alte gilt weiter"},
     check_misplaced_units},
    {{"einheit-wirkungslos", Severity::note, "Wort, das keine Einheit setzt, wo die gemeinte ohnehin gilt"},
     check_harmless_units},
    {{"einheit-in-bemerkung", Severity::warning,
      "Bemerkung, deren Spalten 11 bis 15 ein Einheitenwort enthalten: sie setzt die Einheit"},
     check_units_of_remarks},
    {{"einheit-fehlt", Severity::warning, "Flächen vor der ersten Einheit ihrer Datei: gelten als km²"},
     check_areas_before_unit},
    {{"einheit-geerbt", Severity::warning,
      "Kanalisierte Flächen ohne eigene Einheit: die letzte der .nfl gilt weiter"},
     check_inherited_unit},
    {{"einheit-vorgabe", Severity::note,
      "Datei ohne Einheit, während die andere Flächendatei Einheiten hat: gilt als km²"},
     check_default_unit},
    {{"einheit-durch-suche", Severity::warning,
      "Fläche, für die wegen der Reihenfolge der Zeilen eine andere Einheit gilt, als über ihr steht"},
     check_unit_by_search},
    {{"groessenordnung", Severity::warning,
      "Fläche, die um mehrere Größenordnungen von den übrigen abweicht"},
     check_magnitude},
}};

}  // namespace

std::span<const CheckedRule> unit_rules() {
  return rules;
}

}  // namespace schau::rules
