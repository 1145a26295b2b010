#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/variant/encoding.h"

namespace schau::variant {

enum class FileState : std::uint8_t { missing, unreadable, read };

enum class LineEnd : std::uint8_t {
  none,  ///< the last line of a file that does not end with one
  lf,
  crlf,
  cr
};

/// A text file, held whole in memory and cut into lines as KV_Akum cuts its records: a line ends at LF, CR LF
/// or a lone CR. Lines and columns count from 1.
class TextFile {
 public:
  /// Reads a file; the state says what came of it. Anything but a regular file (a folder, a pipe) is not
  /// opened and counts as unreadable. `shown` is the name in texts.
  static TextFile read(const std::filesystem::path& path, std::string shown);
  /// A file that is not read, only named.
  static TextFile named(std::string shown);
  /// The same of bytes in memory.
  static TextFile of_bytes(std::string_view bytes, std::string shown);

  [[nodiscard]] FileState state() const { return state_; }
  [[nodiscard]] bool was_read() const { return state_ == FileState::read; }
  /// Why an unreadable file could not be read; German where it is our own reason.
  [[nodiscard]] const std::string& fault() const { return fault_; }
  [[nodiscard]] const std::string& shown() const { return shown_; }

  [[nodiscard]] Encoding encoding() const { return encoding_; }
  [[nodiscard]] std::string_view bytes() const { return {bytes_.get(), size_}; }
  /// True when there is a byte above 127.
  [[nodiscard]] bool has_high_bytes() const { return has_high_bytes_; }
  /// True when there is a control byte other than CR and LF: a tab, a NUL, a DEL ...
  [[nodiscard]] bool has_control_bytes() const { return has_control_bytes_; }

  [[nodiscard]] std::uint32_t line_count() const {
    return static_cast<std::uint32_t>(line_begins_.size()) - 1;
  }
  /// Without its line end. `number` is 1 .. `line_count()`.
  [[nodiscard]] std::string_view line(std::uint32_t number) const;
  [[nodiscard]] LineEnd line_end(std::uint32_t number) const;
  /// The number of lines with that end.
  [[nodiscard]] std::uint32_t count_of(LineEnd end) const {
    return end_counts_[static_cast<std::size_t>(end)];
  }
  /// The column, counted in characters as an editor does, of the byte in a column of KV_Akum's: the two
  /// differ in a file in UTF-8. A byte-order mark is no character. A column behind the line counts on.
  [[nodiscard]] std::size_t character_column(std::uint32_t number, std::size_t byte_column) const;

 private:
  void take_stock();
  void cut_lines();
  void count_line_ends(bool has_cr);

  std::string shown_;
  std::string fault_;
  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
  std::vector<std::size_t> line_begins_{0};    // and the end of the file
  std::array<std::uint32_t, 4> end_counts_{};  // by `LineEnd`
  FileState state_ = FileState::missing;
  Encoding encoding_ = Encoding::windows_1252;
  bool has_high_bytes_ = false;
  bool has_control_bytes_ = false;
  bool ends_with_lf_only_ = false;  // so that a line's end need not be looked at
};

/// The bytes of the columns first to last (from 1) of a line, as far as it goes.
inline std::string_view columns(std::string_view line, std::size_t first, std::size_t last) {
  if (line.size() < first) return {};
  return line.substr(first - 1, last - first + 1);
}

/// True when there is nothing but blanks. Only the blank counts, as in KV_Akum: a tab is a character.
inline bool is_blank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

/// The text without the blanks around it.
inline std::string_view without_blanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace schau::variant
