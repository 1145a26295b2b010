#include "m_info/m_info.h"
#include "m_info/filled_tables.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>

#include "runtime/units.h"
#include "tests/suite_host.h"
#include "tests/unit_watch.h"

namespace m_info {
namespace {

using std::filesystem::exists;
using test_files::read_bytes;
using test_files::write_bytes;
using testing::Each;
using testing::ElementsAre;
using testing::ExitedWithCode;

constexpr auto no_text = std::nullopt;
constexpr auto no_counter = std::nullopt;

class Info : public testing::Test {
 protected:
  ~Info() override {
    runtime::close_all();
    reset();
  }

  test_files::WorkingFolder folder_;
  SuiteHost host_;
};

// Runtime protocol.

class RuntimeProtocolTest : public Info {
 protected:
  static std::string written() {
    runtime_protocol("CLOSE");
    return read_bytes("runtime.pkl");
  }
};

TEST_F(RuntimeProtocolTest, WritesWhatIsGiven) {
  m_info::filled_protocol.counters.at(7) = 1234;
  m_info::filled_protocol.timers.at(3) = 3723004;
  runtime_protocol("WRITE", "Lauf beendet  ", 7, 3);
  runtime_protocol("WRITE", "noch eine");
  runtime_protocol("WRITE", no_text, 20);
  runtime_protocol("WRITE");
  EXPECT_EQ(written(),
            "Lauf beendet\n"
            "N(07) =       1234\n"
            "Zeit  3 : 01:02:03.004    3723.004\n"
            "noch eine\n"
            "N(20) =          0\n");
}

TEST_F(RuntimeProtocolTest, TakesTheFirstFreeUnitFrom200) {
  runtime::open(200, "held", runtime::OpenStatus::unknown);
  runtime_protocol("WRITE", "x");
  EXPECT_EQ(protocol.runtime_unit, 201);
}

TEST_F(RuntimeProtocolTest, NewLinesFollowTheOldOnes) {
  write_bytes("runtime.pkl", "gestern\n" + std::string(300, 'x') + "\nohne Ende");
  runtime_protocol("WRITE", "heute");
  runtime_protocol("WRITE", "morgen");
  EXPECT_EQ(written(), "gestern\n" + std::string(300, 'x') + "\nohne Ende\nheute\nmorgen\n");
}

TEST_F(RuntimeProtocolTest, FollowsAnEmptyFile) {
  write_bytes("runtime.pkl", "");
  runtime_protocol("WRITE", "heute");
  EXPECT_EQ(written(), "heute\n");
}

TEST_F(RuntimeProtocolTest, OnlyTheFirstCharactersOfTheCommandCount) {
  runtime_protocol("WRITE-IT", "x");
  m_info::filled_protocol.counters.at(1) = 5;
  runtime_protocol("ADDIERE", no_text, 1);
  EXPECT_EQ(protocol.counters.at(1), 6);
  runtime_protocol("SETZE", no_text, 1);
  EXPECT_EQ(protocol.counters.at(1), 0);
  runtime_protocol("CLOSED");
  EXPECT_EQ(read_bytes("runtime.pkl"), "x\n");
}

TEST_F(RuntimeProtocolTest, AnyOtherCommandDoesNothing) {
  m_info::filled_protocol.counters.at(1) = 5;
  runtime_protocol("write", "x", 1, 1);
  runtime_protocol("set", no_text, 1);
  runtime_protocol("AD", no_text, 1);
  runtime_protocol("", "x");
  EXPECT_EQ(protocol.counters.at(1), 5);
  EXPECT_FALSE(exists("runtime.pkl"));
}

TEST_F(RuntimeProtocolTest, CloseKeepsTheUnitNumber) {
  runtime_protocol("CLOSE");
  EXPECT_EQ(protocol.runtime_unit, 0);
  runtime_protocol("WRITE", "x");
  runtime_protocol("CLOSE");
  EXPECT_EQ(protocol.runtime_unit, 200);
  EXPECT_FALSE(runtime::is_connected(200));
}

TEST_F(RuntimeProtocolTest, CloseBeforeAnyLineLeavesUnitZeroOfTheTool) {
  runtime::open(0, "a.txt", runtime::OpenStatus::unknown);
  runtime_protocol("CLOSE");
  EXPECT_TRUE(runtime::is_connected(0));
}

using RuntimeProtocolDeathTest = RuntimeProtocolTest;

TEST_F(RuntimeProtocolDeathTest, WritingAfterTheCloseIsAnIoError) {
  runtime_protocol("WRITE", "x");
  runtime_protocol("CLOSE");
  EXPECT_EXIT(runtime_protocol("WRITE", "y"), ExitedWithCode(0), "Einheit 200");
  EXPECT_EQ(read_bytes("runtime.pkl"), "x\n");
}

TEST_F(RuntimeProtocolTest, CountsUp) {
  runtime_protocol("ADD", no_text, 4);
  runtime_protocol("ADD", no_text, 4);
  EXPECT_EQ(protocol.counters.at(4), 2);
}

TEST_F(RuntimeProtocolTest, SetClearsOneCounterOrAll) {
  m_info::filled_protocol.counters.at(1) = 5;
  m_info::filled_protocol.counters.at(2) = 6;
  runtime_protocol("SET", no_text, 1);
  EXPECT_EQ(protocol.counters.at(1), 0);
  EXPECT_EQ(protocol.counters.at(2), 6);
  runtime_protocol("SET", no_text, 0);
  EXPECT_THAT(protocol.counters.values, Each(0));
}

TEST_F(RuntimeProtocolTest, CountingIgnoresATimer) {
  host_.ticks = 50;
  runtime_protocol("ADD", no_text, 1, 1);
  EXPECT_EQ(protocol.counters.at(1), 1);
  EXPECT_EQ(protocol.timers.at(1), 0);
  EXPECT_EQ(protocol.timer_last.at(1), 0);
}

TEST_F(RuntimeProtocolTest, AddsNothingWithoutANumber) {
  host_.ticks = 50;
  runtime_protocol("ADD");
  EXPECT_THAT(protocol.counters.values, Each(0));
  EXPECT_THAT(protocol.timers.values, Each(0));
  EXPECT_THAT(protocol.timer_last.values, Each(0));
}

TEST_F(RuntimeProtocolTest, BothAddsMeasureFromTheSameStart) {
  host_.ticks = 100;
  runtime_protocol("SET", no_text, no_counter, 2);
  EXPECT_EQ(protocol.timer_start.at(2), 100);
  host_.ticks = 130;
  runtime_protocol("ADD", no_text, no_counter, 2);
  EXPECT_EQ(protocol.timers.at(2), 30);
  EXPECT_EQ(protocol.timer_last.at(2), 130);
  host_.ticks = 150;
  runtime_protocol("ADD", no_text, no_counter, 2);
  EXPECT_EQ(protocol.timers.at(2), 80);
  EXPECT_EQ(protocol.timer_start.at(2), 100);
}

TEST_F(RuntimeProtocolTest, TimerZeroClearsTicksButNotStarts) {
  host_.ticks = 100;
  runtime_protocol("SET", no_text, no_counter, 2);
  host_.ticks = 130;
  runtime_protocol("ADD", no_text, no_counter, 2);
  runtime_protocol("SET", no_text, no_counter, 0);
  EXPECT_THAT(protocol.timers.values, Each(0));
  EXPECT_EQ(protocol.timer_start.at(2), 100);
  EXPECT_EQ(protocol.timer_last.at(2), 130);
}

TEST_F(RuntimeProtocolTest, SetTakesCounterAndTimerAtOnce) {
  host_.ticks = 9;
  m_info::filled_protocol.counters.at(1) = 5;
  runtime_protocol("SET", no_text, 1, 1);
  EXPECT_EQ(protocol.counters.at(1), 0);
  EXPECT_EQ(protocol.timer_start.at(1), 9);
}

TEST_F(RuntimeProtocolTest, MillisecondsComeFromTheWholeThousandsOfTheRate) {
  host_.rate = 2500;
  m_info::filled_protocol.timers.at(1) = 1000;
  runtime_protocol("WRITE", no_text, no_counter, 1);
  EXPECT_EQ(written(), "Zeit  1 : 00:00:02.000       0.400\n");
}

TEST_F(RuntimeProtocolTest, SecondsAreDividedInSinglePrecision) {
  // 123456700 is 123456704 in single precision; its thousandth lies between 123456.703125 and .7109375.
  m_info::filled_protocol.timers.at(1) = 123456700;
  runtime_protocol("WRITE", no_text, no_counter, 1);
  EXPECT_EQ(written(), "Zeit  1 : 34:17:36.700  123456.703\n");
}

TEST_F(RuntimeProtocolTest, SlowClockHasNoMilliseconds) {
  host_.rate = 100;
  m_info::filled_protocol.timers.at(1) = 250;
  runtime_protocol("WRITE", no_text, no_counter, 1);
  host_.rate = 0;
  runtime_protocol("WRITE", no_text, no_counter, 1);
  EXPECT_EQ(written(),
            "Zeit  1 : 00:00:00.000       2.500\n"
            "Zeit  1 : 00:00:00.000       0.000\n");
}

TEST_F(RuntimeProtocolTest, OtherNumbersArePassedOver) {
  for (const std::int32_t number : {-1, 21}) {
    runtime_protocol("SET", no_text, number, number);
    runtime_protocol("ADD", no_text, number);
    runtime_protocol("ADD", no_text, no_counter, number);
    runtime_protocol("WRITE", no_text, number, number);
  }
  EXPECT_EQ(written(), "");
  EXPECT_THAT(protocol.counters.values, Each(0));
  EXPECT_THAT(protocol.timers.values, Each(0));
}

TEST_F(RuntimeProtocolTest, CountsWrapAround) {
  constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
  m_info::filled_protocol.counters.at(1) = largest;
  runtime_protocol("ADD", no_text, 1);
  EXPECT_EQ(protocol.counters.at(1), std::numeric_limits<std::int32_t>::min());
  host_.ticks = largest;
  runtime_protocol("SET", no_text, no_counter, 1);
  host_.ticks += 10;
  runtime_protocol("ADD", no_text, no_counter, 1);
  EXPECT_EQ(protocol.timers.at(1), 10);
}

// Working folder.

class CurrentDirectory : public Info {
 protected:
  std::string found(std::string_view listing, std::size_t length = 30) {
    host_.listing_file = "x_x_x_Tanne.dir";
    host_.listing = listing;
    std::string result(length, '?');
    current_directory(result);
    EXPECT_THAT(host_.commands, ElementsAre("dir > x_x_x_Tanne.dir"));
    host_.commands.clear();
    EXPECT_FALSE(exists("x_x_x_Tanne.dir"));
    EXPECT_FALSE(runtime::is_connected(500));
    return result;
  }
};

TEST_F(CurrentDirectory, IsTheTextFromTheDriveToTheEndOfTheLine) {
  EXPECT_EQ(found(" Volume D: x\r\n\r\n Verzeichnis von D:\\Modell Nord  \r\n E:\\x\r\n"),
            "D:\\Modell Nord                ");
}

TEST_F(CurrentDirectory, TakesAUnitFrom500) {
  const UnitWatch watch;
  found(" Verzeichnis von D:\\Modell\n");
  EXPECT_THAT(watch.units, ElementsAre(500));
}

TEST_F(CurrentDirectory, IsCutAtTheLengthOfTheResult) {
  EXPECT_EQ(found(" Verzeichnis von D:\\Modell\n", 5), "D:\\Mo");
}

TEST_F(CurrentDirectory, IsUnknownWithoutADriveInTheListing) {
  EXPECT_EQ(found("keines\nD: \\\n", 6), "####  ");
  EXPECT_EQ(found("", 6), "####  ");
}

TEST_F(CurrentDirectory, IsUnknownWithoutABlankBeforeTheDrive) {
  EXPECT_EQ(found("D:\\Modell\n von E:\\x\n", 6), "####  ");
}

TEST_F(CurrentDirectory, ShortResultsGetTheFirstCharacters) {
  EXPECT_EQ(found("", 3), "###");
  EXPECT_EQ(found("", 0), "");
}

TEST_F(CurrentDirectory, LinesAreCutAtFiveHundredCharacters) {
  EXPECT_EQ(found(std::string(499, 'x') + ":\\\n", 6), "####  ");
  EXPECT_EQ(found(std::string(490, 'x') + " D:\\abcdefghijk\n", 12), "D:\\abcdef   ");
}

TEST_F(CurrentDirectory, IsUnknownWithoutAListing) {
  std::string result(6, '?');
  current_directory(result);
  EXPECT_EQ(result, "####  ");
}

TEST(HostWithoutTheSuitesShell, WorkingFolderIsUnknown) {
  const test_files::WorkingFolder folder;
  std::string result(6, '?');
  current_directory(result);
  EXPECT_EQ(result, "####  ");
  EXPECT_FALSE(exists("x_x_x_Tanne.dir"));
}

// Check list.

class CheckListTest : public Info {
 protected:
  // A line with the keyword in columns 1-20 and the value behind it.
  void entry(std::string keyword, std::string_view value) {
    keyword.resize(20, ' ');
    lines_ += keyword.append(value) + "\n";
  }
  void read() {
    write_bytes("Pruefliste.lis", lines_);
    read_check_list();
  }

  std::string lines_;
};

TEST_F(CheckListTest, MissingListLeavesEverythingAtItsStart) {
  read_check_list();
  EXPECT_EQ(check_list.profiles_wanted, 0);
  EXPECT_EQ(check_list.discharge_wanted, 0);
  EXPECT_EQ(check_list.wsp_detail_wanted, 0);
  EXPECT_EQ(check_list.report_element_name.view(), "#" + std::string(99, ' '));
  EXPECT_FALSE(runtime::is_connected(50));
  EXPECT_FALSE(exists("Pruefliste.lis"));
}

TEST_F(CheckListTest, MissingListForgetsTheElementOfAnEarlierOne) {
  entry("Profile_", "J");
  entry("Element", "T  01");
  read();
  EXPECT_EQ(check_list.report_element_name, "T  01");
  std::filesystem::remove("Pruefliste.lis");
  read_check_list();
  EXPECT_EQ(check_list.report_element_name, "#");
  EXPECT_EQ(check_list.profiles_wanted, 1);
}

TEST_F(CheckListTest, LaterListReplacesWhatItNames) {
  entry("Profile_", "J");
  entry("Spiegellinie", "1 2 3 4");
  entry("richt", "12");
  entry("Element", "T  01");
  entry("xu...", "10");
  entry("xo...", "20");
  entry("Hvonh", "1.5");
  read();
  lines_.clear();
  entry("Abfluss_", "J");
  entry("Spiegellinie", "7");
  entry("xu...", "15");
  entry("Hvonh", "2.5");
  read();
  EXPECT_EQ(check_list.profiles_wanted, 1);
  EXPECT_EQ(check_list.discharge_wanted, 1);
  EXPECT_THAT(check_list.report_date().values, ElementsAre(7, 2, 3));
  EXPECT_EQ(check_list.report_numbers.at(4), 4);
  EXPECT_EQ(check_list.report_max_kind, 7);
  EXPECT_EQ(check_list.report_element_number, 12);
  EXPECT_EQ(check_list.report_element_name, "#");
  EXPECT_EQ(check_list.station_min, 15.0);
  EXPECT_EQ(check_list.station_max, 20.0);
  EXPECT_EQ(check_list.water_level_count, 2);
  EXPECT_EQ(check_list.water_levels.at(1), 1.5);
  EXPECT_EQ(check_list.water_levels.at(2), 2.5);
}

TEST_F(CheckListTest, TakesAUnitFrom50) {
  entry("Profile_", "J");
  const UnitWatch watch;
  read();
  EXPECT_THAT(watch.units, ElementsAre(50));
}

TEST_F(CheckListTest, FlagsTakeAJInElevenCharacters) {
  entry("Profile_", "n");
  entry("Abfluss_ drucken", "        j");
  entry("mit WSP_", "          J");
  read();
  EXPECT_EQ(check_list.profiles_wanted, 0);
  EXPECT_EQ(check_list.discharge_wanted, 1);
  EXPECT_EQ(check_list.wsp_detail_wanted, 1);
  EXPECT_TRUE(exists("Pruefliste.lis"));
  EXPECT_FALSE(runtime::is_connected(50));
}

TEST_F(CheckListTest, FlagBehindElevenCharactersDoesNotCount) {
  entry("Profile_", "           J");
  read();
  EXPECT_EQ(check_list.profiles_wanted, 0);
}

TEST_F(CheckListTest, LaterNoDoesNotTakeAFlagBack) {
  entry("Profile_", "J");
  entry("Profile_", "n");
  read();
  EXPECT_EQ(check_list.profiles_wanted, 1);
}

TEST_F(CheckListTest, CommentsAndUnknownKeywordsArePassedOver) {
  entry("#Profile_", "J");
  entry("profile_", "J");
  entry("", "Profile_ J");
  read();
  EXPECT_EQ(check_list.profiles_wanted, 0);
}

TEST_F(CheckListTest, FirstKeywordOfTheOrderWins) {
  entry("Abfluss_ Profile_", "J");
  entry("Element richt", "12");
  read();
  EXPECT_EQ(check_list.profiles_wanted, 1);
  EXPECT_EQ(check_list.discharge_wanted, 0);
  EXPECT_EQ(check_list.report_element_number, 12);
  EXPECT_EQ(check_list.report_element_name, "#");
}

TEST_F(CheckListTest, SpiegellinieGivesDateAndLargestNumber) {
  entry("Spiegellinie", "1.5 2.4 -2.5 7.9");
  read();
  EXPECT_THAT(check_list.report_date().values, ElementsAre(2, 2, -3));
  EXPECT_EQ(check_list.report_numbers.at(4), 8);
  EXPECT_EQ(check_list.report_numbers.at(5), 0);
  EXPECT_EQ(check_list.report_max_kind, 7);
}

TEST_F(CheckListTest, LargestOfNegativeNumbersIsNegative) {
  entry("Spiegellinie", "-3.5 -2.5");
  read();
  EXPECT_EQ(check_list.report_max_kind, -2);
}

TEST_F(CheckListTest, SpiegellinieWithoutNumbersChangesNothing) {
  entry("Spiegellinie", "1 2 3");
  entry("Spiegellinie", "keine");
  read();
  EXPECT_THAT(check_list.report_date().values, ElementsAre(1, 2, 3));
  EXPECT_EQ(check_list.report_max_kind, 3);
}

TEST_F(CheckListTest, ElementNumberAndName) {
  entry("Berichtselement", "    17");
  entry("Element", "   T  12345678901234567890");
  read();
  EXPECT_EQ(check_list.report_element_number, 17);
  EXPECT_EQ(check_list.report_element_name.trimmed(), "T  12345678901234");
}

TEST_F(CheckListTest, StationsAreDoublePrecision) {
  entry("Station xu...", "  1234.567890123");
  entry("Station xo...", "12345678901234567890");
  read();
  EXPECT_EQ(check_list.station_min, 1234.567890123);
  EXPECT_EQ(check_list.station_max, 12345678901234567890.0);
}

TEST_F(CheckListTest, KeepsTenWaterLevels) {
  for (int level = 1; level <= 12; ++level) entry("Hvonh", std::to_string(level) + ".25");
  read();
  EXPECT_EQ(check_list.water_level_count, 12);
  EXPECT_EQ(check_list.water_levels.at(1), 1.25);
  EXPECT_EQ(check_list.water_levels.at(10), 10.25);
}

TEST_F(CheckListTest, WaterLevelStandsInTenColumns) {
  entry("Hvonh", "   123.456 7");
  read();
  EXPECT_EQ(check_list.water_levels.at(1), 123.456);
}

TEST_F(CheckListTest, NumberThatCannotBeReadEndsTheReading) {
  for (const std::string keyword : {"richt", "xu...", "xo...", "Hvonh"}) {
    reset();
    lines_.clear();
    entry("Profile_", "J");
    entry(keyword, "zwei");
    entry("Abfluss_", "J");
    read();
    EXPECT_EQ(check_list.profiles_wanted, 1) << keyword;
    EXPECT_EQ(check_list.discharge_wanted, 0) << keyword;
    EXPECT_EQ(check_list.water_level_count, keyword == "Hvonh" ? 1 : 0) << keyword;
    EXPECT_FALSE(runtime::is_connected(50)) << keyword;
  }
}

TEST_F(CheckListTest, LinesEndAtFortyCharacters) {
  entry("Hvonh", "1");
  entry("xo...", "                   12");
  read();
  EXPECT_EQ(check_list.station_max, 1.0);
}

TEST_F(CheckListTest, RunDateIsTheTools) {
  run_date = Date{{1, 2, 3}};
  read();
  EXPECT_THAT(run_date.values, ElementsAre(1, 2, 3));
}

// Queries.

class CheckListWants : public Info {
 protected:
  CheckListWants() {
    m_info::filled_check_list.report_element_number = 7;
    m_info::filled_check_list.report_element_name = "T  01";
    m_info::filled_check_list.station_min = 10.0;
    m_info::filled_check_list.station_max = 20.0;
    m_info::filled_check_list.report_numbers = {{1, 2, 3}};
    run_date = date_;
  }

  [[nodiscard]] CheckCase wanted() const {
    CheckCase wanted;
    wanted.element_number = 7;
    wanted.element_name = "T  01  ";
    wanted.station = 15.0;
    wanted.date = date_;
    return wanted;
  }

  Date date_{{1, 2, 3}};
};

CheckCase query(std::string_view word) {
  CheckCase asked;
  asked.query = word;
  return asked;
}

TEST_F(CheckListWants, FlagsByTheirWord) {
  EXPECT_EQ(check_list_wants(query("Profile")), 0);
  EXPECT_EQ(check_list_wants(query("Abfluss")), 0);
  m_info::filled_check_list.profiles_wanted = 1;
  EXPECT_EQ(check_list_wants(query("Profile  ")), 1);
  EXPECT_EQ(check_list_wants(query("Abfluss")), 0);
  m_info::filled_check_list.discharge_wanted = 1;
  EXPECT_EQ(check_list_wants(query("Abfluss")), 1);
}

TEST_F(CheckListWants, AnotherWordIsNeverWanted) {
  CheckCase asked = wanted();
  EXPECT_EQ(check_list_wants(asked), 1);
  asked.query = "profile";
  m_info::filled_check_list.profiles_wanted = 1;
  EXPECT_EQ(check_list_wants(asked), 0);
}

TEST_F(CheckListWants, DetailNeedsFlagNameAndKind) {
  m_info::filled_check_list.report_max_kind = 4;
  CheckCase asked = query("WSP_detail");
  asked.element_name = "01 ";
  asked.kind = 4;
  EXPECT_EQ(check_list_wants(asked), 0);
  m_info::filled_check_list.wsp_detail_wanted = 1;
  EXPECT_EQ(check_list_wants(asked), 1);
  asked.kind = 3;
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.kind = std::nullopt;
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.kind = 4;
  asked.element_name = "T  02";
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.element_name = " ";
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.element_name = std::nullopt;
  EXPECT_EQ(check_list_wants(asked), 0);
}

TEST_F(CheckListWants, DetailOfAllElements) {
  m_info::filled_check_list.wsp_detail_wanted = 1;
  m_info::filled_check_list.report_max_kind = 4;
  m_info::filled_check_list.report_element_name = "fuer alle";
  CheckCase asked = query("WSP_detail");
  asked.element_name = "T  02";
  asked.kind = 4;
  EXPECT_EQ(check_list_wants(asked), 1);
  asked.element_name = std::nullopt;
  EXPECT_EQ(check_list_wants(asked), 0);
}

TEST_F(CheckListWants, DetailOfEveryKind) {
  m_info::filled_check_list.wsp_detail_wanted = 1;
  m_info::filled_check_list.report_max_kind = every_kind;
  CheckCase asked = query("WSP_detail");
  asked.element_name = "T  01";
  EXPECT_EQ(check_list_wants(asked), 1);
  asked.kind = 3;
  EXPECT_EQ(check_list_wants(asked), 1);
}

TEST_F(CheckListWants, DateInAllThreeParts) {
  CheckCase asked = query("WSPi");
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.date = date_;
  EXPECT_EQ(check_list_wants(asked), 1);
  for (std::int32_t part = 1; part <= 3; ++part) {
    Date other = date_;
    other.at(part) = 9;
    asked.date = other;
    EXPECT_EQ(check_list_wants(asked), 0) << part;
  }
}

TEST_F(CheckListWants, CaseOfTheList) {
  CheckCase asked = wanted();
  EXPECT_EQ(check_list_wants(asked), 1);
  asked.element_name = std::nullopt;
  EXPECT_EQ(check_list_wants(asked), 1);
}

TEST_F(CheckListWants, NumberAndStationAreRequired) {
  CheckCase asked = wanted();
  asked.element_number = std::nullopt;
  EXPECT_EQ(check_list_wants(asked), 0);
  asked = wanted();
  asked.station = std::nullopt;
  EXPECT_EQ(check_list_wants(asked), 0);
}

TEST_F(CheckListWants, NumberNameAndDateMustBeTheListed) {
  CheckCase asked = wanted();
  asked.element_number = 8;
  EXPECT_EQ(check_list_wants(asked), 0);
  asked = wanted();
  asked.element_name = "T  0";
  EXPECT_EQ(check_list_wants(asked), 0);
  asked = wanted();
  asked.date = Date{{1, 2, 4}};
  EXPECT_EQ(check_list_wants(asked), 0);
}

TEST_F(CheckListWants, StationLiesStrictlyBetween) {
  CheckCase asked = wanted();
  asked.station = 10.0;
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.station = 20.0;
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.station = 19.999;
  EXPECT_EQ(check_list_wants(asked), 1);
}

TEST_F(CheckListWants, DateOfTheRunStandsIn) {
  CheckCase asked = wanted();
  asked.date = std::nullopt;
  EXPECT_EQ(check_list_wants(asked), 1);
  run_date = Date{{9, 9, 9}};
  EXPECT_EQ(check_list_wants(asked), 0);
}

TEST_F(CheckListWants, WaterLevelsWhenAskedFor) {
  m_info::filled_check_list.water_levels = {{5.0, 123.456}};
  m_info::filled_check_list.water_level_count = 2;
  CheckCase asked = wanted();
  asked.element_number = 8;
  asked.station = 123.456009;
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.water_levels = true;
  EXPECT_EQ(check_list_wants(asked), 1);
  asked.station = 123.456011;
  EXPECT_EQ(check_list_wants(asked), 0);
  asked.station = 0.0;
  EXPECT_EQ(check_list_wants(asked), 0);
}

TEST_F(CheckListWants, ToleranceOfAWaterLevelIsASinglePrecisionNumber) {
  m_info::filled_check_list.water_levels = {{0.0}};
  m_info::filled_check_list.water_level_count = 1;
  CheckCase asked = wanted();
  asked.water_levels = true;
  // In single precision 0.00001 is 9.9999997474E-6.
  asked.station = 9.9999997E-6;
  EXPECT_EQ(check_list_wants(asked), 1);
  asked.station = 9.9999998E-6;
  EXPECT_EQ(check_list_wants(asked), 0);
}

TEST_F(CheckListWants, WaterLevelsPastTheTenthAreNotKept) {
  m_info::filled_check_list.water_level_count = 12;
  CheckCase asked = wanted();
  asked.water_levels = true;
  asked.station = 99.0;
  EXPECT_EQ(check_list_wants(asked), 0);
  m_info::filled_check_list.water_levels.at(10) = 99.0;
  EXPECT_EQ(check_list_wants(asked), 1);
}

}  // namespace
}  // namespace m_info
