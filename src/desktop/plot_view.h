#pragma once

#include <QScrollBar>
#include <QWidget>
#include <functional>
#include <optional>

#include "desktop/binding.h"
#include "desktop/plot_painter.h"
#include "plot/document.h"

namespace velgrove {

/// The plot of a document on the screen: paints its drawing, and hands the mouse to it.
class PlotView : public QWidget {
  Q_OBJECT

 public:
  using FindDocument = std::function<frmDocument*()>;
  PlotView(Bindings& bindings, FindDocument find);

  /// Blind and Live stand out by a frame about the plot.
  enum class Mode { Stage, Blind, Live };
  void setMode(Mode mode);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  bool copy();
  void copyFixtures(const frmDocument& document);
  void apply();
  void hand(void (Drawing::*handler)(int, int, Pixel), QMouseEvent* event, Qt::MouseButtons buttons);
  [[nodiscard]] PlotPainter::View view() const;
  [[nodiscard]] QRectF worldRect(const PlotPainter::View& now) const;

  Face& m_face;
  FindDocument m_find;
  PlotPicture m_plot;
  std::optional<Extents> m_band;
  std::string m_cursor;
  PlotPainter m_painter;
  Mode m_mode = Mode::Stage;
};

/// The window of a document: the plot with its scroll bars.
class DocumentWindow : public QWidget {
  Q_OBJECT

 public:
  using FindDocument = PlotView::FindDocument;
  DocumentWindow(Face& face, FindDocument find, std::function<PlotView::Mode()> mode);

 private:
  using FindSlider = std::function<Slider*(frmDocument&)>;
  void bindScrollBar(QScrollBar& bar, const FindSlider& slider);

  FindDocument m_find;
  Bindings m_bindings;
  PlotView* m_plot;
  QScrollBar m_horizontal{Qt::Horizontal};
  QScrollBar m_vertical{Qt::Vertical};
};

}  // namespace velgrove
