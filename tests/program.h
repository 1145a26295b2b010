#pragma once

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/child.h"

// The program, started as a user starts it. The test's CMake target uses `tests_program`.

namespace program {

struct Start {
  std::vector<std::string> arguments;
  std::filesystem::path folder;            ///< the working folder
  std::function<void()> preparation = {};  ///< done in the process of the program before it begins
};

/// Exit status of a process that could not become the program.
inline constexpr int cannot_start = 126;

/// Runs the program to its end.
inline child::Outcome run(const Start& start) {
  std::vector<std::string> words = start.arguments;
  words.insert(words.begin(), KV_AKUM_PROGRAM);
  std::vector<char*> pointers(words.size() + 1, nullptr);
  std::ranges::transform(words, pointers.begin(), [](std::string& word) { return word.data(); });
  return child::run([&] {
    if (chdir(start.folder.c_str()) != 0) _exit(cannot_start);
    if (start.preparation) start.preparation();
    execv(pointers.front(), pointers.data());
    _exit(cannot_start);
  });
}

}  // namespace program
