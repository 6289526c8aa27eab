#pragma once

#include <QDial>

#include "controls/widgets.h"
#include "desktop/binding.h"
#include "desktop/notches.h"

namespace velgrove {

/// The dial that turns the picked fixture: whole degrees clockwise, zero at the top. The hand is dragged
/// round it, with Shift from one long mark to the next; keys and the wheel turn it by steps.
///
/// The control's value has no ends: what the operator turns goes to it by the nearest way, past zero too, so
/// that no fixture spins round for one degree.
class RotateGauge : public QDial {
  Q_OBJECT

 public:
  RotateGauge(Bindings& bindings, const Bindings::Find<Gauge>& find);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  struct Look {
    bool visible = false;
    double value = 0;
    friend bool operator==(const Look&, const Look&) = default;
  };
  void show(const Look& look);
  void turnTo(const QMouseEvent& event);
  void paintScale(QPainter& painter) const;
  void paintHand(QPainter& painter) const;

  Bindings::Shown<Look> m_shown;
  Notches m_notches;
};

}  // namespace velgrove
