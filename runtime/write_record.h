#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <utility>

#include "runtime/fixed_text.h"
#include "runtime/format.h"
#include "runtime/output_buffer.h"
#include "runtime/put_fields.h"

// The lines that a run writes for every element. `write` runs any format by looking at one element after the
// other; here the compiler does that, and the bytes are the same.

namespace runtime {

struct Connection;

/// Writes one record after the other: what a unit is connected to is looked up once. The unit must stay
/// connected and must not be read or gone back on meanwhile.
class LineWriter {
 public:
  explicit LineWriter(int unit);

  /// The place of the next record, with room for so many bytes and a line end.
  char* room(std::size_t most_bytes) { return output_->pending.room(most_bytes + output_->line_end.size()); }
  /// Ends the record, which was written up to `end`.
  void end_record(char* end) {
    output_->pending.take_up_to(detail::put_bytes(end, output_->line_end));
    output_->inside_record = false;
    if (output_->pending.size() >= block) hand_over();
  }
  [[nodiscard]] std::string_view line_end() const { return output_->line_end; }

  /// So many bytes are handed to the host at a time.
  static constexpr std::size_t block = std::size_t{1} << 18U;

 private:
  void hand_over();

  Connection* connection_;
  RecordOutput* output_;
};

namespace detail {

template <SourceText notation>
constexpr const FormatItem& item_at(std::size_t i) {
  return stored_format<notation>.items[i];
}

/// The columns skipped right before an element.
template <SourceText notation>
consteval std::size_t columns_before(std::size_t i) {
  std::size_t columns = 0;
  while (i > 0 && item_at<notation>(i - 1).edit == Edit::skip) columns += item_at<notation>(--i).width;
  return columns;
}

template <SourceText notation>
consteval std::size_t values_before(std::size_t i) {
  std::size_t values = 0;
  while (i-- > 0) values += item_at<notation>(i).takes_value() ? 1 : 0;
  return values;
}

/// Tabs and slashes need the general way.
template <SourceText notation>
consteval bool is_one_plain_record() {
  for (const FormatItem& item : stored_format<notation>.items) {
    if (item.edit == Edit::tab || item.edit == Edit::slash) return false;
  }
  return true;
}

template <std::size_t N>
char* put_one(char* place, const FixedText<N>& text) {
  std::memcpy(place, text.bytes.data(), N);
  return place + N;
}

template <SourceText notation, std::size_t I, class Values>
char* put_element(char* place, const Values& values) {
  constexpr FormatItem item = item_at<notation>(I);
  if constexpr (item.edit != Edit::skip) {
    constexpr std::size_t skipped = columns_before<notation>(I);
    if constexpr (skipped > 0) {
      std::memset(place, ' ', skipped);
      place += skipped;
    }
    if constexpr (item.edit == Edit::literal) {
      return put_bytes(place, format<notation>.literal(item));
    } else {
      const auto& value = std::get<values_before<notation>(I)>(values);
      if constexpr (item.edit == Edit::text) {
        static_assert(item.width == 0, "a text stands as a whole");
        return put_one(place, value);
      } else if constexpr (item.edit == Edit::integer) {
        static_assert(item.width > 0, "a number stands in a given width");
        return put_integer<item.width, item.decimals>(place, value);
      } else {
        return put_fixed<item.width, item.decimals>(place, value);
      }
    }
  }
  return place;
}

template <std::size_t N>
constexpr std::size_t text_bytes(const FixedText<N>*) {
  return N;
}
constexpr std::size_t text_bytes(const void*) {
  return 0;
}

}  // namespace detail

/// Writes one record as `write` does with that format. The texts are fixed texts and stand with
/// all their characters, whole numbers and reals in given widths; the values must be as many as the fields.
template <SourceText notation, class... Values>
void write_record(LineWriter& writer, const Values&... values) {
  static_assert(detail::is_one_plain_record<notation>());
  static_assert(sizeof...(Values) == format<notation>.fields());
  constexpr std::size_t most =
      format<notation>.written_columns + (detail::text_bytes(static_cast<const Values*>(nullptr)) + ... + 0);
  char* place = writer.room(most);
  const auto all = std::tie(values...);
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    ((place = detail::put_element<notation, I>(place, all)), ...);
  }
  (std::make_index_sequence<detail::stored_format<notation>.items.size()>{});
  writer.end_record(place);
}

}  // namespace runtime
