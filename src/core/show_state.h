#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "model/booth_settings.h"
#include "model/show.h"

namespace velgrove {

/// Codes of LevelSource.
enum class Source : std::int16_t { Manual = 0, Queue = 1, Input = 2, Submaster = 3 };

/// Answers to the question whether to save.
enum class SaveAnswer : std::int16_t { None = 0, DontSave = 1, Cancel = 2, Save = 3 };

/// What the fixture types 1 to 6 are called; also the base names of their shape files.
inline constexpr std::array<std::string_view, 6> FixtureTypes{"fresnel",   "leko",  "par38",
                                                              "practical", "scoop", "icue"};
inline constexpr std::int32_t MovingLight = 6;  ///< the type that takes three channels
inline constexpr int MovingLightChannels = 3;   ///< brightness, and the position in two
/// How far beside a moving light, in world units, the fixtures of its position's channels lie.
inline constexpr double OutOfSight = 2000;
/// Whether a fixture is one of those. On a wide window a light itself can stand somewhat beside the plot.
[[nodiscard]] inline bool isPosition(const clsFixture& fixture) {
  constexpr double FarBeside = 0.75 * OutOfSight;
  return fixture.IconShape == MovingLight && fixture.x >= FarBeside;
}

/// What more than one window needs to know. There is one show in memory at a time.
struct ShowState {
  static constexpr int SubMasterCount = 24;
  static constexpr int MostSelected = 251;  ///< fixtures of a multi-selection
  static constexpr int RecentFiles = 11;    ///< entries of MRUList; the first ten are used

  colProjects Projects;                  ///< the open show; never more than one after a load
  std::int16_t CurrentProjectIndex = 0;  ///< 0 when no show is open
  std::int16_t LastProjectIndex = 0;     ///< copy taken after each new or open
  std::int16_t CurrentViewIndex = 0;     ///< the view that a document takes while it loads
  std::string ProjectName;               ///< of the show being created or opened
  std::string ProjectDescription;
  std::string ProjectFileName;  ///< full path; "" means none
  bool ProjectDirty = false;    ///< unsaved changes
  bool ExitConfirmed = false;
  SaveAnswer SaveDialogResult = SaveAnswer::None;
  /// The bytes of the file that the open show came from, when something of it was missing.
  std::optional<std::string> DamagedOriginal;
  std::int32_t OpenDocumentCount = 0;
  std::array<std::shared_ptr<clsSubMaster>, SubMasterCount> SubMasterSlots;
  std::array<std::string, RecentFiles> MRUList;  ///< index 0 the most recent
  std::int16_t MRUCount = 0;                     ///< lines read at start

  std::int16_t NumChannels = ChannelCount;  ///< channels merged, rewritten at the send, and received
  bool DMXSubmasters = false;               ///< received levels drive the submasters
  bool DMXDimmers = false;                  ///< received levels are merged
  bool ClearManual = false;                 ///< while True the merge wipes the manual levels
  bool FixturesLocked = false;
  bool BlindMode = false;  ///< the view's mode, of which one at a time is true; BlindOn is what counts
  bool LiveMode = false;
  bool StageMode = false;
  std::shared_ptr<clsFixture> SelectedFixture;                             ///< picked last on the plot; none
  std::array<std::shared_ptr<clsFixture>, MostSelected> SelectedFixtures;  ///< the multi-selection
  std::int16_t SelectionCount = 0;                                         ///< entries of it
  std::shared_ptr<clsFixture> CurrentFixture;  ///< that a dialog or a delete works on; none
  std::int32_t SelectedFixtureType = 0;  ///< 1 fresnel, 2 leko, 3 par38, 4 practical, 5 scoop, 6 moving light
  std::int16_t CurrentPlayer = 0;        ///< the list being addressed: 1 AB, 2 XY, 0 before any has loaded
  std::int16_t CurrentSubMasterIndex = -1;  ///< the submaster in the record dialog; -1 none
  std::int16_t NUMSubs = 0;                 ///< submasters, from the first, that follow the DMX input
  std::int16_t PrefShowSubs = 0;            ///< -1 shows the panel of the submasters at start
  std::int16_t TriggerSetting =
      0;  ///< of the electronic trigger as loaded or saved last; the poll asks the box
  std::int16_t RecordSetting = 0;  ///< of the logging, as loaded or saved last
  bool DebugLogging = false;
  std::int16_t BarColumns = 0;
  std::int16_t BarRows = 0;
  std::int16_t BarGap = 0;
  BoothSettings Booth;
  std::int16_t EffectListNext = 1;   ///< number of the next effect
  std::int16_t LevelTextSource = 0;  ///< the Source code with which level text is drawn next

  std::int16_t DefaultUp = 0;  ///< times of a new cue, seconds
  std::int16_t DefaultDown = 0;
  std::int16_t DefaultDelay = 0;

  bool BlindOn = false;  ///< the mode flags are common to both players
  bool LiveOn = false;
  bool GoFromInput = false;        ///< a Go from the frame's tools or the interface's trigger is under way
  bool ABEndsManualClear = false;  ///< AB's fade end lowers ClearManual
  bool XYEndsManualClear = true;   ///< XY's fade end lowers ClearManual

  // Per-channel levels of everything that acts on the light. DMX channel c is element c - 1; a level is a DMX
  // value 0 to 255 (ANSI E1.11). Fixed arrays, so that the timers' handlers never allocate.

  std::array<std::uint8_t, ChannelCount> DMXOutput{};     ///< the merged level: what goes on the wire
  std::array<std::uint8_t, ChannelCount> DMXInput{};      ///< last received from the interface
  std::array<std::uint8_t, ChannelCount> ManualLevels{};  ///< set by hand on fixtures
  std::array<std::uint8_t, ChannelCount> SubLevels{};     ///< the submasters' share
  std::array<std::uint8_t, ChannelCount> QueueLevels{};   ///< the higher of both players, made by the merge
  /// What each player puts out. A crossfade can leave the range of a level; the merge then reports it.
  std::array<std::int16_t, ChannelCount> ABLevels{};
  std::array<std::int16_t, ChannelCount> XYLevels{};
  std::array<std::int16_t, ChannelCount> LevelSource{};  ///< which source won, a Source
  std::array<std::uint8_t, ChannelCount> BlindLevels{};  ///< shown on the plot in Blind, never output
};

/// Level to percent. The top three percent read as 100 and the bottom three as 0, so that an almost full
/// fader reads full.
[[nodiscard]] float DMXToPct(std::int16_t level);

/// Percent to level, without that snap. Fault::Overflow outside 16 bits.
[[nodiscard]] std::int16_t PctToDMX(float pct);

}  // namespace velgrove
