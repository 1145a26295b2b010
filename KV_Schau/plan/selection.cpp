#include "KV_Schau/plan/selection.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace schau::plan {
namespace {

class Selecting {
 public:
  Selecting(const Facts& facts, const Graph& graph, const Options& options)
      : facts_(facts), graph_(graph), options_(options) {
    selection_.shown.assign(graph.count + 1, Shown::no);
    selection_.folded_into.assign(graph.count + 1, 0);
    selection_.goes_on.assign(graph.count + 1, false);
  }

  Selection run() {
    const Element count = graph_.count;
    Element root = options_.above;
    if (root == 0 && options_.levels) root = count;
    if (root != 0) {
      take_above(root);
    } else {
      std::fill(selection_.shown.begin() + 1, selection_.shown.end(), Shown::drawn);
      selection_.drawn_count = count;
    }
    if (selection_.drawn_count >= fold_from && !options_.unfold_sources) fold_sources();
    return std::move(selection_);
  }

 private:
  // Level by level. A source belongs to the level of the element that takes it in.
  void take_above(Element root) {
    std::vector<Element> level{root};
    take(root);
    for (std::uint32_t number = 0; !level.empty(); ++number) {
      const bool is_last = options_.levels && number >= *options_.levels;
      std::vector<Element> next;
      for (const Element element : level) take_inflows(element, is_last, next);
      level = std::move(next);
    }
  }

  void take_inflows(Element element, bool is_last_level, std::vector<Element>& next) {
    for (const std::uint32_t number : graph_.into.of(element)) {
      const Element inflow = graph_.links[number].from;
      if (selection_.is_drawn(inflow)) continue;
      if (is_last_level && !is_leaf(inflow)) {
        selection_.goes_on[element] = true;
        continue;
      }
      take(inflow);
      if (!is_leaf(inflow)) next.push_back(inflow);
    }
  }

  [[nodiscard]] bool is_leaf(Element element) const {
    return is_source(facts_.variant, element) && graph_.into.of(element).empty();
  }

  void take(Element element) {
    selection_.shown[element] = Shown::drawn;
    ++selection_.drawn_count;
  }

  void fold_sources() {
    for (Element i = 1; i <= graph_.count; ++i) {
      if (!selection_.is_drawn(i) || !is_leaf(i) || graph_.out_of.of(i).size() != 1) continue;
      const Link& link = graph_.links[graph_.out_of.of(i).front()];
      if (!selection_.is_drawn(link.to) || is_source(facts_.variant, link.to)) continue;
      selection_.shown[i] = Shown::folded;
      selection_.folded_into[i] = link.to;
      selection_.has_folded = true;
      --selection_.drawn_count;
    }
  }

  const Facts& facts_;
  const Graph& graph_;
  const Options& options_;
  Selection selection_;
};

}  // namespace

Selection select(const Facts& facts, const Graph& graph, const Options& options) {
  return Selecting(facts, graph, options).run();
}

}  // namespace schau::plan
