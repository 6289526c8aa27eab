#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "controls/form.h"
#include "controls/widgets.h"
#include "core/windows.h"

namespace velgrove {

/// The frame: its commands, and the way a show comes into memory.
class frmMain {
 public:
  struct Wiring {
    /// A setting's text, or the default given.
    std::function<std::string(const std::string& section, const std::string& key,
                              const std::string& fallback)>
        setting;
  };

  frmMain(ShowState& show, Machine& machine, Windows& windows, Wiring wiring)
      : m_show(show), m_machine(machine), m_windows(windows), m_wiring(std::move(wiring)) {}
  frmMain(const frmMain&) = delete;
  frmMain& operator=(const frmMain&) = delete;

  Form Window{.Caption = "Velgrove"};

  void MDIForm_Load();

  /// The one handler of all tools and menu items, by the tool's id.
  void SSActiveToolBars1_ToolClick(std::string_view id);

  /// Reads ProjectFileName and opens its windows; without a name the open views close. False, with a box that
  /// says why and the open show untouched, for a file that can't be read as a show; a damaged one is opened
  /// as far as it goes, and a box tells what was missing.
  bool LoadProject(std::int16_t index);
  void LoadDoc();
  void CloseViews();

 private:
  struct Command {
    std::string_view id;
    void (frmMain::*action)();
  };
  static const std::array<Command, 8> Commands;

  QueueList& shownXY();
  [[nodiscard]] std::shared_ptr<clsProject> readProject() const;
  void go();
  void stopFade();
  void nextStageCue();
  void previousStageCue();
  void resetCue();
  void noInput();
  void inputToFixtures();
  void inputToSubmasters();
  void setInput(bool dimmers, bool submasters);
  [[nodiscard]] std::int16_t number(const std::string& key) const;

  ShowState& m_show;
  Machine& m_machine;
  Windows& m_windows;
  Wiring m_wiring;
};

}  // namespace velgrove
