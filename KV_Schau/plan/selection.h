#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "KV_Schau/plan/graph.h"

namespace schau::plan {

/// What of a variant is to be drawn.
struct Options {
  bool unfold_sources = false;            ///< also when there are many elements
  Element above = 0;                      ///< only what drains into this element; 0: everything
  std::optional<std::uint32_t> levels{};  ///< only so many links upwards, from `above` or from the outlet
};

/// From so many elements on sources fold into the element that takes them in.
inline constexpr std::uint32_t fold_from = 300;

enum class Shown : std::uint8_t { no, folded, drawn };

/// Which elements a plan shows, by element.
struct Selection {
  std::vector<Shown> shown;
  /// The element that shows a folded source; 0 for the others.
  std::vector<Element> folded_into;
  /// Drawn, and something drains into it that is left out for its level.
  std::vector<bool> goes_on;
  std::uint32_t drawn_count = 0;
  bool has_folded = false;

  [[nodiscard]] bool is_drawn(Element element) const { return shown[element] == Shown::drawn; }
};

Selection select(const Facts& facts, const Graph& graph, const Options& options);

}  // namespace schau::plan
