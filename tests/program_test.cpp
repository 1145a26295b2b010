// Runs of the program on variants that cannot stand among the golden ones: too large, or with names that not
// every file system holds.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/chain.h"
#include "tests/notices.h"
#include "tests/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using test_files::read_bytes;
using test_files::write_bytes;

class Program : public testing::Test {
 protected:
  void expect_result(const std::string& variant) const {
    const child::Outcome run = program::run({.arguments = {variant}, .folder = folder_.path()});
    EXPECT_EQ(run.ending, "exit status 0");
    EXPECT_EQ(run.out, notices::closing(variant));
    EXPECT_EQ(run.err, "");
  }
  [[nodiscard]] std::string file(std::string_view name) const { return folder_.file(name); }
  [[nodiscard]] fs::path folder() const { return folder_.path(); }

 private:
  test_files::TemporaryFolder folder_;
};

// A position in its four columns.
std::string position(int value) {
  const std::string digits = std::to_string(value);
  return digits.size() > 4 ? "****" : std::string(4 - digits.size(), ' ') + digits;
}

// The lines of a link: the area stands before its reach.
std::vector<std::string> listed_link(int link, int links) {
  const int area = 2 * link - 1;
  const int reach = 2 * link;
  const std::string none(6, ' ');
  const std::string above = link > 1 ? chain::name('T', link - 1) + " " : none;
  const std::string below = link < links ? chain::name('T', link + 1) : "ENDE ";
  return {chain::name('N', link) + none + none + none + " " + chain::name('T', link) + " " + none +
              position(area) + position(0) + position(0) + position(0) + position(reach) + position(0),
          chain::name('T', link) + " " + chain::name('N', link) + " " + above + none + below + " " + none +
              position(reach) + position(area) + position(link > 1 ? reach - 2 : 0) + position(0) +
              position(link < links ? reach + 2 : 0) + position(0)};
}

TEST_F(Program, ListsPositionsOfFiveDigitsAsAsterisks) {
  constexpr int links = 5001;
  ASSERT_EQ(listed_link(5000, links).back(), "T5000 N5000 T4999       T5001       ****99999998   0****   0");
  chain::write(file("large"), links);
  expect_result("large");
  std::ifstream listing(file("code.pkl"));
  std::string line;
  std::getline(listing, line);
  EXPECT_EQ(line, "code.pkl");
  for (int link = 1; link <= links; ++link) {
    for (const std::string& expected : listed_link(link, links)) {
      ASSERT_TRUE(std::getline(listing, line));
      ASSERT_EQ(line, expected);
    }
  }
  EXPECT_FALSE(std::getline(listing, line));
}

// The backslash belongs to the names of these files; the folder beside them is another variant's.
TEST_F(Program, WritesBesideAVariantWhoseNameHoldsABackslash) {
  fs::create_directory(folder() / "data");
  chain::write(file("data\\var1"), 2);
  write_bytes(file("data\\var1.nfl"), "   N0001    10.\n   N0002    10.\n   N0002    10.\n");
  const child::Outcome run = program::run({.arguments = {"data\\var1"}, .folder = folder()});
  EXPECT_EQ(run.out, notices::closing("data\\var1"));
  EXPECT_THAT(read_bytes(file("data\\var1.pkl")), testing::HasSubstr("\nA14 "));
  EXPECT_TRUE(fs::is_empty(folder() / "data"));
  fs::remove(file("data\\var1.pkl"));

  chain::write(file("data\\var1"), 2);
  expect_result("data\\var1");
  EXPECT_TRUE(fs::exists(file("data\\var1.Akum")));
  EXPECT_TRUE(fs::is_empty(folder() / "data"));
}

}  // namespace
