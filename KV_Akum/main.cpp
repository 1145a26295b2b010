#include <new>

#include "KV_Akum.h"
#include "arguments.h"
#include "host.h"
#include "stop.h"

int main(int argument_count, char** arguments) {
  runtime::prepare_process();
  runtime::set_arguments(argument_count, arguments);
  try {
    KV_Akum::ProgramDriver();
  } catch (const std::bad_alloc&) {
    runtime::stop("KV_Akum: Arbeitsspeicher reicht nicht aus");
  }
  runtime::stop();
}
