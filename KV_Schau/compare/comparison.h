#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "KV_Schau/compare/result_table.h"
#include "KV_Schau/network/network.h"
#include "KV_Schau/variant/variant.h"

/// What is different between two variants or two results.
namespace schau::compare {

/// km²; changes of results up to this are none.
inline constexpr double default_tolerance = 0.001;

enum class ChangeKind : std::uint8_t {
  added,  ///< the element is in the newer one only
  gone,   ///< in the older one only
  moved,  ///< it has other links
  input   ///< another value in its data file
};

/// The values that a run takes from data files.
enum class Input : std::uint8_t { area, sealing, code, share, station };

/// Names that a change is about; blank ones are none.
using Links = std::array<variant::NameKey, 3>;

/// A change of an element. Elements are the same when they have the same name; the second of one name is
/// held against the second.
struct Change {
  ChangeKind kind = ChangeKind::input;
  variant::NameKey name = variant::blank_name;
  network::Element old_element = 0;  ///< 0: none, also between tables
  network::Element new_element = 0;
  /// Where it stands: an added, gone or moved element in the system file, an input in its data file.
  std::optional<variant::Place> old_place;
  std::optional<variant::Place> new_place;
  /// Outflows: of branchings and basins their order counts. Inflows where only these tell of the change: in
  /// tables, and where only one end names a link.
  Links old_links{variant::blank_name, variant::blank_name, variant::blank_name};
  Links new_links{variant::blank_name, variant::blank_name, variant::blank_name};
  bool links_are_inflows = false;
  Input input = Input::area;  ///< and its values: km², a fraction, a code, a fraction, km
  double before = 0.0;
  double after = 0.0;
  /// An added or gone element that passes on all that it gets, and all that it gets has been linked anew: the
  /// inflows tell of the change.
  bool is_link_only = false;
  /// The area that it moves at its own place, km²; 0 for what no result depends on.
  double effect = 0.0;
};

/// A reach whose results differ by more than the tolerance.
struct ReachChange {
  variant::NameKey name = variant::blank_name;
  network::Element old_element = 0;  ///< 0 between tables
  network::Element new_element = 0;
  Sums before;
  Sums after;
  std::array<bool, sum_count> differs{};  ///< by `Sum`
  double effect = 0.0;                    ///< the largest difference, km²; infinite where one is no number
  /// The changes upstream that come down to it, as positions in `Comparison::changes`: those with the largest
  /// effects, at most `most_causes`. Empty between tables.
  std::vector<std::uint32_t> causes;
  bool has_more_causes = false;

  [[nodiscard]] double difference(Sum sum) const {
    const auto k = static_cast<std::size_t>(sum);
    return after.at(k).value - before.at(k).value;
  }
};
inline constexpr std::size_t most_causes = 8;

struct Comparison {
  std::string old_shown;
  std::string new_shown;
  /// What a place's file is called, by `FileId`.
  std::array<std::string, variant::file_count> old_files;
  std::array<std::string, variant::file_count> new_files;
  bool is_of_variants = true;
  double tolerance = default_tolerance;
  std::size_t old_count = 0;  ///< elements; between tables reaches
  std::size_t new_count = 0;
  std::size_t compared_reaches = 0;  ///< in both
  std::vector<Change> changes;       ///< the largest effects first, then in the order of the newer one
  std::vector<ReachChange> reaches;  ///< the same

  [[nodiscard]] bool is_equal() const { return changes.empty() && reaches.empty(); }
  [[nodiscard]] std::size_t count_of(ChangeKind kind) const;
};

/// Compares two variants: their elements, links and inputs, and the results that these lead to. The results
/// are those of a run, in double precision; no file of a run is asked. Neither the order of the elements in
/// the system file nor that of the inflows of an element is a difference. Linear in the files, but for
/// sorting.
///
/// Causes: what a change brings or takes away is followed along the links down to the outlet, divided as the
/// totals are. It is a cause wherever something of it arrives: below the place where the arms of a branching
/// with another share, or the old and the new way of an element, meet again it is none.
Comparison compare(const variant::Variant& older, const variant::Variant& newer,
                   double tolerance = default_tolerance);

/// Compares two results by themselves; causes cannot be known. What has other inflows has moved.
Comparison compare(const ResultTable& older, const ResultTable& newer, double tolerance = default_tolerance);

}  // namespace schau::compare
