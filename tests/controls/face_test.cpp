#include "controls/face.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include <gtest/gtest.h>

#include "controls/clock.h"
#include "controls/desk_thread.h"
#include "controls/timer.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

/// A toolkit's event loop on a plain thread: the operator's clicks and the desk's wakes come in one queue.
class PlainLoop {
 public:
  using Work = std::function<void()>;

  /// From any thread.
  void post(Work work, bool input = false) {
    const std::lock_guard lock(m_mutex);
    m_queue.push_back({std::move(work), input});
    m_come.notify_all();
  }
  void click(Work work) { post(std::move(work), true); }

  void processEvents() { runOne(true, std::nullopt); }
  void paintEvents(Milliseconds time) { runOne(false, time); }

 private:
  struct Event {
    Work work;
    bool input;
  };

  void runOne(bool alsoInput, std::optional<Milliseconds> patience) {
    std::unique_lock lock(m_mutex);
    auto next = m_queue.end();
    const auto found = [&] {
      next = std::ranges::find_if(m_queue, [&](const Event& event) { return alsoInput || !event.input; });
      return next != m_queue.end();
    };
    if (patience)
      m_come.wait_for(lock, *patience, found);
    else
      m_come.wait(lock, found);
    if (next == m_queue.end()) return;
    const Work work = std::move(next->work);
    m_queue.erase(next);
    lock.unlock();
    work();
  }

  std::mutex m_mutex;
  std::condition_variable m_come;
  std::deque<Event> m_queue;
};

/// A desk with its thread and a face on the test's own thread. The operator sits on a third one.
class House {
 public:
  House() : face(desk, loop()) {
    thread.start([] {});
  }
  ~House() {
    desk.close();
    thread.join();
  }

  PlainLoop events;
  Desk desk;
  TimerSet timers{steadyClock()};
  Face face;
  DeskThread thread{desk, timers};
  std::vector<std::string> boxes;
  BoxAnswer answer = BoxAnswer::Ok;
  std::atomic<bool> wakePending = false;

  /// A timer that ticks every millisecond, switched on.
  Timer& every(TimerRank rank, std::function<void()> handler) {
    desk.take();
    m_made.push_back(std::make_unique<Timer>(timers, rank, 1, std::move(handler)));
    Timer& timer = *m_made.back();
    timer.setEnabled(true);
    desk.give();
    return timer;
  }

  /// Runs the face's loop until something holds.
  void runUntil(const std::function<bool()>& over) {
    while (!over()) events.processEvents();
  }
  [[nodiscard]] bool read(const std::function<bool()>& value) {
    desk.takeToCopy();
    const bool copy = value();
    desk.giveUnchanged();
    return copy;
  }
  void waitAnywhere(const std::function<bool()>& condition) {
    if (face.here())
      face.until(condition);
    else
      thread.until(condition);
  }

 private:
  std::vector<std::unique_ptr<Timer>> m_made;

  Face::Loop loop() {
    return {.processEvents = [this] { events.processEvents(); },
            .paintEvents = [this](Milliseconds time) { events.paintEvents(time); },
            .wake =
                [this] {
                  if (wakePending.exchange(true)) return;
                  events.post([this] {
                    wakePending = false;
                    face.serve();
                  });
                },
            .showBox =
                [this](const Box& box, bool, std::function<void(BoxAnswer)> answered) {
                  boxes.push_back(box.text);
                  events.click([this, answered = std::move(answered)] { answered(answer); });
                }};
  }
};

TEST(Face, ShowsEachValueOfTheDeskThatStandsInTheEnd) {
  House house;
  int value = 0;
  int shown = -1;
  int copied = 0;
  const auto tie = house.face.bind({.copy =
                                        [&] {
                                          EXPECT_TRUE(house.desk.mine());
                                          return std::exchange(copied, value) != value;
                                        },
                                    .apply =
                                        [&] {
                                          EXPECT_FALSE(house.desk.mine());
                                          shown = copied;
                                        }});
  house.every(TimerRank::Display, [&] {
    if (value < 50) ++value;
  });
  house.runUntil([&] { return shown == 50; });
}

TEST(Face, ShowsWhatAHandlerChangedBeforeItWaitsAlsoWithAllTimersAtRest) {
  House house;
  bool waits = false;
  bool copied = false;
  bool shown = false;
  const auto tie = house.face.bind(
      {.copy = [&] { return std::exchange(copied, waits) != waits; }, .apply = [&] { shown = copied; }});
  house.every(TimerRank::Dialog, [&] {
    house.desk.sleep(20ms);  // the face is through with all that came before
    waits = true;
    house.thread.until([] { return false; });
  });
  house.runUntil([&] { return shown; });
}

TEST(Face, DeliversTheOperatorsActionsInOrderAlsoThoseGivenWhileAHandlerSleeps) {
  House house;
  std::vector<int> done;
  bool asleep = false;
  house.every(TimerRank::Trigger, [&] {
    if (std::exchange(asleep, true)) return;
    house.desk.sleep(30ms);
    done.push_back(0);
  });
  house.runUntil([&] { return house.read([&] { return asleep; }); });
  for (int action = 1; action <= 3; ++action) house.face.deliver([&, action] { done.push_back(action); });
  house.runUntil([&] { return house.read([&] { return done.size() == 4; }); });
  EXPECT_EQ(done, (std::vector{0, 1, 2, 3}));
}

TEST(Face, KeepsServingTheOperatorWhileAnActionWaitsForAnAnswer) {
  House house;
  std::vector<std::string> order;
  house.events.click([&] {
    house.face.deliver([&] {
      const auto wait = [&](const std::function<bool()>& condition) { house.waitAnywhere(condition); };
      order.emplace_back("asks");
      EXPECT_EQ(house.face.showBox({.text = "Sure?"}, wait), BoxAnswer::Yes);
      order.emplace_back("answered");
    });
  });
  house.answer = BoxAnswer::Yes;
  house.events.click([&] { house.face.deliver([&] { order.emplace_back("Go"); }); });
  house.runUntil([&] { return order.size() == 3; });
  EXPECT_EQ(order, (std::vector<std::string>{"asks", "Go", "answered"}));
}

TEST(Face, ShowsABoxOfATimersHandlerWhileTheOtherTimersGoOn) {
  House house;
  int ticksUnderBox = 0;
  bool open = false;
  bool over = false;
  house.every(TimerRank::Send, [&] { ticksUnderBox += open ? 1 : 0; });
  house.every(TimerRank::Trigger, [&] {
    if (over) return;
    open = true;
    const auto wait = [&](const std::function<bool()>& condition) {
      house.waitAnywhere([&] { return ticksUnderBox > 5 && condition(); });
    };
    (void)house.face.showBox({.text = "Lost"}, wait);
    open = false;
    over = true;
  });
  house.runUntil([&] { return house.read([&] { return over; }); });
  EXPECT_EQ(house.boxes, (std::vector<std::string>{"Lost"}));
}

TEST(Face, PaintsButTakesNoActionWhileItsOwnHandlerSleeps) {
  House house;
  std::vector<std::string> order;
  house.face.deliver([&] {
    house.events.post([&] { order.emplace_back("painted"); });
    house.events.click([&] { house.face.deliver([&] { order.emplace_back("clicked"); }); });
    house.events.post([&] { house.face.deliver([&] { order.emplace_back("closed"); }); });
    house.face.sleep(30ms);
    order.emplace_back("slept");
  });
  house.runUntil([&] { return order.size() == 4; });
  EXPECT_EQ(order[0], "painted");
  EXPECT_EQ(order[1], "slept");
}

TEST(Face, LeavesTheLightToItselfWhileItWritesToTheDisk) {
  House house;
  std::atomic<int> ticks = 0;
  house.every(TimerRank::Send, [&] { ++ticks; });
  house.face.deliver([&] {
    house.face.aside([&] {
      const int before = ticks;
      while (ticks < before + 5) std::this_thread::yield();
    });
    EXPECT_TRUE(house.desk.mine());
  });
}

TEST(Face, EndsEveryWaitWhenTheDeskCloses) {
  House house;
  bool ended = false;
  house.events.click([&] {
    house.face.deliver([&] {
      house.events.click([&] { house.face.deliver([&] { house.desk.close(); }); });
      try {
        house.face.until([] { return false; });
      } catch (const Closing&) {
        ended = true;
        throw;
      }
    });
  });
  house.runUntil([&] { return ended; });
  EXPECT_TRUE(house.desk.closing());
}

TEST(Face, ForgetsABinderWhoseWindowIsGone) {
  House house;
  int copies = 0;
  auto tie = house.face.bind({.copy =
                                  [&] {
                                    ++copies;
                                    return true;
                                  },
                              .apply = [] {}});
  house.face.pull();
  tie.reset();
  house.face.pull();
  EXPECT_EQ(copies, 1);
}

}  // namespace
}  // namespace velgrove
