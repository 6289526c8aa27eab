#include "desktop/lost_release.h"

#include <QMouseEvent>

namespace velgrove {
namespace {

bool isLost(QEvent& event) {
  switch (event.type()) {
    case QEvent::Enter:
    case QEvent::MouseMove:
      return !static_cast<QSinglePointEvent&>(event).buttons().testFlag(Qt::LeftButton);
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
      return true;
    default:
      return false;
  }
}

}  // namespace

LostRelease::LostRelease(QAbstractSlider* slider) : QObject(slider) {
  slider->setMouseTracking(true);  // a hand that comes back without a button tells it too
  slider->installEventFilter(this);
}

bool LostRelease::eventFilter(QObject* watched, QEvent* event) {
  auto* slider = qobject_cast<QAbstractSlider*>(watched);  // none while it is being taken apart
  if (slider == nullptr || !slider->isSliderDown() || !isLost(*event)) return false;
  slider->setSliderDown(false);
  slider->update();
  return false;
}

}  // namespace velgrove
