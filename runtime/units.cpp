#include "runtime/units.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <system_error>
#include <utility>

#include "runtime/blocks.h"
#include "runtime/host.h"
#include "runtime/output_buffer.h"
#include "runtime/paths.h"
#include "runtime/records.h"
#include "runtime/stop.h"
#include "runtime/write_record.h"

namespace runtime {

using namespace literals;

struct Connection {
  std::string path;
  int handle = -1;
  bool console = false;
  FileFacts facts;
  std::error_code write_refused;

  // The whole file, from the first read on.
  Records records;
  bool loaded = false;

  bool writing = false;
  RecordOutput output{{}, host().line_end()};
};

namespace {

using Connections = std::map<int, Connection>;

// A reader and the protocol take turns over a few units: the last one asked for is at hand.
int last_unit = -1;
Connection* last_connection = nullptr;

void forget_last_connection() {
  last_unit = -1;
  last_connection = nullptr;
}

Connections standard_units() {
  Connections units;
  Connection& input = units[5];
  input.console = true;
  input.handle = 0;
  Connection& output = units[standard_output_unit];
  output.console = true;
  output.handle = standard_output_handle;
  output.writing = true;
  return units;
}

Connections& connections() {
  static Connections units = standard_units();
  return units;
}

std::error_code reason_of(std::errc reason) {
  return std::make_error_code(reason);
}

Connection& connected(int unit, std::string_view operation) {
  if (unit == last_unit && last_connection != nullptr) return *last_connection;
  Connections& units = connections();
  const auto found = units.find(unit);
  if (found == units.end()) {
    stop_on_io_error(operation, "Einheit " + std::to_string(unit), reason_of(std::errc::bad_file_descriptor));
  }
  last_unit = unit;
  last_connection = &found->second;
  return found->second;
}

// Opening.

int open_old(Connection& connection, std::string_view text, std::error_code& reason) {
  connection.path = path_of_existing(text);
  switch (host().kind_of(connection.path)) {
    case FileKind::none:
      reason = reason_of(std::errc::no_such_file_or_directory);
      return -1;
    case FileKind::folder:
      reason = reason_of(std::errc::is_a_directory);
      return -1;
    case FileKind::other:
      reason = reason_of(std::errc::invalid_argument);
      return -1;
    case FileKind::file:
      break;
  }
  return host().open(connection.path, Access::update, reason);
}

int open_fresh(Connection& connection, std::string_view text, std::error_code& reason) {
  connection.path = path_for_output(text);
  if (host().kind_of(connection.path) != FileKind::none) {
    reason = reason_of(std::errc::file_exists);
    return -1;
  }
  return host().open(connection.path, Access::create, reason);
}

int open_unknown(Connection& connection, std::string_view text, std::error_code& reason) {
  connection.path = path_for_output(text);
  return host().open(connection.path, Access::create, reason);
}

int open_by_status(Connection& connection, std::string_view text, OpenStatus status,
                   std::error_code& reason) {
  switch (status) {
    case OpenStatus::old:
      return open_old(connection, text, reason);
    case OpenStatus::fresh:
      return open_fresh(connection, text, reason);
    case OpenStatus::unknown:
      break;
  }
  return open_unknown(connection, text, reason);
}

// A file that may only be read is connected all the same; the refusal is told by the first write.
void open_for_reading(Connection& connection, std::error_code& reason) {
  if (host().kind_of(connection.path) != FileKind::file) return;
  const std::error_code refused = reason;
  connection.handle = host().open(connection.path, Access::read, reason);
  connection.write_refused = refused;
}

bool same_file(const FileFacts& left, const FileFacts& right) {
  return left.kind == FileKind::file && right.kind == FileKind::file && left.volume == right.volume &&
         left.number == right.number;
}

bool held_by_a_unit(const FileFacts& facts) {
  return std::ranges::any_of(connections(),
                             [&](const auto& entry) { return same_file(entry.second.facts, facts); });
}

bool connect(Connection& connection, std::string_view text, OpenStatus status, std::error_code& reason) {
  connection.handle = open_by_status(connection, text, status, reason);
  if (connection.handle < 0 && status != OpenStatus::fresh) open_for_reading(connection, reason);
  if (connection.handle < 0) return false;
  const bool known = host().facts(connection.handle, connection.facts, reason);
  if (known && !held_by_a_unit(connection.facts)) return true;
  if (known) reason = reason_of(std::errc::device_or_resource_busy);
  std::error_code ignored;
  host().close(connection.handle, ignored);
  return false;
}

bool connect_unit(int unit, std::string_view text, OpenStatus status, std::error_code& reason) {
  if (is_connected(unit)) {
    reason = reason_of(std::errc::device_or_resource_busy);
    return false;
  }
  Connection connection;
  if (!connect(connection, text, status, reason)) return false;
  connections().emplace(unit, std::move(connection));
  return true;
}

// Reading.

struct FileText {
  FileMemory data;
  std::size_t capacity = 0;
  std::size_t size = 0;
  TextBytes bytes;
};

FileMemory file_memory(std::size_t bytes) {
  return FileMemory(static_cast<char*>(allocate_block(bytes)));
}

bool grow(FileText& text) {
  const std::size_t larger = text.capacity * 2;
  FileMemory data = file_memory(larger);
  if (!data) return false;
  std::memcpy(data.get(), text.data.get(), text.size);
  text.data = std::move(data);
  text.capacity = larger;
  return true;
}

bool read_whole(Connection& connection, FileText& text, std::error_code& reason) {
  // What was read is looked at while the processor still has it at hand.
  constexpr std::size_t read_block = std::size_t{1} << 18U;
  // One byte more than the file holds, so that its end is met without growing.
  text.capacity = static_cast<std::size_t>(connection.facts.size) + 1;
  text.data = file_memory(text.capacity);
  reason = reason_of(std::errc::not_enough_memory);
  if (!text.data) return false;
  while (true) {
    if (text.size == text.capacity && !grow(text)) return false;
    char* const place = text.data.get() + text.size;
    const std::size_t asked = std::min(text.capacity - text.size, read_block);
    const std::ptrdiff_t got = host().read(connection.handle, place, asked, reason);
    if (got < 0) return false;
    if (got == 0) return true;
    note_bytes(text.bytes, {place, static_cast<std::size_t>(got)});
    text.size += static_cast<std::size_t>(got);
  }
}

void load(Connection& connection) {
  if (connection.loaded) return;
  std::error_code reason;
  FileText text;
  const bool at_start = connection.facts.kind != FileKind::file || host().seek(connection.handle, 0, reason);
  if (!at_start || !host().facts(connection.handle, connection.facts, reason) ||
      !read_whole(connection, text, reason)) {
    stop_on_io_error("Lesen", connection.path, reason);
  }
  connection.records.take(std::move(text.data), text.size, text.bytes);
  connection.loaded = true;
}

// The records to read on from; a unit that is being written is at its end.
Records& readable(Connection& connection) {
  if (!connection.writing) load(connection);
  return connection.records;
}

// Writing.

bool hand_over(Connection& connection, std::error_code& reason) {
  std::size_t written = 0;
  while (written < connection.output.pending.size()) {
    const std::ptrdiff_t put = host().write(connection.handle, connection.output.pending.data() + written,
                                            connection.output.pending.size() - written, reason);
    if (put <= 0) {
      // What could not be written is told once and not tried again on the way out.
      connection.output.pending.clear();
      connection.output.inside_record = false;
      return false;
    }
    written += static_cast<std::size_t>(put);
  }
  connection.output.pending.clear();
  return true;
}

void hand_over_or_stop(Connection& connection) {
  std::error_code reason;
  if (!hand_over(connection, reason) && !connection.console) {
    stop_on_io_error("Schreiben", connection.path, reason);
  }
}

void end_open_record(Connection& connection) {
  if (connection.output.inside_record && !connection.console)
    connection.output.pending += connection.output.line_end;
  connection.output.inside_record = false;
}

// What follows the current record in the file is gone with the first write.
void begin_writing(Connection& connection) {
  if (connection.writing) return;
  std::error_code reason = connection.write_refused;
  bool ready = !reason;
  if (ready && connection.facts.kind == FileKind::file) {
    const std::size_t kept = connection.records.position().byte;
    ready = host().facts(connection.handle, connection.facts, reason) &&
            (connection.facts.size <= kept || host().truncate(connection.handle, kept, reason)) &&
            host().seek(connection.handle, kept, reason);
    if (kept > 0 && !connection.records.ends_with_line_end())
      connection.output.pending += connection.output.line_end;
  }
  if (!ready) stop_on_io_error("Schreiben", connection.path, reason);
  connection.records.drop();
  connection.loaded = false;
  connection.writing = true;
}

void end_writing(Connection& connection) {
  if (!connection.writing) return;
  end_open_record(connection);
  hand_over_or_stop(connection);
  connection.writing = false;
}

Connection& writable(int unit) {
  Connection& connection = connected(unit, "Schreiben");
  begin_writing(connection);
  connection.records.forget_end();
  return connection;
}

void hand_over_when_full(Connection& connection) {
  if (connection.output.pending.size() >= LineWriter::block) hand_over_or_stop(connection);
}

bool complete(Connection& connection, std::error_code& reason) {
  end_open_record(connection);
  const bool handed_over = hand_over(connection, reason);
  std::error_code close_reason;
  const bool closed = host().close(connection.handle, close_reason);
  if (handed_over && !closed) reason = close_reason;
  return handed_over && closed;
}

struct CloseFault {
  std::string path;
  std::error_code reason;
};

// Frees the unit and completes or removes its file; the fault when that fails.
std::optional<CloseFault> disconnect(int unit, CloseStatus status) {
  Connections& units = connections();
  const auto found = units.find(unit);
  if (found == units.end() || found->second.console) return std::nullopt;
  Connection connection = std::move(found->second);
  units.erase(found);
  forget_last_connection();
  std::error_code reason;
  if (status == CloseStatus::remove) {
    host().close(connection.handle, reason);
    if (host().remove(connection.path, reason)) return std::nullopt;
  } else if (complete(connection, reason)) {
    return std::nullopt;
  }
  return CloseFault{connection.path, reason};
}

}  // namespace

void open(int unit, std::string_view path, OpenStatus status) {
  std::error_code reason;
  if (!connect_unit(unit, path, status, reason)) {
    const std::string shown = status == OpenStatus::old ? path_of_existing(path) : path_for_output(path);
    stop_on_io_error("Öffnen"_w1252, shown, reason);
  }
}

bool try_open(int unit, std::string_view path, OpenStatus status) {
  std::error_code reason;
  return connect_unit(unit, path, status, reason);
}

void close(int unit, CloseStatus status) {
  const std::optional<CloseFault> fault = disconnect(unit, status);
  if (!fault) return;
  const bool removal = status == CloseStatus::remove;
  stop_on_io_error(removal ? "Löschen"_w1252 : "Schließen"_w1252, fault->path, fault->reason);
}

bool try_close(int unit, CloseStatus status) {
  return !disconnect(unit, status);
}

void close_all() {
  Connections& units = connections();
  for (auto& [unit, connection] : units) {
    std::error_code reason;
    if (connection.console) {
      hand_over(connection, reason);
    } else if (!complete(connection, reason)) {
      report_io_error("Schreiben", connection.path, reason);
    }
  }
  forget_last_connection();
  std::erase_if(units, [](const auto& entry) { return !entry.second.console; });
}

bool is_connected(int unit) {
  return connections().contains(unit);
}

std::optional<std::string> connected_path(int unit) {
  const auto found = connections().find(unit);
  if (found == connections().end()) return std::nullopt;
  return found->second.path;
}

std::optional<int> unit_of(std::string_view path) {
  std::error_code reason;
  const int handle = host().open(path_of_existing(path), Access::read, reason);
  if (handle < 0) return std::nullopt;
  FileFacts facts;
  const bool known = host().facts(handle, facts, reason);
  host().close(handle, reason);
  if (!known) return std::nullopt;
  for (const auto& [unit, connection] : connections()) {
    if (same_file(connection.facts, facts)) return unit;
  }
  return std::nullopt;
}

bool file_exists(std::string_view path) {
  return host().kind_of(path_of_existing(path)) != FileKind::none;
}

bool is_regular_output(std::string_view path) {
  return host().kind_of(path_for_output(path)) == FileKind::file;
}

bool is_folder(std::string_view path) {
  return host().kind_of(path_of_existing(path)) == FileKind::folder;
}

ReadStatus read_line(int unit, std::size_t width, std::string_view& record) {
  std::string_view whole;
  if (!readable(connected(unit, "Lesen")).next(whole)) return ReadStatus::end_of_file;
  record = whole.substr(0, width);
  return ReadStatus::good;
}

LineReader::LineReader(int unit, std::size_t width)
    : records_(&readable(connected(unit, "Lesen"))), width_(width) {}

std::string_view unread_text(int unit) {
  return readable(connected(unit, "Lesen")).rest();
}

bool is_ascii(int unit) {
  return !readable(connected(unit, "Lesen")).bytes().above_ascii;
}

void rewind(int unit) {
  Connection& connection = connected(unit, "Zurückspulen"_w1252);
  end_writing(connection);
  connection.records.rewind();
}

void backspace(int unit) {
  Connection& connection = connected(unit, "Zurücksetzen"_w1252);
  const bool at_end = connection.writing;
  end_writing(connection);
  load(connection);
  if (at_end) connection.records.go_to_end();
  connection.records.backspace();
}

LineWriter::LineWriter(int unit) : connection_(&writable(unit)), output_(&connection_->output) {}

void LineWriter::hand_over() {
  hand_over_or_stop(*connection_);
}

void write(int unit, const Format& format, std::span<const Value> values) {
  LineWriter writer(unit);
  char* const place = writer.room(most_bytes(format, values, writer.line_end()));
  writer.end_record(put_formatted(place, format, values, writer.line_end()));
}

void write(int unit, const Format& format, std::initializer_list<Value> values) {
  write(unit, format, std::span<const Value>(values.begin(), values.size()));
}

void write_line(int unit, std::string_view text) {
  Connection& connection = writable(unit);
  connection.output.pending += text;
  connection.output.pending += connection.output.line_end;
  connection.output.inside_record = false;
  hand_over_when_full(connection);
}

void write_text(int unit, std::string_view text) {
  Connection& connection = writable(unit);
  connection.output.pending += text;
  connection.output.inside_record = true;
  hand_over_when_full(connection);
}

void end_file(int unit) {
  begin_writing(connected(unit, "Schreiben"));
}

void flush(int unit) {
  hand_over_or_stop(connected(unit, "Schreiben"));
}

}  // namespace runtime
