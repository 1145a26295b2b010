#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/findings/text.h"
#include "KV_Schau/run/protocol_findings.h"
#include "runtime/cp1252.h"

namespace {

using schau::findings::Finding;
using schau::run::parse_protocol;
using schau::run::ProtocolFindings;
using schau::variant::FileId;
using schau::variant::Place;
using schau::variant::TextFile;
using schau::variant::Variant;
using testing::ElementsAre;
using testing::SizeIs;

std::string german(std::string_view utf8) {
  runtime::Cp1252Text<800> text;
  text.append(utf8);
  return std::string(text.view());
}

std::string element(const std::string& name, const std::string& inflow, const std::string& outflow) {
  return std::string(35, ' ') + name + "   " + inflow + std::string(20 - inflow.size(), ' ') + outflow + "\n";
}

// N0010 and N0010 again, K0010, T0010.
Variant small_variant() {
  Variant variant;
  variant.path = {".", "v", "Ordner/v"};
  const std::string system = "Kopf\n" + element("N0010", "", "T0010") + element("K0010", "", "T0010") +
                             element("N0010", "", "T0010") + element("T0010", "N0010", "ENDE");
  const auto set = [&](FileId file, const std::string& bytes, const std::string& extension) {
    variant.files[static_cast<std::size_t>(file)] = TextFile::of_bytes(bytes, "Ordner/v" + extension);
  };
  set(FileId::sys, system, ".sys");
  set(FileId::nfl, "          ha\n   N0010  10.0\n   N0010  12.0\n", ".nfl");
  set(FileId::kfl, "", ".kfl");
  set(FileId::trs, "   T0010    1.000\n", ".trs");
  set(FileId::ver, "", ".ver");
  variant.files[static_cast<std::size_t>(FileId::protocol)] = TextFile::named("Ordner/v.pkl");
  schau::variant::take_in(variant);
  return variant;
}

ProtocolFindings findings_in(std::string_view lines, const Variant& variant) {
  return findings_of(parse_protocol(german("Prüfprotokoll: KARVOS\n" + std::string(lines))), variant);
}

TEST(ProtocolFindings, LieWhereTheirElementStands) {
  const Variant variant = small_variant();
  const auto place_of = [&](std::string_view lines) {
    const ProtocolFindings found = findings_in(lines, variant);
    EXPECT_THAT(found.findings, SizeIs(1)) << lines;
    return found.findings.front().place;
  };
  constexpr std::string_view in_table = "In der Tabelle .......................... : ";
  // With a line in the file that is named: there, at the first one.
  EXPECT_EQ(place_of("A03 " + std::string(in_table) +
                     "v.nfl\n    liegt ein Formatfehler vor bei .......... : N0010\n"),
            (Place{FileId::nfl, 2, 4, 5}));
  // Without: at the element itself.
  EXPECT_EQ(place_of("A00 " + std::string(in_table) +
                     "v.kfl\n    fehlt das Element ....................... : K0010\n"
                     "    (evtl. fehlerhafter Datensatz)\n"),
            (Place{FileId::sys, 3, 36, 5}));
  // Of several elements of one name at the last, as links do.
  EXPECT_EQ(place_of("Y04 Das Element ............................. : N0010\n"
                     "    ist in der Systemlogik mehrfach definiert !\n"),
            (Place{FileId::sys, 4, 36, 5}));
  // The first text that is an element.
  EXPECT_EQ(place_of("Y21 Das Zulaufelement ....................... : N9999\n"
                     "    beim Systemelement ...................... : T0010\n"
                     "    existiert nicht als Systemelement !\n"),
            (Place{FileId::sys, 5, 36, 5}));
  // A file alone, and nothing that the variant knows.
  EXPECT_EQ(place_of("A19 Die Tabelle ............................. : v.trs\n"
                     "    enthält keine einzige Datenzeile!\n"),
            (Place{.file = FileId::trs}));
  EXPECT_EQ(place_of("A03 " + std::string(in_table) +
                     "w.nfl\n    liegt ein Formatfehler vor bei .......... : N001\n"),
            (Place{.file = FileId::protocol, .line = 2}));
  EXPECT_EQ(
      place_of("A03 " + std::string(in_table) + "v.dat\n    liegt ein Formatfehler vor bei .......... : \n"),
      (Place{.file = FileId::protocol, .line = 2}));
  EXPECT_EQ(place_of("A03 " + std::string(in_table) +
                     "v.sys\n    liegt ein Formatfehler vor bei .......... : K0010\n"),
            (Place{FileId::sys, 3, 36, 5}));
}

TEST(ProtocolFindings, StandBySeverityAndElseAsTheProtocolHasThem) {
  const ProtocolFindings found = findings_in(
      "Whr0 Hinweis: O2-Eintrag beim Wehr ........... : a\n"
      "W06          wegen Rückläufigkeit von ..... Salt =       123.\n"
      "Y12-Kommentar bei T0010 nicht definiert!\n"
      "Y01 Die Kennung des Elements ................ : x\n    ist unzulässig !\n"
      "was ist das\n"
      "W08 Warnung: Bei  Transportstrecke .......... : T0010\n"
      "             wurde kein Speicherkoeffizient für\n             den Totraum angegeben!\n",
      small_variant());
  std::vector<std::string> told;
  for (const Finding& finding : found.findings) {
    told.push_back(std::string(word_of(finding.rule->severity)) + " " +
                   std::string(finding.rule->identifier));
  }
  EXPECT_THAT(told, ElementsAre("Fehler Y12", "Fehler Y01", "Fehler unbekannt", "Warnung W06", "Warnung W08",
                                "Hinweis Whr0"));
}

TEST(ProtocolFindings, AreGermanSentences) {
  const auto sentence = [](std::string_view lines) {
    return findings_in(lines, small_variant()).findings.front().text;
  };
  EXPECT_EQ(sentence("Y04 Das Element ............................. : K17\n"
                     "    ist in der Systemlogik mehrfach definiert !\n"),
            "Das Element K17 ist in der Systemlogik mehrfach definiert");
  EXPECT_EQ(
      sentence("F02 In der Tabelle .......................... : v.kfl\n"
               "    ist der Befestigungsgrad bei der Fläche   : K17\n    größer als 1.0 (Verzerrung?)!\n"),
      "In der Tabelle v.kfl ist der Befestigungsgrad bei der Fläche K17 größer als 1.0 (Verzerrung?)");
  EXPECT_EQ(sentence("W02 Warnung: Das Systemelement .............. : V0010\n"
                     "             weist kein 2. Abgabeelement auf!\n"),
            "Das Systemelement V0010 weist kein 2. Abgabeelement auf");
  EXPECT_EQ(sentence("Y25 Das Systemelement der Systemlogik ....... : T1\n"
                     "    liegt nicht als Ablaufelement vor bei: .. : T2\n"),
            "Das Systemelement der Systemlogik T1 liegt nicht als Ablaufelement vor bei: T2");
  EXPECT_EQ(
      sentence("D10 Die Datei: a : b\n    kann nicht geschlossen werden.\n"
               "    Sie ist vermutlich durch ein anderes Programm gesperrt.\n"),
      "Die Datei: a b kann nicht geschlossen werden. Sie ist vermutlich durch ein anderes Programm gesperrt");
  EXPECT_EQ(sentence("W06          wegen Rückläufigkeit von ..... Salt =       123.\n"),
            "wegen Rückläufigkeit von Salt = 123");
  EXPECT_EQ(sentence("Y12-Kommentar bei T0010 nicht definiert!\n"),
            "Der Katalog hat zur Meldung Y12 keinen Text; sie betrifft T0010");
  EXPECT_EQ(sentence("was\x1b[2J ist das\n"),
            "Das Protokoll enthält etwas, das der Katalog nicht kennt: was␛[2J ist das");
}

TEST(ProtocolFindings, SayWhenTheCatalogueHasNoText) {
  const auto text_of = [](std::string_view line) {
    return findings_in(line, small_variant()).findings.front().text;
  };
  EXPECT_EQ(text_of("mnn99-Kommentar bei  nicht definiert!\n"),
            "Der Katalog hat zur Meldung mnn99 keinen Text");
  EXPECT_EQ(text_of("Y12-Kommentar bei K0017 nicht definiert!\n"),
            "Der Katalog hat zur Meldung Y12 keinen Text; sie betrifft K0017");
}

TEST(ProtocolFindings, SayWhenSomethingIsMissingFromThem) {
  const Variant variant = small_variant();
  EXPECT_EQ(findings_in("W01 Warnung: Das Systemelement .............. : V0001\n"
                        "             weist kein 1. Abgabeelement auf!\n"
                        "             und weitere Elemente .............\n",
                        variant)
                .findings.front()
                .hint,
            "weitere dieser Art nennt das Protokoll nicht");
  EXPECT_EQ(findings_in("Y04 Das Element ............................. : K0", variant).findings.front().hint,
            "die Meldung ist abgebrochen");
}

// A name that is not plain ASCII is spelled by the host in UTF-8, the rest of the protocol in Windows-1252.
TEST(ProtocolFindings, ShowTheNameOfTheVariantAsTheHostSpellsIt) {
  Variant variant = small_variant();
  variant.path.name = "Flüsse";
  const std::string protocol =
      german("Prüfprotokoll: KARVOS\nA03 In der Tabelle .......................... : ") + "Flüsse.nfl" +
      german("\n    liegt ein Formatfehler vor bei .......... : NÄ1\n");
  const ProtocolFindings found = findings_of(parse_protocol(protocol), variant);
  ASSERT_THAT(found.findings, SizeIs(1));
  EXPECT_EQ(found.findings.front().text, "In der Tabelle Flüsse.nfl liegt ein Formatfehler vor bei NÄ1");
}

TEST(ProtocolFindings, OfManyMessagesTakeTimeInProportion) {
  const auto seconds = [](std::size_t count) {
    Variant variant;
    variant.path = {".", "v", "v"};
    std::string system;
    std::string areas;
    std::string lines = german("Prüfprotokoll: KARVOS\n");
    for (std::size_t i = 0; i < count; ++i) {
      std::string name = "N" + std::to_string(10'000 + i % 90'000).substr(1);
      name[1] = static_cast<char>('A' + i / 10'000);
      system += element(name, "", "T0010");
      areas += "   " + name + "  1.0\n";
      lines +=
          "A03 In der Tabelle .......................... : v.nfl\n"
          "    liegt ein Formatfehler vor bei .......... : " +
          name + "\n";
    }
    variant.files[static_cast<std::size_t>(FileId::sys)] = TextFile::of_bytes(system, "v.sys");
    variant.files[static_cast<std::size_t>(FileId::nfl)] = TextFile::of_bytes(areas, "v.nfl");
    schau::variant::take_in(variant);
    const schau::run::Protocol protocol = parse_protocol(lines);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(findings_of(protocol, variant).findings, SizeIs(count));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  };
  const double few = std::max(seconds(5'000), seconds(5'000));
  EXPECT_LT(seconds(50'000), 30 * few);
}

}  // namespace
