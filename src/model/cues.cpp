#include "model/cues.h"

#include <algorithm>

#include "controls/numbers.h"
#include "model/record_fields.h"
#include "model/record_io.h"

namespace velgrove {
namespace {

Box searchBox(const char* text) {
  return {.text = text, .icon = BoxIcon::Critical};
}

bool matches(const clsQueueEntry& entry, float number, int player) {
  const bool owned = (entry.EntryQueueList == 1 && player == 0) || (entry.EntryQueueList == 2 && player == 1);
  return owned && entry.EntryNum == number;
}

}  // namespace

std::size_t channelIndex(int channel) {
  if (!isChannel(channel))
    throw RunTimeError(Fault::Subscript, "there is no channel " + std::to_string(channel));
  return static_cast<std::size_t>(channel) - 1;
}

std::shared_ptr<clsQueueEntry> search(const colQueueEntries& entries, float number, int player,
                                      const MessageBoxes& boxes) {
  for (const auto& entry : entries)
    if (matches(*entry, number, player)) return entry;
  boxes.show(searchBox("cue search error"));
  return entries.count() == 0 ? nullptr : entries.item(entries.count());
}

void SearchRemove(colQueueEntries& entries, float number, int player, const MessageBoxes& boxes) {
  int position = 1;
  for (; position <= entries.count(); ++position)
    if (matches(*entries.item(position), number, player)) return entries.Remove(position);
  boxes.show(searchBox("cue search Remove error"));
  entries.Remove(position);
}

void clsQueueEntry::Save(RecordWriter& file) const {
  RecordFields::fields(*this, file);
}

void clsQueueEntry::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
}

void clsQueueData::Save(RecordWriter& file) {
  RecordFields::recount(*this);
  RecordFields::fields(*this, file);
  RecordFields::children(*this, file);
}

void clsQueueData::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
  RecordFields::children(*this, file);
}

void clsSubMaster::setDimmerLevel(const ChannelBytes& levels) {
  std::copy(levels.begin(), levels.end() - 1, m_dimmerLevel.begin());
}

std::uint8_t clsSubMaster::DMXInControlChannel() const {
  return narrow<std::uint8_t>(Level);
}

std::uint8_t clsSubMaster::DMXIn() const {
  return narrow<std::uint8_t>(Level);
}

void clsSubMaster::Save(RecordWriter& file) const {
  RecordFields::fields(*this, file);
}

void clsSubMaster::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
}

void clsSubMaster::setStored(const Stored& stored) {
  m_dimmerLevel = stored.DimmerLevel;
  m_controlChannel = stored.DMXInControlChannel;
  m_follows = stored.DMXIn;
}

void clsDMXIn::setValues(const Levels& values) {
  std::copy(values.begin(), values.end() - 1, m_values.begin());
}

void clsDMXIn::Save(RecordWriter& file) const {
  RecordFields::fields(*this, file);
}

void clsDMXIn::restore(RecordReader& file) {
  RecordFields::fields(*this, file);
}

}  // namespace velgrove
