#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "runtime/paths.h"
#include "runtime/units.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using test_files::write_bytes;

// Names are relative, as on the command line: the working folder is a fresh one.
class Paths : public testing::Test {
 protected:
  ~Paths() override { runtime::reset_paths(); }

 private:
  test_files::WorkingFolder folder_;
};

TEST_F(Paths, OfAnExistingFileIsFirstTheTextAsItStands) {
  fs::create_directory("data");
  write_bytes("data/var1.sys", "in the folder");
  write_bytes("data\\var1.sys", "as it stands");
  EXPECT_EQ(runtime::path_of_existing("data\\var1.sys"), "data\\var1.sys");
  fs::remove("data\\var1.sys");
  EXPECT_EQ(runtime::path_of_existing("data\\var1.sys"), "data/var1.sys");
  EXPECT_EQ(runtime::path_of_existing("data/var1.sys"), "data/var1.sys");
}

TEST_F(Paths, OfAMissingFileIsTheTextAsItStands) {
  EXPECT_EQ(runtime::path_of_existing("data\\var1.sys"), "data\\var1.sys");
  EXPECT_EQ(runtime::path_of_existing(""), "");
}

TEST_F(Paths, TrailingBlanksDoNotCount) {
  write_bytes("a b", "");
  EXPECT_EQ(runtime::path_of_existing("a b   "), "a b");
  EXPECT_EQ(runtime::path_for_output("new   "), "new");
}

TEST_F(Paths, ForOutputGoIntoTheFolderThatExists) {
  fs::create_directories("data/deep");
  EXPECT_EQ(runtime::path_for_output("data\\deep\\x.pkl"), "data/deep/x.pkl");
  EXPECT_EQ(runtime::path_for_output("nowhere\\x.pkl"), "nowhere\\x.pkl");
  EXPECT_EQ(runtime::path_for_output("x.pkl"), "x.pkl");
}

TEST_F(Paths, ForOutputKeepToWhatExists) {
  fs::create_directory("data");
  write_bytes("data\\x.pkl", "");
  EXPECT_EQ(runtime::path_for_output("data\\x.pkl"), "data\\x.pkl");
  write_bytes("data/x.pkl", "");
  EXPECT_EQ(runtime::path_for_output("data\\x.pkl"), "data\\x.pkl");
}

TEST_F(Paths, OutputsGoBesideTheVariantInItsFolder) {
  fs::create_directory("data");
  write_bytes("data/var1.sys", "");
  // A stray file of the same text in the working folder does not draw the result away from the variant.
  write_bytes("data\\var1.Akum", "");
  runtime::keep_beside("data\\var1.sys");
  EXPECT_EQ(runtime::path_for_output("data\\var1.Akum"), "data/var1.Akum");
  EXPECT_EQ(runtime::path_for_output("code.pkl"), "code.pkl");
}

TEST_F(Paths, AnOldOutputIsLookedForBesideTheVariant) {
  fs::create_directory("data");
  write_bytes("data/var1.sys", "");
  write_bytes("data/var1.pkl", "");
  fs::create_directory("data\\var1.pkl");
  EXPECT_FALSE(runtime::is_regular_output("data\\var1.pkl"));
  runtime::keep_beside("data\\var1.sys");
  EXPECT_TRUE(runtime::is_regular_output("data\\var1.pkl"));
}

TEST_F(Paths, OutputsGoBesideTheVariantWhoseNameHoldsABackslash) {
  fs::create_directory("data");
  write_bytes("data\\var1.sys", "");
  write_bytes("data/var1.Akum", "of another variant");
  runtime::keep_beside("data\\var1.sys");
  EXPECT_EQ(runtime::path_for_output("data\\var1.Akum"), "data\\var1.Akum");
}

TEST_F(Paths, ANameWithoutAFolderChangesNothing) {
  fs::create_directory("data");
  write_bytes("var1.sys", "");
  runtime::keep_beside("var1.sys");
  EXPECT_EQ(runtime::path_for_output("var1.Akum"), "var1.Akum");
  EXPECT_EQ(runtime::path_for_output("data\\var1.Akum"), "data/var1.Akum");
}

TEST_F(Paths, ResetForgetsTheVariant) {
  fs::create_directory("data");
  write_bytes("data/var1.sys", "");
  write_bytes("data\\var1.Akum", "");
  runtime::keep_beside("data\\var1.sys");
  runtime::reset_paths();
  EXPECT_EQ(runtime::path_for_output("data\\var1.Akum"), "data\\var1.Akum");
}

TEST_F(Paths, UnitsFollowThem) {
  fs::create_directory("data");
  write_bytes("data/var1.sys", "x\n");
  EXPECT_TRUE(runtime::file_exists("data\\var1.sys"));
  EXPECT_TRUE(runtime::is_regular_output("data\\var1.sys  "));
  EXPECT_FALSE(runtime::file_exists("data\\var2.sys"));
  EXPECT_TRUE(runtime::file_exists("data"));
  EXPECT_FALSE(runtime::is_regular_output("data"));
  runtime::open(100, "data\\var1.sys", runtime::OpenStatus::old);
  EXPECT_EQ(runtime::connected_path(100), "data/var1.sys");
  EXPECT_EQ(runtime::unit_of("data/var1.sys"), 100);
  EXPECT_EQ(runtime::unit_of("data\\var1.sys"), 100);
  EXPECT_EQ(runtime::unit_of("data\\var2.sys"), std::nullopt);
  runtime::close_all();
}

}  // namespace
