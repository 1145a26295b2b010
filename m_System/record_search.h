#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "m_System.h"
#include "units.h"

namespace m_System {

/// Recognises lines that matter besides the records, the unit lines of an area file: a number above 0 for
/// such a line, 0 for any other.
using LineMark = std::int32_t (*)(std::string_view line);

/// The records and the marked lines of a companion file by name, so that no search reads the file again.
struct RecordIndex {
  struct MarkedLine {
    runtime::RecordPosition position;
    std::int32_t mark = 0;
  };
  std::vector<std::uint32_t> begin;              ///< by element: where its records begin in `records`
  std::vector<runtime::RecordPosition> records;  ///< by element, in file order
  std::vector<MarkedLine> marked;                ///< in file order
};

/// The search for the elements' records in an open companion file.
struct RecordSearch {
  int unit = 0;
  LineMark mark_of = nullptr;  ///< null: no line is marked
  std::optional<RecordIndex> index = std::nullopt;
};

/// What a search found.
struct FoundRecord {
  bool found = false;
  std::string_view line;       ///< cut at 500 characters, without its line end
  std::int32_t last_mark = 0;  ///< of the last marked line among the lines read; 0 when there was none
};

/// Finds the next line from the unit's place on whose columns 4-8 hold the name; at the end of the file it
/// goes on once from the beginning. The unit then stands behind the found line. Without such a line nothing
/// is found, and the marks are those of all lines up to the second end of the file.
///
/// The lines count as read one after the other, and the first ones are: a file in system order needs no
/// index. When the line is not near, an index of the whole file answers this search and all later ones.
FoundRecord find_record(RecordSearch& search, const ElementName& name);

}  // namespace m_System
