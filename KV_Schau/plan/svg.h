#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "KV_Schau/plan/plan.h"

namespace schau::plan {

/// A plan as an SVG file of its own: without scripts, without anything to be fetched, in colours and signs
/// that also differ in grey and for colour-blind readers.
std::string to_svg(const Plan& plan);

/// What of a plan goes into an HTML page.
struct InlineForm {
  bool with_labels = true;
};

/// The content of an SVG element of a page, without heading and texts for pointing: as few elements as
/// possible, for the browser's sake. The page gives the colours: lines bear the class `wasser`, `trocken` or
/// `einseitig` and that of their degree of sealing, `b0` to `b5` (see `sealing_class`); signs bear the letter
/// of their type; texts `name`, `leise`, `warnt`.
std::string inline_svg(const Plan& plan, const InlineForm& form);

/// Degrees of sealing by classes: 0 is up to the first limit, 5 above the last.
inline constexpr std::array<double, 5> sealing_limits = {0.01, 0.05, 0.10, 0.20, 0.40};
std::size_t sealing_class(double sealing);

}  // namespace schau::plan
