// The command `tabelle` from outside: which result it gives out, and where it writes it.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>

#include "tests/schau/folder_state.h"
#include "tests/schau/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using folder_state::changes;
using folder_state::State;
using test_files::read_bytes;
using test_files::write_bytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Tabelle : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
      fs::copy(fs::path(KV_EXAMPLES_DIR) / (std::string("rausel") + extension), folder_.path());
    }
    fs::copy(fs::path(KV_EXAMPLES_DIR) / "expected" / "rausel.Akum", folder_.path());
    fs::last_write_time(file("rausel.Akum"), fs::file_time_type::clock::now() + std::chrono::seconds(5));
  }
  child::Outcome run(const std::vector<std::string>& arguments) const {
    return program::run(arguments, folder_.path());
  }
  [[nodiscard]] fs::path file(const std::string& name) const { return folder_.path() / name; }
  [[nodiscard]] State state() const { return folder_state::of(folder_.path()); }

  test_files::TemporaryFolder folder_;
};

TEST_F(Tabelle, WritesTheSameIntoAFileAsOnStandardOutput) {
  for (const char* form : {"--csv", "--json"}) {
    const child::Outcome shown = run({"tabelle", "rausel", form});
    const child::Outcome written = run({"tabelle", "rausel", form, "-o", "aus.txt"});
    EXPECT_EQ(written.exit_status, 0);
    EXPECT_EQ(written.out + written.err, "");
    EXPECT_EQ(read_bytes(file("aus.txt")), shown.out);
  }
  EXPECT_EQ(state().size(), 7U);
}

TEST_F(Tabelle, WritesAsManyRowsAsThereAre) {
  constexpr int times = 1000;
  const auto repeated = [](const std::string& text, std::size_t rows_begin) {
    std::string more = text.substr(0, rows_begin);
    for (int i = 0; i < times; ++i) more += text.substr(rows_begin);
    return more;
  };
  const std::string rows = run({"tabelle", "rausel", "--csv"}).out;
  const std::string result = read_bytes(file("rausel.Akum"));
  write_bytes(file("rausel.Akum"), repeated(result, result.find("T0010")));
  fs::last_write_time(file("rausel.Akum"), fs::file_time_type::clock::now() + std::chrono::seconds(5));
  const child::Outcome outcome = run({"tabelle", "rausel", "--csv"});
  EXPECT_TRUE(outcome.out == repeated(rows, rows.find("T0010"))) << outcome.out.size();
  EXPECT_EQ(outcome.err, "rausel.Akum: Warnung: Das Ergebnis hat 10000 Strecken, die Systemdatei 10.\n");
}

TEST_F(Tabelle, RefusesANameThatARunCouldNotTake) {
  EXPECT_EQ(run({"tabelle", "ein Name"}).exit_status, 64);
}

TEST_F(Tabelle, IsRefusedWithoutAWholeResult) {
  const std::string whole = read_bytes(file("rausel.Akum"));
  write_bytes(file("rausel.Akum"), whole.substr(0, whole.size() - 3));
  const child::Outcome half = run({"tabelle", "rausel", "--csv", "-o", "aus.csv"});
  EXPECT_EQ(half.exit_status, 3);
  EXPECT_EQ(half.err, "KV_Schau: rausel.Akum: Das Ergebnis bricht in Zeile 28 ab.\n");
  EXPECT_FALSE(fs::exists(file("aus.csv")));

  fs::remove(file("rausel.Akum"));
  EXPECT_EQ(run({"tabelle", "rausel", "--csv"}).exit_status, 3);
  fs::create_directory(file("rausel.Akum"));
  const child::Outcome folder = run({"tabelle", "rausel", "--csv"});
  EXPECT_EQ(folder.exit_status, 3);
  EXPECT_THAT(folder.err, HasSubstr("kann nicht gelesen werden: keine gewöhnliche Datei"));
}

// What lies upstream of a reach is told only of the network that the result comes from.
TEST_F(Tabelle, HasMoreColumnsOnlyBesideItsOwnNetwork) {
  EXPECT_THAT(run({"tabelle", "rausel", "--mehr"}).out, HasSubstr("Einzugsgebiet"));
  std::string system = read_bytes(file("rausel.sys"));
  system.replace(system.find("T0060   N0050"), 5, "T0061");
  write_bytes(file("rausel.sys"), system);
  EXPECT_EQ(run({"tabelle", "rausel"}).exit_status, 1);
  const child::Outcome refused = run({"tabelle", "rausel", "--mehr"});
  EXPECT_EQ(refused.exit_status, 3);
  EXPECT_EQ(refused.out, "");
  EXPECT_THAT(refused.err, HasSubstr("für --mehr bitte neu rechnen"));
}

// An old result is given out, but not without a word.
TEST_F(Tabelle, WarnsOfAResultThatIsNotOfTheseFiles) {
  fs::last_write_time(file("rausel.kfl"), fs::file_time_type::clock::now() + std::chrono::seconds(50));
  const child::Outcome older = run({"tabelle", "rausel", "--csv"});
  EXPECT_EQ(older.exit_status, 1);
  EXPECT_THAT(older.out, StartsWith("Strecke,"));
  EXPECT_EQ(older.err, "rausel.Akum: Warnung: rausel.kfl ist jünger als das Ergebnis; bitte neu rechnen.\n");

  std::string rows = read_bytes(file("rausel.Akum"));
  write_bytes(file("rausel.Akum"), rows.substr(0, rows.find("T0050 ")));
  fs::last_write_time(file("rausel.Akum"), fs::file_time_type::clock::now() + std::chrono::seconds(100));
  const child::Outcome short_one = run({"tabelle", "rausel", "--csv"});
  EXPECT_EQ(short_one.exit_status, 1);
  EXPECT_EQ(short_one.err, "rausel.Akum: Warnung: Das Ergebnis hat 4 Strecken, die Systemdatei 10.\n");
}

TEST_F(Tabelle, NeverWritesOverAFileOfTheVariant) {
  const State before = state();
  for (const char* target : {"rausel.sys", "rausel.Akum", "./rausel.ver", "link"}) {
    if (!fs::exists(file("link"))) fs::create_symlink("rausel.nfl", file("link"));
    const child::Outcome outcome = run({"tabelle", "rausel", "--csv", "-o", target});
    EXPECT_EQ(outcome.exit_status, 64) << target;
    EXPECT_THAT(outcome.err, HasSubstr("ist eine Datei der Variante"));
  }
  EXPECT_THAT(changes(before, state()), ElementsAre("link"));
}

TEST_F(Tabelle, WritesTheWholeFileOrNothing) {
  write_bytes(file("aus.csv"), "alt\n");
  const State before = state();
  // A file may not become larger than a disk with little room would let it.
  const child::Outcome outcome =
      program::run({"tabelle", "rausel", "--csv", "-o", "aus.csv"}, folder_.path(), [] {
        const rlimit limit{300, 300};
        signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limit);
      });
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_THAT(changes(before, state()), IsEmpty());

  const child::Outcome full = run({"tabelle", "rausel", "--csv", "-o", "/dev/full"});
  EXPECT_EQ(full.exit_status, 3);
  EXPECT_EQ(full.err, "KV_Schau: /dev/full kann nicht geschrieben werden: der Datenträger ist voll.\n");

  const child::Outcome nowhere = run({"tabelle", "rausel", "--csv", "-o", "gibt_es_nicht/aus.csv"});
  EXPECT_EQ(nowhere.exit_status, 3);
  EXPECT_THAT(nowhere.err, HasSubstr("gibt_es_nicht/aus.csv kann nicht geschrieben werden: nicht vorhanden"));

  fs::create_directory(file("Ordner"));
  EXPECT_EQ(run({"tabelle", "rausel", "--csv", "-o", "Ordner"}).exit_status, 3);
}

TEST_F(Tabelle, EndsWithAFaultWhenStandardOutputIsFull) {
  const child::Outcome outcome = program::run({"tabelle", "rausel", "--csv"}, folder_.path(), [] {
    dup2(open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
  });
  EXPECT_EQ(outcome.exit_status, 3);
}

}  // namespace
