// A finding as text and as data.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KV_Schau/findings/finding.h"
#include "KV_Schau/findings/json.h"
#include "KV_Schau/findings/text.h"
#include "KV_Schau/rules/rules.h"
#include "tests/schau/bed.h"

namespace {

using namespace schau::findings;
using schau::variant::FileId;
using schau_test::Bed;

constexpr Rule comma{"dezimalkomma", Severity::error, "eine Erklärung"};
constexpr Rule remark{"bemerkung", Severity::note, "eine Erklärung"};

std::string text_of_finding(const Bed& bed, const Finding& finding, const Colours& colours = no_colours) {
  std::string out;
  append_text(out, bed.variant(), finding, colours);
  return out;
}

TEST(Text, HasTheFormThatEditorsJumpTo) {
  Bed bed;
  bed.put(FileId::kfl, 3, 11, "64,50");
  EXPECT_EQ(
      text_of_finding(
          bed, {&comma, {FileId::kfl, 3, 11, 5}, "Dezimalkomma in der Fläche \"64,50\"", "gemeint: 64.50"}),
      "netz.kfl:3:11: Fehler: Dezimalkomma in der Fläche \"64,50\" [dezimalkomma]\n"
      "    3 |    K0010  64,50 0.35\n"
      "      |           ^~~~~ gemeint: 64.50\n");
}

TEST(Text, IsWhatTheRuleGives) {
  Bed bed;
  bed.put(FileId::kfl, 3, 11, "64,50");
  const schau::variant::Variant variant = bed.variant();
  std::string out;
  for (const Finding& finding : schau::rules::check(variant).findings) append_text(out, variant, finding);
  EXPECT_EQ(out,
            "netz.kfl:3:11: Fehler: Dezimalkomma in der Fläche \"64,50\" [dezimalkomma]\n"
            "    3 |    K0010  64,50 0.35\n"
            "      |           ^~~~~ gemeint: 64.50\n");
}

TEST(Text, CountsUmlautsAndTabsRight) {
  Bed bed;
  bed.line(FileId::sys, 3) = schau_test::bytes_of("Fläche\tgrün");
  EXPECT_EQ(text_of_finding(bed, {&remark, {FileId::sys, 3, 8, 4}, "Text", ""}),
            "netz.sys:3:8: Hinweis: Text [bemerkung]\n"
            "    3 | Fläche→ grün\n"
            "      |         ^~~~\n");
  // In UTF-8 the editor's column is another one than KV_Akum's.
  bed.line(FileId::sys, 1) = "ohne";
  bed.line(FileId::sys, 3) = "Fläche grün";
  EXPECT_EQ(text_of_finding(bed, {&remark, {FileId::sys, 3, 9, 5}, "Text", "Rat"}),
            "netz.sys:3:8: Hinweis: Text [bemerkung]\n"
            "    3 | Fläche grün\n"
            "      |        ^~~~ Rat\n");
}

TEST(Text, OfAFileAsAWholeHasNoLine) {
  EXPECT_EQ(text_of_finding(Bed(), {&remark, {FileId::result, 0}, "Text", ""}),
            "netz.Akum: Hinweis: Text [bemerkung]\n");
  EXPECT_EQ(text_of_finding(Bed(), {&remark, {FileId::result, 0}, "Text", "Rat"}),
            "netz.Akum: Hinweis: Text [bemerkung]\n"
            "      = Rat\n");
}

TEST(Text, OfALineThatWasNotReadShowsNoSource) {
  EXPECT_EQ(text_of_finding(Bed(), {&remark, {FileId::protocol, 5}, "Text", ""}),
            "netz.pkl:5:1: Hinweis: Text [bemerkung]\n");
  EXPECT_EQ(text_of_finding(Bed(), {&remark, {FileId::protocol, 5}, "Text", "Rat"}),
            "netz.pkl:5:1: Hinweis: Text [bemerkung]\n"
            "      = Rat\n");
}

TEST(Text, OfAFileInUtf16ShowsNoSource) {
  Bed bed;
  bed.set_bytes(FileId::nfl, std::string("\xFF\xFEN\0a\0", 6));
  EXPECT_EQ(text_of_finding(bed, {&remark, {FileId::nfl, 1}, "Text", "Rat"}),
            "netz.nfl:1:1: Hinweis: Text [bemerkung]\n"
            "      = Rat\n");
}

TEST(Text, MakesRoomForLongLineNumbers) {
  Bed bed;
  bed.lines(FileId::nfl).resize(1234567, "x");
  EXPECT_EQ(text_of_finding(bed, {&remark, {FileId::nfl, 1234567, 1, 1}, "Text", ""}),
            "netz.nfl:1234567:1: Hinweis: Text [bemerkung]\n"
            "1234567 | x\n"
            "        | ^\n");
}

TEST(Text, HasColoursOnATerminal) {
  Bed bed;
  const std::string out =
      text_of_finding(bed, {&comma, {FileId::kfl, 3, 4, 5}, "Text", ""}, terminal_colours);
  EXPECT_EQ(out,
            "\x1B[1mnetz.kfl:3:4:\x1B[0m \x1B[1;31mFehler:\x1B[0m Text [dezimalkomma]\n"
            "    3 |    K0010  64.50 0.35\n"
            "      |    \x1B[1;32m^~~~~\x1B[0m\n");
}

TEST(Text, CountsFindings) {
  EXPECT_EQ(text_of(Counts{1, 1, 1}), "1 Fehler, 1 Warnung, 1 Hinweis");
  EXPECT_EQ(text_of(Counts{2, 0, 3}), "2 Fehler, 0 Warnungen, 3 Hinweise");
  const std::vector<Finding> findings = {{&comma, {}, "", ""}, {&remark, {}, "", ""}, {&remark, {}, "", ""}};
  const Counts counts = count(findings);
  EXPECT_EQ(counts.errors, 1U);
  EXPECT_EQ(counts.warnings, 0U);
  EXPECT_EQ(counts.notes, 2U);
}

TEST(Order, GoesByFileLineAndColumn) {
  std::vector<Finding> findings = {{&comma, {FileId::ver, 1, 1, 1}, "4", ""},
                                   {&comma, {FileId::sys, 2, 5, 1}, "3", ""},
                                   {&remark, {FileId::sys, 2, 5, 9}, "3b", ""},
                                   {&comma, {FileId::sys, 2, 4, 1}, "2", ""},
                                   {&comma, {FileId::sys, 1, 9, 1}, "1", ""}};
  sort_by_place(findings);
  std::string order;
  for (const Finding& finding : findings) order += finding.text + " ";
  EXPECT_EQ(order, "1 2 3 3b 4 ");
}

TEST(Json, HoldsTheSame) {
  Bed bed;
  bed.put(FileId::kfl, 3, 11, "64,50");
  const nlohmann::ordered_json json = to_json(
      bed.variant(), {&comma, {FileId::kfl, 3, 11, 5}, "Dezimalkomma in der Fläche", "gemeint: 64.50"});
  EXPECT_EQ(
      json.dump(),
      "{\"regel\":\"dezimalkomma\",\"stufe\":\"Fehler\",\"datei\":\"netz.kfl\",\"zeile\":3,\"spalte\":11,"
      "\"byte_spalte\":11,\"laenge\":5,\"text\":\"Dezimalkomma in der Fläche\",\"hinweis\":\"gemeint: "
      "64.50\","
      "\"quelle\":\"   K0010  64,50 0.35\"}");
}

TEST(Json, IsWellFormedWhateverStandsInTheFile) {
  Bed bed;
  bed.line(FileId::sys, 1) = "Ω\"\\\x01\xFF\tä";
  const nlohmann::ordered_json json = to_json(bed.variant(), {&remark, {FileId::sys, 1, 1, 1}, "Text", ""});
  EXPECT_EQ(json.at("quelle"), "Î©\"\\␁ÿ→Ã¤");
  EXPECT_NO_THROW(json.dump());
  EXPECT_FALSE(json.contains("hinweis"));
  const nlohmann::ordered_json whole = to_json(bed.variant(), {&remark, {FileId::result, 0}, "Text", ""});
  EXPECT_EQ(whole.at("zeile"), 0);
  EXPECT_FALSE(whole.contains("spalte"));
}

TEST(Json, OfALineThatWasNotReadHoldsNoSource) {
  const nlohmann::ordered_json json = to_json(Bed().variant(), {&remark, {FileId::protocol, 5}, "Text", ""});
  EXPECT_EQ(json.at("zeile"), 5);
  EXPECT_FALSE(json.contains("quelle"));
}

}  // namespace
