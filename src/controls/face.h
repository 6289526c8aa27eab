#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "controls/desk.h"
#include "controls/error_pattern.h"

namespace velgrove {

/// The way of some values from the desk to the screen.
struct Binder {
  std::function<bool()> copy;   ///< desk held: takes values, touches no widget; true when they are new
  std::function<void()> apply;  ///< desk free: shows them
};

/// The operator's side of the desk's door. It lives on one thread, the toolkit's: delivers one action at a
/// time, copies what has changed, and shows it with the desk free, so that nothing on the screen holds up the
/// light. It knows no toolkit itself.
class Face {
 public:
  struct Loop {
    /// Waits for an event and runs what is there.
    std::function<void()> processEvents;
    /// Runs what is there and waits for more until the time is over, but leaves the operator's input for
    /// later.
    std::function<void(Milliseconds)> paintEvents;
    /// Called by any thread: makes the toolkit's thread call `serve` soon.
    std::function<void()> wake;
    /// Shows a box and calls back once with the answer, never before it returns. A box that nobody waits for
    /// doesn't keep the operator from the rest of the desk.
    std::function<void(const Box&, bool waitedFor, std::function<void(BoxAnswer)> answered)> showBox;
  };

  Face(Desk& desk, Loop loop);
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  /// Whether this is the face's thread: the one that made it.
  [[nodiscard]] bool here() const { return std::this_thread::get_id() == m_thread; }

  /// Lets a binder take part in every pull as long as the result lives.
  [[nodiscard]] std::shared_ptr<void> bind(Binder binder);

  /// What `wake` asked for: runs the actions that had to stand back, and pulls.
  void serve();
  /// Copies what has changed and shows it.
  void pull();
  /// Runs an action of the operator with the desk taken, then pulls. One that comes while a handler sleeps,
  /// or while values are being shown (a window shown anew tells its size), is run as soon as the turn is
  /// free.
  void deliver(std::function<void()> action);
  /// Calls `deliver`'s actions through this, for the errors that nobody took.
  std::function<void(const std::function<void()>&)> act = [](const std::function<void()>& action) {
    action();
  };

  // With the desk held:

  /// Waits on the face's thread with the desk given back, and serves the operator meanwhile. Ends by
  /// `Closing`.
  void until(const std::function<bool()>& condition);
  /// Waits with the turn kept; the screen goes on painting. Ends by `Closing`.
  void sleep(Milliseconds time);
  /// Does work with the desk given back. The operator stands still meanwhile.
  void aside(const std::function<void()>& work);
  /// Has a box shown, from any thread, and waits for the answer by `waitUntil`.
  BoxAnswer showBox(const Box& box, const std::function<void(const std::function<bool()>&)>& waitUntil);
  /// Has a box shown, from any thread, and goes on.
  void postBox(const Box& box);

 private:
  struct Asked {
    Box box;
    bool waitedFor = false;
    bool shown = false;
    std::optional<BoxAnswer> answer = std::nullopt;
  };
  struct Bound {
    Binder binder;
    bool live = true;
    bool changed = false;
  };

  std::shared_ptr<Asked> ask(const Box& box, bool waitedFor);
  [[nodiscard]] std::vector<std::shared_ptr<Asked>> boxesToShow() const;
  void showBoxes(const std::vector<std::shared_ptr<Asked>>& boxes);
  bool run(const std::function<void()>& action);
  void runLate();

  Desk& m_desk;
  Loop m_loop;
  std::thread::id m_thread = std::this_thread::get_id();
  std::vector<std::weak_ptr<Bound>> m_bound;
  std::vector<std::shared_ptr<Asked>> m_boxes;  ///< guarded by the desk
  std::deque<std::function<void()>> m_late;
  bool m_asleep = false;    ///< a handler of this thread sleeps
  bool m_applying = false;  ///< values are being shown
};

}  // namespace velgrove
