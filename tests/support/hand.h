#pragma once

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>
#include <ostream>
#include <stdexcept>

#include <gtest/gtest.h>

/// For messages of tests; outside of any namespace, where the toolkit's types live.
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace velgrove::test {

/// A widget by its name, behind the names of some that it stands in: "XYQueueList/cmdGoForward".
template <class Widget = QWidget>
Widget& named(const QString& path) {
  QWidgetList from = QApplication::topLevelWidgets();
  const QStringList names = path.split('/');
  for (const QString& name : names) {
    QWidgetList found;
    for (QWidget* widget : from) {
      if (widget->objectName() == name) found.push_back(widget);
      found += widget->findChildren<QWidget*>(name);
    }
    from = found;
  }
  for (QWidget* widget : from)
    if (auto* wanted = qobject_cast<Widget*>(widget)) return *wanted;
  throw std::runtime_error("no widget " + path.toStdString());
}

/// What a widget shows at a place, in its own logical pixels.
inline QColor colourAt(QWidget& widget, QPoint at) {
  const QImage picture = widget.grab().toImage();
  return picture.pixelColor(at * picture.devicePixelRatio());
}

/// Real keys and a real mouse: they come in through the window, and reach what stands before the operator.
namespace hand {

inline void mouse(QTest::MouseAction action, QWidget& widget, QPoint at,
                  Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers with = {}) {
  QWidget* window = widget.window();
  const QPoint place = widget.mapTo(window, at);
  const QWidget* there = window->childAt(place);
  if (there == nullptr) there = window;
  const bool held = action == QTest::MouseMove || action == QTest::MouseRelease;
  EXPECT_TRUE(held || (widget.isVisible() && (there == &widget || widget.isAncestorOf(there))))
      << widget.objectName().toStdString() << " can't be seen there";
  QTest::mouseEvent(action, window->windowHandle(), action == QTest::MouseMove ? Qt::NoButton : button, with,
                    place);
}

/// Turns the wheel over a widget by eighths of a degree, 120 a notch, away from the operator.
inline void wheel(const QWidget& widget, int angle, Qt::KeyboardModifiers with = {}) {
  QWidget* window = widget.window();
  const QPoint place = widget.mapTo(window, widget.rect().center());
  QWheelEvent turn(place, window->mapToGlobal(place), {}, {0, angle}, Qt::NoButton, with, Qt::NoScrollPhase,
                   false);
  QApplication::sendEvent(window->windowHandle(), &turn);
}

inline void key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
  QTest::keyClick(static_cast<QWidget*>(nullptr), key, with);
}

inline void type(const QString& text) {
  QTest::keyClicks(nullptr, text);
}

}  // namespace hand
}  // namespace velgrove::test
