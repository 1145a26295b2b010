#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_System/m_System.h"
#include "m_System/name_index.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/array.h"
#include "runtime/units.h"
#include "tests/notices.h"
#include "tests/shown_text.h"
#include "tests/variant_files.h"

namespace {

namespace fs = std::filesystem;
using m_Bauwerke::branching_tables;
using m_Bauwerke::ReadBranchings;
using m_Einleiter::ReadCanalisedAreas;
using m_Einleiter::ReadNaturalAreas;
using m_Einleiter::source_tables;
using m_Gerinne::reach_tables;
using m_Gerinne::ReadReaches;
using m_WLM_error::ErrorLevel;
using testing::ElementsAre;
using testing::IsEmpty;
using variant_files::columns_line;
using variant_files::fill_system_logic;
using variant_files::Lines;
using variant_files::Network;
using variant_files::protocol_codes;
using variant_files::protocol_lines;
using variant_files::write_lines;

template <class T>
std::vector<T> entries(const runtime::OneBased<T>& table) {
  std::vector<T> values;
  for (std::int32_t i = 1; i <= table.size(); ++i) values.push_back(table.at(i));
  return values;
}

// From now on the readers' tables find no memory. In a run the names are indexed before that.
void let_tables_fail() {
  m_System::element_names();
  runtime::limit_allocations(7);
}

std::string refused_tables(std::string_view file) {
  return "Speichermangel: Tabellen zu \"" + std::string(file) + "\" nicht angelegt (ErrorLevel 5020)\n";
}

bool still_open(std::string_view file) {
  return runtime::unit_of(file).has_value();
}

class ReaderTest : public testing::Test {
 protected:
  void SetUp() override { variant_files::start_protocol(); }

  static void elements(std::initializer_list<std::string_view> names) {
    Network network;
    for (const std::string_view name : names) network.push_back({std::string(name), {}, {}});
    fill_system_logic(network);
  }

 private:
  variant_files::FreshRun folder_;
};

// Areas.

class AreaTest : public ReaderTest {
 protected:
  static std::string area_line(std::string_view name, std::string_view area, std::string_view sealing = "") {
    return columns_line({{4, name}, {11, area}, {16, sealing}});
  }
  static std::string unit_line(std::string_view unit) { return columns_line({{11, unit}}); }

  static void read_natural(const Lines& lines) {
    write_lines("v.nfl", lines);
    ReadNaturalAreas("v");
  }
  static void read_canalised(const Lines& lines) {
    write_lines("v.kfl", lines);
    ReadCanalisedAreas("v");
  }
};

TEST_F(AreaTest, BothFilesFillOneTableInSystemOrder) {
  elements({"K1", "N1", "E1", "T1", "K2", "N2"});
  read_natural({"heading", area_line("N1", "1.5", ".25"), area_line("N2", "2.5")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(0, 1.5F, 0, 2.5F));
  EXPECT_THAT(entries(source_tables.sealing), ElementsAre(0, .25F, 0, 0));
  read_canalised({area_line("K1", "3.5", ".5"), area_line("K2", "4.5", ".75")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(3.5F, 1.5F, 4.5F, 2.5F));
  EXPECT_THAT(entries(source_tables.sealing), ElementsAre(.5F, .25F, .75F, 0));
  EXPECT_EQ(source_tables.natural_count, 2);
  EXPECT_EQ(source_tables.canalised_count, 2);
  EXPECT_EQ(source_tables.E_count, 1);
  EXPECT_EQ(source_tables.source_count, 4);
  EXPECT_EQ(ErrorLevel, 0);
  EXPECT_FALSE(still_open("v.nfl"));
  EXPECT_FALSE(still_open("v.kfl"));
}

TEST_F(AreaTest, WithoutOneKindTheTablesHaveAnEntryMore) {
  elements({"N1", "N2"});
  read_natural({area_line("N1", "1."), area_line("N2", "2.")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(1, 2, 0));
}

TEST_F(AreaTest, WithoutNaturalAreasTheOtherReaderAllocates) {
  elements({"K1", "K2"});
  read_canalised({area_line("K1", "1."), area_line("K2", "2.")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(1, 2, 0));
  EXPECT_EQ(source_tables.canalised_count, 2);
}

TEST_F(AreaTest, HectaresAreAHundredthOfAKm2) {
  elements({"K1"});
  read_canalised({unit_line("ha"), area_line("K1", "250", "0.4")});
  EXPECT_EQ(source_tables.area.at(1), 250.0F * 0.01F);
  EXPECT_EQ(source_tables.sealing.at(1), 0.4F);
  EXPECT_EQ(source_tables.unit_factor, 0.01F);
  EXPECT_EQ(source_tables.unit_name.view(), "ha ");
}

TEST_F(AreaTest, SquareMetresAreAMillionth) {
  elements({"N1"});
  read_natural({unit_line("qm"), area_line("N1", "25000")});
  EXPECT_EQ(source_tables.area.at(1), 25000.0F * 1.0e-6F);
  EXPECT_EQ(source_tables.unit_name.view(), "qm ");
}

TEST_F(AreaTest, WithoutAUnitLineAreasAreKm2) {
  EXPECT_EQ(source_tables.unit_factor, 1.0F);
  EXPECT_EQ(source_tables.unit_name.view(), "qkm");
  elements({"N1"});
  read_natural({area_line("N1", "250")});
  EXPECT_EQ(source_tables.area.at(1), 250.0F);
}

TEST_F(AreaTest, TheFirstKeywordOfALineWins) {
  std::string unit_before = unit_line("ha");
  const auto factor_of = [&](const std::string& line) {
    variant_files::start_afresh();
    elements({"N1"});
    read_natural({unit_before, line, area_line("N1", "1.")});
    return source_tables.unit_factor;
  };
  EXPECT_EQ(factor_of(unit_line("qkmha")), 1.0F);
  EXPECT_EQ(factor_of(unit_line("haqkm")), 1.0F);
  EXPECT_EQ(factor_of(unit_line("  qm")), 1.0e-6F);
  unit_before = unit_line("qm");
  EXPECT_EQ(factor_of(unit_line("qm ha")), 0.01F);
  EXPECT_EQ(factor_of(unit_line("haqm")), 0.01F);
  EXPECT_EQ(factor_of(unit_line("[ha]")), 0.01F);
  // Outside the columns, in part or in upper case it is no keyword.
  EXPECT_EQ(factor_of(columns_line({{1, "qkm"}})), 1.0e-6F);
  EXPECT_EQ(factor_of(columns_line({{10, "ha"}})), 1.0e-6F);
  EXPECT_EQ(factor_of(columns_line({{15, "ha"}})), 1.0e-6F);
  EXPECT_EQ(factor_of(columns_line({{14, "qkm"}})), 1.0e-6F);
  EXPECT_EQ(factor_of(unit_line("QKM")), 1.0e-6F);
  EXPECT_EQ(factor_of(unit_line("")), 1.0e-6F);
}

TEST_F(AreaTest, AUnitHoldsUntilTheNext) {
  elements({"N1", "N2", "N3", "K1", "K2"});
  read_natural({area_line("N1", "1."), unit_line("ha"), area_line("N2", "1."), area_line("N3", "1."),
                unit_line("qm")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(1, 0.01F, 0.01F, 0, 0));
  // The line behind the last record was never read.
  read_canalised({area_line("K1", "1."), unit_line("qkm"), area_line("K2", "1.")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(1, 0.01F, 0.01F, 0.01F, 1));
}

TEST_F(AreaTest, TheOwnLineIsTestedToo) {
  elements({"N1"});
  read_natural({area_line("N1", "12ha", "0.")});
  EXPECT_EQ(source_tables.unit_factor, 0.01F);
  EXPECT_THAT(protocol_codes(), ElementsAre("A03"));
}

TEST_F(AreaTest, LinesReadOnTheWayCountInTheirOrder) {
  elements({"N1", "N2"});
  // N2 stands above N1: from behind N1 the tail is read, then the head again.
  read_natural({area_line("N2", "1."), unit_line("ha"), area_line("N1", "1."), unit_line("qm")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(0.01F, 1.0e-6F, 0));
  elements({"N1", "N2"});
  read_natural({unit_line("qkm"), area_line("N2", "1."), area_line("N1", "1."), unit_line("qm")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(1, 1, 0));
}

TEST_F(AreaTest, RecordsInReverseOrderAreFound) {
  elements({"N1", "N2", "N3", "K1", "K2"});
  read_natural({area_line("N3", "3."), area_line("N2", "2."), area_line("N1", "1.")});
  read_canalised({area_line("K2", "5."), area_line("K1", "4.")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(1, 2, 3, 4, 5));
  EXPECT_EQ(ErrorLevel, 0);
}

TEST_F(AreaTest, ABlankFieldIsZero) {
  elements({"N1", "N2", "K1"});
  read_natural({area_line("N1", "", "0.5"), "   N2"});
  read_canalised({area_line("K1", "2.", "")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(0, 0, 2));
  EXPECT_THAT(entries(source_tables.sealing), ElementsAre(0.5F, 0, 0));
  EXPECT_THAT(protocol_codes(), IsEmpty());
}

TEST_F(AreaTest, NumbersStandInTheirColumns) {
  const auto area_of = [](std::string_view area) {
    variant_files::start_afresh();
    elements({"N1"});
    read_natural({area_line("N1", area)});
    return source_tables.area.at(1);
  };
  EXPECT_EQ(area_of("12345"), 12345.0F);
  EXPECT_EQ(area_of("  1.5"), 1.5F);
  EXPECT_EQ(area_of("1.5e1"), 15.0F);
  EXPECT_EQ(area_of("15-1"), 1.5F);
  EXPECT_EQ(area_of("1 2 3"), 123.0F);
  EXPECT_EQ(area_of("-1.5"), -1.5F);
  elements({"N1"});
  read_natural({columns_line({{4, "N1"}, {9, "xx"}, {11, "  1.5  0.5remark"}})});
  EXPECT_EQ(source_tables.area.at(1), 1.5F);
  EXPECT_EQ(source_tables.sealing.at(1), 0.5F);
}

TEST_F(AreaTest, ABadNumberIsReportedAndReadingGoesOn) {
  elements({"N1", "N2", "N3", "K1"});
  read_natural({unit_line("ha"), area_line("N1", "abc", "0.5"), area_line("N2", "200.", "abc"),
                area_line("N3", "300.", "0.5")});
  read_canalised({area_line("K1", "2,5", "0.5")});
  // The first field is stored when only the second is bad.
  EXPECT_THAT(entries(source_tables.area), ElementsAre(0, 200.0F * 0.01F, 300.0F * 0.01F, 0));
  EXPECT_THAT(entries(source_tables.sealing), ElementsAre(0, 0, 0.5F, 0));
  EXPECT_EQ(ErrorLevel, 2) << "the reader of the canalised areas stopped at that level";
  EXPECT_THAT(protocol_codes(), ElementsAre("A03", "A03"));
  EXPECT_THAT(protocol_lines().at(1), "    liegt ein Formatfehler vor bei .......... : N1");
}

TEST_F(AreaTest, ASealingAboveOneIsReportedAndKept) {
  elements({"N1", "N2", "N3", "N4"});
  read_natural({area_line("N1", "1.", "1"), area_line("N2", "1.", "1.000"), area_line("N3", "1.", "1.001"),
                area_line("N4", "1.", "99999")});
  EXPECT_THAT(entries(source_tables.sealing), ElementsAre(1, 1, 1.001F, 99999, 0));
  EXPECT_THAT(protocol_codes(), ElementsAre("F02", "F02"));
  EXPECT_EQ(protocol_lines().at(0), "F02 In der Tabelle .......................... : v.nfl");
  EXPECT_EQ(ErrorLevel, 2);
}

TEST_F(AreaTest, AMissingRecordEndsTheReading) {
  elements({"N1", "N2", "N3"});
  read_natural({area_line("N1", "1."), area_line("N3", "3."), unit_line("ha")});
  EXPECT_THAT(entries(source_tables.area), ElementsAre(1, 0, 0, 0));
  EXPECT_EQ(ErrorLevel, 2);
  EXPECT_TRUE(still_open("v.nfl"));
  EXPECT_EQ(source_tables.unit_factor, 0.01F);
  EXPECT_THAT(protocol_lines(), ElementsAre("A00 In der Tabelle .......................... : v.nfl",
                                            "    fehlt das Element ....................... : N2",
                                            "    (evtl. fehlerhafter Datensatz)"));
}

TEST_F(AreaTest, NamesAreMatchedByteForByte) {
  elements({"N1"});
  read_natural({area_line("n1", "1."), area_line("N1x", "1."), columns_line({{3, "N1"}, {11, "1."}}),
                columns_line({{5, "N1"}, {11, "1."}})});
  EXPECT_THAT(protocol_codes(), ElementsAre("A00"));
  EXPECT_EQ(source_tables.area.at(1), 0.0F);
}

TEST_F(AreaTest, AMissingFileIsShown) {
  elements({"N1", "K1"});
  const ShownText shown;
  ReadNaturalAreas("v");
  EXPECT_EQ(ErrorLevel, 3);
  EXPECT_EQ(source_tables.area.size(), 0);
  ReadCanalisedAreas("v");
  EXPECT_EQ(shown.output(), notices::error("Die Datei v.nfl existiert nicht.") +
                                notices::error("Die Datei v.kfl existiert nicht."));
  EXPECT_FALSE(fs::exists("v.pkl"));
}

TEST_F(AreaTest, ARepeatedValueEndsTheReader) {
  elements({"N1", "N2"});
  read_natural({area_line("N1", "1.5"), area_line("N2", "1.5"), area_line("N1", "1.5")});
  EXPECT_EQ(ErrorLevel, 2);
  EXPECT_FALSE(still_open("v.nfl"));
  EXPECT_EQ(source_tables.area.size(), 0);
  EXPECT_THAT(protocol_codes(), ElementsAre("A14"));
}

TEST_F(AreaTest, AWarningFromBeforeDoesNot) {
  elements({"N1"});
  m_WLM_error::report("W01");
  read_natural({area_line("N1", "1.5")});
  EXPECT_EQ(ErrorLevel, 1);
  EXPECT_EQ(source_tables.area.at(1), 1.5F);
}

TEST_F(AreaTest, AFailedAllocationEndsTheReaders) {
  elements({"N1", "K1"});
  let_tables_fail();
  const ShownText shown;
  read_natural({area_line("N1", "1.5")});
  EXPECT_EQ(ErrorLevel, 5020);
  EXPECT_FALSE(still_open("v.nfl"));
  read_canalised({area_line("K1", "1.5")});
  EXPECT_EQ(ErrorLevel, 5020);
  EXPECT_EQ(shown.error(), refused_tables("v.nfl")) << "once a run";
  EXPECT_EQ(source_tables.area.size(), 0);
  EXPECT_THAT(protocol_codes(), IsEmpty());
  runtime::limit_allocations(8);
  EXPECT_EQ(m_Einleiter::AllocateSourceTables(), 0);
  EXPECT_EQ(source_tables.area.size(), 2);
}

TEST_F(AreaTest, WithoutElementsNothingIsRead) {
  fill_system_logic({});
  read_natural({area_line("N1", "1.5")});
  EXPECT_EQ(ErrorLevel, 0);
  EXPECT_FALSE(still_open("v.nfl"));
  EXPECT_THAT(entries(source_tables.area), ElementsAre(0, 0));
}

// Reaches.

class ReachTest : public ReaderTest {
 protected:
  static std::string reach_line(std::string_view name, std::string_view value, std::string_view profile) {
    return columns_line({{4, name}, {11, value}, {57, profile}});
  }
  static std::string station_line(std::string_view value) { return columns_line({{11, value}}); }

  static void read(const Lines& lines) {
    write_lines("v.trs", lines);
    ReadReaches("v");
  }
};

TEST_F(ReachTest, AReachWithoutAnEntryHasNoValues) {
  elements({"N1", "T1", "T2"});
  read({reach_line("T1", "1.5", ""), reach_line("T2", "abc", "          x")});
  EXPECT_THAT(entries(reach_tables.kind), ElementsAre(1, 1));
  EXPECT_THAT(entries(reach_tables.first_value), ElementsAre(0, 0));
  EXPECT_THAT(entries(reach_tables.station_value), ElementsAre(0, 0));
  EXPECT_EQ(reach_tables.reach_count, 2);
  EXPECT_FALSE(still_open("v.trs"));
}

TEST_F(ReachTest, AReachWithAnEntryGoesOnInTheNextLine) {
  elements({"T1", "T2", "T3"});
  read({reach_line("T1", "1.5", "profil"), station_line("12.25"), reach_line("T2", "2.5", "         ."),
        station_line("  7"), reach_line("T3", "3.5", "1"), station_line("")});
  EXPECT_THAT(entries(reach_tables.kind), ElementsAre(2, 2, 2));
  EXPECT_THAT(entries(reach_tables.first_value), ElementsAre(1.5F, 2.5F, 3.5F));
  EXPECT_THAT(entries(reach_tables.station_value), ElementsAre(12.25F, 7, 0));
}

TEST_F(ReachTest, TheNextLineIsNoRecordOfItsOwn) {
  elements({"T1", "T2"});
  read({reach_line("T1", "1.5", "x"), reach_line("T2", "2.5", "x")});
  // T2 is found in the second pass only, on the last line: it reads its own line again.
  EXPECT_THAT(entries(reach_tables.first_value), ElementsAre(1.5F, 2.5F));
  EXPECT_THAT(entries(reach_tables.station_value), ElementsAre(2.5F, 2.5F));

  // A record that the line before it has taken is passed over for the one below.
  read({reach_line("T1", "", "x"), reach_line("T2", "", "x"), reach_line("T2", "8", "x"), station_line("9")});
  EXPECT_EQ(reach_tables.first_value.at(2), 8.0F);
  EXPECT_EQ(reach_tables.station_value.at(2), 9.0F);
}

TEST_F(ReachTest, ACommaIsNoDecimalPointAndATextNoFault) {
  elements({"T1", "T2"});
  read({reach_line("T1", "1,5", "x"), station_line("km 7.5"), reach_line("T2", "abc", "x"),
        station_line("-2.5")});
  EXPECT_THAT(entries(reach_tables.first_value), ElementsAre(1, 0));
  EXPECT_THAT(entries(reach_tables.station_value), ElementsAre(7.5F, -2.5F));
  EXPECT_THAT(protocol_codes(), IsEmpty());
}

TEST_F(ReachTest, ReachesInReverseOrderAreFound) {
  elements({"T1", "T2", "T3"});
  read({reach_line("T3", "3", "x"), station_line("33"), reach_line("T2", "2", "x"), station_line("22"),
        reach_line("T1", "1", "x"), station_line("11")});
  EXPECT_THAT(entries(reach_tables.first_value), ElementsAre(1, 2, 3));
  EXPECT_THAT(entries(reach_tables.station_value), ElementsAre(11, 22, 33));
}

TEST_F(ReachTest, AMissingRecordEndsTheReading) {
  elements({"T1", "T2", "T3"});
  read({reach_line("T1", "1", "x"), station_line("11"), reach_line("T3", "3", "x"), station_line("33")});
  EXPECT_THAT(entries(reach_tables.kind), ElementsAre(2, 0, 0));
  EXPECT_THAT(entries(reach_tables.station_value), ElementsAre(11, 0, 0));
  EXPECT_TRUE(still_open("v.trs"));
  EXPECT_EQ(protocol_lines().at(1), "    fehlt das Element ....................... : T2");
}

TEST_F(ReachTest, ThereAreNoUnits) {
  elements({"T1"});
  read({columns_line({{11, "ha"}}), reach_line("T1", "1", "x"), station_line("11")});
  EXPECT_EQ(source_tables.unit_factor, 1.0F);
  EXPECT_EQ(reach_tables.station_value.at(1), 11.0F);
}

TEST_F(ReachTest, TheReaderGivesUp) {
  elements({"T1"});
  {
    const ShownText shown;
    ReadReaches("v");
    EXPECT_EQ(shown.output(), notices::error("Die Datei v.trs existiert nicht."));
    EXPECT_EQ(ErrorLevel, 3);
  }
  m_WLM_error::report("ErrorLevel", {.int1 = 0});
  read({reach_line("T1", "1.5", "x"), station_line("1"), reach_line("T1", "1.5", "x")});
  EXPECT_THAT(protocol_codes(), ElementsAre("A14"));
  EXPECT_EQ(ErrorLevel, 2);
  EXPECT_EQ(reach_tables.kind.size(), 0);
  EXPECT_FALSE(still_open("v.trs"));
}

// A suppressed code sets the level back; the tables that both files share are not there all the same.
TEST_F(AreaTest, AFailedAllocationIsMetAgainWhenTheLevelWasLowered) {
  for (const std::int32_t others : {0, 1}) {
    elements({"N1", "K1"});
    m_System::element_names();
    runtime::refuse_table(others);
    const ShownText shown;
    read_natural({area_line("N1", "1.5")});
    runtime::unlimit_allocations();
    ErrorLevel = 0;
    read_canalised({area_line("K1", "1.5")});
    EXPECT_EQ(ErrorLevel, 5020) << others;
    EXPECT_EQ(shown.error(), refused_tables("v.nfl") + refused_tables("v.kfl")) << others;
    EXPECT_EQ(std::min(source_tables.area.size(), source_tables.sealing.size()), 0) << others;
    ErrorLevel = 0;
  }
}

TEST_F(ReachTest, AFailedAllocationEndsTheReader) {
  elements({"T1", "T2"});
  let_tables_fail();
  const ShownText shown;
  read({reach_line("T1", "1.5", "")});
  EXPECT_EQ(ErrorLevel, 5020);
  EXPECT_EQ(shown.error(), refused_tables("v.trs"));
  EXPECT_FALSE(still_open("v.trs"));
  runtime::limit_allocations(8);
  EXPECT_EQ(m_Gerinne::AllocateReachTables(), 0);
}

// Branchings.

class BranchingTest : public ReaderTest {
 protected:
  static std::string branching_line(std::string_view name, std::string_view code, std::string_view share) {
    return columns_line({{4, name}, {11, code}, {16, share}});
  }

  static void read(const Lines& lines) {
    write_lines("v.ver", lines);
    ReadBranchings("v");
  }

  static std::int32_t code_of(std::string_view text) {
    variant_files::start_protocol();
    elements({"V1"});
    ErrorLevel = 0;
    read({branching_line("V1", text, "40")});
    return branching_tables.code.at(1);
  }

  static float share_of(std::string_view text) {
    variant_files::start_protocol();
    elements({"V1"});
    read({branching_line("V1", "1", text)});
    return branching_tables.share.at(1);
  }
};

TEST_F(BranchingTest, FillTheTablesInSystemOrder) {
  elements({"V1", "T1", "B1", "V2"});
  read({"heading", branching_line("V2", "2", "30"), branching_line("V1", "1", "40")});
  EXPECT_THAT(entries(branching_tables.code), ElementsAre(1, 2));
  EXPECT_THAT(entries(branching_tables.share), ElementsAre(40.0F * 0.01F, 30.0F * 0.01F));
  EXPECT_EQ(branching_tables.branching_count, 2);
  EXPECT_EQ(branching_tables.B_count, 1);
  EXPECT_FALSE(still_open("v.ver"));
}

TEST_F(BranchingTest, RoundTheCodeToTheNearestNumber) {
  EXPECT_EQ(code_of("2.5"), 3);
  EXPECT_EQ(code_of("2.4"), 2);
  EXPECT_EQ(code_of("0.5"), 1);
  EXPECT_EQ(code_of("-0.5"), -1);
  EXPECT_EQ(code_of("-7"), -7);
  EXPECT_EQ(code_of("3.4"), 3);
  EXPECT_EQ(code_of(""), 0);
  EXPECT_EQ(code_of("abc"), 0);
  EXPECT_EQ(code_of("   1"), 1);
  EXPECT_THAT(protocol_codes(), IsEmpty());
}

TEST_F(BranchingTest, ACodeAboveThreeIsReportedAndKept) {
  EXPECT_EQ(code_of("4"), 4);
  EXPECT_EQ(ErrorLevel, 2);
  EXPECT_THAT(protocol_codes(), ElementsAre("Ver"));
  EXPECT_EQ(code_of("3.5"), 4);
  EXPECT_EQ(code_of("9999"), 9999);
  EXPECT_EQ(code_of("9E99"), 2147483647);
  EXPECT_THAT(protocol_lines().at(0), "Ver1In der Tabelle .......................... : v.ver");
}

TEST_F(BranchingTest, ReadingGoesOnBehindAReportedCode) {
  elements({"V1", "V2"});
  read({branching_line("V1", "4", "10"), branching_line("V2", "1", "20")});
  EXPECT_THAT(entries(branching_tables.code), ElementsAre(4, 1));
}

TEST_F(BranchingTest, TheShareIsGivenInPerCent) {
  EXPECT_EQ(share_of("40"), 40.0F * 0.01F);
  EXPECT_EQ(share_of("33.3"), 33.3F * 0.01F);
  EXPECT_EQ(share_of("100"), 100.0F * 0.01F);
  EXPECT_EQ(share_of("-5"), -5.0F * 0.01F);
  EXPECT_EQ(share_of("250"), 250.0F * 0.01F);
  EXPECT_EQ(share_of(""), 0.0F);
  EXPECT_EQ(share_of("12345678"), 12345.0F * 0.01F);
}

TEST_F(BranchingTest, OnlyTheColumnsOfTheCodeCount) {
  elements({"V1"});
  read({columns_line({{4, "V1"}, {9, "99"}, {11, "   2"}, {15, "9"}, {16, "   40"}, {21, "9"}})});
  EXPECT_EQ(branching_tables.code.at(1), 2);
  EXPECT_EQ(branching_tables.share.at(1), 40.0F * 0.01F);
}

TEST_F(BranchingTest, AMissingRecordEndsTheReading) {
  elements({"V1", "V2", "V3"});
  read({branching_line("V1", "1", "10"), branching_line("V3", "3", "30")});
  EXPECT_THAT(entries(branching_tables.code), ElementsAre(1, 0, 0));
  EXPECT_TRUE(still_open("v.ver"));
  EXPECT_THAT(protocol_codes(), ElementsAre("A00"));
}

TEST_F(BranchingTest, TheReaderGivesUp) {
  elements({"V1"});
  {
    const ShownText shown;
    ReadBranchings("v");
    EXPECT_EQ(shown.output(), notices::error("Die Datei v.ver existiert nicht."));
    EXPECT_EQ(ErrorLevel, 3);
  }
  m_WLM_error::report("ErrorLevel", {.int1 = 0});
  const std::string value_line = columns_line({{4, "V1"}, {11, "1"}, {22, "1.5"}});
  read({value_line, value_line});
  EXPECT_THAT(protocol_codes(), ElementsAre("A14"));
  EXPECT_EQ(branching_tables.code.size(), 0);
}

TEST_F(BranchingTest, AFailedAllocationEndsTheReader) {
  elements({"V1", "V2"});
  let_tables_fail();
  const ShownText shown;
  read({branching_line("V1", "1", "10")});
  EXPECT_EQ(ErrorLevel, 5020);
  EXPECT_EQ(shown.error(), refused_tables("v.ver"));
  EXPECT_FALSE(still_open("v.ver"));
  runtime::limit_allocations(8);
  EXPECT_EQ(m_Bauwerke::AllocateBranchingTables(), 0);
}

TEST_F(BranchingTest, TablesThatWereNeverAllocatedReadAsZeros) {
  EXPECT_EQ(branching_tables.code.at_or_zero(1), 0);
  EXPECT_EQ(branching_tables.share.at_or_zero(1), 0.0F);
  EXPECT_EQ(source_tables.area.at_or_zero(1), 0.0F);
  EXPECT_EQ(reach_tables.station_value.at_or_zero(1), 0.0F);
}

}  // namespace
