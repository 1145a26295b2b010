#include "tests/variant_files.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "KV_Akum/KV_Akum.h"
#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_ScrenixQt/m_ScrenixQt.h"
#include "m_System/filled_tables.h"
#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/array.h"
#include "runtime/host.h"
#include "runtime/paths.h"
#include "runtime/units.h"
#include "runtime/write.h"

namespace variant_files {
namespace {

namespace fs = std::filesystem;

void put(std::string& line, std::size_t column, std::string_view text) {
  line.resize(std::max(line.size(), column - 1 + text.size()), ' ');
  line.replace(column - 1, text.size(), text);
}

std::string_view slot(const std::vector<std::string>& names, std::size_t k) {
  return k < names.size() ? std::string_view(names[k]) : std::string_view();
}

void count_type(m_System::SystemLogic& logic, char type) {
  for (std::size_t row = 0; row < m_System::element_types.size(); ++row) {
    if (m_System::element_types[row].letter == type) ++logic.type_counts[row];
  }
}

std::int32_t last_of_name(const m_System::ElementName& name) {
  const m_System::SystemLogic& logic = m_System::system_logic;
  std::int32_t last = 0;
  for (std::int32_t j = 1; j <= logic.element_count; ++j) {
    if (logic.name.at(j) == name) last = j;
  }
  return last;
}

void store(const Element& element, std::int32_t i) {
  m_System::SystemLogic& logic = m_System::filled_tables;
  logic.name.at(i) = element.name;
  logic.type.at(i) = logic.name.at(i).first();
  logic.tag3.at(i) = element.tag3;
  logic.tag7.at(i) = element.tag7;
  for (std::int32_t k = 1; k <= m_System::inflow_slots; ++k) {
    logic.inflow_name.at(i).at(k) = slot(element.inflows, static_cast<std::size_t>(k) - 1);
  }
  for (std::int32_t k = 1; k <= m_System::outflow_slots; ++k) {
    logic.outflow_name.at(i).at(k) = slot(element.outflows, static_cast<std::size_t>(k) - 1);
  }
}

void link(std::int32_t i) {
  m_System::SystemLogic& logic = m_System::filled_tables;
  for (std::int32_t k = 1; k <= m_System::inflow_slots; ++k) {
    logic.inflow_index.at(i).at(k) = last_of_name(logic.inflow_name.at(i).at(k));
  }
  for (std::int32_t k = 1; k <= m_System::outflow_slots; ++k) {
    logic.outflow_index.at(i).at(k) = last_of_name(logic.outflow_name.at(i).at(k));
  }
}

}  // namespace

void reset_modules() {
  runtime::close_all();
  runtime::unlimit_allocations();
  runtime::reset_paths();
  m_WLM_error::reset();
  m_System::reset();
  m_Einleiter::reset();
  m_Gerinne::reset();
  m_Bauwerke::reset();
  m_ScrenixQt::dialog_state = {};
  KV_Akum::reset();
}

void write_lines(const fs::path& file, const Lines& lines) {
  std::string bytes;
  for (const std::string& line : lines) bytes += line + "\n";
  test_files::write_bytes(file, bytes);
}

Lines lines_of(std::string_view bytes) {
  const std::string_view line_end = runtime::host().line_end();
  Lines lines;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find(line_end);
    if (end == std::string_view::npos) throw std::runtime_error("the last line has no end");
    lines.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(end + line_end.size());
  }
  return lines;
}

Lines written_lines(const fs::path& file) {
  runtime::close_all();
  return lines_of(test_files::read_bytes(file));
}

std::string columns_line(std::initializer_list<Field> fields) {
  std::string line;
  for (const Field& field : fields) put(line, field.column, field.text);
  return line;
}

std::string sys_line(const Element& element) {
  return columns_line({{4, element.tag3},
                       {8, element.tag7},
                       {36, element.name},
                       {44, slot(element.inflows, 0)},
                       {50, slot(element.inflows, 1)},
                       {56, slot(element.inflows, 2)},
                       {64, slot(element.outflows, 0)},
                       {70, slot(element.outflows, 1)}});
}

Lines sys_lines(const Network& network) {
  Lines lines;
  for (const Element& element : network) lines.push_back(sys_line(element));
  return lines;
}

void fill_system_logic(const Network& network) {
  m_System::SystemLogic& logic = m_System::filled_tables;
  m_System::reset();
  logic.total_count = static_cast<std::int32_t>(network.size());
  for (const Element& element : network) count_type(logic, element.name.empty() ? ' ' : element.name[0]);
  if (m_System::AllocateSystemTables() != 0) throw std::runtime_error("no memory for the system logic");
  for (std::int32_t i = 1; i <= logic.element_count; ++i) store(network[static_cast<std::size_t>(i) - 1], i);
  for (std::int32_t i = 1; i <= logic.element_count; ++i) link(i);
  if (!network.empty()) logic.outflow_index.at(logic.element_count).at(1) = logic.element_count + 1;
}

void start_afresh() {
  reset_modules();
  start_protocol();
}

void start_protocol() {
  runtime::close_all();
  m_WLM_error::report("INIT", {.text1 = "v.pkl", .text2 = "KARVOS"});
}

Lines protocol_lines() {
  runtime::close_all();
  if (!fs::exists("v.pkl")) return {};
  Lines lines = written_lines("v.pkl");
  lines.erase(lines.begin());
  return lines;
}

std::vector<std::string> protocol_codes() {
  std::vector<std::string> codes;
  for (const std::string& line : protocol_lines()) {
    // Only the first line of a message begins in the first column.
    if (line.starts_with(' ') || line.empty()) continue;
    codes.push_back(line.substr(0, 3));
  }
  return codes;
}

}  // namespace variant_files
