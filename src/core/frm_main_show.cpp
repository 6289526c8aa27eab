// The life of a show: how it comes into memory and how it leaves.

#include "controls/file_names.h"
#include "controls/files.h"
#include "core/frm_main.h"
#include "model/show_file.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

constexpr Milliseconds DrawingCloses = 500ms;  // the plot lets go of its drawing
constexpr const char* Title = "Velgrove";

std::shared_ptr<clsQueueData> cueList(const char* name, const char* description) {
  auto list = std::make_shared<clsQueueData>();
  list->NumberOfQueueEntries = 0;
  list->QueueListDesc = description;
  list->QueueListName = name;
  return list;
}

/// A name as the file dialog's filter leaves it.
std::string withExtension(const std::string& name) {
  return matchesPattern(name, "*.kel") ? name : name + ".kel";
}

}  // namespace

// ---- New and open

void frmMain::newShow() {
  chooseShow(OpenTab::New);
}
void frmMain::openShow() {
  chooseShow(OpenTab::Existing);
}

void frmMain::chooseShow(OpenTab tab) {
  bool goOn = true;
  m_machine.errors.steps([&] {
    if (!m_show.ProjectDirty) return;
    m_wiring.askToSave();
    goOn = m_show.SaveDialogResult != SaveAnswer::Cancel;
  });
  if (!goOn) return;
  m_machine.errors.steps([&] { m_windows.unloadPlayers(); }, [&] { m_wiring.showOpenProject(tab); });
}

void frmMain::LoadNewProject() {
  auto& errors = m_machine.errors;
  errors.run([&] { CloseViews(); });
  if (m_show.ProjectName.empty()) {
    m_show.ProjectFileName = m_openFile;  // the show that is still open goes on into its own file
    return;
  }
  errors.steps(
      [&] {
        m_show.CurrentViewIndex = 0;
        Window.Caption = std::string(Title) + " - " + m_show.ProjectName;
      },
      [&] { replaceProject(newProject()); },
      [&] {
        m_show.CurrentProjectIndex = 1;
        m_show.LastProjectIndex = 1;
        m_show.CurrentViewIndex = 1;
      },
      [&] { m_windows.loadPlayers(); }, [&] { EnableTools(); },
      [&] { LoadDoc(std::to_string(m_show.CurrentProjectIndex)); }, [&] { m_wiring.showOpened(); });
}

/// A show with one empty view. List 1 is AB, list 2 is XY.
std::shared_ptr<clsProject> frmMain::newProject() const {
  auto view = std::make_shared<clsView>();
  view->ViewName = m_show.ProjectName;
  auto project = std::make_shared<clsProject>();
  project->ProjectDesc = " ";
  project->ProjectName = m_show.ProjectName;
  project->NumberOfViews = 1;
  project->NumberOfQueues = 2;
  project->colQueueDataAdd(cueList("AB", "AB Fader"));
  project->colQueueDataAdd(cueList("XY", "XY Fader"));
  project->colViewsAdd(std::move(view));
  project->colDMXInAdd(std::make_shared<clsDMXIn>());
  return project;
}

void frmMain::replaceProject(std::shared_ptr<clsProject> project) {
  if (m_show.Projects.count() > 0) {
    m_wiring.showLeft();
    m_show.Projects.Remove(m_show.Projects.count());
  }
  m_show.Projects.add(std::move(project));
  m_show.DamagedOriginal.reset();
  m_openFile = m_show.ProjectFileName;
}

bool frmMain::LoadProject(std::int16_t index) {
  if (m_show.ProjectFileName.empty()) {
    m_machine.errors.run([&] { CloseViews(); });
    return false;
  }
  auto read = readProject();
  if (read.project == nullptr) {
    m_show.ProjectFileName = m_openFile;  // or the next save would write the open show over that file
    return false;
  }
  openProject(std::move(read), index);
  m_machine.errors.run([&] { m_wiring.showOpened(); });
  return true;
}

bool frmMain::LoadRecovered(const RecoveryCopy& copy, std::optional<std::string> damaged) {
  auto read = readProject("The recovery copy of " + copy.file, copy.show);
  if (read.project == nullptr) return false;
  if (!read.damaged) read.damaged = std::move(damaged);
  m_show.ProjectName = copy.name;
  m_show.ProjectFileName = copy.file;
  m_show.ProjectDirty = true;
  openProject(std::move(read), 1);
  return true;
}

void frmMain::openProject(ReadProject read, std::int16_t index) {
  auto& errors = m_machine.errors;
  const auto project = read.project;
  errors.steps([&] { CloseViews(); },
               [&] {
                 replaceProject(project);
                 m_show.DamagedOriginal = std::move(read.damaged);
               },
               [&] { m_show.CurrentProjectIndex = index; },
               [&] { Window.Caption = std::string(Title) + " - " + project->ProjectName.str(); },
               [&] { EnableTools(); }, [&] { m_show.CurrentViewIndex = 0; });
  for (int view = 1; view <= project->colViews().count(); ++view) {
    ++m_show.CurrentViewIndex;
    errors.run([&] { LoadDoc(project->colViews().item(view)->ViewName); });
  }
  errors.run([&] { m_windows.loadPlayers(); });
}

frmMain::ReadProject frmMain::readProject() const {
  const std::string file = m_show.ProjectFileName;
  try {
    std::string bytes;
    m_machine.aside([&] { bytes = readFile(file); });
    return readProject(file, std::move(bytes));
  } catch (const RunTimeError& error) {
    m_machine.boxes.show({.text = error.what(), .icon = BoxIcon::Critical});
    return {};
  }
}

/// Reads the show before anything is closed. A box tells why it can't be read, or what of it is missing.
frmMain::ReadProject frmMain::readProject(const std::string& title, std::string bytes) const {
  const ShowRead read = readShow(bytes, DMXInputRecords::Leave);
  if (read.faults.empty()) return {.project = read.project, .damaged = {}};
  std::string text = title + (read.project == nullptr ? " is no show.\n" : " is damaged.\n");
  for (const FileFault& fault : read.faults) text += "\n" + describe(fault);
  m_machine.boxes.show({.text = text, .icon = BoxIcon::Warning});
  return {.project = read.project, .damaged = std::move(bytes)};
}

void frmMain::LoadDoc(const std::string&) {
  ++m_show.OpenDocumentCount;
  m_windows.openDocument();
}

/// With one view this closes its window. Of a show of several views the earlier windows stay until exit.
void frmMain::CloseViews() {
  for (auto times = m_show.OpenDocumentCount; times > 0; --times) {
    m_windows.closeDocument();
    m_machine.Sleep(DrawingCloses);
    --m_show.OpenDocumentCount;
  }
}

// ---- Save

void frmMain::save() {
  m_machine.errors.run([&] { m_wiring.SaveAll(); });
}

void frmMain::saveShow() {
  m_show.LastProjectIndex = m_show.CurrentProjectIndex;
  save();
}

void frmMain::SaveAs() {
  if (m_windows.ActiveDocument == nullptr) return;
  m_machine.errors.run([&] {
    const auto name = m_machine.Dialogs.saveFile("Save As", "(*.kel)|*.kel", m_show.ProjectName);
    if (!name || name->empty()) return;
    m_show.ProjectFileName = withExtension(*name);
    m_openFile = m_show.ProjectFileName;
    m_wiring.SaveAll();
  });
}

// ---- The way out

void frmMain::leave() {
  bool cancel = false;
  MDIForm_QueryUnload(cancel, 0);
}

void frmMain::MDIForm_QueryUnload(bool& cancel, int) {
  if (m_show.ExitConfirmed) return;
  m_machine.errors.steps(
      [&] {
        m_show.SaveDialogResult = SaveAnswer::DontSave;
        if (m_show.ProjectDirty) m_wiring.askToSave();
      },
      [&] {
        if (m_show.SaveDialogResult == SaveAnswer::Save && !m_wiring.SaveAll())
          m_show.SaveDialogResult = SaveAnswer::Cancel;
      },
      [&] {
        const auto answer = m_show.SaveDialogResult;
        cancel = answer != SaveAnswer::DontSave && answer != SaveAnswer::Save;
        if (cancel) return;
        m_show.ExitConfirmed = true;
        m_wiring.showLeft();
        m_wiring.ShutdownApp();
      });
}

void frmMain::MDIForm_Unload(bool& cancel) {
  if (!m_show.ExitConfirmed) return;
  cancel = true;
  m_machine.errors.steps(
      [&] {
        if (Window.WindowState != WindowState::Minimised) savePosition();
        m_windows.ShowView.noteWindow();
        m_wiring.saveBooth();
      },
      [&] {
        if (m_show.OpenDocumentCount > 0) m_windows.closeDocuments();
      },
      [&] { m_machine.boxes.show({.text = "exiting frmMain unload"}); });
}

}  // namespace velgrove
