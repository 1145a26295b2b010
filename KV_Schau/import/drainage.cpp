#include "KV_Schau/import/drainage.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <numeric>
#include <span>
#include <utility>

namespace schau::imports {
namespace {

using RowByID = boost::unordered_flat_map<std::string_view, std::uint32_t>;

std::uint32_t count_of(const NetTable& table) {
  return static_cast<std::uint32_t>(table.rows.size());
}

RowByID index_ids(NetTable& table) {
  RowByID rows;
  rows.reserve(table.rows.size());
  for (std::uint32_t i = 0; i < count_of(table); ++i) {
    const Row& row = table.rows[i];
    const auto [first, is_new] = rows.try_emplace(row.id, i);
    if (is_new) continue;
    table.refuse(row.line,
                 fmt::format("id \"{}\" steht schon in Zeile {}", row.id, table.rows[first->second].line));
  }
  return rows;
}

std::uint32_t target_of(NetTable& table, const RowByID& by_id, const Row& row, std::string_view column,
                        std::string_view id) {
  if (id.empty()) return no_row;
  const auto found = by_id.find(id);
  if (found == by_id.end()) {
    table.refuse(row.line,
                 fmt::format("{} \"{}\" gibt es nicht als id; am Auslass bleibt nach leer", column, id));
    return no_row;
  }
  const Row& target = table.rows[found->second];
  if (target.is_source()) {
    table.refuse(row.line, fmt::format("{} \"{}\" (Zeile {}) ist eine Quelle (art {}) und nimmt nichts auf",
                                       column, id, target.line, target.type));
  }
  return found->second;
}

void link(NetTable& table) {
  const RowByID by_id = index_ids(table);
  for (std::uint32_t i = 0; i < count_of(table); ++i) {
    Row& row = table.rows[i];
    row.to = target_of(table, by_id, row, "nach", row.to_id);
    row.second_to = target_of(table, by_id, row, "nach2", row.second_to_id);
    if (row.to_id.empty()) table.outlets.push_back(i);
  }
}

Upstream upstream_of(const std::vector<Row>& rows) {
  Upstream upstream;
  upstream.begin.assign(rows.size() + 1, 0);
  const auto for_each_target = [&](const auto& take) {
    for (std::uint32_t i = static_cast<std::uint32_t>(rows.size()); i-- > 0;) {
      if (rows[i].second_to != no_row) take(i, rows[i].second_to);
      if (rows[i].to != no_row) take(i, rows[i].to);
    }
  };
  for_each_target([&](std::uint32_t /*row*/, std::uint32_t target) { ++upstream.begin[target]; });
  std::inclusive_scan(upstream.begin.begin(), upstream.begin.end(), upstream.begin.begin());
  upstream.rows.resize(upstream.begin.back());
  for_each_target(
      [&](std::uint32_t row, std::uint32_t target) { upstream.rows[--upstream.begin[target]] = row; });
  return upstream;
}

// Goes up from the outlets, depth first, with a stack of its own: a river may be a million rows long. What is
// not reached from an outlet lies in or above a loop.
class Ascent {
 public:
  explicit Ascent(NetTable& table) : table_(table), depth_(table.rows.size(), not_met) {
    table_.order.reserve(table.rows.size());
  }

  void run() {
    for (const std::uint32_t outlet : table_.outlets) climb_from(outlet);
    for (std::uint32_t i = 0; i < count_of(table_); ++i) climb_from(i);
  }

 private:
  static constexpr std::uint32_t not_met = 0xFFFFFFFF;
  static constexpr std::uint32_t left = 0xFFFFFFFE;

  struct Visit {
    std::uint32_t row;
    std::uint32_t next;  // of its upstream rows
  };

  void enter(std::uint32_t row) {
    depth_[row] = static_cast<std::uint32_t>(path_.size());
    path_.push_back({row, 0});
  }

  void climb_from(std::uint32_t start) {
    if (depth_[start] != not_met) return;
    enter(start);
    while (!path_.empty()) {
      Visit& visit = path_.back();
      const auto above = table_.upstream.of(visit.row);
      if (visit.next == above.size()) {
        depth_[visit.row] = left;
        table_.order.push_back(visit.row);
        path_.pop_back();
        continue;
      }
      const std::uint32_t row = above[visit.next++];
      if (depth_[row] == not_met) {
        enter(row);
      } else if (depth_[row] != left) {
        refuse_loop(depth_[row]);
      }
    }
  }

  // The path from that depth on, in the direction of flow, from its first row in the table on.
  void refuse_loop(std::uint32_t depth) {
    constexpr std::size_t most_shown = 12;
    const auto loop = std::span(path_).subspan(depth);
    const auto first =
        static_cast<std::size_t>(std::ranges::min_element(loop, {}, &Visit::row) - loop.begin());
    std::string ids;
    for (std::size_t k = 0; k < std::min(loop.size(), most_shown); ++k)
      ids.append(table_.rows[loop[(first + loop.size() - k) % loop.size()].row].id).append(" → ");
    if (loop.size() > most_shown) ids += fmt::format("... ({} weitere) → ", loop.size() - most_shown);
    const Row& row = table_.rows[loop[first].row];
    table_.refuse(row.line, fmt::format("Kreis: {}{}", ids, row.id));
  }

  NetTable& table_;
  std::vector<std::uint32_t> depth_;
  std::vector<Visit> path_;
};

}  // namespace

void find_drainage(NetTable& table) {
  link(table);
  table.upstream = upstream_of(table.rows);
  Ascent(table).run();
}

}  // namespace schau::imports
