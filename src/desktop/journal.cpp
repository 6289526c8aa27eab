#include "desktop/journal.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <unistd.h>

namespace velgrove {
namespace {

constexpr std::size_t MostLines = 1000;
constexpr std::size_t LongestLine = 1000;  // a pipe takes so much in one piece

std::string timeOfDay() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&seconds, &local);
  const auto ms = duration_cast<milliseconds>(now - floor<std::chrono::seconds>(now)).count();
  std::array<char, 40> text{};
  const int size = std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min,
                                 local.tm_sec, static_cast<int>(ms));
  return {text.data(), static_cast<std::size_t>(size)};
}

/// Whatever a text holds, it stays one line.
std::string onOneLine(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  if (text.size() > LongestLine) text.resize(LongestLine);
  return text + '\n';
}

/// A terminal that stands still would hold up a writer in the middle of a line, where a pipe says beforehand
/// that it has no room. So it is opened once more, in a way that never waits and changes nothing for its
/// other writers.
int openLog() {
  if (::isatty(STDERR_FILENO) == 0) return STDERR_FILENO;
  const int file = ::open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  return file < 0 ? STDERR_FILENO : file;
}

bool takesMore(int file) {
  pollfd watched{.fd = file, .events = POLLOUT, .revents = 0};
  return poll(&watched, 1, 0) > 0;
}

}  // namespace

Journal::Journal() : m_file(openLog()) {
  (void)std::signal(SIGPIPE, SIG_IGN);
}

Journal::~Journal() {
  if (m_file != STDERR_FILENO) ::close(m_file);
}

void Journal::note(const Box& box) {
  const std::scoped_lock lock(m_mutex);
  leave("box: \"" + box.title + "\" \"" + box.text + '"');
}

void Journal::note(const VelgroveComm& comm) {
  const std::scoped_lock lock(m_mutex);
  noteWords(m_version, comm.Version.Caption, "no version");
  noteWords(m_condition, comm.Condition.Caption, "all is well again");
}

void Journal::noteWords(std::string& told, const std::string& words, const char* forNone) {
  if (told == words) return;
  told = words;
  leave("interface: " + (words.empty() ? forNone : words));
}

void Journal::leave(const std::string& line) {
  if (m_lines.size() == MostLines) m_lines.pop_front();
  m_lines.push_back(onOneLine(timeOfDay() + ' ' + line));
}

void Journal::take() {
  const std::scoped_lock lock(m_mutex);
  std::ranges::move(m_lines, std::back_inserter(m_leaving));
  m_lines.clear();
}

void Journal::write() {
  take();
  for (; !m_leaving.empty() && takesMore(m_file); m_leaving.pop_front())
    (void)::write(m_file, m_leaving.front().data(),
                  m_leaving.front().size());  // a shut log: nobody reads
  while (m_leaving.size() > MostLines) m_leaving.pop_front();
}

}  // namespace velgrove
