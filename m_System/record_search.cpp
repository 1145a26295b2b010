#include "record_search.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "fixed_text.h"
#include "name_index.h"

namespace m_System {
namespace {

using runtime::RecordPosition;

constexpr std::size_t line_width = 500;
RecordIndex index_file(const RecordSearch& search) {
  LineNotes notes;
  const NameIndex& names = element_names();
  runtime::rewind(search.unit);
  runtime::LineReader reader(search.unit, line_width);
  RecordPosition position = reader.position();
  std::string_view line;
  while (reader.next(line)) {
    note_line(notes, search.mark_of, line, first_of_name(names, runtime::columns<4, 8>(line)), position);
    position = reader.position();
  }
  return index_of(std::move(notes));
}

// The last marked line at or before a place and not before another; 0 when there is none.
std::int32_t last_mark_between(const RecordIndex& index, RecordPosition from, RecordPosition to) {
  const auto behind = std::ranges::upper_bound(index.marked, to, {}, &LineNotes::MarkedLine::position);
  if (behind == index.marked.begin()) return 0;
  const LineNotes::MarkedLine& last = *std::prev(behind);
  return last.position < from ? 0 : last.mark;
}

constexpr RecordPosition file_begin{};
constexpr RecordPosition file_end{static_cast<std::size_t>(-1)};

std::int32_t mark_after_wrap(const RecordIndex& index, RecordPosition from, RecordPosition to) {
  const std::int32_t mark = last_mark_between(index, file_begin, to);
  return mark != 0 ? mark : last_mark_between(index, from, file_end);
}

// The elements are searched in their order, and so stand their records in the index. In the file they may lie
// anywhere: those that come soon are announced, so that the memory has them by then.
void announce_later_records(const runtime::LineReader& reader, const RecordIndex& index,
                            std::vector<RecordPosition>::const_iterator found) {
  constexpr std::ptrdiff_t distance = 8;
  if (index.records.end() - found > distance) reader.announce(*(found + distance));
}

FoundRecord search_index(RecordSearch& search, const ElementName& name, RecordPosition from) {
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
  const auto found = ahead == end ? begin : ahead;
  const RecordPosition place = *found;
  announce_later_records(*search.reader, index, found);
  result.last_mark =
      ahead == end ? mark_after_wrap(index, from, place) : last_mark_between(index, from, place);
  search.reader->go_to(place);
  result.found = search.reader->next(result.line);
  return result;
}

}  // namespace

void note_line(LineNotes& notes, LineMark mark_of, std::string_view line, std::int32_t element,
               RecordPosition position) {
  if (element != 0) notes.records.push_back({element, position});
  const std::int32_t mark = mark_of == nullptr ? 0 : mark_of(line);
  if (mark != 0) notes.marked.push_back({position, mark});
}

RecordIndex index_of(LineNotes&& notes) {
  RecordIndex index;
  index.marked = std::move(notes.marked);
  index.begin.assign(static_cast<std::size_t>(system_logic.element_count) + 2, 0);
  for (const auto& record : notes.records) ++index.begin[static_cast<std::size_t>(record.element) + 1];
  std::partial_sum(index.begin.begin(), index.begin.end(), index.begin.begin());
  std::vector<std::uint32_t> next = index.begin;
  index.records.resize(notes.records.size());
  for (const auto& record : notes.records) {
    index.records[next[static_cast<std::size_t>(record.element)]++] = record.position;
  }
  return index;
}

FoundRecord find_record(RecordSearch& search, const ElementName& name) {
  if (!search.reader) search.reader.emplace(search.unit, line_width);
  const RecordPosition from = search.reader->position();
  if (!search.index) search.index = index_file(search);
  return search_index(search, name, from);
}

}  // namespace m_System
