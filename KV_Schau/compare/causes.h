#pragma once

#include <vector>

#include "KV_Schau/compare/comparison.h"
#include "KV_Schau/compare/reach_results.h"

namespace schau::compare {

/// Fills the causes of all changed reaches. The changes are sorted. Linear in the elements.
void find_causes(Comparison& comparison, const Results& older, const Results& newer);

}  // namespace schau::compare
