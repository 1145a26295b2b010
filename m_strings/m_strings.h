#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "runtime/fixed_text.h"

/// Text, number and path utilities shared by all modules. Texts are single-byte (Windows-1252) and padded
/// with blanks; positions are 1-based; the trimmed length is the length without trailing blanks.
namespace m_strings {

// Characters and numbers.

/// Turns a .. z, ä, ö and ü into upper case, in place, up to the trimmed length. Everything else stays, ß
/// too.
void ToUpper(std::span<char> text);

/// The kind of a field: 'B' blank (or empty), 'I' a whole number, 'R' a number with exactly one decimal
/// character, 'C' anything else. A sign may stand first, a lone sign is 'I'; blanks between the digits are
/// allowed; an exponent letter makes a field 'C'.
char ClassifyField(std::string_view text, char decimal = '.');

/// The number in a text by the suite's own rules: it begins at the first digit, the character just before
/// decides on the sign ('-') or on a leading fraction ('.'), and it ends at the first character that is
/// neither a digit nor the first point; an "E" or "e" in the text is followed by the exponent in the next
/// five columns. Computed in single precision. A text without a digit gives 0.0; there are no errors.
/// In `text`, an exponent text is turned into upper case and, when `comma_flag` is given, every comma into
/// a point; the flag becomes 1 when there was one and stays as it is otherwise.
float ParseReal(std::span<char> text, std::int32_t* comma_flag = nullptr);

/// Scans a text file, to the first hit, for the bytes that stand for umlauts in the old DOS code page. With
/// a unit it reads that open unit and rewinds it; otherwise it opens the file on a unit from 101 and closes
/// it again. The result is 0, found or not: the suite no longer refuses such files.
std::int32_t ContainsOemUmlauts(std::string_view file_name, std::optional<int> unit = std::nullopt);

/// The number of characters behind the first point of a text, up to its trimmed length; 0 without a point.
std::int32_t DecimalsAfterPoint(std::string_view text);

/// Picks the numbers out of a control line, in their order, and converts each with `ParseReal`; for the
/// callers "steuer" and "STEUER" only, any other name stops the program with a text that tells it.
/// A number begins at a digit, a point or a minus sign and goes on over the characters of ".0123456789eE";
/// a minus sign goes on with it only right behind an exponent letter, otherwise it begins the next number.
/// What holds no digit is no number, and every other character stands between numbers (so a date must part
/// its numbers by something else than points: 1.5.99 is the one number 1.5).
/// Fills `numbers` from its beginning and leaves the rest of it alone; further numbers of the line are
/// dropped. Returns how many were stored.
std::int32_t NumberTokens8(std::string_view text, std::span<double> numbers, std::string_view called_by);
/// The same into single precision.
std::int32_t NumberTokens4(std::string_view text, std::span<float> numbers, std::string_view called_by);

// Numbers to text.

/// A number, a duration or a message piece as the suite hands it about: 20 characters, padded with blanks.
using Text20 = runtime::FixedText<20>;

/// Writes a whole number into the first `width` characters of `text` (a shorter text counts as the width);
/// what stands behind them stays. Right-aligned behind fill characters, with '-' just before the digits, or
/// in the first place with the fill '0'. With the fill 'N' the digits stand left-aligned, a '-' in front of
/// them, and blanks behind. What does not fit shows as '*' in every place, a negative value as '+'.
/// The digits are computed in single precision: 19999 is the smallest value that comes out otherwise (as
/// 20000). `IntToText20` writes every value exactly.
void IntToText(std::int32_t width, std::int32_t value, char fill, std::span<char> text);

/// The value in its decimal digits, left-aligned.
Text20 IntToText20(std::int32_t value);
Text20 LongToText20(std::int64_t value);

/// Makes the first `length` characters the fill character; a length of 0 or less changes nothing, one past
/// the end of the text ends there.
void FillText(std::span<char> text, std::int32_t length, char fill = ' ');

/// Writes a value in a format of one field, such as "(f10.2)". A format that contains an "I" or "i" takes
/// the value rounded to the nearest 32-bit whole number (halves away from zero, the ends of the range beyond
/// it). With `decimal_comma` not 0 every point becomes a comma. A notation that is wrong, and a result of
/// more than 20 characters, show as asterisks.
void RealToText(Text20& text, float value, std::string_view format, std::int32_t decimal_comma = 0);

/// Writes a value with `decimals` places behind the point (less than 0 counts as 0) into the first `width`
/// characters of `text` (a shorter text counts as the width); what stands behind them stays. Alignment 'R'
/// puts it at the right end, anything else at the left, with blanks around. The zero before the point is
/// left out only when a value that is not negative has no room for it. What does not fit, and what is no
/// finite number, shows as asterisks. The value is scaled in single precision and rounded, halves away from
/// zero.
void RealToFixedText(std::int32_t width, char alignment, float value, std::int32_t decimals,
                     std::span<char> text);

// Times.

/// Writes a duration in hours by a layout word: "hh" the hours rounded to the nearest whole number, "hhmm"
/// whole hours and rounded minutes (1:05), "hhmmss" with whole minutes and rounded seconds (1:05:09). Another
/// word leaves the text as it is. Nothing is carried: 1.9999 hours are 1:60. Minutes and seconds of a
/// negative duration are negative, and show as "++" from 10 on.
void HoursToText(Text20& text, float hours, std::string_view layout);

// Paths.

/// Where the parts of a path stand, 1-based.
struct PathParts {
  std::int32_t last_separator = 0;  ///< of the last backslash; 0 when there is none
  std::int32_t extension = 1;       ///< of the last point after it; length + 1 when there is none
  std::int32_t length = 0;          ///< trimmed length
};

/// What `SplitPath` builds and asks for besides the three positions.
struct SplitPathOptions {
  std::optional<std::string_view> new_extension = std::nullopt;  ///< without its point
  std::optional<std::string_view> prefix = std::nullopt;         ///< put before the base name
  std::optional<std::string_view> suffix = std::nullopt;         ///< put behind the base name
  std::string* new_path = nullptr;                               ///< receives the new path
  bool* exists = nullptr;                                        ///< receives whether the file exists
};

/// Finds the directory part, the extension and the length of a path (separator: backslash).
/// With a new extension for a path that has none, the new path is the directory, the prefix, the base name
/// (cut at 50 characters), the suffix, a point and the extension; the positions returned are then those of
/// the new path. Otherwise the new path is the path in upper case. `exists` is false when nothing follows
/// the directory, else the file system's answer for the new path (or for the path in upper case when no new
/// extension is given).
PathParts SplitPath(std::string_view path, const SplitPathOptions& options = {});

}  // namespace m_strings
