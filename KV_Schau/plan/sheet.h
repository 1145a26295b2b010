#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace schau::plan {

/// A place on a sheet. Points of 1/96 inch, to the right and downwards.
struct Point {
  double x = 0.0;
  double y = 0.0;
};

/// A place in the grid of lanes and rows. Between two rows run two more levels for lines across: one close
/// below the upper row, where lines leave, and one close above the lower row, where lines join.
struct GridPoint {
  std::uint32_t lane = 0;
  std::uint32_t level = 0;  ///< counts upwards, see `level_of`, `joining_level` and `leaving_level`
  std::uint32_t track = 0;  ///< of a leaving level: lines side by side across it, from above

  bool operator==(const GridPoint&) const = default;
};
constexpr std::uint32_t level_of(std::uint32_t row) {
  return 3 * row;
}
constexpr std::uint32_t joining_level(std::uint32_t row) {
  return 3 * row + 1;
}
/// `row` is above 0.
constexpr std::uint32_t leaving_level(std::uint32_t row) {
  return 3 * row - 1;
}
constexpr std::uint32_t row_of_level(std::uint32_t level) {
  return (level + 1) / 3;
}

/// The way of a line, with the flow: from corner to corner, along lanes and levels by turns.
class Route {
 public:
  void add(const GridPoint& point) {
    if (size_ == 0 || points_[size_ - 1] != point) points_[size_++] = point;
  }
  [[nodiscard]] std::span<const GridPoint> points() const { return std::span(points_).first(size_); }

 private:
  std::array<GridPoint, 6> points_{};
  std::size_t size_ = 0;
};

/// The room that something takes around its place.
struct Room {
  double left = 0.0;
  double right = 0.0;
  double up = 0.0;
  double down = 0.0;
};

/// What a sheet has to hold: things at places of the grid, and lines.
struct GridContents {
  struct Thing {
    std::uint32_t lane = 0;
    std::uint32_t row = 0;
    Room room;
  };
  struct Line {
    Route route;
    double width = 0.0;
    double text_width = 0.0;  ///< of the text where the line is cut
  };
  std::vector<Thing> things;
  std::vector<Line> lines;
};

/// Where a piece of a line ends at the edge of a strip, and goes on in another one.
enum class Edge : std::uint8_t { none, top, bottom, left, right };

/// A part of the drawing: some of its rows over all lanes, or some of its lanes over all rows.
struct Strip {
  std::uint32_t first_row = 0;
  std::uint32_t last_row = 0;
  std::uint32_t first_lane = 0;
  std::uint32_t last_lane = 0;
  Point origin;  ///< top left
  double width = 0.0;
  double height = 0.0;
  std::vector<double> lane_x;       ///< by lane from `first_lane` on, from the origin
  std::vector<double> level_y;      ///< by level, from the one on which `first_row` leaves, from the origin
  std::vector<double> track_pitch;  ///< by row: between the tracks of the level on which it leaves
};

/// A piece of a line in one strip.
struct Piece {
  std::uint32_t strip = 0;
  std::vector<Point> points;
  Edge begin = Edge::none;
  Edge end = Edge::none;
};

/// The grid in points. A drawing that would be much longer than wide or the other way is cut into strips,
/// where few lines cross the cut.
class Sheet {
 public:
  explicit Sheet(const GridContents& contents);

  [[nodiscard]] const std::vector<Strip>& strips() const { return strips_; }
  [[nodiscard]] double width() const { return width_; }
  [[nodiscard]] double height() const { return height_; }
  [[nodiscard]] Point place(std::uint32_t lane, std::uint32_t row) const;
  [[nodiscard]] std::vector<Piece> pieces(const Route& route) const;

 private:
  struct GridPiece;
  class Measuring;

  [[nodiscard]] std::uint32_t strip_of(const GridPoint& point) const;
  [[nodiscard]] std::vector<GridPiece> cut(const Route& route) const;
  [[nodiscard]] Point place(const Strip& strip, const GridPoint& point) const;
  void choose_cuts(const GridContents& contents);
  void measure(const GridContents& contents);
  void arrange();

  bool cut_rows_ = true;
  std::vector<std::uint32_t> strip_of_;  // by row or by lane; empty: all in one
  std::vector<Strip> strips_;
  double width_ = 0.0;
  double height_ = 0.0;
};

}  // namespace schau::plan
