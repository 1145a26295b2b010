#pragma once

#include <cstdint>
#include <vector>

#include "KV_Schau/plan/by_element.h"
#include "KV_Schau/plan/facts.h"

namespace schau::plan {

/// A link between two elements, however many fields name it.
struct Link {
  Element from = 0;
  Element to = 0;
  /// Which of the upper element's outflows it is (0 or 1); `unnamed` when it names the lower one in none.
  std::uint8_t slot = unnamed;
  bool named_below = false;  ///< the lower element names it as an inflow
  double part = 0.0;         ///< of the upper element's total; 0 when the lower element does not take it
  double area = 0.0;         ///< km² that go this way; not negative, finite

  static constexpr std::uint8_t unnamed = 2;
  [[nodiscard]] bool is_named_at_both_ends() const { return named_below && slot != unnamed; }
};

/// The links of a variant, by their ends. An end that many elements name has many links.
struct Graph {
  std::vector<Link> links;
  ByElement into;    ///< the numbers of the links by their lower ends
  ByElement out_of;  ///< and by their upper ends
  Element count = 0;
};

Graph graph_of(const Facts& facts);

}  // namespace schau::plan
