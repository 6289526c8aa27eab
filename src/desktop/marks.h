#pragma once

#include <QPainter>

#include "core/show_state.h"
#include "dmx/velgrove_comm.h"

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

/// What the lamp says, in words.
[[nodiscard]] const char* wordsOf(InterfaceState::Lamp lamp);

/// The interface's lamp: a disc while it is up, a ring while it starts, a triangle when there is none.
void drawLamp(QPainter& painter, InterfaceState::Lamp lamp, const QRectF& area, const QColor& colour);

}  // namespace velgrove
