#include "runtime/units.h"

#include <algorithm>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

#include "runtime/connection.h"
#include "runtime/cp1252.h"
#include "runtime/host.h"
#include "runtime/paths.h"
#include "runtime/stop.h"

namespace runtime {

using namespace literals;

namespace {

// By unit number; null for a free unit.
using Connections = std::vector<std::unique_ptr<Connection>>;

constexpr int highest_unit = 999'999;

std::unique_ptr<Connection> standard_stream(int handle) {
  auto stream = std::make_unique<Connection>();
  stream->console = true;
  stream->handle = handle;
  return stream;
}

Connections standard_units() {
  Connections units(standard_output_unit + 1);
  units[5] = standard_stream(0);
  units[standard_output_unit] = standard_stream(standard_output_handle);
  units[standard_output_unit]->writing = true;
  units[standard_output_unit]->output.line_end = host().line_end();
  return units;
}

Connections connections = standard_units();

// Null for a unit that is not connected.
Connection* connection_of(int unit) {
  const auto place = static_cast<std::size_t>(unit);
  return place < connections.size() ? connections[place].get() : nullptr;
}

std::error_code reason_of(std::errc reason) {
  return std::make_error_code(reason);
}

[[noreturn]] void stop_on_free_unit(int unit, std::string_view operation) {
  stop_on_io_error(operation, "Einheit " + std::to_string(unit), reason_of(std::errc::bad_file_descriptor));
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

// The unit that holds a file.
std::optional<int> holder_of(const FileFacts& facts) {
  const auto holder = std::ranges::find_if(connections, [&](const auto& connection) {
    return connection != nullptr && same_file(connection->facts, facts);
  });
  if (holder == connections.end()) return std::nullopt;
  return static_cast<int>(holder - connections.begin());
}

bool connect(Connection& connection, std::string_view text, OpenStatus status, std::error_code& reason) {
  connection.handle = open_by_status(connection, text, status, reason);
  if (connection.handle < 0 && status != OpenStatus::fresh) open_for_reading(connection, reason);
  if (connection.handle < 0) return false;
  const bool known = host().facts(connection.handle, connection.facts, reason);
  if (known && !holder_of(connection.facts)) return true;
  if (known) reason = reason_of(std::errc::device_or_resource_busy);
  std::error_code ignored;
  host().close(connection.handle, ignored);
  return false;
}

bool connect_unit(int unit, std::string_view text, OpenStatus status, std::error_code& reason) {
  if (unit < 0 || unit > highest_unit) reason = reason_of(std::errc::argument_out_of_domain);
  if (is_connected(unit)) reason = reason_of(std::errc::device_or_resource_busy);
  if (reason) return false;
  auto connection = std::make_unique<Connection>();
  connection->output.line_end = host().line_end();
  if (!connect(*connection, text, status, reason)) return false;
  const auto place = static_cast<std::size_t>(unit);
  if (place >= connections.size()) connections.resize(place + 1);
  connections[place] = std::move(connection);
  return true;
}

// Closing.

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
  if (connection_of(unit) == nullptr || connection_of(unit)->console) return std::nullopt;
  const std::unique_ptr<Connection> connection = std::move(connections[static_cast<std::size_t>(unit)]);
  std::error_code reason;
  if (status == CloseStatus::remove) {
    host().close(connection->handle, reason);
    if (host().remove(connection->path, reason)) return std::nullopt;
  } else if (complete(*connection, reason)) {
    return std::nullopt;
  }
  return CloseFault{connection->path, reason};
}

}  // namespace

Connection& connected(int unit, std::string_view operation) {
  Connection* const connection = connection_of(unit);
  if (connection == nullptr) stop_on_free_unit(unit, operation);
  return *connection;
}

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
  for (std::unique_ptr<Connection>& connection : connections) {
    if (connection == nullptr) continue;
    std::error_code reason;
    if (connection->console) {
      hand_over(*connection, reason);
      continue;
    }
    if (!complete(*connection, reason)) report_io_error("Schreiben", connection->path, reason);
    connection.reset();
  }
}

bool is_connected(int unit) {
  return connection_of(unit) != nullptr;
}

std::optional<std::string> connected_path(int unit) {
  const Connection* const connection = connection_of(unit);
  if (connection == nullptr) return std::nullopt;
  return connection->path;
}

std::optional<int> unit_of(std::string_view path) {
  std::error_code reason;
  const int handle = host().open(path_of_existing(path), Access::read, reason);
  if (handle < 0) return std::nullopt;
  FileFacts facts;
  const bool known = host().facts(handle, facts, reason);
  host().close(handle, reason);
  return known ? holder_of(facts) : std::nullopt;
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

}  // namespace runtime
