#include "desktop/bars_window.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "desktop/marks.h"
#include "desktop/spoken.h"
#include "desktop/theme.h"
#include "desktop/twips.h"

namespace velgrove {
namespace {

constexpr int Header = 18;
constexpr int MarkSize = 7;
constexpr int Beside = 2;        // free beside a caption and a mark
constexpr int AboveFill = 3;     // free between the fill and the number on top of it
constexpr int InsideAbove = 55;  // percent: from there on the number stands inside of the fill
constexpr QSize Legend(400, 24);
constexpr const char* NothingToShow =
    "Rows and columns are set in Edit, Preferences; they hold for windows opened from then on.";

constexpr auto Queue = static_cast<std::size_t>(Source::Queue);

}  // namespace

BarsWindow::BarsWindow(Face& face, FindBars find)
    : m_find(std::move(find)),
      m_sources{{{.value = 255, .token = "manual"},
                 {.value = 65535, .token = "queue"},
                 {.value = 16777215, .token = "input"},
                 {.value = 16711935, .token = "sub"}}},
      m_bindings(face) {
  setObjectName("frmBars");
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  for (std::size_t i = 0; i < m_sources.size(); ++i)
    m_sources[i].words = velgrove::wordsOf(static_cast<velgrove::Source>(i));
  speak(*this, {.role = QAccessible::List},
        {.count = [this] { return static_cast<int>(m_corners.size()); },
         .name = [this](int cell) { return wordsOf(static_cast<std::size_t>(cell)); },
         .place = [this](int cell) { return cellRect(static_cast<std::size_t>(cell)); },
         .current = [this] { return m_current < static_cast<int>(m_corners.size()) ? m_current : -1; }});
  prepare();
  m_bindings.mirror(
      [this] {
        const frmBars* bars = m_find();
        return bars == nullptr ? std::string() : bars->Window.Caption;
      },
      [this](const std::string& caption) { setAccessibleName(QString::fromStdString(caption)); });
  m_bindings.add({.copy = [this] { return copy(); }, .apply = [this] { apply(); }});
}

QSize BarsWindow::sizeHint() const {
  return theme::sized(QSize(1000, 600), QSize(1100, 700));
}
QSize BarsWindow::minimumSizeHint() const {
  return {320, 200};
}

// ---- From the desk

/// A layout clears the bars until the next refresh. What they showed stays until then: a window that is drawn
/// larger doesn't flicker.
bool BarsWindow::copy() {
  const frmBars* bars = m_find();
  if (bars == nullptr) return false;
  if (std::exchange(m_layouts, bars->Layouts) != bars->Layouts) {
    m_newLayout = layoutOf(*bars);
    m_hasLegend = !bars->updateTimerInput.enabled();
  }
  if (std::exchange(m_refreshes, bars->Refreshes) != bars->Refreshes)
    for (std::size_t i = 0; i < m_newLevels.size(); ++i)
      m_newLevels[i] = {.percent = bars->Bars[i].Value, .colour = bars->Bars[i].BarColour};
  return m_newLayout.has_value() || m_newLevels != m_levels;
}

BarsWindow::Layout BarsWindow::layoutOf(const frmBars& bars) {
  Layout layout;
  const auto toPixels = [](int twips) { return pixels(static_cast<float>(twips)); };
  for (const LevelBar& bar : bars.Bars) {
    if (!bar.Visible) continue;
    layout.corners.emplace_back(toPixels(bar.Left), toPixels(bar.Top));
    layout.captions.push_back(bar.Caption);
    layout.cell = {toPixels(bar.Width), toPixels(bar.Height)};
  }
  return layout;
}

void BarsWindow::apply() {
  if (!m_newLayout) {
    showLevels();
    return;
  }
  m_layout = std::move(*m_newLayout);
  m_newLayout.reset();
  showLayout();
}

void BarsWindow::showLayout() {
  m_levels = m_newLevels;
  prepare();
  update();
}

/// From half of the bars on it's cheaper to paint all than to keep to the cells: the toolkit cuts each stroke
/// to what is to be painted, and takes its time over a hundred pieces.
void BarsWindow::showLevels() {
  constexpr int MostPieces = frmBars::MostBars / 2;
  QRegion changed;
  for (std::size_t i = 0; i < m_corners.size(); ++i)
    if (m_levels[i] != m_newLevels[i]) changed += cellRect(i);
  m_levels = m_newLevels;
  update(changed.rectCount() > MostPieces ? changed.boundingRect() : changed);
}

// ---- What is made once

QPixmap BarsWindow::canvas(QSize size) const {
  QPixmap made(size * devicePixelRatioF());
  made.setDevicePixelRatio(devicePixelRatioF());
  made.fill(Qt::transparent);
  return made;
}

void BarsWindow::prepare() {
  m_ratio = devicePixelRatioF();
  m_captionFont = theme::condensed(theme::sized(12, 13));
  m_numberFont = theme::font(theme::sized(13, 14), true);
  m_bright = theme::colour("text");
  m_dim = theme::colour("text3");
  m_dark = theme::colour("well");
  for (std::size_t i = 0; i < m_sources.size(); ++i) {
    m_sources[i].pen = theme::colour(m_sources[i].token);
    m_sources[i].mark = canvas({MarkSize, MarkSize});
    QPainter painter(&m_sources[i].mark);
    painter.setRenderHint(QPainter::Antialiasing);
    drawSourceMark(painter, static_cast<velgrove::Source>(i), theme::colour(m_sources[i].token),
                   QRectF(0, 0, MarkSize, MarkSize));
  }
  const auto text = [](const QString& words, const QFont& font) {
    QStaticText made(words);
    made.setTextFormat(Qt::PlainText);
    made.prepare({}, font);
    return made;
  };
  for (int percent = 0; percent <= 100; ++percent)
    m_numbers[static_cast<std::size_t>(percent)] = text(QString::number(percent), m_numberFont);
  m_captions.clear();
  for (const std::string& caption : m_layout.captions)
    m_captions.push_back(text(QString::fromStdString(caption), m_captionFont));
  placeCells();
}

/// The grid is as far from the top as from the sides. A cell that is too small for all lets go of its header
/// first, and then of its number.
void BarsWindow::placeCells() {
  QRect grid;
  for (const QPoint& corner : m_layout.corners) grid |= QRect(corner, m_layout.cell);
  const int aside = std::max(width() - grid.width(), 0) / 2;
  const QPoint away(aside, std::min(aside, std::max(height() - grid.height(), 0) / 2));
  m_cells = {};
  m_corners.clear();
  for (const QPoint& corner : m_layout.corners) {
    m_corners.push_back(corner + away);
    m_cells += QRect(m_corners.back(), m_layout.cell);
  }
  grid.translate(away);
  const int below = height() - 1 - grid.bottom();
  m_legend = {};
  if (m_hasLegend && !m_corners.empty() && below >= Legend.height() && width() >= Legend.width())
    m_legend = {away.x(), grid.bottom() + 1 + (below - Legend.height()) / 2, width() - 2 * away.x(),
                Legend.height()};

  constexpr int LeastWithOutline = 6;
  m_outline = std::min(m_layout.cell.width(), m_layout.cell.height()) < LeastWithOutline ? 0 : 1;
  const QSize inside = m_layout.cell - 2 * QSize(m_outline, m_outline);
  const int digits = QFontMetrics(m_numberFont).capHeight() + AboveFill + 1;
  const double leastOfNumber = digits * 100.0 / (100 - InsideAbove);
  const auto hasRoom = [&](int height, const QFont& font, const char* widest) {
    return height >= leastOfNumber && inside.width() >= QFontMetrics(font).horizontalAdvance(widest) + 2;
  };
  m_header = hasRoom(inside.height() - Header, m_captionFont, "200:") ? Header : 0;
  m_numbered = hasRoom(inside.height() - m_header, m_numberFont, "100");
  if (m_layout.cell.isEmpty()) return;
  m_blank = canvas(m_layout.cell);
  m_blank.fill(theme::colour("panel"));
  QPainter painter(&m_blank);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(theme::colour(m_outline > 0 ? "line" : "well"));
  painter.setBrush(theme::colour("well"));
  painter.drawRoundedRect(QRectF(QPointF(0.5, 0.5), QSizeF(m_layout.cell) - QSizeF(1, 1)), 2, 2);
}

// ---- Painting

const BarsWindow::Source& BarsWindow::sourceOf(Colour value) const {
  const auto* const found = std::ranges::find(m_sources, value, &Source::value);
  return found == m_sources.end() ? m_sources[Queue] : *found;
}

void BarsWindow::paintEvent(QPaintEvent* event) {
  if (m_ratio != devicePixelRatioF()) prepare();  // on another screen
  QPainter painter(this);
  paintGround(painter, event->region());
  for (std::size_t i = 0; i < m_corners.size(); ++i)
    if (event->region().intersects(cellRect(i))) paintCell(painter, i);
  if (!hasFocus()) return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(theme::colour("focus"), 2));
  painter.drawRect(rect().adjusted(1, 1, -1, -1));
  const auto current = static_cast<std::size_t>(m_current);  // -1 is beyond them all
  if (current < m_corners.size()) painter.drawRect(cellRect(current));
}

void BarsWindow::paintGround(QPainter& painter, const QRegion& region) const {
  const QRegion ground = region - m_cells;
  if (ground.isEmpty()) return;
  for (const QRect& part : ground) painter.fillRect(part, theme::colour("panel"));
  if (m_corners.empty()) {
    painter.setPen(m_dim);
    painter.drawText(rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, NothingToShow);
  }
  if (!m_legend.isEmpty()) paintLegend(painter);
}

void BarsWindow::paintLegend(QPainter& painter) const {
  constexpr QSize Sample(22, 14);
  painter.setFont(m_captionFont);
  QRect place(m_legend.topLeft() + QPoint(0, (Legend.height() - Sample.height()) / 2), Sample);
  for (const Source& source : m_sources) {
    painter.fillRect(place, source.pen.color());
    painter.drawPixmap(place.right() + 6, place.center().y() - MarkSize / 2, source.mark);
    const int words = place.right() + 6 + (&source == &m_sources[Queue] ? 0 : MarkSize + 4);
    painter.setPen(theme::colour("text2"));
    painter.drawText(QRect(words, m_legend.top(), 120, Legend.height()), Qt::AlignVCenter, source.words);
    place.moveLeft(words + QFontMetrics(m_captionFont).horizontalAdvance(source.words) + 24);
  }
}

void BarsWindow::paintCell(QPainter& painter, std::size_t index) const {
  const Level& level = m_levels[index];
  const Source& source = sourceOf(level.colour);
  const QRect cell = cellRect(index);
  painter.drawPixmap(cell.topLeft(), m_blank);
  const QRect inside = cell.adjusted(m_outline, m_outline, -m_outline, -m_outline);
  if (m_header > 0) {
    const QStaticText& caption = m_captions[index];
    const int height = qRound(caption.size().height());
    painter.setFont(m_captionFont);
    painter.setPen(level.percent > 0 ? m_bright : m_dim);
    painter.drawStaticText(inside.left() + Beside, inside.top() + (Header - height) / 2, caption);
    const int mark = inside.right() + 1 - Beside - MarkSize;
    const bool hasRoom = inside.left() + Beside + caption.size().width() < mark;
    if (level.percent > 0 && hasRoom)
      painter.drawPixmap(mark, inside.top() + (Header - MarkSize) / 2, source.mark);
  }
  if (level.percent < 1) return;
  const int whole = inside.height() - m_header;
  const int fill = std::max(whole * level.percent / 100, 1);
  const int top = inside.bottom() + 1 - fill;
  painter.fillRect(inside.left(), top, inside.width(), fill, source.pen.color());
  if (m_numbered) paintNumber(painter, inside, top, level);
}

/// The number stands whole in the fill or whole above it.
void BarsWindow::paintNumber(QPainter& painter, const QRect& inside, int top, const Level& level) const {
  const bool within = level.percent > InsideAbove;
  const QStaticText& number = m_numbers[static_cast<std::size_t>(std::min(level.percent, 100))];
  const int ascent = QFontMetrics(m_numberFont).ascent();
  const int left = inside.left() + qRound((inside.width() - number.size().width()) / 2);
  painter.setFont(m_numberFont);
  painter.setPen(within ? m_dark : sourceOf(level.colour).pen);
  painter.drawStaticText(left, within ? top + 1 : top - AboveFill - ascent, number);
}

// ---- To the desk, and the hand

void BarsWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placeCells();
  m_size.deliver(m_bindings.face(), size(), [find = m_find](const QSize& inside) {
    frmBars* bars = find();
    if (bars == nullptr) return;
    bars->Window.Width = twips(inside.width());
    bars->Window.Height = twips(inside.height());
    bars->Form_Resize();
  });
}

void BarsWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::StyleChange) return;
  prepare();
  update();
}

void BarsWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape)
    parentWidget()->close();
  else if (const auto cell = wayOf(event->key()))
    goTo(*cell);
  else
    QWidget::keyPressEvent(event);
}

/// Where a key leads: along the channels, or to the bar below or above in a grid of rows.
std::optional<int> BarsWindow::wayOf(int key) const {
  const auto inFirstRow = [this](QPoint corner) { return corner.y() == m_corners.front().y(); };
  const int row = static_cast<int>(std::ranges::count_if(m_corners, inFirstRow));
  switch (key) {
    case Qt::Key_Right:
      return m_current + 1;
    case Qt::Key_Left:
      return m_current - 1;
    case Qt::Key_Down:
      return m_current < 0 ? 0 : m_current + row;
    case Qt::Key_Up:
      return m_current - row;
    case Qt::Key_Home:
      return 0;
    case Qt::Key_End:
      return static_cast<int>(m_corners.size()) - 1;
    default:
      return {};
  }
}

void BarsWindow::goTo(int cell) {
  if (m_corners.empty()) return;
  m_current = std::clamp(cell, 0, static_cast<int>(m_corners.size()) - 1);
  update();
  speakCurrent(*this);
  const auto at = static_cast<std::size_t>(m_current);
  QToolTip::showText(mapToGlobal(cellRect(at).bottomLeft()), wordsOf(at), this, cellRect(at));
}

QString BarsWindow::wordsOf(std::size_t cell) const {
  const Level& level = m_levels[cell];
  QString words = QString("Channel %1: %2 %").arg(cell + 1).arg(level.percent);
  if (level.percent > 0) words += QString(", ") + sourceOf(level.colour).words;
  return words;
}

std::optional<std::size_t> BarsWindow::cellAt(QPoint at) const {
  for (std::size_t i = 0; i < m_corners.size(); ++i)
    if (cellRect(i).contains(at)) return i;
  return std::nullopt;
}

bool BarsWindow::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = *static_cast<QHelpEvent*>(event);
  const auto index = cellAt(help.pos());
  if (!index) {
    QToolTip::hideText();
    return true;
  }
  QToolTip::showText(help.globalPos(), wordsOf(*index), this, cellRect(*index));
  return true;
}

}  // namespace velgrove
