#pragma once

#include <QRect>
#include <algorithm>

namespace velgrove {

/// An area moved as little as it takes to stand in a room; one that is too large begins at the room's corner.
inline QRect within(QRect area, const QRect& room) {
  area.moveLeft(std::clamp(area.left(), room.left(), std::max(room.left(), room.right() + 1 - area.width())));
  area.moveTop(std::clamp(area.top(), room.top(), std::max(room.top(), room.bottom() + 1 - area.height())));
  return area;
}

}  // namespace velgrove
