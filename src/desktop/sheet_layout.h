#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QPaintDevice>
#include <QSizeF>
#include <QStringList>
#include <vector>

#include "model/sheet.h"

namespace velgrove {

/// A font with its measures on one device.
struct PaperFont {
  PaperFont(const QFont& on, QPaintDevice& device) : font(on, &device), metrics(font, &device) {}

  QFont font;
  QFontMetricsF metrics;
};

/// A sheet broken into lines and pages. Lengths are dots of the device.
class SheetLayout {
 public:
  /// The lines in each cell of a row.
  using Cells = std::vector<QStringList>;
  struct Column {
    qreal left = 0;
    qreal width = 0;
    bool right = false;  ///< its texts stand at its right edge
  };
  struct Fonts {
    PaperFont text;
    PaperFont caption;
    qreal gap;      ///< between two columns
    qreal padding;  ///< of a row, above and below its lines together
  };

  /// For the columns that say something. `room` holds captions and rows of a page. Columns are as wide as
  /// their texts; those for which there's no room share what is left, and their texts go on in more lines.
  SheetLayout(const Sheet& sheet, const Fonts& fonts, QSizeF room);

  [[nodiscard]] const std::vector<Column>& columns() const { return m_columns; }
  [[nodiscard]] const Cells& captions() const { return m_captions; }
  /// At least one, with the rows of each. A row stays whole; one that is higher than a page goes on behind
  /// its first text on the next one.
  [[nodiscard]] const std::vector<std::vector<Cells>>& pages() const { return m_pages; }
  [[nodiscard]] qreal captionHeight() const;
  [[nodiscard]] qreal heightOf(const Cells& row) const;

 private:
  void setColumns(const Sheet& sheet, const Fonts& fonts, qreal width);
  void addRow(const Cells& row, qreal room);

  std::vector<Column> m_columns;
  Cells m_captions;
  std::vector<std::vector<Cells>> m_pages{1};
  qreal m_used = 0;  ///< height of the rows of the last page
  qreal m_line;
  qreal m_captionLine;
  qreal m_padding;
};

}  // namespace velgrove
