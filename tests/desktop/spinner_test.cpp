// The arrows of a field, and the Enter key in it.

#include "desktop/spinner.h"

#include <QVBoxLayout>

#include <gtest/gtest.h>

#include "desktop/binding.h"
#include "support/screen.h"

namespace velgrove::test {
namespace {

/// A field with arrows, tied to a spinner of the desk whose steps are written down.
struct FieldWithArrows : testing::Test {
  FieldWithArrows() {
    control.UpClick = [this] { steps += '+'; };
    control.DownClick = [this] { steps += '-'; };
    auto* column = new QVBoxLayout(&window);
    column->addWidget(&field);
    column->addWidget(&other);
    ties.bind(&field, [this] { return &text; });
    ties.bind(&arrows, [this] { return &control; });
    window.show();
    window.activateWindow();
    other.setFocus();
    screen.settle();
    screen.face.pull();
  }

  /// What came of something.
  std::string after(const std::function<void()>& act) {
    steps.clear();
    act();
    return std::exchange(steps, "");
  }
  /// The time until the next repetition is over.
  void wait() {
    auto& repeat = *arrows.findChild<QTimer*>("repeat");
    if (repeat.isActive()) QMetaObject::invokeMethod(&repeat, "timeout");
    screen.settle();
  }

  Screen screen;
  TextBox text{"5"};
  UpDown control{0, 10, 10};  // at the end of its range
  std::string steps;
  QWidget window;
  Field field;
  Spinner arrows{field};
  QLineEdit other;
  Bindings ties{screen.face};
  const QPoint up{8, 2};
  const QPoint down{8, 12};
};

TEST_F(FieldWithArrows, AHeldArrowRepeatsUntilItIsLetGoOrLeft) {
  EXPECT_EQ(after([&] { screen.press(arrows, up); }), "+");
  EXPECT_EQ(QApplication::focusWidget(), &field);
  EXPECT_EQ(after([&] { wait(), wait(); }), "++");
  screen.moveTo(arrows, down);
  EXPECT_EQ(after([&] { wait(); }), "");
  screen.moveTo(arrows, up);
  EXPECT_EQ(after([&] { wait(); }), "+");
  screen.release(arrows, up);
  EXPECT_EQ(after([&] { wait(); }), "");
  EXPECT_EQ(after([&] { screen.click(arrows, down); }), "-");
  EXPECT_EQ(after([&] { hand::mouse(QTest::MouseClick, arrows, up, Qt::RightButton); }), "");
}

/// Otherwise an error would come again and again under the hand that reads its box.
TEST_F(FieldWithArrows, ABoxTakesTheArrowOutOfTheHand) {
  control.UpClick = [this] {
    steps += '+';
    screen.face.showBox({.text = "no number"}, [this](const auto& done) { screen.face.until(done); });
  };
  screen.expectBox("no number");
  EXPECT_EQ(after([&] { screen.press(arrows, up); }), "+");
  EXPECT_EQ(after([&] { wait(); }), "");
}

TEST_F(FieldWithArrows, TheWheelStepsByNotchesAndTheKeysWhereTheFocusIs) {
  EXPECT_EQ(after([&] { screen.wheel(field, 120), screen.wheel(arrows, 120); }), "") << "in passing";
  EXPECT_EQ(after([&] { screen.key(Qt::Key_Up); }), "");
  field.setFocus();
  EXPECT_EQ(after([&] { screen.wheel(field, 120); }), "+");
  EXPECT_EQ(after([&] { screen.wheel(arrows, -240); }), "--");
  EXPECT_EQ(after([&] { screen.wheel(field, 60); }), "");
  EXPECT_EQ(after([&] { screen.wheel(field, 60); }), "+");
  EXPECT_EQ(after([&] { screen.key(Qt::Key_Up), screen.key(Qt::Key_Down); }), "+-");
  EXPECT_EQ(after([&] { screen.key(Qt::Key_Up, Qt::ControlModifier); }), "");
  window.setEnabled(false);
  EXPECT_EQ(after([&] { screen.wheel(field, 120), screen.click(arrows, up); }), "");
}

TEST_F(FieldWithArrows, WhatIsTypedAfterAStepTakesThePlaceOfTheNumber) {
  control.UpClick = [this] { text.setText("10"); };
  field.setFocus();
  screen.key(Qt::Key_Up);
  screen.type("7");
  EXPECT_EQ(text.text(), "7");
}

TEST_F(FieldWithArrows, EnterIsToldOnceWhenItComesUpAndBehindTheTypedText) {
  std::vector<std::string> told;
  text.KeyUp = [&](int key) { told.push_back(text.text() + " " + std::to_string(key)); };
  const auto enter = [&](bool press, bool again) {
    QTest::simulateEvent(window.windowHandle(), press, Qt::Key_Return, Qt::NoModifier, "\r", again);
    screen.settle();
  };
  field.setFocus();
  screen.key(Qt::Key_End);
  screen.type("2");
  enter(true, false);
  EXPECT_TRUE(told.empty());
  enter(false, true);
  enter(true, true);
  EXPECT_TRUE(told.empty());
  enter(false, false);
  EXPECT_EQ(told, std::vector<std::string>{"52 13"});

  other.setFocus();
  enter(true, false);
  field.setFocus();
  enter(false, false);
  EXPECT_EQ(told.size(), 1U) << "went down elsewhere";
}

}  // namespace
}  // namespace velgrove::test
