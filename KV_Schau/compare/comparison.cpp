#include "KV_Schau/compare/comparison.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

#include "KV_Schau/compare/causes.h"
#include "KV_Schau/compare/reach_results.h"
#include "KV_Schau/network/values.h"
#include "KV_Schau/variant/records.h"
#include "m_System/element_types.h"

namespace schau::compare {
namespace {

using network::Element;
using variant::NameKey;
using variant::Place;

constexpr double infinite = std::numeric_limits<double>::infinity();

// Two that belong together; 0 where there is none.
struct Pair {
  std::uint32_t older = 0;
  std::uint32_t newer = 0;
};

std::vector<std::uint32_t> sorted_by_name(std::span<const NameKey> names) {
  std::vector<std::uint32_t> sorted;
  sorted.reserve(names.size());
  for (std::uint32_t i = 1; i < names.size(); ++i) sorted.push_back(i);
  std::ranges::stable_sort(sorted, {}, [&](std::uint32_t i) { return names[i]; });
  return sorted;
}

// Pairs of equal names, those of one name one after the other; in the order of the newer list, at the end
// what is in the older one only. Lists count from 1.
std::vector<Pair> pairs_of(std::span<const NameKey> older, std::span<const NameKey> newer) {
  const std::vector<std::uint32_t> old_sorted = sorted_by_name(older);
  const std::vector<std::uint32_t> new_sorted = sorted_by_name(newer);
  std::vector<Pair> pairs(newer.size() - 1);
  std::vector<std::uint32_t> old_only;
  auto next = new_sorted.begin();
  for (const std::uint32_t i : old_sorted) {
    while (next != new_sorted.end() && newer[*next] < older[i]) ++next;
    if (next != new_sorted.end() && newer[*next] == older[i]) {
      pairs[*next++ - 1].older = i;
    } else {
      old_only.push_back(i);
    }
  }
  for (std::uint32_t i = 1; i < newer.size(); ++i) pairs[i - 1].newer = i;
  std::ranges::sort(old_only);
  for (const std::uint32_t i : old_only) pairs.push_back({i, 0});
  return pairs;
}

// Rounding in the last places of a double is no difference.
bool are_different(double before, double after) {
  constexpr double rounding = 1e-9;
  if (before == after || (std::isnan(before) && std::isnan(after))) return false;
  return !(std::abs(after - before) <= rounding * std::max(std::abs(before), std::abs(after)));
}

double difference_of(const run::Number& before, const run::Number& after) {
  const bool are_numbers = std::isfinite(before.value) && std::isfinite(after.value);
  if (are_numbers) return std::abs(after.value - before.value);
  const bool are_alike =
      before.kind == after.kind && (std::isnan(before.value) || before.value == after.value);
  return are_alike ? 0.0 : infinite;
}

// Beyond a tolerance, with a little more for the rounding of the numbers themselves.
ReachChange change_of(NameKey name, const Sums& before, const Sums& after, double tolerance) {
  constexpr double rounding = 1e-12;
  ReachChange change;
  change.name = name;
  change.before = before;
  change.after = after;
  for (std::size_t k = 0; k < sum_count; ++k) {
    const double difference = difference_of(before.at(k), after.at(k));
    const double size = std::isfinite(after.at(k).value) ? std::abs(after.at(k).value) : 0.0;
    change.differs.at(k) = difference > tolerance + rounding * (1.0 + size);
    change.effect = std::max(change.effect, difference);
  }
  return change;
}

void add_if_changed(Comparison& comparison, ReachChange change) {
  ++comparison.compared_reaches;
  const bool is_changed = std::ranges::any_of(change.differs, [](bool differs) { return differs; });
  if (is_changed) comparison.reaches.push_back(std::move(change));
}

void sort_by_effect(Comparison& comparison) {
  for (Change& change : comparison.changes) {
    if (std::isnan(change.effect)) change.effect = infinite;
  }
  std::ranges::stable_sort(comparison.changes, std::ranges::greater{}, &Change::effect);
  std::ranges::stable_sort(comparison.reaches, std::ranges::greater{}, &ReachChange::effect);
}

// Inflows are a set: their order is no difference.
bool have_same_names(Links left, Links right) {
  std::ranges::sort(left);
  std::ranges::sort(right);
  return left == right;
}

// Variants.

class VariantComparer {
 public:
  VariantComparer(const Results& older, const Results& newer, double tolerance)
      : older_(older), newer_(newer), pairs_(pairs_of(older.variant.names, newer.variant.names)) {
    comparison_.old_shown = older.variant.path.shown;
    comparison_.new_shown = newer.variant.path.shown;
    for (std::size_t k = 0; k < variant::file_count; ++k) {
      comparison_.old_files.at(k) = older.variant.files.at(k).shown();
      comparison_.new_files.at(k) = newer.variant.files.at(k).shown();
    }
    comparison_.tolerance = tolerance;
    comparison_.old_count = older.variant.element_count();
    comparison_.new_count = newer.variant.element_count();
  }

  Comparison run() {
    find_moved_outflows();
    for (const Pair pair : pairs_) compare(pair);
    sort_by_effect(comparison_);
    find_causes(comparison_, older_, newer_);
    return std::move(comparison_);
  }

 private:
  static bool is_in_both(Pair pair) { return pair.older != 0 && pair.newer != 0; }

  // The names as they stand in the file, whether there are such elements or not.
  static Links outflows(const Results& results, Element i) {
    return names_in(results, i, variant::sys_columns::outflow);
  }
  static Links inflows(const Results& results, Element i) {
    return names_in(results, i, variant::sys_columns::inflow);
  }

  template <std::size_t count>
  static Links names_in(const Results& results, Element i, const std::array<variant::Span, count>& fields) {
    Links links{variant::blank_name, variant::blank_name, variant::blank_name};
    for (std::size_t k = 0; k < count; ++k)
      links.at(k) = variant::name_at(results.variant.element_line(i), fields.at(k).first);
    return links;
  }

  // The elements whose outflows tell of a new link: what it is an inflow of need not tell of it again.
  void find_moved_outflows() {
    old_tells_.assign(older_.network.count() + 1, false);
    new_tells_.assign(newer_.network.count() + 1, false);
    for (const Pair pair : pairs_) {
      const bool tells = !is_in_both(pair) || outflows(older_, pair.older) != outflows(newer_, pair.newer);
      old_tells_[pair.older] = tells;
      new_tells_[pair.newer] = tells;
    }
  }

  void compare(Pair pair) {
    if (pair.older == 0) return add_element(ChangeKind::added, pair, newer_, pair.newer);
    if (pair.newer == 0) return add_element(ChangeKind::gone, pair, older_, pair.older);
    compare_links(pair);
    compare_inputs(pair);
    if (newer_.variant.type(pair.newer) != 'T') return;
    ReachChange change = change_of(newer_.variant.names[pair.newer], older_.sums(pair.older),
                                   newer_.sums(pair.newer), comparison_.tolerance);
    change.old_element = pair.older;
    change.new_element = pair.newer;
    add_if_changed(comparison_, std::move(change));
  }

  [[nodiscard]] Change change(ChangeKind kind, Pair pair) const {
    Change change;
    change.kind = kind;
    change.name = pair.newer != 0 ? newer_.variant.names[pair.newer] : older_.variant.names[pair.older];
    change.old_element = pair.older;
    change.new_element = pair.newer;
    if (pair.older != 0) change.old_place = variant::place_of_element(older_.variant, pair.older);
    if (pair.newer != 0) change.new_place = variant::place_of_element(newer_.variant, pair.newer);
    return change;
  }

  void add_element(ChangeKind kind, Pair pair, const Results& results, Element element) {
    Change added = change(kind, pair);
    (kind == ChangeKind::added ? added.new_links : added.old_links) = outflows(results, element);
    added.effect = results.total[element].all();
    const std::vector<bool>& tells = kind == ChangeKind::added ? new_tells_ : old_tells_;
    const m_System::ElementType& type = m_System::type_of(results.variant.type(element));
    added.is_link_only =
        !type.is_source() && type.passes_on == m_System::PassesOn::everything &&
        std::ranges::all_of(results.network.inflow[element], [&](Element j) { return j == 0 || tells[j]; });
    comparison_.changes.push_back(added);
  }

  [[nodiscard]] double larger_total(Pair pair) const {
    return std::max(older_.total[pair.older].all(), newer_.total[pair.newer].all());
  }

  void compare_links(Pair pair) {
    Change moved = change(ChangeKind::moved, pair);
    moved.old_links = outflows(older_, pair.older);
    moved.new_links = outflows(newer_, pair.newer);
    moved.effect = larger_total(pair);
    if (moved.old_links != moved.new_links) comparison_.changes.push_back(moved);
    moved.old_links = inflows(older_, pair.older);
    moved.new_links = inflows(newer_, pair.newer);
    moved.links_are_inflows = true;
    const bool is_told = is_told_above(older_, old_tells_, pair.older, moved.new_links) &&
                         is_told_above(newer_, new_tells_, pair.newer, moved.old_links);
    if (!is_told) comparison_.changes.push_back(moved);
  }

  // True when every inflow that the other variant lacks has told of it itself.
  static bool is_told_above(const Results& results, const std::vector<bool>& tells, Element i,
                            const Links& others) {
    const Links names = inflows(results, i);
    for (std::size_t k = 0; k < names.size(); ++k) {
      const Element j = results.network.inflow[i].at(k);
      const bool is_kept =
          names.at(k) == variant::blank_name || std::ranges::find(others, names.at(k)) != others.end();
      if (!is_kept && (j == 0 || !tells[j])) return false;
    }
    return true;
  }

  void compare_inputs(Pair pair) {
    const network::Taken& before = older_.taken[pair.older];
    const network::Taken& after = newer_.taken[pair.newer];
    const double value_change = std::abs(after.value - before.value);
    const double fraction_change = std::abs(after.fraction - before.fraction);
    switch (newer_.variant.type(pair.newer)) {
      case 'N':
      case 'K': {
        const bool counts_sealing = newer_.variant.type(pair.newer) == 'K';
        const double area = std::max(before.value, after.value);
        add_input(pair, Input::area, before.value, after.value, value_change);
        add_input(pair, Input::sealing, before.fraction, after.fraction,
                  counts_sealing ? area * fraction_change : 0.0);
        return;
      }
      case 'V': {
        const bool counts_share = before.value == 1.0 || after.value == 1.0;
        add_input(pair, Input::code, before.value, after.value, counts_share ? larger_total(pair) : 0.0);
        add_input(pair, Input::share, before.fraction, after.fraction,
                  counts_share ? larger_total(pair) * fraction_change : 0.0);
        return;
      }
      case 'T':
        return add_input(pair, Input::station, before.value, after.value, 0.0);
      default:
        return;
    }
  }

  void add_input(Pair pair, Input input, double before, double after, double effect) {
    if (!are_different(before, after)) return;
    Change changed = change(ChangeKind::input, pair);
    changed.old_place = place_of_input(older_, pair.older, input);
    changed.new_place = place_of_input(newer_, pair.newer, input);
    changed.input = input;
    changed.before = before;
    changed.after = after;
    changed.effect = effect;
    comparison_.changes.push_back(changed);
  }

  static std::optional<Place> place_of_input(const Results& results, Element i, Input input) {
    std::optional<Place> place = variant::place_of_record(results.variant, results.records, i);
    const bool lies_below = place && input == Input::station &&
                            network::is_kind_2(results.variant.file(variant::FileId::trs).line(place->line));
    if (!lies_below) return place;
    const variant::Span columns = variant::data_columns::station;
    return Place{place->file, network::station_line(results.variant, place->line), columns.first,
                 columns.width()};
  }

  const Results& older_;
  const Results& newer_;
  std::vector<Pair> pairs_;
  std::vector<bool> old_tells_;
  std::vector<bool> new_tells_;
  Comparison comparison_;
};

// Tables.

std::vector<NameKey> names_of(const ResultTable& table) {
  std::vector<NameKey> names(1, variant::blank_name);
  for (const ResultRow& row : table.rows) names.push_back(row.name);
  return names;
}

Place place_of(const ResultRow& row) {
  return {variant::FileId::result, row.line};
}

Change gone_row(const ResultRow& older) {
  Change change;
  change.kind = ChangeKind::gone;
  change.name = older.name;
  change.links_are_inflows = true;
  change.old_place = place_of(older);
  change.old_links = older.inflow;
  change.effect = older.sums.back().value;
  return change;
}

Change added_row(const ResultRow& newer) {
  Change change;
  change.kind = ChangeKind::added;
  change.name = newer.name;
  change.links_are_inflows = true;
  change.new_place = place_of(newer);
  change.new_links = newer.inflow;
  change.effect = newer.sums.back().value;
  return change;
}

Change changed_row(ChangeKind kind, const ResultRow& older, const ResultRow& newer) {
  Change change = added_row(newer);
  change.kind = kind;
  change.old_place = place_of(older);
  change.old_links = older.inflow;
  change.effect = std::max(change.effect, older.sums.back().value);
  return change;
}

void compare_rows(Comparison& comparison, const ResultRow& older, const ResultRow& newer) {
  if (!have_same_names(older.inflow, newer.inflow))
    comparison.changes.push_back(changed_row(ChangeKind::moved, older, newer));
  if (difference_of(older.station, newer.station) > 0.0) {
    Change change = changed_row(ChangeKind::input, older, newer);
    change.input = Input::station;
    change.before = older.station.value;
    change.after = newer.station.value;
    change.effect = 0.0;
    comparison.changes.push_back(change);
  }
  add_if_changed(comparison, change_of(newer.name, older.sums, newer.sums, comparison.tolerance));
}

}  // namespace

std::size_t Comparison::count_of(ChangeKind kind) const {
  return static_cast<std::size_t>(std::ranges::count(changes, kind, &Change::kind));
}

Comparison compare(const variant::Variant& older, const variant::Variant& newer, double tolerance) {
  const Results old_results(older);
  const Results new_results(newer);
  return VariantComparer(old_results, new_results, tolerance).run();
}

Comparison compare(const ResultTable& older, const ResultTable& newer, double tolerance) {
  Comparison comparison;
  comparison.is_of_variants = false;
  comparison.old_shown = older.shown;
  comparison.new_shown = newer.shown;
  constexpr auto result = static_cast<std::size_t>(variant::FileId::result);
  comparison.old_files.at(result) = older.shown;
  comparison.new_files.at(result) = newer.shown;
  comparison.tolerance = tolerance;
  comparison.old_count = older.rows.size();
  comparison.new_count = newer.rows.size();
  for (const Pair pair : pairs_of(names_of(older), names_of(newer))) {
    const ResultRow* const old_row = pair.older == 0 ? nullptr : &older.rows[pair.older - 1];
    const ResultRow* const new_row = pair.newer == 0 ? nullptr : &newer.rows[pair.newer - 1];
    if (old_row != nullptr && new_row != nullptr) {
      compare_rows(comparison, *old_row, *new_row);
    } else if (new_row != nullptr) {
      comparison.changes.push_back(added_row(*new_row));
    } else if (old_row != nullptr) {
      comparison.changes.push_back(gone_row(*old_row));
    }
  }
  sort_by_effect(comparison);
  return comparison;
}

}  // namespace schau::compare
