#pragma once

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QString>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "controls/drawing.h"

namespace velgrove {

/// Which shapes of the drawing are a fixture's.
struct FixtureShapes {
  ShapeNumber body = 0;
  ShapeNumber channelText = 0;
  ShapeNumber levelText = 0;  ///< tells the level, and by its colour the source
  friend bool operator==(const FixtureShapes&, const FixtureShapes&) = default;
};

/// A stage plot as it stands at one moment: plain values, to be painted on screen or on paper.
struct PlotPicture {
  Picture drawing;
  std::vector<FixtureShapes> fixtures;
  bool grid = false;
};

/// Paints a plot. Bodies and texts are drawn once and kept, since the same few come again at every change of
/// level.
class PlotPainter {
 public:
  enum class Medium { Screen, Paper };

  explicit PlotPainter(Medium medium = Medium::Screen) : m_medium(medium) {}

  /// Where the world stands on the medium.
  struct View {
    QPointF origin;            ///< of the world's 0, 0
    double pixelsPerUnit = 1;  ///< the world's y grows upwards
    double ratio = 1;          ///< device pixels to a pixel
  };

  void paint(QPainter& painter, const PlotPicture& plot, const View& view, const QRectF& area);

 private:
  /// Everything that decides how a kept body or text looks.
  struct Look {
    const Block* block = nullptr;
    double scale = 1;
    double angle = 0;
    QRgb outline = 0;
    QRgb fill = 0;
    QString text;
    int pixels = 0;
    friend bool operator==(const Look&, const Look&) = default;
    friend std::size_t qHash(const Look& look, std::size_t seed = 0) {
      return qHashMulti(seed, look.block, look.scale, look.angle, look.outline, look.fill, look.text,
                        look.pixels);
    }
  };
  struct Kept {
    QPixmap picture;
    QPointF corner;  ///< of the picture, from the shape's own point
  };

  /// The shapes of one picture by their numbers.
  struct Roles {
    std::unordered_map<ShapeNumber, const FixtureShapes*> bodies;
    std::unordered_map<ShapeNumber, const Shape*> texts;
    std::unordered_set<ShapeNumber> channels;
  };

  void forgetOtherScales(const View& view);
  [[nodiscard]] static Roles rolesIn(const PlotPicture& plot);
  [[nodiscard]] const QPainterPath& outline(const std::shared_ptr<const Block>& block);
  void paintInsert(QPainter& painter, const Shape& shape, const Roles& roles, const View& view);
  void paintBody(QPainter& painter, const Shape& shape, const QColor& fill, const View& view);
  void drawBody(QPainter& painter, const Shape& shape, const QColor& line, const QColor& fill,
                const View& view);
  [[nodiscard]] static bool isSeen(const Shape& shape, const View& view, const QRectF& area);
  void paintFigure(QPainter& painter, const Shape& shape, const View& view) const;
  void paintText(QPainter& painter, const Shape& shape, bool channel, const View& view);
  const Kept& keptText(const Look& look, const QFont& font, double ratio);
  const Kept& keep(const Look& look, const Kept& kept);

  Medium m_medium;
  std::unordered_map<const Block*, std::pair<std::shared_ptr<const Block>, QPainterPath>> m_outlines;
  QHash<Look, Kept> m_kept;
  double m_keptAt = 0;  ///< the scale at which all of them were drawn
};

}  // namespace velgrove
