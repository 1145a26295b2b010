#include <algorithm>
#include <optional>
#include <span>

#include "KV_Schau/mend/steps.h"
#include "KV_Schau/network/values.h"
#include "KV_Schau/variant/records.h"
#include "m_System/element_types.h"

namespace schau::mend {
namespace {

using variant::FileId;
using variant::is_blank;
using variant::Span;
namespace data = variant::data_columns;
namespace sys = variant::sys_columns;

std::string with_blanks(std::string_view line, std::size_t tab_width) {
  std::string text;
  for (const char character : line) {
    if (character != '\t') {
      text += character;
      continue;
    }
    text.append(tab_width - text.size() % tab_width, ' ');
  }
  return text;
}

// ENDE, too, begins with the letter of an element.
bool is_clear_name(std::string_view field) {
  if (is_blank(field)) return true;
  const std::string_view name = field.substr(0, field.find_last_not_of(' ') + 1);
  return m_System::is_element_type(name.front()) && name.find(' ') == std::string_view::npos;
}

bool is_blank_in(std::string_view line, std::uint32_t first, std::uint32_t last) {
  return is_blank(variant::columns(line, first, last));
}

bool is_number_in(std::string_view line, Span span) {
  return is_plain_number(variant::without_blanks(span.of(line)));
}

bool is_number_or_blank_in(std::string_view line, Span span) {
  return is_blank(span.of(line)) || is_number_in(line, span);
}

bool is_clear_area(std::string_view line) {
  return is_number_in(line, data::area) && is_number_or_blank_in(line, data::sealing) &&
         is_blank_in(line, data::sealing.last + 1, data::sealing.last + 1);
}

bool is_clear_branching(std::string_view line) {
  return is_number_in(line, data::code) && is_blank_in(line, data::code.last + 1, data::share.first - 1) &&
         is_number_or_blank_in(line, data::share) &&
         is_blank_in(line, data::share.last + 1, data::share.last + 1);
}

// Between station and profile other values may stand, which are not read; none may lie across the border.
bool is_clear_reach(std::string_view line) {
  const std::uint32_t before = data::profile.first - 1;
  return is_number_or_blank_in(line, data::station) &&
         is_blank_in(line, data::station.last + 1, data::station.last + 1) &&
         is_blank_in(line, before, before);
}

bool is_clear_record(FileId file, std::string_view line, const variant::NameIndex& names) {
  if (!is_record(file, line, names) || !is_blank_in(line, data::name.last + 1, data::area.first - 1))
    return false;
  if (file == FileId::trs) return is_clear_reach(line);
  return file == FileId::ver ? is_clear_branching(line) : is_clear_area(line);
}

bool is_clear_station(std::string_view line) {
  return is_blank_in(line, 1, data::station.first - 1) && is_number_in(line, data::station) &&
         is_blank(line.substr(std::min<std::size_t>(line.size(), data::station.last)));
}

// Nothing but the word of a unit, in its columns.
bool is_clear_unit(FileId file, std::string_view line) {
  if (file != FileId::nfl && file != FileId::kfl) return false;
  const std::optional<variant::AreaUnit> unit = variant::unit_set_by(line);
  return unit && variant::without_blanks(line) == variant::word_of(*unit);
}

// What a line is, so that it has one meaning.
class Judge {
 public:
  Judge(FileId file, const variant::NameIndex& names) : file_(file), names_(names) {}

  [[nodiscard]] bool is_clear(std::string_view line, bool station_follows) const {
    if (file_ == FileId::sys) return is_clear_element_line(line);
    if (station_follows && is_clear_station(line)) return true;
    return is_clear_unit(file_, line) || is_clear_record(file_, line, names_);
  }

 private:
  FileId file_;
  const variant::NameIndex& names_;
};

// The line with the tab width that puts everything into its columns; nothing when there is none, or when
// several do with different outcomes. A width of 1 is a tab typed for a blank.
std::optional<std::string> only_clear_form(const Judge& judge, std::string_view line, bool station_follows) {
  std::optional<std::string> found;
  for (const std::size_t width :
       {std::size_t{8}, std::size_t{4}, std::size_t{3}, std::size_t{2}, std::size_t{1}}) {
    std::string text = with_blanks(line, width);
    if (!judge.is_clear(text, station_follows)) continue;
    if (found && *found != text) return std::nullopt;
    found = std::move(text);
  }
  return found;
}

}  // namespace

bool is_clear_element_line(std::string_view line) {
  line = line.substr(0, variant::sys_line_width);
  if (!variant::is_element_line(line) || !is_clear_name(sys::name.of(line))) return false;
  const auto is_clear_link = [line](Span field) { return is_clear_name(field.of(line)); };
  static constexpr std::array<Span, 7> gaps = {
      {{35, 35}, {41, 43}, {49, 49}, {55, 55}, {61, 63}, {69, 69}, {75, 75}}};
  return std::ranges::all_of(sys::inflow, is_clear_link) &&
         std::ranges::all_of(sys::outflow, is_clear_link) &&
         std::ranges::all_of(gaps, [line](Span gap) { return is_blank(gap.of(line)); });
}

void mend_tabs(MendedFile& file, const variant::NameIndex& names, Mended& mended) {
  const Judge judge(file.id, names);
  bool station_follows = false;
  for (Line& line : file.lines) {
    if (line.text.find('\t') != std::string_view::npos) {
      if (std::optional<std::string> text = only_clear_form(judge, line.text, station_follows)) {
        line.text = mended.texts.emplace_back(std::move(*text));
        ++file.changed(Repair::tabs);
      }
    }
    station_follows =
        file.id == FileId::trs && is_record(file.id, line.text, names) && network::is_kind_2(line.text);
  }
}

}  // namespace schau::mend
