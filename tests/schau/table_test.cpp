#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/run/table.h"
#include "tests/german.h"
#include "tests/test_files.h"

namespace {

using schau::run::Number;
using schau::run::parse_table;
using schau::run::Reach;
using schau::run::Table;
using schau::run::TableFault;
using schau::run::text_of;
using schau::variant::text_of;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string heading =
    german(
        "rausel: akkumulierte Flächen [qkm]\n"
        "\n"
        "Gew.      km     Einl.   natürliche Fläche       kanal. Fläche        undurchl. Fläche "
        "Gesamtfläche\n"
        "                            Ad       Ages         Ad       Ages        Au,d     Au,ges        Ages\n"
        "(1)       (2)     (3)       (4)       (5)         (6)       (7)         (8)       (9)        "
        "(5+7)\n") +
    std::string(99, '-') + "\n";

const std::string row =
    "T0010    18.250  N0010    12.400    12.401       0.645     0.646       0.226     0.227       13.045\n";
const std::string further_inflow = "                 K0010\n";

std::vector<std::string> inflows_of(const Reach& reach) {
  std::vector<std::string> names;
  for (const auto name : reach.inflows()) names.push_back(text_of(name));
  return names;
}

std::vector<std::string> numbers_of(const Reach& reach) {
  std::vector<std::string> texts;
  for (const Number* number :
       {&reach.station, &reach.natural.direct, &reach.natural.total, &reach.canalised.direct,
        &reach.canalised.total, &reach.impervious.direct, &reach.impervious.total, &reach.total}) {
    texts.push_back(text_of(*number));
  }
  return texts;
}

TEST(Table, IsReadByItsColumns) {
  const Table table = parse_table(heading + row + further_inflow + "                 E0010\n" + row);
  EXPECT_FALSE(table.fault);
  EXPECT_EQ(table.variant, "rausel");
  EXPECT_EQ(table.line_count, 10U);
  ASSERT_THAT(table.reaches, SizeIs(2));
  const Reach& first = table.reaches.front();
  EXPECT_EQ(text_of(first.name), "T0010");
  EXPECT_EQ(first.line, 7U);
  EXPECT_THAT(inflows_of(first), ElementsAre("N0010", "K0010", "E0010"));
  EXPECT_THAT(numbers_of(first),
              ElementsAre("18.250", "12.400", "12.401", "0.645", "0.646", "0.226", "0.227", "13.045"));
  EXPECT_DOUBLE_EQ(first.natural.total.value, 12.401);
  EXPECT_EQ(table.reaches.back().line, 10U);
  EXPECT_THAT(inflows_of(table.reaches.back()), ElementsAre("N0010"));
}

TEST(Table, OfANetworkWithoutReachesHasNone) {
  const Table table = parse_table(heading);
  EXPECT_FALSE(table.fault);
  EXPECT_THAT(table.reaches, IsEmpty());
}

TEST(Table, KeepsNumbersThatDoNotFitAndThatAreNone) {
  std::string odd = row;
  odd.replace(7, 8, "Infinity");
  odd.replace(22, 20, "**********       NaN");
  odd.replace(44, 20, "    -0.000-99999.999");
  odd.replace(66, 20, " -Infinity  Infinity");
  odd.replace(88, 11, "***********");
  const Table table = parse_table(heading + odd);
  ASSERT_FALSE(table.fault);
  ASSERT_THAT(table.reaches, SizeIs(1));
  EXPECT_THAT(numbers_of(table.reaches.front()),
              ElementsAre("Infinity", "**********", "NaN", "-0.000", "-99999.999", "-Infinity", "Infinity",
                          "**********"));
  EXPECT_EQ(table.reaches.front().natural.direct.kind, Number::Kind::too_wide);
  EXPECT_TRUE(std::isnan(table.reaches.front().natural.direct.value));
  EXPECT_EQ(table.reaches.front().natural.total.kind, Number::Kind::not_a_number);
}

TEST(Table, TakesNamesAsTheyAre) {
  std::string odd = row;
  odd.replace(0, 5, "T \xC4  ");
  odd.replace(17, 5, "     ");
  const Table table = parse_table(heading + odd);
  ASSERT_THAT(table.reaches, SizeIs(1));
  EXPECT_EQ(text_of(table.reaches.front().name), "T \xC4");
  EXPECT_THAT(inflows_of(table.reaches.front()), IsEmpty());
}

TEST(Table, MayHaveTheLineEndsOfAnotherSystem) {
  std::string bytes;
  for (const std::string& lines : {heading, row, further_inflow}) {
    for (const char byte : lines) bytes += byte == '\n' ? "\r\n" : std::string(1, byte);
  }
  const Table table = parse_table(bytes);
  EXPECT_FALSE(table.fault);
  ASSERT_THAT(table.reaches, SizeIs(1));
  EXPECT_THAT(inflows_of(table.reaches.front()), SizeIs(2));
}

// Half a table is never a whole one, wherever it ends inside of a line; at the end of a line only the network
// can tell.
TEST(Table, CutAtEveryByteIsNotWhole) {
  const std::string whole = heading + row + further_inflow + row;
  for (std::size_t end = 0; end < whole.size(); ++end) {
    const Table table = parse_table(std::string_view(whole).substr(0, end));
    const bool after_a_line = end >= heading.size() && whole[end - 1] == '\n';
    EXPECT_EQ(table.fault.has_value(), !after_a_line) << end;
    EXPECT_LT(table.reaches.size(), 2U) << end;
  }
}

struct Broken {
  std::string bytes;
  TableFault fault;
  std::size_t line;
};

TEST(Table, NamesTheLineOfItsFirstFault) {
  std::string bad_number = row;
  bad_number.replace(22, 10, "    12,400");
  std::string empty_number = row;
  empty_number.replace(88, 11, std::string(11, ' '));
  std::string shifted = " " + row;
  std::string without_last_digit = row;
  without_last_digit.erase(row.size() - 2, 1);
  std::vector<Broken> tables = {
      {"", TableFault::line_cut, 1},
      {row + row + row + row + row + row + row, TableFault::no_heading, 6},
      {heading + row + bad_number + row, TableFault::bad_number, 8},
      {heading + empty_number, TableFault::bad_number, 7},
      {heading + row + shifted, TableFault::not_a_row, 8},
      {heading + without_last_digit, TableFault::not_a_row, 7},
      {heading + row + "\n", TableFault::not_a_row, 8},
      {heading + std::string(50'000, '\0') + "\n", TableFault::not_a_row, 7},
      {heading + further_inflow, TableFault::inflow_without_reach, 7},
      {heading + row + further_inflow + further_inflow + further_inflow, TableFault::inflow_without_reach,
       10},
  };
  std::string bad_heading = heading;
  bad_heading.replace(bad_heading.find("\n\n"), 2, "\n \n");
  tables.push_back({bad_heading + row, TableFault::no_heading, 6});
  bad_heading = heading;
  bad_heading[bad_heading.size() - 5] = '=';
  tables.push_back({bad_heading + row, TableFault::no_heading, 6});
  for (const std::size_t last_digit : {15U, 32U, 42U, 54U, 64U, 76U, 86U, 99U}) {
    for (const std::string_view bad : {"x", "-", ","}) {
      std::string no_number = row;
      no_number.replace(last_digit - 2, 1, bad);
      tables.push_back({heading + row + no_number, TableFault::bad_number, 8});
    }
  }
  tables.push_back({heading + std::string(5, ' ') + row.substr(5), TableFault::not_a_row, 7});
  tables.push_back({heading + row + "x" + further_inflow.substr(1), TableFault::not_a_row, 8});
  for (const std::size_t column : {6U, 7U, 16U, 17U, 43U, 44U, 65U, 66U, 87U, 88U}) {
    std::string in_a_gap = row;
    in_a_gap[column - 1] = '1';
    tables.push_back({heading + in_a_gap, TableFault::not_a_row, 7});
  }
  for (const Broken& broken : tables) {
    const Table table = parse_table(broken.bytes);
    ASSERT_TRUE(table.fault.has_value()) << broken.bytes;
    EXPECT_EQ(*table.fault, broken.fault) << broken.bytes;
    EXPECT_EQ(table.fault_line, broken.line) << broken.bytes;
  }
}

TEST(Table, SaysWhatIsWrongWithIt) {
  EXPECT_EQ(text_of(TableFault::no_heading, 6),
            "Das Ergebnis beginnt nicht mit den Kopfzeilen der Ergebnistabelle");
  EXPECT_EQ(text_of(TableFault::line_cut, 7), "Das Ergebnis bricht in Zeile 7 ab");
  EXPECT_EQ(text_of(TableFault::not_a_row, 7), "Zeile 7 des Ergebnisses ist keine Zeile der Ergebnistabelle");
  EXPECT_EQ(text_of(TableFault::bad_number, 7), "Zeile 7 des Ergebnisses enthält eine unlesbare Zahl");
  EXPECT_EQ(text_of(TableFault::inflow_without_reach, 7),
            "Zeile 7 des Ergebnisses nennt einen Zulauf, der zu keiner Strecke gehört");
}

TEST(Table, OfTheExampleIsRead) {
  const Table table = parse_table(
      test_files::read_bytes(std::filesystem::path(KV_EXAMPLES_DIR) / "expected" / "rausel.Akum"));
  EXPECT_FALSE(table.fault);
  ASSERT_THAT(table.reaches, SizeIs(10));
  EXPECT_EQ(text_of(table.reaches.back().name), "T0100");
  EXPECT_THAT(inflows_of(table.reaches.back()), ElementsAre("P0020", "N0070"));
  EXPECT_EQ(text_of(table.reaches.back().total), "36.957");
}

double seconds_to_read(std::size_t reaches) {
  std::string bytes = heading;
  for (std::size_t i = 0; i < reaches; ++i) bytes += row;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THAT(parse_table(bytes).reaches, SizeIs(reaches));
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

TEST(Table, OfManyReachesTakesTimeInProportion) {
  const double few = std::max(seconds_to_read(20'000), seconds_to_read(20'000));
  EXPECT_LT(seconds_to_read(200'000), 30 * few);
}

}  // namespace
