#include "desktop/fader.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "desktop/marks.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr QSizeF Handle(46, 26);
constexpr double HandleFrame = 5;  // around the handle: the frame of the focus
constexpr double GrooveWidth = 10;
constexpr double EndOfTravel = Handle.height() / 2 + HandleFrame;
constexpr double LeftOfAxis = 36;  // the mark stands there
constexpr double TickFrom = 12;    // right of the axis
constexpr double TickTo = 22;
constexpr double WordsFrom = 36;
constexpr int LeastTravel = 100;

QFont wordsFont() {
  return theme::font(theme::sized(13, 15));
}

}  // namespace

Fader::Fader(QWidget* parent) : QAbstractSlider(parent) {
  setOrientation(Qt::Vertical);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

void Fader::setScale(std::vector<ScaleMark> scale) {
  m_scale = std::move(scale);
  updateGeometry();
  update();
}

void Fader::setFill(const char* token, std::optional<int> from) {
  m_fill = token;
  m_from = from;
  update();
}

void Fader::setMark(std::optional<int> value) {
  if (std::exchange(m_mark, value) != value) update();
}

// ---- Where things stand

int Fader::widestWords() const {
  const QFontMetrics metrics(wordsFont());
  int widest = 0;
  for (const ScaleMark& mark : m_scale) widest = std::max(widest, metrics.horizontalAdvance(mark.words));
  return widest;
}

QSize Fader::minimumSizeHint() const {
  const double right = m_scale.empty() ? LeftOfAxis : WordsFrom + widestWords() + 2;
  return {qRound(LeftOfAxis + right), qRound(2 * EndOfTravel) + LeastTravel};
}

QSize Fader::sizeHint() const {
  constexpr int Comfortable = 200;
  return {minimumSizeHint().width(), Comfortable};
}

double Fader::axis() const {
  return m_scale.empty() ? width() / 2.0 : LeftOfAxis;
}

double Fader::heightOf(int value) const {
  const double range = std::max(maximum() - minimum(), 1);
  return height() - EndOfTravel - (value - minimum()) / range * (height() - 2 * EndOfTravel);
}

int Fader::valueAt(double y) const {
  const double travel = std::max(height() - 2 * EndOfTravel, 1.0);
  const double share = std::clamp((height() - EndOfTravel - y) / travel, 0.0, 1.0);
  return minimum() + qRound(share * (maximum() - minimum()));
}

QRectF Fader::handle() const {
  return {QPointF(axis() - Handle.width() / 2, heightOf(sliderPosition()) - Handle.height() / 2), Handle};
}

// ---- The hand

void Fader::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  m_grip = handle().contains(event->position()) ? event->position().y() - heightOf(sliderPosition()) : 0;
  setSliderDown(true);
  if (m_grip == 0) setSliderPosition(valueAt(event->position().y()));
  update();
}

void Fader::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) setSliderPosition(valueAt(event->position().y() - m_grip));
}

void Fader::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setSliderDown(false);
  update();
}

void Fader::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange && !isEnabled()) setSliderDown(false);
  QAbstractSlider::changeEvent(event);
}

// ---- Painting

void Fader::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintScale(painter);
  paintGroove(painter);
  paintMark(painter);
  paintHandle(painter);
}

void Fader::paintScale(QPainter& painter) const {
  painter.setFont(wordsFont());
  const double half = QFontMetricsF(painter.font()).capHeight() / 2;
  for (const ScaleMark& mark : m_scale) {
    const double y = qRound(heightOf(mark.value)) + 0.5;
    painter.setPen(QPen(theme::colour("edge"), 1));
    painter.drawLine(QPointF(axis() + TickFrom, y), QPointF(axis() + TickTo, y));
    painter.setPen(theme::colour(isEnabled() ? "text2" : "disabled"));
    painter.drawText(QPointF(axis() + WordsFrom, y + half), mark.words);
  }
}

void Fader::paintGroove(QPainter& painter) const {
  constexpr double Beyond = 3;  // the ends of the travel
  const double radius = GrooveWidth / 2;
  const QRectF groove(QPointF(axis() - radius, heightOf(maximum()) - Beyond),
                      QPointF(axis() + radius, heightOf(minimum()) + Beyond));
  painter.setPen(QPen(theme::colour("edge"), 1));
  painter.setBrush(theme::colour("well"));
  painter.drawRoundedRect(groove, radius, radius);
  const double from = m_from ? heightOf(*m_from) : heightOf(minimum()) + Beyond - 1;
  const double to = heightOf(sliderPosition());
  const double inset = 1;
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::colour(isEnabled() ? m_fill : "line"));
  if (m_from || sliderPosition() > minimum())
    painter.drawRoundedRect(QRectF(QPointF(groove.left() + inset, std::min(from, to)),
                                   QPointF(groove.right() - inset, std::max(from, to))),
                            m_from ? 0 : radius - inset, m_from ? 0 : radius - inset);
  if (!m_from) return;
  constexpr double Arm = 16;
  painter.setPen(QPen(theme::colour("text"), 2));
  painter.drawLine(QPointF(axis() - Arm, from), QPointF(axis() + Arm, from));
}

void Fader::paintMark(QPainter& painter) const {
  if (!m_mark) return;
  constexpr double Left = 34;  // of the axis
  const QPointF left(axis() - Left, heightOf(*m_mark));
  drawInputMark(painter, left);
  painter.setPen(QPen(theme::colour("input"), 2));
  painter.drawLine(left + QPointF(InputMarkSize + 1, 0), QPointF(axis() - GrooveWidth / 2 - 1, left.y()));
}

void Fader::paintHandle(QPainter& painter) const {
  const QRectF body = handle().adjusted(1, 1, -1, -1);
  painter.setBrush(theme::colour(isSliderDown() ? "press" : isEnabled() ? "hover" : "panel"));
  painter.setPen(QPen(theme::colour(isEnabled() ? "text" : "disabled"), 2));
  painter.drawRoundedRect(body, 4, 4);
  constexpr double Beside = 8;
  painter.drawLine(QPointF(body.left() + Beside, body.center().y()),
                   QPointF(body.right() - Beside, body.center().y()));
  if (!hasFocus()) return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(theme::colour("focus"), 2));
  constexpr double Around = 4;
  painter.drawRoundedRect(body.adjusted(-Around, -Around, Around, Around), 6, 6);
}

}  // namespace velgrove
