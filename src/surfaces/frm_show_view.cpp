#include "surfaces/frm_show_view.h"

#include <algorithm>

#include "playback/cue_links.h"

namespace velgrove {
namespace {

using Cell = QueueList::CueColumn;

ShowViewLook::Cue cueIn(const QueueList& player, int row, const char* without) {
  if (!player.isRow(row)) return {.number = "", .description = without};
  const auto& cells = player.ListView2.row(row).Texts;
  return {.number = cells[Cell::NumberCell], .description = cells[Cell::DescCell]};
}

std::string linkOf(const QueueList& player, int row) {
  if (!player.isRow(row)) return "";
  const auto& cells = player.ListView2.row(row).Texts;
  return linkText(cells[Cell::ListCell], cells[Cell::TargetCell]);
}

/// The cue of a loop's end; loops keep their rows, which an edit may have taken away.
std::string numberAt(const QueueList& player, int row) {
  return player.isRow(row) ? player.ListView2.text(row) : "?";
}

std::string loopText(const QueueList& player) {
  const auto& state = player.State;
  if (state.LoopCount < 1) return "";
  const std::string passes =
      state.LoopCount == 1 ? "last pass" : std::to_string(state.LoopCount) + " passes left";
  return "Loop " + numberAt(player, state.LoopStartRow) + " to " + numberAt(player, state.LoopLastRow) +
         ", " + passes;
}

}  // namespace

frmShowView::frmShowView(ShowState& show, Wiring wiring) : m_show(show), m_wiring(std::move(wiring)) {}

// ---- The window

void frmShowView::Show() {
  Window.Loaded = true;
  showChoices();
  Window.Show();
  Window.Restore();
  noteWindow();
}

void frmShowView::restore() {
  if (std::exchange(m_restored, true)) return;
  const BoothSettings& booth = m_show.Booth;
  if (!Window.Visible && booth.ShowViewMaximised) Window.WindowState = WindowState::Maximised;
  if (booth.ShowView) Show();
}

void frmShowView::Close() {
  Unload();
  noteWindow();
}

void frmShowView::Unload() {
  Window.Unload();
}

/// Before the first show what the evening before left hasn't come back yet.
void frmShowView::noteWindow() {
  if (!m_restored) return;
  m_show.Booth.ShowView = Window.Visible;
  m_show.Booth.ShowViewMaximised = Window.WindowState == WindowState::Maximised;
  m_wiring.settingsChanged();
}

// ---- What is shown, and how large

void frmShowView::chooseList(bool ab) {
  m_show.Booth.ShowViewAB = ab;
  showChoices();
  m_wiring.settingsChanged();
}

void frmShowView::setTypeSize(int percent) {
  m_show.Booth.TypeSize = std::clamp(percent, BoothSettings::SmallestType, BoothSettings::LargestType);
  showChoices();
  m_wiring.settingsChanged();
}

void frmShowView::showChoices() {
  const BoothSettings& booth = m_show.Booth;
  cmdXY.BackColour = booth.ShowViewAB ? 0 : Green;
  cmdAB.BackColour = booth.ShowViewAB ? Green : 0;
  cmdSmaller.Enabled = booth.TypeSize > BoothSettings::SmallestType;
  cmdLarger.Enabled = booth.TypeSize < BoothSettings::LargestType;
  lblTypeSize.Caption = std::to_string(booth.TypeSize) + " %";
}

QueueList* frmShowView::player() const {
  return m_show.Booth.ShowViewAB ? m_wiring.abPlayer() : m_wiring.xyPlayer();
}

// ---- What it says

ShowViewLook frmShowView::look() const {
  ShowViewLook look;
  if (const QueueList* const shown = player())
    lookAtCues(*shown, look);
  else
    look.stage.description = "No show is open";
  if (m_show.BlindOn)
    look.mode = "Blind";
  else if (m_show.LiveOn)
    look.mode = "Live";
  lookAtInterface(look);
  return look;
}

void frmShowView::lookAtCues(const QueueList& player, ShowViewLook& look) {
  const auto& state = player.State;
  const bool atEnd = state.NextCue == -1 || state.NextCue > player.ListView2.count();
  look.stage = cueIn(player, state.StageCue, "No cue on stage");
  look.next = cueIn(player, state.NextCue, atEnd ? "End of the list" : "No next cue");
  look.nextLink = linkOf(player, state.NextCue);
  look.timeLeft = player.timeLeft();
  look.fade = look.timeLeft.empty() ? "nothing fading" : state.Paused ? "s, stopped" : "s left";
  if (state.Fading || state.Paused) look.started = linkText(state.MasterGoList, state.MasterGoNumber);
  if (look.nextLink == look.started) look.nextLink.clear();  // the mark moves on when the fade ends
  look.loop = loopText(player);
}

/// What is wrong tells more than how far the link had come.
void frmShowView::lookAtInterface(ShowViewLook& look) const {
  const InterfaceState state = m_wiring.interfaceState();
  look.lamp = state.lamp;
  look.interface = state.condition.empty() ? state.text : state.condition;
}

}  // namespace velgrove
