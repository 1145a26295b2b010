#include "SCRENIX/SCRENIX.h"
#include "runtime/stop.h"

namespace SCRENIX {

bool get_open_file_name(std::string_view /*title*/, std::span<const FileFilter> /*filters*/,
                        std::span<char> /*chosen_name*/) {
  runtime::stop("SCRENIX get_open_file_name not implemented");
}

}  // namespace SCRENIX
