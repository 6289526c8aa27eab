#include "velgrove-box/report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace velgrove {
namespace {

using std::chrono::nanoseconds;

constexpr nanoseconds FramePeriod = std::chrono::milliseconds(30);
constexpr nanoseconds BinWidth = std::chrono::microseconds(10);
constexpr std::size_t Bins = 100'000;  // one second

double inMilliseconds(nanoseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

double inSeconds(nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

template <class... Values>
std::string print(const char* format, Values... values) {
  std::array<char, 200> text{};
  const int size = std::snprintf(text.data(), text.size(), format, values...);
  return {text.data(), std::min(static_cast<std::size_t>(std::max(size, 0)), text.size() - 1)};
}

}  // namespace

GapStatistics::GapStatistics() : m_bins(Bins + 1) {}

void GapStatistics::add(nanoseconds gap) {
  const nanoseconds distance = std::chrono::abs(gap - FramePeriod);
  const auto bin = static_cast<std::size_t>((distance + BinWidth / 2) / BinWidth);
  ++m_bins[std::min(bin, Bins)];
  ++m_count;
  m_largest = std::max(m_largest, distance);
}

double GapStatistics::percentile(int percent) const {
  const std::uint64_t wanted = (m_count * static_cast<std::uint64_t>(percent) + 99) / 100;
  std::uint64_t seen = 0;
  for (std::size_t bin = 0; bin < Bins; ++bin) {
    seen += m_bins[bin];
    if (seen >= wanted) return inMilliseconds(BinWidth * static_cast<nanoseconds::rep>(bin));
  }
  return largest();
}

double GapStatistics::largest() const {
  return inMilliseconds(m_largest);
}

void Report::addFrame(Time at, InterfaceBox::Frame levels) {
  if (m_frameBefore) {
    const nanoseconds gap = at - *m_frameBefore;
    m_gaps.add(gap);
    m_longestInLine = std::max(m_longestInLine, gap);
  }
  m_frameBefore = at;
  ++m_framesInLine;
  std::copy(levels.begin(), levels.end(), m_levels.begin());
}

std::string Report::line(Time now) {
  if (m_frameBefore) m_longestInLine = std::max(m_longestInLine, nanoseconds(now - *m_frameBefore));
  const double seconds = std::max(inSeconds(now - m_lineBefore), 0.001);
  std::string text =
      print("%.1f frames/s, longest gap %.2f ms", m_framesInLine / seconds, inMilliseconds(m_longestInLine)) +
      changes() + '\n';
  m_lineBefore = now;
  m_framesInLine = 0;
  m_longestInLine = nanoseconds::zero();
  return text;
}

std::string Report::changes() {
  std::string text;
  std::size_t count = 0;
  for (std::size_t n = 0; n < m_levels.size(); ++n) {
    if (m_levels[n] == m_levelsInLineBefore[n]) continue;
    if (++count <= ShownChanges) text += (count == 1 ? ", " : " ") + print("%zu=%d", n + 1, m_levels[n]);
  }
  if (count > ShownChanges) text += print(" and %zu more", count - ShownChanges);
  m_levelsInLineBefore = m_levels;
  return text;
}

std::string Report::summary(Time now, const InterfaceBox::Counters& counters) const {
  const auto number = [](std::uint64_t value) { return std::to_string(value); };
  return "frames " + number(counters.frames) + '\n' + print("seconds %.3f\n", inSeconds(now - m_start)) +
         print("distance from 30 ms: p50 %.2f p95 %.2f p99 %.2f max %.2f ms\n", m_gaps.percentile(50),
               m_gaps.percentile(95), m_gaps.percentile(99), m_gaps.largest()) +
         "garbage bytes " + number(counters.garbageBytes) + '\n' + "half frames " +
         number(counters.halfFrames) + '\n';
}

}  // namespace velgrove
