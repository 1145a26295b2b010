#include "KV_Schau/variant/records.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

namespace schau::variant {
namespace {

struct Unit {
  std::string_view word;
  double factor;
};
constexpr std::array<Unit, 3> units = {{{"qkm", 1.0}, {"ha", 0.01}, {"qm", 1.0e-6}}};

std::vector<UnitLine> unit_lines_of(const TextFile& file) {
  std::vector<UnitLine> lines;
  for (std::uint32_t number = 1; number <= file.line_count(); ++number) {
    const std::optional<AreaUnit> unit = unit_set_by(file.line(number));
    if (unit) lines.push_back({number, *unit});
  }
  return lines;
}

// The last unit set by a line behind `from` and not behind `to`.
std::optional<AreaUnit> last_unit(const std::vector<UnitLine>& lines, std::uint32_t from, std::uint32_t to) {
  const auto behind = std::ranges::upper_bound(lines, to, {}, &UnitLine::line);
  if (behind == lines.begin() || std::prev(behind)->line <= from) return std::nullopt;
  return std::prev(behind)->unit;
}

// The lines of a data file by element, in file order.
class LinesByElement {
 public:
  LinesByElement(const std::vector<DataLine>& lines, std::uint32_t element_count)
      : begin_(element_count + 2, 0) {
    for (const DataLine& line : lines) ++begin_[line.element];
    std::inclusive_scan(begin_.begin(), begin_.end(), begin_.begin());
    lines_.resize(lines.size());
    for (std::size_t k = lines.size(); k-- > 0;) lines_[--begin_[lines[k].element]] = lines[k].line;
  }

  // The first line of an element behind a line, else its first one; 0 when it has none.
  [[nodiscard]] std::uint32_t next_behind(std::uint32_t line, std::uint32_t element) const {
    const auto begin = lines_.begin() + begin_[element];
    const auto end = lines_.begin() + begin_[element + 1];
    if (begin == end) return 0;
    const auto next = std::upper_bound(begin, end, line);
    return next == end ? *begin : *next;
  }

 private:
  std::vector<std::uint32_t> begin_;
  std::vector<std::uint32_t> lines_;
};

// Goes through a file as the run does: `line` is the last line that it has read.
class FileWalk {
 public:
  FileWalk(const Variant& variant, FileId file, const std::vector<UnitLine>& unit_lines, AreaUnit unit)
      : variant_(variant),
        file_(file),
        by_element_(variant.lines_of(file), variant.element_count()),
        unit_lines_(unit_lines),
        unit_(unit) {}

  [[nodiscard]] AreaUnit unit() const { return unit_; }

  // The record of the next element; 0 when there is none.
  std::uint32_t find(std::uint32_t element) {
    const std::uint32_t first =
        variant_.elements.has_repetitions() ? variant_.elements.first(variant_.names[element]) : element;
    const std::uint32_t found = by_element_.next_behind(line_, first);
    if (found == 0) {
      pass(0, all_lines);
      return 0;
    }
    if (found <= line_) pass(line_, all_lines);
    pass(found <= line_ ? 0 : line_, found);
    line_ = found;
    if (file_ == FileId::trs && takes_next_line(found)) ++line_;
    return found;
  }

 private:
  static constexpr std::uint32_t all_lines = 0xFFFFFFFF;

  void pass(std::uint32_t from, std::uint32_t to) {
    unit_ = last_unit(unit_lines_, from, to).value_or(unit_);
  }

  [[nodiscard]] bool takes_next_line(std::uint32_t line) const {
    const TextFile& file = variant_.file(file_);
    return line < file.line_count() && !is_blank(data_columns::profile.of(file.line(line)));
  }

  const Variant& variant_;
  FileId file_;
  LinesByElement by_element_;
  const std::vector<UnitLine>& unit_lines_;
  AreaUnit unit_;
  std::uint32_t line_ = 0;
};

// Returns the unit that is in force behind the last record.
AreaUnit find_records_of(const Variant& variant, FileId file, const std::vector<UnitLine>& unit_lines,
                         AreaUnit unit, Records& records) {
  const char type = type_of_file(file);
  FileWalk walk(variant, file, unit_lines, unit);
  for (std::uint32_t i = 1; i <= variant.element_count(); ++i) {
    if (variant.type(i) != type) continue;
    records.line[i] = walk.find(i);
    records.unit[i] = walk.unit();
  }
  return walk.unit();
}

}  // namespace

double factor_of(AreaUnit unit) {
  return units[static_cast<std::size_t>(unit)].factor;
}

std::string_view word_of(AreaUnit unit) {
  return units[static_cast<std::size_t>(unit)].word;
}

std::optional<AreaUnit> unit_set_by(std::string_view line) {
  const std::string_view field = data_columns::unit.of(line);
  // Every word has one of these letters, and a number has none.
  if (std::ranges::none_of(field, [](char letter) { return letter == 'q' || letter == 'h'; }))
    return std::nullopt;
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (field.find(units[i].word) != std::string_view::npos) return static_cast<AreaUnit>(i);
  }
  return std::nullopt;
}

Records find_records(const Variant& variant) {
  Records records;
  records.line.assign(variant.element_count() + 1, 0);
  records.unit.assign(variant.element_count() + 1, AreaUnit::qkm);
  records.natural_units = unit_lines_of(variant.file(FileId::nfl));
  records.canalised_units = unit_lines_of(variant.file(FileId::kfl));
  records.inherited_unit =
      find_records_of(variant, FileId::nfl, records.natural_units, AreaUnit::qkm, records);
  find_records_of(variant, FileId::kfl, records.canalised_units, records.inherited_unit, records);
  find_records_of(variant, FileId::trs, {}, AreaUnit::qkm, records);
  find_records_of(variant, FileId::ver, {}, AreaUnit::qkm, records);
  return records;
}

std::optional<Place> place_of_record(const Variant& variant, const Records& records, std::uint32_t element) {
  const std::optional<FileId> file = data_file_of(variant.type(element));
  if (!file || records.line[element] == 0) return std::nullopt;
  return Place{*file, records.line[element], data_columns::name.first, data_columns::name.width()};
}

}  // namespace schau::variant
