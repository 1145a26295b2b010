#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "KV_Schau/plan/facts.h"
#include "KV_Schau/plan/labels.h"
#include "KV_Schau/plan/selection.h"
#include "KV_Schau/plan/sheet.h"

namespace schau::plan {

/// A rectangle.
struct Box {
  double left = 0.0;
  double top = 0.0;
  double right = 0.0;
  double bottom = 0.0;
};

/// What is at the foot of an element that drains into nothing drawn.
enum class End : std::uint8_t {
  none,     ///< it drains into a drawn element
  outlet,   ///< the outlet of the system
  goes_on,  ///< the river goes on, but not in this plan
  dead_end  ///< nothing takes it in
};

/// An element of the plan.
struct PlanNode {
  Element element = 0;
  char type = ' ';
  Point at;           ///< of its sign
  double half = 0.0;  ///< the larger half width of its sign and of the line through it
  Point label_at;     ///< the middle of the left edge of its label
  std::vector<TextLine> label;
  std::vector<char> folded;                ///< the types of the sources folded into it, each once
  std::optional<findings::Severity> mark;  ///< the gravest of its findings
  End end = End::none;
  Point end_at;          ///< where the line at its foot ends
  std::string end_text;  ///< beside it
  double end_width = 0.0;
  std::optional<double> sealing;  ///< of all that drains into it, a fraction
  std::string tip;
};

enum class LineKind : std::uint8_t {
  water,
  dry,       ///< nothing goes this way
  one_sided  ///< only one of its ends names the link
};

/// A line from an element to the one that it drains into, or a piece of it where the drawing is cut.
struct PlanLine {
  Element from = 0;
  Element to = 0;
  std::vector<Point> points;  ///< with the flow; corners are to be rounded
  double width = 0.0;
  LineKind kind = LineKind::water;
  bool is_arm = false;              ///< not the larger part of what it comes from
  std::optional<double> sealing{};  ///< of all that drains into the element that it comes from, a fraction
  Edge begin = Edge::none;
  Edge end = Edge::none;
};

/// A text at a cut edge: where a line comes from or goes on to.
struct EdgeText {
  Point at;
  Edge edge = Edge::none;
  std::string text;
};

/// An entry of the legend.
struct LegendEntry {
  enum class Kind : std::uint8_t { type, width, dry, one_sided, mark, dead_end, folded };
  Kind kind = Kind::type;
  Point at;  ///< the left end of its sign, half its height
  std::string text;
  char type = ' ';     ///< of a type or folded type
  double width = 0.0;  ///< of a line
  findings::Severity severity = findings::Severity::note;
};

/// The sizes of what is drawn, in points of 1/96 inch.
struct Style {
  bool detailed = true;
  double type_size = 11.0;
  double line_height = 13.0;
  double sign = 7.0;      ///< half the height of a sign
  double thinnest = 1.2;  ///< line
  double widest = 12.0;   ///< line
};
/// For plans with few elements, and with many. The widest line grows with the plan, so that the rivers are
/// seen when the whole page is in view.
inline constexpr Style detailed_style{};
Style compact_style(std::uint32_t element_count);

/// A system plan with the place of everything on the page.
struct Plan {
  double width = 0.0;
  double height = 0.0;
  Style style;
  double page_scale = 1.0;  ///< of title and legend, which are to be read with the whole page in view
  std::string title;
  std::vector<std::string> subtitle;
  Point title_at;
  double drawing_top = 0.0;  ///< where the heading ends
  std::vector<PlanNode> nodes;
  std::vector<PlanLine> lines;  ///< the widest last, arms before all others
  std::vector<EdgeText> edge_texts;
  std::vector<Box> strips;  ///< when there are several
  std::vector<LegendEntry> legend;
  double widest_area = 0.0;  ///< km², of the widest line
};

/// Draws up the plan of a variant. Linear in its elements.
Plan plan_of(const Facts& facts, const Options& options);

/// The box of a node's sign, and that of its label.
Box sign_box(const Plan& plan, const PlanNode& node);
Box label_box(const Plan& plan, const PlanNode& node);

}  // namespace schau::plan
