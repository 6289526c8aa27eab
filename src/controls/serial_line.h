#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace velgrove {

/// How an operation of a serial line ended. Every result is looked at by name, never as a Boolean.
enum class LineStatus {
  Ok,        ///< done; `count` bytes moved
  Full,      ///< the line takes no byte now, or has none to give
  Gone,      ///< the device has vanished
  Missing,   ///< open: nothing is at that path
  Busy,      ///< open: another program holds the port
  Refused,   ///< open: no permission
  Unusable,  ///< open: not a serial port, or it can't run at 500000 baud
};

/// One word or two for the operator ("held by another program").
[[nodiscard]] const char* describe(LineStatus status);

struct [[nodiscard]] LineResult {
  LineStatus status = LineStatus::Ok;
  std::size_t count = 0;  ///< bytes taken or read

  friend bool operator==(const LineResult&, const LineResult&) = default;
};

/// A raw byte line as the machine offers it: 500000 baud, 8 data bits, no parity, 1 stop bit, no flow
/// control, held by this program alone. No call waits, but for `wait` and `turnRound`.
struct SerialLine {
  std::function<LineStatus(const std::string& path)> open;
  std::function<void()> close;
  /// Takes as many bytes as the line has room for: Ok with the count, Full with 0, or Gone.
  std::function<LineResult(std::span<const std::uint8_t>)> write;
  /// Gives what waits, up to the span's size: Ok with the count, Full when nothing waits, or Gone.
  std::function<LineResult(std::span<std::uint8_t>)> read;
  /// Returns when a byte waits or the line is gone, at the latest after the time given.
  std::function<void(std::chrono::milliseconds)> wait;
  /// Returns when the line takes a byte again or is gone, at the latest after the time given.
  std::function<void(std::chrono::milliseconds)> drain;
  /// Gives the other side time to answer a poll.
  std::function<void(std::chrono::milliseconds)> turnRound;
};

}  // namespace velgrove
