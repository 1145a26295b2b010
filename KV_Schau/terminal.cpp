#include "KV_Schau/terminal.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "KV_Schau/host.h"

namespace schau {
namespace {

bool set(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

bool error_is_terminal() {
  return host::is_terminal(stderr);
}

void write_progress(std::string_view text) {
  std::fflush(stdout);
  host::write(stderr, "\r\x1B[K" + std::string(text));
}

bool use_colours() {
  return host::is_terminal(stdout) && !set("NO_COLOR");
}

bool write_out(std::string_view text) {
  return host::write(stdout, text);
}

bool finish_output() {
  const bool flushed = std::fflush(stdout) == 0;
  return flushed && std::ferror(stdout) == 0;
}

void write_error(std::string_view line) {
  host::write(stderr, std::string(line) + "\n");
}

}  // namespace schau
