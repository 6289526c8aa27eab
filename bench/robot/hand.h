#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "core/headless_desk.h"
#include "robot/cable.h"
#include "robot/chance.h"
#include "robot/diary.h"
#include "robot/texts.h"
#include "robot/watch.h"

namespace velgrove::robot {

/// What the robot has in its hand.
struct Hand {
  Chance& chance;
  Diary& diary;
  HeadlessDesk& house;
  Cable& cable;
  Watch& watch;
  std::filesystem::path folder;
  int boxes = 0;           ///< that are open, inside each other
  bool saidAbort = false;  ///< to a box of this step

  [[nodiscard]] LightingDesk& desk() const { return house.desk; }
  [[nodiscard]] Windows& windows() const { return house.desk.windows; }
  void note(const std::string& line) const { diary.note(line); }

  /// Types a text into a field that takes one.
  void type(TextBox& field, const char* name, const std::string& text) const;
  void typeNumber(TextBox& field, const char* name, int lowest, int highest) const;
  void drag(Slider& slider, const char* name) const;
  void step(UpDown& spinner, const char* name) const;
  void press(const Button& button, const std::string& name) const;
  void choose(ComboBox& combo, const char* name) const;
  void passTime(int ms) const;
};

/// One thing that the robot can do. `act` is false when there is nothing to do it on.
struct Deed {
  const char* name;
  int weight;
  bool (*act)(Hand&);
};

// What the operator does at the windows, each a table of its own
[[nodiscard]] std::span<const Deed> playerDeeds();
[[nodiscard]] std::span<const Deed> plotDeeds();
[[nodiscard]] std::span<const Deed> surfaceDeeds();
[[nodiscard]] std::span<const Deed> dialogDeeds();
[[nodiscard]] std::span<const Deed> frameDeeds();
/// What happens without the operator: time, the cable, the box
[[nodiscard]] std::span<const Deed> worldDeeds();

/// One turn of a wait: the robot does something in the dialog that is waited for.
void answerDialog(Hand& hand);
/// The platform's dialogs answer at random.
void setPlatformDialogs(Hand& hand);
[[nodiscard]] BoxAnswer answerBox(Hand& hand, const Box& box);

}  // namespace velgrove::robot
