#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

// Numbered I/O units with records, in the manner of the suite's language (ISO/IEC 1539-1, "Input/output
// statements"): here what a unit is connected to; reading and writing are in read.h and write.h. A unit is a
// number with a connected file. Units 5 and 6 are standard input and output.
//
// A record ends at LF, CR LF or a lone CR, none of them part of it; a last line without an end is a record;
// an empty file has none. On output a line end is the host's own.
//
// An I/O error that the caller does not ask for ends the program: one line on standard error names the
// operation, the path and the system's reason, the files are completed as far as possible, exit status 0.

namespace runtime {

inline constexpr int standard_output_unit = 6;

enum class OpenStatus : std::uint8_t {
  input,    ///< the file must exist and be a file; it is only read, by this unit and by all others
  old,      ///< the file must exist and be a file
  unknown,  ///< what exists is kept until the first write cuts it at the current record; else created
  fresh,    ///< must not exist; created
  /// Written as a new file that takes the place of what exists when it is complete; a run that ends before
  /// leaves what was there. A device, a file with links, and one that can have no successor of the same owner
  /// and rights in its folder are written where they stand.
  whole
};
enum class CloseStatus : std::uint8_t { keep, remove };

/// Connects the file to the unit, which must be free. A file that another unit holds already is an I/O error.
void open(int unit, std::string_view path, OpenStatus status);
/// The same for a caller that asks for the status: false, with nothing connected and the system's reason,
/// when it fails.
bool try_open(int unit, std::string_view path, OpenStatus status, std::error_code& reason);
bool try_open(int unit, std::string_view path, OpenStatus status);

/// From now on the file is never written, cut or removed by this program, under whatever name: trying to is
/// an I/O error before anything is lost. For files that are still to be read; one that does not exist counts
/// for nothing.
void protect(std::string_view path);

/// Keeps other runs of the suite from locking the file until `close_all`; when one holds it, that is an I/O
/// error. A file that does not exist or cannot be locked is no fault.
void lock(std::string_view path);

/// Ends the writing of a file: it is complete, closed and stands under its name. The unit stays connected.
void complete(int unit);
/// Completes the file and frees the unit. A unit that is not connected is left alone.
void close(int unit, CloseStatus status = CloseStatus::keep);
/// The same for a caller that asks for the status: false, with the system's reason, when the file cannot be
/// completed or removed. The unit is free in every case.
bool try_close(int unit, CloseStatus status, std::error_code& reason);
bool try_close(int unit, CloseStatus status);
/// Completes and frees every unit but the standard ones, in their order, on the way out of the program. A
/// file that cannot be completed is told on standard error; the others are completed all the same. A whole
/// file that is not complete by then is given up. What is locked and protected is free again.
void close_all();

bool is_connected(int unit);
/// The host's path of the connected file; none for a free unit, empty for the standard units.
std::optional<std::string> connected_path(int unit);
/// The unit to which the file is connected.
std::optional<int> unit_of(std::string_view path);

/// Whether something stands under that path (nothing is opened).
bool file_exists(std::string_view path);
/// Whether a regular file, no folder and no device, stands where an output of that name goes.
bool is_regular_output(std::string_view path);
/// Whether a folder stands there.
bool is_folder(std::string_view path);

}  // namespace runtime
