#pragma once

#include <stdexcept>
#include <string>

namespace velgrove {

/// What can go wrong at run time inside a handler. The error pattern (error_pattern.h) answers all of them.
enum class Fault {
  Overflow,       ///< a number doesn't fit the integer that it goes into
  TypeMismatch,   ///< a text that is no number where a number is wanted
  Subscript,      ///< a channel, row or position that isn't there
  ObjectMissing,  ///< something to work on that was never set: no list, no view, no cue
  Recursion,      ///< cue links that start each other without end
  File,           ///< a file that can't be opened, read or written
  Device,         ///< the interface's line failed
  Settings,       ///< the settings store refused
};
inline constexpr int FaultCount = static_cast<int>(Fault::Settings) + 1;

/// A run-time error: its kind, and words for whoever reads a log or a test.
class RunTimeError : public std::runtime_error {
 public:
  RunTimeError(Fault fault, const std::string& what) : std::runtime_error(what), m_fault(fault) {}
  [[nodiscard]] Fault fault() const { return m_fault; }

 private:
  Fault m_fault;
};

}  // namespace velgrove
