#include "desktop/platform_dialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPainter>
#include <QPrintDialog>
#include <algorithm>

#include "controls/drawing.h"
#include "desktop/plot_painter.h"

namespace velgrove {
namespace {

QString text(const std::string& desk) {
  return QString::fromStdString(desk);
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
             area);
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

template <class Dialog, class Make>
bool PlatformDialogs::ask(std::unique_ptr<Dialog>& dialog, Make make) {
  std::optional<int> result;
  m_face.aside([&] {
    dialog = make();
    dialog->setWindowModality(Qt::ApplicationModal);
    QObject::connect(dialog.get(), &QDialog::finished, dialog.get(), [&result](int end) { result = end; });
    dialog->show();
    dialog->activateWindow();
  });
  m_face.until([&] { return result.has_value(); });
  return result == QDialog::Accepted;
}

std::optional<std::string> PlatformDialogs::saveFile(const std::string& title, const std::string& filter,
                                                     const std::string& fileName) {
  std::unique_ptr<QFileDialog> dialog;
  const bool accepted = ask(dialog, [&] {
    const QFileInfo file(text(fileName));
    auto made = std::make_unique<QFileDialog>(m_above, text(title), file.path());
    made->setObjectName("saveFile");
    made->setAcceptMode(QFileDialog::AcceptSave);
    made->setOption(QFileDialog::DontUseNativeDialog);
    made->setOption(QFileDialog::DontConfirmOverwrite);
    made->setNameFilter(text(filter.substr(0, filter.find('|'))));
    made->setDefaultSuffix("kel");
    made->selectFile(file.fileName());
    return made;
  });
  if (!accepted || dialog->selectedFiles().isEmpty()) return std::nullopt;
  return dialog->selectedFiles().constFirst().toStdString();
}

std::string PlatformDialogs::browseForDir(const std::string& start, const std::string& title) {
  std::unique_ptr<QFileDialog> dialog;
  const bool accepted = ask(dialog, [&] {
    auto made = std::make_unique<QFileDialog>(m_above, text(title), text(start));
    made->setObjectName("BrowseForDir");
    made->setFileMode(QFileDialog::Directory);
    made->setOption(QFileDialog::ShowDirsOnly);
    made->setOption(QFileDialog::DontUseNativeDialog);
    return made;
  });
  if (!accepted || dialog->selectedFiles().isEmpty()) return {};
  // A show's name is put right behind it.
  return (QDir(dialog->selectedFiles().constFirst()).path() + '/').toStdString();
}

bool PlatformDialogs::choosePrinter(const std::string& title) {
  std::unique_ptr<QPrintDialog> dialog;
  return ask(dialog, [&] {
    if (m_printer == nullptr) {
      m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
      m_printer->setDocName("Velgrove");
    }
    auto made = std::make_unique<QPrintDialog>(m_printer.get(), m_above);
    made->setObjectName("printer");
    made->setWindowTitle(text(title));
    made->setOption(QPrintDialog::PrintPageRange, false);  // a plot is one page
    return made;
  });
}

/// Copies the plot with the desk held; the paper is painted with the desk free.
void PlatformDialogs::printView(const Drawing& drawing) {
  if (m_printer == nullptr) return;
  PlotPicture plot;
  drawing.copyTo(plot.drawing);
  m_face.aside([&] { print(*m_printer, plot); });
}

}  // namespace velgrove
