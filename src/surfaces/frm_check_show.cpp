#include "surfaces/frm_check_show.h"

#include <algorithm>
#include <optional>

namespace velgrove {
namespace {

enum Column : std::size_t { ListCell, CueCell, WhatCell };

}  // namespace

/// The show as it stood, and what only the desk knows of it.
struct frmCheckShow::Copy {
  std::string bytes;
  std::optional<std::string> damagedOriginal;
  std::vector<ListView::Row> effects;
  std::array<SetLoop, 2> loops;
};

frmCheckShow::frmCheckShow(ShowState& show, Machine& machine, Wiring wiring)
    : Check(machine.timers, TimerRank::Dialog, 1, [this] { Check_Timer(); }),
      m_show(show),
      m_machine(machine),
      m_wiring(std::move(wiring)) {
  ListViewFindings.Columns = {{"List", 60}, {"Cue", 70}, {"Finding", 500}};
  ListViewFindings.ToolTip = "Double click or Enter leads to the cue";
}

void frmCheckShow::Show() {
  Window.Loaded = true;
  Window.Show();
  Window.Restore();
  cmdCheckAgain_Click();
}

void frmCheckShow::Unload() {
  ++m_checks;
  Check.setEnabled(false);
  Window.Unload();
  Window.WindowState = WindowState::Normal;
  m_findings.clear();
  ListViewFindings.clear();
  lblResult.Caption.clear();
  lblFinding.Caption.clear();
}

// ---- The check

void frmCheckShow::cmdCheckAgain_Click() {
  ++m_checks;
  lblResult.Caption = "Checking the show...";
  Check.setEnabled(true);
}

/// A check that fails is no reason to ask anybody whether the desk should go on.
void frmCheckShow::Check_Timer() {
  Check.setEnabled(false);  // whoever asks again while this one is under way turns it on anew
  try {
    check();
  } catch (const RunTimeError& error) {
    lblResult.Caption = std::string("The show can't be checked: ") + error.what();
  }
}

void frmCheckShow::check() {
  const unsigned asked = m_checks;
  const Copy copy = takeCopy();
  std::vector<Finding> findings;
  m_machine.aside([&] { findings = findingsIn(copy); });
  if (asked == m_checks) show(std::move(findings));
}

frmCheckShow::Copy frmCheckShow::takeCopy() const {
  return {.bytes = writeShow(*m_show.Projects.item(m_show.CurrentProjectIndex)),
          .damagedOriginal = m_show.DamagedOriginal,
          .effects = m_wiring.effects(),
          .loops = {loopOf(m_wiring.abPlayer()), loopOf(m_wiring.xyPlayer())}};
}

SetLoop frmCheckShow::loopOf(const QueueList& player) {
  return {.passes = player.State.LoopCount,
          .firstRow = player.State.LoopStartRow,
          .lastRow = player.State.LoopLastRow};
}

std::vector<Finding> frmCheckShow::findingsIn(const Copy& copy) {
  const ShowRead read = readShow(copy.bytes, DMXInputRecords::Leave);
  if (read.project == nullptr) throw RunTimeError(Fault::ObjectMissing, "the show has no view to check");
  CheckedShow checked{
      .project = read.project.get(), .damage = {}, .effects = copy.effects, .loops = copy.loops};
  if (copy.damagedOriginal) checked.damage = readShow(*copy.damagedOriginal, DMXInputRecords::Leave).faults;
  return checkShow(checked);
}

void frmCheckShow::show(std::vector<Finding> findings) {
  lblResult.Caption = (faultCount(findings) == 0 ? "Nothing would go wrong: " : "") + countText(findings);
  if (std::ssize(findings) > MostShown) {
    findings.resize(MostShown);
    lblResult.Caption += ", of which these are the first " + std::to_string(MostShown);
  }
  m_findings = std::move(findings);
  lblFinding.Caption.clear();
  ListViewFindings.clear();
  for (const Finding& finding : m_findings) {
    const int row = ListViewFindings.count() + 1;
    const char* const note = finding.weight == Finding::Weight::Note ? "Note: " : "";
    ListViewFindings.add(row, listText(finding));
    ListViewFindings.setText(row, CueCell, cueText(finding));
    ListViewFindings.setText(row, WhatCell, note + finding.text);
  }
  if (!m_findings.empty()) ListViewFindings_MouseDown(1);
}

// ---- The way to the cue

void frmCheckShow::ListViewFindings_MouseDown(int row) {
  if (row < 1 || row > ListViewFindings.count()) return;
  ListViewFindings.select(row);
  ListViewFindings.ensureVisible(row);
  lblFinding.Caption = ListViewFindings.row(row).Texts[WhatCell];
}

void frmCheckShow::ListViewFindings_DblClick(int row) {
  if (row < 1 || row > std::ssize(m_findings)) return;
  m_machine.errors.run([&] { leadTo(m_findings[static_cast<std::size_t>(row) - 1]); });
}

void frmCheckShow::leadTo(const Finding& finding) const {
  const auto front = [](Form& window) {
    window.Show();
    window.Restore();
  };
  switch (finding.where) {
    case Finding::Where::Show:
      return;
    case Finding::Where::Patch:
      return front(m_wiring.document().Window);
    case Finding::Where::ListAB:
    case Finding::Where::ListXY: {
      QueueList& player = finding.where == Finding::Where::ListAB ? m_wiring.abPlayer() : m_wiring.xyPlayer();
      front(player.Window);
      return leadToRow(player, finding);
    }
  }
}

void frmCheckShow::leadToRow(QueueList& player, const Finding& finding) const {
  if (finding.row.empty()) return;  // about the whole list
  const int row = player.ListView2.findItem(finding.row);
  if (row > 0)
    player.selectRow(row);
  else
    m_wiring.showStatus("No row shows " + listText(finding) + " " + cueText(finding));
}

}  // namespace velgrove
