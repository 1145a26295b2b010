#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "m_System/element_types.h"
#include "runtime/array.h"
#include "runtime/fixed_text.h"

/// The element network of a model variant: its table, the reader of `NAME.sys` and the checks.
namespace m_System {

using ElementName = runtime::FixedText<5>;

/// The table of system elements in system order, positions 1 .. N. Every table has one spare entry, N + 1,
/// the outlet of the last element; `mark` has one more for position 0. Filled once a run.
struct SystemLogic {
  std::int32_t element_count = 0;  ///< N
  std::int32_t total_count = 0;    ///< element lines counted in `NAME.sys`; N is copied from it
  /// The element lines counted of each type, in the order of `element_types`.
  std::array<std::int32_t, element_types.size()> type_counts{};

  runtime::OneBased<ElementName> name;
  runtime::OneBased<char> type;  ///< first character of the name
  runtime::OneBased<runtime::FixedText<3>> tag3;
  runtime::OneBased<runtime::FixedText<7>> tag7;
  runtime::OneBased<runtime::FixedText<17>> text17;
  runtime::OneBased<runtime::Slots<ElementName, inflow_slots>> inflow_name;
  runtime::OneBased<runtime::Slots<ElementName, outflow_slots>> outflow_name;
  /// Position of the element named in the slot; 0 when the slot is blank or names none.
  runtime::OneBased<runtime::Slots<std::int32_t, inflow_slots>> inflow_index;
  /// The same for the outflows; N + 1, the outlet, for the first outflow of element N.
  runtime::OneBased<runtime::Slots<std::int32_t, outflow_slots>> outflow_index;
  /// 1 when an input file has given a value line for the element.
  runtime::OneBased<std::int32_t> data_seen;
  /// Kept for the other tools of the suite; the mark of position p stands at p + 1.
  runtime::OneBased<char> mark;

  /// How many elements of a type `NAME.sys` has; 0 for a letter that is no type.
  [[nodiscard]] std::int32_t count(char letter) const;
};
extern const SystemLogic& system_logic;

/// The position (1 .. N) of the first element of that name (blank-padded, case matters); 0 when there is
/// none.
std::int32_t ElementIndex(std::string_view name);

/// The number of elements of a type among the positions 1 .. i; 0 when i < 1; i beyond N counts as N.
/// A letter's running counts are taken at its first call after the table was filled; when there is no memory
/// for them, `std::bad_alloc` is thrown.
std::int32_t TypeOrdinal(char letter, std::int32_t i);

/// Sets N from the total count and allocates all tables, texts blank and numbers 0. Returns 0, or
/// `m_WLM_error::allocation_failed` when the memory is short.
std::int32_t AllocateSystemTables();

/// Counts the element lines of the open unit into the counts per type and the total, and rewinds it.
void CountElements(int unit);

/// Reads `NAME.sys` into the table, resolves the links, writes the listing "code.pkl" into the current folder
/// and runs the checks. Faults go to the dispatcher and raise the run's ErrorLevel; a file that cannot be
/// opened is shown and sets the level to 3.
void ReadSystemFile(std::string_view variant_name);

/// Checks the filled table: each element's own fields first and, when the ErrorLevel then is below 2, the
/// links between the elements. Every finding is reported; one notice closes a stage that ends with level 2
/// or more.
void CheckSystemLogic();

/// Reports every element for which an open data file holds more than one value line ("A14"); `kind` is the
/// element type whose value columns the file has: N, K, E, T, V or B. Each report's level becomes the run's;
/// returns that of the last one, 0 without any. Leaves the unit rewound.
std::int32_t CheckDuplicateData(char kind, std::string_view file_name, int unit);

using FileName = runtime::FixedText<200>;

/// The name of a variant's file: the name without trailing blanks, then the extension, cut at 200 characters.
FileName file_name_of(std::string_view variant_name, std::string_view extension);

/// Puts the module back into its state at the start of the program. For tests.
void reset();

}  // namespace m_System
