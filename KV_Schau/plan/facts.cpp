#include "KV_Schau/plan/facts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "m_System/element_types.h"

namespace schau::plan {
namespace {

using variant::FileId;
using variant::Variant;

// The elements whose data stand in the lines of a data file, by line; 0 for lines of none.
std::vector<Element> elements_by_line(const Facts& facts, FileId file) {
  const Variant& variant = facts.variant;
  std::vector<Element> elements(variant.file(file).line_count() + 1, 0);
  if (file == FileId::trs) {
    for (Element i = 1; i <= variant.element_count(); ++i) {
      const std::uint32_t line = facts.records.line[i];
      if (variant.type(i) != 'T' || line == 0 || !network::is_kind_2(variant.file(file).line(line))) continue;
      elements[network::station_line(variant, line)] = i;
    }
  }
  for (const variant::DataLine& data_line : variant.lines_of(file)) {
    elements[data_line.line] = data_line.element;
  }
  return elements;
}

Element element_in_system_line(const Variant& variant, std::uint32_t line) {
  const auto begin = std::next(variant.element_lines.begin());
  const auto found = std::lower_bound(begin, variant.element_lines.end(), line);
  if (found == variant.element_lines.end() || *found != line) return 0;
  return static_cast<Element>(std::distance(variant.element_lines.begin(), found));
}

std::vector<Element> elements_of_findings(const Facts& facts) {
  std::array<std::vector<Element>, variant::file_count> by_line;
  for (const FileId file : variant::data_files) {
    by_line[static_cast<std::size_t>(file)] = elements_by_line(facts, file);
  }
  std::vector<Element> elements;
  elements.reserve(facts.findings.size());
  for (const findings::Finding& finding : facts.findings) {
    const std::vector<Element>& lines = by_line[static_cast<std::size_t>(finding.place.file)];
    if (finding.place.file == FileId::sys) {
      elements.push_back(element_in_system_line(facts.variant, finding.place.line));
    } else {
      elements.push_back(finding.place.line < lines.size() ? lines[finding.place.line] : 0);
    }
  }
  return elements;
}

}  // namespace

Facts::Facts(const Variant& shown_variant, const network::Network& shown_network,
             const network::Flow& shown_flow, const std::vector<findings::Finding>& shown_findings)
    : variant(shown_variant),
      network(shown_network),
      flow(shown_flow),
      findings(shown_findings),
      records(variant::find_records(shown_variant)),
      taken(network::take_values(shown_variant, records)) {
  element_of_finding = elements_of_findings(*this);
}

bool is_source(const Variant& variant, Element element) {
  return m_System::type_of(variant.type(element)).is_source();
}

std::optional<double> station_of(const Facts& facts, Element element) {
  const std::uint32_t line = facts.records.line[element];
  if (facts.variant.type(element) != 'T' || line == 0) return std::nullopt;
  if (!network::is_kind_2(facts.variant.file(FileId::trs).line(line))) return std::nullopt;
  return facts.taken[element].value;
}

std::optional<double> sealing_of(const network::Areas& areas) {
  if (!std::isfinite(areas.all()) || areas.all() <= 0.0) return std::nullopt;
  return areas.impervious / areas.all();
}

}  // namespace schau::plan
