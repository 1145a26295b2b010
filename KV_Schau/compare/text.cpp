#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string>
#include <vector>

#include "KV_Schau/compare/view.h"
#include "KV_Schau/compare/words.h"
#include "KV_Schau/run/table_output.h"

namespace schau::compare {
namespace {

constexpr std::size_t piece_size = std::size_t{1} << 18U;

std::string rest_words(std::size_t count, std::size_t shown) {
  return count > shown ? fmt::format("  ... {} weitere; --alle zeigt alle\n", count - shown) : "";
}

class TextWriter {
 public:
  TextWriter(const Comparison& comparison, std::size_t most, const Tell& tell)
      : comparison_(comparison), most_(most), tell_(tell) {}

  void run() {
    out_ = fmt::format("{} → {}, Toleranz {} km²\n", comparison_.old_shown, comparison_.new_shown,
                       comparison_.tolerance);
    write_changes(ChangeKind::added, "Hinzugekommen");
    write_changes(ChangeKind::gone, "Entfallen");
    write_changes(ChangeKind::moved, "Anders verbunden");
    write_changes(ChangeKind::input, "Eingaben geändert");
    write_results();
    write_summary();
    tell_(out_);
  }

 private:
  [[nodiscard]] bool is_shown(std::size_t position) const { return most_ == 0 || position < most_; }

  void pass_on() {
    if (out_.size() < piece_size) return;
    tell_(out_);
    out_.clear();
  }

  void write_changes(ChangeKind kind, std::string_view title) {
    const std::size_t count = comparison_.count_of(kind);
    if (count == 0) return;
    fmt::format_to(std::back_inserter(out_), "\n{}: {}\n", title, count);
    std::size_t position = 0;
    for (const Change& change : comparison_.changes) {
      if (change.kind != kind) continue;
      if (!is_shown(position++)) break;
      fmt::format_to(std::back_inserter(out_), "  {}: {}, {}\n", shown_place(comparison_, change),
                     shown(change.name), words_for(change));
      pass_on();
    }
    if (most_ > 0) out_ += rest_words(count, most_);
  }

  void write_results() {
    if (comparison_.reaches.empty()) return;
    fmt::format_to(std::back_inserter(out_),
                   "\nErgebnisse geändert: {} von {} Strecken, die größten Änderungen zuerst [km²]\n",
                   comparison_.reaches.size(), comparison_.compared_reaches);
    fmt::format_to(std::back_inserter(out_), "  {:<7}  {:<20}  {:>11}  {:>11}  {:>11}\n", "Strecke", "Summe",
                   "alt", "neu", "Differenz");
    for (std::size_t k = 0; k < comparison_.reaches.size() && is_shown(k); ++k) {
      write_reach(comparison_.reaches[k]);
      pass_on();
    }
    if (most_ > 0) out_ += rest_words(comparison_.reaches.size(), most_);
  }

  void write_reach(const ReachChange& reach) {
    std::string name = shown(reach.name);
    for (std::size_t k = 0; k < sum_count; ++k) {
      if (!reach.differs.at(k)) continue;
      const auto sum = static_cast<Sum>(k);
      fmt::format_to(std::back_inserter(out_), "  {:<7}  {:<20}  {:>11}  {:>11}  {:>11}\n", name,
                     words_for(sum), run::text_of(reach.before.at(k)), run::text_of(reach.after.at(k)),
                     difference(reach, sum));
      name.clear();
    }
    if (!comparison_.is_of_variants) return;
    std::string causes;
    for (const std::uint32_t cause : reach.causes)
      causes.append(causes.empty() ? "" : ", ").append(words_for_cause(comparison_.changes[cause]));
    if (causes.empty()) causes = "keine Änderung oberhalb";
    fmt::format_to(std::back_inserter(out_), "           wegen {}{}\n", causes,
                   reach.has_more_causes ? " und weiterer" : "");
  }

  // With as many decimals as show it.
  [[nodiscard]] std::string difference(const ReachChange& reach, Sum sum) const {
    const double difference = reach.difference(sum);
    if (!std::isfinite(difference)) return "";
    return std::abs(difference) < 0.001 ? fmt::format("{:+.2g}", difference)
                                        : fmt::format("{:+.3f}", difference);
  }

  void write_summary() {
    const std::string_view units = comparison_.is_of_variants ? "Elemente" : "Strecken";
    if (comparison_.is_equal()) {
      fmt::format_to(std::back_inserter(out_), "Gleich: {} {}", comparison_.new_count, units);
      if (comparison_.is_of_variants)
        fmt::format_to(std::back_inserter(out_), ", die Ergebnisse von {} Strecken",
                       comparison_.compared_reaches);
      out_ += "\n";
      return;
    }
    std::vector<std::string> parts;
    const std::string_view one = comparison_.is_of_variants ? "Element" : "Strecke";
    const auto add = [&](ChangeKind kind, std::string_view single, std::string_view several,
                         std::string_view what) {
      const std::size_t count = comparison_.count_of(kind);
      if (count > 0) parts.push_back(fmt::format("{} {} {}", count, count == 1 ? single : several, what));
    };
    add(ChangeKind::added, one, units, "hinzugekommen");
    add(ChangeKind::gone, one, units, "entfallen");
    add(ChangeKind::moved, one, units, "anders verbunden");
    add(ChangeKind::input, "Eingabe", "Eingaben", "geändert");
    parts.push_back(fmt::format("{} von {} Strecken mit anderem Ergebnis", comparison_.reaches.size(),
                                comparison_.compared_reaches));
    fmt::format_to(std::back_inserter(out_), "\nVerschieden: {}\n", fmt::join(parts, ", "));
  }

  const Comparison& comparison_;
  std::size_t most_;
  const Tell& tell_;
  std::string out_;
};

}  // namespace

void tell_text(const Comparison& comparison, std::size_t most, const Tell& tell) {
  TextWriter(comparison, most, tell).run();
}

}  // namespace schau::compare
