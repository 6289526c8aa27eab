#include "desktop/rotate_gauge.h"

#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "desktop/lost_release.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr int Round = 360;
constexpr int ShortMark = 15;  // degrees apart
constexpr int LongMark = 45;
constexpr double Rim = 5;  // pixels between the widget's edge and the ring

int wholeDegrees(double value) {
  const double turned = std::fmod(std::round(value), Round);
  return static_cast<int>(turned < 0 ? turned + Round : turned);
}

int nearestWay(int from, int to) {
  const int clockwise = ((to - from) % Round + Round) % Round;
  return clockwise > Round / 2 ? clockwise - Round : clockwise;
}

/// A place on the dial, from its middle.
QPointF onDial(double degrees, double radius) {
  const double turn = degrees * std::numbers::pi / 180;
  return {radius * std::sin(turn), -radius * std::cos(turn)};
}

}  // namespace

RotateGauge::RotateGauge(Bindings& bindings, const Bindings::Find<Gauge>& find) {
  setObjectName("AGauge2");
  setAccessibleName("Rotation");
  setToolTip("Rotation of the picked fixture");
  setFocusPolicy(Qt::StrongFocus);
  setWrapping(true);
  setRange(0, Round);  // of a dial that wraps, the end is the start
  setPageStep(ShortMark);
  setCursor(Qt::ArrowCursor);
  new LostRelease(this);
  hide();
  m_shown = bindings.mirror(
      [find]() -> Look {
        const Gauge* gauge = find();
        return gauge == nullptr ? Look{} : Look{.visible = gauge->Visible, .value = gauge->value()};
      },
      [this](const Look& look) { show(look); });
  connect(this, &QDial::actionTriggered, this, [this, &face = bindings.face(), find] {
    const int by = nearestWay(value(), sliderPosition());
    face.deliver([find, by] {
      if (Gauge* gauge = find()) gauge->setValue(gauge->value() + by);
    });
  });
  connect(this, &QDial::sliderReleased, this, [this, &face = bindings.face()] {
    m_shown->known = false;  // what the desk made of it in the meantime is shown now
    face.pull();
  });
}

void RotateGauge::show(const Look& look) {
  if (!isSliderDown()) {
    const QSignalBlocker quiet(this);
    setValue(wholeDegrees(look.value));
    update();
  }
  setVisible(look.visible);
  if (look.visible) raise();
}

// ---- The hand

void RotateGauge::turnTo(const QMouseEvent& event) {
  constexpr double Deaf = 8;  // pixels about the middle, where a tremble would be half a turn
  const QPointF away = event.position() - QRectF(rect()).center();
  if (std::hypot(away.x(), away.y()) < Deaf) return;
  const int step = (event.modifiers() & Qt::ShiftModifier) != 0 ? ShortMark : 1;
  const double degrees = std::atan2(away.x(), -away.y()) * 180 / std::numbers::pi;
  setSliderPosition(wholeDegrees(std::round(degrees / step) * step));
}

void RotateGauge::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setSliderDown(true);
  turnTo(*event);
}

void RotateGauge::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) turnTo(*event);
}

void RotateGauge::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) setSliderDown(false);
}

void RotateGauge::wheelEvent(QWheelEvent* event) {
  const int notches = m_notches.take(*event);
  for (int turned = 0; turned < std::abs(notches); ++turned)
    triggerAction(notches > 0 ? SliderSingleStepAdd : SliderSingleStepSub);
}

// ---- Painting

void RotateGauge::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double radius = width() / 2.0 - Rim;
  painter.translate(QRectF(rect()).center());
  if (hasFocus()) {
    painter.setPen(QPen(theme::colour("focus"), 2));
    painter.drawEllipse(QPointF(0, 0), radius + 3, radius + 3);
  }
  painter.setPen(QPen(theme::colour("edge"), 1));
  painter.setBrush(theme::colour("panel"));
  painter.drawEllipse(QPointF(0, 0), radius, radius);
  paintScale(painter);
  paintHand(painter);
  painter.setFont(theme::font(theme::sized(25, 29), true));
  painter.setPen(theme::colour("text"));
  const QString degrees = QString::number(value() % Round) + QChar(0xB0);
  painter.drawText(QRectF(-radius, -radius, 2 * radius, 2 * radius), Qt::AlignCenter, degrees);
}

void RotateGauge::paintScale(QPainter& painter) const {
  const double outer = width() / 2.0 - Rim - 4;
  for (int mark = 0; mark < Round; mark += ShortMark) {
    const bool isLong = mark % LongMark == 0;
    painter.setPen(QPen(theme::colour(isLong ? "text2" : "text3"), isLong ? 2 : 1));
    painter.drawLine(onDial(mark, outer), onDial(mark, outer - (isLong ? 10 : 5)));
  }
}

/// It stands between the digits and the rim, in the colour of what it turns.
void RotateGauge::paintHand(QPainter& painter) const {
  const double outer = width() / 2.0 - Rim - 2;
  constexpr double Foot = 36;
  painter.setPen(QPen(theme::colour("picked"), 4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(onDial(value(), Foot), onDial(value(), outer - 4));
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::colour("picked"));
  painter.drawEllipse(onDial(value(), outer - 6), 6, 6);
}

}  // namespace velgrove
