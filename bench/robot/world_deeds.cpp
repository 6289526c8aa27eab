// What happens without the operator: time, the cable, the box, the levels of another desk.

#include "robot/hand.h"

namespace velgrove::robot {
namespace {

bool passTime(Hand& hand) {
  constexpr int Moments[] = {0, 1, 29, 30, 31, 40, 100, 500, 1000, 3000};
  const int ms = hand.chance.oneIn(60)  ? hand.chance.below(180'000)
                 : hand.chance.oneIn(3) ? hand.chance.of(Moments)
                                        : hand.chance.below(1500);
  hand.note(std::to_string(ms) + " ms");
  hand.passTime(ms);
  return true;
}

bool breakCable(Hand& hand) {
  Cable& cable = hand.cable;
  if (!cable.isWhole()) return false;
  hand.watch.excuseFrame();
  if (hand.chance.oneIn(2)) {
    hand.note("unplugged");
    cable.Plugged = false;
    return true;
  }
  constexpr int TwoFrames = 1032;
  cable.Room = static_cast<std::size_t>(hand.chance.below(TwoFrames));
  hand.note("the line stalls after " + std::to_string(*cable.Room) + " bytes");
  return true;
}

bool mendCable(Hand& hand) {
  if (hand.cable.isWhole()) return false;
  hand.note("the cable is whole again");
  hand.watch.excuseFrame();
  hand.cable.Plugged = true;
  hand.cable.Room.reset();
  return true;
}

bool makeNoise(Hand& hand) {
  constexpr int Most = 1500;
  const int count = hand.chance.below(Most);
  hand.note(std::to_string(count) + " bytes of noise");
  for (int i = 0; i < count; ++i)
    hand.cable.Noise.push_back(static_cast<std::uint8_t>(hand.chance.below(256)));
  return true;
}

bool changeBox(Hand& hand) {
  const int kind = hand.chance.below(6);
  hand.note("the box: " + std::to_string(kind));
  switch (kind) {
    case 0:
      hand.house.box.setSilent(true);
      break;
    case 1:
      hand.house.box.setShort(static_cast<std::size_t>(hand.chance.below(512)));
      break;
    default:
      hand.house.box.setSilent(false);
      hand.house.box.setShort(std::nullopt);
  }
  return true;
}

bool changeInput(Hand& hand) {
  const bool submasters = hand.chance.oneIn(2);
  for (int times = hand.chance.between(1, 10); times > 0; --times)
    hand.house.box.setInput(hand.chance.between(1, submasters ? frmSubPane::Count : ChannelCount),
                            hand.chance.below(256));
  hand.note("input moves");
  return true;
}

bool trigger(Hand& hand) {
  const int count = hand.chance.oneIn(10) ? 40 : hand.chance.between(1, 3);
  hand.note(std::to_string(count) + " triggers");
  hand.house.box.addTriggers(count);
  return true;
}

constexpr Deed Deeds[] = {
    {"time", 120, passTime}, {"a broken cable", 2, breakCable}, {"a mended cable", 20, mendCable},
    {"noise", 2, makeNoise}, {"box's answers", 2, changeBox},   {"input", 6, changeInput},
    {"trigger", 2, trigger}};

}  // namespace

std::span<const Deed> worldDeeds() {
  return Deeds;
}

}  // namespace velgrove::robot
