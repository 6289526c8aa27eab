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
  void showInput(const QString& tool, const QString& words);
  void showMode(const QString& words, const char* state);
  void showInterface(const InterfaceState& now);
  void drawIcons();
  void sizePointer();

  QLabel m_online, m_pointerFixture;
  UnderPointer m_underPointer;
  ElidingLabel m_pointerPlace, m_message;
  QString m_inputTool = "ID_noInput";
  InterfaceState::Lamp m_lampShows = InterfaceState::Lamp::None;
  QLabel m_inputIcon, m_input, m_mode, m_lamp, m_interfaceIcon, m_interface;
};

}  // namespace velgrove
