#include "KV_Schau/plan/plan.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <queue>
#include <set>
#include <tuple>
#include <utility>

#include "KV_Schau/plan/graph.h"
#include "KV_Schau/plan/lanes.h"
#include "KV_Schau/plan/legend.h"
#include "KV_Schau/plan/river.h"
#include "KV_Schau/plan/text_width.h"

namespace schau::plan {
namespace {

// With this many elements on, names and areas are all there is room for.
constexpr std::uint32_t compact_from = 300;

constexpr double label_gap = 5.0;
constexpr double folded_room = 9.0;
constexpr double mark_room = 11.0;
constexpr double end_length = 26.0;

double width_of(const std::vector<TextLine>& label, const Style& style) {
  double width = 0.0;
  for (const TextLine& line : label) {
    width = std::max(width, text_width(line.text, line.tone == Tone::name));
  }
  return width * style.type_size;
}

class Drawing {
 public:
  Drawing(const Facts& facts, const Options& options)
      : facts_(facts),
        options_(options),
        graph_(graph_of(facts)),
        selection_(select(facts, graph_, options)),
        river_(river_of(facts, graph_, selection_)),
        lanes_(lanes_of(river_)),
        labels_(facts, graph_, selection_, river_.told_links, selection_.drawn_count < compact_from) {
    plan_.style =
        selection_.drawn_count < compact_from ? detailed_style : compact_style(selection_.drawn_count);
  }

  Plan run() {
    find_widest_area();
    add_nodes();
    add_links();
    const Sheet sheet(contents_);
    place_nodes(sheet);
    place_lines(sheet);
    lay_out_page(plan_, facts_, options_, selection_, sheet);
    return std::move(plan_);
  }

 private:
  void find_widest_area() {
    for (const RiverNode& node : river_.nodes) {
      const double area =
          node.below == no_node ? facts_.flow.total[node.element].all() : graph_.links[node.link].area;
      if (std::isfinite(area)) plan_.widest_area = std::max(plan_.widest_area, area);
    }
  }

  [[nodiscard]] double line_width(double area) const {
    const Style& style = plan_.style;
    if (plan_.widest_area <= 0.0 || !(area > 0.0)) return style.thinnest;
    const double part = std::sqrt(std::min(area / plan_.widest_area, 1.0));
    return style.thinnest + (style.widest - style.thinnest) * part;
  }

  void add_nodes() {
    for (NodeId id = 0; id < river_.nodes.size(); ++id) {
      const RiverNode& node = river_.nodes[id];
      if (node.element == 0) continue;
      plan_.nodes.push_back(node_of(id));
      contents_.things.push_back({lanes_[id], node.row, room_of(plan_.nodes.back())});
    }
  }

  PlanNode node_of(NodeId id) const {
    const Element element = river_.nodes[id].element;
    PlanNode node;
    node.element = element;
    node.type = facts_.variant.type(element);
    node.half = std::max(plan_.style.sign, line_width(facts_.flow.total[element].all()) / 2.0);
    node.label = labels_.label_of(element);
    if (selection_.goes_on[element]) node.label.push_back({"weitere oberhalb", Tone::quiet});
    for (const char type : {'N', 'K', 'E'}) {
      const auto is_of_type = [&](Element source) { return facts_.variant.type(source) == type; };
      if (std::ranges::any_of(labels_.folded_into(element), is_of_type)) node.folded.push_back(type);
    }
    for (const std::uint32_t number : labels_.findings_of(element)) {
      const findings::Severity severity = facts_.findings[number].rule->severity;
      node.mark = std::max(node.mark.value_or(severity), severity);
    }
    node.sealing = sealing_of(facts_.flow.total[element]);
    node.tip = labels_.tip_of(element);
    if (river_.nodes[id].below == no_node) set_end(node);
    return node;
  }

  void set_end(PlanNode& node) const {
    node.end_width = line_width(facts_.flow.total[node.element].all());
    if (node.element == facts_.network.outlet()) {
      node.end = End::outlet;
      node.end_text = "Auslass";
      return;
    }
    // What leads back in a loop is told in the label.
    for (const std::uint32_t number : graph_.out_of.of(node.element)) {
      const Element to = graph_.links[number].to;
      if (selection_.is_drawn(to)) return;
      node.end = End::goes_on;
      node.end_text = fmt::format("nach {}", name_of(facts_, to));
    }
    if (node.end == End::none) node.end = End::dead_end;
  }

  [[nodiscard]] Room room_of(const PlanNode& node) const {
    const Style& style = plan_.style;
    const double half_label = static_cast<double>(node.label.size()) * style.line_height / 2.0;
    Room room{node.half + 2.0, node.half + label_gap + width_of(node.label, style), 0.0, 0.0};
    room.up = room.down = std::max(half_label, style.sign + 1.0);
    if (!node.folded.empty()) room.left += folded_room;
    if (node.mark) room.left = std::max(room.left, node.half + mark_room);
    if (node.end != End::none) {
      room.down += end_length;
      room.right = std::max(room.right,
                            node.end_width / 2.0 + label_gap + text_width(node.end_text) * style.type_size);
    }
    return room;
  }

  void add_links() {
    for (NodeId id = 0; id < river_.nodes.size(); ++id) {
      const RiverNode& node = river_.nodes[id];
      if (node.element == 0 || node.below == no_node) continue;
      const RiverNode& below = river_.nodes[node.below];
      Route route;
      route.add({lanes_[id], level_of(node.row)});
      add_joint(route, lanes_[id], lanes_[node.below], below.row);
      add_line(route, node.link, false);
    }
    add_arms();
  }

  // Arms that leave one row run side by side where they would cover one another, each on the first track that
  // is free (interval partitioning).
  void add_arms() {
    struct Run {
      std::uint32_t row, first_lane, last_lane;
      const Arm* arm;
    };
    std::vector<Run> runs;
    for (const Arm& arm : river_.arms) {
      const NodeId from = river_.node_of[graph_.links[arm.link].from];
      const auto [first, last] = std::minmax(lanes_[from], lanes_[arm.channel]);
      runs.push_back({river_.nodes[from].row, first, last, &arm});
    }
    std::ranges::sort(runs, {}, [](const Run& run) { return std::pair(run.row, run.first_lane); });
    using LastLaneAndTrack = std::pair<std::uint32_t, std::uint32_t>;
    std::priority_queue<LastLaneAndTrack, std::vector<LastLaneAndTrack>, std::greater<>> taken;
    std::uint32_t row = 0;
    for (const Run& run : runs) {
      if (run.row != row) taken = {};
      row = run.row;
      auto track = static_cast<std::uint32_t>(taken.size());
      if (!taken.empty() && taken.top().first < run.first_lane) {
        track = taken.top().second;
        taken.pop();
      }
      taken.emplace(run.last_lane, track);
      add_arm(*run.arm, track);
    }
  }

  static void add_joint(Route& route, std::uint32_t lane, std::uint32_t lane_below, std::uint32_t row_below) {
    if (lane != lane_below) {
      route.add({lane, joining_level(row_below)});
      route.add({lane_below, joining_level(row_below)});
    }
    route.add({lane_below, level_of(row_below)});
  }

  void add_arm(const Arm& arm, std::uint32_t track) {
    const Link& link = graph_.links[arm.link];
    const NodeId from = river_.node_of[link.from];
    const NodeId to = river_.node_of[link.to];
    const std::uint32_t row = river_.nodes[from].row;
    const std::uint32_t lane = lanes_[arm.channel];
    Route route;
    route.add({lanes_[from], level_of(row)});
    route.add({lanes_[from], leaving_level(row), track});
    route.add({lane, leaving_level(row), track});
    add_joint(route, lane, lanes_[to], river_.nodes[to].row);
    add_line(route, arm.link, true);
  }

  void add_line(const Route& route, std::uint32_t link_number, bool is_arm) {
    const Link& link = graph_.links[link_number];
    PlanLine line;
    line.from = link.from;
    line.to = link.to;
    line.width = line_width(link.area);
    line.is_arm = is_arm;
    line.sealing = sealing_of(facts_.flow.total[link.from]);
    if (!link.is_named_at_both_ends()) {
      line.kind = LineKind::one_sided;
    } else if (link.part == 0.0) {
      line.kind = LineKind::dry;
    }
    const double name_width =
        std::max(text_width(name_of(facts_, link.from)), text_width(name_of(facts_, link.to)));
    const double text = (name_width + text_width("nach ")) * plan_.style.type_size;
    contents_.lines.push_back({route, line.width, text + label_gap});
    plan_.lines.push_back(std::move(line));
  }

  void place_nodes(const Sheet& sheet) {
    for (std::size_t i = 0; i < plan_.nodes.size(); ++i) {
      PlanNode& node = plan_.nodes[i];
      node.at = sheet.place(contents_.things[i].lane, contents_.things[i].row);
      node.label_at = {node.at.x + node.half + label_gap, node.at.y};
      if (node.end == End::none) continue;
      const double down = contents_.things[i].room.down;
      node.end_at = {node.at.x, node.at.y + down - 4.0};
    }
  }

  void place_lines(const Sheet& sheet) {
    // Lines to one element that are cut at one place go on as one.
    std::set<std::tuple<Element, Edge, double, double>> edges;
    std::vector<PlanLine> pieces;
    pieces.reserve(plan_.lines.size());
    for (std::size_t i = 0; i < plan_.lines.size(); ++i) {
      for (Piece& piece : sheet.pieces(contents_.lines[i].route)) {
        PlanLine line = plan_.lines[i];
        line.points = std::move(piece.points);
        line.begin = piece.begin;
        line.end = piece.end;
        bool is_new = piece.begin == Edge::none;
        const auto note = [&](Edge edge, const Point& at, std::string text) {
          if (edge == Edge::none || !edges.emplace(line.to, edge, at.x, at.y).second) return;
          is_new = true;
          plan_.edge_texts.push_back({at, edge, std::move(text)});
        };
        note(line.begin, line.points.front(), fmt::format("von {}", name_of(facts_, line.from)));
        note(line.end, line.points.back(), fmt::format("nach {}", name_of(facts_, line.to)));
        if (is_new) pieces.push_back(std::move(line));
      }
    }
    std::ranges::stable_sort(pieces, {},
                             [](const PlanLine& line) { return std::pair(!line.is_arm, line.width); });
    plan_.lines = std::move(pieces);
  }

  const Facts& facts_;
  const Options& options_;
  Graph graph_;
  Selection selection_;
  River river_;
  std::vector<std::uint32_t> lanes_;
  Labels labels_;
  GridContents contents_;
  Plan plan_;
};

}  // namespace

Style compact_style(std::uint32_t element_count) {
  constexpr double least = 9.0;
  constexpr double most = 60.0;
  const double widest = std::clamp(std::sqrt(0.4 * element_count), least, most);
  return {.detailed = false,
          .type_size = 8.5,
          .line_height = 9.5,
          .sign = 5.5,
          .thinnest = 1.4,
          .widest = widest};
}

Plan plan_of(const Facts& facts, const Options& options) {
  return Drawing(facts, options).run();
}

Box sign_box(const Plan& plan, const PlanNode& node) {
  const double half = plan.style.sign;
  return {node.at.x - half, node.at.y - half, node.at.x + half, node.at.y + half};
}

Box label_box(const Plan& plan, const PlanNode& node) {
  const double half = static_cast<double>(node.label.size()) * plan.style.line_height / 2.0;
  return {node.label_at.x, node.label_at.y - half, node.label_at.x + width_of(node.label, plan.style),
          node.label_at.y + half};
}

}  // namespace schau::plan
