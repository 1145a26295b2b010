// Runs KV_Akum, and programs that stand in for it and fail, on variants: what a run is worth, and what it
// leaves in the variant's folder.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/run/run.h"
#include "KV_Schau/run/work_folder.h"
#include "tests/child.h"
#include "tests/schau/folder_state.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using folder_state::changes;
using folder_state::State;
using schau::run::Notice;
using schau::run::Outcome;
using schau::run::RunOptions;
using schau::run::Worth;
using test_files::read_bytes;
using test_files::write_bytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const fs::path examples = KV_EXAMPLES_DIR;
const fs::path variants = KV_VARIANTS_DIR;
const std::string real_program = KV_AKUM_PROGRAM;

schau::variant::Variant variant_at(const fs::path& base) {
  return schau::variant::read_variant(std::get<0>(schau::variant::resolve(base.string())));
}

class VariantRun : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directory(folder_);
    for (const auto& entry : fs::directory_iterator(examples)) {
      if (entry.is_regular_file()) fs::copy(entry.path(), folder_);
    }
  }

  // A shell script in place of KV_Akum; $1 is the variant's name, $KV_AKUM the real program.
  void stand_in(const std::string& script) {
    options_.program = temporary_.path() / "stand_in";
    write_bytes(options_.program, "#!/bin/sh\nKV_AKUM='" + real_program + "'\n" + script + "\n");
    fs::permissions(options_.program, fs::perms::owner_all | fs::perms::others_exec | fs::perms::others_read |
                                          fs::perms::group_exec | fs::perms::group_read);
  }

  Outcome run(const std::string& name = "rausel") {
    shown_.clear();
    return schau::run::run_variant(variant_at(folder_ / name), options_,
                                   [&](const Notice& notice, bool has_result) {
                                     shown_.push_back(notice.text + (has_result ? " (mit)" : " (ohne)"));
                                   });
  }

  void replace_in(const std::string& file, const std::string& old_text, const std::string& new_text) const {
    std::string bytes = read_bytes(folder_ / file);
    const std::size_t place = bytes.find(old_text);
    ASSERT_NE(place, std::string::npos) << old_text;
    write_bytes(folder_ / file, bytes.replace(place, old_text.size(), new_text));
  }
  void write(const std::string& file, std::string_view bytes) const { write_bytes(folder_ / file, bytes); }
  [[nodiscard]] bool exists(const std::string& file) const {
    return fs::exists(fs::symlink_status(folder_ / file));
  }
  [[nodiscard]] State state() const { return folder_state::of(folder_); }

  // The run fails for that reason, and nothing in the folder is touched.
  void expect_failed(const std::string& reason) {
    const State before = state();
    const Outcome outcome = run();
    EXPECT_EQ(outcome.verdict.worth, Worth::failed);
    EXPECT_THAT(outcome.verdict.reason, HasSubstr(reason));
    EXPECT_THAT(changes(before, state()), IsEmpty());
  }

  test_files::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.path() / "Mein Gebiet (2024)";
  RunOptions options_{.program = real_program};
  std::vector<std::string> shown_;
};

const std::string old_result = "ein altes Ergebnis\n";
const std::string old_protocol = "ein altes Protokoll\n";

class RunOverOldFiles : public VariantRun {
 protected:
  void SetUp() override {
    VariantRun::SetUp();
    write("rausel.Akum", old_result);
    write("rausel.pkl", old_protocol);
    write("code.pkl", "eine alte Liste\n");
  }
};

TEST_F(RunOverOldFiles, CleanReplacesThemAll) {
  const State before = state();
  const Outcome outcome = run();
  EXPECT_EQ(outcome.verdict.worth, Worth::clean) << outcome.verdict.reason;
  EXPECT_THAT(outcome.verdict.reason, IsEmpty());
  ASSERT_TRUE(outcome.run.table);
  EXPECT_THAT(outcome.run.table->reaches, SizeIs(10));
  EXPECT_FALSE(outcome.run.protocol);
  EXPECT_EQ(read_bytes(folder_ / "rausel.Akum"), read_bytes(examples / "expected" / "rausel.Akum"));
  EXPECT_FALSE(exists("rausel.pkl"));
  EXPECT_TRUE(read_bytes(folder_ / "code.pkl").starts_with("code.pkl\nN0010 "));
  EXPECT_THAT(changes(before, state()), ElementsAre("code.pkl", "rausel.Akum", "rausel.pkl"));
  EXPECT_EQ(shown_, std::vector<std::string>{"Ergebnis: rausel.Akum (mit)"});
}

TEST_F(RunOverOldFiles, WithoutResultForItsDataKeepsTheOldResultAndBringsTheProtocol) {
  replace_in("rausel.nfl", "N0030", "N9930");
  const Outcome outcome = run();
  EXPECT_EQ(outcome.verdict.worth, Worth::refused);
  EXPECT_EQ(outcome.verdict.reason, "Das Protokoll meldet 1 Fehler; gerechnet wurde nicht");
  EXPECT_FALSE(outcome.run.table);
  ASSERT_TRUE(outcome.run.protocol);
  ASSERT_THAT(outcome.run.protocol->messages, SizeIs(1));
  EXPECT_EQ(outcome.run.protocol->messages.front().code, "A00");
  EXPECT_EQ(read_bytes(folder_ / "rausel.Akum"), old_result);
  EXPECT_THAT(read_bytes(folder_ / "rausel.pkl"), HasSubstr("N0030"));
  EXPECT_TRUE(read_bytes(folder_ / "code.pkl").starts_with("code.pkl\n"));
  EXPECT_EQ(shown_, std::vector<std::string>{"Ergebnis: rausel.Akum (ohne)"});
}

TEST_F(RunOverOldFiles, WithWarningsBringsResultAndProtocol) {
  replace_in("rausel.sys", "T0070 T0080", "T0070      ");
  replace_in("rausel.sys", "B0010 T0070         T0090", "T0070               T0090");
  const Outcome outcome = run();
  EXPECT_EQ(outcome.verdict.worth, Worth::with_messages) << outcome.verdict.reason;
  EXPECT_EQ(outcome.verdict.reason, "Das Protokoll enthält 1 Warnung");
  EXPECT_THAT(read_bytes(folder_ / "rausel.pkl"), HasSubstr("W02"));
  EXPECT_NE(read_bytes(folder_ / "rausel.Akum"), old_result);
}

TEST_F(RunOverOldFiles, FailsWhenAnInputIsMissing) {
  fs::remove(folder_ / "rausel.trs");
  expect_failed("Die Datei rausel.trs existiert nicht");
}

TEST_F(RunOverOldFiles, FailsWhenThereIsNoProgram) {
  options_.program = temporary_.path() / "gibt_es_nicht";
  expect_failed("kann nicht gestartet werden: nicht vorhanden");
}

struct StandIn {
  std::string what;
  std::string script;
  std::string reason;
};

void PrintTo(const StandIn& program, std::ostream* out) {
  *out << program.what;
}

// The notice of a complete run, as it stands on standard output.
const std::string closing =
    R"(printf '\001messagebox_button_0_settitle\002KV_Akum\003\001messagebox_button_0\002Ergebnis: %s.Akum\003' "$1")"
    "\n";

const std::vector<StandIn> failing_programs = {
    {"crashes at once", "kill -SEGV $$", "abgestürzt (Signal 11: unzulässiger Speicherzugriff)"},
    {"crashes after a complete result", "\"$KV_AKUM\" \"$1\"; kill -ABRT $$", "abgestürzt (Signal 6"},
    {"is killed", "\"$KV_AKUM\" \"$1\"; kill -KILL $$", "abgestürzt (Signal 9: von außen beendet)"},
    {"ends with a status", "\"$KV_AKUM\" \"$1\"; exit 5", "Exit-Status 5"},
    {"says something on standard error", "\"$KV_AKUM\" \"$1\"; echo 'STOP Ende' >&2",
     "KV_Akum meldet auf der Fehlerausgabe: STOP Ende"},
    {"finds another run of the variant",
     "echo 'E/A-Fehler beim Sperren von \"rausel.sys\": Resource temporarily unavailable' >&2",
     "E/A-Fehler beim Sperren von \"rausel.sys\""},
    {"does nothing", "", "kein Ergebnis geschrieben und keinen Grund genannt"},
    {"only says that it is done", closing, "kein Ergebnis geschrieben und keinen Grund genannt"},
    {"writes half a line", "\"$KV_AKUM\" \"$1\"; head -c 700 \"$1.Akum\" > x; cat x > \"$1.Akum\"",
     "Das Ergebnis bricht in Zeile 11 ab"},
    {"writes half of the lines", "\"$KV_AKUM\" \"$1\"; head -n 11 \"$1.Akum\" > x; mv x \"$1.Akum\"",
     "Das Ergebnis hat 2 Strecken, die Systemdatei 10"},
    {"leaves out the last inflow", "\"$KV_AKUM\" \"$1\"; head -n -1 \"$1.Akum\" > x; mv x \"$1.Akum\"",
     "fehlen Zuläufe der Strecke T0100"},
    {"writes the heading only", "\"$KV_AKUM\" \"$1\"; head -n 6 \"$1.Akum\" > x; mv x \"$1.Akum\"",
     "Das Ergebnis hat 0 Strecken, die Systemdatei 10"},
    {"writes an empty file", ": > \"$1.Akum\"", "Das Ergebnis bricht in Zeile 1 ab"},
    {"writes bytes that are no table", "head -c 20000000 /dev/zero > \"$1.Akum\"",
     "Das Ergebnis bricht in Zeile 1 ab"},
    {"exchanges two rows", "\"$KV_AKUM\" \"$1\"; sed -i 's/^T0020/T9920/' \"$1.Akum\"",
     "gehört zu T9920, in der Systemdatei steht an dieser Stelle T0020"},
    {"writes a row too many", "\"$KV_AKUM\" \"$1\"; grep ^T0010 \"$1.Akum\" > x; cat x >> \"$1.Akum\"",
     "Das Ergebnis hat 11 Strecken, die Systemdatei 10"},
    {"writes no number", "\"$KV_AKUM\" \"$1\"; sed -i 's/13.045$/13,045/' \"$1.Akum\"", "unlesbare Zahl"},
    {"breaks the protocol off",
     "\"$KV_AKUM\" \"$1\"; printf 'Pr\\374fprotokoll: KARVOS\\nY04 Das Element ....' > \"$1.pkl\"",
     "Das Protokoll bricht in Zeile 2 ab"},
};

class FailingProgram : public RunOverOldFiles, public testing::WithParamInterface<StandIn> {};

TEST_P(FailingProgram, LeavesAllFilesAsTheyWere) {
  stand_in(GetParam().script);
  expect_failed(GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(StandsIn, FailingProgram, testing::ValuesIn(failing_programs),
                         [](const auto& tested) {
                           std::string name = tested.param.what;
                           std::ranges::replace(name, ' ', '_');
                           return name;
                         });

TEST_F(RunOverOldFiles, FailsWhenKV_AkumHangs) {
  stand_in("\"$KV_AKUM\" \"$1\"; sleep 60");
  options_.time_limit = std::chrono::seconds(1);
  expect_failed("KV_Akum war nach 1 s noch nicht fertig und wurde abgebrochen (--frist)");
}

TEST_F(RunOverOldFiles, FailsWhenTheProtocolGrowsWithoutEnd) {
  stand_in("yes 'Y04 Das Element ............................. : K17' > \"$1.pkl\"");
  options_.most_bytes = 3'000'000;
  expect_failed("Das Protokoll ist größer als 3 MB (--hoechstens)");
}

TEST_F(RunOverOldFiles, FailsWhenTheProtocolEndsBehindTheLimit) {
  stand_in("\"$KV_AKUM\" \"$1\"; yes 'Y04 Das Element ...' | head -c 3000001 > \"$1.pkl\"");
  options_.most_bytes = 3'000'000;
  expect_failed("Das Protokoll ist größer als 3 MB (--hoechstens)");
}

TEST_F(RunOverOldFiles, FailsWhenTheOutputHasNoEnd) {
  options_.most_bytes = 3'000'000;
  stand_in("exec yes");
  expect_failed("KV_Akum hat mehr als 3 MB ausgegeben");
  stand_in("exec yes >&2");
  expect_failed("KV_Akum hat mehr als 3 MB ausgegeben");
}

TEST_F(RunOverOldFiles, CountsAResultWhoseProgramClosedItsOutputEarly) {
  stand_in("\"$KV_AKUM\" \"$1\" > /dev/null; exec >&- 2>&-; sleep 0.2");
  EXPECT_EQ(run().verdict.worth, Worth::clean);
  EXPECT_EQ(read_bytes(folder_ / "rausel.Akum"), read_bytes(examples / "expected" / "rausel.Akum"));
}

TEST_F(RunOverOldFiles, CountsAResultThatWasRenamedWhenComplete) {
  stand_in("cp -P \"$1\".* . 2>/dev/null; \"$KV_AKUM\" \"$1\"; mv \"$1.Akum\" .neu; mv .neu \"$1.Akum\"");
  EXPECT_EQ(run().verdict.worth, Worth::clean);
  EXPECT_EQ(read_bytes(folder_ / "rausel.Akum"), read_bytes(examples / "expected" / "rausel.Akum"));
}

TEST_F(RunOverOldFiles, ShowsNoticesThatAreBrokenOff) {
  stand_in(
      R"(printf 'Vorspann\001messagebox_button_0_settitle\002KV_Akum: Fehler\003\001messagebox_button_0\002Die Da')");
  const Outcome outcome = run();
  EXPECT_EQ(outcome.verdict.worth, Worth::refused);
  ASSERT_THAT(outcome.run.notices, SizeIs(2));
  EXPECT_EQ(outcome.run.notices[0].text, "Vorspann");
  EXPECT_EQ(outcome.run.notices[1].text, "Die Da");
  EXPECT_FALSE(outcome.run.notices[1].complete);
}

TEST_F(RunOverOldFiles, GetsTheSuppressionListOfTheVariantsFolder) {
  replace_in("rausel.nfl", "N0070", "N9970");
  write("fehlercode.ex", "A00\n");
  const Outcome outcome = run();
  EXPECT_EQ(outcome.verdict.worth, Worth::clean) << outcome.verdict.reason;
  EXPECT_NE(read_bytes(folder_ / "rausel.Akum"), read_bytes(examples / "expected" / "rausel.Akum"));
}

TEST_F(RunOverOldFiles, SaysWhenAFaultyVariantWasComputed) {
  replace_in("rausel.nfl", "N0030", "N9930");
  write("fehlercode.ex", "ooo\n");
  stand_in("\"$KV_AKUM\" \"$1\" > /dev/null; cat ../gerechnet > \"$1.Akum\"");
  write("gerechnet", read_bytes(examples / "expected" / "rausel.Akum"));
  const Outcome outcome = run();
  EXPECT_EQ(outcome.verdict.worth, Worth::with_messages);
  EXPECT_THAT(outcome.verdict.reason, HasSubstr("Gerechnet wurde, obwohl das Protokoll 1 Fehler meldet"));
}

// Places that take no file.

TEST_F(VariantRun, FailsWhenAFolderStandsInTheResultsPlace) {
  fs::create_directory(folder_ / "rausel.Akum");
  expect_failed("rausel.Akum kann nicht geschrieben werden: ist ein Ordner");
}

TEST_F(VariantRun, FailsWhenAFolderStandsInTheProtocolsPlace) {
  replace_in("rausel.sys", "T0070 T0080", "T0070      ");
  replace_in("rausel.sys", "B0010 T0070         T0090", "T0070               T0090");
  fs::create_directory(folder_ / "rausel.pkl");
  fs::create_directory(folder_ / "code.pkl");
  expect_failed("code.pkl kann nicht geschrieben werden: ist ein Ordner");
  fs::remove(folder_ / "code.pkl");
  expect_failed("rausel.pkl kann nicht geschrieben werden: ist ein Ordner");
}

TEST_F(VariantRun, NeverWritesAnInputThatTheResultIsLinkedTo) {
  const State before = state();
  fs::create_symlink("rausel.sys", folder_ / "rausel.Akum");
  expect_failed("rausel.Akum und rausel.sys sind dieselbe Datei");
  fs::remove(folder_ / "rausel.Akum");
  fs::create_hard_link(folder_ / "rausel.kfl", folder_ / "rausel.Akum");
  expect_failed("rausel.Akum und rausel.kfl sind dieselbe Datei");
  fs::remove(folder_ / "rausel.Akum");
  EXPECT_EQ(read_bytes(folder_ / "rausel.sys"), before.at("rausel.sys"));
}

TEST_F(VariantRun, FollowsALinkInTheResultsPlace) {
  fs::create_directory(folder_ / "Ergebnisse");
  write("Ergebnisse/letztes", old_result);
  fs::create_symlink("Ergebnisse/letztes", folder_ / "rausel.Akum");
  EXPECT_EQ(run().verdict.worth, Worth::clean);
  EXPECT_TRUE(fs::is_symlink(folder_ / "rausel.Akum"));
  EXPECT_EQ(read_bytes(folder_ / "Ergebnisse/letztes"), read_bytes(examples / "expected" / "rausel.Akum"));
}

TEST_F(VariantRun, FailsWhenTheResultGoesToAFullDevice) {
  fs::create_symlink("/dev/full", folder_ / "rausel.Akum");
  const Outcome outcome = run();
  EXPECT_EQ(outcome.verdict.worth, Worth::failed);
  EXPECT_THAT(outcome.verdict.reason, HasSubstr("der Datenträger ist voll"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "rausel.Akum"));
}

TEST_F(VariantRun, KeepsTheRightsOfAnOldResult) {
  write("rausel.Akum", old_result);
  const auto rights = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
  fs::permissions(folder_ / "rausel.Akum", rights);
  EXPECT_EQ(run().verdict.worth, Worth::clean);
  EXPECT_EQ(fs::status(folder_ / "rausel.Akum").permissions(), rights);
}

// The work is done by a user whom the host refuses something; root may do everything.
// The program is a copy beside the variant: where the project lies, nobody may look into its folders.
Outcome run_without_rights(const fs::path& base, RunOptions options) {
  Outcome outcome;
  const fs::path place = base.parent_path().parent_path();
  options.program = place / "KV_Akum";
  fs::copy_file(real_program, options.program);
  fs::permissions(options.program, fs::perms::all);
  const fs::path told = place / "told";
  write_bytes(told, "");
  fs::permissions(told, fs::perms::all);
  child::run([&] {
    constexpr unsigned nobody = 65534;
    if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0)) _exit(1);
    const Outcome of_child = schau::run::run_variant(variant_at(base), options, [](const Notice&, bool) {});
    std::ofstream(told) << static_cast<int>(of_child.verdict.worth) << ' ' << of_child.verdict.reason;
  });
  std::istringstream words(read_bytes(told));
  int worth = -1;
  words >> worth;
  std::getline(words >> std::ws, outcome.verdict.reason);
  outcome.verdict.worth = static_cast<Worth>(worth);
  return outcome;
}

TEST_F(RunOverOldFiles, FailsInAFolderThatMayNotBeWritten) {
  fs::permissions(temporary_.path(), fs::perms::all);
  fs::permissions(
      folder_, fs::perms::all & ~(fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write));
  const State before = state();
  const Outcome outcome = run_without_rights(folder_ / "rausel", options_);
  fs::permissions(folder_, fs::perms::owner_all);
  EXPECT_EQ(outcome.verdict.worth, Worth::failed);
  EXPECT_THAT(outcome.verdict.reason,
              HasSubstr("kann kein Arbeitsordner angelegt werden: keine Berechtigung"));
  EXPECT_THAT(changes(before, state()), IsEmpty());
}

TEST_F(RunOverOldFiles, FailsWhenTheOldResultIsProtected) {
  fs::permissions(temporary_.path(), fs::perms::all);
  fs::permissions(folder_, fs::perms::all);
  for (const char* name : {"code.pkl", "rausel.pkl"}) fs::permissions(folder_ / name, fs::perms::all);
  fs::permissions(folder_ / "rausel.Akum",
                  fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  const State before = state();
  const Outcome outcome = run_without_rights(folder_ / "rausel", options_);
  EXPECT_EQ(outcome.verdict.worth, Worth::failed);
  EXPECT_THAT(outcome.verdict.reason,
              HasSubstr("rausel.Akum kann nicht geschrieben werden: keine Berechtigung"));
  EXPECT_THAT(changes(before, state()), IsEmpty());
}

// A file may not become larger than some bytes, as on a full disk.
TEST_F(RunOverOldFiles, FailsWhereFilesMayNotGrow) {
  const State before = state();
  const fs::path told = temporary_.path() / "told";
  for (const rlim_t most : {0U, 100U, 1000U, 1300U}) {
    write_bytes(told, "");
    child::run([&] {
      const rlimit limit{most, most};
      signal(SIGXFSZ, SIG_IGN);
      setrlimit(RLIMIT_FSIZE, &limit);
      const Outcome outcome = run();
      _exit(outcome.verdict.worth == Worth::failed ? 42 : 1);
    });
    EXPECT_THAT(changes(before, state()), IsEmpty()) << most;
  }
}

}  // namespace
