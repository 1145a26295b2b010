#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>
#include <system_error>

#include "KV_Akum/KV_Akum.h"
#include "runtime/arguments.h"
#include "runtime/host.h"
#include "runtime/stop.h"

namespace KV_Akum {
namespace {

// Where there is no memory even for an exception, the language ends the program here.
[[noreturn]] void end_without_memory() {
  constexpr std::string_view line = "STOP KV_Akum: Arbeitsspeicher reicht nicht aus\n";
  std::error_code ignored;
  runtime::host().write(runtime::standard_error_handle, line.data(), line.size(), ignored);
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace

void RunProgram(int argument_count, const char* const* arguments) {
  std::set_terminate(end_without_memory);
  runtime::prepare_process();
  runtime::set_arguments(argument_count, arguments);
  try {
    ProgramDriver();
  } catch (const std::bad_alloc&) {
    runtime::stop("KV_Akum: Arbeitsspeicher reicht nicht aus");
  }
  runtime::stop();
}

}  // namespace KV_Akum
