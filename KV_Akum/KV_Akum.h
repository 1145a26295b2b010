#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "SCRENIX/SCRENIX.h"
#include "runtime/array.h"
#include "runtime/fixed_text.h"

/// The main program: start-up, the order of the run and the accumulation.
namespace KV_Akum {

inline constexpr std::int32_t most_variants = 10;
using VariantName = runtime::FixedText<200>;

/// The variants named on the command line. Only the first is run.
struct VariantList {
  runtime::Slots<VariantName, most_variants> VariantNames;
  /// Names found; 0 when none was given; -999 when there were more than 10, which leaves all names blank.
  std::int32_t VariantCount = 0;
  runtime::Slots<std::int32_t, most_variants> VariantNameLengths;  ///< trimmed lengths
  runtime::FixedText<5> ProgramLabel;  ///< appended to the suite's name in the protocol; blank here
};
extern VariantList variant_list;

inline constexpr std::size_t command_line_width = 256;
using CommandLine = runtime::FixedText<command_line_width>;

/// The command arguments joined with single blanks, each cut at 256 characters, and so is the whole.
CommandLine CommandLineText();

/// Fills the variant list from the command line. `separators` are the characters that cut it into names
/// (trailing blanks stand for the blank itself; a single blank splits into words, however many blanks stand
/// between them); the default is the blank and the slash, so that a variant's folders are separated with
/// backslashes. Two separators side by side give an empty name; one at the very end stays in its name.
/// With `whole_line` the line is one name, its length that of the whole line.
void StartUp(std::optional<std::string_view> separators = std::nullopt, bool whole_line = false);

/// Asks the user for a file with the window library's chooser. Returns whether one was chosen; its path is
/// then in `chosen_name`, padded with blanks. A build without a window system ends the program here.
bool ChooseVariantFile(std::string_view title, std::span<const SCRENIX::FileFilter> filters,
                       std::span<char> chosen_name);

/// Reads the files of the variant: the system logic and, when the run's ErrorLevel then is at most 1, the
/// companion files of the element types that it has, in the order nfl, kfl, trs, ver.
void ReadAllInputs(std::string_view variant_name);

/// Walks the elements once in system order, sums the areas that drain into each (single precision, in the
/// order of the inflows) and writes `NAME.Akum`: for every transport reach the areas in km² that reach it,
/// gathered directly since the last branching or basin, and in total. Ends the program when the memory for
/// the sums is short. All inputs must have been read.
void AccumulateAreas(std::string_view variant_name);

/// The main program. Ends the process itself when no variant is given or its `NAME.sys` does not exist, and
/// returns otherwise. The exit status carries no result.
void ProgramDriver();

/// Runs the main program with the arguments of the process and ends it, exit status 0. Memory that runs out
/// is told on standard error.
[[noreturn]] void RunProgram(int argument_count, const char* const* arguments);

/// Puts the module back into its state at the start of the program. For tests.
void reset();

}  // namespace KV_Akum
