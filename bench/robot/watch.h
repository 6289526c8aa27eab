#pragma once

#include <array>
#include <optional>
#include <stdexcept>
#include <string>

#include "core/headless_desk.h"
#include "robot/cable.h"

namespace velgrove::robot {

/// Something that a desk never does.
struct Finding : std::logic_error {
  using std::logic_error::logic_error;
};

/// What holds of a desk at every moment, whatever the operator does.
class Watch {
 public:
  Watch(HeadlessDesk& house, Cable& cable);
  ~Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  /// The next frames may come at another time: the line was cut, the box kept the desk waiting, or the
  /// operator set the rates anew.
  void excuseFrame() { m_excused = UntilOnTheGrid; }
  /// The desk's list of cues and its rows may go apart from here on until the show is opened again.
  void excuseRows(const QueueList& player) {
    m_apart[player.Window.Identity % Remembered] = player.Window.Identity;
  }
  void afterStep();
  /// Writes the open show, reads it again and writes that: all bytes are the same.
  void checkShowKeeps() const;
  [[nodiscard]] long frames() const { return m_frames; }

 private:
  static constexpr unsigned Remembered = 64;
  static constexpr int UntilOnTheGrid = 2;  ///< a late frame, and the one behind it that rejoins the grid

  void frameBegins();
  void frameArrives(InterfaceBox::Frame frame);
  static void checkFrameTime(Nanoseconds gap);
  void checkLine();
  static void checkMarks(const QueueList& player);
  static void checkFade(const QueueList& player);
  void checkForms() const;
  void checkPlots() const;
  void checkRows(const QueueList& player);

  HeadlessDesk& m_house;
  Cable& m_cable;
  ChannelBytes m_begun{};  ///< DMXOutput as the send left it
  std::optional<Nanoseconds> m_lastFrame;
  Nanoseconds m_lastCut{};
  int m_excused = UntilOnTheGrid;  ///< frames
  long m_frames = 0;
  std::uint64_t m_halves = 0;
  std::array<unsigned, Remembered> m_apart{};  ///< identities of players
};

}  // namespace velgrove::robot
