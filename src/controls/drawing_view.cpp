// What a drawing shows of its world, and what the hand does to it.

#include <algorithm>
#include <cmath>

#include "controls/drawing.h"

namespace velgrove {
namespace {

constexpr double SmallestView = 0.01;  // world units; below and above, a screen couldn't show it
constexpr double LargestView = 1e7;
constexpr double SmallestBand = 4;  // pixels; a click whose hand trembles draws no rectangle

bool canShow(const Extents& limits) {
  const auto good = [](double size) { return size >= SmallestView && size <= LargestView; };
  return good(limits.width()) && good(limits.height()) && std::abs(limits.left) <= LargestView &&
         std::abs(limits.bottom) <= LargestView;
}

Extents between(Point a, Point b) {
  return {.left = std::min(a.x, b.x),
          .top = std::max(a.y, b.y),
          .right = std::max(a.x, b.x),
          .bottom = std::min(a.y, b.y)};
}

}  // namespace

void Drawing::setLimits(const Extents& limits) {
  if (limits == m_limits || !canShow(limits)) return;
  m_limits = limits;
  changed();
}

void Drawing::moveView(double dx, double dy) {
  setLimits({.left = m_limits.left + dx,
             .top = m_limits.top + dy,
             .right = m_limits.right + dx,
             .bottom = m_limits.bottom + dy});
}

void Drawing::setPixelSize(int width, int height) {
  const int newWidth = std::max(width, 1);
  const int newHeight = std::max(height, 1);
  if (newWidth == m_pixelWidth && newHeight == m_pixelHeight) return;
  m_pixelWidth = newWidth;
  m_pixelHeight = newHeight;
  raise(Resized);
}

double Drawing::pixelsPerUnit() const {
  return std::min(m_pixelWidth / m_limits.width(), m_pixelHeight / m_limits.height());
}

Pixel Drawing::toPixels(Point world) const {
  const Point middle = m_limits.middle();
  const double scale = pixelsPerUnit();
  return {.x = (m_pixelWidth / 2.0) + ((world.x - middle.x) * scale),
          .y = (m_pixelHeight / 2.0) - ((world.y - middle.y) * scale)};
}

Point Drawing::toWorld(Pixel pixel) const {
  const Point middle = m_limits.middle();
  const double scale = pixelsPerUnit();
  return {.x = middle.x + ((pixel.x - (m_pixelWidth / 2.0)) / scale),
          .y = middle.y - ((pixel.y - (m_pixelHeight / 2.0)) / scale)};
}

// ---- The hand

Point Drawing::note(int flags, Pixel at) {
  m_keys = flags;
  m_pointer = toWorld(at);
  return *m_pointer;
}

void Drawing::press(int button, int flags, Pixel at) {
  const Point world = note(flags, at);
  if (WorldMouseDown) WorldMouseDown(button, flags, world.x, world.y);
  if (button == mouse::Left) takeInHand(at);
}

void Drawing::takeInHand(Pixel at) {
  if (PanMode) {
    m_held = at;
  } else if (RubberBand) {
    m_bandFrom = toWorld(at);
  } else if (Selection) {
    const ShapeNumber picked = shapeAt(toWorld(at));
    if (picked > 0 && ShapeNumberSelected) ShapeNumberSelected(shapeType(picked), picked);
  }
}

void Drawing::move(int button, int flags, Pixel at) {
  const Point world = note(flags, at);
  if (WorldMouseMove) WorldMouseMove(button, flags, world.x, world.y);
  if (m_held) {
    const Pixel before = *m_held;
    m_held = at;
    panBy(at.x - before.x, at.y - before.y);
  }
  if (m_bandFrom) m_band = between(*m_bandFrom, world);
}

void Drawing::release(int button, int flags, Pixel at) {
  const Point world = note(flags, at);
  if (button == mouse::Left) {
    const auto band = m_band;
    letGo();
    const double least = SmallestBand / pixelsPerUnit();
    if (band && std::min(band->width(), band->height()) >= least && WorldRectPos)
      WorldRectPos(band->left, band->top, band->right, band->bottom);
  }
  if (WorldMouseUp) WorldMouseUp(button, flags, world.x, world.y);
}

void Drawing::letGo() {
  m_held.reset();
  m_bandFrom.reset();
  m_band.reset();
}

void Drawing::panBy(double pixelsX, double pixelsY) {
  const double scale = pixelsPerUnit();
  moveView(-pixelsX / scale, pixelsY / scale);
  raise(ViewMoved);
}

}  // namespace velgrove
