#include "plot/dxf_import.h"

#include <clocale>
#include <cmath>
#include <dime/Input.h>
#include <dime/Model.h>
#include <dime/entities/Arc.h>
#include <dime/entities/Block.h>
#include <dime/entities/Circle.h>
#include <dime/entities/Insert.h>
#include <dime/entities/LWPolyline.h>
#include <dime/entities/Line.h>
#include <dime/entities/Polyline.h>
#include <dime/entities/Vertex.h>
#include <dime/sections/EntitiesSection.h>
#include <new>
#include <numbers>

#include "controls/files.h"
#include "plot/dxf_check.h"

namespace velgrove {
namespace {

constexpr double StepOfArc = 5;       // degrees of a chord, where an arc becomes a chain of lines
constexpr double SliverOfArc = 1e-3;  // degrees; a shape file has no digits for less
constexpr int DeepestNesting = 16;
constexpr int MostEntities = 20000;

/// The reader takes numbers as the user's language writes them; a drawing has points, not commas.
class NumbersWithPoints {
 public:
  NumbersWithPoints() : m_plain(newlocale(LC_NUMERIC_MASK, "C", nullptr)), m_before(uselocale(m_plain)) {}
  ~NumbersWithPoints() {
    uselocale(m_before);
    freelocale(m_plain);
  }
  NumbersWithPoints(const NumbersWithPoints&) = delete;
  NumbersWithPoints& operator=(const NumbersWithPoints&) = delete;

 private:
  locale_t m_plain;
  locale_t m_before;
};

/// Where the drawing puts what it holds: as it is, or through the inserts around it.
struct Map {
  double xx = 1, xy = 0, dx = 0;
  double yx = 0, yy = 1, dy = 0;

  [[nodiscard]] Point operator()(Point p) const {
    return {.x = (xx * p.x) + (xy * p.y) + dx, .y = (yx * p.x) + (yy * p.y) + dy};
  }
  /// First `inner`, then this.
  [[nodiscard]] Map after(const Map& inner) const {
    const Point moved = (*this)({.x = inner.dx, .y = inner.dy});
    return {.xx = (xx * inner.xx) + (xy * inner.yx),
            .xy = (xx * inner.xy) + (xy * inner.yy),
            .dx = moved.x,
            .yx = (yx * inner.xx) + (yy * inner.yx),
            .yy = (yx * inner.xy) + (yy * inner.yy),
            .dy = moved.y};
  }
  [[nodiscard]] bool isIdentity() const { return *this == Map{}; }
  friend bool operator==(const Map&, const Map&) = default;
};

double radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

Point pointOf(const dimeVec3f& vector) {
  return {.x = vector[0], .y = vector[1]};
}

double number(const dimeEntity& entity, int groupCode) {
  dimeParam value;
  return entity.getRecord(groupCode, value) ? value.double_data : 0;
}

/// A flat thing drawn on the back of the paper: its x runs the other way.
Map frontOrBack(const dimeEntity& entity) {
  constexpr int ExtrusionZ = 230;
  return number(entity, ExtrusionZ) < 0 ? Map{.xx = -1} : Map{};
}

class Import {
 public:
  explicit Import(const std::filesystem::path& file) : m_file(file) {}

  std::vector<Primitive> read() {
    checkExchangeDrawing(readFile(m_file), m_file);
    const NumbersWithPoints plain;
    dimeModel model(true);  // with memory of its own, freed as a whole
    load(model);
    // Sections of this name are of no other class.
    auto* const section = static_cast<dimeEntitiesSection*>(model.findSection("ENTITIES"));
    for (int i = 0; section != nullptr && i < section->getNumEntities(); ++i)
      take(*section->getEntity(i), {}, 0);
    if (m_primitives.empty()) fail("holds nothing to draw");
    return std::move(m_primitives);
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const {
    throw RunTimeError(Fault::File, m_file.string() + ": " + reason);
  }

  void load(dimeModel& model) const {
    dimeInput input;
    if (!model.init() || !input.setFile(m_file.c_str())) fail("can't be read");
    try {
      if (model.read(&input)) return;
    } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): a count that can't be true
    }
    fail("line " + std::to_string(input.getFilePosition()) + ": isn't understood");
  }

  void take(dimeEntity& entity, const Map& map, int depth) {
    if (++m_taken > MostEntities || depth > DeepestNesting) fail("is too large for a symbol");
    switch (entity.typeId()) {
      case dimeBase::dimeLineType:
        return take(static_cast<const dimeLine&>(entity), map);
      case dimeBase::dimeCircleType:
        return take(static_cast<const dimeCircle&>(entity), map);
      case dimeBase::dimeArcType:
        return take(static_cast<const dimeArc&>(entity), map);
      case dimeBase::dimeLWPolylineType:
        return take(static_cast<const dimeLWPolyline&>(entity), map);
      case dimeBase::dimePolylineType:
        return take(static_cast<dimePolyline&>(entity), map);
      case dimeBase::dimeInsertType:
        return take(static_cast<const dimeInsert&>(entity), map, depth);
      default:
        return;
    }
  }

  void take(const dimeLine& line, const Map& map) {
    add({map(pointOf(line.getCoords(0))), map(pointOf(line.getCoords(1)))}, false);
  }

  void take(const dimeCircle& circle, const Map& map) {
    round(pointOf(circle.getCenter()), circle.getRadius(), 0, 360, map.after(frontOrBack(circle)));
  }

  void take(const dimeArc& arc, const Map& map) {
    dimeVec3f middle;
    arc.getCenter(middle);
    check({.x = arc.getStartAngle(), .y = arc.getEndAngle()});
    double to = arc.getEndAngle();
    while (to <= arc.getStartAngle()) to += 360;
    round(pointOf(middle), arc.getRadius(), arc.getStartAngle(), to, map.after(frontOrBack(arc)));
  }

  void take(const dimeLWPolyline& line, const Map& map) {
    std::vector<Corner> corners;
    const bool known = line.getXCoords() != nullptr;
    for (int i = 0; known && i < line.getNumVertices(); ++i)
      corners.push_back(
          {.at = {.x = line.getXCoords()[i], .y = line.getYCoords()[i]}, .bulge = line.getBulges()[i]});
    chain(corners, (line.getFlags() & dimePolyline::CLOSED) != 0, map.after(frontOrBack(line)));
  }

  void take(dimePolyline& line, const Map& map) {
    constexpr int Bulge = 42;
    if (line.getType() != dimePolyline::POLYLINE) return;
    std::vector<Corner> corners;
    for (int i = 0; i < line.getNumCoordVertices(); ++i) {
      const dimeVertex& vertex = *line.getCoordVertex(i);
      corners.push_back({.at = pointOf(vertex.getCoords()), .bulge = number(vertex, Bulge)});
    }
    chain(corners, (line.getFlags() & dimePolyline::CLOSED) != 0, map.after(frontOrBack(line)));
  }

  void take(const dimeInsert& insert, const Map& map, int depth) {
    dimeBlock* const block = insert.getBlock();
    if (block == nullptr) return;
    const double c = std::cos(radians(insert.getRotAngle()));
    const double s = std::sin(radians(insert.getRotAngle()));
    const Point scale = pointOf(insert.getScale());
    const Point at = pointOf(insert.getInsertionPoint());
    const Point base = pointOf(block->getBasePoint());
    const Map placed{
        .xx = c * scale.x, .xy = -s * scale.y, .dx = at.x, .yx = s * scale.x, .yy = c * scale.y, .dy = at.y};
    const Map inner = map.after(frontOrBack(insert)).after(placed).after({.dx = -base.x, .dy = -base.y});
    for (int i = 0; i < block->getNumEntities(); ++i) take(*block->getEntity(i), inner, depth + 1);
  }

  /// A corner of a polyline, and how the line runs on from it: the tangent of a quarter of the arc's angle.
  struct Corner {
    Point at;
    double bulge = 0;
  };

  void chain(const std::vector<Corner>& corners, bool closed, const Map& map) {
    std::vector<Point> points;
    for (std::size_t i = 0; i < corners.size(); ++i) {
      points.push_back(corners[i].at);
      const bool last = i + 1 == corners.size();
      if (corners[i].bulge != 0 && (closed || !last))
        arcTo(points, corners[last ? 0 : i + 1].at, corners[i].bulge);
    }
    for (Point& point : points) point = map(point);
    add(std::move(points), closed);
  }

  /// Adds the points between the last one and the next corner.
  static void arcTo(std::vector<Point>& points, Point to, double bulge) {
    const Point from = points.back();
    const double aside = (1 - (bulge * bulge)) / (4 * bulge);  // of the middle, in lengths of the chord
    const Point middle{.x = ((from.x + to.x) / 2) - (aside * (to.y - from.y)),
                       .y = ((from.y + to.y) / 2) + (aside * (to.x - from.x))};
    const double turn = 4 * std::atan(bulge) * 180 / std::numbers::pi;
    const auto steps = std::ceil(std::abs(turn) / StepOfArc);
    for (double step = 1; step < steps; ++step) points.push_back(turned(from, middle, turn * step / steps));
  }

  /// A circle or an arc. An insert may stretch it, so that there it becomes a chain of lines.
  void round(Point middle, double radius, double from, double to, const Map& map) {
    const bool whole = to - from >= 360 - SliverOfArc;
    check(middle);
    check({.x = radius, .y = radius});
    if (radius <= 0 || to - from < SliverOfArc) return;
    const double turns = 360 * std::floor(from / 360);
    from -= turns;
    to -= turns;
    if (map.isIdentity()) {
      if (whole)
        m_primitives.emplace_back(Circle{.middle = middle, .radius = radius});
      else
        m_primitives.emplace_back(Arc{.middle = middle, .radius = radius, .from = from, .to = to});
      return;
    }
    std::vector<Point> points;
    const double steps = std::ceil((to - from) / StepOfArc);
    for (double step = 0; step < steps + (whole ? 0 : 1); ++step) {
      const double angle = radians(from + ((to - from) * step / steps));
      points.push_back(
          map({.x = middle.x + (radius * std::cos(angle)), .y = middle.y + (radius * std::sin(angle))}));
    }
    add(std::move(points), whole);
  }

  void add(std::vector<Point> points, bool closed) {
    for (const Point& point : points) check(point);
    if (points.size() > 1) m_primitives.emplace_back(Polyline{.points = std::move(points), .closed = closed});
  }

  void check(Point point) const {
    constexpr double Largest = 1e6;
    const bool good = std::abs(point.x) <= Largest && std::abs(point.y) <= Largest;
    if (!good) fail("a coordinate is too large");
  }

  const std::filesystem::path& m_file;
  std::vector<Primitive> m_primitives;
  int m_taken = 0;
};

}  // namespace

std::shared_ptr<const Block> importExchangeDrawing(const std::filesystem::path& file) {
  return makeBlock(file.stem().string(), Import(file).read());
}

}  // namespace velgrove
