#include "KV_Schau/compare/causes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <utility>

namespace schau::compare {
namespace {

using network::Element;
using variant::NameKey;

// The changes that come down to an element: the first ones of the sorted list, which have the largest
// effects.
class Set {
 public:
  void add(std::uint32_t change) {
    const auto end = ids_.begin() + count_;
    const auto place = std::lower_bound(ids_.begin(), end, change);
    if (place != end && *place == change) return;
    if (place == ids_.end()) {
      has_more_ = true;
      return;
    }
    if (count_ == ids_.size()) {
      has_more_ = true;
    } else {
      ++count_;
    }
    std::move_backward(place, ids_.begin() + count_ - 1, ids_.begin() + count_);
    *place = change;
  }
  void add(const Set& other) {
    for (std::size_t k = 0; k < other.count_; ++k) add(other.ids_.at(k));
    has_more_ = has_more_ || other.has_more_;
  }

  [[nodiscard]] const std::uint32_t* begin() const { return ids_.data(); }
  [[nodiscard]] const std::uint32_t* end() const { return ids_.data() + count_; }
  [[nodiscard]] bool has(std::uint32_t change) const { return std::binary_search(begin(), end(), change); }
  [[nodiscard]] bool has_more() const { return has_more_; }

 private:
  std::array<std::uint32_t, most_causes> ids_{};
  std::uint8_t count_ = 0;
  bool has_more_ = false;
};

enum class Side : std::uint8_t { older, newer };

// Goes down one of the two networks.
class Descent {
 public:
  Descent(const Comparison& comparison, const Results& results, Side side)
      : comparison_(comparison), results_(results), sets_(results.network.count() + 1) {
    gather_starts(side);
    std::vector<bool> is_visited(sets_.size(), false);
    for (const Element i : results.order) {
      is_visited[i] = true;
      visit(i, is_visited);
    }
  }

  [[nodiscard]] const Set& of(Element element) const { return sets_[element]; }

 private:
  struct Start {
    Element element;
    std::uint32_t change;
  };

  void gather_starts(Side side) {
    for (std::uint32_t k = 0; k < comparison_.changes.size(); ++k) {
      const Change& change = comparison_.changes[k];
      const Element element = side == Side::older ? change.old_element : change.new_element;
      if (element != 0 && change.effect > 0.0) starts_.push_back({element, k});
    }
    std::ranges::stable_sort(starts_, {}, &Start::element);
  }

  void visit(Element i, const std::vector<bool>& is_visited) {
    for (const Start& start : starts_at(i)) {
      if (comparison_.changes[start.change].links_are_inflows) sets_[i].add(start.change);
    }
    for (const Element j : results_.network.inflow[i]) {
      if (j == 0 || !is_visited[j] || j == i) continue;
      sets_[i].add(sets_[j]);
      for (const Start& start : starts_at(j)) {
        if (comes_down(comparison_.changes[start.change], i)) sets_[i].add(start.change);
      }
    }
  }

  [[nodiscard]] std::ranges::subrange<std::vector<Start>::const_iterator> starts_at(Element element) const {
    const auto [begin, end] = std::ranges::equal_range(starts_, element, {}, &Start::element);
    return {begin, end};
  }

  // A link that both variants have passes on the same as before.
  [[nodiscard]] bool comes_down(const Change& change, Element below) const {
    if (change.kind != ChangeKind::moved) return true;
    if (change.links_are_inflows) return false;
    const NameKey name = results_.variant.names[below];
    for (std::size_t k = 0; k < change.old_links.size(); ++k) {
      if (change.old_links.at(k) == change.new_links.at(k)) continue;
      if (change.old_links.at(k) == name || change.new_links.at(k) == name) return true;
    }
    return false;
  }

  const Comparison& comparison_;
  const Results& results_;
  std::vector<Start> starts_;  // by element
  std::vector<Set> sets_;
};

// Below the place where the old and the new way of a moved element meet it is not a cause. Such changes are
// named only where there are no others.
void take_causes(const Comparison& comparison, ReachChange& reach, const Set& old_set, const Set& new_set) {
  const auto is_idle = [&](std::uint32_t position) {
    const Change& change = comparison.changes[position];
    const bool meets_again =
        change.kind == ChangeKind::moved && old_set.has(position) && new_set.has(position);
    return meets_again || change.is_link_only;
  };
  std::vector<std::uint32_t> all;
  std::ranges::set_union(old_set, new_set, std::back_inserter(all));
  std::vector<std::uint32_t> causes;
  std::ranges::remove_copy_if(all, std::back_inserter(causes), is_idle);
  if (causes.empty()) causes = std::move(all);
  reach.has_more_causes = old_set.has_more() || new_set.has_more() || causes.size() > most_causes;
  causes.resize(std::min(causes.size(), most_causes));
  reach.causes = std::move(causes);
}

}  // namespace

void find_causes(Comparison& comparison, const Results& older, const Results& newer) {
  if (comparison.reaches.empty()) return;
  const Descent old_way(comparison, older, Side::older);
  const Descent new_way(comparison, newer, Side::newer);
  for (ReachChange& reach : comparison.reaches)
    take_causes(comparison, reach, old_way.of(reach.old_element), new_way.of(reach.new_element));
}

}  // namespace schau::compare
