#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "controls/error_pattern.h"
#include "model/collection.h"

namespace velgrove {

struct RecordFields;
class RecordReader;
class RecordWriter;

inline constexpr int ChannelCount = 512;  ///< channels of a DMX512-A universe (ANSI E1.11)

/// Levels 0 to 255 of channels 1 to 512; channel c is element c - 1.
using ChannelBytes = std::array<std::uint8_t, ChannelCount>;

[[nodiscard]] constexpr bool isChannel(int number) {
  return number >= 1 && number <= ChannelCount;
}

/// The element of a channel in any array of levels; Fault::Subscript outside 1 to 512.
[[nodiscard]] std::size_t channelIndex(int channel);

/// One cue.
struct clsQueueEntry {
  std::string EntryName;
  std::string EntryDesc;
  std::int16_t Reserved = 0;  ///< part of the record, without a use
  float EntryNum = 0;
  std::int16_t Up = 0;     ///< seconds
  std::int16_t Down = 0;   ///< seconds
  std::int16_t Delay = 0;  ///< seconds
  ChannelBytes Values{};
  std::int16_t EntryQueueList =
      0;  ///< owner mark: 2 on every cue of the AB list, 1 on every cue of the XY list
  std::string QueueListMasterGo;  ///< list that this cue's Go also starts: "None", "AB", "XY" or "EF"
  std::optional<std::string> QueueNumberMasterGo;  ///< its target; nothing until first set

  void Save(RecordWriter& file) const;
  void restore(RecordReader& file);
};

using colQueueEntries = Collection<clsQueueEntry>;

/// Finds the cue with exactly this number and the owner mark `player` + 1 (`player` is 1 when AB asks, 0 when
/// XY asks). Without a match it shows "cue search error" and gives the last cue looked at, null in an empty
/// list.
[[nodiscard]] std::shared_ptr<clsQueueEntry> search(const colQueueEntries& entries, float number, int player,
                                                    const MessageBoxes& boxes);

/// Removes the cue that `search` would find. Without a match it shows "cue search Remove error" and still
/// removes the position past the end, which is Fault::Subscript.
void SearchRemove(colQueueEntries& entries, float number, int player, const MessageBoxes& boxes);

/// One cue list.
class clsQueueData {
 public:
  std::string QueueListName;              ///< "AB" or "XY"
  std::string QueueListDesc;              ///< "AB Fader" or "XY Fader"
  std::int16_t NumberOfQueueEntries = 0;  ///< recounted by Save

  [[nodiscard]] velgrove::colQueueEntries& colQueueEntries() { return m_entries; }
  [[nodiscard]] const velgrove::colQueueEntries& colQueueEntries() const { return m_entries; }
  auto colQueueEntriesAdd(velgrove::colQueueEntries::Ref cue) { return m_entries.add(std::move(cue)); }

  void Save(RecordWriter& file);
  void restore(RecordReader& file);

 private:
  velgrove::colQueueEntries m_entries;
};

/// One submaster: a stored look that a fader scales.
class clsSubMaster {
 public:
  std::string SubMasterName;
  std::int32_t Level = 0;       ///< set to 0 when recorded; the running level is the panel's label
  std::int32_t Identifier = 0;  ///< index on the panel, 0 to 23

  [[nodiscard]] const ChannelBytes& DimmerLevel() const { return m_dimmerLevel; }
  /// Takes channels 1 to 511 of a look: channel 512 keeps what it had.
  void setDimmerLevel(const ChannelBytes& levels);

  /// Both answer `Level`, as a byte, and not what was set; nobody asks them. Fault::Overflow above 255.
  [[nodiscard]] std::uint8_t DMXInControlChannel() const;
  [[nodiscard]] std::uint8_t DMXIn() const;
  void setDMXInControlChannel(std::uint8_t channel) { m_controlChannel = channel; }
  void setDMXIn(std::uint8_t follows) { m_follows = follows; }

  void Save(RecordWriter& file) const;
  void restore(RecordReader& file);

  /// What the record holds, for the file and for tools that show it.
  struct Stored {
    ChannelBytes DimmerLevel{};
    std::uint8_t DMXInControlChannel = 0;
    std::uint8_t DMXIn = 0;
  };
  [[nodiscard]] Stored stored() const { return {m_dimmerLevel, m_controlChannel, m_follows}; }
  void setStored(const Stored& stored);

 private:
  friend RecordFields;

  ChannelBytes m_dimmerLevel{};
  std::uint8_t m_controlChannel = 0;
  std::uint8_t m_follows = 0;
};

using colSubMasters = Collection<clsSubMaster>;

/// One DMX input entry. Written once with a new show, and not read back by the desk.
class clsDMXIn {
 public:
  using Levels = std::array<std::uint8_t, ChannelCount + 1>;  ///< indices 0 to 512

  std::int16_t PatchChannel = 0;
  std::string EntryName;
  std::string EntryDesc;
  std::int16_t NumberOfPatches = 0;

  [[nodiscard]] const Levels& Values() const { return m_values; }
  /// Takes indices 0 to 511: index 512 is never written.
  void setValues(const Levels& values);

  void Save(RecordWriter& file) const;
  void restore(RecordReader& file);

  /// Replaces all 513 bytes, for tools that make a file.
  void setStoredValues(const Levels& values) { m_values = values; }

 private:
  friend RecordFields;

  Levels m_values{};
};

using colDMXInEntries = Collection<clsDMXIn>;

}  // namespace velgrove
