// What is mended, what is left, and that nothing else changes.

#include "KV_Schau/mend/mend.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/mend/diff.h"
#include "KV_Schau/variant/shown_text.h"
#include "tests/dice.h"
#include "tests/program.h"
#include "tests/schau/bed.h"
#include "tests/schau/clean_network.h"
#include "tests/schau/mistakes.h"
#include "tests/test_files.h"

namespace schau::mend {
namespace {

using schau_test::Bed;
using schau_test::FileId;
using schau_test::SystemLine;
using schau_test::text_of;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::array<FileId, 5> files = {FileId::sys, FileId::nfl, FileId::kfl, FileId::trs, FileId::ver};

// The bed as it becomes.
Bed mended_bed(const Bed& bed) {
  const variant::Variant variant = bed.variant();
  const Mended mended = mend(variant);
  Bed after = bed;
  for (const MendedFile& file : mended.files) after.set_bytes(file.id, bytes_of(file));
  return after;
}

std::vector<std::string> left_of(const Bed& bed) {
  const variant::Variant variant = bed.variant();
  std::vector<std::string> texts;
  for (const Left& left : mend(variant).left)
    texts.push_back(fmt::format("{}:{}: {}", schau_test::extension_of(left.file), left.line, left.text));
  return texts;
}

std::string summary_of(const Bed& bed, FileId id) {
  const variant::Variant variant = bed.variant();
  const Mended mended = mend(variant);
  return summary(mended.files.at(static_cast<std::size_t>(id)));
}

// The lines of a file joined by an end.
std::string joined(const std::vector<std::string>& lines, std::string_view end) {
  std::string bytes;
  for (const std::string& line : lines) bytes.append(line).append(end);
  return bytes;
}

TEST(Mend, LeavesAVariantWithoutFaultsAsItIs) {
  const variant::Variant variant = Bed().variant();
  const Mended mended = mend(variant);
  EXPECT_FALSE(mended.is_changed());
  EXPECT_THAT(mended.left, IsEmpty());
  for (const FileId file : files) EXPECT_EQ(mended_bed(Bed()).bytes(file), Bed().bytes(file));
}

// Each of these is spoilt in a way that has one meaning only: the old bytes come back.
struct Spoilt {
  std::string_view what;
  FileId file;
  std::function<void(Bed&)> spoil;
  std::string_view summary;
};

TEST(Mend, UndoesWhatHasOneMeaning) {
  const std::vector<Spoilt> cases = {
      {"UTF-8", FileId::sys, [](Bed& bed) { bed.line(FileId::sys, 1) = "Systemlogik des Prüfnetzes"; },
       "1 Zeile von UTF-8 in Windows-1252"},
      {"byte-order mark", FileId::sys,
       [](Bed& bed) { bed.line(FileId::sys, 1) = "\xEF\xBB\xBFSystemlogik des Prüfnetzes"; },
       "1 Zeile von UTF-8 in Windows-1252"},
      {"trailing blanks", FileId::sys,
       [](Bed& bed) {
         bed.line(FileId::sys, 3) += "   ";
         bed.line(FileId::sys, 5) += " ";
       },
       "2 Zeilen mit Leerzeichen am Ende"},
      {"some CR LF", FileId::nfl,
       [](Bed& bed) {
         bed.line(FileId::nfl, 2) += "\r";
         bed.line(FileId::nfl, 4) += "\r";
       },
       "2 Zeilen mit anderem Zeilenende"},
      {"decimal comma of an area", FileId::nfl, [](Bed& bed) { bed.put(FileId::nfl, 3, 11, "12,40 0,00"); },
       "1 Zeile mit Dezimalkomma"},
      {"decimal comma of a degree of sealing", FileId::kfl,
       [](Bed& bed) { bed.put(FileId::kfl, 3, 16, " 0,35"); }, "1 Zeile mit Dezimalkomma"},
      {"decimal comma of a share", FileId::ver, [](Bed& bed) { bed.put(FileId::ver, 2, 16, " 65,0"); },
       "1 Zeile mit Dezimalkomma"},
      {"decimal comma of a station", FileId::trs, [](Bed& bed) { bed.put(FileId::trs, 3, 11, "  18,250"); },
       "1 Zeile mit Dezimalkomma"},
      {"tabs of eight in an element", FileId::sys,
       [](Bed& bed) { bed.line(FileId::sys, 5) = "\t\t\t\t   T0010   N0010 K0010\t       V0010"; },
       "1 Zeile mit Tabulatoren"},
      {"a tab in a record", FileId::nfl, [](Bed& bed) { bed.line(FileId::nfl, 3) = "   N0010\t 12.40 0.00"; },
       "1 Zeile mit Tabulatoren"},
      {"a tab before a unit", FileId::nfl, [](Bed& bed) { bed.line(FileId::nfl, 4) = "\t  ha"; },
       "1 Zeile mit Tabulatoren"},
      {"a tab before a station", FileId::trs, [](Bed& bed) { bed.line(FileId::trs, 3) = "\t    18.250"; },
       "1 Zeile mit Tabulatoren"},
      {"tabs of eight in the outlet", FileId::sys,
       [](Bed& bed) { bed.line(FileId::sys, 12) = "\t\t\t\t   T0050   P0010\t       ENDE"; },
       "1 Zeile mit Tabulatoren"},
      {"a tab before a unit of canalised areas", FileId::kfl,
       [](Bed& bed) { bed.line(FileId::kfl, 2) = "\t  ha"; }, "1 Zeile mit Tabulatoren"},
      {"a tab of three before a branching", FileId::ver,
       [](Bed& bed) { bed.line(FileId::ver, 2) = "\tV0010     1  65.0"; }, "1 Zeile mit Tabulatoren"},
      {"a tab of three before a reach", FileId::trs,
       [](Bed& bed) { bed.line(FileId::trs, 2).replace(0, 3, "\t"); }, "1 Zeile mit Tabulatoren"},
      {"a tab for a blank", FileId::nfl, [](Bed& bed) { bed.line(FileId::nfl, 3) = "   N0010 \t12.40 0.00"; },
       "1 Zeile mit Tabulatoren"},
  };
  for (const Spoilt& spoilt : cases) {
    SCOPED_TRACE(spoilt.what);
    Bed bed;
    spoilt.spoil(bed);
    EXPECT_EQ(summary_of(bed, spoilt.file), spoilt.summary);
    const Bed after = mended_bed(bed);
    for (const FileId file : files) EXPECT_EQ(after.bytes(file), Bed().bytes(file));
    EXPECT_THAT(schau_test::all_findings(after), IsEmpty());
    EXPECT_THAT(left_of(bed), IsEmpty());
  }
}

TEST(Mend, JoinsDoubledLineEnds) {
  Bed bed;
  bed.set_bytes(FileId::trs, joined(Bed().lines(FileId::trs), "\r\r\n"));
  EXPECT_EQ(mended_bed(bed).bytes(FileId::trs), joined(Bed().lines(FileId::trs), "\r\n"));
  EXPECT_EQ(summary_of(bed, FileId::trs), "11 Zeilen mit doppeltem Zeilenende");
}

TEST(Mend, JoinsNoLinesThatAreApart) {
  Bed bed;
  bed.set_bytes(FileId::trs, "\r\nKopf\rweiter\r\n\r\n" + joined(Bed().lines(FileId::trs), "\r\n"));
  EXPECT_EQ(mended_bed(bed).bytes(FileId::trs), bed.bytes(FileId::trs));
}

TEST(Mend, TakesCarriageReturnsWhereTheyAreTheLineEnd) {
  Bed bed;
  std::string bytes = joined(Bed().lines(FileId::trs), "\r");
  const std::string expected = bytes + "Ende";
  bytes.back() = '\n';
  bed.set_bytes(FileId::trs, bytes + "Ende");
  EXPECT_EQ(mended_bed(bed).bytes(FileId::trs), expected);
  EXPECT_EQ(summary_of(bed, FileId::trs), "1 Zeile mit anderem Zeilenende");
}

TEST(Mend, TakesTheMostFrequentLineEnd) {
  Bed bed;
  std::string bytes = joined(Bed().lines(FileId::trs), "\r\n");
  bytes.erase(bytes.find('\r'), 1);
  bed.set_bytes(FileId::trs, bytes);
  EXPECT_EQ(mended_bed(bed).bytes(FileId::trs), joined(Bed().lines(FileId::trs), "\r\n"));
}

// What could be meant otherwise.
struct Doubtful {
  std::string_view what;
  std::function<void(Bed&)> spoil;
  std::string left;  // what is told of it; empty: nothing
};

TEST(Mend, LeavesWhatCouldBeMeantOtherwise) {
  const std::vector<Doubtful> cases = {
      {"a comma that may set off thousands", [](Bed& bed) { bed.put(FileId::nfl, 3, 11, "1,234"); },
       "nfl:3: \"1,234\" bleibt: andere Flächen haben einen Dezimalpunkt, das Komma könnte Tausender "
       "abtrennen"},
      {"two commas", [](Bed& bed) { bed.put(FileId::nfl, 3, 11, "1,2,3"); }, ""},
      {"a comma and a point", [](Bed& bed) { bed.put(FileId::trs, 3, 11, "1.218,25"); }, ""},
      {"a number that goes on beyond its columns",
       [](Bed& bed) { bed.line(FileId::nfl, 3) = "   N0010  112,40"; }, ""},
      {"a comma in a remark", [](Bed& bed) { bed.insert(FileId::nfl, 1, "   Stand  12,40 2024"); }, ""},
      {"a single CR", [](Bed& bed) { bed.put(FileId::nfl, 1, 5, "\r"); }, ""},
      {"a tab in a remark", [](Bed& bed) { bed.line(FileId::nfl, 1) = "   Name\tAreal"; }, ""},
      {"tabs that fit no width", [](Bed& bed) { bed.line(FileId::nfl, 3) = "N0010\t12.40"; }, ""},
      {"a tab that fits two widths", [](Bed& bed) { bed.line(FileId::trs, 2) = "   T0010\t   21.700"; }, ""},
      {"a tab before a branching without a code",
       [](Bed& bed) { bed.line(FileId::ver, 2) = "\tV0010        65.0"; }, ""},
      {"a tab before a branching with a word behind its code",
       [](Bed& bed) { bed.line(FileId::ver, 2) = "\tV0010     1 x5.0"; }, ""},
      {"a tab before a branching whose share goes on",
       [](Bed& bed) { bed.line(FileId::ver, 2) = "\tV0010     1  65.0x"; }, ""},
      {"a tab before a reach whose station is no number",
       [](Bed& bed) { bed.line(FileId::trs, 2) = "\tT0010    2l.700"; }, ""},
      {"a tab before a reach whose station goes on",
       [](Bed& bed) { bed.line(FileId::trs, 2) = "\tT0010   21.7000000001"; }, ""},
      {"a tab before a reach with a word before its profile",
       [](Bed& bed) {
         bed.line(FileId::trs, 2) = "\tT0010    21.700" + std::string(30, ' ') + "ein langes Profil";
       },
       ""},
      {"a tab before an area with a word behind it",
       [](Bed& bed) { bed.line(FileId::nfl, 3) = "\tN0010  12.40 0.00x"; }, ""},
      {"a tab before an area that lies too far left",
       [](Bed& bed) { bed.line(FileId::nfl, 3) = "\tN0010 12.40 0.00"; }, ""},
      {"a tab before an area without a number",
       [](Bed& bed) { bed.line(FileId::nfl, 3) = "\tN0010   etwa 0.00"; }, ""},
      {"a tab before a station with a remark",
       [](Bed& bed) { bed.line(FileId::trs, 3) = "\t    18.250 neu"; }, ""},
      {"a tab behind a word before a station", [](Bed& bed) { bed.line(FileId::trs, 3) = "km\t    18.250"; },
       ""},
      {"a tab before a unit with a remark", [](Bed& bed) { bed.line(FileId::nfl, 4) = "\t  ha  gerundet"; },
       ""},
      {"a tab before a unit where there are none", [](Bed& bed) { bed.line(FileId::ver, 1) = "\t  ha"; }, ""},
      {"tabs before a name with a blank",
       [](Bed& bed) { bed.line(FileId::sys, 5) = "\t\t\t\t   T0 10   N0010 K0010\t       V0010"; }, ""},
      {"tabs before a word that is no inflow",
       [](Bed& bed) { bed.line(FileId::sys, 5) = "\t\t\t\t   T0010   unten K0010\t       V0010"; }, ""},
      {"tabs before a word that is no outflow",
       [](Bed& bed) { bed.line(FileId::sys, 5) = "\t\t\t\t   T0010   N0010 K0010\t       unten"; }, ""},
      {"tabs before a word between the fields",
       [](Bed& bed) { bed.line(FileId::sys, 5) = "\t\t\t\t   T0010 x N0010 K0010\t       V0010"; }, ""},
      {"a tab in a line without an element", [](Bed& bed) { bed.line(FileId::sys, 2) = "\tBezeichnung"; },
       ""},
      {"a comma behind letters", [](Bed& bed) { bed.put(FileId::nfl, 3, 11, "12,4a"); }, ""},
      {"a number that begins before its columns",
       [](Bed& bed) { bed.line(FileId::nfl, 3) = "   N0010 112,4"; }, ""},
      {"a record that is in its columns only as bytes",
       [](Bed& bed) { bed.line(FileId::trs, 2).replace(0, 3, "ü "); },
       "trs:2: UTF-8 bleibt: die Zeile ist auf ihre Bytes ausgerichtet; in Windows-1252 stünde sie in "
       "anderen "
       "Spalten"},
      {"a character that the code page lacks",
       [](Bed& bed) { bed.line(FileId::sys, 1) = "Systemlogik der Łaba"; },
       "sys:1: UTF-8 bleibt: \"Ł\" gibt es in Windows-1252 nicht"},
      {"a line that is in its columns only as bytes",
       [](Bed& bed) {
         bed.line(FileId::sys, 1) = "Systemlogik";
         bed.line(FileId::sys, 3) = "                Mühle             N0010                       T0010";
       },
       "sys:3: UTF-8 bleibt: die Zeile ist auf ihre Bytes ausgerichtet; in Windows-1252 stünde sie in "
       "anderen "
       "Spalten"},
  };
  for (const Doubtful& doubtful : cases) {
    SCOPED_TRACE(doubtful.what);
    Bed bed;
    doubtful.spoil(bed);
    const Bed after = mended_bed(bed);
    for (const FileId file : files) EXPECT_EQ(after.bytes(file), bed.bytes(file));
    if (doubtful.left.empty()) {
      EXPECT_THAT(left_of(bed), IsEmpty());
    } else {
      EXPECT_THAT(left_of(bed), ElementsAre(doubtful.left));
    }
  }
}

TEST(Mend, TakesACommaForADecimalOneWhereAllAreasHaveCommas) {
  Bed bed;
  bed.put(FileId::nfl, 3, 11, "1,234 0,00");
  bed.put(FileId::nfl, 5, 11, "250,0 0,00");
  EXPECT_THAT(mended_bed(bed).bytes(FileId::nfl), HasSubstr("N0010  1.234 0.00"));
}

TEST(Mend, TakesACommaForADecimalOneWhereItCannotSetOffThousands) {
  Bed bed;
  bed.put(FileId::nfl, 3, 11, "0,234");
  EXPECT_THAT(mended_bed(bed).bytes(FileId::nfl), HasSubstr("N0010  0.234 0.00"));
  bed.put(FileId::nfl, 3, 11, " ,234");
  EXPECT_THAT(mended_bed(bed).bytes(FileId::nfl), HasSubstr("N0010   .234 0.00"));
  bed.put(FileId::nfl, 3, 11, "12,34");
  EXPECT_THAT(mended_bed(bed).bytes(FileId::nfl), HasSubstr("N0010  12.34 0.00"));
}

TEST(Mend, KeepsTheSignOfANumber) {
  Bed bed;
  bed.put(FileId::ver, 2, 16, "+65,0");
  EXPECT_THAT(mended_bed(bed).bytes(FileId::ver), HasSubstr("V0010     1 +65.0"));
  bed.put(FileId::ver, 2, 16, "-65,0");
  EXPECT_THAT(mended_bed(bed).bytes(FileId::ver), HasSubstr("V0010     1 -65.0"));
}

TEST(Mend, TakesARecordToWindows1252) {
  Bed bed;
  bed.line(FileId::trs, 2) += " an der Mühle";
  Bed expected;
  expected.line(FileId::trs, 2) += " an der M\xFChle";
  EXPECT_EQ(mended_bed(bed).bytes(FileId::trs), expected.bytes(FileId::trs));
}

TEST(Mend, WorksWithoutASystem) {
  Bed bed;
  bed.line(FileId::nfl, 3) += "  ";
  bed.remove(FileId::sys);
  EXPECT_EQ(mended_bed(bed).bytes(FileId::nfl), Bed().bytes(FileId::nfl));
}

// Order.

// Lines are written without blanks at their ends.
std::vector<std::string> names_in(const Bed& bed) {
  const variant::Variant variant = bed.variant();
  std::vector<std::string> names;
  for (std::uint32_t i = 1; i <= variant.element_count(); ++i)
    names.push_back(variant::text_of(variant.names[i]));
  return names;
}

void move_line(Bed& bed, std::size_t from, std::size_t to) {
  const std::string line = bed.line(FileId::sys, from);
  bed.erase(FileId::sys, from);
  bed.insert(FileId::sys, to, line);
}

TEST(Order, PutsAnElementRightBehindItsLastInflow) {
  Bed bed;
  move_line(bed, 5, 3);  // T0010 before N0010 and K0010
  EXPECT_EQ(summary_of(bed, FileId::sys), "1 Zeile hinter ihre Zuläufe gestellt");
  EXPECT_EQ(mended_bed(bed).bytes(FileId::sys), Bed().bytes(FileId::sys));
}

TEST(Order, MovesThoseThatWaitForItToo) {
  Bed bed;
  move_line(bed, 10, 7);  // T0040 before T0020, T0030 and N0020
  move_line(bed, 11, 7);  // P0010 before T0040
  EXPECT_THAT(names_in(mended_bed(bed)), ElementsAre("N0010", "K0010", "T0010", "V0010", "T0020", "T0030",
                                                     "N0020", "T0040", "P0010", "T0050"));
  EXPECT_EQ(summary_of(bed, FileId::sys), "2 Zeilen hinter ihre Zuläufe gestellt");
}

TEST(Order, StaysWhereItIsNotClear) {
  Bed repeated;
  move_line(repeated, 5, 3);
  repeated.insert(FileId::sys, 3, text_of(SystemLine{"N0020", {}, {"T0040"}}));
  EXPECT_THAT(left_of(repeated),
              ElementsAre("sys:4: Die Reihenfolge bleibt, obwohl das Element vor einem Zulauf "
                          "steht: Namen kommen mehrfach vor"));
  Bed loop;
  loop.line(FileId::sys, 5) = text_of(SystemLine{"T0010", {"N0010", "K0010", "T0040"}, {"V0010"}});
  EXPECT_THAT(left_of(loop),
              ElementsAre("sys:5: Die Reihenfolge bleibt, obwohl das Element vor einem Zulauf steht: "
                          "Elemente liegen in einem Kreis"));
  constexpr std::string_view behind_the_end =
      "sys:3: Die Reihenfolge bleibt, obwohl das Element vor einem Zulauf steht: hinter dem Element mit ENDE "
      "stünden weitere";
  Bed goes_on;
  move_line(goes_on, 5, 3);
  goes_on.insert(FileId::sys, 13, text_of(SystemLine{"N0030", {}, {"T0010"}}));
  EXPECT_THAT(left_of(goes_on), ElementsAre(behind_the_end));
  Bed two_ends;
  move_line(two_ends, 5, 3);
  two_ends.insert(FileId::sys, 13, text_of(SystemLine{"N0030", {}, {"ENDE"}}));
  EXPECT_THAT(left_of(two_ends), ElementsAre(behind_the_end));
  for (const Bed& bed : {repeated, loop, goes_on, two_ends}) {
    EXPECT_EQ(mended_bed(bed).bytes(FileId::sys), bed.bytes(FileId::sys));
  }
}

TEST(Order, PassesOverLinesWithoutAnElement) {
  Bed expected;
  expected.insert(FileId::sys, 6, "* oberhalb der Teilung");
  expected.insert(FileId::sys, 14, "* Stand 2024");
  Bed bed = expected;
  move_line(bed, 5, 3);
  EXPECT_EQ(mended_bed(bed).bytes(FileId::sys), expected.bytes(FileId::sys));
}

TEST(Order, ANameThatBeginsLikeTheEndIsNone) {
  Bed expected;
  expected.line(FileId::sys, 12) = text_of(SystemLine{"T0050", {"P0010"}, {"ENDE1"}});
  expected.insert(FileId::sys, 13, text_of(SystemLine{"N0030", {}, {"T0010"}}));
  Bed bed = expected;
  move_line(bed, 5, 3);
  EXPECT_EQ(mended_bed(bed).bytes(FileId::sys), expected.bytes(FileId::sys));
}

// A record is searched for from the last one on: of two of one name the order decides which is found.
TEST(Order, StaysWhereOtherValuesWouldBeRead) {
  Bed bed;
  move_line(bed, 10, 7);  // T0040 before T0020, T0030 and N0020
  bed.insert(FileId::trs, 12, "   T0020    17.250");
  bed.insert(FileId::trs, 13, "            12.900");
  EXPECT_THAT(left_of(bed),
              ElementsAre("sys:0: Die Reihenfolge bleibt: mit einer anderen läse KV_Akum andere "
                          "Werte aus den Datendateien"));
  EXPECT_EQ(mended_bed(bed).bytes(FileId::sys), bed.bytes(FileId::sys));
}

// Random networks.

std::string in_utf8(const std::string& bytes) {
  return variant::shown(bytes, variant::Encoding::windows_1252);
}

// Spoils files in ways that have one meaning only.
void spoil(Bed& bed, Dice& dice) {
  for (const FileId file : files) {
    std::vector<std::string>& lines = bed.lines(file);
    if (lines.empty()) continue;
    if (dice.one_in(2)) {
      std::ranges::transform(lines, lines.begin(), in_utf8);
      lines.front() += " äöü";
    }
    for (std::string& line : lines) {
      if (dice.one_in(10)) line.append(1 + dice.roll(3), ' ');
    }
  }
}

TEST(RandomNetworks, StayAsTheyAreWhenClean) {
  for (std::uint32_t seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    const schau_test::CleanNetwork network = schau_test::clean_network(dice, 20 + dice.roll(100));
    const Bed after = mended_bed(network.bed);
    for (const FileId file : files) EXPECT_EQ(after.bytes(file), network.bed.bytes(file));
  }
}

// Rules that name what is mended.
bool names_mended(std::string_view finding) {
  for (const std::string_view rule :
       {"bytereihenfolge-marke", "utf-8-verschiebt", "utf-8", "zeilenenden-gemischt", "zeilenende-doppelt",
        "zulauf-spaeter", "ablauf-frueher"}) {
    if (finding.starts_with(std::string(rule) + " ")) return true;
  }
  return false;
}

std::uint32_t changes_of(const Bed& bed) {
  const variant::Variant variant = bed.variant();
  std::uint32_t changes = 0;
  for (const MendedFile& file : mend(variant).files) {
    for (const std::uint32_t number : file.changes) changes += number;
  }
  return changes;
}

TEST(RandomNetworks, AreMendedOnceAndForAll) {
  for (std::uint32_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    schau_test::CleanNetwork network = schau_test::clean_network(dice, 20 + dice.roll(60));
    spoil(network.bed, dice);
    const schau_test::Mistake& mistake = schau_test::mistakes()[dice.roll(schau_test::mistakes().size())];
    if (dice.one_in(2)) mistake.plant(network, dice);
    const Bed once = mended_bed(network.bed);
    EXPECT_EQ(changes_of(once), 0U) << mistake.what;
    const Bed twice = mended_bed(once);
    for (const FileId file : files) EXPECT_EQ(twice.bytes(file), once.bytes(file)) << mistake.what;
  }
}

TEST(RandomNetworks, HaveNoSuchFindingsAfterMending) {
  for (std::uint32_t seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    schau_test::CleanNetwork network = schau_test::clean_network(dice, 20 + dice.roll(60));
    spoil(network.bed, dice);
    std::vector<std::string>& lines = network.bed.lines(FileId::sys);
    std::vector<std::string> elements(lines.begin() + 3, lines.end() - 1);
    dice.shuffle(elements);
    std::copy(elements.begin(), elements.end(), lines.begin() + 3);
    const Bed after = mended_bed(network.bed);
    for (const std::string& finding : schau_test::all_findings(after))
      EXPECT_FALSE(names_mended(finding)) << finding;
  }
}

std::string result_of(const Bed& bed) {
  const test_files::WorkingFolder folder;
  for (const FileId file : files)
    test_files::write_bytes(fmt::format("netz.{}", schau_test::extension_of(file)), bed.bytes(file));
  program::run({{"netz"}, "."});
  return test_files::read_bytes("netz.Akum");
}

// What KV_Akum takes already it takes the same after mending.
TEST(RandomNetworks, KeepTheirResults) {
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    schau_test::CleanNetwork network = schau_test::clean_network(dice, 20 + dice.roll(100));
    const std::string before = result_of(network.bed);
    spoil(network.bed, dice);
    const Bed after = mended_bed(network.bed);
    EXPECT_GT(changes_of(network.bed), 0U);
    EXPECT_EQ(result_of(after), before);
  }
}

// Differences.

std::string diff_of(const Bed& bed, FileId id) {
  const variant::Variant variant = bed.variant();
  const Mended mended = mend(variant);
  std::string out;
  append_diff(out, mended.files.at(static_cast<std::size_t>(id)), variant.file(id), no_colours);
  return out;
}

TEST(Diff, ShowsChangedLinesWithThreeAround) {
  Bed bed;
  bed.put(FileId::trs, 5, 11, "  12,900");
  EXPECT_EQ(diff_of(bed, FileId::trs),
            "--- netz.trs\n"
            "+++ netz.trs (gerichtet)\n"
            "@@ -2,7 +2,7 @@\n"
            "    T0010    21.700                                      Profil 1\n"
            "             18.250\n"
            "    T0020    18.250                                      Profil 2\n"
            "-            12,900\n"
            "+            12.900\n"
            "    T0030    18.250                                      Profil 3\n"
            "             12.500\n"
            "    T0040    12.500                                      Profil 4\n");
}

TEST(Diff, ShowsAMovedLineAtBothPlaces) {
  Bed bed;
  move_line(bed, 5, 3);
  const std::string diff = diff_of(bed, FileId::sys);
  EXPECT_THAT(diff, HasSubstr("@@ -1,8 +1,8 @@\n"));
  EXPECT_THAT(diff, HasSubstr("\n-                                   T0010   N0010 K0010         V0010\n"));
  EXPECT_THAT(diff, HasSubstr("\n+                                   T0010   N0010 K0010         V0010\n"));
}

TEST(Diff, ColoursWhatIsChanged) {
  Bed bed;
  bed.put(FileId::ver, 2, 16, " 65,0");
  const variant::Variant variant = bed.variant();
  const Mended mended = mend(variant);
  std::string out;
  append_diff(out, mended.files.at(static_cast<std::size_t>(FileId::ver)), variant.file(FileId::ver),
              terminal_colours);
  EXPECT_EQ(out,
            "\x1B[1m--- netz.ver\n+++ netz.ver (gerichtet)\x1B[0m\n"
            "\x1B[36m@@ -1,2 +1,2 @@\x1B[0m\n"
            "    Name   Ken. Anteil\n"
            "\x1B[31m-   V0010     1  65,0\x1B[0m\n"
            "\x1B[32m+   V0010     1  65.0\x1B[0m\n");
}

TEST(Diff, IsEmptyWhereNothingCanBeSeen) {
  Bed bed;
  bed.set_bytes(FileId::trs, joined(Bed().lines(FileId::trs), "\r\r\n"));
  EXPECT_EQ(diff_of(bed, FileId::trs), "");
  bed.line(FileId::sys, 1) = "Systemlogik des Prüfnetzes";
  bed.line(FileId::nfl, 2) += "\r";
  EXPECT_EQ(diff_of(bed, FileId::sys), "");
  EXPECT_EQ(diff_of(bed, FileId::nfl), "");
}

}  // namespace
}  // namespace schau::mend
