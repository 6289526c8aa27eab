#pragma once

#include <QAccessible>
#include <QComboBox>
#include <QRect>
#include <QString>
#include <QWidget>
#include <functional>

namespace velgrove {

/// What assistive tools are told of a widget that paints itself. They are answered when they ask: nothing is
/// made for them, and nothing sent, while a fade runs.
struct Spoken {
  QAccessible::Role role = QAccessible::Client;
  std::function<QString()> name = {};         ///< without it the widget's own
  std::function<QString()> description = {};  ///< without it the widget's own
};

/// The things that a widget paints, each of which assistive tools walk as if it were a widget.
struct SpokenParts {
  QAccessible::Role role = QAccessible::ListItem;
  std::function<int()> count;
  std::function<QString(int part)> name;  ///< parts count from 0
  std::function<QRect(int part)> place;   ///< in the widget
  std::function<int()> current;           ///< the one that has the focus in the widget; -1 for none
};

/// Whether an assistive tool is there; what only such a tool needs isn't copied without one.
[[nodiscard]] bool someoneListens();

/// Once, while the widget is made.
void speak(QWidget& widget, Spoken spoken, SpokenParts parts = {});

/// Another part has become current.
void speakCurrent(QWidget& widget);

/// What the colour of a widget's state says, behind its tip; "quiet" and no state say nothing.
void speakState(QWidget& widget, const QString& state);

/// A choice tells its own text as its name; what is chosen here stands in a label that only assistive tools
/// see. Called when the choice stands in its window.
void speakLabel(QComboBox& choice, const QString& label);

}  // namespace velgrove
