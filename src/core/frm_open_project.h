#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "controls/file_lists.h"
#include "controls/form.h"
#include "controls/list_view.h"
#include "controls/machine.h"
#include "controls/tab_strip.h"
#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

enum class OpenTab { Existing = 1, New = 2 };

/// The dialog that opens a show or begins a new one.
class frmOpenProject {
 public:
  struct Wiring {
    std::function<void()> LoadNewProject;
    /// Whether the show at ProjectFileName is open now.
    std::function<bool(std::int16_t index)> LoadProject;
    std::function<void()> DisableTools;
    std::filesystem::path dataFolder;  ///< where the dialog begins; empty: nowhere, and no disk is read
    DriveRoots drives;
  };

  frmOpenProject(ShowState& show, Machine& machine, Wiring wiring);
  frmOpenProject(const frmOpenProject&) = delete;
  frmOpenProject& operator=(const frmOpenProject&) = delete;

  Form Window{.Caption = "Open Project"};
  TabStrip Tabs{{"Existing", "New"}};
  Timer Timer1;
  Button cmdOpenButton{.Caption = "Open"};
  Button CancelButton{.Caption = "Cancel"};

  Frame OpenExistingFrame;
  DriveListBox drvList;
  DirListBox dirList;
  FileListBox filList;
  Label FilesOfType{.Caption = "Files of Type"};
  TextBox txtSearchSpec;

  Frame OpenNewFrame;
  Label ShowNameLabel{.Caption = "Show Name:"};
  TextBox ProjectName;
  Label ShowDescriptionLabel{.Caption = "Show Description:"};
  TextBox ProjectDescription;
  Label LocationLabel{.Caption = "Location:"};
  TextBox Location;
  Button cmdNewBrowse{.Caption = "..."};

  Frame OpenRecentFrame;  ///< no tab shows it, and its list stays empty
  ListView RecentListView;

  void Form_Load();
  /// Shows the dialog and waits until it is closed, and the show that it opens is open.
  void ShowModal();
  /// Shows the dialog with one of its tabs, and doesn't wait.
  void Show(OpenTab tab);
  void Unload();
  /// Goes to a show's drive and folder and chooses it there, so that Open opens it. A box says why one can't
  /// be read; the dialog then stays where it is.
  void offer(const std::filesystem::path& file);

  void Tabs_Click();
  void drvList_Change();
  void dirList_Change();
  void dirList_LostFocus();
  void filList_DblClick();
  void txtSearchSpec_Change();
  void txtSearchSpec_GotFocus();
  void cmdNewBrowse_Click();
  void cmdOpenButton_Click();
  void CancelButton_Click();
  void Timer1_Timer();
  /// The close box.
  void Form_QueryUnload() { CancelButton_Click(); }

 private:
  class Working;
  void bindEvents();
  void hideFrames();
  void showFrame();
  void load();
  void beginIn(const std::filesystem::path& folder);
  [[nodiscard]] bool goTo(const std::filesystem::path& folder);
  void openNew();
  void openSelected();
  void openFile(const std::string& name);
  /// Reads the disk; a box says what failed and names what can't be read. False then.
  bool readDisk(const std::function<void()>& reading, const char* failed);
  bool readDisk(const std::function<void()>& reading);
  void tell(const char* failed, const RunTimeError& error) const;

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
  int m_working = 0;  ///< how many handlers are closing the dialog at this moment
};

}  // namespace velgrove
