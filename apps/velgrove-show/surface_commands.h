#pragma once

#include "script_words.h"

namespace velgrove {

/// What a script can do by hand at the submasters, the grand master, the preferences and the timings: what
/// `words` say, which is the command's name with what follows it.
[[nodiscard]] Action subMaster(Words words);
[[nodiscard]] Action bumpSubMaster(Words words);
[[nodiscard]] Action grandMaster(Words words);
[[nodiscard]] Action setPreference(Words words);
[[nodiscard]] Action setTiming(Words words);

}  // namespace velgrove
