#include "plot/fixtures.h"

#include <utility>

#include "core/show_state.h"
#include "plot/shapes.h"

namespace velgrove {

void Fixtures::Form_Load() {
  for (const std::string_view type : FixtureTypes) prepare(std::string(type));
}

void Fixtures::GetFixtureShape(const std::string& name, std::int16_t /*id*/) {
  if (!std::exchange(m_loaded, true)) Form_Load();
  prepare(name);
}

void Fixtures::prepare(const std::string& name) {
  if (m_graphics.empty()) return;
  onShapeFile(m_machine, [&] { prepareShape(m_graphics, name); });
}

}  // namespace velgrove
