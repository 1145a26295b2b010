#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

#include "runtime/blocks.h"

// The records of a file that is in memory. A record ends at LF, CR LF or a lone CR, none of them part of it.

namespace runtime {

using FileMemory = std::unique_ptr<char[], ReleaseBlock>;

/// A place between two records of a file: the byte at which the next record begins (0-based).
struct RecordPosition {
  std::size_t byte = 0;
  // NOLINTNEXTLINE(modernize-use-nullptr): the check takes the zero in a defaulted comparison for a pointer
  friend auto operator<=>(const RecordPosition&, const RecordPosition&) = default;
};

/// The text of a file and the place up to which its records were read.
class Records {
 public:
  /// Takes the text over; the place stays. A text without any CR is cut faster when that is told.
  void take(FileMemory data, std::size_t size, bool carriage_returns);
  /// Gives the memory of the text back; the place stays.
  void drop();

  /// The next record; false at the end of the text.
  bool next(std::string_view& record) {
    if (next_ >= size_) {
      past_end_ = true;
      return false;
    }
    record = carriage_returns_ ? cut_at_either() : cut_at_feed();
    return true;
  }

  [[nodiscard]] RecordPosition position() const { return {next_}; }
  void go_to(RecordPosition position) {
    next_ = std::min(position.byte, size_);
    past_end_ = false;
  }
  void rewind() { go_to({}); }
  void go_to_end() { next_ = size_; }
  /// Back before the record that was read last; after a read that met the end, before that end.
  void backspace();
  /// What a write behind the place does: the end has not been read.
  void forget_end() { past_end_ = false; }

  /// Whether the record before the place has a line end.
  [[nodiscard]] bool ends_with_line_end() const;
  /// The text behind the place.
  [[nodiscard]] std::string_view rest() const {
    return next_ < size_ ? std::string_view(data_.get() + next_, size_ - next_) : std::string_view();
  }
  /// Says that the record at that place will be read soon. Changes nothing but the time.
  void announce(RecordPosition position) const;

 private:
  std::string_view cut_at_feed() {
    const std::string_view text = rest();
    const std::string_view record = text.substr(0, text.find('\n'));
    next_ = std::min(next_ + record.size() + 1, size_);
    return record;
  }
  std::string_view cut_at_either();

  FileMemory data_;
  std::size_t size_ = 0;
  std::size_t next_ = 0;
  bool past_end_ = false;
  bool carriage_returns_ = false;
};

}  // namespace runtime
