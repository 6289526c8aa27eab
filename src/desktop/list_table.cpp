#include "desktop/list_table.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "desktop/theme.h"

namespace velgrove {

void dressAsTable(QTreeView& view) {
  view.setRootIsDecorated(false);
  view.setUniformRowHeights(true);
  view.setItemsExpandable(false);
  view.setSelectionMode(QAbstractItemView::NoSelection);
  view.setEditTriggers(QAbstractItemView::NoEditTriggers);
  view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  view.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  view.header()->setSectionsMovable(false);
}

ListTable::ListTable() {
  dressAsTable(*this);
  header()->setSectionsClickable(false);
  header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void ListTable::bind(Bindings& bindings, const ListView& list, Press press, Press activate) {
  m_face = &bindings.face();
  m_press = std::move(press);
  m_activate = std::move(activate);
  showHead(list);
  struct Copy {
    unsigned revision = 0;
    bool known = false;
    std::vector<ListView::Row> rows;
    int selected = 0;
    int wanted = 0;
    unsigned requests = 0;
  };
  const auto shown = std::make_shared<Copy>();
  bindings.add({.copy =
                    [&list, shown] {
                      if (shown->known && shown->revision == list.revision()) return false;
                      *shown = {.revision = list.revision(),
                                .known = true,
                                .rows = list.rows(),
                                .selected = list.selected(),
                                .wanted = list.visibleRows().back(),
                                .requests = list.visibleRequests()};
                      return true;
                    },
                .apply =
                    [this, shown] {
                      show(shown->rows, shown->selected);
                      bringIntoView(shown->wanted, shown->requests);
                    }});
}

void ListTable::bringIntoView(int row, unsigned requests) {
  if (std::exchange(m_requests, requests) != requests && row > 0) scrollToItem(topLevelItem(row - 1));
}

void ListTable::widenLastColumn() {
  const int last = columnCount() - 1;
  for (int column = 0; column < last; ++column)
    header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
  header()->setSectionResizeMode(last, QHeaderView::Stretch);
}

/// Headers and tip never change once the desk stands.
void ListTable::showHead(const ListView& list) {
  QStringList headers;
  for (const ListView::Column& column : list.Columns)
    headers.push_back(QString::fromStdString(column.Header));
  setHeaderLabels(headers);
  header()->setSectionResizeMode(QHeaderView::Stretch);
  setToolTip(QString::fromStdString(list.ToolTip));
}

/// A new row at the end is brought into view, and so is the one that the hand chose.
void ListTable::show(const std::vector<ListView::Row>& rows, int selected) {
  const int wanted = static_cast<int>(rows.size());
  const bool grows = topLevelItemCount() < wanted;
  while (topLevelItemCount() > wanted) delete takeTopLevelItem(topLevelItemCount() - 1);
  QFont bold;
  bold.setBold(true);
  while (topLevelItemCount() < wanted) (new QTreeWidgetItem(this))->setFont(0, bold);
  for (int row = 0; row < wanted; ++row)
    for (int column = 0; column < columnCount(); ++column)
      topLevelItem(row)->setText(
          column, QString::fromStdString(
                      rows[static_cast<std::size_t>(row)].Texts[static_cast<std::size_t>(column)]));
  const bool chosen = std::exchange(m_selected, selected) != selected;
  setCurrentItem(topLevelItem(selected - 1));  // what assistive tools speak
  if (grows) scrollToBottom();
  if (chosen && selected > 0) scrollToItem(topLevelItem(selected - 1));
  viewport()->update();
}

void ListTable::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  QRect rect = option.rect;
  rect.setLeft(0);
  rect.setRight(viewport()->width() - 1);
  const bool selected = index.row() + 1 == m_selected;
  if (selected) painter->fillRect(rect, theme::colour("panel"));
  QTreeWidget::drawRow(painter, option, index);
  painter->setPen(theme::colour(selected ? "text" : "rowLine"));
  if (selected)
    painter->drawRect(rect.adjusted(0, 0, -1, -1));
  else
    painter->drawLine(rect.bottomLeft(), rect.bottomRight());
}

void ListTable::press(int row) {
  m_face->deliver([this, row] { m_press(row); });
}

void ListTable::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QModelIndex under = indexAt(event->position().toPoint());
  press(under.isValid() ? under.row() + 1 : 0);
}

/// A drag means nothing here.
void ListTable::mouseMoveEvent(QMouseEvent* /*event*/) {}

void ListTable::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
  const QModelIndex under = indexAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && under.isValid()) activate(under.row() + 1);
}

void ListTable::activate(int row) {
  if (m_activate && row > 0) m_face->deliver([this, row] { m_activate(row); });
}

/// The keys of movement click the row that they lead to.
void ListTable::keyPressEvent(QKeyEvent* event) {
  const int rows = topLevelItemCount();
  const int rowHeight = std::max(sizeHintForRow(0), 1);
  const int page = std::max(viewport()->height() / rowHeight - 1, 1);
  const auto choose = [this, rows](int row) {
    if (rows > 0) press(std::clamp(row, 1, rows));
  };
  switch (event->key()) {
    case Qt::Key_Up:
      return choose(m_selected - 1);
    case Qt::Key_Down:
      return choose(m_selected + 1);
    case Qt::Key_PageUp:
      return choose(m_selected - page);
    case Qt::Key_PageDown:
      return choose(m_selected + page);
    case Qt::Key_Home:
      return choose(1);
    case Qt::Key_End:
      return choose(rows);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return activate(m_selected);
    default:
      event->ignore();
  }
}

}  // namespace velgrove
