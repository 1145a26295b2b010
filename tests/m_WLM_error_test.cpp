#include "m_WLM_error/m_WLM_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "m_WLM_error/catalogue/entry.h"
#include "runtime/units.h"
#include "tests/german.h"
#include "tests/shown_text.h"
#include "tests/test_files.h"
#include "tests/test_host.h"
#include "tests/unit_watch.h"
#include "tests/variant_files.h"

namespace {

namespace fs = std::filesystem;
using m_WLM_error::ErrorLevel;
using m_WLM_error::MessageDispatcher;
using m_WLM_error::report;
using test_files::read_bytes;
using test_files::write_bytes;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using variant_files::Lines;
using variant_files::protocol_codes;
using variant_files::protocol_lines;
using variant_files::start_protocol;
using variant_files::written_lines;

class Dispatcher : public testing::Test {
 private:
  variant_files::FreshRun folder_;
};

TEST_F(Dispatcher, InitStartsARunWithoutAFile) {
  EXPECT_EQ(MessageDispatcher("INIT", {.text1 = "v.pkl", .text2 = "KARVOS"}), 0);
  EXPECT_FALSE(fs::exists("v.pkl"));
}

TEST_F(Dispatcher, InitRemovesAnOldProtocolAndNothingElse) {
  write_bytes("v.pkl", "old\n");
  write_bytes("w.pkl", "old\n");
  fs::create_directory("folder.pkl");
  start_protocol();
  EXPECT_FALSE(fs::exists("v.pkl"));
  EXPECT_TRUE(fs::exists("w.pkl"));
  EXPECT_EQ(MessageDispatcher("INIT", {.text1 = "folder.pkl"}), 0);
  EXPECT_TRUE(fs::is_directory("folder.pkl"));
}

// A test that wants a call of the host to fail, and sees what is told then.
struct FaultyHost {
  ShownText shown;
  TestHost calls;
};

TEST_F(Dispatcher, AnOldProtocolThatCannotBeRemovedIsTold) {
  write_bytes("v.pkl", "old\n");
  FaultyHost host;
  host.calls.fail(HostCall::remove, 1, std::errc::permission_denied);
  start_protocol();
  EXPECT_EQ(host.shown.error(), german("E/A-Fehler beim Löschen von \"v.pkl\": Permission denied\n"));
  EXPECT_EQ(read_bytes("v.pkl"), "old\n");
  // It is overwritten all the same when there is something to say.
  MessageDispatcher("Y04", {.text1 = "K17"});
  EXPECT_EQ(written_lines("v.pkl").front(), german("Prüfprotokoll: KARVOS"));
}

TEST_F(Dispatcher, AnOldProtocolThatCannotBeOpenedIsTold) {
  write_bytes("v.pkl", "old\n");
  FaultyHost host;
  host.calls.fail(HostCall::open, 1, std::errc::too_many_files_open, true);
  start_protocol();
  EXPECT_EQ(host.shown.error(), german("E/A-Fehler beim Löschen von \"v.pkl\": Too many open files\n"));
  EXPECT_EQ(read_bytes("v.pkl"), "old\n");
}

TEST_F(Dispatcher, AnInputUnderTheNameOfTheProtocolStays) {
  write_bytes("v.sys", "the network\n");
  fs::create_symlink("v.sys", "v.pkl");
  runtime::protect("v.sys");
  const ShownText shown;
  MessageDispatcher("INIT", {.text1 = "v.pkl", .text2 = "KARVOS"});
  EXPECT_EQ(shown.error(), german("E/A-Fehler beim Löschen von \"v.pkl\": Operation not permitted\n"));
  EXPECT_EQ(read_bytes("v.sys"), "the network\n");
  EXPECT_TRUE(fs::is_symlink("v.pkl"));
}

TEST_F(Dispatcher, NothingToRemoveIsNotTold) {
  fs::create_directory("folder.pkl");
  const ShownText shown;
  start_protocol();
  EXPECT_EQ(MessageDispatcher("INIT", {.text1 = "folder.pkl"}), 0);
  EXPECT_EQ(MessageDispatcher("INIT", {.text1 = "/dev/null"}), 0);
  EXPECT_EQ(shown.error(), "");
}

TEST_F(Dispatcher, TablesThatFindNoMemoryAreTold) {
  const ShownText shown;
  m_WLM_error::fold_allocation(0, "v.nfl");
  EXPECT_EQ(ErrorLevel, 0);
  EXPECT_EQ(shown.error(), "");
  m_WLM_error::fold_allocation(m_WLM_error::allocation_failed, "v.nfl   ");
  EXPECT_EQ(ErrorLevel, 5020);
  EXPECT_EQ(shown.error(), "Speichermangel: Tabellen zu \"v.nfl\" nicht angelegt (ErrorLevel 5020)\n");
}

TEST_F(Dispatcher, InitSetsTheLevelsBack) {
  start_protocol();
  EXPECT_EQ(MessageDispatcher("Y04", {.text1 = "K17"}), 2);
  start_protocol();
  EXPECT_EQ(MessageDispatcher("H01"), 0);
}

TEST_F(Dispatcher, TheFirstMessageCreatesTheProtocol) {
  MessageDispatcher("INIT", {.text1 = "v.pkl   ", .text2 = "KARVOS      "});
  MessageDispatcher("Y04", {.text1 = "K17"});
  EXPECT_THAT(written_lines("v.pkl"), ElementsAre(german("Prüfprotokoll: KARVOS"),
                                                  "Y04 Das Element ............................. : K17",
                                                  "    ist in der Systemlogik mehrfach definiert !"));
}

TEST_F(Dispatcher, TheRunLabelHasTwelveCharacters) {
  MessageDispatcher("INIT", {.text1 = "v.pkl", .text2 = "KARVOS 12345678"});
  MessageDispatcher("Y04");
  EXPECT_EQ(written_lines("v.pkl").front(), german("Prüfprotokoll: KARVOS 12345"));
  MessageDispatcher("INIT", {.text1 = "v.pkl"});
  MessageDispatcher("Y04");
  EXPECT_EQ(written_lines("v.pkl").front(), german("Prüfprotokoll: "));
}

TEST_F(Dispatcher, TheProtocolPathHas120Characters) {
  const std::string path = std::string(116, 'p') + ".pkl";
  write_bytes(path, "old\n");
  MessageDispatcher("INIT", {.text1 = path + "xyz"});
  EXPECT_FALSE(fs::exists(path));
  MessageDispatcher("Y04");
  EXPECT_EQ(written_lines(path).size(), 3U);
  EXPECT_FALSE(fs::exists(path + "xyz"));
}

TEST_F(Dispatcher, MessagesFollowEachOther) {
  start_protocol();
  MessageDispatcher("Y01", {.text1 = "X1"});
  MessageDispatcher("W02", {.text1 = "V1"});
  MessageDispatcher("Y99", {.text1 = "K17"});
  EXPECT_THAT(protocol_codes(), ElementsAre("Y01", "W02", "Y99"));
}

TEST_F(Dispatcher, TheLevelOnlyRises) {
  start_protocol();
  EXPECT_EQ(MessageDispatcher("W01"), 1);
  EXPECT_EQ(MessageDispatcher("Y04"), 2);
  EXPECT_EQ(MessageDispatcher("W01"), 2);
}

TEST_F(Dispatcher, ReportStoresWhatTheDispatcherReturns) {
  start_protocol();
  EXPECT_EQ(ErrorLevel, 0);
  report("Y04");
  EXPECT_EQ(ErrorLevel, 2);
  report("ErrorLevel", {.int1 = 1});
  EXPECT_EQ(ErrorLevel, 1);
  // Without Report the run's level stays.
  MessageDispatcher("Y04");
  EXPECT_EQ(ErrorLevel, 1);
}

TEST_F(Dispatcher, ErrorLevelReplacesTheLevel) {
  start_protocol();
  MessageDispatcher("Y04");
  EXPECT_EQ(MessageDispatcher("ErrorLevel", {.int1 = 1}), 1);
  // The level of the message before it is replaced as well: a code without a group does not bring it back.
  EXPECT_EQ(MessageDispatcher("H01"), 1);
  EXPECT_EQ(MessageDispatcher("ErrorLevel", {.int1 = 5020}), 5020);
  EXPECT_EQ(MessageDispatcher("Y04"), 5020);
  EXPECT_EQ(MessageDispatcher("ErrorLevel"), 0);
  EXPECT_EQ(MessageDispatcher("ErrorLevel", {.int1 = -7}), -7);
}

TEST_F(Dispatcher, ErrorLevelAloneLeavesNoFile) {
  start_protocol();
  EXPECT_EQ(MessageDispatcher("ErrorLevel", {.int1 = 3}), 3);
  EXPECT_EQ(MessageDispatcher("FINALE"), 3);
  EXPECT_FALSE(fs::exists("v.pkl"));
}

TEST_F(Dispatcher, FinaleClosesTheProtocolAndReturnsTheLevel) {
  start_protocol();
  MessageDispatcher("W01", {.text1 = "V1"});
  EXPECT_TRUE(runtime::unit_of("v.pkl").has_value());
  EXPECT_EQ(MessageDispatcher("FINALE"), 1);
  EXPECT_FALSE(runtime::unit_of("v.pkl").has_value());
  EXPECT_EQ(test_files::read_bytes("v.pkl"),
            german("Prüfprotokoll: KARVOS\nW01 Warnung: Das Systemelement .............. : V1\n"
                   "             weist kein 1. Abgabeelement auf!\n"));
}

TEST_F(Dispatcher, AMessageAfterFinaleIsAnIoError) {
  start_protocol();
  MessageDispatcher("Y04");
  MessageDispatcher("FINALE");
  const std::string closed = test_files::read_bytes("v.pkl");
  EXPECT_EXIT(MessageDispatcher("Y04"), testing::ExitedWithCode(0), "Einheit 100");
  EXPECT_EQ(test_files::read_bytes("v.pkl"), closed);
}

TEST_F(Dispatcher, FinaleBeforeTheFirstMessageHoldsNothingUp) {
  start_protocol();
  MessageDispatcher("FINALE");
  MessageDispatcher("Y04");
  EXPECT_THAT(protocol_codes(), ElementsAre("Y04"));
}

TEST_F(Dispatcher, TakesTheFirstFreeUnitFrom100) {
  start_protocol();
  MessageDispatcher("Y04");
  EXPECT_EQ(runtime::unit_of("v.pkl"), 100);
  start_protocol();
  write_bytes("other", "");
  runtime::open(100, "other", runtime::OpenStatus::old);
  MessageDispatcher("Y04");
  EXPECT_EQ(runtime::unit_of("v.pkl"), 101);
}

TEST_F(Dispatcher, CodesOfNoGroupWriteNothing) {
  start_protocol();
  for (const std::string_view code : {"H01", "N01", "O01", "X01", "Z1", "Z", "y04", "a00", "m01", "mn01",
                                      "L01", "l", "0Y1", "", " Y04", "init", "finale", "INIT1"}) {
    // "INIT1" begins with I: it is the one that has a group.
    EXPECT_EQ(MessageDispatcher(code), code == "INIT1" ? 2 : 0) << code;
  }
  EXPECT_THAT(protocol_lines(), ElementsAre("INIT1-Kommentar bei  nicht definiert!"));
}

TEST_F(Dispatcher, ACodeOfNoGroupStillCreatesTheProtocol) {
  start_protocol();
  MessageDispatcher("H01");
  EXPECT_THAT(written_lines("v.pkl"), ElementsAre(german("Prüfprotokoll: KARVOS")));
}

TEST_F(Dispatcher, RoutesACodeByItsBeginning) {
  const std::vector<std::string_view> in_order = {"A",  "B",   "C",   "D", "E",   "F",  "G", "I",  "J", "K",
                                                  "LF", "mnn", "M",   "P", "Q",   "Rt", "R", "St", "S", "T",
                                                  "U",  "Ver", "Vkl", "V", "Whr", "W",  "Y", "ZW"};
  std::vector<std::string_view> prefixes;
  for (const auto* group : m_WLM_error::catalogue::groups()) prefixes.push_back(group->prefix);
  EXPECT_EQ(prefixes, in_order);
  for (const std::string_view prefix : in_order) {
    start_protocol();
    const std::string code = std::string(prefix) + "??";
    EXPECT_EQ(MessageDispatcher(code, {.text1 = "K17"}), prefix == "W" ? 1 : 2) << code;
    EXPECT_THAT(protocol_lines(), ElementsAre(code + "-Kommentar bei K17 nicht definiert!"));
    EXPECT_EQ(m_WLM_error::catalogue::group_of(code)->prefix, prefix);
  }
}

TEST_F(Dispatcher, RoutesNearMissesToTheShorterPrefix) {
  const auto prefix_of = [](std::string_view code) { return m_WLM_error::catalogue::group_of(code)->prefix; };
  EXPECT_EQ(prefix_of("DB0"), "D");
  EXPECT_EQ(prefix_of("TRS0"), "T");
  EXPECT_EQ(prefix_of("RT3"), "R");
  EXPECT_EQ(prefix_of("ST1"), "S");
  EXPECT_EQ(prefix_of("VER1"), "V");
  EXPECT_EQ(prefix_of("Vk1"), "V");
  EXPECT_EQ(prefix_of("WHR0"), "W");
  EXPECT_EQ(prefix_of("Mnn"), "M");
  EXPECT_EQ(prefix_of("W"), "W");
}

TEST_F(Dispatcher, CutsATextAt1000Characters) {
  start_protocol();
  const std::string text(1000, 't');
  MessageDispatcher("Y04", {.text1 = text + "u"});
  MessageDispatcher("Y04", {.text1 = std::string(998, 's') + "   u"});
  const Lines lines = protocol_lines();
  const std::string start = "Y04 Das Element ............................. : ";
  EXPECT_EQ(lines.at(0), start + text);
  EXPECT_EQ(lines.at(2), start + std::string(998, 's'));
}

TEST_F(Dispatcher, CutsEveryTextAt1000Characters) {
  start_protocol();
  const std::string text(1000, 't');
  MessageDispatcher("E34", {.text1 = text + "1", .text2 = text + "2", .text3 = text + "3"});
  EXPECT_THAT(protocol_lines(), Each(EndsWith(": " + text)));
}

TEST_F(Dispatcher, AbsentNumbersHaveTheirValues) {
  start_protocol();
  MessageDispatcher("E12");
  EXPECT_THAT(protocol_lines(),
              ElementsAre(EndsWith(": "), EndsWith(": -9999.990"), EndsWith(":     0.000")));
  start_protocol();
  MessageDispatcher("Y00");
  EXPECT_THAT(protocol_lines().front(), EndsWith(":     0"));
  start_protocol();
  MessageDispatcher("R09");
  EXPECT_THAT(protocol_lines(), ElementsAre(EndsWith(": "), EndsWith(":         0"), EndsWith("!"),
                                            EndsWith(":         0"), EndsWith(":         0")));
}

TEST_F(Dispatcher, InitKeepsTheLastStructure) {
  const auto assign = [](std::string_view text) {
    MessageDispatcher("ZW0", {.text1 = "Profile", .text2 = text});
  };
  start_protocol();
  assign("one");
  EXPECT_THAT(protocol_lines(), ElementsAre(EndsWith(": Profile"), "", "    one"));
  start_protocol();
  assign("two");
  EXPECT_THAT(protocol_lines(), ElementsAre("    two"));
}

TEST_F(Dispatcher, ModeLSuppressesThreeCodes) {
  write_bytes("fehlercode.ex", "W01\n");
  MessageDispatcher("INIT", {.text1 = "v.pkl", .text2 = "KARVOS", .text3 = "L  "});
  MessageDispatcher("Y04");
  for (const std::string_view code : {"mnn18", "mnn19", "W11"}) EXPECT_EQ(MessageDispatcher(code), 0);
  EXPECT_EQ(MessageDispatcher("W01", {.text1 = "V1"}), 2);
  EXPECT_THAT(protocol_codes(), ElementsAre("Y04", "W01"));
}

TEST_F(Dispatcher, OtherModesReadTheListOfTheWorkingFolder) {
  write_bytes("fehlercode.ex", "W01\n");
  for (const std::string_view mode : {"l", "LL", " L", ""}) {
    runtime::close_all();
    MessageDispatcher("INIT", {.text1 = "v.pkl", .text3 = mode});
    EXPECT_EQ(MessageDispatcher("W01"), 0) << mode;
    EXPECT_EQ(MessageDispatcher("W11"), 1) << mode;
  }
}

TEST_F(Dispatcher, ACodeIsSoughtWithItsWholeLength) {
  write_bytes("fehlercode.ex", "W01Y05\n");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("W01 "), 1);
  EXPECT_EQ(MessageDispatcher("Y05 "), 0);
}

TEST_F(Dispatcher, ASuppressedCodeReturnsZeroAndChangesNothing) {
  write_bytes("fehlercode.ex", "W01\nY05\n");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("Y05"), 0);
  EXPECT_FALSE(fs::exists("v.pkl"));
  EXPECT_EQ(MessageDispatcher("Y04"), 2);
  EXPECT_EQ(MessageDispatcher("W01"), 0);
  EXPECT_EQ(MessageDispatcher("H01"), 2);
  EXPECT_THAT(protocol_codes(), ElementsAre("Y04"));
}

TEST_F(Dispatcher, TheLinesOfTheListAreJoined) {
  write_bytes("fehlercode.ex", "W0\nY1");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("Y04"), 2);
  for (const std::string_view code : {"W0", "Y1", "0Y1", "W0Y1", "W", "Y"}) {
    EXPECT_EQ(MessageDispatcher(code), 0) << code;
  }
  EXPECT_EQ(MessageDispatcher("W01"), 2);
  EXPECT_THAT(protocol_codes(), ElementsAre("Y04", "W01"));
}

TEST_F(Dispatcher, ALeadingBlankOfALineStaysInTheList) {
  write_bytes("fehlercode.ex", "W0  \n 1\n");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("W01"), 1);
  EXPECT_EQ(MessageDispatcher("W0 1"), 0);
}

TEST_F(Dispatcher, ALineOfTheListHas100Characters) {
  write_bytes("fehlercode.ex", std::string(98, '.') + "W01\nY05\n");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("W01"), 1);
  EXPECT_EQ(MessageDispatcher("W0Y05"), 0);
}

TEST_F(Dispatcher, TheListHas1000Characters) {
  std::string lines;
  for (int i = 0; i < 9; ++i) lines += std::string(100, '.') + "\n";
  write_bytes("fehlercode.ex", lines + std::string(95, '.') + "W01W0\nY05\n");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("W01"), 0);
  EXPECT_EQ(MessageDispatcher("W0"), 0);
  EXPECT_EQ(MessageDispatcher("W0Y"), 1);
  EXPECT_EQ(MessageDispatcher("W02"), 1);
  EXPECT_EQ(MessageDispatcher("Y05"), 2);
}

TEST_F(Dispatcher, AnEmptyListSuppressesOnlyBlankCodes) {
  write_bytes("fehlercode.ex", "");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("Y04"), 2);
  EXPECT_EQ(MessageDispatcher("   "), 0);
}

TEST_F(Dispatcher, TheListIsReadByEachInit) {
  write_bytes("fehlercode.ex", "W01\n");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("W01"), 0);
  // A later list begins anew: nothing of the earlier one is left, not even a beginning.
  write_bytes("fehlercode.ex", "W02\n");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("W02"), 0);
  EXPECT_EQ(MessageDispatcher("W01W02"), 1);
  EXPECT_EQ(MessageDispatcher("W01"), 1);
  fs::remove("fehlercode.ex");
  start_protocol();
  EXPECT_EQ(MessageDispatcher("W02"), 1);
}

TEST_F(Dispatcher, TheListIsReadOnAUnitFrom100AndClosed) {
  write_bytes("fehlercode.ex", "W01\n");
  const UnitWatch watch;
  start_protocol();
  EXPECT_THAT(watch.units, ElementsAre(100));
  EXPECT_FALSE(runtime::unit_of("fehlercode.ex").has_value());
}

TEST_F(Dispatcher, ASuppressedErrorLevelSetsNothing) {
  write_bytes("fehlercode.ex", "ErrorLevel\n");
  start_protocol();
  MessageDispatcher("W01");
  EXPECT_EQ(MessageDispatcher("ErrorLevel", {.int1 = 3}), 0);
  EXPECT_EQ(MessageDispatcher("H01"), 1);
}

TEST_F(Dispatcher, TheReservedWordsAreNeverSuppressed) {
  write_bytes("fehlercode.ex", "INITFINALE\n");
  start_protocol();
  MessageDispatcher("Y04");
  EXPECT_EQ(MessageDispatcher("FINALE "), 2);
  EXPECT_EQ(MessageDispatcher("INIT ", {.text1 = "v.pkl"}), 0);
  EXPECT_FALSE(fs::exists("v.pkl"));
}

TEST_F(Dispatcher, APathThatCannotBeWrittenEndsTheRun) {
  fs::create_directory("v.pkl");
  start_protocol();
  EXPECT_EXIT(MessageDispatcher("Y04"), testing::ExitedWithCode(0), "v\\.pkl");
}

}  // namespace
