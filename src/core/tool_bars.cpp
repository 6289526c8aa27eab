#include "core/tool_bars.h"

#include <algorithm>

#include "controls/faults.h"
#include "core/keys.h"

namespace velgrove {
namespace {

struct ToolText {
  std::string_view id;
  std::string_view caption;
  std::string_view tip = {};
};

constexpr ToolText Texts[] = {
    // File
    {"mnuFileNew", "&New Show"},
    {"mnuFileOpen", "&Open Show"},
    {"mnuFileSave", "&Save"},
    {"mnuFileSaveAs", "Save &As"},
    {"ID_CheckShow", "&Check Show", "What would go wrong at the performance"},
    {"mnuFilePrint", "&Print"},
    {"ID_PrintSheets", "Print Cue S&heets", "Cue lists, patch and submasters on paper or as PDF"},
    {"mnuFileExit", "E&xit"},
    {"mnuFileClose", "Close"},
    {"mnuFileSaveAll", "Save All"},
    {"mnuFileProperties", "Properties"},
    {"mnuFilePageSetup", "Page Setup"},
    {"mnuFileSend", "Send"},
    // Edit
    {"mnuEditPreferences", "Preferences"},
    {"ID_viewStatus", "&USB Status", "Status of the interface"},
    {"ID_EnableCAD", "Enable CAD", "Enable Full CAD functionality"},
    {"mnuEditCut", "Cut"},
    {"mnuEditUndo", "Undo"},
    {"mnuToolsOptions", "Options"},
    // View
    {"mnuViewGrid", "Grid"},
    {"mnuViewFluidZoom", "Fluid Zoom"},
    {"mnuViewPan", "Pan"},
    {"mnuViewLevelWheel", "&Grand Master"},
    {"ID_ShowView", "Sho&w View", "The cue list in large type"},
    {"ID_DimScreen", "&Dim Screen", "Darker colours for blackouts"},
    {"mnuInts", "Ints"},
    {"mnuViewRefresh", "Refresh"},
    {"mnuViewStatusBar", "Status Bar"},
    {"mnuViewToolbar", "Toolbar"},
    // Window
    {"mnuWindowCascade", "&Cascade"},
    {"mnuWindowTileHorizontal", "Tile &Horizontal"},
    {"mnuWindowTileVertical", "Tile &Vertical"},
    {"mnuWindowArrangeIcons", "&Arrange Icons"},
    // Help
    {"mnuHelpContents", "&Contents"},
    {"ID_Keys", "&Keys", "All keys of the desk"},
    {"mnuHelpAbout", "&About"},
    // Fixture
    {"mnuLightAddFixture", "Add Fixture"},
    {"mnuLightSelectPointer", "Select Pointer"},
    {"mnuLightRotate", "Rotate Fixture"},
    {"ID_LockFixtures", "Lock Fixtures", "Lock Fixtures"},
    {"mnuFixtureAllZero", "Black Out"},
    {"mnuLightNetSelect", "Net Select"},
    {"mnuLightSelectAll", "Select All"},
    {"mnuFresnel", "Fresnel"},
    {"mnuLeko", "Leko"},
    {"mnuPar38", "Par38"},
    {"mnuPractical", "Practical"},
    {"muScoop", "Scoop"},
    {"mnuMoving_Light", "I-Cue"},
    {"mnuFresnelShape", "FresnelShape"},
    {"mnuLekoShape", "LekoShape"},
    {"mnuPar38Shape", "Par38Shape"},
    {"mnuPracticalShape", "PracticalShape"},
    {"mnuScoopShape", "ScoopShape"},
    {"mnuRot90Left", "90 degrees left"},
    {"mnuRot90right", "90 degrees right"},
    {"mnuRot180", "180 degrees"},
    {"mnuRot45left", "45 degrees left"},
    {"mnuRot45right", "45 degrees right"},
    // Input
    {"ID_noInput", "&No Input", "No Input"},
    {"ID_manualOn", "&Input To Fixtures", "Input To Fixtures"},
    {"ID_subsOn", "Input to &Subs", "Input to Subs"},
    {"ID_subsTrigger", "Subs Trigger", "Subs Trigger"},
    {"mnuDMXIn", "DMX In"},
    {"mnuTest", "Test"},
    // Tool bar: files and windows
    {"ID_OpenProject", "Open", "Open Show"},
    {"ID_Save", "Save", "Save Show"},
    {"ID_ABQ", "AB", "AB Cue List"},
    {"ID_XYQ", "XY", "XY Cue List"},
    {"ID_Effects", "Effects", "Special Effects"},
    {"ID_GrandMaster", "Grand Master", "Grand Master"},
    {"ID_LevelWheel", "Level Wheel", "Level Wheel"},
    {"ID_BarsInput", "Input Bars", "DMX Input as Bars"},
    {"ID_BarsOutput", "Output Bars", "DMX Output as Bars"},
    // Tool bar: the show
    {"ID_Blackout", "Blackout", "Blackout"},
    {"ID_CueWindow", "", "Stage Cue"},
    {"ID_QMinus", "Q-", "Stage Cue Back"},
    {"ID_QPlus", "Q+", "Stage Cue On"},
    {"ID_CueReset", "Reset", "Cue Reset"},
    {"ID_StopFade", "Stop", "Stop Fade"},
    {"ID_Go", "Go", "Go"},
    // Tool bar: the plot
    {"ID_SelectPointer", "Select", "Select Pointer"},
    {"ID_Stop", "Stop Tool", "Stop Tool"},
    {"ID_AddLight", "Add", "Add Fixture to Project"},
    {"ID_DelLight", "Delete", "Delete Tool"},
    {"ID_Rotate", "Rotate", "Rotate"},
    {"ID_SelectGrid", "Grid", "Show/Hide Grid"},
    {"ID_ZoomIn", "Zoom In", "Zoom In"},
    {"ID_ZoomOut", "Zoom Out", "Zoom Out"},
    {"ID_FluidZoom", "Fluid Zoom", "Fluid Zoom"},
    {"ID_Pan", "Pan", "Pan Tool"},
    {"ID_Test", "Test", "Test"},
};

Tool toolOf(const ToolText& text) {
  constexpr std::string_view Prefix = "ID_";
  const auto name = text.id.starts_with(Prefix) ? text.id.substr(Prefix.size()) : text.id;
  return {.Id = std::string(text.id),
          .Caption = std::string(text.caption),
          .ToolTip = std::string(text.tip),
          .Name = std::string(name),
          .Key = std::string(keyOf(text.id))};
}

}  // namespace

ToolBars::ToolBars() {
  for (const ToolText& text : Texts) m_tools.push_back(toolOf(text));
  tool("ID_CueWindow").Enabled = false;  // until a show opens
}

Tool* ToolBars::find(std::string_view id) {
  const auto at = std::ranges::find(m_tools, id, &Tool::Id);
  return at == m_tools.end() ? nullptr : &*at;
}

Tool& ToolBars::tool(std::string_view id) {
  Tool* const found = find(id);
  if (found == nullptr) throw RunTimeError(Fault::ObjectMissing, "no tool " + std::string(id));
  return *found;
}

std::span<const MenuSet> ToolBars::menus() {
  static const MenuSet Menus[] = {
      {"&File",
       {"mnuFileNew", "mnuFileOpen", "-", "mnuFileSave", "mnuFileSaveAs", "-", "ID_CheckShow", "-",
        "mnuFilePrint", "ID_PrintSheets", "-", "mnuFileExit"}},
      {"&Edit", {"mnuEditPreferences", "ID_viewStatus", "ID_EnableCAD"}},
      {"&View",
       {"mnuViewGrid", "mnuViewFluidZoom", "mnuViewPan", "mnuViewLevelWheel", "mnuInts", "-", "ID_ShowView",
        "ID_DimScreen"}},
      {"&Cues",
       {"ID_Go", "ID_StopFade", "-", "ID_QPlus", "ID_QMinus", "ID_CueReset", "-", "ID_ABQ", "ID_XYQ",
        "ID_Effects", "-", "ID_Blackout"}},
      {"&Window",
       {"mnuWindowCascade", "mnuWindowTileHorizontal", "mnuWindowTileVertical", "mnuWindowArrangeIcons"}},
      {"&Help", {"mnuHelpContents", "ID_Keys", "-", "mnuHelpAbout"}},
      {"Fixture",
       {"mnuLightAddFixture", "mnuLightSelectPointer", "mnuLightRotate", "ID_LockFixtures",
        "mnuFixtureAllZero"}},
      {"&Input", {"ID_noInput", "ID_manualOn", "ID_subsOn"}},
  };
  return Menus;
}

std::span<const MenuSet> ToolBars::popUps() {
  static const MenuSet PopUps[] = {
      {"mnuLightAddFixture",
       {"mnuFresnel", "mnuLeko", "mnuPar38", "mnuPractical", "mnuScoopShape", "mnuMoving_Light"}},
      {"mnuLightRotate", {"mnuRot90Left", "mnuRot90right", "mnuRot180", "mnuRot45left", "mnuRot45right"}},
  };
  return PopUps;
}

void ToolBars::PopupMenu(std::string_view set, int x, int y) {
  m_popUp = {.Set = std::string(set), .x = x, .y = y, .Count = m_popUp.Count + 1};
}

}  // namespace velgrove
