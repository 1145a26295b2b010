#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "KV_Schau/run/table.h"

namespace schau::run {

/// A result table for people (UTF-8), one line a reach with all its inflows. With `most_rows` above 0 and
/// more reaches than that, the first and the last ones are shown, and how many are left out.
std::string text_of(const Table& table, std::size_t most_rows = 0);

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
void append_csv_titles(std::string& out, const CsvForm& form);
/// The line of a reach.
void append_csv_row(std::string& out, const Reach& reach, const CsvForm& form);

/// A reach as an object of one line, without a line end: `strecke`, `station_km`, `zulaeufe` (a list), six
/// areas and `gesamt_km2`. What is no number is the text that stands in the table.
void append_json_row(std::string& out, const Reach& reach);

}  // namespace schau::run
