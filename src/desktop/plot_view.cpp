#include "desktop/plot_view.h"

#include <QGridLayout>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <algorithm>

#include "desktop/theme.h"

namespace velgrove {
namespace {

QCursor cursorNamed(const std::string& name) {
  static const std::array<std::pair<const char*, const char*>, 5> Drawn{{
      {"rotate", "ID_Rotate"},
      {"light", "ID_AddLight"},
      {"slider", "ID_AddLight"},
      {"delete", "ID_DelLight"},
      {"zoom", "ID_FluidZoom"},
  }};
  if (name == "pan") return Qt::OpenHandCursor;
  if (name == "blank") return Qt::BlankCursor;
  const auto* const drawn = std::ranges::find(Drawn, name, &std::pair<const char*, const char*>::first);
  if (drawn == Drawn.end()) return Qt::ArrowCursor;
  constexpr int Size = 24;
  return QCursor(theme::picture(drawn->second, Size, theme::colour("text"), 1.0), Size / 2, Size / 2);
}

int buttonOf(Qt::MouseButtons buttons) {
  if ((buttons & Qt::LeftButton) != 0) return mouse::Left;
  return (buttons & Qt::RightButton) != 0 ? mouse::Right : 0;
}

int flagsOf(Qt::KeyboardModifiers keys) {
  return ((keys & Qt::ShiftModifier) != 0 ? mouse::Shift : 0) |
         ((keys & Qt::ControlModifier) != 0 ? mouse::Ctrl : 0);
}

struct ScrollLook {
  int min = 0;
  int max = 0;
  int value = 0;
  int page = 0;
  friend bool operator==(const ScrollLook&, const ScrollLook&) = default;
};

}  // namespace

PlotView::PlotView(Bindings& bindings, FindDocument find) : m_face(bindings.face()), m_find(std::move(find)) {
  setObjectName("FlpCAD1");
  setAccessibleName("Stage plot");
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(120, 120);
  bindings.add({.copy = [this] { return copy(); }, .apply = [this] { apply(); }});
}

bool PlotView::copy() {
  frmDocument* document = m_find();
  if (document == nullptr) return false;
  const Drawing& drawing = document->FlpCAD1;
  const bool redrawn = m_plot.drawing.revision != drawing.revision();
  if (!redrawn && m_plot.grid == drawing.Snap && m_band == drawing.rubberBand() &&
      m_cursor == drawing.cursor())
    return false;
  if (redrawn) {
    drawing.copyTo(m_plot.drawing);
    copyFixtures(*document);
  }
  m_plot.grid = drawing.Snap;
  m_band = drawing.rubberBand();
  m_cursor = drawing.cursor();
  return true;
}

void PlotView::copyFixtures(const frmDocument& document) {
  m_plot.fixtures.clear();
  if (document.ActiveView == nullptr) return;
  for (const auto& fixture : document.ActiveView->colFixtures())
    m_plot.fixtures.push_back({.body = fixture->Shape,
                               .channelText = fixture->ChannelTextShape,
                               .levelText = fixture->LevelTextShape});
}

void PlotView::apply() {
  setCursor(cursorNamed(m_cursor));
  update();
}

void PlotView::setMode(Mode mode) {
  if (std::exchange(m_mode, mode) != mode) update();
}

/// The part of the world that is shown is fitted into the window and stands in its middle.
PlotPainter::View PlotView::view() const {
  const Extents& world = m_plot.drawing.limits;
  const double scale =
      std::min(width() / std::max(world.width(), 1e-6), height() / std::max(world.height(), 1e-6));
  const Point middle = world.middle();
  return {.origin = {width() / 2.0 - middle.x * scale, height() / 2.0 + middle.y * scale},
          .pixelsPerUnit = scale,
          .ratio = devicePixelRatioF()};
}

/// The part of the world that is shown; outside of it the window stays black.
QRectF PlotView::worldRect(const PlotPainter::View& now) const {
  const Extents& world = m_plot.drawing.limits;
  return {QPointF(now.origin.x() + world.left * now.pixelsPerUnit,
                  now.origin.y() - world.top * now.pixelsPerUnit),
          QSizeF(world.width(), world.height()) * now.pixelsPerUnit};
}

void PlotView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), theme::colour("well"));
  const auto now = view();
  painter.save();
  painter.setClipRect(worldRect(now));
  m_painter.paint(painter, m_plot, now, event->rect());
  painter.restore();
  painter.setBrush(Qt::NoBrush);
  if (hasFocus()) {
    painter.setPen(QPen(theme::colour("focus"), 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
  }
  if (m_band) {
    painter.setPen(QPen(theme::colour("text"), 1, Qt::DashLine));
    const auto pixel = [&](double x, double y) {
      return QPointF(now.origin.x() + x * now.pixelsPerUnit, now.origin.y() - y * now.pixelsPerUnit);
    };
    painter.drawRect(QRectF(pixel(m_band->left, m_band->top), pixel(m_band->right, m_band->bottom)));
  }
  if (m_mode != Mode::Stage) {
    constexpr int Width = 3;
    painter.setRenderHint(QPainter::Antialiasing, false);
    QPen frame(theme::colour(m_mode == Mode::Blind ? "blind" : "nextText"), Width);
    frame.setJoinStyle(Qt::MiterJoin);
    painter.setPen(frame);
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
  }
}

void PlotView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  m_face.deliver([this, size = size()] {
    if (frmDocument* document = m_find()) document->FlpCAD1.setPixelSize(size.width(), size.height());
  });
}

void PlotView::hand(void (Drawing::*handler)(int, int, Pixel), QMouseEvent* event, Qt::MouseButtons buttons) {
  m_face.deliver([this, handler, button = buttonOf(buttons), flags = flagsOf(event->modifiers()),
                  at = Pixel{.x = event->position().x(), .y = event->position().y()}] {
    if (frmDocument* document = m_find()) (document->FlpCAD1.*handler)(button, flags, at);
  });
}

void PlotView::mousePressEvent(QMouseEvent* event) {
  hand(&Drawing::press, event, event->button());
}
void PlotView::mouseMoveEvent(QMouseEvent* event) {
  hand(&Drawing::move, event, event->buttons());
}
void PlotView::mouseReleaseEvent(QMouseEvent* event) {
  hand(&Drawing::release, event, event->button());
}

// ---- The window

DocumentWindow::DocumentWindow(Face& face, FindDocument find, std::function<PlotView::Mode()> mode)
    : m_find(std::move(find)), m_bindings(face), m_plot(new PlotView(m_bindings, m_find)) {
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
  setFocusProxy(m_plot);
}

/// While the hand holds the bar, it isn't written; keys and clicks go to the control as a new value.
void DocumentWindow::bindScrollBar(QScrollBar& bar, const FindSlider& slider) {
  const auto shown = m_bindings.mirror(
      [this, slider, across = bar.orientation() == Qt::Horizontal]() -> ScrollLook {
        frmDocument* document = m_find();
        if (document == nullptr) return {};
        const Slider& control = *slider(*document);
        const Extents& world = document->FlpCAD1.limits();
        const double page = across ? world.width() : world.height();
        return {.min = control.min(),
                .max = control.max(),
                .value = control.value(),
                .page = static_cast<int>(std::min<double>(page, control.max()))};
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
