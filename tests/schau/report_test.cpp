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
#include "tests/test_files.h"

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

// A table with these total areas of natural, canalised and impervious ground in every row.
std::string result_with(std::string_view totals) {
  std::string table = schau_test::bytes_of(
      "netz: akkumulierte Flächen [qkm]\n"
      "\n"
      "Gew.      km     Einl.   natürliche Fläche       kanal. Fläche        undurchl. Fläche Gesamtfläche\n"
      "                            Ad       Ages         Ad       Ages        Au,d     Au,ges        Ages\n"
      "(1)       (2)     (3)       (4)       (5)         (6)       (7)         (8)       (9)        (5+7)\n");
  table += std::string(99, '-') + "\n";
  const auto row = [&](std::string_view reach, std::string_view station, std::string_view inflow) {
    table += fmt::format("{}{:>10}  {}     0.000{}\n", reach, station, inflow, totals);
  };
  const auto further = [&](std::string_view inflow) { table += fmt::format("{:17}{}\n", "", inflow); };
  row("T0010", "18.250", "N0010");
  further("K0010");
  row("T0020", "12.900", "V0010");
  row("T0030", "12.500", "V0010");
  row("T0040", "9.475", "T0020");
  further("T0030");
  further("N0020");
  row("T0050", "6.125", "P0010");
  return table;
}

TEST(Report, TakesTheFiguresOfAResult) {
  const test_files::WorkingFolder folder;
  const auto report_with = [](std::string_view totals) {
    test_files::write_bytes("netz.Akum", result_with(totals));
    Bed bed;
    bed.surroundings.result = true;
    return report_on(bed);
  };
  const Report report = report_with("     1.000       0.000     2.000       0.000     0.500        3.000");
  EXPECT_EQ(report.origin_text, "Die Flächen der Transportstrecken stammen aus netz.Akum.");
  EXPECT_EQ(report.elements.at(2).areas.natural, 1.0);
  EXPECT_EQ(report.elements.at(2).areas.canalised, 2.0);
  EXPECT_EQ(report.elements.at(2).areas.impervious, 0.5);
  EXPECT_EQ(report.elements.at(2).total, 3.0);
  EXPECT_NEAR(report.elements.at(3).total, 13.045, 1e-9) << "what is no reach is summed up";
  for (const std::string_view overflow :
       {"**********       0.000     2.000       0.000     0.500        3.000",
        "     1.000       0.000**********       0.000     0.500        3.000",
        "     1.000       0.000     2.000       0.000**********        3.000",
        "     1.000       0.000     2.000       0.000     0.500   **********"}) {
    EXPECT_NEAR(report_with(overflow).elements.at(2).total, 13.045, 1e-9) << overflow;
  }
  EXPECT_THAT(
      report_with("     1.000").origin_text,
      HasSubstr("netz.Akum zählt nicht: Zeile 7 des Ergebnisses ist keine Zeile der Ergebnistabelle"));
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
  EXPECT_THAT(to_html(report),
              HasSubstr("<tr><th scope=\"row\">V0010</th><td class=\"words\">netz.sys:6:36</td>"));
}

TEST(Report, NamesEachKindInItsNumber) {
  Bed bed;
  for (const char* const name : {"E0010", "E0020"})
    bed.insert(FileId::sys, 3, schau_test::text_of({name, {}, {"T0010"}}));
  for (const char* const name : {"V0020", "B0010", "B0020"})
    bed.insert(FileId::sys, 7, schau_test::text_of({name, {"T0010"}, {"T0020"}}));
  EXPECT_THAT(report_on(bed).kinds,
              testing::IsSupersetOf({Pair("Einleitungen ohne Fläche", 2U), Pair("Verzweigungen", 2U),
                                     Pair("Becken", 2U), Pair("Pegel", 1U)}));
}

TEST(Report, HasABalanceWithoutAnOutlet) {
  EXPECT_EQ(report_on(Bed::empty()).balance.at(1).what, "am Auslass");
}

TEST(Report, ShowsSumsBeyondAllNumbersAsNone) {
  Bed bed;
  bed.put(FileId::ver, 2, 16, "9E99 ");
  const std::string html = to_html(report_on(bed));
  EXPECT_THAT(html, HasSubstr("<tr><th scope=\"row\">am Auslass T0050</th><td>–</td>"));
  EXPECT_TRUE(data_of(html)["elements"][4][5].is_null());
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

TEST(Report, ShowsAPartOfALongLine) {
  Bed bed;
  bed.put(FileId::kfl, 3, 11, "64,50");
  bed.line(FileId::kfl, 3) += " " + std::string(5000, 'x');
  const Report report = report_on(bed);
  const auto finding = std::ranges::find(report.findings, "netz.kfl:3:11", &FindingEntry::place);
  ASSERT_NE(finding, report.findings.end());
  const schau::report::SourceLine& line = finding->source.back();
  EXPECT_TRUE(line.is_place);
  EXPECT_THAT(line.before, HasSubstr("K0010  64,50"));
  EXPECT_LT(line.before.size(), 250U);
  EXPECT_EQ(line.marked, "");
}

TEST(Report, IsAsBadAsItsWorstFinding) {
  const auto verdict_of = [](const Bed& bed) {
    const std::string html = to_html(report_on(bed));
    const std::size_t begin = html.find("<p class=\"verdict ") + 18;
    return html.substr(begin, html.find('"', begin) - begin);
  };
  Bed bed;
  EXPECT_EQ(verdict_of(bed), "note");
  bed.line(FileId::trs, 4).resize(40);
  const Report report = report_on(bed);
  ASSERT_EQ(report.counts.errors, 0U);
  ASSERT_GT(report.counts.warnings, 0U);
  EXPECT_EQ(verdict_of(bed), "warning");
  bed.put(FileId::kfl, 3, 11, "64,50");
  EXPECT_EQ(verdict_of(bed), "error");
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

Report compared(const Bed& older, const Bed& newer) {
  Report report = report_on(newer);
  add_comparison(report, schau::compare::compare(older.variant(), newer.variant()));
  return report;
}

TEST(Report, TellsWhenNothingDiffers) {
  EXPECT_THAT(to_html(compared(Bed(), Bed())), HasSubstr("<p>Es gibt keinen Unterschied.</p>"));
}

TEST(Report, TellsAllCausesOfADifference) {
  Bed bed;
  bed.put(FileId::nfl, 3, 11, "13.40");
  bed.put(FileId::kfl, 3, 11, "74.50");
  const Report report = compared(Bed(), bed);
  const auto reach =
      std::ranges::find(report.against->reaches, "T0010", &schau::report::ReachChangeEntry::reach);
  ASSERT_NE(reach, report.against->reaches.end());
  EXPECT_EQ(reach->causes, "N0010 (Fläche), K0010 (Fläche)");
}

TEST(Report, DrawsNoLineWhereDifferencesCancelOut) {
  Bed bed;
  bed.put(FileId::nfl, 3, 11, "12.50");  // 0.1 km² more
  bed.put(FileId::kfl, 3, 11, "54.50");  // 10 ha less
  const Report report = compared(Bed(), bed);
  EXPECT_EQ(report.elements.at(2).difference.value(), 0.0);
  const std::string html = to_html(report);
  EXPECT_THAT(html, HasSubstr("class=\"more\" d=\"\""));
  EXPECT_THAT(html, HasSubstr("class=\"less\" d=\"\""));
  bed.put(FileId::nfl, 3, 11, "11.50");
  const std::string with_less = to_html(compared(Bed(), bed));
  EXPECT_THAT(with_less, HasSubstr("class=\"more\" d=\"\""));
  EXPECT_THAT(with_less, HasSubstr("class=\"less\" d=\"M"));
}

TEST(Report, TellsWhatIsGone) {
  Bed bed;
  bed.erase(FileId::sys, 9);  // N0020
  bed.line(FileId::sys, 9) = schau_test::text_of({"T0040", {"T0020", "T0030"}, {"P0010"}});
  const Report report = compared(Bed(), bed);
  const auto gone = std::ranges::find(report.against->changes, "N0020", &schau::report::ChangeEntry::element);
  ASSERT_NE(gone, report.against->changes.end());
  EXPECT_EQ(gone->place, "netz.sys:9");
  EXPECT_NEAR(gone->effect, 2.5, 1e-9);
}

// A network whose areas are all twice as large.
TEST(Report, LeavesOutDifferencesBeyondItsLimitAndSaysSo) {
  Dice dice(1);
  const Bed older = schau_test::random_tree(dice, {.sources = 700, .reach_back = 1});
  Bed newer = older;
  for (std::string& line : newer.lines(FileId::nfl)) {
    if (line.starts_with("   N")) line.replace(10, 5, "99.99");
  }
  const Report report = compared(older, newer);
  EXPECT_EQ(report.against->changes.size(), schau::report::most_changes);
  EXPECT_EQ(report.against->changes_left_out, 700 - schau::report::most_changes);
  EXPECT_EQ(report.against->reaches.size(), schau::report::most_changes);
  EXPECT_GT(report.against->reaches_left_out, 0U);
  EXPECT_TRUE(std::ranges::any_of(report.against->reaches, [](const schau::report::ReachChangeEntry& reach) {
    return reach.causes.ends_with(" …");
  }));
  EXPECT_TRUE(report.elements.at(0).is_changed) << "also what is left out is marked";
  const std::string html = to_html(report);
  EXPECT_THAT(html, HasSubstr(std::to_string(report.against->changes_left_out) + " weitere"));
  EXPECT_THAT(html, HasSubstr(std::to_string(report.against->reaches_left_out) + " weitere"));
}

// Where sources are not drawn, the element that shows them is marked in their place.
TEST(Report, RingsTheTakerOfAChangedSource) {
  Dice dice(1);
  const Bed older = schau_test::random_tree(dice, {.sources = 700});
  Bed newer = older;
  for (std::string& line : newer.lines(FileId::nfl)) {
    if (!line.starts_with("   N")) continue;
    line.replace(10, 5, "99.99");
    break;
  }
  const Report report = compared(older, newer);
  ASSERT_EQ(report.against->changes.size(), 1U);
  const std::string& source = report.against->changes.front().element;
  const auto is_drawn = [&](schau::network::Element element) {
    return std::ranges::find(report.plan.nodes, element, &schau::plan::PlanNode::element) !=
           report.plan.nodes.end();
  };
  const auto entry = std::ranges::find(report.elements, source, &schau::report::ElementEntry::name);
  ASSERT_NE(entry, report.elements.end());
  ASSERT_FALSE(is_drawn(entry->element));
  const std::string html = to_html(report);
  EXPECT_EQ(count_of(html.substr(html.find("class=\"ring\" d=")), " 0 1 1 "), 2U) << "two arcs are a ring";
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
