// The tool that takes over what a run leaves behind as what a golden variant expects.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

#include "tests/child.h"
#include "tests/golden.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using test_files::read_bytes;
using test_files::write_bytes;
using testing::HasSubstr;

using Bytes = std::map<std::string, std::string>;

Bytes files_of(const fs::path& folder) {
  Bytes files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_directory()) files[entry.path().lexically_relative(folder)] = read_bytes(entry.path());
  }
  return files;
}

class Accept : public testing::Test {
 protected:
  // A copy of a golden variant.
  void take(const std::string& name) {
    original_ = fs::path(KV_VARIANTS_DIR) / name;
    fs::copy(original_, variant(), fs::copy_options::recursive);
  }
  [[nodiscard]] fs::path variant() const { return folder_.path() / "case"; }
  [[nodiscard]] child::Outcome accept(const char* yes = nullptr) const {
    return child::run([&] { execl(KV_ACCEPT, KV_ACCEPT, variant().c_str(), yes, nullptr); });
  }
  void expect_original() const { EXPECT_EQ(files_of(variant()), files_of(original_)); }

 private:
  test_files::TemporaryFolder folder_;
  fs::path original_;
};

TEST_F(Accept, ShowsEveryLineAndWritesNothingWithoutConsent) {
  take("old_protocol_removed");
  const std::string listing = read_bytes(variant() / "out/files/code.pkl");
  write_bytes(variant() / "out/files/code.pkl",
              "Pr\xFC"
              "fung\n" +
                  listing + "behind\n");
  const Bytes before = files_of(variant());
  const child::Outcome outcome = accept();
  EXPECT_EQ(outcome.exit_status, EXIT_FAILURE);
  EXPECT_THAT(outcome.out, HasSubstr("\n-Pr\\xfcfung\n code.pkl\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\n-behind\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\nNothing was written. --yes takes this over.\n"));
  EXPECT_EQ(files_of(variant()), before);
}

TEST_F(Accept, TakesOverWhatTheRunLeaves) {
  take("old_protocol_removed");
  write_bytes(variant() / "out/stdout", "other");
  write_bytes(variant() / "out/stderr", "gone\n");
  write_bytes(variant() / "out/files/stale", "gone\n");
  fs::remove(variant() / "out/files/code.pkl");
  fs::remove(variant() / "out/removed.txt");
  const child::Outcome outcome = accept("--yes");
  EXPECT_EQ(outcome.exit_status, EXIT_SUCCESS);
  EXPECT_THAT(outcome.out, HasSubstr("\n-gone\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\n+code.pkl\n"));
  expect_original();
}

TEST_F(Accept, LeavesTheTextOfStandardErrorFree) {
  take("result_path_is_a_folder");
  write_bytes(variant() / "out/stdout", "gone\n");
  EXPECT_EQ(accept("--yes").exit_status, EXIT_SUCCESS);
  expect_original();
}

TEST_F(Accept, ChangesNothingWithoutADifference) {
  take("all_element_types");
  const child::Outcome outcome = accept("--yes");
  EXPECT_EQ(outcome.exit_status, EXIT_SUCCESS);
  EXPECT_EQ(outcome.out, variant().string() + ": no difference\n");
  expect_original();
}

TEST_F(Accept, TellsAFolderThatIsNoCase) {
  const child::Outcome outcome = accept("--yes");
  EXPECT_EQ(outcome.exit_status, EXIT_FAILURE);
  EXPECT_THAT(outcome.err, HasSubstr("command.txt"));
}

TEST(AcceptedCases, AreTheCasesThatAreThere) {
  for (const fs::directory_entry& original : fs::directory_iterator(KV_VARIANTS_DIR)) {
    SCOPED_TRACE(original.path().filename());
    const test_files::TemporaryFolder folder;
    const fs::path copy = folder.path() / "case";
    fs::copy(original, copy, fs::copy_options::recursive);
    for (const char* part : {"out/stdout", "out/stderr", "out/files", "out/removed.txt"}) {
      fs::remove_all(copy / part);
    }
    golden::accept(copy, golden::run(copy));
    EXPECT_EQ(files_of(copy), files_of(original));
  }
}

}  // namespace
