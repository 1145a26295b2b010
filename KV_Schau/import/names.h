#pragma once

#include <vector>

#include "KV_Schau/import/build.h"

namespace schau::imports {

/// Gives each element a name of five characters that no other has; the same table gives the same names.
/// A row whose id is a name of its type already (the letter of the type and four letters or digits) keeps
/// it. Other rows have the letter and the number of the row, decimal as long as four digits are enough, else
/// to the base 36 or 62. The source or branching that belongs to a row has its own letter and otherwise the
/// row's name; where that is taken, and for gauges, the next free number counts.
void assign_names(std::vector<Element>& elements, const NetTable& table);

}  // namespace schau::imports
