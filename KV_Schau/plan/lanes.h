#pragma once

#include <cstdint>
#include <vector>

#include "KV_Schau/plan/river.h"

namespace schau::plan {

/// The lane of each node of a river, from 0 at the left. All nodes of a stem have one lane. A tributary gets
/// the lane nearest to its stem, on either side, in which it meets nothing of what joins the stem further up:
/// so no two nodes share a place, and no line of the trees crosses another.
///
/// The outlines of what is placed are laid against one another row by row, as far as the lower of the two
/// goes (Reingold and Tilford, Tidier Drawings of Trees, IEEE Trans. Softw. Eng. 7, 1981): linear in rows and
/// nodes.
std::vector<std::uint32_t> lanes_of(const River& river);

}  // namespace schau::plan
