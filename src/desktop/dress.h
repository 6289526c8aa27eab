#pragma once

#include <QLabel>
#include <QWidget>
#include <initializer_list>

namespace velgrove {

/// A widget with the name of its control, and what assistive tools say. A label says its own text, and this
/// behind it.
struct Dress {
  QWidget* widget;
  const char* name;
  const char* spoken;
};

inline void dressAll(std::initializer_list<Dress> all) {
  for (const auto& [widget, name, spoken] : all) {
    widget->setObjectName(name);
    if (qobject_cast<QLabel*>(widget) != nullptr)
      widget->setAccessibleDescription(spoken);
    else
      widget->setAccessibleName(spoken);
  }
}

}  // namespace velgrove
