#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "controls/clock.h"
#include "controls/serial_line.h"

namespace velgrove {

/// The port as a protocol uses it. Bytes written are collected until `send` hands them to the line as one
/// block, so that no half block ever stands on the wire: a block of which the line took a part is finished
/// before the next one begins, and one that it can't take at all is dropped and counted.
///
/// A device that vanishes leaves the port open as far as the caller can tell: blocks are swallowed and
/// counted until the device is back, and the port reopens it by itself.
class SerialPort {
 public:
  enum class Delivery { Sent, Dropped, Swallowed };

  struct Counters {
    std::uint64_t sent = 0;       ///< blocks that the line took whole, or will
    std::uint64_t dropped = 0;    ///< blocks that a full line could not take
    std::uint64_t swallowed = 0;  ///< blocks written while the device was gone
    std::uint64_t losses = 0;     ///< times that the device vanished
  };

  SerialPort(SerialLine line, Clock clock) : m_line(std::move(line)), m_clock(std::move(clock)) {}
  ~SerialPort() { close(); }
  SerialPort(const SerialPort&) = delete;
  SerialPort& operator=(const SerialPort&) = delete;

  std::string Path;  ///< the device to open
  /// Where a lost device stands again; nothing while it is away. Without it the same path is tried.
  std::function<std::optional<std::string>()> FindAgain;

  [[nodiscard]] bool PortOpen() const { return m_state != State::Closed; }
  [[nodiscard]] bool lost() const { return m_state == State::Lost; }
  [[nodiscard]] const Counters& counters() const { return m_counters; }

  void open();   ///< Fault::Device, with the reason in words, when the line doesn't open
  void close();  ///< behind the rest of a block that was begun, unless the line is stuck

  void Output(std::span<const std::uint8_t> bytes);
  Delivery send();

  void discardInput();
  /// Takes what waits, up to the span's size, and gives its length; 0 at once when nothing waits.
  [[nodiscard]] std::size_t Input(std::span<std::uint8_t> into);
  void wait(Milliseconds atMost);
  void turnRound(Milliseconds time);

 private:
  enum class State { Closed, Open, Lost };

  Delivery hand();
  bool writeRest();
  void lose();
  void tryAgain();

  /// Room for the rest of one block and a whole one behind it.
  static constexpr std::size_t Capacity = 1100;
  static constexpr Milliseconds BetweenTries{250};
  static constexpr Milliseconds ClosingTime{50};

  SerialLine m_line;
  Clock m_clock;
  State m_state = State::Closed;
  Counters m_counters;
  Nanoseconds m_nextTry{};
  std::array<std::uint8_t, Capacity> m_bytes{};
  std::size_t m_rest = 0;  ///< bytes at the front that finish the block before
  std::size_t m_size = 0;  ///< bytes in all
};

}  // namespace velgrove
