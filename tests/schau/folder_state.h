#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "tests/test_files.h"

/// What lies in a folder, to hold it against a later state.
namespace folder_state {

/// The bytes of every file by its name in the folder; a folder has "(Ordner)".
using State = std::map<std::string, std::string>;

/// What begins with `left_out` is not looked at.
inline State of(const std::filesystem::path& folder, const std::string& left_out = "/") {
  State state;
  for (auto at = std::filesystem::recursive_directory_iterator(folder); at != end(at); ++at) {
    const std::string name = at->path().lexically_relative(folder).generic_string();
    if (name.starts_with(left_out)) {
      at.disable_recursion_pending();
    } else {
      state[name] = at->is_directory() ? "(Ordner)" : test_files::read_bytes(at->path());
    }
  }
  return state;
}

/// The names of the files that are new, gone or different.
inline std::set<std::string> changes(const State& before, const State& after) {
  std::set<std::string> names;
  for (const auto& [name, bytes] : before) {
    const auto found = after.find(name);
    if (found == after.end() || found->second != bytes) names.insert(name);
  }
  for (const auto& [name, bytes] : after) {
    if (!before.contains(name)) names.insert(name);
  }
  return names;
}

}  // namespace folder_state
