#pragma once

#include <QPainter>

namespace velgrove {

/// The marks of stage and next: a square with S, an arrow to the right with N.
void drawLetterMark(QPainter& painter, const QRect& area, bool next, const QColor& body,
                    const QColor& letter);

/// The triangle of what comes in by DMX, by the middle of its left side and its width.
constexpr double InputMarkSize = 12;
void drawInputMark(QPainter& painter, QPointF left, double size = InputMarkSize);

}  // namespace velgrove
