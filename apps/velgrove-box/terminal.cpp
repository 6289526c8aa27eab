#include "velgrove-box/terminal.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

#include "controls/faults.h"

namespace velgrove {
namespace {

[[noreturn]] void throwFault(const char* what) {
  throw RunTimeError(Fault::Device, std::string(what) + ": " + std::strerror(errno));
}

/// Settings made on this end are those of the other. Without echo: replies that no desk reads must not come
/// back as commands.
void setRaw(int descriptor) {
  termios settings{};
  if (tcgetattr(descriptor, &settings) != 0) throwFault("the terminal's settings can't be read");
  cfmakeraw(&settings);
  if (tcsetattr(descriptor, TCSANOW, &settings) != 0) throwFault("the terminal can't be made raw");
}

LineResult moved(ssize_t count) {
  if (count > 0) return {LineStatus::Ok, static_cast<std::size_t>(count)};
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return {LineStatus::Full, 0};
  return {LineStatus::Gone, 0};
}

}  // namespace

void BoxTerminal::open() {
  close();
  m_descriptor = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
  if (m_descriptor < 0) throwFault("no pseudo-terminal");
  std::array<char, 100> path{};
  if (grantpt(m_descriptor) != 0 || unlockpt(m_descriptor) != 0 ||
      ptsname_r(m_descriptor, path.data(), path.size()) != 0)
    throwFault("the pseudo-terminal can't be unlocked");
  setRaw(m_descriptor);
  m_path = path.data();
}

void BoxTerminal::close() {
  if (m_descriptor >= 0) (void)::close(std::exchange(m_descriptor, -1));
}

LineResult BoxTerminal::read(std::span<std::uint8_t> into) const {
  return moved(::read(m_descriptor, into.data(), into.size()));
}

LineResult BoxTerminal::write(std::span<const std::uint8_t> bytes) const {
  return moved(::write(m_descriptor, bytes.data(), bytes.size()));
}

bool BoxTerminal::isShut() const {
  const int other = ::open(m_path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  const bool refused = other < 0 && errno == EBUSY;
  if (other >= 0) (void)::close(other);  // nothing was written
  pollfd watched{.fd = m_descriptor, .events = 0, .revents = 0};
  const bool hungUp = poll(&watched, 1, 0) > 0 && (watched.revents & POLLHUP) != 0;
  return refused && hungUp;  // a new desk that has just come refuses too, but isn't hung up
}

}  // namespace velgrove
