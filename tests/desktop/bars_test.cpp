// The windows of bars under a real mouse and real keys: how they come and go, and what they paint.

#include <QHelpEvent>
#include <QMdiSubWindow>
#include <QToolTip>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/bars_window.h"
#include "desktop/theme.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

struct BarsOnScreen : testing::Test {
  BarsOnScreen() { house.open(); }

  void open(const char* tool, std::int16_t rows = 8, std::int16_t columns = 24) {
    ShowState& show = house.desk.show;
    show.BarRows = rows;
    show.BarColumns = columns;
    show.BarGap = 100;
    screen.click(named(tool));
  }
  static QList<BarsWindow*> windows() { return named("children").findChildren<BarsWindow*>(); }
  static QMdiSubWindow& around(BarsWindow& bars) {
    return *qobject_cast<QMdiSubWindow*>(bars.parentWidget());
  }
  void runOn(int ms) { house.runTo(house.house.clock.now() / Milliseconds(1) + ms); }
  /// Shows a level as a source of output has it, without the merge, which would put it back.
  void level(int channel, int value, int source) {
    screen.onDesk([&] {
      const auto at = static_cast<std::size_t>(channel - 1);
      house.desk.show.DMXOutput[at] = static_cast<std::uint8_t>(value);
      house.desk.show.LevelSource[at] = static_cast<std::int16_t>(source);
      bars().updateTimer_Timer();
    });
  }
  frmBars& bars() { return *house.desk.windows.Bars.front(); }
  /// A place in a channel's cell, by parts of it, as the desk has laid it out about the middle of the window.
  QPoint inCell(BarsWindow& window, int channel, double across, double down) {
    const LevelBar& bar = bars().Bars[static_cast<std::size_t>(channel - 1)];
    const LevelBar& last = bars().Bars[static_cast<std::size_t>(bars().Rows * bars().Columns - 1)];
    const int away = (window.width() - (last.Left + last.Width) / 15) / 2;
    return {qRound(away + bar.Left / 15.0 + across * bar.Width / 15.0),
            qRound(away + bar.Top / 15.0 + down * bar.Height / 15.0)};
  }

  DeskOnScreen house;
  Screen& screen = house.screen;
};

TEST_F(BarsOnScreen, ShowARunningFadeAsFillsFromBelowInTheColourOfTheirSource) {
  open("band/ID_BarsOutput");
  BarsWindow& window = *windows().front();
  const auto at = [&](int channel, double down) {
    return colourAt(window, inCell(window, channel, 0.15, down)).name();
  };
  const QString dark = theme::colour("well").name();
  screen.onDesk([this] {
    house.desk.frame.SSActiveToolBars1_ToolClick("ID_QPlus");
    house.desk.frame.SSActiveToolBars1_ToolClick("ID_Go");
  });
  int lit = 0;
  for (int step = 0; step < 100 && lit == 0; ++step) {
    runOn(40);
    for (int channel = 1; channel <= 192; ++channel) {
      const int value = bars().Bars[static_cast<std::size_t>(channel - 1)].Value;
      if (value > 30 && value < 70) lit = channel;
    }
  }
  ASSERT_GT(lit, 0) << "no fade";
  EXPECT_EQ(at(lit, 0.95), theme::colour("queue").name());
  EXPECT_EQ(at(lit, 0.40), dark);

  for (const auto& [source, token] : {std::pair(0, "manual"), std::pair(2, "input"), std::pair(3, "sub")}) {
    level(192, 255, source);
    EXPECT_EQ(at(192, 0.95), theme::colour(token).name());
    EXPECT_EQ(at(192, 0.35), theme::colour(token).name()) << "full goes up to the header";
    EXPECT_EQ(colourAt(window, inCell(window, 192, 0.81, 0.125)).name(), theme::colour(token).name())
        << "mark";
    level(192, 0, source);
    EXPECT_EQ(at(192, 0.95), dark);
  }
  QHelpEvent help(QEvent::ToolTip, inCell(window, lit, 0.5, 0.5), QPoint());
  QApplication::sendEvent(&window, &help);
  EXPECT_EQ(QToolTip::text().section(':', 0, 0), "Channel " + QString::number(lit));
}

TEST_F(BarsOnScreen, PaintNothingButTheCellsWhoseLevelChanged) {
  struct Painted : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
      return false;
    }
    QRegion region;
  } painted;
  open("band/ID_BarsOutput");
  BarsWindow& window = *windows().front();
  runOn(100);
  window.installEventFilter(&painted);
  runOn(100);
  EXPECT_TRUE(painted.region.isEmpty());
  level(30, 128, 1);
  EXPECT_TRUE(painted.region.contains(inCell(window, 30, 0.5, 0.9)));
  EXPECT_LT(painted.region.boundingRect().width(), 40);
  EXPECT_LT(painted.region.boundingRect().height(), 70);
}

TEST_F(BarsOnScreen, StandBesideEachOtherAndEachGoesByItsOwnCloseBox) {
  open("band/ID_BarsOutput");
  open("band/ID_BarsInput");
  ASSERT_EQ(windows().size(), 2);
  BarsWindow& output = *windows().first();
  BarsWindow& input = *windows().last();
  EXPECT_EQ(around(output).windowTitle(), "Bar Style - DMX Output");
  EXPECT_EQ(around(input).windowTitle(), "Bar Style - DMX Input");
  EXPECT_EQ(output.size(), QSize(1000, 600));
  EXPECT_EQ(around(input).pos() - around(output).pos(), QPoint(24, 24));
  EXPECT_TRUE(around(input).mdiArea()->viewport()->rect().contains(around(input).geometry()));
  EXPECT_EQ(bars().Window.Width, 15000);

  constexpr int CloseBox = 14;
  screen.click(around(output), {around(output).width() - CloseBox, 15});
  ASSERT_EQ(windows(), QList{&input});
  ASSERT_EQ(house.desk.windows.Bars.size(), 1U);
  EXPECT_TRUE(bars().updateTimerInput.enabled());
  screen.click(input);
  screen.key(Qt::Key_Escape);
  EXPECT_TRUE(windows().isEmpty());
  EXPECT_TRUE(house.desk.windows.Bars.empty());
}

TEST_F(BarsOnScreen, FollowTheSizeOfTheirWindowWithoutGoingDark) {
  open("band/ID_BarsOutput");
  BarsWindow& window = *windows().front();
  screen.onDesk([this] {
    house.desk.show.DMXOutput.fill(255);
    house.desk.show.LevelSource.fill(1);
    bars().updateTimer_Timer();
  });
  around(window).resize(600, 400);
  screen.settle();
  EXPECT_EQ(bars().Window.Width, static_cast<float>(window.width()) * 15);
  EXPECT_EQ(bars().Bars[191].Value, 0) << "the desk has laid them out anew";
  EXPECT_EQ(colourAt(window, inCell(window, 192, 0.2, 0.9)).name(), theme::colour("queue").name());

  around(window).resize(around(window).minimumSizeHint());  // no room for headers and numbers
  screen.onDesk([this] { bars().updateTimer_Timer(); });
  const QImage cell =
      window.grab(QRect(inCell(window, 100, 0.3, 0.2), inCell(window, 100, 0.7, 0.7))).toImage();
  for (int y = 0; y < cell.height(); ++y)
    EXPECT_EQ(cell.pixelColor(cell.width() / 2, y), theme::colour("queue")) << y;
}

TEST_F(BarsOnScreen, WithoutRowsSayWhereTheyAreSet) {
  open("band/ID_BarsInput", 0);
  const QImage picture = windows().front()->grab().toImage();
  QRect ink;
  for (int y = 10; y < picture.height() - 10; ++y)
    for (int x = 10; x < picture.width() - 10; ++x)
      if (picture.pixelColor(x, y) != theme::colour("panel")) ink |= QRect(x, y, 1, 1);
  EXPECT_GT(ink.width(), 300);
  EXPECT_LT(ink.height(), 30);
}

}  // namespace
}  // namespace velgrove::test
