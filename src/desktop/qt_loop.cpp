#include "desktop/qt_loop.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace velgrove {
namespace {

constexpr int GatherTime = 20;  // ms: fades step each 30

int makeWakeFile() {
  const int file = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (file < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
  return file;
}

}  // namespace

QtLoop::QtLoop() : m_wakeFile(makeWakeFile()), m_notifier(m_wakeFile, QSocketNotifier::Read) {
  m_gather.setSingleShot(true);
  m_gather.setTimerType(Qt::PreciseTimer);
  m_gather.setInterval(GatherTime);
  connect(&m_notifier, &QSocketNotifier::activated, this, &QtLoop::onWake);
  connect(&m_gather, &QTimer::timeout, this, [this] {
    m_woken = false;
    if (serve) serve();
  });
}

QtLoop::~QtLoop() {
  close(m_wakeFile);
}

void QtLoop::wake() {
  if (!m_woken.exchange(true)) (void)eventfd_write(m_wakeFile, 1);
}

void QtLoop::onWake() {
  eventfd_t wakes = 0;
  (void)eventfd_read(m_wakeFile, &wakes);
  m_gather.start();
}

void QtLoop::processEvents() {
  QEventLoop().processEvents(QEventLoop::WaitForMoreEvents);
}

void QtLoop::paintEvents(Milliseconds time) {
  bool over = false;
  QTimer::singleShot(time.count(), Qt::PreciseTimer, [&over] { over = true; });
  QEventLoop loop;
  while (!over) loop.processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

}  // namespace velgrove
