#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "controls/block.h"
#include "controls/widgets.h"

namespace velgrove {

/// A shape's handle: above 0 and never given out twice by one drawing. 0 is no shape.
using ShapeNumber = std::int32_t;

/// A place of the control in pixels, from its left top, y downwards.
struct Pixel {
  double x = 0;
  double y = 0;
};

struct Font {
  std::string Family;
  int Size = 0;  ///< world units
  bool Bold = false;
};

enum class Align : std::uint8_t { Left, Centre };  ///< of a text along its line; its top stands at its y

/// Everything that the face needs to paint one shape, in world units (y upwards).
struct Shape {
  enum class Kind : std::uint8_t { Line, Rectangle, Text, Insert };

  ShapeNumber number = 0;
  Kind kind = Kind::Line;
  Align align = Align::Left;
  std::int16_t layer = 1;
  std::int16_t font = 0;  ///< handle of a text's font
  ShapeNumber group = 0;  ///< that it is in; 0 for none
  Colour colour = 0;
  Point at = {};     ///< line: its start; rectangle: its middle; text, insert: its reference point
  Point to = {};     ///< line: its end; rectangle: half its width and half its height
  double angle = 0;  ///< degrees anticlockwise, of a rectangle, text or insert
  double scale = 1;  ///< of an insert
  std::string text = {};
  std::shared_ptr<const Block> block = {};  ///< what an insert draws, about the block's origin

  friend bool operator==(const Shape&, const Shape&) = default;
};

/// A copy of all that is to be painted, in paint order: lower layers first, then older shapes.
struct Picture {
  unsigned revision = 0;
  Extents limits;
  std::vector<Shape> shapes;
  std::vector<Font> fonts;  ///< by handle - 1
};

/// The codes of Drawing::shapeType.
namespace shape_types {
inline constexpr int None = 0;
inline constexpr int Line = 1;
inline constexpr int Rectangle = 2;
inline constexpr int Text = 3;
inline constexpr int BlockOrGroup = 18;  ///< alone can be a fixture
}  // namespace shape_types

namespace mouse {
inline constexpr int Left = 1;  ///< buttons
inline constexpr int Right = 2;
inline constexpr int Shift = 4;  ///< flags: keys held down
inline constexpr int Ctrl = 8;
}  // namespace mouse

/// The plot's two-dimensional scene of numbered shapes, with the view on it. Plain geometry: the face paints
/// it on screen and on paper, and forwards the mouse.
///
/// Operations on an unknown number do nothing, and its extents are 0. Those on a group reach all its members;
/// those on a member reach it alone.
class Drawing {
 public:
  /// `print` puts what the view shows on paper.
  explicit Drawing(std::function<void(const Drawing&)> print = {});
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;

  // ---- For the face

  /// Grows with every visible change; stands still while redraw is off.
  [[nodiscard]] unsigned revision() const { return m_revision; }
  /// Copies what is to be painted; `picture` keeps its storage from copy to copy.
  void copyTo(Picture& picture) const;
  [[nodiscard]] bool redraw() const { return m_redraw; }
  /// The size of the control. Raises Resized.
  void setPixelSize(int width, int height);
  [[nodiscard]] int pixelWidth() const { return m_pixelWidth; }
  [[nodiscard]] int pixelHeight() const { return m_pixelHeight; }
  /// The hand: a press, any motion, a release, with the buttons and flags of `mouse`. Raises the events
  /// below; selects, draws the rubber band and pans by itself, as the tool has set it.
  void press(int button, int flags, Pixel at);
  void move(int button, int flags, Pixel at);
  void release(int button, int flags, Pixel at);
  void leave() { m_pointer.reset(); }  ///< the mouse is elsewhere now
  void letGo();                        ///< a pan or a rubber band that is under way ends without effect
  /// Where the mouse is, while it is over the control.
  [[nodiscard]] const std::optional<Point>& pointer() const { return m_pointer; }
  /// The flags that came with the hand last.
  [[nodiscard]] int keys() const { return m_keys; }
  /// The rubber band that is being drawn, to be painted over the picture.
  [[nodiscard]] const std::optional<Extents>& rubberBand() const { return m_band; }
  /// Moves what the view shows along with the hand. Raises ViewMoved.
  void panBy(double pixelsX, double pixelsY);

  // ---- What the tools set and the face follows

  bool Snap = false;        ///< the grid flag
  bool Selection = false;   ///< a press picks a shape
  bool RubberBand = false;  ///< a drag draws a rectangle
  int RubberBandMode = 0;
  bool PanMode = false;  ///< a drag moves the view
  bool PrintRationSameasView = false;
  int ViewMousePointer = 0;  ///< one of `pointers`; stands over the cursor of the tool

  /// Handles of the pointers that every drawing has.
  static constexpr std::int16_t DefaultCursor = 0;
  static constexpr std::int16_t ArrowCursor = 1;
  static constexpr std::int16_t PanCursor = 2;
  /// A handle for the cursor of a file. The face draws it by the file's name.
  [[nodiscard]] std::int16_t addCursor(const std::string& file);
  void setCursor(std::int16_t handle);
  /// "default", "arrow", "pan", or a cursor file's name without folder and extension.
  [[nodiscard]] const std::string& cursor() const { return m_cursors[m_cursor]; }

  // ---- Events

  std::function<void(int button, int flags, double x, double y)> WorldMouseDown;
  std::function<void(int button, int flags, double x, double y)> WorldMouseUp;
  std::function<void(int button, int flags, double x, double y)> WorldMouseMove;
  std::function<void(int type, ShapeNumber number)> ShapeNumberSelected;
  std::function<void(double left, double top, double right, double bottom)> WorldRectPos;
  Event ViewMoved;  ///< by the hand
  Event Resized;

  // ---- The view

  /// Shows a part of the world, fitted and centred in the control with square units. Limits that are empty,
  /// or of a size that no screen could show, change nothing.
  void setLimits(const Extents& limits);
  [[nodiscard]] const Extents& limits() const { return m_limits; }
  void moveView(double dx, double dy);    ///< by world units
  [[nodiscard]] Extents extents() const;  ///< of all shapes; 0 without any
  [[nodiscard]] double pixelsPerUnit() const;
  [[nodiscard]] Pixel toPixels(Point world) const;
  [[nodiscard]] Point toWorld(Pixel pixel) const;
  /// While it is off no change is visible.
  void setRedraw(bool redraw);
  void repaint();
  /// Prints what the view shows.
  void PrintView() const;
  /// A setting by the number that it has in a drawing's own list; kept for whoever asks.
  void setProperty(int number, int value) { m_properties[number] = value; }
  [[nodiscard]] int property(int number) const;  ///< 0 when it was never set

  // ---- Layers, fonts, blocks

  /// Layers count from 1; the first, "0", is always there.
  int addLayer(const std::string& name);
  void setCurrentLayer(int layer);
  [[nodiscard]] int currentLayer() const { return m_currentLayer; }
  [[nodiscard]] int layerCount() const { return static_cast<int>(m_layers.size()); }
  [[nodiscard]] const std::string& layerName(int layer) const;  ///< "" when there is none
  [[nodiscard]] std::vector<ShapeNumber> shapesOf(int layer) const;

  /// A handle, from 1, for a font written "Arial,25,BN": family, size, B for bold.
  /// Fault::TypeMismatch when it isn't written so.
  [[nodiscard]] std::int16_t fontHandle(const std::string& font);
  [[nodiscard]] const std::vector<Font>& fonts() const { return m_fonts; }

  /// Takes a block in for later inserts. Its number is no shape of the scene.
  ShapeNumber addBlock(std::shared_ptr<const Block> block);

  // ---- Making shapes; all go to the current layer, white until painted

  ShapeNumber insertBlock(ShapeNumber block, Point at);  ///< 0 when there is no such block
  ShapeNumber addLine(Point from, Point to);
  ShapeNumber addRectangle(const Extents& corners);
  ShapeNumber addText(Point at, std::string text, std::int16_t font, Align align);
  ShapeNumber createGroup();
  /// A shape is in one group at most; a group has no groups in it.
  void addToGroup(ShapeNumber group, ShapeNumber shape);
  void removeFromGroup(ShapeNumber shape);                     ///< a group goes with its last member
  [[nodiscard]] ShapeNumber groupOf(ShapeNumber shape) const;  ///< 0 when in none

  // ---- Changing and asking them

  void move(ShapeNumber shape, double dx, double dy);
  void rotate(ShapeNumber shape, Point about, double degrees);  ///< anticlockwise
  void scale(ShapeNumber shape, Point about, double factor);
  void setColour(ShapeNumber shape, Colour colour);
  /// Changes a text in place, and leaves it alone where it reads, stands and is painted so already. False
  /// when there is no such text.
  bool setText(ShapeNumber shape, Point at, const std::string& text, Colour colour);
  /// Changes what a text reads, wherever it stands.
  void ShapeText(ShapeNumber shape, const std::string& text);
  void remove(ShapeNumber shape);
  void clear();  ///< all shapes; layers, fonts and blocks stay

  [[nodiscard]] const Shape* find(ShapeNumber shape) const;  ///< none for groups and unknown numbers
  [[nodiscard]] int shapeType(ShapeNumber shape) const;      ///< a code of shape_types
  /// The true extents, of a rotated block too.
  [[nodiscard]] Extents extents(ShapeNumber shape) const;
  /// The shape at a point; below 0 when there is none. A block is taken by its whole body, before any text or
  /// line that lies over it; among equals the one on top is taken. What is painted in the black of the ground
  /// can't be seen and isn't taken.
  [[nodiscard]] ShapeNumber shapeAt(Point at) const;

 private:
  struct Layer {
    std::string name;
    /// In order of number; that of a deleted one has a minus until it is swept.
    std::vector<Shape> shapes = {};
    std::size_t deleted = 0;

    [[nodiscard]] const Shape* find(ShapeNumber number) const;
    void remove(const Shape& shape);
  };

  ShapeNumber add(Shape shape);
  [[nodiscard]] Shape* locate(ShapeNumber shape);
  void removeOne(ShapeNumber shape);
  [[nodiscard]] Extents extentsOfOne(const Shape& shape) const;
  [[nodiscard]] Extents extentsOfText(const Shape& text) const;
  [[nodiscard]] bool isHit(const Shape& shape, Point at) const;
  void changed();
  Point note(int flags, Pixel at);
  void takeInHand(Pixel at);
  /// Calls `change(Shape&)` for a shape or each member of a group.
  template <class Change>
  void each(ShapeNumber shape, Change change);

  std::function<void(const Drawing&)> m_print;
  unsigned m_revision = 1;
  bool m_redraw = true;
  bool m_hidden = false;  ///< something changed while redraw was off
  int m_pixelWidth = 1000;
  int m_pixelHeight = 1000;
  Extents m_limits{.left = 0, .top = 1000, .right = 1000, .bottom = 0};
  std::vector<Layer> m_layers;
  int m_currentLayer = 1;
  ShapeNumber m_lastNumber = 0;
  std::vector<Font> m_fonts;
  std::vector<std::string> m_cursors;
  std::size_t m_cursor = 0;
  std::map<int, int> m_properties;
  std::map<ShapeNumber, std::shared_ptr<const Block>> m_blocks;
  std::map<ShapeNumber, std::vector<ShapeNumber>> m_groups;
  std::optional<Point> m_pointer;
  int m_keys = 0;
  std::optional<Pixel> m_held;      ///< where the hand that pans was last
  std::optional<Point> m_bandFrom;  ///< where it began a rubber band
  std::optional<Extents> m_band;
};

}  // namespace velgrove
