#pragma once

#include "script_words.h"

namespace velgrove {

/// What a script can do by hand on the plot and in the fixtures' dialogs: what `words` say, which is the
/// command's name with what follows it. The dialogs' commands end as their OK does.
[[nodiscard]] Action placeLight(Words words);
[[nodiscard]] Action moveFixture(Words words);
[[nodiscard]] Action rotateFixture(Words words);
[[nodiscard]] Action deleteFixture(Words words);
[[nodiscard]] Action patchFixture(Words words);
[[nodiscard]] Action setFixture(Words words);
[[nodiscard]] Action aimFixture(Words words);

}  // namespace velgrove
