// The commands `plan` and `bericht` from outside.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/schau/folder_state.h"
#include "tests/schau/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using test_files::read_bytes;
using test_files::write_bytes;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Drawing : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
      fs::copy(fs::path(KV_EXAMPLES_DIR) / (std::string("rausel") + extension), folder_.path());
    }
  }
  [[nodiscard]] child::Outcome run(const std::vector<std::string>& arguments) const {
    return program::run(arguments, folder_.path());
  }
  [[nodiscard]] fs::path file(const std::string& name) const { return folder_.path() / name; }
  // Runs with nothing but a program of our own in PATH that takes the place of rsvg-convert.
  [[nodiscard]] child::Outcome run_with_converter(const std::string& script,
                                                  const std::vector<std::string>& arguments) const {
    const fs::path tools = folder_.path() / "tools";
    fs::create_directories(tools);
    if (!script.empty()) {
      write_bytes(tools / "rsvg-convert", "#!/bin/sh\n" + script);
      fs::permissions(tools / "rsvg-convert", fs::perms::owner_all);
    }
    return program::run(arguments, folder_.path(), [&] { setenv("PATH", tools.c_str(), 1); });
  }
  void put_result(const std::string& bytes, std::chrono::seconds age) const {
    write_bytes(file("rausel.Akum"), bytes);
    fs::last_write_time(file("rausel.Akum"), fs::file_time_type::clock::now() - age);
  }

  test_files::TemporaryFolder folder_;
};

TEST_F(Drawing, WritesThePlanAndNothingElse) {
  const folder_state::State before = folder_state::of(folder_.path());
  const child::Outcome outcome = run({"plan", "rausel", "-o", "plan.svg"});
  EXPECT_EQ(outcome.exit_status, 0);
  EXPECT_EQ(outcome.out + outcome.err, "");
  EXPECT_THAT(read_bytes(file("plan.svg")), AllOf(StartsWith("<svg"), HasSubstr("Rausel Mündung")));
  fs::remove(file("plan.svg"));
  EXPECT_EQ(folder_state::of(folder_.path()), before);
}

TEST_F(Drawing, IsThatOfTheDocumentation) {
  EXPECT_EQ(run({"plan", "rausel", "-o", "plan.svg"}).exit_status, 0);
  EXPECT_TRUE(read_bytes(file("plan.svg")) == read_bytes(fs::path(KV_DOCS_DIR) / "rausel-plan.svg"))
      << "docs/rausel-plan.svg shows another plan; write it anew with KV_Schau plan";
}

TEST_F(Drawing, TakesElementAndLevels) {
  EXPECT_EQ(run({"plan", "rausel", "-o", "teil.svg", "--oberhalb", "T0060", "--bis", "1"}).exit_status, 0);
  EXPECT_THAT(read_bytes(file("teil.svg")),
              AllOf(HasSubstr(">T0060<"), HasSubstr(">N0050<"), Not(HasSubstr("T0100<"))));
  const child::Outcome unknown = run({"plan", "rausel", "-o", "x.svg", "--oberhalb", "T0666"});
  EXPECT_EQ(unknown.exit_status, 64);
  EXPECT_THAT(unknown.err, HasSubstr("rausel.sys hat kein Element T0666"));
  EXPECT_EQ(run({"plan", "rausel", "-o", "x.svg", "--oberhalb", "T00601"}).exit_status, 64);
  EXPECT_EQ(run({"plan", "rausel", "-o", "x.svg", "--bis", "-1"}).exit_status, 64);
  EXPECT_FALSE(fs::exists(file("x.svg")));
}

TEST_F(Drawing, SaysByItsStatusThatThereAreFindings) {
  std::string areas = read_bytes(file("rausel.kfl"));
  areas.replace(areas.find("64.50"), 5, "64,50");
  write_bytes(file("rausel.kfl"), areas);
  EXPECT_EQ(run({"plan", "rausel", "-o", "plan.svg"}).exit_status, 1);
  EXPECT_EQ(run({"bericht", "rausel", "-o", "seite.html"}).exit_status, 1);
}

TEST_F(Drawing, RefusesOtherNamesOfFiles) {
  for (const char* name : {"plan", "plan.jpg", "rausel.sys"}) {
    const child::Outcome outcome = run({"plan", "rausel", "-o", name});
    EXPECT_EQ(outcome.exit_status, 64);
    EXPECT_THAT(outcome.err, HasSubstr("der Name endet auf .svg, .png oder .pdf"));
  }
  const child::Outcome outcome = run({"bericht", "rausel", "-o", "rausel.sys"});
  EXPECT_EQ(outcome.exit_status, 64);
  EXPECT_THAT(outcome.err, HasSubstr("Endung .html"));
}

TEST_F(Drawing, SaysWhatIsMissingForPictures) {
  const child::Outcome outcome = run_with_converter("", {"plan", "rausel", "-o", "plan.png"});
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_EQ(
      outcome.err,
      "KV_Schau: Für PNG und PDF fehlt das Programm rsvg-convert (unter Debian im Paket librsvg2-bin); als "
      ".svg geht es ohne.\n");
  EXPECT_FALSE(fs::exists(file("plan.png")));
}

TEST_F(Drawing, KeepsTheOldPictureWhenTheConverterFails) {
  write_bytes(file("plan.png"), "alt");
  const auto before = folder_state::of(folder_.path());
  const child::Outcome outcome =
      run_with_converter("echo 'kaputt' >&2; exit 1\n", {"plan", "rausel", "-o", "plan.png"});
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("rsvg-convert hat aus dem Plan kein Bild gemacht: kaputt"));
  EXPECT_EQ(read_bytes(file("plan.png")), "alt");
  fs::remove_all(folder_.path() / "tools");
  EXPECT_EQ(folder_state::of(folder_.path()), before);
}

TEST_F(Drawing, HandsTheConverterTheDrawing) {
  constexpr const char* script =
      "out=; last=\nwhile [ $# -gt 0 ]; do if [ \"$1\" = --output ]; then out=$2; shift; fi; last=$1; shift; "
      "done\n"
      "read line < \"$last\"; echo \"$line\" > \"$out\"\n";
  const child::Outcome outcome = run_with_converter(script, {"plan", "rausel", "-o", "plan.PDF"});
  EXPECT_EQ(outcome.exit_status, 0) << outcome.err;
  EXPECT_THAT(read_bytes(file("plan.PDF")), StartsWith("<svg"));
}

TEST_F(Drawing, TellsWhatCannotBeRead) {
  for (const char* const command : {"plan", "bericht"}) {
    const std::string target = command == std::string("plan") ? "x.svg" : "x.html";
    const child::Outcome missing = run({command, "nichts", "-o", target});
    EXPECT_EQ(missing.exit_status, 3) << command;
    EXPECT_THAT(missing.err, HasSubstr("nichts.sys\" gibt es nicht"));
    EXPECT_FALSE(fs::exists(file(target)));
  }
  EXPECT_EQ(run({"bericht", "rausel", "-o", "x.html", "--gegen", "nichts"}).exit_status, 3);
  write_bytes(file("alt.sys"), read_bytes(file("rausel.sys")));
  fs::create_directory(file("alt.trs"));
  const child::Outcome older = run({"bericht", "rausel", "-o", "x.html", "--gegen", "alt"});
  EXPECT_EQ(older.exit_status, 3);
  EXPECT_THAT(older.err, HasSubstr("alt.trs ist nicht lesbar: "));
  fs::remove(file("rausel.trs"));
  fs::create_directory(file("rausel.trs"));
  const child::Outcome reaches = run({"bericht", "rausel", "-o", "x.html"});
  EXPECT_EQ(reaches.exit_status, 3);
  EXPECT_THAT(reaches.err, HasSubstr("rausel.trs ist nicht lesbar: "));
  fs::remove(file("rausel.sys"));
  fs::create_directory(file("rausel.sys"));
  const child::Outcome system = run({"plan", "rausel", "-o", "x.svg"});
  EXPECT_EQ(system.exit_status, 3);
  EXPECT_THAT(system.err, HasSubstr("rausel.sys ist nicht lesbar: "));
  EXPECT_FALSE(fs::exists(file("x.svg")));
  EXPECT_FALSE(fs::exists(file("x.html")));
}

TEST_F(Drawing, NamesAFolderThatIsMissing) {
  for (const char* name : {"fehlt/plan.svg", "fehlt/plan.png"}) {
    const child::Outcome outcome = run_with_converter("exit 0\n", {"plan", "rausel", "-o", name});
    EXPECT_EQ(outcome.exit_status, 3);
    EXPECT_THAT(outcome.err, HasSubstr(name));
  }
}

TEST_F(Drawing, ComparesWithAnOlderVariant) {
  fs::create_directory(file("alt"));
  for (const char* extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
    fs::copy(file(std::string("rausel") + extension), file("alt"));
  }
  EXPECT_EQ(run({"bericht", "rausel", "-o", "seite.html", "--gegen", "alt/rausel"}).exit_status, 0);
  EXPECT_THAT(read_bytes(file("seite.html")),
              AllOf(HasSubstr("Vergleich mit alt/rausel"), HasSubstr("Es gibt keinen Unterschied.")));
  const child::Outcome outcome = run({"bericht", "rausel", "-o", "x.html", "--gegen", "fehlt"});
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("fehlt"));
  EXPECT_FALSE(fs::exists(file("x.html")));
}

TEST_F(Drawing, TakesTheAreasOfAResultThatCounts) {
  std::string result = read_bytes(fs::path(KV_EXAMPLES_DIR) / "expected" / "rausel.Akum");
  const std::size_t place = result.find("\nT0010") + 1 + 32;
  ASSERT_EQ(result.substr(place, 10), "    12.400");
  result.replace(place, 10, "    98.765");
  put_result(result, std::chrono::seconds(-5));
  // The sum as KV_Akum has it, which is not that of the rounded parts (15.197 and 0.419).
  ASSERT_THAT(result, HasSubstr("     15.617"));
  EXPECT_EQ(run({"bericht", "rausel", "-o", "seite.html"}).exit_status, 0);
  EXPECT_THAT(read_bytes(file("seite.html")),
              AllOf(HasSubstr("Die Flächen der Transportstrecken stammen aus rausel.Akum."),
                    HasSubstr("98.765"), HasSubstr("15.617,")));

  put_result(result, std::chrono::hours(1));
  EXPECT_LT(run({"bericht", "rausel", "-o", "seite.html"}).exit_status, 2);
  EXPECT_THAT(read_bytes(file("seite.html")), AllOf(HasSubstr("rausel.Akum zählt nicht: "),
                                                    HasSubstr(" ist jünger."), Not(HasSubstr("98.765"))));

  put_result(result.substr(0, result.size() / 2), std::chrono::seconds(-5));
  EXPECT_LT(run({"bericht", "rausel", "-o", "seite.html"}).exit_status, 2);
  EXPECT_THAT(read_bytes(file("seite.html")),
              AllOf(HasSubstr("rausel.Akum zählt nicht: "), Not(HasSubstr("98.765"))));
}

}  // namespace
