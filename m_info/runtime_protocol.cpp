#include "m_files/m_files.h"
#include "m_info/filled_tables.h"
#include "m_info/m_info.h"
#include "runtime/host.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "runtime/write.h"

namespace m_info {

RuntimeProtocol filled_protocol;
const RuntimeProtocol& protocol = filled_protocol;

namespace {

constexpr int first_protocol_unit = 200;
constexpr std::size_t protocol_line_width = 200;
constexpr std::string_view protocol_file = "runtime.pkl";

// The suite's counts are 32 bits wide and wrap around; so do their differences.
std::int32_t wrapped(std::int64_t value) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

std::int32_t clock_count() {
  return wrapped(runtime::host().clock_ticks());
}

bool is_counter(std::int32_t number) {
  return number >= 1 && number <= counter_count;
}

bool is_timer(std::int32_t number) {
  return number >= 1 && number <= timer_count;
}

void open_protocol() {
  filled_protocol.runtime_unit = m_files::free_unit(first_protocol_unit);
  if (!runtime::file_exists(protocol_file)) {
    runtime::open(protocol.runtime_unit, protocol_file, runtime::OpenStatus::fresh);
    return;
  }
  runtime::open(protocol.runtime_unit, protocol_file, runtime::OpenStatus::old);
  runtime::LineReader written(protocol.runtime_unit, protocol_line_width);
  std::string_view line;
  while (written.next(line)) {
  }
  runtime::backspace(protocol.runtime_unit);
}

void write_text(std::string_view text) {
  runtime::write<"(a    )">(protocol.runtime_unit, runtime::trimmed(text));
}

void write_counter(std::int32_t number) {
  if (!is_counter(number)) return;
  runtime::write<"(a,i2.2,a,i10)">(protocol.runtime_unit, "N(", number, ") = ", protocol.counters.at(number));
}

void write_timer(std::int32_t number) {
  if (!is_timer(number)) return;
  const std::int64_t ticks = protocol.timers.at(number);
  const std::int64_t rate = runtime::host().ticks_per_second();
  const std::int64_t milliseconds = ticks * (rate / 1000);
  const float seconds = rate > 0 ? static_cast<float>(ticks) / static_cast<float>(rate) : 0.0F;
  runtime::write<"('Zeit',i3,' : ',i2.2,':',i2.2,':',i2.2,'.',i3.3,f12.3)">(
      protocol.runtime_unit, number, milliseconds / 3'600'000, milliseconds % 3'600'000 / 60'000,
      milliseconds % 60'000 / 1'000, milliseconds % 1'000, seconds);
}

void set_counter(std::int32_t number) {
  if (number == 0) filled_protocol.counters = {};
  if (is_counter(number)) filled_protocol.counters.at(number) = 0;
}

void set_timer(std::int32_t number) {
  if (number == 0) filled_protocol.timers = {};
  if (is_timer(number)) filled_protocol.timer_start.at(number) = clock_count();
}

void count_up(std::int32_t number) {
  if (!is_counter(number)) return;
  filled_protocol.counters.at(number) = wrapped(std::int64_t{protocol.counters.at(number)} + 1);
}

void add_time(std::int32_t number) {
  if (!is_timer(number)) return;
  const std::int32_t now = clock_count();
  filled_protocol.timer_last.at(number) = now;
  const std::int32_t elapsed = wrapped(std::int64_t{now} - protocol.timer_start.at(number));
  filled_protocol.timers.at(number) = wrapped(std::int64_t{protocol.timers.at(number)} + elapsed);
}

}  // namespace

void runtime_protocol(std::string_view command, std::optional<std::string_view> text,
                      std::optional<std::int32_t> counter, std::optional<std::int32_t> timer) {
  if (command.starts_with("WRITE")) {
    if (protocol.runtime_unit == 0) open_protocol();
    if (text) write_text(*text);
    if (counter) write_counter(*counter);
    if (timer) write_timer(*timer);
  } else if (command.starts_with("CLOSE")) {
    if (protocol.runtime_unit > 0) runtime::close(protocol.runtime_unit);
  } else if (command.starts_with("SET")) {
    if (counter) set_counter(*counter);
    if (timer) set_timer(*timer);
  } else if (command.starts_with("ADD")) {
    if (counter) {
      count_up(*counter);
    } else if (timer) {
      add_time(*timer);
    }
  }
}

}  // namespace m_info
