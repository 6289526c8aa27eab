#include "desktop/cue_panel.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "desktop/marks.h"
#include "desktop/spoken.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr const char* Lead = "Queue # ";

/// A look runs from 0 to 255.
float part(std::int16_t level) {
  return static_cast<float>(level) / 255.0F;
}

}  // namespace

CuePanel::CuePanel(LightingDesk& desk, Bindings& bindings) : m_desk(desk), m_face(bindings.face()) {
  setObjectName("ID_CueWindow");
  setAccessibleName("Stage cue");
  speak(*this, {.role = QAccessible::StaticText, .description = [this] { return spokenLook(); }});
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAttribute(Qt::WA_OpaquePaintEvent);
  bindings.mirror([&desk] { return look(desk); }, [this](const Look& now) { show(now); });
}

/// It is a tool like the others.
void CuePanel::mousePressEvent(QMouseEvent*) {
  m_face.deliver([this] {
    if (m_desk.frame.SSActiveToolBars1.tool("ID_CueWindow").Enabled)
      m_desk.frame.SSActiveToolBars1_ToolClick("ID_CueWindow");
  });
}

QSize CuePanel::sizeHint() const {
  return {theme::sized(435, 800), theme::sized(58, 84)};
}

CuePanel::Look CuePanel::look(const LightingDesk& desk) {
  Look look;
  for (const Tool& tool : desk.frame.SSActiveToolBars1.tools())
    if (tool.Id == "ID_CueWindow") look.text = tool.Caption;
  const QueueList* player = desk.windows.XYQ.get();
  if (player == nullptr) return look;
  look.loaded = true;
  look.nextNumber = player->lblNextNum.Caption;
  look.nextDesc = player->NextDescText.Caption;
  look.timeLeft = player->timeLeft();
  if (player->State.StageProgress) look.stagePart = 1 - part(*player->State.StageProgress);
  if (player->State.NextProgress) look.nextPart = part(*player->State.NextProgress);
  return look;
}

/// The time left is told to whoever asks; it doesn't speak up.
QString CuePanel::spokenLook() const {
  const QString left = QString::fromStdString(m_look.timeLeft);
  return accessibleDescription() + (left.isEmpty() ? QString() : ", " + left + " seconds left");
}

/// While a fade runs, only its edges and the time change.
void CuePanel::show(const Look& look) {
  const bool sameWords = look.text == m_look.text && look.nextNumber == m_look.nextNumber &&
                         look.nextDesc == m_look.nextDesc && look.loaded == m_look.loaded;
  const Look before = std::exchange(m_look, look);
  if (!sameWords) {
    setAccessibleDescription(
        QString::fromStdString(look.text + ", next " + look.nextNumber + " " + look.nextDesc));
    update();
    return;
  }
  if (before.timeLeft != look.timeLeft) update(timeRect());
  const auto strip = [this](bool next, float from, float to) {
    if (from == to) return;
    QRect line = lineRect(next);
    const auto [left, right] = std::minmax(from, to);
    line.setRight(line.left() + qRound(static_cast<float>(line.width()) * right) + 1);
    line.setLeft(line.left() + qRound(static_cast<float>(line.width()) * left) - 1);
    update(line);
  };
  strip(false, before.stagePart, look.stagePart);
  strip(true, before.nextPart, look.nextPart);
}

QRect CuePanel::timeRect() const {
  const int width = theme::sized(66, 112);
  return {this->width() - width, 0, width, height()};
}

QRect CuePanel::lineRect(bool next) const {
  const int right = timeRect().left();
  const int split = height() * 31 / 56;
  return next ? QRect(1, split, right - 1, height() - split - 1) : QRect(1, 1, right - 1, split - 1);
}

void CuePanel::paintEvent(QPaintEvent* event) {
  const QRegion& asked = event->region();
  QPainter painter(this);
  painter.fillRect(rect(), theme::colour("well"));
  for (const bool next : {false, true})
    if (asked.intersects(lineRect(next))) drawLine(painter, next, asked);
  if (asked.intersects(timeRect())) drawTime(painter);
  painter.setPen(theme::colour("edge"));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  painter.drawLine(timeRect().topLeft(), timeRect().bottomLeft());
}

/// Words cost more than all else here: only those that the strip touches are drawn.
void CuePanel::drawLine(QPainter& painter, bool next, const QRegion& asked) {
  const QRect line = lineRect(next);
  if (!m_look.loaded) return;
  const float lit = next ? m_look.nextPart : m_look.stagePart;
  const QColor burning = theme::colour(next ? "nextLit" : "stageLit");
  painter.fillRect(line, theme::colour(next ? "nextDim" : "stageDim"));
  QRect left = line;
  left.setWidth(qRound(static_cast<float>(line.width()) * lit));
  painter.fillRect(left, burning);

  const int mark = theme::sized(next ? 20 : 22, next ? 26 : 36);
  QRect place(line.left() + 10, 0, mark, mark);
  place.moveTop(line.top() + (line.height() - mark) / 2);
  drawLetterMark(painter, place, next, theme::colour("stageInk"), burning);
  int x = place.right() + 10;
  const int right = line.right() - 6;
  const auto write = [&](const QString& text, const QFont& font) {
    const QFontMetrics metrics(font);
    const int width = metrics.horizontalAdvance(text);
    const int gap = theme::sized(7, 10);
    const QRect room(x, line.top(), right - x, line.height());
    if (asked.intersects(QRect(x, line.top(), width + gap, line.height()))) {
      painter.setFont(font);
      painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                       metrics.elidedText(text, Qt::ElideRight, room.width()));
    }
    x += width + gap;
  };
  painter.setPen(theme::colour(next ? "nextInk" : "stageInk"));
  if (next) {
    write(QString::fromStdString(m_look.nextNumber), theme::font(theme::sized(19, 29), true));
    if (m_look.nextDesc != m_look.nextNumber)  // both are "N/A" behind the last cue
      write(QString::fromStdString(m_look.nextDesc), theme::condensed(theme::sized(19, 29), true));
    return;
  }
  QString text = QString::fromStdString(m_look.text);
  if (text.startsWith(Lead)) {
    write(QString(Lead).trimmed(), theme::condensed(theme::sized(14, 22)));
    text.remove(0, static_cast<qsizetype>(std::char_traits<char>::length(Lead)));
  }
  write(text.section(' ', 0, 0), theme::font(theme::sized(31, 51), true));
  write(text.section(' ', 1), theme::condensed(theme::sized(18, 33), true));
}

void CuePanel::drawTime(QPainter& painter) {
  const QRect box = timeRect();
  painter.fillRect(box, theme::colour("well"));
  if (m_look.timeLeft.empty()) return;
  const int caption = theme::sized(16, 22);
  painter.setPen(theme::colour("text"));
  painter.setFont(theme::font(theme::sized(31, 52), true));
  painter.drawText(box.adjusted(0, 0, 0, -caption), Qt::AlignCenter, QString::fromStdString(m_look.timeLeft));
  painter.setPen(theme::colour("text2"));
  painter.setFont(theme::condensed(theme::sized(12, 14)));
  painter.drawText(box.adjusted(0, box.height() - caption - 4, 0, -2), Qt::AlignCenter, "s left");
}

}  // namespace velgrove
