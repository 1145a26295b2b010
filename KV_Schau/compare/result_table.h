#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "KV_Schau/run/table.h"
#include "KV_Schau/variant/names.h"

namespace schau::compare {

/// The sums of a reach, as the columns of the result table have them, km².
enum class Sum : std::uint8_t {
  natural_direct,
  natural_total,
  canalised_direct,
  canalised_total,
  impervious_direct,
  impervious_total,
  total
};
inline constexpr std::size_t sum_count = 7;
using Sums = std::array<run::Number, sum_count>;

/// A reach of a result.
struct ResultRow {
  variant::NameKey name = variant::blank_name;
  std::array<variant::NameKey, run::most_inflows> inflow{variant::blank_name, variant::blank_name,
                                                         variant::blank_name};
  run::Number station;  ///< km
  Sums sums;
  std::uint32_t line = 0;  ///< in its file, from 1; of JSON the number of the row
};

/// A result that lies by itself in a file.
struct ResultTable {
  std::string shown;  ///< its name in texts
  std::vector<ResultRow> rows;
};

/// True for a name that ends like a result: ".Akum", ".csv", ".json", in capitals or not.
bool is_result_name(const std::string& argument);

/// Reads NAME.Akum, or CSV or JSON as the command "tabelle" writes them, whatever their columns beyond those
/// of the result are. Throws run::FileFault when the file cannot be read or is not whole.
ResultTable read_result(const std::filesystem::path& file, const std::string& shown);

}  // namespace schau::compare
