#pragma once

#include <array>
#include <optional>
#include <string>

#include "model/sheet.h"
#include "model/show.h"

/// A show as a stage manager and an electrician read it.
namespace velgrove {

/// The sheets of a show, in the order in which they are printed.
enum class ShowSheet { ListXY, ListAB, Patch, Submasters };
inline constexpr std::array AllShowSheets{ShowSheet::ListXY, ShowSheet::ListAB, ShowSheet::Patch,
                                          ShowSheet::Submasters};

/// A loop that is set in a player. No file keeps it, so only a desk can tell.
struct CueLoop {
  float first = 0;  ///< cue numbers
  float last = 0;
  int passes = 0;  ///< still to run; 0 when no loop is set
};
struct CueLoops {
  CueLoop xy{};
  CueLoop ab{};
};

/// The cues of a list by number, with times, links and levels. What has no number comes last.
[[nodiscard]] Sheet cueSheet(const clsQueueData& list, const CueLoop& loop = {});
/// The fixtures by channel, those without one first; it says which share a channel.
[[nodiscard]] Sheet patchSheet(clsProject& project);
/// The submasters that are in use.
[[nodiscard]] Sheet submasterSheet(clsProject& project);

/// One sheet of a show; nothing when the show has no such list. The players know their list by its place: AB
/// plays the first one, XY the second.
[[nodiscard]] std::optional<Sheet> sheetOf(clsProject& project, ShowSheet which, const CueLoops& loops = {});

/// Every list, the patch and the submasters as text.
[[nodiscard]] std::string showText(clsProject& project);

/// "1 @ FL, 5-8 @ 50": the channels above 0 in percent, FL for what the plot shows as full. However little
/// light there is, it is 1 at least.
[[nodiscard]] std::string levelsText(const ChannelBytes& levels);

}  // namespace velgrove
