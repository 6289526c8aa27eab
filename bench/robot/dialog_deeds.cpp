// The operator in the dialogs that a handler waits for, and in the platform's own.

#include <optional>

#include "robot/hand.h"

namespace velgrove::robot {
namespace {

// ---- Opening a show

void fillInNew(Hand& hand, frmOpenProject& dialog) {
  hand.type(dialog.ProjectName, "show", wordText(hand.chance));
  if (hand.chance.oneIn(4)) hand.type(dialog.ProjectDescription, "about", wordText(hand.chance));
  if (hand.chance.oneIn(3)) hand.press(dialog.cmdNewBrowse, "Browse");
  if (hand.chance.oneIn(6)) hand.type(dialog.Location, "location", wordText(hand.chance));
  if (hand.chance.oneIn(6)) dialog.Location.setText(hand.folder.string() + "/");
}

/// Never one outside the robot's own: a save would go there.
void openFolder(Hand& hand, DirListBox& folders) {
  if (folders.rows().empty()) return;
  const int row = hand.chance.below(static_cast<int>(folders.rows().size()));
  const std::string path = folders.rows()[static_cast<std::size_t>(row)].Path;
  if (!path.starts_with(hand.folder.string())) return;
  hand.note("folder " + std::to_string(row));
  folders.highlight(row);
  folders.openHighlighted();
}

void chooseExisting(Hand& hand, frmOpenProject& dialog) {
  if (hand.chance.oneIn(8))
    hand.type(dialog.txtSearchSpec, "pattern", hand.chance.oneIn(2) ? "*.*" : "*.kel");
  if (hand.chance.oneIn(12)) openFolder(hand, dialog.dirList);
  const auto& files = dialog.filList.items();
  if (files.empty()) return;
  const int file = hand.chance.below(static_cast<int>(files.size()));
  hand.note("file " + shown(files[static_cast<std::size_t>(file)]));
  dialog.filList.choose(file);
}

/// Back to where the shows are, so that the robot doesn't end among folders without any.
void returnToData(Hand& hand, frmOpenProject& dialog) {
  hand.note("back to the data folder");
  dialog.dirList.setPath(hand.folder / "data");
  dialog.txtSearchSpec.setText("*.kel");
}

void workOnOpening(Hand& hand, frmOpenProject& dialog) {
  if (hand.chance.oneIn(3)) dialog.Tabs.choose(hand.chance.between(1, 2));
  const bool isNew = dialog.Tabs.selected() == static_cast<int>(OpenTab::New);
  isNew ? fillInNew(hand, dialog) : chooseExisting(hand, dialog);
  switch (hand.chance.below(12)) {
    case 0:
      return hand.press(dialog.CancelButton, "Cancel");
    case 1:
      hand.note("close box");
      return dialog.Form_QueryUnload();
    case 2:
      return returnToData(hand, dialog);
    default:
      hand.press(dialog.cmdOpenButton, "Open");
  }
}

bool openShow(Hand& hand) {
  frmOpenProject& dialog = hand.desk().OpenProject;
  if (!dialog.Window.Visible) return false;
  workOnOpening(hand, dialog);
  return true;
}

// ---- The others

void answerWantToSave(Hand& hand, frmWanttoSave& dialog) {
  switch (hand.chance.below(4)) {
    case 0:
      return hand.press(dialog.Save, "Save");
    case 1:
      return hand.press(dialog.DontSave, "Don't Save");
    case 2:
      return hand.press(dialog.Cancel, "Cancel");
    default:
      hand.note("close box");
      dialog.Form_QueryUnload();
  }
}

void workOnLoop(Hand& hand, frmLoop& dialog) {
  hand.typeNumber(dialog.txtStartCue, "start", 0, 10);
  hand.typeNumber(dialog.txtLastCue, "last", 0, 20);
  hand.typeNumber(dialog.txtLoopCount, "count", 0, 4);
  if (hand.chance.oneIn(3)) hand.step(dialog.UpDownLoopCount, "count");
  if (hand.chance.oneIn(6)) hand.step(dialog.UpDownLastCue, "last");
  if (hand.chance.oneIn(8)) hand.press(dialog.cmdClear, "Clear");
  if (hand.chance.oneIn(5)) return dialog.Unload();
  hand.press(dialog.Command1, "OK");
}

std::optional<std::string> saveName(Hand& hand) {
  switch (hand.chance.below(8)) {
    case 0:
      return std::nullopt;
    case 1:
      return "";
    case 2:
      return hand.folder / "nowhere" / "a.kel";
    default:
      return hand.folder / "data" /
             ("show" + std::to_string(hand.chance.below(8)) + (hand.chance.oneIn(3) ? "" : ".kel"));
  }
}

constexpr Deed Deeds[] = {{"open dialog", 200, openShow}};

}  // namespace

std::span<const Deed> dialogDeeds() {
  return Deeds;
}

void answerDialog(Hand& hand) {
  LightingDesk& desk = hand.desk();
  if (hand.chance.oneIn(3)) hand.passTime(hand.chance.below(300));
  desk.act([&] {
    if (desk.WanttoSave.Window.Visible) return answerWantToSave(hand, desk.WanttoSave);
    if (desk.windows.Loop.Window.Visible) return workOnLoop(hand, desk.windows.Loop);
    if (desk.OpenProject.Window.Visible) workOnOpening(hand, desk.OpenProject);
  });
}

void setPlatformDialogs(Hand& hand) {
  Dialogs& dialogs = hand.desk().machine.Dialogs;
  dialogs.saveFile = [&hand](const auto&...) {
    auto name = saveName(hand);
    hand.note(name ? "save as " + shown(*name) : "no name to save as");
    return name;
  };
  dialogs.BrowseForDir = [&hand](const auto&...) {
    return hand.chance.oneIn(3) ? std::string() : (hand.folder / "data").string() + "/";
  };
  dialogs.choosePrinter = [&hand](const auto&) { return hand.chance.oneIn(2); };
  dialogs.printView = [](const Drawing&) {};
  hand.windows().PrintSheets.Press = {.anyPrinter = [&hand] { return hand.chance.oneIn(2); },
                                      .print = [](const Printout&) {},
                                      .pdf = [](const Printout&) { return std::string("%PDF"); }};
}

}  // namespace velgrove::robot
