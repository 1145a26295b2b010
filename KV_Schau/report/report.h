#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "KV_Schau/compare/comparison.h"
#include "KV_Schau/findings/finding.h"
#include "KV_Schau/network/flow.h"
#include "KV_Schau/plan/facts.h"
#include "KV_Schau/plan/plan.h"

/// The report on a variant: what is in it, what was found, what drains where. All texts are UTF-8.
namespace schau::report {

using network::Element;

/// A line of a file around a finding, cut where the marked part begins and ends.
struct SourceLine {
  std::uint32_t number = 0;
  bool is_place = false;  ///< the line that the finding is about
  std::string before;
  std::string marked;  ///< only in the line of the finding
  std::string after;
};

struct FindingEntry {
  findings::Severity severity = findings::Severity::note;
  std::string place;  ///< "rausel.kfl:7:11", the column as an editor counts
  std::string rule;
  std::string text;
  std::string hint;
  std::vector<SourceLine> source;  ///< empty for a finding about a file as a whole
};

/// An element with the areas of all that drains into it, its own included.
struct ElementEntry {
  Element element = 0;
  char type = ' ';
  std::string name;
  std::string kind;  ///< "Transportstrecke" ...
  std::string description;
  std::uint32_t line = 0;         ///< in the system file
  std::optional<double> station;  ///< km
  network::Areas areas;
  double total = 0.0;             ///< natural and canalised; of a result, the figure that stands in it
  std::optional<double> sealing;  ///< a fraction
  /// Against an older variant: what a reach has more or less, and whether the element is new, has other links
  /// or other inputs.
  std::optional<double> difference;
  bool is_changed = false;
};

struct BalanceEntry {
  std::string what;
  network::Areas areas;
};

/// What stays behind on its way, or comes twice (negative).
struct LossEntry {
  std::string element;
  std::string place;
  std::string reason;
  network::Areas areas;
};

/// An element that differs from the older variant.
struct ChangeEntry {
  std::string element;
  std::string place;    ///< in the newer variant; of one that is gone in the older
  std::string what;     ///< "Fläche 12.4 → 12.9 km²"
  double effect = 0.0;  ///< km², at its own place
};

/// A reach whose sums differ from the older variant.
struct ReachChangeEntry {
  std::string reach;
  double before = 0.0;  ///< km², natural and canalised
  double after = 0.0;
  std::string causes;  ///< "N0010 (Fläche), N0080 (neu)"
};

/// What is different from an older variant, the largest effects first.
struct Against {
  std::string older;  ///< as it is shown
  std::vector<ChangeEntry> changes;
  std::size_t changes_left_out = 0;
  std::vector<ReachChangeEntry> reaches;
  std::size_t reaches_left_out = 0;
};

/// What the areas of the reaches are.
enum class Origin : std::uint8_t {
  result,   ///< KV_Akum's, from the result table
  computed  ///< our own sums: there is no result that counts
};

struct Report {
  std::string title;        ///< the name of the variant
  std::string system_file;  ///< as it is shown
  std::size_t element_count = 0;
  std::vector<std::pair<std::string, std::size_t>> kinds;  ///< how many of each type there are
  std::string origin_text;                                 ///< a German sentence on the result
  Origin origin = Origin::computed;
  findings::Counts counts;
  std::string counts_text;             ///< "2 Fehler, 1 Warnung, 3 Hinweise"
  std::vector<FindingEntry> findings;  ///< errors first, those of one severity by place
  std::size_t findings_left_out = 0;
  std::vector<BalanceEntry> balance;  ///< sources, outlet, difference
  std::vector<LossEntry> losses;      ///< the largest first
  std::size_t losses_left_out = 0;
  std::vector<ElementEntry> elements;  ///< in system order
  /// Upper and lower end of each link.
  std::vector<std::pair<Element, Element>> links;
  plan::Plan plan;
  std::optional<Against> against;
};

/// The most findings, changes and losses that a report lists.
inline constexpr std::size_t most_findings = 500;
inline constexpr std::size_t most_changes = 200;
inline constexpr std::size_t most_losses = 50;

/// Draws up the report. The areas of the reaches are those of the result table when it is whole and younger
/// than all inputs. Linear in the variant. Throws run::FileFault when the result cannot be read.
Report report_of(const plan::Facts& facts);

/// Adds what is different from an older variant. `comparison` is of that variant with the report's own.
void add_comparison(Report& report, const compare::Comparison& comparison);

}  // namespace schau::report
