#pragma once

#include <string_view>

namespace runtime {

/// Runs a command line in the host's command interpreter and waits for it. Its exit status is not examined:
/// a failing command shows only as a missing or empty result file. It gets no input, so it cannot wait for
/// one.
void execute_command(std::string_view command_line);

}  // namespace runtime
