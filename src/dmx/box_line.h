#pragma once

#include <functional>

#include "controls/serial_line.h"
#include "dmx/interface_box.h"

namespace velgrove {

/// A line in memory with an interface box at its other end, for rehearsal, tests and benchmarks. It opens at
/// any path, takes whatever is written, and the box answers before the writing returns. `pass` is called with
/// the time that a wait takes while nothing is there to be read.
[[nodiscard]] SerialLine boxOnALine(InterfaceBox& box, std::function<void(std::chrono::milliseconds)> pass);

}  // namespace velgrove
