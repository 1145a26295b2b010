#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

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

// Paths.

/// Where the parts of a path stand, 1-based.
struct PathParts {
  std::int32_t last_separator = 0;  ///< of the last backslash; 0 when there is none
  std::int32_t extension = 1;       ///< of the last point after it; length + 1 when there is none
  std::int32_t length = 0;          ///< trimmed length
};

/// What `SplitPath` builds and asks for besides the three positions.
struct SplitPathOptions {
  std::optional<std::string_view> new_extension;  ///< without its point
  std::optional<std::string_view> prefix;         ///< put before the base name
  std::optional<std::string_view> suffix;         ///< put behind the base name
  std::string* new_path = nullptr;                ///< receives the new path
  bool* exists = nullptr;                         ///< receives whether the file exists
};

/// Finds the directory part, the extension and the length of a path (separator: backslash).
/// With a new extension for a path that has none, the new path is the directory, the prefix, the base name
/// (cut at 50 characters), the suffix, a point and the extension; the positions returned are then those of
/// the new path. Otherwise the new path is the path in upper case. `exists` is false when nothing follows
/// the directory, else the file system's answer for the new path (or for the path in upper case when no new
/// extension is given).
PathParts SplitPath(std::string_view path, const SplitPathOptions& options = {});

}  // namespace m_strings
