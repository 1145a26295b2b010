#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/plan/plan.h"
#include "KV_Schau/rules/rules.h"
#include "tests/dice.h"
#include "tests/schau/bed.h"

namespace schau_test {

/// A variant, what is known of it, and its plan.
struct DrawnPlan {
  explicit DrawnPlan(schau::variant::Variant shown_variant, const schau::plan::Options& options = {})
      : variant(std::move(shown_variant)),
        checked(schau::rules::check(variant)),
        facts(variant, checked.network, checked.flow, checked.findings),
        plan(schau::plan::plan_of(facts, options)) {}
  DrawnPlan(const DrawnPlan&) = delete;
  DrawnPlan& operator=(const DrawnPlan&) = delete;
  DrawnPlan(DrawnPlan&&) = delete;
  DrawnPlan& operator=(DrawnPlan&&) = delete;
  ~DrawnPlan() = default;

  schau::variant::Variant variant;
  schau::rules::Result checked;
  schau::plan::Facts facts;
  schau::plan::Plan plan;

  [[nodiscard]] schau::network::Element element(std::string_view name) const {
    return variant.elements.last(schau::variant::name_of(name));
  }
  /// The node of an element; null when it is not drawn.
  [[nodiscard]] const schau::plan::PlanNode* node(std::string_view name) const;
  /// The names of the drawn elements, sorted.
  [[nodiscard]] std::vector<std::string> names() const;
};

/// The shape of a random network without branchings.
struct TreeShape {
  std::size_t sources = 20;
  std::size_t most_inflows = 3;  ///< 2 or 3
  /// A joint takes from so many of the streams that came last: 1 makes one long river, many make it bushy.
  std::size_t reach_back = 10;
  bool with_gauges = true;
};

/// A random network without branchings: natural areas, reaches and gauges, in system order.
Bed random_tree(Dice& dice, const TreeShape& shape);

}  // namespace schau_test
