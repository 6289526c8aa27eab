#include "controls/drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <ranges>

#include "controls/numbers.h"

namespace velgrove {
namespace {

constexpr Colour Ground = colours::Black;
constexpr double TextWidth = 0.55;  // of a character, as a share of its height

Placing placingOf(const Shape& insert) {
  return {.at = insert.at, .scale = insert.scale, .angle = insert.angle};
}

Extents around(Point middle, double halfWidth, double halfHeight) {
  return {.left = middle.x - halfWidth,
          .top = middle.y + halfHeight,
          .right = middle.x + halfWidth,
          .bottom = middle.y - halfHeight};
}

Extents extentsOfLine(const Shape& line) {
  const auto [left, right] = std::minmax(line.at.x, line.to.x);
  const auto [bottom, top] = std::minmax(line.at.y, line.to.y);
  return {.left = left, .top = top, .right = right, .bottom = bottom};
}

/// A rectangle, turned as it stands.
Extents extentsOfRectangle(const Shape& box) {
  const double c = std::abs(std::cos(box.angle * std::numbers::pi / 180));
  const double s = std::abs(std::sin(box.angle * std::numbers::pi / 180));
  return around(box.at, (box.to.x * c) + (box.to.y * s), (box.to.x * s) + (box.to.y * c));
}

double distanceToLine(const Shape& line, Point point) {
  const double dx = line.to.x - line.at.x;
  const double dy = line.to.y - line.at.y;
  const double length2 = (dx * dx) + (dy * dy);
  const double along =
      length2 > 0
          ? std::clamp((((point.x - line.at.x) * dx) + ((point.y - line.at.y) * dy)) / length2, 0.0, 1.0)
          : 0;
  return std::hypot(point.x - line.at.x - (along * dx), point.y - line.at.y - (along * dy));
}

}  // namespace

Drawing::Drawing(std::function<void(const Drawing&)> print)
    : m_print(std::move(print)), m_layers{{.name = "0"}}, m_cursors{"default", "arrow", "pan"} {}

void Drawing::changed() {
  if (m_redraw)
    ++m_revision;
  else
    m_hidden = true;
}

void Drawing::setRedraw(bool redraw) {
  m_redraw = redraw;
  if (redraw && std::exchange(m_hidden, false)) ++m_revision;
}

void Drawing::repaint() {
  changed();
}

void Drawing::PrintView() const {
  if (m_print) m_print(*this);
}

int Drawing::property(int number) const {
  const auto found = m_properties.find(number);
  return found == m_properties.end() ? 0 : found->second;
}

void Drawing::copyTo(Picture& picture) const {
  picture.revision = m_revision;
  picture.limits = m_limits;
  picture.fonts = m_fonts;
  std::size_t count = 0;
  for (const Layer& layer : m_layers) {
    for (const Shape& shape : layer.shapes) {
      if (shape.number < 0) continue;
      if (count < picture.shapes.size())
        picture.shapes[count] = shape;
      else
        picture.shapes.push_back(shape);
      ++count;
    }
  }
  picture.shapes.resize(count);
}

// ---- Layers, fonts, cursors, blocks

int Drawing::addLayer(const std::string& name) {
  m_layers.push_back({.name = name});
  return layerCount();
}

void Drawing::setCurrentLayer(int layer) {
  if (layer >= 1 && layer <= layerCount()) m_currentLayer = layer;
}

const std::string& Drawing::layerName(int layer) const {
  static const std::string None;
  return layer >= 1 && layer <= layerCount() ? m_layers[static_cast<std::size_t>(layer) - 1].name : None;
}

std::vector<ShapeNumber> Drawing::shapesOf(int layer) const {
  std::vector<ShapeNumber> numbers;
  if (layer < 1 || layer > layerCount()) return numbers;
  for (const Shape& shape : m_layers[static_cast<std::size_t>(layer) - 1].shapes)
    if (shape.number > 0) numbers.push_back(shape.number);
  return numbers;
}

std::int16_t Drawing::fontHandle(const std::string& font) {
  const auto size = font.find(',');
  const auto style = font.find(',', size + 1);
  if (size == std::string::npos || style == std::string::npos)
    throw RunTimeError(Fault::TypeMismatch, "\"" + font + "\" is no font");
  Font wanted{.Family = font.substr(0, size),
              .Size = toInteger<std::int32_t>(font.substr(size + 1, style - size - 1)),
              .Bold = font.find('B', style) != std::string::npos};
  m_fonts.push_back(std::move(wanted));
  return static_cast<std::int16_t>(m_fonts.size());
}

std::int16_t Drawing::addCursor(const std::string& file) {
  const auto folder = file.find_last_of('/');
  std::string name = file.substr(folder == std::string::npos ? 0 : folder + 1);
  m_cursors.push_back(name.substr(0, name.find('.')));
  return static_cast<std::int16_t>(m_cursors.size() - 1);
}

void Drawing::setCursor(std::int16_t handle) {
  const bool known = handle >= 0 && static_cast<std::size_t>(handle) < m_cursors.size();
  m_cursor = known ? static_cast<std::size_t>(handle) : 0;
}

ShapeNumber Drawing::addBlock(std::shared_ptr<const Block> block) {
  m_blocks[++m_lastNumber] = std::move(block);
  return m_lastNumber;
}

// ---- Making shapes

ShapeNumber Drawing::add(Shape shape) {
  shape.number = ++m_lastNumber;
  shape.layer = static_cast<std::int16_t>(m_currentLayer);
  shape.colour = colours::White;
  m_layers[static_cast<std::size_t>(m_currentLayer) - 1].shapes.push_back(std::move(shape));
  changed();
  return m_lastNumber;
}

ShapeNumber Drawing::insertBlock(ShapeNumber block, Point at) {
  const auto found = m_blocks.find(block);
  if (found == m_blocks.end()) return 0;
  return add({.kind = Shape::Kind::Insert, .at = at, .block = found->second});
}

ShapeNumber Drawing::addLine(Point from, Point to) {
  return add({.kind = Shape::Kind::Line, .at = from, .to = to});
}

ShapeNumber Drawing::addRectangle(const Extents& corners) {
  return add({.kind = Shape::Kind::Rectangle,
              .at = corners.middle(),
              .to = {.x = std::abs(corners.width()) / 2, .y = std::abs(corners.height()) / 2}});
}

ShapeNumber Drawing::addText(Point at, std::string text, std::int16_t font, Align align) {
  return add({.kind = Shape::Kind::Text, .align = align, .font = font, .at = at, .text = std::move(text)});
}

ShapeNumber Drawing::createGroup() {
  m_groups[++m_lastNumber];
  return m_lastNumber;
}

void Drawing::addToGroup(ShapeNumber group, ShapeNumber shape) {
  Shape* const member = locate(shape);
  if (!m_groups.contains(group) || member == nullptr || member->group == group) return;
  removeFromGroup(shape);
  member->group = group;
  m_groups[group].push_back(shape);
}

void Drawing::removeFromGroup(ShapeNumber shape) {
  Shape* const member = locate(shape);
  if (member == nullptr || member->group == 0) return;
  const auto group = m_groups.find(std::exchange(member->group, 0));
  std::erase(group->second, shape);
  if (group->second.empty()) m_groups.erase(group);
}

ShapeNumber Drawing::groupOf(ShapeNumber shape) const {
  const Shape* const member = find(shape);
  return member == nullptr ? 0 : member->group;
}

// ---- Finding and changing them

const Shape* Drawing::Layer::find(ShapeNumber number) const {
  const auto age = [](const Shape& shape) { return std::abs(shape.number); };
  const auto at = std::ranges::lower_bound(shapes, number, {}, age);
  return at != shapes.end() && at->number == number ? &*at : nullptr;
}

/// Sweeping only now and then keeps the cost of deleting all texts, one by one, in proportion.
void Drawing::Layer::remove(const Shape& shape) {
  Shape& gone = shapes[static_cast<std::size_t>(&shape - shapes.data())];
  gone = {.number = -gone.number};
  if (++deleted * 2 < shapes.size()) return;
  std::erase_if(shapes, [](const Shape& each) { return each.number < 0; });
  deleted = 0;
}

const Shape* Drawing::find(ShapeNumber shape) const {
  if (shape <= 0) return nullptr;
  for (const Layer& layer : m_layers)
    if (const Shape* const found = layer.find(shape)) return found;
  return nullptr;
}

Shape* Drawing::locate(ShapeNumber shape) {
  return const_cast<Shape*>(find(shape));
}

template <class Change>
void Drawing::each(ShapeNumber shape, Change change) {
  const auto group = m_groups.find(shape);
  if (group != m_groups.end()) {
    for (const ShapeNumber member : group->second) each(member, change);
    return;
  }
  Shape* const found = locate(shape);
  if (found != nullptr && change(*found)) changed();
}

void Drawing::move(ShapeNumber shape, double dx, double dy) {
  each(shape, [=](Shape& one) {
    one.at = {.x = one.at.x + dx, .y = one.at.y + dy};
    if (one.kind == Shape::Kind::Line) one.to = {.x = one.to.x + dx, .y = one.to.y + dy};
    return dx != 0 || dy != 0;
  });
}

void Drawing::rotate(ShapeNumber shape, Point about, double degrees) {
  if (degrees == 0) return;
  each(shape, [=](Shape& one) {
    one.at = turned(one.at, about, degrees);
    if (one.kind == Shape::Kind::Line)
      one.to = turned(one.to, about, degrees);
    else
      one.angle += degrees;
    return true;
  });
}

void Drawing::scale(ShapeNumber shape, Point about, double factor) {
  const auto away = [=](Point from) {
    return Point{.x = about.x + ((from.x - about.x) * factor), .y = about.y + ((from.y - about.y) * factor)};
  };
  each(shape, [=](Shape& one) {
    one.at = away(one.at);
    if (one.kind == Shape::Kind::Line) one.to = away(one.to);
    if (one.kind == Shape::Kind::Rectangle) one.to = {.x = one.to.x * factor, .y = one.to.y * factor};
    one.scale *= factor;
    return factor != 1;
  });
}

void Drawing::setColour(ShapeNumber shape, Colour colour) {
  each(shape, [=](Shape& one) { return std::exchange(one.colour, colour) != colour; });
}

bool Drawing::setText(ShapeNumber shape, Point at, const std::string& text, Colour colour) {
  Shape* const found = locate(shape);
  if (found == nullptr || found->kind != Shape::Kind::Text) return false;
  if (found->text == text && found->at == at && found->colour == colour) return true;
  found->text = text;
  found->at = at;
  found->colour = colour;
  changed();
  return true;
}

void Drawing::ShapeText(ShapeNumber shape, const std::string& text) {
  if (const Shape* const found = find(shape)) setText(shape, found->at, text, found->colour);
}

void Drawing::removeOne(ShapeNumber shape) {
  const Shape* const found = find(shape);
  if (found == nullptr) return;
  m_layers[static_cast<std::size_t>(found->layer) - 1].remove(*found);
  changed();
}

void Drawing::remove(ShapeNumber shape) {
  const auto group = m_groups.find(shape);
  if (group == m_groups.end()) {
    removeFromGroup(shape);
    removeOne(shape);
    return;
  }
  for (const ShapeNumber member : group->second) removeOne(member);
  m_groups.erase(group);
}

void Drawing::clear() {
  for (Layer& layer : m_layers) layer = {.name = layer.name};
  m_groups.clear();
  changed();
}

// ---- Asking them

int Drawing::shapeType(ShapeNumber shape) const {
  if (m_groups.contains(shape)) return shape_types::BlockOrGroup;
  const Shape* const found = find(shape);
  if (found == nullptr) return shape_types::None;
  switch (found->kind) {
    case Shape::Kind::Line:
      return shape_types::Line;
    case Shape::Kind::Rectangle:
      return shape_types::Rectangle;
    case Shape::Kind::Text:
      return shape_types::Text;
    case Shape::Kind::Insert:
      return shape_types::BlockOrGroup;
  }
  return shape_types::None;
}

Extents Drawing::extentsOfText(const Shape& text) const {
  const auto font = static_cast<std::size_t>(text.font);
  const double height = font >= 1 && font <= m_fonts.size() ? m_fonts[font - 1].Size * text.scale : 0;
  const double width = height * TextWidth * static_cast<double>(text.text.size());
  const double left = text.align == Align::Centre ? text.at.x - (width / 2) : text.at.x;
  return {.left = left, .top = text.at.y, .right = left + width, .bottom = text.at.y - height};
}

Extents Drawing::extentsOfOne(const Shape& shape) const {
  switch (shape.kind) {
    case Shape::Kind::Line:
      return extentsOfLine(shape);
    case Shape::Kind::Rectangle:
      return extentsOfRectangle(shape);
    case Shape::Kind::Text:
      return extentsOfText(shape);
    case Shape::Kind::Insert:
      return extentsOf(*shape.block, placingOf(shape));
  }
  return {};
}

Extents Drawing::extents(ShapeNumber shape) const {
  const auto group = m_groups.find(shape);
  if (group == m_groups.end()) {
    const Shape* const found = find(shape);
    return found == nullptr ? Extents{} : extentsOfOne(*found);
  }
  std::optional<Extents> all;
  for (const ShapeNumber member : group->second) all = all ? joined(*all, extents(member)) : extents(member);
  return all.value_or(Extents{});
}

Extents Drawing::extents() const {
  std::optional<Extents> all;
  for (const Layer& layer : m_layers)
    for (const Shape& shape : layer.shapes)
      if (shape.number > 0) all = all ? joined(*all, extentsOfOne(shape)) : extentsOfOne(shape);
  return all.value_or(Extents{});
}

bool Drawing::isHit(const Shape& shape, Point at) const {
  constexpr double Reach = 3;  // pixels beside a line
  switch (shape.kind) {
    case Shape::Kind::Line:
      return distanceToLine(shape, at) <= Reach / pixelsPerUnit();
    case Shape::Kind::Rectangle:
      return holds(around(shape.at, shape.to.x, shape.to.y), turned(at, shape.at, -shape.angle));
    case Shape::Kind::Text:
      return holds(extentsOfText(shape), turned(at, shape.at, -shape.angle));
    case Shape::Kind::Insert:
      return holds(extentsOf(*shape.block, {.at = shape.at, .scale = shape.scale}),
                   turned(at, shape.at, -shape.angle));
  }
  return false;
}

ShapeNumber Drawing::shapeAt(Point at) const {
  ShapeNumber under = -1;
  for (const Layer& layer : std::views::reverse(m_layers)) {
    for (const Shape& shape : std::views::reverse(layer.shapes)) {
      if (shape.number < 0 || shape.colour == Ground || !isHit(shape, at)) continue;
      if (shape.kind == Shape::Kind::Insert) return shape.number;
      if (under < 0) under = shape.number;
    }
  }
  return under;
}

}  // namespace velgrove
