#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "model/collection.h"
#include "model/cues.h"
#include "model/text.h"

namespace velgrove {

struct RecordFields;

/// One fixture of the plot. Shape numbers are handles of the drawing, stored with the show and renewed when
/// the plot is drawn.
class clsFixture {
 public:
  std::string FixtureType;  ///< "fresnel", "leko", "par38", "practical", "scoop" or "icue"
  std::string FixtureName;
  std::uint8_t Level = 0;  ///< the level last shown on this fixture
  std::int32_t Shape = 0;
  std::int16_t Channel = 0;  ///< DMX channel patched, 1 to 512; 0 for none
  std::int32_t ChannelTextShape = 0;
  std::int32_t LevelTextShape = 0;
  std::int32_t DMXInTextShape = 0;
  std::int32_t IconShape = 0;  ///< shape type 1 to 6; 6 is a moving light
  std::int32_t CenterShape = 0;
  std::int32_t CenterShape1 = 0;
  std::int32_t CenterShape2 = 0;
  double PerpX = 0;  ///< handle of the rotate tool, plot world units
  double PerpY = 0;
  double Angle = 0;
  double x = 0;  ///< position, plot world units 0 to 1000
  double y = 0;
  float Wattage = 0;
  std::string ColorNumber;
  std::string ColorMFG;
  std::string PatternNumber;
  std::string PatternMFG;
  std::string EdFocus;
  std::string Mood;
  std::string Effect;
  std::int32_t RectShape = 0;
  std::uint8_t Selected = 0;
  std::uint8_t SelectIndex = 0;

  /// Answers `Level`, not what was set; nobody asks it.
  [[nodiscard]] std::uint8_t DMXInControlChannel() const { return Level; }
  void setDMXInControlChannel(std::uint8_t channel) { m_controlChannel = channel; }
  [[nodiscard]] std::int16_t DMXIn() const { return m_follows; }
  /// Fault::Overflow when the value doesn't fit a byte.
  void setDMXIn(std::int32_t follows);

  void Save(RecordWriter& file) const;
  void restore(RecordReader& file);

  [[nodiscard]] std::uint8_t storedDMXInControlChannel() const { return m_controlChannel; }

 private:
  friend RecordFields;

  std::uint8_t m_controlChannel = 0;
  std::uint8_t m_follows = 0;
};

using colFixtures = Collection<clsFixture>;

/// Looks for the first fixture on channel `target` and removes the item at *position* `target`: the two agree
/// only while the fixtures sit in channel order, and callers count on just that. Every failure ends it
/// silently.
void SearchRemove(colFixtures& fixtures, std::int16_t target);

/// One loaded shape of the document's table; never part of a show file.
struct clsFixtureType {
  std::int16_t id = 0;  ///< fixture type 1 to 6
  double ScaleFactor = 0;
  std::int32_t ShapeNumber = 0;
  FixedText<255> fname;

  void Save(RecordWriter& file) const;
  void restore(RecordReader& file);
};

/// A stored viewport of a view, in plot world units.
struct clsZooms {
  double tp = 0;
  double bt = 0;
  double lt = 0;
  double rt = 0;

  void Save(RecordWriter& file) const;
  void restore(RecordReader& file);
};

using colZooms = Collection<clsZooms>;

/// One stage plot: its fixtures, zoom memories and submasters.
class clsView {
 public:
  std::string ViewName;
  std::int16_t NumberOfFixtures = 0;    ///< recounted by Save
  std::int16_t NumberOfSubMasters = 0;  ///< recounted by Save

  /// Not for use: writes the count into `ViewName` and answers 0. Ask
  /// `colZooms().count()`.
  std::int16_t NumberOfZooms();
  void setNumberOfZooms(std::int16_t zooms) { m_numberOfZooms = zooms; }
  [[nodiscard]] std::int16_t storedNumberOfZooms() const { return m_numberOfZooms; }

  [[nodiscard]] velgrove::colZooms& colZooms() { return m_zooms; }
  auto colZoomsAdd(velgrove::colZooms::Ref zoom) { return m_zooms.add(std::move(zoom)); }
  auto colFixturesAdd(velgrove::colFixtures::Ref fixture) { return colFixtures().add(std::move(fixture)); }
  auto colSubMastersAdd(velgrove::colSubMasters::Ref submaster) {
    return m_subMasters.add(std::move(submaster));
  }
  /// The fixtures; made when the view has none yet.
  [[nodiscard]] velgrove::colFixtures& colFixtures();
  [[nodiscard]] velgrove::colSubMasters& colSubMasters() { return m_subMasters; }
  /// Replaces the fixtures as a whole.
  void setColFixtures(std::shared_ptr<velgrove::colFixtures> fixtures) { m_fixtures = std::move(fixtures); }

  void Save(RecordWriter& file);
  void restore(RecordReader& file);

 private:
  friend RecordFields;

  std::int16_t m_numberOfZooms = 0;
  velgrove::colZooms m_zooms;
  std::shared_ptr<velgrove::colFixtures> m_fixtures = std::make_shared<velgrove::colFixtures>();
  velgrove::colSubMasters m_subMasters;
};

using colViews = Collection<clsView>;
using colQueueData = Collection<clsQueueData>;

/// A whole show.
class clsProject {
 public:
  FixedText<50> ProjectName;
  FixedText<255> ProjectDesc;
  std::int16_t NumberOfViews = 0;  ///< the three counts are right after Save or restore, or when set by hand
  std::int16_t NumberOfQueues = 0;
  std::int16_t NumberOfDMXEntries = 0;

  [[nodiscard]] velgrove::colViews& colViews() { return m_views; }
  [[nodiscard]] velgrove::colQueueData& colQueueData() { return m_queueData; }
  [[nodiscard]] colDMXInEntries& colDMXIn() { return m_dmxIn; }
  auto colViewsAdd(velgrove::colViews::Ref view) { return m_views.add(std::move(view)); }
  auto colQueueDataAdd(velgrove::colQueueData::Ref list) { return m_queueData.add(std::move(list)); }
  auto colDMXInAdd(colDMXInEntries::Ref entry) { return m_dmxIn.add(std::move(entry)); }

  void Save(RecordWriter& file);
  /// Reads everything but the DMX input records at the end: the desk leaves them, and its next save drops
  /// them.
  void restore(RecordReader& file);

 private:
  velgrove::colViews m_views;
  velgrove::colQueueData m_queueData;
  colDMXInEntries m_dmxIn;
};

using colProjects = Collection<clsProject>;

}  // namespace velgrove
