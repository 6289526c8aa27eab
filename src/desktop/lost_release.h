#pragma once

#include <QAbstractSlider>

namespace velgrove {

/// Lets a slider go whose release went elsewhere: a box that comes up under the hand takes it, and a slider
/// that believed itself held would show nothing any more.
class LostRelease : public QObject {
  Q_OBJECT

 public:
  explicit LostRelease(QAbstractSlider* slider);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace velgrove
