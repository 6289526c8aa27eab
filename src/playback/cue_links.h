#pragma once

#include <functional>
#include <string>

#include "playback/queue_list.h"

namespace velgrove {

/// What the link of a cue starts, as a list names it and in words: "AB 12.00", "effect 3"; "" for nothing.
[[nodiscard]] std::string linkText(const std::string& list, const std::string& number);

/// The links of cues: one Go that starts another list, or an effect.
class CueLinks {
 public:
  static constexpr int Deepest = 32;  ///< Gos inside each other, the operator's own among them

  struct Wiring {
    std::function<QueueList&()> ABQ;  ///< Fault::ObjectMissing when no show is open
    std::function<QueueList&()> XYQ;
    /// Brings an effect's window down when the Go came from outside, and runs the effect.
    std::function<void(const std::string& number)> startEffect;
  };

  CueLinks(ShowState& show, Machine& machine, Wiring wiring)
      : m_show(show), m_errors(machine.errors), m_wiring(std::move(wiring)) {}

  /// Starts what a cue is linked to: list "AB" or "XY" with the text of a row, "EF" with that of an effect.
  /// Links that start each other more than 32 deep are Fault::Recursion.
  void SimultaneousStart(const std::string& list, const std::string& number);

 private:
  void goTo(QueueList& player, const std::string& number);
  void startAB(const std::string& number);
  void startXY(const std::string& number);

  ShowState& m_show;
  ErrorPattern& m_errors;
  Wiring m_wiring;
  int m_depth = 0;
};

}  // namespace velgrove
