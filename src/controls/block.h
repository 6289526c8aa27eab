#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace velgrove {

struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

/// A rectangle along the axes, or the space that something takes; y grows upwards, so that `top` is the
/// larger.
struct Extents {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  friend bool operator==(const Extents&, const Extents&) = default;

  [[nodiscard]] double width() const { return right - left; }
  [[nodiscard]] double height() const { return top - bottom; }
  [[nodiscard]] Point middle() const { return {.x = (left + right) / 2, .y = (top + bottom) / 2}; }
};

/// A chain of straight lines; two points make a single line. A closed one runs back to its first point.
struct Polyline {
  std::vector<Point> points;
  bool closed = false;
  friend bool operator==(const Polyline&, const Polyline&) = default;
};

struct Circle {
  Point middle;
  double radius = 0;
  friend bool operator==(const Circle&, const Circle&) = default;
};

/// A part of a circle, anticlockwise from one angle to the other, in degrees; `to` is above `from`.
struct Arc {
  Point middle;
  double radius = 0;
  double from = 0;
  double to = 0;
  friend bool operator==(const Arc&, const Arc&) = default;
};

using Primitive = std::variant<Polyline, Circle, Arc>;

/// A drawing that stands in other drawings as one shape. It never changes, so that many shapes and pictures
/// can share it.
struct Block {
  std::string name;
  std::vector<Primitive> primitives;
  Extents extents;  ///< as it was drawn; a point at its origin when it is empty
  friend bool operator==(const Block&, const Block&) = default;
};

[[nodiscard]] std::shared_ptr<const Block> makeBlock(std::string name, std::vector<Primitive> primitives);

/// How an insert places its block: scaled, then turned anticlockwise by degrees, then moved.
struct Placing {
  Point at;
  double scale = 1;
  double angle = 0;
};

/// A point turned anticlockwise about another, by degrees.
[[nodiscard]] Point turned(Point point, Point about, double degrees);
/// A point of the block where the placing puts it.
[[nodiscard]] Point placed(const Placing& placing, Point point);
/// The true extents of a placed block.
[[nodiscard]] Extents extentsOf(const Block& block, const Placing& placing);
/// What two take together.
[[nodiscard]] Extents joined(const Extents& a, const Extents& b);
[[nodiscard]] bool holds(const Extents& extents, Point point);

}  // namespace velgrove
