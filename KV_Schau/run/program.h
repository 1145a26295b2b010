#pragma once

#include <filesystem>
#include <optional>

namespace schau::run {

/// The program KV_Akum: beside KV_Schau's own executable, else in the folders of PATH. Nothing when it is in
/// neither.
std::optional<std::filesystem::path> find_program();

}  // namespace schau::run
