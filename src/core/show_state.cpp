#include "core/show_state.h"

#include "controls/numbers.h"

namespace velgrove {

float DMXToPct(std::int16_t level) {
  const auto gone = static_cast<float>(255 - level) / 255.0F;
  const float gonePct = gone * 100.0F;
  const float pct = 100.0F - gonePct;
  const auto rounded = static_cast<float>(roundHalfEven(pct));
  if (rounded >= 97 && rounded <= 100) return 100;
  if (rounded >= 0 && rounded <= 3) return 0;
  return rounded;
}

std::int16_t PctToDMX(float pct) {
  const float level = (pct / 100.0F) * 255.0F;
  return roundTo<std::int16_t>(level);
}

}  // namespace velgrove
