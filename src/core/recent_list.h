#pragma once

#include <filesystem>
#include <string>

#include "core/show_state.h"

namespace velgrove {

/// The recent list's file: full paths, one a line, CR LF behind each, the most recent first.
inline constexpr const char* RecentListFile = "mru.dat";
inline constexpr std::size_t RecentFilesUsed = 10;  ///< of the entries of MRUList

/// Fills MRUList and MRUCount from the file's text. Fault::Subscript for more than 11 lines.
void readRecentList(ShowState& show, const std::string& text);

/// Brings ProjectFileName to the top of MRUList. Only what was listed at start is looked for, so that a file
/// saved for the first time can stand there twice until the next start.
void noteRecentFile(ShowState& show);

/// The file's text for MRUList: its first ten entries, up to the first empty one. A path with a line end in
/// it has no line there: it would come back as several, and too many of them cost the whole list.
[[nodiscard]] std::string recentListText(const ShowState& show);

}  // namespace velgrove
