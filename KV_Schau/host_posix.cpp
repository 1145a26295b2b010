#include <unistd.h>

#include "KV_Schau/host.h"

namespace schau::host {

bool is_terminal(std::FILE* stream) {
  return isatty(fileno(stream)) == 1;
}

void prepare_streams() {}

std::vector<std::string> arguments(int count, char** values) {
  return count > 0 ? std::vector<std::string>(values + 1, values + count) : std::vector<std::string>();
}

}  // namespace schau::host
