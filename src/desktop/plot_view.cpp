#include "desktop/plot_view.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "desktop/theme.h"

namespace velgrove {
namespace {

QCursor cursorNamed(const std::string& name, double ratio) {
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
  return QCursor(theme::picture(drawn->second, Size, theme::colour("text"), ratio), Size / 2, Size / 2);
}

constexpr Qt::MouseButtons ForDrawing = Qt::LeftButton | Qt::RightButton;

int buttonOf(Qt::MouseButtons buttons) {
  if ((buttons & Qt::LeftButton) != 0) return mouse::Left;
  return (buttons & Qt::RightButton) != 0 ? mouse::Right : 0;
}

int flagsOf(Qt::KeyboardModifiers keys) {
  return ((keys & Qt::ShiftModifier) != 0 ? mouse::Shift : 0) |
         ((keys & Qt::ControlModifier) != 0 ? mouse::Ctrl : 0);
}

Pixel pixelOf(QPointF at) {
  return {.x = at.x(), .y = at.y()};
}

/// A rectangle's line, and nothing of what it holds.
QRegion lineOf(const QRect& box) {
  constexpr int Pen = 2;
  return QRegion(box.adjusted(-Pen, -Pen, Pen, Pen)) - QRegion(box.adjusted(Pen, Pen, -Pen, -Pen));
}

}  // namespace

PlotView::PlotView(Bindings& bindings, FindDocument find)
    : m_face(bindings.face()), m_find(std::move(find)), m_voice(*this, bindings, m_find) {
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
  const bool cross =
      drawing.ViewMousePointer == pointers::Cross || document->Window.MousePointer == pointers::Cross;
  m_trimmings = {.band = drawing.rubberBand(), .cursor = drawing.cursor(), .cross = cross};
  m_redrawn = m_plot.drawing.revision != drawing.revision() || m_plot.grid != drawing.Snap;
  if (m_redrawn) {
    drawing.copyTo(m_next.drawing);
    m_next.fixtures = fixturesOf(*document);
    m_next.snapMark = document->SnapCursor;
    m_next.grid = drawing.Snap;
  }
  return m_redrawn || m_trimmings != m_shown;
}

std::vector<FixtureShapes> PlotView::fixturesOf(const frmDocument& document) {
  std::vector<FixtureShapes> shapes;
  if (document.ActiveView == nullptr) return shapes;
  auto& fixtures = document.ActiveView->colFixtures();
  shapes.reserve(static_cast<std::size_t>(fixtures.count()));
  for (const auto& fixture : fixtures)
    shapes.push_back({.body = fixture->Shape,
                      .channelText = fixture->ChannelTextShape,
                      .levelText = fixture->LevelTextShape,
                      .blindText = fixture->DMXInTextShape});
  return shapes;
}

void PlotView::apply() {
  if (m_redrawn) {
    m_next.giveRoles();
    std::swap(m_plot, m_next);
    const bool same = m_plot.drawing.limits == m_next.drawing.limits && m_plot.grid == m_next.grid;
    update(same ? changedArea(m_next, m_plot, view(), rect()) : QRegion(rect()));
  }
  showTrimmings();
}

void PlotView::showTrimmings() {
  const Trimmings before = std::exchange(m_shown, m_trimmings);
  if (before.cursor != m_shown.cursor || before.cross != m_shown.cross) setCursor(cursorOf(m_shown));
  if (before.band == m_shown.band) return;
  for (const auto& band : {before.band, m_shown.band})
    if (band) update(lineOf(bandRect(*band)));
}

QCursor PlotView::cursorOf(const Trimmings& trimmings) const {
  return trimmings.cross ? QCursor(Qt::CrossCursor) : cursorNamed(trimmings.cursor, devicePixelRatioF());
}

void PlotView::setMode(Mode mode) {
  if (std::exchange(m_mode, mode) != mode) update();
}

/// The part of the world that is shown is fitted into the window and stands in its middle.
WorldView PlotView::view() const {
  const Extents& world = m_plot.drawing.limits;
  const double scale =
      std::min(width() / std::max(world.width(), 1e-6), height() / std::max(world.height(), 1e-6));
  const Point middle = world.middle();
  return {.origin = {width() / 2.0 - middle.x * scale, height() / 2.0 + middle.y * scale},
          .pixelsPerUnit = scale,
          .ratio = devicePixelRatioF()};
}

/// The part of the world that is shown; outside of it the window stays black.
QRect PlotView::worldRect() const {
  return view().at(m_plot.drawing.limits).toAlignedRect();
}

QRect PlotView::bandRect(const Extents& band) const {
  return view().at(band).toAlignedRect();
}

void PlotView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), theme::colour("well"));
  painter.save();
  painter.setClipRect(worldRect());
  m_painter.paint(painter, m_plot, view(), event->region());
  painter.restore();
  painter.setBrush(Qt::NoBrush);
  if (m_shown.band) {
    painter.setPen(QPen(theme::colour("text"), 1, Qt::DashLine));
    painter.drawRect(bandRect(*m_shown.band));
  }
  if (m_mode != Mode::Stage) {
    constexpr int Width = 3;
    painter.setRenderHint(QPainter::Antialiasing, false);
    QPen frame(theme::colour(m_mode == Mode::Blind ? "blind" : "nextText"), Width);
    frame.setJoinStyle(Qt::MiterJoin);
    painter.setPen(frame);
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
  }
  if (!hasFocus()) return;
  const int within = m_mode == Mode::Stage ? 1 : 4;  // the frame of the mode
  painter.setPen(QPen(theme::colour("focus"), 2));
  painter.drawRect(rect().adjusted(within, within, -within, -within));
}

void PlotView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  m_face.deliver([find = m_find, size = size()] {
    if (frmDocument* document = find()) document->FlpCAD1.setPixelSize(size.width(), size.height());
  });
}

/// A locked plot takes no hand, so that none is over it.
void PlotView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && !isEnabled()) leave();
  if (event->type() != QEvent::StyleChange) return;
  m_painter.forget();
  setCursor(cursorOf(m_shown));
}

// ---- The mouse

void PlotView::tell(const Hand& hand) {
  m_motion.end();
  m_face.deliver([find = m_find, hand] { hand.on(find); });
}

/// A box that comes up under the hand takes the release that belongs to a press. The drawing hears of it
/// when the mouse is back, or a fixture would stick to the pointer.
void PlotView::tellLostReleases(const QMouseEvent& event, Qt::MouseButtons stillDown) {
  for (const auto button : {Qt::LeftButton, Qt::RightButton}) {
    if (!m_down.testFlag(button) || stillDown.testFlag(button)) continue;
    m_down.setFlag(button, false);
    tell({.handler = &Drawing::release,
          .button = buttonOf(button),
          .flags = flagsOf(event.modifiers()),
          .at = pixelOf(event.position())});
  }
  if (!event.buttons().testFlag(Qt::MiddleButton)) endPan();
}

void PlotView::mousePressEvent(QMouseEvent* event) {
  tellLostReleases(*event, event->buttons() & ~event->button());
  if (event->button() == Qt::MiddleButton) {
    m_pannedTo = event->position();
    setCursor(Qt::ClosedHandCursor);
  }
  if (!ForDrawing.testFlag(event->button())) return;
  m_down.setFlag(event->button());
  tell({.handler = &Drawing::press,
        .button = buttonOf(event->button()),
        .flags = flagsOf(event->modifiers()),
        .at = pixelOf(event->position())});
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
  tellLostReleases(*event, event->buttons());
  if (const auto from = m_pannedTo) {
    m_pannedTo = event->position();
    return pan(*from, event->position());
  }
  m_motion.deliver(m_face,
                   {.handler = &Drawing::move,
                    .button = buttonOf(event->buttons()),
                    .flags = flagsOf(event->modifiers()),
                    .at = pixelOf(event->position())},
                   [find = m_find](const Hand& hand) { hand.on(find); });
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) endPan();
  if (!ForDrawing.testFlag(event->button())) return;
  m_down.setFlag(event->button(), false);
  tell({.handler = &Drawing::release,
        .button = buttonOf(event->button()),
        .flags = flagsOf(event->modifiers()),
        .at = pixelOf(event->position())});
}

void PlotView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  leave();
}

void PlotView::leave() {
  m_motion.end();
  m_face.deliver([find = m_find] {
    if (frmDocument* document = find()) document->FlpCAD1.leave();
  });
}

// ---- The view by the hand

void PlotView::pan(QPointF from, QPointF to) {
  m_face.deliver([find = m_find, by = to - from] {
    if (frmDocument* document = find()) document->FlpCAD1.panBy(by.x(), by.y());
  });
}

void PlotView::endPan() {
  if (!std::exchange(m_pannedTo, std::nullopt)) return;
  setCursor(cursorOf(m_shown));
}

/// With Ctrl the place under the mouse stays where it is while all about it grows or shrinks; the wheel alone
/// is the window's.
void PlotView::wheelEvent(QWheelEvent* event) {
  if ((event->modifiers() & Qt::ControlModifier) == 0) {
    emit wheelTurned(*event);
    return;
  }
  constexpr double Notch = 0.9;
  const double factor = std::pow(Notch, event->angleDelta().y() / double{QWheelEvent::DefaultDeltasPerStep});
  m_face.deliver([find = m_find, factor, at = pixelOf(event->position())] {
    frmDocument* document = find();
    if (document == nullptr) return;
    const Point fixed = document->FlpCAD1.toWorld(at);
    const Point middle = document->FlpCAD1.limits().middle();
    document->WorldZoom(true, 1 - factor, fixed.x + (middle.x - fixed.x) * factor,
                        fixed.y + (middle.y - fixed.y) * factor);
  });
}

/// Arrows and pages walk the fixtures, as long as they are held; any other key counts once. Home shows the
/// whole plot: zooms and drags of the view can leave it far out of sight.
std::function<void(frmDocument&)> PlotView::meaningOf(const QKeyEvent& key) {
  constexpr int Page = 10;
  const bool ctrl = key.modifiers().testFlag(Qt::ControlModifier);
  const auto walk = [](int steps) { return [steps](frmDocument& document) { document.pickByKeys(steps); }; };
  switch (key.key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
      return walk(1);
    case Qt::Key_Left:
    case Qt::Key_Up:
      return walk(-1);
    case Qt::Key_PageDown:
      return walk(Page);
    case Qt::Key_PageUp:
      return walk(-Page);
    default:
      break;
  }
  if (key.isAutoRepeat()) return [](frmDocument& /*document*/) {};
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return [ctrl](frmDocument& document) { ctrl ? document.addPicked() : document.openPicked(); };
    case Qt::Key_Escape:
      return [](frmDocument& document) { document.letPickedGo(); };
    case Qt::Key_Home:
      return [](frmDocument& document) { document.showWholePlot(); };
    case Qt::Key_Delete:
      return [](frmDocument& document) {
        constexpr int DeleteKey = 46;
        document.Form_KeyDown(DeleteKey);
      };
    default:
      return {};
  }
}

void PlotView::keyPressEvent(QKeyEvent* event) {
  const auto meaning = meaningOf(*event);
  if (!meaning) return QWidget::keyPressEvent(event);
  m_face.deliver([find = m_find, meaning] {
    if (frmDocument* document = find()) meaning(*document);
  });
}

}  // namespace velgrove
