#include "KV_Schau/plan/sheet.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace schau::plan {

struct Sheet::GridPiece {
  std::uint32_t strip = 0;
  std::vector<GridPoint> points;
  Edge begin = Edge::none;
  Edge end = Edge::none;
};

namespace {

// Between what stands in neighbouring lanes, and in neighbouring rows.
constexpr double lane_gap = 4.0;
constexpr double row_gap = 7.0;
// A level with a line across takes its room, and the line this much beside it.
constexpr double level_gap = 3.0;
// Between a strip and its neighbour, and around the texts at its cut edges.
constexpr double strip_gap = 36.0;
constexpr double edge_height = 22.0;
constexpr double edge_width = 16.0;

constexpr double widest_sheet = 3.0;   // width by height without cuts
constexpr double tallest_sheet = 2.0;  // height by width
constexpr double good_shape = 1.4;     // width by height

// Where to cut a drawing of so many rows or lanes into parts: near even steps, each where the fewest lines
// cross. Returns the part of each row or lane.
std::vector<std::uint32_t> even_cuts(const std::vector<std::uint32_t>& crossings, std::uint32_t parts) {
  const auto count = static_cast<std::uint32_t>(crossings.size());
  std::vector<std::uint32_t> part_of(count, 0);
  const double step = static_cast<double>(count) / parts;
  const auto play = static_cast<std::uint32_t>(step / 6.0);
  std::uint32_t last = 0;
  for (std::uint32_t part = 1; part < parts; ++part) {
    const auto ideal = static_cast<std::uint32_t>(step * part);
    const std::uint32_t lowest = std::max(last + 1, ideal > play ? ideal - play : 1);
    const std::uint32_t highest = std::min(count - 1, std::max(lowest, ideal + play));
    if (lowest > highest) break;
    std::uint32_t best = std::clamp(ideal, lowest, highest);
    for (std::uint32_t at = lowest; at <= highest; ++at) {
      if (crossings[at] < crossings[best]) best = at;
    }
    std::fill(part_of.begin() + best, part_of.end(), part);
    last = best;
  }
  return part_of;
}

// The number of lines that cross from row (or lane) i - 1 to i, by i.
class Crossings {
 public:
  explicit Crossings(std::size_t count) : changes_(count + 1, 0) {}
  void add(std::uint32_t one_end, std::uint32_t other_end) {
    const auto [first, last] = std::minmax(one_end, other_end);
    ++changes_[first + 1];
    --changes_[last + 1];
  }
  [[nodiscard]] std::vector<std::uint32_t> counts() const {
    std::vector<std::uint32_t> sums(changes_.size() - 1);
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < sums.size(); ++i) sums[i] = static_cast<std::uint32_t>(sum += changes_[i]);
    return sums;
  }

 private:
  std::vector<std::int64_t> changes_;
};

std::uint32_t count_lanes(const GridContents& contents) {
  std::uint32_t last = 0;
  for (const GridContents::Thing& thing : contents.things) last = std::max(last, thing.lane);
  for (const GridContents::Line& line : contents.lines) {
    for (const GridPoint& point : line.route.points()) last = std::max(last, point.lane);
  }
  return last + 1;
}

std::uint32_t count_rows(const GridContents& contents) {
  std::uint32_t last = 0;
  for (const GridContents::Thing& thing : contents.things) last = std::max(last, thing.row);
  return last + 1;
}

}  // namespace

// What the lanes and levels of each strip have to hold.
class Sheet::Measuring {
 public:
  Measuring(const Sheet& sheet, const GridContents& contents) : sheet_(sheet), contents_(contents) {}

  std::vector<Strip> run() {
    const std::uint32_t count =
        sheet_.strip_of_.empty() ? 1 : 1 + *std::ranges::max_element(sheet_.strip_of_);
    strips_.resize(count);
    for (Strip& strip : strips_) {
      strip.first_row = strip.first_lane = std::numeric_limits<std::uint32_t>::max();
    }
    for_all([&](const Strip& strip, const GridPoint& point) { stretch(strips_[index(strip)], point); });
    for (Strip& strip : strips_) make_room(strip);
    collect();
    for (std::size_t i = 0; i < strips_.size(); ++i) set_places(strips_[i], demands_[i]);
    return std::move(strips_);
  }

 private:
  struct Demands {
    std::vector<double> left, right, up, down;  // by lane, by row
    std::vector<double> joining, leaving;       // by row: the widest line across on the level
    std::vector<std::uint32_t> tracks;          // by row: of the level on which it leaves
    Room edges;                                 // of the strip, for the texts at its cuts
  };

  [[nodiscard]] std::size_t index(const Strip& strip) const {
    return static_cast<std::size_t>(&strip - strips_.data());
  }

  template <class Do>
  void for_all(const Do& act) {
    for (const GridContents::Thing& thing : contents_.things) {
      const GridPoint point{thing.lane, level_of(thing.row)};
      act(strips_[sheet_.strip_of(point)], point);
    }
    for (const GridContents::Line& line : contents_.lines) {
      for (const GridPiece& piece : sheet_.cut(line.route)) {
        for (const GridPoint& point : piece.points) act(strips_[piece.strip], point);
      }
    }
  }

  static void stretch(Strip& strip, const GridPoint& point) {
    const std::uint32_t row = row_of_level(point.level);
    strip.first_row = std::min(strip.first_row, row);
    strip.last_row = std::max(strip.last_row, row);
    strip.first_lane = std::min(strip.first_lane, point.lane);
    strip.last_lane = std::max(strip.last_lane, point.lane);
  }

  void make_room(const Strip& strip) {
    Demands demands;
    const std::size_t lanes = strip.last_lane - strip.first_lane + 1;
    const std::size_t rows = strip.last_row - strip.first_row + 1;
    demands.left.assign(lanes, 0.0);
    demands.right.assign(lanes, 0.0);
    demands.up.assign(rows, 0.0);
    demands.down.assign(rows, 0.0);
    demands.joining.assign(rows, 0.0);
    demands.leaving.assign(rows, 0.0);
    demands.tracks.assign(rows, 1);
    demands_.push_back(std::move(demands));
  }

  static void raise(double& demand, double wanted) { demand = std::max(demand, wanted); }

  void collect() {
    for (const GridContents::Thing& thing : contents_.things) {
      const std::uint32_t number = sheet_.strip_of({thing.lane, level_of(thing.row)});
      Demands& demands = demands_[number];
      const std::size_t lane = thing.lane - strips_[number].first_lane;
      const std::size_t row = thing.row - strips_[number].first_row;
      raise(demands.left[lane], thing.room.left);
      raise(demands.right[lane], thing.room.right);
      raise(demands.up[row], thing.room.up);
      raise(demands.down[row], thing.room.down);
    }
    for (const GridContents::Line& line : contents_.lines) {
      for (const GridPiece& piece : sheet_.cut(line.route)) collect_piece(piece, line);
    }
  }

  void collect_piece(const GridPiece& piece, const GridContents::Line& line) {
    Demands& demands = demands_[piece.strip];
    const Strip& strip = strips_[piece.strip];
    const double beside = line.width / 2.0 + level_gap;
    for (std::size_t i = 0; i < piece.points.size(); ++i) {
      const GridPoint& point = piece.points[i];
      const std::size_t lane = point.lane - strip.first_lane;
      raise(demands.left[lane], beside);
      raise(demands.right[lane], beside);
      const bool runs_across = i + 1 < piece.points.size() && piece.points[i + 1].level == point.level;
      const bool leaves_strip = piece.end == Edge::left || piece.end == Edge::right ||
                                piece.begin == Edge::left || piece.begin == Edge::right;
      if (runs_across || leaves_strip) mark_level(demands, strip, point, line.width);
    }
    const auto note_edge = [&](Edge edge, const GridPoint& point) {
      if (edge == Edge::none) return;
      const std::size_t lane = point.lane - strip.first_lane;
      if (edge == Edge::top || edge == Edge::bottom) raise(demands.right[lane], beside + line.text_width);
      if (edge == Edge::top) raise(demands.edges.up, edge_height);
      if (edge == Edge::bottom) raise(demands.edges.down, edge_height);
      if (edge == Edge::left) raise(demands.edges.left, edge_width + line.text_width);
      if (edge == Edge::right) raise(demands.edges.right, edge_width + line.text_width);
    };
    note_edge(piece.begin, piece.points.front());
    note_edge(piece.end, piece.points.back());
  }

  static void mark_level(Demands& demands, const Strip& strip, const GridPoint& point, double width) {
    const std::size_t row = row_of_level(point.level) - strip.first_row;
    if (point.level % 3 == 1) raise(demands.joining[row], width);
    if (point.level % 3 != 2) return;
    raise(demands.leaving[row], width);
    demands.tracks[row] = std::max(demands.tracks[row], point.track + 1);
  }

  static void set_places(Strip& strip, const Demands& demands) {
    double x = demands.edges.left;
    for (std::size_t i = 0; i < demands.left.size(); ++i) {
      strip.lane_x.push_back(x + demands.left[i]);
      const double taken = demands.left[i] + demands.right[i];
      x += taken + (taken > 0.0 ? lane_gap : 0.0);
    }
    strip.width = x + demands.edges.right;
    strip.level_y.resize(3 * demands.up.size());
    strip.track_pitch.resize(demands.up.size());
    double y = demands.edges.up;
    const auto level_room = [](double width) { return width > 0.0 ? width + 2.0 * level_gap : 0.0; };
    for (std::size_t row = demands.up.size(); row-- > 0;) {
      const double joining = level_room(demands.joining[row]);
      const double pitch = level_room(demands.leaving[row]);
      const double leaving = pitch * demands.tracks[row];
      strip.track_pitch[row] = pitch;
      strip.level_y[3 * row + 2] = y + joining / 2.0;
      y += joining + demands.up[row];
      strip.level_y[3 * row + 1] = y;
      y += demands.down[row];
      strip.level_y[3 * row] = y + pitch / 2.0;
      y += leaving + (row > 0 ? row_gap : 0.0);
    }
    strip.height = y + demands.edges.down;
  }

  const Sheet& sheet_;
  const GridContents& contents_;
  std::vector<Strip> strips_;
  std::vector<Demands> demands_;
};

Sheet::Sheet(const GridContents& contents) {
  measure(contents);
  choose_cuts(contents);
  if (!strip_of_.empty()) measure(contents);
  arrange();
}

void Sheet::measure(const GridContents& contents) {
  strips_ = Measuring(*this, contents).run();
}

void Sheet::choose_cuts(const GridContents& contents) {
  if (contents.things.empty()) return;
  const double shape = strips_.front().width / std::max(strips_.front().height, 1.0);
  if (shape <= widest_sheet && shape * tallest_sheet >= 1.0) return;
  cut_rows_ = shape < 1.0;
  const std::uint32_t count = cut_rows_ ? count_rows(contents) : count_lanes(contents);
  const double parts = std::sqrt(cut_rows_ ? good_shape / shape : shape / good_shape);
  const auto wanted = std::min(static_cast<std::uint32_t>(std::lround(parts)), count);
  if (wanted < 2) return;
  Crossings crossings(count);
  for (const GridContents::Line& line : contents.lines) {
    const auto points = line.route.points();
    for (std::size_t i = 1; i < points.size(); ++i) {
      if (cut_rows_) {
        crossings.add(row_of_level(points[i - 1].level), row_of_level(points[i].level));
      } else {
        crossings.add(points[i - 1].lane, points[i].lane);
      }
    }
  }
  strip_of_ = even_cuts(crossings.counts(), wanted);
  if (!cut_rows_) return;
  // What lies upstream comes first.
  const std::uint32_t last = strip_of_.back();
  for (std::uint32_t& strip : strip_of_) strip = last - strip;
}

std::uint32_t Sheet::strip_of(const GridPoint& point) const {
  if (strip_of_.empty()) return 0;
  return strip_of_[cut_rows_ ? row_of_level(point.level) : point.lane];
}

// A line that leaves a strip goes on in the strip of its next corner, whatever lies between.
std::vector<Sheet::GridPiece> Sheet::cut(const Route& route) const {
  std::vector<GridPiece> pieces;
  const auto points = route.points();
  pieces.push_back({strip_of(points.front()), {points.front()}});
  for (const GridPoint& point : points.subspan(1)) {
    const std::uint32_t strip = strip_of(point);
    if (strip == pieces.back().strip) {
      pieces.back().points.push_back(point);
      continue;
    }
    const GridPoint& last = pieces.back().points.back();
    GridPiece next{strip, {point}};
    if (cut_rows_) {
      pieces.back().end = Edge::bottom;
      next.begin = Edge::top;
    } else {
      const bool goes_right = point.lane > last.lane;
      pieces.back().end = goes_right ? Edge::right : Edge::left;
      next.begin = goes_right ? Edge::left : Edge::right;
    }
    pieces.push_back(std::move(next));
  }
  return pieces;
}

void Sheet::arrange() {
  for (Strip& strip : strips_) {
    strip.origin = cut_rows_ ? Point{width_ == 0.0 ? 0.0 : width_ + strip_gap, 0.0}
                             : Point{0.0, height_ == 0.0 ? 0.0 : height_ + strip_gap};
    width_ = std::max(width_, strip.origin.x + strip.width);
    height_ = std::max(height_, strip.origin.y + strip.height);
  }
}

Point Sheet::place(const Strip& strip, const GridPoint& point) const {
  const double pitch =
      point.track == 0 ? 0.0 : strip.track_pitch[row_of_level(point.level) - strip.first_row];
  return {strip.origin.x + strip.lane_x[point.lane - strip.first_lane],
          strip.origin.y + strip.level_y[point.level + 1 - level_of(strip.first_row)] + pitch * point.track};
}

Point Sheet::place(std::uint32_t lane, std::uint32_t row) const {
  const GridPoint point{lane, level_of(row)};
  return place(strips_[strip_of(point)], point);
}

std::vector<Piece> Sheet::pieces(const Route& route) const {
  std::vector<Piece> pieces;
  for (const GridPiece& cut_piece : cut(route)) {
    const Strip& strip = strips_[cut_piece.strip];
    Piece piece{cut_piece.strip, {}, cut_piece.begin, cut_piece.end};
    for (const GridPoint& point : cut_piece.points) piece.points.push_back(place(strip, point));
    const auto at_edge = [&](Edge edge, Point point) {
      if (edge == Edge::top) point.y = strip.origin.y;
      if (edge == Edge::bottom) point.y = strip.origin.y + strip.height;
      if (edge == Edge::left) point.x = strip.origin.x;
      if (edge == Edge::right) point.x = strip.origin.x + strip.width;
      return point;
    };
    if (piece.begin != Edge::none) {
      piece.points.insert(piece.points.begin(), at_edge(piece.begin, piece.points.front()));
    }
    if (piece.end != Edge::none) piece.points.push_back(at_edge(piece.end, piece.points.back()));
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

}  // namespace schau::plan
