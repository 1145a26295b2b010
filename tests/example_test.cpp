// Runs the program on the example that the reader of the documentation sees.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/variant_files.h"

namespace {

namespace fs = std::filesystem;

TEST(Example, LeavesTheDocumentedResult) {
  const fs::path examples = KV_EXAMPLES_DIR;
  const variant_files::WorkingFolder working_folder;
  variant_files::copy_variant(examples, "rausel");
  const variant_files::RunResult run = variant_files::run_variant("rausel");
  EXPECT_EQ(run.output, variant_files::notice("KV_Akum", "Ergebnis: rausel.Akum"));
  EXPECT_EQ(run.error, "");
  for (const fs::directory_entry& expected : fs::directory_iterator(examples / "expected")) {
    const fs::path name = expected.path().filename();
    EXPECT_EQ(variant_files::read_file(name), variant_files::read_file(expected.path())) << name;
  }
  // Without a finding there is no protocol.
  EXPECT_EQ(fs::exists("rausel.pkl"), fs::exists(examples / "expected" / "rausel.pkl"));
  EXPECT_TRUE(fs::exists(examples / "expected" / "rausel.Akum"));
}

}  // namespace
