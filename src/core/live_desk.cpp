#include "core/live_desk.h"

#include <exception>
#include <sys/resource.h>
#include <thread>

#include "controls/posix_line.h"
#include "model/registry_settings.h"

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
  // Of the calling thread alone, and that is the one with the light. An ordinary user is refused, and plays
  // all the same.
  (void)setpriority(PRIO_PROCESS, 0, Raised);
}

/// A desk without a toolkit's loop has no face.
std::unique_ptr<Face> faceOn(Desk& lock, const std::optional<Face::Loop>& loop) {
  if (!loop.has_value()) return nullptr;
  return std::make_unique<Face>(lock, loop.value());
}

}  // namespace

LiveDesk::LiveDesk(Options options)
    : m_options(std::move(options)),
      m_face(faceOn(m_lock, m_options.loop)),
      m_desk(m_clock, boxes(), wiring()) {
  Machine& machine = m_desk.machine;
  machine.Sleep = [this](Milliseconds time) { sleep(time); };
  machine.DoEvents = [this] { m_thread.doEvents(); };
  machine.waitUntil = [this](const std::function<bool()>& condition) { waitUntil(condition); };
  machine.aside = [this](const std::function<void()>& work) { aside(work); };
  machine.inBackground = [this](auto work, auto failed) { inBackground(std::move(work), std::move(failed)); };
  if (m_face != nullptr)
    m_face->act = [this](const std::function<void()>& action) { m_desk.act(action); };
  else
    m_desk.Splash.Painted = true;  // there is no screen to wait for
}

MessageBoxes LiveDesk::boxes() {
  if (m_face == nullptr) return m_options.boxes;
  return {.show =
              [this](const Box& box) {
                return m_face->showBox(box, [this](const auto& condition) { waitUntil(condition); });
              },
          .post = [this](const Box& box) { m_face->postBox(box); }};
}

// ---- Waiting, by the thread that waits

void LiveDesk::sleep(Milliseconds time) {
  if (onFace())
    m_face->sleep(time);
  else
    m_lock.sleep(time);
}

void LiveDesk::waitUntil(const std::function<bool()>& condition) {
  if (onFace()) return m_face->until(condition);
  raise(onWait);
  m_thread.until(condition);
}

void LiveDesk::aside(const std::function<void()>& work) {
  if (onFace())
    m_face->aside(work);
  else
    asideOfDeskThread(work);
}

/// A helper waits for the disk, while the timers run on. It finishes also when the desk closes: a save is
/// never cut off.
void LiveDesk::asideOfDeskThread(const std::function<void()>& work) {
  std::exception_ptr failure;
  {
    std::atomic<bool> done = false;
    std::thread helper([&] {
      try {
        work();
      } catch (...) {
        failure = std::current_exception();
      }
      done = true;
      m_lock.tell();
    });
    struct Join {
      ~Join() {
        lock.keepTurn([this] { helper.join(); });
      }
      Desk& lock;
      std::thread& helper;
    } const join{m_lock, helper};
    m_thread.until([&] { return done.load(); });
  }
  if (failure) std::rethrow_exception(failure);
}

void LiveDesk::inBackground(std::function<void()> work, std::function<void(const std::string&)> failed) {
  m_background.run([this, work = std::move(work), failed = std::move(failed)] {
    try {
      work();
    } catch (const std::exception& error) {
      const DeskTurn turn(m_lock);
      failed(error.what());
    }
  });
}

std::string LiveDesk::portByHand() const {
  if (!m_options.portByHand.empty() || !m_options.places) return m_options.portByHand;
  return GetStringSetting(m_desk.store, "Velgrove", "Interface", "Port", "");
}

LightingDesk::Wiring LiveDesk::wiring() {
  const Places places = m_options.places.value_or(Places{});
  LightingDesk::Wiring wiring{
      .windows = {.interface = {
                      .line = keepingTurn(makePosixLine(), m_lock),
                      .findInterfaces = [this] { return findInterfaces(m_roots, portByHand()); },
                      .findAgain = [this](const InterfaceDevice& lost) { return findAgain(m_roots, lost); },
                      .triggerEnabled = {},
                      .triggerGo = {},
                      .repaint = [this] { statusChanged(); },
                  },
                  .showCuePanel = {},
                  .showStatus = {},
                  .graphics = places.graphics},
      .settingsFolder = places.settings,
      .applicationFolder = places.application,
      .manualFolder = places.manual,
      .dataFolder = places.data,
      .firstShows = places.firstShows,
      .offered = m_options.show,
      .drives = m_options.places ? systemDriveRoots() : DriveRoots{},
      .raisePriority = raisePriority,
      .quit = [this] { end(); },
  };
  if (m_face == nullptr) {
    wiring.openShow = [this] {
      m_desk.show.ProjectFileName = m_options.show;
      m_desk.frame.LoadProject(1);
    };
  }
  return wiring;
}

/// The face sees it at its next pull.
void LiveDesk::statusChanged() const {
  if (m_options.statusChanged) m_options.statusChanged(m_desk.windows.Comm);
}

void LiveDesk::end() {
  m_lock.close();
  if (m_options.loop) m_options.loop->wake();
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
