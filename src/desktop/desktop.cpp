#include "desktop/desktop.h"

#include <QApplication>
#include <QScreen>
#include <QSocketNotifier>
#include <csignal>
#include <exception>
#include <iostream>
#include <sys/signalfd.h>
#include <unistd.h>

#include "core/live_desk.h"
#include "desktop/desk_windows.h"
#include "desktop/journal.h"
#include "desktop/qt_loop.h"
#include "desktop/style.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

/// The signals that ask the desk to end. They are blocked in every thread from the start and read as events,
/// so that the port closes behind a whole frame.
class EndingSignals {
 public:
  EndingSignals() {
    sigemptyset(&m_signals);
    for (const int ending : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&m_signals, ending);
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    m_file = signalfd(-1, &m_signals, SFD_CLOEXEC | SFD_NONBLOCK);
  }
  ~EndingSignals() { ::close(m_file); }
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  [[nodiscard]] int file() const { return m_file; }

 private:
  sigset_t m_signals{};
  int m_file = -1;
};

/// The desk and its windows on the toolkit's loop.
class Desktop {
 public:
  Desktop(const EndingSignals& ending, const std::string& show)
      : m_house({.show = show,
                 .portByHand = {},
                 .boxes = {},
                 .statusChanged = [this](const VelgroveComm& comm) { m_journal.note(comm); },
                 .loop = loop(),
                 .places = thisProcessPlaces()}),
        m_signals(ending.file(), QSocketNotifier::Read) {
    m_loop.serve = [this] { serve(); };
    QObject::connect(&m_signals, &QSocketNotifier::activated, &m_signals, [this] { m_house.end(); });
  }

  int run() {
    m_house.start();
    if (!m_house.ended()) QApplication::exec();
    m_house.close();
    m_journal.write();
    return 0;
  }

 private:
  Face::Loop loop() {
    return {.processEvents = [] { QtLoop::processEvents(); },
            .paintEvents = [](Milliseconds time) { QtLoop::paintEvents(time); },
            .wake = [this] { m_loop.wake(); },
            .showBox =
                [this](const Box& box, bool waitedFor, std::function<void(BoxAnswer)> answered) {
                  m_journal.note(box);
                  m_windows.showBox(box, waitedFor, std::move(answered));
                }};
  }

  void serve() {
    m_journal.write();
    if (m_house.ended())
      QApplication::exit();  // not quit(), which asks every window first
    else
      m_house.face().serve();
  }

  QtLoop m_loop;
  Journal m_journal;
  LiveDesk m_house;
  DeskWindows m_windows{m_house.desk(), m_house.face()};
  QSocketNotifier m_signals;
};

}  // namespace

int runDesktop(int argc, char** argv, const std::string& show) {
  const EndingSignals ending;
  QApplication app(argc, argv);
  QApplication::setApplicationName("Velgrove");
  QApplication::setDesktopFileName("velgrove");
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(new DeskStyle);
  const int width = QApplication::primaryScreen()->availableGeometry().width();
  theme::apply(width < theme::RoomyFrom ? Density::Compact : Density::Roomy);
  try {
    return Desktop(ending, show).run();
  } catch (const std::exception& error) {
    std::cerr << "velgrove: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace velgrove
