#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "KV_Schau/run/table.h"

namespace schau::run {

/// What lies upstream of a reach: columns that a table can have beyond those of the result.
struct Upstream {
  std::uint32_t stream_order = 0;
  std::uint32_t elements = 0;
  double catchment = 0.0;  ///< km²
};

/// A result table for people (UTF-8), one line a reach with all its inflows. With `most_rows` above 0 and
/// more reaches than that, the first and the last ones are shown, and how many are left out. `upstream` is
/// empty or has an entry for each reach.
std::string text_of(const Table& table, std::size_t most_rows = 0, std::span<const Upstream> upstream = {});

/// A column of numbers of a table.
struct NumberColumn {
  std::string_view title;  ///< in data that is separated by characters
  std::string_view key;    ///< in JSON
  std::size_t width = 0;   ///< in the table: so many asterisks stand for a number too wide
  const Number& (*number)(const Reach& reach) = nullptr;
};
/// From left to right: the station, the direct and total sums of the three kinds, and their sum.
const std::array<NumberColumn, 8>& number_columns();

/// The forms of a table as data that is separated by characters.
struct CsvForm {
  char separator = ',';
  char decimal_mark = '.';
  bool byte_order_mark = false;
};
/// After RFC 4180.
inline constexpr CsvForm plain_csv{};
/// As a German spreadsheet program takes it.
inline constexpr CsvForm german_csv{';', ',', true};

/// The line of the titles, with units; the names of all inflows have columns of their own.
void append_csv_titles(std::string& out, const CsvForm& form, bool with_upstream = false);
/// The line of a reach.
void append_csv_row(std::string& out, const Reach& reach, const CsvForm& form,
                    const Upstream* upstream = nullptr);

/// A reach as an object of one line, without a line end: `strecke`, `station_km`, `zulaeufe` (a list), six
/// areas and `gesamt_km2`, then `ordnung`, `elemente_oberhalb` and `einzugsgebiet_km2`. What is no number is
/// the text that stands in the table.
void append_json_row(std::string& out, const Reach& reach, const Upstream* upstream = nullptr);

}  // namespace schau::run
