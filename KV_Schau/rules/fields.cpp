#include "KV_Schau/rules/fields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>

#include "KV_Schau/network/values.h"
#include "KV_Schau/rules/unseen.h"
#include "KV_Schau/variant/numbers.h"

namespace schau::rules {
namespace {

using variant::FileId;
using variant::ReadNumber;
using variant::Span;
namespace columns = variant::data_columns;

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

bool belongs_to_number(char character) {
  return is_digit(character) || character == '.' || character == ',' || character == '+' || character == '-';
}

// The character in a column; blank behind the end.
char at(std::string_view line, std::uint32_t column) {
  return column >= 1 && column <= line.size() ? line[column - 1] : ' ';
}

bool is_area_field(FieldKind kind) {
  return kind == FieldKind::area || kind == FieldKind::sealing;
}

ReadNumber read(FieldKind kind, std::string_view field) {
  return is_area_field(kind) ? variant::read_area_field(field) : variant::read_loose_field(field);
}

// A sign, digits with at most one point, an exponent.
bool is_number(std::string_view text) {
  const auto skip_digits = [&text] {
    const std::size_t length = std::min(text.find_first_not_of("0123456789"), text.size());
    text.remove_prefix(length);
    return length;
  };
  const auto skip = [&text](std::string_view characters) {
    const bool found = !text.empty() && characters.find(text.front()) != std::string_view::npos;
    if (found) text.remove_prefix(1);
    return found;
  };
  skip("+-");
  std::size_t digits = skip_digits();
  if (skip(".")) digits += skip_digits();
  if (digits == 0) return false;
  if (text.empty()) return true;
  if (!skip("EeDd")) return false;
  skip("+-");
  return skip_digits() > 0 && text.empty();
}

struct Words {
  std::size_t count = 0;
  bool all_numbers = true;
  std::string joined;
};

Words words_of(std::string_view text) {
  Words words;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    words.count += 1;
    words.all_numbers = words.all_numbers && is_number(text.substr(0, end));
    words.joined.append(text.substr(0, end));
    text.remove_prefix(end);
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  }
  return words;
}

// One field of one line under examination.
class Examination {
 public:
  Examination(std::string_view line, FieldKind kind, Span span)
      : line_(line), kind_(kind), span_(span), text_(variant::without_blanks(span.of(line))) {
    field_.kind = kind;
    const ReadNumber number = read(kind, span.of(line));
    field_.read = field_.meant = number.value;
    field_.reported = is_area_field(kind) && number.state != ReadNumber::State::good;
    out_of_range_ = number.state == ReadNumber::State::out_of_range;
    field_.column = text_.empty() ? span.first : column_of(text_);
    field_.length = text_.empty() ? span.width() : static_cast<std::uint32_t>(text_.size());
  }

  Field run() {
    field_.fault = text_.empty() ? fault_of_blank() : fault_of_text();
    return field_;
  }

 private:
  [[nodiscard]] std::uint32_t column_of(std::string_view part) const {
    return static_cast<std::uint32_t>(part.data() - line_.data()) + 1;
  }
  void mark(std::uint32_t first, std::uint32_t last) {
    field_.column = first;
    field_.length = last - first + 1;
  }

  // The number that begins in the columns from `from` to `to`, marked when there is one.
  bool finds_number(std::uint32_t from, std::uint32_t to) {
    for (std::uint32_t column = from; column <= to && column <= line_.size(); ++column) {
      if (at(line_, column) == ' ') continue;
      std::uint32_t last = column;
      while (belongs_to_number(at(line_, last + 1))) ++last;
      if (at(line_, last + 1) != ' ' || !is_number(variant::columns(line_, column, last))) return false;
      mark(column, last);
      field_.meant = read(kind_, variant::columns(line_, column, last)).value;
      return true;
    }
    return false;
  }

  FieldFault fault_of_blank() {
    constexpr std::uint32_t behind_name = columns::name.last + 1;
    const bool is_first_field = kind_ != FieldKind::share && kind_ != FieldKind::sealing;
    const bool before = is_first_field && finds_number(behind_name, span_.first - 1);
    return before || stands_behind() ? FieldFault::outside : FieldFault::blank;
  }

  // In the columns behind the field that nothing else is read from.
  bool stands_behind() {
    const std::uint32_t next = span_.last + 1;
    switch (kind_) {
      case FieldKind::area:
        return variant::is_blank(columns::sealing.of(line_)) &&
               finds_number(columns::sealing.last + 1, columns::sealing.last + 20);
      case FieldKind::sealing:
      case FieldKind::code:
      case FieldKind::share:
        return at(line_, next) != ' ' && finds_number(next, next);
      case FieldKind::station:
        return finds_number(next, columns::profile.first - 1);
      case FieldKind::first_value:
        break;
    }
    return false;
  }

  FieldFault fault_of_text() {
    if (const std::optional<FieldFault> overhang = fault_of_overhang()) return *overhang;
    if (std::ranges::any_of(text_, is_unseen)) return FieldFault::odd_character;
    if (text_.find(',') != std::string_view::npos) return FieldFault::comma;
    const Words words = words_of(text_);
    if (words.count > 1) {
      const bool joined = is_area_field(kind_) && is_number(words.joined);
      if (joined) return FieldFault::inner_blank;
      if (words.all_numbers) return FieldFault::two_numbers;
    }
    if (!is_number(text_)) return fault_of_no_number();
    if (out_of_range_) return FieldFault::out_of_range;
    const bool differs = !is_area_field(kind_) && variant::read_area_field(text_).value != field_.read;
    return differs ? FieldFault::read_otherwise : FieldFault::none;
  }

  [[nodiscard]] FieldFault fault_of_no_number() const {
    const std::size_t points = static_cast<std::size_t>(std::ranges::count(text_, '.'));
    const bool digits_only = text_.find_first_not_of("0123456789.") == std::string_view::npos;
    if (digits_only && points > 1) return FieldFault::two_numbers;
    const bool has_digit = std::ranges::any_of(text_, is_digit);
    return has_digit && !field_.reported ? FieldFault::stray_text : FieldFault::no_number;
  }

  // A number that goes on in columns that are not read with it, unless nothing of it is lost.
  std::optional<FieldFault> fault_of_overhang() {
    if (kind_ == FieldKind::area && runs_into_sealing()) return fault_of_area_in_sealing();
    std::uint32_t first = field_.column;
    std::uint32_t last = first + field_.length - 1;
    if (first == span_.first && belongs_to_number(at(line_, first)) && kind_ != FieldKind::sealing) {
      while (first > first_unread_column() && belongs_to_number(at(line_, first - 1))) --first;
    }
    if (last == span_.last && belongs_to_number(at(line_, last))) last = end_of_overhang(last);
    if (first == field_.column && last == field_.column + field_.length - 1) return std::nullopt;
    const std::string_view whole = variant::columns(line_, first, last);
    if (!is_number(whole)) return std::nullopt;
    const double value = read(kind_, whole).value;
    if (value == field_.read) return std::nullopt;
    field_.meant = value;
    const bool fills = first == span_.first;
    mark(first, last);
    return fills ? FieldFault::too_many_digits : FieldFault::cut;
  }

  // Before the share stands one column that nothing is read from, before the others those behind the name.
  [[nodiscard]] std::uint32_t first_unread_column() const {
    return kind_ == FieldKind::share ? columns::code.last + 1 : columns::name.last + 1;
  }

  // What runs from the code into the share belongs to the share.
  [[nodiscard]] std::uint32_t end_of_overhang(std::uint32_t last) const {
    std::uint32_t end = last;
    while (belongs_to_number(at(line_, end + 1))) ++end;
    return kind_ == FieldKind::code && end >= columns::share.first ? last : end;
  }

  [[nodiscard]] bool runs_into_sealing() const {
    return belongs_to_number(at(line_, columns::area.last)) &&
           belongs_to_number(at(line_, columns::sealing.first));
  }

  // Area and degree of sealing may touch. A degree of sealing has a point behind one digit at most; what else
  // begins right behind the area is the rest of it.
  std::optional<FieldFault> fault_of_area_in_sealing() {
    std::string_view behind = columns::sealing.of(line_);
    behind = behind.substr(0, std::min(behind.find(' '), behind.size()));
    const bool is_rest_without_value =
        text_.find('.') != std::string_view::npos && behind.front() == '0' && is_sealing(behind.substr(1));
    if (!is_digit(behind.front()) || is_sealing(behind) || is_rest_without_value) return std::nullopt;
    const bool fills = field_.column == span_.first;
    const std::size_t digits = std::min(behind.find_first_not_of("0123456789"), behind.size());
    mark(field_.column, span_.last + static_cast<std::uint32_t>(digits));
    return fills ? FieldFault::too_many_digits : FieldFault::cut;
  }

  static bool is_sealing(std::string_view text) {
    return text.empty() || (text.find('.') <= 1 && is_number(text));
  }

  std::string_view line_;
  FieldKind kind_;
  Span span_;
  std::string_view text_;
  Field field_;
  bool out_of_range_ = false;
};

// Digits with at most one point between blanks, as nearly all fields are.
bool is_plain(std::string_view text) {
  if (text.empty()) return false;
  bool point = false;
  for (const char character : text) {
    if (is_digit(character)) continue;
    if (character != '.' || point) return false;
    point = true;
  }
  return text.size() > (point ? 1U : 0U);
}

bool has_noteworthy_value(const Field& field) {
  if (field.read < 0.0) return true;
  switch (field.kind) {
    case FieldKind::sealing:
      return field.read >= 1.0;
    case FieldKind::code:
      return field.read != 1.0 && field.read != 2.0 && field.read != 3.0;
    case FieldKind::share:
      return (field.read > 0.0 && field.read <= 1.0) || field.read > 100.0;
    case FieldKind::station:
      return field.read >= highest_station || field.read <= lowest_station;
    default:
      return false;
  }
}

class Collector {
 public:
  explicit Collector(const variant::Variant& variant) : variant_(variant) {}

  std::vector<Field> run() {
    for (const FileId file : variant::data_files) collect(file);
    return std::move(fields_);
  }

 private:
  void collect(FileId id) {
    const variant::TextFile& file = variant_.file(id);
    for (const variant::DataLine& record : variant_.lines_of(id)) {
      if (variant_.type(record.element) != variant::type_of_file(id)) continue;
      const std::string_view line = file.line(record.line).substr(0, columns::line_width);
      switch (id) {
        case FileId::trs:
          collect_reach(file, record, line);
          break;
        case FileId::ver:
          examine(id, record, line, FieldKind::code, columns::code);
          examine(id, record, line, FieldKind::share, columns::share);
          break;
        default:
          collect_area(id, record, line);
      }
    }
  }

  // What an area has left in the columns of the sealing is no sealing of its own.
  void collect_area(FileId file, const variant::DataLine& record, std::string_view line) {
    const FieldFault fault = examine(file, record, line, FieldKind::area, columns::area);
    if (fault == FieldFault::cut || fault == FieldFault::too_many_digits) return;
    examine(file, record, line, FieldKind::sealing, columns::sealing);
  }

  // A next line that is blank or bears a name has no station.
  void collect_reach(const variant::TextFile& file, const variant::DataLine& record, std::string_view line) {
    examine(FileId::trs, record, line, FieldKind::first_value, columns::station);
    if (!network::is_kind_2(line) || record.line == file.line_count()) return;
    const std::string_view next = file.line(record.line + 1).substr(0, columns::line_width);
    const bool has_name = variant_.elements.first(variant::name_at(next, columns::name.first)) != 0;
    if (variant::is_blank(next) || has_name) return;
    examine(FileId::trs, {record.line + 1, record.element}, next, FieldKind::station, columns::station);
  }

  FieldFault examine(FileId file, const variant::DataLine& record, std::string_view line, FieldKind kind,
                     Span span) {
    const std::string_view text = variant::without_blanks(span.of(line));
    Field field;
    if (is_plain(text) && at(line, span.first - 1) == ' ' && at(line, span.last + 1) == ' ') {
      field.kind = kind;
      field.read = read(kind, text).value;
      if (!has_noteworthy_value(field)) return FieldFault::none;
    }
    field = Examination(line, kind, span).run();
    if (!is_noteworthy(field, file)) return field.fault;
    field.file = file;
    field.line = record.line;
    field.element = record.element;
    fields_.push_back(field);
    return field.fault;
  }

  // The sealing of a natural area and the first value of a reach may be left out.
  static bool is_noteworthy(const Field& field, FileId file) {
    if (field.fault == FieldFault::none) return has_noteworthy_value(field);
    const bool is_blank = field.fault == FieldFault::blank || field.fault == FieldFault::outside;
    const bool may_be_blank =
        (field.kind == FieldKind::sealing && file == FileId::nfl) || field.kind == FieldKind::first_value;
    return !is_blank || !may_be_blank;
  }

  const variant::Variant& variant_;
  std::vector<Field> fields_;
};

}  // namespace

std::vector<Field> noteworthy_fields(const variant::Variant& variant) {
  return Collector(variant).run();
}

}  // namespace schau::rules
