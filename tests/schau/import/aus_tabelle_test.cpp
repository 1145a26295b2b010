// The command aus-tabelle as a program: what it says, what it writes, and what it leaves alone.

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
using ::testing::HasSubstr;

constexpr std::string_view table =
    "id;nach;flaeche_km2;befestigung;name;gewaesser\n"
    "1;3;1,5;;Oberlauf;Rausel\n"
    "2;3;0,25;0,4;Ortslage;Rausel\n"
    "3;;0,00000000123;;Mündung;Rausel\n";

class AusTabelle : public testing::Test {
 protected:
  AusTabelle() { test_files::write_bytes(folder_.file("netz.csv"), table); }

  child::Outcome run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "aus-tabelle");
    return program::run(arguments, folder_.path());
  }

  test_files::TemporaryFolder folder_;
};

TEST_F(AusTabelle, TellsWhatItReadAndWrote) {
  const child::Outcome outcome = run({"netz.csv", "-o", "neu"});
  EXPECT_EQ(outcome.out,
            "neu: 6 Elemente aus 3 Zeilen: 3 Transportstrecken (T), 2 natürliche Flächen (N), 1 kanalisierte "
            "Fläche (K)\n"
            "  gelesen: netz.csv, Trennzeichen Semikolon, Dezimalkomma\n"
            "  nicht gelesene Spalten: gewaesser\n"
            "  Fläche: 1.750 km², in den Dateien 1.750 km²\n"
            "  um mehr als 0.1 % gerundet: 1 Zahl\n"
            "    netz.csv:4: flaeche_km2 1.23e-09 von 3 wird 1.2e-09 (-2.44 %)\n"
            "  geschrieben: neu.sys, neu.nfl, neu.kfl, neu.trs, neu.namen.csv\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit_status, 1);
  EXPECT_EQ(test_files::read_bytes(folder_.file("neu.kfl")),
            "   Name   Areal Bef.\n          qkm\n   K0002  0.250 0.40\n");
  EXPECT_EQ(program::run({"pruefen", "neu"}, folder_.path()).exit_status, 0);
}

TEST_F(AusTabelle, TellsOutletsThatItJoined) {
  test_files::write_bytes(folder_.file("auslaesse.csv"), "id,nach,flaeche_km2\na,,1\nb,,2\nc,,3\nd,,4.5\n");
  const child::Outcome outcome = run({"auslaesse.csv", "-o", "neu", "--auslass"});
  EXPECT_EQ(outcome.out,
            "neu: 10 Elemente aus 4 Zeilen: 4 Transportstrecken (T), 4 natürliche Flächen (N), 2 Pegel (P)\n"
            "  gelesen: auslaesse.csv, Trennzeichen Komma, Dezimalpunkt\n"
            "  1 Pegel zwischengesetzt, wo mehr als drei Elemente zufließen\n"
            "  4 Auslässe im Pegel P0002 zusammengeführt\n"
            "  Fläche: 10.500 km², in den Dateien 10.500 km²\n"
            "  geschrieben: neu.sys, neu.nfl, neu.trs, neu.namen.csv\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit_status, 0);
}

TEST_F(AusTabelle, TellsTheSeparatorAndTheDecimalMark) {
  test_files::write_bytes(folder_.file("netz.csv"), "id\tnach\tflaeche_km2\na\t\t1,5\n");
  EXPECT_THAT(run({"netz.csv", "-o", "neu"}).out,
              HasSubstr("  gelesen: netz.csv, Trennzeichen Tabulator, Dezimalkomma\n"));
}

TEST_F(AusTabelle, OverwritesOnlyWhenAsked) {
  test_files::write_bytes(folder_.file("neu.nfl"), "alt");
  const folder_state::State before = folder_state::of(folder_.path());
  const child::Outcome refused = run({"netz.csv", "-o", "neu.sys"});
  EXPECT_EQ(refused.err,
            "KV_Schau: Schon vorhanden: neu.nfl; mit --ueberschreiben werden die Dateien ersetzt.\n"
            "Hilfe: KV_Schau aus-tabelle --help\n");
  EXPECT_EQ(refused.exit_status, 64);
  EXPECT_EQ(folder_state::of(folder_.path()), before);
  EXPECT_EQ(run({"netz.csv", "-o", "neu", "--ueberschreiben"}).exit_status, 1);
  EXPECT_THAT(test_files::read_bytes(folder_.file("neu.nfl")), HasSubstr("N0001"));
}

TEST_F(AusTabelle, NeverOverwritesTheTableItself) {
  fs::rename(folder_.file("netz.csv"), folder_.file("neu.namen.csv"));
  EXPECT_EQ(run({"neu.namen.csv", "-o", "neu", "--ueberschreiben"}).exit_status, 64);
  EXPECT_EQ(test_files::read_bytes(folder_.file("neu.namen.csv")), table);
}

TEST_F(AusTabelle, RefusesATableWithEveryRowAndWritesNothing) {
  test_files::write_bytes(folder_.file("netz.csv"), "id,nach,flaeche_km2\na,b,-1\nb,,x\n");
  const folder_state::State before = folder_state::of(folder_.path());
  const child::Outcome outcome = run({"netz.csv", "-o", "neu"});
  EXPECT_EQ(outcome.err,
            "netz.csv:2: Fehler: flaeche_km2 -1 ist negativ\n"
            "netz.csv:3: Fehler: flaeche_km2 \"x\" ist keine Zahl\n"
            "KV_Schau: Nichts geschrieben.\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.exit_status, 2);
  EXPECT_EQ(folder_state::of(folder_.path()), before);
}

TEST_F(AusTabelle, WritesAllFilesOrNone) {
  fs::create_directory(folder_.file("neu.trs"));
  const folder_state::State before = folder_state::of(folder_.path());
  const child::Outcome outcome = run({"netz.csv", "-o", "neu", "--ueberschreiben"});
  EXPECT_THAT(outcome.err, HasSubstr("neu.trs kann nicht geschrieben werden"));
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_EQ(folder_state::of(folder_.path()), before);
}

TEST_F(AusTabelle, TellsATableThatIsNotThere) {
  EXPECT_EQ(run({"nichts.csv", "-o", "neu"}).err, "KV_Schau: Die Datei nichts.csv gibt es nicht.\n");
  EXPECT_EQ(run({".", "-o", "neu"}).exit_status, 3);
  EXPECT_EQ(run({"netz.csv", "-o", "nicht/da"}).exit_status, 3);
}

TEST_F(AusTabelle, RefusesNamesThatARunCouldNotTake) {
  for (const std::string& name : {std::string("zwei Worte"), std::string(117, 'x'), std::string("folder/")}) {
    EXPECT_EQ(run({"netz.csv", "-o", name}).exit_status, 64) << name;
  }
}

}  // namespace
