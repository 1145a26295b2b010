#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/variant/variant.h"

/// Repairs of a variant that have one meaning only. What could have been meant otherwise stays as it is.
namespace schau::mend {

/// What is mended.
enum class Repair : std::uint8_t {
  encoding,         ///< UTF-8 to Windows-1252, a byte-order mark taken away
  line_ends,        ///< different ones in a file, to the most frequent
  doubled_ends,     ///< CR CR LF, as a wrong transfer makes it, to CR LF
  tabs,             ///< to blanks, where one tab width brings everything into its columns
  decimal_commas,   ///< in the number fields of records
  trailing_blanks,  ///< at the ends of lines
  order             ///< elements before their inflows, to behind the last of these
};
inline constexpr std::size_t repair_count = 7;

/// A line as it becomes. Its text lies in the old file or in `Mended::texts`.
struct Line {
  std::string_view text;
  variant::LineEnd end = variant::LineEnd::lf;
  std::uint32_t old_number = 0;  ///< in the old file, from 1
  bool moved = false;
};

/// A file as it becomes. The lines that are not moved stand in the order of the old file.
struct MendedFile {
  variant::FileId id = variant::FileId::sys;
  std::vector<Line> lines;
  variant::Encoding encoding = variant::Encoding::windows_1252;
  /// By `Repair`: the lines that it changed.
  std::array<std::uint32_t, repair_count> changes{};

  [[nodiscard]] std::uint32_t& changed(Repair repair) { return changes[static_cast<std::size_t>(repair)]; }
  [[nodiscard]] bool is_changed() const;
};

/// Something that looks like a case for a repair, but could be meant otherwise.
struct Left {
  variant::FileId file = variant::FileId::sys;
  std::uint32_t line = 0;  ///< 0: the file as a whole
  std::string text;        ///< a German sentence without its full stop
};

struct Mended {
  std::vector<MendedFile> files;  ///< those that were read, in the order of a run
  std::vector<Left> left;         ///< sorted by file and line
  std::deque<std::string> texts;

  [[nodiscard]] bool is_changed() const;
};

/// Mends a variant in memory; a variant without faults comes back byte for byte. The variant must outlive
/// what is returned. Linear in the files.
Mended mend(const variant::Variant& variant);

/// The bytes of a file as it becomes.
std::string bytes_of(const MendedFile& file);

/// Writes the changed files; the old ones stay beside them, with "~" behind their names. All are written, or
/// none. Returns the names of what was written. Throws run::FileFault, also when there is a file with "~"
/// already that holds something else and is not to be replaced.
std::vector<std::string> write(const Mended& mended, const variant::Variant& variant, bool replace_older);

}  // namespace schau::mend
