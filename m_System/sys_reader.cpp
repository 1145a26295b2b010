#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "fixed_text.h"
#include "m_System.h"
#include "m_WLM_error.h"
#include "m_files.h"
#include "name_index.h"
#include "units.h"
#include "write_record.h"

namespace m_System {
namespace {

using runtime::columns;

constexpr std::size_t line_width = 100;
constexpr std::size_t name_column = 36;
constexpr std::string_view element_types = "NKETVBP";

bool is_type(char letter) {
  return element_types.find(letter) != std::string_view::npos;
}

bool holds_type(std::string_view line, std::size_t column) {
  return line.size() >= column && is_type(line[column - 1]);
}

bool is_blank(std::string_view line, std::size_t first, std::size_t last) {
  return line.size() < first || runtime::is_blank(line.substr(first - 1, last - first + 1));
}

bool is_link_or_blank(std::string_view line, std::size_t first, std::size_t last) {
  return holds_type(line, first) || is_blank(line, first, last);
}

// Without a first inflow the columns of all three are blank: a gap before a later one is no element line.
bool inflows_stand_right(std::string_view line) {
  if (!holds_type(line, 44)) return is_blank(line, 44, 60);
  return is_link_or_blank(line, 50, 60) && is_link_or_blank(line, 56, 60);
}

// Headings, rulers and remarks hold no element type in column 36 and are passed over, as are "Z" elements.
bool is_element_line(std::string_view line) {
  return line.size() >= name_column && is_type(line[name_column - 1]) && inflows_stand_right(line) &&
         is_link_or_blank(line, 64, 68) && is_link_or_blank(line, 70, 74);
}

void count_type(SystemLogic& logic, char type) {
  switch (type) {
    case 'N':
      ++logic.count_N;
      break;
    case 'K':
      ++logic.count_K;
      break;
    case 'E':
      ++logic.count_E;
      break;
    case 'T':
      ++logic.count_T;
      break;
    case 'V':
      ++logic.count_V;
      break;
    case 'B':
      ++logic.count_B;
      break;
    default:
      break;
  }
}

// Counts the element lines of the file and keeps them; the views stay valid while the unit is open.
std::vector<std::string_view> count_element_lines(int unit) {
  SystemLogic& logic = system_logic;
  logic.count_N = logic.count_K = logic.count_E = logic.count_T = logic.count_V = logic.count_B = 0;
  // A line that names an element and its outflow is about this long.
  constexpr std::size_t usual_line = 68;
  std::vector<std::string_view> lines;
  lines.reserve(runtime::unread_text(unit).size() / usual_line);
  runtime::LineReader reader(unit, line_width);
  std::string_view line;
  while (reader.next(line)) {
    if (!is_element_line(line)) continue;
    count_type(logic, line[name_column - 1]);
    lines.push_back(line);
  }
  logic.total_count = static_cast<std::int32_t>(lines.size());
  runtime::rewind(unit);
  return lines;
}

void store_element(SystemLogic& logic, std::int32_t i, std::string_view line) {
  logic.name.at(i) = columns<36, 40>(line);
  logic.type.at(i) = logic.name.at(i).first();
  logic.tag3.at(i) = columns<4, 6>(line);
  logic.tag7.at(i) = columns<8, 14>(line);
  logic.text17.at(i) = columns<17, 33>(line);
  logic.inflow_name.at(i) = {{columns<44, 48>(line), columns<50, 54>(line), columns<56, 60>(line)}};
  logic.outflow_name.at(i) = {{columns<64, 68>(line), columns<70, 74>(line)}};
}

// The lines behind the element that ends the system are counted, but not stored.
void store_elements(const std::vector<std::string_view>& lines) {
  SystemLogic& logic = system_logic;
  std::int32_t i = 0;
  for (const std::string_view line : lines) {
    ++i;
    store_element(logic, i, line);
    if (logic.outflow_name.at(i).at(1) == "ENDE") return;
  }
}

// Of several elements of one name the last one is linked.
struct LinkResolver {
  const NameIndex& names;
  // Most link fields are blank; blank names stand behind the end of a system only.
  std::int32_t blank_element;

  [[nodiscard]] std::int32_t element(const ElementName& name) const {
    return name.blank() ? blank_element : last_of_name(names, name);
  }
};

void resolve_links(const LinkResolver& links, std::int32_t i) {
  SystemLogic& logic = system_logic;
  for (std::int32_t k = 1; k <= inflow_slots; ++k) {
    logic.inflow_index.at(i).at(k) = links.element(logic.inflow_name.at(i).at(k));
  }
  for (std::int32_t k = 1; k <= outflow_slots; ++k) {
    logic.outflow_index.at(i).at(k) = links.element(logic.outflow_name.at(i).at(k));
  }
}

void list_element(int listing, std::int32_t i) {
  const SystemLogic& logic = system_logic;
  const auto& inflow = logic.inflow_name.at(i);
  const auto& outflow = logic.outflow_name.at(i);
  const auto& inflow_at = logic.inflow_index.at(i);
  const auto& outflow_at = logic.outflow_index.at(i);
  runtime::write_record<"(6(a,1x),6i4)">(listing, logic.name.at(i), inflow.at(1), inflow.at(2), inflow.at(3),
                                         outflow.at(1), outflow.at(2), i, inflow_at.at(1), inflow_at.at(2),
                                         inflow_at.at(3), outflow_at.at(1), outflow_at.at(2));
}

void link_and_list_elements() {
  SystemLogic& logic = system_logic;
  const int listing = m_files::free_unit(100);
  runtime::open(listing, "code.pkl", runtime::OpenStatus::unknown);
  runtime::write_line(listing, "code.pkl");
  const LinkResolver links{element_names(), last_of_name(element_names(), {})};
  for (std::int32_t i = 1; i <= logic.element_count; ++i) {
    resolve_links(links, i);
    list_element(listing, i);
  }
  if (logic.element_count > 0) logic.outflow_index.at(logic.element_count).at(1) = logic.element_count + 1;
}

}  // namespace

void CountElements(int unit) {
  count_element_lines(unit);
}

void ReadSystemFile(std::string_view variant_name) {
  const int unit = OpenInputFile(file_name_of(variant_name, ".sys"));
  if (unit == 0) return;
  const std::vector<std::string_view> lines = count_element_lines(unit);
  m_WLM_error::ErrorLevel = std::max(m_WLM_error::ErrorLevel, AllocateSystemTables());
  if (m_WLM_error::ErrorLevel > 1) {
    runtime::close(unit);
    return;
  }
  store_elements(lines);
  link_and_list_elements();
  CheckSystemLogic();
  runtime::close(unit);
}

}  // namespace m_System
