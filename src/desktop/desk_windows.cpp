#include "desktop/desk_windows.h"

#include <QApplication>

#include "desktop/message_boxes.h"

namespace velgrove {

DeskWindows::DeskWindows(LightingDesk& desk, Face& face)
    : m_splash(nullptr, face, desk.Splash),
      m_frame(desk, face),
      m_status(nullptr, face, desk.windows.Comm),
      m_open(&m_frame, face, desk.OpenProject),
      m_question(&m_frame, face, desk.WanttoSave),
      m_about(&m_frame, face, desk.About),
      m_help(m_frame, face, desk.Help),
      m_loop(m_frame, face, desk.windows.Loop),
      m_pasteQuestion(&m_frame, face, desk.windows.ConfirmPaste),
      m_fixture(m_frame, face, desk, desk.windows.Fixture),
      m_movingFixture(m_frame, face, desk, desk.windows.MovingFixture),
      m_grandMaster(m_frame, face, desk.windows.GrandMaster),
      m_preferences(&m_frame, face, desk.windows.Preferences),
      m_timings(&m_frame, face, desk.windows.Timings),
      m_printSheets(&m_frame, face, desk.windows.PrintSheets),
      m_subFader(m_frame, face, desk.windows.SubPane),
      m_subRecord(m_frame, face, desk.windows.SubPane, desk.show),
      m_dialogs(face, &m_frame) {
  desk.machine.Dialogs = m_dialogs.dialogs();
  desk.windows.PrintSheets.Press = m_dialogs.sheetPress();
}

void DeskWindows::showBox(const Box& box, bool waitedFor, std::function<void(BoxAnswer)> answered) {
  // A box that nobody waits for outlives the dialog under which it came up.
  QWidget* above = waitedFor ? QApplication::activeModalWidget() : nullptr;
  if (above == nullptr && m_frame.isVisible()) above = &m_frame;
  showMessageBox(above, box, waitedFor, std::move(answered));
}

}  // namespace velgrove
