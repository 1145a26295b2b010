#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "KV_Schau/network/network.h"
#include "KV_Schau/network/values.h"

namespace schau::network {

/// What an element weighs in up to two sums that are made at once.
using Weights = std::array<double, 2>;

/// By element (entry 0 is not used): the sums of the weights of all elements upstream, itself included, each
/// counted once, along however many paths its water comes.
///
/// In a tree such a sum is that of the inflows. Below a branching the arms may meet again, and then what lies
/// above it must not count twice. How many elements can be reached in an acyclic graph is the size of its
/// transitive closure, for which no method is known that would take less than quadratic time in every case
/// (Cohen, Size-Estimation Framework with Applications to Transitive Closure and Reachability, J. Comput.
/// Syst. Sci. 55, 1997, which therefore estimates it). Here it is exact, on a graph made small:
///
/// 1. What lies above a branching, down from the branchings above it, reaches whatever the branching reaches.
///    So it is added up once, as in a tree, and stands as one weight at the branching.
/// 2. The sum of an element is then that of the tree between it and the branchings above it, plus the weights
///    of the branchings upstream. Which those are is the same along a reach and changes only at branchings
///    and where two reaches with branchings above them meet: these are the nodes of the small graph, at most
///    three times as many as the branchings.
/// 3. On it the branchings upstream of each node are found for 64 branchings at a time, one bit each, in one
///    pass from the sources to the outlet (Warren, A Modification of Warshall's Algorithm for the Transitive
///    Closure of Binary Relations, Comm. ACM 18, 1975, for rows of bits), and the weights of the bits of a
///    byte are looked up at once.
///
/// Cost: linear in the elements, plus at most 3 B²/128 steps for B branchings (0.01 s for 10,000, a minute
/// for a million elements of which a third are branchings); memory linear in both. The sums are in double
/// precision.
///
/// `order` as `flow_order` gives it; a link against it, which a loop has, is left out.
std::vector<Weights> upstream_sums(const Network& network, const std::vector<Element>& order,
                                   const std::vector<Weights>& weights);

/// What `tabelle --mehr` tells of an element.
struct Upstream {
  std::uint32_t stream_order = 0;  ///< 0 for elements above the first reach
  std::uint32_t elements = 0;      ///< upstream, without itself
  double catchment = 0.0;          ///< km², natural and canalised; every source once, whatever the shares
};

/// By element (entry 0 is not used).
///
/// Stream order: a reach without a reach upstream is of order 1; where reaches of one highest order meet, the
/// order rises by one (Strahler, Quantitative Analysis of Watershed Geomorphology, Trans. AGU 38, 1957).
/// Gauges, branchings and basins hand the orders on, so that a junction built of several gauges counts as
/// one. Below a branching both arms keep the order; where they meet again it does not rise, as they are one
/// stream: orders rise only where streams of different origin meet (Gleyzer et al., A Fast Recursive GIS
/// Algorithm for Computing Strahler Stream Order in Braided and Nonbraided Networks, J. Am. Water Resour.
/// Assoc. 40, 2004).
std::vector<Upstream> look_upstream(const variant::Variant& variant, const Network& network,
                                    const std::vector<Element>& order, const std::vector<Taken>& taken);

}  // namespace schau::network
