#pragma once

#include <QFileDialog>
#include <QPrinter>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "controls/face.h"
#include "controls/machine.h"
#include "surfaces/frm_print_sheets.h"

namespace velgrove {

/// The platform's dialogs for the desk's behaviour: where to save, which folder, which printer; and what goes
/// to that printer. Each comes up with the desk given back, and the light goes on while the operator chooses.
class PlatformDialogs {
 public:
  PlatformDialogs(Face& face, QWidget* above) : m_face(face), m_above(above) {}

  /// As the behaviour calls them, with the desk held, on the face's thread.
  [[nodiscard]] Dialogs dialogs();
  [[nodiscard]] SheetPress sheetPress();

 private:
  std::optional<std::string> saveFile(const std::string& title, const std::string& filter,
                                      const std::string& fileName);
  std::string browseForDir(const std::string& start, const std::string& title);
  bool choosePrinter(const std::string& title);
  void printView(const Drawing& drawing);

  /// Shows a dialog that `make` makes, and waits for its end; `read` takes the answer when it was accepted.
  /// The dialog comes and goes with the desk given back: to let go of a large folder takes it some frames'
  /// time.
  template <class Make, class Read>
  void ask(Make make, Read read);
  std::optional<std::string> askForFile(const std::function<void(QFileDialog&)>& dress,
                                        const std::string& title, const QString& folder);

  Face& m_face;
  QWidget* m_above;
  std::unique_ptr<QPrinter> m_printer;
};

}  // namespace velgrove
