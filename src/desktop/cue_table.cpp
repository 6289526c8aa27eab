#include "desktop/cue_table.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <numeric>
#include <tuple>

#include "desktop/list_table.h"
#include "desktop/marks.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

enum class Mark { None, Stage, Next };

Mark markOf(const RowPaint& paint) {
  switch (paint.left) {
    case QueueList::Red:
      return Mark::Stage;
    case QueueList::Green:
    case QueueList::PaleGreen:
      return Mark::Next;
    default:
      return Mark::None;
  }
}

/// The list's colour values on this desk. In a fade the strong colour is the part of the look that burns.
QColor ofRow(Colour value) {
  switch (value) {
    case QueueList::Red:
      return theme::colour("stageLit");
    case QueueList::PaleRed:
      return theme::colour("stageDim");
    case QueueList::PaleGreen:
      return theme::colour("nextLit");
    case QueueList::Green:
      return theme::colour("nextDim");
    default:
      return theme::colour("well");
  }
}

int splitAt(const QRect& row, const RowPaint& paint) {
  return row.left() + qRound(static_cast<double>(row.width()) * static_cast<double>(paint.split));
}

bool isQuiet(const QString& text) {
  return text == "None" || text == "0";
}

}  // namespace

// ---- The table

CueTable::CueTable(QWidget* parent) : QTreeView(parent) {
  setModel(&m_model);
  dressAsTable(*this);
  setMouseTracking(false);
  header()->setSectionResizeMode(QHeaderView::Fixed);
  header()->setStretchLastSection(false);
}

void CueTable::showFromAfar() {
  m_fromAfar = true;
  viewport()->setCursor(Qt::ArrowCursor);
}

void CueTable::setScale(double scale) {
  if (std::exchange(m_scale, scale) == scale) return;
  sizeRows();
  scrollToMarks();
}

int CueTable::leastWidth(double scale) const {
  int width = theme::sized(44, 48) + verticalScrollBar()->sizeHint().width();
  for (std::size_t column = 0; column < m_columns.size() && column <= DescColumn; ++column)
    width += column < DescColumn ? m_columns[column].Width : m_columns[column].Width / 2;
  return qRound(width * scale);
}

int CueTable::heightOf(int rows, double scale) {
  return qRound(theme::sized(20, 26) * scale) + rows * qRound(theme::sized(24, 32) * scale);
}

int CueTable::scaled(int compact, int roomy) const {
  return qRound(theme::sized(compact, roomy) * m_scale);
}

void CueTable::bind(Bindings& bindings, FindPlayer find) {
  m_face = &bindings.face();
  m_find = std::move(find);
  bindings.add({.copy = [this] { return copy(); }, .apply = [this] { apply(); }});
}

std::vector<CueTable::Marked> CueTable::markedRows(const QueueList& player) {
  const auto& state = player.State;
  std::vector<Marked> marked;
  for (const int row :
       {int{state.StageCue}, int{state.NextCue}, int{state.DragRow}, int{state.DragPrevRow}}) {
    if (row < 1 || row > player.ListView2.count()) continue;
    if (std::ranges::find(marked, row, &Marked::row) == marked.end())
      marked.push_back({.row = row, .paint = player.rowPaint(row)});
  }
  return marked;
}

bool CueTable::copy() {
  const QueueList* player = m_find();
  if (player == nullptr) {
    if (m_now.window == 0) return false;
    m_now = Copy{};
    m_now.columns = m_columns.size();
    m_rows.clear();
    return true;
  }
  const ListView& list = player->ListView2;
  const bool rowsChanged = m_now.window != player->Window.Identity || m_now.revision != list.revision();
  if (rowsChanged) {
    m_now.window = player->Window.Identity;
    m_now.revision = list.revision();
    m_columns = list.Columns;
    m_now.columns = m_columns.size();
    m_rows = list.rows();
    m_now.selected = list.selected();
    m_now.askedIntoView = list.visibleRows();
    m_now.requests = list.visibleRequests();
  }
  auto marked = markedRows(*player);
  const auto marks = std::tuple(int{player->State.StageCue}, int{player->State.NextCue}, list.MousePointer);
  if (!rowsChanged && marked == m_now.marked &&
      marks == std::tuple(m_now.stage, m_now.next, m_now.mousePointer))
    return false;
  std::tie(m_now.stage, m_now.next, m_now.mousePointer) = marks;
  m_now.marked = std::move(marked);
  return true;
}

void CueTable::apply() {
  if (m_shown.window != m_now.window || m_shown.revision != m_now.revision) {
    m_model.show(m_columns, m_rows);
    if (m_shown.columns != m_now.columns) sizeColumns();
    setCurrentIndex(m_model.index(m_now.selected - 1, 0));  // what assistive tools speak
    viewport()->update();
  }
  repaintMarks();
  const bool newWindow = m_shown.window != m_now.window;
  const bool marksMoved = m_shown.stage != m_now.stage || m_shown.next != m_now.next;
  if (newWindow || marksMoved) speakMarks();
  const bool asked = m_shown.requests != m_now.requests;
  viewport()->setCursor(m_now.mousePointer == ListView::Pointer::Forbidden ? Qt::ForbiddenCursor
                                                                           : Qt::ArrowCursor);
  m_shown = m_now;
  if (asked && !m_fromAfar)
    std::ranges::for_each(m_now.askedIntoView, [this](int row) { bringIntoView(row); });
  if (newWindow || marksMoved) scrollToMarks();
}

/// A running fade moves an edge through its row: only the strip that it passed is painted.
void CueTable::repaintMarks() {
  const auto paintIn = [](const Copy& copy, int row) {
    const auto found = std::ranges::find(copy.marked, row, &Marked::row);
    return found == copy.marked.end() ? RowPaint{} : found->paint;
  };
  for (const Copy* copy : {&m_shown, &m_now}) {
    for (const Marked& marked : copy->marked) {
      const RowPaint before = paintIn(m_shown, marked.row);
      const RowPaint now = paintIn(m_now, marked.row);
      if (before == now) continue;
      QRect changed = rowRect(marked.row);
      if (before.left == now.left && before.right == now.right) {
        const auto [from, to] = std::minmax({splitAt(changed, before), splitAt(changed, now)});
        if (from == to) continue;
        changed.setLeft(from);
        changed.setRight(to - 1);
      }
      viewport()->update(changed);
    }
  }
}

void CueTable::speakMarks() {
  std::map<int, QString> marks;
  if (m_now.stage > 0) marks[m_now.stage - 1] = "stage";
  if (m_now.next > 0) marks[m_now.next - 1] = m_now.next == m_now.stage ? "stage, next" : "next";
  m_model.setSpokenMarks(std::move(marks));
}

/// Keeps one row above the stage, and the next row, in view. Where there is little room the stage comes
/// first.
void CueTable::scrollToMarks() {
  constexpr int RowsForAll = 3;
  bringIntoView(m_now.next);
  if (viewport()->height() >= RowsForAll * rowPixels()) bringIntoView(m_now.stage - 1);
  bringIntoView(m_now.stage);
}

void CueTable::bringIntoView(int row) {
  if (row >= 1 && row <= m_model.rowCount()) scrollTo(m_model.index(row - 1, 0));
}

RowPaint CueTable::paintOf(int row) const {
  const auto found = std::ranges::find(m_shown.marked, row, &Marked::row);
  return found == m_shown.marked.end() ? RowPaint{} : found->paint;
}

// ---- Geometry

QRect CueTable::rowRect(int row) const {
  QRect rect = visualRect(m_model.index(row - 1, 0));
  rect.setLeft(0);
  rect.setRight(viewport()->width() - 1);
  return rect;
}

int CueTable::rowAt(const QPoint& point) const {
  if (!viewport()->rect().contains(point)) return 0;
  const QModelIndex index = indexAt({1, point.y()});
  return index.isValid() ? index.row() + 1 : 0;
}

/// The columns keep their widths, and the description takes what is left. Where that is little the times
/// stand closer.
void CueTable::sizeColumns() {
  if (m_columns.size() <= DescColumn) return;
  constexpr int Closer = 10;
  const int enough = m_columns[DescColumn].Width * 4 / 3;
  std::vector<int> widths(m_columns.size());
  for (std::size_t column = 0; column < widths.size(); ++column)
    widths[column] = isShown(column) ? qRound(m_columns[column].Width * m_scale) : 0;
  widths[0] += gutter();
  for (std::size_t link = DescColumn + 1; link < widths.size(); ++link)
    if (isShown(link)) widths[link] += theme::sized(4, 6);
  widths[DescColumn] = 0;
  int& words = widths[DescColumn] = viewport()->width() - std::reduce(widths.begin(), widths.end());
  for (std::size_t time = 1; time < DescColumn; ++time) {
    const int given = std::clamp(enough - words, 0, Closer);
    widths[time] -= given;
    words += given;
  }
  words = std::max(words, m_columns[DescColumn].Width / 2);
  for (std::size_t column = 0; column < widths.size(); ++column) {
    header()->setSectionHidden(static_cast<int>(column), !isShown(column));
    header()->resizeSection(static_cast<int>(column), widths[column]);
  }
}

void CueTable::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  sizeColumns();
  scrollToMarks();
}

void CueTable::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) sizeRows();
}

void CueTable::sizeRows() {
  m_model.setRowHeight(rowPixels());
  header()->setFixedHeight(heightOf(0, m_scale));
  if (m_fromAfar) {
    const QString type = QString("QHeaderView::section { font-size: %1px; }").arg(scaled(13, 14));
    if (header()->styleSheet() != type) header()->setStyleSheet(type);
  }
  sizeColumns();
}

// ---- Painting

void CueTable::paintEvent(QPaintEvent* event) {
  m_painted = event->rect();
  QTreeView::paintEvent(event);
}

void CueTable::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
  const int row = index.row() + 1;
  QRect rect = option.rect;
  rect.setLeft(0);
  rect.setRight(viewport()->width() - 1);
  const RowPaint paint = paintOf(row);
  painter->fillRect(rect, ofRow(paint.right));
  if (paint.left != paint.right) {
    QRect left = rect;
    left.setRight(splitAt(rect, paint) - 1);
    painter->fillRect(left, ofRow(paint.left));
  }
  painter->setPen(theme::colour("rowLine"));
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  drawCells(*painter, rect, index.row(), paint);
  drawMarks(*painter, rect, m_model.row(index.row()).SmallIcon, paint);
  if (row == m_shown.selected && !m_fromAfar) {
    painter->setPen(theme::colour("text"));
    painter->drawRect(rect.adjusted(0, 0, -1, -1));
  }
}

void CueTable::drawCells(QPainter& painter, const QRect& row, int index, const RowPaint& paint) const {
  const Mark mark = markOf(paint);
  const bool marked = mark != Mark::None;
  const QFont number = theme::font(scaled(15, 17), marked);
  const QFont words = theme::condensed(scaled(15, 17), marked);
  for (int column = 0; column < m_model.columnCount(); ++column) {
    QRect cell(header()->sectionViewportPosition(column), row.top(), header()->sectionSize(column),
               row.height());
    if (!cell.intersects(m_painted)) continue;
    const int beside = column < CueRows::FirstTextColumn ? 8 : 4;
    cell.adjust(scaled(4, 4), 0, -scaled(beside, beside), 0);
    const QString text = m_model.data(m_model.index(index, column), Qt::DisplayRole).toString();
    painter.setFont(column == static_cast<int>(DescColumn) ? words : number);
    painter.setPen(marked ? theme::colour(mark == Mark::Stage ? "stageInk" : "nextInk")
                          : theme::colour(column > 0 && isQuiet(text) ? "text3" : "text"));
    painter.drawText(cell, static_cast<int>(CueRows::alignment(column).toInt() | Qt::TextSingleLine),
                     column == static_cast<int>(DescColumn)
                         ? painter.fontMetrics().elidedText(text, Qt::ElideRight, cell.width())
                         : text);
  }
}

/// Left in the gutter the pointer or the loop, right of it S for the stage and N for the next cue, so that
/// the rows are told apart without their colours.
void CueTable::drawMarks(QPainter& painter, const QRect& row, int icon, const RowPaint& paint) const {
  if (row.left() + gutter() < m_painted.left()) return;
  const Mark mark = markOf(paint);
  const QColor ink = theme::colour(mark == Mark::None ? "text" : "stageInk");
  const int middle = row.center().y() + 1;
  if (icon == QueueList::PointerIcon || icon == QueueList::LoopIcon) {
    const bool loop = icon == QueueList::LoopIcon;
    const int size = scaled(16, 16);
    painter.drawPixmap(
        scaled(4, 4), middle - size / 2,
        theme::picture(loop ? "mark_loop" : "mark_pointer", size,
                       loop && mark == Mark::None ? theme::colour("keyYellow") : ink, devicePixelRatioF()));
  }
  if (mark == Mark::None) return;
  const int size = scaled(18, 18);
  drawLetterMark(painter, QRect(scaled(22, 22), middle - size / 2, size, size), mark == Mark::Next, ink,
                 ofRow(paint.left));
}

// ---- The hand and the keys

void CueTable::act(void (QueueList::*handler)(int), int row) {
  if (m_fromAfar) return;
  m_face->deliver([this, handler, row] {
    if (QueueList* player = m_find()) (player->*handler)(row);
  });
}

void CueTable::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton)
    act(&QueueList::ListView2_MouseDown, rowAt(event->position().toPoint()));
}

void CueTable::mouseMoveEvent(QMouseEvent* event) {
  if ((event->buttons() & Qt::LeftButton) != 0)
    act(&QueueList::ListView2_MouseMove, rowAt(event->position().toPoint()));
}

void CueTable::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton)
    act(&QueueList::ListView2_MouseUp, rowAt(event->position().toPoint()));
}

void CueTable::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

/// The arrow keys click the row that they lead to; from afar they scroll.
void CueTable::keyPressEvent(QKeyEvent* event) {
  if (m_fromAfar) return scrollBy(event);
  const int page = std::max(viewport()->height() / rowPixels() - 1, 1);
  const int from = std::max(m_now.selected, 1);
  switch (event->key()) {
    case Qt::Key_Up:
      return choose(m_now.selected == 0 ? m_now.stage : from - 1);
    case Qt::Key_Down:
      return choose(m_now.selected == 0 ? m_now.stage : from + 1);
    case Qt::Key_PageUp:
      return choose(from - page);
    case Qt::Key_PageDown:
      return choose(from + page);
    case Qt::Key_Home:
      return choose(1);
    case Qt::Key_End:
      return choose(m_model.rowCount());
    default:
      event->ignore();
  }
}

void CueTable::scrollBy(QKeyEvent* event) {
  const auto scroll = [this](QAbstractSlider::SliderAction step) {
    verticalScrollBar()->triggerAction(step);
  };
  switch (event->key()) {
    case Qt::Key_Up:
      return scroll(QAbstractSlider::SliderSingleStepSub);
    case Qt::Key_Down:
      return scroll(QAbstractSlider::SliderSingleStepAdd);
    case Qt::Key_PageUp:
      return scroll(QAbstractSlider::SliderPageStepSub);
    case Qt::Key_PageDown:
      return scroll(QAbstractSlider::SliderPageStepAdd);
    default:
      event->ignore();
  }
}

void CueTable::choose(int row) {
  if (m_model.rowCount() == 0) return;
  row = std::clamp(row, 1, m_model.rowCount());
  m_face->deliver([this, row] {
    QueueList* player = m_find();
    if (player == nullptr) return;
    player->ListView2_MouseDown(row);
    player->ListView2_MouseUp(row);
  });
}

}  // namespace velgrove
