#pragma once

#include <cstdint>
#include <functional>
#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/lighting_desk.h"

namespace velgrove {

/// Who carries out the lines of a script: the desk, and the box as far as it is ours.
struct Operator {
  LightingDesk& desk;
  std::function<void(int channel, int level)> input;  ///< what the box reports from then on
  std::function<void(int count)> trigger;        ///< so many trigger bytes in the answer to the next poll
  std::function<void(const std::string&)> note;  ///< tells what was passed over
  std::function<void()>& onWait;                 ///< what is done while a handler of the action waits
};

/// The last instant of the fades' clock, which counts milliseconds in 32 bits.
inline constexpr std::int64_t LatestInstant = INT32_MAX;

/// One line of a script: an action of the operator at a time.
struct ScriptStep {
  std::int64_t ms = 0;
  std::function<void(Operator&)> act;  ///< ends by ScriptError where the script can't go on
};

/// A line that can't be understood, or names what isn't there when its time comes: its number and what is
/// wrong with it.
struct ScriptError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads a whole script; throws ScriptError before anything runs.
[[nodiscard]] std::vector<ScriptStep> readScript(std::istream& script);

/// What a script can say, one command a line.
[[nodiscard]] std::string scriptHelp();

}  // namespace velgrove
