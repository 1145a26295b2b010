#include "SCRENIX.h"
#include "stop.h"

// Apart from the rest, so that a tool with a file chooser of its own can put it in this place.

namespace SCRENIX {

bool get_open_file_name(std::string_view /*title*/, std::span<const FileFilter> /*filters*/,
                        std::span<char> /*chosen_name*/) {
  runtime::stop("SCRENIX get_open_file_name not implemented");
}

}  // namespace SCRENIX
