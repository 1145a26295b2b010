#include "runtime/records.h"

#include <cstring>
#include <utility>

namespace runtime {
namespace {

constexpr bool is_line_end(char character) {
  return character == '\n' || character == '\r';
}

const char* find(std::string_view text, char wanted) {
  return static_cast<const char*>(std::memchr(text.data(), wanted, text.size()));
}

// The text before a place in it; null is its end.
std::string_view up_to(const char* end, std::string_view text) {
  return end == nullptr ? text : std::string_view(text.data(), static_cast<std::size_t>(end - text.data()));
}

// The text before its first line end, LF or CR. It is looked for block by block: a text with one kind of line
// end would otherwise be searched to its end for the other, once a record.
std::string_view up_to_either(std::string_view text) {
  constexpr std::size_t block = 512;
  for (std::size_t looked_at = 0; looked_at < text.size(); looked_at += block) {
    const std::string_view piece = text.substr(looked_at, block);
    const char* const feed = find(piece, '\n');
    const char* const carriage = find(up_to(feed, piece), '\r');
    if (carriage != nullptr || feed != nullptr) return up_to(carriage != nullptr ? carriage : feed, text);
  }
  return text;
}

}  // namespace

void Records::take(FileMemory data, std::size_t size, bool carriage_returns) {
  data_ = std::move(data);
  size_ = size;
  carriage_returns_ = carriage_returns;
}

void Records::drop() {
  take({}, 0, false);
}

std::string_view Records::cut_at_either() {
  const std::string_view text = rest();
  const std::string_view record = up_to_either(text);
  const bool both = text.substr(record.size()).starts_with("\r\n");
  next_ = std::min(next_ + record.size() + (both ? 2 : 1), size_);
  return record;
}

void Records::backspace() {
  if (!past_end_ && next_ > 0) {
    const char* const data = data_.get();
    std::size_t end = next_ - 1;
    if (data[end] == '\n' && end > 0 && data[end - 1] == '\r') --end;
    if (!is_line_end(data[end])) ++end;
    while (end > 0 && !is_line_end(data[end - 1])) --end;
    next_ = end;
  }
  past_end_ = false;
}

bool Records::ends_with_line_end() const {
  return is_line_end(data_[next_ - 1]);
}

void Records::announce(RecordPosition position) const {
  // The record and the one below it, which often belongs to it.
  constexpr std::size_t cache_line = 64;
  if (position.byte + cache_line < size_) {
    __builtin_prefetch(data_.get() + position.byte);
    __builtin_prefetch(data_.get() + position.byte + cache_line);
  }
}

}  // namespace runtime
