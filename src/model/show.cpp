#include "model/show.h"

#include "controls/numbers.h"
#include "model/record_fields.h"
#include "model/record_io.h"

namespace velgrove {

void clsFixture::setDMXIn(std::int32_t follows) {
  m_follows = narrow<std::uint8_t>(follows);
}

void clsFixture::Save(RecordWriter& file) const {
  RecordFields::fields(*this, file);
}

void clsFixture::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
}

void SearchRemove(colFixtures& fixtures, std::int16_t target) {
  ErrorPattern::skip([&] {
    for (const auto& fixture : fixtures)
      if (fixture->Channel == target) return fixtures.Remove(target);
  });
}

void clsFixtureType::Save(RecordWriter& file) const {
  RecordFields::fields(*this, file);
}

void clsFixtureType::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
}

void clsZooms::Save(RecordWriter& file) const {
  RecordFields::fields(*this, file);
}

void clsZooms::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
}

std::int16_t clsView::NumberOfZooms() {
  ViewName = std::to_string(m_numberOfZooms);
  return 0;
}

colFixtures& clsView::colFixtures() {
  if (!m_fixtures) m_fixtures = std::make_shared<velgrove::colFixtures>();
  return *m_fixtures;
}

void clsView::Save(RecordWriter& file) {
  RecordFields::recount(*this);
  RecordFields::fields(*this, file);
  RecordFields::children(*this, file);
}

void clsView::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
  RecordFields::children(*this, file);
}

void clsProject::Save(RecordWriter& file) {
  RecordFields::recount(*this);
  RecordFields::fields(*this, file);
  RecordFields::children(*this, file);
  RecordFields::inputs(*this, file);
}

void clsProject::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
  RecordFields::children(*this, file);
}

}  // namespace velgrove
