#pragma once

#include <QLabel>
#include <QStatusBar>

#include "core/lighting_desk.h"
#include "desktop/binding.h"
#include "desktop/eliding_label.h"
#include "desktop/under_pointer.h"

namespace velgrove {

/// The foot of the frame: "online", where the mouse is on the plot and the message at the left; input mode,
/// display mode and the interface at the right.
class StatusLine : public QStatusBar {
  Q_OBJECT

 public:
  StatusLine(LightingDesk& desk, Bindings& bindings);

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  enum class Lamp { None, Starting, Up };
  struct Interface {
    Lamp lamp = Lamp::None;
    std::string text;
    friend bool operator==(const Interface&, const Interface&) = default;
  };
  [[nodiscard]] static Interface interfaceOf(const LightingDesk& desk);
  static const char* wordsOf(Lamp lamp);
  void showInput(const QString& tool, const QString& words);
  void showMode(const QString& words, const char* background);
  void showInterface(const Interface& now);

  void sizePointer();

  QLabel m_online, m_pointerFixture;
  UnderPointer m_underPointer;
  ElidingLabel m_pointerPlace, m_message;
  QLabel m_inputIcon, m_input, m_mode, m_lamp, m_interfaceIcon, m_interface;
};

}  // namespace velgrove
