#include "runtime/read.h"

#include <algorithm>
#include <cstring>
#include <system_error>
#include <utility>

#include "runtime/connection.h"
#include "runtime/cp1252.h"
#include "runtime/host.h"
#include "runtime/stop.h"

namespace runtime {
namespace {

using namespace literals;

struct FileText {
  FileMemory data;
  std::size_t capacity = 0;
  std::size_t size = 0;
  bool carriage_returns = false;
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

// A file that was cut or that a share no longer gives out in full must not pass for a short one.
bool has_come_to_its_end(const Connection& connection, const FileText& text, std::error_code& reason) {
  if (text.size >= connection.facts.size) return true;
  reason = std::make_error_code(std::errc::io_error);
  return false;
}

bool read_whole(Connection& connection, FileText& text, std::error_code& reason) {
  // What was read is looked at while the processor still has it at hand.
  constexpr std::size_t read_block = std::size_t{1} << 18U;
  // One byte more than the file holds, so that its end is met without growing.
  text.capacity = static_cast<std::size_t>(connection.facts.size) + 1;
  text.data = file_memory(text.capacity);
  reason = std::make_error_code(std::errc::not_enough_memory);
  if (!text.data) return false;
  while (true) {
    if (text.size == text.capacity && !grow(text)) return false;
    char* const place = text.data.get() + text.size;
    const std::size_t asked = std::min(text.capacity - text.size, read_block);
    const std::ptrdiff_t got = host().read(connection.handle, place, asked, reason);
    if (got < 0) return false;
    if (got == 0) return has_come_to_its_end(connection, text, reason);
    if (std::memchr(place, '\r', static_cast<std::size_t>(got)) != nullptr) text.carriage_returns = true;
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
  connection.records.take(std::move(text.data), text.size, text.carriage_returns);
  connection.loaded = true;
}

// The records to read on from; a unit that is being written is at its end.
Records& readable(int unit) {
  Connection& connection = connected(unit, "Lesen");
  if (!connection.writing) load(connection);
  return connection.records;
}

}  // namespace

LineReader::LineReader(int unit, std::size_t width) : records_(&readable(unit)), width_(width) {}

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

}  // namespace runtime
