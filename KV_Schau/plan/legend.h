#pragma once

#include "KV_Schau/plan/plan.h"
#include "KV_Schau/plan/selection.h"
#include "KV_Schau/plan/sheet.h"

namespace schau::plan {

/// Sets title, legend and the size of the page, and moves the drawing to its place between them.
void lay_out_page(Plan& plan, const Facts& facts, const Options& options, const Selection& selection,
                  const Sheet& sheet);

/// Round areas (1, 2, 5, 10 ... km²) that show the scale of the line widths, the largest first.
std::vector<double> sample_areas(double widest_area);

}  // namespace schau::plan
