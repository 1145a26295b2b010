// The report: its parts, and the page made of it.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "KV_Schau/report/html.h"
#include "KV_Schau/report/report.h"
#include "tests/schau/drawn_plan.h"

namespace {

using schau::findings::Severity;
using schau::report::FindingEntry;
using schau::report::Report;
using schau_test::Bed;
using schau_test::DrawnPlan;
using schau_test::FileId;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

Report report_on(const Bed& bed) {
  return schau::report::report_of(DrawnPlan(bed.variant()).facts);
}

std::size_t count_of(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// What the page hands to its script.
nlohmann::json data_of(const std::string& html) {
  constexpr std::string_view begin = "id=\"daten\">";
  const std::size_t from = html.find(begin) + begin.size();
  return nlohmann::json::parse(html.substr(from, html.find("</script>", from) - from));
}

TEST(Report, SumsUpTheVariant) {
  const Report report = report_on(Bed());
  EXPECT_EQ(report.element_count, 10U);
  EXPECT_THAT(report.kinds,
              ElementsAre(Pair("natürliche Flächen", 2U), Pair("kanalisierte Fläche", 1U),
                          Pair("Transportstrecken", 5U), Pair("Verzweigung", 1U), Pair("Pegel", 1U)));
  EXPECT_EQ(report.counts_text, "0 Fehler, 0 Warnungen, 0 Hinweise");
  ASSERT_EQ(report.balance.size(), 3U);
  EXPECT_NEAR(report.balance[0].areas.all(), 15.545, 1e-9);
  EXPECT_NEAR(report.balance[1].areas.natural, 14.9, 1e-9);
  EXPECT_NEAR(report.balance[2].areas.all(), 0.0, 1e-9);
  EXPECT_THAT(report.losses, IsEmpty());
  EXPECT_EQ(report.links.size(), 10U);
}

TEST(Report, HasARowForEachElement) {
  const Report report = report_on(Bed());
  const schau::report::ElementEntry& reach = report.elements.at(2);
  EXPECT_EQ(reach.name, "T0010");
  EXPECT_EQ(reach.kind, "Transportstrecke");
  EXPECT_EQ(reach.line, 5U);
  EXPECT_NEAR(reach.station.value(), 18.25, 1e-9);
  EXPECT_NEAR(reach.areas.natural, 12.4, 1e-9);
  EXPECT_NEAR(reach.areas.impervious, 0.22575, 1e-9);
  EXPECT_NEAR(reach.sealing.value(), 0.22575 / 13.045, 1e-9);
  EXPECT_FALSE(report.elements.at(0).station.has_value());
}

TEST(Report, ListsWhatIsLostTheLargestFirst) {
  Bed bed;
  bed.line(FileId::sys, 6) = schau_test::text_of({"V0010", {"T0010"}, {"T0020"}, "BW", "V-01"});
  const Report report = report_on(bed);
  ASSERT_EQ(report.losses.size(), 1U);
  EXPECT_EQ(report.losses[0].element, "V0010");
  EXPECT_EQ(report.losses[0].place, "netz.sys:6:36");
  EXPECT_NEAR(report.losses[0].areas.all(), 0.35 * 13.045, 1e-9);
  EXPECT_NEAR(report.balance[2].areas.all(), 0.35 * 13.045, 1e-9);
}

TEST(Report, ShowsAFindingInItsLine) {
  Bed bed;
  bed.put(FileId::kfl, 3, 11, "64,50");
  const Report report = report_on(bed);
  ASSERT_FALSE(report.findings.empty());
  const FindingEntry& finding = report.findings.front();
  EXPECT_EQ(finding.severity, Severity::error);
  EXPECT_EQ(finding.place, "netz.kfl:3:11");
  EXPECT_EQ(finding.rule, "dezimalkomma");
  EXPECT_EQ(finding.hint, "gemeint: 64.50");
  ASSERT_EQ(finding.source.size(), 3U);
  EXPECT_FALSE(finding.source[1].is_place);
  EXPECT_EQ(finding.source[1].number, 2U);
  EXPECT_EQ(finding.source[1].before, "          ha");
  EXPECT_TRUE(finding.source[2].is_place);
  EXPECT_EQ(finding.source[2].before, "   K0010  ");
  EXPECT_EQ(finding.source[2].marked, "64,50");
  EXPECT_EQ(finding.source[2].after, " 0.35");
}

TEST(Report, LeavesOutFindingsBeyondItsLimitAndSaysSo) {
  Dice dice(1);
  Bed bed = schau_test::random_tree(dice, {.sources = schau::report::most_findings + 100});
  for (std::string& line : bed.lines(FileId::nfl)) std::ranges::replace(line, '.', ',');
  const Report report = report_on(bed);
  EXPECT_EQ(report.findings.size(), schau::report::most_findings);
  EXPECT_EQ(report.findings.size() + report.findings_left_out,
            report.counts.errors + report.counts.warnings + report.counts.notes);
  EXPECT_GE(report.findings_left_out, 100U);
  EXPECT_THAT(to_html(report), HasSubstr(std::to_string(report.findings_left_out) + " weitere Befunde"));
}

TEST(Report, TellsWhatDiffersFromAnOlderVariant) {
  Bed bed;
  bed.put(FileId::nfl, 3, 11, "13.40");
  Report report = report_on(bed);
  add_comparison(report, schau::compare::compare(Bed().variant(), bed.variant()));
  ASSERT_TRUE(report.against.has_value());
  ASSERT_EQ(report.against->changes.size(), 1U);
  EXPECT_EQ(report.against->changes[0].element, "N0010");
  EXPECT_EQ(report.against->changes[0].place, "netz.nfl:3");
  EXPECT_NEAR(report.against->changes[0].effect, 1.0, 1e-9);
  ASSERT_EQ(report.against->reaches.size(), 5U);
  const auto reach =
      std::ranges::find(report.against->reaches, "T0010", &schau::report::ReachChangeEntry::reach);
  ASSERT_NE(reach, report.against->reaches.end());
  EXPECT_NEAR(reach->before, 13.045, 1e-9);
  EXPECT_NEAR(reach->after, 14.045, 1e-9);
  EXPECT_EQ(reach->causes, "N0010 (Fläche)");
  EXPECT_TRUE(report.elements[0].is_changed);
  EXPECT_FALSE(report.elements[2].is_changed);
  EXPECT_NEAR(report.elements[4].difference.value(), 0.65, 1e-9);
  EXPECT_FALSE(report.elements[0].difference.has_value());

  const std::string html = to_html(report);
  EXPECT_THAT(html, HasSubstr("Vergleich mit netz"));
  EXPECT_THAT(
      html,
      HasSubstr("<td>13.045</td><td>14.045</td><td>+1.000</td><td class=\"words\">N0010 (Fläche)</td>"));
  EXPECT_THAT(html, HasSubstr("class=\"more\" d=\"M"));
  EXPECT_THAT(html, HasSubstr("class=\"less\" d=\"\""));
  EXPECT_EQ(count_of(html.substr(html.find("class=\"ring\" d=")), "a11.0 11.0 0 1 1 22.0 0a"), 1U);
  EXPECT_EQ(data_of(html)["elements"][4][10], 0.65);
  EXPECT_THAT(to_html(report_on(bed)), Not(HasSubstr("id=\"vergleich\"")));
}

TEST(Page, HoldsThePartsOfTheReport) {
  Bed bed;
  bed.put(FileId::kfl, 3, 11, "64,50");
  const std::string html = to_html(report_on(bed));
  EXPECT_THAT(html, HasSubstr("<title>netz – Bericht</title>"));
  EXPECT_THAT(html, HasSubstr("<b>5</b> Transportstrecken"));
  EXPECT_THAT(html, HasSubstr("<code>netz.kfl:3:11</code> Dezimalkomma"));
  EXPECT_THAT(html, HasSubstr("   K0010  <mark>64,50</mark> 0.35"));
  EXPECT_THAT(html,
              HasSubstr("netz.Akum liegt nicht vor. Die Flächen sind hier aus den Eingabedateien summiert."));
  EXPECT_THAT(html, HasSubstr("<tr><th scope=\"row\">am Auslass T0050</th><td>14.900</td><td>0.000</td>"));
  EXPECT_THAT(html, Not(HasSubstr("{{")));
  const nlohmann::json data = data_of(html);
  EXPECT_EQ(data["elements"].size(), 10U);
  EXPECT_EQ(data["elements"][2][0], "T0010");
  EXPECT_EQ(data["elements"][2][5], 12.4);
  EXPECT_EQ(data["links"].size(), 20U);
  EXPECT_EQ(data["plan"]["nodes"].size(), 10U);
  EXPECT_EQ(data["plan"]["lines"].size(), 10U);
}

TEST(Page, NeedsNothingButItself) {
  const std::string html = to_html(report_on(Bed()));
  for (const char* foreign : {"<link", " src=", "url(", "@import", "https:", "import(", "fetch("}) {
    EXPECT_THAT(html, Not(HasSubstr(foreign)));
  }
  EXPECT_THAT(html, HasSubstr("default-src 'none'"));
}

// Names that would close what they stand in, or be taken for the template's own.
TEST(Page, ShowsHostileNamesAsTheyAre) {
  for (const char* name :
       {"</script><b>&\"'", "<svg onload=s=1>", "{{{css}}}{{title}", "--><!--<script>", "]]></title>&lt;"}) {
    Bed bed;
    bed.put(FileId::sys, 5, 17, name);
    bed.line(FileId::kfl, 1) = fmt::format("   K0010  1,5 {}", name);
    bed.name = name;
    const std::string html = to_html(report_on(bed));
    const std::string plain = to_html(report_on(Bed()));
    for (const char* part : {"<script", "</script", "<svg", "<b>", "</b>", "<!--", "</title"}) {
      const std::size_t in_plain = count_of(plain, part);
      EXPECT_EQ(count_of(html, part), in_plain) << part << " with " << name;
    }
    EXPECT_EQ(data_of(html)["elements"][2][2], name);
    EXPECT_EQ(count_of(html, "--impervious: #7d2a16"), 1U) << "the style sheet, with " << name;
  }
}

}  // namespace
