#pragma once

#include <functional>

#include "core/lighting_desk.h"
#include "desktop/fixture_dialog.h"
#include "desktop/frame_window.h"
#include "desktop/grand_master.h"
#include "desktop/help_window.h"
#include "desktop/loop_dialog.h"
#include "desktop/open_dialog.h"
#include "desktop/platform_dialogs.h"
#include "desktop/preferences_dialog.h"
#include "desktop/print_sheets_dialog.h"
#include "desktop/small_dialogs.h"
#include "desktop/sub_fader.h"
#include "desktop/sub_record.h"
#include "desktop/timings_dialog.h"

namespace velgrove {

/// All windows of a desk, tied to it as long as they live. Made before the desk starts.
class DeskWindows {
 public:
  DeskWindows(LightingDesk& desk, Face& face);
  DeskWindows(const DeskWindows&) = delete;
  DeskWindows& operator=(const DeskWindows&) = delete;

  /// Shows a box over the window that the operator has before him, and calls back once with the answer.
  void showBox(const Box& box, bool waitedFor, std::function<void(BoxAnswer)> answered);

 private:
  SplashWindow m_splash;
  FrameWindow m_frame;
  StatusWindow m_status;
  OpenDialog m_open;
  SaveQuestion m_question;
  AboutWindow m_about;
  HelpWindow m_help;
  LoopDialog m_loop;
  PasteQuestion m_pasteQuestion;
  FixtureDialog m_fixture;
  FixtureDialog m_movingFixture;
  GrandMasterDialog m_grandMaster;
  PreferencesDialog m_preferences;
  TimingsDialog m_timings;
  PrintSheetsDialog m_printSheets;
  SubFader m_subFader;
  SubRecord m_subRecord;
  PlatformDialogs m_dialogs;
};

}  // namespace velgrove
