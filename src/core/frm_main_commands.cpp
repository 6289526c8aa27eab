// The frame's commands: the table of all ids, and what each does.

#include <algorithm>

#include "core/frm_main.h"

namespace velgrove {
namespace {

constexpr std::int16_t Left = 0;
constexpr std::int16_t Right = 1;

constexpr char Input[] = "Input";
constexpr char Output[] = "Output";
constexpr char StatusBarClick[] = "mnuViewStatusBar_Click";
constexpr char ToolBarClick[] = "mnuViewToolBar_Click";
constexpr char CutClick[] = "mnuEditCut_Click";

/// An action of the frame, with its arguments.
template <auto action, auto... with>
void run(frmMain& frame) {
  (frame.*action)(with...);
}

}  // namespace

std::span<const frmMain::Command> frmMain::commands() {
  static constexpr Command All[] = {
      // A show's life
      {"mnuFileNew", run<&frmMain::newShow>},
      {"mnuFileOpen", run<&frmMain::openShow>},
      {"ID_OpenProject", run<&frmMain::openShow>},
      {"mnuFileSave", run<&frmMain::save>},
      {"ID_Save", run<&frmMain::saveShow>},
      {"mnuFileSaveAs", run<&frmMain::SaveAs>},
      {"ID_CheckShow", run<&frmMain::checkShow>},
      {"mnuFilePrint", run<&frmMain::print>},
      {"ID_PrintSheets", run<&frmMain::printSheets>},
      {"mnuFileExit", run<&frmMain::leave>},
      // Windows
      {"ID_ABQ", run<&frmMain::showPlayer, &Windows::abPlayer>},
      {"ID_XYQ", run<&frmMain::showPlayer, &Windows::xyPlayer>},
      {"ID_Effects", run<&frmMain::showEffects>},
      {"ID_GrandMaster", run<&frmMain::showGrandMaster>},
      {"mnuViewLevelWheel", run<&frmMain::showGrandMaster>},
      {"ID_ShowView", run<&frmMain::showShowView>},
      {"ID_DimScreen", run<&frmMain::dimScreen>},
      {"ID_BarsInput", run<&frmMain::showBars, Input>},
      {"ID_BarsOutput", run<&frmMain::showBars, Output>},
      {"ID_viewStatus", run<&frmMain::viewStatus>},
      {"mnuEditPreferences", run<&frmMain::showPreferences>},
      {"mnuHelpContents", run<&frmMain::helpContents>},
      {"ID_Keys", run<&frmMain::showKeys>},
      {"mnuHelpAbout", run<&frmMain::helpAbout>},
      {"mnuWindowCascade", run<&frmMain::arrange, Arrangement::Cascade>},
      {"mnuWindowTileHorizontal", run<&frmMain::arrange, Arrangement::TileHorizontal>},
      {"mnuWindowTileVertical", run<&frmMain::arrange, Arrangement::TileVertical>},
      {"mnuWindowArrangeIcons", run<&frmMain::arrange, Arrangement::ArrangeIcons>},
      {"mnuViewRefresh", run<&frmMain::nothing>},
      {"mnuViewStatusBar", run<&frmMain::unfinished, StatusBarClick>},
      {"mnuViewToolbar", run<&frmMain::unfinished, ToolBarClick>},
      {"mnuEditCut", run<&frmMain::unfinished, CutClick>},
      // The XY player, which alone follows the frame's tools
      {"ID_Go", run<&frmMain::go>},
      {"ID_StopFade", run<&frmMain::stopFade>},
      {"ID_QPlus", run<&frmMain::nextStageCue>},
      {"ID_QMinus", run<&frmMain::previousStageCue>},
      {"ID_CueReset", run<&frmMain::resetCue>},
      {"ID_Blackout", run<&frmMain::blackout>},
      // What received levels do
      {"ID_noInput", run<&frmMain::noInput>},
      {"ID_manualOn", run<&frmMain::inputToFixtures>},
      {"ID_subsOn", run<&frmMain::inputToSubmasters>},
      // The plot
      {"ID_LockFixtures", run<&frmMain::lockFixtures>},
      {"ID_EnableCAD", run<&frmMain::enableCAD>},
      {"ID_AddLight", run<&frmMain::toggleLightTool>},
      {"ID_DelLight", run<&frmMain::onDocument, &frmDocument::DelTool>},
      {"ID_Rotate", run<&frmMain::onDocument, &frmDocument::RotateTool>},
      {"ID_FluidZoom", run<&frmMain::onDocument, &frmDocument::FluidZoomTool>},
      {"ID_Pan", run<&frmMain::onDocument, &frmDocument::PanTool>},
      {"mnuViewPan", run<&frmMain::onDocument, &frmDocument::PanTool>},
      {"mnuViewGrid", run<&frmMain::onDocument, &frmDocument::GridTool>},
      {"ID_ZoomIn", run<&frmMain::onDocument, &frmDocument::ZoomInTool>},
      {"ID_ZoomOut", run<&frmMain::onDocument, &frmDocument::ZoomOutTool>},
      {"mnuEditUndo", run<&frmMain::onDocument, &frmDocument::UndoDelete>},
      {"ID_Test", run<&frmMain::onDocument, &frmDocument::Test>},
      {"mnuFresnel", run<&frmMain::lightTool, 1>},
      {"mnuLeko", run<&frmMain::lightTool, 2>},
      {"mnuPar38", run<&frmMain::lightTool, 3>},
      {"mnuPractical", run<&frmMain::lightTool, 4>},
      {"mnuScoop", run<&frmMain::lightTool, 5>},
      {"mnuMoving_Light", run<&frmMain::lightTool, 6>},
      {"mnuFresnelShape", run<&frmMain::pickShape, 1>},
      {"mnuLekoShape", run<&frmMain::pickShape, 2>},
      {"mnuPar38Shape", run<&frmMain::pickShape, 3>},
      {"mnuPracticalShape", run<&frmMain::pickShape, 4>},
      {"mnuScoopShape", run<&frmMain::pickShape, 5>},
      {"mnuRot180", run<&frmMain::rotateObject, 180, Left>},
      {"mnuRot45left", run<&frmMain::rotateObject, 45, Left>},
      {"mnuRot45right", run<&frmMain::rotateObject, 45, Right>},
      {"mnuRot90Left", run<&frmMain::rotateObject, 90, Left>},
      {"mnuRot90right", run<&frmMain::rotateObject, 90, Right>},
      {"ID_SelectPointer", run<&frmMain::selectTool>},  // and every id that isn't listed
  };
  return All;
}

// ---- Windows

void frmMain::showPlayer(QueueList& (Windows::*player)() const) {
  m_machine.errors.run([&] {
    Form& window = (m_windows.*player)().Window;
    window.Show();
    window.Restore();
  });
}

void frmMain::showEffects() {
  m_windows.Effects.load();
  m_windows.Effects.Window.Show();
  m_windows.Effects.Window.Restore();
}

void frmMain::showGrandMaster() {
  m_machine.errors.run([&] { m_windows.GrandMaster.Show(); });
}

void frmMain::showPreferences() {
  m_machine.errors.run([&] { m_windows.Preferences.Show(); });
}

void frmMain::checkShow() {
  m_machine.errors.run([&] { m_windows.CheckShow.Show(); });
}

void frmMain::printSheets() {
  m_machine.errors.run([&] { m_windows.PrintSheets.Show(); });
}

void frmMain::showShowView() {
  m_windows.ShowView.Show();
}

/// For blackouts: the screens light up the booth, and what stands before it.
void frmMain::dimScreen() {
  m_show.Booth.DimScreen = !m_show.Booth.DimScreen;
  showDimScreen();
  m_wiring.boothChanged();
}

void frmMain::showDimScreen() {
  SSActiveToolBars1.tool("ID_DimScreen").Pressed = m_show.Booth.DimScreen;
}

void frmMain::showBars(const char* what) {
  m_machine.errors.run([&] { m_windows.openBars(what); });
}

void frmMain::viewStatus() {
  m_windows.Comm.Window.Show();
}

void frmMain::helpContents() {
  const auto tell = [this](const std::string& text) {
    m_machine.boxes.show({.text = text, .icon = BoxIcon::Information});
  };
  if (!m_wiring.showHelp) {
    tell("Unable to display Help Contents. There is no Help associated with this project.");
    tell("Please refer to owners manual for help, thank you. or call (555)-010-0142");
    return;
  }
  try {
    m_wiring.showHelp();
  } catch (const RunTimeError& error) {
    m_machine.boxes.show({.text = error.what()});
  }
}

void frmMain::showKeys() {
  m_windows.Keys.Show();
}

void frmMain::helpAbout() {
  m_machine.errors.run([&] { m_wiring.showAbout(); });
}

void frmMain::arrange(Arrangement::Code code) {
  Arrange = {.How = code, .Count = Arrange.Count + 1};
}

/// These menu items were never finished, and say so.
void frmMain::unfinished(const char* handler) const {
  m_machine.boxes.show({.text = std::string("Add '") + handler + "' code."});
}

// ---- The XY player

QueueList& frmMain::shownXY() {
  QueueList& player = m_windows.xyPlayer();
  player.Window.Visible = true;
  return player;
}

void frmMain::go() {
  m_machine.errors.run([&] {
    QueueList& player = shownXY();
    {
      const GoFromOutside outside(m_show);
      player.cmdGoForward_Click();
    }
    m_windows.endRepaints();
  });
}

/// Presses are measured by the keyboard's own time: a desk that was busy for a moment doesn't join two of
/// them.
void frmMain::goKey(std::uint32_t pressedAt) {
  constexpr std::uint32_t DoubleTap = 100;  // ms
  static constexpr char Told[] = "The Go key was pressed twice within 100 ms: it counted once";
  if (m_goKeyAt && pressedAt - *m_goKeyAt <= DoubleTap) {
    StatusMessage = Told;
    return;
  }
  m_goKeyAt = pressedAt;
  if (StatusMessage == Told) StatusMessage.clear();
  SSActiveToolBars1_ToolClick("ID_Go");
}

void frmMain::stopFade() {
  m_machine.errors.run([&] { shownXY().cmdStop_Click(); });
}

void frmMain::nextStageCue() {
  m_machine.errors.run([&] {
    QueueList& player = shownXY();
    m_windows.endRepaints();
    player.cmdAdvanceStageCue_Click();
  });
}

void frmMain::previousStageCue() {
  m_machine.errors.run([&] {
    QueueList& player = shownXY();
    m_windows.endRepaints();
    player.cmdDecrementStageCue_Click();
  });
}

void frmMain::resetCue() {
  m_machine.errors.run([&] { shownXY().ResetStageCue(); });
}

void frmMain::blackout() {
  const auto stop = [](const std::unique_ptr<QueueList>& player) {
    if (player != nullptr && player->Window.Visible) player->cmdStop_Click();
  };
  m_machine.errors.steps([&] { stop(m_windows.ABQ); }, [&] { stop(m_windows.XYQ); },
                         [&] { m_windows.GrandMaster.showAtBottom(); });
}

// ---- What received levels do

void frmMain::setInput(std::string_view tool, bool dimmers, bool submasters) {
  m_show.DMXDimmers = dimmers;
  m_show.DMXSubmasters = submasters;
  m_windows.Comm.RecieveTimer.setEnabled(dimmers || submasters);
  for (const std::string_view id : {"ID_noInput", "ID_manualOn", "ID_subsOn"})
    SSActiveToolBars1.tool(id).Pressed = id == tool;
}

void frmMain::noInput() {
  setInput("ID_noInput", false, false);
}
void frmMain::inputToFixtures() {
  setInput("ID_manualOn", true, false);
}
void frmMain::inputToSubmasters() {
  setInput("ID_subsOn", false, true);
}

// ---- The plot

void frmMain::lockFixtures() {
  m_machine.errors.steps(
      [&] {
        m_show.FixturesLocked = !m_show.FixturesLocked;
        SSActiveToolBars1.tool("ID_LockFixtures").Pressed = m_show.FixturesLocked;
      },
      [&] {
        (void)ActiveForm();
        for (const auto& document : m_windows.Documents) document->Window.Enabled = !m_show.FixturesLocked;
      },
      [&] {
        if (m_show.FixturesLocked)
          m_machine.boxes.show({.text = "Fixtures Locked!", .icon = BoxIcon::Critical});
        else
          m_machine.boxes.show({.text = "Fixtures Unlocked."});
      });
}

/// A drawing for everyone keeps the numbers; only a full CAD program would read them.
void frmMain::enableCAD() {
  const auto set = [this](int property, int value) { ActiveForm().FlpCAD1.setProperty(property, value); };
  m_machine.errors.steps([&] { set(223, 1); }, [&] { set(6, 0); }, [&] { set(4, 0); });
}

void frmMain::onDocument(void (frmDocument::*operation)()) {
  m_machine.errors.run([&] { (ActiveForm().*operation)(); });
}

void frmMain::selectTool() {
  onDocument(&frmDocument::SelectTool);
}

void frmMain::lightTool(std::int32_t type) {
  pickShape(type);
  onDocument(&frmDocument::LightTool);
}

void frmMain::pickShape(std::int32_t type) {
  m_show.SelectedFixtureType = type;
}

/// A second press takes the tool away again.
void frmMain::toggleLightTool() {
  m_machine.errors.run([&] {
    if (ActiveForm().MouseMode != tools::Select) return ActiveForm().SelectTool();
    lightTool(1);
    SSActiveToolBars1.PopupMenu("mnuLightAddFixture");
  });
}

void frmMain::rotateObject(std::int16_t degrees, std::int16_t right) {
  m_machine.errors.run([&] { ActiveForm().RotateObject(degrees, right, false); });
}

/// A printer that fails, or an operator who cancels, ends it without a word.
void frmMain::print() const {
  ErrorPattern::skip([&] {
    if (!m_machine.Dialogs.choosePrinter("Print")) return;
    ErrorPattern::skip([&] { ActiveForm().FlpCAD1.PrintRationSameasView = true; });
    ActiveForm().FlpCAD1.PrintView();
  });
}

}  // namespace velgrove
