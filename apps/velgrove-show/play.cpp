#include <cerrno>
#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <future>
#include <sys/resource.h>

#include "boxes.h"
#include "commands.h"
#include "controls/desk_thread.h"
#include "controls/posix_line.h"
#include "dmx/discovery.h"
#include "model/registry_settings.h"
#include "model/settings_store.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

/// Waits for a time or for a signal that ends the program; true when one came. The signals are blocked in all
/// threads.
bool endsBySignal(Nanoseconds time) {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ending, signal);
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  const timespec wait{.tv_sec = seconds.count(), .tv_nsec = (time - seconds).count()};
  return sigtimedwait(&ending, nullptr, &wait) > 0;
}

/// Waiting for the box's bytes keeps the turn, and frees the lock meanwhile.
SerialLine keepingTurn(SerialLine line, Desk& lock) {
  const auto wrap = [&lock](std::function<void(Milliseconds)> wait) {
    return [&lock, wait = std::move(wait)](Milliseconds time) { lock.keepTurn([&] { wait(time); }); };
  };
  line.wait = wrap(std::move(line.wait));
  line.turnRound = wrap(std::move(line.turnRound));
  return line;
}

std::string portByHand() {
  const SettingsStore settings(defaultSettingsPath());
  return GetStringSetting(settings, "Velgrove", "Interface", "Port", "");
}

/// The desk on the real clock, played by a script.
class Performance {
 public:
  Performance(const RunOptions& options, std::string port)
      : m_options(options), m_port(std::move(port)), m_house(m_clock, boxes(), wiring()) {
    m_house.machine.Sleep = [this](Milliseconds time) { m_lock.sleep(time); };
    m_house.machine.DoEvents = [this] { m_thread.doEvents(); };
  }

  int run() {
    (void)endsBySignal(0ns);
    std::promise<void> started;
    m_thread.start([&] {
      m_house.Main();
      m_start = m_clock.now();
      started.set_value();
    });
    started.get_future().wait();
    const bool ready =
        m_house.windows.Comm.getCurrentStatus() == Link::Up && m_house.show.CurrentProjectIndex > 0;
    if (ready) perform();
    close();
    return ready && !m_tooManyBoxes ? 0 : 1;
  }

 private:
  [[nodiscard]] std::int64_t now() const {
    return std::chrono::duration_cast<Milliseconds>(m_clock.now() - m_start).count();
  }

  void perform() {
    const std::int64_t end = m_options.until.value_or(LongestRun);
    for (const ScriptStep& step : m_options.script) {
      if (step.ms > end || waitTo(step.ms)) return;
      const DeskTurn turn(m_lock);
      step.act(m_operator);
      m_lastBusy = step.ms;
    }
    if (m_options.until)
      (void)waitTo(*m_options.until);
    else
      waitUntilQuiet();
  }

  /// True when the program is to end before that time.
  bool waitTo(std::int64_t ms) {
    while (now() < ms) {
      const Nanoseconds left = Milliseconds(ms) - (m_clock.now() - m_start);
      if (endsBySignal(std::clamp<Nanoseconds>(left, 0ns, 100ms)) || m_tooManyBoxes) return true;
    }
    return false;
  }

  void waitUntilQuiet() {
    constexpr std::int64_t LookEvery = 20;
    for (;;) {
      {
        const DeskTurn turn(m_lock);
        if (isFading(m_house)) m_lastBusy = now();
      }
      if (now() > std::min(m_lastBusy + QuietTime, LongestRun) || waitTo(now() + LookEvery)) return;
    }
  }

  void close() {
    m_lock.close();
    m_thread.join();
    const DeskTurn turn(m_lock);
    const auto counters = m_house.windows.Comm.VelgroveCom.counters();
    m_house.ShutdownApp();
    (void)std::fprintf(stderr, "sent %" PRIu64 ", dropped %" PRIu64 ", swallowed %" PRIu64 " blocks\n",
                       counters.sent, counters.dropped, counters.swallowed);
  }

  MessageBoxes boxes() {
    const auto answer = [this](const Box& box) {
      try {
        return m_boxLog.answer(box);
      } catch (const TooManyBoxes&) {
        m_tooManyBoxes = true;
        throw Closing{};
      }
    };
    return {.show = answer, .post = [answer](const Box& box) { (void)answer(box); }};
  }

  LightingDesk::Wiring wiring() {
    return {
        .windows = {.interface = {.line = keepingTurn(makePosixLine(), m_lock),
                                  .findInterfaces = [this] { return findInterfaces(m_roots, m_port); },
                                  .findAgain =
                                      [this](const InterfaceDevice& lost) {
                                        return findAgain(m_roots, lost);
                                      },
                                  .triggerEnabled = [] { return true; },
                                  .triggerGo = {},
                                  .repaint = [this] { tellStatus(); }},
                    .showCuePanel = [](const std::string&) {},
                    .showStatus = [](const std::string&) {},
                    .startEffect = [](const std::string&) {}},
        .frame = {.setting = [](const std::string&, const std::string&,
                                const std::string& fallback) { return fallback; }},
        .dataFolder = {},
        .raisePriority =
            [] {
              constexpr int Raised = -10;
              (void)setpriority(PRIO_PROCESS, 0,
                                Raised);  // an ordinary user is refused, and plays all the same
            },
        .openShow =
            [this] {
              m_house.show.ProjectFileName = m_options.show;
              m_house.frame.LoadProject(1);
            },
    };
  }

  void tellStatus() {
    const VelgroveComm& comm = m_house.windows.Comm;
    for (const auto& [told, words] : {std::pair(&m_toldVersion, &comm.Version.Caption),
                                      std::pair(&m_toldCondition, &comm.Condition.Caption)}) {
      if (*told == *words) continue;
      *told = *words;
      (void)std::fprintf(stderr, "interface: %s\n", words->empty() ? "all is well again" : words->c_str());
    }
  }

  const RunOptions& m_options;
  std::string m_port;
  MachineRoots m_roots;
  Clock m_clock = steadyClock();
  Nanoseconds m_start{};
  BoxLog m_boxLog{[this] { return now(); }};
  std::atomic<bool> m_tooManyBoxes = false;
  std::string m_toldVersion;
  std::string m_toldCondition;
  Desk m_lock;
  LightingDesk m_house;
  DeskThread m_thread{m_lock, m_house.machine.timers};
  Operator m_operator{
      .desk = m_house,
      .input = [](int, int) { (void)std::fprintf(stderr, "note: input is the box's own on a real line\n"); },
      .trigger = [](int) { (void)std::fprintf(stderr, "note: trigger is the box's own on a real line\n"); },
      .note = [](const std::string& what) { (void)std::fprintf(stderr, "note: %s\n", what.c_str()); }};
  std::int64_t m_lastBusy = 0;
};

}  // namespace

int play(const RunOptions& options) {
  if (!isWholeShow(options.show)) return 1;
  try {
    const std::string port = portByHand();
    if (findInterfaces(MachineRoots(), port).empty()) {
      (void)std::fprintf(stderr, "velgrove-show: no interface box is attached\n");
      return 1;
    }
    return Performance(options, port).run();
  } catch (const RunTimeError& error) {
    (void)std::fprintf(stderr, "velgrove-show: %s\n", error.what());
    return 1;
  }
}

}  // namespace velgrove
