#pragma once

#include <QPainter>

namespace velgrove {

/// The marks of stage and next: a square with S, an arrow to the right with N.
void drawLetterMark(QPainter& painter, const QRect& area, bool next, const QColor& body,
                    const QColor& letter);

}  // namespace velgrove
