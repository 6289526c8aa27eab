#pragma once

#include <QKeyEvent>
#include <QKeySequence>
#include <QObject>

#include "core/lighting_desk.h"
#include "desktop/tools.h"

namespace velgrove {

/// The keys that work wherever the focus is: those of the tools, the Go key, and Enter on a button.
///
/// Space is Go with the focus on a button, a box to tick or a menu as well: in the dark nobody looks where
/// the focus is. So Enter presses there. A dialog that holds the desk has its keys for itself.
class ShowKeys : public QObject {
  Q_OBJECT

 public:
  ShowKeys(LightingDesk& desk, Face& face, Tools& tools, QWidget& frame);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool isGo(const QKeyEvent& key) const;
  bool pressGo(const QKeyEvent& key);

  LightingDesk& m_desk;
  Face& m_face;
  QAction& m_go;
  QKeySequence m_goKey;
};

}  // namespace velgrove
