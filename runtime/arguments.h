#pragma once

#include <string_view>

namespace runtime {

/// Keeps the command arguments of the process; `values[0]`, the program's own name, does not count.
void set_arguments(int count, const char* const* values);

/// The number of command arguments.
int argument_count();

/// Command argument `i` = 1 .. `argument_count()`, byte for byte; empty outside this range.
std::string_view argument(int i);

}  // namespace runtime
