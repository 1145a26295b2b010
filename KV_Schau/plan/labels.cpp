#include "KV_Schau/plan/labels.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <optional>

#include "KV_Schau/variant/shown_text.h"
#include "m_System/element_types.h"

namespace schau::plan {
namespace {

using variant::FileId;

constexpr variant::Span description_columns{17, 33};
constexpr double per_cent = 100.0;

std::string shown_name(const Facts& facts, variant::NameKey name) {
  return variant::shown(variant::text_of(name), facts.variant.file(FileId::sys).encoding());
}

bool has_area(char type) {
  return m_System::type_of(type).own_area != m_System::OwnArea::none;
}

std::string per_cent_words(double part) {
  return fmt::format("{:.4g} %", per_cent * part);
}

// The element in whose box another one is shown.
Element drawn_at(const Selection& selection, Element element) {
  const Element reach = selection.folded_into[element];
  return reach != 0 ? reach : element;
}

std::string place_words(const Facts& facts, const variant::Place& place) {
  const std::string& file = facts.variant.file(place.file).shown();
  return place.line == 0 ? file : fmt::format("{}:{}", file, place.line);
}

}  // namespace

std::string name_of(const Facts& facts, Element element) {
  return shown_name(facts, facts.variant.names[element]);
}

std::string description_of(const Facts& facts, Element element) {
  const std::string_view text = description_columns.of(facts.variant.element_line(element));
  return variant::shown(variant::without_blanks(text), facts.variant.file(FileId::sys).encoding());
}

std::string_view kind_words(char type) {
  switch (type) {
    case 'N':
      return "natürliche Fläche";
    case 'K':
      return "kanalisierte Fläche";
    case 'E':
      return "Einleitung ohne Fläche";
    case 'T':
      return "Transportstrecke";
    case 'V':
      return "Verzweigung";
    case 'B':
      return "Becken";
    default:
      return "Pegel";
  }
}

std::string short_area(double area) {
  constexpr double large = 1000.0;
  return fmt::format("{:.{}f} km²", area, std::abs(area) < large ? 3 : 1);
}

Labels::Labels(const Facts& facts, const Graph& graph, const Selection& selection,
               const std::vector<std::uint32_t>& told_links, bool detailed)
    : facts_(facts),
      graph_(graph),
      told_links_(told_links),
      detailed_(detailed),
      folded_(graph.count, selection.folded_into.size(),
              [&](std::uint32_t element) { return selection.folded_into[element]; }),
      findings_(graph.count, facts.findings.size(),
                [&](std::uint32_t number) { return drawn_at(selection, facts.element_of_finding[number]); }),
      told_(graph.count, told_links.size(),
            [&](std::uint32_t number) { return graph.links[told_links[number]].from; }),
      unknown_(graph.count, facts.network.unknown_links.size(), [&](std::uint32_t number) {
        return drawn_at(selection, facts.network.unknown_links[number].element);
      }) {}

std::vector<TextLine> Labels::label_of(Element element) const {
  std::vector<TextLine> label{{name_of(facts_, element), Tone::name}};
  if (detailed_) {
    if (std::string description = description_of(facts_, element); !description.empty()) {
      label.push_back({std::move(description), Tone::plain});
    }
  }
  add_values(label, element);
  add_shares(label, element);
  add_missing(label, element);
  return label;
}

void Labels::add_values(std::vector<TextLine>& label, Element element) const {
  const char type = facts_.variant.type(element);
  const network::Areas& areas = facts_.flow.total[element];
  if (m_System::type_of(type).is_structure() || (is_source(facts_.variant, element) && !has_area(type)))
    return;
  std::string area = short_area(areas.all());
  if (detailed_ && type == 'K') {
    area += fmt::format(", {} befestigt", per_cent_words(facts_.taken[element].fraction));
  }
  if (const std::optional<double> station = station_of(facts_, element)) {
    label.push_back({fmt::format("km {:.3f}", *station), Tone::quiet});
  }
  label.push_back({std::move(area), Tone::plain});
}

void Labels::add_shares(std::vector<TextLine>& label, Element element) const {
  if (!m_System::type_of(facts_.variant.type(element)).is_structure()) return;
  for (const Element to : facts_.network.outflow[element]) {
    if (to == 0) continue;
    label.push_back(
        {fmt::format("{} → {}", per_cent_words(part_to(element, to)), name_of(facts_, to)), Tone::plain});
  }
}

double Labels::part_to(Element from, Element to) const {
  for (const std::uint32_t number : graph_.out_of.of(from)) {
    if (graph_.links[number].to == to) return graph_.links[number].part;
  }
  return 0.0;
}

void Labels::add_missing(std::vector<TextLine>& label, Element element) const {
  for (const std::uint32_t number : told_.of(element)) {
    const Link& link = graph_.links[told_links_[number]];
    label.push_back({fmt::format("weiter bei {}", name_of(facts_, link.to)), Tone::alert});
  }
  for (const std::uint32_t number : unknown_.of(element)) {
    const network::UnknownLink& link = facts_.network.unknown_links[number];
    label.push_back(
        {fmt::format("{} {} fehlt", link.is_outflow ? "Ablauf" : "Zulauf", shown_name(facts_, link.name)),
         Tone::alert});
  }
}

std::string Labels::tip_of(Element element) const {
  const char type = facts_.variant.type(element);
  const network::Areas& areas = facts_.flow.total[element];
  std::string tip =
      fmt::format("{} {}\n{}, {}", name_of(facts_, element), description_of(facts_, element),
                  kind_words(type), place_words(facts_, variant::place_of_element(facts_.variant, element)));
  if (const std::optional<double> station = station_of(facts_, element)) {
    tip += fmt::format("\nkm {:.3f}", *station);
  }
  tip += fmt::format("\nnatürlich {:.3f} km², kanalisiert {:.3f} km², davon undurchlässig {:.3f} km²",
                     areas.natural, areas.canalised, areas.impervious);
  for (const Element source : folded_.of(element)) {
    tip += fmt::format("\n{} {}: {}", name_of(facts_, source), kind_words(facts_.variant.type(source)),
                       short_area(facts_.flow.total[source].all()));
  }
  add_findings(tip, element);
  return tip;
}

void Labels::add_findings(std::string& tip, Element element) const {
  constexpr std::size_t most = 5;
  const auto numbers = findings_.of(element);
  for (std::size_t i = 0; i < std::min(numbers.size(), most); ++i) {
    const findings::Finding& finding = facts_.findings[numbers[i]];
    tip += fmt::format("\n{} {}: {}", findings::word_of(finding.rule->severity),
                       place_words(facts_, finding.place), finding.text);
  }
  if (numbers.size() > most) tip += fmt::format("\n… und {} weitere Befunde", numbers.size() - most);
}

}  // namespace schau::plan
