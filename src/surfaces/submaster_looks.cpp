#include "surfaces/submaster_looks.h"

#include <algorithm>
#include <string>

#include "controls/numbers.h"

namespace velgrove {

int ScaledLook::on(std::size_t channel) const {
  return roundTo<std::int16_t>((*look)[channel] * scale);
}

SubmasterLooks::SubmasterLooks(const colSubMasters& submasters, std::span<const Label> labels) {
  for (const auto& submaster : submasters) {
    if (m_count == std::min(labels.size(), m_all.size())) break;
    const int percent = toInteger<std::int16_t>(labels[m_count].Caption);
    const ScaledLook scaled{.look = &submaster->DimmerLevel(), .scale = percent / 100.0};
    m_all[m_count++] = scaled;
    if (percent > 0) m_lit[m_litCount++] = scaled;
  }
}

const ScaledLook& SubmasterLooks::at(int submaster) const {
  if (submaster < 0 || static_cast<std::size_t>(submaster) >= m_count)
    throw RunTimeError(Fault::Subscript, "the view has no submaster " + std::to_string(submaster));
  return m_all[static_cast<std::size_t>(submaster)];
}

int SubmasterLooks::highest(std::size_t channel) const {
  int most = 0;
  for (std::size_t i = 0; i < m_litCount; ++i) most = std::max(most, m_lit[i].on(channel));
  return most;
}

}  // namespace velgrove
