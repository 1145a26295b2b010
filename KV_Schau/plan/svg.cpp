#include "KV_Schau/plan/svg.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <string_view>
#include <tuple>

#include "KV_Schau/plan/xml.h"

namespace schau::plan {
namespace {

constexpr std::string_view style_sheet = R"(
text{font-family:"Helvetica Neue",Arial,"Liberation Sans","DejaVu Sans",sans-serif;fill:#2b2b2b}
.titel{font-weight:bold}
.name{font-weight:bold;fill:#111}
.leise{fill:#5f6368}
.warnt{fill:#b3261e}
.wasser,.trocken,.einseitig,.rand{fill:none;stroke-linecap:round;stroke-linejoin:round}
.wasser{stroke:#5c9bc9}
.trocken{stroke:#8a8f94;stroke-dasharray:2 4}
.einseitig{stroke:#b3261e;stroke-dasharray:6 4}
.rand{stroke:#fff}
.pfeil{fill:#1d5c8c}
.teil{fill:#f7f9fa;stroke:#d5dade}
.T{fill:#1d5c8c}.V{fill:#e69f00}.B{fill:#0b7a75}.P{fill:#333}.N{fill:#4c9f57}.K{fill:#9a3f26}.E{fill:#fff}
.z{stroke:#fff;stroke-width:1.2;stroke-linejoin:round}
.E.z{stroke:#555}
.m0{fill:#0072b2}.m1{fill:#d98200}.m2{fill:#b3261e}
.mz{fill:none;stroke:#fff;stroke-linecap:round}
)";

void append_number(std::string& out, double number) {
  const auto tenths = static_cast<long long>(std::llround(number * 10.0));
  if (tenths < 0) out += '-';
  const long long size = std::abs(tenths);
  fmt::format_to(std::back_inserter(out), "{}", size / 10);
  if (size % 10 != 0) fmt::format_to(std::back_inserter(out), ".{}", size % 10);
}

void append_point(std::string& out, char letter, const Point& point) {
  out += letter;
  append_number(out, point.x);
  out += ' ';
  append_number(out, point.y);
}

std::string number(double value) {
  std::string out;
  append_number(out, value);
  return out;
}

double distance(const Point& left, const Point& right) {
  return std::hypot(right.x - left.x, right.y - left.y);
}

// The point so far from one towards another.
Point towards(const Point& from, const Point& to, double length) {
  const double whole = distance(from, to);
  if (whole <= 0.0) return from;
  return {from.x + (to.x - from.x) * length / whole, from.y + (to.y - from.y) * length / whole};
}

std::string rounded_path(const std::vector<Point>& points, double radius) {
  std::string path;
  append_point(path, 'M', points.front());
  for (std::size_t i = 1; i + 1 < points.size(); ++i) {
    const Point& corner = points[i];
    const double before = distance(points[i - 1], corner);
    const double after = distance(corner, points[i + 1]);
    const double cut = std::min({radius, before / 2.0, after / 2.0});
    append_point(path, 'L', towards(corner, points[i - 1], cut));
    append_point(path, 'Q', corner);
    append_point(path, ' ', towards(corner, points[i + 1], cut));
  }
  append_point(path, 'L', points.back());
  return path;
}

// The outline of a sign of a half height around a place.
std::string sign_path(char type, double half, const Point& at = {}) {
  const auto polygon = [&](std::initializer_list<Point> corners) {
    std::string path;
    Point last;
    for (const Point& corner : corners) {
      const Point place{corner.x * half, corner.y * half};
      if (path.empty()) {
        append_point(path, 'M', {at.x + place.x, at.y + place.y});
      } else {
        append_point(path, 'l', {place.x - last.x, place.y - last.y});
      }
      last = place;
    }
    return path + 'z';
  };
  const auto circle = [&](double radius) {
    const double r = radius * half;
    return fmt::format("M{0} {1}a{2} {2} 0 1 1 {3} 0a{2} {2} 0 1 1 -{3} 0z", number(at.x - r), number(at.y),
                       number(r), number(2.0 * r));
  };
  switch (type) {
    case 'N':
      return circle(0.85);
    case 'K':
      return polygon({{-0.8, -0.8}, {0.8, -0.8}, {0.8, 0.8}, {-0.8, 0.8}});
    case 'E':
      return circle(0.65);
    case 'T':
      return polygon({{-0.75, -0.85}, {0.75, -0.85}, {0.75, 0.2}, {0.0, 1.0}, {-0.75, 0.2}});
    case 'V':
      return polygon({{0.0, -1.0}, {1.0, 0.0}, {0.0, 1.0}, {-1.0, 0.0}});
    case 'B':
      return polygon({{-1.0, -0.75}, {1.0, -0.75}, {0.6, 0.85}, {-0.6, 0.85}});
    default:
      return polygon({{-1.0, -0.75}, {1.0, -0.75}, {0.0, 0.95}});
  }
}

constexpr std::string_view sign_types = "NKETVBP";

bool has_sign(char type) {
  return sign_types.find(type) != std::string_view::npos;
}

// A circle for a note, a triangle for a warning, an octagon for an error, each with its own mark.
std::string mark_shape(findings::Severity severity) {
  switch (severity) {
    case findings::Severity::note:
      return R"(<circle class="m0" r="5"/><path class="mz" stroke-width="1.6" d="M0 -2.6V-2.4M0 -.4V2.8"/>)";
    case findings::Severity::warning:
      return R"(<path class="m1" d="M0 -5.8L5.8 4.4H-5.8Z"/><path class="mz" stroke-width="1.5" d="M0 -2.4V1M0 2.9V3"/>)";
    default:
      return R"(<path class="m2" d="M-2.2 -5.4H2.2L5.4 -2.2V2.2L2.2 5.4H-2.2L-5.4 2.2V-2.2Z"/><path class="mz" stroke-width="1.6" d="M-2.2 -2.2L2.2 2.2M2.2 -2.2L-2.2 2.2"/>)";
  }
}

std::string_view class_of(LineKind kind) {
  switch (kind) {
    case LineKind::water:
      return "wasser";
    case LineKind::dry:
      return "trocken";
    default:
      return "einseitig";
  }
}

std::string_view class_of(Tone tone) {
  switch (tone) {
    case Tone::name:
      return "name";
    case Tone::plain:
      return "";
    case Tone::quiet:
      return "leise";
    default:
      return "warnt";
  }
}

class Writer {
 public:
  explicit Writer(const Plan& plan) : plan_(plan) {}

  std::string run() {
    begin();
    add_strips();
    add_lines();
    add_edge_texts();
    for (const PlanNode& node : plan_.nodes) add_node(node);
    add_heading();
    add_legend();
    out_ += "</svg>\n";
    return std::move(out_);
  }

  std::string run_inline(const InlineForm& form) {
    is_inline_ = true;
    out_ += "<defs>";
    add_mark_shapes();
    out_ += "</defs>\n";
    add_strips();
    add_line_groups();
    add_edge_texts();
    for (const PlanNode& node : plan_.nodes) {
      if (node.end != End::none) add_end(node);
    }
    add_sign_groups();
    for (const PlanNode& node : plan_.nodes) {
      if (node.mark) add_mark(node);
      if (form.with_labels) add_label(node);
    }
    add_legend();
    return std::move(out_);
  }

 private:
  template <class... Arguments>
  void add(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    fmt::format_to(std::back_inserter(out_), format, std::forward<Arguments>(arguments)...);
  }

  void begin() {
    add("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\" "
        "role=\"img\" aria-labelledby=\"t\">\n<title id=\"t\">{2}</title>\n<style>{3}</style>\n<defs>\n",
        number(plan_.width), number(plan_.height), escaped(plan_.title), style_sheet);
    for (const char type : sign_types) {
      add("<path id=\"{0}\" class=\"{0} z\" d=\"{1}\"/>\n", type, sign_path(type, plan_.style.sign));
      add("<path id=\"f{0}\" class=\"{0} z\" d=\"{1}\"/>\n", type, sign_path(type, folded_half));
    }
    add_mark_shapes();
    add("</defs>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n");
  }

  void add_mark_shapes() {
    for (const auto severity :
         {findings::Severity::note, findings::Severity::warning, findings::Severity::error}) {
      add("<g id=\"m{}\">{}</g>\n", static_cast<int>(severity), mark_shape(severity));
    }
  }

  void add_strips() {
    constexpr double around = 12.0;
    for (const Box& strip : plan_.strips) {
      add("<rect class=\"teil\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>\n",
          number(strip.left - around), number(strip.top), number(strip.right - strip.left + 2.0 * around),
          number(strip.bottom - strip.top));
    }
  }

  void add_lines() {
    for (const PlanLine& line : plan_.lines) {
      const std::string path = path_of(line);
      if (line.is_arm) add_border(line, path);
      add("<path class=\"{}\" stroke-width=\"{}\" d=\"{}\"/>\n", class_of(line.kind), number(line.width),
          path);
    }
    for (const PlanLine& line : plan_.lines) {
      if (const std::string arrow = arrow_path(line); !arrow.empty()) add_arrows(arrow);
    }
  }

  // Lines of one look are one path; the wider ones come later.
  void add_line_groups() {
    struct Group {
      std::string classes;
      std::string width;
      std::string path;
    };
    std::map<std::tuple<bool, long, LineKind, std::string>, Group> groups;
    std::string arrows;
    for (const PlanLine& line : plan_.lines) {
      const std::string path = path_of(line);
      if (line.is_arm) add_border(line, path);
      constexpr double steps = 4.0;
      const std::string sealing = sealing_words(line.sealing);
      Group& group = groups[{!line.is_arm, std::lround(line.width * steps), line.kind, sealing}];
      group.classes = std::string(class_of(line.kind)) + sealing;
      group.width = number(line.width);
      group.path += path;
      arrows += arrow_path(line);
    }
    for (const auto& [look, group] : groups) {
      add("<path class=\"{}\" stroke-width=\"{}\" d=\"{}\"/>\n", group.classes, group.width, group.path);
    }
    if (!arrows.empty()) add_arrows(arrows);
  }

  // The further class of a line in a page.
  [[nodiscard]] std::string sealing_words(const std::optional<double>& sealing) const {
    return is_inline_ && sealing ? fmt::format(" b{}", sealing_class(*sealing)) : "";
  }

  [[nodiscard]] std::string path_of(const PlanLine& line) const {
    return rounded_path(line.points, 1.4 * plan_.style.sign);
  }

  void add_border(const PlanLine& line, std::string_view path) {
    add("<path class=\"rand\" stroke-width=\"{}\" d=\"{}\"/>\n", number(line.width + 3.0), path);
  }

  void add_arrows(std::string_view path) { add("<path class=\"pfeil\" d=\"{}\"/>\n", path); }

  // In the middle of the longest stretch across.
  [[nodiscard]] std::string arrow_path(const PlanLine& line) const {
    const Point* begin = nullptr;
    double length = 3.0 * plan_.style.sign;
    for (std::size_t i = 1; i < line.points.size(); ++i) {
      const Point& from = line.points[i - 1];
      const Point& to = line.points[i];
      if (from.y != to.y || std::abs(to.x - from.x) <= length) continue;
      length = std::abs(to.x - from.x);
      begin = &from;
    }
    if (begin == nullptr) return {};
    const Point& end = *std::next(begin);
    const double size = arrow_size(line.width);
    const double side = end.x > begin->x ? size : -size;
    const Point middle{(begin->x + end.x) / 2.0, begin->y};
    return triangle({middle.x + side, middle.y}, {middle.x - side, middle.y - size},
                    {middle.x - side, middle.y + size});
  }

  static double arrow_size(double line_width) { return std::max(2.6, 0.42 * line_width + 1.0); }

  static std::string triangle(const Point& first, const Point& second, const Point& third) {
    std::string path;
    append_point(path, 'M', first);
    append_point(path, 'L', second);
    append_point(path, 'L', third);
    return path + 'Z';
  }

  void add_text(const Point& at, double size, std::string_view text, std::string_view css_class,
                std::string_view anchor = "") {
    add("<text x=\"{}\" y=\"{}\" font-size=\"{}\"", number(at.x), number(at.y), number(size));
    if (!css_class.empty()) add(" class=\"{}\"", css_class);
    if (!anchor.empty()) add(" text-anchor=\"{}\"", anchor);
    add(">{}</text>\n", escaped(text));
  }

  void add_edge_texts() {
    const double size = plan_.style.type_size;
    for (const EdgeText& text : plan_.edge_texts) {
      constexpr double gap = 6.0;
      switch (text.edge) {
        case Edge::top:
          add_text({text.at.x + gap + 2.0, text.at.y + size}, size, text.text, "leise");
          break;
        case Edge::bottom:
          add_text({text.at.x + gap + 2.0, text.at.y - gap}, size, text.text, "leise");
          add_arrows(triangle({text.at.x, text.at.y + 4.0}, {text.at.x - 4.0, text.at.y - 3.0},
                              {text.at.x + 4.0, text.at.y - 3.0}));
          break;
        case Edge::left:
          add_text({text.at.x, text.at.y - gap}, size, text.text, "leise");
          break;
        default:
          add_text({text.at.x, text.at.y - gap}, size, text.text, "leise", "end");
          break;
      }
    }
  }

  void add_node(const PlanNode& node) {
    add("<g id=\"e{}\"><title>{}</title>\n", node.element, escaped(node.tip));
    if (node.end != End::none) add_end(node);
    add("<use href=\"#{}\" x=\"{}\" y=\"{}\"/>\n", sign_of(node), number(node.at.x), number(node.at.y));
    for_folded(node, [&](char type, const Point& at) {
      add("<use href=\"#f{}\" x=\"{}\" y=\"{}\"/>\n", type, number(at.x), number(at.y));
    });
    if (node.mark) add_mark(node);
    add_label(node);
    add("</g>\n");
  }

  // Signs of one type are one path.
  void add_sign_groups() {
    std::map<char, std::string> signs;
    for (const PlanNode& node : plan_.nodes) {
      signs[sign_of(node)] += sign_path(sign_of(node), plan_.style.sign, node.at);
      for_folded(node, [&](char type, const Point& at) { signs[type] += sign_path(type, folded_half, at); });
    }
    for (const auto& [type, path] : signs) add("<path class=\"{} z\" d=\"{}\"/>\n", type, path);
  }

  static char sign_of(const PlanNode& node) { return has_sign(node.type) ? node.type : 'P'; }

  // The signs of folded sources stand one above the other beside the sign of their element.
  template <class Do>
  void for_folded(const PlanNode& node, const Do& act) const {
    constexpr double step = 2.2 * folded_half;
    Point at{node.at.x - node.half - folded_half - 1.0,
             node.at.y - step * (static_cast<double>(node.folded.size()) - 1.0) / 2.0};
    for (const char type : node.folded) {
      act(type, at);
      at.y += step;
    }
  }

  void add_mark(const PlanNode& node) {
    add("<use href=\"#m{}\" x=\"{}\" y=\"{}\"/>\n", static_cast<int>(*node.mark),
        number(node.at.x - node.half - 3.0), number(node.at.y - plan_.style.sign - 1.0));
  }

  void add_label(const PlanNode& node) {
    const Style& style = plan_.style;
    const double lines = static_cast<double>(node.label.size());
    double baseline = node.label_at.y - lines * style.line_height / 2.0 + 0.82 * style.line_height;
    for (const TextLine& line : node.label) {
      add_text({node.label_at.x, baseline}, style.type_size, line.text, class_of(line.tone));
      baseline += style.line_height;
    }
  }

  void add_end(const PlanNode& node) {
    const double size = arrow_size(node.end_width);
    const Point& foot = node.end_at;
    const double length = node.end == End::dead_end ? 8.0 : size * 2.0;
    add("<path class=\"wasser{}\" stroke-linecap=\"butt\" stroke-width=\"{}\" d=\"M{} {}V{}\"/>\n",
        sealing_words(node.sealing), number(node.end_width), number(node.at.x), number(node.at.y),
        number(foot.y - length));
    if (node.end == End::dead_end) {
      add("<path class=\"einseitig\" style=\"stroke-dasharray:none\" stroke-width=\"3\" d=\"M{} {}H{}\"/>\n",
          number(foot.x - 8.0), number(foot.y - length), number(foot.x + 8.0));
      return;
    }
    const double half = std::max(size, node.end_width / 2.0 + 2.5);
    add_arrows(triangle(foot, {foot.x - half, foot.y - length}, {foot.x + half, foot.y - length}));
    add_text({foot.x + node.end_width / 2.0 + 6.0, foot.y - 2.0}, plan_.style.type_size, node.end_text,
             "leise");
  }

  void add_heading() {
    const double scale = plan_.page_scale;
    add_text(plan_.title_at, 20.0 * scale, plan_.title, "titel");
    Point at = plan_.title_at;
    for (const std::string& line : plan_.subtitle) {
      at.y += 18.0 * scale;
      add_text(at, 12.0 * scale, line, "leise");
    }
  }

  void add_legend() {
    const double scale = plan_.page_scale;
    for (const LegendEntry& entry : plan_.legend) {
      add("<g transform=\"translate({} {}) scale({})\">", number(entry.at.x), number(entry.at.y),
          number(scale));
      add_legend_sign(entry);
      add("<text x=\"26\" y=\"4\" font-size=\"11.5\">{}</text></g>\n", escaped(entry.text));
    }
  }

  void add_legend_sign(const LegendEntry& entry) {
    switch (entry.kind) {
      case LegendEntry::Kind::type:
        add("<path class=\"{} z\" transform=\"translate(10 0)\" d=\"{}\"/>", entry.type,
            sign_path(entry.type, 7.0));
        break;
      case LegendEntry::Kind::folded:
        add("<path class=\"{} z\" transform=\"translate(10 0)\" d=\"{}\"/>", entry.type,
            sign_path(entry.type, 5.0));
        break;
      case LegendEntry::Kind::width:
        add("<path class=\"wasser\" stroke-linecap=\"butt\" stroke-width=\"{}\" d=\"M0 0H20\"/>",
            number(entry.width / (plan_.page_scale > 1.0 ? plan_.page_scale : 1.0)));
        break;
      case LegendEntry::Kind::dry:
        add("<path class=\"trocken\" stroke-width=\"1.5\" d=\"M0 0H20\"/>");
        break;
      case LegendEntry::Kind::one_sided:
        add("<path class=\"einseitig\" stroke-width=\"1.5\" d=\"M0 0H20\"/>");
        break;
      case LegendEntry::Kind::dead_end:
        add("<path class=\"wasser\" stroke-width=\"3\" d=\"M10 -7V3\"/><path class=\"einseitig\" "
            "style=\"stroke-dasharray:none\" stroke-width=\"3\" d=\"M3 3H17\"/>");
        break;
      case LegendEntry::Kind::mark:
        add("<use href=\"#m{}\" x=\"10\" y=\"0\"/>", static_cast<int>(entry.severity));
        break;
    }
  }

  static constexpr double folded_half = 3.2;

  const Plan& plan_;
  bool is_inline_ = false;
  std::string out_;
};

}  // namespace

std::string to_svg(const Plan& plan) {
  return Writer(plan).run();
}

std::string inline_svg(const Plan& plan, const InlineForm& form) {
  return Writer(plan).run_inline(form);
}

std::size_t sealing_class(double sealing) {
  return static_cast<std::size_t>(std::ranges::lower_bound(sealing_limits, sealing) - sealing_limits.begin());
}

}  // namespace schau::plan
