// The command vergleichen as a program: exit status and refusals. What it shows is held elsewhere.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/schau/folder_state.h"
#include "tests/schau/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

class Vergleichen : public testing::Test {
 protected:
  // The example as "alt", and as "neu" with another area.
  Vergleichen() {
    for (const char* const extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
      const std::string bytes =
          test_files::read_bytes(fs::path(KV_EXAMPLES_DIR) / ("rausel" + std::string(extension)));
      test_files::write_bytes(folder_.file("alt" + std::string(extension)), bytes);
      test_files::write_bytes(folder_.file("neu" + std::string(extension)), bytes);
    }
    replace("neu.nfl", "N0010  12.40", "N0010  12.90");
  }

  void replace(const std::string& file, std::string_view old_text, std::string_view new_text) {
    std::string bytes = test_files::read_bytes(folder_.file(file));
    bytes.replace(bytes.find(old_text), old_text.size(), new_text);
    test_files::write_bytes(folder_.file(file), bytes);
  }

  child::Outcome run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "vergleichen");
    return program::run(arguments, folder_.path());
  }

  test_files::TemporaryFolder folder_;
};

TEST_F(Vergleichen, EndsWithTheAnswer) {
  EXPECT_EQ(run({"alt", "neu"}).exit_status, 1);
  EXPECT_EQ(run({"alt", "alt.sys"}).exit_status, 0);
  EXPECT_EQ(run({"alt", "neu", "--json"}).exit_status, 1);
}

TEST_F(Vergleichen, WritesNothing) {
  const folder_state::State before = folder_state::of(folder_.path());
  run({"alt", "neu"});
  EXPECT_EQ(folder_state::of(folder_.path()), before);
}

TEST_F(Vergleichen, TakesATolerance) {
  EXPECT_THAT(run({"alt", "neu", "--toleranz", "0.4"}).out, HasSubstr("Ergebnisse geändert: 5 von 10"));
  const child::Outcome outcome = run({"alt", "neu", "--toleranz", "0.6"});
  EXPECT_THAT(outcome.out, HasSubstr("0 von 10 Strecken mit anderem Ergebnis"));
  EXPECT_EQ(outcome.exit_status, 1) << "the input differs";
  for (const char* const tolerance : {"-1", "nan", "inf", "viel"})
    EXPECT_EQ(run({"alt", "neu", "--toleranz", tolerance}).exit_status, 64) << tolerance;
}

TEST_F(Vergleichen, WritesJsonThatCanBeRead) {
  const auto json = nlohmann::json::parse(run({"alt", "neu", "--json"}).out);
  EXPECT_EQ(json["gleich"], false);
  EXPECT_EQ(json["eingaben"].size(), 1U);
  EXPECT_EQ(json["eingaben"][0]["stelle_neu"]["zeile"], 5);
  EXPECT_EQ(json["ergebnisse"][0]["ursachen"][0]["element"], "N0010");
  EXPECT_NEAR(json["ergebnisse"][0]["neu"]["gesamt_km2"].get<double>(), 13.545, 1e-9);
}

TEST_F(Vergleichen, ShowsTwentyOfEachKindUnlessAllAreWanted) {
  std::string areas = test_files::read_bytes(folder_.file("neu.sys"));
  std::string more;
  for (int k = 10; k < 40; ++k)
    more += std::string(35, ' ') + "N09" + std::to_string(k) + std::string(23, ' ') + "T0100\n";
  areas.insert(areas.find("                Rausel M"), more);
  test_files::write_bytes(folder_.file("neu.sys"), areas);
  const std::string some = run({"alt", "neu"}).out;
  EXPECT_THAT(some, HasSubstr("Hinzugekommen: 30\n"));
  EXPECT_THAT(some, HasSubstr("N0929"));
  EXPECT_THAT(some, testing::Not(HasSubstr("N0930")));
  EXPECT_THAT(some, HasSubstr("... 10 weitere; --alle zeigt alle\n"));
  EXPECT_THAT(run({"alt", "neu", "--alle"}).out, HasSubstr("N0939"));
}

TEST_F(Vergleichen, WarnsOfVariantsThatARunWouldRefuse) {
  replace("neu.sys", "P0010   T0010", "P0010   T0099");
  EXPECT_EQ(
      run({"alt", "neu"}).err,
      "neu: Warnung: 3 Fehler; verglichen wird, was die Dateien ergäben. Näheres: KV_Schau pruefen neu\n");
  EXPECT_EQ(run({"ein Name", "neu"}).exit_status, 64);
}

TEST_F(Vergleichen, TellsFilesThatAreMissingOrBroken) {
  EXPECT_EQ(run({"alt", "nichts"}).exit_status, 3);
  EXPECT_EQ(run({"nichts.csv", "nichts.json"}).exit_status, 3);
  test_files::write_bytes(folder_.file("kaputt.csv"), "a,b\n");
  EXPECT_EQ(run({"kaputt.csv", "kaputt.csv"}).exit_status, 3);
  fs::remove(folder_.file("neu.nfl"));
  fs::create_directory(folder_.file("neu.nfl"));
  const child::Outcome outcome = run({"alt", "neu"});
  EXPECT_THAT(outcome.err, HasSubstr("neu.nfl ist nicht lesbar"));
  EXPECT_EQ(outcome.exit_status, 3);
}

TEST_F(Vergleichen, RefusesAVariantBesideAResult) {
  EXPECT_EQ(run({"alt", "alt.csv"}).exit_status, 64);
  EXPECT_EQ(run({"alt"}).exit_status, 64);
}

}  // namespace
