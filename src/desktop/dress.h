#pragma once

#include <QWidget>
#include <initializer_list>

namespace velgrove {

/// A widget with the name of its control, and what assistive tools say.
struct Dress {
  QWidget* widget;
  const char* name;
  const char* spoken;
};

inline void dressAll(std::initializer_list<Dress> all) {
  for (const auto& [widget, name, spoken] : all) {
    widget->setObjectName(name);
    widget->setAccessibleName(spoken);
  }
}

}  // namespace velgrove
