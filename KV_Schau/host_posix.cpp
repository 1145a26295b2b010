#include <unistd.h>

#include "KV_Schau/host.h"

namespace schau::host {

bool is_terminal(std::FILE* stream) {
  return isatty(fileno(stream)) == 1;
}

void prepare_streams() {}

bool write(std::FILE* stream, std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

std::vector<std::string> arguments(int count, char** values) {
  return count > 0 ? std::vector<std::string>(values + 1, values + count) : std::vector<std::string>();
}

}  // namespace schau::host
