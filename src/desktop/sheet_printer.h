#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QPageSize>
#include <QPagedPaintDevice>

#include "model/sheet.h"

namespace velgrove {

/// Prints sheets, each from a new page on: black on white, under the title and the name of the show, with the
/// captions on each page and the date of the print and the number of the page at its foot. Fault::Device when
/// the device takes no more.
void printSheets(QPagedPaintDevice& device, const Printout& printout, const QDateTime& printed);

/// The same as the bytes of a PDF file.
[[nodiscard]] QByteArray sheetsAsPdf(const Printout& printout, const QPageSize& paper,
                                     const QDateTime& printed);

/// The paper that the system's country uses, where no printer tells: A4, or Letter.
[[nodiscard]] QPageSize usualPaper();

}  // namespace velgrove
