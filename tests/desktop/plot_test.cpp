// The plot under a real mouse and real keys: what is painted, and what the hand does.

#include <QAccessible>
#include <QLabel>
#include <QPaintEvent>
#include <QScreen>

#include <gtest/gtest.h>

#include "desktop/plot_view.h"
#include "desktop/rotate_gauge.h"
#include "desktop/theme.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

/// Remembers what a widget had to paint.
class Painted : public QObject {
 public:
  explicit Painted(QWidget& widget) { widget.installEventFilter(this); }
  QRegion region;

  [[nodiscard]] int pixels() const {
    int sum = 0;
    for (const QRect& part : region) sum += part.width() * part.height();
    return sum;
  }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
};

struct OpenHouse : DeskOnScreen {
  OpenHouse() { open(); }
};

struct PlotOnScreen : testing::Test {
  clsFixture& fixture(int channel) {
    for (const auto& one : document.ActiveView->colFixtures())
      if (one->Channel == channel) return *one;
    throw std::runtime_error("no fixture on channel " + std::to_string(channel));
  }
  QPoint at(Point world) {
    const Pixel pixel = document.FlpCAD1.toPixels(world);
    return {qRound(pixel.x), qRound(pixel.y)};
  }
  QPoint middleOf(int channel) { return at(document.FlpCAD1.extents(fixture(channel).Shape).middle()); }
  QRect boxOf(ShapeNumber shape) {
    const Extents box = document.FlpCAD1.extents(shape);
    return {at({.x = box.left, .y = box.top}), at({.x = box.right, .y = box.bottom})};
  }
  void showLevel(int channel, int level) {
    screen.onDesk([&] {
      fixture(channel).Level = static_cast<std::uint8_t>(level);
      document.DrawTextOnShape(fixture(channel));
    });
  }
  void pressWithCtrl(QPoint place) {
    hand::mouse(QTest::MouseClick, plot, place, Qt::LeftButton, Qt::ControlModifier);
    screen.settle();
  }
  /// How many pixels of a place on the plot have a colour of the palette.
  int count(const char* token, const QRect& where) {
    const QImage picture = plot.grab(where).toImage();
    int found = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x)
        found += picture.pixelColor(x, y) == theme::colour(token) ? 1 : 0;
    return found;
  }
  /// What stands on the screen, put together by many small paints, is what one whole paint gives.
  void expectNothingLeftBehind() {
    const QWidget* window = plot.window();
    const QImage all = window->screen()->grabWindow(window->winId()).toImage();
    const QImage whole = plot.grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(
        all.copy(QRect(plot.mapTo(window, QPoint(0, 0)), plot.size())).convertToFormat(QImage::Format_RGB32),
        whole);
  }

  OpenHouse house;
  Screen& screen = house.screen;
  frmDocument& document = house.desk.frame.ActiveForm();
  PlotView& plot = named<PlotView>("frmDocument/FlpCAD1");
};

// ---- What is painted

TEST_F(PlotOnScreen, OfAChangeOnlyWhatDiffersIsPainted) {
  showLevel(12, 0);
  Painted painted(plot);
  showLevel(12, 255);
  const QRect body = boxOf(fixture(12).Shape);
  EXPECT_TRUE((QRegion(body) - painted.region).isEmpty()) << "the body glows with its level";
  EXPECT_LT(painted.pixels(), 3 * body.width() * body.height());
  expectNothingLeftBehind();
  painted.region = {};
  showLevel(12, 255);
  EXPECT_TRUE(painted.region.isEmpty());
  screen.onDesk([this] { document.ZoomInTool(); });
  EXPECT_EQ(painted.region, QRegion(plot.rect()));
}

TEST_F(PlotOnScreen, ADraggedFixtureFollowsTheHandUnderTheSnapMark) {
  screen.press(plot, middleOf(12));
  const QPoint there = at({.x = 520, .y = 430});
  screen.moveTo(plot, there - QPoint(60, 0));
  Painted painted(plot);
  screen.moveTo(plot, there);
  EXPECT_TRUE(document.DragActive);
  EXPECT_EQ(plot.cursor().shape(), Qt::BlankCursor);
  EXPECT_LT(painted.pixels(), plot.width() * plot.height() / 20);
  const Extents mark = document.FlpCAD1.extents(document.SnapCursor);
  EXPECT_EQ(mark.middle(), (Point{.x = fixture(12).x, .y = fixture(12).y}));
  const QRect cross = boxOf(document.SnapCursor).adjusted(-2, -2, 2, 2);
  EXPECT_GT(count("text", cross), cross.width()) << "the white line";
  EXPECT_GT(count("edge", cross), cross.height()) << "the black one";
  expectNothingLeftBehind();
  screen.release(plot, there);
  EXPECT_FALSE(document.DragActive);
  EXPECT_EQ(plot.cursor().shape(), Qt::ArrowCursor);
  expectNothingLeftBehind();
}

TEST_F(PlotOnScreen, PickedFixturesStandOut) {
  screen.press(plot, middleOf(12));
  const QRect alone = boxOf(fixture(12).Shape).adjusted(-3, -3, 3, 3);
  EXPECT_GT(count("picked", alone), alone.height());
  screen.release(plot, middleOf(12));
  EXPECT_EQ(count("picked", alone), 0);
  for (const int channel : {12, 13}) pressWithCtrl(middleOf(channel));
  for (const int channel : {12, 13}) {
    const QRect box = boxOf(fixture(channel).RectShape).adjusted(-2, -2, 2, 2);
    EXPECT_GT(count("multi", box), box.height());
    EXPECT_GT(count("picked", box), 2 * (box.width() + box.height())) << "the rectangle about it";
  }
  expectNothingLeftBehind();
}

TEST_F(PlotOnScreen, NothingIsLeftBehindInBlindAtAnyZoom) {
  for (const double step : {0.5, -3.0, -6.0, 0.9}) {
    screen.onDesk([&] { document.WorldZoom(true, step, 400, 500); });
    screen.onDesk([this] { house.desk.show.BlindOn = true; });
    for (const int level : {255, 17, 0}) {
      for (const int channel : {12, 13, 17, 41}) showLevel(channel, level);
      expectNothingLeftBehind();
    }
    screen.onDesk([this] { house.desk.show.BlindOn = false; });
    for (const int channel : {12, 13, 17, 41}) showLevel(channel, 60);
    expectNothingLeftBehind();
  }
}

// ---- The mouse and the keys

TEST_F(PlotOnScreen, TheDeleteKeyTakesTheSelectionAway) {
  pressWithCtrl(middleOf(12));
  const int before = document.ActiveView->colFixtures().count();
  screen.key(Qt::Key_Backspace);
  EXPECT_EQ(document.ActiveView->colFixtures().count(), before);
  screen.key(Qt::Key_Delete);
  EXPECT_EQ(document.ActiveView->colFixtures().count(), before - 1);
}

TEST_F(PlotOnScreen, AFixtureDoesntStickToTheMouseWhenABoxTakesTheRelease) {
  screen.press(plot, middleOf(12));
  ASSERT_TRUE(document.DragActive);
  screen.expectBox("Look here.");
  screen.onDesk([this] { house.desk.machine.boxes.show({.text = "Look here."}); });
  screen.moveTo(plot, middleOf(12) + QPoint(3, 0));
  EXPECT_FALSE(document.DragActive);
  const double x = fixture(12).x;
  screen.moveTo(plot, {40, 300});
  EXPECT_EQ(fixture(12).x, x);
}

TEST_F(PlotOnScreen, OfMovesThatFindTheDeskBusyTheNewestCounts) {
  int moves = 0;
  document.FlpCAD1.WorldMouseMove = [&](int, int, double, double) { ++moves; };
  screen.whileBusy([this] {
    for (const int x : {100, 110, 120}) screen.moveTo(plot, {x, 200});
  });
  EXPECT_EQ(moves, 1);
  EXPECT_EQ(at(document.FlpCAD1.pointer().value()), QPoint(120, 200));
}

TEST_F(PlotOnScreen, ALockedPlotTakesNoHandAndShowsLevels) {
  screen.moveTo(plot, {200, 100});
  screen.expectBox("Fixtures Locked!");
  screen.onDesk([this] { house.desk.frame.SSActiveToolBars1_ToolClick("ID_LockFixtures"); });
  screen.press(plot, middleOf(12));
  screen.key(Qt::Key_Delete);
  screen.moveTo(plot, {200, 200});
  screen.release(plot, {200, 200});
  EXPECT_FALSE(document.FixtureSelected);
  EXPECT_FALSE(document.FlpCAD1.pointer().has_value());
  Painted painted(plot);
  showLevel(12, 200);
  showLevel(12, 100);
  EXPECT_FALSE(painted.region.isEmpty());
}

TEST_F(PlotOnScreen, TheWheelAndTheMiddleButtonMoveTheView) {
  const auto limits = [this] { return document.FlpCAD1.limits(); };
  const Extents whole = limits();
  screen.wheel(plot, -120);
  EXPECT_EQ(limits(), whole) << "all of it is in view";
  const QPoint middle = plot.rect().center();
  hand::wheel(plot, 120, Qt::ControlModifier);
  screen.settle();
  EXPECT_NEAR(limits().width(), 900, 1e-6);
  EXPECT_NEAR(limits().middle().x, whole.middle().x, 2) << "the place under the mouse stays";
  const double top = limits().top;
  screen.wheel(plot, -120);
  EXPECT_LT(limits().top, top);
  const double left = limits().left;
  hand::mouse(QTest::MousePress, plot, middle, Qt::MiddleButton);
  screen.moveTo(plot, middle + QPoint(30, 0));
  hand::mouse(QTest::MouseRelease, plot, middle + QPoint(30, 0), Qt::MiddleButton);
  screen.settle();
  EXPECT_NEAR(left - limits().left, 30 / document.FlpCAD1.pixelsPerUnit(), 1e-6);
  EXPECT_EQ(plot.cursor().shape(), Qt::ArrowCursor);
  plot.setFocus();
  screen.key(Qt::Key_Home);
  EXPECT_EQ(limits(), whole);
}

TEST_F(PlotOnScreen, TheFootTellsThePlaceOfTheMouseAndTheFixtureUnderIt) {
  auto& place = named<QLabel>("sbStatusBar/pointerPlace");
  auto& under = named<QLabel>("sbStatusBar/pointerFixture");
  const auto widths = [&] { return std::pair(place.geometry(), under.geometry()); };
  screen.onDesk([this] { fixture(17).IconShape = 2; });
  showLevel(17, 117);
  const auto before = widths();
  screen.moveTo(plot, at({.x = 512, .y = 40}));
  EXPECT_TRUE(place.text().startsWith("X 51")) << place.text().toStdString();
  EXPECT_TRUE(place.text().contains("  Y ")) << place.text().toStdString();
  EXPECT_EQ(under.text(), "");
  screen.moveTo(plot, middleOf(17));
  EXPECT_EQ(under.text(), "17 leko, 46 %");
  screen.onDesk([this] {
    house.desk.show.BlindOn = true;
    house.desk.show.BlindLevels[16] = 255;
  });
  EXPECT_EQ(under.text(), "17 leko, 46 %, blind 100 %");
  EXPECT_EQ(widths(), before);
  screen.moveTo(named("band/ID_Go"), {5, 5});
  EXPECT_EQ(place.text() + under.text(), "");
}

// ---- The gauge

struct Turning : PlotOnScreen {
  Turning() {
    screen.click(plot, middleOf(12));
    EXPECT_FALSE(gauge.isVisible());
    screen.onDesk([this] { document.RotateTool(); });
    screen.click(plot, middleOf(12));
    EXPECT_TRUE(gauge.isVisible());
  }
  QPoint onDial(double degrees) {
    const double turn = degrees * 3.14159265 / 180;
    return gauge.rect().center() + QPointF(50 * std::sin(turn), -50 * std::cos(turn)).toPoint();
  }
  RotateGauge& gauge = named<RotateGauge>("frmDocument/AGauge2");
  const double start = fixture(12).Angle;
};

TEST_F(Turning, TheHandIsDraggedRoundAndPastZeroByTheNearestWay) {
  screen.press(gauge, onDial(90));
  EXPECT_NEAR(fixture(12).Angle, 90, 1);
  EXPECT_EQ(fixture(12).Angle, std::round(fixture(12).Angle));
  hand::mouse(QTest::MouseMove, gauge, onDial(50), Qt::NoButton, Qt::ShiftModifier);
  screen.settle();
  EXPECT_EQ(fixture(12).Angle, 45);
  for (const int degrees : {20, 340, 300}) screen.moveTo(gauge, onDial(degrees));
  screen.release(gauge, onDial(300));
  EXPECT_NEAR(fixture(12).Angle, -60, 1);
  EXPECT_NEAR(gauge.value(), 300, 1);
  EXPECT_NEAR(document.FlpCAD1.find(fixture(12).Shape)->angle, -fixture(12).Angle, 1e-6);
  screen.moveTo(gauge, onDial(200));
  EXPECT_NEAR(fixture(12).Angle, -60, 1) << "it was let go";
}

TEST_F(Turning, KeysAndTheWheelTurnByStepsAndTheDialGoesWithItsTool) {
  gauge.setFocus();
  screen.key(Qt::Key_Left);
  EXPECT_EQ(fixture(12).Angle, start - 1);
  EXPECT_EQ(gauge.value(), 359) << "of a fixture that stood at zero";
  for (const Qt::Key key : {Qt::Key_PageUp, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down}) screen.key(key);
  EXPECT_EQ(fixture(12).Angle, start + 15);
  screen.wheel(gauge, 120);
  EXPECT_EQ(fixture(12).Angle, start + 16);
  screen.key(Qt::Key_PageDown);
  EXPECT_EQ(gauge.value(), 1);
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&gauge);
  EXPECT_EQ(spoken->text(QAccessible::Name), "Rotation");
  EXPECT_EQ(spoken->text(QAccessible::Value), "1");
  screen.onDesk([this] { document.RotateTool(); });
  EXPECT_FALSE(gauge.isVisible());
  EXPECT_EQ(QApplication::focusWidget(), &plot);
}

}  // namespace
}  // namespace velgrove::test
