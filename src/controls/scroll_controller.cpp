#include "controls/scroll_controller.h"

namespace velgrove {
namespace {

void scrollAxis(double& scroll, double visible, double start, double length) {
  constexpr double Margin = ScrollController::Margin;
  if (start < 0) {
    scroll += start;
  } else if (start + length + Margin > visible) {
    const double shown = length > visible ? visible - Margin : length;
    scroll += Margin + start + shown - visible;
  }
}

}  // namespace

void ScrollController::ScrollToView(const ScrollItem& item) const {
  if (Container == nullptr) return;
  scrollAxis(Container->ScrollTop, Container->Height, item.Top, item.Height);
  scrollAxis(Container->ScrollLeft, Container->Width, item.Left, item.Width);
}

}  // namespace velgrove
