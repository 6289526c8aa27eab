#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "controls/list_view.h"
#include "model/show_file.h"

/// The check before the performance: goes through a show and tells what would go wrong in it.
namespace velgrove {

/// One thing that would go wrong.
struct Finding {
  enum class What {
    Damage,          ///< the file was damaged
    NoList,          ///< a player has no list in this show
    NoPlayer,        ///< a list has no player
    HiddenCue,       ///< no row shows the cue
    TooClose,        ///< nor this one: its number is within a tenth of another's
    UnknownNumber,   ///< the row's text leads to no cue, or to another one
    TimeBelowZero,   ///< of a cue
    OutOfRange,      ///< a crossfade's mix is no level
    WrongLook,       ///< a crossfade doesn't end with the look that it goes to
    NoFixture,       ///< a cue lights channels without a fixture
    NoTarget,        ///< a link leads to no row
    NoEffect,        ///< a link leads to no effect
    IdleEffect,      ///< an effect that lights nothing, or channels that aren't there
    EndlessLinks,    ///< links start each other on and on
    LoopRows,        ///< a loop is set over rows that aren't there, or never ends
    NoChannel,       ///< a fixture without a channel, or on one that isn't there
    SharedChannel,   ///< fixtures on one channel
    PositionChannel  ///< a fixture on a channel that turns a moving light
  };
  enum class Where { Show, ListAB, ListXY, Patch };
  /// What is often meant, or can't be known from the show alone, is a note: it makes no show unclean.
  enum class Weight { Note, Fault };
  /// When a mix leaves the range, and by how much.
  struct Excess {
    std::int32_t ms = 0;         ///< since the Go
    int channel = 0;             ///< the first one that does
    std::optional<int> highest;  ///< nothing above 32767
  };

  What what;
  Where where;
  std::string text;     ///< in plain words, one line
  float number = 0;     ///< of the cue
  std::string row{};    ///< text that the cue's row has or would have; empty where it's not about one cue
  int channel = 0;      ///< of the fixture
  std::string light{};  ///< name of the fixture; empty where it's not about one
  Weight weight = Weight::Fault;
  std::optional<Excess> excess{};
};

/// A loop that is set in a player.
struct SetLoop {
  int passes = 0;  ///< 0 when none is
  int firstRow = 0;
  int lastRow = 0;
};

/// What is checked.
struct CheckedShow {
  clsProject* project = nullptr;    ///< isn't changed, and is nobody else's meanwhile
  std::vector<FileFault> damage{};  ///< of its file
  // What only a desk knows:
  std::optional<std::vector<ListView::Row>> effects{};  ///< nothing when there is no telling
  std::array<SetLoop, 2> loops{};                       ///< of AB and XY
};

/// All findings, sorted by place and cue. Fixtures count from whichever view they are in. Blackout is added
/// to a list without one, as a player does.
[[nodiscard]] std::vector<Finding> checkShow(const CheckedShow& show);

[[nodiscard]] int faultCount(const std::vector<Finding>& findings);

// A finding as one line: "AB 12.50: ..."

[[nodiscard]] std::string listText(const Finding& finding);  ///< "AB", "XY", "Patch", "Show"
[[nodiscard]] std::string cueText(const Finding& finding);  ///< "12.50"; of a fixture its channel; or nothing
[[nodiscard]] std::string lineText(const Finding& finding);
/// "2 findings, 1 note"; "no findings".
[[nodiscard]] std::string countText(const std::vector<Finding>& findings);

}  // namespace velgrove
