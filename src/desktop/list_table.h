#pragma once

#include <QTreeWidget>
#include <functional>
#include <vector>

#include "controls/list_view.h"
#include "desktop/binding.h"

namespace velgrove {

/// Rows and columns without a tree, an editor or a fill for the selection, as every list of the desk shows
/// them.
void dressAsTable(QTreeView& view);

/// A plain list of the desk on the screen, its columns equally wide. The desk says which row is selected: a
/// click, and each key that moves along the rows, tells it which one the hand means.
class ListTable : public QTreeWidget {
  Q_OBJECT

 public:
  ListTable();

  /// Called with the desk held: the row under the hand, 0 beside them all.
  using Press = std::function<void(int row)>;
  /// The list lives as long as the desk. `activate` is what a double click and Enter do to a row.
  void bind(Bindings& bindings, const ListView& list, Press press, Press activate = {});
  /// Gives all room to the last column; the others take what they need. Once, behind `bind`.
  void widenLastColumn();

 protected:
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void showHead(const ListView& list);
  void show(const std::vector<ListView::Row>& rows, int selected);
  void bringIntoView(int row, unsigned requests);
  void press(int row);
  void activate(int row);

  Face* m_face = nullptr;
  Press m_press;
  Press m_activate;
  int m_selected = 0;
  unsigned m_requests = 0;
};

}  // namespace velgrove
