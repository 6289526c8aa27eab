#include "desktop/sheet_printer.h"

#include <QBuffer>
#include <QLocale>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <optional>

#include "controls/faults.h"
#include "desktop/sheet_layout.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

QFont paperFont(qreal points, bool bold = false) {
  QFont font = theme::font(1, bold);
  font.setPointSizeF(points);
  return font;
}

/// Paints the pages of a printout, one after the other.
class SheetPainter {
 public:
  SheetPainter(QPagedPaintDevice& device, const Printout& printout, const QDateTime& printed)
      : m_device(device),
        m_page(device.pageLayout().paintRectPixels(device.logicalDpiX()).size()),
        m_show(QString::fromStdString(printout.show)),
        m_printed("Printed " + QLocale::c().toString(printed, "d MMMM yyyy, hh:mm")),
        m_fonts{.text = PaperFont(paperFont(9), device),
                .caption = PaperFont(paperFont(9, true), device),
                .gap = dots(3),
                .padding = dots(1.2)} {
    for (const Sheet& sheet : printout.sheets) {
      m_sheets.emplace_back(&sheet, SheetLayout(sheet, m_fonts, room().size()));
      m_pages += m_sheets.back().second.pages().size();
    }
  }

  void paint() {
    if (!m_painter.begin(&m_device)) throw RunTimeError(Fault::Device, "the printer takes no paper job");
    std::size_t number = 0;
    for (const auto& [sheet, layout] : m_sheets) {
      for (const auto& rows : layout.pages()) {
        if (number > 0 && !m_device.newPage())
          throw RunTimeError(Fault::Device, "the printer takes no more pages");
        paintHead(*sheet);
        paintRows(layout, rows);
        paintFoot(++number);
      }
    }
    m_painter.end();
  }

 private:
  [[nodiscard]] qreal dots(qreal millimetres) const {
    constexpr qreal MillimetresPerInch = 25.4;
    return millimetres / MillimetresPerInch * m_device.logicalDpiY();
  }
  [[nodiscard]] static qreal lineOf(const PaperFont& font) { return font.metrics.lineSpacing(); }
  [[nodiscard]] qreal headHeight() const { return lineOf(m_title) + lineOf(m_fonts.text) + dots(3); }
  [[nodiscard]] qreal footHeight() const { return lineOf(m_fonts.text) + dots(3); }
  /// Where captions and rows stand.
  [[nodiscard]] QRectF room() const {
    return {0, headHeight(), m_page.width(), m_page.height() - headHeight() - footHeight()};
  }

  void rule(qreal y, qreal millimetres) {
    m_painter.setPen(QPen(Qt::black, dots(millimetres)));
    m_painter.drawLine(QPointF(0, y), QPointF(m_page.width(), y));
  }
  void write(const PaperFont& font, const QRectF& area, Qt::Alignment align, const QString& text) {
    m_painter.setFont(font.font);
    m_painter.setPen(Qt::black);
    m_painter.drawText(area, static_cast<int>(align) | Qt::TextSingleLine | Qt::TextDontClip, text);
  }
  /// Two texts at the ends of a line, the second one cut where the first needs the room.
  void writeApart(const QRectF& area, const PaperFont& font, const QString& left, const PaperFont& other,
                  const QString& right) {
    const QString shown = font.metrics.elidedText(left, Qt::ElideRight, area.width());
    const qreal taken = font.metrics.horizontalAdvance(shown) + m_fonts.gap;
    write(font, area, Qt::AlignLeft | Qt::AlignBottom, shown);
    write(other, area, Qt::AlignRight | Qt::AlignBottom,
          other.metrics.elidedText(right, Qt::ElideRight, std::max<qreal>(0, area.width() - taken)));
  }

  void paintHead(const Sheet& sheet) {
    const QRectF title(0, 0, m_page.width(), lineOf(m_title));
    writeApart(title, m_title, QString::fromStdString(sheet.title), m_fonts.caption, m_show);
    writeApart({0, title.bottom(), m_page.width(), lineOf(m_fonts.text)}, m_fonts.text,
               QString::fromStdString(sheet.remark), m_fonts.text, {});
  }

  void paintFoot(std::size_t number) {
    const QRectF foot(0, m_page.height() - lineOf(m_fonts.text), m_page.width(), lineOf(m_fonts.text));
    rule(foot.top() - dots(1), HairLine);
    writeApart(foot, m_fonts.text, m_printed, m_fonts.text,
               QString("page %1 of %2").arg(number).arg(m_pages));
  }

  void paintRows(const SheetLayout& layout, const std::vector<SheetLayout::Cells>& rows) {
    qreal y = room().top();
    paintCells(layout, layout.captions(), m_fonts.caption, y);
    y += layout.captionHeight();
    rule(y, Line);
    for (const auto& row : rows) {
      paintCells(layout, row, m_fonts.text, y);
      y += layout.heightOf(row);
      rule(y, HairLine);
    }
  }

  void paintCells(const SheetLayout& layout, const SheetLayout::Cells& row, const PaperFont& font,
                  qreal top) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const SheetLayout::Column& column = layout.columns()[i];
      qreal y = top + m_fonts.padding / 2;
      for (const QString& line : row[i]) {
        write(font, {column.left, y, column.width, lineOf(font)},
              Qt::AlignTop | (column.right ? Qt::AlignRight : Qt::AlignLeft), line);
        y += lineOf(font);
      }
    }
  }

  static constexpr qreal Line = 0.3;  // mm
  static constexpr qreal HairLine = 0.1;

  QPagedPaintDevice& m_device;
  QSizeF m_page;
  QString m_show;
  QString m_printed;
  SheetLayout::Fonts m_fonts;
  PaperFont m_title{paperFont(14, true), m_device};
  std::vector<std::pair<const Sheet*, SheetLayout>> m_sheets;
  std::size_t m_pages = 0;
  QPainter m_painter;
};

}  // namespace

void printSheets(QPagedPaintDevice& device, const Printout& printout, const QDateTime& printed) {
  SheetPainter(device, printout, printed).paint();
}

QByteArray sheetsAsPdf(const Printout& printout, const QPageSize& paper, const QDateTime& printed) {
  constexpr qreal Margin = 15;  // mm
  QByteArray pdf;
  QBuffer buffer(&pdf);
  (void)buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setPageSize(paper);
  (void)writer.setPageMargins({Margin, Margin, Margin, Margin}, QPageLayout::Millimeter);
  writer.setTitle(QString::fromStdString(printout.show));
  writer.setCreator("Velgrove");
  printSheets(writer, printout, printed);
  return pdf;
}

QPageSize usualPaper() {
  const bool inches = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
  return inches ? QPageSize(QPageSize::Letter) : QPageSize(QPageSize::A4);
}

}  // namespace velgrove
