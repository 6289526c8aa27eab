#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/drawing.h"
#include "controls/form.h"
#include "controls/machine.h"
#include "core/show_state.h"

namespace velgrove {

/// The tools of the plot: values of frmDocument::MouseMode.
namespace tools {
inline constexpr std::int16_t None = -1;  ///< lock and pan: no handler of the desk reacts
inline constexpr std::int16_t Select = 1;
inline constexpr std::int16_t Light = 2;
inline constexpr std::int16_t Slider = 3;
inline constexpr std::int16_t Rotate = 5;
inline constexpr std::int16_t FluidZoom = 6;
inline constexpr std::int16_t Delete = 10;
}  // namespace tools

/// How DrawShape goes about a fixture.
enum class DrawMode {
  Existing = 1,  ///< one of the show
  New = 2,       ///< makes one on the next channel
  Again = 3,     ///< after a move
};

/// The cursors of the tools, as places in frmDocument::ToolCursors.
enum class ToolCursor : std::uint8_t { Rotate, Light, Slider, Blank, Delete, Zoom };

/// The window of one view: the stage plot on which each fixture stands as a few shapes of a drawing. It owns
/// the three timers on which the light leans: the merge, the submasters' input and the display of levels.
class frmDocument {
 public:
  struct Wiring {
    /// Lets received levels move the submasters; the panel's work at each tick of SubsInput.
    std::function<void()> followInput;
    /// Makes the submasters' windows anew from the view's colSubMasters.
    std::function<void()> rebuildSubMasters;
    /// The levels of a player's stage cue by channel - 1; none when it has no such cue.
    std::function<const ChannelBytes*()> abStageCue;
    std::function<const ChannelBytes*()> xyStageCue;
    /// Where the shapes and cursors lie. Empty where nobody sees the plot: every fixture is then a plain box,
    /// and no file is read.
    std::filesystem::path graphics = {};
    /// Opens the dialog of CurrentFixture beside a place of the plot.
    std::function<void(Pixel at)> openFixture = {};
    /// A fixture goes: no dialog may hold its channel any longer.
    std::function<void()> closeFixture = {};
  };

  frmDocument(ShowState& show, Machine& machine, Wiring wiring);
  frmDocument(const frmDocument&) = delete;
  frmDocument& operator=(const frmDocument&) = delete;

  Form Window;
  Drawing FlpCAD1;
  Slider HScroll1{0, WorldSize};  ///< left limit of the view, world units
  Slider VScroll1{0, WorldSize};  ///< how far the view's top lies below that of the world
  int HScrollLength = 0;          ///< pixels
  int VScrollLength = 0;
  Gauge AGauge2;  ///< the picked fixture's Angle, degrees clockwise
  Timer TallyInputs;
  Timer SubsInput;
  Timer UpdateDisplay;

  std::int16_t MouseMode = 0;  ///< the active tool
  std::shared_ptr<clsView> ActiveView;
  Collection<clsFixtureType> ShapeTable;  ///< the loaded shapes, by their id
  std::int16_t ShapeCount = 0;
  std::int16_t LastChannel = 0;  ///< highest channel handed out so far on this plot
  double GridPitchX = 0;         ///< of the grid and the snap, world units
  double GridPitchY = 0;
  Point SnapPos;      ///< where the cursor snapped
  Point LastSnapPos;  ///< and where before
  std::int16_t LevelFont = 0;
  ShapeNumber SnapCursor = 0;  ///< the mark of the snap cursor; 0 if none
  std::array<std::int16_t, 6> ToolCursors{};
  bool RotateActive = false;  ///< the gauge is showing
  bool FixtureSelected = false;
  bool DragActive = false;
  Point Pivot;                              ///< about which InitRotateFixture turned last
  std::shared_ptr<clsFixture> FixtureWalk;  ///< where a walk over the fixtures stands

  /// Takes the view that is current while the show loads, for good, draws it and starts the timers.
  void Form_Load();
  /// The window comes to the front: it shows the rubber band drawn last.
  void Form_Activate();
  void CloseView();  ///< at the end of the program
  void stopTimers();

  /// Fault::ObjectMissing when the window found none to show.
  [[nodiscard]] std::shared_ptr<clsView> GetCurrentView() const;

  // ---- Fixtures and their shapes

  /// Loads a shape into ShapeTable. A file that fails raises the error pattern, then a box that names it.
  void GetFixtureShape(const std::string& name, std::int16_t id);
  void SetViewFixtures();
  /// Draws a fixture of the type SelectedFixtureType at a place, and gives it back; `fixture` is not looked
  /// at for a new one.
  std::shared_ptr<clsFixture> DrawShape(double x, double y, DrawMode mode,
                                        std::shared_ptr<clsFixture> fixture);
  /// The first fixture with this Shape, or this RectShape. When there is none, a new one by the name of
  /// "Not Found", on which all that follows does no harm.
  [[nodiscard]] std::shared_ptr<clsFixture> GetFixtureObject(ShapeNumber shape) const;
  [[nodiscard]] std::shared_ptr<clsFixture> GetFixtureByRect(ShapeNumber shape) const;

  // ---- Level texts

  /// Writes a fixture's texts: its channel, its `Level` in the colour of LevelTextSource, and in Blind its
  /// blind level. What reads so already is left alone.
  void DrawTextOnShape(clsFixture& fixture);
  void DeleteTextOnShape(clsFixture& fixture);
  /// Shows the levels of both players' stage cues, until the next display tick.
  void topLevels();
  void SetBlindMode();
  void SetLiveMode();
  void SetStageMode();

  // ---- Tools

  void SelectTool();
  void GridTool();
  void LightTool();
  void SliderTool();
  void RotateTool();  ///< a second call takes it away again
  void DelTool();
  void FluidZoomTool();
  void PanTool();
  void LockTool();
  void NetSelectTool();
  void ZoomInTool();
  void ZoomOutTool();
  void clearControls();
  void Test() {}  ///< a tool of its own that has nothing to do on a plot

  /// Takes the selected fixtures off the show. Their shapes are only painted into the ground. The next
  /// light's channel falls by one, however many they are.
  void DoDelete();
  void UndoDelete() {}  ///< deleting has no undo

  /// Puts the place before into LastSnapPos and the one that a point snaps to into SnapPos: a whole pitch off
  /// the nearest grid point, to the left in x and upwards in y. On half a pitch, where the grid point before
  /// is the nearest, it lies a pitch to the right and below.
  void GetCurrentSnapPos(double x, double y);
  /// Moves the mark of the snap there; with `draw` false it goes.
  void SetSnapCursor(double x, double y, bool draw);

  /// Turns the fixture that is picked by degrees: clockwise in `direction` 1, else anticlockwise. The hand of
  /// the gauge follows, unless the turn came from it.
  void RotateObject(std::int16_t change, std::int16_t direction, bool fromGauge);
  /// The same for any fixture.
  void InitRotateFixture(clsFixture& fixture, std::int16_t change, std::int16_t direction, bool fromGauge);

  /// Centres the view on a point and shrinks it by a share `step`, or grows it by a negative one. With
  /// `direction` false the view's size is multiplied by `step` about its own middle.
  void WorldZoom(bool direction, double step, double x, double y);

  void showWholePlot() { showLimits(World); }

  void FlpCAD1_WorldMouseDown(int button, int flags, double x, double y);
  void FlpCAD1_WorldMouseUp(int button, int flags, double x, double y);
  void FlpCAD1_WorldMouseMove(int button, int flags, double x, double y);
  void FlpCAD1_ShapeNumberSelected(int type, ShapeNumber number);
  void FlpCAD1_WorldRectPos(double left, double top, double right, double bottom);
  void HScroll1_Change();
  void VScroll1_Change();
  void HScroll1_Scroll() { HScroll1_Change(); }
  void VScroll1_Scroll() { VScroll1_Change(); }
  void AGauge2_Change();
  void Form_KeyDown(int keyCode);  ///< 46 is Delete

  // ---- The plot by the keyboard. Keys pick and never drag; a plot that is locked or under the mouse leaves
  // them

  /// Picks the fixture so many further on by channel, from the one picked last; at either end it stays there.
  /// The view follows.
  void pickByKeys(int steps);
  void openPicked();   ///< opens the dialog of the fixture that the keys picked
  void addPicked();    ///< takes it into the multi-selection
  void letPickedGo();  ///< nothing is picked or selected any more
  /// The fixture that the keys picked, until the mouse picks one or the tool is put away; or none.
  [[nodiscard]] std::shared_ptr<clsFixture> pickedByKeys() const { return m_byKeys ? picked() : nullptr; }
  /// The fixtures that the keys walk: by channel, without the channels of moving lights that stand out of
  /// sight.
  [[nodiscard]] std::vector<std::shared_ptr<clsFixture>> fixturesByChannel() const;

  void TallyInputs_Timer();
  void UpdateDisplay_Timer();

 private:
  static constexpr int WorldSize = 1000;
  static constexpr double ZoomStep = 0.1;
  static constexpr Extents World{.left = 0, .top = WorldSize, .right = WorldSize, .bottom = 0};

  // Start
  void bindControls();
  void loadShapes();
  void loadCursors();
  void makeSubMasters() const;
  void addFirstZoom() const;
  /// Calls `step` for each fixture of the view. It brings the error pattern itself, fixture by fixture.
  template <class Step>
  void walkFixtures(Step step);

  // Shapes
  void beginFixture(DrawMode mode, std::shared_ptr<clsFixture>& fixture);
  void drawOutline(clsFixture& fixture, Point at);
  void drawHitBox(clsFixture& fixture);
  void drawCentre(clsFixture& fixture);
  [[nodiscard]] std::shared_ptr<clsFixture> findFixture(std::int32_t clsFixture::*field,
                                                        ShapeNumber shape) const;

  // Texts
  void writeText(std::int32_t& shape, Point at, const std::string& text, Colour colour);
  void removeText(std::int32_t& shape);

  // The hand
  void leftPress(Point at);
  void rightPress(Point at);

  // Placing and deleting
  [[nodiscard]] bool isPlacing() const { return MouseMode == tools::Light || MouseMode == tools::Slider; }
  void takePlacingTool(std::int16_t mode, ToolCursor cursor);
  void placeLight(Point at);
  void placeFixture(Point at);
  /// The fixture whose block is at a point; none on the ground, the object "Not Found" where it isn't in the
  /// show.
  [[nodiscard]] std::shared_ptr<clsFixture> fixtureAt(Point at) const;
  void openFixtureAt(Point at);
  void openFixture(const std::shared_ptr<clsFixture>& fixture, Point at);
  void deleteFixtureAt(Point at);
  void giveChannelBack(const clsFixture& fixture);
  void takeOffShow(const clsFixture& fixture) const;
  void eraseOutline(clsFixture& fixture);
  void hide(clsFixture& fixture);

  // Picking, moving, turning
  [[nodiscard]] bool holds(const clsFixture& fixture) const;
  /// The fixture that turns and is marked: the one picked last, if it is of this plot; or none.
  [[nodiscard]] std::shared_ptr<clsFixture> picked() const;
  [[nodiscard]] std::vector<std::shared_ptr<clsFixture>> ownSelection() const;
  void deselect(const clsFixture& fixture);
  void pick(const std::shared_ptr<clsFixture>& fixture);
  void paint(Colour colour, std::initializer_list<ShapeNumber> shapes);
  void mark(const clsFixture& fixture);
  void unmark(const clsFixture& fixture);
  void addToSelection(const std::shared_ptr<clsFixture>& fixture);
  void clearSelection();
  void startDrag(clsFixture& fixture);
  void moveFixture(clsFixture& fixture, Point to);
  void stopDrag();
  void endDrag(const std::shared_ptr<clsFixture>& fixture);
  void forgetSelection();
  [[nodiscard]] Point snapped(Point at) const;
  void dragTo(Point at);
  void showSnap(Point at);
  void turn(clsFixture& fixture, std::int16_t change, std::int16_t direction, bool fromGauge);

  // View
  void takeTool(std::int16_t cursor);
  [[nodiscard]] std::int16_t cursorOf(ToolCursor cursor) const {
    return ToolCursors[static_cast<std::size_t>(cursor)];
  }
  void sizeScrollBars();
  void showLimits(const Extents& limits);
  void bringIntoView(const Extents& part);
  void followView();

  ShowState& m_show;
  Machine& m_machine;
  ErrorPattern& m_errors;
  Wiring m_wiring;
  int m_textLayer = 1;
  bool m_byKeys = false;  ///< who picked last
  int m_hScroll = 0;      ///< value at the last change
  int m_vScroll = 0;
  std::optional<Extents> m_rubberBand;  ///< the one drawn last
};

template <class Step>
void frmDocument::walkFixtures(Step step) {
  std::shared_ptr<clsView> view;
  m_errors.run([&] { view = GetCurrentView(); });
  if (view == nullptr) return;
  // By position, and each held: an open box lets other handlers change the plot and walk over it.
  for (int position = 1; position <= view->colFixtures().count(); ++position) {
    const auto fixture = view->colFixtures().item(position);
    FixtureWalk = fixture;
    step(fixture);
  }
}

}  // namespace velgrove
