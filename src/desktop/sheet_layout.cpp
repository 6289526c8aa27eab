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

/// A line as it is written; the marks that kept it together are of no use any more.
QString written(QString line) {
  return line.remove(NoBreak).replace(NoBreakBlank, ' ').trimmed();
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
    lines += written(text.mid(line.textStart(), line.textLength()));
  }
  layout.endLayout();
  return lines;
}

qreal widest(const QStringList& texts, const QFontMetricsF& metrics) {
  qreal width = 0;
  for (const QString& text : texts) width = std::max(width, metrics.horizontalAdvance(text));
  return std::ceil(width) + 1;  // what is measured in one piece may need a dot more in another
}

/// The widths that columns get: what they want, or else their share by weight of what the others leave.
std::vector<qreal> sharedOut(const std::vector<qreal>& wanted, const std::vector<qreal>& weights,
                             qreal room) {
  std::vector<std::size_t> contentFirst(wanted.size());
  std::iota(contentFirst.begin(), contentFirst.end(), std::size_t{0});
  std::ranges::stable_sort(contentFirst, {}, [&](std::size_t i) { return wanted[i] / weights[i]; });
  qreal weight = std::accumulate(weights.begin(), weights.end(), qreal{0});
  std::vector<qreal> widths(wanted.size());
  for (const std::size_t i : contentFirst) {
    widths[i] = std::min(wanted[i], room * weights[i] / weight);
    room -= widths[i];
    weight -= weights[i];
  }
  return widths;
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

/// Shares out anew what the columns got that want more; none is squeezed for having but one long text.
void shareAmongWide(std::vector<qreal>& widths, const std::vector<qreal>& wanted,
                    const std::vector<qreal>& weights) {
  std::vector<std::size_t> wide;
  std::vector<qreal> theirWanted;
  std::vector<qreal> theirWeights;
  qreal room = 0;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    if (widths[i] >= wanted[i]) continue;
    wide.push_back(i);
    theirWanted.push_back(wanted[i]);
    theirWeights.push_back(weights[i]);
    room += widths[i];
  }
  if (wide.empty()) return;
  constexpr qreal LeastOfLargest = 1.0 / 3;
  const qreal least = LeastOfLargest * std::ranges::max(theirWeights);
  for (qreal& weight : theirWeights) weight = std::max(weight, least);
  const auto shares = sharedOut(theirWanted, theirWeights, room);
  for (std::size_t i = 0; i < wide.size(); ++i) widths[wide[i]] = shares[i];
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

/// The narrow columns take what they need. The wide ones share the rest, more for those with more to say: so
/// the sheet takes the fewest pages.
void SheetLayout::setColumns(const Sheet& sheet, const Fonts& fonts, qreal width) {
  std::vector<qreal> wanted;
  std::vector<qreal> weights;
  for (std::size_t i = 0; i < sheet.columns.size(); ++i) {
    QStringList texts;
    for (const auto& row : sheet.rows) texts += breakable(row[i], sheet.columns[i].wrap);
    const QStringList caption = QString::fromStdString(sheet.columns[i].caption).split(' ');
    wanted.push_back(std::max(widest(texts, fonts.text.metrics), widest(caption, fonts.caption.metrics)));
    weights.push_back(std::sqrt(1 + static_cast<qreal>(texts.join("").size())));
  }
  const std::vector<qreal> alike(wanted.size(), 1);
  const qreal room = width - fonts.gap * static_cast<qreal>(wanted.size() - 1);
  std::vector<qreal> widths = sharedOut(wanted, alike, room);
  shareAmongWide(widths, wanted, weights);
  qreal at = 0;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    m_columns.push_back(
        {.left = at, .width = widths[i], .right = sheet.columns[i].align == Sheet::Align::Right});
    at += widths[i] + fonts.gap;
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
