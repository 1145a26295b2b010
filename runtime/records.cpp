#include "runtime/records.h"

#include <utility>

namespace runtime {
namespace {

constexpr bool is_line_end(char character) {
  return character == '\n' || character == '\r';
}

}  // namespace

void note_bytes(TextBytes& bytes, std::string_view part) {
  // In single bytes and without a branch, so that many are looked at side by side.
  unsigned char seen = 0;
  for (const char character : part) seen |= static_cast<unsigned char>(character);
  bytes.above_ascii |= seen > 127;
  bytes.carriage_returns |= std::memchr(part.data(), '\r', part.size()) != nullptr;
}

void Records::take(FileMemory data, std::size_t size, TextBytes bytes) {
  data_ = std::move(data);
  size_ = size;
  bytes_ = bytes;
  line_feed_ = {};
  carriage_return_ = {};
}

void Records::drop() {
  take({}, 0, {});
}

std::size_t Records::NextCharacter::find(const char* data, std::size_t size, std::size_t from, char wanted) {
  if (from < searched_from || from > place) {
    searched_from = from;
    const void* const hit = std::memchr(data + from, wanted, size - from);
    place = hit == nullptr ? size : static_cast<std::size_t>(static_cast<const char*>(hit) - data);
  }
  return place;
}

std::string_view Records::cut_at_either() {
  const char* const data = data_.get();
  const std::size_t begin = next_;
  const std::size_t feed = line_feed_.find(data, size_, begin, '\n');
  const std::size_t carriage = carriage_return_.find(data, size_, begin, '\r');
  const std::size_t end = std::min(feed, carriage);
  const bool both = carriage < feed && feed == carriage + 1 && feed < size_;
  next_ = std::min(end + (both ? 2 : 1), size_);
  return {data + begin, end - begin};
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
