#include "m_System/companion_file.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <vector>

#include "m_System/input_file.h"
#include "m_System/line_notes.h"
#include "m_System/name_index.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/blocks.h"
#include "runtime/read.h"
#include "runtime/units.h"

namespace m_System {
namespace {

using runtime::RecordPosition;

template <class T>
using List = std::vector<T, runtime::BlockAllocator<T>>;
using MarkedLines = std::vector<LineNotes::MarkedLine>;

constexpr RecordPosition file_begin{};
constexpr RecordPosition file_end{static_cast<std::size_t>(-1)};

// The last mark at or before a place and not before another; 0 when there is none.
std::int32_t last_mark_between(const MarkedLines& lines, RecordPosition from, RecordPosition to) {
  const auto behind = std::ranges::upper_bound(lines, to, {}, &LineNotes::MarkedLine::position);
  if (behind == lines.begin()) return 0;
  const LineNotes::MarkedLine& last = *std::prev(behind);
  return last.position < from ? 0 : last.mark;
}

// The last mark of a search that went over the end of the file.
std::int32_t last_mark_around(const MarkedLines& lines, RecordPosition from, RecordPosition to) {
  const std::int32_t mark = last_mark_between(lines, file_begin, to);
  return mark != 0 ? mark : last_mark_between(lines, from, file_end);
}

}  // namespace

struct CompanionFile::Lines {
  explicit Lines(int unit) : reader(unit, companion_line_width) {}

  runtime::LineReader reader;
  LineNotes notes;
  // The lines of element i (the first of its name) are those from begin[i] up to begin[i + 1].
  List<std::uint32_t> begin;
  List<RecordPosition> positions;

  void sort_by_element();
  // The elements are looked up in their order, and so stand their lines here. In the file they may lie
  // anywhere: those that come soon are announced, so that the memory has them by then.
  void announce_behind(List<RecordPosition>::const_iterator line) const {
    constexpr std::ptrdiff_t distance = 8;
    if (positions.end() - line > distance) reader.announce(*(line + distance));
  }
};

// Counting sort (Knuth, The Art of Computer Programming 3, 5.2), from behind, so that each element's lines
// stay in file order.
void CompanionFile::Lines::sort_by_element() {
  begin.assign(static_cast<std::size_t>(system_logic.element_count) + 2, 0);
  for (const LineNotes::NamedLine& line : notes.named) ++begin[static_cast<std::size_t>(line.element)];
  std::inclusive_scan(begin.begin(), begin.end(), begin.begin());
  positions.resize(notes.named.size());
  for (auto line = notes.named.rbegin(); line != notes.named.rend(); ++line) {
    positions[--begin[static_cast<std::size_t>(line->element)]] = line->position;
  }
}

CompanionFile::CompanionFile(std::string_view variant_name, const CompanionKind& kind)
    : kind_(kind), name_(file_name_of(variant_name, kind.extension)) {}

CompanionFile::~CompanionFile() = default;

bool CompanionFile::open() {
  unit_ = open_input_file(name_);
  if (unit_ == 0) return false;
  lines_ = std::make_unique<Lines>(unit_);
  lines_->notes = note_lines(unit_, kind_.type, kind_.marks.mark_of);
  lines_->sort_by_element();
  runtime::rewind(unit_);
  return true;
}

void CompanionFile::check_duplicates() {
  const std::int32_t level = report_duplicates(name_.view(), lines_->notes);
  m_WLM_error::ErrorLevel = std::max(m_WLM_error::ErrorLevel, level);
}

std::optional<std::string_view> CompanionFile::find(std::int32_t i) {
  const auto first = static_cast<std::size_t>(first_of_same_name(element_names(), i));
  const auto begin = lines_->positions.begin() + lines_->begin[first];
  const auto end = lines_->positions.begin() + lines_->begin[first + 1];
  const MarkedLines& marked = lines_->notes.marked;
  const RecordPosition from = lines_->reader.position();
  const auto ahead = std::ranges::lower_bound(begin, end, from);
  std::int32_t mark = 0;
  std::optional<std::string_view> line;
  if (begin == end) {
    mark = last_mark_between(marked, file_begin, file_end);
  } else {
    const RecordPosition place = ahead == end ? *begin : *ahead;
    lines_->announce_behind(begin);
    mark = ahead == end ? last_mark_around(marked, from, place) : last_mark_between(marked, from, place);
    lines_->reader.go_to(place);
    lines_->reader.next(line.emplace());
  }
  if (mark != 0) kind_.marks.put_into_force(mark);
  return line;
}

bool CompanionFile::next(std::string_view& line) {
  return lines_->reader.next(line);
}

void CompanionFile::close() {
  runtime::close(unit_);
}

namespace {

bool ready_to_read(const CompanionFile& file, const CompanionKind& kind) {
  if (m_WLM_error::ErrorLevel > 1) return false;
  m_WLM_error::fold_allocation(kind.allocate(), file.name().view());
  return m_WLM_error::ErrorLevel <= 1;
}

// False when an element has no line.
bool read_elements(CompanionFile& file, const CompanionKind& kind) {
  std::int32_t number = 0;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    const char type = system_logic.type.at(i);
    if (type == kind.type || type == kind.numbered_with) ++number;
    if (type != kind.type) continue;
    const std::optional<std::string_view> line = file.find(i);
    if (!line) {
      m_WLM_error::report("A00", {.text1 = file.name().view(), .text2 = system_logic.name.at(i).view()});
      return false;
    }
    kind.read(file, {.element = i, .number = number, .text = *line});
  }
  return true;
}

}  // namespace

void read_companion_file(std::string_view variant_name, const CompanionKind& kind) {
  CompanionFile file(variant_name, kind);
  if (!file.open()) return;
  file.check_duplicates();
  if (!ready_to_read(file, kind) || read_elements(file, kind)) file.close();
}

}  // namespace m_System
