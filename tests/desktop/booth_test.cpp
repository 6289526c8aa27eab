// The booth: the show view on the screen, and the dim colours of the whole desk.

#include <QMdiSubWindow>
#include <array>
#include <cmath>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/show_view_window.h"
#include "desktop/theme.h"
#include "support/desk_on_screen.h"
#include "support/show_maker.h"

namespace velgrove::test {
namespace {

// ---- The show view

struct ShowViewOnScreen : testing::Test {
  void open(QSize size = {1280, 800}, const std::filesystem::path& show = SHOW_DATA_DIR "/demo.kel") {
    house = std::make_unique<DeskOnScreen>(size, show);
    house->open();
    house->screen.onDesk([this] { house->desk.frame.SSActiveToolBars1_ToolClick("ID_ShowView"); });
  }
  void maximise() {
    house->screen.onDesk([this] { form().Window.WindowState = WindowState::Maximised; });
  }
  frmShowView& form() { return house->desk.windows.ShowView; }
  static ShowViewPanel& panel() { return named<ShowViewPanel>("frmShowView/ShowViewPanel"); }
  static CueTable& cues() { return named<CueTable>("frmShowView/Cues"); }
  static bool isSeen(CueTable& table, int row) {
    return table.viewport()->rect().contains(table.visualRect(table.model()->index(row - 1, 0)));
  }

  std::unique_ptr<DeskOnScreen> house;
};

TEST_F(ShowViewOnScreen, ShowsTheRunningFadeAndChangesNothingUnderTheHand) {
  open();
  EXPECT_THAT(panel().accessibleDescription().toStdString(), testing::StartsWith("0.00 Blackout, next 1.00"));
  EXPECT_TRUE(named("band/ID_Go").visibleRegion() == QRegion(named("band/ID_Go").rect()));
  house->screen.click(named("band/ID_Go"));
  house->runTo(1000);
  EXPECT_TRUE(house->xy().State.Fading);
  const QImage middle = panel().grab().toImage();
  house->runTo(2000);
  EXPECT_NE(panel().grab().toImage(), middle) << "the time runs on";

  const auto marks = [this] {
    const auto& state = house->xy().State;
    return std::tuple(state.StageCue, state.NextCue, state.PointerCue);
  };
  const auto before = marks();
  const QPoint stage = house->inRow(cues(), house->xy().State.StageCue);
  house->screen.press(*cues().viewport(), stage);
  house->screen.moveTo(*cues().viewport(), stage + QPoint(0, 60));
  house->screen.release(*cues().viewport(), stage + QPoint(0, 60));
  house->screen.key(Qt::Key_Down);
  EXPECT_EQ(marks(), before);

  house->screen.click(named("frmShowView/cmdAB"));
  EXPECT_THAT(panel().accessibleDescription().toStdString(), testing::HasSubstr("next 1.00 Sky of Sicilia"));
  house->screen.onDesk([this] { house->desk.windows.unloadPlayers(); });
  EXPECT_THAT(panel().accessibleDescription().toStdString(), testing::StartsWith(" No show is open"));
  EXPECT_EQ(cues().model()->rowCount(), 0);
}

TEST_F(ShowViewOnScreen, ComesBackOverAllOtherWindowsWhenItFilledTheFrame) {
  house = std::make_unique<DeskOnScreen>();
  house->screen.onDesk([this] {
    house->desk.store.setTexts("Velgrove", "Booth", {{"ShowView", "-1"}, {"ShowViewMaximised", "-1"}});
  });
  house->open();
  EXPECT_EQ(form().Window.WindowState, WindowState::Maximised);
  EXPECT_EQ(panel().visibleRegion(), QRegion(panel().rect()));
  EXPECT_GT(panel().width(), 1200);
  house->screen.onDesk([this] { house->ab().Window.WindowState = WindowState::Minimised; });
  EXPECT_EQ(cues().viewport()->visibleRegion(), QRegion(cues().viewport()->rect())) << "nor does a link";
  house->screen.click(named("band/ID_XYQ"));
  const QWidget& list = *house->table("XYQueueList").viewport();
  EXPECT_EQ(list.visibleRegion(), QRegion(list.rect())) << "a tool brings its window to the front";
  EXPECT_EQ(form().Window.WindowState, WindowState::Maximised);
}

TEST_F(ShowViewOnScreen, KeepsTheMarksInViewWhateverTheSizeOfTheType) {
  const std::string file = showOf(60).write("long.kel");
  open({1280, 800}, file);
  std::filesystem::remove(file);
  maximise();
  for (const int percent : {60, 100, 200}) {
    house->screen.onDesk([&] {
      house->desk.show.Booth.TypeSize = percent;
      house->xy().selectRow(50);
      house->xy().cmdMakeStageCue_Click();
    });
    EXPECT_TRUE(isSeen(cues(), 50)) << percent;
    cues().setFocus();
    for (int page = 0; page < 4; ++page) house->screen.key(Qt::Key_PageUp);
    EXPECT_FALSE(isSeen(cues(), 50)) << "the hand may look elsewhere";
    for (const auto key : {Qt::Key_Q, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Control})
      house->screen.key(key);
    house->screen.onDesk([&] { house->xy().cmdAdvanceStageCue_Click(); });
    EXPECT_TRUE(isSeen(cues(), 51) && isSeen(cues(), 52)) << percent;
    house->screen.onDesk([&] { house->xy().ResetStageCue(); });
    EXPECT_TRUE(isSeen(cues(), 1) && isSeen(cues(), 2)) << percent;
    EXPECT_TRUE(isSeen(house->table("XYQueueList"), 1));
  }
}

TEST_F(ShowViewOnScreen, TheKeysOfTheSizeWorkInItAlone) {
  open();
  house->screen.key(Qt::Key_Plus, Qt::ControlModifier);
  house->screen.key(Qt::Key_Equal, Qt::ControlModifier);
  EXPECT_EQ(named<QLabel>("frmShowView/lblTypeSize").text(), "120 %");
  house->screen.click(named("frmShowView/cmdLarger"));
  house->screen.key(Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_EQ(form().typeSize(), 120);
  house->screen.click(*house->table("XYQueueList").viewport(), QPoint(500, 5));
  house->screen.key(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(form().typeSize(), 120);
  house->screen.onDesk([this] { form().Show(); });
  house->screen.key(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(form().typeSize(), 100);
}

/// The longest that it can have to say.
void sayAll(DeskOnScreen& house) {
  house.screen.onDesk([&] {
    auto& player = house.xy();
    player.State.StageCue = 2;
    player.State.NextCue = 3;
    for (const int row : {2, 3}) player.ListView2.setText(row, QueueList::NumberCell, "888.88");
    player.ListView2.setText(3, QueueList::ListCell, "AB");
    player.ListView2.setText(3, QueueList::TargetCell, "888.88");
    player.State.LoopCount = 88;
    player.State.LoopStartRow = 2;
    player.State.LoopLastRow = 3;
    player.State.Paused = true;
    player.State.RestAtStop = 32767000;
    player.State.MasterGoList = "XY";
    player.State.MasterGoNumber = "888.88";
    house.desk.show.BlindOn = true;
    house.desk.windows.Comm.Condition.Caption = "The interface is unplugged. Output goes on when it is back.";
  });
}

TEST_F(ShowViewOnScreen, CutsNoNumberOffAtAnySizeOfTypeOrWindow) {
  for (const QSize size : {QSize(640, 400), QSize(1280, 800), QSize(1920, 1080)}) {
    open(size);
    for (const bool whole : {false, true}) {
      if (whole) maximise();
      for (const int percent : {60, 100, 200}) {
        SCOPED_TRACE(testing::Message() << size.width() << " " << percent << " " << whole);
        house->screen.onDesk([&] { house->desk.show.Booth.TypeSize = percent; });
        sayAll(*house);
        const QSize needed = panel().sizeHint();
        EXPECT_TRUE(needed.width() <= panel().width() && needed.height() <= panel().height());
        EXPECT_TRUE(isSeen(cues(), 2));
        EXPECT_TRUE(panel().parentWidget()->rect().contains(panel().geometry()));
        EXPECT_FALSE(panel().geometry().intersects(cues().geometry()));
      }
    }
    house.reset();
  }
}

// ---- The colours

/// The light of one part of a colour (sRGB, IEC 61966-2-1).
double linear(double part) {
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const char* one, const char* other) {
  const auto [dark, light] = std::minmax({luminance(theme::colour(one)), luminance(theme::colour(other))});
  return (light + 0.05) / (dark + 0.05);
}

/// A colour as the eye orders it (CIE 1976).
std::array<double, 3> lab(const QColor& colour) {
  const double r = linear(colour.redF());
  const double g = linear(colour.greenF());
  const double b = linear(colour.blueF());
  const auto root = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
  const double x = root((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505);
  const double y = root(luminance(colour));
  const double z = root((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.089);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

/// How far two colours lie apart to the eye; above 10 is plain at a glance.
double apart(const char* one, const char* other) {
  const auto a = lab(theme::colour(one));
  const auto b = lab(theme::colour(other));
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

class Colours : public testing::TestWithParam<Tone> {
 protected:
  void SetUp() override { theme::apply(GetParam()); }
  void TearDown() override { theme::apply(Tone::Usual); }
};

TEST_P(Colours, TextIsReadOnItsGround) {
  const std::pair<const char*, std::vector<const char*>> texts[] = {
      {"text", {"well", "window", "panel", "raised", "hover", "subFill"}},
      {"text2", {"window", "panel"}},
      {"stageInk", {"stageLit", "stageDim", "hover"}},
      {"nextInk", {"nextLit", "nextDim", "blindFill"}},
      {"stageText", {"panel", "well"}},
      {"nextText", {"panel", "well"}},
      {"warnInk", {"warn"}},
      {"goInk", {"goReady"}},
      {"goQuietText", {"goQuiet"}},
      {"chanText", {"well"}},
      {"well", {"text", "manual", "queue", "input", "sub", "blind"}}};
  for (const auto& [text, grounds] : texts)
    for (const char* ground : grounds) EXPECT_GE(contrast(text, ground), 4.5) << text << " on " << ground;
}

TEST_P(Colours, WhatHasAMeaningIsToldApart) {
  const std::vector<std::vector<const char*>> groups{{"stageLit", "nextLit", "blindFill", "subFill"},
                                                     {"stageDim", "nextDim", "well"},
                                                     {"stageLit", "stageDim"},
                                                     {"nextLit", "nextDim"},
                                                     {"stageText", "nextText", "text"},
                                                     {"manual", "queue", "input", "sub", "blind"},
                                                     {"fixture", "picked", "multi"},
                                                     {"keyRed", "keyGreen", "keyMagenta", "keyYellow"}};
  for (const auto& group : groups)
    for (std::size_t one = 0; one < group.size(); ++one)
      for (std::size_t other = one + 1; other < group.size(); ++other)
        EXPECT_GE(apart(group[one], group[other]), 10) << group[one] << " " << group[other];
}

/// The brightest of the usual areas is the banner.
TEST(DimColours, GiveAThirdOfTheLight) {
  const double usual = luminance(theme::colour("warn"));
  theme::apply(Tone::Dim);
  for (const char* area : {"well", "window", "panel", "raised", "hover", "warn", "goReady", "goQuiet",
                           "stageLit", "stageDim", "nextLit", "nextDim", "blindFill", "subFill"})
    EXPECT_LE(luminance(theme::colour(area)), 0.34 * usual) << area;
  theme::apply(Tone::Usual);
}

INSTANTIATE_TEST_SUITE_P(OfBothTones, Colours, testing::Values(Tone::Usual, Tone::Dim));

// ---- The whole desk dimmed

/// A third of the light of plain white, which the usual colours hold.
constexpr double Dimmed = 0.34;

double brightest(const QImage& picture) {
  std::set<QRgb> colours;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) colours.insert(picture.pixel(x, y));
  double most = 0;
  for (const QRgb colour : colours) most = std::max(most, luminance(colour));
  return most;
}

struct DimScreen : testing::Test {
  ~DimScreen() override { theme::apply(Tone::Usual); }
  void dim() {
    house.screen.onDesk([this] { house.desk.frame.SSActiveToolBars1_ToolClick("ID_DimScreen"); });
  }
  /// All that stands before the operator.
  static std::vector<QImage> pictures() {
    std::vector<QImage> all;
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->isVisible()) all.push_back(window->grab().toImage());
    return all;
  }

  DeskOnScreen house;
};

TEST_F(DimScreen, ReachesEveryWindowAndLeavesNothingBehind) {
  house.open();
  house.screen.click(named("band/ID_QPlus"));
  house.screen.click(named("band/ID_QPlus"));
  house.screen.onDesk([this] {
    auto& windows = house.desk.windows;
    windows.openBars("Output");
    windows.ShowView.Show();
    windows.Comm.Window.Show();
    windows.Comm.Condition.Caption = "The interface is gone.";
    house.desk.show.CurrentFixture = windows.ActiveDocument->ActiveView->colFixtures().item(1);
    windows.Fixture.Show();
    windows.GrandMaster.Show();
    windows.Preferences.Show();
    windows.Effects.load();
    windows.Effects.Window.Show();
    house.desk.show.BlindOn = true;
  });
  house.runTo(500);
  QApplication::focusWidget()->clearFocus();  // a caret blinks
  const auto usual = pictures();
  dim();
  const auto dimmed = pictures();
  ASSERT_EQ(usual.size(), dimmed.size());
  for (std::size_t window = 0; window < usual.size(); ++window) {
    EXPECT_EQ(usual[window].size(), dimmed[window].size());
    EXPECT_LE(brightest(dimmed[window]), Dimmed) << window;
  }
  dim();
  const auto back = pictures();
  dim();
  const auto again = pictures();
  EXPECT_TRUE(back == usual) << "back to the colours of before";
  EXPECT_TRUE(again == dimmed);
}

TEST_F(DimScreen, ReachesMenusAndBoxesAndIsATickInItsMenu) {
  house.open();
  dim();
  const auto& bar = *house.frame().findChild<QMenuBar*>();
  QMenu* const view = bar.actions().at(2)->menu();
  view->popup({0, 0});
  EXPECT_LE(brightest(view->grab().toImage()), Dimmed);
  view->close();
  const auto actions = view->actions();
  const auto tool = std::ranges::find(actions, QString("ID_DimScreen"), &QAction::objectName);
  ASSERT_NE(tool, actions.end());
  EXPECT_TRUE((*tool)->isChecked());
  house.screen.expectBox("Fixtures Locked!", "OK", [] {
    for (const QImage& picture : pictures()) EXPECT_LE(brightest(picture), Dimmed);
  });
  house.screen.onDesk([this] { house.desk.frame.SSActiveToolBars1_ToolClick("ID_LockFixtures"); });
}

}  // namespace
}  // namespace velgrove::test
