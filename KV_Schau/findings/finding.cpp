#include "KV_Schau/findings/finding.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace schau::findings {

std::string_view word_of(Severity severity) {
  static constexpr std::array<std::string_view, 3> words = {"Hinweis", "Warnung", "Fehler"};
  return words[static_cast<std::size_t>(severity)];
}

void sort_by_place(std::vector<Finding>& findings) {
  std::ranges::stable_sort(findings, {}, [](const Finding& finding) {
    return std::tuple(finding.place.file, finding.place.line, finding.place.column);
  });
}

Counts count(const std::vector<Finding>& findings) {
  Counts counts;
  for (const Finding& finding : findings) {
    counts.errors += finding.rule->severity == Severity::error ? 1 : 0;
    counts.warnings += finding.rule->severity == Severity::warning ? 1 : 0;
    counts.notes += finding.rule->severity == Severity::note ? 1 : 0;
  }
  return counts;
}

}  // namespace schau::findings
