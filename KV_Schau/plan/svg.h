#pragma once

#include <string>

#include "KV_Schau/plan/plan.h"

namespace schau::plan {

/// A plan as an SVG file of its own: without scripts, without anything to be fetched, in colours and signs
/// that also differ in grey and for colour-blind readers.
std::string to_svg(const Plan& plan);

}  // namespace schau::plan
