#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/fixed_text.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "tests/german.h"
#include "tests/notices.h"
#include "tests/shown_text.h"
#include "tests/test_files.h"
#include "tests/variant_files.h"

namespace {

using m_System::CheckDuplicateData;
using m_System::CheckSystemLogic;
using m_System::system_logic;
using m_WLM_error::ErrorLevel;
using m_WLM_error::report;
using testing::ElementsAre;
using testing::IsEmpty;
using variant_files::columns_line;
using variant_files::Element;
using variant_files::fill_system_logic;
using variant_files::Lines;
using variant_files::Network;
using variant_files::protocol_codes;
using variant_files::protocol_lines;
using variant_files::start_protocol;
using variant_files::write_lines;
using Codes = std::vector<std::string>;

const std::string formal_notice = notices::error("formale Fehler in der Systemdatei\r\n\r\nSiehe FEHLER.PKL");
const std::string logical_notice = notices::error("Fehler in der Systemlogik\r\n\r\nSiehe FEHLER.PKL");

struct Findings {
  Codes codes;
  std::int32_t level = 0;
  std::string shown;
};

class ChecksTest : public testing::Test {
 protected:
  void SetUp() override { start_protocol(); }

  static Findings checked() {
    ErrorLevel = 0;
    const ShownText text;
    CheckSystemLogic();
    return {protocol_codes(), ErrorLevel, text.output()};
  }

  static Findings check(const Network& network) {
    start_protocol();
    fill_system_logic(network);
    return checked();
  }

  // The findings on one element of a network that has none otherwise.
  static Codes codes_of(const Element& element) {
    return check({{"N1", {}, {"T1"}}, {"T1", {"N1"}, {"T2"}}, element, {"T2", {"T1"}, {"ENDE"}}}).codes;
  }

 private:
  variant_files::FreshRun folder_;
};

// Formal stage.

TEST_F(ChecksTest, FindNothingInAGoodNetwork) {
  const Findings findings = check({{"N1", {}, {"T1"}},
                                   {"K1", {}, {"T1"}},
                                   {"E1", {}, {"T1"}},
                                   {"T1", {"N1", "K1", "E1"}, {"P1"}},
                                   {"P1", {"T1"}, {"V1"}},
                                   {"V1", {"P1"}, {"B1", "T2"}, "BW", "V-1"},
                                   {"B1", {"V1"}, {"T2", "T3"}, "", ""},
                                   {"T2", {"V1", "B1"}, {"T3"}, "x", ""},
                                   {"T3", {"B1", "T2"}, {"ENDE"}}});
  EXPECT_THAT(findings.codes, IsEmpty());
  EXPECT_EQ(findings.level, 0);
  EXPECT_EQ(findings.shown, "");
}

TEST_F(ChecksTest, FindNothingWithoutElements) {
  const Findings findings = check({});
  EXPECT_THAT(findings.codes, IsEmpty());
  EXPECT_EQ(findings.shown, "");
}

TEST_F(ChecksTest, AnErrorFromBeforeIsShownWithoutElements) {
  fill_system_logic({});
  report("ErrorLevel", {.int1 = 2});
  const ShownText text;
  CheckSystemLogic();
  EXPECT_EQ(text.output(), formal_notice);
}

TEST_F(ChecksTest, Y01InvalidType) {
  for (const std::string_view name : {"Z1", "X1", "n1", "", "1"}) {
    const Findings findings = check({{std::string(name), {"N2"}, {"ENDE"}}});
    EXPECT_THAT(findings.codes, ElementsAre("Y01")) << name;
    EXPECT_EQ(findings.shown, formal_notice);
  }
  // An element of no type has the inflow rules of a reach and no outflow rules.
  EXPECT_THAT(codes_of({"X1", {}, {}}), ElementsAre("Y01", "Y06"));
  EXPECT_THAT(codes_of({"X1", {"T1"}, {"T1", "T1"}, "tag", ""}), ElementsAre("Y01"));
}

TEST_F(ChecksTest, Y02InvalidInflowName) {
  EXPECT_THAT(codes_of({"T9", {"x1", "Z1", "1"}, {"T2"}}), ElementsAre("Y02", "Y02", "Y02"));
  EXPECT_EQ(protocol_lines().at(0), "Y02 Die Kennung des Zulaufelements .......... : x1");
  EXPECT_EQ(protocol_lines().at(4), "Y02 Die Kennung des Zulaufelements .......... : 1");
  // Only the first character counts, and it may be blank.
  EXPECT_THAT(codes_of({"N9", {" ooo"}, {"T2"}}), ElementsAre("Y05"));
}

TEST_F(ChecksTest, Y03InvalidOutflowName) {
  EXPECT_THAT(codes_of({"V9", {"T1"}, {"x1", "Z1"}}), ElementsAre("Y03", "Y03"));
  EXPECT_EQ(protocol_lines().at(2), "Y03 Die Kennung des Ablaufelements .......... : Z1");
  EXPECT_THAT(codes_of({"T9", {"T1"}, {"-"}}), ElementsAre("Y03"));
}

TEST_F(ChecksTest, Y04OnceForEachEarlierElement) {
  EXPECT_THAT(check({{"N1", {}, {"T1"}},
                     {"N1", {}, {"T1"}},
                     {"N2", {}, {"T1"}},
                     {"N1", {}, {"T1"}},
                     {"N2", {}, {"T1"}},
                     {"T1", {"N1"}, {"ENDE"}}})
                  .codes,
              ElementsAre("Y04", "Y04", "Y04", "Y04"));
  const Lines lines = protocol_lines();
  EXPECT_EQ(lines.at(4), "Y04 Das Element ............................. : N1");
  EXPECT_EQ(lines.at(6), "Y04 Das Element ............................. : N2");
}

TEST_F(ChecksTest, Y05SourceWithInflows) {
  for (const std::string_view name : {"N9", "K9", "E9"}) {
    EXPECT_THAT(codes_of({std::string(name), {"N1", "", "T1"}, {"T2"}}), ElementsAre("Y05", "Y05"));
  }
}

TEST_F(ChecksTest, Y06AndY07InflowsOutOfPlace) {
  for (const std::string_view type : {"T", "V", "B", "P"}) {
    const std::string name = std::string(type) + "9";
    const std::vector<std::string> outflows =
        type == "V" || type == "B" ? std::vector<std::string>{"T2", "T2"} : std::vector<std::string>{"T2"};
    EXPECT_THAT(codes_of({name, {}, outflows}), ElementsAre("Y06"));
    EXPECT_THAT(codes_of({name, {"", "T1"}, outflows}), ElementsAre("Y06"));
    EXPECT_THAT(codes_of({name, {"T1", "", "N1"}, outflows}), ElementsAre("Y07"));
    EXPECT_THAT(codes_of({name, {"", "", "N1"}, outflows}), ElementsAre("Y06", "Y07"));
  }
}

TEST_F(ChecksTest, Y08AndY09WrongNumberOfOutflows) {
  for (const std::string_view type : {"N", "K", "E", "T", "P"}) {
    const std::string name = std::string(type) + "9";
    const std::vector<std::string> inflows =
        type == "T" || type == "P" ? std::vector<std::string>{"T1"} : std::vector<std::string>{};
    EXPECT_THAT(codes_of({name, inflows, {}}), ElementsAre("Y08"));
    EXPECT_THAT(codes_of({name, inflows, {"T2", "T1"}}), ElementsAre("Y09"));
    EXPECT_THAT(codes_of({name, inflows, {"", "T1"}}), ElementsAre("Y08", "Y09"));
  }
}

TEST_F(ChecksTest, OutflowsOfBranchingsAndBasins) {
  const auto formal = [&](const Element& element) {
    // An element of no type keeps the logical stage out.
    start_protocol();
    fill_system_logic({{"X0", {"N0"}, {}}, element});
    Codes codes = checked().codes;
    EXPECT_EQ(codes.front(), "Y01");
    codes.erase(codes.begin());
    return codes;
  };
  EXPECT_THAT(formal({"V9", {"N0"}, {}}), ElementsAre("Y10"));
  EXPECT_THAT(formal({"B9", {"N0"}, {}}), ElementsAre("W03"));
  for (const std::string_view name : {"V9", "B9"}) {
    EXPECT_THAT(formal({std::string(name), {"N0"}, {"T1"}}), ElementsAre("W02"));
    EXPECT_THAT(formal({std::string(name), {"N0"}, {"", "T1"}}), ElementsAre("W01"));
    EXPECT_THAT(formal({std::string(name), {"N0"}, {"T1", "T2"}}), IsEmpty());
  }
}

TEST_F(ChecksTest, Y12FirstTagWithoutTheSecond) {
  EXPECT_THAT(check({{"N1", {}, {"V1"}}, {"V1", {"N1"}, {"ENDE", "T1"}, "BW", ""}}).codes,
              ElementsAre("Y12"));
  EXPECT_THAT(protocol_lines(), ElementsAre("Y12-Kommentar bei V1 nicht definiert!"));
  EXPECT_THAT(check({{"N1", {}, {"B1"}}, {"B1", {"N1"}, {"ENDE", "T1"}, "BW", ""}}).codes,
              ElementsAre("Y12"));
  EXPECT_THAT(check({{"N1", {}, {"V1"}}, {"V1", {"N1"}, {"ENDE", "T1"}, "BW", "1"}}).codes, IsEmpty());
  EXPECT_THAT(check({{"N1", {}, {"V1"}}, {"V1", {"N1"}, {"ENDE", "T1"}, "", "1"}}).codes, IsEmpty());
  EXPECT_THAT(check({{"N1", {}, {"T1"}}, {"T1", {"N1"}, {"ENDE"}, "BW", ""}}).codes, IsEmpty());
}

TEST_F(ChecksTest, ReportAnElementsFindingsInTheirOrder) {
  EXPECT_THAT(
      check({{"Y1", {"N0"}, {}}, {"Y1", {"", "", "x"}, {"-"}}, {"V1", {"", "", "x"}, {"", "-"}, "t", ""}})
          .codes,
      ElementsAre("Y01", "Y01", "Y02", "Y03", "Y04", "Y06", "Y07", "Y02", "Y03", "Y06", "Y07", "W01", "Y12"));
}

TEST_F(ChecksTest, AFormalErrorHidesTheLogicalFindings) {
  const Network unlinked = {{"N1", {}, {"T9"}}, {"T1", {"N9"}, {"ENDE"}}};
  const Findings logical = check(unlinked);
  EXPECT_THAT(logical.codes, ElementsAre("Y22", "Y21"));
  EXPECT_EQ(logical.shown, logical_notice);
  Network formal = unlinked;
  formal[0].inflows = {"N2"};
  const Findings findings = check(formal);
  EXPECT_THAT(findings.codes, ElementsAre("Y05"));
  EXPECT_EQ(findings.shown, formal_notice);
}

TEST_F(ChecksTest, AWarningLetsTheLogicalStageRun) {
  const Findings findings = check({{"N1", {}, {"B1"}}, {"B1", {"N1"}, {}}, {"T1", {"N9"}, {"ENDE"}}});
  EXPECT_THAT(findings.codes, ElementsAre("W03", "Y21"));
  EXPECT_EQ(findings.shown, logical_notice);
  const Findings warning = check({{"N1", {}, {"B1"}}, {"B1", {"N1"}, {}}});
  EXPECT_EQ(warning.level, 1);
  EXPECT_EQ(warning.shown, "");
}

// Logical stage.

TEST_F(ChecksTest, Y21InflowThatDoesNotExist) {
  EXPECT_THAT(check({{"N1", {}, {"T1"}}, {"T1", {"N1", "N9"}, {"ENDE"}}}).codes, ElementsAre("Y21"));
  EXPECT_THAT(protocol_lines(), ElementsAre("Y21 Das Zulaufelement ....................... : N9",
                                            "    beim Systemelement ...................... : T1",
                                            "    existiert nicht als Systemelement !"));
}

TEST_F(ChecksTest, Y22OutflowThatDoesNotExist) {
  EXPECT_THAT(check({{"N1", {}, {"V1"}}, {"V1", {"N1"}, {"T1", "T9"}}, {"T1", {"V1"}, {"ENDE"}}}).codes,
              ElementsAre("Y22"));
  EXPECT_EQ(protocol_lines().front(), "Y22 Das Ablaufelement ....................... : T9");
  // The last element may name what it wants.
  EXPECT_THAT(check({{"N1", {}, {"V1"}}, {"V1", {"N1"}, {"T8", "T9"}}}).codes, IsEmpty());
}

TEST_F(ChecksTest, Y23InflowThatStandsBelow) {
  EXPECT_THAT(check({{"N1", {}, {"T1"}},
                     {"T1", {"N1", "P1"}, {"T2"}},
                     {"T2", {"T1"}, {"P1"}},
                     {"P1", {"T2"}, {"T1"}},
                     {"T3", {"P1"}, {"ENDE"}}})
                  .codes,
              ElementsAre("Y23", "Y24", "Y25"));
  const Lines lines = protocol_lines();
  EXPECT_EQ(lines.at(0), "Y23 Der Zulauf von .......................... : P1");
  EXPECT_EQ(lines.at(2), "    Das Systemelement ....................... : P1");
  EXPECT_EQ(lines.at(4), "Y24 Der Ablauf von .......................... : P1");
  EXPECT_EQ(lines.at(9), "Y25 Das Systemelement der Systemlogik ....... : T3");
}

TEST_F(ChecksTest, AnElementThatFeedsItself) {
  EXPECT_THAT(check({{"N1", {}, {"T1"}}, {"T1", {"N1", "T1"}, {"T1"}}, {"T2", {"T1"}, {"ENDE"}}}).codes,
              ElementsAre("Y23", "Y24", "Y25"));
}

TEST_F(ChecksTest, ANetworkListedBottomUp) {
  EXPECT_THAT(check({{"T2", {"T1"}, {"ENDE"}}, {"T1", {"N1"}, {"T2"}}, {"N1", {}, {"T1"}}}).codes,
              ElementsAre("Y23", "Y22", "Y23", "Y25", "Y24"));
}

TEST_F(ChecksTest, Y24OutflowThatStandsAbove) {
  // The second outflow of the last element is not exempt from this one.
  EXPECT_THAT(check({{"N1", {}, {"T1"}}, {"T1", {"N1"}, {"V1"}}, {"V1", {"T1"}, {"ENDE", "T1"}}}).codes,
              ElementsAre("Y24"));
  EXPECT_EQ(protocol_lines().at(1), german("    ist nicht möglich nach .................. : T1"));
}

TEST_F(ChecksTest, Y25InflowThatDoesNotNameTheElement) {
  EXPECT_THAT(
      check({{"N1", {}, {"T1"}}, {"N2", {}, {"T1"}}, {"T1", {"N1", "N2"}, {"T2"}}, {"T2", {"T1", "N1"}, {}}})
          .codes,
      ElementsAre("Y08"));
  EXPECT_THAT(check({{"N1", {}, {"T1"}},
                     {"N2", {}, {"T1"}},
                     {"T1", {"N1", "N2"}, {"T2"}},
                     {"T2", {"T1", "N1"}, {"ENDE"}}})
                  .codes,
              ElementsAre("Y25"));
  EXPECT_THAT(protocol_lines(), ElementsAre("Y25 Das Systemelement der Systemlogik ....... : T2",
                                            "    liegt nicht als Ablaufelement vor bei: .. : N1"));
}

TEST_F(ChecksTest, Y26OutflowThatDoesNotNameTheElement) {
  EXPECT_THAT(check({{"N1", {}, {"T1"}}, {"N2", {}, {"T1"}}, {"T1", {"N1"}, {"ENDE"}}}).codes,
              ElementsAre("Y26"));
  EXPECT_THAT(protocol_lines(), ElementsAre("Y26 Das Systemelement der Systemlogik ....... : N2",
                                            "    liegt nicht als Zulaufelement vor bei: .. : T1"));
}

TEST_F(ChecksTest, Y27InflowMoreThanOnce) {
  EXPECT_THAT(check({{"N1", {}, {"T1"}}, {"T1", {"N1", "N1"}, {"ENDE"}}}).codes, ElementsAre("Y27"));
  EXPECT_THAT(check({{"N1", {}, {"T1"}}, {"T1", {"N1", "N1", "N1"}, {"ENDE"}}}).codes,
              ElementsAre("Y27", "Y27", "Y27"));
  EXPECT_THAT(protocol_lines().at(1), "    wird das Zulaufelement .................. : N1");
}

TEST_F(ChecksTest, ReportASlotsFindingsInTheirOrder) {
  // The first inflow stands below, does not name the element and comes twice.
  EXPECT_THAT(check({{"T1", {"N1", "N1"}, {"T2"}}, {"N1", {}, {"T2"}}, {"T2", {"N1"}, {"ENDE"}}}).codes,
              ElementsAre("Y23", "Y25", "Y27", "Y23", "Y25", "Y26"));
}

// Duplicate values.

class DuplicateTest : public ChecksTest {
 protected:
  static std::string value_line(std::string_view name, std::size_t column, std::string_view value) {
    return columns_line({{4, name}, {column, value}});
  }

  std::int32_t check_file(char kind, const Lines& lines) {
    write_lines("v.dat", lines);
    runtime::open(100, "v.dat", runtime::OpenStatus::old);
    const std::int32_t level = CheckDuplicateData(kind, "v.dat  ", 100);
    std::string_view line;
    EXPECT_EQ(runtime::LineReader(100, 200).next(line), !lines.empty());
    if (!lines.empty()) {
      EXPECT_EQ(line, lines.front()) << "the unit is rewound";
    }
    runtime::close(100);
    return level;
  }
};

TEST_F(DuplicateTest, ASecondValueLineIsReported) {
  fill_system_logic({{"K1", {}, {}}, {"K2", {}, {}}});
  EXPECT_EQ(check_file(
                'K', {value_line("K1", 11, "1.5"), value_line("K2", 11, "1.5"), value_line("K1", 11, "2.5")}),
            2);
  EXPECT_EQ(ErrorLevel, 2) << "what a report returns is the run's level";
  EXPECT_THAT(protocol_lines(), ElementsAre("A14 In der Tabelle ........................ : v.dat",
                                            "    ist das Element ....................... : K1",
                                            german("    mehrfach aufgeführt.")));
}

TEST_F(DuplicateTest, EveryFurtherValueLineIsReported) {
  fill_system_logic({{"K1", {}, {}}});
  EXPECT_EQ(check_file('K', Lines(4, value_line("K1", 11, "1."))), 2);
  EXPECT_THAT(protocol_codes(), ElementsAre("A14", "A14", "A14"));
}

TEST_F(DuplicateTest, OnlyNumbersWithAPointCount) {
  for (const std::string_view other : {"15", "", "abc", "1e5", "1,5", "-", "ha"}) {
    fill_system_logic({{"K1", {}, {}}});
    EXPECT_EQ(check_file('K', {value_line("K1", 11, "1.5"), value_line("K1", 11, other)}), 0) << other;
    EXPECT_EQ(check_file('K', {value_line("K1", 11, other)}), 0) << other;
    EXPECT_EQ(system_logic.data_seen.at(1), 1);
  }
  EXPECT_THAT(protocol_codes(), IsEmpty());
}

TEST_F(DuplicateTest, EachKindHasItsColumns) {
  struct Columns {
    char kind;
    std::size_t first;
    std::size_t last;
  };
  for (const Columns& columns :
       {Columns{'N', 11, 15}, {'K', 11, 15}, {'E', 11, 16}, {'T', 11, 19}, {'V', 22, 26}, {'B', 24, 30}}) {
    const std::string name = std::string(1, columns.kind) + "1";
    // A lone point counts as a number with a point; its place shows where the columns begin and end.
    const auto counts = [&](std::size_t column) {
      fill_system_logic({{name, {}, {}}});
      check_file(columns.kind, {value_line(name, column, ".")});
      return system_logic.data_seen.at(1) == 1;
    };
    EXPECT_FALSE(counts(columns.first - 1)) << name;
    EXPECT_TRUE(counts(columns.first)) << name;
    EXPECT_TRUE(counts(columns.last)) << name;
    EXPECT_FALSE(counts(columns.last + 1)) << name;
  }
}

TEST_F(DuplicateTest, TheNameStandsInColumns4To8) {
  fill_system_logic({{"K1", {}, {}}, {"k1", {}, {}}});
  EXPECT_EQ(check_file('K', {columns_line({{3, "K1"}, {11, "1."}}), columns_line({{5, "K1"}, {11, "1."}}),
                             columns_line({{4, "K1 x"}, {11, "1."}})}),
            0);
  EXPECT_EQ(system_logic.data_seen.at(1), 0);
  check_file('K', {columns_line({{1, "oooK1   yy1.5"}})});
  EXPECT_EQ(system_logic.data_seen.at(1), 1);
  EXPECT_EQ(system_logic.data_seen.at(2), 0);
}

TEST_F(DuplicateTest, ElementsOfOtherTypesCountToo) {
  fill_system_logic({{"N1", {}, {}}, {"K1", {}, {}}});
  EXPECT_EQ(check_file('N', {value_line("K1", 11, "1.5"), value_line("K1", 11, "1.5")}), 2);
}

TEST_F(DuplicateTest, AValueInASecondFileIsARepetition) {
  fill_system_logic({{"N1", {}, {}}});
  EXPECT_EQ(check_file('N', {value_line("N1", 11, "1.5")}), 0);
  EXPECT_EQ(check_file('K', {value_line("N1", 11, "1.5")}), 2);
}

TEST_F(DuplicateTest, TheFirstOfEqualNamesIsMeant) {
  fill_system_logic({{"K1", {}, {}}, {"K1", {}, {}}});
  check_file('K', {value_line("K1", 11, "1.5")});
  EXPECT_EQ(system_logic.data_seen.at(1), 1);
  EXPECT_EQ(system_logic.data_seen.at(2), 0);
}

TEST_F(DuplicateTest, ASuppressedReportReturnsZero) {
  test_files::write_bytes("fehlercode.ex", "A14\n");
  start_protocol();
  fill_system_logic({{"K1", {}, {}}});
  EXPECT_EQ(check_file('K', Lines(3, value_line("K1", 11, "1.5"))), 0);
  EXPECT_EQ(system_logic.data_seen.at(1), 1);
}

TEST_F(DuplicateTest, AnEmptyFileHasNoValues) {
  fill_system_logic({{"K1", {}, {}}});
  EXPECT_EQ(check_file('K', {}), 0);
}

}  // namespace
