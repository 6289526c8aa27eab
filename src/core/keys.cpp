#include "core/keys.h"

#include <algorithm>

namespace velgrove {

std::span<const FrameKey> frameKeys() {
  static constexpr FrameKey All[] = {
      {"Space", "ID_Go", "", "Go of the XY list"},
      {"F9", "ID_StopFade", "", "Stop the fade of the XY list"},
      {"F8", "ID_QPlus", "", "Stage cue on, without a fade"},
      {"F7", "ID_QMinus", "", "Stage cue back, without a fade"},
      {"F12", "ID_Blackout", "", "Blackout: stops both lists, grand master to its bottom"},
      {"F2", "ID_ABQ", "", "Show the AB list"},
      {"F3", "ID_XYQ", "", "Show the XY list"},
      {"F4", "mnuViewLevelWheel", "ID_GrandMaster", "Show the grand master"},
      {"F10", "ID_DimScreen", "", "Dim the screen for a blackout, and back"},
      {"F11", "ID_ShowView", "", "Show view: one list in large type"},
      {"Ctrl+O", "mnuFileOpen", "ID_OpenProject", "Open a show"},
      {"Ctrl+S", "mnuFileSave", "ID_Save", "Save the show"},
      {"Ctrl+P", "mnuFilePrint", "", "Print the plot"},
      {"F1", "mnuHelpContents", "", "Help"},
  };
  return All;
}

std::span<const WindowKey> windowKeys() {
  static constexpr std::string_view Anywhere = "Anywhere";
  static constexpr std::string_view List = "Cue list";
  static constexpr std::string_view Plot = "Plot";
  static constexpr std::string_view Subs = "Submasters";
  static constexpr WindowKey All[] = {
      {"F6", Anywhere, "From the window in use to the band, the tools, the submasters, and back"},
      {"Tab", Anywhere, "To the next control"},
      {"Ctrl+Tab", Anywhere, "To the next window of the frame"},
      {"Ctrl+W", Anywhere, "Put the window in use away"},
      {"Enter", Anywhere, "Press the button or tick the box that has the focus"},
      {"Alt+letter", Anywhere, "The menu or button whose letter is underlined"},
      {"Escape", "Dialogs", "Leave the dialog"},
      {"Up, Down", List, "Select the row above or below"},
      {"Page Up, Page Down", List, "Select a row one page away"},
      {"Home, End", List, "Select the first or last row"},
      {"Alt+G", List, "Go of this list"},
      {"Alt+S", List, "Stop this list"},
      {"Alt+R", List, "Record the stage as a cue"},
      {"Alt+U", List, "Update the selected cue"},
      {"Up, Down", "Numbers", "Step the number up or down"},
      {"Arrows, Home, End", "Bars", "From bar to bar, and what it shows in words"},
      {"Right, Left", Plot, "To the fixture on the next channel, or the one before"},
      {"Page Down, Page Up", Plot, "Ten fixtures on, or back"},
      {"Enter", Plot, "Open the dialog of the fixture that is picked"},
      {"Ctrl+Enter", Plot, "Add it to those that are picked"},
      {"Escape", Plot, "Pick nothing"},
      {"Ctrl+Plus, Ctrl+Minus, Ctrl+0", "Show view", "Larger, smaller or usual type"},
      {"Ctrl+Plus, Ctrl+Minus", "Help", "Larger or smaller type"},
      {"Ctrl+F", "Help", "Search"},
      {"Alt+Left, Alt+Right, Alt+Home", "Help", "The page before, the page after, the first page"},
      {"Home", Plot, "See the whole plot"},
      {"Delete", Plot, "Take off the fixtures that are picked"},
      {"Left, Right", Subs, "To the next submaster"},
      {"Up, Down", Subs, "To its number; to its level"},
      {"Enter", Subs, "On the number its fader, on the level full or off"},
      {"Menu, Shift+F10", Subs, "Record the stage on it"},
  };
  return All;
}

std::string_view keyOf(std::string_view tool) {
  const auto presses = [tool](const FrameKey& key) { return key.Tool == tool || key.Twin == tool; };
  const auto found = std::ranges::find_if(frameKeys(), presses);
  return found == frameKeys().end() ? std::string_view{} : found->Key;
}

}  // namespace velgrove
