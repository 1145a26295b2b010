#pragma once

#include <string>
#include <string_view>

#include "runtime/host.h"

namespace runtime {

/// The facts of what stands under a path of the host; links are followed. Kind `none` when nothing can be
/// found there; a host that cannot tell is an I/O error, for what is taken for absent would be lost.
FileFacts facts_at(const std::string& path);

/// The host's path of a file that a text of the suite names. The suite separates folders with the
/// backslash; a text is first tried as it stands and, when nothing stands there and the host separates
/// otherwise, with its backslashes as separators. Trailing blanks do not count. The text as it stands when
/// neither exists.
std::string path_of_existing(std::string_view text);

/// The host's path of a file that may have to be created: an existing one as above, otherwise beside the
/// variant (see `keep_beside`), otherwise with the backslashes as separators when that folder exists.
std::string path_for_output(std::string_view text);

/// From now on files that are named with the same folder part as `text` (the path of a variant's file) are
/// created beside it. A text without a folder part changes nothing.
void keep_beside(std::string_view text);

/// Forgets `keep_beside`. For tests.
void reset_paths();

}  // namespace runtime
