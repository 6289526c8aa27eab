#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace velgrove {

/// The interface box's firmware as a machine of bytes: bytes of the desk go in, frames and replies come out.
/// It knows no line, no thread and no clock, so the virtual box, the tests and the rehearsal share it.
///
/// Taking frames allocates nothing.
class InterfaceBox {
 public:
  static constexpr std::size_t Channels = 512;
  /// Replies that nobody takes pile up to this many bytes; what comes on top is lost.
  static constexpr std::size_t ReplyRoom = 4096;

  using Frame = std::span<const std::uint8_t, Channels>;

  struct Counters {
    std::uint64_t frames = 0;
    std::uint64_t garbageBytes = 0;  ///< bytes that belong to no command
    std::uint64_t halfFrames = 0;    ///< frames that were begun and cut off by `reset`
  };

  InterfaceBox();

  /// Called with the levels of each whole frame, channel 1 first.
  std::function<void(Frame)> onFrame;

  /// Takes bytes as the line brings them, however they are cut.
  void receive(std::span<const std::uint8_t> bytes);

  /// Bytes of reply that the next `takeReplies` can give.
  [[nodiscard]] std::size_t waiting() const;
  /// Moves waiting reply bytes into the span and returns how many. A part that is held back (see setSplit)
  /// comes at the next call at the earliest.
  [[nodiscard]] std::size_t takeReplies(std::span<std::uint8_t> into);
  /// True while the second piece of a split reply is still held back.
  [[nodiscard]] bool holdsBack() const { return !m_held.empty(); }

  /// The line was cut: drops the command that was coming in and all replies. Settings and triggers stay.
  /// Returns whether a frame was in the middle.
  bool reset();

  /// Channel 1 to 512, level 0 to 255; anything else is a RunTimeError.
  void setInput(int channel, int level);
  /// Each is one byte 7F in the reply to the next trigger poll.
  void addTriggers(int count);
  /// A silent box takes frames and answers nothing; triggers wait.
  void setSilent(bool silent) { m_silent = silent; }
  /// Cuts the replies with levels and version to so many bytes; nothing: they come whole.
  void setShort(std::optional<std::size_t> bytes) { m_short = bytes; }
  /// The version goes in two pieces.
  void setSplit(bool split) { m_split = split; }

  [[nodiscard]] const Counters& counters() const { return m_counters; }

 private:
  enum class Command { None, Begun, Frame, Levels, Version, Poll };

  [[nodiscard]] Command match() const;
  void takeCommandByte(std::uint8_t byte);
  [[nodiscard]] std::size_t takeBody(std::span<const std::uint8_t> bytes);
  void run(Command command);
  std::size_t reply(std::span<const std::uint8_t> bytes);
  std::size_t append(std::vector<std::uint8_t>& to, std::span<const std::uint8_t> bytes) const;
  void sendVersion();
  void sendTriggers();
  [[nodiscard]] std::size_t shortened(std::size_t size) const;

  std::array<std::uint8_t, Channels> m_body{};
  std::size_t m_bodyMissing = 0;         ///< level bytes that the frame being taken still lacks
  std::array<std::uint8_t, 7> m_head{};  ///< a command that isn't complete yet
  std::size_t m_headSize = 0;

  std::array<std::uint8_t, Channels> m_input{};
  std::size_t m_triggers = 0;
  bool m_silent = false;
  bool m_split = false;
  std::optional<std::size_t> m_short;

  std::vector<std::uint8_t> m_ready;
  std::vector<std::uint8_t> m_held;
  Counters m_counters;
};

}  // namespace velgrove
