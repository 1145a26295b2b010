#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "m_WLM_error/m_WLM_error.h"
#include "tests/german.h"
#include "tests/variant_files.h"

namespace {

using m_WLM_error::MessageArguments;
using m_WLM_error::MessageDispatcher;
using testing::ElementsAre;
using variant_files::Lines;
using variant_files::protocol_lines;
using variant_files::start_protocol;

// The texts stand in a buffer of their callers: their trailing blanks do not count.
const MessageArguments usual_arguments{
    .text1 = "K17  ", .text2 = "T0020   ", .text3 = "42   ", .int1 = 250, .real1 = 1234.5F};

struct PrintedEntry {
  std::string_view code;
  std::int32_t level;
  std::vector<std::string_view> lines;
};

// The printed lines of the system logic, its warnings, weirs, assignments and of the readers.
const std::vector<PrintedEntry>& printed_entries() {
  static const std::vector<PrintedEntry> entries = {
      {"Y00",
       2,
       {"Y00 Mit ..................................... :   250",
        "    angesprochenen Systemelementen ist die ", "    zulässige Anzahl beim Systemelement ..... : K17",
        "    überschritten !"}},
      {"Y01", 2, {"Y01 Die Kennung des Elements ................ : K17", "    ist unzulässig !"}},
      {"Y02", 2, {"Y02 Die Kennung des Zulaufelements .......... : K17", "    ist unzulässig !"}},
      {"Y03", 2, {"Y03 Die Kennung des Ablaufelements .......... : K17", "    ist unzulässig !"}},
      {"Y04",
       2,
       {"Y04 Das Element ............................. : K17",
        "    ist in der Systemlogik mehrfach definiert !"}},
      {"Y05",
       2,
       {"Y05 Für das Systemelement ................... : K17",
        "    darf kein Zulaufelement ausgewiesen werden !"}},
      {"Y06", 2, {"Y06 Beim Element ............................ : K17", "    fehlt das 1. Zulaufelement !"}},
      {"Y07",
       2,
       {"Y07 Beim Element ............................ : K17", "    müssen die Zulaufelemente linksbündig ",
        "    angeordnet werden !"}},
      {"Y08", 2, {"Y08 Beim Element ............................ : K17", "    fehlt das 1. Ablaufelement !"}},
      {"Y09",
       2,
       {"Y09 Beim Systemelement der Systemlogik ...... : K17", "    ist nur 1 Ablaufelement zulässig !"}},
      {"Y10",
       2,
       {"Y10 Beim Systemelement der Systemlogik ...... : K17", "    sind keine Ablaufelemente angegeben !"}},
      {"Y11",
       2,
       {"Y11 Beim Pegel in der Systemlogik ........... : K17",
        "    darf kein Ablaufelement angegeben werden !"}},
      {"Y13",
       2,
       {"Y13 Beim Systemelement der Systemlogik ...... : K17",
        "    ist die Stationierung nicht durch Gewässer- ",
        "    abschnitte entsprechend *.TRS-Datei abgedeckt."}},
      {"Y14",
       2,
       {"Y14 Für die Ausgabe einer *.QFR-Datei sind in  ", "    der Systemlogik *.SYS weniger als zwei ",
        "    Querschnitte angesprochen."}},
      {"Y20",
       2,
       {"Y20 Ein Pegel als Zu- oder Ablaufelement .... : K17",
        "    beim Systemelement ...................... : T0020", "    ist nicht zulässig !"}},
      {"Y21",
       2,
       {"Y21 Das Zulaufelement ....................... : K17",
        "    beim Systemelement ...................... : T0020", "    existiert nicht als Systemelement !"}},
      {"Y22",
       2,
       {"Y22 Das Ablaufelement ....................... : K17",
        "    beim Systemelement ...................... : T0020", "    existiert nicht als Systemelement !"}},
      {"Y23",
       2,
       {"Y23 Der Zulauf von .......................... : K17",
        "    ist nicht möglich nach  ................. : T0020",
        "    Das Systemelement ....................... : K17",
        "    ist an dieser Stelle noch nicht definiert."}},
      {"Y24",
       2,
       {"Y24 Der Ablauf von .......................... : T0020",
        "    ist nicht möglich nach .................. : K17",
        "    Das Systemelement ....................... : K17", "    ist an dieser Stelle bereits mit seinen ",
        "    Zuläufen definiert."}},
      {"Y25",
       2,
       {"Y25 Das Systemelement der Systemlogik ....... : K17",
        "    liegt nicht als Ablaufelement vor bei: .. : T0020"}},
      {"Y26",
       2,
       {"Y26 Das Systemelement der Systemlogik ....... : K17",
        "    liegt nicht als Zulaufelement vor bei: .. : T0020"}},
      {"Y27",
       2,
       {"Y27 Beim Systemelement der Systemlogik ...... : K17",
        "    wird das Zulaufelement .................. : T0020", "    mehrfach eingeleitet !"}},
      {"Y28",
       2,
       {"Y28 Der BCS-Knoten .......................... : K17",
        "    wird in der SYS-Datei mehrfach angesprochen."}},
      {"Y30",
       2,
       {"Y30 Die in der Tabelle ...................... : K17",
        "    für die Zulaufwelle beim Element ........ : T0020",
        "    angeforderte Füllenberechnung ist nicht", "    möglich, da das Element vom Typ her keine",
        "    Zulaufwelle besitzt!"}},
      {"Y40",
       2,
       {"Y40 In der Tabelle .......................... : K17",
        "    ist beim Element ........................ : T0020", "    keine randomid vergeben."}},
      {"Y41",
       2,
       {"Y41 In der Tabelle .......................... : K17",
        "    ist beim Element ........................ : T0020",
        "    die randomid ............................ : 42", "    mehrfach vergeben."}},
      {"W01",
       1,
       {"W01 Warnung: Das Systemelement .............. : K17",
        "             weist kein 1. Abgabeelement auf!"}},
      {"W02",
       1,
       {"W02 Warnung: Das Systemelement .............. : K17",
        "             weist kein 2. Abgabeelement auf!"}},
      {"W03",
       1,
       {"W03 Warnung: Das Becken ..................... : K17", "             weist kein Abgabeelement auf!"}},
      {"W04",
       1,
       {"W04 Warnung: Die kanalisierte Fläche ........ : K17",
        "             weist keine Fließzeit im Sammler auf!"}},
      {"W05",
       1,
       {"W05 Warnung: Bei  Transportstrecke .......... : K17",
        "             wurde die Speicherkennlinie bei   Q =  1234.500"}},
      {"W06", 1, {"W06          wegen Rückläufigkeit von ..... Salt =      1234."}},
      {"W07",
       1,
       {"W07          auf .......................... Sneu =      1234.", "             korrigiert!"}},
      {"W08",
       1,
       {"W08 Warnung: Bei  Transportstrecke .......... : K17",
        "             wurde kein Speicherkoeffizient für", "             den Totraum angegeben!"}},
      {"W09",
       1,
       {"W09 Warnung: Bei  Transportstrecke .......... : K17",
        "             wurde kein Infiltrationkoeffizient", "             angegeben!"}},
      {"W10",
       1,
       {"W10 Warnung: Die eingelesene Abflusszuordnung : K17", "             weist Unstimmigkeiten auf.",
        "             Siehe Randbemerkungen in ....... : "}},
      {"W11",
       1,
       {"W11 Warnung: Beim Transportelement ........ : K17", "             weist die Kennlinie der Fließ-",
        "             zeiten extreme Sprünge auf!"}},
      {"Whr0", 1, {"Whr0 Hinweis: O2-Eintrag beim Wehr ........... : K17"}},
      {"Whr1",
       2,
       {"Whr1 Beim Wehr ............................... : K17",
        "     liegt keine Fallhöhe oder Wehrbreite vor!"}},
      {"ZW0", 2, {"ZW0 Zuweisungen in der Datenstruktur ........ : K17", "", "    T0020"}},
      {"A00",
       2,
       {"A00 In der Tabelle .......................... : K17",
        "    fehlt das Element ....................... : T0020", "    (evtl. fehlerhafter Datensatz)"}},
      {"A03",
       2,
       {"A03 In der Tabelle .......................... : K17",
        "    liegt ein Formatfehler vor bei .......... : T0020"}},
      {"A14",
       2,
       {"A14 In der Tabelle ........................ : K17",
        "    ist das Element ....................... : T0020", "    mehrfach aufgeführt."}},
      {"F02",
       2,
       {"F02 In der Tabelle .......................... : K17",
        "    ist der Befestigungsgrad bei der Fläche   : T0020", "    größer als 1.0 (Verzerrung?)!"}},
      {"Ver1",
       2,
       {"Ver1In der Tabelle .......................... : K17",
        "    bei der Verzweigung ..................... : T0020",
        "    sind nur Kennziffern K=[1,3] zulässig! "}},
  };
  return entries;
}

Lines german_lines(const std::vector<std::string_view>& utf8) {
  Lines lines;
  for (const std::string_view line : utf8) lines.push_back(german(line));
  return lines;
}

class SystemMessages : public testing::Test {
 protected:
  void SetUp() override { start_protocol(); }

  // The lines of one message, in a protocol of its own.
  static Lines message(std::string_view code, const MessageArguments& arguments) {
    start_protocol();
    MessageDispatcher(code, arguments);
    return protocol_lines();
  }

  static void repeat(std::string_view code, int calls) {
    for (int i = 0; i < calls; ++i) EXPECT_EQ(MessageDispatcher(code, {.text1 = "K17"}), 1);
  }

 private:
  variant_files::FreshRun folder_;
};

TEST_F(SystemMessages, PrintEveryEntryToTheByte) {
  for (const PrintedEntry& entry : printed_entries()) {
    start_protocol();
    EXPECT_EQ(MessageDispatcher(entry.code, usual_arguments), entry.level) << entry.code;
    EXPECT_EQ(protocol_lines(), german_lines(entry.lines)) << entry.code;
  }
}

TEST_F(SystemMessages, ANumberTooWideForItsFieldIsAsterisks) {
  EXPECT_EQ(message("Y00", {.text1 = "K17", .int1 = 123456}).front(),
            "Y00 Mit ..................................... : *****");
  EXPECT_EQ(message("Y00", {.text1 = "K17", .int1 = 99999}).front(),
            "Y00 Mit ..................................... : 99999");
  EXPECT_EQ(message("W05", {.text1 = "K17", .real1 = 123456.0F}).back(),
            german("             wurde die Speicherkennlinie bei   Q = *********"));
}

TEST_F(SystemMessages, PrintTheFixedValuesOfAbsentArguments) {
  EXPECT_EQ(message("Y00", {}).front(), "Y00 Mit ..................................... :     0");
  EXPECT_EQ(message("Y04", {}).front(), "Y04 Das Element ............................. : ");
  EXPECT_EQ(message("W05", {.text1 = "T1"}).back(),
            german("             wurde die Speicherkennlinie bei   Q = -9999.990"));
  EXPECT_THAT(message("W06", {}),
              ElementsAre(german("W06          wegen Rückläufigkeit von ..... Salt =    -10000.")));
}

TEST_F(SystemMessages, ACorrectedCharacteristicTakesThreeMessages) {
  MessageDispatcher("W05", {.text1 = "T0020", .real1 = 12.5F});
  MessageDispatcher("W06", {.real1 = 123.0F});
  MessageDispatcher("W07", {.real1 = 456.0F});
  EXPECT_THAT(protocol_lines(),
              ElementsAre("W05 Warnung: Bei  Transportstrecke .......... : T0020",
                          "             wurde die Speicherkennlinie bei   Q =    12.500",
                          german("W06          wegen Rückläufigkeit von ..... Salt =       123."),
                          "W07          auf .......................... Sneu =       456.",
                          "             korrigiert!"));
}

TEST_F(SystemMessages, UndefinedCodesHaveTheLevelOfTheirGroup) {
  for (const std::string_view code : {"Y12", "Y15", "Y99"}) {
    EXPECT_THAT(message(code, {.text1 = "K17  "}),
                ElementsAre(std::string(code) + "-Kommentar bei K17 nicht definiert!"));
    start_protocol();
    EXPECT_EQ(MessageDispatcher(code, {.text1 = "K17"}), 2);
  }
  for (const std::string_view code : {"W12", "W00", "W"}) {
    start_protocol();
    EXPECT_EQ(MessageDispatcher(code, {.text1 = "K17"}), 1) << code;
    EXPECT_THAT(protocol_lines(), ElementsAre(std::string(code) + "-Kommentar bei K17 nicht definiert!"));
  }
  for (const std::string_view code : {"Whr2", "Whr", "ZW1", "ZW"}) {
    start_protocol();
    EXPECT_EQ(MessageDispatcher(code, {.text1 = "K17"}), 2) << code;
    EXPECT_THAT(protocol_lines(), ElementsAre(std::string(code) + "-Kommentar bei K17 nicht definiert!"));
  }
}

TEST_F(SystemMessages, ACodeIsComparedPaddedAndWrittenWithItsDeclaredLength) {
  EXPECT_EQ(message("Y04  ", {.text1 = "K17"}).front(),
            "Y04   Das Element ............................. : K17");
  EXPECT_EQ(message("Y041", {.text1 = "K17"}).front(), "Y041-Kommentar bei K17 nicht definiert!");
  EXPECT_EQ(message("Y15  ", {.text1 = "K17"}).front(), "Y15  -Kommentar bei K17 nicht definiert!");
  // The code's field of A03 has three columns.
  EXPECT_EQ(message("A03 ", {.text1 = "v.nfl", .text2 = "N1"}).front(),
            "A03 In der Tabelle .......................... : v.nfl");
}

struct CappedWarning {
  std::string_view code;
  std::string_view closing_line;
};

const std::vector<CappedWarning>& capped_warnings() {
  static const std::vector<CappedWarning> warnings = {
      {"W01", "             und weitere Elemente ............."},
      {"W02", "             und weitere Elemente ............."},
      {"W03", "             und weitere Becken ..............."},
      {"W04", "             und weitere Flächen .............."}};
  return warnings;
}

TEST_F(SystemMessages, RepeatedWarningsEndAfterTheFifth) {
  for (const CappedWarning& warning : capped_warnings()) {
    const Lines once = message(warning.code, {.text1 = "K17"});
    Lines expected;
    start_protocol();
    repeat(warning.code, 4);
    for (int i = 0; i < 4; ++i) expected.insert(expected.end(), once.begin(), once.end());
    EXPECT_EQ(protocol_lines(), expected) << warning.code;

    start_protocol();
    repeat(warning.code, 5);
    expected.insert(expected.end(), once.begin(), once.end());
    expected.push_back(german(warning.closing_line));
    EXPECT_EQ(protocol_lines(), expected) << warning.code;

    start_protocol();
    repeat(warning.code, 9);
    EXPECT_EQ(protocol_lines(), expected) << warning.code;
  }
}

TEST_F(SystemMessages, TheSixthWarningStillCounts) {
  repeat("W03", 5);
  MessageDispatcher("ErrorLevel", {.int1 = 0});
  EXPECT_EQ(MessageDispatcher("W03", {.text1 = "B1"}), 1);
  MessageDispatcher("Y04", {.text1 = "B1"});
  EXPECT_EQ(MessageDispatcher("W03", {.text1 = "B1"}), 2);
}

TEST_F(SystemMessages, W01AndW02AreCountedApart) {
  for (int i = 0; i < 5; ++i) {
    repeat("W01", 1);
    repeat("W02", 1);
  }
  const Lines lines = protocol_lines();
  const std::string closing = "             und weitere Elemente .............";
  EXPECT_EQ(lines.size(), 22U);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), closing), 2);
}

TEST_F(SystemMessages, ANewRunCountsAfresh) {
  repeat("W01", 7);
  start_protocol();
  repeat("W01", 1);
  EXPECT_EQ(protocol_lines().size(), 2U);
}

TEST_F(SystemMessages, AssignmentsAreListedUnderTheirStructure) {
  const auto assign = [](std::string_view structure, std::string_view text) {
    EXPECT_EQ(MessageDispatcher("ZW0", {.text1 = structure, .text2 = text}), 2);
  };
  assign("Becken", "A = B  ");
  assign("Becken  ", "C = D");
  assign("Pegel", "E = F");
  assign("Becken", "G = H");
  EXPECT_THAT(
      protocol_lines(),
      ElementsAre("ZW0 Zuweisungen in der Datenstruktur ........ : Becken", "", "    A = B", "    C = D",
                  "ZW0 Zuweisungen in der Datenstruktur ........ : Pegel", "", "    E = F",
                  "ZW0 Zuweisungen in der Datenstruktur ........ : Becken", "", "    G = H"));
}

TEST_F(SystemMessages, AStructureIsRememberedWithItsFirst100Characters) {
  const std::string structure(100, 's');
  MessageDispatcher("ZW0", {.text1 = structure, .text2 = "1"});
  MessageDispatcher("ZW0", {.text1 = structure, .text2 = "2"});
  EXPECT_EQ(protocol_lines().size(), 4U);

  // A longer one never equals what was remembered of it.
  start_protocol();
  MessageDispatcher("ZW0", {.text1 = structure + "t", .text2 = "1"});
  MessageDispatcher("ZW0", {.text1 = structure + "t", .text2 = "2"});
  EXPECT_EQ(protocol_lines().size(), 6U);
}

}  // namespace
