#pragma once

#include <cstddef>
#include <string_view>
#include <system_error>

namespace runtime {

/// Ends the program quietly: every open file is completed, nothing is written, exit status 0.
[[noreturn]] void stop();

/// The same with a text: the word STOP, a blank, the text and a line end go to standard error. Exit status 0.
[[noreturn]] void stop(std::string_view text);

/// Ends the program after an I/O error nobody asked for: one line on standard error names the operation, the
/// path and the system's reason; the other files are completed. Exit status 0.
[[noreturn]] void stop_on_io_error(std::string_view operation, std::string_view path,
                                   const std::error_code& reason);

/// The same after the use of a unit that is connected to nothing.
[[noreturn]] void stop_on_free_unit(std::string_view operation, int unit);

/// Ends the program because a table cannot be allocated: the source file, the line and the number of bytes
/// go to standard error. Exit status 0.
[[noreturn]] void stop_on_allocation(std::string_view source_file, int line, std::size_t bytes);

/// Writes a line to standard error, for what the run has lost but can do without.
void tell(std::string_view text);

/// The line of `stop_on_io_error`, without ending the program.
void report_io_error(std::string_view operation, std::string_view path, const std::error_code& reason);

}  // namespace runtime
