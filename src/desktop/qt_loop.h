#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <atomic>
#include <functional>
#include <memory>

#include "controls/face.h"

namespace velgrove {

/// The toolkit's event loop as the face needs it. Wakes of the desk come through a file descriptor and are
/// gathered, so that the screen is brought up to date at most fifty times a second.
class QtLoop : public QObject {
  Q_OBJECT

 public:
  QtLoop();
  ~QtLoop() override;

  /// Called on this thread some milliseconds behind a wake.
  std::function<void()> serve;

  void wake();  ///< from any thread
  /// Waits for an event and runs what is there.
  static void processEvents();
  /// Runs what is there but the operator's input, which waits.
  static void paintEvents(Milliseconds time);

 private:
  void onWake();

  int m_wakeFile;
  std::atomic<bool> m_woken = false;
  QSocketNotifier m_notifier;
  QTimer m_gather;
};

}  // namespace velgrove
