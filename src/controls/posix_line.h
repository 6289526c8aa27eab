#pragma once

#include "controls/serial_line.h"

namespace velgrove {

/// The machine's own serial ports, through POSIX terminal calls. Pseudo-terminals work like any other port.
///
/// Copies of the line share one port; it closes with the last of them. Opening an open line closes it first.
/// A closed line reads as gone.
[[nodiscard]] SerialLine makePosixLine();

}  // namespace velgrove
