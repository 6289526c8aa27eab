// The operator on the stage plot. The tools themselves come from the frame.

#include "robot/hand.h"

namespace velgrove::robot {
namespace {

constexpr int MostFixtures = 40;  // what a long run settles at

/// A plot that takes the hand; none while fixtures are locked.
frmDocument* plotAtHand(Hand& hand) {
  auto& documents = hand.windows().Documents;
  if (documents.empty()) return nullptr;
  frmDocument* const document = hand.chance.of(documents).get();
  if (!document->Window.Enabled || !document->Window.Visible || document->ActiveView == nullptr)
    return nullptr;
  if (std::exchange(hand.windows().ActiveDocument, document) != document) document->Form_Activate();
  return document;
}

template <class Work>
bool onPlot(Hand& hand, Work work) {
  frmDocument* const document = plotAtHand(hand);
  if (document == nullptr) return false;
  work(*document);
  return true;
}

/// A place of the control: mostly that of a fixture, else anywhere, now and then outside.
Pixel somewhere(Hand& hand, const frmDocument& document) {
  auto& fixtures = document.ActiveView->colFixtures();
  if (fixtures.count() > 0 && !hand.chance.oneIn(3)) {
    const auto& fixture = fixtures.item(hand.chance.between(1, fixtures.count()));
    return document.FlpCAD1.toPixels(document.FlpCAD1.extents(fixture->Shape).middle());
  }
  constexpr int Beyond = 50;
  return {.x = static_cast<double>(hand.chance.between(-Beyond, document.FlpCAD1.pixelWidth() + Beyond)),
          .y = static_cast<double>(hand.chance.between(-Beyond, document.FlpCAD1.pixelHeight() + Beyond))};
}

std::string written(Pixel at) {
  return std::to_string(static_cast<int>(at.x)) + "," + std::to_string(static_cast<int>(at.y));
}

int someButton(Hand& hand) {
  return hand.chance.oneIn(3) ? mouse::Right : mouse::Left;
}
int someKeys(Hand& hand) {
  constexpr int Keys[] = {0, 0, 0, mouse::Ctrl, mouse::Shift, mouse::Ctrl + mouse::Shift};
  return hand.chance.of(Keys);
}

bool places(const frmDocument& document) {
  return document.MouseMode == tools::Light || document.MouseMode == tools::Slider;
}

bool press(Hand& hand) {
  return onPlot(hand, [&](frmDocument& document) {
    if (places(document) && document.ActiveView->colFixtures().count() >= MostFixtures) document.DelTool();
    const Pixel at = somewhere(hand, document);
    const int button = someButton(hand);
    hand.note("press " + std::to_string(button) + " at " + written(at) + " with tool " +
              std::to_string(document.MouseMode));
    document.FlpCAD1.press(button, someKeys(hand), at);
    if (hand.chance.oneIn(2)) document.FlpCAD1.release(button, 0, at);
  });
}

bool move(Hand& hand) {
  return onPlot(hand, [&](frmDocument& document) {
    const int button = hand.chance.oneIn(3) ? 0 : mouse::Left;
    for (int times = hand.chance.between(1, 4); times > 0; --times) {
      const Pixel at = somewhere(hand, document);
      hand.note("move " + std::to_string(button) + " to " + written(at));
      document.FlpCAD1.move(button, 0, at);
    }
  });
}

bool release(Hand& hand) {
  return onPlot(hand, [&](frmDocument& document) {
    const Pixel at = somewhere(hand, document);
    hand.note("release at " + written(at));
    if (hand.chance.oneIn(10)) return document.FlpCAD1.letGo();
    document.FlpCAD1.release(someButton(hand), 0, at);
  });
}

bool drag(Hand& hand) {
  return onPlot(hand, [&](frmDocument& document) {
    const Pixel from = somewhere(hand, document);
    const Pixel to = somewhere(hand, document);
    hand.note("drag from " + written(from) + " to " + written(to));
    document.FlpCAD1.press(mouse::Left, 0, from);
    document.FlpCAD1.move(mouse::Left, 0, {.x = (from.x + to.x) / 2, .y = (from.y + to.y) / 2});
    document.FlpCAD1.move(mouse::Left, 0, to);
    document.FlpCAD1.release(mouse::Left, 0, to);
  });
}

bool key(Hand& hand) {
  return onPlot(hand, [&](frmDocument& document) {
    constexpr int Keys[] = {46, 46, 13, 27, 0};
    const int code = hand.chance.of(Keys);
    hand.note("key " + std::to_string(code));
    document.Form_KeyDown(code);
  });
}

bool turn(Hand& hand) {
  return onPlot(hand, [&](frmDocument& document) {
    if (!document.AGauge2.Visible) return;
    constexpr int OneTurn = 360;
    const double angle = hand.chance.between(-OneTurn, OneTurn) + hand.chance.below(10) / 10.0;
    hand.note("gauge to " + std::to_string(angle));
    document.AGauge2.setValue(angle);
  });
}

bool scroll(Hand& hand) {
  return onPlot(hand, [&](frmDocument& document) {
    if (hand.chance.oneIn(2)) return hand.drag(document.HScroll1, "scroll across");
    hand.drag(document.VScroll1, "scroll down");
  });
}

bool changeView(Hand& hand) {
  return onPlot(hand, [&](frmDocument& document) {
    constexpr int Largest = 2000;
    switch (hand.chance.below(3)) {
      case 0:
        hand.note("resize");
        return document.FlpCAD1.setPixelSize(hand.chance.below(Largest), hand.chance.below(Largest));
      case 1:
        hand.note("whole plot");
        return document.showWholePlot();
      default:
        hand.note("pan");
        return document.FlpCAD1.panBy(hand.chance.between(-Largest, Largest),
                                      hand.chance.between(-Largest, Largest));
    }
  });
}

constexpr Deed Deeds[] = {{"press on the plot", 20, press},    {"motion over the plot", 10, move},
                          {"release on the plot", 8, release}, {"drag on the plot", 8, drag},
                          {"key on the plot", 3, key},         {"gauge", 6, turn},
                          {"scroll bars", 4, scroll},          {"size of the plot", 3, changeView}};

}  // namespace

std::span<const Deed> plotDeeds() {
  return Deeds;
}

}  // namespace velgrove::robot
