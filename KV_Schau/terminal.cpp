// The only file of this folder that knows the host.

#include "KV_Schau/terminal.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace schau {
namespace {

bool output_is_terminal() {
#ifdef _WIN32
  return _isatty(_fileno(stdout)) != 0;
#else
  return isatty(STDOUT_FILENO) == 1;
#endif
}

bool set(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

bool error_is_terminal() {
#ifdef _WIN32
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(STDERR_FILENO) == 1;
#endif
}

void write_progress(std::string_view text) {
  const std::string line = "\r\x1B[K" + std::string(text);
  std::fflush(stdout);
  std::fwrite(line.data(), 1, line.size(), stderr);
}

bool use_colours() {
  return output_is_terminal() && !set("NO_COLOR");
}

void prepare_streams() {
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
#endif
}

bool write_out(std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
}

bool finish_output() {
  const bool flushed = std::fflush(stdout) == 0;
  return flushed && std::ferror(stdout) == 0;
}

void write_error(std::string_view line) {
  const std::string text = std::string(line) + "\n";
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace schau
