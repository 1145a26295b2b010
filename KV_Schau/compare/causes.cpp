#include "KV_Schau/compare/causes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "KV_Schau/network/flow.h"

namespace schau::compare {
namespace {

using network::Element;
using variant::NameKey;

// A change that comes down to an element, and how much area it brings or takes away there, km².
struct Share {
  std::uint32_t change = 0;
  float area = 0.0F;
};

// Those of the first changes in the sorted list, which have the largest effects.
class Shares {
 public:
  void add(std::uint32_t change, float area) {
    Share* const end = shares_.data() + count_;
    Share* const place =
        std::lower_bound(shares_.data(), end, change,
                         [](const Share& share, std::uint32_t number) { return share.change < number; });
    if (place != end && place->change == change) {
      place->area += area;
      return;
    }
    if (count_ == shares_.size()) {
      has_more_ = true;
      if (place == end) return;
    } else {
      ++count_;
    }
    std::move_backward(place, shares_.data() + count_ - 1, shares_.data() + count_);
    *place = {change, area};
  }
  void add(const Shares& other, float fraction) {
    for (const Share& share : other.all()) add(share.change, share.area * fraction);
    has_more_ = has_more_ || other.has_more_;
  }

  [[nodiscard]] std::span<const Share> all() const { return std::span(shares_).first(count_); }
  [[nodiscard]] bool has_more() const { return has_more_; }

 private:
  std::array<Share, most_causes> shares_{};
  std::uint8_t count_ = 0;
  bool has_more_ = false;
};

enum class Side : std::uint8_t { older, newer };

// Goes down one of the two networks.
class Descent {
 public:
  Descent(const Comparison& comparison, const Results& results, Side side)
      : comparison_(comparison), results_(results), side_(side), shares_(results.network.count() + 1) {
    gather_starts();
    std::vector<bool> is_visited(shares_.size(), false);
    for (const Element i : results.order) {
      is_visited[i] = true;
      visit(i, is_visited);
    }
  }

  [[nodiscard]] const Shares& of(Element element) const { return shares_[element]; }

 private:
  struct Start {
    Element element;
    std::uint32_t change;
  };

  void gather_starts() {
    for (std::uint32_t k = 0; k < comparison_.changes.size(); ++k) {
      const Change& change = comparison_.changes[k];
      const Element element = side_ == Side::older ? change.old_element : change.new_element;
      if (element != 0 && change.effect > 0.0) starts_.push_back({element, k});
    }
    std::ranges::stable_sort(starts_, {}, &Start::element);
  }

  void visit(Element i, const std::vector<bool>& is_visited) {
    for (const Start& start : starts_at(i)) {
      const Change& change = comparison_.changes[start.change];
      const bool begins_here = change.links_are_inflows && side_ == Side::newer;
      if (begins_here) shares_[i].add(start.change, signed_area(change));
    }
    for (const Element j : results_.network.inflow[i]) {
      if (j == 0 || !is_visited[j] || j == i) continue;
      const auto part = static_cast<float>(
          network::part_passed_on(results_.variant, results_.network, results_.taken, j, i));
      shares_[i].add(shares_[j], part);
      for (const Start& start : starts_at(j)) {
        const Change& change = comparison_.changes[start.change];
        if (comes_down(change, i)) shares_[i].add(start.change, area_passed_on(change, j, i, part));
      }
    }
  }

  [[nodiscard]] std::span<const Start> starts_at(Element element) const {
    const auto begin = std::ranges::lower_bound(starts_, element, {}, &Start::element);
    const auto end = std::ranges::upper_bound(starts_, element, {}, &Start::element);
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

  // What the older variant had is taken away, what the newer one has is brought.
  [[nodiscard]] float signed_area(const Change& change) const {
    return static_cast<float>(side_ == Side::older ? -change.effect : change.effect);
  }

  [[nodiscard]] float area_passed_on(const Change& change, Element from, Element to, float part) const {
    const bool changes_links = change.kind != ChangeKind::input || change.input == Input::code;
    if (changes_links) return signed_area(change) * part;
    if (side_ == Side::older) return 0.0F;
    // What one arm gets more the other one gets less.
    const bool is_second_arm = change.input == Input::share && results_.network.outflow[from][0] != to;
    return is_second_arm ? -signed_area(change) : signed_area(change);
  }

  const Comparison& comparison_;
  const Results& results_;
  Side side_;
  std::vector<Start> starts_;  // by element
  std::vector<Shares> shares_;
};

// The shares of both ways, those of one change added up.
std::vector<Share> joined(const Shares& old_shares, const Shares& new_shares) {
  std::vector<Share> all(old_shares.all().begin(), old_shares.all().end());
  all.insert(all.end(), new_shares.all().begin(), new_shares.all().end());
  std::ranges::stable_sort(all, {}, &Share::change);
  std::vector<Share> sums;
  for (const Share& share : all) {
    if (!sums.empty() && sums.back().change == share.change) {
      sums.back().area += share.area;
    } else {
      sums.push_back(share);
    }
  }
  return sums;
}

// What brings and takes away the same is not a cause: below the place where the arms of a branching, or the
// old and the new way of an element, meet again. Such changes are named only where there are no others.
void take_causes(const Comparison& comparison, ReachChange& reach, const Shares& old_shares,
                 const Shares& new_shares) {
  const auto is_idle = [&](const Share& share) {
    constexpr double rounding = 1e-4;
    const Change& change = comparison.changes[share.change];
    return change.is_link_only || std::abs(static_cast<double>(share.area)) <= rounding * change.effect;
  };
  std::vector<Share> causes = joined(old_shares, new_shares);
  if (!std::ranges::all_of(causes, is_idle)) std::erase_if(causes, is_idle);
  reach.has_more_causes = old_shares.has_more() || new_shares.has_more() || causes.size() > most_causes;
  causes.resize(std::min(causes.size(), most_causes));
  for (const Share& share : causes) reach.causes.push_back(share.change);
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
