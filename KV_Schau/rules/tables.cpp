// Records and elements: what is missing, what is there twice, what belongs to nobody; codes of branchings.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "KV_Schau/network/values.h"
#include "KV_Schau/rules/field_words.h"
#include "KV_Schau/rules/rule.h"
#include "m_System/element_types.h"

namespace schau::rules {
namespace {

using findings::Severity;
using variant::DataLine;
using variant::FileId;
using variant::NameKey;
using variant::Place;
using variant::TextFile;
namespace columns = variant::data_columns;

// Files.

Element first_of_type(const Context& context, char type) {
  Element i = 1;
  while (context.variant.type(i) != type) ++i;
  return i;
}

std::string users_words(std::uint32_t users, FileId file) {
  const char type = variant::type_of_file(file);
  return users == 1 ? fmt::format("ein {}-Element", type) : fmt::format("{} {}-Elemente", users, type);
}

void check_missing_files(const Context& context, Sink& sink) {
  for (const FileId id : variant::data_files) {
    const TextFile& file = context.variant.file(id);
    const std::uint32_t users = users_of(context, id);
    if (users == 0 || file.state() != variant::FileState::missing) continue;
    sink.add(variant::place_of_element(context.variant, first_of_type(context, variant::type_of_file(id))),
             fmt::format("Die Datei {} fehlt; das System hat {}", file.shown(), users_words(users, id)));
  }
}

void check_unreadable_files(const Context& context, Sink& sink) {
  for (const FileId id : input_files) {
    const TextFile& file = context.variant.file(id);
    const bool is_needed = id == FileId::sys || is_asked_for(context, id);
    if (!is_needed || file.state() != variant::FileState::unreadable) continue;
    sink.add({id, 0}, fmt::format("Die Datei ist nicht lesbar: {}", file.fault()));
  }
}

// Names in data files.

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

char upper(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

// A letter of the file's type and digits behind it.
bool has_form_of_name(std::string_view text, char type) {
  return text.size() >= 2 && text.size() <= variant::name_length && upper(text.front()) == type &&
         std::any_of(text.begin() + 1, text.end(), is_digit) && text.find(' ') == std::string_view::npos;
}

// A line without an element that looks like a record of the file.
struct Orphan {
  FileId file = FileId::nfl;
  std::uint32_t line = 0;
  std::uint32_t column = 0;
  std::uint32_t length = 0;
  NameKey name = 0;
  [[nodiscard]] Place place() const { return {file, line, column, length}; }
};

// What stands between words for a person: blanks, tabs, non-breaking blanks.
constexpr std::string_view gaps = " \t\xA0";

// True when a number stands next behind a place of a line.
bool has_number_behind(std::string_view line, std::size_t place) {
  const std::string_view behind = line.substr(std::min(place, line.size()), 24);
  const std::size_t first = behind.find_first_not_of(gaps);
  return first != std::string_view::npos &&
         (is_digit(behind[first]) || behind[first] == '.' || behind[first] == '-');
}

// What makes a line with a name a record. A reach needs no number.
bool has_values(FileId file, std::string_view line, std::size_t name_end) {
  return file == FileId::trs || has_number_behind(line, name_end);
}

std::optional<Orphan> orphan_at(const Context& context, FileId file, std::uint32_t number) {
  const std::string_view line = context.variant.file(file).line(number).substr(0, columns::line_width);
  const std::string_view field = columns::name.of(line);
  const std::string_view text = variant::without_blanks(field);
  const bool begins_left = !field.empty() && field.front() != ' ';
  const bool begins_word = begins_left && line[columns::name.first - 2] == ' ';
  if (!begins_word || !has_form_of_name(text, variant::type_of_file(file))) return std::nullopt;
  if (!has_values(file, line, columns::name.last)) return std::nullopt;
  return Orphan{file, number, columns::name.first, static_cast<std::uint32_t>(text.size()),
                variant::name_of(text)};
}

// The word of a line that is the name of an element without a record, but stands in other columns.
std::optional<Orphan> misplaced_record(const Context& context, FileId file, std::uint32_t number) {
  const std::string_view line = context.variant.file(file).line(number).substr(0, columns::line_width);
  const std::size_t begin = line.find_first_not_of(gaps);
  if (begin == std::string_view::npos) return std::nullopt;
  const std::size_t end = std::min(line.find_first_of(gaps, begin), line.size());
  if (end - begin > variant::name_length || !has_values(file, line, end)) return std::nullopt;
  const NameKey name = variant::name_of(line.substr(begin, end - begin));
  const Element element = context.variant.elements.first(name);
  const bool is_wanted = element != 0 && context.variant.type(element) == variant::type_of_file(file) &&
                         context.records.line[element] == 0;
  if (!is_wanted) return std::nullopt;
  return Orphan{file, number, static_cast<std::uint32_t>(begin) + 1, static_cast<std::uint32_t>(end - begin),
                name};
}

template <class Report>
void for_each_orphan(const Context& context, FileId file, const Report& report) {
  if (!is_readable(context, file)) return;
  for (const std::uint32_t number : context.variant.other_lines_of(file)) {
    const std::optional<Orphan> orphan = orphan_at(context, file, number);
    if (orphan) report(*orphan);
  }
}

std::vector<NameKey> names_of_orphans(const Context& context, FileId file) {
  std::vector<NameKey> names;
  for_each_orphan(context, file, [&](const Orphan& orphan) { names.push_back(orphan.name); });
  return names;
}

std::vector<NameKey> names_without_record(const Context& context, FileId file) {
  std::vector<NameKey> names;
  for (const Element i : context.without_record) {
    if (context.variant.type(i) == variant::type_of_file(file)) names.push_back(context.variant.names[i]);
  }
  return names;
}

std::string meant_words(const Context& context, NameKey meant) {
  return meant == 0 ? "" : fmt::format("meinten Sie {}?", name_of(context, meant));
}

void check_missing_records_of(const Context& context, Sink& sink, FileId file) {
  const variant::SimilarNames orphans(names_of_orphans(context, file));
  for (const Element i : context.without_record) {
    if (context.variant.type(i) != variant::type_of_file(file)) continue;
    const NameKey alike = orphans.meant_by(context.variant.names[i]);
    sink.add(variant::place_of_element(context.variant, i),
             fmt::format("{} hat keine Zeile in {}; KV_Akum meldet A00 und rechnet nicht",
                         name_of(context, i), context.variant.file(file).shown()),
             alike == 0 ? "" : fmt::format("dort steht {}", name_of(context, alike)));
  }
}

void check_missing_records(const Context& context, Sink& sink) {
  if (context.without_record.empty()) return;
  for (const FileId file : variant::data_files) check_missing_records_of(context, sink, file);
}

void check_orphans(const Context& context, Sink& sink) {
  // Without any element the fault lies elsewhere.
  if (context.network.count() == 0) return;
  for (const FileId id : variant::data_files) {
    const variant::SimilarNames wanted(names_without_record(context, id));
    for_each_orphan(context, id, [&](const Orphan& orphan) {
      const auto near = context.near_elements.by_name.find(orphan.name);
      if (near != context.near_elements.by_name.end()) {
        const NearElement& element = context.near_elements.list[near->second];
        sink.add(orphan.place(), fmt::format("{} ist kein Element", name_of(context, orphan.name)),
                 fmt::format("KV_Akum überliest {}", line_words(context, FileId::sys, element.line)));
        return;
      }
      const NameKey alike = wanted.meant_by(orphan.name);
      const NameKey meant = alike != 0 ? alike : context.meant_by(orphan.name);
      sink.add(orphan.place(),
               fmt::format("{} ist kein Element der Systemdatei; KV_Akum überliest die Zeile",
                           name_of(context, orphan.name)),
               meant_words(context, meant));
    });
  }
}

void check_misplaced_records(const Context& context, Sink& sink) {
  for (const FileId id : variant::data_files) {
    if (!is_readable(context, id)) continue;
    for (const std::uint32_t number : context.variant.other_lines_of(id)) {
      const std::optional<Orphan> orphan = misplaced_record(context, id, number);
      if (!orphan) continue;
      sink.add(orphan->place(),
               fmt::format("\"{}\" beginnt in Spalte {} statt {}; KV_Akum überliest die Zeile",
                           text_at(context, orphan->place()), orphan->column, columns::name.first));
    }
  }
}

// The second line of a kind-2 reach, whatever it bears.
bool is_station_line(const Context& context, FileId file, std::uint32_t line) {
  if (file != FileId::trs || line == 1) return false;
  const std::string_view before = context.variant.file(file).line(line - 1);
  const Element reach = context.variant.elements.first(variant::name_at(before, columns::name.first));
  return reach != 0 && context.variant.type(reach) == 'T' && network::is_kind_2(before);
}

void check_foreign_records(const Context& context, Sink& sink) {
  for (const FileId id : variant::data_files) {
    if (!is_asked_for(context, id) || !is_readable(context, id)) continue;
    for (const DataLine& record : context.variant.lines_of(id)) {
      const char type = context.variant.type(record.element);
      if (type == variant::type_of_file(id)) continue;
      const std::string_view line = context.variant.file(id).line(record.line).substr(0, columns::line_width);
      if (is_station_line(context, id, record.line) || !has_number_behind(line, columns::name.last)) continue;
      sink.add({id, record.line, columns::name.first, columns::name.width()},
               fmt::format("{} gehört nicht in diese Datei; KV_Akum liest hier nur {}-Elemente",
                           name_of(context, record.element), variant::type_of_file(id)));
    }
  }
}

// Duplicates.

// A number with exactly one point, blanks between the digits allowed: only such a field makes a line of
// values.
bool is_value(std::string_view field) {
  std::string_view text = variant::without_blanks(field);
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) text.remove_prefix(1);
  const bool digits_only = text.find_first_not_of("0123456789. ") == std::string_view::npos;
  return digits_only && std::ranges::count(text, '.') == 1;
}

struct Duplicate {
  FileId file = FileId::nfl;
  std::uint32_t line = 0;
  Element element = 0;
  FileId first_file = FileId::nfl;
  std::uint32_t first_line = 0;
};

// The second lines of values that the run reports, over all files in their order.
std::vector<Duplicate> reported_duplicates(const Context& context) {
  struct Seen {
    FileId file = FileId::nfl;
    std::uint32_t line = 0;
  };
  std::vector<Seen> seen(context.network.count() + 1);
  std::vector<Duplicate> duplicates;
  for (const FileId id : variant::data_files) {
    if (!is_asked_for(context, id) || !is_readable(context, id)) continue;
    const m_System::ColumnRange field = m_System::type_of(variant::type_of_file(id)).value_columns;
    for (const DataLine& record : context.variant.lines_of(id)) {
      if (!is_value(variant::columns(context.variant.file(id).line(record.line), field.first, field.last)))
        continue;
      Seen& first = seen[record.element];
      if (first.line != 0) duplicates.push_back({id, record.line, record.element, first.file, first.line});
      if (first.line == 0) first = {id, record.line};
    }
  }
  return duplicates;
}

Place place_of_name(FileId file, std::uint32_t line) {
  return {file, line, columns::name.first, columns::name.width()};
}

void check_reported_duplicates(const Context& context, Sink& sink) {
  for (const Duplicate& duplicate : reported_duplicates(context)) {
    sink.add(place_of_name(duplicate.file, duplicate.line),
             fmt::format("{} hat schon eine Zeile mit Werten ({}); KV_Akum meldet A14 und rechnet nicht",
                         name_of(context, duplicate.element),
                         line_words(context, duplicate.first_file, duplicate.first_line)));
  }
}

// By line: true when the run finds a duplicate there.
std::vector<bool> lines_with_reported_duplicate(const Context& context, FileId file) {
  std::vector<bool> reported(context.variant.file(file).line_count() + 1, false);
  for (const Duplicate& duplicate : reported_duplicates(context)) {
    if (duplicate.file == file) reported[duplicate.line] = true;
  }
  return reported;
}

void check_silent_duplicates(const Context& context, Sink& sink) {
  std::vector<std::uint32_t> lines_of_element(context.network.count() + 1, 0);
  for (const FileId id : variant::data_files) {
    if (!is_readable(context, id)) continue;
    bool any = false;
    for (const DataLine& record : context.variant.lines_of(id)) {
      if (context.variant.type(record.element) != variant::type_of_file(id)) continue;
      any = any || ++lines_of_element[record.element] > 1;
    }
    if (!any) continue;
    const std::vector<bool> reported = lines_with_reported_duplicate(context, id);
    for (const DataLine& record : context.variant.lines_of(id)) {
      const std::uint32_t read = context.records.line[record.element];
      const bool is_second = lines_of_element[record.element] > 1 && record.line != read;
      if (!is_second || context.variant.type(record.element) != variant::type_of_file(id)) continue;
      if (reported[record.line] || reported[read]) continue;
      sink.add(place_of_name(id, record.line),
               fmt::format("{} hat mehrere Zeilen; KV_Akum liest ohne Meldung nur die in {}",
                           name_of(context, record.element), line_words(read)));
    }
  }
}

// Codes of branchings.

template <class Report>
void for_each_code(const Context& context, const Report& report) {
  for (const Field& field : context.fields) {
    if (field.kind != FieldKind::code) continue;
    const bool is_number = field.fault == FieldFault::none || field.fault == FieldFault::blank;
    if (is_number) report(field, std::round(field.read));
  }
}

void check_high_codes(const Context& context, Sink& sink) {
  for_each_code(context, [&](const Field& field, double code) {
    if (code <= 3.0) return;
    sink.add(field.place(),
             fmt::format("Die Kennziffer {} ist größer als 3; KV_Akum meldet Ver1 und rechnet nicht",
                         number_words(field.read)));
  });
}

void check_low_codes(const Context& context, Sink& sink) {
  for_each_code(context, [&](const Field& field, double code) {
    if (code >= 1.0) return;
    const std::string what = field.fault == FieldFault::blank
                                 ? fmt::format("{} hat keine Kennziffer", name_of(context, field.element))
                                 : fmt::format("Die Kennziffer {} gibt es nicht", number_words(field.read));
    sink.add(field.place(), what + "; KV_Akum leitet alles zum zweiten Ablauf", "erlaubt sind 1, 2 und 3");
  });
}

void check_decimal_codes(const Context& context, Sink& sink) {
  for_each_code(context, [&](const Field& field, double code) {
    if (field.read == code) return;
    sink.add(field.place(), fmt::format("Die Kennziffer {} hat Nachkommastellen; KV_Akum rundet auf {}",
                                        number_words(field.read), number_words(code)));
  });
}

void check_idle_shares(const Context& context, Sink& sink) {
  for (Element i = 1; i <= context.network.count(); ++i) {
    const network::Taken& taken = context.taken[i];
    if (context.variant.type(i) != 'V' || context.records.line[i] == 0) continue;
    if (taken.value == 1.0 || taken.fraction == 0.0) continue;
    sink.add({FileId::ver, context.records.line[i], columns::share.first, columns::share.width()},
             fmt::format("Den Anteil beachtet KV_Akum nur bei der Kennziffer 1; {} hat {} und leitet alles "
                         "zum zweiten Ablauf",
                         name_of(context, i), number_words(taken.value)));
  }
}

constexpr std::array<CheckedRule, 12> rules = {{
    {{"datei-fehlt", Severity::error, "Datei zu vorhandenen Elementen fehlt: kein Ergebnis"},
     check_missing_files},
    {{"datei-unlesbar", Severity::error,
      "Systemdatei oder Datei zu vorhandenen Elementen ist nicht lesbar: kein Ergebnis"},
     check_unreadable_files},
    {{"zeile-fehlt", Severity::error,
      "Element ohne Zeile in seiner Datei: KV_Akum meldet A00 (nur das erste) und rechnet nicht"},
     check_missing_records},
    {{"zeile-verrutscht", Severity::error,
      "Zeile, deren Name nicht in Spalte 4 beginnt: KV_Akum überliest sie"},
     check_misplaced_records},
    {{"zeile-ohne-element", Severity::warning,
      "Zeile zu einem Namen, der kein Element ist: KV_Akum überliest sie"},
     check_orphans},
    {{"zeile-fremd", Severity::warning, "Zeile eines Elements, das nicht in diese Datei gehört"},
     check_foreign_records},
    {{"zeile-doppelt", Severity::error,
      "Zweite Zeile mit Werten für ein Element: KV_Akum meldet A14 und rechnet nicht"},
     check_reported_duplicates},
    {{"zeile-doppelt-unbemerkt", Severity::warning,
      "Zweite Zeile, die KV_Akum nicht als doppelt erkennt: gelesen wird nur eine"},
     check_silent_duplicates},
    {{"kennziffer-ueber-3", Severity::error, "Kennziffer über 3: KV_Akum meldet Ver1 und rechnet nicht"},
     check_high_codes},
    {{"kennziffer-unter-1", Severity::warning,
      "Kennziffer leer, 0 oder negativ: alles geht ohne Meldung zum zweiten Ablauf"},
     check_low_codes},
    {{"kennziffer-dezimal", Severity::warning, "Kennziffer mit Nachkommastellen: KV_Akum rundet sie"},
     check_decimal_codes},
    {{"anteil-unbeachtet", Severity::note, "Anteil neben einer Kennziffer, die ihn nicht beachtet"},
     check_idle_shares},
}};

}  // namespace

std::span<const CheckedRule> table_rules() {
  return rules;
}

}  // namespace schau::rules
