#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "m_System/m_System.h"
#include "runtime/blocks.h"
#include "runtime/units.h"

namespace m_System {

/// Recognises lines that matter besides the records, the unit lines of an area file: a number above 0 for
/// such a line, 0 for any other.
using LineMark = std::int32_t (*)(std::string_view line);

/// What is noted of a companion file while it is read through: the lines that bear an element's name and the
/// marked lines, in file order.
struct LineNotes {
  template <class T>
  using List = std::vector<T, runtime::BlockAllocator<T>>;
  struct MarkedLine {
    runtime::RecordPosition position;
    std::int32_t mark = 0;
  };
  List<std::int32_t> elements;
  List<runtime::RecordPlace> records;  ///< of the element at the same place in `elements`
  std::vector<MarkedLine> marked;
};

/// Makes room for the records that a sound file has for the elements of that type.
void expect_records(LineNotes& notes, char kind);

/// Takes the line that was read last into the notes; `element` is the one whose name stands in its columns
/// 4-8, 0 when there is none.
void note_line(LineNotes& notes, LineMark mark_of, std::string_view line, std::int32_t element,
               const runtime::LineReader& reader);

/// The same by element, so that no search reads the file again.
struct RecordIndex {
  LineNotes::List<std::uint32_t> begin;           ///< by element: where its records begin in `records`
  LineNotes::List<runtime::RecordPlace> records;  ///< by element, in file order
  std::vector<LineNotes::MarkedLine> marked;      ///< in file order
};

/// Sorts the notes of a whole file by element.
RecordIndex index_of(LineNotes&& notes);

/// A companion file is read with this width.
inline constexpr std::size_t companion_line_width = 500;

/// The search for the elements' records in an open companion file.
struct RecordSearch {
  int unit = 0;
  LineMark mark_of = nullptr;  ///< null: no line is marked
  /// Made while the file is checked for duplicate values, else by the first search.
  std::optional<RecordIndex> index = std::nullopt;
  /// On the unit, from the first search on.
  std::optional<runtime::LineReader> reader = std::nullopt;
};

/// Opens a companion file as `OpenInputFile` does and checks it for duplicate values of that element type;
/// the level of the check is folded into the run's. Returns the search, ready to be used, or one with the
/// unit 0 when the reader must end: the file could not be had, or the run's level is above 1 (the file is
/// closed).
RecordSearch OpenCompanionFile(const FileName& file_name, char kind, LineMark mark_of = nullptr);

/// `CheckDuplicateData` on the file of a search, whose index is made on the way.
std::int32_t CheckDuplicateData(char kind, std::string_view file_name, RecordSearch& search);

/// What a search found.
struct FoundRecord {
  bool found = false;
  std::string_view line;       ///< cut at `companion_line_width`, without its line end
  std::int32_t last_mark = 0;  ///< of the last marked line among the lines read; 0 when there was none
};

/// Finds the next line from the unit's place on whose columns 4-8 hold the name of element i (1 .. N); at the
/// end of the file it goes on once from the beginning. The unit then stands behind the found line. Without
/// such a line nothing is found, and the marks are those of all lines up to the second end of the file.
/// All is as if the lines were read one after the other; the index spares the reading.
FoundRecord find_record(RecordSearch& search, std::int32_t i);

}  // namespace m_System
