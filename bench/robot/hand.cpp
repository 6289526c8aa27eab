#include "robot/hand.h"

namespace velgrove::robot {

void Hand::type(TextBox& field, const char* name, const std::string& text) const {
  if (!field.Enabled) return;
  note(std::string(name) + " " + shown(text));
  field.setText(text);
}

void Hand::typeNumber(TextBox& field, const char* name, int lowest, int highest) const {
  type(field, name, numberText(chance, lowest, highest));
}

void Hand::drag(Slider& slider, const char* name) const {
  const int value = chance.between(slider.min(), slider.max());
  note(std::string(name) + " to " + std::to_string(value));
  slider.drag(value);
  if (!chance.oneIn(3)) slider.letGo();
}

void Hand::step(UpDown& spinner, const char* name) const {
  const bool up = chance.oneIn(2);
  note(std::string(name) + (up ? " up" : " down"));
  up ? spinner.up() : spinner.down();
}

void Hand::press(const Button& button, const std::string& name) const {
  note(name + (button.Enabled ? "" : ", which is shut off"));
  button.click();
}

void Hand::choose(ComboBox& combo, const char* name) const {
  const int index = chance.below(static_cast<int>(combo.items().size()) + 1) - 1;
  note(std::string(name) + " item " + std::to_string(index));
  combo.choose(index);
}

void Hand::passTime(int ms) const {
  house.clock.advanceTo(house.clock.now() + Milliseconds(ms), house.desk.machine.timers);
}

BoxAnswer answerBox(Hand& hand, const Box& box) {
  hand.note("BOX " + box.title + ": " + shown(box.text));
  hand.diary.noteBox(box.title, box.text, hand.folder.string());
  constexpr int Deepest = 3;
  const bool waits = !ErrorPattern::mustNotWait();
  if (waits && hand.boxes < Deepest && hand.chance.oneIn(4)) {
    ++hand.boxes;
    hand.passTime(hand.chance.below(2000));
    --hand.boxes;
  }
  if (box.buttons == BoxButtons::Ok) return BoxAnswer::Ok;
  if (box.buttons == BoxButtons::YesNo) return hand.chance.oneIn(2) ? BoxAnswer::Yes : BoxAnswer::No;
  if (!waits) return BoxAnswer::Ignore;
  if (hand.chance.oneIn(8)) return BoxAnswer::Retry;
  if (!hand.chance.oneIn(300)) return BoxAnswer::Ignore;
  hand.note("ABORT");
  hand.saidAbort = true;
  return BoxAnswer::Abort;
}

}  // namespace velgrove::robot
