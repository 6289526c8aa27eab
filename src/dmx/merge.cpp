#include "dmx/merge.h"

#include <algorithm>

namespace velgrove {
namespace {

bool isByte(std::int16_t level) {
  return level >= 0 && level <= 255;
}

/// How many channels from the first have players' levels that are bytes.
std::size_t channelsInRange(const ShowState& state, std::size_t count) {
  unsigned outside = 0;
  for (std::size_t i = 0; i < count; ++i)
    outside |= static_cast<unsigned>(std::max(state.ABLevels[i], state.XYLevels[i])) & 0xFF00U;
  if (outside == 0) return count;
  std::size_t good = 0;
  while (good < count && isByte(std::max(state.ABLevels[good], state.XYLevels[good]))) ++good;
  return good;
}

}  // namespace

void mergeLevels(ShowState& state) {
  const auto wanted = static_cast<std::size_t>(std::max<int>(state.NumChannels, 0));
  const std::size_t channels = std::min<std::size_t>(wanted, ChannelCount);
  const std::size_t count = channelsInRange(state, channels);

  for (std::size_t i = 0; i < count; ++i)
    state.QueueLevels[i] = static_cast<std::uint8_t>(std::max(state.ABLevels[i], state.XYLevels[i]));
  if (!state.DMXDimmers && !state.DMXSubmasters) std::fill_n(state.DMXInput.begin(), count, 0);
  if (state.ClearManual) std::fill_n(state.ManualLevels.begin(), count, 0);

  const auto inputMask = static_cast<std::uint8_t>(state.DMXSubmasters ? 0 : 0xFF);
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t queue = state.QueueLevels[i];
    const auto input = static_cast<std::uint8_t>(state.DMXInput[i] & inputMask);
    const std::uint8_t manual = state.ManualLevels[i];
    const std::uint8_t submaster = state.SubLevels[i];
    const std::uint8_t highest = std::max(std::max(queue, input), std::max(manual, submaster));
    const Source winner = queue == highest    ? Source::Queue
                          : input == highest  ? Source::Input
                          : manual == highest ? Source::Manual
                                              : Source::Submaster;
    state.DMXOutput[i] = highest;
    state.LevelSource[i] = static_cast<std::int16_t>(winner);
  }

  if (count < channels)
    throw RunTimeError(Fault::Overflow,
                       "the players' level of channel " + std::to_string(count + 1) + " is no byte");
  if (wanted > channels) (void)channelIndex(ChannelCount + 1);
}

}  // namespace velgrove
