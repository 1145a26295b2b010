#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

/// Tables that are separated by characters.
namespace schau::csv {

/// Reads the rows of a table that is separated by characters, after RFC 4180: fields may stand in quotation
/// marks and then hold separators, line ends and doubled quotation marks. Beyond the RFC, rows may also end
/// at LF or CR alone. Linear in the text.
class Reader {
 public:
  /// The text must outlive the fields; in `texts` those are put that are no piece of it.
  Reader(std::string_view text, char separator, std::deque<std::string>& texts);

  enum class Outcome : std::uint8_t {
    row,
    end,
    bad_quotes  ///< a quotation mark that is not closed, or text behind a closed one; nothing can be read on
  };
  /// Reads the next row that is not blank.
  Outcome next(std::vector<std::string_view>& fields);

  /// The line, from 1, in which the last row begins.
  [[nodiscard]] std::uint32_t line() const { return line_; }

 private:
  std::string_view unquoted(std::string_view field);

  std::string_view rest_;
  std::string stops_;
  std::deque<std::string>& texts_;
  std::uint32_t line_ = 0;
  std::uint32_t next_line_ = 1;
};

}  // namespace schau::csv
