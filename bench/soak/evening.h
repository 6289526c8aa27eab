#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "core/headless_desk.h"

namespace velgrove::soak {

/// Something that a desk never does, however long it runs.
struct Finding : std::logic_error {
  using std::logic_error::logic_error;
};

/// Who works the desk: the clock and the operator's hand, with a face between or without.
struct Hands {
  std::function<void(const std::function<void()>&)> act;  ///< one action of the operator
  std::function<void(std::int64_t ms)> runTo;             ///< from the evening's begin
  std::function<void(std::function<void()>)> whenAsked;   ///< what he does in the dialog of his next action
};

/// An endless evening: both lists go on by turns, with fades, links, a loop, a chase, a submaster and levels
/// of another desk. It knows where the marks must stand, and looks before each Go.
class Evening {
 public:
  /// So that 100000 Gos take 72 hours.
  static constexpr std::int64_t BetweenGos = 2592;  // ms

  Evening(HeadlessDesk& house, Hands hands) : m_house(house), m_hands(std::move(hands)) {}

  /// The show that it is played with.
  static void write(const std::filesystem::path& file);

  void begin();
  /// The next Go, at its time: of XY and AB by turns.
  void go();
  [[nodiscard]] long gos() const { return m_gos; }
  [[nodiscard]] long byLinks() const { return m_byLinks; }

 private:
  /// Where a list must be.
  struct Expected {
    int stage = 1;
    int rounds = 0;
    bool dark = true;  ///< nothing has gone on since the levels were cleared
  };

  void goXY();
  void goAB();
  void arrive(const char* list, QueueList& player, const Expected& expected) const;
  static void checkLevels(QueueList& player, int row);
  void loop(QueueList& player);
  void moveOthers();

  HeadlessDesk& m_house;
  Hands m_hands;
  Expected m_xy;
  Expected m_ab;
  long m_gos = 0;
  long m_byLinks = 0;
};

/// Memory of this process that is in use, kB.
[[nodiscard]] long residentMemory();

/// Samples of the memory through a run, and whether it stays.
class MemoryWatch {
 public:
  /// `share` of the run that is done, 0 to 1.
  void look(double share);
  /// Prints start, a tenth and end. Finding when the end is above the tenth by more than `room` kB.
  void report(long room) const;

 private:
  long m_start = 0;
  long m_tenth = 0;
  long m_end = 0;
};

}  // namespace velgrove::soak
