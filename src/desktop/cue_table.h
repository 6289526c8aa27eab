#pragma once

#include <QAbstractTableModel>
#include <QTreeView>
#include <array>
#include <functional>
#include <map>
#include <vector>

#include "desktop/binding.h"
#include "playback/queue_list.h"

namespace velgrove {

/// The rows of a cue list. New rows come in by difference, so that selection and scrolling stay.
class CueRows : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  static constexpr int FirstTextColumn = 4;  ///< numbers and times stand before it

  void show(const std::vector<ListView::Column>& columns, const std::vector<ListView::Row>& rows);

  void setRowHeight(int pixels);
  /// What the colours and the mark of a row say, in words behind its number; only assistive tools see them.
  void setSpokenMarks(std::map<int, QString> marks);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  [[nodiscard]] const ListView::Row& row(int index) const { return m_rows[static_cast<std::size_t>(index)]; }
  /// Numbers and times stand at the right of their columns, texts at the left.
  [[nodiscard]] static Qt::Alignment alignment(int column);

 private:
  [[nodiscard]] QString spokenNumber(int at) const;
  void replaceMiddle(int first, int removed, int inserted, const std::vector<ListView::Row>& rows);

  std::vector<ListView::Column> m_columns;
  std::vector<ListView::Row> m_rows;
  std::map<int, QString> m_marks;  ///< by row, from 0
  int m_rowHeight = 24;
};

/// The cue list of a player on the screen: rows in the colours of stage and next, fades running through them,
/// marks in the gutter, and the hand that drags them.
class CueTable : public QTreeView {
  Q_OBJECT

 public:
  explicit CueTable(QWidget* parent = nullptr);

  /// A list to be read from afar: neither hand nor pointer moves anything in it, and the links are left out.
  void showFromAfar();
  /// Rows and type so many times as large as usual.
  void setScale(double scale);
  /// What numbers, times and some words of a description take at a scale; pixels.
  [[nodiscard]] int leastWidth(double scale) const;
  /// What the header and so many rows take at a scale; pixels.
  [[nodiscard]] static int heightOf(int rows, double scale);

  using FindPlayer = std::function<QueueList*()>;
  void bind(Bindings& bindings, FindPlayer find);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  static constexpr std::size_t DescColumn = 4;

  /// A row that isn't plain.
  struct Marked {
    int row = 0;
    RowPaint paint;
    bool operator==(const Marked&) const = default;
  };

  struct Copy {
    unsigned window = 0;
    unsigned revision = 0;
    std::size_t columns = 0;
    int selected = 0;
    std::array<int, 2> askedIntoView{};
    unsigned requests = 0;
    int stage = 0;
    int next = 0;
    ListView::Pointer mousePointer = ListView::Pointer::Arrow;
    std::vector<Marked> marked;
  };

  bool copy();
  void apply();
  [[nodiscard]] static std::vector<Marked> markedRows(const QueueList& player);
  void repaintMarks();
  void speakMarks();
  void scrollToMarks();
  void bringIntoView(int row);
  void sizeColumns();
  [[nodiscard]] RowPaint paintOf(int row) const;
  [[nodiscard]] int rowAt(const QPoint& point) const;
  [[nodiscard]] QRect rowRect(int row) const;
  void act(void (QueueList::*handler)(int), int row);
  [[nodiscard]] int scaled(int compact, int roomy) const;
  [[nodiscard]] int gutter() const { return scaled(44, 48); }
  [[nodiscard]] int rowPixels() const { return scaled(24, 32); }
  [[nodiscard]] bool isShown(std::size_t column) const { return !m_fromAfar || column <= DescColumn; }
  void sizeRows();
  void choose(int row);
  void scrollBy(QKeyEvent* event);
  void drawCells(QPainter& painter, const QRect& row, int index, const RowPaint& paint) const;
  void drawMarks(QPainter& painter, const QRect& row, int icon, const RowPaint& paint) const;

  CueRows m_model;
  Face* m_face = nullptr;
  FindPlayer m_find;
  std::vector<ListView::Column> m_columns;
  std::vector<ListView::Row> m_rows;  ///< copied last, and taken over by the model
  Copy m_now;                         ///< the desk's, copied last
  Copy m_shown;                       ///< on the screen
  QRect m_painted;
  bool m_fromAfar = false;
  double m_scale = 1;
};

}  // namespace velgrove
