// What the import reads from a table, what it builds and what it writes down.

#include "KV_Schau/import/import.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/csv/reader.h"
#include "KV_Schau/import/five_columns.h"
#include "tests/dice.h"

namespace schau::imports {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using variant::AreaUnit;
using variant::TextFile;

using Rows = std::vector<std::vector<std::string>>;

Rows rows_of(std::string_view text, char separator = ',') {
  std::deque<std::string> texts;
  csv::Reader table(text, separator, texts);
  std::vector<std::string_view> fields;
  Rows rows;
  while (table.next(fields) == csv::Reader::Outcome::row) rows.emplace_back(fields.begin(), fields.end());
  return rows;
}

TEST(Csv, TakesQuotationMarksAsTheRfcHasThem) {
  EXPECT_EQ(rows_of("a,\"b,c\",\"d\"\"e\"\r\n\"\",\"zwei\r\nZeilen\",f"),
            (Rows{{"a", "b,c", "d\"e"}, {"", "zwei\r\nZeilen", "f"}}));
  EXPECT_EQ(rows_of("Bach \"Süd\",x\n"), (Rows{{"Bach \"Süd\"", "x"}}));
}

TEST(Csv, TakesAllLineEndsAndPassesOverBlankRows) {
  EXPECT_EQ(rows_of("a;b\nc;d\r\n\r\n ; \ne;f\rg;h", ';'),
            (Rows{{"a", "b"}, {"c", "d"}, {"e", "f"}, {"g", "h"}}));
  EXPECT_EQ(rows_of("a\t\tb\n", '\t'), (Rows{{"a", "", "b"}}));
  EXPECT_THAT(rows_of(""), IsEmpty());
}

TEST(Csv, KnowsTheLineOfARow) {
  std::deque<std::string> texts;
  csv::Reader table("a\r\n\r\n\"b\n\nc\"\r\nd\n", ',', texts);
  std::vector<std::string_view> fields;
  std::vector<std::uint32_t> lines;
  while (table.next(fields) == csv::Reader::Outcome::row) lines.push_back(table.line());
  EXPECT_THAT(lines, ElementsAre(1, 3, 6));
}

TEST(Csv, StopsAtQuotationMarksThatDoNotMatch) {
  for (const std::string_view text : {"a\n\"b,c\nd\n", "a\n\"b\"c,d\n", "a\nb,\"\n"}) {
    std::deque<std::string> texts;
    csv::Reader table(text, ',', texts);
    std::vector<std::string_view> fields;
    EXPECT_EQ(table.next(fields), csv::Reader::Outcome::row);
    EXPECT_EQ(table.next(fields), csv::Reader::Outcome::bad_quotes);
    EXPECT_EQ(table.line(), 2U);
  }
}

// Five columns.

TEST(FiveColumns, HoldAsManyDigitsAsTheyCan) {
  const auto text = [](double number) { return in_five_columns(number).text; };
  EXPECT_EQ(text(12345.6), "12346");
  EXPECT_EQ(text(1234.56), "1235");
  EXPECT_EQ(text(1234.0), "1234");
  EXPECT_EQ(text(123.456), "123.5");
  EXPECT_EQ(text(12.3456), "12.35");
  EXPECT_EQ(text(1.23456), "1.235");
  EXPECT_EQ(text(0.123456), ".1235");
  EXPECT_EQ(text(0.125), "0.125");
  EXPECT_EQ(text(0.00012), ".0001");
  EXPECT_EQ(text(0.0), "0.000");
  EXPECT_EQ(text(99.996), "100.0");
  EXPECT_EQ(text(99999.4), "99999");
  EXPECT_EQ(text(99999.6), "");
}

TEST(FiveColumns, TakeTheUnitThatKeepsMost) {
  const auto best = [](double area, AreaUnit in_force) {
    const WrittenArea written = best_area(area, in_force);
    return fmt::format("{} {}", written.field.text, variant::word_of(written.unit));
  };
  EXPECT_EQ(best(12.5, AreaUnit::qkm), "12.50 qkm");
  EXPECT_EQ(best(12.5, AreaUnit::ha), "1250 ha");
  EXPECT_EQ(best(123.456, AreaUnit::qkm), "12346 ha");
  EXPECT_EQ(best(0.012345, AreaUnit::qkm), "12345 qm");
  EXPECT_EQ(best(0.0000071, AreaUnit::ha), "7.100 qm");
  EXPECT_EQ(best(99999, AreaUnit::qm), "99999 qkm");
  EXPECT_EQ(best(0.0, AreaUnit::ha), "0.000 ha");
  EXPECT_FALSE(best_area(100001, AreaUnit::qkm).field.fits());
}

// Of all texts of five columns and all units none comes nearer: the grid of a unit is as wide as its last
// place.
TEST(FiveColumns, ComeAsNearAsAnyUnitCan) {
  Dice dice(1);
  for (int round = 0; round < 20000; ++round) {
    const double area = std::pow(10.0, -6.0 + 0.001 * static_cast<double>(dice.roll(10900))) *
                        (1.0 + 1e-4 * static_cast<double>(dice.roll(9)));
    double least = 1.0;
    for (const double factor : {1.0, 0.01, 1e-6}) {
      const double number = area / factor;
      for (int decimals = 0; decimals <= 4; ++decimals) {
        const double grid = std::pow(10.0, decimals);
        const double rounded = std::round(number * grid) / grid;
        const double limit = decimals == 0 ? 99999.5 : decimals == 4 ? 0.99995 : std::pow(10.0, 4 - decimals);
        if (rounded >= limit) continue;
        least = std::min(least, std::abs(rounded * factor - area) / area);
      }
    }
    const WrittenArea written = best_area(area, AreaUnit::qkm);
    ASSERT_TRUE(written.field.fits()) << area;
    ASSERT_LE(written.field.text.size(), 5U);
    ASSERT_NEAR(relative_rounding(area, written.field), least, 1e-8) << area << " " << written.field.text;
  }
}

// Tables.

Import import_of(std::string_view text, bool join_outlets = false) {
  static TextFile file;
  file = TextFile::of_bytes(text, "netz.csv");
  return import_table(file, join_outlets);
}

std::string lines_of_elements(const Import& import) {
  std::string text;
  for (std::size_t i = 1; i < import.elements.size(); ++i) {
    const Element& element = import.elements[i];
    const auto name = [&](std::uint32_t other) {
      return other == 0 ? "-" : variant::text_of(import.elements[other].name);
    };
    text += fmt::format("{} {} {} {} > {} {}\n", variant::text_of(element.name), name(element.inflow[0]),
                        name(element.inflow[1]), name(element.inflow[2]), name(element.outflow[0]),
                        name(element.outflow[1]));
  }
  return text;
}

TEST(Table, BecomesSourcesAndReachesInTheOrderOfFlow) {
  const Import import = import_of("id,nach,flaeche_km2,befestigung\nM,,1.5,0.4\na,M,2,\nb,M,0,\n");
  EXPECT_EQ(lines_of_elements(import),
            "N0002 - - - > T0002 -\n"
            "T0002 N0002 - - > T0001 -\n"
            "E0003 - - - > T0003 -\n"
            "T0003 E0003 - - > T0001 -\n"
            "K0001 - - - > T0001 -\n"
            "T0001 K0001 T0002 T0003 > - -\n");
  EXPECT_DOUBLE_EQ(import.text.area, 3.5);
}

TEST(Table, BecomesBranchingsAndBasins) {
  const Import import = import_of(
      "id;nach;flaeche_km2;nach2;anteil;art\n"
      "a;b;1,5;c;70;\nb;m;0,0;;;t\nc;m;;;;B\nv;m;;c;25;V\nn;v;2,0;;;N\nm;;0,0;;;\n");
  EXPECT_EQ(lines_of_elements(import),
            "N0001 - - - > T0001 -\n"
            "T0001 N0001 - - > V0001 -\n"
            "V0001 T0001 - - > T0002 B0003\n"
            "T0002 V0001 - - > T0006 -\n"
            "N0005 - - - > V0004 -\n"
            "V0004 N0005 - - > T0006 B0003\n"
            "B0003 V0001 V0004 - > - T0006\n"
            "T0006 T0002 B0003 V0004 > - -\n");
  EXPECT_EQ(import.text.files[4].bytes,
            "   Name   Ken. Anteil\n"
            "   V0001     1 70.00\n"
            "   V0004     1 25.00\n");
}

TEST(Table, KeepsIdsThatAreNamesAndMakesRoomForThem) {
  const Import import = import_of(
      "id,nach,flaeche_km2,art\nT0002,x y,1,\nx y,,1,\nN0002,x y,3,N\nTabcde,x y,1,T\nt0009,x y,2,\n");
  const std::string elements = lines_of_elements(import);
  EXPECT_THAT(elements, HasSubstr("N0001 - - - > T0002"));  // N0002 is the id of another row
  EXPECT_THAT(elements, HasSubstr("\nN0002 - - - > "));
  EXPECT_THAT(elements, HasSubstr("\nT0001 N0003 "));  // T0002 is taken
  EXPECT_THAT(import.text.files[5].bytes, HasSubstr("\nT0001,x y,Transportstrecke,3,\n"));
}

TEST(Table, CanJoinSeveralOutlets) {
  const std::string_view text = "id,nach,flaeche_km2\na,,1\nb,,2\nc,,3\nd,,4\n";
  const Import refused = import_of(text);
  ASSERT_EQ(refused.table.faults.size(), 1U);
  EXPECT_EQ(refused.table.faults[0].line, 3U);
  EXPECT_EQ(
      refused.table.faults[0].text,
      "4 Auslässe (nach ist leer): a (Zeile 2), b (Zeile 3), c (Zeile 4), d (Zeile 5); ein Netz hat einen, "
      "oder --auslass führt sie zusammen");
  const Import joined = import_of(text, true);
  ASSERT_TRUE(joined.was_taken());
  EXPECT_THAT(lines_of_elements(joined), HasSubstr("P0001 T0001 T0002 - > P0002 -\n"
                                                   "P0002 T0003 T0004 P0001 > - -\n"));
}

TEST(Table, ListsTenOfManyOutlets) {
  std::string text = "id,nach,flaeche_km2\n";
  for (int i = 1; i <= 11; ++i) text += fmt::format("a{},,1\n", i);
  const Import refused = import_of(text);
  ASSERT_EQ(refused.table.faults.size(), 1U);
  EXPECT_EQ(
      refused.table.faults[0].text,
      "11 Auslässe (nach ist leer): a1 (Zeile 2), a2 (Zeile 3), a3 (Zeile 4), a4 (Zeile 5), a5 (Zeile 6), "
      "a6 (Zeile 7), a7 (Zeile 8), a8 (Zeile 9), a9 (Zeile 10), a10 (Zeile 11), ...; ein Netz hat einen, "
      "oder --auslass führt sie zusammen");
}

// Four columns hold 10,000 names of digits, and 1,679,616 of digits and capital letters.
TEST(Table, NamesMoreThanTenThousandElementsWithLettersToo) {
  std::string text = "id,nach,flaeche_km2\nr1,,0\n";
  for (int i = 2; i <= 10'000; ++i) text += fmt::format("r{},r{},0\n", i, i - 1);
  const Import import = import_of(text);
  ASSERT_TRUE(import.was_taken());
  const std::string elements = lines_of_elements(import);
  EXPECT_TRUE(elements.starts_with("E07PS - - - > T07PS -\nT07PS E07PS - - > T07PR -\n"));
  EXPECT_TRUE(elements.ends_with("T0001 T0002 - - > - -\n"));
}

TEST(Table, TakesAPlusBeforeANumber) {
  EXPECT_DOUBLE_EQ(import_of("id,nach,flaeche_km2\na,,+1.5\n").text.area, 1.5);
}

TEST(Table, WritesTheLinesOfTheFiles) {
  const Import import = import_of(
      "\xEF\xBB\xBF"
      "ID,Nach,Flaeche_km2,Befestigung,Name,Station\r\n"
      "7,9,0.5,0.35,\"Mühlbach, oberhalb der Wehranlage\",12.25\r\n9,,123.456,,,\r\n");
  const auto& files = import.text.files;
  EXPECT_EQ(files[0].bytes,
            "Systemlogik\n"
            "   Tag Kennung Bezeichnung         Name    Zulauf 1-3          Ablauf 1-2\n"
            "--------------------------------------------------------------------------\n"
            "                M\xFChlbach, oberhal  K0001                       T0001\n"
            "                M\xFChlbach, oberhal  T0001   K0001               T0002\n"
            "                                   N0002                       T0002\n"
            "                                   T0002   N0002 T0001         ENDE\n");
  EXPECT_EQ(files[1].bytes,
            "   Name   Areal\n"
            "          ha\n"
            "   N0002  12346\n");
  EXPECT_EQ(files[2].bytes,
            "   Name   Areal Bef.\n"
            "          qkm\n"
            "   K0001  0.500 0.35\n");
  EXPECT_EQ(files[3].bytes,
            "   Name        km                                      Profil\n"
            "   T0001                                                Profil\n"
            "            12.250\n"
            "   T0002\n");
  EXPECT_EQ(files[4].bytes, "");
  EXPECT_EQ(files[5].bytes,
            "name,id,was,zeile,bezeichnung\n"
            "K0001,7,kanalisierte Fläche,2,\"Mühlbach, oberhalb der Wehranlage\"\n"
            "T0001,7,Transportstrecke,2,\"Mühlbach, oberhalb der Wehranlage\"\n"
            "N0002,9,natürliche Fläche,3,\n"
            "T0002,9,Transportstrecke,3,\n");
}

TEST(Table, TellsRoundingsAboveAThousandth) {
  const Import import = import_of(
      "id,nach,flaeche_km2,befestigung,nach2,anteil\n"
      "a,b,0.00000001234,,c,0.01234\nb,c,99999.4,0.001234,,\nc,,12345.6,0.5,,\n");
  ASSERT_TRUE(import.was_taken()) << faults_text(import.table);
  std::vector<std::string> told;
  for (const Rounding& rounding : import.text.roundings)
    told.push_back(fmt::format("{} {} {:g} {:g}", import.table.rows[rounding.row].line, rounding.column,
                               rounding.meant, rounding.written));
  EXPECT_THAT(told, ElementsAre("2 flaeche_km2 1.234e-08 1.23e-08", "2 anteil 0.01234 0.0123",
                                "3 befestigung 0.001234 0.0012"));
}

TEST(Table, IsReadInWindows1252Too) {
  const Import import = import_of("id;nach;flaeche_km2;name\nM\xFChle;;1,0;K\xF6nigsgraben\n");
  ASSERT_TRUE(import.was_taken());
  EXPECT_EQ(import.table.rows[0].id, "Mühle");
  EXPECT_EQ(import.table.encoding, variant::Encoding::windows_1252);
  EXPECT_THAT(import.text.files[0].bytes, HasSubstr("K\xF6nigsgraben"));
  EXPECT_THAT(import.text.files[5].bytes, HasSubstr("N0001,Mühle,natürliche Fläche,2,Königsgraben\n"));
}

struct FaultCase {
  std::string_view text;
  std::uint32_t line;
  std::string_view fault;
};

TEST(Table, IsRefusedWithRowAndReason) {
  const std::vector<FaultCase> cases = {
      {"", 0, "hat keine Zeile mit Spaltennamen"},
      {"id,nach,flaeche_km2\n", 0, "hat keine Zeile mit Daten"},
      {"id,nach,area\na,,1\n", 1, "Die Spalte \"flaeche_km2\" fehlt; vorhanden: id, nach, area"},
      {"id,nach,flaeche_km2,Nach\na,,1,\n", 1, "Die Spalte \"Nach\" kommt zweimal vor"},
      {"id,nach,flaeche_km2\na,,1,5\n", 2, "4 statt 3 Felder"},
      {"id,nach,flaeche_km2\na,\n", 2, "2 statt 3 Felder"},
      {"id,nach,flaeche_km2\n\"a,,1\n", 2, "Anführungszeichen"},
      {"id,nach,flaeche_km2\n ,,1\n", 2, "id fehlt"},
      {"id,nach,flaeche_km2\na,,\n", 2, "flaeche_km2 fehlt"},
      {"id,nach,flaeche_km2\na,,zwei\n", 2, "flaeche_km2 \"zwei\" ist keine Zahl"},
      {"id,nach,flaeche_km2\na,,nan\n", 2, "flaeche_km2 \"nan\" ist keine Zahl"},
      {"id,nach,flaeche_km2\na,,1e999\n", 2, "ist keine Zahl"},
      {"id;nach;flaeche_km2\na;;1.234,5\n", 2, "ist keine Zahl"},
      {"id,nach,flaeche_km2\na,,-0.5\n", 2, "flaeche_km2 -0.5 ist negativ"},
      {"id,nach,flaeche_km2\na,,100001\n", 2, "flaeche_km2 100001 ist zu groß"},
      {"id,nach,flaeche_km2,befestigung\na,,1,35\n", 2, "befestigung 35 liegt nicht zwischen 0 und 1"},
      {"id,nach,flaeche_km2,befestigung\na,,1,-0.1\n", 2, "befestigung -0.1 liegt nicht"},
      {"id,nach,flaeche_km2,nach2,anteil\na,b,1,c,101\nb,c,1,,\nc,,1,,\n", 2,
       "anteil 101 liegt nicht zwischen 0 und 100"},
      {"id,nach,flaeche_km2,nach2\na,b,1,c\nb,c,1,\nc,,1,\n", 2, "anteil fehlt"},
      {"id,nach,flaeche_km2,anteil\na,b,1,50\nb,,1,\n", 2, "anteil ohne nach2"},
      {"id,nach,flaeche_km2,nach2,anteil\na,b,1,b,50\nb,,1,,\n", 2, "nach und nach2 sind dasselbe"},
      {"id,nach,flaeche_km2,nach2,anteil\na,,1,b,50\nb,,1,,\n", 2, "nach2 ohne nach"},
      {"id,nach,flaeche_km2,station\na,,1,10000\n", 2, "station 10000 liegt nicht zwischen"},
      {"id,nach,flaeche_km2,art\na,,1,X\n", 2, "art \"X\" gibt es nicht"},
      {"id,nach,flaeche_km2,art\na,,1,TT\n", 2, "art \"TT\" gibt es nicht"},
      {"id,nach,flaeche_km2,art\na,b,1,E\nb,,1,\n", 2, "art E) kann kein flaeche_km2 haben"},
      {"id,nach,flaeche_km2,art,befestigung\na,b,1,N,0.5\nb,,1,,\n", 2, "gemeint ist wohl art K"},
      {"id,nach,flaeche_km2,art,nach2\na,b,,P,c\nb,c,1,,\nc,,1,,\n", 2, "art P kann kein nach2 haben"},
      {"id,nach,flaeche_km2,art,nach2,anteil\na,b,,B,c,50\nb,c,1,,,\nc,,1,,,\n", 2, "Ein Becken (art B)"},
      {"id;nach;flaeche_km2\na;b;1,5\nb;;2.5\n", 3, "Dezimalkomma (Zeile 2) und Punkt (Zeile 3)"},
      {"id,nach,flaeche_km2\na,b,1\nb,,1\na,b,2\n", 4, "id \"a\" steht schon in Zeile 2"},
      {"id,nach,flaeche_km2\na,0,1\n", 2, "nach \"0\" gibt es nicht als id; am Auslass bleibt nach leer"},
      {"id,nach,flaeche_km2,art\na,b,1,\nb,,1,N\n", 2, "nach \"b\" (Zeile 3) ist eine Quelle (art N)"},
      {"id,nach,flaeche_km2\na,a,1\nm,,1\n", 2, "Kreis: a → a"},
      {"id,nach,flaeche_km2\nm,,1\na,b,1\nb,c,1\nc,a,1\nd,a,1\n", 3, "Kreis: a → b → c → a"},
      {"\xFF\xFEi\0d\0", 0, "UTF-16"},
  };
  for (const FaultCase& refused : cases) {
    SCOPED_TRACE(refused.text);
    const Import import = import_of(refused.text);
    ASSERT_EQ(import.table.fault_count, 1U) << faults_text(import.table);
    EXPECT_EQ(import.table.faults[0].line, refused.line);
    EXPECT_THAT(import.table.faults[0].text, HasSubstr(refused.fault));
    EXPECT_THAT(import.elements, IsEmpty());
  }
}

TEST(Table, ListsEveryLoopOnce) {
  const Import import = import_of("id,nach,flaeche_km2\na,b,1\nb,a,1\nx,y,1\ny,z,1\nz,x,1\nm,,1\n");
  std::vector<std::string> loops;
  for (const Fault& fault : import.table.faults) loops.push_back(fault.text);
  EXPECT_THAT(loops, ElementsAre("Kreis: a → b → a", "Kreis: x → y → z → x"));
}

TEST(Table, ListsTwelveRowsOfALongLoop) {
  std::string text = "id,nach,flaeche_km2\nm,,1\n";
  for (int i = 1; i <= 14; ++i) text += fmt::format("a{},a{},1\n", i, i % 14 + 1);
  const Import import = import_of(text);
  ASSERT_EQ(import.table.faults.size(), 1U);
  EXPECT_EQ(import.table.faults[0].text,
            "Kreis: a1 → a2 → a3 → a4 → a5 → a6 → a7 → a8 → a9 → a10 → a11 → a12 → ... (2 weitere) → a1");
}

TEST(Table, CountsMoreFaultsThanItLists) {
  std::string text = "id,nach,flaeche_km2\n";
  for (int i = 0; i < 250; ++i) text += fmt::format("{},fort,1\n", i);
  const Import import = import_of(text);
  EXPECT_EQ(import.table.fault_count, 250U);
  EXPECT_EQ(import.table.faults.size(), most_faults);
  EXPECT_THAT(faults_text(import.table), HasSubstr("netz.csv: ... und 150 weitere Fehler\n"));
}

// Gauges.

// A table in which so many reaches drain into one.
std::string star(int arms, bool with_area) {
  std::string text = fmt::format("id,nach,flaeche_km2\nm,,{}\n", with_area ? 1 : 0);
  for (int i = 0; i < arms; ++i) text += fmt::format("{},m,1\n", i);
  return text;
}

TEST(Gauges, AreAsFewAndAsFlatAsThreeInflowsAllow) {
  for (const bool with_area : {false, true}) {
    for (int arms = 1; arms <= 100; ++arms) {
      const Import import = import_of(star(arms, with_area));
      ASSERT_TRUE(import.was_taken());
      const int inflows = arms + (with_area ? 1 : 0);
      const auto gauges = std::ranges::count(import.elements, Role::gauge, &Element::role);
      // A gauge replaces up to three inflows by one.
      EXPECT_EQ(gauges, inflows <= 3 ? 0 : (inflows - 2) / 2) << inflows;
      std::size_t deepest = 0;
      for (std::size_t i = 1; i < import.elements.size(); ++i) {
        if (import.elements[i].type != 'T') continue;
        std::size_t depth = 0;
        for (std::uint32_t j = import.elements[i].outflow[0]; j != 0; j = import.elements[j].outflow[0])
          ++depth;
        deepest = std::max(deepest, depth);
      }
      const auto limit = static_cast<std::size_t>(std::ceil(std::log(inflows + 1) / std::log(3.0) - 1e-9));
      EXPECT_LE(deepest, std::max<std::size_t>(1, limit + (with_area ? 1 : 0))) << inflows;
    }
  }
}

// Whatever the order of the rows: every element stands behind its inflows, links stand at both ends, names
// are unique, and the same table gives the same bytes.
TEST(Elements, FormANetworkInOrder) {
  for (std::uint32_t seed = 1; seed <= 200; ++seed) {
    Dice dice(seed);
    const std::size_t count = 2 + dice.roll(60);
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < count; ++i) {
      std::string line = fmt::format("{},", i);
      if (i + 1 < count) line += fmt::format("{}", i + 1 + dice.roll(count - i - 1));
      std::string second = ",";
      if (i + 2 < count && dice.one_in(4)) second = fmt::format("{},40", i + 1 + dice.roll(count - i - 1));
      if (line.ends_with("," + second.substr(0, second.find(',')))) second = ",";
      lines.push_back(line + fmt::format(",{}.5,{}\n", dice.roll(3), second));
    }
    dice.shuffle(lines);
    std::string text = "id,nach,flaeche_km2,nach2,anteil\n";
    for (const std::string& line : lines) text += line;
    const Import import = import_of(text);
    ASSERT_TRUE(import.was_taken()) << faults_text(import.table) << text;
    std::vector<variant::NameKey> names;
    for (std::uint32_t i = 1; i < import.elements.size(); ++i) {
      const Element& element = import.elements[i];
      names.push_back(element.name);
      EXPECT_EQ(variant::letter_of(element.name), element.type);
      for (const std::uint32_t j : element.inflow) {
        ASSERT_LT(j, i);
        if (j != 0) {
          EXPECT_EQ(std::ranges::count(import.elements[j].outflow, i), 1);
        }
      }
      for (const std::uint32_t j : element.outflow) {
        if (j != 0) {
          EXPECT_EQ(std::ranges::count(import.elements[j].inflow, i), 1);
        }
      }
    }
    std::ranges::sort(names);
    EXPECT_EQ(std::ranges::adjacent_find(names), names.end());
    const Import again = import_of(text);
    for (std::size_t file = 0; file < import.text.files.size(); ++file)
      EXPECT_EQ(import.text.files.at(file).bytes, again.text.files.at(file).bytes);
  }
}

TEST(RandomTables, DoNoHarm) {
  Dice dice(9);
  constexpr std::string_view pieces[] = {"id",  "nach", "flaeche_km2", "nach2", "anteil", ",",  ",", ";",
                                         "\t",  "\n",   "\r\n",        "\"",    "\"\"",   "1",  "2", "0.5",
                                         "1,5", "-1",   "\xFC",        "ü",     "V",      "art"};
  for (int round = 0; round < 3000; ++round) {
    std::string text = dice.one_in(2) ? "id,nach,flaeche_km2\n" : "";
    for (std::size_t k = dice.roll(60); k-- > 0;) {
      text += dice.one_in(10) ? std::string(1, static_cast<char>(dice.roll(256)))
                              : pieces[dice.roll(std::size(pieces))];
    }
    const Import import = import_of(text, dice.one_in(2));
    const std::string words = import.was_taken() ? text_of(import, "netz") : faults_text(import.table);
    EXPECT_FALSE(words.empty());
    EXPECT_EQ(words.find_first_of("\x1B\t\r"), std::string::npos);
  }
}

}  // namespace
}  // namespace schau::imports
