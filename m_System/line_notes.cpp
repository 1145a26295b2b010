#include "m_System/line_notes.h"

#include "m_System/companion_file.h"
#include "m_System/filled_tables.h"
#include "m_System/name_index.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_strings/m_strings.h"
#include "runtime/fixed_text.h"
#include "runtime/read.h"

namespace m_System {
namespace {

std::string_view field_of(std::string_view line, const ColumnRange& columns) {
  if (line.size() < columns.first) return {};
  return line.substr(columns.first - 1, columns.last - columns.first + 1);
}

}  // namespace

LineNotes note_lines(int unit, char kind, std::int32_t (*mark_of)(std::string_view line)) {
  const NameIndex& names = element_names();
  const ColumnRange value_columns = type_of(kind).value_columns;
  LineNotes notes;
  notes.named.reserve(static_cast<std::size_t>(system_logic.count(kind)));
  runtime::LineReader file(unit, companion_line_width);
  runtime::RecordPosition position = file.position();
  for (std::string_view line; file.next(line); position = file.position()) {
    const std::int32_t element = first_of_name(names, runtime::columns<4, 8>(line));
    if (element != 0) {
      const bool has_values = m_strings::ClassifyField(field_of(line, value_columns)) == 'R';
      notes.named.push_back({position, element, has_values});
    }
    const std::int32_t mark = mark_of == nullptr ? 0 : mark_of(line);
    if (mark != 0) notes.marked.push_back({position, mark});
  }
  return notes;
}

std::int32_t report_duplicates(std::string_view file_name, const LineNotes& notes) {
  std::int32_t level = 0;
  for (const LineNotes::NamedLine& line : notes.named) {
    if (!line.has_values) continue;
    std::int32_t& seen = filled_tables.data_seen.at(line.element);
    if (seen == 1) {
      m_WLM_error::report("A14", {.text1 = file_name, .text2 = system_logic.name.at(line.element).view()});
      level = m_WLM_error::ErrorLevel;
    }
    seen = 1;
  }
  return level;
}

}  // namespace m_System
