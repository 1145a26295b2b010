#pragma once

#include <string_view>

namespace schau {

/// True when standard output is a terminal and the user has not asked for plain text (environment variable
/// NO_COLOR, see no-color.org).
bool use_colours();

/// Writes to standard output. False when not all could be written; what comes later is lost too.
bool write_out(std::string_view text);
/// Writes out what is still held back. False when that, or an earlier write, failed.
bool finish_output();

/// Writes a line to standard error.
void write_error(std::string_view line);

bool error_is_terminal();
/// Puts a text in place of the last such text, in one line of the terminal at standard error.
void write_progress(std::string_view text);

}  // namespace schau
