#include "desktop/show_view_panel.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "desktop/marks.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

/// Sizes at scale 1, in pixels.
namespace type {
constexpr double Stage = 72;
constexpr double StageWords = 44;
constexpr double Next = 52;
constexpr double NextWords = 34;
constexpr double Time = 72;
constexpr double Fade = 20;
constexpr double Note = 26;
constexpr double Gap = 10;
}  // namespace type

/// Lines of digits need no room for what hangs below the line.
constexpr double LineOfDigits = 1.04;

int px(double size, double scale) {
  return qRound(size * scale);
}

QString text(const std::string& words) {
  return QString::fromStdString(words);
}

int advance(const QFont& font, const QString& words) {
  return QFontMetrics(font).horizontalAdvance(words);
}

/// Digits are equally wide, so that no running time moves what stands beside it.
int timeWidth(const std::string& timeLeft, double scale) {
  const auto letters = std::max<std::size_t>(timeLeft.size(), 4);
  const QString widest = letters == 4 ? "88.8" : QString(static_cast<qsizetype>(letters), '8');
  return std::max(advance(theme::font(px(type::Time, scale), true), widest),
                  advance(theme::condensed(px(type::Fade, scale)), "nothing fading")) +
         px(2 * type::Gap, scale);
}

int signWidth(bool hasSign, double scale) {
  return hasSign ? px(type::Note, scale) : 0;
}

}  // namespace

ShowViewPanel::ShowViewPanel() {
  setObjectName("ShowViewPanel");
  setAccessibleName("Show");
  setAttribute(Qt::WA_OpaquePaintEvent);
}

// ---- What it says

std::vector<ShowViewPanel::Note> ShowViewPanel::notesOf(const ShowViewLook& look) {
  using Kind = Note::Kind;
  std::vector<Note> notes;
  const auto add = [&notes](Kind kind, const std::string& before, const std::string& words) {
    if (!words.empty()) notes.push_back({.kind = kind, .text = text(before + words)});
  };
  const bool lost = look.lamp == InterfaceState::Lamp::None;
  add(lost ? Kind::Lost : Kind::Interface, "", look.interface);
  add(look.mode == "Blind" ? Kind::Blind : Kind::Live, "", look.mode);
  add(Kind::Plain, "Go also starts ", look.nextLink);
  add(Kind::Plain, "Started ", look.started);
  add(Kind::Loop, "", look.loop);
  return notes;
}

QString ShowViewPanel::spoken(const ShowViewLook& look) {
  QString words = text(look.stage.number + " " + look.stage.description);
  if (!look.next.description.empty() || !look.next.number.empty())
    words += ", next " + text(look.next.number + " " + look.next.description);
  for (const Note& note : notesOf(look)) words += ", " + note.text;
  return words;
}

/// While a fade runs only its time changes.
bool ShowViewPanel::show(const ShowViewLook& look) {
  const ShowViewLook before = std::exchange(m_look, look);
  ShowViewLook sameTime = before;
  sameTime.timeLeft = look.timeLeft;
  if (sameTime == look) {
    update(m_layout.time);
    return std::max<std::size_t>(before.timeLeft.size(), 4) != std::max<std::size_t>(look.timeLeft.size(), 4);
  }
  setAccessibleDescription(spoken(look));
  m_layout = layOut(width(), m_scale);
  update();
  return true;
}

void ShowViewPanel::setScale(double scale) {
  m_scale = scale;
  m_layout = layOut(width(), scale);
  update();
}

// ---- Where it stands

int ShowViewPanel::heightAt(int width, double scale) const {
  return layOut(width, scale).height;
}

int ShowViewPanel::leastWidth(double scale) const {
  constexpr double SomeWords = 110;
  const int number = std::max(advance(theme::font(px(type::Stage, scale), true), text(m_look.stage.number)),
                              advance(theme::font(px(type::Next, scale), true), text(m_look.next.number)));
  return px(type::Stage + 4 * type::Gap + SomeWords, scale) + number + timeWidth(m_look.timeLeft, scale);
}

QSize ShowViewPanel::sizeHint() const {
  return {leastWidth(m_scale), m_layout.height};
}

ShowViewPanel::Layout ShowViewPanel::layOut(int width, double scale) const {
  Layout layout;
  const int gap = px(type::Gap, scale);
  const int time = timeWidth(m_look.timeLeft, scale);
  const int stage = px(type::Stage * LineOfDigits, scale);
  const int next = px(type::Next * LineOfDigits, scale) + gap / 2;
  layout.stage = {gap, gap / 2, width - time - 2 * gap, stage};
  layout.next = {gap, layout.stage.bottom() + 1, width - time - 2 * gap, next};
  layout.time = {width - time, 0, time, layout.next.bottom() + 1};

  const QFontMetrics metrics(theme::font(px(type::Note, scale)));
  const int line = metrics.height() + gap / 2;
  QPoint at(gap, layout.next.bottom() + 1 + gap / 2);
  layout.height = at.y();
  for (Note& note : layout.notes = notesOf(m_look)) {
    const int sign = signWidth(note.kind != Note::Kind::Plain, scale);
    const int most = width - 2 * gap - 2 * gap - sign;
    const QRect words = metrics.boundingRect(QRect(0, 0, most, 0), Qt::TextWordWrap, note.text);
    const int wide = words.width() + sign + 2 * gap;
    if (at.x() > gap && at.x() + wide > width - gap) at = QPoint(gap, layout.height);
    note.place = {at, QSize(wide, std::max(words.height() + gap / 2, line))};
    layout.height = std::max(layout.height, note.place.bottom() + 1 + gap / 2);
    at.rx() += wide + gap;
  }
  return layout;
}

void ShowViewPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  m_layout = layOut(width(), m_scale);
}

// ---- Painting

void ShowViewPanel::paintEvent(QPaintEvent* event) {
  const QRegion& asked = event->region();
  QPainter painter(this);
  for (const QRect& part : asked) painter.fillRect(part, theme::colour("panel"));
  for (const bool next : {false, true})
    if (asked.intersects(next ? m_layout.next : m_layout.stage)) paintCue(painter, next);
  if (asked.intersects(m_layout.time)) paintTime(painter);
  for (const Note& note : m_layout.notes)
    if (asked.intersects(note.place)) paintNote(painter, note);
}

void ShowViewPanel::paintCue(QPainter& painter, bool next) const {
  const ShowViewLook::Cue& cue = next ? m_look.next : m_look.stage;
  const QRect line = next ? m_layout.next : m_layout.stage;
  const int gap = px(type::Gap, m_scale);
  const int mark = px((next ? type::Next : type::Stage) * 0.66, m_scale);
  const int column = px(type::Stage * 0.72, m_scale);  // both numbers begin below each other
  const QColor colour = theme::colour(next ? "nextText" : "stageText");
  QRect place(line.left(), 0, mark, mark);
  place.moveTop(line.center().y() - mark / 2);
  if (!cue.number.empty())
    drawLetterMark(painter, place, next, theme::colour(next ? "nextLit" : "stageLit"),
                   theme::colour(next ? "nextInk" : "stageInk"));
  int x = line.left() + column + gap;

  const QFont numbers = theme::font(px(next ? type::Next : type::Stage, m_scale), true);
  painter.setFont(numbers);
  painter.setPen(colour);
  painter.drawText(QRect(x, line.top(), line.right() - x + 1, line.height()),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, text(cue.number));
  if (!cue.number.empty()) x += advance(numbers, text(cue.number)) + 2 * gap;

  const QRect room(x, line.top(), std::max(line.right() - x + 1, 0), line.height());
  painter.setFont(
      theme::condensed(px(next ? type::NextWords : type::StageWords, m_scale), !cue.number.empty()));
  painter.setPen(theme::colour(cue.number.empty() ? "text2" : "text"));
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(text(cue.description), Qt::ElideRight, room.width()));
}

void ShowViewPanel::paintTime(QPainter& painter) const {
  const QRect box = m_layout.time;
  const int caption = px(type::Fade * 1.5, m_scale);
  QRect below(box.left(), m_layout.next.top(), box.width(), caption);
  if (m_look.timeLeft.empty()) {
    below.moveTop(box.center().y() - caption / 2);
  } else {
    painter.setFont(theme::font(px(type::Time, m_scale), true));
    painter.setPen(theme::colour("text"));
    painter.drawText(QRect(box.left(), m_layout.stage.top(), box.width(), m_layout.stage.height()),
                     Qt::AlignCenter | Qt::TextDontClip, text(m_look.timeLeft));
  }
  painter.setFont(theme::condensed(px(type::Fade, m_scale)));
  painter.setPen(theme::colour("text2"));
  painter.drawText(below, Qt::AlignCenter, text(m_look.fade));
}

void ShowViewPanel::paintNote(QPainter& painter, const Note& note) const {
  using Kind = Note::Kind;
  struct Colours {
    const char* ground;
    const char* ink;
    const char* sign;
  };
  const auto colours = [&]() -> Colours {
    switch (note.kind) {
      case Kind::Blind:
        return {.ground = "blindFill", .ink = "nextInk", .sign = "nextInk"};
      case Kind::Live:
        return {.ground = "nextLit", .ink = "nextInk", .sign = "nextInk"};
      case Kind::Lost:
        return {.ground = "warn", .ink = "warnInk", .sign = "warnInk"};
      case Kind::Loop:
        return {.ground = "window", .ink = "text", .sign = "keyYellow"};
      default:
        return {.ground = "window", .ink = "text", .sign = "ok"};
    }
  }();
  const int gap = px(type::Gap, m_scale);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::colour(colours.ground));
  painter.drawRoundedRect(note.place, 4, 4);

  const int size = px(type::Note * 0.7, m_scale);
  QRect sign(note.place.left() + gap, note.place.center().y() - size / 2, size, size);
  if (note.kind == Kind::Loop)
    painter.drawPixmap(sign.topLeft(),
                       theme::picture("mark_loop", size, theme::colour(colours.sign), devicePixelRatioF()));
  if (note.kind == Kind::Interface || note.kind == Kind::Lost)
    drawLamp(painter, m_look.lamp, sign, theme::colour(colours.sign));
  const bool hasSign = note.kind == Kind::Loop || note.kind == Kind::Interface || note.kind == Kind::Lost;
  painter.setFont(theme::font(px(type::Note, m_scale)));
  painter.setPen(theme::colour(colours.ink));
  painter.drawText(note.place.adjusted(gap + signWidth(hasSign, m_scale), 0, 0, 0),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, note.text);
}

}  // namespace velgrove
