#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "runtime/array.h"
#include "runtime/fixed_text.h"

/// Information about a run for the people who maintain the suite.
namespace m_info {

// Runtime protocol.

inline constexpr std::int32_t counter_count = 20;
inline constexpr std::int32_t timer_count = 20;

struct RuntimeProtocol {
  std::int32_t runtime_unit = 0;  ///< of "runtime.pkl"; 0 before its first line; "CLOSE" leaves it
  runtime::Slots<std::int32_t, counter_count> counters;
  runtime::Slots<std::int32_t, timer_count> timers;       ///< accumulated clock ticks
  runtime::Slots<std::int32_t, timer_count> timer_start;  ///< clock at the last "SET"
  runtime::Slots<std::int32_t, timer_count> timer_last;   ///< clock at the last "ADD"
};
extern const RuntimeProtocol& protocol;

/// Keeps counters and stop-watches and writes them to "runtime.pkl" in the working folder. The command is
/// told by its first characters, other ones do nothing:
/// "WRITE" writes, as far as they are given, the text, the count of the counter and the time of the timer, a
/// line each; the first one opens the file on a unit from 200, behind the lines that it holds already.
/// "CLOSE" closes the file and comes last: writing after it ends the program with an I/O error.
/// "SET" puts the counter to 0 and starts the timer; counter 0 means all counters, timer 0 clears the
/// accumulated ticks of all timers and starts none.
/// "ADD" counts the counter up by 1, or else adds the ticks since the timer's start, which stays, so that
/// two in a row both measure from there.
/// Counters and timers are 1 .. 20; another number is passed over. Counts wrap around at 32 bits, as the
/// clock does.
void runtime_protocol(std::string_view command, std::optional<std::string_view> text = std::nullopt,
                      std::optional<std::int32_t> counter = std::nullopt,
                      std::optional<std::int32_t> timer = std::nullopt);

// Working folder.

/// Finds the working folder in the listing that the command interpreter's "dir" makes of it, by way of the
/// file "x_x_x_Tanne.dir", which is deleted again. The result is cut at the text's length or padded with
/// blanks; "####" when the listing names no folder.
void current_directory(std::span<char> result);

// Check list.

/// Day, month and year, or what the tool takes for them.
using Date = runtime::Slots<std::int32_t, 3>;

inline constexpr std::int32_t every_kind = 99;
inline constexpr std::int32_t water_level_capacity = 10;
inline constexpr std::int32_t report_number_count = 21;

/// What "Pruefliste.lis" asks detailed output for.
struct CheckList {
  std::int32_t profiles_wanted = 0;  ///< flags, 0 or 1
  std::int32_t discharge_wanted = 0;
  std::int32_t wsp_detail_wanted = 0;
  std::int32_t report_element_number = 0;
  runtime::FixedText<100> report_element_name = runtime::FixedText<100>("#");  ///< "#": none
  double station_min = 0.0;  ///< the open interval of stations
  double station_max = 0.0;
  runtime::Slots<std::int32_t, report_number_count> report_numbers;  ///< the first three are the date
  std::int32_t report_max_kind = 0;                                  ///< `every_kind`: any
  runtime::Slots<double, water_level_capacity> water_levels;
  std::int32_t water_level_count = 0;  ///< of the lines, also of those past the capacity

  [[nodiscard]] Date report_date() const {
    return {{report_numbers.at(1), report_numbers.at(2), report_numbers.at(3)}};
  }
};
extern const CheckList& check_list;

/// The date of the run, for cases that name none. Set by the tool; reading a check list leaves it.
extern Date run_date;

/// Reads "Pruefliste.lis" from the working folder. Of an earlier list only the element's name is forgotten,
/// also when there is no list now; its other entries stay until a line replaces them, and water levels are
/// added to those that it gave. Of each line, columns 1-20 hold the keyword and columns 21-40 the value;
/// the flags are a "J" or "j" in columns 21-31, a level stands in columns 21-30. A "#" in column 1 makes a
/// comment. A number that cannot be read ends the reading; what was read before it stays, and a water level
/// is counted all the same.
void read_check_list();

/// The case that a tool asks about; the water-level flag asks for the listed levels, too.
struct CheckCase {
  std::optional<std::int32_t> element_number = std::nullopt;
  std::optional<std::string_view> element_name = std::nullopt;
  std::optional<double> station = std::nullopt;
  std::optional<Date> date = std::nullopt;
  std::optional<std::int32_t> kind = std::nullopt;
  bool water_levels = false;
  std::optional<std::string_view> query = std::nullopt;
};

/// 1 when the check list asks for output for this case, else 0.
/// Query words: "Profile" and "Abfluss" ask for the flag of that name; "WSP_detail" for the element of that
/// name, which must be given (its text occurs in the list's, or that holds "alle"), and the kind; "WSPi" for
/// the date. Another word is never wanted. Without a word the element's number, its name (when given), the
/// station and the date (the run's when not given) must be the list's; with `water_levels` a station at one
/// of the listed levels (to 0.00001) is wanted as well, whatever the rest. Without number or station nothing
/// is wanted.
std::int32_t check_list_wants(const CheckCase& wanted);

/// Puts all state back to that of the program's start; open units stay open. For tests.
void reset();

}  // namespace m_info
