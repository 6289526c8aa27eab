#pragma once

#include <QWidget>
#include <functional>

#include "controls/error_pattern.h"

namespace velgrove {

/// Shows one of the desk's message boxes above a window and calls back once with the answer. A box that a
/// handler waits for blocks the other windows; one that nobody waits for stands beside them.
void showMessageBox(QWidget* above, const Box& box, bool waitedFor, std::function<void(BoxAnswer)> answered);

}  // namespace velgrove
