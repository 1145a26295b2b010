#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "m_WLM_error/catalogue/entry.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/cp1252.h"
#include "tests/german.h"
#include "tests/test_files.h"

namespace {

using namespace runtime::literals;
namespace catalogue = m_WLM_error::catalogue;
using m_WLM_error::MessageArguments;
using m_WLM_error::MessageDispatcher;
using Lines = std::vector<std::string>;

// The suite's list of its messages. It is kept apart from the catalogue: a code that the catalogue loses or
// misspells shows up here. A message that is new since then needs no place in it.
struct ListedGroup {
  std::string_view prefix;
  int notes;  // codes of level 1
  std::vector<std::string_view> codes;
};

const std::vector<ListedGroup>& listed_groups() {
  static const std::vector<ListedGroup> groups = {
      {"A", 1, {"A00", "A01", "A02", "A03", "A04", "A05", "A06", "A07", "A08", "A09", "A10",
                "A11", "A12", "A13", "A14", "A15", "A16", "A17", "A18", "A19", "A20", "A99"}},
      {"B", 2, {"B01", "B02", "B04", "B05", "B06", "B07", "B08", "B09", "B10", "B11"}},
      {"C", 0, {"C00"}},
      {"D", 0, {"D10", "DB0", "D11"}},
      {"E", 2, {"E01", "E03", "E04", "E05", "E06", "E10", "E11", "E12", "E13", "E14", "E20",
                "E30", "E31", "E32", "E33", "E34", "E35", "E36", "E37", "E38", "E39", "E40"}},
      {"F",
       1,
       {"F01", "F02", "F03", "F04", "F05", "F06", "F07", "F08", "F09", "F10", "F11", "F12", "F13", "F14",
        "F15", "F16"}},
      {"G", 3, {"G01", "G02", "G03", "G04", "G05"}},
      {"I", 0, {"I01"}},
      {"J", 0, {"J01", "J02", "J03", "J04", "J05"}},
      {"K", 3, {"K01", "K02", "K03", "K04", "K05", "K06", "K07", "K08", "K09", "K10"}},
      {"LF", 4, {"LF_DB",   "LF1",     "LF2",     "LF3",     "LF_A00",  "LF_A01",  "LF_A02",
                 "LF_EL00", "LF_EL01", "LF_EL02", "LF_EL03", "LF_EL04", "LF_EL05", "LF_EL06",
                 "LF_EL07", "LF_EL08", "LF_EL09", "LF_EL10", "LF_EL11", "LF_EL12", "LF_EL13",
                 "LF_KLA",  "LF_EL14", "LF_TG01", "LF_NF01", "LF_SP01", "LF_SP02"}},
      {"mnn", 9, {"mnn01", "mnn02", "mnn03", "mnn050", "mnn051", "mnn052", "mnn06", "mnn07", "mnn08", "mnn09",
                  "mnn10", "mnn11", "mnn12", "mnn13",  "mnn14",  "mnn15",  "mnn16", "mnn17", "mnn18", "mnn19",
                  "mnn20", "mnn21", "mnn22", "mnn23",  "mnn24",  "mnn25",  "mnn26", "mnn27", "mnn28"}},
      {"M", 0, {"M01", "M02", "M03", "M04", "M05", "M06", "M07"}},
      {"P", 6, {"P00", "P01",  "P02",  "P03",  "P04", "P05", "P06", "P07", "P080", "P08#", "P081", "P09",
                "P10", "P101", "P102", "P103", "P11", "P12", "P13", "P14", "P15",  "P16",  "P17",  "P18",
                "P19", "P20",  "P21",  "P22",  "P23", "P24", "P25", "P26", "P27",  "P271", "P28",  "P29",
                "P30", "P31",  "P40",  "P41",  "P42", "P43", "P50", "P51", "P52",  "P53",  "P99"}},
      {"Q", 0, {"Q10", "Q20", "Q31", "Q33", "Q41", "Q51", "Q53", "Q60", "Q61", "Q62"}},
      {"Rt", 0, {"Rt3", "Rt4", "Rt5"}},
      {"R", 0, {"R00", "R01", "R02", "R03", "R04", "R05", "R06", "R09"}},
      {"St", 0, {"St1", "St2", "St3", "St4", "St5", "St6", "St7", "St71", "St8", "St9"}},
      {"S", 0, {"S01", "S02", "S03", "S04", "S05", "S06", "S07"}},
      {"T", 8, {"TRS0", "TRS1", "T00", "T01", "T02", "T03",  "T04",  "T05", "T06", "T07",
                "T08",  "T09",  "T10", "T11", "T12", "T13",  "T14",  "T15", "T16", "T20",
                "T21",  "T30",  "T40", "T41", "T99", "T100", "T101", "T102"}},
      {"U", 0, {"U01", "U02", "U03", "U04", "U05"}},
      {"Ver", 0, {"Ver1", "Ver2"}},
      {"Vkl", 1, {"Vkl1"}},
      {"V",
       0,
       {"V00", "V01", "V02", "V03", "V04", "V05", "V06", "V07", "V08", "V09", "V10", "V11", "V12", "V13",
        "V14", "V15", "V16", "V17", "V18"}},
  };
  return groups;
}

constexpr std::string_view code_with_level_from_int1 = "K10";

// Arguments of usual length, all different from each other; file names are the longest texts.
const MessageArguments usual_arguments{.text1 = "Modell_Unterlauf_2024.TRS",
                                       .text2 = "Modell_Oberlauf__2024.PRO",
                                       .text3 = "Modell_Mittellauf2024.QQQ",
                                       .int1 = 1,
                                       .int2 = 222,
                                       .int3 = 333,
                                       .real1 = 4.5F,
                                       .real2 = 88.5F};

class Catalogue : public testing::Test {
 protected:
  void SetUp() override {
    m_WLM_error::reset();
    init();
  }
  void TearDown() override {
    MessageDispatcher("FINALE");
    m_WLM_error::reset();
  }

  void init() const { MessageDispatcher("INIT", {.text1 = protocol(), .text2 = "KARVOS"}); }

  // The lines written since "INIT", without the protocol's first line.
  Lines written() const {
    MessageDispatcher("FINALE");
    std::ifstream file(protocol(), std::ios::binary);
    Lines lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    if (!lines.empty()) lines.erase(lines.begin());
    return lines;
  }

  // The lines of one message, written into a protocol of its own.
  Lines message(std::string_view code, const MessageArguments& arguments) {
    init();
    level = MessageDispatcher(code, arguments);
    return written();
  }

  std::int32_t level = 0;

 private:
  [[nodiscard]] std::string protocol() const { return folder_.file("variante.pkl"); }

  test_files::TemporaryFolder folder_;
};

// A way to call a code: with the usual arguments, and once for each word that chooses a variant.
struct Call {
  std::string_view code;
  MessageArguments arguments;
};

// The system logic, its warnings, weirs and assignments have a layout of their own, held to the byte
// elsewhere.
std::vector<const catalogue::Group*> further_groups() {
  const std::set<std::string_view> with_own_layout = {"Whr", "W", "Y", "ZW"};
  std::vector<const catalogue::Group*> further;
  for (const catalogue::Group* group : catalogue::groups()) {
    if (!with_own_layout.contains(group->prefix)) further.push_back(group);
  }
  return further;
}

std::vector<Call> calls_of(const catalogue::Group& group) {
  std::vector<Call> calls;
  for (const catalogue::Entry& row : group.entries) {
    if (row.continues) continue;
    Call call{row.code, usual_arguments};
    if (!row.condition_word.empty()) {
      (row.condition == catalogue::text2 ? call.arguments.text2 : call.arguments.text3) = row.condition_word;
    }
    // Its list lines have 14 columns for a reach.
    if (row.heading == catalogue::Heading::once_a_program_run) call.arguments.text1 = "T0001";
    calls.push_back(call);
  }
  return calls;
}

std::vector<Call> all_calls() {
  std::vector<Call> calls;
  for (const catalogue::Group* group : further_groups()) {
    for (const Call& call : calls_of(*group)) calls.push_back(call);
  }
  return calls;
}

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

// What the arguments of an entry look like in print, whatever the decimals of its fields.
std::string_view printed(catalogue::Argument argument, const MessageArguments& arguments) {
  switch (argument) {
    case catalogue::text1:
      return *arguments.text1;
    case catalogue::text2:
      return *arguments.text2;
    case catalogue::text3:
      return *arguments.text3;
    case catalogue::int1:
      return "    1";
    case catalogue::int2:
      return "  222";
    case catalogue::int3:
      return "  333";
    case catalogue::real1:
      return "  4.5";
    case catalogue::real2:
      return " 88.5";
  }
  return {};
}

bool begins_as_note(std::string_view line, std::string_view code) {
  line.remove_prefix(code.size());
  return line.starts_with(" Warnung: ") || line.starts_with(" Hinweis: ") || line.starts_with(" HINWEIS: ") ||
         line.starts_with(" Bemerkung: ");
}

bool printable_or_german_letter(char character) {
  const auto byte = static_cast<unsigned char>(character);
  constexpr std::string_view letters = "ÄÖÜäöüß"_w1252;
  return (byte >= 0x20 && byte <= 0x7E) || letters.find(character) != std::string_view::npos;
}

TEST_F(Catalogue, HoldsTheListedCodesInTheirOrder) {
  for (const ListedGroup& listed : listed_groups()) {
    std::vector<std::string_view> codes;
    for (const catalogue::Entry& row : catalogue::group_of(listed.prefix)->entries) {
      const bool is_listed = std::ranges::find(listed.codes, row.code) != listed.codes.end();
      if (is_listed && (codes.empty() || codes.back() != row.code)) codes.push_back(row.code);
    }
    EXPECT_EQ(codes, listed.codes) << listed.prefix;
  }
}

TEST_F(Catalogue, RoutesEachCodeToItsGroup) {
  for (const catalogue::Group* group : catalogue::groups()) {
    for (const catalogue::Entry& row : group->entries) {
      if (row.continues) continue;
      EXPECT_EQ(catalogue::group_of(row.code), group) << row.code;
    }
  }
}

TEST_F(Catalogue, SaysWhatEachGroupIsAbout) {
  std::set<std::string_view> topics;
  for (const catalogue::Group* group : catalogue::groups()) {
    EXPECT_FALSE(group->about.empty()) << group->prefix;
    EXPECT_TRUE(topics.insert(group->about).second) << group->about;
  }
}

TEST_F(Catalogue, WritesEveryListedCodeUnderItsOwnName) {
  for (const ListedGroup& group : listed_groups()) {
    for (const std::string_view code : group.codes) {
      const Lines lines = message(code, usual_arguments);
      ASSERT_FALSE(lines.empty()) << code;
      EXPECT_TRUE(lines.front().starts_with(code)) << lines.front();
      EXPECT_EQ(joined(lines).find(" nicht definiert!"), std::string::npos) << lines.front();
    }
  }
}

TEST_F(Catalogue, WritesUnknownCodesOfItsGroupsAsUndefined) {
  for (const ListedGroup& group : listed_groups()) {
    const std::string unknown = std::string(group.prefix) + "?";
    EXPECT_EQ(message(unknown, {.text1 = "K17"}), Lines{unknown + "-Kommentar bei K17 nicht definiert!"});
    EXPECT_EQ(level, 2) << unknown;
  }
  // Near misses: a code is compared over its whole length.
  for (const std::string_view code :
       {"A21", "B03", "P08", "P1010", "TRS", "TRS2", "mnn05", "St72", "LF_EL1"}) {
    EXPECT_EQ(message(code, {}), Lines{std::string(code) + "-Kommentar bei  nicht definiert!"});
  }
}

TEST_F(Catalogue, CountsTheNotesOfEachGroup) {
  for (const ListedGroup& group : listed_groups()) {
    int notes = 0;
    for (const std::string_view code : group.codes) {
      if (code == code_with_level_from_int1) continue;
      message(code, usual_arguments);
      EXPECT_TRUE(level == 1 || level == 2) << code;
      notes += level == 1 ? 1 : 0;
    }
    EXPECT_EQ(notes, group.notes) << group.prefix;
  }
}

TEST_F(Catalogue, NotesAndOnlyNotesSaySo) {
  for (const Call& call : all_calls()) {
    if (call.code == code_with_level_from_int1) continue;
    const Lines lines = message(call.code, call.arguments);
    EXPECT_EQ(begins_as_note(lines.front(), call.code), level == 1) << lines.front();
  }
}

TEST_F(Catalogue, TheCallerOfK10DecidesItsSeverity) {
  for (const std::int32_t wanted : {0, 1, 2}) {
    const Lines lines = message("K10", {.text1 = "T04", .text2 = "QH", .int1 = wanted});
    EXPECT_EQ(level, wanted);
    EXPECT_EQ(lines.front(), "K10 Beim Element ............................ : T04");
    EXPECT_FALSE(begins_as_note(lines.front(), "K10"));
  }
}

TEST_F(Catalogue, PrintsEveryArgumentOfAnEntry) {
  for (const Call& call : all_calls()) {
    const std::string text = joined(message(call.code, call.arguments));
    const catalogue::Values values{
        .code = call.code, .texts = {*call.arguments.text1, *call.arguments.text2, *call.arguments.text3}};
    for (const catalogue::Entry& row : catalogue::find_entry(*catalogue::group_of(call.code), values)) {
      for (std::size_t i = 0; i < row.argument_count; ++i) {
        EXPECT_NE(text.find(printed(row.arguments[i], call.arguments)), std::string::npos) << text;
      }
    }
  }
}

TEST_F(Catalogue, LeavesNoFieldWithoutAnArgument) {
  for (const catalogue::Group* group : further_groups()) {
    for (const catalogue::Entry& row : group->entries) {
      EXPECT_EQ(row.format.fields(), row.argument_count + (row.continues ? 0 : 1)) << row.code;
    }
  }
}

TEST_F(Catalogue, KeepsWithinTheScreenAndTheLetters) {
  for (const Call& call : all_calls()) {
    for (const std::string& line : message(call.code, call.arguments)) {
      EXPECT_LE(line.size(), 80U) << line;
      EXPECT_TRUE(std::ranges::all_of(line, printable_or_german_letter)) << line;
    }
  }
}

TEST_F(Catalogue, LinesUpTheArgumentsAndIndentsTheRest) {
  // These stand as the suite has always had them.
  const std::set<std::string_view> own_layout = {"A14", "A99", "C00", "D10", "J01", "T30", "Ver1"};
  for (const Call& call : all_calls()) {
    if (own_layout.contains(call.code)) continue;
    const Lines lines = message(call.code, call.arguments);
    EXPECT_EQ(lines.front().find(" : "), 45U) << lines.front();
    for (const std::string& line : Lines(lines.begin() + 1, lines.end())) {
      EXPECT_TRUE(line.starts_with(std::string(call.code.size() + 1, ' '))) << line;
      EXPECT_TRUE(line.find(" : ") == 45U || line.find(" : ") == std::string::npos) << line;
    }
  }
}

TEST_F(Catalogue, NoTwoTextsAreAlike) {
  std::set<std::string> texts;
  for (const Call& call : all_calls()) {
    Lines lines = message(call.code, call.arguments);
    lines.front().erase(0, call.code.size());
    EXPECT_TRUE(texts.insert(joined(lines)).second) << call.code << joined(lines);
  }
}

// The arguments of the messages below.
const MessageArguments named_arguments{.text1 = "eins",
                                       .text2 = "zwei",
                                       .text3 = "drei",
                                       .int1 = 1,
                                       .int2 = 22,
                                       .int3 = 333,
                                       .real1 = 4.5F,
                                       .real2 = 55.25F};

// Messages as the protocol shows them, in the order of the groups.
const std::vector<std::string_view>& printed_messages() {
  static const std::vector<std::string_view> messages = {
      R"(A05 In der Tabelle .......................... : eins
    enthält die Zeile Nr. ................... :         1
    zu wenige Werte. Erforderliche Anzahl ... :        22
)",
      R"(A08 In der Tabelle .......................... : eins
    liegt der Ausgabezeitpunkt Nr. .......... :         1
    nicht nach dem vorhergehenden!
    Die Ausgabezeitpunkte müssen ansteigen.
)",
      R"(A10 In der Tabelle .......................... : eins
    fehlen für das Element .................. : zwei
    die Unterwasserdaten. Sie werden für die
    Rückstauberechnung benötigt.
)",
      R"(A17 In der Tabelle .......................... : eins
    ist das Zeitintervall der Langzeitsimulation
    mit (min) ............................... :     4.500
    kein Teiler des Regenintervalls (min) ... :    55.250
)",
      R"(B01 Beim Becken ............................. : eins
    ist die Kennziffer ...................... :     1
    unzulässig!
    Größte zulässige Kennziffer ............. :    22
)",
      R"(B05 Für die geregelte Abgabe des Beckens .... : eins
    fehlt der Pegel ......................... : zwei
)",
      R"(B07 Die Volumenkurve des Beckens ............ : eins
    ist ab dem Wertepaar Nr. ................ :     1
    nicht ansteigend!
    Wasserstand (m+NN) ...................... :     4.500
    Volumen (cbm) ........................... :         55.2
)",
      R"(B08 Warnung: Beim Becken .................... : eins
             wird die Volumenkurve über ihren
             Endpunkt hinaus verlängert
             um (m) ......................... :     4.500
)",
      R"(E04 In der Tabelle .......................... : eins
    sind beim Zufluss ....................... : zwei
    die Zeiten ab dem Wertepaar Nr. ......... :         1
    nicht ansteigend!
)",
      R"(E06 Warnung: Beim Zufluss ................... : eins
             endet die Abflusskurve bei (h) . :     4.500
             die Berechnung erst bei (h) .... :    55.250
             Der letzte Wert wird beibehalten.
)",
      R"(E11 In der Gangliniendatei .................. : eins
    ist die Ganglinie ....................... : zwei
    mehrfach vorhanden!
)",
      R"(E13 In der Ganglinie ........................ : eins
    fehlen Werte. Anzahl der Lücken ......... :         1
    Beginn der ersten Lücke ................. : zwei
)",
      R"(E20 Hinweis: Die Ganglinie am Zufluss ....... : eins
             wurde multipliziert
             mit dem Faktor ................. :     4.500
)",
      R"(E33 In der HDF5-Datei ....................... : eins
    kann die Gruppe ......................... : zwei
    nicht geöffnet werden!
    (evtl. beschädigte Datei)
)",
      R"(E35 In der HDF5-Datei ....................... : eins
    hat der Datensatz ....................... : zwei
    eine falsche Länge. Anzahl der Werte .... :         1
    Erwartete Anzahl ........................ :        22
)",
      R"(E37 In der HDF5-Datei ....................... : eins
    enthält der Datensatz ................... : zwei
    keine Zahlen!
)",
      R"(E39 In der HDF5-Datei ....................... : eins
    hat der Datensatz ....................... : zwei
    die unzulässige Einheit ................. : drei
    Zulässig ist nur die Einheit cbm/s.
)",
      R"(E40 In die HDF5-Datei ....................... : eins
    kann der Datensatz ...................... : zwei
    nicht geschrieben werden!
    Fehlernummer ............................ :         1
)",
      R"(F01 In der Tabelle .......................... : eins
    steht bei der Fläche .................... : zwei
    an der Stelle von Qmax ein Konzentrationsparameter!
)",
      R"(F03 In der Tabelle .......................... : eins
    ist bei der Fläche ...................... : zwei
    der Befestigungsgrad .................... :     4.500
    negativ! Zulässig sind Werte von 0 bis 1.
)",
      R"(F07 In der Tabelle .......................... : eins
    fehlt bei der natürlichen Fläche ........ : zwei
    die Einzugsgebietsfläche AEO!
)",
      R"(F08 In der Tabelle .......................... : eins
    ist bei der natürlichen Fläche .......... : zwei
    die Einzugsgebietsfläche AEO (qkm) ...... :     4.500
    negativ!
)",
      R"(F09 In der Tabelle .......................... : eins
    ist bei der natürlichen Fläche .......... : zwei
    die Fläche AEOpnat (qkm) ................ :     4.500
    größer als die Einzugsgebietsfläche
    AEO (qkm) ............................... :    55.250
)",
      R"(F11 In der Tabelle .......................... : eins
    ist bei der Fläche ...................... : zwei
    die Konzentrationszeit (h) .............. :     4.500
    unzulässig!
    Zulässig sind Werte über 0 bis (h) ...... :    55.250
)",
      R"(F14 In der Tabelle .......................... : eins
    ist bei der Fläche ...................... : zwei
    die Anzahl der Speicher der Kaskade ..... :     1
    unzulässig! Zulässig sind 1 bis ......... :    22
)",
      R"(F15 In der Tabelle .......................... : eins
    weicht bei der Fläche ................... : zwei
    die Summe der Teilflächen (qkm) ......... :     4.500
    von der Gesamtfläche (qkm) .............. :    55.250
    ab!
)",
      R"(G02 Warnung: Die Abflussspende im Gebiet .... : eins
             liegt mit (l/(s*qkm)) .......... :     4.500
             außerhalb des üblichen Bereichs.
)",
      R"(G03 Warnung: Die Fläche des Gebiets ......... : eins
             weicht mit (qkm) ............... :     4.500
             von der Summe der Flächen seiner
             Elemente (qkm) ................. :    55.250
             ab.
)",
      R"(G05 Die Fläche des Gebiets .................. : eins
    ist null. Am Endelement ................. : zwei
    kann die Abflussspende nicht berechnet werden!
)",
      R"(J02 Für das Element ......................... : eins
    fehlt in tbl_jgg der Jahresgang ......... : zwei
)",
      R"(J04 In tbl_jgg ist beim Jahresgang .......... : eins
    im Monat ................................ :     1
    der Monatswert .......................... :     4.500
    negativ!
)",
      R"(J05 In tbl_jgg ist beim Jahresgang .......... : eins
    der Mittelwert der Monatswerte .......... :     4.500
    ungleich 1!
)",
      R"(K02 Beim Element ............................ : eins
    hat die Kennlinie ....................... : zwei
    zu wenige Wertepaare. Anzahl ............ :     1
    Mindestens zwei Wertepaare sind erforderlich.
)",
      R"(K04 Beim Element ............................ : eins
    ist die Kennlinie ....................... : zwei
    ab dem Wertepaar Nr. .................... :     1
    nicht ansteigend!
)",
      R"(K07 Hinweis: Beim Element ................... : eins
             enthält die Kennlinie .......... : zwei
             zweimal das Wertepaar Nr. ...... :     1
             Das zweite wird übergangen.
)",
      R"(K10 Beim Element ............................ : eins
    passt die Kennlinie ..................... : zwei
    nicht zur Kennlinie ..................... : drei
    Bitte beide Kennlinien prüfen!
)",
      R"(LF1 Beim Element ............................ : eins
    liegt der pH-Wert ....................... :      4.50
    unter dem pH-Mindestwert ................ :     55.25
)",
      R"(LF_A02 In der Gütetabelle ................... : eins
       ist beim Element ..................... : zwei
       der Stoffwert ........................ : drei
       negativ (mg/l) ....................... :     4.500
)",
      R"(LF_EL05 Beim Einleitungselement ............. : eins
        fehlt in der TRS-Datei
        die Transportstrecke ................ : zwei
)",
      R"(LF_EL06 Beim Einleitungselement ............. : eins
        ist der Einleitungsabfluss (l/s) .... :     4.500
        zu groß. Zulässiger Abfluss (l/s) ... :    55.250
)",
      R"(LF_EL10 Beim Einleitungselement ............. : eins
        ist die Wassertemperatur (Grad C) ... :       4.5
        unzulässig!
        Zulässig sind 0 bis (Grad C) ........ :      55.2
)",
      R"(LF_NF01 Für die natürliche Fläche ........... : eins
        fehlt die Grundbelastung nach dem Leitfaden!
        Fläche (qkm) ........................ :     4.500
)",
      R"(mnn02 In der Profiltabelle .................. : eins
      ist die Station ....................... : zwei
      mehrfach vorhanden!
)",
      R"(mnn03 In der Profiltabelle .................. : eins
      ist die Station ....................... : zwei
      kleiner als die vorhergehende ......... : drei
      Die Stationen müssen ansteigen!
)",
      R"(mnn09 Warnung: Das Profil an der Station .... : zwei
               der Profiltabelle ............ : eins
               enthält zweimal
               den Punkt Nr. ................ :     1
               Der zweite wird übergangen.
)",
      R"(mnn11 In der Profiltabelle .................. : eins
      hat das Profil an der Station ......... : zwei
      am Punkt Nr. .......................... :     1
      den Rauheitsbeiwert ................... :     4.500
      Er muss größer als null sein!
)",
      R"(mnn23 Warnung: Das Profil an der Station .... : zwei
               der Profiltabelle ............ : eins
               hat zum Profil unterhalb einen ungewöhnlich
               großen Abstand (m) ........... :       4.5
               Bitte Zwischenprofile vorsehen.
)",
      R"(mnn24 In der Profiltabelle .................. : eins
      hat das Profil an der Station ......... : zwei
      zum Profil unterhalb den Abstand (m) .. :       4.5
      Er muss größer als null sein!
)",
      R"(mnn26 Bemerkung: Das Profil an der Station .. : zwei
                 der Profiltabelle .......... : eins
                 hat die Sohlhöhe (m+NN) .... :     4.500
                 Sohlhöhe oberhalb (m+NN) ... :    55.250
                 Die Sohle steigt in Fließrichtung an.
)",
      R"(M03 Die Anzahl aller Flächen ................ :         1
    ist größer als die zulässige Anzahl ..... :        22
    Erste überzählige Fläche ................ : eins
)",
      R"(M05 Die Anzahl der Transportelemente ........ :         1
    ist größer als die zulässige Anzahl ..... :        22
    Erstes überzähliges Transportelement .... : eins
)",
      R"(M06 Beim Transportelement ................... : eins
    ist die Anzahl der Zulaufelemente ....... :         1
    größer als die zulässige Anzahl ......... :        22
)",
      R"(P04 In der Profildatei ...................... : eins
    ist beim Profil an der Station .......... : zwei
    der Profiltyp ........................... : drei
    unzulässig!
)",
      R"(P080 In der Profildatei ..................... : eins
     ist die Station ........................ : zwei
     mehrfach vorhanden!
)",
      R"(P08# In der Profildatei ..................... : eins
     haben die Profile Nr. .................. :     1
     und Nr. ................................ :    22
     dieselbe Station!
)",
      R"(P081 In der Profildatei ..................... : eins
     ist die Station ........................ : zwei
     kleiner als die vorhergehende .......... : drei
     Die Stationen müssen ansteigen!
)",
      R"(P16 Warnung: Das Profil an der Station ...... : zwei
             der Profildatei ................ : eins
             hat Gegengefälle zum Profil oberhalb.
             Sohlhöhe (m+NN) ................ :     4.500
             Sohlhöhe oberhalb (m+NN) ....... :    55.250
)",
      R"(P22 In der Profildatei ...................... : eins
    hat das Wehrprofil an der Station ....... : zwei
    den unzulässigen Überfallbeiwert (-) .... :     4.500
    Zulässig sind Werte über 0 bis (-) ...... :    55.250
)",
      R"(P25 Warnung: Das Wehr an der Station ........ : zwei
             der Profildatei ................ : eins
             ist eingestaut. Der Überfallbeiwert
             wird abgemindert auf (-) ....... :     4.500
)",
      R"(P26 In der Profildatei ...................... : eins
    ist beim Wehrprofil an der Station ...... : zwei
    die Breite des Wehrs (m) ................ :     4.500
    größer als die Breite des Gewässers (m) . :    55.250
)",
      R"(P27 In der Profildatei ...................... : eins
    fehlt zum interpolierten
    Profil an der Station ................... : zwei
    das Profil oberhalb!
)",
      R"(P28 In der Profildatei ...................... : eins
    liegt das interpolierte
    Profil an der Station ................... : zwei
    nicht zwischen den Stationen (km) ....... :     4.500
    und (km) ................................ :    55.250
)",
      R"(P30 Hinweis: Das Profil an der Station ...... : zwei
             der Profildatei ................ : eins
             wurde zwischen (km) ............ :     4.500
             und (km) ....................... :    55.250
             interpoliert.
)",
      R"(P31 In der Profildatei ...................... : eins
    hat das interpolierte
    Profil an der Station ................... : zwei
    Nachbarprofile verschiedenen Typs.
    Kennziffer des Typs oberhalb ............ :     1
    Kennziffer des Typs unterhalb ........... :    22
)",
      R"(P50 In der Profildatei ...................... : eins
    fehlt zur Station der Abflussdatei ...... : zwei
    das Profil!
)",
      R"(Q33 In der Abflussdatei ..................... : eins
    ist in der Zeile Nr. .................... :         1
    die Station ............................. : zwei
    nicht lesbar!
)",
      R"(Q41 In der Abflussdatei ..................... : eins
    fehlt in der Zeile Nr. .................. :         1
    die Gewässerkennzahl!
)",
      R"(Q51 In der Abflussdatei ..................... : eins
    steht bei der Gewässerkennzahl .......... : zwei
    die Station (km) ........................ :     4.500
    nicht in ansteigender Reihenfolge!
)",
      R"(Q53 In der Abflussdatei ..................... : eins
    ist bei der Gewässerkennzahl ............ : zwei
    die Station (km) ........................ :     4.500
    mehrfach vorhanden!
)",
      R"(Q60 In der Abflussdatei ..................... : eins
    fehlt die Gewässerkennzahl .............. : zwei
)",
      R"(Q61 In der Abflussdatei ..................... : eins
    ist die Gewässerkennzahl ................ : zwei
    unzulässig!
)",
      R"(Q62 In der Abflussdatei ..................... : eins
    gehört zur Gewässerkennzahl ............. : zwei
    keine Station der Profildatei ........... : drei
)",
      R"(Rt3 Interner Fehler: Der Station ............ : zwei
    am Gewässer ............................. : eins
    ist kein Profil zugeordnet!
    (Zuordnung von Abflüssen und Profilen)
)",
      R"(Rt4 Interner Fehler: Dem Profil Nr. ......... :     1
    an der Station .......................... : zwei
    am Gewässer ............................. : eins
    ist kein Abfluss zugeordnet!
    (Zuordnung von Abflüssen und Profilen)
)",
      R"(Rt5 Interner Fehler: Anzahl der Zuordnungen . :     1
    Anzahl der Profile ...................... :    22
    Die Anzahlen müssen übereinstimmen!
    (Zuordnung von Abflüssen und Profilen)
)",
      R"(R02 In der Regentabelle ..................... : eins
    ist der Regen Nr. ....................... :     1
    mehrfach vorhanden!
)",
      R"(R05 In der Regentabelle ..................... : eins
    ist beim Regen Nr. ...................... :     1
    das Zeitintervall (min) ................. :     4.500
    nicht größer als null!
)",
      R"(R06 In der Regentabelle ..................... : eins
    ist beim Regen Nr. ...................... :     1
    das Zeitintervall (min) ................. :     4.500
    kein Vielfaches des Zeitintervalls der
    Berechnung (min) ........................ :    55.250
)",
      R"(R09 In der Regentabelle ..................... : eins
    ist der Regen Nr. ....................... :         1
    unvollständig!
    Erforderliche Anzahl der Werte .......... :        22
    Vorhandene Anzahl der Werte ............. :       333
)",
      R"(St1 Für das Element ......................... : eins
    fehlt die Steuerfunktion Nr. ............ :     1
)",
      R"(St2 In der Tabelle .......................... : eins
    ist die Steuerfunktion Nr. .............. :     1
    mehrfach vorhanden!
)",
      R"(St8 Bei der Steuerfunktion Nr. .............. :     1
    sind die Werte ab dem Wertepaar Nr. ..... :    22
    nicht ansteigend!
)",
      R"(S01 Die Sonderprofildatei (SPR) ............. : eins
    fehlt oder kann nicht geöffnet werden!
)",
      R"(S03 In der Sonderprofildatei (SPR) .......... : eins
    ist beim Sonderprofil ................... : zwei
    die Anzahl der Lamellen ................. :     1
    größer als die zulässige Anzahl ......... :    22
)",
      R"(S04 In der Sonderprofildatei (SPR) .......... : eins
    liegt beim Sonderprofil ................. : zwei
    die Lamelle Nr. ......................... :     1
    nicht höher als die vorhergehende!
)",
      R"(S06 In der Sonderprofildatei (SPR) .......... : eins
    wird beim Sonderprofil .................. : zwei
    das Feld Nr. ............................ :     1
    vom benachbarten Feld Nr. ............... :    22
    überschnitten!
)",
      R"(T02 Die Transportstrecke .................... : eins
    hat die Länge (m) ....................... :       4.5
    Sie muss größer als null sein!
)",
      R"(T07 Warnung: Bei der Transportstrecke ....... : eins
             ist die Fließzeit (h) .......... :     4.500
             kürzer als das Zeitintervall
             der Berechnung (h) ............. :    55.250
)",
      R"(T11 Für die Transportstrecke ................ : eins
    enthält die Profildatei ................. : zwei
    kein Profil!
)",
      R"(T12 Die Transportstrecke .................... : eins
    reicht bis zur Station (km) ............. :     4.500
    und damit unten über die Profildatei .... : zwei
    hinaus!
)",
      R"(T15 Warnung: Bei der Transportstrecke ....... : eins
             weicht die Länge (m) ........... :       4.5
             vom Abstand der Stationen (m) .. :      55.2
             ab.
)",
      R"(T40 Bei der Transportstrecke ................ : eins
    ist die Speicherkennlinie nicht anwendbar.
    Sie beginnt erst beim Abfluss (cbm/s) ... :     4.500
)",
      R"(T41 Warnung: Bei der Transportstrecke ....... : eins
             wird die Speicherkennlinie
             beim Abfluss (cbm/s) ........... :     4.500
             überschritten.
)",
      R"(T99 Bei der Transportstrecke ................ : eins
    wurde die Berechnung des Wellenablaufs
    im Zeitschritt Nr. ...................... :         1
    abgebrochen!
)",
      R"(U04 In der Berechnungsvariante .............. : eins
    ist beim Abfluss (cbm/s) ................ :     4.500
    die Normalwassertiefe nicht bestimmbar.
    Bitte das Sohlgefälle prüfen!
)",
      R"(Ver2 In der Tabelle ......................... : eins
     ist bei der Verzweigung ................ : zwei
     die Trennschärfe (%) ................... :     4.500
     unzulässig! Zulässig sind Werte von 0 bis 100 %.
)",
      R"(Vkl1 Warnung: Am Profil an der Station ...... : zwei
              der Profildatei ............... : eins
              wird die lichte Höhe (m) ...... :    55.250
              von der Verklausungshöhe (m) .. :     4.500
              überschritten. Es wird mit der lichten Höhe
              gerechnet.
)",
      R"(V03 In der Steuerdatei ...................... : eins
    ist in der Zeile Nr. .................... :         1
    das Schlüsselwort ....................... : zwei
    unbekannt!
)",
      R"(V05 In der Steuerdatei ...................... : eins
    ist die Zeile mit dem Schlüsselwort ..... : zwei
    mehrfach vorhanden!
)",
      R"(V11 In der Steuerdatei ...................... : eins
    fehlt zum Abfluss Nr. ................... :     1
    der Unterwasserstand!
)",
      R"(V12 In der Steuerdatei ...................... : eins
    ist das Gefälle im Unterwasser (-) ...... :    4.50000
    nicht größer als null!
)",
      R"(V13 Die in der Steuerdatei .................. : eins
    verlangte Eingabedatei .................. : zwei
    ist nicht vorhanden!
)",
      R"(V15 Die in der Steuerdatei .................. : eins
    verlangte Ausgabedatei .................. : zwei
    ist zugleich Eingabedatei. Bitte den Namen ändern!
)",
      R"(V17 Das in der Steuerdatei .................. : eins
    verlangte Sonderprofil .................. : zwei
    fehlt in der Sonderprofildatei (SPR) .... : drei
)"};
  return messages;
}

TEST_F(Catalogue, PrintsItsMessagesToTheByte) {
  for (const std::string_view text : printed_messages()) {
    EXPECT_EQ(joined(message(text.substr(0, text.find(' ')), named_arguments)), german(text));
  }
}

TEST_F(Catalogue, WritesTheEntriesOfTheReaders) {
  EXPECT_EQ(
      message("A00", {.text1 = "var.kfl  ", .text2 = "K17  "}),
      (Lines{"A00 In der Tabelle .......................... : var.kfl",
             "    fehlt das Element ....................... : K17", "    (evtl. fehlerhafter Datensatz)"}));
  EXPECT_EQ(message("A03", {.text1 = "var.kfl", .text2 = "K17"}),
            (Lines{"A03 In der Tabelle .......................... : var.kfl",
                   "    liegt ein Formatfehler vor bei .......... : K17"}));
  EXPECT_EQ(message("A14", {.text1 = "var.kfl", .text2 = "K17"}),
            (Lines{"A14 In der Tabelle ........................ : var.kfl",
                   "    ist das Element ....................... : K17", german("    mehrfach aufgeführt.")}));
  EXPECT_EQ(message("F02", {.text1 = "var.kfl", .text2 = "K17", .real1 = 1.5F}),
            (Lines{"F02 In der Tabelle .......................... : var.kfl",
                   german("    ist der Befestigungsgrad bei der Fläche   : K17"),
                   german("    größer als 1.0 (Verzerrung?)!")}));
  EXPECT_EQ(message("Ver1", {.text1 = "var.ver", .text2 = "V03", .int1 = 4}),
            (Lines{"Ver1In der Tabelle .......................... : var.ver",
                   "    bei der Verzweigung ..................... : V03",
                   german("    sind nur Kennziffern K=[1,3] zulässig! ")}));
}

TEST_F(Catalogue, WritesTheMessagesAboutFilesAndDatabases) {
  EXPECT_EQ(message("C00", {.text1 = "lauf.pro"}),
            (Lines{"C00 In der Profildatei .................... : lauf.pro",
                   "    liegen Fehler vor! Siehe oben."}));
  EXPECT_EQ(message("D10", {.text1 = "lauf.pro"}),
            (Lines{"D10 Die Datei: lauf.pro", "    kann nicht geschlossen werden.",
                   "    Sie ist vermutlich durch ein anderes Programm gesperrt."}));
  // The name stands between a double quote and the end of the line.
  EXPECT_EQ(message("DB0", {.text1 = "tbl_jgg"}),
            (Lines{"DB0 Die Datenbank-Tabelle ................... : \"tbl_jgg",
                   german("    ist noch geöffnet. Sie kann nicht überschrieben werden.")}));
  EXPECT_EQ(message("J01", {.text1 = "Acker"}),
            (Lines{"J01 In tbl_jgg ist der Jahresgang ...... : Acker", "    mehrfach definiert!"}));
  EXPECT_EQ(message("A99", {}), Lines{"A99     Datenbank-Fehler: Kontakt zu TRM Wasser aufnehmen!"});
}

TEST_F(Catalogue, TellsOfTheUpdateOfTheAreaTables) {
  const Lines refusal = message("F12", {.text1 = "var.kfl"});
  EXPECT_EQ(level, 2);
  EXPECT_EQ(refusal, (Lines{"F12 In der Tabelle .......................... : var.kfl",
                            german("    dürfen ab der Version 7.02 von KARVOS keine"),
                            "    Konzentrationsparameter mehr stehen. Die Stelle",
                            german("    ist für Qmax reserviert. Bitte die Datei mit dem"),
                            "    Werkzeug Karvos_upd aktualisieren!"}));
  const Lines note = message("F13", {.text1 = "var.kfl"});
  EXPECT_EQ(level, 1);
  EXPECT_EQ(note, (Lines{"F13 Hinweis: Die Datei ...................... : var.kfl",
                         german("             wurde aktualisiert. Sie enthält keine"),
                         "             Konzentrationsparameter mehr."}));
}

TEST_F(Catalogue, PrintsStationAndDischargeOfAnAbandonedIteration) {
  EXPECT_EQ(message("I01", {.int1 = 500, .real1 = 12.3456F, .real2 = 0.25F}),
            (Lines{"I01 Die Iteration an der Station (km) ....... :  12.346",
                   "    beim Abfluss Q (cbm/s) .................. :   0.250",
                   german("    benötigt mehr Schritte als zulässig ..... :  500"), "    Abbruch!"}));
}

TEST_F(Catalogue, NamesTheProductsThatFilesComeFrom) {
  EXPECT_EQ(message("E36", {.text1 = "lauf.h5", .text2 = "Pegel 3"}),
            (Lines{"E36 In der HDF5-Datei ....................... : lauf.h5",
                   "    wird die PELO-Ganglinie erwartet ........ : Pegel 3",
                   "    Sie ist dort nicht enthalten."}));
  EXPECT_EQ(message("LF_DB", {.text1 = "leit.mdb"}).front(),
            "LF_DB Der Pfad unter KALDER-Variante ........ : leit.mdb");
}

TEST_F(Catalogue, WritesAListBelowItsMessage) {
  EXPECT_EQ(message("P99", {.text1 = "lauf.pro", .text2 = "abc", .text3 = "1,5", .int1 = 7, .int2 = 12345}),
            (Lines{"P99 In der Profildatei ...................... : lauf.pro",
                   "    sind folgende Zeilen fehlerhaft:", "                     7 abc",
                   "                 12345 1,5", "    Bitte die Zeilen berichtigen!"}));
}

TEST_F(Catalogue, ChoosesVariantsByATextArgument) {
  const auto weir = [&](std::string_view breadth) {
    return joined(message("P23", {.text1 = "lauf.pro", .text2 = "12.300", .text3 = breadth, .real1 = -0.5F}));
  };
  EXPECT_EQ(weir("Bmx"), german(R"(P23 In der Profildatei ...................... : lauf.pro
    hat das Wehrprofil an der Station ....... : 12.300
    die größte Breite Bmx (m) ............... :    -0.500
    Sie muss größer als null sein!
)"));
  EXPECT_EQ(weir("Bmn  "), german(R"(P23 In der Profildatei ...................... : lauf.pro
    hat das Wehrprofil an der Station ....... : 12.300
    die kleinste Breite Bmn (m) ............. :    -0.500
    Sie muss größer als null sein!
)"));
  EXPECT_EQ(weir("bmx"), german(R"(P23 In der Profildatei ...................... : lauf.pro
    hat beim Wehrprofil an der Station ...... : 12.300
    die Breite .............................. : bmx
    den Wert (m) ............................ :    -0.500
    Sie muss größer als null sein!
)"));

  const auto neighbours = [&](std::string_view size) {
    return joined(message("P29", {.text1 = "lauf.pro", .text2 = "12.300", .text3 = size, .real1 = 7.5F}));
  };
  EXPECT_EQ(neighbours("Bmn"), R"(P29 In der Profildatei ...................... : lauf.pro
    unterscheiden sich beim interpolierten
    Profil an der Station ................... : 12.300
    die Nachbarprofile in der kleinsten Breite
    Bmn zu stark. Unterschied (m) ........... :     7.500
)");
  EXPECT_EQ(neighbours("Bmx"), german(R"(P29 In der Profildatei ...................... : lauf.pro
    unterscheiden sich beim interpolierten
    Profil an der Station ................... : 12.300
    die Nachbarprofile in der größten Breite
    Bmx zu stark. Unterschied (m) ........... :     7.500
)"));
  EXPECT_EQ(neighbours("Höhe"_w1252), german(R"(P29 In der Profildatei ...................... : lauf.pro
    unterscheiden sich beim interpolierten
    Profil an der Station ................... : 12.300
    die Nachbarprofile in ................... : Höhe
    zu stark. Unterschied ................... :     7.500
)"));

  const auto concentration = [&](std::string_view type) {
    return joined(message("LF_EL11", {.text1 = "X17", .text2 = type, .text3 = "CSB"}));
  };
  EXPECT_EQ(concentration("K"), german(R"(LF_EL11 Bei der kanalisierten Fläche ........ : X17
        fehlt für den Stoff ................. : CSB
        die Stoffkonzentration des Abflusses!
)"));
  EXPECT_EQ(concentration("B"), german(R"(LF_EL11 Beim Becken ......................... : X17
        fehlt für den Stoff ................. : CSB
        die Stoffkonzentration des Überlaufs!
)"));
  EXPECT_EQ(concentration("E"), german(R"(LF_EL11 Beim Einleitungselement ............. : X17
        fehlt für den Stoff ................. : CSB
        die Stoffkonzentration der Einleitung!
)"));

  const auto inflow_of_type = [&](std::string_view type) {
    return message("LF_EL03", {.text1 = "X17", .text2 = type}).at(1);
  };
  EXPECT_EQ(inflow_of_type("N"), german("        angegeben. Eine natürliche Fläche ist dafür nach"));
  EXPECT_EQ(inflow_of_type("K"), german("        angegeben. Eine kanalisierte Fläche darf nur über"));
  EXPECT_EQ(inflow_of_type("T"), "        angegeben. Eine Transportstrecke ist nach dem");
  EXPECT_EQ(inflow_of_type("V"), "        angegeben. Bei einer Verzweigung muss der");
  EXPECT_EQ(inflow_of_type("B"), german("        angegeben. Bei einem Becken muss der Überlauf in"));
  EXPECT_EQ(inflow_of_type("P"), "        angegeben. Der Elementtyp ........... : P");
}

TEST_F(Catalogue, HasRoomForLongSeriesAndFiles) {
  const MessageArguments arguments{
      .text1 = "lauf.h5", .text2 = "Pegel 3", .int1 = 1234567, .int2 = 8765432, .int3 = 7654321};
  for (const std::string_view code :
       {"A05", "A06", "A08", "A09", "E04", "E13", "E35", "M01",  "M02", "M03",
        "M04", "M05", "M06", "M07", "P02", "Q31", "R09", "TRS1", "T99", "V02"}) {
    const std::string text = joined(message(code, arguments));
    EXPECT_NE(text.find("  1234567"), std::string::npos) << text;
    EXPECT_EQ(text.find('*'), std::string::npos) << text;
  }
}

struct CappedCode {
  std::string_view code;
  std::string_view closing_line;
};

void PrintTo(const CappedCode& tested, std::ostream* out) {
  *out << tested.code;
}

class CappedWarning : public Catalogue, public testing::WithParamInterface<CappedCode> {};

TEST_P(CappedWarning, IsWrittenFiveTimesAndStillCountsAfterwards) {
  const MessageArguments arguments{.text1 = "T04", .text2 = "12.3", .real1 = 0.5F, .real2 = 1.0F};
  const Lines once = message(GetParam().code, arguments);
  Lines expected;
  for (int i = 0; i < 5; ++i) expected.insert(expected.end(), once.begin(), once.end());
  expected.emplace_back(GetParam().closing_line);

  init();
  for (int i = 0; i < 7; ++i) EXPECT_EQ(MessageDispatcher(GetParam().code, arguments), 1);
  EXPECT_EQ(written(), expected);

  init();
  for (int i = 0; i < 5; ++i) MessageDispatcher(GetParam().code, arguments);
  MessageDispatcher("ErrorLevel", {.int1 = 0});
  EXPECT_EQ(MessageDispatcher(GetParam().code, arguments), 1);
  EXPECT_EQ(written(), expected);
}

INSTANTIATE_TEST_SUITE_P(TandP, CappedWarning,
                         testing::Values(CappedCode{"T07", "             und weitere Transportstrecken ...."},
                                         CappedCode{"P17",
                                                    "             und weitere Profile .............."}),
                         [](const auto& tested) { return std::string(tested.param.code); });

TEST_F(Catalogue, CountsTheCappedWarningsApart) {
  const MessageArguments arguments{.text1 = "T04", .text2 = "12.3", .real1 = 0.5F, .real2 = 1.0F};
  for (int i = 0; i < 6; ++i) MessageDispatcher("T07", arguments);
  MessageDispatcher("P17", arguments);
  const Lines lines = written();
  EXPECT_EQ(std::ranges::count_if(lines, [](const auto& line) { return line.starts_with("T07"); }), 5);
  EXPECT_EQ(std::ranges::count_if(lines, [](const auto& line) { return line.starts_with("P17"); }), 1);
}

TEST_F(Catalogue, ListsTenReachesUnderOneHeadingAProgramRun) {
  const MessageArguments reach{.text1 = "T04  ", .real1 = 12.5F, .real2 = 103.0625F};
  const std::string list_line = "               T04    12.500   103.062";
  Lines first = {"T30 Bei folgenden Transportstrecken ist der ",
                 german("    größte Abfluss der Gerinnekennlinie kleiner"),
                 german("    als der größte berechnete Abfluss (cbm/s):"),
                 "           Strecke Kennlinie berechnet", list_line};
  EXPECT_EQ(message("T30", reach), first);
  EXPECT_EQ(level, 2);

  // A new protocol goes on with the same list: nine lines are left, the heading is not repeated.
  init();
  for (int i = 0; i < 12; ++i) EXPECT_EQ(MessageDispatcher("T30", reach), 2);
  EXPECT_EQ(written(), Lines(9, list_line));
}

}  // namespace
