#include "desktop/sub_cell.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "desktop/marks.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr int BesideName = 3;

QFont numberFont() {
  return theme::font(theme::sized(15, 18), true);
}
QFont nameFont() {
  return theme::condensed(theme::sized(13, 16));
}

QString text(const std::string& desk) {
  return QString::fromStdString(desk);
}

/// A box with a line around it that lies on whole pixels.
void drawBox(QPainter& painter, const QRect& place, const QBrush& fill, const QColor& line, int width = 1) {
  constexpr double Radius = 3;
  const double inset = width / 2.0;
  painter.setBrush(fill);
  painter.setPen(QPen(line, width));
  painter.drawRoundedRect(QRectF(place).adjusted(inset, inset, -inset, -inset), Radius, Radius);
}

bool isPress(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}
bool asksForMenu(const QKeyEvent& event) {
  return event.key() == Qt::Key_Menu ||
         (event.key() == Qt::Key_F10 && event.modifiers().testFlag(Qt::ShiftModifier));
}

/// What assistive tools are told of a cell, and how they act on it.
class SpokenCell : public QAccessibleWidget {
 public:
  explicit SpokenCell(SubCell* cell) : QAccessibleWidget(cell, QAccessible::Button) {}

  [[nodiscard]] QStringList actionNames() const override {
    if (cell().look().shut) return {showMenuAction(), setFocusAction()};
    return {pressAction(), toggleAction(), showMenuAction(), setFocusAction()};
  }
  void doAction(const QString& action) override {
    if (action == pressAction())
      cell().act(SubCell::Part::Button);
    else if (action == toggleAction())
      cell().act(SubCell::Part::Level);
    else if (action == showMenuAction())
      emit cell().recordAsked();
    else
      QAccessibleWidget::doAction(action);
  }

 private:
  [[nodiscard]] SubCell& cell() const { return *static_cast<SubCell*>(object()); }
};

QAccessibleInterface* spoken(const QString& /*kind*/, QObject* object) {
  auto* cell = qobject_cast<SubCell*>(object);
  return cell == nullptr ? nullptr : new SpokenCell(cell);
}

}  // namespace

SubCell::SubCell() {
  QAccessible::installFactory(spoken);
  setFocusPolicy(Qt::NoFocus);  // a click leaves the keyboard with the cue list
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SubCell::setLook(const Look& look) {
  m_look = look;
  if (look.shut) m_pressed.reset();
  speak();
  update();
}

void SubCell::speak() {
  const QString number = text(m_look.number);
  const QString level = text(m_look.level) + " per cent" + (m_look.follows ? " by DMX input" : "");
  const QString name = text(m_look.name).trimmed();
  setAccessibleName(m_current == Part::Level
                        ? "Level of submaster " + number + ", " + level
                        : "Submaster " + number + ", " + (name.isEmpty() ? "" : name + ", ") + level);
}

int SubCell::percent() const {
  return std::clamp(text(m_look.level).toInt(), 0, 100);
}

// ---- Where things stand

QSize SubCell::minimumSizeHint() const {
  return {theme::sized(48, 60), place(Part::Level).bottom() + 1};
}

QRect SubCell::place(Part part) const {
  return part == Part::Button ? QRect(0, 0, width(), theme::sized(23, 30))
                              : QRect(0, theme::sized(46, 62), width(), theme::sized(18, 24));
}

QRect SubCell::placeOfName() const {
  return {0, theme::sized(25, 33), width(), theme::sized(19, 26)};
}

std::optional<SubCell::Part> SubCell::partAt(QPoint at) const {
  for (const Part part : {Part::Button, Part::Level})
    if (place(part).contains(at)) return part;
  return {};
}

void SubCell::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::StyleChange) updateGeometry();
}

// ---- The hand

void SubCell::act(Part part) {
  if (m_look.shut) return;
  part == Part::Button ? emit opened() : emit toggled();
}

void SubCell::mousePressEvent(QMouseEvent* event) {
  const auto part = partAt(event->position().toPoint());
  if (event->button() == Qt::RightButton && part == Part::Button) emit recordAsked();
  if (event->button() != Qt::LeftButton || m_look.shut) return;
  m_pressed = part;
  update();
}

void SubCell::mouseMoveEvent(QMouseEvent* event) {
  setHover(partAt(event->position().toPoint()));
}

void SubCell::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const auto pressed = std::exchange(m_pressed, std::nullopt);
  update();
  if (pressed && partAt(event->position().toPoint()) == pressed) act(*pressed);
}

void SubCell::leaveEvent(QEvent* /*event*/) {
  setHover({});
}

void SubCell::setHover(std::optional<Part> part) {
  if (std::exchange(m_hover, part) != part) update();
}

/// A key that is held down acts once: a level would flash, and the key that opens the fader would close it.
void SubCell::keyPressEvent(QKeyEvent* event) {
  if (isPress(*event)) {
    if (!event->isAutoRepeat()) act(m_current);
  } else if (asksForMenu(*event)) {
    if (!event->isAutoRepeat()) emit recordAsked();
  } else if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
    focusOn(event->key() == Qt::Key_Up ? Part::Button : Part::Level);
  } else {
    QWidget::keyPressEvent(event);
  }
}

void SubCell::focusOn(Part part) {
  m_current = part;
  speak();
  setFocus(Qt::OtherFocusReason);
  update();
}

void SubCell::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  emit focused();
}

/// A name that doesn't fit into its box can be read whole.
bool SubCell::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = static_cast<QHelpEvent&>(*event);
  const QString name = text(m_look.name);
  const bool whole = QFontMetrics(nameFont()).horizontalAdvance(name) <= width() - 2 * BesideName;
  QToolTip::showText(help.globalPos(), whole ? QString() : name.toHtmlEscaped(), this);
  return true;
}

// ---- Painting

void SubCell::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintButton(painter);
  paintName(painter);
  paintLevel(painter);
  if (hasFocus()) drawBox(painter, place(m_current), Qt::NoBrush, theme::colour("focus"), 2);
}

void SubCell::paintButton(QPainter& painter) const {
  const bool pressed = m_pressed == Part::Button && m_hover == m_pressed;
  const bool hover = m_hover == Part::Button;
  const char* fill = m_look.shut ? "panel" : pressed ? "press" : hover ? "hover" : "raised";
  const char* line = percent() > 0 ? "sub" : m_look.shut ? "line" : pressed ? "text" : "edge";
  drawBox(painter, place(Part::Button), theme::colour(fill), theme::colour(line));
  painter.setFont(numberFont());
  painter.setPen(theme::colour(m_look.shut ? "disabled" : "text"));
  painter.drawText(place(Part::Button), Qt::AlignCenter, text(m_look.number));
}

void SubCell::paintName(QPainter& painter) const {
  const QRect box = placeOfName();
  drawBox(painter, box, theme::colour("well"), theme::colour("line"));
  painter.setFont(nameFont());
  painter.setPen(theme::colour("text"));
  const QRect room = box.adjusted(BesideName, 0, -BesideName, 0);
  painter.drawText(room, Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(text(m_look.name), Qt::ElideRight, room.width()));
}

void SubCell::paintLevel(QPainter& painter) const {
  const QRect box = place(Part::Level);
  const bool hover = m_hover == Part::Level && !m_look.shut;
  drawBox(painter, box, theme::colour("well"), theme::colour(hover ? "edge" : "line"));
  QRectF bar = QRectF(box).adjusted(1, 1, -1, -1);
  bar.setWidth(bar.width() * percent() / 100);
  painter.fillRect(bar, theme::colour("subFill"));
  constexpr int MarkSize = 7;
  if (m_look.follows) drawInputMark(painter, QPointF(4, box.top() + box.height() / 2.0), MarkSize);
  painter.setFont(numberFont());
  painter.setPen(theme::colour(m_look.follows ? "sub" : percent() == 0 ? "text3" : "text"));
  painter.drawText(box.adjusted(m_look.follows ? MarkSize : 0, 0, 0, 0), Qt::AlignCenter, text(m_look.level));
}

}  // namespace velgrove
