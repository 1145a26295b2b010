#include "runtime/write.h"

#include <system_error>
#include <utility>

#include "runtime/connection.h"
#include "runtime/host.h"
#include "runtime/stop.h"

namespace runtime {
namespace {

// What follows the current record in the file is gone with the first write.
void begin_writing(Connection& connection) {
  std::error_code reason = connection.write_refused;
  bool ready = !reason;
  // Before anything of the file is lost.
  connection.output.pending.room(OutputBuffer::least_capacity);
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

Connection& writable(int unit) {
  Connection& connection = connected(unit, "Schreiben");
  if (!connection.writing) begin_writing(connection);
  connection.records.forget_end();
  return connection;
}

}  // namespace

bool hand_over(Connection& connection, std::error_code& reason) {
  OutputBuffer& pending = connection.output.pending;
  std::size_t written = 0;
  while (written < pending.size()) {
    const std::ptrdiff_t put =
        host().write(connection.handle, pending.data() + written, pending.size() - written, reason);
    if (put <= 0) {
      pending.clear();
      connection.output.inside_record = false;
      return false;
    }
    written += static_cast<std::size_t>(put);
  }
  pending.clear();
  return true;
}

void hand_over_or_tell(Connection& connection) {
  std::error_code reason;
  if (hand_over(connection, reason)) return;
  if (!connection.console) stop_on_io_error("Schreiben", connection.path, reason);
  if (!std::exchange(connection.loss_told, true)) report_io_error("Schreiben", "Standardausgabe", reason);
}

void end_open_record(Connection& connection) {
  RecordOutput& output = connection.output;
  if (output.inside_record) output.pending += output.line_end;
  output.inside_record = false;
}

void end_writing(Connection& connection) {
  if (!connection.writing) return;
  end_open_record(connection);
  hand_over_or_tell(connection);
  connection.writing = false;
}

namespace detail {

RecordOutput& output_of(int unit) {
  return writable(unit).output;
}

void hand_over_full(int unit) {
  hand_over_or_tell(connected(unit, "Schreiben"));
}

}  // namespace detail

void write(int unit, const Format& format, std::span<const Value> values) {
  Connection& connection = writable(unit);
  RecordOutput& output = connection.output;
  char* const place = output.record(most_bytes(format, values, output.line_end));
  output.end_record(put_formatted(place, format, values, output.line_end));
  if (output.full()) hand_over_or_tell(connection);
}

void write_text(int unit, std::string_view text) {
  Connection& connection = writable(unit);
  connection.output.pending += text;
  connection.output.inside_record = true;
  if (connection.output.full()) hand_over_or_tell(connection);
}

void end_file(int unit) {
  Connection& connection = connected(unit, "Schreiben");
  if (!connection.writing) begin_writing(connection);
}

void flush(int unit) {
  Connection& connection = connected(unit, "Schreiben");
  if (connection.console) hand_over_files();
  hand_over_or_tell(connection);
}

}  // namespace runtime
