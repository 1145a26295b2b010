#include "KV_Schau/import/five_columns.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>

namespace schau::imports {
namespace {

using variant::AreaUnit;

constexpr std::size_t width = 5;

// What is written in so many decimals; empty when it is too wide.
Written in_decimals(double number, int decimals, bool without_zero) {
  std::string text = fmt::format("{:.{}f}", number, decimals);
  if (without_zero && text.starts_with("0.")) text.erase(0, 1);
  if (text.size() > width) return {};
  const double value = std::strtod(text.c_str(), nullptr);
  return {std::move(text), value};
}

double distance(double number, const Written& written) {
  return written.fits() ? std::abs(written.value - number) : std::numeric_limits<double>::infinity();
}

}  // namespace

Written in_five_columns(double number) {
  for (int decimals = 3; decimals >= 0; --decimals) {
    const Written usual = in_decimals(number, decimals, false);
    if (!usual.fits()) continue;
    const Written without_zero = in_decimals(number, decimals + 1, true);
    return distance(number, without_zero) < distance(number, usual) ? without_zero : usual;
  }
  return {};
}

WrittenArea best_area(double area_km2, AreaUnit in_force) {
  WrittenArea best;
  double least = std::numeric_limits<double>::infinity();
  for (const AreaUnit unit : {in_force, AreaUnit::qkm, AreaUnit::ha, AreaUnit::qm}) {
    constexpr double counts_as_equal = 1e-9;
    Written field = in_five_columns(area_km2 / variant::factor_of(unit));
    if (!field.fits()) continue;
    field.value *= variant::factor_of(unit);
    const double rounding = relative_rounding(area_km2, field);
    if (best.field.fits() && !(rounding < least - counts_as_equal)) continue;
    least = rounding;
    best = {std::move(field), unit};
  }
  return best;
}

double relative_rounding(double meant, const Written& written) {
  if (!written.fits()) return std::numeric_limits<double>::infinity();
  if (written.value == meant) return 0.0;
  return meant == 0.0 ? std::numeric_limits<double>::infinity()
                      : std::abs(written.value - meant) / std::abs(meant);
}

}  // namespace schau::imports
