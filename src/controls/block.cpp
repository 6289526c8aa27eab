#include "controls/block.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <utility>

namespace velgrove {
namespace {

constexpr double QuarterTurn = 90;

double radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

/// The space taken by what was put in so far.
class Bounds {
 public:
  void add(Point point) { add(point, 0); }
  void add(Point middle, double radius) {
    m_extents = {.left = std::min(m_extents.left, middle.x - radius),
                 .top = std::max(m_extents.top, middle.y + radius),
                 .right = std::max(m_extents.right, middle.x + radius),
                 .bottom = std::min(m_extents.bottom, middle.y - radius)};
  }
  [[nodiscard]] bool isEmpty() const { return m_extents.left > m_extents.right; }
  [[nodiscard]] const Extents& extents() const { return m_extents; }

 private:
  static constexpr double Infinity = std::numeric_limits<double>::infinity();
  Extents m_extents{.left = Infinity, .top = -Infinity, .right = -Infinity, .bottom = Infinity};
};

/// Adds what a primitive takes where its block is placed.
struct Measure {
  const Placing& placing;
  Bounds& bounds;

  void operator()(const Polyline& line) const {
    for (const Point& point : line.points) bounds.add(placed(placing, point));
  }
  void operator()(const Circle& circle) const {
    bounds.add(placed(placing, circle.middle), circle.radius * placing.scale);
  }
  void operator()(const Arc& arc) const {
    const Point middle = placed(placing, arc.middle);
    const double from = arc.from + placing.angle;
    const double to = arc.to + placing.angle;
    const auto addAt = [&](double degrees) {
      const double radius = arc.radius * placing.scale;
      bounds.add({.x = middle.x + (radius * std::cos(radians(degrees))),
                  .y = middle.y + (radius * std::sin(radians(degrees)))});
    };
    addAt(from);
    addAt(to);
    for (double turn = std::ceil(from / QuarterTurn) * QuarterTurn; turn < to; turn += QuarterTurn)
      addAt(turn);
  }
};

/// The space that primitives take where they are placed; none without any point.
std::optional<Extents> measured(const std::vector<Primitive>& primitives, const Placing& placing) {
  Bounds bounds;
  for (const Primitive& primitive : primitives) std::visit(Measure{placing, bounds}, primitive);
  return bounds.isEmpty() ? std::nullopt : std::optional(bounds.extents());
}

}  // namespace

Point turned(Point point, Point about, double degrees) {
  const double c = std::cos(radians(degrees));
  const double s = std::sin(radians(degrees));
  const double dx = point.x - about.x;
  const double dy = point.y - about.y;
  return {.x = about.x + (dx * c) - (dy * s), .y = about.y + (dx * s) + (dy * c)};
}

Point placed(const Placing& placing, Point point) {
  const Point scaled{.x = point.x * placing.scale, .y = point.y * placing.scale};
  const Point turnedPoint = placing.angle == 0 ? scaled : turned(scaled, {}, placing.angle);
  return {.x = placing.at.x + turnedPoint.x, .y = placing.at.y + turnedPoint.y};
}

std::shared_ptr<const Block> makeBlock(std::string name, std::vector<Primitive> primitives) {
  const Extents extents = measured(primitives, {}).value_or(Extents{});
  return std::make_shared<const Block>(
      Block{.name = std::move(name), .primitives = std::move(primitives), .extents = extents});
}

Extents extentsOf(const Block& block, const Placing& placing) {
  const Extents& own = block.extents;
  if (placing.angle != 0)
    return measured(block.primitives, placing)
        .value_or(Extents{placing.at.x, placing.at.y, placing.at.x, placing.at.y});
  const Point leftTop = placed(placing, {.x = own.left, .y = own.top});
  const Point rightBottom = placed(placing, {.x = own.right, .y = own.bottom});
  return {.left = leftTop.x, .top = leftTop.y, .right = rightBottom.x, .bottom = rightBottom.y};
}

Extents joined(const Extents& a, const Extents& b) {
  return {.left = std::min(a.left, b.left),
          .top = std::max(a.top, b.top),
          .right = std::max(a.right, b.right),
          .bottom = std::min(a.bottom, b.bottom)};
}

bool holds(const Extents& extents, Point point) {
  return point.x >= extents.left && point.x <= extents.right && point.y >= extents.bottom &&
         point.y <= extents.top;
}

}  // namespace velgrove
