#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/show_sheet.h"
#include "script.h"

/// The commands of velgrove-show. Each gives the program's exit code: 0 good, 1 the work failed and a message
/// on standard error says what and where.
namespace velgrove {

struct RunOptions {
  std::string show;  ///< path of the show file
  std::vector<ScriptStep> script;
  std::optional<std::int64_t>
      until;  ///< ms, inclusive; without it one second after the last command and fade
  bool changesOnly = false;
  std::optional<std::string> save;  ///< path for the show as it stands at the end
};

enum class PrintAs { Text, Csv, Json };
/// Text of all sheets or of one; one sheet as CSV, XY when none is named; JSON of everything.
int printShow(const std::string& file, PrintAs how, std::optional<ShowSheet> sheet);
/// 1 also for a show with findings, which it prints.
int checkFile(const std::string& file);
int makeShow(const std::string& jsonFile, const std::string& showFile);
/// These two end by ScriptError where the script names what isn't there.
int rehearse(const RunOptions& options);
int play(const RunOptions& options);

/// A show that is whole; false, with a message for each fault, for any other file.
bool isWholeShow(const std::string& file);
/// Puts a show into a file as the desk does; false, with a message, when it isn't there.
bool saveShow(clsProject& project, const std::string& file);

/// Whether a fade runs in either player.
[[nodiscard]] bool isFading(const LightingDesk& desk);

/// A run without an end of its own goes on so long after the last thing that happened, and never longer than
/// an hour.
inline constexpr std::int64_t QuietTime = 1000;
inline constexpr std::int64_t LongestRun = 3'600'000;

}  // namespace velgrove
