#pragma once

#include <filesystem>
#include <vector>

#include "robot/hand.h"

namespace velgrove::robot {

/// One desk under the robot's hand, from its start to its end.
class Life {
 public:
  /// `folder` holds the desk's settings and shows, which outlive it.
  Life(Chance& chance, Diary& diary, const std::filesystem::path& folder);
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;

  void start();
  void step();
  [[nodiscard]] bool isOver() const { return m_house.quit; }
  [[nodiscard]] long frames() const { return m_watch.frames(); }
  [[nodiscard]] double seconds() const;  ///< that passed for the desk

 private:
  void act(const std::function<void()>& work);
  void checkEnd() const;

  Chance& m_chance;
  Diary& m_diary;
  Cable m_cable;
  HeadlessDesk m_house;
  Watch m_watch;
  Hand m_hand;
  int m_steps = 0;
};

/// Puts the shows there that the robot finds: the demo, one of two views, a damaged one and one that is none.
void layOutShows(const std::filesystem::path& folder);

}  // namespace velgrove::robot
