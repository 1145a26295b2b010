#include "record_search.h"

#include <algorithm>

#include "fixed_text.h"
#include "name_index.h"

namespace m_System {
namespace {

using runtime::RecordPosition;

constexpr std::size_t line_width = 500;
constexpr int lines_read_before_indexing = 16;

std::int32_t mark_of(const RecordSearch& search, std::string_view line) {
  return search.mark_of == nullptr ? 0 : search.mark_of(line);
}

bool read_on(const RecordSearch& search, std::string_view& line) {
  return runtime::read_line(search.unit, line_width, line) == runtime::ReadStatus::good;
}

std::optional<FoundRecord> search_near(const RecordSearch& search, const ElementName& name) {
  FoundRecord result;
  for (int i = 0; i < lines_read_before_indexing && read_on(search, result.line); ++i) {
    if (const std::int32_t mark = mark_of(search, result.line)) result.last_mark = mark;
    if (runtime::columns<4, 8>(result.line) == name) {
      result.found = true;
      return result;
    }
  }
  return std::nullopt;
}

struct ElementRecord {
  std::int32_t element = 0;
  RecordPosition position;
};

// Sorts the records by element; within one they stay in file order.
void sort_records(RecordIndex& index, const std::vector<ElementRecord>& records) {
  index.begin.assign(static_cast<std::size_t>(system_logic.element_count) + 2, 0);
  for (const ElementRecord& record : records) ++index.begin[static_cast<std::size_t>(record.element) + 1];
  for (std::size_t i = 1; i < index.begin.size(); ++i) index.begin[i] += index.begin[i - 1];
  std::vector<std::uint32_t> next = index.begin;
  index.records.resize(records.size());
  for (const ElementRecord& record : records) {
    index.records[next[static_cast<std::size_t>(record.element)]++] = record.position;
  }
}

RecordIndex index_file(const RecordSearch& search) {
  RecordIndex index;
  std::vector<ElementRecord> records;
  const NameIndex& names = element_names();
  runtime::rewind(search.unit);
  RecordPosition position = runtime::position(search.unit);
  std::string_view line;
  while (read_on(search, line)) {
    if (const std::int32_t mark = mark_of(search, line)) index.marked.push_back({position, mark});
    const std::int32_t element = first_of_name(names, runtime::columns<4, 8>(line));
    if (element != 0) records.push_back({element, position});
    position = runtime::position(search.unit);
  }
  sort_records(index, records);
  return index;
}

// The last marked line at or before a place and not before another; 0 when there is none.
std::int32_t last_mark_between(const RecordIndex& index, RecordPosition from, RecordPosition to) {
  const auto behind = std::ranges::upper_bound(index.marked, to, {}, &RecordIndex::MarkedLine::position);
  if (behind == index.marked.begin()) return 0;
  const RecordIndex::MarkedLine& last = *std::prev(behind);
  return last.position < from ? 0 : last.mark;
}

constexpr RecordPosition file_begin{};
constexpr RecordPosition file_end{static_cast<std::size_t>(-1)};

std::int32_t mark_after_wrap(const RecordIndex& index, RecordPosition from, RecordPosition to) {
  const std::int32_t mark = last_mark_between(index, file_begin, to);
  return mark != 0 ? mark : last_mark_between(index, from, file_end);
}

FoundRecord search_index(const RecordSearch& search, const ElementName& name, RecordPosition from) {
  const RecordIndex& index = *search.index;
  const auto element = static_cast<std::size_t>(first_of_name(element_names(), name));
  const auto begin = index.records.begin() + index.begin[element];
  const auto end = index.records.begin() + index.begin[element + 1];
  FoundRecord result;
  if (begin == end) {
    result.last_mark = last_mark_between(index, file_begin, file_end);
    return result;
  }
  const auto ahead = std::lower_bound(begin, end, from);
  const RecordPosition place = ahead == end ? *begin : *ahead;
  result.last_mark =
      ahead == end ? mark_after_wrap(index, from, place) : last_mark_between(index, from, place);
  runtime::set_position(search.unit, place);
  result.found = read_on(search, result.line);
  return result;
}

}  // namespace

FoundRecord find_record(RecordSearch& search, const ElementName& name) {
  const RecordPosition from = runtime::position(search.unit);
  if (!search.index) {
    if (const auto near = search_near(search, name)) return *near;
    search.index = index_file(search);
  }
  return search_index(search, name, from);
}

}  // namespace m_System
