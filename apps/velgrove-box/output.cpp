#include "velgrove-box/output.h"

#include <cerrno>
#include <poll.h>
#include <string>
#include <unistd.h>

namespace velgrove {
namespace {

/// A pipe with room has room for any of our texts as a whole, so the write doesn't wait.
void writeWhenRoom(int descriptor, std::string_view text, std::chrono::milliseconds patience) {
  while (!text.empty()) {
    pollfd watched{.fd = descriptor, .events = POLLOUT, .revents = 0};
    if (poll(&watched, 1, static_cast<int>(patience.count())) <= 0) return;
    const auto count = write(descriptor, text.data(), text.size());
    if (count < 0 && errno != EINTR && errno != EAGAIN) return;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace

void say(std::string_view text, std::chrono::milliseconds patience) {
  writeWhenRoom(STDOUT_FILENO, text, patience);
}

void complain(std::string_view text) {
  writeWhenRoom(STDERR_FILENO, "velgrove-box: " + std::string(text) + "\n", std::chrono::milliseconds(0));
}

}  // namespace velgrove
