#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>

#include "runtime/fixed_text.h"
#include "runtime/format.h"
#include "runtime/put_fields.h"

/// The run of a format by the compiler, for the lines that are written for every element. The bytes are those
/// of the general way (`put_formatted`), which looks at one element of the format after the other.
namespace runtime::detail {

template <SourceText notation>
consteval const FormatItem& item_at(std::size_t i) {
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

/// The characters of a fixed text; 0 for any other type.
template <class T>
inline constexpr std::size_t text_width = 0;
template <std::size_t N>
inline constexpr std::size_t text_width<FixedText<N>> = N;

/// A value of fixed size that the element edits in given columns.
template <class T>
consteval bool fits_compiled(const FormatItem& item) {
  if (std::same_as<T, float>) return item.edit == Edit::fixed;
  if (std::same_as<T, std::int32_t>) return item.edit == Edit::integer && item.width > 0;
  return text_width<T> > 0 && item.edit == Edit::text && item.width == 0;
}

template <SourceText notation, class... Values>
consteval bool can_be_compiled() {
  for (const FormatItem& item : stored_format<notation>.items) {
    if (item.edit == Edit::tab || item.edit == Edit::slash) return false;
  }
  if (sizeof...(Values) != format<notation>.fields()) return false;
  std::size_t field = 0;
  return (fits_compiled<Values>(format<notation>.field(field++)) && ...);
}

/// Formats of one record in which every field is of a known width.
template <SourceText notation, class... Values>
inline constexpr bool is_compiled = can_be_compiled<notation, Values...>();

/// The most bytes of the record, without its line end.
template <SourceText notation, class... Values>
inline constexpr std::size_t compiled_size = format<notation>.written_columns +
                                             (text_width<Values> + ... + 0);

template <SourceText notation, std::size_t I, class Values>
char* put_element(char* place, const Values& values) {
  constexpr FormatItem item = item_at<notation>(I);
  if constexpr (item.edit == Edit::skip) {
    return place;
  } else {
    constexpr std::size_t skipped = columns_before<notation>(I);
    std::memset(place, ' ', skipped);
    place += skipped;
    if constexpr (item.edit == Edit::literal) {
      return put_bytes(place, format<notation>.literal(item));
    } else {
      const auto& value = std::get<values_before<notation>(I)>(values);
      if constexpr (item.edit == Edit::text) {
        std::memcpy(place, value.bytes.data(), value.bytes.size());
        return place + value.bytes.size();
      } else if constexpr (item.edit == Edit::integer) {
        return put_integer<item.width, item.decimals>(place, value);
      } else {
        return put_fixed<item.width, item.decimals>(place, value);
      }
    }
  }
}

/// Writes the record into memory with room for `compiled_size` and returns the place behind.
template <SourceText notation, class... Values>
char* put_compiled(char* place, const Values&... values) {
  const auto all = std::tie(values...);
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    ((place = put_element<notation, I>(place, all)), ...);
  }
  (std::make_index_sequence<stored_format<notation>.items.size()>{});
  return place;
}

}  // namespace runtime::detail
