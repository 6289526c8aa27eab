#include "robot/cable.h"

#include <algorithm>

#include "dmx/interface_box.h"
#include "dmx/wire.h"

namespace velgrove::robot {

SerialLine Cable::through(SerialLine line) {
  m_line = std::move(line);
  SerialLine seen = m_line;
  seen.open = [this](const std::string& path) { return Plugged ? m_line.open(path) : LineStatus::Missing; };
  seen.write = [this](std::span<const std::uint8_t> bytes) { return write(bytes); };
  seen.read = [this](std::span<std::uint8_t> into) { return read(into); };
  seen.wait = [this](std::chrono::milliseconds atMost) {
    deskWaits();
    m_line.wait(atMost);
  };
  return seen;
}

/// The rest of a frame is always shorter than a frame, so that its size tells where one begins.
LineResult Cable::write(std::span<const std::uint8_t> bytes) {
  if (!Plugged) return {LineStatus::Gone, 0};
  if (bytes.size() == wire::FrameHead.size() + InterfaceBox::Channels) frameBegins();
  const std::size_t taken = std::min(bytes.size(), Room.value_or(bytes.size()));
  if (Room) *Room -= taken;
  if (taken == 0) return {LineStatus::Full, 0};
  return m_line.write(bytes.first(taken));
}

LineResult Cable::read(std::span<std::uint8_t> into) {
  if (!Plugged) return {LineStatus::Gone, 0};
  if (Noise.empty()) return m_line.read(into);
  const std::size_t given = std::min(into.size(), Noise.size());
  std::copy_n(Noise.begin(), given, into.begin());
  Noise.erase(Noise.begin(), Noise.begin() + static_cast<std::ptrdiff_t>(given));
  return {LineStatus::Ok, given};
}

}  // namespace velgrove::robot
