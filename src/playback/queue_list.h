#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/form.h"
#include "controls/list_view.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "playback/player_state.h"
#include "playback/player_traits.h"
#include "playback/row_paint.h"

namespace velgrove {

/// What a player needs of the rest of the desk.
struct PlayerWiring {
  /// The view of the active document; Fault::ObjectMissing when no document is open.
  std::function<std::shared_ptr<clsView>()> GetCurrentView;
  /// Writes a fixture's levels anew on its plot.
  std::function<void(clsFixture&)> redrawLevel;
  /// Starts what a cue is linked to.
  std::function<void(const std::string& list, const std::string& number)> SimultaneousStart;
  /// Writes into the cue panel of the frame's tool bar.
  std::function<void(const std::string&)> showCuePanel;
  /// Writes into the frame's status line.
  std::function<void(const std::string&)> showStatus;
  /// The mode has changed: both players show it.
  std::function<void()> modesChanged;
  /// What a link to list "AB", "XY" or "EF" can name: the texts of its rows. None while there is too little.
  std::function<std::vector<std::string>(const std::string& list)> linkTargets;
  /// Asks for the loop of the player that is being addressed, and waits for the answer.
  std::function<void()> configureLoop;
  /// A cue was recorded, changed or deleted.
  std::function<void()> cueEdited;
};

/// A cue player: the window of one cue list with its marks, modes, crossfades, Go and Stop. `ABQueueList` and
/// `XYQueueList` are its two instances; what differs between them stands in their traits.
class QueueList {
 public:
  static constexpr Colour Red = 0x0000FF;
  static constexpr Colour Green = 0x00C000;
  static constexpr Colour BrightGreen = 0x00FF00;
  static constexpr Colour Grey = 0xC0C0C0;
  static constexpr Colour Magenta = 0xFF00FF;
  static constexpr Colour Yellow = 0x00FFFF;
  static constexpr Colour White = 0xFFFFFF;
  static constexpr Colour PaleRed = 0x8080FF;
  static constexpr Colour PaleGreen = 0x80FF80;

  /// Columns of the list.
  enum CueColumn : std::size_t { NumberCell, DownCell, DelayCell, UpCell, DescCell, ListCell, TargetCell };

  static constexpr int PointerIcon = 1;
  static constexpr int LoopIcon = 2;

  QueueList(const PlayerTraits& traits, ShowState& show, Machine& machine, PlayerWiring wiring);
  QueueList(const QueueList&) = delete;
  QueueList& operator=(const QueueList&) = delete;

  // The window and its controls
  Form Window;
  ListView ListView2;
  TextBox CueNum{"00.00"};
  TextBox CueDown;
  TextBox CueDelay;
  TextBox CueUp;
  TextBox CueDesc;
  ComboBox QListCombo;
  ComboBox QListNumberCombo;
  // The value of this spinner means nothing but its direction, and those of the times aren't looked at.
  UpDown UpDownCueNum{0, 999, 999};
  UpDown UpDownCueUp{0, 10, 0};
  UpDown UpDownCueDown{0, 10, 0};
  UpDown UpDownCueDelay{0, 10, 0};
  Button cmdGoForward;
  Button cmdStop;
  Button cmdAdvanceStageCue;
  Button cmdDecrementStageCue;
  Button cmdMakeStageCue;
  Button cmdMakeNextCue;
  Button cmdLiveView;
  Button cmdBlindView;
  Button cmdRecord;
  Button cmdUpdate;
  Button cmdInsertCue;
  Button cmdDeleteCue;
  Button cmdCopy;
  Button cmdPaste;
  Button cmdLoop;
  Label lblStageNum, lblStageDown2, lblStageDelay2, lblStageUp2, StageDescText;
  Label lblNextNum, lblNextDown, lblNextDelay, lblNextUp, NextDescText;
  Timer q_timer;

  QueuePlayerState State;

  void Form_Load();
  /// A close by the operator hides the window; True means that it stays loaded.
  [[nodiscard]] bool Form_QueryUnload(bool askedBySystem);

  // Go and Stop
  void cmdGoForward_Click();
  void cmdStop_Click();
  void cmdGoResume_Click();
  void cmdForward_Click();
  void cmdGoReverse_Click();
  /// Go can always be pressed: its colour tells whether it starts something new.
  void SetActionButtons(bool go, bool stop);
  void AdvanceQueues();
  void ProcessPause();

  // Crossfade
  void q_timer_Timer();
  void SetupCrossFade();
  /// Puts the look of a row where `mode` says: "live" (also "") on stage, "changecue" on stage where it beats
  /// the other player, "blind" on the plot alone.
  void ShowFixtureLevelsForSelectedCue(int row, const std::string& mode);

  // Loops
  void cmdLoop_Click();
  [[nodiscard]] bool ProcessLoop();

  // Editing: list rows and cues at once, since a row's text is how its cue is found
  void cmdRecord_Click();
  void cmdUpdate_Click();
  void cmdInsertCue_Click();
  void cmdDeleteCue_Click();
  void cmdCopy_Click();
  void cmdPaste_Click();

  // Editors
  /// `keyCode` 13 is Enter: the pointer goes to the first row with the number that was typed, and to the last
  /// row when there is none.
  void CueNum_KeyUp(int keyCode);
  void UpDownCueNum_Change();
  void UpDownCueUp_UpClick();
  void UpDownCueUp_DownClick();
  void UpDownCueDown_UpClick();
  void UpDownCueDown_DownClick();
  void UpDownCueDelay_UpClick();
  void UpDownCueDelay_DownClick();
  void QListCombo_Click();

  // Marks and modes
  void cmdAdvanceStageCue_Click();
  void cmdDecrementStageCue_Click();
  void ResetStageCue();
  void cmdMakeStageCue_Click();
  void cmdMakeNextCue_Click();
  void cmdLiveView_Click();
  void cmdBlindView_Click();
  void AttachPointerToStageCue();
  /// Colours Live and Blind by the mode, which both players share.
  void showModes();

  // Rows
  void FillList();
  void UpdateHeader(const std::string& panel, int row);
  /// Both status panels alone: the editors keep what is typed, and the frame's cue panel its cue.
  void showMarksInPanels();
  void UpdateCueInfo();
  void selectchange();
  void ResetCombos();

  // The mouse over the list; row 0 is where no row is. The marks can be dragged from row to row, and a press
  // and release without a drag is a click.
  void ListView2_MouseDown(int row);
  void ListView2_MouseMove(int row);
  void ListView2_MouseUp(int row);
  /// What a click does to a row: it comes under the pointer and into the editors. Nothing changes on stage.
  void selectRow(int row);

  // What the list shows beside its texts
  void UpdateListView();
  void endRepaint();  ///< the list shows the marks as they are; a drag shows again with its next step
  /// How much of the stage look has gone, 0 to 255, as a bar in the stage row.
  void SetCurrentLookProgress(std::int16_t level);
  /// How much of the next look has come, 0 to 255, as a bar in the next row.
  void SetNextLookProgress(std::int16_t level);
  /// How a row is painted now: white, red for the stage, green for the next, the steps of a drag, and both
  /// bars of a fade. A fade changes it without a change of the list.
  [[nodiscard]] RowPaint rowPaint(int row) const;
  /// Milliseconds until both ramps of the running fade are through, those of a stopped fade as they stood at
  /// the stop; 0 when nothing fades. For the eye alone: the marks move when the next look is up, even if the
  /// stage look would still fall.
  [[nodiscard]] std::int64_t restOfFade() const;
  /// The same in seconds as the operator reads them: tenths below ten, whole ones above; "" when nothing
  /// fades.
  [[nodiscard]] std::string timeLeft() const;

  /// Compares two rows by the numbers in their first columns: -1, 0 or 1.
  [[nodiscard]] static int CompareValues(const ListView::Row& a, const ListView::Row& b);

  /// Marks can stand beside the list, before it and behind it: there is nothing to look up there.
  [[nodiscard]] bool isRow(int row) const { return row >= 1 && row <= ListView2.count(); }

  [[nodiscard]] std::array<std::int16_t, ChannelCount>& levels() { return m_show.*m_traits.Levels; }

 private:
  /// What it means that the mouse button goes up.
  enum class Release { Click, Refused, NextDropped, StageDropped };

  static constexpr int FewestRows = 3;

  void setUpButtons();
  void tieEditors();
  void addBlackout();
  void rowPass();
  void writeCells(int row, const clsQueueEntry& entry);
  void startDrag(int row);
  void stepDrag(int row);
  [[nodiscard]] Release endDrag();
  void dropStage();
  [[nodiscard]] bool dropForbidden() const;
  [[nodiscard]] Colour rowColour(int row) const;
  void repaintRows();
  void updateMarkHeaders();
  void showMovedMarks();
  void returnToStageCue(const std::string& panel);
  void jumpToStageCue();
  void movePointer(int row);
  void goToRow(int row);
  void endFade();
  void startTimer(bool reverse);
  void takeTimes(const clsQueueEntry* entry);
  void keepTimes();
  void showOnStage(int row, bool yields);
  void showBlind(int row);
  void takeLoopStep();
  void findLoopRows();
  void markLoopRows();
  void showStagePanel(int row);
  void showNextPanel(int row);

  [[nodiscard]] ChannelBytes levelsOnPlot();
  [[nodiscard]] ChannelBytes outputOnPlot();
  void takeEditors(clsQueueEntry& cue) const;
  void noteEdit();
  [[nodiscard]] std::shared_ptr<clsQueueEntry> cueOfEditors(float number) const;
  void nameCue(clsQueueEntry& cue);
  void addLastCue(const std::shared_ptr<clsQueueEntry>& cue);
  void addRow(int position, const std::string& number);
  void writeEditedCells(int row);
  [[nodiscard]] bool insertFirst();
  [[nodiscard]] bool insertBehindPointer();
  void landOnInserted();
  void closeRanks();
  [[nodiscard]] bool isTaken(float number);
  void enableCueButtons(bool enabled);
  void writeDefaultTimes();
  void stepUp(int by);
  void stepDownAndUp(int by);
  void stepDelay(int by);
  void offerTargets(const std::vector<std::string>& targets);

  /// The list that is being addressed, as the open show holds it.
  [[nodiscard]] std::shared_ptr<clsQueueData> dataInProject() const;
  /// The list of cues; Fault::ObjectMissing when the show has none for this player.
  [[nodiscard]] colQueueEntries& entries();
  /// The cue of a row, by its number and this player's mark; Fault::ObjectMissing when there is none.
  [[nodiscard]] std::shared_ptr<clsQueueEntry> entryByKey(float number);
  /// The first cue of that number, whoever owns it; Fault::ObjectMissing when there is none.
  [[nodiscard]] std::shared_ptr<clsQueueEntry> entryByNumber(float number);
  /// The cue of a row as above; none for row 0. Fault::Subscript behind the last row: a mark can stand there
  /// after a delete or a loop, and the operator is told before the stage goes dark.
  [[nodiscard]] std::shared_ptr<clsQueueEntry> entryOfRow(int row);
  /// The same by `search`, with its box and its last cue looked at.
  [[nodiscard]] std::shared_ptr<clsQueueEntry> searchRow(int row);
  [[nodiscard]] float numberOfRow(int row) const { return toCueNumber(ListView2.text(row)); }

  /// Calls `work` for each fixture of the current view; a fault ends that fixture and the next one follows.
  template <class Work>
  void forEachFixture(Work&& work);

  const PlayerTraits& m_traits;
  ShowState& m_show;
  Machine& m_machine;
  ErrorPattern& m_errors;
  PlayerWiring m_wiring;
};

template <class Work>
void QueueList::forEachFixture(Work&& work) {
  std::shared_ptr<clsView> view;
  m_errors.run([&] { view = m_wiring.GetCurrentView(); });
  if (view == nullptr) return;
  // By position: an open box lets other handlers change the plot.
  for (int position = 1; position <= view->colFixtures().count(); ++position) {
    const auto fixture = view->colFixtures().item(position);
    m_errors.run([&] { work(*fixture); });
  }
}

}  // namespace velgrove
