#pragma once

#include <string>

#include "KV_Schau/variant/records.h"

/// Numbers for the fields of five columns that a variant's data files have.
namespace schau::imports {

/// A number as it stands in a field, and what a reader takes it for.
struct Written {
  std::string text;  ///< at most five characters; empty when the number does not fit
  double value = 0.0;

  [[nodiscard]] bool fits() const { return !text.empty(); }
};

/// The number from 0 on with as many digits as five columns hold: "12.35", "12346", ".0123". A zero before
/// the point is left out where that makes room for a digit that counts.
Written in_five_columns(double number);

/// An area in the unit in which five columns keep most of it.
struct WrittenArea {
  Written field;  ///< `value` in km²
  variant::AreaUnit unit = variant::AreaUnit::qkm;
};

/// Of equally good units the one that is in force is kept, so that a file does not change its unit without
/// need; after that the largest is taken.
WrittenArea best_area(double area_km2, variant::AreaUnit in_force);

/// By how much the written number differs from the one that was meant, as a fraction of it; infinite when a
/// number above 0 has become 0, and for one that does not fit.
double relative_rounding(double meant, const Written& written);

}  // namespace schau::imports
