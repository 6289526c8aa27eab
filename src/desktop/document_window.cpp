#include "desktop/document_window.h"

#include <QApplication>
#include <QGridLayout>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>

#include "desktop/theme.h"

namespace velgrove {
namespace {

struct ScrollLook {
  int min = 0;
  int max = 0;
  int value = 0;
  int page = 0;
  friend bool operator==(const ScrollLook&, const ScrollLook&) = default;
};

}  // namespace

DocumentWindow::DocumentWindow(Face& face, FindDocument find, std::function<PlotView::Mode()> mode)
    : m_find(std::move(find)),
      m_bindings(face),
      m_plot(new PlotView(m_bindings, m_find)),
      m_gauge(m_bindings, [find = m_find] {
        frmDocument* document = find();
        return document == nullptr ? nullptr : &document->AGauge2;
      }) {
  setObjectName("frmDocument");
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(0);
  grid->addWidget(m_plot, 0, 0);
  grid->addWidget(&m_vertical, 0, 1);
  grid->addWidget(&m_horizontal, 1, 0);
  m_horizontal.setObjectName("HScroll1");
  m_vertical.setObjectName("VScroll1");
  for (QScrollBar* bar : {&m_horizontal, &m_vertical}) bar->setFocusPolicy(Qt::StrongFocus);
  m_horizontal.setAccessibleName("Plot left and right");
  m_vertical.setAccessibleName("Plot up and down");
  bindScrollBar(m_horizontal, [](frmDocument& document) { return &document.HScroll1; });
  bindScrollBar(m_vertical, [](frmDocument& document) { return &document.VScroll1; });
  m_bindings.mirror(std::move(mode), [this](PlotView::Mode now) { m_plot->setMode(now); });
  m_gauge.setParent(this);  // last, so that Tab comes to it behind the plot and not in front of the window
  setFocusProxy(m_plot);
  connect(m_plot, &PlotView::wheelTurned, this, &DocumentWindow::scroll);
}

/// The gauge stands over the plot's top right corner.
void DocumentWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  constexpr int Away = 8;
  const int size = theme::sized(148, 172);
  const int bar = m_vertical.sizeHint().width();
  m_gauge.setGeometry(width() - bar - size - Away, Away, size, size);
}

/// The wheel scrolls what doesn't fit into the window; a plot that does stays where it is.
void DocumentWindow::scroll(const QWheelEvent& event) {
  QPoint turn = event.angleDelta();
  if ((event.modifiers() & Qt::ShiftModifier) != 0 && turn.x() == 0) turn = turn.transposed();
  QScrollBar& bar = std::abs(turn.x()) > std::abs(turn.y()) ? m_horizontal : m_vertical;
  if (bar.minimum() == bar.maximum()) return;
  const int angle = &bar == &m_horizontal ? turn.x() : turn.y();
  QWheelEvent along(event.position(), event.globalPosition(), {}, {0, angle}, event.buttons(), {},
                    event.phase(), event.inverted());
  QApplication::sendEvent(&bar, &along);
}

/// The bar's handle is as long as the part of the plot that is in view, and goes to the plot's end. While the
/// hand holds the bar, it isn't written; keys and clicks go to the control as a new value.
void DocumentWindow::bindScrollBar(QScrollBar& bar, const FindSlider& slider) {
  const auto shown = m_bindings.mirror(
      [this, slider, across = bar.orientation() == Qt::Horizontal]() -> ScrollLook {
        frmDocument* document = m_find();
        if (document == nullptr) return {};
        const Slider& control = *slider(*document);
        const Extents& world = document->FlpCAD1.limits();
        const double size = across ? world.width() : world.height();
        const int page = static_cast<int>(std::min<double>(size, control.max()));
        return {.min = control.min(),
                .max = std::max(control.max() - page, control.value()),
                .value = control.value(),
                .page = page};
      },
      [&bar](const ScrollLook& look) {
        const QSignalBlocker quiet(&bar);
        bar.setRange(look.min, look.max);
        bar.setPageStep(std::max(look.page, 1));
        bar.setSingleStep(std::max(look.page / 20, 1));
        if (!bar.isSliderDown()) bar.setValue(look.value);
      });
  connect(&bar, &QScrollBar::actionTriggered, this, [this, &bar, slider, shown] {
    const int value = std::clamp(bar.sliderPosition(), bar.minimum(), bar.maximum());
    shown->value.value = value;
    m_bindings.face().deliver([this, slider, value] {
      if (frmDocument* document = m_find()) slider(*document)->drag(value);
    });
  });
  connect(&bar, &QScrollBar::sliderReleased, this, [this, shown] {
    shown->known = false;  // what the desk made of it in the meantime is shown now
    m_bindings.face().pull();
  });
}

}  // namespace velgrove
