#include "KV_Schau/report/html.h"

#include <fmt/format.h>

#include <cmath>
#include <kainjow/mustache.hpp>
#include <nlohmann/json.hpp>
#include <string_view>

#include "KV_Schau/plan/svg.h"
#include "KV_Schau/report/page_files.h"

namespace schau::report {
namespace {

using kainjow::mustache::data;
using kainjow::mustache::mustache;
using nlohmann::json;

// With more elements the script writes the labels of those in view.
constexpr std::size_t most_labels = 3000;

// km²; what is less is written as 0.000.
constexpr double least_shown = 0.0005;

std::string km2(double area) {
  return std::isfinite(area) ? fmt::format("{:.3f}", area) : "–";
}

void set_areas(data& row, const network::Areas& areas) {
  row.set("natural", km2(areas.natural));
  row.set("canalised", km2(areas.canalised));
  row.set("impervious", km2(areas.impervious));
  row.set("total", km2(areas.all()));
}

std::string_view class_of(findings::Severity severity) {
  switch (severity) {
    case findings::Severity::error:
      return "error";
    case findings::Severity::warning:
      return "warning";
    default:
      return "note";
  }
}

data kinds_of(const Report& report) {
  data kinds(data::type::list);
  for (const auto& [words, count] : report.kinds) {
    data kind;
    kind.set("words", words);
    kind.set("count", std::to_string(count));
    kinds << kind;
  }
  return kinds;
}

data source_of(const FindingEntry& finding) {
  data lines(data::type::list);
  for (const SourceLine& source : finding.source) {
    data line;
    line.set("number", std::to_string(source.number));
    line.set("is_place", source.is_place);
    line.set("before", source.before);
    line.set("has_mark", !source.marked.empty());
    line.set("marked", source.marked);
    line.set("after", source.after);
    lines << line;
  }
  return lines;
}

data findings_of(const Report& report) {
  data list(data::type::list);
  for (const FindingEntry& finding : report.findings) {
    data entry;
    entry.set("class", std::string(class_of(finding.severity)));
    entry.set("word", std::string(findings::word_of(finding.severity)));
    entry.set("place", finding.place);
    entry.set("rule", finding.rule);
    entry.set("text", finding.text);
    entry.set("has_hint", !finding.hint.empty());
    entry.set("hint", finding.hint);
    entry.set("has_source", !finding.source.empty());
    entry.set("source", source_of(finding));
    list << entry;
  }
  return list;
}

data balance_of(const Report& report) {
  data rows(data::type::list);
  for (const BalanceEntry& entry : report.balance) {
    data row;
    row.set("what", entry.what);
    set_areas(row, entry.areas);
    rows << row;
  }
  return rows;
}

data losses_of(const Report& report) {
  data rows(data::type::list);
  for (const LossEntry& entry : report.losses) {
    data row;
    row.set("element", entry.element);
    row.set("place", entry.place);
    row.set("reason", entry.reason);
    set_areas(row, entry.areas);
    rows << row;
  }
  return rows;
}

data sealing_scale() {
  data scale(data::type::list);
  std::string from;
  for (std::size_t i = 0; i <= plan::sealing_limits.size(); ++i) {
    const bool is_last = i == plan::sealing_limits.size();
    const std::string to = is_last ? "" : fmt::format("{:g}", 100.0 * plan::sealing_limits.at(i));
    data step;
    step.set("class", fmt::format("b{}", i));
    step.set("words", is_last
                          ? fmt::format("über {} %", from)
                          : (i == 0 ? fmt::format("bis {} %", to) : fmt::format("{} bis {} %", from, to)));
    scale << step;
    from = to;
  }
  return scale;
}

// Comparison.

data changes_of(const Against& against) {
  data rows(data::type::list);
  for (const ChangeEntry& entry : against.changes) {
    data row;
    row.set("element", entry.element);
    row.set("place", entry.place);
    row.set("what", entry.what);
    row.set("effect", km2(entry.effect));
    rows << row;
  }
  return rows;
}

data reach_changes_of(const Against& against) {
  data rows(data::type::list);
  for (const ReachChangeEntry& entry : against.reaches) {
    data row;
    row.set("reach", entry.reach);
    row.set("before", km2(entry.before));
    row.set("after", km2(entry.after));
    row.set("difference", fmt::format("{:+.3f}", entry.after - entry.before));
    row.set("causes", entry.causes);
    rows << row;
  }
  return rows;
}

// The lines below the reaches that have more, and those that have less.
std::string path_of(const Report& report, bool more) {
  std::string path;
  for (const plan::PlanLine& line : report.plan.lines) {
    const double difference = report.elements.at(line.from - 1).difference.value_or(0.0);
    if (std::abs(difference) < least_shown || (difference > 0.0) != more) continue;
    char letter = 'M';
    for (const plan::Point& point : line.points) {
      path += fmt::format("{}{:.1f} {:.1f}", letter, point.x, point.y);
      letter = 'L';
    }
  }
  return path;
}

// A ring around each changed element, and around one that shows a changed source.
std::string rings_of(const Report& report) {
  std::vector<bool> is_ringed(report.elements.size() + 1, false);
  for (const ElementEntry& entry : report.elements) is_ringed.at(entry.element) = entry.is_changed;
  std::vector<bool> is_drawn(report.elements.size() + 1, false);
  for (const plan::PlanNode& node : report.plan.nodes) is_drawn.at(node.element) = true;
  for (const auto& [from, to] : report.links) {
    if (is_ringed.at(from) && !is_drawn.at(from)) is_ringed.at(to) = true;
  }
  std::string path;
  for (const plan::PlanNode& node : report.plan.nodes) {
    if (!is_ringed.at(node.element)) continue;
    const double radius = node.half + 4.0;
    path += fmt::format("M{0:.1f} {1:.1f}a{2:.1f} {2:.1f} 0 1 1 {3:.1f} 0a{2:.1f} {2:.1f} 0 1 1 -{3:.1f} 0z",
                        node.at.x - radius, node.at.y, radius, 2.0 * radius);
  }
  return path;
}

void set_comparison(data& page, const Report& report) {
  page.set("is_compared", report.against.has_value());
  if (!report.against) return;
  const Against& against = *report.against;
  page.set("older", against.older);
  page.set("is_equal", against.changes.empty() && against.reaches.empty());
  page.set("has_changes", !against.changes.empty());
  page.set("changes", changes_of(against));
  page.set("has_changes_left_out", against.changes_left_out > 0);
  page.set("changes_left_out", std::to_string(against.changes_left_out));
  page.set("has_reach_changes", !against.reaches.empty());
  page.set("reach_changes", reach_changes_of(against));
  page.set("has_reaches_left_out", against.reaches_left_out > 0);
  page.set("reaches_left_out", std::to_string(against.reaches_left_out));
  page.set("more", path_of(report, true));
  page.set("less", path_of(report, false));
  page.set("rings", rings_of(report));
}

// What the script needs.

double rounded(double value, double steps) {
  return std::round(value * steps) / steps;
}

// A number beyond all others has no form in JSON and becomes null.
json number(std::optional<double> value) {
  constexpr double steps = 1e6;
  return value ? json(rounded(*value, steps)) : json();
}

json element_rows(const Report& report) {
  json rows = json::array();
  for (const ElementEntry& entry : report.elements) {
    rows.push_back({entry.name, std::string(1, entry.type), entry.description, entry.line,
                    number(entry.station), number(entry.areas.natural), number(entry.areas.canalised),
                    number(entry.areas.impervious), number(entry.total), number(entry.sealing),
                    number(entry.difference)});
  }
  return rows;
}

json kind_words_of(const Report& report) {
  json words = json::object();
  for (const ElementEntry& entry : report.elements) words[std::string(1, entry.type)] = entry.kind;
  return words;
}

json plan_data(const plan::Plan& plan, bool with_labels) {
  json nodes = json::array();
  for (const plan::PlanNode& node : plan.nodes) {
    const plan::Box label = label_box(plan, node);
    nodes.push_back({node.element, std::lround(node.at.x), std::lround(node.at.y), std::lround(node.half),
                     std::lround(label.right), std::lround(label.bottom - node.at.y)});
  }
  json lines = json::array();
  for (const plan::PlanLine& line : plan.lines) {
    json points = json::array();
    for (const plan::Point& point : line.points) {
      points.push_back(std::lround(point.x));
      points.push_back(std::lround(point.y));
    }
    lines.push_back({line.from, line.to, std::move(points)});
  }
  return {{"width", plan.width},      {"top", plan.drawing_top},
          {"height", plan.height},    {"typeSize", plan.style.type_size},
          {"labelled", with_labels},  {"nodes", std::move(nodes)},
          {"lines", std::move(lines)}};
}

// As the content of a script element, which nothing but its end tag ends.
std::string script_data(const Report& report, bool with_labels) {
  json links = json::array();
  for (const auto& [from, to] : report.links) {
    links.push_back(from);
    links.push_back(to);
  }
  const json all = {{"elements", element_rows(report)},
                    {"kinds", kind_words_of(report)},
                    {"links", std::move(links)},
                    {"plan", plan_data(report.plan, with_labels)}};
  const std::string text = all.dump();
  std::string out;
  out.reserve(text.size());
  for (const char character : text) {
    if (character == '<') {
      out += "\\u003c";
    } else {
      out += character;
    }
  }
  return out;
}

}  // namespace

std::string to_html(const Report& report) {
  const bool with_labels = report.plan.nodes.size() <= most_labels;
  data page;
  page.set("css", std::string(page_css));
  page.set("js", std::string(page_js));
  page.set("title", report.title);
  page.set("system_file", report.system_file);
  page.set("element_count", std::to_string(report.element_count));
  page.set("kinds", kinds_of(report));
  page.set("origin", report.origin_text);
  page.set("counts", report.counts_text);
  page.set("worst", report.counts.errors > 0 ? "error" : report.counts.warnings > 0 ? "warning" : "note");
  page.set("has_findings", !report.findings.empty());
  page.set("findings", findings_of(report));
  page.set("has_findings_left_out", report.findings_left_out > 0);
  page.set("findings_left_out", std::to_string(report.findings_left_out));
  page.set("balance", balance_of(report));
  page.set("has_losses", !report.losses.empty());
  page.set("losses", losses_of(report));
  page.set("has_losses_left_out", report.losses_left_out > 0);
  page.set("losses_left_out", std::to_string(report.losses_left_out));
  set_comparison(page, report);
  page.set("view_box", fmt::format("0 {:.0f} {:.0f} {:.0f}", report.plan.drawing_top, report.plan.width,
                                   report.plan.height - report.plan.drawing_top));
  page.set("drawing", plan::inline_svg(report.plan, {with_labels}));
  page.set("scale", sealing_scale());
  page.set("data", script_data(report, with_labels));
  mustache page_template{std::string(page_html)};
  return page_template.render(page);
}

}  // namespace schau::report
