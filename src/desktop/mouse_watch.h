#pragma once

#include <QObject>
#include <QTimer>

#include "controls/timer.h"
#include "desktop/binding.h"

namespace velgrove {

/// Tells a mouse source where the mouse is, as long as a mode of the desk lasts that follows it. The press
/// that ends the mode does nothing else: the mouse stands where the light needed it, over whatever lies
/// there.
class MouseWatch : public QObject {
  Q_OBJECT

 public:
  /// The mode lasts while the timer is on.
  MouseWatch(QObject* parent, Bindings& bindings, const Timer& mode, MouseSource& source);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void setOn(bool on);
  void tell(QPoint at);
  void tellButton();

  Face& m_face;
  MouseSource& m_source;
  QTimer m_poll{this};  ///< for where no window of ours lies under the mouse
  QPoint m_told;
  bool m_on = false;
  bool m_pressed = false;  ///< since the mode began; its release is still to come
};

}  // namespace velgrove
