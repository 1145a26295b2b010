#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "runtime/cp1252.h"

namespace runtime {

/// The elements of the format notation (ISO/IEC 1539-1, "Input/output editing").
enum class Edit : std::uint8_t {
  text,     ///< A (whole value, width 0) or An
  integer,  ///< Iw or Iw.m; I0 is the minimal width
  fixed,    ///< Fw.d
  literal,  ///< quoted text, a doubled quote stands for one
  skip,     ///< nX
  tab,      ///< Tn, 1-based column
  slash     ///< end of the record
};

struct FormatItem {
  Edit edit = Edit::skip;
  std::uint16_t width = 0;     ///< w of A, I, F; n of X and T; length of a literal
  std::uint16_t decimals = 0;  ///< d of F, m of I
  std::uint16_t offset = 0;    ///< first byte of a literal in the pool

  /// True for the elements that take a value.
  [[nodiscard]] constexpr bool takes_value() const { return edit <= Edit::fixed; }
};

/// A format ready to be run: its elements with groups and repeat counts written out, and the bytes of its
/// literals. A view: it does not own them.
struct Format {
  std::span<const FormatItem> items;
  std::string_view pool;
  /// The most bytes that one run of the format writes, without its whole texts, minimal-width numbers and
  /// line ends.
  std::size_t written_columns = 0;
  std::size_t slashes = 0;

  /// How many values the format takes.
  [[nodiscard]] constexpr std::size_t fields() const {
    std::size_t count = 0;
    for (const FormatItem& item : items) count += item.takes_value() ? 1 : 0;
    return count;
  }
  /// The n-th element (0-based) that takes a value.
  [[nodiscard]] constexpr const FormatItem& field(std::size_t n) const {
    std::size_t i = 0;
    while (!items[i].takes_value() || n-- > 0) ++i;
    return items[i];
  }
  [[nodiscard]] constexpr std::string_view literal(const FormatItem& item) const {
    return pool.substr(item.offset, item.width);
  }
};

/// A parsed format that owns its elements. `valid` is false when the notation is wrong.
struct ParsedFormat {
  static constexpr std::size_t item_capacity = 96;
  static constexpr std::size_t pool_capacity = 1024;

  std::array<FormatItem, item_capacity> items{};
  std::size_t item_count = 0;
  Cp1252Text<pool_capacity> pool;
  bool valid = false;

  [[nodiscard]] constexpr Format view() const;
};

/// The most columns that the elements take, each behind the one before or at its tab; the digits that a field
/// of minimal width must have are counted too.
constexpr std::size_t columns_of(std::span<const FormatItem> items) {
  std::size_t columns = 0;
  for (const FormatItem& item : items) columns += std::size_t{item.width} + item.decimals;
  return columns;
}

constexpr std::size_t slashes_of(std::span<const FormatItem> items) {
  std::size_t slashes = 0;
  for (const FormatItem& item : items) slashes += item.edit == Edit::slash ? 1 : 0;
  return slashes;
}

constexpr Format ParsedFormat::view() const {
  const std::span<const FormatItem> used(items.data(), item_count);
  return {used, pool.view(), columns_of(used), slashes_of(used)};
}

namespace detail {

class FormatParser {
 public:
  constexpr explicit FormatParser(std::string_view notation) : rest_(notation) {}

  constexpr ParsedFormat parse() {
    result_.valid = true;
    skip_blanks();
    if (!take('(')) fail();
    list();
    skip_blanks();
    if (!rest_.empty() || !result_.pool.valid) fail();
    return result_;
  }

 private:
  constexpr void fail() { result_.valid = false; }
  constexpr void skip_blanks() {
    while (!rest_.empty() && rest_.front() == ' ') rest_.remove_prefix(1);
  }
  [[nodiscard]] constexpr char peek() const { return rest_.empty() ? '\0' : rest_.front(); }
  constexpr bool take(char wanted) {
    if (peek() != wanted) return false;
    rest_.remove_prefix(1);
    return true;
  }
  [[nodiscard]] constexpr bool digit_ahead() const { return peek() >= '0' && peek() <= '9'; }

  constexpr std::uint16_t number(std::uint16_t when_absent) {
    skip_blanks();
    if (!digit_ahead()) return when_absent;
    std::uint32_t value = 0;
    while (digit_ahead()) {
      value = value * 10 + static_cast<std::uint32_t>(peek() - '0');
      if (value > 9999) {
        fail();
        value = 0;
      }
      rest_.remove_prefix(1);
    }
    return static_cast<std::uint16_t>(value);
  }

  constexpr void add(FormatItem item, std::uint16_t times = 1) {
    for (std::uint16_t i = 0; i < times; ++i) {
      if (result_.item_count == ParsedFormat::item_capacity) return fail();
      result_.items[result_.item_count++] = item;
    }
  }

  // The elements up to and with the closing bracket, at least one. A comma stands between two of them;
  // beside a slash it may be left out.
  constexpr void list() {
    while (result_.valid) {
      element();
      if (!result_.valid) return;
      skip_blanks();
      if (take(')')) return;
      if (take(',') || slash_ahead()) continue;
      if (result_.items[result_.item_count - 1].edit != Edit::slash) return fail();
    }
  }

  [[nodiscard]] constexpr bool slash_ahead() const {
    const std::size_t place = rest_.find_first_not_of("0123456789 ");
    return place != std::string_view::npos && rest_[place] == '/';
  }

  constexpr void element() {
    skip_blanks();
    if (peek() == '\'') return quoted();
    const bool counted = digit_ahead();
    const std::uint16_t count = number(1);
    if (counted && count == 0) return fail();
    skip_blanks();
    switch (peek()) {
      case '(':
        return group(count);
      case '/':
        rest_.remove_prefix(1);
        return add({.edit = Edit::slash}, count);
      case 'x':
      case 'X':
        rest_.remove_prefix(1);
        return add({.edit = Edit::skip, .width = count});
      case 'a':
      case 'A':
        rest_.remove_prefix(1);
        return text(count);
      case 'i':
      case 'I':
        rest_.remove_prefix(1);
        return sized(Edit::integer, count);
      case 'f':
      case 'F':
        rest_.remove_prefix(1);
        return sized(Edit::fixed, count);
      case 't':
      case 'T':
        rest_.remove_prefix(1);
        if (counted) return fail();
        return tab();
      default:
        return fail();
    }
  }

  constexpr void group(std::uint16_t count) {
    rest_.remove_prefix(1);
    if (++depth_ > deepest_group) return fail();
    const std::string_view body = rest_;
    for (std::uint16_t i = 0; i < count && result_.valid; ++i) {
      rest_ = body;
      list();
    }
    --depth_;
  }

  constexpr void text(std::uint16_t count) {
    skip_blanks();
    const bool whole = !digit_ahead();
    const std::uint16_t width = number(0);
    if (!whole && width == 0) return fail();
    add({.edit = Edit::text, .width = width}, count);
  }

  constexpr void sized(Edit edit, std::uint16_t count) {
    skip_blanks();
    if (!digit_ahead()) return fail();
    const std::uint16_t width = number(0);
    skip_blanks();
    std::uint16_t decimals = 0;
    if (take('.')) {
      skip_blanks();
      if (!digit_ahead()) return fail();
      decimals = number(0);
    } else if (edit == Edit::fixed) {
      return fail();
    }
    if (edit == Edit::fixed && width == 0) return fail();
    if (edit == Edit::integer && width > 0 && decimals > width) return fail();
    add({.edit = edit, .width = width, .decimals = decimals}, count);
  }

  constexpr void tab() {
    const std::uint16_t column = number(0);
    if (column == 0) return fail();
    add({.edit = Edit::tab, .width = column});
  }

  constexpr void quoted() {
    const std::size_t begin = result_.pool.size;
    do {
      rest_.remove_prefix(1);
      // A plain loop: with the undefined-behaviour sanitizer g++ 12 takes find() for no constant expression.
      std::size_t end = 0;
      while (end < rest_.size() && rest_[end] != '\'') ++end;
      if (end == rest_.size()) return fail();
      result_.pool.append(rest_.substr(0, end));
      rest_.remove_prefix(end + 1);
      if (peek() == '\'') result_.pool.append("'");
    } while (peek() == '\'');
    add({.edit = Edit::literal,
         .width = static_cast<std::uint16_t>(result_.pool.size - begin),
         .offset = static_cast<std::uint16_t>(begin)});
  }

  // A format that only the run knows must not exhaust the stack.
  static constexpr int deepest_group = 20;

  std::string_view rest_;
  int depth_ = 0;
  ParsedFormat result_{};
};

template <std::size_t Items, std::size_t PoolBytes>
struct StoredFormat {
  std::array<FormatItem, Items> items{};
  std::array<char, PoolBytes> pool{};
};

template <SourceText notation>
consteval auto store_format() {
  constexpr ParsedFormat parsed = FormatParser(notation.view()).parse();
  static_assert(parsed.valid, "the format notation is wrong");
  StoredFormat<parsed.item_count, parsed.pool.size> stored;
  for (std::size_t i = 0; i < parsed.item_count; ++i) stored.items[i] = parsed.items[i];
  for (std::size_t i = 0; i < parsed.pool.size; ++i) stored.pool[i] = parsed.pool.bytes[i];
  return stored;
}

template <SourceText notation>
inline constexpr auto stored_format = store_format<notation>();

}  // namespace detail

/// `format<"(a,2x,f8.3)">`: a format parsed and checked at compile time. Wrong notation does not compile.
/// Quoted texts are turned from UTF-8 into Windows-1252.
template <SourceText notation>
inline constexpr Format format{
    detail::stored_format<notation>.items,
    {detail::stored_format<notation>.pool.data(), detail::stored_format<notation>.pool.size()},
    columns_of(detail::stored_format<notation>.items),
    slashes_of(detail::stored_format<notation>.items)};

/// Parses a format that only the run knows. `valid` is false when the notation is wrong.
constexpr ParsedFormat parse_format(std::string_view notation) {
  return detail::FormatParser(notation).parse();
}

}  // namespace runtime
