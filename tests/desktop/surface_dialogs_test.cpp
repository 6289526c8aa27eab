// The grand master, the preferences and the timings under real keys and a real mouse.

#include <QCheckBox>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/fader.h"
#include "desktop/theme.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

constexpr int Lit = 100;  // what the channels of the tests hold

struct DialogOnScreen : testing::Test {
  DialogOnScreen() { house.open(); }

  static QString text(const QString& field) { return named<QLineEdit>(field).text(); }
  static QWidget* focus() { return QApplication::focusWidget(); }
  void write(const QString& field, const QString& text) {
    auto& line = named<QLineEdit>(field);
    screen.click(line);
    line.selectAll();
    screen.type(text);
  }

  DeskOnScreen house;
  Screen& screen = house.screen;
  LightingDesk& desk = house.desk;
};

// ---- The grand master

struct GrandMasterOnScreen : DialogOnScreen {
  void open() {
    screen.onDesk([&] {
      desk.show.ABLevels.fill(0);
      desk.show.ABLevels[4] = Lit;
    });
    screen.click(named("band/ID_GrandMaster"));
  }
  static QWidget& dialog() { return named("frmGrandMaster"); }
  static Fader& fader() { return named<Fader>("frmGrandMaster/VSlider1"); }
  static QPoint at(int value) { return fader().placeOf(value).toPoint(); }
  static QString level() { return text("frmGrandMaster/Level"); }
  [[nodiscard]] int light() const { return desk.show.ABLevels[4]; }
};

TEST_F(GrandMasterOnScreen, TheFaderShiftsTheLightAndCancelBringsItBack) {
  open();
  EXPECT_EQ(focus(), &fader());
  EXPECT_EQ(dialog().findChild<QLabel*>("Label1")->text(), "Level:");
  screen.press(fader(), at(0));
  screen.moveTo(fader(), at(20));
  EXPECT_EQ(level(), "20");
  EXPECT_EQ(light(), Lit + 50);
  screen.moveTo(fader(), at(-30));
  screen.release(fader(), at(-30));
  EXPECT_EQ(light(), Lit - 75);
  EXPECT_EQ(desk.show.ABLevels[5], 0) << "what was off stays off";

  using Step = std::pair<Qt::Key, const char*>;
  for (const auto& [key, wanted] : {Step(Qt::Key_Up, "-29"), Step(Qt::Key_PageUp, "-19"),
                                    Step(Qt::Key_Home, "-100"), Step(Qt::Key_End, "100")}) {
    screen.key(key);
    EXPECT_EQ(level(), wanted);
  }
  for (const char* part : {"VSlider1", "Level", "cmdOK"})
    screen.wheel(named(QString("frmGrandMaster/") + part), -120);
  EXPECT_EQ(level(), "88");
  screen.click(named("frmGrandMaster/cmdCancel"));
  EXPECT_EQ(light(), Lit);
  EXPECT_FALSE(dialog().isVisible());
}

TEST_F(GrandMasterOnScreen, AtTheBottomNumberAndFrameTurnToTheColourOfTheStage) {
  open();
  constexpr QPoint OnFrame(1, 60);
  EXPECT_EQ(colourAt(dialog(), OnFrame), theme::colour("panel"));
  screen.click(named("band/ID_Blackout"));
  EXPECT_EQ(level(), "-100");
  EXPECT_EQ(light(), 0);
  EXPECT_EQ(colourAt(dialog(), OnFrame), theme::colour("stageText"));
  const auto ink = [] { return named("frmGrandMaster/Level").palette().color(QPalette::Text); };
  EXPECT_EQ(ink(), theme::colour("stageText"));
  EXPECT_EQ(colourAt(fader(), at(-50)), theme::colour("stageLit")) << "filled from zero down";
  screen.key(Qt::Key_Up);
  EXPECT_EQ(colourAt(dialog(), OnFrame), theme::colour("panel"));
  EXPECT_EQ(ink(), theme::colour("text"));
  screen.key(Qt::Key_End);
  EXPECT_EQ(colourAt(fader(), at(50)), theme::colour("stageLit"));
  EXPECT_NE(colourAt(fader(), at(-50)), theme::colour("stageLit"));
}

TEST_F(GrandMasterOnScreen, OkAndTheCloseBoxKeepTheLightAndEscapeGivesItBackAndEnterEndsNothingByItself) {
  struct End {
    const char* what;
    std::function<void()> act;
    int light = Lit - 25;
  };
  for (const End& end : {End{"OK", [&] { screen.click(named("frmGrandMaster/cmdOK")); }},
                         End{"Enter on OK",
                             [&] {
                               while (focus()->objectName() != "cmdOK") screen.key(Qt::Key_Tab);
                               screen.key(Qt::Key_Return);
                             }},
                         End{"Escape", [&] { screen.key(Qt::Key_Escape); }, Lit},
                         End{"the close box", [&] { dialog().close(), screen.settle(); }}}) {
    SCOPED_TRACE(end.what);
    open();
    screen.key(Qt::Key_Return);
    write("frmGrandMaster/Level", "-11");
    screen.key(Qt::Key_Return);
    EXPECT_TRUE(dialog().isVisible());
    EXPECT_EQ(light(), Lit) << "a typed number waits for the arrows";
    screen.key(Qt::Key_Up);
    EXPECT_EQ(fader().value(), -10);
    EXPECT_EQ(light(), Lit - 25);
    end.act();
    EXPECT_FALSE(dialog().isVisible());
    EXPECT_FALSE(desk.windows.GrandMaster.Window.Loaded);
    EXPECT_EQ(light(), end.light);
  }
}

TEST_F(GrandMasterOnScreen, StandsClearOfGoAndTheCuePanelAndStepsAsideWhenMovedOverThem) {
  open();
  QWidget& band = named("band");
  const QRect top(band.mapToGlobal(QPoint(0, 0)), band.size());
  EXPECT_EQ(dialog().frameGeometry() & top, QRect());
  dialog().move(band.mapToGlobal(named("band/ID_CueWindow").geometry().center()));
  QMetaObject::invokeMethod(dialog().findChild<QTimer*>("moving"), "timeout");
  EXPECT_EQ(dialog().frameGeometry() & top, QRect());
  screen.click(named("band/ID_Go"));
  EXPECT_TRUE(house.xy().State.Fading);
  EXPECT_TRUE(dialog().isVisible());
}

// ---- The preferences

struct PreferencesOnScreen : DialogOnScreen {
  void open() {
    screen.onDesk([&] { desk.windows.Preferences.Show(); });
  }
  void expectError() { screen.expectBox("Application may close", "&Ignore"); }
  static QCheckBox& box(const QString& name) { return named<QCheckBox>("frmPreferences/" + name); }
  void tick(const QString& name) { screen.click(box(name), {10, box(name).height() / 2}); }
};

TEST_F(PreferencesOnScreen, TheInputsExcludeEachOtherAndTakeEffectBySave) {
  open();
  const auto ticked = [] {
    QStringList on;
    for (const char* name : {"chkDMXNothing", "chkDMXDimmers", "chkDMXSubmasters"})
      if (box(name).isChecked()) on.push_back(name);
    return on.join(" ");
  };
  for (const char* name : {"chkDMXDimmers", "chkDMXNothing", "chkDMXSubmasters"}) {
    tick(name);
    EXPECT_EQ(ticked(), name);
  }
  write("frmPreferences/txtUp", "7");
  EXPECT_FALSE(desk.show.DMXSubmasters);
  screen.key(Qt::Key_Return);
  EXPECT_FALSE(named("frmPreferences").isVisible());
  EXPECT_TRUE(desk.show.DMXSubmasters);
  EXPECT_EQ(desk.show.DefaultUp, 7);

  open();
  EXPECT_EQ(ticked(), "chkDMXSubmasters");
  EXPECT_EQ(focus(), &named("frmPreferences/txtUp"));
  screen.type("9");  // the text is marked
  EXPECT_EQ(text("frmPreferences/txtUp"), "9");
  screen.click(named("frmPreferences/cmdReset"));
  EXPECT_EQ(text("frmPreferences/txtUp"), "7");
  tick("chkDMXSubmasters");
  EXPECT_EQ(ticked(), "");
  screen.key(Qt::Key_Escape);
  EXPECT_FALSE(desk.windows.Preferences.Window.Loaded);
  EXPECT_TRUE(desk.show.DMXSubmasters);
}

TEST_F(PreferencesOnScreen, ANumberThatIsNoneIsToldAndCanBeMendedAfterwards) {
  open();
  write("frmPreferences/txtUp", "x");
  expectError();
  screen.click(named("frmPreferences/cmdSave"));
  expectError();
  open();
  EXPECT_EQ(text("frmPreferences/txtUp"), "x");
  write("frmPreferences/txtUp", "6");
  screen.click(named("frmPreferences/cmdSave"));
  EXPECT_EQ(desk.show.DefaultUp, 6);
}

TEST_F(PreferencesOnScreen, LoggingTellsWhatItDoesUnderItsTick) {
  open();
  screen.expectBox("NOTE: Enabling Logging", "OK", [] { EXPECT_TRUE(box("chkRecord").isChecked()); });
  tick("chkRecord");
  EXPECT_TRUE(desk.show.DebugLogging);
  screen.expectBox("Logging is disabled!");
  tick("chkRecord");
  EXPECT_FALSE(box("chkRecord").isChecked());
}

// ---- The timings

TEST_F(PreferencesOnScreen, TheTimingsOpenBehindTheirWarningAndChangeWhenTheQuestionIsAnswered) {
  open();
  screen.expectBox("Warning: Modifying the default timings");
  screen.click(named("frmPreferences/buttonTimings"));
  EXPECT_EQ(named("frmTimings").windowTitle(), "Internal Timing");
  EXPECT_EQ(named<QLabel>("frmTimings/Captions_6").text(), "Max Fixtures");
  EXPECT_EQ(focus(), &named("frmTimings/txtOutRate"));
  EXPECT_EQ(named<QLineEdit>("frmTimings/txtOutRate").selectedText(), "30");
  write("frmTimings/txtNumFixtures", "100");
  screen.expectBox("Are you sure", "&No");
  screen.key(Qt::Key_Return);
  EXPECT_EQ(desk.show.NumChannels, ChannelCount);
  screen.expectBox("Are you sure", "&Yes");
  screen.expectBox("done");
  screen.click(named("frmTimings/cmdRefresh"));
  EXPECT_EQ(desk.show.NumChannels, 100);
  screen.click(named("frmTimings/cmdDefault"));
  EXPECT_EQ(text("frmTimings/txtNumFixtures"), "512");
  screen.expectBox("Function not active.");
  screen.click(named("frmTimings/cmdSave"));
  screen.key(Qt::Key_Escape);
  EXPECT_FALSE(desk.windows.Timings.Window.Loaded);
  EXPECT_TRUE(named("frmPreferences").isVisible());
}

// ---- On a small screen

TEST(SurfaceDialogsOnASmallScreen, EveryControlIsReachedWhole) {
  constexpr int LeftOfSmall = 3840;
  DeskOnScreen house({640, 400}, SHOW_DATA_DIR "/demo.kel", LeftOfSmall);
  house.open();
  const auto expectReachable = [&](const char* window, int controls) {
    QWidget& dialog = named(window);
    const QRect screen = dialog.screen()->availableGeometry();
    EXPECT_EQ(dialog.frameGeometry() & screen, dialog.frameGeometry()) << window;
    for (int step = 0; step < controls; ++step) {
      const QWidget& reached = *QApplication::focusWidget();
      EXPECT_EQ(reached.window(), &dialog);
      EXPECT_EQ(reached.visibleRegion(), QRegion(reached.rect())) << reached.objectName().toStdString();
      EXPECT_FALSE(reached.accessibleName().isEmpty()) << reached.objectName().toStdString();
      house.screen.key(Qt::Key_Tab);
    }
    house.screen.key(Qt::Key_Escape);
  };
  house.screen.onDesk([&] { house.desk.windows.GrandMaster.Show(); });
  QWidget& band = named("band");
  EXPECT_GT(named("frmGrandMaster").frameGeometry().top(), band.mapToGlobal(band.rect().bottomLeft()).y());
  expectReachable("frmGrandMaster", 4);
  house.screen.onDesk([&] { house.desk.windows.Preferences.Show(); });
  expectReachable("frmPreferences", 17);
}

}  // namespace
}  // namespace velgrove::test
