#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "m_System/m_System.h"
#include "runtime/fixed_text.h"

/// The search for an element's line as it is meant: record by record.
namespace plain_search {

inline constexpr std::size_t record_width = 500;

/// A file as its records, read one after the other.
class PlainFile {
 public:
  explicit PlainFile(std::string_view bytes) {
    while (!bytes.empty()) {
      const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
      records_.emplace_back(bytes.substr(0, std::min(end, record_width)));
      const bool two = bytes.substr(end).starts_with("\r\n");
      bytes.remove_prefix(std::min(end + (two ? 2 : 1), bytes.size()));
    }
  }

  std::optional<std::string> read() {
    if (next_ == records_.size()) return std::nullopt;
    return records_[next_++];
  }
  void rewind() { next_ = 0; }
  [[nodiscard]] std::size_t place() const { return next_; }
  [[nodiscard]] const std::vector<std::string>& records() const { return records_; }

 private:
  std::vector<std::string> records_;
  std::size_t next_ = 0;
};

/// What a search finds, and the last mark that it met on the way; 0 is none.
struct PlainFind {
  std::optional<std::string> line;
  std::int32_t last_mark = 0;
};

using MarkOf = std::int32_t (*)(std::string_view line);

/// The next record that names the element in columns 4-8; at the end of the file once more from the
/// beginning.
inline PlainFind plain_find(PlainFile& file, const m_System::ElementName& name, MarkOf mark_of) {
  PlainFind result;
  bool second_pass = false;
  while (true) {
    const auto line = file.read();
    if (!line) {
      if (second_pass) return result;
      second_pass = true;
      file.rewind();
      continue;
    }
    const std::int32_t mark = mark_of == nullptr ? 0 : mark_of(*line);
    if (mark != 0) result.last_mark = mark;
    if (runtime::columns<4, 8>(*line) == name) {
      result.line = line;
      return result;
    }
  }
}

}  // namespace plain_search
