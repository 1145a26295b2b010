#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace runtime {

/// Bytes on their way to a file. Room is asked for once a record and written into directly; unlike a string
/// it is not filled before.
class OutputBuffer {
 public:
  /// So much is had at once, for one block and a long record: what is written later asks for no more.
  static constexpr std::size_t least_capacity = (std::size_t{1} << 18U) + (std::size_t{1} << 16U);

  [[nodiscard]] const char* data() const { return bytes_.get(); }
  [[nodiscard]] std::size_t size() const { return size_; }
  void clear() { size_ = 0; }

  /// The place behind the last byte, with room for `count` more.
  char* room(std::size_t count) {
    if (capacity_ - size_ < count) grow(count);
    return bytes_.get() + size_;
  }
  /// Takes the bytes up to `end`, which were written into the room.
  void take_up_to(const char* end) { size_ = static_cast<std::size_t>(end - bytes_.get()); }

  OutputBuffer& operator+=(std::string_view text) {
    char* place = room(text.size());
    take_up_to(std::copy(text.begin(), text.end(), place));
    return *this;
  }

 private:
  void grow(std::size_t count) {
    const std::size_t capacity = std::max(size_ + count, capacity_ + std::max(capacity_, least_capacity));
    std::unique_ptr<char[]> bytes(new char[capacity]);
    std::copy_n(bytes_.get(), size_, bytes.get());
    bytes_ = std::move(bytes);
    capacity_ = capacity;
  }

  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

/// Records on their way to a file.
struct RecordOutput {
  OutputBuffer pending;
  std::string_view line_end;   ///< of the host's text files
  bool inside_record = false;  ///< a text was written whose record is not ended

  /// So many bytes are handed to the host at a time.
  static constexpr std::size_t block = std::size_t{1} << 18U;
  [[nodiscard]] bool full() const { return pending.size() >= block; }

  /// The place of the next record, with room for so many bytes and a line end.
  char* record(std::size_t most_bytes) { return pending.room(most_bytes + line_end.size()); }
  /// Ends the record, which was written up to `end`.
  void end_record(char* end) {
    for (const char character : line_end) *end++ = character;
    pending.take_up_to(end);
    inside_record = false;
  }
};

}  // namespace runtime
