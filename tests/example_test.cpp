// Runs the program on the example that the reader of the documentation sees.

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/notices.h"
#include "tests/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using test_files::read_bytes;

TEST(Example, LeavesTheDocumentedResult) {
  const fs::path examples = KV_EXAMPLES_DIR;
  const test_files::TemporaryFolder folder;
  test_files::copy_variant("rausel", examples, folder.path());
  const child::Outcome run = program::run({.arguments = {"rausel"}, .folder = folder.path()});
  EXPECT_EQ(run.ending, "exit status 0");
  EXPECT_EQ(run.out, notices::closing("rausel"));
  EXPECT_EQ(run.err, "");
  for (const fs::directory_entry& expected : fs::directory_iterator(examples / "expected")) {
    const fs::path name = expected.path().filename();
    EXPECT_EQ(read_bytes(folder.path() / name), read_bytes(expected.path())) << name;
  }
  // Without a finding there is no protocol.
  EXPECT_EQ(fs::exists(folder.path() / "rausel.pkl"), fs::exists(examples / "expected" / "rausel.pkl"));
  EXPECT_TRUE(fs::exists(folder.path() / "rausel.Akum"));
}

}  // namespace
