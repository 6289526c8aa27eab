// The frame's windows, dialogs and tools under the hand, each tied to what the desk holds.

#include <QAbstractItemModelTester>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabBar>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/tools.h"
#include "support/desk_on_screen.h"
#include "support/show_maker.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;

struct OpenDesk : testing::Test {
  OpenDesk() { house.open(); }

  static QMdiSubWindow& child(const QString& content) {
    return *qobject_cast<QMdiSubWindow*>(named(content).parentWidget());
  }
  enum TitleButton { Close, Maximise, Minimise };
  void clickTitle(QMdiSubWindow& window, TitleButton button) {
    constexpr int Frame = 3;
    constexpr int Wide = 22;
    house.screen.click(window, {window.width() - Frame - button * Wide - Wide / 2, Frame + 12});
  }
  bool pressed(const char* tool) { return named<QToolButton>(tool).isChecked(); }

  DeskOnScreen house;
  Screen& screen = house.screen;
};

// ---- Child windows

TEST_F(OpenDesk, TheCloseBoxHidesAPlayerAndItsToolBringsItBack) {
  clickTitle(child("XYQueueList"), Close);
  EXPECT_FALSE(house.xy().Window.Visible);
  EXPECT_FALSE(child("XYQueueList").isVisible());
  EXPECT_FALSE(pressed("band/ID_XYQ"));
  screen.click(named("band/ID_XYQ"));
  EXPECT_TRUE(child("XYQueueList").isVisible());
  EXPECT_TRUE(pressed("band/ID_XYQ"));
  EXPECT_EQ(QApplication::focusWidget(), &house.table("XYQueueList"));
}

TEST_F(OpenDesk, TheCloseBoxOfThePlotOnlyPutsItAway) {
  clickTitle(child("frmDocument"), Close);
  EXPECT_EQ(house.desk.windows.Documents.size(), 1U);
  EXPECT_TRUE(child("frmDocument").isMinimized());
  screen.onDesk([this] { house.desk.frame.ActiveForm().Window.Restore(); });
  EXPECT_FALSE(child("frmDocument").isMinimized());
}

TEST_F(OpenDesk, AWindowMinimisedOrEnlargedByHandIsSoForTheDesk) {
  QMdiSubWindow& window = child("ABQueueList");
  clickTitle(window, Minimise);
  EXPECT_EQ(house.ab().Window.WindowState, WindowState::Minimised);
  screen.click(named("band/ID_ABQ"));
  EXPECT_EQ(house.ab().Window.WindowState, WindowState::Normal);
  EXPECT_FALSE(window.isMinimized());
  clickTitle(window, Maximise);
  EXPECT_EQ(house.ab().Window.WindowState, WindowState::Maximised);
}

TEST_F(OpenDesk, WindowsStayWhereTheHandPutThem) {
  QMdiSubWindow& window = child("ABQueueList");
  const QPoint title(80, 12);
  screen.press(window, title);
  screen.moveTo(window, title - QPoint(60, 40));
  screen.release(window, title);
  const QRect moved = window.geometry();
  house.frame().resize(1400, 820);
  screen.settle();
  EXPECT_EQ(window.geometry(), moved);
}

TEST_F(OpenDesk, AnotherShowBringsItsOwnPlotAndRows) {
  fs::copy_file(showOf(3).write(), house.folder / "data" / "another.kel");
  screen.whenAsked([this] { screen.click(named("frmWanttoSave/DontSave")); });
  screen.click(named("band/ID_OpenProject"));
  EXPECT_FALSE(named("XYQueueList").isVisible());
  screen.click(named("frmOpenProject/filList"));
  screen.key(Qt::Key_Home);
  screen.key(Qt::Key_Return);
  EXPECT_EQ(house.table("XYQueueList").model()->rowCount(), 3);
  EXPECT_EQ(house.frame().findChildren<QWidget*>("frmDocument").size(), 1);
  EXPECT_TRUE(named("XYQueueList").isVisible());
}

// ---- The plot's scroll bars

TEST_F(OpenDesk, AScrollBarIsntWrittenWhileTheHandHoldsIt) {
  auto& bar = named<QScrollBar>("frmDocument/HScroll1");
  Slider& control = house.desk.frame.ActiveForm().HScroll1;
  EXPECT_EQ(bar.maximum(), 0) << "all of the plot is in view";
  screen.onDesk([&] { house.desk.frame.ActiveForm().WorldZoom(true, 0.5, 250, 500); });
  const QPoint thumb(15, bar.height() / 2);
  screen.press(bar, thumb);
  screen.moveTo(bar, thumb + QPoint(100, 0));
  const int dragged = bar.value();
  EXPECT_GT(dragged, 0);
  EXPECT_EQ(control.value(), dragged);
  screen.onDesk([&] { control.setValue(0); });
  EXPECT_EQ(bar.value(), dragged);
  screen.release(bar, thumb + QPoint(100, 0));
  EXPECT_EQ(bar.value(), 0);
  bar.setFocus();
  screen.key(Qt::Key_PageDown);  // by what the view shows, half of the plot
  EXPECT_EQ(control.value(), 500);
  EXPECT_EQ(bar.maximum(), 500) << "where the plot ends";
}

TEST_F(OpenDesk, AnOpenComboShowsAllItsItems) {
  auto& combo = named<QComboBox>("XYQueueList/QListCombo1");
  screen.click(combo);
  const QAbstractItemView& list = *combo.view();
  const QRect last = list.visualRect(list.model()->index(combo.count() - 1, 0));
  EXPECT_TRUE(list.viewport()->rect().contains(last)) << last.bottom() << " " << list.viewport()->height();
  screen.key(Qt::Key_Escape);
  EXPECT_EQ(house.xy().QListCombo.listIndex(), 0);
}

// ---- Tools

TEST_F(OpenDesk, AToolShowsWhatTheDeskSaysAndNotWhatTheClickWouldMakeOfIt) {
  EXPECT_TRUE(pressed("band/ID_ABQ"));
  screen.click(named("band/ID_ABQ"));
  EXPECT_TRUE(pressed("band/ID_ABQ"));
  screen.key(Qt::Key_I, Qt::AltModifier);
  screen.key(Qt::Key_I);
  EXPECT_TRUE(house.desk.show.DMXDimmers);
  EXPECT_EQ(named<QLabel>("inputMode").text(), "Input To Fixtures");
  screen.onDesk([this] { house.desk.frame.SSActiveToolBars1.tool("ID_Save").Enabled = false; });
  EXPECT_FALSE(named("band/ID_Save").isEnabled());
}

TEST_F(OpenDesk, PrintingCanBeCalledOff) {
  screen.whenAsked([this] {
    EXPECT_TRUE(named("printer").isVisible());
    screen.key(Qt::Key_Escape);
  });
  screen.key(Qt::Key_F, Qt::AltModifier);
  screen.key(Qt::Key_P);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(OpenDesk, ThePlotOnPaperIsBlackOnWhite) {
  house.runTo(500);
  PlotPicture plot;
  house.desk.frame.ActiveForm().FlpCAD1.copyTo(plot.drawing);
  QImage paper(1000, 1000, QImage::Format_RGB32);
  paper.fill(Qt::white);
  QPainter painter(&paper);
  PlotPainter(PlotPainter::Medium::Paper)
      .paint(painter, plot, {.origin = {0, 1000}, .pixelsPerUnit = 1, .ratio = 1}, paper.rect());
  int ink = 0;
  int coloured = 0;
  for (int y = 0; y < paper.height(); ++y) {
    for (int x = 0; x < paper.width(); ++x) {
      const QColor dot = paper.pixelColor(x, y);
      ink += dot.lightness() < 128 ? 1 : 0;
      coloured += dot.saturation() > 0 ? 1 : 0;
    }
  }
  EXPECT_GT(ink, 5000);
  EXPECT_EQ(coloured, 0);
}

TEST_F(OpenDesk, LockedFixturesTellItInABoxAndTakeNoHand) {
  screen.expectBox("Fixtures Locked!");
  auto* menus = house.frame().findChild<QMenuBar*>();
  const auto bar = menus->actions();
  screen.click(*menus,
               menus->actionGeometry(*std::ranges::find(bar, QString("Fixture"), &QAction::text)).center());
  auto& menu = *qobject_cast<QMenu*>(QApplication::activePopupWidget());
  screen.click(menu, menu.actionGeometry(menu.actions().at(3)).center());
  EXPECT_FALSE(named("FlpCAD1").isEnabled());
}

TEST_F(OpenDesk, WhatTheDeskShowsNeverComesBackAsAnAction) {
  int actions = 0;
  screen.face.act = [&](const auto& action) {
    ++actions;
    action();
  };
  screen.onDesk([this] {
    QueueList& player = house.xy();
    player.cmdGoForward_Click();
    player.CueDesc.setText("Storm");
    player.QListCombo.setListIndex(2);
    player.ListView2_MouseDown(5);
    player.ListView2_MouseUp(5);
    house.ab().Window.WindowState = WindowState::Minimised;
    house.desk.frame.ActiveForm().VScroll1.setValue(300);
    house.desk.frame.SSActiveToolBars1_ToolClick("ID_subsOn");
    house.desk.OpenProject.Tabs.select(2);
  });
  house.runTo(8000);
  screen.onDesk([this] { house.ab().Window.Restore(); });
  EXPECT_EQ(actions, 0);
  EXPECT_EQ(named<QComboBox>("XYQueueList/QListCombo1").currentText(), "AB");
}

// ---- Boxes and dialogs

TEST_F(OpenDesk, ABoxIsAnsweredByItsButtonsAndByEscapeWithTheMildestAnswer) {
  int tries = 0;
  const auto fails = [&](int times) {
    tries = 0;
    screen.onDesk([&] {
      house.desk.machine.errors.run([&] {
        if (++tries <= times) throw RunTimeError(Fault::Subscript, "no such row");
      });
    });
  };
  const QString text = "Application may close, Would you like to continue?";
  screen.expectBox(text, "&Retry", [] {
    const auto at = [](const char* caption) {
      for (auto* button : QApplication::activeModalWidget()->findChildren<QPushButton*>())
        if (button->text() == caption) return button->geometry();
      return QRect();
    };
    EXPECT_LT(at("&Abort").right(), at("&Retry").left());
    EXPECT_LT(at("&Retry").right(), at("&Ignore").left());
    EXPECT_GE(at("&Ignore").width(), 76);
  });
  screen.expectBox(text, "&Ignore", [] {
    EXPECT_EQ(qobject_cast<QPushButton*>(QApplication::focusWidget())->text(), "&Ignore");
  });
  fails(3);
  EXPECT_EQ(tries, 2);
  screen.expectBox(text, "", [this] { screen.key(Qt::Key_Escape); });
  fails(1);
  screen.expectBox(text, "&Abort");
  EXPECT_THROW(fails(1), RunTimeError);
}

TEST_F(OpenDesk, AboutStandsBesideTheDeskAndGoesByEnter) {
  screen.key(Qt::Key_H, Qt::AltModifier);
  screen.key(Qt::Key_A);
  EXPECT_TRUE(named("frmAbout").isVisible());
  screen.click(named("band/ID_Go"));
  EXPECT_TRUE(house.xy().State.Fading);
  named("frmAbout").activateWindow();
  screen.key(Qt::Key_Return);
  EXPECT_FALSE(house.desk.About.Window.Visible);
  EXPECT_FALSE(named("frmAbout").isVisible());
}

TEST_F(OpenDesk, TheInterfacesWindowTellsHowItStandsAndIsCalledByItsTool) {
  QWidget& window = named("VelgroveComm");
  screen.onDesk([this] {
    house.desk.windows.Comm.ProgressBar1.Value = 40;
    house.desk.windows.Comm.Window.Visible = false;
  });
  EXPECT_FALSE(window.isVisible());
  screen.key(Qt::Key_E, Qt::AltModifier);
  screen.key(Qt::Key_U);
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(QApplication::activeWindow(), &window);
  EXPECT_EQ(named<QProgressBar>("VelgroveComm/ProgressBar1").value(), 40);
  screen.key(Qt::Key_Escape);
  EXPECT_FALSE(house.desk.windows.Comm.Window.Visible);
}

TEST(OpenDialogOnScreen, ANewShowIsNamedOnItsOwnTab) {
  DeskOnScreen house;
  house.screen.whenAsked([&] {
    auto& tabs = *named("frmOpenProject/Tabs").findChild<QTabBar*>();
    house.screen.click(tabs, tabs.tabRect(1).center());
    EXPECT_EQ(QApplication::focusWidget(), &named("frmOpenProject/ProjectName"));
    house.screen.type("Hamlet");
    house.screen.key(Qt::Key_Return);
  });
  house.start();
  EXPECT_EQ(house.desk.show.ProjectName, "Hamlet");
  EXPECT_EQ(house.table("XYQueueList").model()->rowCount(), 1);
}

TEST(OpenDialogOnScreen, AChosenFolderIsWhereTheNewShowWillLie) {
  DeskOnScreen house;
  fs::create_directory(house.folder / "season");
  house.screen.whenAsked([&] {
    auto& tabs = *named("frmOpenProject/Tabs").findChild<QTabBar*>();
    house.screen.click(tabs, tabs.tabRect(1).center());
    house.screen.whenAsked([&] {
      named<QLineEdit>("BrowseForDir/fileNameEdit").setText((house.folder / "season").c_str());
      house.screen.key(Qt::Key_Return);
    });
    house.screen.click(named("frmOpenProject/cmdNewBrowse"));
    EXPECT_EQ(named<QLineEdit>("frmOpenProject/Location").text(), (house.folder / "season/").c_str());
    house.screen.key(Qt::Key_Escape);
  });
  house.start();
}

TEST(OpenDialogOnScreen, FoldersAreWalkedAndAShowOpenedByDoubleClicks) {
  DeskOnScreen house;
  const fs::path old = house.folder / "data" / "old";
  fs::create_directory(old);
  fs::copy_file(house.showFile, old / "first.kel");
  std::ofstream(old / "notes.txt") << "no show";
  house.screen.whenAsked([&] {
    auto& folders = named<QListWidget>("frmOpenProject/dirList");
    auto& files = named<QListWidget>("frmOpenProject/filList");
    const auto rowOf = [](QListWidget& list, const QString& text) {
      for (int row = 0; row < list.count(); ++row)
        if (list.item(row)->text().trimmed() == text) return list.visualItemRect(list.item(row)).center();
      ADD_FAILURE() << "no row " << text.toStdString();
      return QPoint(5, 5);
    };
    house.screen.doubleClick(*folders.viewport(), rowOf(folders, "old"));
    EXPECT_EQ(files.count(), 1);
    house.screen.doubleClick(*files.viewport(), rowOf(files, "first.kel"));
  });
  house.start();
  EXPECT_EQ(house.desk.show.ProjectFileName, old / "first.kel");
  EXPECT_TRUE(named("XYQueueList").isVisible());
}

TEST(OpenDialogOnScreen, AKeyWhileTheDeskIsBusyChoosesWhenItIsFree) {
  DeskOnScreen house;
  house.screen.whenAsked([&] {
    house.screen.whileBusy([&] {
      house.screen.key(Qt::Key_Home);
      EXPECT_EQ(named<QListWidget>("frmOpenProject/filList").selectedItems().size(), 1);
    });
    house.screen.key(Qt::Key_Return);
  });
  house.start();
  EXPECT_TRUE(named("XYQueueList").isVisible());
}

TEST(OpenDialogOnScreen, AFileThatIsNoShowIsRefusedInABoxAndTheDialogStays) {
  DeskOnScreen house;
  std::ofstream(house.folder / "data" / "broken.kel") << "junk";
  house.screen.expectBox("broken.kel is no show.");
  house.screen.whenAsked([&] {
    house.screen.key(Qt::Key_Home);
    house.screen.key(Qt::Key_Return);
    EXPECT_TRUE(named("frmOpenProject").isVisible());
    house.screen.key(Qt::Key_End);
    house.screen.key(Qt::Key_Return);
  });
  house.start();
  EXPECT_TRUE(named("XYQueueList").isVisible());
}

// ---- Rows of a cue list

std::vector<ListView::Row> rowsOf(const std::vector<unsigned>& identities) {
  std::vector<ListView::Row> rows;
  for (const unsigned identity : identities)
    rows.push_back({.Texts = {std::to_string(identity)}, .Identity = identity});
  return rows;
}

TEST(CueRows, RowsComeGoAndMoveByDifference) {
  struct Case {
    std::vector<unsigned> to;
    int inserted;
    int removed;
  };
  const std::vector<ListView::Column> columns(7);
  for (const auto& [to, inserted, removed] :
       {Case{{1, 2, 9, 3, 4, 5}, 1, 0}, Case{{1, 2, 4, 5}, 0, 1}, Case{{1, 2, 3, 4, 5}, 0, 0},
        Case{{1, 3, 4, 2, 5}, 3, 3}, Case{{}, 0, 5}, Case{{9, 1, 2, 3, 4, 5}, 1, 0}}) {
    CueRows model;
    QAbstractItemModelTester consistent(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
    model.show(columns, rowsOf({1, 2, 3, 4, 5}));
    int came = 0;
    int went = 0;
    QSignalSpy reset(&model, &CueRows::modelReset);
    QObject::connect(&model, &CueRows::rowsInserted,
                     [&](auto&, int first, int last) { came += last - first + 1; });
    QObject::connect(&model, &CueRows::rowsRemoved,
                     [&](auto&, int first, int last) { went += last - first + 1; });
    const QPersistentModelIndex last = model.index(4, 0);
    model.show(columns, rowsOf(to));
    EXPECT_EQ(reset.count(), 0);
    EXPECT_EQ(came, inserted);
    EXPECT_EQ(went, removed);
    for (int row = 0; row < model.rowCount(); ++row)
      EXPECT_EQ(model.data(model.index(row, 0), Qt::DisplayRole).toUInt(), to[static_cast<std::size_t>(row)]);
    EXPECT_EQ(last.row(), model.rowCount() - 1);
  }
}

TEST_F(OpenDesk, AListKeepsItsPlaceOnTheScreenWhateverHappensToItsRows) {
  CueTable& table = house.table("XYQueueList");
  ListView& list = house.xy().ListView2;
  table.verticalScrollBar()->setValue(6);
  const auto keeps = [&](const std::function<void()>& change) {
    screen.onDesk(change);
    EXPECT_EQ(table.verticalScrollBar()->value(), 6);
    EXPECT_EQ(table.model()->rowCount(), list.count());
  };
  keeps([&] { list.add(list.count() + 1, "99.00"); });
  keeps([&] { list.setText(8, 4, "another text"); });
  keeps([&] { list.remove(list.count()); });
  keeps([&] { list.sort([](const auto& a, const auto& b) { return QueueList::CompareValues(b, a); }); });
  keeps([&] {
    const auto rows = list.rows();
    list.clear();
    for (const auto& row : rows) list.add(list.count() + 1, row.Texts[0]);
  });
}

}  // namespace
}  // namespace velgrove::test
