#include "m_WLM_error/m_WLM_error.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "m_WLM_error/catalogue/entry.h"
#include "m_files/m_files.h"
#include "runtime/cp1252.h"
#include "runtime/fixed_text.h"
#include "runtime/read.h"
#include "runtime/stop.h"
#include "runtime/units.h"
#include "runtime/write.h"

namespace m_WLM_error {
namespace {

using namespace runtime::literals;
using catalogue::Counter;
using catalogue::Entry;
using catalogue::Heading;
using catalogue::Values;

constexpr int first_unit = 100;
constexpr std::size_t text_width = 1000;
constexpr std::int32_t cap = 5;
constexpr std::int32_t list_cap = 10;
constexpr float absent_real = -9999.99F;

struct State {
  runtime::FixedText<120> protocol_path;
  runtime::FixedText<12> run_label;
  int protocol_unit = 0;
  bool header_pending = true;
  std::int32_t error_level = 0;
  std::int32_t current_level = 0;
  bool suppression_active = false;
  runtime::FixedText<1000> suppression_list;
  runtime::FixedText<100> last_structure{"##############"};
  std::array<std::int32_t, catalogue::counter_count> repeat_counters{};
  std::int32_t listed = 0;  // not set back by "INIT": the heading of the list appears once a program run
};
State state;

// The suppression list.

void append_line_to_list(std::string_view line) {
  const runtime::FixedText<100> padded(line);
  std::string joined(state.suppression_list.trimmed());
  joined += padded.view();
  state.suppression_list = joined;
}

void load_suppression_list() {
  state.suppression_list = "";
  const int unit = m_files::free_unit(first_unit);
  state.suppression_active = runtime::try_open(unit, "fehlercode.ex", runtime::OpenStatus::input);
  if (!state.suppression_active) return;
  std::string_view line;
  for (runtime::LineReader list(unit, 100); list.next(line);) append_line_to_list(line);
  runtime::close(unit);
}

bool suppressed(std::string_view code) {
  return state.suppression_active && state.suppression_list.view().find(code) != std::string_view::npos;
}

// The protocol.

// One that stays could be taken for that of this run, as long as nothing is found.
void delete_old_protocol() {
  const std::string_view path = state.protocol_path.trimmed();
  if (!runtime::is_regular_output(path)) return;
  const int unit = m_files::free_unit(first_unit);
  std::error_code reason;
  const bool deleted = runtime::try_open(unit, path, runtime::OpenStatus::unknown, reason) &&
                       runtime::try_close(unit, runtime::CloseStatus::remove, reason);
  if (!deleted) runtime::report_io_error("Löschen"_w1252, path, reason);
}

void open_protocol() {
  state.header_pending = false;
  state.protocol_unit = m_files::free_unit(first_unit);
  runtime::open(state.protocol_unit, state.protocol_path.trimmed(), runtime::OpenStatus::unknown);
  runtime::write<"(a)">(state.protocol_unit,
                        std::string("Prüfprotokoll: "_w1252).append(state.run_label.trimmed()));
}

// Writing a message.

void write_row(const Entry& row, const Values& values) {
  std::vector<runtime::Value> fields;
  fields.reserve(row.argument_count + 1);
  if (!row.continues) fields.emplace_back(values.code);
  for (std::size_t i = 0; i < row.argument_count; ++i) fields.push_back(values.value(row.arguments[i]));
  runtime::write(state.protocol_unit, row.format, fields);
}

void write_rows(std::span<const Entry> rows, const Values& values) {
  for (const Entry& row : rows) write_row(row, values);
}

void write_capped(std::span<const Entry> rows, const Values& values) {
  std::int32_t& calls = state.repeat_counters[static_cast<std::size_t>(rows.front().counter)];
  // The sixth call tells all there is to know: the counter rests there and cannot overflow.
  calls = std::min(calls + 1, cap + 1);
  if (calls > cap) return;
  write_rows(rows, values);
  if (calls == cap) runtime::write(state.protocol_unit, rows.front().closing, {});
}

void write_under_structure(std::span<const Entry> rows, const Values& values) {
  if (!(state.last_structure == values.texts[0])) {
    write_row(rows.front(), values);
    state.last_structure = values.texts[0];
  }
  write_rows(rows.subspan(1), values);
}

void write_list(std::span<const Entry> rows, const Values& values) {
  if (state.listed == 0) write_row(rows.front(), values);
  state.listed = std::min(state.listed + 1, list_cap + 1);
  if (state.listed <= list_cap) write_rows(rows.subspan(1), values);
}

void write_entry(std::span<const Entry> rows, const Values& values) {
  const Entry& entry = rows.front();
  if (entry.counter != Counter::none) return write_capped(rows, values);
  switch (entry.heading) {
    case Heading::on_new_structure:
      return write_under_structure(rows, values);
    case Heading::once_a_program_run:
      return write_list(rows, values);
    case Heading::always:
      break;
  }
  write_rows(rows, values);
}

std::int32_t severity(catalogue::Level level, const Values& values) {
  return level == catalogue::level_from_int1 ? values.integers[0] : static_cast<std::int32_t>(level);
}

void handle(const catalogue::Group& group, const Values& values) {
  const std::span<const Entry> rows = catalogue::find_entry(group, values);
  if (rows.empty()) {
    state.current_level = severity(group.default_level, values);
    runtime::write<"(A,  '-Kommentar bei ', A, ' nicht definiert!')">(state.protocol_unit, values.code,
                                                                      values.texts[0]);
    return;
  }
  state.current_level = severity(rows.front().level, values);
  write_entry(rows, values);
}

// The reserved words.

std::string_view message_text(const std::optional<std::string_view>& argument) {
  return runtime::trimmed(argument.value_or("").substr(0, text_width));
}

std::int32_t init(const MessageArguments& arguments) {
  state.protocol_path = arguments.text1.value_or("");
  state.run_label = arguments.text2.value_or("");
  state.header_pending = true;
  state.error_level = 0;
  state.current_level = 0;
  state.repeat_counters.fill(0);
  delete_old_protocol();
  if (message_text(arguments.text3) == "L") {
    state.suppression_active = true;
    state.suppression_list = "mnn18mnn19W11";
  } else {
    load_suppression_list();
  }
  return 0;
}

std::int32_t finale() {
  runtime::close(state.protocol_unit);
  return state.error_level;
}

std::int32_t set_level(const MessageArguments& arguments) {
  state.error_level = state.current_level = arguments.int1.value_or(0);
  return state.error_level;
}

std::int32_t write_message(std::string_view code, const MessageArguments& arguments) {
  const Values values{
      .code = code,
      .texts = {message_text(arguments.text1), message_text(arguments.text2), message_text(arguments.text3)},
      .integers = {arguments.int1.value_or(0), arguments.int2.value_or(0), arguments.int3.value_or(0)},
      .reals = {arguments.real1.value_or(absent_real), arguments.real2.value_or(0.0F)}};
  if (const catalogue::Group* group = catalogue::group_of(code)) handle(*group, values);
  state.error_level = std::max(state.error_level, state.current_level);
  return state.error_level;
}

}  // namespace

std::int32_t ErrorLevel = 0;

std::int32_t MessageDispatcher(std::string_view code, const MessageArguments& arguments) {
  if (runtime::equal_padded(code, "INIT")) return init(arguments);
  if (runtime::equal_padded(code, "FINALE")) return finale();
  if (suppressed(code)) return 0;
  if (runtime::equal_padded(code, "ErrorLevel")) return set_level(arguments);
  if (state.header_pending) open_protocol();
  return write_message(code, arguments);
}

void report(std::string_view code, const MessageArguments& arguments) {
  ErrorLevel = MessageDispatcher(code, arguments);
}

void fold_allocation(std::int32_t status, std::string_view file_name) {
  ErrorLevel = std::max(ErrorLevel, status);
  if (status == 0) return;
  std::string text = "Speichermangel: Tabellen zu \"";
  text.append(runtime::trimmed(file_name)).append("\" nicht angelegt (ErrorLevel ");
  runtime::tell(text.append(std::to_string(status)).append(")"));
}

void reset() {
  state = State();
  ErrorLevel = 0;
}

}  // namespace m_WLM_error
