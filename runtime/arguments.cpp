#include "runtime/arguments.h"

#include <algorithm>
#include <span>

namespace runtime {
namespace {

std::span<const char* const> arguments;

}  // namespace

void set_arguments(int count, const char* const* values) {
  // A process can be started with no name of its own either.
  arguments = std::span(values, static_cast<std::size_t>(std::max(count, 0)));
  if (!arguments.empty()) arguments = arguments.subspan(1);
}

int argument_count() {
  return static_cast<int>(arguments.size());
}

std::string_view argument(int i) {
  if (i < 1 || i > argument_count()) return {};
  return arguments[static_cast<std::size_t>(i) - 1];
}

}  // namespace runtime
