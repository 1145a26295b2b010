// Holds what the commands show of the example and of golden variants against expected texts.
//
// The inputs of a case are those in inputs/<case>/, or those of the golden variant of that name.
// expected/<case>/ holds one file a call: its first line is the call, the rest its standard output, and where
// there is one, a line "== Fehlerausgabe" with standard error behind it; the last line tells the exit status.
// With KV_ACCEPT=1 in the environment the files are written anew, to be read before they are kept.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/schau/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using test_files::read_bytes;

const fs::path expected_folder = KV_EXPECTED_DIR;

struct GoldenOutput {
  fs::path file;
};

void PrintTo(const GoldenOutput& golden, std::ostream* out) {
  *out << golden.file.lexically_relative(expected_folder).string();
}

std::vector<GoldenOutput> golden_outputs() {
  std::vector<GoldenOutput> outputs;
  for (const auto& entry : fs::recursive_directory_iterator(expected_folder)) {
    const bool is_hidden = entry.path().filename().string().starts_with(".");
    if (entry.is_regular_file() && !is_hidden) outputs.push_back({entry.path()});
  }
  std::ranges::sort(outputs, {}, &GoldenOutput::file);
  return outputs;
}

fs::path inputs_of(const std::string& variant) {
  if (variant == "rausel") return KV_EXAMPLES_DIR;
  if (fs::exists(fs::path(KV_INPUTS_DIR) / variant)) return fs::path(KV_INPUTS_DIR) / variant;
  return fs::path(KV_VARIANTS_DIR) / variant / "in";
}

std::vector<std::string> words_of(const std::string& line) {
  std::istringstream text(line);
  std::vector<std::string> words;
  for (std::string word; text >> word;) words.push_back(word);
  return words;
}

// The files get one time, and a result that is there from before a later one.
void copy_inputs(const fs::path& from, const fs::path& to) {
  fs::create_directory(to);
  const auto time = fs::file_time_type::clock::now() - std::chrono::hours(1);
  for (const auto& entry : fs::directory_iterator(from)) {
    if (!entry.is_regular_file()) continue;
    fs::copy(entry.path(), to);
    const bool is_result = entry.path().extension() == ".Akum";
    fs::last_write_time(to / entry.path().filename(), time + std::chrono::minutes(is_result ? 1 : 0));
  }
}

class ShownOutput : public testing::TestWithParam<GoldenOutput> {};

TEST_P(ShownOutput, IsTheExpectedOne) {
  const fs::path& file = GetParam().file;
  const std::string expected = read_bytes(file);
  const std::string call = expected.substr(0, expected.find('\n'));
  const test_files::TemporaryFolder temporary;
  const fs::path folder = temporary.path() / "in";
  copy_inputs(inputs_of(file.parent_path().filename().string()), folder);

  // A table is that of a run.
  const std::vector<std::string> words = words_of(call);
  if (words.front() == "tabelle") program::run({"rechnen", "--quiet", words.at(1)}, folder);
  const child::Outcome outcome = program::run(words, folder);
  std::string shown = call + "\n" + outcome.out;
  if (!outcome.err.empty()) shown += "== Fehlerausgabe\n" + outcome.err;
  shown += "Exit-Status " + std::to_string(outcome.exit_status) + "\n";
  if (std::getenv("KV_ACCEPT") != nullptr) test_files::write_bytes(file, shown);
  EXPECT_EQ(shown, expected);
}

INSTANTIATE_TEST_SUITE_P(Commands, ShownOutput, testing::ValuesIn(golden_outputs()), [](const auto& golden) {
  std::string name =
      golden.param.file.parent_path().filename().string() + "_" + golden.param.file.filename().string();
  std::ranges::replace_if(
      name, [](unsigned char letter) { return std::isalnum(letter) == 0; }, '_');
  return name;
});

TEST(ShownOutputs, AreThere) {
  EXPECT_GE(golden_outputs().size(), 20U);
}

}  // namespace
