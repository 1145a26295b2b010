#pragma once

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>

namespace schau::run {

/// The bytes of a regular file, at most so many from its beginning. Throws FileFault when they cannot be had.
std::string read_file(const std::filesystem::path& file,
                      std::uintmax_t most = std::numeric_limits<std::uintmax_t>::max());

}  // namespace schau::run
