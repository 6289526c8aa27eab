#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// What goes over the line between the desk and the interface box. The desk always speaks first; every
/// command opens with the byte 01.
namespace velgrove::wire {

inline constexpr std::array<std::uint8_t, 4> FrameHead{0x01, 0x02, 0x00,
                                                       0x00};  ///< then 512 levels, channel 1 first
inline constexpr std::array<std::uint8_t, 7> ReadLevels{0x01, 0x02, 0x03, 0x01, 0x04, 0x02, 0x01};
inline constexpr std::array<std::uint8_t, 4> ReadVersion{0x01, 0xFF, 0x01, 0xFF};
inline constexpr std::array<std::uint8_t, 2> PollTrigger{0x01, 0x0A};

inline constexpr std::uint8_t Trigger = 0x7F;     ///< in the answer to a poll: one Go each
inline constexpr std::size_t VersionLength = 36;  ///< characters of a version text, at the least

}  // namespace velgrove::wire
