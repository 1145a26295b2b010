// Every golden variant of KV_Akum, run by KV_Schau: the files that a run is worth are those of a plain run,
// and a run that failed leaves the folder as it was.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "KV_Schau/run/run.h"
#include "tests/schau/folder_state.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using folder_state::changes;
using folder_state::State;
using schau::run::Outcome;
using schau::run::Worth;
using test_files::read_bytes;
using testing::IsEmpty;

struct GoldenCase {
  fs::path folder;
  std::string argument;
};

void PrintTo(const GoldenCase& golden, std::ostream* out) {
  *out << golden.folder.filename().string();
}

std::string bytes_if_there(const fs::path& path) {
  return fs::exists(path) ? read_bytes(path) : std::string();
}

std::vector<std::string> lines_of(const std::string& bytes) {
  std::vector<std::string> lines;
  std::istringstream text(bytes);
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

// The cases that KV_Schau takes: one argument that names a variant in the working folder. What KV_Akum does
// with other arguments is its own affair.
std::vector<GoldenCase> golden_cases() {
  std::vector<GoldenCase> cases;
  for (const auto& entry : fs::directory_iterator(KV_VARIANTS_DIR)) {
    const std::vector<std::string> arguments = lines_of(bytes_if_there(entry.path() / "command.txt"));
    if (arguments.size() != 1) continue;
    const std::string& name = arguments.front();
    const auto resolved = schau::variant::resolve((entry.path() / "in" / name).string());
    const auto* const path = std::get_if<schau::variant::VariantPath>(&resolved);
    if (path != nullptr && path->name == name && fs::is_regular_file(entry.path() / "in" / (name + ".sys"))) {
      cases.push_back({entry.path(), name});
    }
  }
  std::ranges::sort(cases, {}, &GoldenCase::folder);
  return cases;
}

// What a plain run leaves.
State expected_state(const GoldenCase& golden, State state) {
  for (const std::string& name : lines_of(bytes_if_there(golden.folder / "out" / "removed.txt")))
    state.erase(name);
  if (!fs::exists(golden.folder / "out" / "files")) return state;
  for (const auto& [name, bytes] : folder_state::of(golden.folder / "out" / "files")) state[name] = bytes;
  return state;
}

Worth expected_worth(const GoldenCase& golden) {
  const fs::path out = golden.folder / "out";
  const std::string shown = read_bytes(out / "stdout");
  const bool told = !bytes_if_there(out / "stderr").empty() || fs::exists(out / "stderr.any");
  if (told || shown.find("existiert nicht.") != std::string::npos) return Worth::failed;
  if (!fs::exists(out / "files" / (golden.argument + ".Akum"))) return Worth::refused;
  const bool protocol = fs::exists(out / "files" / (golden.argument + ".pkl"));
  // The variant of the listing's name has its listing there.
  return protocol && golden.argument != "code" ? Worth::with_messages : Worth::clean;
}

class GoldenRun : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenRun, LeavesTheFilesOfAPlainRunOrNone) {
  const test_files::TemporaryFolder temporary;
  const fs::path folder = temporary.path() / "in";
  fs::copy(GetParam().folder / "in", folder, fs::copy_options::recursive);
  const State before = folder_state::of(folder);
  const auto path = schau::variant::resolve((folder / GetParam().argument).string());
  const Outcome outcome =
      schau::run::run_variant(schau::variant::read_variant(std::get<schau::variant::VariantPath>(path)),
                              {.program = KV_AKUM_PROGRAM}, [](const schau::run::Notice&, bool) {});
  const Worth worth = expected_worth(GetParam());
  EXPECT_EQ(outcome.verdict.worth, worth) << outcome.verdict.reason;
  const State wanted = worth == Worth::failed ? before : expected_state(GetParam(), before);
  EXPECT_THAT(changes(wanted, folder_state::of(folder)), IsEmpty()) << outcome.verdict.reason;
  if (outcome.run.protocol) {
    for (const auto& message : outcome.run.protocol->messages) {
      EXPECT_NE(message.kind, schau::run::Message::Kind::unknown) << message.text;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Variants, GoldenRun, testing::ValuesIn(golden_cases()),
                         [](const auto& golden) { return golden.param.folder.filename().string(); });

TEST(GoldenRuns, AreMostOfAllVariants) {
  EXPECT_GT(golden_cases().size(), 150U);
}

}  // namespace
