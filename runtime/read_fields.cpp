#include <algorithm>
#include <string>

#include "runtime/edit_input.h"
#include "runtime/read_fields.h"

namespace runtime {
namespace {

std::string_view field_of(std::string_view record, std::size_t column, std::size_t width) {
  return column < record.size() ? record.substr(column, width) : std::string_view();
}

// A field wider than the variable gives its last characters, as a formatted read does.
void store_text(std::span<char> target, std::string_view field, std::size_t width) {
  std::string padded(std::max(width, target.size()), ' ');
  std::copy(field.begin(), field.end(), padded.begin());
  const std::size_t skipped = width > target.size() ? width - target.size() : 0;
  std::copy_n(padded.begin() + static_cast<std::ptrdiff_t>(skipped), target.size(), target.begin());
}

template <class Edited, class Variable>
bool store_number(const Edited& edited, Variable& variable) {
  if (edited.state != NumberState::good) return false;
  variable = edited.value;
  return true;
}

bool store_field(const FormatItem& item, std::string_view field, const Target& target) {
  switch (target.kind()) {
    case Target::Kind::single:
      return item.edit == Edit::fixed && store_number(edit_single(field, item.decimals), target.single());
    case Target::Kind::real:
      return item.edit == Edit::fixed && store_number(edit_double(field, item.decimals), target.real());
    case Target::Kind::integer:
      return item.edit == Edit::integer && store_number(edit_integer(field), target.integer());
    case Target::Kind::text:
      break;
  }
  if (item.edit != Edit::text) return false;
  store_text(target.text(), field, item.width == 0 ? target.text().size() : item.width);
  return true;
}

}  // namespace

bool read_fields(std::string_view record, const Format& format, std::initializer_list<Target> targets) {
  std::size_t column = 0;
  const Target* target = targets.begin();
  for (const FormatItem& item : format.items) {
    if (item.edit == Edit::skip) column += item.width;
    if (item.edit == Edit::tab) column = item.width - std::size_t{1};
    if (!item.takes_value()) continue;
    if (target == targets.end()) break;
    const bool whole_text = item.edit == Edit::text && item.width == 0;
    const std::size_t width =
        whole_text && target->kind() == Target::Kind::text ? target->text().size() : item.width;
    if (!store_field(item, field_of(record, column, width), *target)) return false;
    column += width;
    ++target;
  }
  return true;
}

}  // namespace runtime
