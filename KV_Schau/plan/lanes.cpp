#include "KV_Schau/plan/lanes.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

namespace schau::plan {
namespace {

using Lane = std::int32_t;

// How far what is placed above a node goes to the left and to the right of the node's lane, row by row.
class Outline {
 public:
  [[nodiscard]] std::size_t height() const { return left_.size(); }

  // Adds rows at the lower end, in which only the own lane is taken.
  void add_rows(std::size_t count) {
    left_.resize(left_.size() + count, -offset_);
    right_.resize(right_.size() + count, -offset_);
  }

  // The lane for a tributary, its lowest row beside the lowest one of this.
  [[nodiscard]] Lane free_lane_right(const Outline& tributary) const {
    Lane lane = 1;
    for (std::size_t k = 1; k <= std::min(height(), tributary.height()); ++k) {
      lane = std::max(lane, right(k) - tributary.left(k) + 1);
    }
    return lane;
  }
  [[nodiscard]] Lane free_lane_left(const Outline& tributary) const {
    Lane lane = -1;
    for (std::size_t k = 1; k <= std::min(height(), tributary.height()); ++k) {
      lane = std::min(lane, left(k) - tributary.right(k) - 1);
    }
    return lane;
  }

  // Of the two outlines the longer one is kept and written over as far as the shorter one goes.
  void take_in(Outline tributary, Lane lane) {
    tributary.offset_ += lane;
    const bool on_right = lane > 0;
    if (tributary.height() > height()) {
      tributary.copy_side(*this, !on_right);
      *this = std::move(tributary);
    } else {
      copy_side(tributary, on_right);
    }
  }

 private:
  // The k-th row from below, from 1.
  [[nodiscard]] Lane left(std::size_t k) const { return left_[left_.size() - k] + offset_; }
  [[nodiscard]] Lane right(std::size_t k) const { return right_[right_.size() - k] + offset_; }

  void copy_side(const Outline& shorter, bool right_side) {
    std::vector<Lane>& mine = right_side ? right_ : left_;
    for (std::size_t k = 1; k <= shorter.height(); ++k) {
      mine[mine.size() - k] = (right_side ? shorter.right(k) : shorter.left(k)) - offset_;
    }
  }

  std::vector<Lane> left_;
  std::vector<Lane> right_;
  Lane offset_ = 0;
};

class Placing {
 public:
  explicit Placing(const River& river) : river_(river), outlines_(river.nodes.size()) {
    shift_.assign(river.nodes.size(), 0);
  }

  std::vector<std::uint32_t> run() {
    sort_by_joint();
    for (std::size_t id = river_.nodes.size(); id-- > 0;) place_inflows_of(static_cast<NodeId>(id));
    place_ends();
    return lanes();
  }

 private:
  // The nodes that join at a node stand together in `joining_`.
  void sort_by_joint() {
    begins_.assign(river_.nodes.size() + 1, 0);
    for (const RiverNode& node : river_.nodes) {
      if (node.below != no_node) ++begins_[node.below + 1];
    }
    for (std::size_t i = 1; i < begins_.size(); ++i) begins_[i] += begins_[i - 1];
    std::vector<std::uint32_t> next = begins_;
    joining_.resize(begins_.back());
    for (NodeId id = 0; id < river_.nodes.size(); ++id) {
      const NodeId below = river_.nodes[id].below;
      if (below == no_node) {
        ends_.push_back(id);
      } else {
        joining_[next[below]++] = id;
      }
    }
  }

  void place_inflows_of(NodeId id) {
    const auto begin = joining_.begin() + begins_[id];
    const auto end = joining_.begin() + begins_[id + 1];
    Outline outline;
    // The stem first, then what is low, next to it.
    std::sort(begin, end, [&](NodeId left, NodeId right) {
      const bool left_is_stem = river_.nodes[left].goes_straight;
      const bool right_is_stem = river_.nodes[right].goes_straight;
      if (left_is_stem != right_is_stem) return left_is_stem;
      return std::pair(outlines_[left].height(), left) < std::pair(outlines_[right].height(), right);
    });
    for (auto inflow = begin; inflow != end; ++inflow) add_inflow(outline, *inflow, id);
    outline.add_rows(river_.nodes[id].rows);
    outlines_[id] = std::move(outline);
  }

  void add_inflow(Outline& outline, NodeId inflow, NodeId joint) {
    Outline tributary = std::move(outlines_[inflow]);
    const RiverNode& below = river_.nodes[joint];
    tributary.add_rows(river_.nodes[inflow].row - below.row - below.rows);
    if (river_.nodes[inflow].goes_straight) {
      outline = std::move(tributary);
      return;
    }
    const Lane right = outline.free_lane_right(tributary);
    const Lane left = outline.free_lane_left(tributary);
    const bool goes_right = right < -left || (right == -left && !went_right_);
    went_right_ = goes_right;
    shift_[inflow] = goes_right ? right : left;
    outline.take_in(std::move(tributary), shift_[inflow]);
  }

  // Trees stand side by side, the one of the outlet first.
  void place_ends() {
    Outline all;
    for (const NodeId id : ends_) {
      if (id != ends_.front()) shift_[id] = all.free_lane_right(outlines_[id]);
      if (id == ends_.front()) {
        all = std::move(outlines_[id]);
      } else {
        all.take_in(std::move(outlines_[id]), shift_[id]);
      }
    }
  }

  std::vector<std::uint32_t> lanes() {
    Lane first = std::numeric_limits<Lane>::max();
    for (NodeId id = 0; id < river_.nodes.size(); ++id) {
      if (river_.nodes[id].below != no_node) shift_[id] += shift_[river_.nodes[id].below];
      first = std::min(first, shift_[id]);
    }
    std::vector<std::uint32_t> lanes;
    lanes.reserve(shift_.size());
    for (const Lane lane : shift_) lanes.push_back(static_cast<std::uint32_t>(lane - first));
    return lanes;
  }

  const River& river_;
  std::vector<Outline> outlines_;
  std::vector<Lane> shift_;  // against the lane of what a node joins
  std::vector<NodeId> joining_;
  std::vector<std::uint32_t> begins_;
  std::vector<NodeId> ends_;
  bool went_right_ = false;
};

}  // namespace

std::vector<std::uint32_t> lanes_of(const River& river) {
  return Placing(river).run();
}

}  // namespace schau::plan
