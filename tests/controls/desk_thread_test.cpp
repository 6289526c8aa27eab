// The lock and the thread of the desk, with real threads; run under the thread sanitizer too. What is tested
// is order and exclusion, never duration.

#include "controls/desk_thread.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace velgrove {
namespace {

using namespace std::chrono_literals;

struct House {
  Desk desk;
  TimerSet timers{steadyClock()};
  DeskThread thread{desk, timers};
};

TEST(DeskThread, RunsTimersAndTheFacesActionsOneAtATime) {
  House house;
  int inside = 0;
  int ticks = 0;
  const auto alone = [&] {
    EXPECT_EQ(++inside, 1);
    std::this_thread::yield();
    --inside;
  };
  std::unique_ptr<Timer> timer;
  house.thread.start([&] {
    timer = std::make_unique<Timer>(house.timers, TimerRank::Send, 1, [&] {
      alone();
      ++ticks;
    });
    timer->setEnabled(true);
  });
  for (bool enough = false; !enough;) {
    const DeskTurn turn(house.desk);
    alone();
    enough = ticks >= 20;
  }
  house.thread.join();
}

TEST(DeskThread, AWaitInsideAHandlerRunsTheOtherTimersNested) {
  House house;
  bool answered = false;
  bool waiting = false;
  int others = 0;
  int entered = 0;
  std::unique_ptr<Timer> asking;
  std::unique_ptr<Timer> other;
  house.thread.start([&] {
    asking = std::make_unique<Timer>(house.timers, TimerRank::Dialog, 1, [&] {
      ++entered;
      waiting = true;
      house.thread.until([&] { return answered; });
      waiting = false;
      asking->setEnabled(false);
    });
    other = std::make_unique<Timer>(house.timers, TimerRank::Send, 1, [&] { others += waiting ? 1 : 0; });
    asking->setEnabled(true);
    other->setEnabled(true);
  });
  for (bool done = false; !done;) {
    const DeskTurn turn(house.desk);
    if (others > 5) answered = true;
    done = answered && !waiting;
    EXPECT_LE(entered, 1);
  }
  house.thread.join();
}

TEST(DeskThread, ASleeperKeepsTheTurnButLetsTheFaceCopy) {
  House house;
  std::atomic<bool> sleeping = false;
  std::atomic<bool> copied = false;
  bool asleep = false;
  house.thread.start([&] {
    asleep = true;
    house.desk.keepTurn([&] {
      sleeping = true;
      while (!copied) std::this_thread::yield();
    });
    asleep = false;
  });
  while (!sleeping) std::this_thread::yield();
  std::thread handler([&] {
    const DeskTurn turn(house.desk);
    EXPECT_FALSE(asleep) << "no handler runs meanwhile";
  });
  house.desk.takeToCopy();
  EXPECT_TRUE(asleep);
  house.desk.give();
  copied = true;
  handler.join();
}

TEST(DeskThread, ClosingEndsEveryWaitAndIsNoRunTimeError) {
  House house;
  std::atomic<bool> nested = false;
  bool unwound = false;
  std::unique_ptr<Timer> timer;
  MessageBoxes boxes{.show =
                         [](const Box&) {
                           ADD_FAILURE() << "closing is no error";
                           return BoxAnswer::Ignore;
                         },
                     .post = [](const Box&) {}};
  ErrorPattern errors(boxes);
  house.thread.start([&] {
    timer = std::make_unique<Timer>(house.timers, TimerRank::Dialog, 1, [&] {
      struct Note {
        bool& flag;
        ~Note() { flag = true; }
      } note{unwound};
      errors.run([&] {
        nested = true;
        house.thread.until([] { return false; });
      });
    });
    timer->setEnabled(true);
  });
  while (!nested) std::this_thread::yield();
  house.thread.join();
  EXPECT_TRUE(unwound);
  timer.reset();
}

TEST(DeskThread, PassesOnWhatItsSetUpThrew) {
  House house;
  house.thread.start([] { throw RunTimeError(Fault::File, "no show"); });
  EXPECT_THROW(house.thread.join(), RunTimeError);
  EXPECT_TRUE(house.thread.ended());
}

TEST(DeskThread, ASleepEndsWhenTheDeskCloses) {
  House house;
  std::atomic<bool> asleep = false;
  house.thread.start([&] {
    asleep = true;
    house.desk.sleep(24h);
  });
  while (!asleep) std::this_thread::yield();
  house.thread.join();
}

TEST(DeskThread, AnActionOfTheFaceThatSetsATimerWakesIt) {
  House house;
  std::atomic<bool> ticked = false;
  Timer timer(house.timers, TimerRank::Send, 1, [&] { ticked = true; });
  std::atomic<bool> idle = false;
  house.thread.start([&] { idle = true; });
  while (!idle) std::this_thread::yield();
  {
    const DeskTurn turn(house.desk);
    timer.setEnabled(true);
  }
  while (!ticked) std::this_thread::yield();
  house.thread.join();
}

}  // namespace
}  // namespace velgrove
