// The dialogs of the fixtures under real keys and a real mouse.

#include "desktop/fixture_dialog.h"

#include <QAccessible>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/theme.h"
#include "desktop/twips.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

constexpr int Moving = 6;  // clsFixture::IconShape of a moving light

struct FixtureOnScreen : testing::Test {
  FixtureOnScreen() { house.open(); }

  /// As a right click on the plot at a place does.
  void open(const std::string& kind, QPoint at) {
    screen.onDesk([&] {
      for (const auto& one : desk.windows.ActiveDocument->ActiveView->colFixtures())
        if ((one->IconShape == Moving) == (kind == "MovingFixtureDlg")) fixture = one;
      desk.show.CurrentFixture = fixture;
      auto& moving = desk.windows.MovingFixture;
      auto& plain = desk.windows.Fixture;
      FixtureForm& form = kind == "FixtureDlg" ? plain.Dialog : moving.Dialog;
      form.Window.Left = twips(at.x());
      form.Window.Top = twips(at.y());
      kind == "FixtureDlg" ? plain.Show() : moving.Show();
    });
  }
  void open() { open("FixtureDlg", {200, 150}); }

  static QString text(const QString& field) { return named<QLineEdit>("FixtureDlg/" + field).text(); }
  static QWidget* focus() { return QApplication::focusWidget(); }
  static Fader& fader(const QString& path = "FixtureDlg/VSlider1") { return named<Fader>(path); }
  static QPoint onFader(const Fader& fader, double share) {
    return fader.placeOf(qRound(share * fader.maximum())).toPoint();
  }
  [[nodiscard]] int manual(int behind = 0) const {
    return desk.show.ManualLevels[channelIndex(fixture->Channel + behind)];
  }
  [[nodiscard]] std::size_t channel() const { return channelIndex(fixture->Channel); }
  void setLevel(const std::string& percent) {
    screen.onDesk([&] { desk.windows.Fixture.Dialog.Level.setText(percent); });
  }
  void showPage(const QString& dialog, int page) {
    auto& tabs = named<QTabBar>(dialog + "/TabStrip1");
    screen.click(tabs, tabs.tabRect(page).center());
  }
  void wait(int ms) { house.runTo(house.house.clock.now() / Milliseconds(1) + ms); }

  DeskOnScreen house;
  Screen& screen = house.screen;
  LightingDesk& desk = house.desk;
  std::shared_ptr<clsFixture> fixture;
};

TEST_F(FixtureOnScreen, OpensWithItsLevelMarkedSoThatTypingSetsIt) {
  open();
  EXPECT_EQ(focus(), &named("FixtureDlg/Level"));
  EXPECT_EQ(text("Channel"), QString::number(fixture->Channel));
  EXPECT_EQ(named("FixtureDlg/Level").toolTip(), "Brightness Level of Light");
  screen.type("50");
  EXPECT_EQ(manual(), 128);
  EXPECT_EQ(fader().value(), 128);
  screen.key(Qt::Key_Backspace);
  screen.key(Qt::Key_Backspace);
  EXPECT_EQ(text("Level"), "0");
  screen.type("70");
  EXPECT_EQ(text("Level"), "70") << "the nought that came by itself is in the way";
  screen.key(Qt::Key_Up);
  EXPECT_EQ(text("Level"), "71");
  screen.click(named("band/ID_QPlus"));
  EXPECT_TRUE(named("FixtureDlg").isVisible()) << "the desk goes on beside it";
}

TEST_F(FixtureOnScreen, StandsBesideWhatWasPointedAtAndBelowTheBand) {
  const QWidget& plot = named("FlpCAD1");
  for (const QPoint at : {QPoint(5, 5), QPoint(plot.width() - 5, 5), QPoint(5, plot.height() - 5),
                          QPoint(plot.width() - 5, plot.height() - 5), QPoint(300, 300)}) {
    for (const QString kind : {"FixtureDlg", "MovingFixtureDlg"}) {
      open(kind.toStdString(), at);
      const QRect place = named(kind).frameGeometry();
      EXPECT_FALSE(place.contains(plot.mapToGlobal(at)));
      EXPECT_EQ(place & house.frame().screen()->availableGeometry(), place);
      EXPECT_GE(place.top(), named("band").mapToGlobal(QPoint(0, named("band").height())).y());
      screen.key(Qt::Key_Escape);
    }
  }
}

TEST_F(FixtureOnScreen, TheFaderStaysInTheHandAndRestsWhereTheDeskPutsIt) {
  open();
  screen.press(fader(), onFader(fader(), 0.6));
  EXPECT_EQ(text("Level"), "60") << "a press beside the handle brings it there";
  EXPECT_EQ(manual(), 153);
  screen.moveTo(fader(), onFader(fader(), 0.3));
  EXPECT_EQ(text("Level"), "30");
  const int held = fader().sliderPosition();
  setLevel("80");
  EXPECT_EQ(text("Level"), "80");
  EXPECT_EQ(fader().sliderPosition(), held);
  screen.release(fader(), onFader(fader(), 0.3));
  EXPECT_EQ(fader().value(), 204);
  EXPECT_EQ(manual(), 204);
  EXPECT_EQ(focus(), &fader());

  using Step = std::pair<Qt::Key, const char*>;
  for (const auto& [key, percent] :
       {Step(Qt::Key_Up, "81"), Step(Qt::Key_Down, "80"), Step(Qt::Key_PageDown, "70"),
        Step(Qt::Key_Home, "0"), Step(Qt::Key_PageUp, "10"), Step(Qt::Key_End, "100")}) {
    screen.key(key);
    EXPECT_EQ(text("Level"), percent);
  }
  const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&fader());
  EXPECT_EQ(spoken->role(), QAccessible::Slider);
  EXPECT_EQ(spoken->text(QAccessible::Name), "Level, 0 to 255");
  EXPECT_EQ(const_cast<QAccessibleInterface*>(spoken)->valueInterface()->currentValue(), 255);
}

TEST_F(FixtureOnScreen, TheFaderLetsGoWhenABoxTookTheRelease) {
  open();
  screen.press(fader(), onFader(fader(), 0.6));
  screen.expectBox("Lamp");
  screen.onDesk([&] { screen.face.postBox({.text = "Lamp"}); });
  setLevel("80");
  EXPECT_EQ(fader().value(), 204);
  screen.moveTo(fader(), onFader(fader(), 0.3));
  EXPECT_EQ(fader().value(), 204);
  EXPECT_EQ(focus(), &fader()) << "the box gave the focus to another window";
}

TEST_F(FixtureOnScreen, ShowsWhatTheInputHoldsAndTheHandCantPullBelow) {
  open();
  setLevel("60");
  EXPECT_FALSE(fader().mark());
  screen.onDesk([&] { desk.show.DMXInput[channel()] = 76; });
  EXPECT_EQ(fader().mark(), 76);
  EXPECT_EQ(named<QLabel>("FixtureDlg/DmxHolds").text(), "DMX input holds 30");
  constexpr QPoint LeftOfAxis(-32, -2);
  EXPECT_EQ(colourAt(fader(), onFader(fader(), 76 / 255.0) + LeftOfAxis + QPoint(4, 0)),
            theme::colour("input"));
  screen.press(fader(), onFader(fader(), 0.1));
  screen.release(fader(), onFader(fader(), 0.1));
  EXPECT_EQ(manual(), 153);

  QWidget& holds = named("FixtureDlg/DmxHolds");
  const auto onScreen = [&] {
    const QPoint mark = holds.mapTo(holds.window(), QPoint(4, holds.height() / 2 - 1));
    return holds.screen()->grabWindow(holds.window()->winId()).toImage().pixelColor(mark);
  };
  EXPECT_EQ(onScreen(), theme::colour("input"));
  for (const int nothing : {7, 0}) {
    screen.onDesk([&] { desk.show.DMXInput[channel()] = static_cast<std::uint8_t>(nothing); });
    EXPECT_EQ(named<QLabel>("FixtureDlg/DmxHolds").text(), "");
    EXPECT_FALSE(fader().mark());
    EXPECT_EQ(onScreen(), theme::colour("panel"));
  }
}

TEST_F(FixtureOnScreen, WearsTheColourOfTheHandAndInBlindThatOfBlind) {
  open();
  setLevel("60");
  for (const auto& [blind, colour] : {std::pair(false, "manual"), std::pair(true, "blind")}) {
    screen.onDesk([&, blind = blind] { desk.show.BlindOn = blind; });
    EXPECT_EQ(colourAt(fader(), onFader(fader(), 0.3)), theme::colour(colour));
    EXPECT_NE(colourAt(fader(), onFader(fader(), 0.9)), theme::colour(colour));
    EXPECT_EQ(named("FixtureDlg/Level").palette().color(QPalette::Text), theme::colour(colour));
  }
}

TEST_F(FixtureOnScreen, ShowsTheFixtureAsOnThePlotPickedAndGlowing) {
  open();
  const auto glowing = [] {
    const QImage picture = named("FixtureDlg/Light").grab().toImage();
    int pixels = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) {
        const QColor colour = picture.pixelColor(x, y);
        if (colour.red() > 60 && 2 * colour.red() > 3 * colour.green()) ++pixels;
      }
    return pixels;
  };
  setLevel("0");
  EXPECT_LT(glowing(), 300) << "nothing but the text of the level";
  setLevel("60");
  EXPECT_GT(glowing(), 2000);
  QWidget& symbol = named("FixtureDlg/Light");
  int x = 0;
  while (x < symbol.width() && colourAt(symbol, {x, symbol.height() / 2}) != theme::colour("picked")) ++x;
  EXPECT_LT(x, symbol.width());

  const QImage before = symbol.grab().toImage();
  screen.onDesk([&] {
    auto other = std::make_shared<clsFixture>(*fixture);  // as one of the show before
    other->Shape = 1;
    other->LevelTextShape = 0;
    desk.show.CurrentFixture = other;
  });
  EXPECT_EQ(symbol.grab().toImage(), before);
}

TEST_F(FixtureOnScreen, TheWheelMeansTheLevelWhereverItIsTurned) {
  open();
  setLevel("50");
  screen.wheel(fader(), 120);
  EXPECT_EQ(text("Level"), "54");
  screen.wheel(named("FixtureDlg/Level"), -240);
  EXPECT_EQ(text("Level"), "46");
  for (int part = 0; part < 3; ++part) screen.wheel(named("FixtureDlg/Command1"), 40);
  EXPECT_EQ(text("Level"), "50") << "a fine wheel's parts make a notch";
  showPage("FixtureDlg", 1);
  screen.wheel(named("FixtureDlg/TabStrip1"), 120);
  EXPECT_EQ(text("Level"), "54");
  EXPECT_TRUE(named("FixtureDlg/Text1_0").isVisible()) << "the tabs took the wheel";
  screen.onDesk([&] { desk.windows.Fixture.Dialog.Window.Enabled = false; });
  screen.wheel(named("FixtureDlg/Command1"), 120);
  EXPECT_EQ(text("Level"), "54");
}

TEST_F(FixtureOnScreen, PropertiesAreWrittenByOkAndByNoOtherEnd) {
  struct End {
    const char* what;
    std::function<void()> act;
    bool writes;
  };
  for (const End& end :
       {End{"OK", [&] { screen.click(named("FixtureDlg/Command1")); }, true},
        End{"Enter in a field", [&] { screen.key(Qt::Key_Return); }, true},
        End{"Cancel", [&] { screen.click(named("FixtureDlg/CancelButton")); }, false},
        End{"Escape", [&] { screen.key(Qt::Key_Escape); }, false},
        End{"the close box", [&] { named("FixtureDlg").close(), screen.settle(); }, false}}) {
    SCOPED_TRACE(end.what);
    open();
    fixture->Mood = "Cold";
    showPage("FixtureDlg", 1);
    EXPECT_FALSE(named("FixtureDlg/Level").isVisible());
    EXPECT_EQ(focus(), &named("FixtureDlg/Text1_0"));
    auto& mood = named<QLineEdit>("FixtureDlg/Text1_9");
    EXPECT_EQ(mood.toolTip(), "Mood/Group");
    EXPECT_EQ(named<QLabel>("FixtureDlg/Area").text(), "Focus:");
    mood.setFocus();
    mood.selectAll();
    screen.type("Warm");
    end.act();
    EXPECT_FALSE(named("FixtureDlg").isVisible());
    EXPECT_FALSE(desk.windows.Fixture.Dialog.Window.Loaded);
    EXPECT_EQ(fixture->Mood, end.writes ? "Warm" : "Cold");
  }
}

TEST_F(FixtureOnScreen, EnterMeansOkAgainAfterCancelWasPressed) {
  open();
  screen.click(named("FixtureDlg/CancelButton"));
  open();
  EXPECT_TRUE(named<QPushButton>("FixtureDlg/Command1").isDefault());
  EXPECT_FALSE(named<QPushButton>("FixtureDlg/CancelButton").isDefault());
}

TEST_F(FixtureOnScreen, TheTabsAndEveryControlAreReachedByKeys) {
  open("MovingFixtureDlg", {200, 150});
  for (const char* name : {"VSlider2", "VSlider3", "VSlider4", "res_8bit", "cmdAttachMouse", "Channel",
                           "Command1", "CancelButton", "TabStrip1"}) {
    screen.key(Qt::Key_Tab);
    EXPECT_EQ(focus()->objectName(), name);
    EXPECT_FALSE(focus()->accessibleName().isEmpty());
  }
  screen.key(Qt::Key_Right);
  EXPECT_EQ(desk.windows.MovingFixture.Dialog.TabStrip1.selected(), 2);
  EXPECT_TRUE(named("MovingFixtureDlg/Text1_0").isVisible());
}

TEST_F(FixtureOnScreen, AMovingLightIsMovedByItsFaders) {
  open("MovingFixtureDlg", {200, 150});
  EXPECT_EQ(manual(1), 128);
  EXPECT_EQ(named<QLabel>("MovingFixtureDlg/YLEV").text(), "Y:128");
  Fader& x = fader("MovingFixtureDlg/VSlider3");
  screen.press(x, onFader(x, 1));
  screen.release(x, onFader(x, 1));
  EXPECT_EQ(named<QLabel>("MovingFixtureDlg/xlev").text(), "X:255");
  screen.key(Qt::Key_Down);
  EXPECT_EQ(manual(1), 254);
  auto& fine = named<QRadioButton>("MovingFixtureDlg/res_16Bit");
  screen.click(fine, {8, fine.height() / 2});
  EXPECT_EQ(desk.windows.MovingFixture.PositionResolution, 16);
  EXPECT_TRUE(fine.isChecked());
  screen.onDesk([&] {
    desk.windows.MovingFixture.res_8bit.Value = true;
    desk.windows.MovingFixture.res_16Bit.Value = false;
  });
  EXPECT_TRUE(named<QRadioButton>("MovingFixtureDlg/res_8bit").isChecked());
  EXPECT_FALSE(fine.isChecked());
}

TEST_F(FixtureOnScreen, TheAttachedMouseMovesTheLightAndTheClickThatEndsItDoesNothingElse) {
  open("MovingFixtureDlg", {200, 150});
  auto& moving = desk.windows.MovingFixture;
  QWidget& dialog = named("MovingFixtureDlg");
  QWidget& ok = named("MovingFixtureDlg/Command1");
  const auto moveTo = [&](QPoint at) {
    QCursor::setPos(at);
    screen.settle();
    wait(100);
  };
  screen.click(named("MovingFixtureDlg/cmdAttachMouse"));
  EXPECT_EQ(dialog.cursor().shape(), Qt::CrossCursor);
  moveTo({100, 20});
  const int x = manual(1);
  const int y = manual(2);
  moveTo({140, 10});
  EXPECT_EQ(manual(1), x + 10);
  EXPECT_EQ(manual(2), y + 5);
  const QPoint outside(140, 0);
  EXPECT_EQ(QGuiApplication::topLevelAt(outside), nullptr);
  QCursor::setPos(outside);
  QMetaObject::invokeMethod(dialog.findChild<QTimer*>("poll"), "timeout");
  wait(100);
  EXPECT_EQ(manual(2), y + 10) << "no window of ours lies there";

  screen.press(ok, ok.rect().center());
  wait(100);
  EXPECT_FALSE(moving.Mouse_Attach.enabled());
  screen.release(ok, ok.rect().center());
  EXPECT_TRUE(dialog.isVisible()) << "the click pressed what lay under it";
  EXPECT_NE(dialog.cursor().shape(), Qt::CrossCursor);
  EXPECT_TRUE(named("MovingFixtureDlg/cmdAttachMouse").isEnabled());
  EXPECT_EQ(focus(), &named("MovingFixtureDlg/cmdAttachMouse"));

  screen.key(Qt::Key_Return);
  EXPECT_TRUE(moving.Mouse_Attach.enabled());
  screen.press(dialog, {4, 4});
  wait(100);
  EXPECT_FALSE(moving.Mouse_Attach.enabled());
  screen.expectBox("Lamp");  // takes the release
  screen.onDesk([&] { screen.face.postBox({.text = "Lamp"}); });
  screen.click(ok);
  EXPECT_FALSE(dialog.isVisible()) << "the click that ended the mode took the next one with it";
}

TEST(FixtureDialogOnASmallScreen, ScrollsToWhatHasTheFocus) {
  constexpr int LeftOfSmall = 3840;
  DeskOnScreen house({640, 400}, SHOW_DATA_DIR "/demo.kel", LeftOfSmall);
  house.open();
  house.screen.onDesk([&] {
    auto& fixtures = house.desk.windows.ActiveDocument->ActiveView->colFixtures();
    house.desk.show.CurrentFixture = fixtures.item(1);
    house.desk.windows.MovingFixture.Show();
  });
  QWidget& dialog = named("MovingFixtureDlg");
  EXPECT_LE(dialog.height(), 400);
  for (const char* name : {"cmdAttachMouse", "Channel", "Command1"}) {
    for (int step = 0; step < 12 && QApplication::focusWidget()->objectName() != name; ++step)
      house.screen.key(Qt::Key_Tab);
    const QWidget& reached = named(QString("MovingFixtureDlg/") + name);
    EXPECT_TRUE(reached.hasFocus()) << name;
    EXPECT_EQ(reached.visibleRegion(), QRegion(reached.rect())) << name;
  }
}

}  // namespace
}  // namespace velgrove::test
