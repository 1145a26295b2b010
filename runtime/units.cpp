#include "runtime/units.h"

#include <algorithm>
#include <memory>
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
  units[5] = standard_stream(standard_input_handle);
  units[standard_output_unit] = standard_stream(standard_output_handle);
  units[standard_output_unit]->output.line_end = host().line_end();
  return units;
}

// Made at the first use: what fails before the program begins could not be told.
Connections& connections() {
  static Connections units = standard_units();
  return units;
}

// Paths of files: what stands there counts, not what once stood there. The number of a file that is gone may
// be that of a new one.
std::vector<std::string> protected_files;
int locked_handle = -1;

// Null for a unit that is not connected.
Connection* connection_of(int unit) {
  const Connections& units = connections();
  const auto place = static_cast<std::size_t>(unit);
  return place < units.size() ? units[place].get() : nullptr;
}

std::error_code reason_of(std::errc reason) {
  return std::make_error_code(reason);
}

bool same_file(const FileFacts& left, const FileFacts& right) {
  return left.kind == FileKind::file && right.kind == FileKind::file && left.volume == right.volume &&
         left.number == right.number;
}

bool is_protected(const FileFacts& facts) {
  return std::ranges::any_of(protected_files,
                             [&](const std::string& path) { return same_file(facts_at(path), facts); });
}

void protect_file(const std::string& path) {
  if (std::ranges::find(protected_files, path) == protected_files.end()) protected_files.push_back(path);
}

void release_lock() {
  std::error_code ignored;
  if (locked_handle >= 0) host().close(locked_handle, ignored);
  locked_handle = -1;
}

// A file that is complete stands where it was written, unless another run has put its own there.
FileFacts facts_of(const Connection& connection) {
  return connection.handle < 0 ? facts_at(connection.path) : connection.facts;
}

// The unit that holds a file, other than by the connection that is being made.
std::optional<int> holder_of(const FileFacts& facts, const Connection* made = nullptr) {
  const auto holder = std::ranges::find_if(connections(), [&](const auto& connection) {
    const bool other = connection != nullptr && !connection->console && connection.get() != made;
    return other && same_file(facts_of(*connection), facts);
  });
  if (holder == connections().end()) return std::nullopt;
  return static_cast<int>(holder - connections().begin());
}

// Until it is complete, a whole file stands nowhere: only the path tells where it goes.
bool is_written_whole(const std::string& path, const Connection* made) {
  return std::ranges::any_of(connections(), [&](const auto& connection) {
    const bool other = connection != nullptr && connection->successor && connection.get() != made;
    return other && connection->path == path;
  });
}

// Opening.

bool is_file(const FileFacts& facts, std::error_code& reason) {
  switch (facts.kind) {
    case FileKind::none:
      reason = reason_of(std::errc::no_such_file_or_directory);
      return false;
    case FileKind::folder:
      reason = reason_of(std::errc::is_a_directory);
      return false;
    case FileKind::other:
      reason = reason_of(std::errc::invalid_argument);
      return false;
    case FileKind::file:
      break;
  }
  return true;
}

// A file that may only be read is connected all the same; the refusal is told by the first write.
void open_or_read_only(Connection& connection, Access access, std::error_code& reason) {
  connection.handle = host().open(connection.path, access, reason);
  if (connection.handle >= 0 || facts_at(connection.path).kind != FileKind::file) return;
  connection.write_refused = reason;
  connection.handle = host().open(connection.path, Access::read, reason);
}

void open_input(Connection& connection, std::error_code& reason) {
  if (!is_file(facts_at(connection.path), reason)) return;
  connection.handle = host().open(connection.path, Access::read, reason);
}

void open_old(Connection& connection, std::error_code& reason) {
  if (is_file(facts_at(connection.path), reason)) open_or_read_only(connection, Access::update, reason);
}

void open_fresh(Connection& connection, std::error_code& reason) {
  if (facts_at(connection.path).kind == FileKind::none) {
    connection.handle = host().open(connection.path, Access::create, reason);
  } else {
    reason = reason_of(std::errc::file_exists);
  }
}

void open_unknown(Connection& connection, std::error_code& reason) {
  open_or_read_only(connection, Access::create, reason);
}

// Whether the folder, and not what stands in it, is the reason why there is no second file.
bool folder_refuses(const std::error_code& reason) {
  return reason == std::errc::permission_denied || reason == std::errc::operation_not_permitted ||
         reason == std::errc::read_only_file_system || reason == std::errc::filename_too_long;
}

// What exists must be a file that could be written itself.
bool may_be_replaced(Connection& connection, const FileFacts& existing, std::error_code& reason) {
  if (is_protected(existing)) reason = reason_of(std::errc::operation_not_permitted);
  if (holder_of(existing, &connection)) reason = reason_of(std::errc::device_or_resource_busy);
  if (reason) return false;
  const int handle = host().open(connection.path, Access::update, reason);
  if (handle < 0) return false;
  std::error_code ignored;
  host().close(handle, ignored);
  return true;
}

void open_whole(Connection& connection, std::error_code& reason) {
  const FileFacts existing = facts_at(connection.path);
  const bool there = existing.kind == FileKind::file;
  if (existing.linked || (existing.kind != FileKind::none && !there)) return open_unknown(connection, reason);
  if (there && !may_be_replaced(connection, existing, reason)) return;
  Successor successor = host().create_successor(connection.path, reason);
  if (successor.handle < 0) {
    if (folder_refuses(reason)) open_unknown(connection, reason);
    return;
  }
  connection.handle = successor.handle;
  connection.successor = std::move(successor);
}

void open_by_status(Connection& connection, OpenStatus status, std::error_code& reason) {
  switch (status) {
    case OpenStatus::input:
      return open_input(connection, reason);
    case OpenStatus::old:
      return open_old(connection, reason);
    case OpenStatus::unknown:
      return open_unknown(connection, reason);
    case OpenStatus::fresh:
      return open_fresh(connection, reason);
    case OpenStatus::whole:
      break;
  }
  open_whole(connection, reason);
}

std::string path_for(std::string_view text, OpenStatus status) {
  const bool must_exist = status == OpenStatus::input || status == OpenStatus::old;
  return must_exist ? path_of_existing(text) : path_for_output(text);
}

// Closes the file as it is; nothing stays of a whole one.
void abandon(Connection& connection) {
  std::error_code ignored;
  if (connection.successor) {
    host().discard(*connection.successor);
  } else if (connection.handle >= 0) {
    host().close(connection.handle, ignored);
  }
  connection.successor.reset();
  connection.handle = -1;
}

// What was opened is looked at once more: it need not be what stood there before.
bool may_be_held(Connection& connection, OpenStatus status, std::error_code& reason) {
  if (!host().facts(connection.handle, connection.facts, reason)) return false;
  if (status == OpenStatus::input && !is_file(connection.facts, reason)) return false;
  const bool held =
      holder_of(connection.facts, &connection) || is_written_whole(connection.path, &connection);
  if (held) reason = reason_of(std::errc::device_or_resource_busy);
  return !reason;
}

bool connect(Connection& connection, OpenStatus status, std::error_code& reason) {
  open_by_status(connection, status, reason);
  if (connection.handle < 0) return false;
  reason.clear();
  if (!may_be_held(connection, status, reason)) {
    abandon(connection);
    return false;
  }
  if (status == OpenStatus::input) protect_file(connection.path);
  if (is_protected(connection.facts))
    connection.write_refused = reason_of(std::errc::operation_not_permitted);
  return true;
}

// Closing.

bool complete_successor(Connection& connection, std::error_code& reason) {
  const Successor successor = *std::exchange(connection.successor, std::nullopt);
  connection.handle = -1;
  return host().succeed(successor, connection.path, reason);
}

// Hands everything over and closes the file; a whole one takes its place unless something of it was lost.
bool complete(Connection& connection, std::error_code& reason) {
  end_open_record(connection);
  if (!hand_over(connection, reason)) {
    abandon(connection);
    return false;
  }
  if (connection.successor) return complete_successor(connection, reason);
  const int handle = std::exchange(connection.handle, -1);
  return handle < 0 || host().close(handle, reason);
}

bool remove(Connection& connection, std::error_code& reason) {
  abandon(connection);
  if (is_protected(connection.facts)) {
    reason = reason_of(std::errc::operation_not_permitted);
    return false;
  }
  return host().remove(connection.path, reason);
}

}  // namespace

Connection& connected(int unit, std::string_view operation) {
  Connection* const connection = connection_of(unit);
  if (connection == nullptr) stop_on_free_unit(operation, unit);
  return *connection;
}

bool try_open(int unit, std::string_view path, OpenStatus status, std::error_code& reason) {
  reason.clear();
  if (unit < 0 || unit > highest_unit) reason = reason_of(std::errc::argument_out_of_domain);
  if (is_connected(unit)) reason = reason_of(std::errc::device_or_resource_busy);
  if (reason) return false;
  const auto place = static_cast<std::size_t>(unit);
  if (place >= connections().size()) connections().resize(place + 1);
  // The unit has its connection before the file is opened: whatever ends the run then closes the file.
  connections()[place] = std::make_unique<Connection>();
  Connection& connection = *connections()[place];
  connection.output.line_end = host().line_end();
  connection.path = path_for(path, status);
  if (connect(connection, status, reason)) return true;
  connections()[place].reset();
  return false;
}

bool try_open(int unit, std::string_view path, OpenStatus status) {
  std::error_code ignored;
  return try_open(unit, path, status, ignored);
}

void open(int unit, std::string_view path, OpenStatus status) {
  std::error_code reason;
  if (!try_open(unit, path, status, reason)) stop_on_io_error("Öffnen"_w1252, path_for(path, status), reason);
}

void protect(std::string_view path) {
  const std::string existing = path_of_existing(path);
  if (facts_at(existing).kind == FileKind::file) protect_file(existing);
}

void lock(std::string_view path) {
  const std::string locked = path_of_existing(path);
  std::error_code reason;
  if (facts_at(locked).kind != FileKind::file) return;
  release_lock();
  locked_handle = host().open(locked, Access::read, reason);
  if (locked_handle >= 0 && !host().lock(locked_handle, reason)) stop_on_io_error("Sperren", locked, reason);
}

void complete(int unit) {
  Connection& connection = connected(unit, "Schreiben");
  std::error_code reason;
  if (!complete(connection, reason)) stop_on_io_error("Schreiben", connection.path, reason);
}

bool try_close(int unit, CloseStatus status, std::error_code& reason) {
  if (connection_of(unit) == nullptr || connection_of(unit)->console) return true;
  const std::unique_ptr<Connection> connection = std::move(connections()[static_cast<std::size_t>(unit)]);
  return status == CloseStatus::remove ? remove(*connection, reason) : complete(*connection, reason);
}

bool try_close(int unit, CloseStatus status) {
  std::error_code ignored;
  return try_close(unit, status, ignored);
}

void close(int unit, CloseStatus status) {
  const std::string path = connected_path(unit).value_or("");
  std::error_code reason;
  if (try_close(unit, status, reason)) return;
  const bool removal = status == CloseStatus::remove;
  stop_on_io_error(removal ? "Löschen"_w1252 : "Schließen"_w1252, path, reason);
}

void close_all() {
  for (std::unique_ptr<Connection>& connection : connections()) {
    if (connection == nullptr) continue;
    std::error_code reason;
    if (connection->console) {
      hand_over_or_tell(*connection);
      continue;
    }
    if (connection->successor) {
      abandon(*connection);
    } else if (!complete(*connection, reason)) {
      report_io_error("Schreiben", connection->path, reason);
    }
    connection.reset();
  }
  protected_files.clear();
  release_lock();
}

void hand_over_files() {
  for (const std::unique_ptr<Connection>& connection : connections()) {
    if (connection != nullptr && !connection->console) hand_over_or_tell(*connection);
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
  return holder_of(facts_at(path_of_existing(path)));
}

bool file_exists(std::string_view path) {
  return facts_at(path_of_existing(path)).kind != FileKind::none;
}

bool is_regular_output(std::string_view path) {
  return facts_at(path_for_output(path)).kind == FileKind::file;
}

bool is_folder(std::string_view path) {
  return facts_at(path_of_existing(path)).kind == FileKind::folder;
}

}  // namespace runtime
