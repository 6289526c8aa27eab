#include "controls/serial_port.h"

#include <algorithm>

#include "controls/faults.h"

namespace velgrove {

void SerialPort::open() {
  if (m_state != State::Closed) return;
  const LineStatus status = m_line.open(Path);
  if (status != LineStatus::Ok) throw RunTimeError(Fault::Device, Path + ": " + describe(status));
  m_state = State::Open;
  m_rest = m_size = 0;
}

void SerialPort::close() {
  if (m_state == State::Open && !writeRest()) {
    m_line.drain(ClosingTime);
    writeRest();
  }
  if (m_state == State::Open) m_line.close();
  m_state = State::Closed;
}

void SerialPort::Output(std::span<const std::uint8_t> bytes) {
  if (m_state == State::Closed) throw RunTimeError(Fault::Device, "the port is not open");
  if (m_size + bytes.size() > Capacity) throw RunTimeError(Fault::Device, "the transmit buffer is full");
  std::ranges::copy(bytes, m_bytes.begin() + static_cast<std::ptrdiff_t>(m_size));
  m_size += bytes.size();
}

SerialPort::Delivery SerialPort::send() {
  if (m_state == State::Lost) tryAgain();
  const Delivery delivery = m_state == State::Open ? hand() : Delivery::Swallowed;
  switch (delivery) {
    case Delivery::Sent:
      ++m_counters.sent;
      break;
    case Delivery::Dropped:
      ++m_counters.dropped;
      break;
    case Delivery::Swallowed:
      m_rest = m_size = 0;
      ++m_counters.swallowed;
      break;
  }
  return delivery;
}

/// Hands the block at the end of the buffer to the line.
SerialPort::Delivery SerialPort::hand() {
  // The rest of the block before goes first; while the line doesn't take it whole, the new block has no
  // place.
  if (m_rest > 0 && !writeRest()) {
    if (m_state == State::Lost) return Delivery::Swallowed;
    m_size = m_rest;
    return Delivery::Dropped;
  }
  const std::size_t whole = m_size;
  m_rest = m_size;
  if (!writeRest()) {
    if (m_state == State::Lost) return Delivery::Swallowed;
    if (m_rest == whole) {
      m_rest = m_size = 0;
      return Delivery::Dropped;
    }
  }
  return Delivery::Sent;
}

/// Writes the first m_rest bytes and takes what the line took out of the buffer; true when all of them went.
bool SerialPort::writeRest() {
  while (m_rest > 0) {
    const LineResult result = m_line.write(std::span(m_bytes).first(m_rest));
    if (result.status == LineStatus::Gone) {
      lose();
      return false;
    }
    if (result.status != LineStatus::Ok || result.count == 0) return false;
    std::copy(m_bytes.begin() + static_cast<std::ptrdiff_t>(result.count),
              m_bytes.begin() + static_cast<std::ptrdiff_t>(m_size), m_bytes.begin());
    m_rest -= result.count;
    m_size -= result.count;
  }
  return true;
}

void SerialPort::lose() {
  m_line.close();
  m_state = State::Lost;
  m_rest = m_size = 0;
  m_nextTry = m_clock.now() + BetweenTries;
  ++m_counters.losses;
}

void SerialPort::tryAgain() {
  if (m_clock.now() < m_nextTry) return;
  m_nextTry = m_clock.now() + BetweenTries;
  const auto path = FindAgain ? FindAgain() : std::optional(Path);
  if (!path || m_line.open(*path) != LineStatus::Ok) return;
  Path = *path;
  m_state = State::Open;
}

void SerialPort::discardInput() {
  std::array<std::uint8_t, 256> scrap{};
  constexpr int AtMost = 64;  // a line that floods us must not hold up the desk
  for (int turn = 0; turn < AtMost && Input(scrap) > 0; ++turn) {
  }
}

std::size_t SerialPort::Input(std::span<std::uint8_t> into) {
  if (m_state != State::Open) return 0;
  const LineResult result = m_line.read(into);
  if (result.status == LineStatus::Gone) lose();
  return result.status == LineStatus::Ok ? result.count : 0;
}

void SerialPort::wait(Milliseconds atMost) {
  if (m_state == State::Open) m_line.wait(atMost);
}

void SerialPort::turnRound(Milliseconds time) {
  if (m_state == State::Open) m_line.turnRound(time);
}

}  // namespace velgrove
