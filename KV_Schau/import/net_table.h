#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/variant/text_file.h"

namespace schau::imports {

inline constexpr std::uint32_t no_row = 0xFFFFFFFF;

/// A row of the table: an element with its catchment. Texts are UTF-8 without blanks around them.
struct Row {
  std::uint32_t line = 0;  ///< of the file, from 1
  std::string_view id;
  std::string_view to_id;  ///< empty at the outlet
  std::string_view second_to_id;
  std::string_view name;
  char type = 'T';                ///< N, K, E, T, V, B or P
  double area = 0.0;              ///< km²
  double sealing = 0.0;           ///< a fraction
  double share = 100.0;           ///< of `to`, per cent
  std::optional<double> station;  ///< km
  std::uint32_t to = no_row;      ///< position in the list of rows
  std::uint32_t second_to = no_row;

  [[nodiscard]] bool is_source() const { return type == 'N' || type == 'K' || type == 'E'; }
};

/// Why a table cannot be taken; a German sentence without its full stop.
struct Fault {
  std::uint32_t line = 0;  ///< 0: the table as a whole
  std::string text;
};

/// The rows that drain into each row, in the order of the table.
struct Upstream {
  std::vector<std::uint32_t> begin;  ///< by row, and the end of the last
  std::vector<std::uint32_t> rows;

  [[nodiscard]] std::span<const std::uint32_t> of(std::uint32_t row) const {
    return std::span(rows).subspan(begin[row], begin[row + 1] - begin[row]);
  }
};

/// More faults are counted, but not listed.
inline constexpr std::size_t most_faults = 100;

/// A table of a river network as a geographic information system exports it.
struct NetTable {
  std::string shown;  ///< its name in texts
  std::vector<Row> rows;
  /// The first ones, in file order. Without any, all links lead to rows, and there is no loop.
  std::vector<Fault> faults;
  std::size_t fault_count = 0;  ///< also of those that are not listed
  std::vector<std::string> unread_columns;
  char separator = ',';
  bool has_decimal_comma = false;
  variant::Encoding encoding = variant::Encoding::windows_1252;
  /// Notes a fault.
  void refuse(std::uint32_t line, std::string text);
  /// Positions of the rows without a target.
  std::vector<std::uint32_t> outlets;
  /// The rows from the sources to the outlets: each stands behind all that drain into it.
  std::vector<std::uint32_t> order;
  Upstream upstream;
  /// What the texts of the rows lie in.
  std::deque<std::string> texts;
};

/// Reads a table with the columns `id`, `nach` and `flaeche_km2` and, where present, `befestigung`, `name`,
/// `station`, `art`, `anteil` and `nach2`. Upper and lower case do not matter in their names. The separator
/// (comma, semicolon, tab) is the one that finds most of them in the first line. A decimal comma holds for
/// the whole table; together with decimal points it is refused, as is all else that could be meant in two
/// ways. The file must have been read and outlive the table. Linear in its bytes.
NetTable read_net_table(const variant::TextFile& file);

}  // namespace schau::imports
