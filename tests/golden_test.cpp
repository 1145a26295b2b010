// Runs the program on every variant of the folder of golden variants and holds all that it leaves behind
// against the expected bytes. When a change of the bytes is intended, `kv_accept` shows it and takes it over.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "tests/golden.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> golden_cases() {
  std::vector<std::string> cases;
  std::error_code missing;
  for (const fs::directory_entry& entry : fs::directory_iterator(KV_VARIANTS_DIR, missing)) {
    if (entry.is_directory()) cases.push_back(entry.path().filename().string());
  }
  std::ranges::sort(cases);
  return cases;
}

class GoldenVariant : public testing::TestWithParam<std::string> {};

TEST_P(GoldenVariant, LeavesTheExpectedBytes) {
  const fs::path variant = fs::path(KV_VARIANTS_DIR) / GetParam();
  const std::string shows = test_files::read_bytes(variant / "shows.txt");
  SCOPED_TRACE(shows);
  ASSERT_EQ(golden::lines_of(shows).size(), 1U) << "shows.txt holds one line";
  ASSERT_TRUE(fs::exists(variant / "out" / "stdout"));
  const golden::Traces found = golden::run(variant);
  const std::string differences = golden::differences(golden::expected(variant, found), found);
  EXPECT_TRUE(differences.empty()) << differences;
}

INSTANTIATE_TEST_SUITE_P(Variants, GoldenVariant, testing::ValuesIn(golden_cases()),
                         [](const testing::TestParamInfo<std::string>& golden) { return golden.param; });

TEST(GoldenVariants, AreThere) {
  EXPECT_FALSE(golden_cases().empty());
}

}  // namespace
