// Evenings at the desk, with real keys and a real mouse in the real windows.

#include <algorithm>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/theme.h"
#include "model/show_file.h"
#include "support/desk_on_screen.h"
#include "support/show_maker.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;

/// How many pixels of a widget have exactly a colour.
int pixelsOf(QWidget& widget, const char* colour) {
  const QImage picture = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
  const QRgb wanted = theme::colour(colour).rgb();
  int found = 0;
  for (int y = 0; y < picture.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
    found += static_cast<int>(std::count(line, line + picture.width(), wanted));
  }
  return found;
}

QColor rowColour(DeskOnScreen& house, int row, double share) {
  CueTable& table = house.table("XYQueueList");
  return colourAt(*table.viewport(), house.inRow(table, row, share));
}

TEST(Journey, AShowIsChosenByKeysAlone) {
  DeskOnScreen house;
  house.screen.whenAsked([&] {
    EXPECT_EQ(QApplication::focusWidget(), &named("frmOpenProject/filList"));
    house.screen.key(Qt::Key_Down);
    house.screen.key(Qt::Key_Return);
  });
  house.start();
  EXPECT_FALSE(named("frmOpenProject").isVisible());
  EXPECT_EQ(house.frame().windowTitle().trimmed(), "Velgrove - The Winter's Tale");
  EXPECT_TRUE(named("frmDocument/FlpCAD1").isVisible());
  EXPECT_EQ(house.table("XYQueueList").model()->rowCount(), 29);
  EXPECT_EQ(house.table("ABQueueList").model()->rowCount(), 14);
  EXPECT_TRUE(named("band/ID_Save").isEnabled());
}

TEST(Journey, AShowThatWasDoubleClickedTakesNoMoreThanOneKey) {
  DeskOnScreen house({1280, 800}, SHOW_DATA_DIR "/demo.kel", 0, SHOW_DATA_DIR "/demo.kel");
  house.screen.whenAsked([&] {
    auto& files = named<QListWidget>("frmOpenProject/filList");
    EXPECT_EQ(QApplication::focusWidget(), &files);
    ASSERT_EQ(files.selectedItems().size(), 1);
    EXPECT_EQ(files.selectedItems().front()->text(), "demo.kel");
    house.screen.key(Qt::Key_Return);
  });
  house.start();
  EXPECT_EQ(house.desk.show.ProjectFileName, SHOW_DATA_DIR "/demo.kel");
  EXPECT_TRUE(named("frmDocument/FlpCAD1").isVisible());
}

TEST(Journey, CancelledAtTheStartTheDeskStandsWithoutAShow) {
  DeskOnScreen house;
  house.screen.whenAsked([&] { house.screen.key(Qt::Key_Escape); });
  house.start();
  EXPECT_TRUE(house.frame().isVisible());
  EXPECT_FALSE(named("XYQueueList").isVisible());
  EXPECT_FALSE(named("band/ID_Save").isEnabled());
}

TEST(Journey, GoRunsTheLightThroughTheRowsAndOntoThePlot) {
  DeskOnScreen house;
  house.open();
  house.runTo(500);
  QWidget& plot = named("FlpCAD1");
  const int dark = pixelsOf(plot, "queue");  // of the dashes that stand for no level
  house.screen.click(named("band/ID_Go"));
  house.runTo(2000);  // half of the three seconds
  EXPECT_EQ(rowColour(house, 1, 0.25), theme::colour("stageLit"));
  EXPECT_EQ(rowColour(house, 1, 0.75), theme::colour("stageDim"));
  EXPECT_EQ(rowColour(house, 2, 0.25), theme::colour("nextLit"));
  EXPECT_EQ(rowColour(house, 2, 0.75), theme::colour("nextDim"));
  EXPECT_GT(pixelsOf(plot, "queue"), dark + 50);

  QWidget& panel = named("ID_CueWindow");
  EXPECT_EQ(colourAt(panel, {panel.width() / 5, 2}), theme::colour("stageLit"));
  EXPECT_EQ(colourAt(panel, {panel.width() * 3 / 5, 2}), theme::colour("stageDim"));

  house.runTo(4000);
  EXPECT_EQ(rowColour(house, 1, 0.25), theme::colour("well"));
  EXPECT_EQ(rowColour(house, 2, 0.75), theme::colour("stageLit"));
  EXPECT_EQ(rowColour(house, 3, 0.25), theme::colour("nextDim"));
  EXPECT_EQ(named("ID_CueWindow").accessibleDescription(),
            "Queue # 1.00 Preset, house open, next 2.00 House to half");
  EXPECT_EQ(named<QLabel>("XYQueueList/lblStageNum").text(), "1.00");
  EXPECT_EQ(named<QLabel>("XYQueueList/NextDescText").text(), "House to half");
}

/// Both players have their own Alt+G; the one in front takes it.
TEST(Journey, TheMnemonicOfGoMovesThePlayerInFront) {
  DeskOnScreen house;
  house.open();
  CueTable& table = house.table("ABQueueList");
  house.screen.click(*table.viewport(), house.inRow(table, 1));
  house.screen.key(Qt::Key_G, Qt::AltModifier);
  EXPECT_TRUE(house.ab().State.Fading);
  EXPECT_FALSE(house.xy().State.Fading);
  house.screen.key(Qt::Key_S, Qt::AltModifier);
  EXPECT_TRUE(house.ab().State.Paused);
}

TEST(Journey, TheNextMarkIsDraggedToAnotherRow) {
  DeskOnScreen house;
  house.open();
  CueTable& table = house.table("XYQueueList");
  QWidget& list = *table.viewport();
  const auto drag = [&](int to) {
    house.screen.press(list, house.inRow(table, house.xy().State.NextCue));
    house.screen.moveTo(list, house.inRow(table, 3));
    house.screen.moveTo(list, house.inRow(table, to));
  };
  drag(4);
  EXPECT_EQ(list.cursor().shape(), Qt::ArrowCursor);
  house.screen.release(list, house.inRow(table, 4));
  EXPECT_EQ(house.xy().State.NextCue, 4);
  EXPECT_EQ(rowColour(house, 4, 0.5), theme::colour("nextDim"));
  EXPECT_EQ(rowColour(house, 2, 0.5), theme::colour("well"));

  drag(1);
  EXPECT_EQ(list.cursor().shape(), Qt::ForbiddenCursor);
  house.screen.release(list, house.inRow(table, 1));
  EXPECT_EQ(house.xy().State.NextCue, 4);
  EXPECT_EQ(list.cursor().shape(), Qt::ArrowCursor);
}

TEST(Journey, TheArrowKeysWalkThroughTheCues) {
  DeskOnScreen house;
  house.open();
  CueTable& table = house.table("XYQueueList");
  const auto& desc = named<QLineEdit>("XYQueueList/CueDesc1");
  house.screen.click(*table.viewport(), house.inRow(table, 2));
  EXPECT_EQ(desc.text(), "Preset, house open");
  house.screen.key(Qt::Key_Down);
  EXPECT_EQ(desc.text(), "House to half");
  EXPECT_EQ(colourAt(*table.viewport(), house.inRow(table, 3, 0) - QPoint(0, 2)), theme::colour("text"));
  house.screen.key(Qt::Key_End);
  EXPECT_EQ(desc.text(), "House up");
  EXPECT_TRUE(table.viewport()->rect().contains(house.inRow(table, 29)));
  house.screen.key(Qt::Key_Home);
  house.screen.key(Qt::Key_Up);
  EXPECT_EQ(desc.text(), "Blackout");
}

// ---- Save and the way out

struct Leaving : testing::Test {
  Leaving() {
    house.open();
    house.runTo(500);  // the display tick has marked the show as changed
  }
  void leave(std::function<void()> answer) {
    house.screen.whenAsked([this, answer = std::move(answer)] {
      EXPECT_EQ(QApplication::focusWidget(), &named("frmWanttoSave/Save"));
      answer();
    });
    house.screen.key(Qt::Key_F, Qt::AltModifier);
    house.screen.key(Qt::Key_X);
  }
  [[nodiscard]] bool saved() const { return fs::exists(house.folder / "data" / "show.kel.bak"); }

  DeskOnScreen house;
};

TEST_F(Leaving, CancelGoesOnAndSoDoesEscape) {
  leave([this] { house.screen.click(named("frmWanttoSave/Cancel")); });
  leave([this] { house.screen.key(Qt::Key_Escape); });
  house.screen.whenAsked([this] { house.screen.key(Qt::Key_Escape); });
  house.frame().close();
  EXPECT_FALSE(house.quit());
  EXPECT_TRUE(house.frame().isVisible());
  house.screen.click(named("band/ID_Go"));
  EXPECT_TRUE(house.xy().State.Fading);
}

TEST_F(Leaving, DontSaveEndsTheDeskAndLeavesTheFile) {
  house.screen.expectBox("exiting frmMain unload");
  leave([this] { house.screen.click(named("frmWanttoSave/DontSave")); });
  EXPECT_TRUE(house.quit());
  EXPECT_FALSE(saved());
}

TEST_F(Leaving, SaveWritesTheShowAndEndsTheDesk) {
  house.screen.expectBox("exiting frmMain unload");
  leave([this] { house.screen.key(Qt::Key_Return); });
  EXPECT_TRUE(house.quit());
  EXPECT_TRUE(saved());
}

TEST_F(Leaving, ASavedShowLeavesWithoutAQuestion) {
  house.screen.click(named("band/ID_Save"));
  EXPECT_TRUE(saved());
  house.screen.expectBox("exiting frmMain unload");
  house.screen.key(Qt::Key_F, Qt::AltModifier);
  house.screen.key(Qt::Key_X);
  EXPECT_TRUE(house.quit());
}

TEST_F(Leaving, SaveAsAsksForANameAndWritesThere) {
  house.screen.whenAsked([this] {
    auto& name = named<QLineEdit>("saveFile/fileNameEdit");
    name.setText(QString::fromStdString(house.folder / "other"));
    house.screen.key(Qt::Key_Return);
  });
  house.screen.key(Qt::Key_F, Qt::AltModifier);
  house.screen.key(Qt::Key_A);
  EXPECT_TRUE(fs::exists(house.folder / "other.kel"));
}

// ---- A rig

TEST(Journey, ARigIsDrawnLitTurnedAndSaved) {
  ShowMaker nothing;
  nothing.channels.clear();
  const fs::path file = nothing.write();
  DeskOnScreen house({1280, 800}, file);
  fs::remove(file);
  std::array<std::uint8_t, ChannelCount> wire{};
  house.house.box.onFrame = [&](InterfaceBox::Frame frame) { std::ranges::copy(frame, wire.begin()); };
  house.open();
  Screen& screen = house.screen;
  auto& plot = named("frmDocument/FlpCAD1");
  const auto at = [&](double x, double y) {
    const Pixel pixel = house.desk.frame.ActiveForm().FlpCAD1.toPixels({.x = x, .y = y});
    return QPoint(qRound(pixel.x), qRound(pixel.y));
  };

  screen.click(named("toolColumn/ID_AddLight"));
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}) screen.key(key);
  screen.click(plot, at(310, 290));
  screen.click(plot, at(610, 290));
  screen.click(plot, at(610, 290), Qt::RightButton);
  screen.press(plot, at(250, 350));
  screen.moveTo(plot, at(260, 600));
  screen.moveTo(plot, at(260, 690));
  screen.release(plot, at(260, 690));

  screen.click(plot, at(200, 750), Qt::RightButton);
  screen.type("50");
  screen.key(Qt::Key_Return);
  EXPECT_FALSE(named("FixtureDlg").isVisible());
  house.runTo(2000);
  EXPECT_EQ(wire[0], 128);

  screen.click(named("toolColumn/ID_Rotate"));
  screen.click(plot, at(550, 350));
  named("AGauge2").setFocus();
  screen.key(Qt::Key_PageUp);
  screen.click(named("toolColumn/ID_Rotate"));
  screen.click(named("band/ID_Save"));

  std::ifstream saved(house.showFile, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(saved), {});
  const auto show = readShow(bytes, DMXInputRecords::Leave).project;
  const auto& rig = show->colViews().item(1)->colFixtures();
  ASSERT_EQ(rig.count(), 2);
  const auto& moved = *rig.item(1);
  const auto& turned = *rig.item(2);
  EXPECT_EQ(std::tuple(moved.IconShape, moved.Channel, moved.x, moved.y), std::tuple(2, 1, 200, 750));
  EXPECT_EQ(std::tuple(turned.Channel, turned.x, turned.y, turned.Angle), std::tuple(2, 550, 350, 15));
}

// ---- What the desk tells

TEST(Journey, TheBannerTellsWhatIsWrongWithTheInterfaceUntilItIsSolved) {
  DeskOnScreen house;
  house.open();
  QWidget& banner = named("banner");
  EXPECT_FALSE(banner.isVisible());
  const int before = named("children").height();
  house.screen.onDesk([&] { house.desk.windows.Comm.Condition.Caption = "The interface is gone."; });
  EXPECT_TRUE(banner.isVisible());
  EXPECT_EQ(named<QLabel>("banner/bannerText").text(), "The interface is gone.");
  EXPECT_EQ(colourAt(banner, {2, 2}), theme::colour("warn"));
  EXPECT_EQ(named("children").height(), before - banner.height());
  house.screen.onDesk([&] { house.desk.windows.Comm.Condition.Caption = ""; });
  EXPECT_FALSE(banner.isVisible());
}

TEST(Journey, BlindFramesThePlotAndWritesItsLevelsThere) {
  DeskOnScreen house;
  house.open();
  QWidget& plot = named("FlpCAD1");
  CueTable& table = house.table("XYQueueList");
  house.screen.click(*table.viewport(), house.inRow(table, 3));
  house.screen.click(named("XYQueueList/cmdBlindView"));
  house.runTo(1000);
  EXPECT_EQ(colourAt(plot, {1, plot.height() / 2}), theme::colour("blind"));
  EXPECT_EQ(named("XYQueueList/cmdBlindView").property("state").toString(), "on");
  EXPECT_EQ(named<QLabel>("displayMode").text(), "Blind");
  const int frame = 2 * 3 * (plot.width() + plot.height() - 6);
  EXPECT_GT(pixelsOf(plot, "blind"), frame + 50) << "no level of the blind look";

  house.screen.click(named("XYQueueList/cmdBlindView"));
  house.runTo(2000);
  EXPECT_EQ(pixelsOf(plot, "blind"), 0);
  EXPECT_EQ(named<QLabel>("displayMode").text(), "Stage");
}

/// A box of the merge stands beside the desk, which goes on.
TEST(Journey, GoWorksUnderABoxThatNobodyWaitsFor) {
  DeskOnScreen house;
  house.open();
  house.screen.expectBox("Channel 3 is out of range", "OK", [&] {
    house.screen.click(named("band/ID_Go"));
    EXPECT_TRUE(house.xy().State.Fading);
  });
  house.screen.onDesk([&] { house.desk.machine.boxes.post({.text = "Channel 3 is out of range"}); });
}

}  // namespace
}  // namespace velgrove::test
