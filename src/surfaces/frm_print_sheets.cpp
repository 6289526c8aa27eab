#include "surfaces/frm_print_sheets.h"

#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "controls/file_names.h"
#include "controls/files.h"
#include "model/show_file.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;

constexpr const char* Extension = ".pdf";

CueLoop loopOf(const QueueList& player) {
  return {
      .first = player.State.LoopStartCue, .last = player.State.LoopLastCue, .passes = player.State.LoopCount};
}

Printout sheetsIn(const std::string& show, const std::vector<ShowSheet>& wanted, const CueLoops& loops) {
  const ShowRead read = readShow(show, DMXInputRecords::Leave);
  if (read.project == nullptr) throw RunTimeError(Fault::ObjectMissing, "the show has no view");
  Printout paper{.show = oneLine(read.project->ProjectName.str()), .sheets = {}};
  for (const ShowSheet which : wanted)
    if (auto sheet = sheetOf(*read.project, which, loops)) paper.sheets.push_back(std::move(*sheet));
  return paper;
}

std::string besideShow(const std::string& show) {
  const fs::path file = show;
  return file.parent_path() / (file.stem().string() + " cue sheets" + Extension);
}

std::string withExtension(const std::string& name) {
  return matchesPattern(name, "*.pdf") ? name : name + Extension;
}

}  // namespace

frmPrintSheets::frmPrintSheets(ShowState& show, Machine& machine, Wiring wiring)
    : m_show(show), m_machine(machine), m_wiring(std::move(wiring)) {}

void frmPrintSheets::Show() {
  Window.Loaded = true;
  Window.Show();
}

void frmPrintSheets::Unload() {
  Window.Unload();
}

// ---- What is ticked

std::vector<ShowSheet> frmPrintSheets::ticked() const {
  const std::array<std::pair<const CheckBox*, ShowSheet>, AllShowSheets.size()> boxes{
      {{&chkXY, ShowSheet::ListXY},
       {&chkAB, ShowSheet::ListAB},
       {&chkPatch, ShowSheet::Patch},
       {&chkSubmasters, ShowSheet::Submasters}}};
  std::vector<ShowSheet> sheets;
  for (const auto& [box, sheet] : boxes)
    if (box->Value != 0) sheets.push_back(sheet);
  return sheets;
}

void frmPrintSheets::tickChanged() {
  cmdPrint.Enabled = cmdSavePDF.Enabled = !ticked().empty();
}

/// Copies the show with the desk held; the sheets are made with the desk free.
Printout frmPrintSheets::takeSheets() const {
  const std::string show = writeShow(*m_show.Projects.item(m_show.CurrentProjectIndex));
  const CueLoops loops{.xy = loopOf(m_wiring.xyPlayer()), .ab = loopOf(m_wiring.abPlayer())};
  const auto wanted = ticked();
  Printout paper;
  m_machine.aside([&] { paper = sheetsIn(show, wanted, loops); });
  return paper;
}

// ---- Onto paper

template <class Work>
void frmPrintSheets::telling(const char* what, Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (const RunTimeError& error) {
    m_machine.boxes.show({.text = std::string(what) + ": " + error.what(), .icon = BoxIcon::Critical});
  }
}

void frmPrintSheets::cmdPrint_Click() {
  telling("The cue sheets can't be printed", [this] { print(); });
}

void frmPrintSheets::print() {
  if (!Press.anyPrinter()) {
    m_machine.boxes.show({.text = "This machine has no printer. Set one up in the settings of the system, or "
                                  "save the sheets as PDF and print them elsewhere.",
                          .icon = BoxIcon::Information});
    return;
  }
  const Printout paper = takeSheets();
  if (!m_machine.Dialogs.choosePrinter(Window.Caption)) return;
  Press.print(paper);
  Unload();
}

void frmPrintSheets::cmdSavePDF_Click() {
  telling("The cue sheets aren't saved", [this] { savePDF(); });
}

void frmPrintSheets::savePDF() {
  const Printout paper = takeSheets();
  const auto name =
      m_machine.Dialogs.saveFile("Save as PDF", "(*.pdf)|*.pdf", besideShow(m_show.ProjectFileName));
  if (!name || name->empty()) return;
  const std::string file = withExtension(*name);
  if (!mayReplace(file)) return;
  const std::string pdf = Press.pdf(paper);
  m_machine.aside([&] { writeFileSafely(file, pdf, Backup::None); });
  m_wiring.showStatus("Saved " + file);
  Unload();
}

bool frmPrintSheets::mayReplace(const std::string& file) const {
  bool isThere = false;
  m_machine.aside([&] {
    std::error_code hidden;  // then the writing says why
    isThere = fs::exists(file, hidden);
  });
  return !isThere || m_machine.boxes.show({.text = file + " is there already. Replace it?",
                                           .buttons = BoxButtons::YesNo,
                                           .icon = BoxIcon::Question}) == BoxAnswer::Yes;
}

}  // namespace velgrove
