#include "dmx/interface_box.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "controls/faults.h"
#include "dmx/wire.h"

namespace velgrove {
namespace {

/// The shortest head that can only be a frame's.
constexpr std::size_t CertainHead = 3;

/// 36 characters, the fewest that a desk waits for, so that nothing of it is left on the line.
constexpr std::string_view VersionText = "Velgrove interface box, virtual 1.00";
static_assert(VersionText.size() == wire::VersionLength);

}  // namespace

InterfaceBox::InterfaceBox() {
  m_ready.reserve(ReplyRoom);
  m_held.reserve(ReplyRoom);
}

void InterfaceBox::receive(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    if (m_bodyMissing > 0) {
      bytes = bytes.subspan(takeBody(bytes));
    } else {
      takeCommandByte(bytes.front());
      bytes = bytes.subspan(1);
    }
  }
}

/// The body is taken by count: a level of 1 looks like the head of a command and is none.
std::size_t InterfaceBox::takeBody(std::span<const std::uint8_t> bytes) {
  const auto count = std::min(bytes.size(), m_bodyMissing);
  std::copy_n(bytes.begin(), count, m_body.end() - static_cast<std::ptrdiff_t>(m_bodyMissing));
  m_bodyMissing -= count;
  if (m_bodyMissing == 0) {
    ++m_counters.frames;
    if (onFrame) onFrame(m_body);
  }
  return count;
}

InterfaceBox::Command InterfaceBox::match() const {
  const auto head = std::span(m_head).first(m_headSize);
  const auto begins = [&](std::span<const std::uint8_t> command) {
    return head.size() <= command.size() && std::equal(head.begin(), head.end(), command.begin());
  };
  const auto is = [&](std::span<const std::uint8_t> command) {
    return head.size() == command.size() && begins(command);
  };
  if (is(wire::FrameHead)) return Command::Frame;
  if (is(wire::ReadLevels)) return Command::Levels;
  if (is(wire::ReadVersion)) return Command::Version;
  if (is(wire::PollTrigger)) return Command::Poll;
  const bool any = begins(wire::FrameHead) || begins(wire::ReadLevels) || begins(wire::ReadVersion) ||
                   begins(wire::PollTrigger);
  return any ? Command::Begun : Command::None;
}

void InterfaceBox::takeCommandByte(std::uint8_t byte) {
  m_head[m_headSize++] = byte;
  Command command = match();
  // What turns out to be no command may have the beginning of one inside: only its first byte is garbage.
  while (command == Command::None) {
    ++m_counters.garbageBytes;
    std::copy(m_head.begin() + 1, m_head.end(), m_head.begin());
    if (--m_headSize == 0) return;
    command = match();
  }
  if (command == Command::Begun) return;
  m_headSize = 0;
  run(command);
}

void InterfaceBox::run(Command command) {
  if (command == Command::Frame) m_bodyMissing = Channels;
  if (m_silent) return;
  if (command == Command::Levels) reply(std::span(m_input).first(shortened(Channels)));
  if (command == Command::Version) sendVersion();
  if (command == Command::Poll) sendTriggers();
}

void InterfaceBox::sendVersion() {
  std::array<std::uint8_t, VersionText.size()> text{};
  std::copy(VersionText.begin(), VersionText.end(), text.begin());
  const auto whole = std::span<const std::uint8_t>(text).first(shortened(text.size()));
  const auto piece = m_split ? whole.size() / 2 : whole.size();
  reply(whole.first(piece));
  append(m_held, whole.subspan(piece));
}

void InterfaceBox::sendTriggers() {
  std::array<std::uint8_t, 64> bytes{};
  bytes.fill(wire::Trigger);
  while (m_triggers > 0) {
    const auto count = reply(std::span(bytes).first(std::min(m_triggers, bytes.size())));
    if (count == 0) return;
    m_triggers -= count;
  }
}

/// Behind a piece that is held back everything waits its turn.
std::size_t InterfaceBox::reply(std::span<const std::uint8_t> bytes) {
  return append(m_held.empty() ? m_ready : m_held, bytes);
}

std::size_t InterfaceBox::append(std::vector<std::uint8_t>& to, std::span<const std::uint8_t> bytes) const {
  const auto count = std::min(bytes.size(), ReplyRoom - m_ready.size() - m_held.size());
  to.insert(to.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
  return count;
}

std::size_t InterfaceBox::shortened(std::size_t size) const {
  return std::min(size, m_short.value_or(size));
}

std::size_t InterfaceBox::waiting() const {
  return m_ready.empty() ? m_held.size() : m_ready.size();
}

std::size_t InterfaceBox::takeReplies(std::span<std::uint8_t> into) {
  if (m_ready.empty()) m_ready.swap(m_held);
  const auto count = std::min(into.size(), m_ready.size());
  const auto end = m_ready.begin() + static_cast<std::ptrdiff_t>(count);
  std::copy(m_ready.begin(), end, into.begin());
  m_ready.erase(m_ready.begin(), end);
  return count;
}

bool InterfaceBox::reset() {
  const bool half = m_bodyMissing > 0 || (m_headSize >= CertainHead && m_head[2] == wire::FrameHead[2]);
  if (half) ++m_counters.halfFrames;
  m_bodyMissing = 0;
  m_headSize = 0;
  m_ready.clear();
  m_held.clear();
  return half;
}

void InterfaceBox::setInput(int channel, int level) {
  if (channel < 1 || channel > static_cast<int>(Channels))
    throw RunTimeError(Fault::Subscript, "no input channel " + std::to_string(channel));
  if (level < 0 || level > 255) throw RunTimeError(Fault::Overflow, "no level " + std::to_string(level));
  m_input[static_cast<std::size_t>(channel - 1)] = static_cast<std::uint8_t>(level);
}

void InterfaceBox::addTriggers(int count) {
  if (count < 0) throw RunTimeError(Fault::Overflow, "no number of triggers: " + std::to_string(count));
  m_triggers += static_cast<std::size_t>(count);
}

}  // namespace velgrove
