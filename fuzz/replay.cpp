// Feeds every file that the command line names, and every file in a folder that it names, to a fuzz target.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <vector>

#include "fuzz/fuzz_bed.h"
#include "tests/exit_guard.h"
#include "tests/test_files.h"
#include "tests/variant_files.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> named_files(int count, char** names) {
  std::vector<fs::path> files;
  for (int i = 1; i < count; ++i) {
    if (!fs::is_directory(names[i])) {
      files.emplace_back(names[i]);
      continue;
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(names[i])) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

bool replay(const std::vector<fs::path>& files) {
  for (const fs::path& file : files) {
    // The last name on the screen is that of the input that ended the process.
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    const std::string bytes = test_files::read_bytes(file);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  std::printf("%zu inputs\n", files.size());
  return !files.empty();
}

}  // namespace

int main(int argument_count, char** arguments) {
  const ExitGuard guard;
  try {
    return replay(named_files(argument_count, arguments)) ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "%s\n", fault.what());
    return EXIT_FAILURE;
  }
}
