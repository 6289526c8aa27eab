#include "controls/timer.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "controls/hand_clock.h"
#include "controls/machine.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

class Timers : public testing::Test {
 protected:
  HandClock clock;
  TimerSet timers{clock.clock()};
  std::string log;

  std::function<void()> noting(const std::string& name) {
    return [this, name] { log += name + std::to_string(clock.now() / 1ms) + " "; };
  }
};

TEST_F(Timers, TickOnAGridThatBeginsWhenTheyGoFromOffToOn) {
  Timer timer(timers, TimerRank::Send, 30, noting("t"));
  clock.advanceTo(100ms, timers);
  timer.setEnabled(true);
  clock.advanceTo(145ms, timers);
  timer.setEnabled(true);  // changes nothing
  clock.advanceTo(165ms, timers);
  timer.setEnabled(false);
  clock.advanceTo(170ms, timers);
  timer.setEnabled(true);
  clock.advanceTo(200ms, timers);
  timer.setInterval(5);
  clock.advanceTo(205ms, timers);
  EXPECT_EQ(log, "t130 t160 t200 t205 ");
}

TEST_F(Timers, DueAtOneInstantRunInOrderOfRank) {
  Timer receive(timers, TimerRank::Receive, 60, noting("receive"));
  Timer merge(timers, TimerRank::Merge, 20, noting("merge"));
  Timer send(timers, TimerRank::Send, 30, noting("send"));
  Timer fade(timers, TimerRank::FadeXY, 30, noting("fade"));
  for (Timer* timer : {&receive, &merge, &send, &fade}) timer->setEnabled(true);
  clock.advanceTo(60ms, timers);
  EXPECT_EQ(log, "merge20 send30 fade30 merge40 send60 fade60 merge60 receive60 ");
}

TEST_F(Timers, AnIntervalOfZeroNeverTicksAndOneBelowIsRefused) {
  Timer timer(timers, TimerRank::Chase, 0, noting("t"));
  timer.setEnabled(true);
  EXPECT_THROW(timer.setInterval(-1), RunTimeError);
  clock.advanceTo(10s, timers);
  EXPECT_EQ(log, "");
  EXPECT_FALSE(timers.nextDue());
}

TEST_F(Timers, MissedTicksAreDroppedAndALateOneRejoinsTheGrid) {
  Timer other(timers, TimerRank::Merge, 40, noting("other"));
  Timer sleeper(timers, TimerRank::Send, 30, [&] {
    noting("sleeper")();
    if (clock.now() == 30ms) clock.pass(75ms);
  });
  other.setEnabled(true);
  sleeper.setEnabled(true);
  clock.advanceTo(160ms, timers);
  EXPECT_EQ(log, "sleeper30 other105 sleeper120 other120 sleeper150 other160 ");
}

TEST_F(Timers, AHandlerIsNeverEnteredWhileItRunsAndOthersNestInside) {
  Timer inner(timers, TimerRank::Merge, 10, noting("inner"));
  Timer outer(timers, TimerRank::Send, 10, [&] {
    noting("outer")();
    if (clock.now() == 10ms) clock.advanceTo(30ms, timers);
  });
  outer.setEnabled(true);
  inner.setEnabled(true);
  clock.advanceTo(40ms, timers);
  EXPECT_EQ(log, "outer10 inner10 inner20 inner30 outer30 outer40 inner40 ");
}

TEST_F(Timers, AHandlerMayTakeItsOwnTimerAway) {
  auto timer = std::make_unique<Timer>(timers, TimerRank::Send, 10, [] {});
  Timer killer(timers, TimerRank::FadeAB, 10, [&] { timer.reset(); });
  auto self = std::make_unique<std::unique_ptr<Timer>>();
  *self = std::make_unique<Timer>(timers, TimerRank::Dialog, 10, [&] { self->reset(); });
  for (Timer* each : {timer.get(), &killer, self->get()}) each->setEnabled(true);
  clock.advanceTo(50ms, timers);
  EXPECT_EQ(timer, nullptr);
  EXPECT_EQ(*self, nullptr);
}

class Faults : public Timers {
 protected:
  int shown = 0;
  int posted = 0;
  BoxAnswer answer = BoxAnswer::Ignore;
  MessageBoxes boxes{.show =
                         [this](const Box& box) {
                           EXPECT_EQ(box.title, "SYSTEM ERROR");
                           ++shown;
                           return answer;
                         },
                     .post = [this](const Box&) { ++posted; }};
  ErrorPattern errors{boxes};

  static void fail() { throw RunTimeError(Fault::Overflow, "test"); }
};

TEST_F(Faults, IgnoreGoesOnRetryRepeatsAndAbortPassesTheErrorOn) {
  int steps = 0;
  errors.steps([&] { fail(); }, [&] { ++steps; });
  EXPECT_EQ(steps, 1);

  answer = BoxAnswer::Retry;
  int tries = 0;
  errors.run([&] {
    if (++tries < 3) fail();
  });
  EXPECT_EQ(tries, 3);

  answer = BoxAnswer::Abort;
  EXPECT_THROW(errors.steps([&] { fail(); }, [&] { ++steps; }), RunTimeError);
  EXPECT_EQ(steps, 1);
  EXPECT_EQ(shown, 4);
}

TEST_F(Faults, OfATimerShowTheirBoxOncePerOnset) {
  bool bad = true;
  Timer timer(timers, TimerRank::Display, 10, [&] {
    errors.run([&] {
      if (bad) fail();
    });
  });
  timer.setEnabled(true);
  clock.advanceTo(50ms, timers);
  EXPECT_EQ(shown, 1);
  bad = false;
  clock.advanceTo(60ms, timers);
  bad = true;
  clock.advanceTo(100ms, timers);
  EXPECT_EQ(shown, 2);
}

TEST_F(Faults, SeveralInOneTickShowABoxEach) {
  int bad = 2;
  Timer timer(timers, TimerRank::Display, 10, [&] {
    for (int i = 0; i < bad; ++i) errors.run([&] { fail(); });
  });
  timer.setEnabled(true);
  clock.advanceTo(30ms, timers);
  EXPECT_EQ(shown, 2);
  bad = 3;
  clock.advanceTo(50ms, timers);
  EXPECT_EQ(shown, 3);
}

TEST_F(Faults, OfALightTimerNeverWaitForTheAnswer) {
  int ticks = 0;
  Timer timer(
      timers, TimerRank::Merge, 10, [&] { errors.steps([&] { fail(); }, [&] { ++ticks; }); },
      ErrorPattern::Waits::Never);
  timer.setEnabled(true);
  clock.advanceTo(40ms, timers);
  EXPECT_EQ(posted, 1);
  EXPECT_EQ(shown, 0);
  EXPECT_EQ(ticks, 4);
}

TEST_F(Faults, AnOrdinaryBoxOfALightTimerIsPostedToo) {
  Machine machine(clock.clock(), boxes);
  Timer timer(
      machine.timers, TimerRank::Send, 10, [&] { machine.boxes.show({.text = "port not open"}); },
      ErrorPattern::Waits::Never);
  timer.setEnabled(true);
  clock.advanceTo(10ms, machine.timers);
  EXPECT_EQ(posted, 1);
}

TEST_F(Faults, AbortedByTheOperatorReachTheTop) {
  answer = BoxAnswer::Abort;
  int unhandled = 0;
  timers.onUnhandled = [&](const RunTimeError&) { ++unhandled; };
  Timer timer(timers, TimerRank::Display, 10, [&] { errors.run([&] { fail(); }); });
  timer.setEnabled(true);
  clock.advanceTo(10ms, timers);
  EXPECT_EQ(unhandled, 1);
}

}  // namespace
}  // namespace velgrove
