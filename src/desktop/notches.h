#pragma once

#include <QWheelEvent>

namespace velgrove {

/// Gathers what a wheel turns. Fine wheels and touch pads turn by less than a notch.
class Notches {
 public:
  /// The whole notches that are full now, above 0 away from the operator.
  int turn(const QWheelEvent& wheel) {
    const int angle = wheel.angleDelta().y();
    if ((angle > 0) != (m_turned > 0)) m_turned = 0;
    m_turned += angle;
    const int whole = m_turned / QWheelEvent::DefaultDeltasPerStep;
    m_turned %= QWheelEvent::DefaultDeltasPerStep;
    return whole;
  }

 private:
  int m_turned = 0;  ///< eighths of a degree, short of a notch
};

}  // namespace velgrove
