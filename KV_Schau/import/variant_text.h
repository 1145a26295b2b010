#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/import/build.h"

namespace schau::imports {

/// A number that five columns do not hold as it is.
struct Rounding {
  std::uint32_t row = no_row;
  std::string_view column;  ///< of the table
  double meant = 0.0;
  double written = 0.0;  ///< km², a fraction, per cent

  /// The difference as a fraction of the number that was meant, with its sign.
  [[nodiscard]] double part() const { return (written - meant) / meant; }
};
/// Smaller ones are not told.
inline constexpr double least_rounding_told = 0.001;

/// The files of a variant in Windows-1252, and the list of names in UTF-8.
struct VariantText {
  struct File {
    std::string_view extension;  ///< with its point
    std::string bytes;           ///< empty: the variant needs no such file
  };
  std::array<File, 6> files = {
      {{".sys", {}}, {".nfl", {}}, {".kfl", {}}, {".trs", {}}, {".ver", {}}, {".namen.csv", {}}}};
  std::vector<Rounding> roundings;      ///< above `least_rounding_told`, in the order of the rows
  std::vector<std::uint32_t> too_wide;  ///< rows whose area no unit brings into five columns
  double area = 0.0;                    ///< km², of all rows
  double written_area = 0.0;            ///< the same as it is written
};

/// Writes the elements down. Linear in their number.
VariantText variant_text(const NetTable& table, const std::vector<Element>& elements);

}  // namespace schau::imports
