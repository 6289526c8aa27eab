// The operator at the submasters, the grand master, the fixtures' dialogs, the effects and the bars.

#include "robot/hand.h"

namespace velgrove::robot {
namespace {

constexpr int Right = 2;
constexpr int Notch = 120;

void turnWheel(Hand& hand, const MouseSource& mouse) {
  bool handled = false;
  const int notches = hand.chance.between(-3, 3);
  hand.note("wheel " + std::to_string(notches));
  if (mouse.MouseWheel) mouse.MouseWheel(notches * Notch, handled);
}

// ---- Submasters

bool pressSubMaster(Hand& hand) {
  if (!hand.desk().frame.SubPaneVisible || hand.windows().Documents.empty()) return false;
  frmSubPane& panel = hand.windows().SubPane;
  const auto index = static_cast<std::int16_t>(hand.chance.below(frmSubPane::Count));
  const int kind = hand.chance.below(4);
  hand.note("submaster " + std::to_string(index + 1) + " hand " + std::to_string(kind));
  switch (kind) {
    case 0:
      panel.Command1_MouseDown(index, Right, 0, 0, 0);
      break;
    case 1:
      panel.Label1_Click(index);
      break;
    case 2:
      hand.type(panel.Text1[static_cast<std::size_t>(index)], "its name", wordText(hand.chance));
      break;
    default:
      panel.Command1_MouseDown(index, 1, 0, 0, 0);
      panel.Command1_Click(index);
  }
  return true;
}

bool moveFader(Hand& hand) {
  frmSubMasterSmall& fader = hand.windows().SubPane.Fader;
  if (!fader.Window.Visible) return false;
  if (hand.chance.oneIn(4))
    turnWheel(hand, fader.MouseHelper2);
  else
    hand.drag(fader.Pot, "fader");
  return true;
}

bool recordSubMaster(Hand& hand) {
  frmSubMasterRecord& dialog = hand.windows().SubPane.Record;
  if (!dialog.Window.Visible) return false;
  hand.type(dialog.txtName, "name", wordText(hand.chance));
  switch (hand.chance.below(4)) {
    case 0:
      hand.press(dialog.Command2, "Delete");
      break;
    case 1:
      hand.press(dialog.Command1, "Cancel");
      break;
    default:
      hand.press(dialog.cmdRecord, "Record");
  }
  return true;
}

// ---- The grand master

bool moveGrandMaster(Hand& hand) {
  frmGrandMaster& master = hand.windows().GrandMaster;
  if (!master.Window.Visible) return false;
  switch (hand.chance.below(6)) {
    case 0:
      turnWheel(hand, master.MouseHelper3);
      break;
    case 1:
      hand.step(master.UpDown1, "grand master");
      break;
    case 2:
      hand.typeNumber(master.Level, "grand master", frmGrandMaster::Bottom, frmGrandMaster::Top);
      break;
    case 3:
      hand.press(master.cmdOK, "OK");
      break;
    case 4:
      hand.press(master.cmdCancel, "Cancel");
      break;
    default:
      hand.drag(master.VSlider1, "grand master");
  }
  return true;
}

// ---- Fixtures

bool setFixture(Hand& hand, FixtureForm& dialog, Slider& level) {
  if (!dialog.Window.Visible) return false;
  switch (hand.chance.below(9)) {
    case 0:
      hand.typeNumber(dialog.Channel, "channel", 0, 60);
      break;
    case 1:
      hand.typeNumber(dialog.Level, "level", 0, 100);
      break;
    case 2:
      hand.step(dialog.UpDown1, "level");
      break;
    case 3:
      hand.type(hand.chance.of(dialog.Text1), "property", wordText(hand.chance));
      break;
    case 4:
      dialog.TabStrip1.choose(hand.chance.between(1, 2));
      break;
    case 5:
      hand.press(dialog.Command1, "OK");
      break;
    case 6:
      hand.press(dialog.CancelButton, "Cancel");
      break;
    case 7:
      turnWheel(hand, dialog.MouseHelper1);
      break;
    default:
      hand.drag(level, "level");
  }
  return true;
}

bool setConventional(Hand& hand) {
  FixtureDlg& dialog = hand.windows().Fixture;
  return setFixture(hand, dialog.Dialog, dialog.VSlider1);
}

bool setMoving(Hand& hand) {
  MovingFixtureDlg& dialog = hand.windows().MovingFixture;
  if (hand.chance.oneIn(2)) return setFixture(hand, dialog.Dialog, dialog.VSlider2);
  if (!dialog.Dialog.Window.Visible) return false;
  switch (hand.chance.below(5)) {
    case 0:
      hand.drag(dialog.VSlider3, "X");
      break;
    case 1:
      hand.drag(dialog.VSlider4, "Y");
      break;
    case 2:
      hand.press(dialog.cmdAttachMouse, "Attach Mouse");
      break;
    case 3:
      (hand.chance.oneIn(2) ? dialog.res_8bit : dialog.res_16Bit).choose();
      break;
    default:
      dialog.Dialog.MouseHelper1.X = hand.chance.below(4000);
      dialog.Dialog.MouseHelper1.Y = hand.chance.below(4000);
      dialog.Dialog.MouseHelper1.ButtonDown = hand.chance.oneIn(5);
  }
  return true;
}

// ---- Effects

void fillInChase(Hand& hand, EffectsQueue& effects) {
  hand.typeNumber(effects.txtChannelStart, "start", 1, 512);
  hand.typeNumber(effects.txtChannelStop, "stop", 1, 512);
  hand.typeNumber(effects.txtSpeedMS, "speed", 10, 1000);
  hand.typeNumber(effects.txtDurationSec, "loops", 0, 5);
}

bool workOnEffects(Hand& hand) {
  EffectsQueue& effects = hand.windows().Effects;
  if (!effects.Window.Visible) return false;
  constexpr int MostEffects = 20;
  switch (hand.chance.below(7)) {
    case 0:
      hand.choose(effects.cmboEffects, "preset");
      break;
    case 1:
      fillInChase(hand, effects);
      break;
    case 2:
      if (effects.ListViewEffects.count() < MostEffects) hand.press(effects.cmdAddEffect, "Add");
      break;
    case 3:
      hand.press(effects.cmdRemoveEffect, "Remove");
      break;
    case 4:
      effects.ListViewEffects_MouseDown(hand.chance.below(effects.ListViewEffects.count() + 1));
      break;
    case 5:
      hand.press(effects.cmdTest, "Test");
      break;
    default:
      if (hand.chance.oneIn(4)) effects.Unload();
  }
  return true;
}

// ---- Bars

bool workOnBars(Hand& hand) {
  auto& all = hand.windows().Bars;
  if (all.empty()) return false;
  frmBars& bars = *hand.chance.of(all);
  constexpr std::size_t MostWindows = 4;
  if (all.size() > MostWindows || hand.chance.oneIn(4)) {
    hand.note("close bars");
    hand.windows().closeBars(bars);
    return true;
  }
  constexpr int Largest = 20'000;  // twips
  bars.Window.Width = static_cast<float>(hand.chance.below(Largest));
  bars.Window.Height = static_cast<float>(hand.chance.below(Largest));
  hand.note("resize bars");
  bars.Form_Resize();
  return true;
}

constexpr Deed Deeds[] = {{"submaster", 10, pressSubMaster},
                          {"fader of a submaster", 14, moveFader},
                          {"record dialog of a submaster", 8, recordSubMaster},
                          {"grand master", 12, moveGrandMaster},
                          {"fixture's dialog", 20, setConventional},
                          {"moving light's dialog", 20, setMoving},
                          {"effects", 14, workOnEffects},
                          {"bars", 4, workOnBars}};

}  // namespace

std::span<const Deed> surfaceDeeds() {
  return Deeds;
}

}  // namespace velgrove::robot
