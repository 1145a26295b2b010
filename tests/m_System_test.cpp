#include "m_System/m_System.h"
#include "m_System/filled_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <new>
#include <string>
#include <string_view>

#include "m_WLM_error/m_WLM_error.h"
#include "runtime/array.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "tests/notices.h"
#include "tests/shown_text.h"
#include "tests/test_files.h"
#include "tests/variant_files.h"

namespace {

namespace fs = std::filesystem;
using m_System::AllocateSystemTables;
using m_System::ElementIndex;
using m_System::system_logic;
using m_System::TypeOrdinal;
using m_WLM_error::ErrorLevel;
using test_files::write_bytes;
using testing::ElementsAre;
using testing::IsEmpty;
using variant_files::columns_line;
using variant_files::fill_system_logic;
using variant_files::Lines;
using variant_files::Network;
using variant_files::protocol_codes;
using variant_files::sys_line;
using variant_files::sys_lines;
using variant_files::write_lines;
using variant_files::written_lines;

const Network small_network = {{"N0010", {}, {"T0010"}},
                               {"K0010", {}, {"T0010"}},
                               {"T0010", {"N0010", "K0010"}, {"T0020"}},
                               {"T0020", {"T0010"}, {"ENDE"}}};

class SystemTest : public testing::Test {
 protected:
  void SetUp() override { variant_files::start_protocol(); }

  static void read(const Lines& lines) {
    write_lines("v.sys", lines);
    const ShownText shown;
    m_System::ReadSystemFile("v");
  }

 private:
  variant_files::FreshRun folder_;
};

// The tables.

TEST_F(SystemTest, AllocatesBlanksAndZeros) {
  m_System::filled_tables.total_count = 3;
  EXPECT_EQ(AllocateSystemTables(), 0);
  EXPECT_EQ(system_logic.element_count, 3);
  EXPECT_EQ(system_logic.mark.size(), 5);
  ASSERT_EQ(system_logic.name.size(), 4);
  for (std::int32_t i = 1; i <= 4; ++i) {
    EXPECT_EQ(system_logic.name.at(i).view(), "     ");
    EXPECT_EQ(system_logic.type.at(i), ' ');
    EXPECT_EQ(system_logic.tag3.at(i).view(), "   ");
    EXPECT_EQ(system_logic.tag7.at(i).view(), "       ");
    EXPECT_EQ(system_logic.text17.at(i).view(), std::string(17, ' '));
    EXPECT_TRUE(system_logic.inflow_name.at(i).at(3).blank());
    EXPECT_TRUE(system_logic.outflow_name.at(i).at(2).blank());
    EXPECT_THAT(system_logic.inflow_index.at(i).values, ElementsAre(0, 0, 0));
    EXPECT_THAT(system_logic.outflow_index.at(i).values, ElementsAre(0, 0));
    EXPECT_EQ(system_logic.data_seen.at(i), 0);
    EXPECT_EQ(system_logic.mark.at(i + 1), ' ');
  }
}

TEST_F(SystemTest, WithoutElementsEveryTableHasOneEntry) {
  EXPECT_EQ(AllocateSystemTables(), 0);
  EXPECT_EQ(system_logic.element_count, 0);
  EXPECT_EQ(system_logic.name.size(), 1);
  EXPECT_EQ(system_logic.outflow_index.size(), 1);
}

TEST_F(SystemTest, ReportsAFailedAllocation) {
  m_System::filled_tables.total_count = 100;
  // Enough for the small tables and too little for the inflow names.
  for (const std::size_t limit : {std::size_t{0}, std::size_t{101} * 12}) {
    runtime::limit_allocations(limit);
    EXPECT_EQ(AllocateSystemTables(), 5020) << limit;
  }
  runtime::limit_allocations(std::size_t{101} * 20);
  EXPECT_EQ(AllocateSystemTables(), 0);
}

TEST_F(SystemTest, AFailedAllocationEndsTheReader) {
  write_lines("v.sys", sys_lines(small_network));
  runtime::limit_allocations(0);
  const ShownText shown;
  m_System::ReadSystemFile("v");
  EXPECT_EQ(ErrorLevel, 5020);
  EXPECT_EQ(shown.error(), "Speichermangel: Tabellen zu \"v.sys\" nicht angelegt (ErrorLevel 5020)\n");
  EXPECT_FALSE(fs::exists("code.pkl"));
  EXPECT_FALSE(runtime::unit_of("v.sys").has_value());
  EXPECT_THAT(protocol_codes(), IsEmpty());
}

TEST_F(SystemTest, FindsAnElementByItsName) {
  fill_system_logic({{"N1", {}, {}}, {"T0010", {}, {}}, {"n1", {}, {}}, {"N 1", {}, {}}});
  EXPECT_EQ(ElementIndex("N1"), 1);
  EXPECT_EQ(ElementIndex("N1   "), 1);
  EXPECT_EQ(ElementIndex("N1        "), 1);
  EXPECT_EQ(ElementIndex("T0010"), 2);
  EXPECT_EQ(ElementIndex("n1"), 3);
  EXPECT_EQ(ElementIndex("N 1"), 4);
  EXPECT_EQ(ElementIndex(" N1"), 0);
  EXPECT_EQ(ElementIndex("T001"), 0);
  EXPECT_EQ(ElementIndex("T00100"), 0);
  EXPECT_EQ(ElementIndex(""), 0);
}

TEST_F(SystemTest, FindsTheFirstOfEqualNames) {
  fill_system_logic({{"N1", {}, {}}, {"T1", {}, {}}, {"T1", {}, {}}, {"", {}, {}}});
  EXPECT_EQ(ElementIndex("T1"), 2);
  EXPECT_EQ(ElementIndex("     "), 4);
}

TEST_F(SystemTest, AnEmptySystemHasNoElements) {
  EXPECT_EQ(ElementIndex("N1"), 0);
  EXPECT_EQ(TypeOrdinal('N', 1), 0);
  fill_system_logic({});
  EXPECT_EQ(ElementIndex(""), 0);
  EXPECT_EQ(TypeOrdinal(' ', 1), 0);
}

TEST_F(SystemTest, CountsTheElementsOfATypeUpToAPlace) {
  fill_system_logic({{"V1", {}, {}}, {"T1", {}, {}}, {"V2", {}, {}}, {"V3", {}, {}}});
  EXPECT_EQ(TypeOrdinal('V', 1), 1);
  // An element of another type counts those before it.
  EXPECT_EQ(TypeOrdinal('V', 2), 1);
  EXPECT_EQ(TypeOrdinal('V', 3), 2);
  EXPECT_EQ(TypeOrdinal('V', 4), 3);
  // Behind the last element there is nothing more to count.
  EXPECT_EQ(TypeOrdinal('V', 5), 3);
  EXPECT_EQ(TypeOrdinal('V', 1000), 3);
  EXPECT_EQ(TypeOrdinal('T', 4), 1);
  EXPECT_EQ(TypeOrdinal('T', 1), 0);
  EXPECT_EQ(TypeOrdinal('B', 4), 0);
  EXPECT_EQ(TypeOrdinal('V', 0), 0);
  EXPECT_EQ(TypeOrdinal('V', -5), 0);
}

TEST_F(SystemTest, TheCountsFollowTheTable) {
  fill_system_logic({{"V1", {}, {}}});
  EXPECT_EQ(TypeOrdinal('V', 1), 1);
  EXPECT_EQ(ElementIndex("V1"), 1);
  fill_system_logic({{"T1", {}, {}}, {"V1", {}, {}}});
  EXPECT_EQ(TypeOrdinal('V', 1), 0);
  EXPECT_EQ(ElementIndex("V1"), 2);
}

TEST_F(SystemTest, WithoutMemoryNothingIsCounted) {
  fill_system_logic({{"V1", {}, {}}, {"T1", {}, {}}});
  runtime::limit_allocations(7);
  EXPECT_THROW(TypeOrdinal('V', 2), std::bad_alloc);
  runtime::unlimit_allocations();
  EXPECT_EQ(TypeOrdinal('V', 2), 1);
}

// The reader.

TEST_F(SystemTest, StoresTheColumnsOfAnElementLine) {
  read({columns_line({{1, "ooo"},
                      {4, "BW1"},
                      {7, "y"},
                      {8, "V-01234"},
                      {15, "zz"},
                      {17, "Wehr am Oberlauf1"},
                      {34, "zz"},
                      {36, "V0010"},
                      {41, "zzz"},
                      {44, "T0001"},
                      {49, "z"},
                      {50, "T0002"},
                      {55, "z"},
                      {56, "T0003"},
                      {61, "zzz"},
                      {64, "T0004"},
                      {69, "z"},
                      {70, "T0005"},
                      {75, "remark"}})});
  ASSERT_EQ(system_logic.element_count, 1);
  EXPECT_EQ(system_logic.name.at(1).view(), "V0010");
  EXPECT_EQ(system_logic.type.at(1), 'V');
  EXPECT_EQ(system_logic.tag3.at(1).view(), "BW1");
  EXPECT_EQ(system_logic.tag7.at(1).view(), "V-01234");
  EXPECT_EQ(system_logic.text17.at(1).view(), "Wehr am Oberlauf1");
  EXPECT_EQ(system_logic.inflow_name.at(1).at(1).view(), "T0001");
  EXPECT_EQ(system_logic.inflow_name.at(1).at(2).view(), "T0002");
  EXPECT_EQ(system_logic.inflow_name.at(1).at(3).view(), "T0003");
  EXPECT_EQ(system_logic.outflow_name.at(1).at(1).view(), "T0004");
  EXPECT_EQ(system_logic.outflow_name.at(1).at(2).view(), "T0005");
}

TEST_F(SystemTest, LinksTheElementsAndListsThem) {
  read(sys_lines(small_network));
  EXPECT_EQ(ErrorLevel, 0);
  EXPECT_THAT(system_logic.inflow_index.at(3).values, ElementsAre(1, 2, 0));
  EXPECT_THAT(system_logic.outflow_index.at(1).values, ElementsAre(3, 0));
  EXPECT_THAT(system_logic.outflow_index.at(3).values, ElementsAre(4, 0));
  EXPECT_THAT(system_logic.outflow_index.at(4).values, ElementsAre(5, 0));
  EXPECT_FALSE(runtime::unit_of("v.sys").has_value());
  // The listing was opened beside the system file.
  EXPECT_EQ(runtime::unit_of("code.pkl"), 101);
  EXPECT_THAT(written_lines("code.pkl"),
              ElementsAre("code.pkl", "N0010                   T0010          1   0   0   0   3   0",
                          "K0010                   T0010          2   0   0   0   3   0",
                          "T0010 N0010 K0010       T0020          3   1   2   0   4   0",
                          "T0020 T0010             ENDE           4   3   0   0   0   0"));
}

TEST_F(SystemTest, CountsTheTypes) {
  read(sys_lines({{"N1", {}, {"T1"}},
                  {"N2", {}, {"T1"}},
                  {"K1", {}, {"T1"}},
                  {"E1", {}, {"P1"}},
                  {"T1", {"N1", "N2", "K1"}, {"P1"}},
                  {"P1", {"T1", "E1"}, {"V1"}},
                  {"V1", {"P1"}, {"B1", "B2"}},
                  {"B1", {"V1"}, {"B2", "B2"}},
                  {"B2", {"B1", "V1"}, {"ENDE"}}}));
  EXPECT_EQ(system_logic.total_count, 9);
  EXPECT_EQ(system_logic.element_count, 9);
  EXPECT_EQ(system_logic.count('N'), 2);
  EXPECT_EQ(system_logic.count('K'), 1);
  EXPECT_EQ(system_logic.count('E'), 1);
  EXPECT_EQ(system_logic.count('T'), 1);
  EXPECT_EQ(system_logic.count('V'), 1);
  EXPECT_EQ(system_logic.count('B'), 2);
  for (const char letter : {'A', 'n', ' ', '\0', '\xFF'}) EXPECT_EQ(system_logic.count(letter), 0);
}

TEST_F(SystemTest, CountsTheTypesOfEachFileAnew) {
  read(sys_lines(small_network));
  const std::int32_t reaches = system_logic.count('T');
  EXPECT_GT(reaches, 0);
  runtime::close_all();
  read(sys_lines(small_network));
  EXPECT_EQ(system_logic.count('T'), reaches);
}

TEST_F(SystemTest, AFileWithoutElementLines) {
  read({"Systemlogik", "", "   kein Element"});
  EXPECT_EQ(system_logic.element_count, 0);
  EXPECT_EQ(ErrorLevel, 0);
  EXPECT_EQ(system_logic.outflow_index.at(1).at(1), 0);
  EXPECT_THAT(written_lines("code.pkl"), ElementsAre("code.pkl"));
  EXPECT_THAT(protocol_codes(), IsEmpty());
}

TEST_F(SystemTest, AFileWithoutAnEndMarkerIsReadToItsEnd) {
  Network network = small_network;
  network.back().outflows = {"T0030"};
  read(sys_lines(network));
  EXPECT_EQ(system_logic.element_count, 4);
  EXPECT_EQ(system_logic.name.at(4).view(), "T0020");
  EXPECT_EQ(system_logic.outflow_index.at(4).at(1), 5);
  EXPECT_EQ(ErrorLevel, 0);
}

TEST_F(SystemTest, AnElementBehindTheEndMarkerLeavesABlankPlace) {
  Network network = small_network;
  network.push_back({"T0030", {"T0020"}, {}});
  read(sys_lines(network));
  EXPECT_EQ(system_logic.element_count, 5);
  EXPECT_EQ(system_logic.count('T'), 3);
  EXPECT_TRUE(system_logic.name.at(5).blank());
  EXPECT_EQ(system_logic.type.at(5), ' ');
  EXPECT_EQ(system_logic.outflow_index.at(5).at(1), 6);
  // Blank link fields name the blank place.
  EXPECT_THAT(system_logic.inflow_index.at(3).values, ElementsAre(1, 2, 5));
  EXPECT_THAT(protocol_codes(), ElementsAre("Y01", "Y06"));
}

TEST_F(SystemTest, ShortNamesArePadded) {
  read(sys_lines({{"N1", {}, {"T1"}}, {"T1", {"N1"}, {"ENDE"}}}));
  EXPECT_EQ(system_logic.name.at(1).view(), "N1   ");
  EXPECT_EQ(system_logic.outflow_index.at(1).at(1), 2);
  EXPECT_EQ(system_logic.inflow_index.at(2).at(1), 1);
  EXPECT_EQ(ErrorLevel, 0);
}

TEST_F(SystemTest, LinksGoToTheLastOfEqualNames) {
  read(sys_lines({{"N1", {}, {"T1"}}, {"N1", {}, {"T1"}}, {"T1", {"N1"}, {"ENDE"}}}));
  EXPECT_EQ(system_logic.inflow_index.at(3).at(1), 2);
  EXPECT_THAT(protocol_codes(), ElementsAre("Y04"));
}

// What is and what is no element line.

TEST_F(SystemTest, PassesOverOtherLines) {
  const std::string element = sys_line({"T0010", {"N0010", "N0020", "N0030"}, {"ENDE"}});
  const auto with = [&](std::size_t column, std::string_view text) {
    std::string line = element;
    line.resize(80, ' ');
    return line.replace(column - 1, text.size(), text);
  };
  const auto counted = [](const std::string& line) {
    write_lines("v.sys", {line});
    const int unit = 100;
    runtime::open(unit, "v.sys", runtime::OpenStatus::old);
    m_System::CountElements(unit);
    // The unit is rewound.
    std::string_view first;
    EXPECT_TRUE(runtime::LineReader(unit, 200).next(first));
    EXPECT_EQ(first, line);
    runtime::close(unit);
    return system_logic.total_count == 1;
  };
  EXPECT_TRUE(counted(element));
  EXPECT_TRUE(counted(with(1, "anything before column 36 is text  ")));
  EXPECT_TRUE(counted(std::string(35, ' ') + "T"));
  EXPECT_FALSE(counted(std::string(34, ' ') + "T    "));
  for (const std::string_view letter : {"-", "\xC4", "<", "Z", "n", "A", "1", " ", "\xE4"}) {
    EXPECT_FALSE(counted(with(36, letter))) << letter;
  }
  for (const std::string_view letter : {"N", "K", "E", "T", "V", "B", "P"}) {
    EXPECT_TRUE(counted(with(36, letter))) << letter;
  }
  for (const std::size_t column : std::array<std::size_t, 5>{44, 50, 56, 64, 70}) {
    for (const std::string_view link : {"n0010", "10010", "Z0010", "-", "X"}) {
      EXPECT_FALSE(counted(with(column, link))) << column << link;
    }
    for (const std::string_view link : {"N", "Kxyz1", "E 1", "T", "V", "B", "P"}) {
      EXPECT_TRUE(counted(with(column, link))) << column << link;
    }
  }
}

TEST_F(SystemTest, AGapBeforeALaterInflowIsNoElementLine) {
  const auto elements = [](std::initializer_list<variant_files::Field> links) {
    std::string line = columns_line({{36, "T0010"}});
    const std::string tail = columns_line(links);
    line.resize(std::max(line.size(), tail.size()), ' ');
    for (std::size_t i = 43; i < tail.size(); ++i) line[i] = tail[i];
    write_lines("v.sys", {line});
    runtime::open(100, "v.sys", runtime::OpenStatus::old);
    m_System::CountElements(100);
    runtime::close(100);
    return system_logic.total_count;
  };
  EXPECT_EQ(elements({{50, "N0020"}}), 0);
  EXPECT_EQ(elements({{56, "N0030"}}), 0);
  EXPECT_EQ(elements({{44, "N0010"}, {56, "N0030"}}), 0);
  EXPECT_EQ(elements({{44, "N0010"}, {50, "N0020"}}), 1);
  EXPECT_EQ(elements({{44, "N0010"}, {50, "N0020"}, {56, "N0030"}}), 1);
  // The spans end before the outflows, and those have none behind them.
  EXPECT_EQ(elements({{61, "ooo"}, {64, "T0020"}}), 1);
  EXPECT_EQ(elements({{70, "T0020"}}), 1);
  // The blanks between the inflows belong to the spans.
  EXPECT_EQ(elements({{49, "x"}}), 0);
  EXPECT_EQ(elements({{44, "N0010"}, {49, "x"}}), 1);
  EXPECT_EQ(elements({{44, "N0010"}, {55, "x"}}), 0);
}

TEST_F(SystemTest, ALinkIsBlankUpToTheLastColumnOfItsSpan) {
  struct Span {
    std::size_t last;
    std::initializer_list<variant_files::Field> links;  // the fields that are not blank
  };
  const std::array<Span, 5> spans = {{{60, {}},
                                      {60, {{44, "N0010"}}},
                                      {60, {{44, "N0010"}, {50, "N0020"}}},
                                      {68, {{44, "N0010"}, {70, "T0020"}}},
                                      {74, {{44, "N0010"}, {64, "T0020"}}}}};
  const auto is_read = [](const Span& span, std::size_t column) {
    std::string line = columns_line({{36, "T0010"}, {80, "|"}});
    for (const variant_files::Field& link : span.links) {
      line.replace(link.column - 1, link.text.size(), link.text);
    }
    line[column - 1] = 'x';
    variant_files::start_afresh();
    read({line});
    EXPECT_EQ(system_logic.total_count, system_logic.element_count);
    return system_logic.element_count == 1 && system_logic.name.at(1) == "T0010";
  };
  for (const Span& span : spans) {
    EXPECT_FALSE(is_read(span, span.last)) << span.last << " " << span.links.size();
    EXPECT_TRUE(is_read(span, span.last + 1)) << span.last << " " << span.links.size();
  }
}

TEST_F(SystemTest, PassesOverElementsOfTypeZ) {
  read(
      {sys_line({"N1", {}, {"T1"}}), sys_line({"Z1", {"N1"}, {"ENDE"}}), sys_line({"T1", {"N1"}, {"ENDE"}})});
  EXPECT_EQ(system_logic.element_count, 2);
  EXPECT_EQ(system_logic.name.at(2).view(), "T1   ");
  EXPECT_EQ(ErrorLevel, 0);
}

TEST_F(SystemTest, OnlyEndeAndABlankIsTheEndMarker) {
  for (const std::string_view word : {"ENDE1", "ENDEX"}) {
    variant_files::start_afresh();
    read(sys_lines({{"N1", {}, {std::string(word)}}, {"N2", {}, {"ENDE"}}}));
    EXPECT_EQ(system_logic.name.at(2).view(), "N2   ") << word;
  }
  // The columns behind the marker do not matter to it.
  variant_files::start_afresh();
  read({columns_line({{36, "N1"}, {64, "ENDE"}, {70, "T1"}}), sys_line({"N2", {}, {"ENDE"}})});
  EXPECT_TRUE(system_logic.name.at(2).blank());
}

TEST_F(SystemTest, ColumnsBeyond100DoNotCount) {
  read({std::string(35, ' ') + std::string(70, ' ') + "T0010"});
  EXPECT_EQ(system_logic.element_count, 0);
  std::string line = sys_line({"N1", {}, {"ENDE"}});
  line.resize(100, ' ');
  variant_files::start_afresh();
  read({line + "T0001"});
  EXPECT_EQ(system_logic.element_count, 1);
}

// Files.

TEST_F(SystemTest, AMissingFileIsShown) {
  const ShownText shown;
  m_System::ReadSystemFile("v  ");
  EXPECT_EQ(shown.output(), notices::error("Die Datei v.sys existiert nicht."));
  EXPECT_EQ(ErrorLevel, 3);
  EXPECT_FALSE(fs::exists("code.pkl"));
}

TEST_F(SystemTest, NamesOfFilesHave200Characters) {
  EXPECT_EQ(m_System::file_name_of("v   ", ".sys").trimmed(), "v.sys");
  EXPECT_EQ(m_System::file_name_of(std::string(198, 'v'), ".sys").view(), std::string(198, 'v') + ".s");
}

TEST_F(SystemTest, TheListingStandsInTheWorkingFolder) {
  fs::create_directory("data");
  write_lines("data/v.sys", sys_lines(small_network));
  write_bytes("code.pkl", "an older and longer listing\nof two lines\nand a third\n");
  m_System::ReadSystemFile("data\\v");
  EXPECT_EQ(written_lines("code.pkl").size(), 5U);
  EXPECT_FALSE(fs::exists("data/code.pkl"));
}

}  // namespace
