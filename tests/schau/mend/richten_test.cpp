// The command richten as a program: what it writes, and what it leaves alone.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/schau/folder_state.h"
#include "tests/schau/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Richten : public testing::Test {
 protected:
  // The example with a decimal comma.
  Richten() {
    for (const char* const name : {"rausel.sys", "rausel.nfl", "rausel.kfl", "rausel.trs", "rausel.ver"})
      fs::copy_file(fs::path(KV_EXAMPLES_DIR) / name, folder_.file(name));
    good_ = test_files::read_bytes(folder_.file("rausel.nfl"));
    bad_ = good_;
    bad_.replace(bad_.find("12.40"), 5, "12,40");
    test_files::write_bytes(folder_.file("rausel.nfl"), bad_);
  }

  child::Outcome run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "richten");
    return program::run(arguments, folder_.path());
  }

  [[nodiscard]] std::string bytes(const std::string& name) const {
    return test_files::read_bytes(folder_.file(name));
  }

  test_files::TemporaryFolder folder_;
  std::string good_;
  std::string bad_;
};

TEST_F(Richten, ShowsFirstAndWritesNothing) {
  const folder_state::State before = folder_state::of(folder_.path());
  const child::Outcome outcome = run({"rausel"});
  EXPECT_EQ(outcome.exit_status, 1);
  EXPECT_THAT(outcome.out, HasSubstr("-   N0010  12,40 0.00\n+   N0010  12.40 0.00\n"));
  EXPECT_EQ(folder_state::of(folder_.path()), before);
}

TEST_F(Richten, WritesWhenAskedAndKeepsTheOldFile) {
  const folder_state::State before = folder_state::of(folder_.path());
  const child::Outcome outcome = run({"rausel.sys", "--schreiben"});
  EXPECT_EQ(outcome.exit_status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("geschrieben: rausel.nfl~, rausel.nfl\n"));
  EXPECT_EQ(bytes("rausel.nfl"), good_);
  EXPECT_EQ(bytes("rausel.nfl~"), bad_);
  EXPECT_THAT(folder_state::changes(before, folder_state::of(folder_.path())),
              ElementsAre("rausel.nfl", "rausel.nfl~"));
  const child::Outcome again = run({"rausel", "--schreiben"});
  EXPECT_EQ(again.out, "rausel: nichts zu richten\n");
  EXPECT_EQ(again.exit_status, 0);
}

TEST_F(Richten, KeepsAnOlderCopyOfSomethingElse) {
  test_files::write_bytes(folder_.file("rausel.nfl~"), "die einzige Fassung von 2019\n");
  const folder_state::State before = folder_state::of(folder_.path());
  const child::Outcome refused = run({"rausel", "--schreiben"});
  EXPECT_EQ(refused.exit_status, 3);
  EXPECT_THAT(refused.err, HasSubstr("rausel.nfl~ gibt es schon, mit anderem Inhalt"));
  EXPECT_EQ(folder_state::of(folder_.path()), before);
  EXPECT_EQ(run({"rausel", "--schreiben", "--sicherung-ersetzen"}).exit_status, 0);
  EXPECT_EQ(bytes("rausel.nfl~"), bad_);
}

TEST_F(Richten, KeepsAnOlderCopyThatCannotBeRead) {
  fs::create_directory(folder_.file("rausel.nfl~"));
  const folder_state::State before = folder_state::of(folder_.path());
  const child::Outcome refused = run({"rausel", "--schreiben"});
  EXPECT_EQ(refused.exit_status, 3);
  EXPECT_THAT(refused.err, HasSubstr("rausel.nfl~ gibt es schon, mit anderem Inhalt"));
  EXPECT_EQ(folder_state::of(folder_.path()), before);
}

TEST_F(Richten, TakesACopyOfTheSameForItsOwn) {
  test_files::write_bytes(folder_.file("rausel.nfl~"), bad_);
  EXPECT_EQ(run({"rausel", "--schreiben"}).exit_status, 0);
  EXPECT_EQ(bytes("rausel.nfl"), good_);
}

TEST_F(Richten, WritesAllFilesOrNone) {
  std::string shares = bytes("rausel.ver");
  shares.replace(shares.find("65.0"), 4, "65,0");
  test_files::write_bytes(folder_.file("rausel.ver"), shares);
  fs::create_directory(folder_.file("rausel.ver~"));
  const folder_state::State before = folder_state::of(folder_.path());
  EXPECT_EQ(run({"rausel", "--schreiben", "--sicherung-ersetzen"}).exit_status, 3);
  EXPECT_EQ(folder_state::of(folder_.path()), before);
}

TEST_F(Richten, ChangesNothingInAGoodVariant) {
  test_files::write_bytes(folder_.file("rausel.nfl"), good_);
  const child::Outcome outcome = run({"rausel"});
  EXPECT_EQ(outcome.out, "rausel: nichts zu richten\n");
  EXPECT_EQ(outcome.exit_status, 0);
}

TEST_F(Richten, TellsWhatItLeaves) {
  std::string areas = bytes("rausel.nfl");
  areas.replace(areas.find("12,40"), 5, "1,234");
  test_files::write_bytes(folder_.file("rausel.nfl"), areas);
  EXPECT_THAT(run({"rausel"}).out, HasSubstr("rausel.nfl:5: Hinweis: \"1,234\" bleibt: "));
}

// Two records of one reach: the order of the elements decides which one is read.
TEST_F(Richten, TellsAnOrderThatItLeaves) {
  const auto element = [](const std::string& name, const std::string& inflows, const std::string& outflow) {
    std::string line(35, ' ');
    line += name + "   " + inflows;
    line.resize(63, ' ');
    return line + outflow + "\n";
  };
  const auto reach = [](const std::string& name, const std::string& from, const std::string& to) {
    std::string line = "   " + name + "     " + from;
    line.resize(56, ' ');
    return line + "Profil\n             " + to + "\n";
  };
  test_files::write_bytes(folder_.file("netz.sys"),
                          element("T0001", "", "T0003") + element("T0003", "T0001 T0002", "T0004") +
                              element("T0002", "", "T0003") + element("T0004", "T0003", "ENDE"));
  test_files::write_bytes(folder_.file("netz.trs"),
                          reach("T0001", "9.000", "8.000") + reach("T0002", "8.500", "8.000") +
                              reach("T0003", "8.000", "7.000") + reach("T0002", "8.900", "8.200") +
                              reach("T0004", "7.000", "6.000"));
  EXPECT_THAT(run({"netz"}).out,
              HasSubstr("netz.sys: Hinweis: Die Reihenfolge bleibt: mit einer anderen läse "
                        "KV_Akum andere Werte aus den Datendateien\n"));
}

TEST_F(Richten, TellsAFileThatCannotBeRead) {
  fs::remove(folder_.file("rausel.trs"));
  fs::create_directory(folder_.file("rausel.trs"));
  const child::Outcome outcome = run({"rausel"});
  EXPECT_THAT(outcome.err, HasSubstr("rausel.trs ist nicht lesbar"));
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_EQ(run({"nichts"}).exit_status, 3);
  EXPECT_EQ(run({"rausel", "--sicherung-ersetzen"}).exit_status, 64);
}

}  // namespace
