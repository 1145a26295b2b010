#include "KV_Schau/network/order.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <unordered_map>

namespace schau::network {
namespace {

// The groups of elements that can be reached from one another against the flow, each behind all that lie
// above it (Tarjan, Depth-First Search and Linear Graph Algorithms, SIAM J. Comput. 1, 1972), with a stack of
// its own instead of recursion: a river may be a million reaches long.
class StrongComponents {
 public:
  // With `named_by_both`, only links that both ends name count.
  StrongComponents(const Network& network, bool named_by_both)
      : network_(network), named_by_both_(named_by_both) {
    number_.assign(network.count() + 1, 0);
    lowest_.assign(network.count() + 1, 0);
    component_ends_.push_back(0);
    for (Element i = 1; i <= network.count(); ++i) {
      if (number_[i] == 0) search_from(i);
    }
  }

  // All elements, group after group.
  [[nodiscard]] const std::vector<Element>& elements() const { return elements_; }
  // Where the groups end in `elements`; the first entry is 0.
  [[nodiscard]] const std::vector<std::size_t>& ends() const { return component_ends_; }

 private:
  struct Visit {
    Element element;
    std::uint32_t slot;
  };
  static constexpr std::uint32_t finished = 0xFFFFFFFF;

  void enter(Element element) {
    number_[element] = lowest_[element] = ++last_number_;
    open_.push_back(element);
    visits_.push_back({element, 0});
  }

  void search_from(Element start) {
    enter(start);
    while (!visits_.empty()) {
      Visit& visit = visits_.back();
      if (visit.slot == network_.inflow[visit.element].size()) {
        leave();
        continue;
      }
      const Element next = network_.inflow[visit.element][visit.slot++];
      if (next == 0 || (named_by_both_ && !network_.names_outflow(next, visit.element))) continue;
      if (number_[next] == 0) {
        enter(next);
      } else if (number_[next] != finished) {
        lowest_[visit.element] = std::min(lowest_[visit.element], number_[next]);
      }
    }
  }

  void leave() {
    const Element element = visits_.back().element;
    visits_.pop_back();
    if (lowest_[element] == number_[element]) close_component(element);
    if (visits_.empty()) return;
    const Element below = visits_.back().element;
    lowest_[below] = std::min(lowest_[below], lowest_[element]);
  }

  void close_component(Element first) {
    const std::size_t begin = elements_.size();
    Element element = 0;
    do {
      element = open_.back();
      open_.pop_back();
      number_[element] = finished;
      elements_.push_back(element);
    } while (element != first);
    std::sort(elements_.begin() + static_cast<std::ptrdiff_t>(begin), elements_.end());
    component_ends_.push_back(elements_.size());
  }

  const Network& network_;
  bool named_by_both_;
  std::uint32_t last_number_ = 0;
  std::vector<std::uint32_t> number_;
  std::vector<std::uint32_t> lowest_;
  std::vector<Element> open_;
  std::vector<Visit> visits_;
  std::vector<Element> elements_;
  std::vector<std::size_t> component_ends_;
};

bool stands_in_order(const Network& network) {
  for (Element i = 1; i <= network.count(); ++i) {
    if (std::ranges::any_of(network.inflow[i], [&](Element j) { return j >= i; })) return false;
  }
  return true;
}

// Goes against the flow from an element of a group until it comes to an element for the second time.
std::vector<Element> loop_in(const Network& network, const std::vector<Element>& group) {
  const auto above = [&](Element element) {
    const auto in_group = [&](Element j) {
      return j != 0 && network.names_outflow(j, element) && std::ranges::binary_search(group, j);
    };
    return *std::ranges::find_if(network.inflow[element], in_group);
  };
  std::unordered_map<Element, std::size_t> met;
  std::vector<Element> path;
  for (Element element = group.front(); met.try_emplace(element, path.size()).second;
       element = above(element)) {
    path.push_back(element);
  }
  path.erase(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(met.at(above(path.back()))));
  std::ranges::reverse(path);
  std::rotate(path.begin(), std::ranges::min_element(path), path.end());
  return path;
}

}  // namespace

std::vector<Element> flow_order(const Network& network) {
  if (!stands_in_order(network)) return StrongComponents(network, false).elements();
  std::vector<Element> order(network.count());
  std::iota(order.begin(), order.end(), Element{1});
  return order;
}

std::vector<std::vector<Element>> loops(const Network& network) {
  std::vector<std::vector<Element>> found;
  if (stands_in_order(network)) return found;
  const StrongComponents components(network, true);
  const std::vector<std::size_t>& ends = components.ends();
  for (std::size_t c = 1; c < ends.size(); ++c) {
    const auto begin = components.elements().begin();
    const std::vector<Element> group(begin + static_cast<std::ptrdiff_t>(ends[c - 1]),
                                     begin + static_cast<std::ptrdiff_t>(ends[c]));
    const Element first = group.front();
    const bool drains_into_itself = network.names_inflow(first, first) && network.names_outflow(first, first);
    if (group.size() > 1 || drains_into_itself) found.push_back(loop_in(network, group));
  }
  std::ranges::sort(found, {}, [](const std::vector<Element>& loop) { return loop.front(); });
  return found;
}

std::vector<bool> reaches_outlet(const Network& network) {
  std::vector<bool> reaches(network.count() + 1, false);
  std::vector<Element> open;
  if (network.count() > 0) open.push_back(network.outlet());
  while (!open.empty()) {
    const Element element = open.back();
    open.pop_back();
    if (reaches[element]) continue;
    reaches[element] = true;
    for (const Element j : network.inflow[element]) {
      if (j != 0 && !reaches[j]) open.push_back(j);
    }
  }
  return reaches;
}

std::vector<DeadEnd> dead_ends(const Network& network, const std::vector<Element>& order) {
  const std::vector<bool> reaches = reaches_outlet(network);
  std::vector<Element> end_of(network.count() + 1, 0);
  std::vector<bool> is_inflow(network.count() + 1, false);
  for (auto element = order.rbegin(); element != order.rend(); ++element) {
    for (const Element j : network.inflow[*element]) is_inflow[j] = true;
    if (reaches[*element]) continue;
    if (end_of[*element] == 0) end_of[*element] = *element;
    for (const Element j : network.inflow[*element]) {
      if (end_of[j] == 0) end_of[j] = end_of[*element];
    }
  }
  std::unordered_map<Element, std::size_t> position;
  std::vector<DeadEnd> ends;
  for (Element i = 1; i <= network.count(); ++i) {
    if (reaches[i]) continue;
    const auto [entry, is_new] = position.try_emplace(end_of[i], ends.size());
    if (is_new) ends.push_back({end_of[i], is_inflow[end_of[i]], {}});
    ends[entry->second].elements.push_back(i);
  }
  return ends;
}

}  // namespace schau::network
