// The tools of the plot, and which of them the mouse means.

#include "plot/document.h"

namespace velgrove {

// ---- Taking a tool

/// What the tool before had set on the control ends.
void frmDocument::takeTool(std::int16_t cursor) {
  stopDrag();
  FlpCAD1.letGo();
  FlpCAD1.setCursor(cursor);
  FlpCAD1.Selection = false;
  FlpCAD1.PanMode = false;
  SetSnapCursor(0, 0, false);
  clearControls();
}

void frmDocument::clearControls() {
  m_errors.steps(
      [&] {
        if (std::exchange(RotateActive, false)) AGauge2.Visible = false;
      },
      [&] {
        if (const auto fixture = picked()) unmark(*fixture);
        m_byKeys = false;
      },
      [&] {
        FlpCAD1.RubberBand = false;
        FlpCAD1.RubberBandMode = 0;
      });
}

void frmDocument::SelectTool() {
  MouseMode = tools::Select;
  takeTool(Drawing::ArrowCursor);
  FlpCAD1.Selection = true;
}

void frmDocument::GridTool() {
  FlpCAD1.Snap = !FlpCAD1.Snap;
  SelectTool();
}

void frmDocument::takePlacingTool(std::int16_t mode, ToolCursor cursor) {
  MouseMode = mode;
  takeTool(cursorOf(cursor));
  if (const auto& pointer = FlpCAD1.pointer()) showSnap(*pointer);
}

void frmDocument::LightTool() {
  takePlacingTool(tools::Light, ToolCursor::Light);
}

void frmDocument::SliderTool() {
  takePlacingTool(tools::Slider, ToolCursor::Slider);
}

/// A fixture that was turned before, or added to the selection, is still the one that turns.
void frmDocument::RotateTool() {
  if (RotateActive) return SelectTool();
  MouseMode = tools::Rotate;
  takeTool(cursorOf(ToolCursor::Rotate));
  FlpCAD1.Selection = true;
  RotateActive = AGauge2.Visible = true;
  const auto fixture = picked();
  if (fixture == nullptr) return;
  if (fixture->Selected == 0) mark(*fixture);
  AGauge2.show(fixture->Angle);
}

void frmDocument::DelTool() {
  MouseMode = tools::Delete;
  takeTool(cursorOf(ToolCursor::Delete));
}

void frmDocument::FluidZoomTool() {
  MouseMode = tools::FluidZoom;
  takeTool(cursorOf(ToolCursor::Zoom));
}

void frmDocument::PanTool() {
  MouseMode = tools::None;
  takeTool(Drawing::PanCursor);
  FlpCAD1.PanMode = true;
}

void frmDocument::LockTool() {
  MouseMode = tools::None;
  takeTool(Drawing::DefaultCursor);
}

void frmDocument::NetSelectTool() {
  takeTool(Drawing::ArrowCursor);
  FlpCAD1.RubberBand = true;
}

// ---- The hand

void frmDocument::FlpCAD1_WorldMouseDown(int button, int flags, double x, double y) {
  if ((flags & mouse::Ctrl) != 0) return;
  const Point at{.x = x, .y = y};
  m_errors.run([&] {
    if (button == mouse::Left) leftPress(at);
    if (button == mouse::Right) rightPress(at);
  });
}

void frmDocument::leftPress(Point at) {
  if (isPlacing()) placeLight(at);
  if (MouseMode == tools::Delete) deleteFixtureAt(at);
  if (MouseMode == tools::FluidZoom) WorldZoom(true, ZoomStep, at.x, at.y);
}

void frmDocument::rightPress(Point at) {
  switch (MouseMode) {
    case tools::Light:
      return SelectTool();
    case tools::Select:
      return openFixtureAt(at);
    case tools::FluidZoom:
      return WorldZoom(true, -ZoomStep, at.x, at.y);
    default:
      return;
  }
}

void frmDocument::FlpCAD1_WorldMouseMove(int /*button*/, int /*flags*/, double x, double y) {
  m_errors.run([&] {
    if (isPlacing()) showSnap({.x = x, .y = y});
    if (m_show.FixturesLocked) stopDrag();
    if (DragActive) dragTo({.x = x, .y = y});
  });
}

void frmDocument::FlpCAD1_WorldMouseUp(int button, int flags, double /*x*/, double /*y*/) {
  if (button == mouse::Right || MouseMode != tools::Select || !DragActive) return;
  m_errors.run([&] {
    DragActive = false;
    if (m_show.SelectedFixture == nullptr) return;
    endDrag(m_show.SelectedFixture);
    if ((flags & mouse::Ctrl) == 0) clearSelection();
  });
}

void frmDocument::Form_KeyDown(int keyCode) {
  constexpr int DeleteKey = 46;
  if (keyCode == DeleteKey) DoDelete();
}

}  // namespace velgrove
