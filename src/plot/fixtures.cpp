#include "plot/fixtures.h"

#include <utility>

#include "plot/shapes.h"

namespace velgrove {

void Fixtures::Form_Load() {
  for (const ShapeName& shape : ShapeNames) prepare(shape.name);
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
