#include "velgrove-box/box_loop.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "controls/faults.h"
#include "velgrove-box/output.h"

namespace velgrove {
namespace {

using std::chrono::milliseconds;

/// How often to look whether a desk has come, since the terminal can't be waited for until then.
constexpr milliseconds DeskLookPeriod{10};
/// Between the pieces of a split reply: long enough that the desk finds the first one alone.
constexpr milliseconds PieceGap{100};

sigset_t endSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
  return signals;
}

int openSignals() {
  const sigset_t signals = endSignals();
  const int descriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor < 0) throw RunTimeError(Fault::Device, "signals can't be read");
  return descriptor;
}

}  // namespace

void BoxLoop::blockEndSignals() {
  const sigset_t signals = endSignals();
  if (sigprocmask(SIG_BLOCK, &signals, nullptr) != 0)
    throw RunTimeError(Fault::Device, "signals can't be blocked");
}

BoxLoop::BoxLoop(const BoxOptions& options)
    : m_quiet(options.quiet), m_registration(options.folder, options.name), m_signals(openSignals()) {
  if (options.framesFile) m_recording.emplace(*options.framesFile);
  m_box.onFrame = [this](InterfaceBox::Frame levels) {
    m_report.addFrame(m_readAt, levels);
    if (m_recording) m_recording->add(m_readAt - m_start, levels);
  };
  plugIn();
}

BoxLoop::~BoxLoop() {
  (void)close(m_signals);  // nothing was written
}

int BoxLoop::run() {
  while (!m_done) {
    sleepUntilNext();
    if (isListening()) takeBytes();
    if (isListening()) sendReplies();
    if (Clock::now() >= m_lineDue) everySecond();
  }
  end();
  return m_exitCode;
}

BoxLoop::Clock::time_point BoxLoop::nextDue() const {
  auto due = m_lineDue;
  if (isListening() && !m_deskThere) due = std::min(due, Clock::now() + DeskLookPeriod);
  if (isListening() && m_deskThere && m_replySize == 0 && m_box.waiting() > 0)
    due = std::min(due, m_replyDue);
  return due;
}

void BoxLoop::sleepUntilNext() {
  // A terminal without a desk reports a hang-up without end, so it isn't watched then.
  const bool watched = isListening() && m_deskThere;
  const short writable = m_replySize > 0 ? POLLOUT : 0;
  pollfd files[] = {{.fd = m_signals, .events = POLLIN, .revents = 0},
                    {.fd = m_inputOpen ? STDIN_FILENO : -1, .events = POLLIN, .revents = 0},
                    {.fd = watched ? m_terminal.descriptor() : -1,
                     .events = static_cast<short>(POLLIN | writable),
                     .revents = 0}};
  const auto left = std::max(nextDue() - Clock::now(), Clock::duration::zero());
  const timespec time{.tv_sec = left / std::chrono::seconds(1),
                      .tv_nsec = (left % std::chrono::seconds(1)).count()};
  if (ppoll(files, std::size(files), &time, nullptr) <= 0) return;
  if (files[0].revents != 0) m_done = true;
  if (files[1].revents != 0) takeInput();
}

void BoxLoop::takeBytes() {
  std::array<std::uint8_t, 4096> bytes;
  const LineResult result = m_terminal.read(bytes);
  m_readAt = Clock::now();
  if (result.status == LineStatus::Gone) {
    if (m_deskThere) deskLeft();
    return;
  }
  m_deskThere = true;
  if (result.status == LineStatus::Ok) m_box.receive(std::span(bytes).first(result.count));
}

void BoxLoop::sendReplies() {
  if (!m_deskThere) return;
  if (m_replySize == 0 && m_box.waiting() > 0 && Clock::now() >= m_replyDue) {
    m_replySize = m_box.takeReplies(m_reply);
    if (m_box.holdsBack()) m_replyDue = Clock::now() + PieceGap;
  }
  if (m_replySize == 0) return;
  const LineResult sent = m_terminal.write(std::span(m_reply).first(m_replySize));
  if (sent.status != LineStatus::Ok) return;  // no room: later; no desk: the next reading tells
  std::copy(m_reply.begin() + static_cast<std::ptrdiff_t>(sent.count),
            m_reply.begin() + static_cast<std::ptrdiff_t>(m_replySize), m_reply.begin());
  m_replySize -= sent.count;
}

/// Whatever was under way between desk and box ends in the middle.
void BoxLoop::cutLine() {
  if (m_box.reset()) complain("a frame was cut off in the middle");
  m_report.interrupt();
  m_replySize = 0;
}

void BoxLoop::deskLeft() {
  m_deskThere = false;
  cutLine();
  if (!m_terminal.isShut()) return;
  complain("the desk ended without giving up the port; plugging in anew");
  plugIn();
}

void BoxLoop::plugIn() {
  m_terminal.open();
  m_deskThere = true;
  m_registration.publish(m_terminal.path());
  say("plugged in: " + m_registration.link().string() + " -> " + m_terminal.path() + '\n');
}

void BoxLoop::takeInput() {
  char bytes[4096];
  const auto count = read(STDIN_FILENO, bytes, sizeof bytes);
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (count <= 0) {
    m_inputOpen = false;
    obey(m_lines.rest());
    return;
  }
  for (const auto& line : m_lines.feed({bytes, static_cast<std::size_t>(count)})) obey(line);
}

void BoxLoop::obey(const std::string& line) {
  try {
    std::visit([this](const auto& command) { this->follow(command); }, parseCommand(line));
  } catch (const RunTimeError& error) {
    complain(error.what());
  }
}

void BoxLoop::follow(const command::Unplug&) {
  if (!m_terminal.isOpen()) {
    complain("unplugged already");
    return;
  }
  m_registration.withdraw();
  m_terminal.close();
  cutLine();
  say("unplugged\n");
}

void BoxLoop::follow(const command::Plug&) {
  if (m_terminal.isOpen())
    complain("plugged in already");
  else
    plugIn();
}

void BoxLoop::follow(const command::Help&) {
  say(consoleHelp());
}

void BoxLoop::follow(const command::Bad& bad) {
  complain(bad.why);
}

void BoxLoop::everySecond() {
  const auto now = Clock::now();
  const auto late = (now - m_lineDue) / std::chrono::seconds(1);
  m_lineDue += std::chrono::seconds(late + 1);
  if (!m_quiet) say(m_report.line(now));
  writeRecording();
}

void BoxLoop::writeRecording() {
  if (!m_recording) return;
  try {
    m_recording->flush();
  } catch (const RunTimeError& error) {
    complain(error.what());
    m_recording.reset();
    m_exitCode = 1;
  }
}

void BoxLoop::end() {
  const auto now = Clock::now();
  m_registration.withdraw();
  m_terminal.close();
  writeRecording();
  say(m_report.summary(now, m_box.counters()), std::chrono::seconds(1));
}

}  // namespace velgrove
