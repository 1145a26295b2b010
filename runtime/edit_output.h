#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "runtime/format.h"

namespace runtime {

/// One value of a formatted write: a text, a whole number or a real.
class Value {
 public:
  enum class Kind : std::uint8_t { text, integer, real };

  constexpr Value(std::string_view text) : text_(text), kind_(Kind::text) {}
  constexpr Value(const char* text) : Value(std::string_view(text)) {}
  Value(const std::string& text) : Value(std::string_view(text)) {}
  constexpr Value(std::int32_t integer) : integer_(integer), kind_(Kind::integer) {}
  constexpr Value(std::int64_t integer) : integer_(integer), kind_(Kind::integer) {}
  constexpr Value(float real) : real_(static_cast<double>(real)), kind_(Kind::real) {}
  constexpr Value(double real) : real_(real), kind_(Kind::real) {}

  [[nodiscard]] constexpr Kind kind() const { return kind_; }
  /// The value; only that of the value's own kind may be asked for.
  [[nodiscard]] constexpr std::string_view text() const { return text_; }
  [[nodiscard]] constexpr std::int64_t integer() const { return integer_; }
  [[nodiscard]] constexpr double real() const { return real_; }

 private:
  union {
    std::string_view text_;
    std::int64_t integer_;
    double real_;
  };
  Kind kind_;
};

/// True when the format element can edit a value of that kind.
constexpr bool fits(const FormatItem& item, Value::Kind kind) {
  // The kinds stand in the order of the elements that edit them.
  static_assert(static_cast<int>(Edit::text) == static_cast<int>(Value::Kind::text) &&
                static_cast<int>(Edit::integer) == static_cast<int>(Value::Kind::integer) &&
                static_cast<int>(Edit::fixed) == static_cast<int>(Value::Kind::real));
  return static_cast<int>(item.edit) == static_cast<int>(kind);
}

/// `Iw` / `Iw.m`: appends the number right-justified in `width` columns with at least `minimum` digits;
/// asterisks when it does not fit. Width 0 is as wide as the number. With `minimum` 0 a plain Iw.
void append_integer(std::string& out, std::size_t width, std::size_t minimum, std::int64_t value);

/// `Fw.d`: appends the exact decimal value of the binary number, rounded to nearest, ties to the even
/// digit, right-justified in `width` columns. The sign is kept on a value that rounds to zero; the zero
/// before the point is written when it fits; too wide is asterisks; infinities are "Infinity" or "Inf",
/// not-a-number is "NaN".
void append_fixed(std::string& out, std::size_t width, std::size_t decimals, double value);

/// `A` (width 0: the whole text) or `An`: the first n characters, or the text right-justified.
void append_text(std::string& out, std::size_t width, std::string_view value);

/// The most bytes that the values take in the given format.
std::size_t most_bytes(const Format& format, std::span<const Value> values, std::string_view line_end);

/// Writes the values in the given format, each record but the last followed by `line_end`, into memory with
/// room for `most_bytes` and returns the place behind.
/// Writing stops at the first field for which no value is left; the rest of the format is dropped.
/// A value of the wrong kind for its field, or a value left over, is a fault of the caller: the field is
/// filled with asterisks, the value left over is not written.
char* put_formatted(char* place, const Format& format, std::span<const Value> values,
                    std::string_view line_end);

/// The same behind the end of a text.
void append_formatted(std::string& out, const Format& format, std::span<const Value> values,
                      std::string_view line_end);

}  // namespace runtime
