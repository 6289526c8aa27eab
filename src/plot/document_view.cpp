// What the window shows of the plot, and the commands of looking.

#include <algorithm>
#include <cmath>

#include "controls/numbers.h"
#include "plot/document.h"

namespace velgrove {
namespace {

constexpr int ScrollMargin = 20;  // pixels of a scroll bar that the other one takes

}  // namespace

void frmDocument::ZoomInTool() {
  const Point middle = FlpCAD1.limits().middle();
  WorldZoom(true, ZoomStep, middle.x, middle.y);
  clearControls();
}

void frmDocument::ZoomOutTool() {
  const Point middle = FlpCAD1.limits().middle();
  WorldZoom(true, -ZoomStep, middle.x, middle.y);
  clearControls();
}

void frmDocument::FlpCAD1_WorldRectPos(double left, double top, double right, double bottom) {
  m_errors.run([&] {
    auto zoom = std::make_shared<clsZooms>();
    zoom->lt = left;
    zoom->tp = top;
    zoom->rt = right;
    zoom->bt = bottom;
    GetCurrentView()->colZoomsAdd(std::move(zoom));
    m_rubberBand = {.left = left, .top = top, .right = right, .bottom = bottom};
  });
}

// ---- The view

void frmDocument::Form_Activate() {
  m_errors.run([&] {
    if (m_rubberBand) showLimits(*m_rubberBand);
    FlpCAD1.repaint();
  });
}

void frmDocument::WorldZoom(bool direction, double step, double x, double y) {
  const Extents& now = FlpCAD1.limits();
  const Point about = direction ? Point{.x = x, .y = y} : now.middle();
  const double factor = direction ? 1 - step : step;
  const double w = std::abs(now.right - now.left) / 2 * factor;
  const double h = std::abs(now.top - now.bottom) / 2 * factor;
  showLimits({.left = about.x - w, .top = about.y + h, .right = about.x + w, .bottom = about.y - h});
}

void frmDocument::showLimits(const Extents& limits) {
  FlpCAD1.setLimits(limits);
  followView();
}

/// Moves no further than it takes to see the part whole.
void frmDocument::bringIntoView(const Extents& part) {
  const Extents& now = FlpCAD1.limits();
  const double right = std::max(part.right - now.right, 0.0) + std::min(part.left - now.left, 0.0);
  const double up = std::max(part.top - now.top, 0.0) + std::min(part.bottom - now.bottom, 0.0);
  if (right == 0 && up == 0) return;
  showLimits(
      {.left = now.left + right, .top = now.top + up, .right = now.right + right, .bottom = now.bottom + up});
}

/// Sets the scroll bars where the view stands, without moving it.
void frmDocument::followView() {
  const auto onBar = [](double units) {
    return static_cast<int>(roundTo<std::int32_t>(std::clamp<double>(units, 0, WorldSize)));
  };
  m_hScroll = onBar(FlpCAD1.limits().left);
  m_vScroll = onBar(WorldSize - FlpCAD1.limits().top);
  HScroll1.setValue(m_hScroll);
  VScroll1.setValue(m_vScroll);
}

void frmDocument::HScroll1_Change() {
  const int before = std::exchange(m_hScroll, HScroll1.value());
  FlpCAD1.moveView(m_hScroll - before, 0);
}

void frmDocument::VScroll1_Change() {
  const int before = std::exchange(m_vScroll, VScroll1.value());
  FlpCAD1.moveView(0, before - m_vScroll);
}

void frmDocument::sizeScrollBars() {
  HScrollLength = std::max(FlpCAD1.pixelWidth() - ScrollMargin, 0);
  VScrollLength = std::max(FlpCAD1.pixelHeight() - ScrollMargin, 0);
}

}  // namespace velgrove
