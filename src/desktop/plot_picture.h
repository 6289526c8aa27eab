#pragma once

#include <QPointF>
#include <QRectF>
#include <QRegion>
#include <cstdint>
#include <utility>
#include <vector>

#include "controls/drawing.h"
#include "core/show_state.h"

namespace velgrove {

/// The order in which a picture holds its shapes.
[[nodiscard]] inline auto orderOf(const Shape& shape) {
  return std::pair(shape.layer, shape.number);
}

/// Which shapes of the drawing are a fixture's.
struct FixtureShapes {
  ShapeNumber body = 0;
  ShapeNumber channelText = 0;
  ShapeNumber levelText = 0;  ///< tells the level, and by its colour the source
  ShapeNumber blindText = 0;
};

/// Where the world stands on the medium.
struct WorldView {
  QPointF origin;            ///< of the world's 0, 0
  double pixelsPerUnit = 1;  ///< the world's y grows upwards
  double ratio = 1;          ///< device pixels to a pixel

  [[nodiscard]] QPointF at(Point world) const {
    return {origin.x() + world.x * pixelsPerUnit, origin.y() - world.y * pixelsPerUnit};
  }
  [[nodiscard]] QRectF at(const Extents& world) const {
    return {at(Point{.x = world.left, .y = world.top}), at(Point{.x = world.right, .y = world.bottom})};
  }
};

/// A stage plot as it stands at one moment: plain values, to be painted on screen or on paper.
struct PlotPicture {
  Picture drawing;
  std::vector<FixtureShapes> fixtures;
  ShapeNumber snapMark = 0;  ///< the group of its lines
  bool grid = false;

  enum class Role : std::uint8_t { None, Body, Channel, Level, Blind, SnapMark };
  struct Part {
    Role role = Role::None;
    std::uint32_t fixture = 0;  ///< place in `fixtures`
  };

  /// Finds out what part each shape has. Called once after a copy; without it no shape has any.
  void giveRoles();
  /// By the shape's place in the drawing.
  [[nodiscard]] Part partOf(std::size_t shape) const {
    return shape < m_parts.size() ? m_parts[shape] : Part{};
  }
  /// Black on the black plot is there for a tool to paint it; of the snap mark both lines are seen.
  [[nodiscard]] bool isPainted(std::size_t shape) const {
    return drawing.shapes[shape].colour != 0 || partOf(shape).role == Role::SnapMark;
  }
  [[nodiscard]] const Shape* find(ShapeNumber number) const;
  /// What shines on a body: its fixture's level text. None for anything else.
  [[nodiscard]] const Shape* levelOn(Part part) const {
    return part.role == Role::Body ? find(fixtures[part.fixture].levelText) : nullptr;
  }

 private:
  std::vector<Part> m_parts;
};

namespace plot_look {

inline constexpr double TextUnits = 27;  ///< height of the texts, which hang by their top
inline constexpr double LineUnits = 30;  ///< from one line of a fixture's texts to the next
inline constexpr double Halo = 3;        ///< pixels, about a text
inline constexpr double MarkAway = 5;    ///< pixels, of the source mark from its body
inline constexpr double MarkSize = 7;

/// What holds a level, by the colour of its text.
[[nodiscard]] Source sourceOf(Colour levelText);
/// Pixels; never so small that a level couldn't be read.
[[nodiscard]] int textPixels(const WorldView& view);
/// The middle of a text. Where the view is so small that a fixture's lines would run into each other, they
/// stand apart about its level.
[[nodiscard]] QPointF middleOfText(const Shape& text, PlotPicture::Role role, const WorldView& view);

}  // namespace plot_look

/// All pixels that a shape may touch, with its halo, its pen and its source mark; none when it isn't painted.
[[nodiscard]] QRectF boxOf(const PlotPicture& plot, std::size_t place, const WorldView& view);

/// What has to be painted anew when one picture takes the place of another in the same view.
[[nodiscard]] QRegion changedArea(const PlotPicture& before, const PlotPicture& now, const WorldView& view,
                                  const QRect& whole);

}  // namespace velgrove
