#pragma once

#include <QScrollBar>
#include <functional>

#include "desktop/plot_view.h"
#include "desktop/rotate_gauge.h"

namespace velgrove {

/// The window of a document: the plot with its scroll bars, and the gauge that turns fixtures.
class DocumentWindow : public QWidget {
  Q_OBJECT

 public:
  using FindDocument = PlotView::FindDocument;
  DocumentWindow(Face& face, FindDocument find, std::function<PlotView::Mode()> mode);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  using FindSlider = std::function<Slider*(frmDocument&)>;
  void scroll(const QWheelEvent& event);
  void bindScrollBar(QScrollBar& bar, const FindSlider& slider);

  FindDocument m_find;
  Bindings m_bindings;
  PlotView* m_plot;
  QScrollBar m_horizontal{Qt::Horizontal};
  QScrollBar m_vertical{Qt::Vertical};
  RotateGauge m_gauge;
};

}  // namespace velgrove
