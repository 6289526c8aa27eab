#pragma once

#include <concepts>
#include <type_traits>

#include "controls/numbers.h"
#include "model/show.h"

namespace velgrove {

template <class R, class Record>
concept RecordOf = std::same_as<std::remove_const_t<R>, Record>;

/// The one list of every record's fields, in the order of the show file. Whoever writes or reads a record
/// walks through it with a visitor: `field(name, value)`, `count(name, value)` for the counts that children
/// follow, and `children(name, countName, noun, count, items)`.
struct RecordFields {
  static void fields(RecordOf<clsProject> auto& r, auto& visit) {
    visit.field("ProjectName", r.ProjectName);
    visit.field("ProjectDesc", r.ProjectDesc);
    visit.count("NumberOfViews", r.NumberOfViews);
    visit.count("NumberOfQueues", r.NumberOfQueues);
    visit.count("NumberOfDMXEntries", r.NumberOfDMXEntries);
  }
  static void children(clsProject& r, auto& visit) {
    visit.children("colViews", "NumberOfViews", "view", r.NumberOfViews, r.colViews());
    visit.children("colQueueData", "NumberOfQueues", "cue list", r.NumberOfQueues, r.colQueueData());
  }
  /// Apart from the other children, because the desk leaves them in the file.
  static void inputs(clsProject& r, auto& visit) {
    visit.children("colDMXIn", "NumberOfDMXEntries", "DMX input", r.NumberOfDMXEntries, r.colDMXIn());
  }
  static void recount(clsProject& r) {
    r.NumberOfViews = narrow<std::int16_t>(r.colViews().count());
    r.NumberOfQueues = narrow<std::int16_t>(r.colQueueData().count());
    r.NumberOfDMXEntries = narrow<std::int16_t>(r.colDMXIn().count());
  }

  static void fields(RecordOf<clsView> auto& r, auto& visit) {
    visit.field("ViewName", r.ViewName);
    visit.count("NumberOfZooms", r.m_numberOfZooms);
    visit.count("NumberOfFixtures", r.NumberOfFixtures);
    visit.count("NumberOfSubMasters", r.NumberOfSubMasters);
  }
  static void children(clsView& r, auto& visit) {
    visit.children("colFixtures", "NumberOfFixtures", "fixture", r.NumberOfFixtures, r.colFixtures());
    visit.children("colZooms", "NumberOfZooms", "zoom", r.m_numberOfZooms, r.colZooms());
    visit.children("colSubMasters", "NumberOfSubMasters", "submaster", r.NumberOfSubMasters,
                   r.colSubMasters());
  }
  static void recount(clsView& r) {
    r.NumberOfFixtures = narrow<std::int16_t>(r.colFixtures().count());
    r.m_numberOfZooms = narrow<std::int16_t>(r.colZooms().count());
    r.NumberOfSubMasters = narrow<std::int16_t>(r.colSubMasters().count());
  }

  static void fields(RecordOf<clsFixture> auto& r, auto& visit) {
    visit.field("FixtureType", r.FixtureType);
    visit.field("FixtureName", r.FixtureName);
    visit.field("Level", r.Level);
    visit.field("Shape", r.Shape);
    visit.field("Channel", r.Channel);
    visit.field("ChannelTextShape", r.ChannelTextShape);
    visit.field("LevelTextShape", r.LevelTextShape);
    visit.field("DMXInTextShape", r.DMXInTextShape);
    visit.field("IconShape", r.IconShape);
    visit.field("CenterShape", r.CenterShape);
    visit.field("CenterShape1", r.CenterShape1);
    visit.field("CenterShape2", r.CenterShape2);
    visit.field("PerpX", r.PerpX);
    visit.field("PerpY", r.PerpY);
    visit.field("Angle", r.Angle);
    visit.field("x", r.x);
    visit.field("y", r.y);
    visit.field("Wattage", r.Wattage);
    visit.field("ColorNumber", r.ColorNumber);
    visit.field("ColorMFG", r.ColorMFG);
    visit.field("PatternNumber", r.PatternNumber);
    visit.field("PatternMFG", r.PatternMFG);
    visit.field("EdFocus", r.EdFocus);
    visit.field("Mood", r.Mood);
    visit.field("Effect", r.Effect);
    visit.field("RectShape", r.RectShape);
    visit.field("DMXInControlChannel", r.m_controlChannel);
    visit.field("DMXIn", r.m_follows);
    visit.field("Selected", r.Selected);
    visit.field("SelectIndex", r.SelectIndex);
  }

  static void fields(RecordOf<clsFixtureType> auto& r, auto& visit) {
    visit.field("id", r.id);
    visit.field("ScaleFactor", r.ScaleFactor);
    visit.field("ShapeNumber", r.ShapeNumber);
    visit.field("fname", r.fname);
  }

  static void fields(RecordOf<clsZooms> auto& r, auto& visit) {
    visit.field("tp", r.tp);
    visit.field("bt", r.bt);
    visit.field("lt", r.lt);
    visit.field("rt", r.rt);
  }

  static void fields(RecordOf<clsSubMaster> auto& r, auto& visit) {
    visit.field("SubMasterName", r.SubMasterName);
    visit.field("Level", r.Level);
    visit.field("Identifier", r.Identifier);
    visit.field("DimmerLevel", r.m_dimmerLevel);
    visit.field("DMXInControlChannel", r.m_controlChannel);
    visit.field("DMXIn", r.m_follows);
  }

  static void fields(RecordOf<clsQueueData> auto& r, auto& visit) {
    visit.field("QueueListName", r.QueueListName);
    visit.field("QueueListDesc", r.QueueListDesc);
    visit.count("NumberOfQueueEntries", r.NumberOfQueueEntries);
  }
  static void children(clsQueueData& r, auto& visit) {
    visit.children("colQueueEntries", "NumberOfQueueEntries", "cue", r.NumberOfQueueEntries,
                   r.colQueueEntries());
  }
  static void recount(clsQueueData& r) {
    r.NumberOfQueueEntries = narrow<std::int16_t>(r.colQueueEntries().count());
  }

  static void fields(RecordOf<clsQueueEntry> auto& r, auto& visit) {
    visit.field("EntryName", r.EntryName);
    visit.field("EntryDesc", r.EntryDesc);
    visit.field("Reserved", r.Reserved);
    visit.field("EntryNum", r.EntryNum);
    visit.field("Up", r.Up);
    visit.field("Down", r.Down);
    visit.field("Delay", r.Delay);
    visit.field("Values", r.Values);
    visit.field("EntryQueueList", r.EntryQueueList);
    visit.field("QueueListMasterGo", r.QueueListMasterGo);
    visit.field("QueueNumberMasterGo", r.QueueNumberMasterGo);
  }

  static void fields(RecordOf<clsDMXIn> auto& r, auto& visit) {
    visit.field("PatchChannel", r.PatchChannel);
    visit.field("EntryName", r.EntryName);
    visit.field("EntryDesc", r.EntryDesc);
    visit.field("Values", r.m_values);
    visit.field("NumberOfPatches", r.NumberOfPatches);
  }
};

/// Records that own others, and so have counts to keep right.
template <class R>
concept RecordWithChildren = requires(R& record) {
  RecordFields::recount(record);
};

}  // namespace velgrove
