#include "KV_Schau/plan/legend.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "KV_Schau/plan/text_width.h"

namespace schau::plan {
namespace {

constexpr double margin = 28.0;
constexpr double title_size = 20.0;
constexpr double text_size = 11.5;
constexpr double line_height = 18.0;
constexpr double sign_width = 26.0;
constexpr double entry_gap = 22.0;
constexpr double narrowest_page = 640.0;
constexpr std::string_view types = "TVBPNKE";

// Title and legend grow with the page.
double scale_for(double width, double height) {
  constexpr double usual_size = 1100.0;
  constexpr double largest = 64.0;
  return std::clamp(std::sqrt(width * height) / usual_size, 1.0, largest);
}

struct Numbers {
  std::array<std::size_t, 256> drawn{};
  std::array<std::size_t, 256> folded{};
  std::array<std::size_t, 3> marks{};
  std::size_t dry = 0;
  std::size_t one_sided = 0;
  std::size_t dead_ends = 0;
};

Numbers numbers_of(const Plan& plan, const Facts& facts, const Selection& selection) {
  Numbers numbers;
  for (Element i = 1; i < selection.shown.size(); ++i) {
    const auto type = static_cast<unsigned char>(facts.variant.type(i));
    if (selection.shown[i] == Shown::drawn) ++numbers.drawn[type];
    if (selection.shown[i] == Shown::folded) ++numbers.folded[type];
  }
  for (const PlanNode& node : plan.nodes) {
    if (node.mark) ++numbers.marks[static_cast<std::size_t>(*node.mark)];
    if (node.end == End::dead_end) ++numbers.dead_ends;
  }
  for (const PlanLine& line : plan.lines) {
    if (line.kind == LineKind::dry) ++numbers.dry;
    if (line.kind == LineKind::one_sided) ++numbers.one_sided;
  }
  return numbers;
}

std::vector<LegendEntry> entries_of(const Plan& plan, const Numbers& numbers) {
  using Kind = LegendEntry::Kind;
  std::vector<LegendEntry> entries;
  const auto add = [&](Kind kind, std::string text) -> LegendEntry& {
    entries.push_back({.kind = kind, .at = {}, .text = std::move(text)});
    return entries.back();
  };
  for (const char type : types) {
    const auto index = static_cast<unsigned char>(type);
    if (numbers.drawn[index] > 0) {
      add(Kind::type, fmt::format("{} ({})", kind_words(type), numbers.drawn[index])).type = type;
    }
    if (numbers.folded[index] > 0) {
      add(Kind::folded, fmt::format("{} am Element ({})", kind_words(type), numbers.folded[index])).type =
          type;
    }
  }
  std::string_view subject = "Einzugsgebiet ";
  for (const double area : sample_areas(plan.widest_area)) {
    const double part = std::sqrt(area / plan.widest_area);
    add(Kind::width, fmt::format("{}{} km²", std::exchange(subject, ""), area)).width =
        plan.style.thinnest + (plan.style.widest - plan.style.thinnest) * part;
  }
  if (numbers.dry > 0) add(Kind::dry, "hier fließt nichts");
  if (numbers.one_sided > 0) add(Kind::one_sided, "nur an einem Ende genannt");
  if (numbers.dead_ends > 0) add(Kind::dead_end, "Ende ohne Ablauf");
  for (const findings::Severity severity :
       {findings::Severity::error, findings::Severity::warning, findings::Severity::note}) {
    const std::size_t count = numbers.marks[static_cast<std::size_t>(severity)];
    if (count == 0) continue;
    add(Kind::mark, fmt::format("{} ({})", findings::word_of(severity), count)).severity = severity;
  }
  return entries;
}

std::vector<std::string> subtitle_of(const Facts& facts, const Options& options, const Selection& selection) {
  std::vector<std::string> lines;
  const Element foot = options.above != 0 ? options.above : facts.network.outlet();
  if (foot == 0) return {"Das System hat kein Element."};
  std::string text = fmt::format("{} von {} Elementen", selection.drawn_count, facts.network.count());
  if (selection.has_folded) {
    const auto folded = std::ranges::count(selection.shown, Shown::folded);
    text = fmt::format("{} Elemente, {} davon als Quellen an ihrem Element",
                       selection.drawn_count + static_cast<std::size_t>(folded), folded);
  } else if (selection.drawn_count == facts.network.count()) {
    text = fmt::format("{} Elemente", selection.drawn_count);
  }
  lines.push_back(text);
  std::string part;
  if (options.above != 0) part = fmt::format("oberhalb von {}", name_of(facts, options.above));
  if (options.levels) {
    part += fmt::format("{}bis {} {} aufwärts", part.empty() ? "" : ", ", *options.levels,
                        *options.levels == 1 ? "Ebene" : "Ebenen");
  }
  if (!part.empty()) lines.push_back(part);
  const network::Areas& areas = facts.flow.total[foot];
  lines.push_back(
      fmt::format("Einzugsgebiet {}{}: {:.3f} km², davon kanalisiert {:.3f} km², undurchlässig {:.3f} km²",
                  options.above != 0 ? "bei " : "am Auslass ", name_of(facts, foot), areas.all(),
                  areas.canalised, areas.impervious));
  return lines;
}

}  // namespace

std::vector<double> sample_areas(double widest_area) {
  std::vector<double> areas;
  if (!(widest_area > 0.0)) return areas;
  const double exponent = std::floor(std::log10(widest_area));
  for (const double below : {0.0, 1.0, 2.0, 3.0}) areas.push_back(std::pow(10.0, exponent - below));
  return areas;
}

void lay_out_page(Plan& plan, const Facts& facts, const Options& options, const Selection& selection,
                  const Sheet& sheet) {
  const double scale = plan.page_scale = scale_for(sheet.width(), sheet.height());
  const double edge = margin * scale;
  plan.title = fmt::format("Systemplan {}", facts.variant.path.name);
  plan.subtitle = subtitle_of(facts, options, selection);
  plan.width = std::max(sheet.width(), narrowest_page * scale) + 2.0 * edge;
  plan.title_at = {edge, edge + title_size * scale};
  const double top =
      plan.title_at.y + (static_cast<double>(plan.subtitle.size()) * line_height + 1.5 * margin) * scale;
  plan.drawing_top = top - margin * scale;
  const Point shift{(plan.width - sheet.width()) / 2.0, top};
  const auto move = [&](Point& point) {
    point.x += shift.x;
    point.y += shift.y;
  };
  for (PlanNode& node : plan.nodes) {
    move(node.at);
    move(node.label_at);
    move(node.end_at);
  }
  for (PlanLine& line : plan.lines) std::ranges::for_each(line.points, move);
  for (EdgeText& text : plan.edge_texts) move(text.at);
  if (sheet.strips().size() > 1) {
    for (const Strip& strip : sheet.strips()) {
      const Point corner{strip.origin.x + shift.x, strip.origin.y + shift.y};
      plan.strips.push_back({corner.x, corner.y, corner.x + strip.width, corner.y + strip.height});
    }
  }
  plan.legend = entries_of(plan, numbers_of(plan, facts, selection));
  Point at{edge, top + sheet.height() + 1.2 * edge};
  for (LegendEntry& entry : plan.legend) {
    const double width = (sign_width + text_width(entry.text) * text_size + entry_gap) * scale;
    if (at.x > edge && at.x + width > plan.width - edge) at = {edge, at.y + line_height * scale};
    entry.at = at;
    at.x += width;
  }
  plan.height = at.y + edge;
}

}  // namespace schau::plan
