#include "m_System/record_search.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "m_System/name_index.h"
#include "runtime/fixed_text.h"

namespace m_System {
namespace {

using runtime::RecordPlace;
using runtime::RecordPosition;

RecordIndex index_file(const RecordSearch& search) {
  LineNotes notes;
  const NameIndex& names = element_names();
  runtime::rewind(search.unit);
  runtime::LineReader reader(search.unit, companion_line_width);
  std::string_view line;
  while (reader.next(line)) {
    note_line(notes, search.mark_of, line, first_of_name(names, runtime::columns<4, 8>(line)), reader);
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

using Records = LineNotes::List<RecordPlace>;

// The elements are searched in their order, and so stand their records in the index. In the file they may lie
// anywhere: those that come soon are announced, so that the memory has them by then.
void announce_later_records(const runtime::LineReader& reader, const Records& records,
                            Records::const_iterator found) {
  constexpr std::ptrdiff_t distance = 8;
  if (records.end() - found > distance) reader.announce(*(found + distance));
}

FoundRecord search_index(const RecordIndex& index, runtime::LineReader& reader, RecordPosition from,
                         std::int32_t element) {
  const auto begin = index.records.begin() + index.begin[static_cast<std::size_t>(element)];
  const auto end = index.records.begin() + index.begin[static_cast<std::size_t>(element) + 1];
  FoundRecord result;
  if (begin == end) {
    result.last_mark = last_mark_between(index, file_begin, file_end);
    return result;
  }
  const auto ahead = std::ranges::lower_bound(begin, end, from, {}, &RecordPlace::position);
  const auto found = ahead == end ? begin : ahead;
  const RecordPosition place = found->position();
  announce_later_records(reader, index.records, found);
  result.last_mark =
      ahead == end ? mark_after_wrap(index, from, place) : last_mark_between(index, from, place);
  result.found = reader.read_at(*found, result.line);
  return result;
}

}  // namespace

void expect_records(LineNotes& notes, char kind) {
  const SystemLogic& logic = system_logic;
  std::size_t records = 0;
  for (std::int32_t i = 1; i <= logic.element_count; ++i) records += logic.type.at(i) == kind ? 1 : 0;
  notes.elements.reserve(records);
  notes.records.reserve(records);
}

void note_line(LineNotes& notes, LineMark mark_of, std::string_view line, std::int32_t element,
               const runtime::LineReader& reader) {
  if (element != 0) {
    notes.elements.push_back(element);
    notes.records.push_back(reader.place());
  }
  const std::int32_t mark = mark_of == nullptr ? 0 : mark_of(line);
  if (mark != 0) notes.marked.push_back({reader.place().position(), mark});
}

// Counting sort (Knuth, The Art of Computer Programming 3, 5.2), from behind, so that each element's records
// stay in file order.
RecordIndex index_of(LineNotes&& notes) {
  RecordIndex index;
  index.marked = std::move(notes.marked);
  index.begin.assign(static_cast<std::size_t>(system_logic.element_count) + 2, 0);
  for (const std::int32_t element : notes.elements) ++index.begin[static_cast<std::size_t>(element)];
  std::inclusive_scan(index.begin.begin(), index.begin.end(), index.begin.begin());
  index.records.resize(notes.records.size());
  for (std::size_t k = notes.records.size(); k-- > 0;) {
    index.records[--index.begin[static_cast<std::size_t>(notes.elements[k])]] = notes.records[k];
  }
  return index;
}

FoundRecord find_record(RecordSearch& search, std::int32_t i) {
  if (!search.reader) search.reader.emplace(search.unit, companion_line_width);
  const RecordPosition from = search.reader->position();
  if (!search.index) search.index = index_file(search);
  return search_index(*search.index, *search.reader, from, first_of_same_name(element_names(), i));
}

}  // namespace m_System
