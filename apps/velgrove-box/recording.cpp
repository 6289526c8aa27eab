#include "velgrove-box/recording.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "controls/faults.h"

namespace velgrove {
namespace {

/// Three seconds of frames with every level in three digits.
constexpr std::size_t Room = 256UL * 1024;

[[noreturn]] void throwFault(const std::string& file) {
  throw RunTimeError(Fault::File, file + ": " + std::strerror(errno));
}

}  // namespace

Recording::Recording(const std::string& file)
    : m_file(file), m_descriptor(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
  if (m_descriptor < 0) throwFault(file);
  m_lines.reserve(Room);
}

Recording::~Recording() {
  (void)close(m_descriptor);  // flush has looked at every write
}

void Recording::add(std::chrono::nanoseconds sinceStart, InterfaceBox::Frame levels) {
  char time[40];
  const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(sinceStart).count();
  const int size =
      std::snprintf(time, sizeof time, "%lld.%03lld", static_cast<long long>(microseconds / 1000),
                    static_cast<long long>(microseconds % 1000));
  m_lines.append(time, static_cast<std::size_t>(size));
  for (const std::uint8_t level : levels) {
    std::array<char, 4> digits{' '};
    const auto* const end = std::to_chars(digits.data() + 1, digits.data() + digits.size(), level).ptr;
    m_lines.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
  }
  m_lines += '\n';
}

void Recording::flush() {
  std::size_t done = 0;
  while (done < m_lines.size()) {
    const auto count = write(m_descriptor, m_lines.data() + done, m_lines.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throwFault(m_file);
    done += static_cast<std::size_t>(count);
  }
  m_lines.clear();
}

}  // namespace velgrove
