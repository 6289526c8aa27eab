#include "controls/posix_line.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace velgrove {
namespace {

using std::chrono::steady_clock;

/// Runs a system call again for as long as only a signal has cut it short.
template <class Call>
auto uninterrupted(Call&& call) {
  for (;;) {
    const auto result = std::forward<Call>(call)();
    if (result >= 0 || errno != EINTR) return result;
  }
}

LineStatus openingStatus(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG:
      return LineStatus::Missing;
    case EBUSY:
    case EWOULDBLOCK:
      return LineStatus::Busy;
    case EACCES:
    case EPERM:
    case EROFS:
      return LineStatus::Refused;
    case EIO:
    case ENXIO:
    case ENODEV:
    case EBADF:
      return LineStatus::Gone;
    default:
      return LineStatus::Unusable;
  }
}

/// An open port has only two ways to fail: it has no room or byte now, or it can't be trusted any more and
/// has to be opened anew.
LineStatus runningStatus(int error) {
  return error == EAGAIN ? LineStatus::Full : LineStatus::Gone;
}

LineStatus checked(int result) {
  return result == 0 ? LineStatus::Ok : openingStatus(errno);
}

timespec toTimespec(std::chrono::nanoseconds time) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  return {.tv_sec = seconds.count(), .tv_nsec = (time - seconds).count()};
}

constexpr tcflag_t FrameFlags = CSIZE | PARENB | CSTOPB | CRTSCTS;

bool isRaw(const termios& settings) {
  return cfgetospeed(&settings) == B500000 && (settings.c_cflag & FrameFlags) == CS8 &&
         (settings.c_lflag & tcflag_t{ICANON | ECHO}) == 0 && (settings.c_oflag & tcflag_t{OPOST}) == 0 &&
         (settings.c_iflag & tcflag_t{IXON | IXOFF}) == 0;
}

/// Raw bytes, 500000 baud, 8N1, no flow control. A driver may take a part of the settings and call that a
/// success, so they are read back.
LineStatus setRaw(int descriptor) {
  termios settings{};
  if (tcgetattr(descriptor, &settings) != 0) return openingStatus(errno);
  cfmakeraw(&settings);
  settings.c_iflag &= ~tcflag_t{IXOFF | IXANY | INPCK};
  settings.c_cflag = (settings.c_cflag & ~FrameFlags) | CS8 | CLOCAL | CREAD;
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
  if (cfsetspeed(&settings, B500000) != 0) return LineStatus::Unusable;
  if (uninterrupted([&] { return tcsetattr(descriptor, TCSANOW, &settings); }) != 0)
    return openingStatus(errno);
  termios taken{};
  if (tcgetattr(descriptor, &taken) != 0) return openingStatus(errno);
  return isRaw(taken) ? LineStatus::Ok : LineStatus::Unusable;
}

/// Takes the port for this program alone. The terminal's own exclusive mode doesn't hold back the
/// administrator's programs; the lock does, as long as they ask for it as every desk does.
LineStatus takeAlone(int descriptor) {
  if (uninterrupted([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) != 0) return openingStatus(errno);
  return checked(ioctl(descriptor, TIOCEXCL));
}

class Port {
 public:
  Port() = default;
  ~Port() { close(); }
  Port(const Port&) = delete;
  Port& operator=(const Port&) = delete;

  LineStatus open(const std::string& path) {
    close();
    m_descriptor =
        uninterrupted([&] { return ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC); });
    if (m_descriptor < 0) return openingStatus(errno);
    const LineStatus status = setUp();
    if (status != LineStatus::Ok) close();
    return status;
  }

  void close() {
    const int descriptor = std::exchange(m_descriptor, -1);
    if (descriptor < 0) return;
    // A pseudo-terminal outlives its closing and would stay exclusive, shut to the next desk for good. Only
    // the one who took it gives it back; on a vanished port it fails, and nothing is left to give back.
    if (std::exchange(m_mine, false)) (void)ioctl(descriptor, TIOCNXCL);
    (void)::close(descriptor);  // whatever it reports, the descriptor is free afterwards
  }

  LineResult write(std::span<const std::uint8_t> bytes) const {
    const auto count = uninterrupted([&] { return ::write(m_descriptor, bytes.data(), bytes.size()); });
    if (count < 0) return {runningStatus(errno), 0};
    if (count == 0 && !bytes.empty()) return {LineStatus::Full, 0};
    return {LineStatus::Ok, static_cast<std::size_t>(count)};
  }

  LineResult read(std::span<std::uint8_t> bytes) const {
    const auto count = uninterrupted([&] { return ::read(m_descriptor, bytes.data(), bytes.size()); });
    if (count < 0) return {runningStatus(errno), 0};
    if (count == 0) return {hungUp() ? LineStatus::Gone : LineStatus::Full, 0};
    return {LineStatus::Ok, static_cast<std::size_t>(count)};
  }

  /// Waits for an event of poll, at the latest for the time given.
  void wait(short event, std::chrono::milliseconds time) const {
    if (m_descriptor < 0) return;
    const auto end = steady_clock::now() + time;
    pollfd watched{.fd = m_descriptor, .events = event, .revents = 0};
    (void)uninterrupted([&] {
      const auto left = toTimespec(std::max(end - steady_clock::now(), steady_clock::duration::zero()));
      return ppoll(&watched, 1, &left, nullptr);
    });
  }

 private:
  LineStatus setUp() {
    if (isatty(m_descriptor) == 0) return LineStatus::Unusable;
    if (const auto status = takeAlone(m_descriptor); status != LineStatus::Ok) return status;
    m_mine = true;
    if (const auto status = setRaw(m_descriptor); status != LineStatus::Ok) return status;
    if (const auto status = checked(ioctl(m_descriptor, TIOCCBRK)); status != LineStatus::Ok) return status;
    return checked(tcflush(m_descriptor, TCIFLUSH));
  }

  bool hungUp() const {
    pollfd watched{.fd = m_descriptor, .events = POLLIN, .revents = 0};
    return poll(&watched, 1, 0) > 0 && (watched.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
  }

  int m_descriptor = -1;
  bool m_mine = false;  ///< the exclusive hold is this port's
};

void waitWhole(std::chrono::milliseconds time) {
  timespec end{};
  if (clock_gettime(CLOCK_MONOTONIC, &end) != 0) return;
  const auto due =
      toTimespec(std::chrono::seconds(end.tv_sec) + std::chrono::nanoseconds(end.tv_nsec) + time);
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &due, nullptr) == EINTR) continue;
}

}  // namespace

SerialLine makePosixLine() {
  const auto port = std::make_shared<Port>();
  return {.open = [port](const std::string& path) { return port->open(path); },
          .close = [port] { port->close(); },
          .write = [port](std::span<const std::uint8_t> bytes) { return port->write(bytes); },
          .read = [port](std::span<std::uint8_t> bytes) { return port->read(bytes); },
          .wait = [port](std::chrono::milliseconds time) { port->wait(POLLIN, time); },
          .drain = [port](std::chrono::milliseconds time) { port->wait(POLLOUT, time); },
          .turnRound = waitWhole};
}

}  // namespace velgrove
