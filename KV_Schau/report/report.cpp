#include "KV_Schau/report/report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "KV_Schau/compare/words.h"
#include "KV_Schau/findings/text.h"
#include "KV_Schau/plan/graph.h"
#include "KV_Schau/plan/labels.h"
#include "KV_Schau/run/read_file.h"
#include "KV_Schau/run/run.h"
#include "KV_Schau/run/table.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::report {
namespace {

using findings::Finding;
using network::Areas;
using variant::FileId;
using variant::TextFile;
using variant::Variant;

// The result.

struct Result {
  std::optional<run::Table> table;  // only one that counts
  std::string text;
};

Result find_result(const Variant& variant) {
  const std::string& shown = variant.file(FileId::result).shown();
  const auto computed = [](const std::string& why) {
    return Result{std::nullopt, why + " Die Flächen sind hier aus den Eingabedateien summiert."};
  };
  if (!variant.surroundings.result) return computed(fmt::format("{} liegt nicht vor.", shown));
  if (variant.surroundings.younger_input) {
    return computed(
        fmt::format("{} zählt nicht: {} ist jünger.", shown, *variant.surroundings.younger_input));
  }
  run::Table table = run::parse_table(run::read_file(variant.path.folder / (variant.path.name + ".Akum")));
  const std::string fault = run::fault_of_table(table, variant);
  if (!fault.empty()) return computed(fmt::format("{} zählt nicht: {}.", shown, fault));
  return {std::move(table), fmt::format("Die Flächen der Transportstrecken stammen aus {}.", shown)};
}

void take_over(ElementEntry& entry, const run::Reach& reach) {
  const auto is_number = [](const run::Number& number) { return number.kind == run::Number::Kind::number; };
  if (!is_number(reach.natural.total) || !is_number(reach.canalised.total) ||
      !is_number(reach.impervious.total) || !is_number(reach.total)) {
    return;
  }
  entry.areas = {reach.natural.total.value, reach.canalised.total.value, reach.impervious.total.value};
  entry.total = reach.total.value;
}

// Elements.

ElementEntry entry_of(const plan::Facts& facts, Element element) {
  ElementEntry entry;
  entry.element = element;
  entry.type = facts.variant.type(element);
  entry.name = plan::name_of(facts, element);
  entry.kind = plan::kind_words(entry.type);
  entry.description = plan::description_of(facts, element);
  entry.line = facts.variant.element_lines[element];
  entry.station = plan::station_of(facts, element);
  entry.areas = facts.flow.total[element];
  entry.total = entry.areas.all();
  return entry;
}

std::vector<ElementEntry> entries_of(const plan::Facts& facts, const std::optional<run::Table>& table) {
  std::vector<ElementEntry> entries;
  entries.reserve(facts.network.count());
  for (Element i = 1; i <= facts.network.count(); ++i) entries.push_back(entry_of(facts, i));
  if (table) {
    // A table that counts has the reaches in system order.
    auto reach = table->reaches.begin();
    for (ElementEntry& entry : entries) {
      if (entry.type == 'T') take_over(entry, *reach++);
    }
  }
  for (ElementEntry& entry : entries) entry.sealing = plan::sealing_of(entry.areas);
  return entries;
}

// Capitals: how many there are stands before the word.
std::string_view plural_of(char type) {
  switch (type) {
    case 'N':
      return "natürliche Flächen";
    case 'K':
      return "kanalisierte Flächen";
    case 'E':
      return "Einleitungen ohne Fläche";
    case 'T':
      return "Transportstrecken";
    case 'V':
      return "Verzweigungen";
    case 'B':
      return "Becken";
    default:
      return "Pegel";
  }
}

std::vector<std::pair<std::string, std::size_t>> kinds_of(const std::vector<ElementEntry>& elements) {
  std::vector<std::pair<std::string, std::size_t>> kinds;
  for (const char type : std::string_view("NKETVBP")) {
    const auto count = static_cast<std::size_t>(std::ranges::count(elements, type, &ElementEntry::type));
    if (count > 0) kinds.emplace_back(count == 1 ? plan::kind_words(type) : plural_of(type), count);
  }
  return kinds;
}

// Findings.

SourceLine marked_line(const TextFile& file, const variant::Place& place) {
  const std::string_view line = file.line(place.line);
  const auto part = [&](std::size_t begin, std::size_t end) {
    begin = std::min(begin, line.size());
    end = std::clamp(end, begin, line.size());
    return variant::shown(line.substr(begin, end - begin), file.encoding());
  };
  const std::size_t begin = place.column - 1;
  const std::size_t end = begin + std::max<std::size_t>(place.length, 1);
  return {place.line, true, part(0, begin), part(begin, end), part(end, line.size())};
}

// The line and those around it; long lines as far as they say where.
std::vector<SourceLine> source_of(const TextFile& file, const variant::Place& place) {
  constexpr std::uint32_t around = 2;
  constexpr std::size_t longest = 200;
  if (place.line == 0 || place.line > file.line_count()) return {};
  std::vector<SourceLine> lines;
  const std::uint32_t first = place.line > around ? place.line - around : 1;
  const std::uint32_t last = std::min(place.line + around, file.line_count());
  for (std::uint32_t number = first; number <= last; ++number) {
    if (number == place.line && file.line(number).size() <= longest) {
      lines.push_back(marked_line(file, place));
    } else if (number == place.line) {
      lines.push_back(
          {number, true, variant::show_line(file, number, place.column, place.length).text, "", ""});
    } else {
      lines.push_back(
          {number, false, variant::shown(file.line(number).substr(0, longest), file.encoding()), "", ""});
    }
  }
  return lines;
}

std::string place_words(const TextFile& file, const variant::Place& place) {
  if (place.line == 0) return file.shown();
  const bool has_line = place.line <= file.line_count();
  const std::size_t column = has_line ? file.character_column(place.line, place.column) : place.column;
  return fmt::format("{}:{}:{}", file.shown(), place.line, column);
}

FindingEntry entry_of(const Variant& variant, const Finding& finding) {
  const TextFile& file = variant.file(finding.place.file);
  return {.severity = finding.rule->severity,
          .place = place_words(file, finding.place),
          .rule = std::string(finding.rule->identifier),
          .text = finding.text,
          .hint = finding.hint,
          .source = source_of(file, finding.place)};
}

void add_findings(Report& report, const plan::Facts& facts) {
  report.counts = findings::count(facts.findings);
  report.counts_text = findings::text_of(report.counts);
  for (const auto severity :
       {findings::Severity::error, findings::Severity::warning, findings::Severity::note}) {
    for (const Finding& finding : facts.findings) {
      if (finding.rule->severity != severity) continue;
      if (report.findings.size() == most_findings) {
        ++report.findings_left_out;
      } else {
        report.findings.push_back(entry_of(facts.variant, finding));
      }
    }
  }
}

// Balance.

Areas difference(const Areas& left, const Areas& right) {
  return {left.natural - right.natural, left.canalised - right.canalised, left.impervious - right.impervious};
}

void add_balance(Report& report, const plan::Facts& facts) {
  const network::Balance& balance = facts.flow.balance;
  const Element outlet = facts.network.outlet();
  report.balance = {
      {"Quellen (N, K)", balance.sources},
      {outlet == 0 ? "am Auslass" : "am Auslass " + plan::name_of(facts, outlet), balance.outlet},
      {"Differenz", difference(balance.sources, balance.outlet)}};
  std::vector<network::Loss> losses = balance.losses;
  std::ranges::stable_sort(losses, std::ranges::greater(),
                           [](const network::Loss& loss) { return std::abs(loss.areas.all()); });
  report.losses_left_out = losses.size() - std::min(losses.size(), most_losses);
  losses.resize(losses.size() - report.losses_left_out);
  for (const network::Loss& loss : losses) {
    const variant::Place place = variant::place_of_element(facts.variant, loss.element);
    report.losses.push_back({plan::name_of(facts, loss.element),
                             place_words(facts.variant.file(place.file), place),
                             std::string(network::words_for(loss.reason)), loss.areas});
  }
}

// Comparison.

std::string causes_of(const compare::Comparison& comparison, const compare::ReachChange& reach) {
  std::string causes;
  for (const std::uint32_t number : reach.causes) {
    if (!causes.empty()) causes += ", ";
    causes += compare::words_for_cause(comparison.changes[number]);
  }
  return reach.has_more_causes ? causes + " …" : causes;
}

double total_of(const compare::Sums& sums) {
  return sums.at(static_cast<std::size_t>(compare::Sum::total)).value;
}

}  // namespace

void add_comparison(Report& report, const compare::Comparison& comparison) {
  Against against;
  against.older = comparison.old_shown;
  for (const compare::Change& change : comparison.changes) {
    if (change.new_element != 0) report.elements.at(change.new_element - 1).is_changed = true;
    if (against.changes.size() == most_changes) {
      ++against.changes_left_out;
      continue;
    }
    against.changes.push_back({compare::shown(change.name), compare::shown_place(comparison, change),
                               compare::words_for(change), change.effect});
  }
  for (const compare::ReachChange& reach : comparison.reaches) {
    report.elements.at(reach.new_element - 1).difference = total_of(reach.after) - total_of(reach.before);
    if (against.reaches.size() == most_changes) {
      ++against.reaches_left_out;
      continue;
    }
    against.reaches.push_back({compare::shown(reach.name), total_of(reach.before), total_of(reach.after),
                               causes_of(comparison, reach)});
  }
  report.against = std::move(against);
}

Report report_of(const plan::Facts& facts) {
  const Result result = find_result(facts.variant);
  Report report;
  report.title = variant::shown_utf8(facts.variant.path.name);
  report.system_file = facts.variant.file(FileId::sys).shown();
  report.origin = result.table ? Origin::result : Origin::computed;
  report.origin_text = result.text;
  report.elements = entries_of(facts, result.table);
  report.element_count = report.elements.size();
  report.kinds = kinds_of(report.elements);
  add_findings(report, facts);
  add_balance(report, facts);
  for (const plan::Link& link : plan::graph_of(facts).links) report.links.emplace_back(link.from, link.to);
  report.plan = plan::plan_of(facts, {});
  return report;
}

}  // namespace schau::report
