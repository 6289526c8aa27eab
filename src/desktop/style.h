#pragma once

#include <QIcon>
#include <QProxyStyle>
#include <QStyleOption>

namespace velgrove {

/// The base style below the style sheet: draws the title bars and frames of the frame's child windows, which
/// a sheet can't.
class DeskStyle : public QProxyStyle {
  Q_OBJECT

 public:
  DeskStyle();

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                     SubControl part, const QWidget* widget) const override;
  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                       const QWidget* widget) const override;
  [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const override;
  [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* returned) const override;
  [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                                   const QWidget* widget) const override;

 private:
  void drawTitleBar(const QStyleOptionTitleBar& bar, QPainter& painter, const QWidget* widget) const;
  /// The buttons of a window that fills the frame, beside the menus.
  void drawMenuButtons(const QStyleOptionComplex& option, QPainter& painter, const QWidget* widget) const;
};

}  // namespace velgrove
