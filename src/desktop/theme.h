#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPixmap>
#include <QString>
#include <QWidget>

#include "controls/widgets.h"

namespace velgrove {

/// The light of the desk's own screens: as usual, or dim for blackouts.
enum class Tone { Usual, Dim };

/// How roomy the desk is drawn, chosen by the frame's width.
enum class Density { Compact, Roomy };

/// The look of the desk: colours by their names in palette.json, type, icons, and the style sheet.
namespace theme {

constexpr int RoomyFrom = 1600;  ///< logical pixels of the frame's width

/// A colour by its name in the tone in use; asserts that the palette has it.
[[nodiscard]] QColor colour(const char* token);

[[nodiscard]] Density density();
// Both dress the whole application anew, and do nothing when it is dressed so already. Whoever keeps a
// picture or a colour draws it again at QEvent::StyleChange.
void apply(Density density);
void apply(Tone wanted);

/// One of two sizes, by the density in use.
template <class T>
[[nodiscard]] T sized(T compact, T roomy) {
  return density() == Density::Compact ? compact : roomy;
}

/// Roboto, for numbers and commands; pixels.
[[nodiscard]] QFont font(int pixels, bool bold = false);
/// Roboto Condensed, for descriptions, names and headers; pixels.
[[nodiscard]] QFont condensed(int pixels, bool bold = false);

/// An icon by its file's name, with a disabled look; a null icon when there is none.
[[nodiscard]] QIcon icon(const char* name);
[[nodiscard]] QIcon icon(const QString& name);
/// An icon's picture at a size in logical pixels, its lines in a colour.
[[nodiscard]] QPixmap picture(const QString& name, int size, const QColor& lines, qreal pixelRatio);

/// The colour that stands for a level text's colour value, and for a drawing's.
[[nodiscard]] QColor ofLevelText(Colour value);
[[nodiscard]] QColor ofFixture(Colour value);
/// The token for a button's foot, "" for a button without one.
[[nodiscard]] const char* keyOf(Colour value);

/// Sets a property that the style sheet looks at, and dresses the widget anew if it changed.
void setState(QWidget* widget, const char* property, const QVariant& value);

}  // namespace theme
}  // namespace velgrove
