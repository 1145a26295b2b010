#pragma once

#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/child.h"

/// The program KV_Schau, run in a folder.
namespace program {

/// What is done in its process before it begins.
using Preparation = std::function<void()>;

/// Becomes the program. Never returns.
inline void become(const std::vector<std::string>& arguments, const std::filesystem::path& folder) {
  std::string program = KV_SCHAU_PROGRAM;
  std::vector<std::string> words = arguments;
  std::vector<char*> argv{program.data()};
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  if (chdir(folder.c_str()) == 0) execv(program.c_str(), argv.data());
  _exit(127);
}

inline child::Outcome run(
    const std::vector<std::string>& arguments, const std::filesystem::path& folder,
    const Preparation& prepare = [] {}) {
  return child::run([&] {
    prepare();
    become(arguments, folder);
  });
}

}  // namespace program
