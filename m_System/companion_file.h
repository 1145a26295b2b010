#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "m_System/m_System.h"

// The companion files of the system logic. A companion file has a line for each element of a type, with its
// name in columns 4-8; lines that name no element are headings, remarks or marks.

namespace m_System {

/// A companion file is read with this width.
inline constexpr std::size_t companion_line_width = 500;

/// Lines that hold from where they stand on, like the unit lines of an area file.
struct LineMarks {
  /// A number above 0 for such a line, 0 for any other; null when the file has none.
  std::int32_t (*mark_of)(std::string_view line) = nullptr;
  /// Puts a mark into force.
  void (*put_into_force)(std::int32_t mark) = nullptr;
};

class CompanionFile;

/// The line of an element.
struct ElementLine {
  std::int32_t element;   ///< 1 .. N
  std::int32_t number;    ///< of the element in the reader's tables, from 1
  std::string_view text;  ///< cut at `companion_line_width`, without its line end
};

/// What the reader of one kind of companion file brings.
struct CompanionKind {
  std::string_view extension;  ///< of the file, with its point
  char type;                   ///< of the elements that the file has lines for
  char numbered_with;  ///< the type that is numbered together with it, in system order; may be the same
  /// Makes the tables ready; 0 or the status of a failed allocation.
  std::int32_t (*allocate)();
  /// Reads one element; the file stands behind its line.
  void (*read)(CompanionFile& file, const ElementLine& line);
  LineMarks marks{};
};

/// Reads a companion file of the variant. Gives up when it cannot be opened (level 3, the user is told), and
/// when its check for duplicate values or the allocation leaves the run's level above 1. Otherwise each
/// element of the kind's type is looked up and read, in system order; the first one without a line is
/// reported ("A00") and ends the reading, with the file left open until the end of the run.
void read_companion_file(std::string_view variant_name, const CompanionKind& kind);

/// A companion file whose lines are known by their elements.
class CompanionFile {
 public:
  CompanionFile(std::string_view variant_name, const CompanionKind& kind);
  CompanionFile(const CompanionFile&) = delete;
  CompanionFile& operator=(const CompanionFile&) = delete;
  CompanionFile(CompanionFile&&) = delete;
  CompanionFile& operator=(CompanionFile&&) = delete;
  /// Leaves an open file open.
  ~CompanionFile();

  [[nodiscard]] const FileName& name() const { return name_; }

  /// Opens the file, on a free unit from 100, and reads it through once. False when it cannot be opened: the
  /// user has been told then and the run's level is what the dispatcher returned for level 3.
  bool open();
  /// `CheckDuplicateData` for the open file; its level is folded into the run's.
  void check_duplicates();
  /// Finds the line of element i (1 .. N): the next one from the file's place on that names it; at the end of
  /// the file the search goes on once from the beginning. The file then stands behind the line. The last mark
  /// among the lines passed is put into force, also when there is no such line: then all are passed up to the
  /// second end of the file. All is as if the lines were read one after the other.
  std::optional<std::string_view> find(std::int32_t i);
  /// The line behind the one that was found; at the end of the file false, and `line` stays as it is.
  bool next(std::string_view& line);
  void close();

 private:
  struct Lines;

  CompanionKind kind_;
  FileName name_;
  int unit_ = 0;
  std::unique_ptr<Lines> lines_;
};

}  // namespace m_System
