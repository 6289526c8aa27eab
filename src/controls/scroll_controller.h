#pragma once

namespace velgrove {

/// A place inside a scrolled area, from its visible corner.
struct ScrollItem {
  double Left = 0;
  double Top = 0;
  double Width = 0;
  double Height = 0;
};

/// What scrolls: its visible size and where it stands. All in one unit, as the items in it.
struct ScrollContainer {
  double Width = 0;
  double Height = 0;
  double ScrollLeft = 0;
  double ScrollTop = 0;
};

/// Scrolls a container so far that an item in it can be seen.
class ScrollController {
 public:
  static constexpr double Margin = 275;  ///< left behind an item that lay beyond the far edge

  ScrollContainer* Container = nullptr;  ///< without one nothing happens

  void ScrollToView(const ScrollItem& item) const;
};

}  // namespace velgrove
