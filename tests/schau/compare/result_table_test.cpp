// Results that lie in files: what is read of them, and how they are compared.

#include "KV_Schau/compare/result_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KV_Schau/compare/comparison.h"
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
  const std::vector<BadResult> results = {
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
