#include "runtime/command.h"

#include <string>

#include "runtime/host.h"

namespace runtime {

void execute_command(std::string_view command_line) {
  host().run_command(std::string(command_line));
}

}  // namespace runtime
