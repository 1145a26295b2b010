// Where a plan puts things: nothing overlaps, the main stem runs straight, lines do not cross.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "KV_Schau/plan/svg.h"
#include "tests/schau/clean_network.h"
#include "tests/schau/drawn_plan.h"
#include "tests/schau/mistakes.h"

namespace {

namespace fs = std::filesystem;
namespace variant = schau::variant;
using schau::network::Element;
using schau::plan::Box;
using schau::plan::Plan;
using schau::plan::PlanLine;
using schau::plan::PlanNode;
using schau::plan::Point;
using schau_test::Bed;
using schau_test::CleanNetwork;
using schau_test::DrawnPlan;
using schau_test::FileId;
using schau_test::random_tree;
using schau_test::TreeShape;

bool overlap(const Box& left, const Box& right) {
  return left.left < right.right && right.left < left.right && left.top < right.bottom &&
         right.top < left.bottom;
}

// A box, and whose it is.
struct Owned {
  Box box;
  Element element = 0;
  const char* what = "";
};

// A straight piece of a line with its width taken off: from corner to corner.
struct Stretch {
  Box box;
  const PlanLine* line = nullptr;
};

std::vector<Owned> boxes_of(const Plan& plan) {
  std::vector<Owned> boxes;
  for (const PlanNode& node : plan.nodes) {
    boxes.push_back({sign_box(plan, node), node.element, "sign"});
    boxes.push_back({label_box(plan, node), node.element, "label"});
  }
  return boxes;
}

Box box_between(const Point& from, const Point& to) {
  return {std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x), std::max(from.y, to.y)};
}

std::vector<Stretch> stretches_of(const Plan& plan) {
  std::vector<Stretch> stretches;
  for (const PlanLine& line : plan.lines) {
    for (std::size_t i = 1; i < line.points.size(); ++i) {
      stretches.push_back({box_between(line.points[i - 1], line.points[i]), &line});
    }
  }
  return stretches;
}

// Calls with all pairs of things whose boxes share a column of the page.
template <class Thing, class Do>
void for_pairs_beside(std::vector<Thing> things, const Do& act) {
  std::ranges::sort(things, {}, [](const Thing& thing) { return thing.box.left; });
  for (std::size_t i = 0; i < things.size(); ++i) {
    for (std::size_t k = i + 1; k < things.size() && things[k].box.left <= things[i].box.right; ++k) {
      act(things[i], things[k]);
    }
  }
}

std::string name_in(const DrawnPlan& drawn, Element element) {
  return variant::text_of(drawn.variant.names[element]);
}

std::string words(const DrawnPlan& drawn, const PlanLine& line) {
  return name_in(drawn, line.from) + " > " + name_in(drawn, line.to);
}

void expect_nothing_overlaps(const DrawnPlan& drawn) {
  for_pairs_beside(boxes_of(drawn.plan), [&](const Owned& left, const Owned& right) {
    EXPECT_FALSE(overlap(left.box, right.box)) << left.what << " of " << name_in(drawn, left.element) << ", "
                                               << right.what << " of " << name_in(drawn, right.element);
  });
}

void expect_all_on_the_page(const Plan& plan) {
  const auto is_inside = [&](const Box& box) {
    return box.left >= 0.0 && box.top >= 0.0 && box.right <= plan.width && box.bottom <= plan.height;
  };
  for (const Owned& owned : boxes_of(plan)) EXPECT_TRUE(is_inside(owned.box)) << owned.element;
  for (const Stretch& stretch : stretches_of(plan)) EXPECT_TRUE(is_inside(stretch.box));
}

// No line runs through the sign or label of an element; of its own ends' signs the middle is where it begins
// and ends.
void expect_no_line_covers_an_element(const DrawnPlan& drawn) {
  struct Either {
    Box box;
    const Owned* owned = nullptr;
    const PlanLine* line = nullptr;
  };
  const std::vector<Owned> boxes = boxes_of(drawn.plan);
  std::vector<Either> all;
  all.reserve(boxes.size());
  for (const Owned& owned : boxes) all.push_back({owned.box, &owned, nullptr});
  for (const Stretch& stretch : stretches_of(drawn.plan)) {
    const double half = stretch.line->width / 2.0;
    const Box& box = stretch.box;
    all.push_back(
        {{box.left - half, box.top - half, box.right + half, box.bottom + half}, nullptr, stretch.line});
  }
  for_pairs_beside(all, [&](const Either& left, const Either& right) {
    const Owned* const owned = left.owned != nullptr ? left.owned : right.owned;
    const PlanLine* const line = left.line != nullptr ? left.line : right.line;
    if (owned == nullptr || line == nullptr) return;
    const bool is_own_sign = std::string_view(owned->what) == "sign" &&
                             (owned->element == line->from || owned->element == line->to);
    if (is_own_sign) return;
    EXPECT_FALSE(overlap(left.box, right.box))
        << words(drawn, *line) << " covers the " << owned->what << " of " << name_in(drawn, owned->element);
  });
}

bool touch(const Box& left, const Box& right) {
  return left.left <= right.right && right.left <= left.right && left.top <= right.bottom &&
         right.top <= left.bottom;
}

// What two stretches share; the same point twice when it is a point.
Box shared(const Box& left, const Box& right) {
  return {std::max(left.left, right.left), std::max(left.top, right.top), std::min(left.right, right.right),
          std::min(left.bottom, right.bottom)};
}

bool is_at(const Box& box, const Point& point) {
  return box.left == point.x && box.right == point.x && box.top == point.y && box.bottom == point.y;
}

// Lines to one element join. All others meet at most in the element where one ends and the other begins.
void expect_no_lines_cross(const DrawnPlan& drawn) {
  for_pairs_beside(stretches_of(drawn.plan), [&](const Stretch& left, const Stretch& right) {
    if (left.line->to == right.line->to || !touch(left.box, right.box)) return;
    const Box common = shared(left.box, right.box);
    const bool meet_in_element =
        (left.line->to == right.line->from && is_at(common, right.line->points.front())) ||
        (right.line->to == left.line->from && is_at(common, left.line->points.front()));
    EXPECT_TRUE(meet_in_element) << words(drawn, *left.line) << ", " << words(drawn, *right.line);
  });
}

// Lines may cross, but none runs along another of other ends.
void expect_no_lines_run_together(const DrawnPlan& drawn) {
  for_pairs_beside(stretches_of(drawn.plan), [&](const Stretch& left, const Stretch& right) {
    if (left.line->to == right.line->to || left.line->from == right.line->from) return;
    if (!touch(left.box, right.box)) return;
    const Box common = shared(left.box, right.box);
    EXPECT_FALSE(common.right > common.left || common.bottom > common.top)
        << words(drawn, *left.line) << ", " << words(drawn, *right.line);
  });
}

void expect_sound(const DrawnPlan& drawn) {
  expect_nothing_overlaps(drawn);
  expect_all_on_the_page(drawn.plan);
  expect_no_line_covers_an_element(drawn);
  expect_no_lines_run_together(drawn);
}

// At each confluence the inflow with the largest area stands straight above; a source only among sources.
void expect_straight_stems(const DrawnPlan& drawn) {
  std::map<Element, const PlanNode*> nodes;
  for (const PlanNode& node : drawn.plan.nodes) nodes[node.element] = &node;
  for (const PlanNode& node : drawn.plan.nodes) {
    const auto rank = [&](Element inflow) {
      return std::pair(drawn.variant.type(inflow) != 'N', drawn.checked.flow.total[inflow].all());
    };
    Element stem = 0;
    bool is_tie = false;
    for (const Element inflow : drawn.checked.network.inflow[node.element]) {
      if (!nodes.contains(inflow)) continue;
      if (stem != 0 && rank(inflow) == rank(stem)) is_tie = true;
      if (stem != 0 && rank(inflow) <= rank(stem)) continue;
      stem = inflow;
      is_tie = false;
    }
    if (stem != 0 && !is_tie) {
      EXPECT_EQ(nodes[stem]->at.x, node.at.x)
          << name_in(drawn, stem) << " above " << name_in(drawn, node.element);
    }
  }
}

void expect_every_link_drawn(const DrawnPlan& drawn) {
  std::set<std::pair<Element, Element>> lines;
  for (const PlanLine& line : drawn.plan.lines) lines.emplace(line.from, line.to);
  for (Element i = 1; i <= drawn.variant.element_count(); ++i) {
    for (const Element inflow : drawn.checked.network.inflow[i]) {
      EXPECT_TRUE(inflow == 0 || lines.contains({inflow, i})) << name_in(drawn, inflow);
    }
  }
}

std::vector<TreeShape> shapes() {
  std::vector<TreeShape> shapes;
  for (const std::size_t sources : {1U, 2U, 5U, 12U, 40U, 100U}) {
    for (const std::size_t reach_back : {1U, 2U, 4U, 1000U}) {
      for (const std::size_t most_inflows : {2U, 3U}) {
        shapes.push_back({.sources = sources, .most_inflows = most_inflows, .reach_back = reach_back});
      }
    }
  }
  return shapes;
}

TEST(PlanLayout, OfNetworksWithoutBranchingsHasNoOverlapAndNoCrossing) {
  Dice dice(1);
  for (int round = 0; round < 4; ++round) {
    for (const TreeShape& shape : shapes()) {
      const DrawnPlan drawn(random_tree(dice, shape).variant(), {.unfold_sources = true});
      SCOPED_TRACE(testing::Message() << shape.sources << " sources, back " << shape.reach_back);
      EXPECT_EQ(drawn.plan.nodes.size(), drawn.variant.element_count());
      EXPECT_EQ(drawn.plan.edge_texts.empty(), drawn.plan.strips.empty());
      expect_sound(drawn);
      expect_no_lines_cross(drawn);
      if (drawn.plan.strips.empty()) expect_straight_stems(drawn);
      if (HasFailure()) return;
    }
  }
}

TEST(PlanLayout, OfLargeNetworksFoldsSourcesWithoutOverlap) {
  Dice dice(2);
  for (const std::size_t reach_back : {1U, 3U, 1000U}) {
    const DrawnPlan drawn(
        random_tree(dice, {.sources = 700, .most_inflows = 3, .reach_back = reach_back}).variant());
    expect_sound(drawn);
    expect_no_lines_cross(drawn);
  }
}

TEST(PlanLayout, OfNetworksWithBranchingsHasNoOverlapAndNoLinesSideBySide) {
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    Dice dice(seed);
    const CleanNetwork network = schau_test::clean_network(dice, 5 + dice.roll(200));
    const DrawnPlan drawn(network.bed.variant());
    SCOPED_TRACE(seed);
    EXPECT_EQ(drawn.plan.nodes.size(), drawn.variant.element_count());
    expect_every_link_drawn(drawn);
    expect_sound(drawn);
    if (HasFailure()) return;
  }
}

// Branchings that lead anywhere below: arms cross and pass many rows. In a chain the first outflow of each
// element is the next one.
Bed tangle(Dice& dice, std::size_t count, bool is_chain = false) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i)
    names.push_back(fmt::format("{}{}", i % 2 == 0 ? 'T' : 'V', 1000 + i));
  std::vector<std::vector<std::string_view>> inflows(count);
  std::vector<std::vector<std::string_view>> outflows(count);
  for (std::size_t i = 0; i + 1 < count; ++i) {
    const std::size_t wanted = i % 2 == 0 ? 1 : 2;
    for (std::size_t k = 0; k < wanted; ++k) {
      const bool is_next = is_chain && k == 0;
      const std::size_t to =
          is_next ? i + 1 : i + 1 + dice.roll(std::min<std::size_t>(count - i - 1, 1 + dice.roll(count)));
      if (inflows[to].size() >= (is_next ? 3U : 2U)) continue;
      inflows[to].push_back(names[i]);
      outflows[i].push_back(names[to]);
    }
  }
  outflows.back() = {"ENDE"};
  Bed bed = Bed::empty();
  for (std::size_t i = 0; i < count; ++i) {
    bed.lines(FileId::sys).push_back(schau_test::text_of({names[i], inflows[i], outflows[i]}));
    if (i % 2 == 1) bed.lines(FileId::ver).push_back("   " + names[i] + "     1  40.0");
  }
  return bed;
}

TEST(PlanLayout, OfTangledBranchingsHasNoOverlapAndNoLinesSideBySide) {
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    Dice dice(seed);
    const DrawnPlan drawn(tangle(dice, 4 + dice.roll(60)).variant());
    SCOPED_TRACE(seed);
    expect_sound(drawn);
    if (HasFailure()) return;
  }
}

// Where arms would stretch the plan far beyond its length, the longest are told and not drawn.
TEST(PlanLayout, OfManyLongArmsStaysInProportion) {
  Dice dice(5);
  const DrawnPlan drawn(tangle(dice, 1500, true).variant(), {.unfold_sources = true});
  expect_sound(drawn);
  const auto is_told = [](const schau::plan::TextLine& line) { return line.text.starts_with("weiter bei "); };
  std::size_t told = 0;
  for (const PlanNode& node : drawn.plan.nodes) told += std::ranges::any_of(node.label, is_told) ? 1U : 0U;
  EXPECT_GT(told, 100U);
  EXPECT_LT(told, 750U);
}

// Of faulty networks every element is drawn once all the same.
TEST(PlanLayout, OfFaultyNetworksShowsEveryElementOnce) {
  Dice dice(3);
  for (const schau_test::Mistake& mistake : schau_test::mistakes()) {
    CleanNetwork network = schau_test::clean_network(dice, 40);
    mistake.plant(network, dice);
    const DrawnPlan drawn(network.bed.variant());
    SCOPED_TRACE(mistake.what);
    std::vector<Element> drawn_elements;
    for (const PlanNode& node : drawn.plan.nodes) drawn_elements.push_back(node.element);
    std::ranges::sort(drawn_elements);
    EXPECT_EQ(drawn_elements.size(), drawn.variant.element_count());
    EXPECT_EQ(std::ranges::adjacent_find(drawn_elements), drawn_elements.end());
    expect_sound(drawn);
  }
}

TEST(PlanLayout, OfLinksThatLeadAnywhereEnds) {
  for (std::uint32_t seed = 0; seed < 100; ++seed) {
    Dice dice(seed);
    const std::size_t count = 2 + dice.roll(30);
    const auto any = [&] { return fmt::format("T{}", 1000 + dice.roll(count)); };
    Bed bed = Bed::empty();
    for (std::size_t i = 0; i < count; ++i) {
      const std::vector<std::string> names = {
          fmt::format("T{}", 1000 + i), any(), any(), any(), any(), any()};
      bed.lines(FileId::sys)
          .push_back(schau_test::text_of(
              {names[0], {names[1], names[2], names[3]}, {names[4], i + 1 == count ? "ENDE" : names[5]}}));
    }
    const DrawnPlan drawn(bed.variant());
    EXPECT_EQ(drawn.plan.nodes.size(), drawn.variant.element_count());
    expect_sound(drawn);
    if (HasFailure()) return;
  }
}

TEST(PlanLayout, OfNothingIsAPageWithATitle) {
  const DrawnPlan drawn(Bed::empty().variant());
  EXPECT_TRUE(drawn.plan.nodes.empty());
  EXPECT_GT(drawn.plan.width, 0.0);
  EXPECT_THAT(drawn.plan.subtitle, testing::ElementsAre("Das System hat kein Element."));
}

TEST(PlanLayout, OfRealNetworksHasNoOverlap) {
  const char* const chosen = std::getenv("KV_REAL_NETWORKS_DIR");
  const fs::path folder = chosen != nullptr ? chosen : KV_REAL_NETWORKS_DIR;
  if (!fs::exists(folder)) GTEST_SKIP() << "not run: there is no folder of real networks " << folder.string();
  for (const std::string name : {"walker", "newhope", "hopediv", "colorado"}) {
    const auto path = variant::resolve((folder / name / name).string());
    const DrawnPlan drawn(variant::read_variant(std::get<variant::VariantPath>(path)));
    SCOPED_TRACE(name);
    expect_sound(drawn);
    if (name == "walker" || name == "colorado") {
      expect_no_lines_cross(drawn);
      expect_straight_stems(drawn);
    }
  }
}

double seconds_for(const Bed& bed) {
  const variant::Variant network = bed.variant();
  const schau::rules::Result checked = schau::rules::check(network);
  const schau::plan::Facts facts(network, checked.network, checked.flow, checked.findings);
  const std::clock_t begin = std::clock();
  const std::string svg = to_svg(plan_of(facts, {.unfold_sources = true}));
  EXPECT_GT(svg.size(), 100U * network.element_count());
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

// Eight times the elements take about eight times as long; were it quadratic, it would be 64 times.
TEST(PlanLayout, TakesTimeLinearInTheElements) {
  for (const std::size_t reach_back : {1U, 3U, 200U}) {
    Dice dice(4);
    constexpr std::size_t few = 4000;
    const TreeShape small{.sources = few, .most_inflows = 3, .reach_back = reach_back};
    const TreeShape large{.sources = 8 * few, .most_inflows = 3, .reach_back = reach_back};
    const double seconds = seconds_for(random_tree(dice, small));
    EXPECT_LT(seconds_for(random_tree(dice, large)), 25.0 * (seconds + 0.02)) << reach_back;
  }
}

}  // namespace
