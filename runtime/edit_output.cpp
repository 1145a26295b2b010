#include "runtime/edit_output.h"

#include <algorithm>
#include <string>

#include "runtime/put_fields.h"

namespace runtime {
namespace {

using namespace detail;

// A value of the wrong kind is a fault of the caller that must be seen.
char* put_misfit(char* place, const FormatItem& item) {
  return put_asterisks(place, std::max<std::size_t>(item.width, 1));
}

char* put_value(char* place, const FormatItem& item, const Value& value) {
  if (!fits(item, value.kind())) return put_misfit(place, item);
  if (item.edit == Edit::text) return put_text(place, item.width, value.text());
  if (item.edit == Edit::integer) return put_integer(place, item.width, item.decimals, value.integer());
  return put_fixed(place, item.width, item.decimals, value.real());
}

// The place in the records that are written. Columns that are only skipped stay unwritten until something
// follows them; a tab can go back over what is written.
class RecordWriter {
 public:
  explicit RecordWriter(char* place) : record_(place), place_(place), end_(place) {}

  void skip(std::size_t columns) { skipped_ += columns; }
  void tab(std::size_t column) {
    skipped_ = 0;
    end_ = std::max(end_, place_);
    place_ = record_;
    skip(column - 1);
  }
  void end_record(std::string_view line_end) { record_ = place_ = put_bytes(end(), line_end); }

  /// The place for the next field.
  char* field() {
    if (skipped_ > 0) pass_skipped();
    return place_;
  }
  void written_to(char* place) { place_ = place; }
  char* end() {
    skipped_ = 0;
    return end_ = std::max(end_, place_);
  }

 private:
  // Skipped columns that are written already stay as they are, the others are blanks.
  void pass_skipped() {
    const std::size_t written = end_ > place_ ? static_cast<std::size_t>(end_ - place_) : 0;
    const std::size_t passed = std::min(skipped_, written);
    place_ = put_blanks(place_ + passed, skipped_ - passed);
    skipped_ = 0;
  }

  char* record_;
  char* place_;
  char* end_;
  std::size_t skipped_ = 0;
};

}  // namespace

std::size_t most_bytes(const Format& format, std::span<const Value> values, std::string_view line_end) {
  // The digits of any number in a field of minimal width, with its sign.
  constexpr std::size_t open_number = 21;
  std::size_t bytes = format.written_columns + format.slashes * line_end.size();
  for (const Value& value : values) {
    bytes += value.kind() == Value::Kind::text ? value.text().size() : open_number;
  }
  return bytes;
}

char* put_formatted(char* place, const Format& format, std::span<const Value> values,
                    std::string_view line_end) {
  RecordWriter record(place);
  const Value* value = values.data();
  const Value* const values_end = value + values.size();
  for (const FormatItem& item : format.items) {
    if (item.takes_value()) {
      if (value == values_end) break;
      record.written_to(put_value(record.field(), item, *value++));
    } else if (item.edit == Edit::skip) {
      record.skip(item.width);
    } else if (item.edit == Edit::literal) {
      record.written_to(put_bytes(record.field(), format.literal(item)));
    } else if (item.edit == Edit::slash) {
      record.end_record(line_end);
    } else {
      record.tab(item.width);
    }
  }
  return record.end();
}

std::string formatted(const Format& format, std::span<const Value> values, std::string_view line_end) {
  std::string text(most_bytes(format, values, line_end), ' ');
  const char* const end = put_formatted(text.data(), format, values, line_end);
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

}  // namespace runtime
