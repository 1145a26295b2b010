#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "runtime/host.h"
#include "runtime/output_buffer.h"
#include "runtime/records.h"

// What a unit is connected to; for the procedures that connect, read and write units.

namespace runtime {

struct Connection {
  std::string path;  ///< the host's
  int handle = -1;
  bool console = false;    ///< a standard stream
  bool loss_told = false;  ///< that something was lost on the way to a standard stream
  FileFacts facts;
  std::error_code write_refused;       ///< why the file is only read
  std::optional<Successor> successor;  ///< of a file that is being written whole; `handle` is its handle

  Records records;      ///< the whole file, from the first read on
  bool loaded = false;  ///< the records are those of the file

  bool writing = false;  ///< the place in the file is the end of what was written
  RecordOutput output;
};

/// The connection of a unit; one without any is an I/O error of that operation. It stays where it is until
/// the unit is closed.
Connection& connected(int unit, std::string_view operation);

/// Hands everything that is pending to the host. False on a fault: what could not be written is gone, so that
/// it is told once and not tried again on the way out.
bool hand_over(Connection& connection, std::error_code& reason);
/// The same where a fault ends the program; one of standard output is told and passed over.
void hand_over_or_tell(Connection& connection);
/// The same for all units but the standard ones.
void hand_over_files();

/// Ends a record whose text was written without an end.
void end_open_record(Connection& connection);

/// Writes out what is pending and goes over to reading, at the place where the writing ended.
void end_writing(Connection& connection);

}  // namespace runtime
