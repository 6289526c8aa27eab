#pragma once

#include <QMouseEvent>
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
  void look();
  void keepDown(Qt::MouseButtons down);
  // Whether it is swallowed:
  [[nodiscard]] bool moves(const QMouseEvent& event);
  [[nodiscard]] bool presses(Qt::MouseButton button);
  [[nodiscard]] bool releases(Qt::MouseButton button);

  Face& m_face;
  MouseSource& m_source;
  QTimer m_poll{this};  ///< for where no window of ours lies under the mouse
  QPoint m_told;
  bool m_on = false;
  Qt::MouseButtons m_swallowed;  ///< presses that did nothing; their releases are still to come
};

}  // namespace velgrove
