#include "desktop/sheet_layout.h"

#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <numeric>

namespace velgrove {
namespace {

using Cells = SheetLayout::Cells;

constexpr QChar NoBreakBlank(0x00A0);
constexpr QChar NoBreak(0x2060);  // takes no room, and keeps what is beside it together

/// A text in which a line breaks only where it may.
QString breakable(const std::string& text, Sheet::Wrap wrap) {
  QString shown = QString::fromStdString(text);
  if (wrap == Sheet::Wrap::AtWords) return shown;
  shown.replace(' ', NoBreakBlank);
  shown.replace(QString(",") + NoBreakBlank, ", ");
  return shown.replace("-", QString("-") + NoBreak);
}

QStringList linesOf(const QString& text, const PaperFont& font, qreal width) {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  QTextLayout layout(text, font.font);
  layout.setTextOption(option);
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    lines += text.mid(line.textStart(), line.textLength()).trimmed();
  }
  layout.endLayout();
  return lines;
}

qreal widest(const QStringList& texts, const QFontMetricsF& metrics) {
  qreal width = 0;
  for (const QString& text : texts) width = std::max(width, metrics.horizontalAdvance(text));
  return std::ceil(width) + 1;  // what is measured in one piece may need a dot more in another
}

qsizetype linesIn(const Cells& row) {
  qsizetype lines = 1;
  for (const QStringList& cell : row) lines = std::max(lines, cell.size());
  return lines;
}

/// Some lines of each cell; what goes on from another page says whose it is.
Cells part(const Cells& row, qsizetype first, qsizetype count) {
  Cells lines;
  for (const QStringList& cell : row) lines.push_back(cell.mid(first, count));
  if (first > 0) lines.front() = row.front().mid(0, 1);
  return lines;
}

}  // namespace

SheetLayout::SheetLayout(const Sheet& sheet, const Fonts& fonts, QSizeF room)
    : m_line(fonts.text.metrics.lineSpacing()),
      m_captionLine(fonts.caption.metrics.lineSpacing()),
      m_padding(fonts.padding) {
  const Sheet shown = withoutEmptyColumns(sheet);
  setColumns(shown, fonts, room.width());
  for (std::size_t i = 0; i < m_columns.size(); ++i)
    m_captions.push_back(
        linesOf(QString::fromStdString(shown.columns[i].caption), fonts.caption, m_columns[i].width));
  for (const auto& row : shown.rows) {
    Cells cells;
    for (std::size_t i = 0; i < m_columns.size(); ++i)
      cells.push_back(linesOf(breakable(row[i], shown.columns[i].wrap), fonts.text, m_columns[i].width));
    addRow(cells, room.height() - captionHeight());
  }
}

qreal SheetLayout::captionHeight() const {
  return static_cast<qreal>(linesIn(m_captions)) * m_captionLine + m_padding;
}

qreal SheetLayout::heightOf(const Cells& row) const {
  return static_cast<qreal>(linesIn(row)) * m_line + m_padding;
}

/// The narrow columns take what they need, and so leave more to the wide ones.
void SheetLayout::setColumns(const Sheet& sheet, const Fonts& fonts, qreal width) {
  const std::size_t count = sheet.columns.size();
  std::vector<qreal> wanted;
  for (std::size_t i = 0; i < count; ++i) {
    QStringList texts;
    for (const auto& row : sheet.rows) texts += breakable(row[i], sheet.columns[i].wrap);
    const QStringList caption = QString::fromStdString(sheet.columns[i].caption).split(' ');
    wanted.push_back(std::max(widest(texts, fonts.text.metrics), widest(caption, fonts.caption.metrics)));
  }
  std::vector<std::size_t> narrowFirst(count);
  std::iota(narrowFirst.begin(), narrowFirst.end(), std::size_t{0});
  std::ranges::stable_sort(narrowFirst, {}, [&wanted](std::size_t column) { return wanted[column]; });
  m_columns.resize(count);
  qreal left = width - fonts.gap * static_cast<qreal>(count - 1);
  std::size_t waiting = count;
  for (const std::size_t column : narrowFirst) {
    m_columns[column].width = std::min(wanted[column], left / static_cast<qreal>(waiting--));
    left -= m_columns[column].width;
  }
  qreal at = 0;
  for (std::size_t i = 0; i < count; ++i) {
    m_columns[i].left = at;
    m_columns[i].right = sheet.columns[i].align == Sheet::Align::Right;
    at += m_columns[i].width + fonts.gap;
  }
}

void SheetLayout::addRow(const Cells& row, qreal room) {
  const auto most = std::max<qsizetype>(1, static_cast<qsizetype>(std::floor((room - m_padding) / m_line)));
  for (qsizetype first = 0; first < linesIn(row); first += most) {
    Cells shown = part(row, first, most);
    const qreal height = heightOf(shown);
    if (m_used + height > room && !m_pages.back().empty()) {
      m_pages.emplace_back();
      m_used = 0;
    }
    m_pages.back().push_back(std::move(shown));
    m_used += height;
  }
}

}  // namespace velgrove
