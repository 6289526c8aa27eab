#include "desktop/platform_dialogs.h"

#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinterInfo>
#include <algorithm>

#include "controls/drawing.h"
#include "desktop/plot_painter.h"
#include "desktop/sheet_printer.h"

namespace velgrove {
namespace {

QString text(const std::string& desk) {
  return QString::fromStdString(desk);
}

/// What a name without a suffix gets: "kel" for "words|*.kel".
QString suffixOf(const std::string& filter) {
  return text(filter.substr(filter.rfind('.') + 1));
}

/// The page as a whole, in the ratio of what the view shows.
void print(QPrinter& printer, const PlotPicture& plot) {
  QPainter painter(&printer);
  const QRectF page = printer.pageLayout().paintRectPixels(printer.resolution());
  const QRectF area(QPointF(0, 0), page.size());
  const Extents& world = plot.drawing.limits;
  const double scale = std::min(area.width() / world.width(), area.height() / world.height());
  const Point middle = world.middle();
  painter.setClipRect(QRectF(area.center() - QPointF(world.width(), world.height()) * scale / 2,
                             QSizeF(world.width(), world.height()) * scale));
  PlotPainter(PlotPainter::Medium::Paper)
      .paint(painter, plot,
             {.origin = area.center() + QPointF(-middle.x, middle.y) * scale,
              .pixelsPerUnit = scale,
              .ratio = 1},
             area.toAlignedRect());
}

}  // namespace

Dialogs PlatformDialogs::dialogs() {
  return {.saveFile = [this](const std::string& title, const std::string& filter,
                             const std::string& fileName) { return saveFile(title, filter, fileName); },
          .BrowseForDir = [this](const std::string& start,
                                 const std::string& title) { return browseForDir(start, title); },
          .choosePrinter = [this](const std::string& title) { return choosePrinter(title); },
          .printView = [this](const Drawing& drawing) { printView(drawing); }};
}

/// To ask for printers may take as long as the network does.
SheetPress PlatformDialogs::sheetPress() {
  return {
      .anyPrinter =
          [this] {
            bool any = false;
            m_face.aside([&] { any = !QPrinterInfo::availablePrinterNames().isEmpty(); });
            return any;
          },
      .print =
          [this](const Printout& printout) {
            if (m_printer == nullptr) throw RunTimeError(Fault::Device, "no printer is chosen");
            m_face.aside([&] { printSheets(*m_printer, printout, QDateTime::currentDateTime()); });
          },
      .pdf =
          [this](const Printout& printout) {
            QByteArray pdf;
            m_face.aside([&] { pdf = sheetsAsPdf(printout, usualPaper(), QDateTime::currentDateTime()); });
            return pdf.toStdString();
          }};
}

template <class Make, class Read>
void PlatformDialogs::ask(Make make, Read read) {
  std::optional<int> result;
  decltype(make()) dialog;
  m_face.aside([&] {
    dialog = make();
    dialog->setWindowModality(Qt::ApplicationModal);
    QObject::connect(dialog.get(), &QDialog::finished, dialog.get(), [&result](int end) { result = end; });
    dialog->show();
    dialog->activateWindow();
  });
  m_face.until([&] { return result.has_value(); });
  m_face.aside([&] {
    if (*result == QDialog::Accepted) read(*dialog);
    dialog.reset();
  });
}

std::optional<std::string> PlatformDialogs::askForFile(const std::function<void(QFileDialog&)>& dress,
                                                       const std::string& title, const QString& folder) {
  std::optional<std::string> chosen;
  ask(
      [&] {
        auto made = std::make_unique<QFileDialog>(m_above, text(title), folder);
        made->setOption(QFileDialog::DontUseNativeDialog);
        dress(*made);
        return made;
      },
      [&](const QFileDialog& dialog) {
        if (!dialog.selectedFiles().isEmpty()) chosen = dialog.selectedFiles().constFirst().toStdString();
      });
  return chosen;
}

std::optional<std::string> PlatformDialogs::saveFile(const std::string& title, const std::string& filter,
                                                     const std::string& fileName) {
  const QFileInfo file(text(fileName));
  const auto dress = [&](QFileDialog& dialog) {
    dialog.setObjectName("saveFile");
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setNameFilter(text(filter.substr(0, filter.find('|'))));
    dialog.setDefaultSuffix(suffixOf(filter));
    dialog.selectFile(file.fileName());
  };
  return askForFile(dress, title, file.path());
}

std::string PlatformDialogs::browseForDir(const std::string& start, const std::string& title) {
  const auto dress = [](QFileDialog& dialog) {
    dialog.setObjectName("BrowseForDir");
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
  };
  const auto chosen = askForFile(dress, title, text(start));
  // A show's name is put right behind it.
  return chosen ? (QDir(text(*chosen)).path() + '/').toStdString() : std::string();
}

bool PlatformDialogs::choosePrinter(const std::string& title) {
  bool chosen = false;
  ask(
      [&] {
        if (m_printer == nullptr) {
          m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
          m_printer->setDocName("Velgrove");
        }
        auto made = std::make_unique<QPrintDialog>(m_printer.get(), m_above);
        made->setObjectName("printer");
        made->setWindowTitle(text(title));
        made->setOption(QPrintDialog::PrintPageRange, false);  // all of it is printed
        return made;
      },
      [&](const QPrintDialog&) { chosen = true; });
  return chosen;
}

/// Copies the plot with the desk held; the paper is painted with the desk free.
void PlatformDialogs::printView(const Drawing& drawing) {
  if (m_printer == nullptr) return;
  PlotPicture plot;
  drawing.copyTo(plot.drawing);
  m_face.aside([&] { print(*m_printer, plot); });
}

}  // namespace velgrove
