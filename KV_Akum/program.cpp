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
  for (const std::string_view text :
       {"STOP KV_Akum: Arbeitsspeicher reicht nicht aus", runtime::host().line_end()}) {
    std::error_code ignored;
    runtime::host().write(runtime::standard_error_handle, text.data(), text.size(), ignored);
  }
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace

void RunProgram(int argument_count, const char* const* arguments) {
  std::set_terminate(end_without_memory);
  runtime::prepare_process();
  try {
    const auto given = runtime::path_arguments(argument_count, arguments);
    runtime::set_arguments(static_cast<int>(given.size()), given.data());
    ProgramDriver();
  } catch (const std::bad_alloc&) {
    runtime::stop("KV_Akum: Arbeitsspeicher reicht nicht aus");
  }
  runtime::stop();
}

}  // namespace KV_Akum
