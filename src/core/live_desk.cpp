#include "core/live_desk.h"

#include <sys/resource.h>

#include "controls/posix_line.h"

namespace velgrove {
namespace {

/// Waiting for the box's bytes keeps the turn, and frees the lock meanwhile.
SerialLine keepingTurn(SerialLine line, Desk& lock) {
  const auto wrap = [&lock](std::function<void(Milliseconds)> wait) {
    return [&lock, wait = std::move(wait)](Milliseconds time) { lock.keepTurn([&] { wait(time); }); };
  };
  line.wait = wrap(std::move(line.wait));
  line.turnRound = wrap(std::move(line.turnRound));
  return line;
}

void raisePriority() {
  constexpr int Raised = -10;
  (void)setpriority(PRIO_PROCESS, 0, Raised);  // an ordinary user is refused, and plays all the same
}

}  // namespace

LiveDesk::LiveDesk(Options options)
    : m_options(std::move(options)), m_desk(m_clock, m_options.boxes, wiring()) {
  m_desk.machine.Sleep = [this](Milliseconds time) { m_lock.sleep(time); };
  m_desk.machine.DoEvents = [this] { m_thread.doEvents(); };
  m_desk.machine.waitUntil = [this](const auto& condition) { m_thread.until(condition); };
  m_desk.machine.aside = doAtOnce;
  m_desk.Splash.Painted = true;  // there is no screen to wait for
}

LightingDesk::Wiring LiveDesk::wiring() {
  return {
      .windows = {.interface = {
                      .line = keepingTurn(makePosixLine(), m_lock),
                      .findInterfaces = [this] { return findInterfaces(m_roots, m_options.portByHand); },
                      .findAgain = [this](const InterfaceDevice& lost) { return findAgain(m_roots, lost); },
                      .triggerEnabled = [] { return true; },
                      .triggerGo = {},
                      .repaint = [this] { m_options.statusChanged(m_desk.windows.Comm); },
                  },
                  .showCuePanel = {},
                  .showStatus = {},
                  .graphics = m_options.graphics},
      .settingsFolder = {},
      .applicationFolder = {},
      .dataFolder = {},
      .raisePriority = raisePriority,
      .openShow =
          [this] {
            m_desk.show.ProjectFileName = m_options.show;
            m_desk.frame.LoadProject(1);
          },
      .quit = [this] { m_lock.close(); },
  };
}

void LiveDesk::start() {
  m_thread.start([this] {
    m_desk.Main();
    m_startTime = m_clock.now();
    m_started = true;
  });
}

void LiveDesk::act(const std::function<void(LightingDesk&)>& action) {
  const DeskTurn turn(m_lock);
  m_desk.act([&] { action(m_desk); });
}

void LiveDesk::close() {
  struct PortLast {
    ~PortLast() {
      const DeskTurn turn(house.m_lock);
      house.m_desk.ShutdownApp();
    }
    LiveDesk& house;
  } const portLast{*this};
  m_thread.join();
}

}  // namespace velgrove
