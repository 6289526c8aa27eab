#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <algorithm>
#include <deque>
#include <functional>
#include <latch>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "controls/face.h"
#include "desktop/message_boxes.h"
#include "support/hand.h"

namespace velgrove::test {

/// A desk's lock with a face on the toolkit's events, and the operator before it. No time passes by itself:
/// what a wait brings about is what the operator does then. A box that nobody expected fails the test, and so
/// does a wait that nobody ends.
class Screen {
 public:
  Screen() = default;
  ~Screen() {
    EXPECT_TRUE(m_boxes.empty()) << "box never came: " << m_boxes.front().text.toStdString();
    EXPECT_TRUE(m_steps.empty()) << "the operator was never asked";
  }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  Desk lock;
  std::function<void(const Box&, bool, std::function<void(BoxAnswer)>)> showBox =
      [](const Box& box, bool waitedFor, std::function<void(BoxAnswer)> answered) {
        showMessageBox(QApplication::activeWindow(), box, waitedFor, std::move(answered));
      };
  Face face{lock,
            {.processEvents = [this] { goOnWaiting(); },
             .paintEvents = [](Milliseconds) { QApplication::processEvents(); },
             .wake = [this] { m_woken = true; },
             .showBox =
                 [this](const Box& box, bool waitedFor, std::function<void(BoxAnswer)> answered) {
                   showBox(box, waitedFor, std::move(answered));
                 }}};

  /// What the operator does when the desk next waits for him and no box stands there.
  void whenAsked(std::function<void()> step) { m_steps.push_back(std::move(step)); }
  /// The operator will click a button of a box that says this, having done something `before`.
  void expectBox(const QString& text, const QString& button = "OK", std::function<void()> before = {}) {
    m_boxes.push_back({.text = text, .button = button, .before = std::move(before)});
  }

  /// The desk itself does something, as in a timer.
  void onDesk(const std::function<void()>& work) {
    {
      const DeskTurn turn(lock);
      work();
    }
    settle();
  }

  /// Runs what there is to run, until the screen shows what the desk holds.
  void settle() {
    bool woken = true;
    while (woken || answerBox() || giveFocusOn()) {
      QApplication::processEvents();
      woken = std::exchange(m_woken, false);
      if (woken) face.serve();
    }
    if (m_waits == 0) QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  /// The operator acts while a handler of the desk thread sleeps; what he did reaches the desk behind it.
  void whileBusy(const std::function<void()>& step) {
    std::latch taken(1);
    std::latch free(1);
    std::thread busy([&] {
      const DeskTurn turn(lock);
      lock.keepTurn([&] {
        taken.count_down();
        free.wait();
      });
    });
    taken.wait();
    step();
    free.count_down();
    busy.join();
    settle();
  }

  // ---- The operator's hand

  void click(QWidget& widget, Qt::MouseButton button = Qt::LeftButton) {
    click(widget, widget.rect().center(), button);
  }
  void click(QWidget& widget, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
    hand::mouse(QTest::MouseClick, widget, at, button);
    settle();
  }
  void doubleClick(QWidget& widget, QPoint at) {
    hand::mouse(QTest::MouseDClick, widget, at);
    settle();
  }
  void press(QWidget& widget, QPoint at) {
    hand::mouse(QTest::MousePress, widget, at);
    settle();
  }
  void moveTo(QWidget& widget, QPoint at) {
    hand::mouse(QTest::MouseMove, widget, at);
    settle();
  }
  void release(QWidget& widget, QPoint at) {
    hand::mouse(QTest::MouseRelease, widget, at);
    settle();
  }
  void wheel(const QWidget& widget, int angle) {
    hand::wheel(widget, angle);
    settle();
  }
  void key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
    hand::key(key, with);
    settle();
  }
  void type(const QString& text) {
    hand::type(text);
    settle();
  }

 private:
  struct Expected {
    QString text;
    QString button;
    std::function<void()> before;
  };

  /// One turn of a wait. The operator acts when it shows him nothing new.
  void goOnWaiting() {
    ++m_waits;
    const auto before = windowsBeforeHim();
    const int answered = m_answered;
    settle();
    if (windowsBeforeHim() == before && m_answered == answered) act();
    --m_waits;
  }

  static QWidgetList windowsBeforeHim() {
    QWidgetList windows = QApplication::topLevelWidgets();
    windows.removeIf([](const QWidget* window) { return !window->isVisible(); });
    return windows;
  }

  /// As a window manager does when the window with the focus has gone.
  static bool giveFocusOn() {
    QWidget* next = QApplication::activeModalWidget();
    for (QWidget* window : windowsBeforeHim())
      if (next == nullptr && window->windowType() == Qt::Window) next = window;
    if (QApplication::activeWindow() != nullptr || next == nullptr) return false;
    next->activateWindow();
    QApplication::processEvents();
    return QApplication::activeWindow() != nullptr;
  }

  void act() {
    if (m_steps.empty()) {
      ADD_FAILURE() << "the desk waits, and nobody ends it";
      lock.close();
      return;
    }
    const auto step = std::move(m_steps.front());
    m_steps.pop_front();
    step();
  }

  /// Answers one box, the newest, by its button.
  bool answerBox() {
    const auto all = windowsBeforeHim();
    const auto found = std::ranges::find_if(all, [this](QWidget* window) {
      return qobject_cast<QMessageBox*>(window) != nullptr && window != m_looking;
    });
    if (found == all.end()) return false;
    ++m_answered;
    const QPointer box = qobject_cast<QMessageBox*>(*found);
    Expected expected{.text = box->text(), .button = box->buttons().constLast()->text(), .before = {}};
    if (m_boxes.empty() || !box->text().contains(m_boxes.front().text)) {
      ADD_FAILURE() << "unexpected box: " << box->text().toStdString();
    } else {
      expected = std::move(m_boxes.front());
      m_boxes.pop_front();
    }
    QWidget* const outer = std::exchange(m_looking, box);
    if (expected.before) expected.before();
    m_looking = outer;
    if (box == nullptr || !box->isVisible()) return true;  // answered by a key
    QAbstractButton* wanted = nullptr;
    for (QAbstractButton* button : box->buttons())
      if (button->text() == expected.button) wanted = button;
    if (wanted != nullptr) hand::mouse(QTest::MouseClick, *wanted, wanted->rect().center());
    if (box != nullptr && box->isVisible()) {
      ADD_FAILURE() << "the box has no button " << expected.button.toStdString();
      box->reject();
    }
    return true;
  }

  bool m_woken = false;
  int m_waits = 0;               ///< how many waits the test stands in
  int m_answered = 0;            ///< how many boxes
  QWidget* m_looking = nullptr;  ///< the box that the operator leaves standing for a moment
  std::deque<std::function<void()>> m_steps;
  std::deque<Expected> m_boxes;
};

}  // namespace velgrove::test
