#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "runtime/fixed_text.h"
#include "runtime/format.h"

namespace runtime {

/// One value of a formatted write: a text, a whole number or a real.
class Value {
 public:
  enum class Kind : std::uint8_t { text, integer, real };

  constexpr Value(std::string_view text) : text_(text), kind_(Kind::text) {}
  constexpr Value(const char* text) : Value(std::string_view(text)) {}
  Value(const std::string& text) : Value(std::string_view(text)) {}
  template <std::size_t N>
  constexpr Value(const FixedText<N>& text) : Value(text.view()) {}
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

/// The most bytes that the values take in the given format.
std::size_t most_bytes(const Format& format, std::span<const Value> values, std::string_view line_end);

/// Writes the values in the given format, each record but the last followed by `line_end`, into memory with
/// room for `most_bytes` and returns the place behind.
/// Writing stops at the first field for which no value is left; the rest of the format is dropped.
/// A value of the wrong kind for its field, or a value left over, is a fault of the caller: the field is
/// filled with asterisks, the value left over is not written.
char* put_formatted(char* place, const Format& format, std::span<const Value> values,
                    std::string_view line_end);

/// The same as a text.
std::string formatted(const Format& format, std::span<const Value> values, std::string_view line_end = {});

}  // namespace runtime
