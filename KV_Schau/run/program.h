#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace schau::run {

/// The program KV_Akum: beside KV_Schau's own executable, else in the folders of PATH. Nothing when it is in
/// neither.
std::optional<std::filesystem::path> find_program();

/// A program in the folders of PATH. Nothing when it is in none.
std::optional<std::filesystem::path> find_in_path(const std::string& name);

}  // namespace schau::run
