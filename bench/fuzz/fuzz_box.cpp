// The interface box and its line doing whatever they like. The first byte of an input says what it drives:
// 'c' the desk's end of the line, whose other end answers, stalls, cuts short and vanishes as the bytes
// behind say; any other one the box's own machine of bytes.

#include <algorithm>
#include <array>
#include <span>

#include "controls/hand_clock.h"
#include "dmx/interface_box.h"
#include "dmx/velgrove_comm.h"
#include "dmx/wire.h"
#include "fuzz.h"

namespace velgrove::fuzz {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

/// The bytes of an input, one after the other; 0 when there is none left.
class Script {
 public:
  explicit Script(std::string_view bytes) : m_rest(bytes) {}
  [[nodiscard]] bool atEnd() const { return m_rest.empty(); }
  std::uint8_t next() {
    if (m_rest.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(m_rest.front());
    m_rest.remove_prefix(1);
    return byte;
  }

 private:
  std::string_view m_rest;
};

// ---- What stands on the wire

constexpr std::size_t FrameSize = wire::FrameHead.size() + ChannelCount;
using Look = std::array<std::uint8_t, ChannelCount>;

/// The looks that are sent: each level follows from the first, so that a frame mixed of two would show.
const Look& look(std::uint8_t first) {
  static const auto all = [] {
    std::array<Look, 256> looks{};
    for (std::size_t number = 0; number < looks.size(); ++number)
      for (std::size_t i = 0; i < ChannelCount; ++i)
        looks[number][i] = static_cast<std::uint8_t>(number + (7 * i));
    return looks;
  }();
  return all[first];
}

/// The same as it goes over the wire, where 1 opens a command.
const Look& lookOnWire(std::uint8_t first) {
  static const auto all = [] {
    std::array<Look, 256> looks{};
    for (std::size_t number = 0; number < looks.size(); ++number) {
      looks[number] = look(static_cast<std::uint8_t>(number));
      std::ranges::replace(looks[number], std::uint8_t{1}, std::uint8_t{2});
    }
    return looks;
  }();
  return all[first];
}

bool isWholeFrame(std::span<const std::uint8_t> frame) {
  const auto levels = frame.subspan(wire::FrameHead.size());
  return std::ranges::equal(levels, lookOnWire(levels[0])) ||
         (levels[0] == 2 && std::ranges::equal(levels, lookOnWire(1)));
}

/// The length of the block that the bytes begin with; 0 when they begin none.
std::size_t blockOf(std::span<const std::uint8_t> bytes) {
  const auto begins = [&](std::span<const std::uint8_t> head) {
    return std::equal(head.begin(),
                      head.begin() + static_cast<std::ptrdiff_t>(std::min(head.size(), bytes.size())),
                      bytes.begin());
  };
  if (begins(wire::FrameHead)) return FrameSize;
  if (begins(wire::ReadLevels)) return wire::ReadLevels.size();
  if (begins(wire::ReadVersion)) return wire::ReadVersion.size();
  return begins(wire::PollTrigger) ? wire::PollTrigger.size() : 0;
}

/// What was written between an opening and a closing of the line: whole blocks, the last of which may be cut
/// by the line's end. Gives the number of frames.
int framesOf(std::span<const std::uint8_t> bytes) {
  int frames = 0;
  while (!bytes.empty()) {
    const std::size_t size = blockOf(bytes);
    require(size > 0, "only commands stand on the wire");
    if (size > bytes.size()) return frames;
    if (size == FrameSize) {
      require(isWholeFrame(bytes.first(size)), "a frame is whole");
      ++frames;
    }
    bytes = bytes.subspan(size);
  }
  return frames;
}

// ---- The desk's end

class Link {
 public:
  explicit Link(std::string_view bytes) : m_script(bytes) {
    m_machine.Sleep = [this](Milliseconds time) { m_clock.pass(time); };
    m_machine.DoEvents = [] {};
  }

  void run() {
    m_comm.Form_Load();
    timed(5s, 1s, [this] { m_comm.InitVelgrove(); });
    if (m_comm.LinkState == velgrove::Link::Up) play();
    m_comm.CloseVelgrove();
    m_frames += framesOf(m_wire);
  }

 private:
  static constexpr int MostSends = 100;

  void play() {
    for (int send = 0; send < MostSends && !m_script.atEnd(); ++send) step();
    // Nothing more goes wrong from here, so that light must come again by itself.
    const int before = m_frames + framesOf(m_wire);
    m_calm = true;
    const auto resumed = [&] { return m_frames + framesOf(m_wire) > before + 1; };
    for (const Nanoseconds end = m_clock.now() + 2s; m_clock.now() < end && !resumed();) step();
    require(resumed(), "output resumes by itself within two seconds");
  }

  void step() {
    m_show.DMXOutput = look(m_next++);
    timed(200ms, 100ms, [this] { m_clock.advanceTo(m_clock.now() + 30ms, m_machine.timers); });
  }

  /// Work takes its time, and each reading that gave bytes may hold it up for the desk's patience; nothing
  /// else may.
  template <class Work>
  void timed(Milliseconds its, Milliseconds patience, const Work& work) {
    const Nanoseconds begin = m_clock.now();
    const int readings = m_readings;
    work();
    require(m_clock.now() - begin <= its + ((m_readings - readings + 1) * patience),
            "every wait comes to its end");
  }

  std::uint8_t decide() { return m_calm ? std::uint8_t{0} : m_script.next(); }

  LineStatus open() {
    constexpr LineStatus Ways[] = {LineStatus::Ok, LineStatus::Missing, LineStatus::Busy, LineStatus::Refused,
                                   LineStatus::Unusable};
    const std::uint8_t choice = decide();
    return choice < 0x80 ? LineStatus::Ok : Ways[choice % std::size(Ways)];
  }

  void close() {
    m_frames += framesOf(m_wire);
    m_wire.clear();
  }

  LineResult write(std::span<const std::uint8_t> bytes) {
    const std::uint8_t choice = decide();
    if (choice >= 0xF0) return {LineStatus::Gone, 0};
    if (choice >= 0xC0) return {LineStatus::Full, 0};
    const std::size_t part = 1 + ((choice & 0x3FU) * 9);
    const std::size_t count = choice < 0x80 ? bytes.size() : std::min(part, bytes.size());
    m_wire.insert(m_wire.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    return {LineStatus::Ok, count};
  }

  LineResult read(std::span<std::uint8_t> into) {
    const std::uint8_t choice = decide();
    if (choice >= 0xF0) return {LineStatus::Gone, 0};
    if (choice < 0x60) return {LineStatus::Full, 0};
    const std::size_t wanted = choice < 0xA0 ? ChannelCount : 1U + (choice & 0x3FU);
    const std::size_t count = std::min(wanted, into.size());
    for (std::uint8_t& byte : into.first(count)) byte = choice < 0xA0 ? choice : m_script.next();
    ++m_readings;
    return {LineStatus::Ok, count};
  }

  /// A wait may end early, but takes its time when nothing happens.
  void wait(Milliseconds atMost) {
    const std::uint8_t choice = decide();
    const bool early = choice != 0 && choice < atMost.count();
    m_clock.pass(early ? Milliseconds(choice) : atMost);
  }

  static BoxAnswer answer(const Box& box) {
    require(box.text == "debug: port not open", "no box but the one of a closed port");
    return BoxAnswer::Ok;
  }

  SerialLine line() {
    return {.open = [this](const std::string&) { return open(); },
            .close = [this] { close(); },
            .write = [this](std::span<const std::uint8_t> bytes) { return write(bytes); },
            .read = [this](std::span<std::uint8_t> into) { return read(into); },
            .wait = [this](Milliseconds atMost) { wait(atMost); },
            .drain = [this](Milliseconds atMost) { wait(atMost); },
            .turnRound = [this](Milliseconds time) { m_clock.pass(time); }};
  }

  [[nodiscard]] std::vector<InterfaceDevice> devices() {
    return {decide() % 3U, {.path = "/dev/ttyUSB7", .vendor = "", .product = "", .serial = ""}};
  }

  Script m_script;
  HandClock m_clock;
  ShowState m_show;
  Bytes m_wire;  ///< since the line was opened
  int m_frames = 0;
  int m_readings = 0;  ///< that gave bytes
  int m_gos = 0;
  bool m_calm = false;
  std::uint8_t m_next = 0;
  Machine m_machine{m_clock.clock(), {.show = answer, .post = [](const Box& box) { (void)answer(box); }}};
  VelgroveComm m_comm{m_show,
                      m_machine,
                      {.line = line(),
                       .findInterfaces = [this] { return devices(); },
                       .findAgain =
                           [this](const InterfaceDevice& lost) {
                             return decide() % 2 == 0 ? std::optional(lost.path) : std::nullopt;
                           },
                       .triggerEnabled = [] { return true; },
                       .triggerGo = [this] { ++m_gos; },
                       .repaint = [] {}}};
};

// ---- The box's end

/// What came out of a box.
struct Outcome {
  Bytes frames;
  Bytes replies;
  std::uint64_t count = 0;
  std::uint64_t garbage = 0;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// Gives a box all bytes in pieces of a size; the replies are taken at the end.
Outcome outcome(std::uint8_t settings, std::span<const std::uint8_t> bytes, std::size_t piece) {
  Outcome out;
  InterfaceBox box;
  box.onFrame = [&](InterfaceBox::Frame frame) {
    out.frames.insert(out.frames.end(), frame.begin(), frame.end());
  };
  box.setSilent((settings & 1U) != 0);
  box.setSplit((settings & 2U) != 0);
  if ((settings & 4U) != 0) box.setShort(settings);
  box.addTriggers(settings);
  for (; !bytes.empty(); bytes = bytes.subspan(std::min(piece, bytes.size())))
    box.receive(bytes.first(std::min(piece, bytes.size())));
  Bytes some(100);
  for (std::size_t count = box.takeReplies(some); count > 0; count = box.takeReplies(some))
    out.replies.insert(out.replies.end(), some.begin(), some.begin() + static_cast<std::ptrdiff_t>(count));
  require(out.replies.size() <= InterfaceBox::ReplyRoom, "replies that nobody takes don't pile up");
  require(box.waiting() == 0 && !box.holdsBack(), "all replies can be taken");
  out.count = box.counters().frames;
  out.garbage = box.counters().garbageBytes;
  return out;
}

void feed(std::uint8_t settings, std::span<const std::uint8_t> bytes) {
  const Outcome whole = outcome(settings, bytes, std::max<std::size_t>(bytes.size(), 1));
  require(whole.frames.size() == whole.count * ChannelCount, "every frame counted is a whole one");
  require(whole.frames.size() + whole.garbage <= bytes.size(), "no byte counts twice");
  for (const std::size_t piece : {1, 3, 512})
    require(outcome(settings, bytes, piece) == whole, "it doesn't matter how the line cuts the bytes");
}

}  // namespace
}  // namespace velgrove::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velgrove;
  if (size < 2) return 0;
  if (data[0] == 'c')
    fuzz::Link(fuzz::textOf(data + 1, size - 1)).run();
  else
    fuzz::feed(data[1], {data + 2, size - 2});
  return 0;
}
