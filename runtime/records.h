#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

/// Where a record stands, with its length and its line end, so that it can be had again without looking for
/// its end. In one word, as an index holds one for every record of a file.
class RecordPlace {
 public:
  RecordPlace() = default;
  /// `next` is where the record behind it begins.
  RecordPlace(std::size_t begin, std::size_t length, std::size_t next)
      : packed_(begin << begin_shift | std::min(length, unmeasured) << length_shift |
                (next - begin - length)) {}

  [[nodiscard]] RecordPosition position() const { return {packed_ >> begin_shift}; }
  /// False for a very long record: its end must be looked for again.
  [[nodiscard]] bool measured() const { return length() != unmeasured; }
  [[nodiscard]] std::size_t length() const { return (packed_ >> length_shift) & unmeasured; }
  [[nodiscard]] std::size_t line_end() const { return packed_ & line_end_bits; }

 private:
  static constexpr unsigned begin_shift = 16;
  static constexpr unsigned length_shift = 2;
  static constexpr std::size_t line_end_bits = 3;
  static constexpr std::size_t unmeasured = (std::size_t{1} << (begin_shift - length_shift)) - 1;
  std::uint64_t packed_ = 0;
};

/// What bytes a text has.
struct TextBytes {
  bool carriage_returns = false;
  bool above_ascii = false;
};
/// Takes a part of a text into account.
void note_bytes(TextBytes& bytes, std::string_view part);

/// The text of a file and the place up to which its records were read.
class Records {
 public:
  /// Takes the text over; the place stays.
  void take(FileMemory data, std::size_t size, TextBytes bytes);
  /// Gives the memory of the text back; the place stays.
  void drop();

  /// The next record; false at the end of the text.
  bool next(std::string_view& record) {
    if (next_ >= size_) {
      past_end_ = true;
      return false;
    }
    record = bytes_.carriage_returns ? cut_at_either() : cut_at_feed();
    return true;
  }
  /// The record at that place, as `next` would read it from there; false when there is none.
  bool at(RecordPlace place, std::string_view& record) {
    go_to(place.position());
    const std::size_t behind = next_ + place.length() + place.line_end();
    if (!place.measured() || behind > size_) return next(record);
    record = {data_.get() + next_, place.length()};
    next_ = behind;
    return true;
  }
  /// The place of a record that was read last.
  [[nodiscard]] RecordPlace place_of(std::string_view record) const {
    return {static_cast<std::size_t>(record.data() - data_.get()), record.size(), next_};
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
  [[nodiscard]] const TextBytes& bytes() const { return bytes_; }
  /// Says that the record at that place will be read soon. Changes nothing but the time.
  void announce(RecordPosition position) const;

 private:
  // The next place of a line-end character, kept until the reading has passed it: a text that has one kind of
  // line end at its beginning only is not searched for it once a line.
  struct NextCharacter {
    std::size_t searched_from = 1;
    std::size_t place = 0;  // the end of the text when there is none
    std::size_t find(const char* data, std::size_t size, std::size_t from, char wanted);
  };

  std::string_view cut_at_feed() {
    const char* const begin = data_.get() + next_;
    const std::size_t rest = size_ - next_;
    const void* const feed = std::memchr(begin, '\n', rest);
    const std::size_t length =
        feed == nullptr ? rest : static_cast<std::size_t>(static_cast<const char*>(feed) - begin);
    next_ += feed == nullptr ? length : length + 1;
    return {begin, length};
  }
  std::string_view cut_at_either();

  FileMemory data_;
  std::size_t size_ = 0;
  std::size_t next_ = 0;
  bool past_end_ = false;
  TextBytes bytes_;
  NextCharacter line_feed_;
  NextCharacter carriage_return_;
};

}  // namespace runtime
