// The operator at the frame: its tools, the preferences and the timings.

#include <algorithm>
#include <span>

#include "robot/hand.h"

namespace velgrove::robot {
namespace {

bool clickTool(Hand& hand, std::string_view id) {
  const Tool* const tool = hand.desk().frame.SSActiveToolBars1.find(id);
  if (tool != nullptr && !tool->Enabled) return false;
  hand.note("tool " + std::string(id));
  hand.desk().frame.SSActiveToolBars1_ToolClick(id);
  return true;
}

constexpr std::string_view WaysOut[] = {"mnuFileExit", "mnuFileNew", "mnuFileOpen", "ID_OpenProject"};

/// Any tool of the frame but those that end the show.
bool anyTool(Hand& hand) {
  const auto& tools = hand.desk().frame.SSActiveToolBars1.tools();
  const std::string id = hand.chance.of(tools).Id;
  return std::ranges::find(WaysOut, id) == std::end(WaysOut) && clickTool(hand, id);
}

bool wayOut(Hand& hand) {
  return clickTool(hand, hand.chance.of(WaysOut));
}

/// Nobody works long at a desk without a show.
bool openSomeShow(Hand& hand) {
  if (hand.windows().ABQ != nullptr || hand.desk().OpenProject.Window.Visible) return false;
  return clickTool(hand, hand.chance.oneIn(3) ? "mnuFileNew" : "mnuFileOpen");
}

bool showTool(Hand& hand) {
  static constexpr std::string_view Often[] = {"ID_Go",     "ID_Go",       "ID_StopFade",   "ID_QPlus",
                                               "ID_QMinus", "ID_CueReset", "ID_Blackout",   "ID_ABQ",
                                               "ID_XYQ",    "ID_Effects",  "ID_GrandMaster"};
  return clickTool(hand, hand.chance.of(Often));
}

bool plotTool(Hand& hand) {
  static constexpr std::string_view Often[] = {"mnuFresnel",       "mnuLeko",         "mnuPar38",
                                               "mnuPractical",     "mnuMoving_Light", "mnuMoving_Light",
                                               "ID_DelLight",      "ID_Rotate",       "ID_SelectPointer",
                                               "ID_SelectPointer", "mnuViewGrid"};
  return clickTool(hand, hand.chance.of(Often));
}

bool dropDown(Hand& hand) {
  static constexpr std::string_view Names[] = {"AddLight", "Rotate", "Nothing"};
  hand.desk().frame.SSActiveToolBars1_ToolDropDown(hand.chance.of(Names), 10, 10);
  return true;
}

// ---- Preferences and timings

void fillIn(Hand& hand, frmPreferences& form) {
  hand.typeNumber(form.txtUp, "Up", 0, 10);
  hand.typeNumber(form.txtDown, "Down", 0, 10);
  hand.typeNumber(form.txtDelay, "Delay", 0, 3);
  hand.typeNumber(form.txtColumns, "Columns", 1, 30);
  hand.typeNumber(form.txtRows, "Rows", 1, 10);
  hand.typeNumber(form.txtGap, "Gap", 0, 200);
  hand.typeNumber(form.txtNumSubs, "NumSubs", 0, 24);
}

void tickAndPress(Hand& hand, std::span<CheckBox* const> boxes, std::span<const Button* const> buttons) {
  CheckBox& box = *hand.chance.of(boxes);
  hand.note(box.Caption);
  box.toggle();
  const Button& button = *hand.chance.of(buttons);
  hand.press(button, button.Caption);
}

bool setPreferences(Hand& hand) {
  frmPreferences& form = hand.windows().Preferences;
  if (!form.Window.Visible) return false;
  CheckBox* const boxes[] = {&form.chkShowSub,    &form.chkShowSub,       &form.chkDMXNothing,
                             &form.chkDMXDimmers, &form.chkDMXSubmasters, &form.chkRecord,
                             &form.chkTrigger};
  const Button* const buttons[] = {&form.cmdSave, &form.cmdSave, &form.cmdReset, &form.cmdCancel,
                                   &form.buttonTimings};
  if (hand.chance.oneIn(3)) fillIn(hand, form);
  tickAndPress(hand, boxes, buttons);
  return true;
}

bool setTimings(Hand& hand) {
  frmTimings& form = hand.windows().Timings;
  if (!form.Window.Visible) return false;
  if (hand.chance.oneIn(4)) {
    hand.note("close the timings");
    form.Unload();
    return true;
  }
  const auto fields = form.fields();
  hand.typeNumber(*fields[static_cast<std::size_t>(hand.chance.below(frmTimings::FieldCount - 1))], "rate", 5,
                  500);
  if (hand.chance.oneIn(3)) hand.typeNumber(form.txtNumFixtures, "channels", 500, 512);
  const Button* const buttons[] = {&form.cmdRefresh, &form.cmdDefault, &form.cmdSave};
  const Button& button = *hand.chance.of(buttons);
  hand.watch.excuseFrame();  // a rate that is set begins its grid anew
  hand.press(button, button.Caption);
  return true;
}

bool printSheets(Hand& hand) {
  frmPrintSheets& form = hand.windows().PrintSheets;
  if (!form.Window.Visible) return false;
  CheckBox* const boxes[] = {&form.chkXY, &form.chkAB, &form.chkPatch, &form.chkSubmasters};
  const Button* const buttons[] = {&form.cmdPrint, &form.cmdSavePDF, &form.cmdCancel};
  tickAndPress(hand, boxes, buttons);
  return true;
}

/// At any time of the keyboard's, so that some presses are double taps and some come before the last one.
bool pressGoKey(Hand& hand) {
  constexpr int Span = 1000;  // ms
  const int at = hand.chance.below(Span);
  hand.note("the Go key at " + std::to_string(at));
  hand.desk().frame.goKey(static_cast<std::uint32_t>(at));
  return true;
}

bool closeSmallWindows(Hand& hand) {
  hand.note("close about and status");
  hand.desk().About.cmdOK.click();
  hand.windows().Comm.Window.Visible = false;
  return true;
}

constexpr Deed Deeds[] = {{"any tool", 25, anyTool},
                          {"tools of the show", 25, showTool},
                          {"tools of the plot", 20, plotTool},
                          {"new, open, exit", 2, wayOut},
                          {"a show after none", 100, openSomeShow},
                          {"arrow beside a tool", 1, dropDown},
                          {"preferences", 14, setPreferences},
                          {"timings", 10, setTimings},
                          {"cue sheets", 5, printSheets},
                          {"the Go key", 5, pressGoKey},
                          {"small windows", 1, closeSmallWindows}};

}  // namespace

std::span<const Deed> frameDeeds() {
  return Deeds;
}

}  // namespace velgrove::robot
