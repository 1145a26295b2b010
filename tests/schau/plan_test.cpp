// What a plan shows: which elements, what stands beside them, how wide the lines are, and the file of it.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <cmath>
#include <deque>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KV_Schau/plan/legend.h"
#include "KV_Schau/plan/svg.h"
#include "tests/schau/drawn_plan.h"

namespace {

using schau::findings::Severity;
using schau::network::Element;
using schau::plan::Edge;
using schau::plan::EdgeText;
using schau::plan::End;
using schau::plan::LineKind;
using schau::plan::PlanLine;
using schau::plan::PlanNode;
using schau::plan::TextLine;
using schau_test::Bed;
using schau_test::DrawnPlan;
using schau_test::FileId;
using schau_test::random_tree;
using schau_test::text_of;
using testing::Contains;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::vector<std::string> label_of(const DrawnPlan& drawn, std::string_view name) {
  std::vector<std::string> texts;
  for (const TextLine& line : drawn.node(name)->label) texts.push_back(line.text);
  return texts;
}

const PlanLine* line_of(const DrawnPlan& drawn, std::string_view from, std::string_view to) {
  const auto found = std::ranges::find_if(drawn.plan.lines, [&](const PlanLine& line) {
    return line.from == drawn.element(from) && line.to == drawn.element(to);
  });
  return found == drawn.plan.lines.end() ? nullptr : &*found;
}

// The elements that drain into one, itself included, level by level; sources count to the level below them.
std::set<Element> upstream(const DrawnPlan& drawn, Element root, std::size_t levels) {
  std::set<Element> found{root};
  std::vector<Element> level{root};
  for (std::size_t number = 0; number <= levels && !level.empty(); ++number) {
    std::vector<Element> next;
    for (const Element element : level) {
      for (const Element inflow : drawn.checked.network.inflow[element]) {
        if (inflow == 0) continue;
        const bool is_source = drawn.variant.type(inflow) == 'N';
        if (!is_source && number == levels) continue;
        found.insert(inflow);
        if (!is_source) next.push_back(inflow);
      }
    }
    level = next;
  }
  return found;
}

int count_of(std::string_view text, std::string_view part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

std::set<Element> drawn_elements(const DrawnPlan& drawn) {
  std::set<Element> elements;
  for (const PlanNode& node : drawn.plan.nodes) elements.insert(node.element);
  return elements;
}

TEST(Plan, OfAPartShowsWhatDrainsIntoItsElement) {
  Dice dice(7);
  for (int round = 0; round < 20; ++round) {
    const Bed bed = random_tree(dice, {.sources = 30});
    const auto count = static_cast<Element>(bed.variant().element_count());
    const auto root = static_cast<Element>(1 + dice.roll(count));
    const auto levels = static_cast<std::uint32_t>(dice.roll(6));
    const DrawnPlan part(bed.variant(), {.above = root});
    EXPECT_EQ(drawn_elements(part), upstream(part, root, count));
    const DrawnPlan shallow(bed.variant(), {.above = root, .levels = levels});
    EXPECT_EQ(drawn_elements(shallow), upstream(shallow, root, levels));
    const DrawnPlan from_outlet(bed.variant(), {.levels = levels});
    EXPECT_EQ(drawn_elements(from_outlet), upstream(from_outlet, count, levels));
  }
}

TEST(Plan, OfAPartTellsWhereTheRiverGoesOn) {
  const DrawnPlan drawn(Bed().variant(), {.above = 8, .levels = 1});
  EXPECT_THAT(drawn.names(), ElementsAre("N0020", "T0020", "T0030", "T0040"));
  EXPECT_EQ(drawn.node("T0040")->end, End::goes_on);
  EXPECT_EQ(drawn.node("T0040")->end_text, "nach P0010");
  EXPECT_THAT(label_of(drawn, "T0020"), Contains("weitere oberhalb"));
  EXPECT_THAT(label_of(drawn, "T0040"), Not(Contains("weitere oberhalb")));
  EXPECT_THAT(drawn.plan.subtitle,
              ElementsAre("4 von 10 Elementen", "oberhalb von T0040, bis 1 Ebene aufwärts",
                          HasSubstr("Einzugsgebiet bei T0040: 15.545 km²")));
}

TEST(Plan, FoldsSourcesFrom300ElementsOn) {
  Dice dice(8);
  const auto count_of = [](const DrawnPlan& drawn) { return drawn.plan.nodes.size(); };
  for (const std::size_t sources : {60U, 400U}) {
    const Bed bed = random_tree(dice, {.sources = sources});
    const DrawnPlan drawn(bed.variant());
    const DrawnPlan unfolded(bed.variant(), {.unfold_sources = true});
    const std::size_t all = drawn.variant.element_count();
    EXPECT_EQ(count_of(unfolded), all);
    ASSERT_EQ(all >= 300, sources == 400U);
    EXPECT_EQ(count_of(drawn), all >= 300 ? all - sources : all);
    std::size_t with_folded = 0;
    for (const PlanNode& node : drawn.plan.nodes) {
      const auto& inflow = drawn.checked.network.inflow[node.element];
      const bool has_source = std::ranges::any_of(
          inflow, [&](Element element) { return element != 0 && drawn.variant.type(element) == 'N'; });
      EXPECT_EQ(node.folded, has_source && all >= 300 ? std::vector<char>{'N'} : std::vector<char>{});
      with_folded += node.folded.empty() ? 0U : 1U;
    }
    EXPECT_EQ(with_folded > 0, all >= 300);
  }
}

// One source above a chain of reaches.
Bed chain(std::size_t elements) {
  Bed bed = Bed::empty();
  const auto name = [](std::size_t i) { return i == 0 ? std::string("N0000") : fmt::format("T{:04}", i); };
  for (std::size_t i = 0; i < elements; ++i) {
    const std::string own = name(i);
    const std::string above = i == 0 ? "" : name(i - 1);
    const std::string below = i + 1 == elements ? "ENDE" : name(i + 1);
    bed.lines(FileId::sys).push_back(text_of({own, {above}, {below}}));
  }
  return bed;
}

TEST(Plan, BeginsToFoldAtExactly300Elements) {
  EXPECT_EQ(DrawnPlan(chain(299).variant()).plan.nodes.size(), 299U);
  EXPECT_EQ(DrawnPlan(chain(300).variant()).plan.nodes.size(), 299U);
}

TEST(Plan, TellsOfEachElementWhatHydrologistsAsk) {
  const DrawnPlan drawn(Bed().variant());
  EXPECT_THAT(label_of(drawn, "N0010"), ElementsAre("N0010", "12.400 km²"));
  EXPECT_THAT(label_of(drawn, "K0010"), ElementsAre("K0010", "0.645 km², 35 % befestigt"));
  EXPECT_THAT(label_of(drawn, "T0010"), ElementsAre("T0010", "km 18.250", "13.045 km²"));
  EXPECT_THAT(label_of(drawn, "V0010"), ElementsAre("V0010", "65 % → T0020", "35 % → T0030"));
  EXPECT_THAT(label_of(drawn, "P0010"), ElementsAre("P0010", "15.545 km²"));
  EXPECT_EQ(drawn.node("T0050")->end, End::outlet);
  EXPECT_EQ(drawn.node("T0040")->end, End::none);
  EXPECT_NEAR(drawn.node("T0010")->sealing.value(), 0.22575 / 13.045, 1e-9);
  EXPECT_THAT(drawn.node("T0010")->tip, HasSubstr("Transportstrecke, netz.sys:5"));
}

TEST(Plan, WidensLinesWithTheRootOfTheArea) {
  const DrawnPlan drawn(Bed().variant());
  const double thinnest = drawn.plan.style.thinnest;
  const double widest = drawn.plan.style.widest;
  const auto width = [&](double area) { return thinnest + (widest - thinnest) * std::sqrt(area / 15.545); };
  EXPECT_NEAR(line_of(drawn, "P0010", "T0050")->width, widest, 1e-9);
  EXPECT_NEAR(line_of(drawn, "T0010", "V0010")->width, width(13.045), 1e-9);
  EXPECT_NEAR(line_of(drawn, "V0010", "T0020")->width, width(0.65 * 13.045), 1e-9);
  EXPECT_NEAR(line_of(drawn, "V0010", "T0030")->width, width(0.35 * 13.045), 1e-9);
  EXPECT_FALSE(line_of(drawn, "V0010", "T0020")->is_arm);
  EXPECT_TRUE(line_of(drawn, "V0010", "T0030")->is_arm);
  EXPECT_THAT(schau::plan::sample_areas(drawn.plan.widest_area),
              ElementsAre(DoubleNear(10.0, 1e-9), DoubleNear(1.0, 1e-9), DoubleNear(0.1, 1e-9),
                          DoubleNear(0.01, 1e-9)));
}

TEST(Plan, MarksDryAndOneSidedLinks) {
  Bed bed;
  bed.put(FileId::ver, 2, 14, "2");
  bed.line(FileId::sys, 11) = text_of({"P0010", {}, {"T0050"}});
  const DrawnPlan drawn(bed.variant());
  EXPECT_EQ(line_of(drawn, "V0010", "T0020")->kind, LineKind::dry);
  EXPECT_EQ(line_of(drawn, "V0010", "T0030")->kind, LineKind::water);
  EXPECT_EQ(line_of(drawn, "T0040", "P0010")->kind, LineKind::one_sided);
}

TEST(Plan, MarksFindingsAtTheirElement) {
  Bed bed;
  bed.put(FileId::kfl, 3, 11, "64,50");
  bed.put(FileId::trs, 3, 13, "99.250");
  const DrawnPlan drawn(bed.variant());
  EXPECT_EQ(drawn.node("K0010")->mark, Severity::error);
  EXPECT_THAT(drawn.node("K0010")->tip, HasSubstr("Fehler netz.kfl:3: Dezimalkomma"));
  EXPECT_FALSE(drawn.node("N0010")->mark.has_value());
  EXPECT_FALSE(drawn.node("P0010")->mark.has_value());
}

TEST(Plan, MarksFindingsOfFoldedSourcesWhereTheyAreFolded) {
  Dice dice(9);
  Bed bed = random_tree(dice, {.sources = 400});
  bed.line(FileId::nfl, 1).replace(10, 5, " 1,50");
  const DrawnPlan drawn(bed.variant());
  const Element below =
      drawn.checked.network.outflow[drawn.element(bed.line(FileId::nfl, 1).substr(3, 5))][0];
  for (const PlanNode& node : drawn.plan.nodes) {
    EXPECT_EQ(node.mark == Severity::error, node.element == below) << node.element;
  }
}

TEST(Plan, TellsLinksThatItDoesNotDraw) {
  Bed loop = Bed::empty();
  loop.lines(FileId::sys) = {text_of({"T0001", {"T0002"}, {"T0002"}}),
                             text_of({"T0002", {"T0001"}, {"T0001"}}), text_of({"T0003", {}, {"ENDE"}})};
  const DrawnPlan turning(loop.variant());
  EXPECT_EQ(turning.plan.lines.size(), 1U);
  const std::vector<std::string> both = [&] {
    std::vector<std::string> texts = label_of(turning, "T0001");
    std::ranges::copy(label_of(turning, "T0002"), std::back_inserter(texts));
    return texts;
  }();
  EXPECT_THAT(both, Contains(HasSubstr("weiter bei T000")).Times(1));

  Bed bed;
  bed.put(FileId::sys, 7, 64, "T0099");
  const DrawnPlan drawn(bed.variant());
  EXPECT_THAT(label_of(drawn, "T0020"), Contains("Ablauf T0099 fehlt"));
}

TEST(Plan, ShowsEndsThatNothingTakesIn) {
  Bed bed;
  bed.line(FileId::sys, 9) = text_of({"N0020", {}, {"     "}});
  bed.line(FileId::sys, 10) = text_of({"T0040", {"T0020", "T0030"}, {"P0010"}});
  const DrawnPlan drawn(bed.variant());
  EXPECT_EQ(drawn.node("N0020")->end, End::dead_end);
  // At the element and in the legend.
  const std::string svg = to_svg(drawn.plan);
  EXPECT_EQ(count_of(svg, "stroke-dasharray:none"), 2);
  EXPECT_EQ(count_of(svg, ">Ende ohne Ablauf<"), 1);
  EXPECT_EQ(count_of(to_svg(DrawnPlan(Bed().variant()).plan), "stroke-dasharray:none"), 0);
}

boost::property_tree::ptree parsed(const std::string& xml) {
  std::istringstream in(xml);
  boost::property_tree::ptree tree;
  boost::property_tree::read_xml(in, tree);
  return tree;
}

void collect_texts(const boost::property_tree::ptree& tree, std::vector<std::string>& texts) {
  for (const auto& [name, child] : tree) {
    if (name == "text") texts.push_back(child.data());
    collect_texts(child, texts);
  }
}

TEST(PlanFile, IsXmlWhateverNamesHold) {
  Bed bed;
  bed.put(FileId::sys, 5, 17, "</g><&\"'>&amp;\x01\x81");
  bed.name = "<netz & 'mehr'>";
  const DrawnPlan drawn(bed.variant());
  std::vector<std::string> texts;
  collect_texts(parsed(to_svg(drawn.plan)), texts);
  EXPECT_THAT(texts, Contains(HasSubstr("</g><&\"'>&amp;")));
  EXPECT_THAT(texts, Contains("Systemplan <netz & 'mehr'>"));
  const std::string in_page = "<svg>" + inline_svg(drawn.plan, {}) + "</svg>";
  texts.clear();
  collect_texts(parsed(in_page), texts);
  EXPECT_THAT(texts, Contains(HasSubstr("</g><&\"'>&amp;")));
}

TEST(PlanFile, HoldsEveryLabelAndNeedsNothingElse) {
  const DrawnPlan drawn(Bed().variant());
  const std::string svg = to_svg(drawn.plan);
  std::vector<std::string> texts;
  collect_texts(parsed(svg), texts);
  for (const PlanNode& node : drawn.plan.nodes) {
    for (const TextLine& line : node.label) EXPECT_THAT(texts, Contains(line.text));
  }
  for (const char* foreign : {"http:", "https:", "<script", "@import", "url("}) {
    std::string rest = svg;
    rest.erase(rest.find("http://www.w3.org/2000/svg"), 26);
    EXPECT_THAT(rest, Not(HasSubstr(foreign)));
  }
}

// A network of reaches that join by threes: as broad as it can be.
Bed broad_network(int heads) {
  struct Reach {
    std::string name;
    std::vector<std::string> inflows;
    std::string outflow = "ENDE ";
  };
  std::deque<Reach> reaches;
  std::deque<Reach*> open;
  const auto add = [&](std::vector<std::string> inflows) {
    reaches.push_back({fmt::format("T{:04}", reaches.size() + 1), std::move(inflows)});
    open.push_back(&reaches.back());
  };
  for (int i = 0; i < heads; ++i) add({});
  while (open.size() > 1) {
    const std::string name = fmt::format("T{:04}", reaches.size() + 1);
    std::vector<std::string> inflows;
    for (int i = 0; i < 3 && !open.empty(); ++i) {
      open.front()->outflow = name;
      inflows.push_back(open.front()->name);
      open.pop_front();
    }
    add(std::move(inflows));
  }
  Bed bed = Bed::empty();
  for (const Reach& reach : reaches)
    bed.lines(FileId::sys)
        .push_back(text_of({reach.name, {reach.inflows.begin(), reach.inflows.end()}, {reach.outflow}}));
  return bed;
}

// Long plans are cut across, broad ones along the river.
TEST(PlanFile, TellsAtEveryEdgeWhereTheRiverGoesOn) {
  Dice dice(10);
  std::set<Edge> edges;
  for (const Bed& bed : {random_tree(dice, {.sources = 3000}), broad_network(729)}) {
    const DrawnPlan drawn(bed.variant());
    std::vector<std::string> texts;
    collect_texts(parsed(to_svg(drawn.plan)), texts);
    for (const EdgeText& text : drawn.plan.edge_texts) {
      edges.insert(text.edge);
      EXPECT_THAT(texts, Contains(text.text));
    }
  }
  EXPECT_THAT(edges, ElementsAre(Edge::top, Edge::bottom, Edge::left, Edge::right));
}

TEST(PlanInPage, HasFewElementsAndClassesOfSealing) {
  Dice dice(10);
  const DrawnPlan drawn(random_tree(dice, {.sources = 500}).variant());
  const std::string svg = inline_svg(drawn.plan, {.with_labels = false});
  EXPECT_LT(std::ranges::count(svg, '<'), 300) << "of " << drawn.plan.nodes.size() << " elements";
  EXPECT_THAT(svg, HasSubstr("class=\"wasser b0\""));
  EXPECT_THAT(inline_svg(drawn.plan, {.with_labels = true}), HasSubstr(">T"));
  EXPECT_EQ(schau::plan::sealing_class(0.0), 0U);
  EXPECT_EQ(schau::plan::sealing_class(0.01), 0U);
  EXPECT_EQ(schau::plan::sealing_class(0.0101), 1U);
  EXPECT_EQ(schau::plan::sealing_class(0.4), 4U);
  EXPECT_EQ(schau::plan::sealing_class(0.41), 5U);
}

}  // namespace
