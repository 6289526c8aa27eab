#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/form.h"
#include "controls/widgets.h"
#include "core/frm_open_project.h"
#include "core/recovery_folder.h"
#include "core/tool_bars.h"
#include "core/windows.h"

namespace velgrove {

struct StatusBar {
  std::string Text;
  bool Visible = true;
  unsigned Refreshes = 0;  ///< how often it was asked to paint; the face looks at the count

  void Refresh() { ++Refreshes; }
};

/// A request to arrange the child windows.
struct Arrangement {
  enum Code { Cascade = 0, TileHorizontal = 1, TileVertical = 2, ArrangeIcons = 3 };

  Code How = Cascade;
  unsigned Count = 0;  ///< how many were asked for; the face looks at it
};

/// The frame: its commands, and the life of a show.
class frmMain {
 public:
  struct Wiring {
    /// A setting's text, or the default given.
    std::function<std::string(const std::string& section, const std::string& key,
                              const std::string& fallback)>
        setting;
    std::function<void(const std::string& section, const std::string& key, const std::string& value)>
        saveSetting;
    std::function<void()> boothChanged;  ///< its settings, which are kept soon
    std::function<void()> saveBooth;     ///< keeps them at once
    /// Whether the show now stands in its file.
    std::function<bool()> SaveAll;
    std::function<void()> ShutdownApp;
    std::function<void()> showOpened;  ///< nothing of it has been changed yet
    std::function<void()> showLeft;    ///< by the operator's choice, with what he hasn't saved
    /// All open windows, in the order in which they opened.
    std::function<std::vector<Form*>()> forms;
    /// Shows the splash over the frame, and comes back when it has been painted.
    std::function<void()> showSplash;
    std::function<void()> showAbout;
    /// Asks whether to save, and leaves the answer in SaveDialogResult.
    std::function<void()> askToSave;
    /// Shows the open dialog with one of its tabs, and doesn't wait for it.
    std::function<void(OpenTab tab)> showOpenProject;
    /// Opens the help at its contents; none while the desk has no help.
    std::function<void()> showHelp;
  };

  frmMain(ShowState& show, Machine& machine, Windows& windows, Wiring wiring);
  frmMain(const frmMain&) = delete;
  frmMain& operator=(const frmMain&) = delete;

  Form Window{.Caption = "Velgrove"};
  ToolBars SSActiveToolBars1;
  StatusBar sbStatusBar;
  std::string StatusMessage;    ///< to the operator, beside the status bar's own text
  bool SubPaneVisible = false;  ///< the lower pane of the splitter, with the submaster panel
  Arrangement Arrange;
  Timer DoEventsTimer;  ///< off, and without work

  void MDIForm_Load();
  void MDIForm_Resize() {}
  /// The way out: asks about unsaved changes first. `cancel` says whether the desk goes on.
  void MDIForm_QueryUnload(bool& cancel, int mode);
  /// Runs once at the end, and only when the operator has chosen to leave; the process's end closes the frame
  /// itself, so that `cancel` becomes true.
  void MDIForm_Unload(bool& cancel);

  /// The one handler of all tools and menu items, by the tool's id.
  void SSActiveToolBars1_ToolClick(std::string_view id);
  /// The arrow beside a tool was pressed, by the tool's name; the place is in pixels of the frame.
  void SSActiveToolBars1_ToolDropDown(std::string_view name, int x, int y);
  /// The Go key, which bounces and is hit in haste: within 100 ms of a press that counted another doesn't
  /// count, and the status line says so. Tool, button, link and trigger obey every time. `pressedAt` is in
  /// milliseconds since any moment, and may run over.
  void goKey(std::uint32_t pressedAt);
  void DisableTools();
  void EnableTools();

  /// The document that was active last; Fault::ObjectMissing when none is open.
  [[nodiscard]] frmDocument& ActiveForm() const;

  /// Opens a new show by the name in ProjectName; without a name the open views close, and no more.
  void LoadNewProject();
  /// Reads ProjectFileName and opens its windows; without a name the open views close. False, with a box that
  /// says why and the open show untouched, for a file that can't be read as a show; a damaged one is opened
  /// as far as it goes, and a box tells what was missing.
  bool LoadProject(std::int16_t index);
  /// Opens a show from a recovery copy as if it came from its file, and changed since. `damaged`: what stands
  /// in that file, when something of it is missing. False, with a box, for a copy that holds no show.
  bool LoadRecovered(const RecoveryCopy& copy, std::optional<std::string> damaged);
  void LoadDoc(const std::string& name);
  void CloseViews();
  void SaveAs();
  [[nodiscard]] const std::string& openFile() const { return m_openFile; }  ///< of the open show

 private:
  struct Command {
    std::string_view id;
    void (*run)(frmMain&);
  };
  [[nodiscard]] static std::span<const Command> commands();

  // Commands
  void openShow();
  void newShow();
  void save();
  void saveShow();
  void print() const;
  void leave();
  void enableCAD();
  void lockFixtures();
  void onDocument(void (frmDocument::*operation)());
  void selectTool();
  void lightTool(std::int32_t type);
  void pickShape(std::int32_t type);
  void toggleLightTool();
  void rotateObject(std::int16_t degrees, std::int16_t right);
  void showGrandMaster();
  void showPreferences();
  void checkShow();
  void printSheets();
  void showShowView();
  void dimScreen();
  void showDimScreen();
  void showBars(const char* what);
  void showPlayer(QueueList& (Windows::*player)() const);
  void showEffects();
  void viewStatus();
  void helpContents();
  void helpAbout();
  void showKeys();
  void arrange(Arrangement::Code code);
  void nothing() {}
  void unfinished(const char* handler) const;
  void go();
  void stopFade();
  void nextStageCue();
  void previousStageCue();
  void resetCue();
  void blackout();
  void noInput();
  void inputToFixtures();
  void inputToSubmasters();

  void chooseShow(OpenTab tab);
  void focusDocument(std::string_view id);
  void readPosition();
  void readDefaults();
  void savePosition();
  void setInput(std::string_view tool, bool dimmers, bool submasters);
  QueueList& shownXY();
  [[nodiscard]] std::shared_ptr<clsProject> newProject() const;
  void replaceProject(std::shared_ptr<clsProject> project);
  struct ReadProject {
    std::shared_ptr<clsProject> project;  ///< null when the file was refused
    std::optional<std::string> damaged;   ///< the bytes of a file of which something was missing
  };
  [[nodiscard]] ReadProject readProject() const;
  [[nodiscard]] ReadProject readProject(const std::string& title, std::string bytes) const;
  void openProject(ReadProject read, std::int16_t index);
  [[nodiscard]] std::int16_t number(const std::string& key) const;

  ShowState& m_show;
  Machine& m_machine;
  Windows& m_windows;
  Wiring m_wiring;
  std::string m_openFile;                  ///< of the open show
  std::optional<std::uint32_t> m_goKeyAt;  ///< when the Go key last counted
};

}  // namespace velgrove
