#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "controls/serial_line.h"

namespace velgrove::robot {

/// The cable between the desk and its box, with what happens to cables.
class Cable {
 public:
  bool Plugged = true;
  std::optional<std::size_t> Room;    ///< bytes that the line still takes before it stalls; none: it doesn't
  std::vector<std::uint8_t> Noise;    ///< what the desk reads before the box's own bytes
  std::function<void()> frameBegins;  ///< a whole frame is handed to the line
  std::function<void()> deskWaits;    ///< for bytes of the box, while everything else stands

  /// Anything that frames may be late or missing for.
  [[nodiscard]] bool isWhole() const { return Plugged && !Room; }
  /// The line as the desk sees it. The cable must outlive it.
  [[nodiscard]] SerialLine through(SerialLine line);

 private:
  [[nodiscard]] LineResult write(std::span<const std::uint8_t> bytes);
  [[nodiscard]] LineResult read(std::span<std::uint8_t> into);

  SerialLine m_line;
};

}  // namespace velgrove::robot
