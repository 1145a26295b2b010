#include "KV_Schau/plan/river.h"

#include <algorithm>
#include <cstddef>
#include <tuple>

namespace schau::plan {
namespace {

// The elements of a selection so that each stands behind all that it drains into (Kahn, Topological Sorting
// of Large Networks, Comm. ACM 5, 1962). Where only loops and what drains into them are left, one element of
// a loop is taken as if it drained into nothing.
class DownstreamOrder {
 public:
  DownstreamOrder(const Graph& graph, const Selection& selection) : graph_(graph), selection_(selection) {
    const std::size_t size = graph.count + 1;
    open_.assign(size, 0);
    placed_.assign(size, false);
    on_path_.assign(size, false);
    next_out_.assign(size, 0);
    last_ = graph.count;
  }

  std::vector<Element> run() {
    for (Element i = 1; i <= graph_.count; ++i) {
      if (!selection_.is_drawn(i)) continue;
      for (const std::uint32_t number : graph_.out_of.of(i)) open_[i] += counts(graph_.links[number]) ? 1 : 0;
      if (open_[i] == 0) ready_.push_back(i);
    }
    place_ready();
    while (order_.size() < selection_.drawn_count) {
      place(element_of_loop());
      place_ready();
    }
    return std::move(order_);
  }

 private:
  [[nodiscard]] bool counts(const Link& link) const {
    return link.from != link.to && selection_.is_drawn(link.from) && selection_.is_drawn(link.to);
  }

  void place_ready() {
    while (!ready_.empty()) {
      const Element element = ready_.back();
      ready_.pop_back();
      if (!placed_[element]) place(element);
    }
  }

  void place(Element element) {
    placed_[element] = true;
    order_.push_back(element);
    for (const std::uint32_t number : graph_.into.of(element)) {
      const Link& link = graph_.links[number];
      if (counts(link) && --open_[link.from] == 0) ready_.push_back(link.from);
    }
  }

  // Goes with the flow among what is left, until it comes to an element for the second time. The way to it
  // is kept: the next loop is looked for from its end.
  Element element_of_loop() {
    while (!path_.empty() && placed_[path_.back()]) leave_path();
    if (path_.empty()) {
      while (placed_[last_] || !selection_.is_drawn(last_)) --last_;
      enter_path(last_);
    }
    for (;;) {
      const Element next = element_left_below(path_.back());
      if (on_path_[next]) return next;
      enter_path(next);
    }
  }

  Element element_left_below(Element element) {
    const auto out = graph_.out_of.of(element);
    for (;; ++next_out_[element]) {
      const Link& link = graph_.links[out[next_out_[element]]];
      if (counts(link) && !placed_[link.to]) return link.to;
    }
  }

  void enter_path(Element element) {
    path_.push_back(element);
    on_path_[element] = true;
  }

  void leave_path() {
    on_path_[path_.back()] = false;
    path_.pop_back();
  }

  const Graph& graph_;
  const Selection& selection_;
  std::vector<std::uint32_t> open_;  // links to elements that are not placed yet
  std::vector<bool> placed_;
  std::vector<bool> on_path_;
  std::vector<std::uint32_t> next_out_;
  std::vector<Element> path_;
  std::vector<Element> ready_;
  std::vector<Element> order_;
  Element last_ = 0;
};

class Growth {
 public:
  Growth(const Facts& facts, const Graph& graph, const Selection& selection)
      : facts_(facts), graph_(graph), selection_(selection) {}

  River run() {
    place_elements();
    join();
    set_rows();
    add_arms();
    choose_stems();
    return std::move(river_);
  }

 private:
  void place_elements() {
    river_.node_of.assign(graph_.count + 1, no_node);
    for (const Element element : DownstreamOrder(graph_, selection_).run()) {
      river_.node_of[element] = static_cast<NodeId>(river_.nodes.size());
      river_.nodes.push_back({.element = element});
    }
  }

  // A link that does not lead back in a loop.
  [[nodiscard]] bool leads_down(const Link& link) const {
    const NodeId to = river_.node_of[link.to];
    return to != no_node && to < river_.node_of[link.from];
  }

  void join() {
    for (RiverNode& node : river_.nodes) {
      const Link* chosen = nullptr;
      for (const std::uint32_t number : graph_.out_of.of(node.element)) {
        const Link& link = graph_.links[number];
        if (!leads_down(link)) continue;
        if (chosen != nullptr && !is_larger(link, *chosen)) continue;
        chosen = &link;
        node.link = number;
      }
      if (chosen != nullptr) node.below = river_.node_of[chosen->to];
    }
  }

  static bool is_larger(const Link& left, const Link& right) {
    if (left.area != right.area) return left.area > right.area;
    if (left.part != right.part) return left.part > right.part;
    return left.slot < right.slot;
  }

  // Each element above all that it drains into, so that every line leads down. Where that would stretch the
  // rivers far beyond their length, each is one row above what it joins in the tree.
  void set_rows() {
    const std::size_t most_stretch = 4 * river_.nodes.size() + 1000;
    std::size_t stretch = 0;
    for (RiverNode& node : river_.nodes) {
      for_links_down(node, [&](const Link& link) { node.row = std::max(node.row, row_of(link.to) + 1); });
      for_links_down(node, [&](const Link& link) { stretch += node.row - row_of(link.to) - 1; });
    }
    if (stretch <= most_stretch) return;
    longest_arm_ = 16;
    for (RiverNode& node : river_.nodes) {
      node.row = node.below == no_node ? 0 : river_.nodes[node.below].row + 1;
    }
  }

  template <class Do>
  void for_links_down(const RiverNode& node, const Do& act) const {
    for (const std::uint32_t number : graph_.out_of.of(node.element)) {
      if (leads_down(graph_.links[number])) act(graph_.links[number]);
    }
  }

  [[nodiscard]] std::uint32_t row_of(Element element) const {
    return river_.nodes[river_.node_of[element]].row;
  }

  void add_arms() {
    const std::size_t count = river_.nodes.size();
    for (NodeId id = 0; id < count; ++id) {
      const RiverNode node = river_.nodes[id];
      for (const std::uint32_t number : graph_.out_of.of(node.element)) {
        const bool is_of_tree = node.below != no_node && number == node.link;
        if (!is_of_tree && selection_.is_drawn(graph_.links[number].to)) add_arm(node, number);
      }
    }
  }

  void add_arm(const RiverNode& from, std::uint32_t number) {
    const Link& link = graph_.links[number];
    const NodeId to = river_.node_of[link.to];
    const bool fits =
        leads_down(link) && from.row > row_of(link.to) && from.row - row_of(link.to) - 1 <= longest_arm_;
    if (!fits) {
      river_.told_links.push_back(number);
      return;
    }
    const std::uint32_t row = row_of(link.to);
    river_.arms.push_back({number, static_cast<NodeId>(river_.nodes.size())});
    river_.nodes.push_back(
        {.element = 0, .below = to, .link = number, .row = row + 1, .rows = from.row - row});
  }

  void choose_stems() {
    std::vector<NodeId> stem(river_.nodes.size(), no_node);
    for (NodeId id = 0; id < river_.nodes.size(); ++id) {
      const NodeId below = river_.nodes[id].below;
      if (below == no_node) continue;
      if (stem[below] == no_node || rank(id) > rank(stem[below])) stem[below] = id;
    }
    for (const NodeId id : stem) {
      if (id != no_node) river_.nodes[id].goes_straight = true;
    }
  }

  [[nodiscard]] std::tuple<bool, double, bool> rank(NodeId id) const {
    const RiverNode& node = river_.nodes[id];
    const bool is_channel = node.element == 0;
    const bool is_river = is_channel || !is_source(facts_.variant, node.element);
    return {is_river, graph_.links[node.link].area, !is_channel};
  }

  const Facts& facts_;
  const Graph& graph_;
  const Selection& selection_;
  River river_;
  std::uint32_t longest_arm_ = 0xFFFFFFFF;
};

}  // namespace

River river_of(const Facts& facts, const Graph& graph, const Selection& selection) {
  return Growth(facts, graph, selection).run();
}

}  // namespace schau::plan
