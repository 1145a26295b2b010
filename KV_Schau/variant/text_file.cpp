#include "KV_Schau/variant/text_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>
#include <utility>

namespace schau::variant {
namespace {

namespace fs = std::filesystem;

// In the words of the language's own errors where there are any: those of a system may be in any encoding.
std::string reason_of(const std::error_code& error) {
  return error.default_error_condition().message();
}

}  // namespace

TextFile TextFile::read(const fs::path& path, std::string shown) {
  TextFile file = named(std::move(shown));
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) return file;
  file.state_ = FileState::unreadable;
  if (status.type() != fs::file_type::regular) {
    file.fault_ = fs::is_directory(status) ? "ist ein Ordner" : "ist keine gewöhnliche Datei";
    return file;
  }
  const std::uintmax_t size = fs::file_size(path, error);
  errno = 0;
  std::ifstream source(path, std::ios::binary);
  if (!error && !source) error = {errno == 0 ? EIO : errno, std::generic_category()};
  if (error) {
    file.fault_ = reason_of(error);
    return file;
  }
  file.size_ = static_cast<std::size_t>(size);
  file.bytes_ = std::make_unique_for_overwrite<char[]>(file.size_);
  source.read(file.bytes_.get(), static_cast<std::streamsize>(file.size_));
  if (!source) {
    file.fault_ = "endet vor ihrer Länge: sie wird gerade geändert, oder der Datenträger ist gestört";
    return file;
  }
  file.state_ = FileState::read;
  file.take_stock();
  return file;
}

TextFile TextFile::named(std::string shown) {
  TextFile file;
  file.shown_ = std::move(shown);
  return file;
}

TextFile TextFile::of_bytes(std::string_view bytes, std::string shown) {
  TextFile file = named(std::move(shown));
  file.size_ = bytes.size();
  file.bytes_ = std::make_unique_for_overwrite<char[]>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), file.bytes_.get());
  file.state_ = FileState::read;
  file.take_stock();
  return file;
}

// In single bytes and without a way out, so that many bytes are looked at side by side.
void TextFile::take_stock() {
  std::uint8_t high = 0;
  std::uint8_t control = 0;
  for (const char character : bytes()) {
    const auto byte = static_cast<std::uint8_t>(character);
    const std::uint8_t is_control = (byte < 0x20 && byte != '\n' && byte != '\r') || byte == 0x7F ? 1 : 0;
    high = static_cast<std::uint8_t>(high | byte);
    control = static_cast<std::uint8_t>(control | is_control);
  }
  has_high_bytes_ = (high & 0x80U) != 0;
  has_control_bytes_ = control != 0;
  if (has_high_bytes_ || has_control_bytes_) encoding_ = encoding_of(bytes());
  cut_lines();
}

void TextFile::cut_lines() {
  constexpr std::size_t usual_line = 32;
  const char* const begin = bytes_.get();
  const char* const end = begin + size_;
  line_begins_.reserve(size_ / usual_line + 2);
  const bool has_cr = size_ > 0 && std::memchr(begin, '\r', size_) != nullptr;
  const auto is_end = [](char byte) { return byte == '\n' || byte == '\r'; };
  for (const char* place = begin; place != end;) {
    const auto left = static_cast<std::size_t>(end - place);
    const void* const lf = has_cr ? std::find_if(place, end, is_end) : std::memchr(place, '\n', left);
    const char* const line_end = lf == nullptr ? end : static_cast<const char*>(lf);
    place = line_end == end ? end : line_end + 1;
    if (line_end != end && *line_end == '\r' && place != end && *place == '\n') ++place;
    line_begins_.push_back(static_cast<std::size_t>(place - begin));
  }
  count_line_ends(has_cr);
}

void TextFile::count_line_ends(bool has_cr) {
  const auto count = [this](LineEnd end) -> std::uint32_t& {
    return end_counts_[static_cast<std::size_t>(end)];
  };
  if (line_count() == 0) return;
  if (!has_cr) {
    const bool last_is_open = line_end(line_count()) == LineEnd::none;
    count(LineEnd::none) = last_is_open ? 1 : 0;
    count(LineEnd::lf) = line_count() - count(LineEnd::none);
    ends_with_lf_only_ = !last_is_open;
    return;
  }
  for (std::uint32_t number = 1; number <= line_count(); ++number) ++count(line_end(number));
}

LineEnd TextFile::line_end(std::uint32_t number) const {
  const std::size_t begin = line_begins_[number - 1];
  const std::size_t end = line_begins_[number];
  const char last = bytes_[end - 1];
  if (last == '\r') return LineEnd::cr;
  if (last != '\n') return LineEnd::none;
  return end - begin >= 2 && bytes_[end - 2] == '\r' ? LineEnd::crlf : LineEnd::lf;
}

std::string_view TextFile::line(std::uint32_t number) const {
  static constexpr std::size_t end_length[] = {0, 1, 2, 1};
  const std::size_t begin = line_begins_[number - 1];
  if (ends_with_lf_only_) return {bytes_.get() + begin, line_begins_[number] - begin - 1};
  const std::size_t cut = end_length[static_cast<std::size_t>(line_end(number))];
  return bytes().substr(begin, line_begins_[number] - begin - cut);
}

std::size_t TextFile::character_column(std::uint32_t number, std::size_t byte_column) const {
  if (encoding_ != Encoding::utf_8) return byte_column;
  const std::string_view text = line(number);
  const std::size_t mark = number == 1 ? byte_order_mark_length(text) : 0;
  if (byte_column <= mark) return 1;
  const std::string_view before = text.substr(mark, byte_column - 1 - mark);
  return utf8_length(before) + 1 + (byte_column - 1 - mark - before.size());
}

}  // namespace schau::variant
