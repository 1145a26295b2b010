// The command pruefen as a program: its outputs byte for byte, its forms, its exit status.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/rules/rules.h"
#include "tests/schau/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

const fs::path examples_folder = KV_EXAMPLES_DIR;
const fs::path variants_folder = KV_VARIANTS_DIR;
const fs::path golden_folder = KV_GOLDEN_DIR;

// A working folder with the files of a golden variant, or of the example.
class Folder {
 public:
  explicit Folder(const std::string& variant) {
    const fs::path source = variant == "rausel" ? examples_folder : variants_folder / variant / "in";
    for (const fs::directory_entry& entry : fs::directory_iterator(source)) {
      if (entry.is_regular_file()) fs::copy_file(entry.path(), folder_.path() / entry.path().filename());
    }
  }
  [[nodiscard]] const fs::path& path() const { return folder_.path(); }

 private:
  test_files::TemporaryFolder folder_;
};

child::Outcome check(const Folder& folder, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "pruefen");
  return program::run(arguments, folder.path());
}

struct Golden {
  std::string variant;
  int status = 0;
};

void PrintTo(const Golden& golden, std::ostream* out) {
  *out << golden.variant;
}

class GoldenTest : public ::testing::TestWithParam<Golden> {};

TEST_P(GoldenTest, HasTheExpectedBytes) {
  const Folder folder(GetParam().variant);
  const std::string name = GetParam().variant == "rausel" ? "rausel" : "var1";
  const child::Outcome outcome = check(folder, {name});
  EXPECT_EQ(outcome.out, test_files::read_bytes(golden_folder / (GetParam().variant + ".txt")));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit_status, GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    Variants, GoldenTest,
    ::testing::Values(Golden{"rausel", 0}, Golden{"a03_forms_of_bad_numbers", 2},
                      Golden{"areas_between_headings", 1}, Golden{"branching_share_text", 2},
                      Golden{"element_after_the_end_marker", 2},
                      Golden{"gap_in_the_inflows_skips_the_line", 2}, Golden{"line_ends_mixed", 1},
                      Golden{"reach_kind_2_takes_the_next_record", 1},
                      Golden{"suppressed_a14_reads_the_first_line", 2}, Golden{"tabs_are_characters", 2},
                      Golden{"unit_inside_a_word", 1}, Golden{"w02_basin_without_second_outflow", 1},
                      Golden{"y23_y24_network_bottom_up", 2}),
    [](const auto& one) { return one.param.variant; });

TEST(Pruefen, ChangesNothingInTheFolder) {
  const Folder folder("a03_forms_of_bad_numbers");
  const auto state = [&] {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder.path())) {
      files[entry.path().filename().string()] = test_files::read_bytes(entry.path());
    }
    return files;
  };
  const auto before = state();
  check(folder, {"var1"});
  EXPECT_EQ(state(), before);
}

TEST(Pruefen, NamesFilesAsTheVariantWasGiven) {
  const Folder folder("branching_share_text");
  const std::string absolute = (folder.path() / "var1.sys").string();
  EXPECT_THAT(check(folder, {absolute}).out, StartsWith((folder.path() / "var1.ver:1:16: Fehler").string()));
  EXPECT_THAT(check(folder, {"./var1"}).out, StartsWith("./var1.ver:1:16: Fehler"));
}

TEST(Pruefen, GivesTheSameAsJson) {
  const Folder folder("suppressed_a14_reads_the_first_line");
  const child::Outcome outcome = check(folder, {"--json", "var1"});
  EXPECT_EQ(outcome.exit_status, 2);
  const nlohmann::json json = nlohmann::json::parse(outcome.out);
  ASSERT_EQ(json.at("varianten").size(), 1U);
  const nlohmann::json& variant = json.at("varianten").at(0);
  EXPECT_EQ(variant.at("variante"), "var1");
  EXPECT_EQ(variant.at("zahl"), nlohmann::json({{"fehler", 1}, {"warnungen", 1}, {"hinweise", 0}}));
  EXPECT_EQ(variant.at("bilanz").at("auslass").at("element"), "T0010");
  ASSERT_EQ(variant.at("befunde").size(), 2U);
  EXPECT_EQ(variant.at("befunde").at(0).at("regel"), "zeile-doppelt");
  EXPECT_EQ(variant.at("befunde").at(0).at("zeile"), 2);
  EXPECT_EQ(variant.at("befunde").at(1).at("datei"), "fehlercode.ex");
}

TEST(Pruefen, GivesJsonOfARefusalToo) {
  const Folder folder("branching_share_text");
  const child::Outcome outcome = check(folder, {"--json", "nichts", "var1"});
  const nlohmann::json json = nlohmann::json::parse(outcome.out);
  ASSERT_EQ(json.at("varianten").size(), 2U);
  EXPECT_EQ(json.at("varianten").at(0).at("variante"), "nichts");
  EXPECT_THAT(json.at("varianten").at(0).at("abgelehnt").get<std::string>(), HasSubstr("gibt es nicht"));
  EXPECT_EQ(json.at("varianten").at(1).at("befunde").size(), 1U);
  EXPECT_EQ(outcome.exit_status, 3);
}

TEST(Pruefen, LeavesOutRulesThatAreSwitchedOff) {
  const Folder folder("suppressed_a14_reads_the_first_line");
  const child::Outcome one = check(folder, {"--ohne", "zeile-doppelt", "var1"});
  EXPECT_THAT(one.out, AllOf(Not(HasSubstr("[zeile-doppelt]")), HasSubstr("[unterdrueckung]")));
  EXPECT_EQ(one.exit_status, 1);
  const child::Outcome both = check(folder, {"var1", "--ohne", "zeile-doppelt", "--ohne", "unterdrueckung"});
  EXPECT_THAT(both.out, HasSubstr("0 Fehler, 0 Warnungen, 0 Hinweise"));
  EXPECT_EQ(both.exit_status, 0);
}

TEST(Pruefen, ShowsNoMoreThanAskedFor) {
  const Folder folder("a03_forms_of_bad_numbers");
  const child::Outcome outcome = check(folder, {"--hoechstens", "1", "var1"});
  const std::string out = outcome.out;
  EXPECT_THAT(out, HasSubstr("\"2,5\""));
  EXPECT_THAT(out, AllOf(HasSubstr("\"1.2.3\""), Not(HasSubstr("\"1..\""))));
  EXPECT_THAT(out, HasSubstr("var1: 18 Fehler, 0 Warnungen, 0 Hinweise\n"));
  EXPECT_THAT(out, HasSubstr("14 davon nicht gezeigt (--hoechstens 1)\n"));
  EXPECT_EQ(outcome.exit_status, 2);
}

TEST(Pruefen, ShowsMoreThanFitsIntoOnePiece) {
  const Folder folder("rausel");
  constexpr int lines = 20'000;
  std::string areas = "          qkm\n";
  for (int i = 0; i < lines; ++i) areas += "   N0010  12,40 0.00\n";
  test_files::write_bytes(folder.path() / "rausel.nfl", areas);
  const std::string out = check(folder, {"rausel", "--hoechstens", "1000000"}).out;
  EXPECT_GT(out.size(), 2'000'000U);
  int shown = 0;
  for (std::size_t at = out.find("[dezimalkomma]"); at != std::string::npos;
       at = out.find("[dezimalkomma]", at + 1)) {
    ++shown;
  }
  EXPECT_EQ(shown, lines);
}

TEST(Pruefen, ListsItsRules) {
  const Folder folder("rausel");
  const child::Outcome outcome = check(folder, {"--regeln"});
  std::istringstream lines(outcome.out);
  std::string line;
  for (const schau::findings::Rule* rule : schau::rules::all_rules()) {
    ASSERT_TRUE(std::getline(lines, line));
    std::istringstream words(line);
    std::string identifier;
    std::string severity;
    words >> identifier >> severity;
    EXPECT_EQ(identifier, rule->identifier);
    EXPECT_EQ(severity, schau::findings::word_of(rule->severity));
    EXPECT_TRUE(line.ends_with(rule->explanation));
  }
  EXPECT_FALSE(std::getline(lines, line));
  EXPECT_EQ(outcome.exit_status, 0);
}

TEST(Pruefen, RefusesNamesWithTheReasonAndAWayOut) {
  const Folder folder("rausel");
  test_files::write_bytes(folder.path() / "zwei Worte.sys", "");
  const child::Outcome blank = check(folder, {"zwei Worte"});
  EXPECT_EQ(blank.err,
            "KV_Schau: Der Variantenname \"zwei Worte\" enthält ein Leerzeichen; KV_Akum würde ihn dort "
            "abschneiden.\n"
            "  Die Dateien der Variante umbenennen, etwa in \"zwei_Worte.*\" (Ordner dürfen Leerzeichen "
            "enthalten).\n");
  EXPECT_EQ(blank.exit_status, 64);
  const child::Outcome missing = check(folder, {"rausel.kfl"});
  EXPECT_EQ(missing.err,
            "KV_Schau: Die Datei \"rausel.kfl.sys\" gibt es nicht.\n  Gemeint ist wohl \"rausel\".\n");
  EXPECT_EQ(missing.out, "");
  EXPECT_EQ(missing.exit_status, 3);
}

TEST(Pruefen, TakesSeveralVariantsAndReturnsTheHighestStatus) {
  const Folder folder("branching_share_text");
  const std::string example = (examples_folder / "rausel").string();
  const child::Outcome outcome = check(folder, {example, "var1", "nichts"});
  EXPECT_THAT(outcome.out,
              AllOf(HasSubstr("rausel: 0 Fehler, 0 Warnungen, 1 Hinweis\n\nvar1.ver:1:16: Fehler"),
                    HasSubstr("var1: 1 Fehler, 0 Warnungen, 0 Hinweise\n")));
  EXPECT_THAT(outcome.err, HasSubstr("\"nichts.sys\" gibt es nicht"));
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_EQ(check(folder, {"var1", example}).exit_status, 2);
}

TEST(Pruefen, TellsAFileThatCannotBeRead) {
  const Folder folder("rausel");
  fs::remove(folder.path() / "rausel.kfl");
  const child::Outcome missing = check(folder, {"rausel"});
  EXPECT_THAT(missing.out,
              HasSubstr("Die Datei rausel.kfl fehlt; das System hat 4 K-Elemente [datei-fehlt]"));
  EXPECT_EQ(missing.exit_status, 2);
  fs::create_directory(folder.path() / "rausel.kfl");
  const child::Outcome unreadable = check(folder, {"rausel"});
  EXPECT_THAT(unreadable.out,
              HasSubstr("rausel.kfl: Fehler: Die Datei ist nicht lesbar: ist ein Ordner [datei-unlesbar]"));
  EXPECT_EQ(unreadable.exit_status, 3);
}

TEST(Pruefen, TellsAnOutputThatCannotBeWritten) {
  const Folder folder("rausel");
  std::FILE* const full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr);
  const child::Outcome outcome =
      program::run({"pruefen", "rausel"}, folder.path(), [&] { dup2(fileno(full), STDOUT_FILENO); });
  std::fclose(full);
  EXPECT_THAT(outcome.err, HasSubstr("Die Ausgabe konnte nicht vollständig geschrieben werden"));
  EXPECT_EQ(outcome.exit_status, 3);
}

TEST(Usage, IsToldInGerman) {
  const Folder folder("rausel");
  const auto run = [&](const std::vector<std::string>& arguments) {
    return program::run(arguments, folder.path());
  };
  const auto error = [&](const std::vector<std::string>& arguments) {
    const child::Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exit_status, 64);
    EXPECT_EQ(outcome.out, "");
    return outcome.err;
  };
  constexpr std::string_view help = "Hilfe: KV_Schau pruefen --help\n";
  EXPECT_EQ(error({"pruefen"}), "KV_Schau: Es fehlt: VARIANTE.\n" + std::string(help));
  EXPECT_EQ(error({}), "KV_Schau: Es fehlt ein Befehl.\nHilfe: KV_Schau --help\n");
  EXPECT_EQ(error({"pruefen", "--foo", "rausel"}),
            "KV_Schau: Unbekannte Angabe: --foo.\n" + std::string(help));
  EXPECT_EQ(error({"pruefen", "rausel", "--ohne"}),
            "KV_Schau: Die Option --ohne braucht einen Wert.\n" + std::string(help));
  EXPECT_EQ(error({"pruefen", "rausel", "--hoechstens", "viele"}),
            "KV_Schau: Unzulässiger Wert: --hoechstens = viele.\n" + std::string(help));
  EXPECT_EQ(
      error({"pruefen", "rausel", "--ohne", "dezimalpunkt"}),
      "KV_Schau: Eine Regel \"dezimalpunkt\" gibt es nicht; --regeln nennt alle.\n" + std::string(help));
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"}, {"pruefen", "-h"}}) {
    const child::Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(outcome.out,
                AllOf(HasSubstr("Aufruf: KV_Schau"), Not(HasSubstr("Usage")), Not(HasSubstr("Options:")),
                      Not(HasSubstr("REQUIRED")), HasSubstr("Exit-Status")));
  }
}

TEST(Usage, HelpOfTheProgramHasSeveralNames) {
  const Folder folder("rausel");
  const std::string help = program::run({"--help"}, folder.path()).out;
  EXPECT_THAT(help, HasSubstr("Befehle"));
  EXPECT_EQ(program::run({"-h"}, folder.path()).out, help);
  EXPECT_EQ(program::run({"--hilfe"}, folder.path()).out, help);
}

TEST(Usage, TellsTheVersion) {
  const Folder folder("rausel");
  const child::Outcome outcome = program::run({"--version"}, folder.path());
  EXPECT_EQ(outcome.exit_status, 0);
  EXPECT_THAT(outcome.out, MatchesRegex("KV_Schau [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_THAT(outcome.err, IsEmpty());
}

}  // namespace
