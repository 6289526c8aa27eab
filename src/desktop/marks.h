#pragma once

#include <QPainter>

#include "core/show_state.h"

namespace velgrove {

/// The marks of stage and next: a square with S, an arrow to the right with N.
void drawLetterMark(QPainter& painter, const QRect& area, bool next, const QColor& body,
                    const QColor& letter);

/// The triangle of what comes in by DMX, by the middle of its left side and its width.
constexpr double InputMarkSize = 12;
void drawInputMark(QPainter& painter, QPointF left, double size = InputMarkSize);

/// What holds a level, in a word.
[[nodiscard]] const char* wordsOf(Source source);

/// Tells the source of a level without its colour: a square for manual, a triangle for the input, a disc for
/// a submaster. The cue players, from which most light comes, have none.
void drawSourceMark(QPainter& painter, Source source, const QColor& colour, const QRectF& area);

}  // namespace velgrove
