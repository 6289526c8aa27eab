#pragma once

#include <QCache>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QRawFont>
#include <string>
#include <unordered_map>

#include "desktop/plot_picture.h"

namespace velgrove {

/// Paints a plot. Small bodies and texts are drawn once and kept, since the same few come again at every
/// change of level.
class PlotPainter {
 public:
  enum class Medium { Screen, Paper };

  explicit PlotPainter(Medium medium = Medium::Screen) : m_medium(medium) {}

  using View = WorldView;

  /// The colours have changed: nothing that is kept is right any more.
  void forget() { m_kept.clear(); }

  /// Paints what of the plot meets a region of the medium.
  void paint(QPainter& painter, const PlotPicture& plot, const View& view, const QRegion& area);

 private:
  /// Everything that decides how a kept body or text looks.
  struct Look {
    const Block* block = nullptr;
    double scale = 1;
    double angle = 0;
    QRgb outline = 0;
    QRgb fill = 0;
    std::string text;    ///< of a halo, the font's family
    quint32 letter = 0;  ///< of a halo, the font's number for the letter
    int pixels = 0;
    friend bool operator==(const Look&, const Look&) = default;
    friend std::size_t qHash(const Look& look, std::size_t seed = 0) {
      return qHashMulti(seed, look.block, look.scale, look.angle, look.outline, look.fill,
                        std::hash<std::string>{}(look.text), look.letter, look.pixels);
    }
  };
  struct Kept {
    QPixmap picture;
    QPointF corner;  ///< of the picture, from the shape's own point
  };

  void forgetOtherScales(const View& view);
  [[nodiscard]] const QPainterPath& outline(const std::shared_ptr<const Block>& block);
  void paintInsert(QPainter& painter, const PlotPicture& plot, std::size_t number, const View& view);
  void paintBody(QPainter& painter, const Shape& shape, const QColor& fill, const View& view);
  void drawBody(QPainter& painter, const Shape& shape, const QColor& line, const QColor& fill,
                const View& view);
  void paintFigure(QPainter& painter, const Shape& shape, PlotPicture::Role role, const View& view) const;
  [[nodiscard]] const Kept& haloOf(const QRawFont& font, quint32 letter, double ratio);
  void paintText(QPainter& painter, const Shape& shape, PlotPicture::Role role, const View& view);
  /// What is kept by this look; `draw` makes it when there is none.
  template <class Draw>
  const Kept& keep(const Look& look, Draw draw);
  template <class Draw>
  static Kept drawnApart(const QRect& box, double ratio, Draw draw);

  Medium m_medium;
  std::unordered_map<const Block*, std::pair<std::shared_ptr<const Block>, QPainterPath>> m_outlines;
  static constexpr int MostKept = 32 << 20;  // bytes of pictures
  QCache<Look, Kept> m_kept{MostKept};
  double m_keptAt = 0;  ///< the scale at which all of them were drawn
};

}  // namespace velgrove
