#pragma once

#include <QWheelEvent>
#include <utility>

namespace velgrove {

/// The whole notches of a wheel. Fine wheels and touch pads turn by less than one; what is left over counts
/// as long as the wheel isn't turned back.
class Notches {
 public:
  /// Above 0 away from the operator.
  [[nodiscard]] int take(const QWheelEvent& event) {
    const int angle = event.angleDelta().y();
    if ((angle > 0) != (m_turned > 0)) m_turned = 0;
    m_turned += angle;
    const int left = m_turned % QWheelEvent::DefaultDeltasPerStep;
    return (std::exchange(m_turned, left) - left) / QWheelEvent::DefaultDeltasPerStep;
  }

 private:
  int m_turned = 0;  ///< eighths of a degree
};

}  // namespace velgrove
