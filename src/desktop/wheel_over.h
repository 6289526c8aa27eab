#pragma once

#include <QWidget>
#include <functional>

#include "desktop/notches.h"

namespace velgrove {

/// The wheel over a window. Wherever it is turned there it means the same, and no field or fader under the
/// mouse takes it.
class WheelOver : public QObject {
  Q_OBJECT

 public:
  /// `turned` is called for each notch: 120 away from the operator, -120 towards him.
  WheelOver(QWidget& window, std::function<void(int rotation)> turned);
  /// Begins, once the window stands on the screen.
  void watch();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget& m_window;
  std::function<void(int)> m_turned;
  Notches m_notches;
};

}  // namespace velgrove
