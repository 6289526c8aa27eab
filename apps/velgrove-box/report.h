#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "dmx/interface_box.h"

namespace velgrove {

/// How far the gaps between frames lie from the 30 ms that a desk keeps, exact to 0.01 ms, in constant memory
/// however long the box runs.
class GapStatistics {
 public:
  GapStatistics();

  void add(std::chrono::nanoseconds gap);
  [[nodiscard]] std::uint64_t count() const { return m_count; }
  /// The smallest distance in milliseconds that so many percent of all gaps keep to; 0 without gaps.
  [[nodiscard]] double percentile(int percent) const;
  [[nodiscard]] double largest() const;

 private:
  std::vector<std::uint64_t> m_bins;  ///< one for each 0.01 ms; the last takes what lies beyond
  std::uint64_t m_count = 0;
  std::chrono::nanoseconds m_largest{0};
};

/// What the box tells of the frames it got: a line now and then, and a summary at the end.
class Report {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// Changed channels that a line shows; behind them stands how many more there are.
  static constexpr std::size_t ShownChanges = 12;

  explicit Report(Time start) : m_start(start), m_lineBefore(start) {}

  void addFrame(Time at, InterfaceBox::Frame levels);
  /// The desk or the plug is gone: the next frame ends no gap.
  void interrupt() { m_frameBefore.reset(); }

  /// Frames a second, the longest gap (the one that still lasts included) and the channels that changed, all
  /// since the line before.
  [[nodiscard]] std::string line(Time now);
  [[nodiscard]] std::string summary(Time now, const InterfaceBox::Counters& counters) const;

 private:
  [[nodiscard]] std::string changes();

  Time m_start;
  Time m_lineBefore;
  std::optional<Time> m_frameBefore;
  int m_framesInLine = 0;
  std::chrono::nanoseconds m_longestInLine{0};
  std::array<std::uint8_t, InterfaceBox::Channels> m_levels{};
  std::array<std::uint8_t, InterfaceBox::Channels> m_levelsInLineBefore{};
  GapStatistics m_gaps;
};

}  // namespace velgrove
