#include "edit_output.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace runtime {
namespace {

void append_right_justified(std::string& out, std::size_t width, std::string_view text) {
  if (text.size() > width) {
    out.append(width, '*');
    return;
  }
  out.append(width - text.size(), ' ');
  out.append(text);
}

void append_not_finite(std::string& out, std::size_t width, double value) {
  if (std::isnan(value)) return append_right_justified(out, width, "NaN");
  const bool negative = value < 0;
  const std::string_view whole = negative ? "-Infinity" : "Infinity";
  const std::string_view brief = negative ? "-Inf" : "Inf";
  append_right_justified(out, width, whole.size() <= width ? whole : brief);
}

constexpr std::size_t fast_decimals = 9;
constexpr std::array<double, fast_decimals + 1> power_of_ten = {
    1.0, 10.0, 100.0, 1000.0, 10000.0, 100000.0, 1000000.0, 10000000.0, 100000000.0, 1000000000.0};
// Below 2^53 every whole double is exact and converts to an integer.
constexpr double fast_limit = 9007199254740992.0;

// True when value x 10^decimals is exact in double precision: a single-precision value has 24 significant
// bits and 5^9 has 21.
bool scales_exactly(std::size_t decimals, double value) {
  return decimals <= fast_decimals && static_cast<double>(static_cast<float>(value)) == value &&
         std::abs(value) * power_of_ten[decimals] < fast_limit;
}

// 309 digits before the point, the point and as many decimals as a format can ask for.
constexpr std::size_t exact_capacity = 309 + 1 + 9999;

// Sign, digits, point and decimals with at least one digit before the point.
void append_scaled(std::string& out, std::size_t width, std::size_t decimals, double value) {
  std::array<char, 32> bytes;
  std::size_t begin = bytes.size();
  auto scaled = static_cast<std::uint64_t>(std::nearbyint(std::abs(value) * power_of_ten[decimals]));
  for (std::size_t i = 0; i < decimals; ++i) {
    bytes[--begin] = static_cast<char>('0' + scaled % 10);
    scaled /= 10;
  }
  bytes[--begin] = '.';
  const bool below_one = scaled == 0;
  if (below_one) bytes[--begin] = '0';
  while (scaled > 0) {
    bytes[--begin] = static_cast<char>('0' + scaled % 10);
    scaled /= 10;
  }
  const bool drop_zero =
      below_one && decimals > 0 && bytes.size() - begin + (std::signbit(value) ? 1 : 0) > width;
  if (drop_zero) ++begin;
  if (std::signbit(value)) bytes[--begin] = '-';
  append_right_justified(out, width, {bytes.data() + begin, bytes.size() - begin});
}

void append_exact(std::string& out, std::size_t width, std::size_t decimals, double value) {
  std::array<char, exact_capacity> bytes;
  const auto end = std::to_chars(bytes.data(), bytes.data() + bytes.size(), std::abs(value),
                                 std::chars_format::fixed, static_cast<int>(decimals));
  std::string text(bytes.data(), end.ptr);
  if (decimals == 0) text.push_back('.');
  if (std::signbit(value)) text.insert(text.begin(), '-');
  const std::size_t zero = std::signbit(value) ? 1 : 0;
  if (text.size() > width && decimals > 0 && text.compare(zero, 2, "0.") == 0) text.erase(zero, 1);
  append_right_justified(out, width, text);
}

// Runs a format over one record after another. Columns that are only skipped stay unwritten until
// something follows them.
class RecordEditor {
 public:
  RecordEditor(std::string& out, std::string_view line_end)
      : out_(out), line_end_(line_end), record_(out.size()), column_(out.size()) {}

  void skip(std::size_t columns) { column_ += columns; }
  void tab(std::size_t column) { column_ = record_ + column - 1; }
  void end_record() {
    out_.append(line_end_);
    record_ = column_ = out_.size();
  }

  template <class Append>
  void put(Append append) {
    if (column_ == out_.size()) {
      append(out_);
      column_ = out_.size();
    } else {
      put_elsewhere(append);
    }
  }

 private:
  template <class Append>
  void put_elsewhere(Append append) {
    if (column_ > out_.size()) {
      out_.append(column_ - out_.size(), ' ');
      append(out_);
      column_ = out_.size();
      return;
    }
    std::string piece;
    append(piece);
    out_.replace(column_, std::min(piece.size(), out_.size() - column_), piece);
    column_ += piece.size();
  }

  std::string& out_;
  std::string_view line_end_;
  std::size_t record_;
  std::size_t column_;
};

void append_value(std::string& out, const FormatItem& item, const Value& value) {
  if (!fits(item, value.kind())) {
    out.append(std::max<std::size_t>(item.width, 1), '*');
    return;
  }
  switch (item.edit) {
    case Edit::text:
      return append_text(out, item.width, value.text());
    case Edit::integer:
      return append_integer(out, item.width, item.decimals, value.integer());
    default:
      return append_fixed(out, item.width, item.decimals, value.real());
  }
}

}  // namespace

void append_integer(std::string& out, std::size_t width, std::size_t minimum, std::int64_t value) {
  std::array<char, 24> bytes;
  const bool negative = value < 0;
  std::uint64_t magnitude = static_cast<std::uint64_t>(value);
  if (negative) magnitude = 0 - magnitude;
  const auto end = std::to_chars(bytes.data(), bytes.data() + bytes.size(), magnitude);
  const std::string_view digits(bytes.data(), static_cast<std::size_t>(end.ptr - bytes.data()));
  const std::size_t zeros = minimum > digits.size() ? minimum - digits.size() : 0;
  const std::size_t length = (negative ? 1 : 0) + zeros + digits.size();
  if (width == 0) width = length;
  if (length > width) {
    out.append(width, '*');
    return;
  }
  out.append(width - length, ' ');
  if (negative) out.push_back('-');
  out.append(zeros, '0');
  out.append(digits);
}

void append_fixed(std::string& out, std::size_t width, std::size_t decimals, double value) {
  if (!std::isfinite(value)) return append_not_finite(out, width, value);
  if (scales_exactly(decimals, value)) return append_scaled(out, width, decimals, value);
  append_exact(out, width, decimals, value);
}

void append_text(std::string& out, std::size_t width, std::string_view value) {
  if (width == 0) {
    out.append(value);
  } else if (value.size() >= width) {
    out.append(value.substr(0, width));
  } else {
    out.append(width - value.size(), ' ');
    out.append(value);
  }
}

void append_formatted(std::string& out, const Format& format, std::span<const Value> values,
                      std::string_view line_end) {
  RecordEditor editor(out, line_end);
  std::size_t next = 0;
  for (const FormatItem& item : format.items) {
    switch (item.edit) {
      case Edit::literal:
        editor.put([&](std::string& target) { target.append(format.literal(item)); });
        break;
      case Edit::skip:
        editor.skip(item.width);
        break;
      case Edit::tab:
        editor.tab(item.width);
        break;
      case Edit::slash:
        editor.end_record();
        break;
      default:
        if (next == values.size()) return;
        editor.put([&](std::string& target) { append_value(target, item, values[next]); });
        ++next;
    }
  }
}

}  // namespace runtime
