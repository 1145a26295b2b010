#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "m_System/element_types.h"
#include "m_System/filled_tables.h"
#include "m_System/input_file.h"
#include "m_System/m_System.h"
#include "m_System/name_index.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_files/m_files.h"
#include "runtime/blocks.h"
#include "runtime/fixed_text.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "runtime/write.h"

namespace m_System {
namespace {

using runtime::columns;

constexpr std::size_t line_width = 100;
constexpr std::size_t name_column = 36;

bool holds_type(std::string_view line, std::size_t column) {
  return line.size() >= column && is_element_type(line[column - 1]);
}

// Each span begins in the first column of a link field.
template <std::size_t First, std::size_t Last>
bool is_link_or_blank(std::string_view line) {
  return holds_type(line, First) || columns<First, Last>(line).blank();
}

// Without a first inflow the columns of all three are blank: a gap before a later one is no element line.
bool inflows_stand_right(std::string_view line) {
  if (!holds_type(line, 44)) return columns<44, 60>(line).blank();
  return is_link_or_blank<50, 60>(line) && is_link_or_blank<56, 60>(line);
}

// Headings, rulers and remarks hold no element type in column 36 and are passed over, as are "Z" elements.
bool is_element_line(std::string_view line) {
  return holds_type(line, name_column) && inflows_stand_right(line) && is_link_or_blank<64, 68>(line) &&
         is_link_or_blank<70, 74>(line);
}

using Lines = std::vector<std::string_view, runtime::BlockAllocator<std::string_view>>;

// The element lines from the unit's place on, up to the end of the file.
Lines element_lines(int unit) {
  Lines lines;
  std::string_view line;
  for (runtime::LineReader file(unit, line_width); file.next(line);) {
    if (is_element_line(line)) lines.push_back(line);
  }
  return lines;
}

void count_elements(const Lines& lines) {
  SystemLogic& logic = filled_tables;
  logic.type_counts = {};
  for (const std::string_view line : lines) {
    const ElementType& type = type_of(line[name_column - 1]);
    ++logic.type_counts[static_cast<std::size_t>(&type - element_types.data())];
  }
  logic.total_count = static_cast<std::int32_t>(lines.size());
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
void store_elements(const Lines& lines) {
  SystemLogic& logic = filled_tables;
  std::int32_t i = 0;
  for (const std::string_view line : lines) {
    store_element(logic, ++i, line);
    if (logic.outflow_name.at(i).at(1) == "ENDE") return;
  }
}

// False when the reading must end.
bool read_elements(int unit, const FileName& file_name) {
  const Lines lines = element_lines(unit);
  count_elements(lines);
  m_WLM_error::fold_allocation(AllocateSystemTables(), file_name.view());
  if (m_WLM_error::ErrorLevel > 1) return false;
  store_elements(lines);
  return true;
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
  SystemLogic& logic = filled_tables;
  for (std::int32_t k = 1; k <= inflow_slots; ++k) {
    logic.inflow_index.at(i).at(k) = links.element(logic.inflow_name.at(i).at(k));
  }
  for (std::int32_t k = 1; k <= outflow_slots; ++k) {
    logic.outflow_index.at(i).at(k) = links.element(logic.outflow_name.at(i).at(k));
  }
}

void list_element(int unit, std::int32_t i) {
  const SystemLogic& logic = system_logic;
  const auto& inflow = logic.inflow_name.at(i);
  const auto& outflow = logic.outflow_name.at(i);
  const auto& inflow_at = logic.inflow_index.at(i);
  const auto& outflow_at = logic.outflow_index.at(i);
  runtime::write<"(6(a,1x),6i4)">(unit, logic.name.at(i), inflow.at(1), inflow.at(2), inflow.at(3),
                                  outflow.at(1), outflow.at(2), i, inflow_at.at(1), inflow_at.at(2),
                                  inflow_at.at(3), outflow_at.at(1), outflow_at.at(2));
}

void link_and_list_elements() {
  SystemLogic& logic = filled_tables;
  const LinkResolver links{element_names(), last_of_name(element_names(), {})};
  const int unit = m_files::free_unit(100);
  runtime::open(unit, "code.pkl", runtime::OpenStatus::whole);
  runtime::write<"(a)">(unit, "code.pkl");
  for (std::int32_t i = 1; i <= logic.element_count; ++i) {
    resolve_links(links, i);
    list_element(unit, i);
  }
  runtime::complete(unit);
  if (logic.element_count > 0) logic.outflow_index.at(logic.element_count).at(1) = logic.element_count + 1;
}

}  // namespace

void CountElements(int unit) {
  count_elements(element_lines(unit));
  runtime::rewind(unit);
}

void ReadSystemFile(std::string_view variant_name) {
  const FileName file_name = file_name_of(variant_name, ".sys");
  const int unit = open_input_file(file_name);
  if (unit == 0) return;
  if (read_elements(unit, file_name)) {
    link_and_list_elements();
    CheckSystemLogic();
  }
  runtime::close(unit);
}

}  // namespace m_System
