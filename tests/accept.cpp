// kv_accept [--yes] CASE...
//
// For a change of the program that changes its bytes on purpose, and for a new case. CASE is the folder of a
// golden variant. Runs the program on it and shows every line in which what it leaves behind differs from
// what the case expects. Read it, and work out whether it is what it must be: only then is it taken over,
// after a "y" on the terminal or, without one, with --yes.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/golden.h"

namespace {

namespace fs = std::filesystem;

bool consents(bool yes) {
  if (yes) return true;
  if (isatty(STDIN_FILENO) == 0) {
    std::puts("Nothing was written. --yes takes this over.");
    return false;
  }
  std::fputs("Take this over (y/n)? ", stdout);
  std::fflush(stdout);
  std::string answer;
  return std::getline(std::cin, answer) && answer == "y";
}

// Whether the case expects, at the end, what the program leaves behind.
bool settle(const fs::path& variant, bool yes) {
  const golden::Traces found = golden::run(variant);
  const golden::Traces expected = golden::expected(variant, found);
  if (golden::differences(expected, found).empty()) {
    std::printf("%s: no difference\n", variant.c_str());
    return true;
  }
  std::printf("%s:\n%s", variant.c_str(), golden::whole_differences(expected, found).c_str());
  if (found.outcome.exit_status != EXIT_SUCCESS) {
    std::printf("Nothing was written: %s.\n", found.outcome.ending.c_str());
    return false;
  }
  if (!consents(yes)) return false;
  golden::accept(variant, found);
  return true;
}

bool settle_all(std::span<char* const> arguments) {
  bool yes = false;
  std::vector<fs::path> cases;
  for (const std::string_view argument : arguments) {
    if (argument == "--yes") {
      yes = true;
    } else {
      cases.emplace_back(argument);
    }
  }
  if (cases.empty()) std::puts("kv_accept [--yes] CASE...");
  bool settled = !cases.empty();
  for (const fs::path& variant : cases) settled = settle(variant, yes) && settled;
  return settled;
}

}  // namespace

int main(int argument_count, char** arguments) {
  try {
    const std::span<char* const> words(arguments, static_cast<std::size_t>(argument_count));
    return settle_all(words.subspan(1)) ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "%s\n", fault.what());
    return EXIT_FAILURE;
  }
}
