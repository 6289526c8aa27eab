#pragma once

#include <deque>
#include <mutex>
#include <string>

#include "controls/error_pattern.h"
#include "dmx/velgrove_comm.h"

namespace velgrove {

/// What the operator was told, for whoever looks into the session's log the day after: a line with the time
/// of day for each box and for each change of what the interface says of itself.
///
///     21:04:05.123 interface: The interface is unplugged. Output goes on when it is back.
///     21:04:07.456 box: "Velgrove" "That file is gone."
class Journal {
 public:
  /// From here on a log whose reader is gone is an error like others, and no signal that ends the desk.
  Journal();
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  /// From any thread, with the desk taken or free: nothing is written yet.
  void note(const Box& box);
  void note(const VelgroveComm& comm);

  /// Writes what was noted to standard error, with the desk free. What a log that nobody empties doesn't take
  /// stands back until the next time, and of a long pile the oldest lines go.
  void write();

 private:
  void noteWords(std::string& told, const std::string& words, const char* forNone);
  void leave(const std::string& line);
  void take();

  const int m_file;    ///< standard error, or the same terminal opened so that no writer waits
  std::mutex m_mutex;  ///< never held while a line is written: the desk would wait for the log
  std::deque<std::string> m_lines;
  std::deque<std::string> m_leaving;  ///< of the thread that writes
  std::string m_version;
  std::string m_condition;
};

}  // namespace velgrove
