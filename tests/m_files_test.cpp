#include "m_files/m_files.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "runtime/cp1252.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "runtime/write.h"
#include "tests/suite_host.h"
#include "tests/unit_watch.h"

namespace m_files {
namespace {

using namespace runtime::literals;
using runtime::OpenStatus;
using std::filesystem::exists;
using test_files::read_bytes;
using test_files::write_bytes;
using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::IsEmpty;

class Files : public testing::Test {
 protected:
  ~Files() override {
    runtime::close_all();
    runtime::unlimit_allocations();
    reset();
  }

  test_files::WorkingFolder folder_;
  SuiteHost host_;
};

// Units.

using FreeUnit = Files;

TEST_F(FreeUnit, IsTheStartWhenItIsFree) {
  EXPECT_EQ(free_unit(4), 4);
  EXPECT_EQ(free_unit(100), 100);
}

TEST_F(FreeUnit, IsTheNextOneThatIsNotConnected) {
  runtime::open(100, "a", OpenStatus::unknown);
  runtime::open(101, "b", OpenStatus::unknown);
  EXPECT_EQ(free_unit(100), 102);
}

TEST_F(FreeUnit, SkipsTheStandardUnits) {
  EXPECT_EQ(free_unit(5), 7);
  EXPECT_EQ(free_unit(6), 7);
  runtime::open(4, "a", OpenStatus::unknown);
  EXPECT_EQ(free_unit(4), 7);
  runtime::open(7, "b", OpenStatus::unknown);
  EXPECT_EQ(free_unit(4), 8);
}

using OpenChecked = Files;

TEST_F(OpenChecked, NewReplacesAnExistingFile) {
  write_bytes("a.txt", "before\n");
  int unit = 0;
  EXPECT_EQ(open_checked("a.txt", "NEW", unit), file_opened);
  EXPECT_EQ(unit, 100);
  runtime::close(unit);
  EXPECT_EQ(read_bytes("a.txt"), "");
}

TEST_F(OpenChecked, NewReplacesAFileThatAUnitHolds) {
  runtime::open(100, "a.txt", OpenStatus::unknown);
  runtime::write<"(a)">(100, "before");
  int unit = 0;
  EXPECT_EQ(open_checked("a.txt", "new  ", unit, 300), file_opened);
  EXPECT_EQ(unit, 300);
  EXPECT_FALSE(runtime::is_connected(100));
}

TEST_F(OpenChecked, OldMustExist) {
  int unit = 7;
  EXPECT_EQ(open_checked("a.txt", "OLD", unit), file_not_opened);
  EXPECT_EQ(unit, 0);
  write_bytes("a.txt", "line\n");
  EXPECT_EQ(open_checked("a.txt", "OLD", unit), file_opened);
  std::string_view line;
  EXPECT_TRUE(runtime::LineReader(unit, 80).next(line));
  EXPECT_EQ(line, "line");
}

TEST_F(OpenChecked, UnknownCreatesWhatIsMissing) {
  int unit = 0;
  EXPECT_EQ(open_checked("a.txt", "Unknown", unit), file_opened);
  EXPECT_TRUE(exists("a.txt"));
}

TEST_F(OpenChecked, RefusesOtherWordsAndFolders) {
  int unit = 7;
  EXPECT_EQ(open_checked("a.txt", "SCRATCH", unit), file_not_opened);
  EXPECT_EQ(unit, 0);
  EXPECT_FALSE(exists("a.txt"));
  std::filesystem::create_directory("d");
  EXPECT_EQ(open_checked("d", "NEW", unit), file_not_opened);
  EXPECT_TRUE(exists("d"));
}

using DumpOpenUnits = Files;

TEST_F(DumpOpenUnits, ReportsTheConnectedUnitsUpToTheHighest) {
  runtime::open(3, "a.txt", OpenStatus::unknown);
  runtime::open(11, "b.txt", OpenStatus::unknown);
  dump_open_units("Leser  ", 10);
  dump_open_units("danach", 200);
  runtime::close_all();
  EXPECT_EQ(read_bytes("o_unit_file.pkl"),
            "Leser  200   10\n"
            "    3  a.txt\n"
            "danach  200  200\n"
            "    3  a.txt\n"
            "   11  b.txt\n"
            "  200  o_unit_file.pkl\n");
}

TEST_F(DumpOpenUnits, CutsAPathAtFiveHundredCharacters) {
  const std::string folder(250, 'd');
  const std::string path = folder + "/" + folder + "/a.txt";
  std::filesystem::create_directories(folder + "/" + folder);
  runtime::open(3, path, OpenStatus::unknown);
  dump_open_units("x", 3);
  runtime::close_all();
  EXPECT_EQ(read_bytes("o_unit_file.pkl"), "x  200    3\n    3  " + path.substr(0, 500) + "\n");
}

TEST_F(DumpOpenUnits, OverwritesAnEarlierFile) {
  write_bytes("o_unit_file.pkl", "one\ntwo\nthree\n");
  dump_open_units("x", 0);
  runtime::close_all();
  EXPECT_EQ(read_bytes("o_unit_file.pkl"), "x  200    0\n");
}

TEST_F(DumpOpenUnits, DescribesAUnitWithoutAPath) {
  host_.nameless_file = "hidden.txt";
  runtime::open(9, "", OpenStatus::unknown);
  dump_open_units("x", 9);
  runtime::close_all();
  EXPECT_EQ(read_bytes("o_unit_file.pkl"), "x  200    9\n    9     Datei ohne Namen    \n");
}

TEST_F(DumpOpenUnits, TakesTheFirstFreeUnit) {
  runtime::open(200, "a.txt", OpenStatus::unknown);
  dump_open_units("x", 6);
  runtime::close_all();
  EXPECT_EQ(read_bytes("o_unit_file.pkl"), "x  201    6\n");
}

// Deleting and copying.

using DeleteFile = Files;

TEST_F(DeleteFile, TellsAFileThatDidNotExist) {
  EXPECT_EQ(delete_file_if_exists("a.txt"), file_did_not_exist);
}

TEST_F(DeleteFile, DeletesAndFreesItsUnit) {
  write_bytes("a.txt", "x");
  EXPECT_EQ(delete_file_if_exists("a.txt   "), file_deleted);
  EXPECT_FALSE(exists("a.txt"));
  EXPECT_FALSE(runtime::is_connected(100));
}

TEST_F(DeleteFile, ClosesTheUnitThatHoldsTheFile) {
  runtime::open(42, "a.txt", OpenStatus::unknown);
  runtime::write<"(a)">(42, "x");
  EXPECT_EQ(delete_file_if_exists("a.txt"), file_deleted);
  EXPECT_FALSE(runtime::is_connected(42));
  EXPECT_FALSE(exists("a.txt"));
}

using RemoveListFile = Files;

TEST_F(RemoveListFile, ReturnsTheUnitItTook) {
  write_bytes("files.lis", "x");
  EXPECT_EQ(remove_list_file("files.lis"), 500);
  EXPECT_FALSE(exists("files.lis"));
  runtime::open(500, "held", OpenStatus::unknown);
  EXPECT_EQ(remove_list_file("files.lis"), 501);
  EXPECT_FALSE(runtime::is_connected(501));
}

TEST_F(RemoveListFile, HasAllBitsSetWhenTheCloseFails) {
  write_bytes("files.lis", "x");
  host_.refuses_removal = true;
  EXPECT_EQ(remove_list_file("files.lis"), -1);
  EXPECT_FALSE(runtime::is_connected(500));
}

TEST_F(RemoveListFile, HasAllBitsSetWhenTheFileCannotBeOpened) {
  std::filesystem::create_directory("d");
  EXPECT_EQ(remove_list_file("d"), -1);
}

using CopyFileLines = Files;

TEST_F(CopyFileLines, CopiesLinesWithoutTrailingBlanks) {
  write_bytes("a.txt", "one  \r\n\n  two\nthree");
  EXPECT_EQ(copy_file_lines("a.txt", "b.txt"), lines_copied);
  EXPECT_EQ(read_bytes("b.txt"), "one\n\n  two\nthree\n");
  EXPECT_TRUE(exists("a.txt"));
  EXPECT_FALSE(runtime::is_connected(200));
  EXPECT_FALSE(runtime::is_connected(201));
}

TEST_F(CopyFileLines, TakesUnitsFrom200) {
  write_bytes("a.txt", "one\n");
  const UnitWatch watch;
  EXPECT_EQ(copy_file_lines("a.txt", "b.txt"), lines_copied);
  EXPECT_THAT(watch.units, ElementsAre(200, 201));
}

TEST_F(CopyFileLines, CutsLinesAtFiveHundredCharacters) {
  write_bytes("a.txt", std::string(499, 'x') + "yz\n");
  EXPECT_EQ(copy_file_lines("a.txt", "b.txt"), lines_copied);
  EXPECT_EQ(read_bytes("b.txt"), std::string(499, 'x') + "y\n");
}

TEST_F(CopyFileLines, TellsASourceThatCannotBeOpened) {
  EXPECT_EQ(copy_file_lines("a.txt", "b.txt"), -1);
  EXPECT_FALSE(exists("b.txt"));
}

TEST_F(CopyFileLines, DeletesTheSourceWhenAsked) {
  for (const std::int32_t flag : {1, 2, -1}) {
    write_bytes("a.txt", "one\n");
    EXPECT_EQ(copy_file_lines("a.txt", "b.txt", flag), lines_copied);
    EXPECT_FALSE(exists("a.txt")) << flag;
    EXPECT_EQ(read_bytes("b.txt"), "one\n");
  }
}

TEST_F(CopyFileLines, TakesASourceThatIsOpenFromItsBeginning) {
  write_bytes("a.txt", "one\ntwo\n");
  runtime::open(50, "a.txt", OpenStatus::old);
  std::string_view line;
  ASSERT_TRUE(runtime::LineReader(50, 80).next(line));
  EXPECT_EQ(copy_file_lines("a.txt", "b.txt"), lines_copied);
  EXPECT_EQ(read_bytes("b.txt"), "one\ntwo\n");
  EXPECT_FALSE(runtime::is_connected(50));
}

TEST_F(CopyFileLines, OverwritesTheTarget) {
  write_bytes("a.txt", "one\n");
  write_bytes("b.txt", "a longer text from before\nand more\n");
  EXPECT_EQ(copy_file_lines("a.txt", "b.txt"), lines_copied);
  EXPECT_EQ(read_bytes("b.txt"), "one\n");
  write_bytes("a.txt", "");
  EXPECT_EQ(copy_file_lines("a.txt", "b.txt"), lines_copied);
  EXPECT_EQ(read_bytes("b.txt"), "");
}

using CopyLine = Files;

TEST_F(CopyLine, CopiesOneLineACall) {
  write_bytes("a.txt", "one  \n" + std::string(501, 'x') + "\n");
  Line line;
  EXPECT_EQ(copy_line("a.txt", "b.txt", line), LineCopy::copied);
  EXPECT_EQ(line.trimmed(), "one");
  EXPECT_TRUE(runtime::is_connected(200));
  EXPECT_TRUE(runtime::is_connected(201));
  EXPECT_EQ(copy_line("a.txt", "b.txt", line), LineCopy::copied);
  EXPECT_EQ(copy_line("a.txt", "b.txt", line), LineCopy::end_of_file);
  EXPECT_EQ(line.view(), std::string(500, 'x'));
  EXPECT_FALSE(runtime::is_connected(200));
  EXPECT_FALSE(runtime::is_connected(201));
  EXPECT_EQ(read_bytes("b.txt"), "one\n" + std::string(500, 'x') + "\n");
}

TEST_F(CopyLine, BeginsAnotherCopyAfterTheEnd) {
  write_bytes("a.txt", "one\n");
  write_bytes("c.txt", "two\n");
  Line line;
  EXPECT_EQ(copy_line("a.txt", "b.txt", line), LineCopy::copied);
  EXPECT_EQ(copy_line("c.txt", "d.txt", line), LineCopy::end_of_file);
  EXPECT_EQ(copy_line("c.txt", "d.txt", line), LineCopy::copied);
  EXPECT_EQ(line.trimmed(), "two");
}

TEST_F(CopyLine, LeavesTheUnitsOfTheCallerOpen) {
  write_bytes("a.txt", "one\n");
  runtime::open(10, "a.txt", OpenStatus::old);
  runtime::open(11, "b.txt", OpenStatus::unknown);
  Line line;
  EXPECT_EQ(copy_line(10, 11, line), LineCopy::copied);
  EXPECT_EQ(copy_line(10, 11, line), LineCopy::end_of_file);
  runtime::write<"(a)">(11, "behind");
  runtime::close(11);
  EXPECT_TRUE(runtime::is_connected(10));
  EXPECT_EQ(read_bytes("b.txt"), "one\nbehind\n");
}

TEST_F(CopyLine, TellsAMissingSource) {
  Line line("as it was");
  EXPECT_EQ(copy_line("a.txt", "b.txt", line), LineCopy::source_missing);
  EXPECT_EQ(line.trimmed(), "as it was");
  EXPECT_FALSE(exists("b.txt"));
  write_bytes("a.txt", "one\n");
  EXPECT_EQ(copy_line("a.txt", "b.txt", line), LineCopy::copied);
}

// Texts.

TEST(ToUpper, ConvertsLettersAndUmlautsOnly) {
  constexpr std::string_view lower = "azäöüß é1 "_w1252;
  std::string text(lower);
  to_upper(text);
  EXPECT_EQ(text, "AZÄÖÜß é1 "_w1252);
}

using FindInWinIni = Files;

TEST_F(FindInWinIni, RunsTheSearch) {
  find_in_win_ini("[Karvos] ");
  EXPECT_THAT(host_.commands, ElementsAre("find>text.lis /i /n \"[Karvos] \" %windir%\\win.ini"));
}

// Lists of files.

class ListFiles : public Files {
 protected:
  ListFiles() {
    std::filesystem::create_directory("data");
    host_.listing_file = "data/files.lis";
  }

  // The listing of a folder with these files, as the suite's host writes it.
  void hold(const std::vector<std::string>& names) {
    host_.listing =
        " Volume in Laufwerk D: ist DATEN\r\n"
        " Verzeichnis von D:\\data\r\n"
        "\r\n"
        "01.02.2003  10:11    <DIR>          .\r\n"
        "01.02.2003  10:11    <DIR>          ..\r\n";
    for (const std::string& name : names)
      host_.listing += "01.02.2003  10:11             1.234 " + name + "\r\n";
  }

  std::vector<std::string> list(std::string_view filter) {
    const std::int32_t count = list_files("data\\", filter, error_);
    EXPECT_EQ(count, file_list.names.size());
    return listed();
  }

  static std::vector<std::string> listed() {
    std::vector<std::string> names;
    for (std::int32_t i = 1; i <= file_list.names.size(); ++i) {
      names.emplace_back(file_list.names.at(i).trimmed());
    }
    return names;
  }

  ErrorText error_{"as it was"};
};

TEST_F(ListFiles, RunsDirIntoTheFolderItself) {
  hold({});
  EXPECT_EQ(list_files("data\\  ", "*", error_), 0);
  EXPECT_EQ(list_files("data\\", "*", error_, " /on"), 0);
  EXPECT_THAT(host_.commands, ElementsAre("dir>data\\files.lis data\\", "dir>data\\files.lis data\\ /on"));
}

TEST_F(ListFiles, KeepsTheNamesAsTheyAreWritten) {
  hold({"Var1.sys", "var 2.trs"});
  EXPECT_THAT(list("*"), ElementsAre("Var1.sys", "var 2.trs"));
  EXPECT_TRUE(error_.blank());
}

TEST_F(ListFiles, DeletesTheListing) {
  hold({"Var1.sys"});
  EXPECT_THAT(list("*"), ElementsAre("Var1.sys"));
  EXPECT_FALSE(exists("data/files.lis"));
  EXPECT_FALSE(runtime::is_connected(100));
}

TEST_F(ListFiles, TakesAUnitFrom100) {
  hold({"Var1.sys"});
  const UnitWatch watch;
  EXPECT_THAT(list("*"), ElementsAre("Var1.sys"));
  EXPECT_THAT(watch.units, ElementsAre(100));
}

TEST_F(ListFiles, CutsNamesAtTwoHundredCharacters) {
  hold({std::string(250, 'x')});
  EXPECT_THAT(list("*"), ElementsAre(std::string(200, 'x')));
}

TEST_F(ListFiles, FreesTheListBefore) {
  hold({"a", "b"});
  EXPECT_EQ(list("*").size(), 2U);
  hold({"c"});
  EXPECT_THAT(list("*"), ElementsAre("c"));
  EXPECT_EQ(file_list.numbers.size(), 1);
  EXPECT_THAT(file_list.numbers.at(1).values, ElementsAre(0, 0, 0, 0, 0));
}

TEST_F(ListFiles, RefusesAStarBesideAQuestionMark) {
  constexpr std::string_view refused = " Der Filter \"VAR*? ist unzulässig!"_w1252;
  EXPECT_EQ(list_files("data\\", "var*?  ", error_), 0);
  EXPECT_EQ(error_.trimmed(), refused);
  EXPECT_EQ(list_files("data\\", "?*.sys", error_), 0);
  EXPECT_EQ(error_.trimmed(), " Der Filter \"?*.SYS ist unzulässig!"_w1252);
  EXPECT_THAT(host_.commands, IsEmpty());
}

TEST_F(ListFiles, RefusalEmptiesTheListAndIsCut) {
  hold({"a"});
  EXPECT_EQ(list("*").size(), 1U);
  EXPECT_EQ(list_files("data\\", "*?" + std::string(300, 'x'), error_), 0);
  EXPECT_THAT(listed(), IsEmpty());
  EXPECT_EQ(error_.view(), " Der Filter \"*?" + std::string(185, 'X'));
}

TEST_F(ListFiles, TellsAMissingPath) {
  host_.listing_file.clear();
  EXPECT_EQ(list_files("nirgends\\  ", "*", error_), 0);
  EXPECT_EQ(error_.trimmed(), "Pfad \"nirgends\\\" existiert nicht!");
  EXPECT_EQ(list_files("", "*", error_), 0);
  EXPECT_EQ(error_.trimmed(), "Pfad \"\" existiert nicht!");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 1);
}

TEST_F(ListFiles, TellsAPathThatTakesNoListing) {
  host_.listing_file.clear();
  std::filesystem::create_directory("data/files.lis");
  EXPECT_EQ(list_files("data\\", "*", error_), 0);
  EXPECT_EQ(error_.trimmed(), "Pfad \"data\\\" existiert nicht!");
  EXPECT_TRUE(exists("data/files.lis"));
}

TEST_F(ListFiles, CutsTheMessageOfALongPath) {
  const std::string path(300, 'p');
  host_.listing_file.clear();
  EXPECT_EQ(list_files(path, "*", error_), 0);
  EXPECT_EQ(error_.view(), "Pfad \"" + std::string(194, 'p'));
}

TEST_F(ListFiles, IsEmptyWithoutAListing) {
  host_.listing_file.clear();
  EXPECT_THAT(list("*"), IsEmpty());
  EXPECT_TRUE(error_.blank());
  EXPECT_FALSE(exists("data/files.lis"));
}

TEST_F(ListFiles, IsEmptyWithoutAFolderLine) {
  host_.listing = "01.02.2003  10:11             1.234 var1.sys\n";
  EXPECT_THAT(list("*"), IsEmpty());
}

TEST_F(ListFiles, LinesOfFoldersAndShortLinesAreNoFiles) {
  hold({"a.sys"});
  host_.listing +=
      "01.02.2003  10:11    <DIR>          alt\n"
      "1234567890123456789\n"
      " Verzeichnis von D:\\data\\noch eines mit langem Namen\n";
  EXPECT_THAT(list("*"), ElementsAre("a.sys"));
}

TEST_F(ListFiles, OnlyVerzeichnisAndADriveNameTheDirectory) {
  hold({"Verzeichnis.txt", "Verzeichnis:x", "Verzeichnis\\x", "D:\\data", "D:\\VERZEICHNIS"});
  EXPECT_THAT(list("*"), ElementsAre("Verzeichnis.txt", "Verzeichnis:x", "Verzeichnis\\x", "D:\\data"));
}

TEST_F(ListFiles, EveryOtherLineIsAFile) {
  hold({});
  host_.listing +=
      "               1 Datei(en)          1.234 Bytes\n"
      "12345678901234567890\n";
  EXPECT_THAT(list("*"), ElementsAre("1.234 Bytes", ""));
}

TEST_F(ListFiles, NameColumnIsThatOfTheFirstFolderLineWithTwoPoints) {
  host_.listing =
      "123456789012345 <DIR> .\n"
      "12345 <DIR>     ..\n"
      "123456789012345 name\n"
      "123456 <DIR> ..\n"
      "123456789012345 other\n";
  EXPECT_THAT(list("*"), ElementsAre("name", "other"));
}

TEST_F(ListFiles, FirstPieceBeginsTheName) {
  hold({"VAR1.SYS", "var2.sys", "xvar3.sys"});
  EXPECT_THAT(list("VAR*"), ElementsAre("VAR1.SYS", "var2.sys"));
}

TEST_F(ListFiles, FilterThatBeginsInLowerCaseMatchesNothing) {
  hold({"VAR1.SYS", "var2.sys"});
  EXPECT_THAT(list("var*"), IsEmpty());
  EXPECT_THAT(list("Var*"), IsEmpty());
}

TEST_F(ListFiles, OtherPiecesMatchInAnyCase) {
  hold({"VAR1.SYS", "var2.sys"});
  EXPECT_THAT(list("*.sys"), ElementsAre("VAR1.SYS", "var2.sys"));
  EXPECT_THAT(list("*ar2*"), ElementsAre("var2.sys"));
}

TEST_F(ListFiles, LastPieceEndsTheName) {
  hold({"var1.sys", "var1.sysx"});
  EXPECT_THAT(list("V*.SYS   "), ElementsAre("var1.sys"));
}

TEST_F(ListFiles, PieceAloneBeginsAndEndsTheName) {
  hold({"A", "AXA", "AX", "XA"});
  EXPECT_THAT(list("A"), ElementsAre("A", "AXA"));
}

TEST_F(ListFiles, OrderOfThePiecesIsNotEnforced) {
  hold({"xBxAx", "xAxBx", "xAx"});
  EXPECT_THAT(list("*A*B*"), ElementsAre("xBxAx", "xAxBx"));
}

TEST_F(ListFiles, QuestionMarksFixTheDistance) {
  hold({"VAR1.sys", "VAR12.sys", "VAR.sys"});
  EXPECT_THAT(list("VAR?.sys"), ElementsAre("VAR1.sys"));
  EXPECT_THAT(list("VAR??.sys"), ElementsAre("VAR12.sys"));
}

TEST_F(ListFiles, QuestionMarksAtTheBeginningCountFromThere) {
  hold({"xyVAR", "xVAR", "VAR"});
  EXPECT_THAT(list("?VAR"), ElementsAre("xVAR"));
  EXPECT_THAT(list("??VAR"), ElementsAre("xyVAR"));
}

TEST_F(ListFiles, OnlyTheFirstOccurrenceOfAPieceCounts) {
  hold({"A1B", "A1BB", "AB1B1"});
  EXPECT_THAT(list("A?B*"), ElementsAre("A1B", "A1BB"));
}

TEST_F(ListFiles, WildcardsAtTheEndAskForNothing) {
  hold({"VAR", "VAR1", "VAR123"});
  EXPECT_THAT(list("VAR?"), ElementsAre("VAR", "VAR1", "VAR123"));
  EXPECT_THAT(list("**"), ElementsAre("VAR", "VAR1", "VAR123"));
  EXPECT_THAT(list(""), ElementsAre("VAR", "VAR1", "VAR123"));
}

TEST_F(ListFiles, UmlautsMatchAfterTheConversion) {
  constexpr std::string_view encoded = "größe.txt"_w1252;
  const std::string name(encoded);
  hold({name});
  EXPECT_THAT(list("*RÖß*"_w1252), ElementsAre(name));
  EXPECT_THAT(list("*RÖSS*"_w1252), IsEmpty());
}

using ListFilesDeathTest = ListFiles;

TEST_F(ListFilesDeathTest, FailedAllocationStopsTheProgram) {
  hold({"a", "b"});
  EXPECT_EXIT(
      {
        runtime::limit_allocations(999);
        list_files("data\\", "*", error_);
      },
      ExitedWithCode(0), "^In file 'file_list.cpp', around line [0-9]+: Error allocating 1000 bytes\n$");
}

TEST_F(ListFiles, CopyTakesBothArraysElementByElement) {
  hold({"a", "b"});
  list("*");
  file_list.numbers.at(2).at(5) = 7;
  FileList copy;
  copy.names.allocate(9);
  copy_file_list(file_list, copy);
  release_file_list(file_list);
  EXPECT_EQ(file_list.names.size(), 0);
  EXPECT_EQ(file_list.numbers.size(), 0);
  ASSERT_EQ(copy.names.size(), 2);
  ASSERT_EQ(copy.numbers.size(), 2);
  EXPECT_EQ(copy.names.at(1).trimmed(), "a");
  EXPECT_EQ(copy.names.at(2).trimmed(), "b");
  EXPECT_THAT(copy.numbers.at(1).values, ElementsAre(0, 0, 0, 0, 0));
  EXPECT_THAT(copy.numbers.at(2).values, ElementsAre(0, 0, 0, 0, 7));
}

TEST_F(ListFiles, CopyOntoItselfKeepsTheList) {
  hold({"a"});
  list("*");
  copy_file_list(file_list, file_list);
  EXPECT_THAT(listed(), ElementsAre("a"));
}

using CopyFileListDeathTest = Files;

TEST_F(CopyFileListDeathTest, FailedAllocationStopsTheProgram) {
  FileList source;
  ASSERT_TRUE(source.names.allocate(3));
  ASSERT_TRUE(source.numbers.allocate(3));
  FileList copy;
  EXPECT_EXIT(
      {
        runtime::limit_allocations(1499);
        copy_file_list(source, copy);
      },
      ExitedWithCode(0), "Error allocating 1500 bytes\n$");
}

// The machine's own interpreter is not the suite's.
TEST(HostWithoutTheSuitesShell, ListIsEmptyAndNothingIsLeftBehind) {
  const test_files::WorkingFolder folder;
  std::filesystem::create_directory("data");
  ErrorText error;
  EXPECT_EQ(list_files("data\\", "*", error), 0);
  EXPECT_TRUE(error.blank());
  EXPECT_TRUE(std::filesystem::is_empty("data"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 1);
  reset();
}

TEST(HostWithoutTheSuitesShell, SearchComesBack) {
  const test_files::WorkingFolder folder;
  find_in_win_ini("karvos");
  EXPECT_TRUE(!exists("text.lis") || read_bytes("text.lis").empty());
  reset();
}

}  // namespace
}  // namespace m_files
