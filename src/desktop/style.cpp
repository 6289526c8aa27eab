#include "desktop/style.h"

#include <QMdiSubWindow>
#include <QPainter>
#include <QPushButton>
#include <QStyleOption>
#include <QtMath>
#include <algorithm>
#include <array>
#include <cmath>

#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr int ButtonWidth = 22;

/// The buttons of a title bar from the right.
constexpr std::array TitleButtons{QStyle::SC_TitleBarCloseButton, QStyle::SC_TitleBarMaxButton,
                                  QStyle::SC_TitleBarMinButton};

bool isMaximised(const QStyleOptionTitleBar& bar) {
  return (bar.titleBarState & Qt::WindowMaximized) != 0;
}
bool isMinimised(const QStyleOptionTitleBar& bar) {
  return (bar.titleBarState & Qt::WindowMinimized) != 0;
}

/// A maximised or minimised window shows "restore" in the place of the button that brought it there.
QStyle::SubControl placeOf(const QStyleOptionTitleBar& bar, QStyle::SubControl part) {
  if (part != QStyle::SC_TitleBarNormalButton) return part;
  return isMinimised(bar) ? QStyle::SC_TitleBarMinButton : QStyle::SC_TitleBarMaxButton;
}

struct MenuButton {
  QStyle::SubControl part;
  QStyle::SubControl like;  ///< of a title bar
};
/// The buttons beside the menus, from the right.
constexpr std::array MenuButtons{MenuButton{QStyle::SC_MdiCloseButton, QStyle::SC_TitleBarCloseButton},
                                 MenuButton{QStyle::SC_MdiNormalButton, QStyle::SC_TitleBarNormalButton},
                                 MenuButton{QStyle::SC_MdiMinButton, QStyle::SC_TitleBarMinButton}};

void drawSymbol(QPainter& painter, QStyle::SubControl button, bool restores, const QRectF& area) {
  QRectF box(0, 0, 9, 9);
  box.moveCenter(area.center());
  if (button == QStyle::SC_TitleBarCloseButton) {
    painter.drawLine(box.topLeft(), box.bottomRight());
    painter.drawLine(box.topRight(), box.bottomLeft());
  } else if (restores) {
    painter.drawRect(box.adjusted(0, 3, -3, 0));
    painter.drawPolyline(QPolygonF{QPointF(box.left() + 3, box.top() + 1), box.topRight() + QPointF(0, 1),
                                   QPointF(box.right(), box.bottom() - 3)});
  } else if (button == QStyle::SC_TitleBarMinButton) {
    painter.drawLine(box.bottomLeft(), box.bottomRight());
  } else {
    painter.drawRect(box);
  }
}

void drawButton(QPainter& painter, QStyle::SubControl button, const QRect& area, bool under) {
  if (under) painter.fillRect(area.adjusted(1, 2, -1, -2), theme::colour("hover"));
  painter.setPen(QPen(theme::colour(under ? "text" : "text2"), 1.2));
  painter.setRenderHint(QPainter::Antialiasing, button == QStyle::SC_TitleBarCloseButton);
  drawSymbol(painter, button, button == QStyle::SC_TitleBarNormalButton, area);
}

/// What kind of box it is, told by shape, letter and colour.
struct Sign {
  QStyle::StandardPixmap box;
  int corners;  ///< of its outline; 0 for a circle
  char letter;
  const char* colour;
};
constexpr std::array Signs{Sign{QStyle::SP_MessageBoxInformation, 0, 'i', "blind"},
                           Sign{QStyle::SP_MessageBoxQuestion, 0, '?', "text"},
                           Sign{QStyle::SP_MessageBoxWarning, 3, '!', "warn"},
                           Sign{QStyle::SP_MessageBoxCritical, 8, '!', "manual"}};

QPolygonF outlineOf(int corners, const QRectF& area) {
  QPolygonF outline;
  const double first = corners == 3 ? 90 : 180.0 / corners;  // degrees: a triangle stands on its side
  for (int corner = 0; corner < corners; ++corner) {
    const double angle = qDegreesToRadians(first + 360.0 * corner / corners);
    outline << area.center() +
                   QPointF(std::cos(angle) * area.width() / 2, -std::sin(angle) * area.height() / 2);
  }
  return outline;
}

QPixmap drawSign(const Sign& sign, int size, double ratio) {
  QPixmap picture(QSize(size, size) * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(theme::colour(sign.colour), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const QRectF area(2, 2, size - 4, size - 4);
  if (sign.corners == 0)
    painter.drawEllipse(area);
  else
    painter.drawPolygon(outlineOf(sign.corners, area));
  painter.setFont(theme::font(size / 2, true));
  painter.drawText(area, Qt::AlignCenter, QChar(sign.letter));
  return picture;
}

}  // namespace

DeskStyle::DeskStyle() : QProxyStyle("Fusion") {}

int DeskStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_TitleBarHeight:
      return theme::sized(24, 28);
    case PM_MdiSubWindowFrameWidth:
      return 3;
    case PM_MdiSubWindowMinimizedWidth:
      return 200;
    case PM_ToolBarIconSize:
      return theme::sized(24, 28);
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int DeskStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returned) const {
  switch (hint) {
    case SH_TitleBar_NoBorder:
      return 1;
    case SH_UnderlineShortcut:
      return qobject_cast<const QPushButton*>(widget) == nullptr ? 1 : 0;
    case SH_ToolTip_WakeUpDelay:
      return 500;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

QRect DeskStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                const QWidget* widget) const {
  if (control == CC_MdiControls) {
    const QRect area = option->rect;
    for (int i = 0; i < static_cast<int>(MenuButtons.size()); ++i)
      if (MenuButtons.at(static_cast<std::size_t>(i)).part == part)
        return {area.right() + 1 - (i + 1) * ButtonWidth, area.top(), ButtonWidth, area.height()};
    return {};
  }
  const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
  if (control != CC_TitleBar || bar == nullptr)
    return QProxyStyle::subControlRect(control, option, part, widget);
  const QRect area = bar->rect;
  const auto place = placeOf(*bar, part);
  for (int i = 0; i < static_cast<int>(TitleButtons.size()); ++i) {
    if (TitleButtons.at(static_cast<std::size_t>(i)) != place) continue;
    if (part == place && ((part == SC_TitleBarMaxButton && isMaximised(*bar)) ||
                          (part == SC_TitleBarMinButton && isMinimised(*bar))))
      return {};
    if (part == SC_TitleBarNormalButton && !isMaximised(*bar) && !isMinimised(*bar)) return {};
    return {area.right() + 1 - (i + 1) * ButtonWidth, area.top(), ButtonWidth, area.height()};
  }
  if (part == SC_TitleBarLabel)
    return area.adjusted(8, 0, -static_cast<int>(TitleButtons.size()) * ButtonWidth, 0);
  return {};
}

void DeskStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
  if (control == CC_TitleBar && bar != nullptr)
    drawTitleBar(*bar, *painter, widget);
  else if (control == CC_MdiControls)
    drawMenuButtons(*option, *painter, widget);
  else
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void DeskStyle::drawTitleBar(const QStyleOptionTitleBar& bar, QPainter& painter,
                             const QWidget* widget) const {
  const bool active = (bar.state & State_Active) != 0;
  painter.save();
  painter.fillRect(bar.rect, theme::colour(active ? "raised" : "window"));
  painter.setPen(theme::colour("line"));
  painter.drawLine(bar.rect.bottomLeft(), bar.rect.bottomRight());

  painter.setFont(theme::font(theme::sized(14, 15)));
  painter.setPen(theme::colour(active ? "text" : "text2"));
  const QRect label = subControlRect(CC_TitleBar, &bar, SC_TitleBarLabel, widget);
  painter.drawText(label, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(bar.text, Qt::ElideRight, label.width()));

  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const SubControl button :
       {SC_TitleBarCloseButton, SC_TitleBarMaxButton, SC_TitleBarMinButton, SC_TitleBarNormalButton}) {
    if ((bar.subControls & button) == 0 && button != SC_TitleBarNormalButton) continue;
    const QRect area = subControlRect(CC_TitleBar, &bar, button, widget);
    if (area.isEmpty()) continue;
    drawButton(painter, button, area, (bar.activeSubControls & button) != 0);
  }
  painter.restore();
}

void DeskStyle::drawMenuButtons(const QStyleOptionComplex& option, QPainter& painter,
                                const QWidget* widget) const {
  painter.save();
  for (const auto& [part, like] : MenuButtons)
    drawButton(painter, like, subControlRect(CC_MdiControls, &option, part, widget),
               (option.activeSubControls & part) != 0 && (option.state & State_MouseOver) != 0);
  painter.restore();
}

QSize DeskStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                  const QWidget* widget) const {
  if (type == CT_MdiControls)
    return {static_cast<int>(MenuButtons.size()) * ButtonWidth,
            pixelMetric(PM_TitleBarHeight, option, widget)};
  return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

void DeskStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  const bool childWindow = qobject_cast<const QMdiSubWindow*>(widget) != nullptr;
  if (element != PE_FrameWindow || !childWindow) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  const bool active = (option->state & State_Active) != 0;
  painter->fillRect(option->rect, theme::colour("panel"));
  painter->setPen(theme::colour(active ? "edge" : "line"));
  painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
}

QIcon DeskStyle::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
  const auto* const sign = std::ranges::find(Signs, which, &Sign::box);
  if (sign == Signs.end()) return QProxyStyle::standardIcon(which, option, widget);
  QIcon icon;
  const int size = pixelMetric(PM_MessageBoxIconSize, option, widget);
  for (const double ratio : {1.0, 2.0}) icon.addPixmap(drawSign(*sign, size, ratio));
  return icon;
}

}  // namespace velgrove
