#include "tests/variant_files.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "KV_Akum/KV_Akum.h"
#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_ScrenixQt/m_ScrenixQt.h"
#include "m_System/filled_tables.h"
#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/arguments.h"
#include "runtime/array.h"
#include "runtime/cp1252.h"
#include "runtime/fixed_text.h"
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

std::string german(std::string_view utf8) {
  runtime::Cp1252Text<500> text;
  text.append(utf8);
  if (!text.valid) throw std::runtime_error("not in Windows-1252");
  return std::string(text.view());
}

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

WorkingFolder::WorkingFolder() : before_(fs::current_path()) {
  fs::current_path(folder_.path());
  reset_modules();
}

WorkingFolder::~WorkingFolder() {
  reset_modules();
  std::error_code ignored;
  fs::current_path(before_, ignored);
}

void write_file(const fs::path& file, std::string_view bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) throw std::runtime_error("cannot write " + file.string());
}

void write_lines(const fs::path& file, const Lines& lines) {
  std::string bytes;
  for (const std::string& line : lines) bytes += line + "\n";
  write_file(file, bytes);
}

std::string read_file(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
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
  return lines_of(read_file(file));
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

ShownText::ShownText() : machine_(runtime::host()) {
  runtime::flush(runtime::standard_output_unit);
  runtime::set_host(this);
}

ShownText::~ShownText() {
  runtime::set_host(nullptr);
}

char ShownText::separator() const {
  return machine_.separator();
}

const char* ShownText::line_end() const {
  return machine_.line_end();
}

runtime::FileKind ShownText::kind_of(const std::string& path) {
  return machine_.kind_of(path);
}

int ShownText::open(const std::string& path, runtime::Access access, std::error_code& reason) {
  return machine_.open(path, access, reason);
}

bool ShownText::facts(int handle, runtime::FileFacts& facts, std::error_code& reason) {
  return machine_.facts(handle, facts, reason);
}

std::ptrdiff_t ShownText::read(int handle, char* bytes, std::size_t count, std::error_code& reason) {
  return machine_.read(handle, bytes, count, reason);
}

std::ptrdiff_t ShownText::write(int handle, const char* bytes, std::size_t count, std::error_code& reason) {
  if (handle == runtime::standard_output_handle) {
    output_.append(bytes, count);
  } else if (handle == runtime::standard_error_handle) {
    error_.append(bytes, count);
  } else {
    return machine_.write(handle, bytes, count, reason);
  }
  return static_cast<std::ptrdiff_t>(count);
}

bool ShownText::seek(int handle, std::uint64_t place, std::error_code& reason) {
  return machine_.seek(handle, place, reason);
}

bool ShownText::truncate(int handle, std::uint64_t size, std::error_code& reason) {
  return machine_.truncate(handle, size, reason);
}

bool ShownText::close(int handle, std::error_code& reason) {
  return machine_.close(handle, reason);
}

bool ShownText::remove(const std::string& path, std::error_code& reason) {
  return machine_.remove(path, reason);
}

void ShownText::run_command(const std::string& command_line) {
  machine_.run_command(command_line);
}

std::int64_t ShownText::clock_ticks() {
  return machine_.clock_ticks();
}

std::int64_t ShownText::ticks_per_second() {
  return machine_.ticks_per_second();
}

void copy_variant(const fs::path& folder, const std::string& name) {
  for (const std::string_view extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
    const fs::path file = folder / (name + std::string(extension));
    if (fs::exists(file)) write_file(file.filename(), read_file(file));
  }
}

RunResult run_variant(const std::string& name) {
  reset_modules();
  const ShownText shown;
  const std::array<const char*, 2> arguments = {"KV_Akum", name.c_str()};
  runtime::set_arguments(static_cast<int>(arguments.size()), arguments.data());
  KV_Akum::ProgramDriver();
  runtime::close_all();
  runtime::set_arguments(0, nullptr);
  return {shown.output(), shown.error()};
}

std::string notice(std::string_view title, std::string_view text) {
  std::string bytes("\x01messagebox_button_0_settitle\x02");
  bytes.append(title).append("\x03\x01messagebox_button_0\x02").append(text).append("\x03");
  return bytes;
}

std::string error_notice(std::string_view text) {
  return notice("KV_Akum: Fehler", text);
}

}  // namespace variant_files
