#include "core/frm_open_project.h"

#include <system_error>

#include "controls/file_names.h"
#include "controls/files.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;

constexpr int HousekeepingInterval = 800;  // ms
constexpr const char* AllShows = "*.kel";
constexpr const char* EveryFile = "*";
constexpr const char* FolderUnreadable = "This folder can't be read.";

}  // namespace

/// Counts a handler that closes the dialog, so that whoever waits for the dialog waits for its show too.
class frmOpenProject::Working {
 public:
  explicit Working(frmOpenProject& dialog) : m_dialog(dialog) { ++m_dialog.m_working; }
  ~Working() { --m_dialog.m_working; }
  Working(const Working&) = delete;
  Working& operator=(const Working&) = delete;

 private:
  frmOpenProject& m_dialog;
};

frmOpenProject::frmOpenProject(ShowState& show, Machine& machine, Wiring wiring)
    : Timer1(machine.timers, TimerRank::Dialog, HousekeepingInterval, [this] { Timer1_Timer(); }),
      drvList(wiring.drives, [&machine](const auto& work) { machine.aside(work); }),
      dirList([&machine](const auto& work) { machine.aside(work); }),
      filList([&machine](const auto& work) { machine.aside(work); }),
      m_show(show),
      m_machine(machine),
      m_wiring(std::move(wiring)) {
  RecentListView.Columns = {{"File", 150}, {"Folder", 250}};
  bindEvents();
}

void frmOpenProject::bindEvents() {
  Tabs.Click = [this] { Tabs_Click(); };
  drvList.Change = [this] { drvList_Change(); };
  dirList.Change = [this] { dirList_Change(); };
  dirList.LostFocus = [this] { dirList_LostFocus(); };
  dirList.Refused = [this](const RunTimeError& error) { tell(FolderUnreadable, error); };
  filList.DblClick = [this] { filList_DblClick(); };
  txtSearchSpec.Change = [this] { txtSearchSpec_Change(); };
  txtSearchSpec.GotFocus = [this] { txtSearchSpec_GotFocus(); };
  cmdNewBrowse.Click = [this] { cmdNewBrowse_Click(); };
  cmdOpenButton.Click = [this] { cmdOpenButton_Click(); };
  CancelButton.Click = [this] { CancelButton_Click(); };
}

// ---- Coming and going

void frmOpenProject::Form_Load() {
  Window.Loaded = true;
  m_machine.errors.steps(
      [&] {
        ProjectName.setText("");
        m_show.ProjectName = "";
      },
      [&] {
        ProjectDescription.setText("");
        Location.setText((m_wiring.dataFolder / ProjectName.text()).string());
      },
      [&] { hideFrames(); }, [&] { txtSearchSpec.setText(AllShows); }, [&] { beginIn(m_wiring.dataFolder); },
      [&] { filList.chooseNone(); },
      [&] {
        Tabs.select(static_cast<int>(OpenTab::Existing));
        OpenExistingFrame.Visible = true;
      });
}

/// The desk's own folder isn't there before anything was saved.
void frmOpenProject::beginIn(const fs::path& folder) {
  if (folder.empty()) return;
  m_machine.aside([&] {
    std::error_code refused;  // then the reading says why
    fs::create_directories(folder, refused);
  });
  (void)goTo(folder);
}

bool frmOpenProject::goTo(const fs::path& folder) {
  drvList.Refresh(folder);
  return readDisk([&] { dirList.setPath(folder); });
}

/// The show is read for what can be wrong with it before the dialog leaves the folder where it began.
void frmOpenProject::offer(const fs::path& file) {
  load();
  const std::string name = file.filename();
  m_machine.errors.run([&] {
    const auto read = [&] { m_machine.aside([&] { (void)readFile(file); }); };
    if (!readDisk(read, "This show can't be opened.")) return;
    if (!goTo(file.parent_path())) return drvList.Refresh(dirList.Path());
    if (!readDisk([this] { filList.Refresh(); })) return;
    if (!matchesPattern(name, txtSearchSpec.text())) txtSearchSpec.setText(EveryFile);
    filList.select(name);
  });
}

void frmOpenProject::load() {
  if (!Window.Loaded) Form_Load();
}

void frmOpenProject::ShowModal() {
  load();
  Window.Modal = true;
  Window.Show();
  m_machine.waitUntil([this] { return !Window.Visible && m_working == 0; });
}

void frmOpenProject::Show(OpenTab tab) {
  load();
  Window.Modal = false;
  Window.Show();
  Tabs.select(static_cast<int>(tab));
  Tabs_Click();
  Timer1.setEnabled(true);
}

void frmOpenProject::Unload() {
  Timer1.setEnabled(false);
  Window.Unload();
}

// ---- The frames

void frmOpenProject::hideFrames() {
  for (Frame* frame : {&OpenExistingFrame, &OpenNewFrame, &OpenRecentFrame}) frame->Visible = false;
}

void frmOpenProject::showFrame() {
  hideFrames();
  const bool isNew = Tabs.selected() == static_cast<int>(OpenTab::New);
  (isNew ? OpenNewFrame : OpenExistingFrame).Visible = true;
}

void frmOpenProject::Tabs_Click() {
  showFrame();
  if (OpenNewFrame.Visible) {
    ProjectName.SetFocus();
  } else if (!filList.Path().empty()) {
    (void)readDisk([this] { filList.Refresh(); });
    filList.setPattern(txtSearchSpec.text());
  }
}

/// Whatever happened while the dialog came up, it then shows the frame of its tab.
void frmOpenProject::Timer1_Timer() {
  showFrame();
  Timer1.setEnabled(false);
}

// ---- An existing show

bool frmOpenProject::readDisk(const std::function<void()>& reading, const char* failed) {
  try {
    reading();
    return true;
  } catch (const RunTimeError& error) {
    if (error.fault() != Fault::File) throw;
    tell(failed, error);
    return false;
  }
}

bool frmOpenProject::readDisk(const std::function<void()>& reading) {
  return readDisk(reading, FolderUnreadable);
}

void frmOpenProject::tell(const char* failed, const RunTimeError& error) const {
  m_machine.boxes.show(
      {.text = std::string(failed) + "\n\n" + std::string(error.what()), .icon = BoxIcon::Warning});
}

void frmOpenProject::drvList_Change() {
  m_machine.errors.run([this] {
    if (!readDisk([this] { dirList.setPath(drvList.Drive()); })) drvList.Refresh(dirList.Path());
  });
}

void frmOpenProject::dirList_Change() {
  m_machine.errors.run([this] { (void)readDisk([this] { filList.setPath(dirList.Path()); }); });
}

void frmOpenProject::dirList_LostFocus() {
  if (dirList.highlighted() != dirList.Path()) dirList.openHighlighted();
}

void frmOpenProject::txtSearchSpec_Change() {
  filList.setPattern(txtSearchSpec.text());
}

void frmOpenProject::txtSearchSpec_GotFocus() {
  txtSearchSpec.SelectAll();
}

void frmOpenProject::filList_DblClick() {
  if (!filList.FileName().empty()) openFile(filList.FileName());
}

void frmOpenProject::openSelected() {
  if (filList.FileName().empty()) return;
  const auto before = m_show.CurrentProjectIndex;
  m_show.CurrentProjectIndex = 1;
  openFile(filList.FileName());
  if (Window.Visible) m_show.CurrentProjectIndex = before;
}

/// A file that is no show, or has gone meanwhile, leaves all as it was: the dialog comes back.
void frmOpenProject::openFile(const std::string& name) {
  const Working working(*this);
  m_machine.errors.run([&] {
    m_show.ProjectFileName = (dirList.Path() / name).string();
    Window.Visible = false;
    if (m_wiring.LoadProject(1)) return;
    Window.Show();
    (void)readDisk([this] { filList.Refresh(); });
  });
}

// ---- A new show

void frmOpenProject::cmdNewBrowse_Click() {
  m_machine.errors.run([&] {
    const auto folder = m_machine.Dialogs.BrowseForDir(Location.text(), "Choose a directory from the list.");
    if (!folder.empty()) Location.setText(folder);
  });
}

void frmOpenProject::openNew() {
  const Working working(*this);
  m_machine.errors.steps(
      [&] {
        m_show.ProjectName = ProjectName.text();
        m_show.ProjectDescription = ProjectDescription.text();
        m_show.ProjectFileName = Location.text() + m_show.ProjectName + ".kel";
      },
      [&] { Window.Visible = false; }, [&] { m_wiring.LoadNewProject(); });
}

void frmOpenProject::cmdOpenButton_Click() {
  if (Tabs.selected() == static_cast<int>(OpenTab::New))
    openNew();
  else
    openSelected();
}

void frmOpenProject::CancelButton_Click() {
  const Working working(*this);
  m_machine.errors.steps([&] { m_wiring.DisableTools(); }, [&] { Unload(); });
}

}  // namespace velgrove
