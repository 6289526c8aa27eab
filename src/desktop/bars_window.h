#pragma once

#include <QPen>
#include <QPixmap>
#include <QStaticText>
#include <QWidget>
#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "desktop/binding.h"
#include "desktop/newest.h"
#include "dmx/frm_bars.h"

namespace velgrove {

/// A window of bars: one cell a channel, with its number on top, what holds it beside that, and its level as
/// a fill from below. All of them are painted by this one widget, and only those whose level changed. The
/// arrow keys go from cell to cell, and say in words what it shows, as the mouse does.
class BarsWindow : public QWidget {
  Q_OBJECT

 public:
  using FindBars = std::function<frmBars*()>;
  BarsWindow(Face& face, FindBars find);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Level {
    int percent = 0;
    Colour colour = 0;
    friend bool operator==(const Level&, const Level&) = default;
  };
  /// What holds a channel, as it is shown and spoken.
  struct Source {
    Colour value;
    const char* token;
    const char* words = "";
    QPen pen{};
    QPixmap mark{};
  };
  struct Layout {
    std::vector<QPoint> corners;
    std::vector<std::string> captions;
    QSize cell;
  };

  bool copy();
  [[nodiscard]] static Layout layoutOf(const frmBars& bars);
  void apply();
  void showLayout();
  void showLevels();
  void prepare();
  [[nodiscard]] QPixmap canvas(QSize size) const;
  void placeCells();

  void paintGround(QPainter& painter, const QRegion& region) const;
  void paintLegend(QPainter& painter) const;
  void paintCell(QPainter& painter, std::size_t index) const;
  void paintNumber(QPainter& painter, const QRect& inside, int top, const Level& level) const;
  [[nodiscard]] const Source& sourceOf(Colour value) const;
  [[nodiscard]] std::optional<std::size_t> cellAt(QPoint at) const;
  [[nodiscard]] QString wordsOf(std::size_t cell) const;
  [[nodiscard]] std::optional<int> wayOf(int key) const;
  void goTo(int cell);
  [[nodiscard]] QRect cellRect(std::size_t index) const { return {m_corners[index], m_layout.cell}; }

  FindBars m_find;
  Newest<QSize> m_size;
  Layout m_layout;
  std::array<Level, frmBars::MostBars> m_levels;

  // Copied from the desk, to be shown
  std::optional<Layout> m_newLayout;
  std::array<Level, frmBars::MostBars> m_newLevels;
  bool m_hasLegend = false;
  unsigned m_layouts = 0;
  unsigned m_refreshes = 0;

  // Made once, for a layout and a screen
  double m_ratio = 1;
  std::array<Source, 4> m_sources;
  QFont m_captionFont, m_numberFont;
  QPen m_bright, m_dim, m_dark;
  std::vector<QPoint> m_corners;  ///< of the cells, in the widget
  QRegion m_cells;
  QRect m_legend;  ///< where the grid leaves room for it
  std::vector<QStaticText> m_captions;
  std::array<QStaticText, 101> m_numbers;
  QPixmap m_blank;  ///< a cell without anything
  int m_outline = 0;
  int m_header = 0;         ///< height of a cell's header; 0: the cells are too small for it
  int m_current = -1;       ///< the cell on which the keys stand; -1 for none
  bool m_numbered = false;  ///< the cells are large enough for their levels as numbers
  Bindings m_bindings;
};

}  // namespace velgrove
