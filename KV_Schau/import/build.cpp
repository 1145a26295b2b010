#include "KV_Schau/import/build.h"

#include <algorithm>
#include <cstddef>

#include "KV_Schau/import/names.h"

namespace schau::imports {
namespace {

constexpr std::size_t most_inflows = 3;

// An element and that of its outflows which leads on.
struct Link {
  std::uint32_t element = 0;
  std::size_t outflow = 0;
};

class Builder {
 public:
  explicit Builder(const NetTable& table) : table_(table), giver_(table.rows.size(), 0) {
    elements_.reserve(table.rows.size() * 2 + 1);
    elements_.emplace_back();
  }

  std::vector<Element> run() {
    for (const std::uint32_t row : table_.order) add_row(row);
    if (table_.outlets.size() > 1) join_outlets();
    assign_names(elements_, table_);
    return std::move(elements_);
  }

 private:
  void add_row(std::uint32_t i) {
    const Row& row = table_.rows[i];
    if (row.is_source()) {
      giver_[i] = add(row.type, Role::row, i, {});
      return;
    }
    std::vector<Link> inflows;
    for (const std::uint32_t above : table_.upstream.of(i)) inflows.push_back(link_from(above, i));
    const bool has_area = row.area > 0.0;
    gather(inflows, has_area ? most_inflows - 1 : most_inflows, i);
    if (has_area) {
      inflows.insert(inflows.begin(), {add(row.sealing > 0.0 ? 'K' : 'N', Role::catchment, i, {}), 0});
    }
    if (inflows.empty()) inflows.push_back({add('E', Role::dry_source, i, {}), 0});
    giver_[i] = add(row.type, Role::row, i, inflows);
    const bool branches_below = row.type == 'T' && row.second_to != no_row;
    if (branches_below) giver_[i] = add('V', Role::branching, i, {{giver_[i], 0}});
  }

  [[nodiscard]] Link link_from(std::uint32_t above, std::uint32_t below) const {
    const Row& row = table_.rows[above];
    return {giver_[above], row.second_to == below ? 1U : outflow_of(row)};
  }

  // By which outflow the only target, or the first, is reached.
  static std::size_t outflow_of(const Row& row) { return row.type == 'B' && row.second_to == no_row ? 1 : 0; }

  // Puts gauges between until there are no more inflows than that.
  void gather(std::vector<Link>& inflows, std::size_t most, std::uint32_t row) {
    std::size_t first = 0;
    while (inflows.size() - first > most) {
      const std::size_t surplus = inflows.size() - first - most;
      const std::size_t taken = surplus % 2 == 1 ? 2 : 3;
      const auto begin = inflows.begin() + static_cast<std::ptrdiff_t>(first);
      const std::vector<Link> group(begin, begin + static_cast<std::ptrdiff_t>(taken));
      inflows.push_back({add('P', Role::gauge, row, group), 0});
      first += taken;
    }
    inflows.erase(inflows.begin(), inflows.begin() + static_cast<std::ptrdiff_t>(first));
  }

  void join_outlets() {
    std::vector<Link> inflows;
    for (const std::uint32_t outlet : table_.outlets)
      inflows.push_back({giver_[outlet], outflow_of(table_.rows[outlet])});
    gather(inflows, most_inflows, no_row);
    add('P', Role::joined_outlet, no_row, inflows);
  }

  std::uint32_t add(char type, Role role, std::uint32_t row, const std::vector<Link>& inflows) {
    const auto number = static_cast<std::uint32_t>(elements_.size());
    Element element;
    element.type = type;
    element.role = role;
    element.row = row;
    auto slot = element.inflow.begin();
    for (const Link& link : inflows) {
      *slot++ = link.element;
      elements_[link.element].outflow.at(link.outflow) = number;
    }
    elements_.push_back(element);
    return number;
  }

  const NetTable& table_;
  std::vector<Element> elements_;
  std::vector<std::uint32_t> giver_;  // by row: the element that passes on what the row gives
};

}  // namespace

std::vector<Element> build(const NetTable& table) {
  return Builder(table).run();
}

}  // namespace schau::imports
