// Results that lie in files: what is read of them, and how they are compared.

#include "KV_Schau/compare/result_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KV_Schau/compare/comparison.h"
#include "KV_Schau/compare/view.h"
#include "KV_Schau/run/table_output.h"
#include "KV_Schau/run/whole_file.h"
#include "tests/schau/bed.h"
#include "tests/test_files.h"

namespace schau::compare {
namespace {

using ::testing::HasSubstr;

const std::string table_text = schau_test::bytes_of(
    "netz: akkumulierte Flächen [qkm]\n"
    "\n"
    "Name   Station   Zulauf\n"
    "\n"
    "\n" +
    std::string(99, '-') + "\n" +
    "T0010    18.250  N0010    12.400    12.400       0.645     0.645       0.226     0.226       13.045\n"
    "                 KÄ010\n"
    "T0020  ********  T0010     1.000    13.400       0.000     0.645         NaN     0.226   **********\n");

ResultTable read(std::string_view bytes, const std::string& name) {
  const test_files::TemporaryFolder folder;
  test_files::write_bytes(folder.file(name), bytes);
  return read_result(folder.file(name), name);
}

std::string csv(const run::CsvForm& form) {
  std::string text;
  run::append_csv_titles(text, form);
  for (const run::Reach& reach : run::parse_table(table_text).reaches) run::append_csv_row(text, reach, form);
  return text;
}

std::string json() {
  std::string text = "{\"variante\": \"netz\", \"strecken\": [";
  for (const run::Reach& reach : run::parse_table(table_text).reaches) {
    if (!text.ends_with('[')) text += ",";
    run::append_json_row(text, reach);
  }
  return text + "]}";
}

void expect_the_table(const ResultTable& table) {
  ASSERT_EQ(table.rows.size(), 2U);
  const ResultRow& row = table.rows[0];
  EXPECT_EQ(row.name, variant::name_of("T0010"));
  EXPECT_EQ(row.inflow[0], variant::name_of("N0010"));
  EXPECT_EQ(row.inflow[1], variant::name_of(schau_test::bytes_of("KÄ010")));
  EXPECT_EQ(row.inflow[2], variant::blank_name);
  EXPECT_EQ(row.station.value, 18.25);
  EXPECT_EQ(row.sums[0].value, 12.4);
  EXPECT_EQ(row.sums[4].value, 0.226);
  EXPECT_EQ(row.sums[6].value, 13.045);
  EXPECT_EQ(table.rows[1].station.kind, run::Number::Kind::too_wide);
  EXPECT_EQ(table.rows[1].sums[4].kind, run::Number::Kind::not_a_number);
}

TEST(ResultTable, IsTheSameInAllForms) {
  const ResultTable table = read(table_text, "netz.Akum");
  expect_the_table(table);
  EXPECT_EQ(table.rows[1].line, 9U);
  expect_the_table(read(csv(run::plain_csv), "netz.csv"));
  expect_the_table(read(csv(run::german_csv), "netz.CSV"));
  expect_the_table(read(json(), "netz.json"));
  for (const ResultTable& other : {read(csv(run::german_csv), "netz.csv"), read(json(), "netz.json")})
    EXPECT_TRUE(compare(table, other).is_equal());
}

TEST(ResultTable, TakesColumnsByTheirTitles) {
  std::string text = csv(run::plain_csv);
  text.insert(text.find("\r\n"), ",Ordnung");
  text.insert(text.find("\r\n", text.find("T0010")), ",1");
  text.insert(text.rfind("\r\n"), ",2");
  expect_the_table(read(text, "netz.csv"));
}

struct BadResult {
  std::string bytes;
  std::string name;
  std::string reason;
};

TEST(ResultTable, IsRefusedWhenItIsNotWhole) {
  std::string without_title = csv(run::plain_csv);
  without_title.replace(without_title.find("Station [km]"), 12, "Stationierung");
  std::string without_number = csv(run::plain_csv);
  without_number.replace(without_number.find("12.400"), 6, "zwölf");
  std::string cut = csv(run::plain_csv);
  cut.resize(cut.size() - 20);
  std::string json_cut = json();
  json_cut.resize(json_cut.size() - 20);
  std::string half_number = csv(run::plain_csv);
  half_number.replace(half_number.find("12.400"), 6, "12.4x0");
  std::string no_number = csv(run::plain_csv);
  no_number.replace(no_number.find("12.400"), 6, "");
  std::string bad_quotes = csv(run::plain_csv);
  bad_quotes.replace(bad_quotes.find("T0020"), 5, "\"T0020\"x");
  std::string truth = json();
  truth.replace(truth.find("12.4"), 4, "true");
  const std::vector<BadResult> results = {
      {half_number, "a.csv", "Zeile 2 enthält eine unlesbare Zahl: natürliche Fläche direkt [km²]"},
      {no_number, "a.csv", "Zeile 2 enthält eine unlesbare Zahl: natürliche Fläche direkt [km²]"},
      {bad_quotes, "a.csv", "Zeile 3 ist keine Zeile der Ergebnistabelle"},
      {truth, "a.json", "Strecke 1 ist nicht lesbar"},
      {"{\"strecken\": 7}", "a.json", "kein JSON, wie \"tabelle\" es schreibt"},
      {"{\"reaches\": []}", "a.json", "kein JSON, wie \"tabelle\" es schreibt"},
      {table_text.substr(0, table_text.size() - 5), "a.Akum", "bricht in Zeile 9 ab"},
      {"", "a.csv", "Die Datei ist leer"},
      {without_title, "a.csv", "Die Spalte \"Station [km]\" fehlt"},
      {without_number, "a.csv", "Zeile 2 enthält eine unlesbare Zahl: natürliche Fläche direkt [km²]"},
      {cut, "a.csv", "Zeile 3 ist keine Zeile der Ergebnistabelle"},
      {json_cut, "a.json", "kein JSON"},
      {"[]", "a.json", "kein JSON, wie \"tabelle\" es schreibt"},
      {"{\"strecken\": [{\"strecke\": \"T0010\"}]}", "a.json", "Strecke 1 ist nicht lesbar"},
      {"{\"strecken\": [7]}", "a.json", "Strecke 1 ist nicht lesbar"},
  };
  for (const BadResult& result : results) {
    SCOPED_TRACE(result.reason);
    try {
      read(result.bytes, result.name);
      ADD_FAILURE() << "not refused";
    } catch (const run::FileFault& fault) {
      EXPECT_THAT(fault.what(), HasSubstr(result.name + ": "));
      EXPECT_THAT(fault.what(), HasSubstr(result.reason));
    }
  }
}

TEST(ResultTable, IsKnownByItsName) {
  for (const char* const name : {"a.Akum", "b/c.AKUM", "a.csv", "a.Json"})
    EXPECT_TRUE(is_result_name(name)) << name;
  for (const char* const name : {"a", "a.sys", "a.csv/b", "csv"}) EXPECT_FALSE(is_result_name(name)) << name;
}

TEST(ResultTables, AreComparedRowByRow) {
  ResultTable older = read(table_text, "alt.Akum");
  older.rows.push_back(older.rows[0]);
  older.rows.back().name = variant::name_of("T0030");
  ResultTable newer = read(table_text, "neu.Akum");
  newer.rows[0].inflow[1] = variant::name_of("K0020");
  newer.rows[0].station.value = 18.5;
  newer.rows[0].sums[6].value = 13.047;
  newer.rows[1].sums[6] = {run::Number::Kind::number, 14.045};
  const Comparison comparison = compare(older, newer);
  EXPECT_FALSE(comparison.is_of_variants);
  ASSERT_EQ(comparison.changes.size(), 3U);
  EXPECT_EQ(comparison.changes[0].kind, ChangeKind::moved);
  EXPECT_EQ(comparison.changes[1].kind, ChangeKind::gone);
  EXPECT_EQ(comparison.changes[2].input, Input::station);
  ASSERT_EQ(comparison.reaches.size(), 2U);
  EXPECT_EQ(comparison.reaches[0].name, variant::name_of("T0020"))
      << "a number that was none before comes first";
  EXPECT_TRUE(std::isinf(comparison.reaches[0].effect));
  EXPECT_NEAR(comparison.reaches[1].effect, 0.002, 1e-9);
}

// Numbers that are none, in the second row of the table.
TEST(ResultTables, KnowEqualNumbersThatAreNone) {
  const double infinite = std::numeric_limits<double>::infinity();
  const std::vector<run::Number> numbers = {run::Number::too_wide(),
                                            run::Number::not_a_number(),
                                            {run::Number::Kind::number, infinite},
                                            {run::Number::Kind::number, -infinite},
                                            {run::Number::Kind::number, 1.0}};
  ResultTable older = read(table_text, "alt.Akum");
  ResultTable newer = older;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    for (std::size_t j = 0; j < numbers.size(); ++j) {
      older.rows[1].sums[6] = older.rows[1].station = numbers[i];
      newer.rows[1].sums[6] = newer.rows[1].station = numbers[j];
      const Comparison comparison = compare(older, newer);
      EXPECT_EQ(comparison.is_equal(), i == j) << i << " " << j;
      if (i != j) {
        EXPECT_TRUE(std::isinf(comparison.reaches.at(0).effect)) << i << " " << j;
      }
    }
  }
}

std::string text_of(const Comparison& comparison) {
  std::string text;
  tell_text(comparison, 0, [&](std::string_view part) { text += part; });
  return text;
}

nlohmann::json json_of(const Comparison& comparison) {
  std::string text;
  tell_json(comparison, [&](std::string_view part) { text += part; });
  return nlohmann::json::parse(text);
}

TEST(ResultTables, AreComparedInWords) {
  const ResultTable older = read(table_text, "alt.Akum");
  EXPECT_EQ(text_of(compare(older, older)), "alt.Akum → alt.Akum, Toleranz 0.001 km²\nGleich: 2 Strecken\n");
  ResultTable newer = read(table_text, "neu.Akum");
  newer.rows.push_back(newer.rows[0]);
  newer.rows.back().name = variant::name_of("T0030");
  newer.rows[0].sums[5].value += 0.0005;
  newer.rows[0].sums[6].value -= 2.5;
  newer.rows[0].inflow = {variant::blank_name, variant::blank_name, variant::blank_name};
  newer.rows[1].sums[4] = {run::Number::Kind::number, 0.25};
  EXPECT_EQ(
      text_of(compare(older, newer, 0.0001)),
      "alt.Akum → neu.Akum, Toleranz 0.0001 km²\n"
      "\nHinzugekommen: 1\n"
      "  neu.Akum:7: T0030, Zuläufe: N0010, KÄ010\n"
      "\nAnders verbunden: 1\n"
      "  neu.Akum:7: T0010, Zuläufe: N0010, KÄ010 → keiner\n"
      "\nErgebnisse geändert: 2 von 2 Strecken, die größten Änderungen zuerst [km²]\n"
      "  Strecke  Summe                         alt          neu    Differenz\n"
      "  T0020    undurchlässig direkt          NaN        0.250             \n"
      "  T0010    undurchlässig gesamt        0.226        0.227      +0.0005\n"
      "           gesamt                     13.045       10.545       -2.500\n"
      "\nVerschieden: 1 Strecke hinzugekommen, 1 Strecke anders verbunden, 2 von 2 Strecken mit anderem "
      "Ergebnis\n");
}

TEST(ResultTables, AreComparedInJson) {
  const ResultTable older = read(table_text, "alt.Akum");
  ResultTable newer = read(table_text, "neu.Akum");
  newer.rows[0].inflow[1] = variant::blank_name;
  newer.rows[1].sums[4] = {run::Number::Kind::number, 0.25};
  newer.rows[1].station = {run::Number::Kind::number, -std::numeric_limits<double>::infinity()};
  const nlohmann::json json = json_of(compare(older, newer));
  EXPECT_EQ(json["anders_verbunden"][0]["zulaeufe_alt"], nlohmann::json({"N0010", "KÄ010"}));
  EXPECT_EQ(json["anders_verbunden"][0]["zulaeufe_neu"], nlohmann::json({"N0010"}));
  EXPECT_EQ(json["ergebnisse"][0]["groesste_aenderung_km2"], "Infinity");
  EXPECT_EQ(json["ergebnisse"][0]["alt"]["undurchlaessig_direkt_km2"], "NaN");
  EXPECT_EQ(json["ergebnisse"][0]["neu"]["undurchlaessig_direkt_km2"], 0.25);
  EXPECT_EQ(json["ergebnisse"][0]["neu"]["gesamt_km2"], "**********");
  EXPECT_FALSE(json["ergebnisse"][0].contains("ursachen"));
}

// More than is handed on at a time.
TEST(ResultTables, AreComparedWholeHoweverLong) {
  ResultTable older = read(table_text, "alt.Akum");
  older.rows.resize(1);
  for (int i = 1; i < 5000; ++i) {
    older.rows.push_back(older.rows[0]);
    older.rows.back().name = variant::name_of("T" + std::to_string(1000 + i));
  }
  ResultTable newer = older;
  for (ResultRow& row : newer.rows) {
    row.sums[6].value += 1.0;
    row.inflow[2] = variant::name_of("E0010");
  }
  const Comparison comparison = compare(older, newer);
  const nlohmann::json json = json_of(comparison);
  EXPECT_EQ(json["ergebnisse"].size(), 5000U);
  EXPECT_EQ(json["anders_verbunden"].size(), 5000U);
  const std::string text = text_of(comparison);
  EXPECT_EQ(std::ranges::count(text, '\n'), 1 + 2 + 5000 + 3 + 5000 + 2);
  EXPECT_GT(text.size(), std::size_t{1} << 18U);
}

TEST(ResultTables, DoNotCountTheOrderOfInflows) {
  const ResultTable older = read(table_text, "alt.Akum");
  ResultTable newer = read(table_text, "neu.Akum");
  std::swap(newer.rows[0].inflow[0], newer.rows[0].inflow[1]);
  EXPECT_TRUE(compare(older, newer).is_equal());
}

TEST(ResultTables, LetALastDigitPass) {
  const ResultTable older = read(table_text, "alt.Akum");
  ResultTable newer = read(table_text, "neu.Akum");
  newer.rows[0].sums[6].value = 13.046;
  EXPECT_TRUE(compare(older, newer).is_equal());
  EXPECT_FALSE(compare(older, newer, 0.0005).is_equal());
}

}  // namespace
}  // namespace schau::compare
