// The command `rechnen` from outside: exit statuses, several variants, and what a kill leaves behind.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/child.h"
#include "tests/schau/folder_state.h"
#include "tests/schau/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using folder_state::changes;
using folder_state::State;
using test_files::read_bytes;
using test_files::write_bytes;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const fs::path examples = KV_EXAMPLES_DIR;
const std::string real_program = KV_AKUM_PROGRAM;
const std::string old_result = "ein altes Ergebnis\n";

class Rechnen : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directory(folder_);
    copy_example("rausel");
  }

  void copy_example(const std::string& name) const {
    for (const char* extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
      fs::copy(examples / (std::string("rausel") + extension), folder_ / (name + extension));
    }
  }
  void spoil(const std::string& name) const {
    std::string bytes = read_bytes(folder_ / (name + ".nfl"));
    write_bytes(folder_ / (name + ".nfl"), bytes.replace(bytes.find("N0030"), 5, "N9930"));
  }

  child::Outcome run(const std::vector<std::string>& arguments) const {
    return program::run(arguments, folder_);
  }
  [[nodiscard]] State state() const { return folder_state::of(folder_); }
  [[nodiscard]] std::string bytes(const std::string& file) const { return read_bytes(folder_ / file); }

  // The path of a shell script in place of KV_Akum.
  std::string stand_in(const std::string& script) const {
    const fs::path file = temporary_.path() / "stand_in";
    write_bytes(file, "#!/bin/sh\nKV_AKUM='" + real_program + "'\n" + script + "\n");
    fs::permissions(file, fs::perms::owner_all);
    return file.string();
  }

  test_files::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.path() / "Mein Gebiet";
  const std::string result_ = read_bytes(examples / "expected" / "rausel.Akum");
};

TEST_F(Rechnen, EndsWithTheStatusOfWhatCameOut) {
  EXPECT_EQ(run({"rechnen", "rausel"}).exit_status, 0);
  EXPECT_EQ(run({"rausel.sys"}).exit_status, 0);
  EXPECT_EQ(run({"rechnen", (folder_ / "rausel").string()}).exit_status, 0);

  spoil("rausel");
  EXPECT_EQ(run({"rechnen", "rausel"}).exit_status, 2);
  fs::remove(folder_ / "rausel.nfl");
  EXPECT_EQ(run({"rechnen", "rausel"}).exit_status, 3);
  EXPECT_EQ(run({"rechnen", "gibt_es_nicht"}).exit_status, 3);

  copy_example("zweite");
  std::string kfl = bytes("zweite.kfl");
  write_bytes(folder_ / "zweite.kfl", kfl.replace(kfl.find("K0040"), 5, "K9940"));
  write_bytes(folder_ / "fehlercode.ex", "A00\n");
  EXPECT_EQ(run({"rechnen", "zweite"}).exit_status, 1);
}

TEST_F(Rechnen, RefusesWrongUsage) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"rechnen"},
                                                    {"rechnen", "rausel", "--gibt-es-nicht"},
                                                    {"rechnen", "rausel", "-j", "0"},
                                                    {"rechnen", "rausel", "-j", "1001"},
                                                    {"rechnen", "rausel", "-j", "viele"},
                                                    {"rechnen", "rausel", "--frist", "-1"},
                                                    {"rechnen", "rausel", "--hoechstens", "-3"},
                                                    {"rechnen", "ein Name"},
                                                    {"rechnen", ""}}) {
    const State before = state();
    const child::Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exit_status, 64) << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr("KV_Schau: "));
    EXPECT_THAT(changes(before, state()), IsEmpty());
  }
}

TEST_F(Rechnen, SaysWhenKV_AkumIsMissing) {
  const child::Outcome named = run({"rechnen", "rausel", "--programm", "gibt_es_nicht"});
  EXPECT_EQ(named.exit_status, 3);
  EXPECT_THAT(named.out, HasSubstr("kann nicht gestartet werden: nicht vorhanden"));

  // Alone in a folder, with nothing in PATH.
  const fs::path alone = temporary_.path() / "allein";
  fs::create_directory(alone);
  fs::copy(KV_SCHAU_PROGRAM, alone / "KV_Schau");
  const auto run_alone = [&](const std::string& path) {
    return child::run([&] {
      setenv("PATH", path.c_str(), 1);
      if (chdir(folder_.c_str()) == 0) execl((alone / "KV_Schau").c_str(), "KV_Schau", "rausel", nullptr);
      _exit(127);
    });
  };
  const child::Outcome nowhere = run_alone("/nirgends");
  EXPECT_EQ(nowhere.exit_status, 3);
  EXPECT_EQ(nowhere.out, "");
  EXPECT_THAT(nowhere.err, HasSubstr("KV_Akum liegt weder neben KV_Schau noch in einem Ordner von PATH"));

  EXPECT_EQ(run_alone("/nirgends:" + fs::path(real_program).parent_path().string()).exit_status, 0);
  write_bytes(alone / "KV_Akum", "#!/bin/sh\nexit 9\n");
  fs::permissions(alone / "KV_Akum", fs::perms::owner_all);
  EXPECT_THAT(run_alone(fs::path(real_program).parent_path().string()).out, HasSubstr("Exit-Status 9"));
}

TEST_F(Rechnen, ShowsNothingButErrorsWhenQuiet) {
  const child::Outcome clean = run({"rechnen", "-q", "rausel"});
  EXPECT_EQ(clean.out + clean.err, "");
  EXPECT_EQ(bytes("rausel.Akum"), result_);

  spoil("rausel");
  const child::Outcome faulty = run({"rechnen", "--quiet", "rausel"});
  EXPECT_EQ(faulty.out, "");
  EXPECT_THAT(faulty.err,
              HasSubstr("rausel.sys:13:36: Fehler: In der Tabelle rausel.nfl fehlt das Element N0030"));
  EXPECT_THAT(faulty.err, HasSubstr("rausel: kein Ergebnis wegen Befunden."));
  EXPECT_THAT(faulty.err, Not(HasSubstr("Hinweis:")));
}

TEST_F(Rechnen, GoesOnWhenNobodyReadsItsOutput) {
  write_bytes(folder_ / "rausel.Akum", old_result);
  const child::Outcome outcome = program::run({"rechnen", "rausel"}, folder_, [] { close(STDOUT_FILENO); });
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("Die Ausgabe konnte nicht vollständig geschrieben werden"));
  EXPECT_EQ(bytes("rausel.Akum"), result_);

  const child::Outcome full = program::run(
      {"rechnen", "rausel"}, folder_, [] { dup2(open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO); });
  EXPECT_EQ(full.exit_status, 3);
}

TEST_F(Rechnen, DoesNotMindACallerThatIgnoresItsChildrenOrStopsReading) {
  const child::Outcome ignored =
      program::run({"rechnen", "-q", "rausel"}, folder_, [] { std::signal(SIGCHLD, SIG_IGN); });
  EXPECT_EQ(ignored.exit_status, 0) << ignored.err;

  fs::remove(folder_ / "rausel.Akum");
  const child::Outcome unread = program::run({"rechnen", "rausel"}, folder_, [] {
    int ends[2];
    if (pipe(ends) != 0) _exit(126);
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
  });
  EXPECT_EQ(unread.exit_status, 3);
  EXPECT_EQ(bytes("rausel.Akum"), result_);
}

TEST_F(Rechnen, ShowsTheBeginningOfALongNotice) {
  const std::string program = stand_in("exec head -c 200000 /dev/zero");
  const child::Outcome outcome = run({"rechnen", "rausel", "--programm", program});
  EXPECT_THAT(outcome.out, HasSubstr("KV_Akum: Ausgabe außerhalb der Meldungen: ␀␀"));
  EXPECT_THAT(outcome.out, HasSubstr("␀ ...\n"));
  EXPECT_LT(outcome.out.size(), 20'000U);
}

// Several variants.

constexpr int variant_count = 12;

std::string name_of(int number) {
  return "v" + std::to_string(number);
}

std::vector<std::string> side_by_side(const std::string& count) {
  std::vector<std::string> arguments = {"rechnen", "-j", count};
  for (int i = 0; i < variant_count; ++i) arguments.push_back(name_of(i));
  return arguments;
}

class SeveralVariants : public Rechnen {
 protected:
  // Variants of one folder that differ in one area; every third one is faulty.
  void SetUp() override {
    Rechnen::SetUp();
    for (int i = 0; i < variant_count; ++i) {
      copy_example(name_of(i));
      std::string areas = bytes(name_of(i) + ".nfl");
      areas.replace(areas.find("12.40"), 5, std::to_string(10 + i) + ".50");
      write_bytes(folder_ / (name_of(i) + ".nfl"), areas);
      std::string system = bytes(name_of(i) + ".sys");
      system.replace(system.find("Quellgebiet"), 11, "Gebiet " + std::to_string(10 + i) + "  ");
      write_bytes(folder_ / (name_of(i) + ".sys"), system);
      if (i % 3 == 2) spoil(name_of(i));
    }
  }
};

TEST_F(SeveralVariants, SideBySideLeaveTheFilesOfRunsOneByOne) {
  const fs::path original = temporary_.path() / "Original";
  fs::copy(folder_, original);
  for (int i = 0; i < variant_count; ++i) program::run({"rechnen", name_of(i)}, folder_);
  const State one_by_one = state();
  ASSERT_TRUE(one_by_one.contains("v0.Akum") && one_by_one.contains("v2.pkl") &&
              !one_by_one.contains("v2.Akum"));

  fs::remove_all(folder_);
  fs::copy(original, folder_);
  const child::Outcome outcome = run(side_by_side("4"));
  EXPECT_EQ(outcome.exit_status, 2);
  EXPECT_THAT(changes(one_by_one, state()), IsEmpty());
}

TEST_F(SeveralVariants, AreShownInTheirOrderWithASummary) {
  run(side_by_side("2"));  // from now on every run finds old files
  const child::Outcome one_by_one = run(side_by_side("1"));
  const child::Outcome at_once = run(side_by_side("8"));
  EXPECT_EQ(at_once.out, one_by_one.out);
  EXPECT_EQ(at_once.err, "");
  const std::size_t summary = at_once.out.find("== Zusammenfassung\n");
  ASSERT_NE(summary, std::string::npos);
  std::string expected = "== Zusammenfassung\n";
  for (int i = 0; i < variant_count; ++i) {
    expected +=
        name_of(i) +
        (i % 3 == 2 ? ": kein Ergebnis wegen Befunden: Das Protokoll meldet 1 Fehler; gerechnet wurde nicht\n"
                    : ": Ergebnis ohne Befund: " + name_of(i) + ".Akum hat 10 Strecken\n");
  }
  EXPECT_EQ(at_once.out.substr(summary), expected);
}

TEST_F(SeveralVariants, DoNotStopEachOther) {
  const std::string program = stand_in(
      "case $1 in v1) kill -SEGV $$;; v3) sleep 60;; v5) exit 3;; *) exec \"$KV_AKUM\" \"$1\";; esac");
  std::vector<std::string> arguments = side_by_side("3");
  arguments.insert(arguments.end(), {"gibt_es_nicht", "--programm", program, "--frist", "1"});
  const child::Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("gibt_es_nicht.sys\" gibt es nicht"));
  EXPECT_THAT(outcome.out, HasSubstr("v1: kein gültiges Ergebnis: KV_Akum ist abgestürzt"));
  EXPECT_THAT(outcome.out, HasSubstr("v3: kein gültiges Ergebnis: KV_Akum war nach 1 s noch nicht fertig"));
  EXPECT_THAT(outcome.out,
              HasSubstr("v5: kein gültiges Ergebnis: KV_Akum hat mit dem Exit-Status 3 geendet"));
  EXPECT_THAT(outcome.out, HasSubstr("v11: kein Ergebnis wegen Befunden"));
  EXPECT_THAT(outcome.out, EndsWith("gibt_es_nicht: nicht gerechnet, keine Variante\n"));
  for (const int i : {0, 4, 6, 7, 9, 10}) EXPECT_TRUE(fs::exists(folder_ / (name_of(i) + ".Akum"))) << i;
}

// Each run sees the list of its own folder, and the listing of the folder is that of the last variant in it.
TEST_F(SeveralVariants, MixNeitherSuppressionListsNorListings) {
  const fs::path other = folder_ / "anderes";
  fs::create_directory(other);
  for (const char* extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
    fs::copy(folder_ / (std::string("v2") + extension), other / (std::string("v2") + extension));
  }
  write_bytes(other / "fehlercode.ex", "A00\n");
  EXPECT_EQ(run({"rechnen", "-q", "-j", "3", "v2", "anderes/v2", "v0"}).exit_status, 2);
  EXPECT_TRUE(fs::exists(other / "v2.Akum"));
  EXPECT_FALSE(fs::exists(folder_ / "v2.Akum"));
  EXPECT_TRUE(fs::exists(folder_ / "v2.pkl"));
  EXPECT_FALSE(fs::exists(other / "v2.pkl"));
  EXPECT_TRUE(fs::exists(other / "code.pkl"));

  std::string system = bytes("v1.sys");
  write_bytes(folder_ / "v1.sys",
              system.replace(system.find("N0010"), 5, "N0011").replace(system.find("N0010"), 5, "N0011"));
  std::string areas = bytes("v1.nfl");
  write_bytes(folder_ / "v1.nfl", areas.replace(areas.find("N0010"), 5, "N0011"));
  for (int round = 0; round < 5; ++round) {
    run({"rechnen", "-q", "-j", "3", "v0", "v3", "v1"});
    EXPECT_THAT(bytes("code.pkl"), HasSubstr("N0011"));
    run({"rechnen", "-q", "-j", "3", "v1", "v3", "v0"});
    EXPECT_THAT(bytes("code.pkl"), HasSubstr("N0010"));
  }
}

TEST_F(SeveralVariants, AreRunOnceEach) {
  const std::string program =
      stand_in("echo $1 >> '" + temporary_.file("runs") + "'; exec \"$KV_AKUM\" \"$1\"");
  run({"rechnen", "-q", "--programm", program, "v0", "v0.sys", "./v0", "v1", (folder_ / "v0").string()});
  EXPECT_EQ(read_bytes(temporary_.path() / "runs"), "v0\nv1\n");
}

// Ends from outside.

pid_t start(const std::vector<std::string>& arguments, const fs::path& folder) {
  const pid_t id = fork();
  if (id == 0) {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
    program::become(arguments, folder);
  }
  return id;
}

bool wait_until(const std::function<bool()>& holds) {
  for (int i = 0; i < 2000 && !holds(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  return holds();
}

TEST_F(Rechnen, EndsItsRunsWhenItIsAskedToEnd) {
  write_bytes(folder_ / "rausel.Akum", old_result);
  const State before = state();
  const std::string program = stand_in("echo $$ > '" + temporary_.file("id") + "'; exec sleep 60");
  for (const int signal : {SIGINT, SIGTERM}) {
    fs::remove(temporary_.path() / "id");
    const pid_t id = start({"rechnen", "--programm", program, "rausel"}, folder_);
    ASSERT_TRUE(wait_until([&] {
      return fs::exists(temporary_.path() / "id") && !read_bytes(temporary_.path() / "id").empty();
    }));
    const pid_t of_program = std::stoi(read_bytes(temporary_.path() / "id"));
    const auto asked = std::chrono::steady_clock::now();
    kill(id, signal);
    int status = 0;
    ASSERT_EQ(waitpid(id, &status, 0), id);
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(20));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 3);
    EXPECT_EQ(kill(of_program, 0), -1);
    EXPECT_THAT(changes(before, state()), IsEmpty());
  }
}

// Killed at any moment, it has not touched an old file, or has put a whole new one in its place.
TEST_F(Rechnen, LosesNothingWhenItIsKilled) {
  spoil("rausel");
  run({"rechnen", "-q", "rausel"});
  const std::string protocol_of_faulty = bytes("rausel.pkl");
  fs::remove(folder_ / "rausel.nfl");
  fs::copy(examples / "rausel.nfl", folder_);
  write_bytes(folder_ / "rausel.Akum", old_result);
  const State before = state();
  const std::string listing = before.at("code.pkl");
  const auto begin = std::chrono::steady_clock::now();
  run({"rechnen", "rausel", "--programm", "/bin/false"});
  const auto usual =
      std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
  std::mt19937 dice(5);
  std::uniform_int_distribution<int> microseconds(0, 2 * static_cast<int>(usual.count()));
  int done = 0;
  for (int i = 0; i < 150; ++i) {
    const pid_t id = start({"rechnen", "rausel"}, folder_);
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(dice)));
    kill(id, SIGKILL);
    waitpid(id, nullptr, 0);
    // KV_Akum itself may still run there.
    State after = folder_state::of(folder_, "rausel.lauf-");
    const bool is_new = after["rausel.Akum"] != old_result;
    EXPECT_EQ(after["rausel.Akum"], is_new ? result_ : old_result);
    EXPECT_EQ(after["code.pkl"], listing);
    // The protocol goes before the result comes.
    if (after.contains("rausel.pkl")) {
      EXPECT_EQ(after["rausel.pkl"], protocol_of_faulty);
      EXPECT_FALSE(is_new);
    }
    for (const char* input : {"rausel.sys", "rausel.nfl", "rausel.kfl", "rausel.trs", "rausel.ver"}) {
      EXPECT_EQ(after[input], before.at(input));
    }
    done += is_new ? 1 : 0;
    write_bytes(folder_ / "rausel.Akum", old_result);
    write_bytes(folder_ / "rausel.pkl", protocol_of_faulty);
  }
  EXPECT_GT(done, 0);
  EXPECT_LT(done, 150);
}

}  // namespace
