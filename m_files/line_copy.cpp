#include "m_files/m_files.h"
#include "m_files/module_state.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "runtime/write.h"

namespace m_files {
namespace {

constexpr int first_copy_unit = 200;

struct LineCopyState {
  bool under_way = false;
  int input_unit = 0;
  int output_unit = 0;
  bool input_opened = false;
  bool output_opened = false;
};
LineCopyState line_copy;

// The unit that holds the source, at its beginning; none when the source cannot be opened.
std::optional<int> source_unit(std::string_view source) {
  if (const auto holder = runtime::unit_of(source)) {
    runtime::rewind(*holder);
    return holder;
  }
  const int unit = free_unit(first_copy_unit);
  if (!runtime::try_open(unit, source, runtime::OpenStatus::old)) return std::nullopt;
  return unit;
}

// A target of which nothing is left from before, even when no line follows.
int target_unit(std::string_view target) {
  const int unit = free_unit(first_copy_unit);
  runtime::open(unit, target, runtime::OpenStatus::unknown);
  runtime::end_file(unit);
  return unit;
}

bool begin_line_copy(const UnitOrName& input, const UnitOrName& output) {
  LineCopyState begun{.under_way = true};
  if (const auto* name = std::get_if<std::string_view>(&input)) {
    begun.input_unit = free_unit(first_copy_unit);
    if (!runtime::try_open(begun.input_unit, *name, runtime::OpenStatus::old)) return false;
    begun.input_opened = true;
  } else {
    begun.input_unit = std::get<int>(input);
  }
  const auto* name = std::get_if<std::string_view>(&output);
  begun.output_opened = name != nullptr;
  begun.output_unit = name != nullptr ? target_unit(*name) : std::get<int>(output);
  line_copy = begun;
  return true;
}

void end_line_copy() {
  if (line_copy.input_opened) runtime::close(line_copy.input_unit);
  if (line_copy.output_opened) runtime::close(line_copy.output_unit);
  line_copy = {};
}

}  // namespace

std::int32_t copy_file_lines(std::string_view source, std::string_view target, std::int32_t delete_source) {
  const std::optional<int> input = source_unit(source);
  if (!input) return source_not_opened;
  const int output = target_unit(target);
  std::string_view line;
  for (runtime::LineReader source_lines(*input, line_width); source_lines.next(line);) {
    runtime::write<"(a)">(output, runtime::trimmed(line));
  }
  runtime::close(*input, delete_source != 0 ? runtime::CloseStatus::remove : runtime::CloseStatus::keep);
  runtime::close(output);
  return lines_copied;
}

LineCopy copy_line(const UnitOrName& input, const UnitOrName& output, Line& line) {
  if (!line_copy.under_way && !begin_line_copy(input, output)) return LineCopy::source_missing;
  std::string_view record;
  if (!runtime::LineReader(line_copy.input_unit, line_width).next(record)) {
    end_line_copy();
    return LineCopy::end_of_file;
  }
  line = record;
  runtime::write<"(a)">(line_copy.output_unit, line.trimmed());
  return LineCopy::copied;
}

void forget_line_copy() {
  line_copy = {};
}

}  // namespace m_files
