#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "m_System/m_System.h"
#include "runtime/blocks.h"
#include "runtime/records.h"

namespace m_System {

/// What is noted of a data file while it is read through, in file order.
struct LineNotes {
  struct NamedLine {
    runtime::RecordPosition position;
    std::int32_t element = 0;  ///< the first one whose name stands in columns 4-8
    bool has_values = false;   ///< its value columns hold a number with a decimal point
  };
  struct MarkedLine {
    runtime::RecordPosition position;
    std::int32_t mark = 0;
  };
  std::vector<NamedLine, runtime::BlockAllocator<NamedLine>> named;
  std::vector<MarkedLine> marked;
};

/// Reads the file of an open unit through, from its place on. `kind` is the element type whose value columns
/// the file has; `mark_of` tells a mark by a number above 0 and may be null.
LineNotes note_lines(int unit, char kind, std::int32_t (*mark_of)(std::string_view line));

/// Reports every second and further line of values of an element ("A14"); each report's level becomes the
/// run's. Returns that of the last one, 0 without any.
std::int32_t report_duplicates(std::string_view file_name, const LineNotes& notes);

}  // namespace m_System
