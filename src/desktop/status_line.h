#pragma once

#include <QLabel>
#include <QStatusBar>

#include "core/lighting_desk.h"
#include "desktop/binding.h"
#include "desktop/eliding_label.h"

namespace velgrove {

/// The foot of the frame: "online" and the message at the left; input mode, display mode and the interface at
/// the right.
class StatusLine : public QStatusBar {
  Q_OBJECT

 public:
  StatusLine(LightingDesk& desk, Bindings& bindings);

 private:
  enum class Lamp { None, Starting, Up };
  struct Interface {
    Lamp lamp = Lamp::None;
    std::string text;
    friend bool operator==(const Interface&, const Interface&) = default;
  };
  [[nodiscard]] static Interface interfaceOf(const LightingDesk& desk);
  void showInput(const QString& tool, const QString& words);
  void showMode(const QString& words, const char* background);
  void showInterface(const Interface& now);

  QLabel m_online;
  ElidingLabel m_message;
  QLabel m_inputIcon, m_input, m_mode, m_lamp, m_interfaceIcon, m_interface;
};

}  // namespace velgrove
