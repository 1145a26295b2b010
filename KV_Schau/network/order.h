#pragma once

#include <vector>

#include "KV_Schau/network/network.h"

namespace schau::network {

/// The elements from the sources to the outlet: each stands behind its inflows, as far as there is no loop.
/// That is the system order when the system file is in order. Linear, without recursion.
std::vector<Element> flow_order(const Network& network);

/// The loops: for each group of elements that drain into one another (links that both ends name), one loop of
/// it in the direction of flow, beginning with its first element in system order. Sorted by that element.
std::vector<std::vector<Element>> loops(const Network& network);

/// By element: true when water from it comes to the outlet, along the links that the lower end names.
std::vector<bool> reaches_outlet(const Network& network);

/// A part of the network that does not come to the outlet.
struct DeadEnd {
  Element end = 0;                ///< the lowest element
  bool in_loop = false;           ///< `end` is one of the elements of a loop
  std::vector<Element> elements;  ///< all that end there, `end` included, in system order
};
/// Where parts of the network end. An element of which several ends can be reached counts for one of them.
std::vector<DeadEnd> dead_ends(const Network& network, const std::vector<Element>& order);

}  // namespace schau::network
