#include "runtime/stop.h"

#include <cstdlib>
#include <string>

#include "runtime/host.h"
#include "runtime/units.h"

namespace runtime {

void tell(std::string_view text) {
  std::string line(text);
  line += host().line_end();
  std::size_t written = 0;
  std::error_code reason;
  while (written < line.size()) {
    const std::ptrdiff_t put =
        host().write(standard_error_handle, line.data() + written, line.size() - written, reason);
    if (put <= 0) return;
    written += static_cast<std::size_t>(put);
  }
}

void stop() {
  close_all();
  std::exit(EXIT_SUCCESS);
}

void stop(std::string_view text) {
  tell("STOP " + std::string(text));
  stop();
}

void report_io_error(std::string_view operation, std::string_view path, const std::error_code& reason) {
  std::string line = "E/A-Fehler beim ";
  line.append(operation).append(" von \"").append(path).append("\": ").append(reason.message());
  tell(line);
}

void stop_on_io_error(std::string_view operation, std::string_view path, const std::error_code& reason) {
  report_io_error(operation, path, reason);
  stop();
}

void stop_on_free_unit(std::string_view operation, int unit) {
  stop_on_io_error(operation, "Einheit " + std::to_string(unit),
                   std::make_error_code(std::errc::bad_file_descriptor));
}

void stop_on_allocation(std::string_view source_file, int line, std::size_t bytes) {
  source_file.remove_prefix(source_file.find_last_of("/\\") + 1);
  std::string text = "In file '";
  text.append(source_file).append("', around line ").append(std::to_string(line));
  text.append(": Error allocating ").append(std::to_string(bytes)).append(" bytes");
  tell(text);
  stop();
}

}  // namespace runtime
