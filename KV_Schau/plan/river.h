#pragma once

#include <cstdint>
#include <vector>

#include "KV_Schau/plan/graph.h"
#include "KV_Schau/plan/selection.h"

namespace schau::plan {

/// A node of the tree of the river, by its position in it.
using NodeId = std::uint32_t;
inline constexpr NodeId no_node = 0xFFFFFFFF;

/// An element in the tree, or a channel: the way that an arm takes down from the row of its upper end. It has
/// a lane of its own there, so that no line runs along another.
struct RiverNode {
  Element element = 0;         ///< 0: a channel
  NodeId below = no_node;      ///< what it joins; none at an end of the network
  std::uint32_t link = 0;      ///< the number of the link to what it joins
  std::uint32_t row = 0;       ///< the lowest one that it takes; rows count upwards from 0 at the ends
  std::uint32_t rows = 1;      ///< one, or as many as a channel passes
  bool goes_straight = false;  ///< of all that join there, the one that goes straight on
};

/// A link besides those of the tree: the smaller part of what a branching divides.
struct Arm {
  std::uint32_t link = 0;
  NodeId channel = no_node;
};

/// The elements of a plan as trees, each with an end of the network at its foot.
struct River {
  std::vector<RiverNode> nodes;  ///< each behind the one that it joins, the outlet first
  std::vector<NodeId> node_of;   ///< by element; `no_node` when it is not drawn
  std::vector<Arm> arms;
  /// The numbers of the links that are told and not drawn: those that lead back in a loop or would take more
  /// room than the rest.
  std::vector<std::uint32_t> told_links;
};

/// Where an element drains into several, the tree follows the larger area. At each confluence the inflow with
/// the largest area goes straight on; a source does so only among sources. Linear, without recursion; loops
/// are opened where the order of the system is against the flow.
River river_of(const Facts& facts, const Graph& graph, const Selection& selection);

}  // namespace schau::plan
