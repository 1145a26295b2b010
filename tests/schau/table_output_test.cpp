#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "KV_Schau/run/table_output.h"
#include "KV_Schau/variant/names.h"

namespace {

using schau::run::CsvForm;
using schau::run::Number;
using schau::run::Reach;
using schau::run::Table;
using schau::variant::name_of;
using testing::HasSubstr;
using testing::Not;

Number number(double value) {
  return {Number::Kind::number, value};
}

Reach reach(std::string_view name) {
  constexpr double infinite = std::numeric_limits<double>::infinity();
  Reach reach;
  reach.name = name_of(name);
  reach.inflow = {name_of("N1"), name_of("K\"2;"), name_of("E,3")};
  reach.inflow_count = 3;
  reach.station = Number::too_wide();
  reach.natural = {number(1234.5), number(-0.0)};
  reach.canalised = {number(infinite), number(-infinite)};
  reach.impervious = {Number::not_a_number(), Number::too_wide()};
  reach.total = Number::too_wide();
  return reach;
}

std::string csv(const CsvForm& form) {
  std::string out;
  append_csv_titles(out, form);
  append_csv_row(out, reach("T\xC4"), form);
  return out;
}

TEST(TableAsCsv, FollowsTheStandard) {
  EXPECT_EQ(
      csv(schau::run::plain_csv),
      "Strecke,Station [km],Zulauf 1,Zulauf 2,Zulauf 3,natürliche Fläche direkt [km²],"
      "natürliche Fläche gesamt [km²],kanalisierte Fläche direkt [km²],kanalisierte Fläche gesamt [km²],"
      "undurchlässige Fläche direkt [km²],undurchlässige Fläche gesamt [km²],Gesamtfläche [km²]\r\n"
      "TÄ,********,N1,\"K\"\"2;\",\"E,3\",1234.500,-0.000,Infinity,-Infinity,NaN,**********,***********\r\n");
}

TEST(TableAsCsv, SuitsAGermanSpreadsheet) {
  const std::string text = csv(schau::run::german_csv);
  EXPECT_TRUE(text.starts_with("\xEF\xBB\xBFStrecke;Station [km];Zulauf 1;"));
  EXPECT_THAT(text,
              testing::EndsWith("\r\nTÄ;********;N1;\"K\"\"2;\";E,3;1234,500;-0,000;Infinity;-Infinity;NaN;"
                                "**********;***********\r\n"));
}

TEST(TableAsJson, HasNumbersAndTexts) {
  std::string out;
  append_json_row(out, reach("T1"));
  EXPECT_THAT(out, Not(HasSubstr("\n")));
  const nlohmann::json row = nlohmann::json::parse(out);
  EXPECT_EQ(row["strecke"], "T1");
  EXPECT_EQ(row["zulaeufe"], (std::vector<std::string>{"N1", "K\"2;", "E,3"}));
  EXPECT_EQ(row["station_km"], "********");
  EXPECT_EQ(row["natuerlich_direkt_km2"], 1234.5);
  EXPECT_EQ(row["natuerlich_gesamt_km2"], 0.0);
  EXPECT_EQ(row["kanalisiert_direkt_km2"], "Infinity");
  EXPECT_EQ(row["kanalisiert_gesamt_km2"], "-Infinity");
  EXPECT_EQ(row["undurchlaessig_direkt_km2"], "NaN");
  EXPECT_EQ(row["undurchlaessig_gesamt_km2"], "**********");
  EXPECT_EQ(row["gesamt_km2"], "***********");
  EXPECT_EQ(row.size(), 10U);
}

TEST(TableAsText, ShowsFirstAndLastRows) {
  Table table;
  for (int i = 10; i < 60; ++i) table.reaches.push_back(reach(fmt::format("T{}", i)));
  const std::string whole = text_of(table);
  const auto lines = [](const std::string& text) { return std::ranges::count(text, '\n'); };
  EXPECT_EQ(lines(whole), 52);
  EXPECT_EQ(text_of(table, 50), whole);

  const std::string ends = text_of(table, 6);
  EXPECT_EQ(lines(ends), 2 + 3 + 1 + 3);
  EXPECT_THAT(ends, HasSubstr("T12"));
  EXPECT_THAT(ends, HasSubstr("...      44 weitere Strecken; --tabelle zeigt alle\n"));
  EXPECT_THAT(ends, Not(HasSubstr("T13")));
  EXPECT_THAT(ends, Not(HasSubstr("T56")));
  EXPECT_THAT(ends, HasSubstr("T57"));
}

}  // namespace
