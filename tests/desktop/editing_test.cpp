// An operator edits cue lists with real keys, mouse and wheel, and asks for loops.

#include <QMimeData>

#include <gtest/gtest.h>

#include "desktop/theme.h"
#include "support/cue_rows.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

enum class Arrow { Up, Down };

struct Editing : testing::Test {
  static DeskOnScreen& opened(DeskOnScreen& house) {
    house.open();
    return house;
  }
  static QWidget& part(const QString& name) { return named("XYQueueList/" + name); }
  static QString textOf(const QString& field) { return named<QLineEdit>("XYQueueList/" + field).text(); }

  void clickRow(int row) { screen.click(*table.viewport(), house.inRow(table, row)); }
  void write(const QString& field, const QString& text) {
    screen.click(part(field), {8, 10});
    screen.key(Qt::Key_A, Qt::ControlModifier);
    screen.type(text);
  }
  void press(const QString& spinner, Arrow arrow) {
    QWidget& arrows = part(spinner);
    screen.click(arrows, {arrows.width() / 2, arrow == Arrow::Up ? 3 : arrows.height() - 4});
  }
  /// Whether an icon of a colour stands in a row's gutter, left of S and N.
  bool iconIn(int row, const char* colour) {
    constexpr int IconsEnd = 21;
    const QImage picture = table.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRect cell = table.visualRect(table.model()->index(row - 1, 0));
    for (int y = cell.top(); y < cell.bottom(); ++y)
      for (int x = 4; x < IconsEnd; ++x)
        if (picture.pixel(x, y) == theme::colour(colour).rgb()) return true;
    return false;
  }

  DeskOnScreen house;
  Screen& screen = house.screen;
  QueueList& xy = opened(house).xy();
  CueTable& table = house.table("XYQueueList");
};

TEST_F(Editing, TwoCuesAreRecordedOneIsNamedFoundByItsNumberAndTimedAnew) {
  const int before = xy.ListView2.count();
  clickRow(2);
  write("CueDesc1", "Bows");
  screen.click(part("cmdRecord"));
  screen.key(Qt::Key_R, Qt::AltModifier);
  ASSERT_EQ(table.model()->rowCount(), before + 2);
  EXPECT_EQ(cells(xy, before + 1), "3 0 4 Bows None None");
  EXPECT_EQ(cells(xy, before + 2), "3 0 4 Cue_" + xy.ListView2.text(before + 2) + " None None");

  const std::string bows = xy.ListView2.text(before + 1);
  write("CueNum1", QString::fromStdString(bows));
  EXPECT_EQ(xy.State.PointerCue, 2);
  screen.key(Qt::Key_Return);
  EXPECT_EQ(xy.State.PointerCue, before + 1);
  EXPECT_TRUE(iconIn(before + 1, "text"));

  write("CueDesc1", "Bows again");
  press("UpDownCueDown", Arrow::Up);  // takes Up along
  press("UpDownCueDown", Arrow::Up);
  screen.click(part("CueDelay1"), {8, 10});
  screen.wheel(part("CueDelay1"), 120);
  screen.click(part("CueUp1"), {8, 10});
  screen.key(Qt::Key_Down);
  EXPECT_EQ((QStringList{textOf("CueDown1"), textOf("CueDelay1"), textOf("CueUp1")}.join(" ")), "5 1 5");
  screen.type("12");  // the stepped number is marked
  screen.click(part("cmdUpdate"));
  EXPECT_EQ(cells(xy, before + 1), "5 1 12 Bows again None None");
  const clsQueueEntry& entry = cue(xy, toCueNumber(bows));
  EXPECT_EQ((std::vector<int>{entry.Down, entry.Delay, entry.Up}), (std::vector{5, 1, 12}));
  EXPECT_EQ(entry.EntryDesc, "Bows again");
}

TEST_F(Editing, TheArrowsOfTheNumberWalkThroughTheCues) {
  clickRow(3);
  press("UpDownCueNum", Arrow::Down);
  EXPECT_EQ(xy.State.PointerCue, 4);
  screen.key(Qt::Key_Down);
  EXPECT_EQ(xy.State.PointerCue, 5);
  screen.wheel(part("CueNum1"), 120);
  EXPECT_EQ(xy.State.PointerCue, 4);
  EXPECT_EQ(textOf("CueNum1").toStdString(), xy.ListView2.text(4));
}

TEST_F(Editing, ACueIsInsertedAndDeletedAgainAndTheListTakesTheFocus) {
  const auto enabled = [] {
    QString all;
    for (const char* button :
         {"cmdUpdate", "cmdDeleteCue", "cmdCopy", "cmdPaste", "cmdMakeStageCue", "cmdMakeNextCue"})
      all += part(button).isEnabled() ? "1" : "0";
    return all;
  };
  const std::string before = rows(xy);
  clickRow(2);
  screen.click(part("cmdInsertCue"));
  EXPECT_EQ(xy.ListView2.text(3), "1.10");
  EXPECT_EQ(cells(xy, 3), "0 0 0 Queue Description None None");
  EXPECT_EQ(named<QLabel>("XYQueueList/lblStageNum").text(), "1.10");

  screen.click(part("cmdDeleteCue"));
  EXPECT_EQ(rows(xy), before);
  EXPECT_EQ(cues(xy), before);
  EXPECT_EQ(enabled(), "000000");
  EXPECT_EQ(QApplication::focusWidget(), &table);
  screen.key(Qt::Key_U, Qt::AltModifier);
  screen.click(part("cmdDeleteCue"));
  EXPECT_EQ(rows(xy), before);
  clickRow(4);
  EXPECT_EQ(enabled(), "111111");
}

TEST_F(Editing, LettersForATimeAreAnErrorAndNothingIsLost) {
  clickRow(2);
  write("CueDesc1", "Preset");
  write("CueDown1", "soon");
  const QString box = "Application may close, Would you like to continue?";
  screen.expectBox(box, "&Ignore");
  screen.click(part("cmdUpdate"));
  EXPECT_EQ(cue(xy, 1).Down, 3);
  EXPECT_EQ(textOf("CueDesc1"), "Preset");
  screen.expectBox(box, "&Ignore");
  screen.click(part("CueDown1"), {8, 10});
  screen.key(Qt::Key_Up);
  EXPECT_EQ(textOf("CueDown1"), "soon");

  write("CueDown1", "7");
  screen.click(part("cmdUpdate"));
  EXPECT_EQ(cells(xy, 2), "7 0 4 Preset None None");
  EXPECT_EQ(cue(xy, 1).Down, 7);
  EXPECT_EQ(cue(xy, 1).EntryDesc, "Preset");
}

/// Both windows have the same letters.
TEST_F(Editing, TheMnemonicsWorkInTheListWithTheFocusAlone) {
  QueueList& ab = house.ab();
  const auto counts = [&] { return std::pair(xy.ListView2.count(), ab.ListView2.count()); };
  const auto before = counts();
  screen.click(named("ABQueueList/CueDesc"));
  screen.type("!");
  screen.key(Qt::Key_R, Qt::AltModifier);
  EXPECT_EQ(counts(), std::pair(before.first, before.second + 1));
  clickRow(2);
  write("CueUp1", "9");
  screen.key(Qt::Key_U, Qt::AltModifier);
  EXPECT_EQ(cue(xy, 1).Up, 9);
  screen.click(named("FlpCAD1"));
  screen.key(Qt::Key_R, Qt::AltModifier);
  EXPECT_EQ(counts(), std::pair(before.first, before.second + 1));
}

// ---- Loops

struct Looping : Editing {
  void ask(std::function<void()> step) {
    screen.whenAsked(std::move(step));
    screen.click(part("cmdLoop"));
  }
  static QString loopText(const char* field) { return named<QLineEdit>(QString("frmLoop/") + field).text(); }
};

TEST_F(Looping, ALoopIsArmedByKeysAndMarksItsRows) {
  ask([&] {
    EXPECT_EQ(QApplication::activeModalWidget(), &named("frmLoop"));
    EXPECT_EQ(QApplication::focusWidget(), &named("frmLoop/txtStartCue"));
    EXPECT_EQ(loopText("txtStartCue"), "1.00");
    screen.type("2");
    screen.key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &named("frmLoop/txtLastCue"));
    screen.key(Qt::Key_Up);
    screen.key(Qt::Key_Up);
    EXPECT_EQ(loopText("txtLastCue"), "4.00");
    screen.key(Qt::Key_Tab);
    screen.wheel(named("frmLoop/txtLoopCount"), 240);
    screen.key(Qt::Key_Return);
  });
  EXPECT_FALSE(named("frmLoop").isVisible());
  EXPECT_EQ(icons(xy).substr(0, 6), "102220");
  EXPECT_EQ(marks(xy), "3 4 1");
  EXPECT_EQ(xy.State.LoopCount, 3);
  for (int row = 1; row <= 6; ++row) EXPECT_EQ(iconIn(row, "keyYellow"), row == 5) << row;
  EXPECT_TRUE(iconIn(3, "stageInk"));

  ask([&] {
    EXPECT_EQ(loopText("txtLastCue"), "4.00");
    EXPECT_EQ(named<QLineEdit>("frmLoop/txtStartCue").selectedText(), "2.00");
    screen.key(Qt::Key_Escape);
  });
  EXPECT_EQ(xy.State.LoopCount, 3);
}

TEST_F(Looping, OnlyOkStoresAndTextThatIsNoNumberKeepsTheDialogOpen) {
  screen.expectBox("Application may close, Would you like to continue?", "&Ignore");
  ask([&] {
    screen.type("first");
    screen.click(named("frmLoop/cmdCancel"));
    screen.key(Qt::Key_C, Qt::AltModifier);  // both have this letter
    screen.click(named("frmLoop/cmdClear"));
    EXPECT_EQ(loopText("txtStartCue"), "first");
    screen.key(Qt::Key_O, Qt::AltModifier);
    EXPECT_TRUE(named("frmLoop").isVisible());
    named("frmLoop").close();
  });
  EXPECT_FALSE(named("frmLoop").isVisible());
  EXPECT_EQ(xy.State.LoopCount, 0);
}

TEST_F(Looping, TheDialogLeavesTheListsFreeWhereThereIsRoom) {
  QWidget& dialog = named("frmLoop");
  const auto coversAList = [&] {
    for (const char* list : {"XYQueueList", "ABQueueList"}) {
      const QWidget& window = named(list);
      if (dialog.geometry().intersects({window.mapToGlobal(QPoint(0, 0)), window.size()})) return true;
    }
    return false;
  };
  ask([&] {
    EXPECT_FALSE(coversAList());
    dialog.move(table.mapToGlobal(QPoint(30, 30)));
    EXPECT_TRUE(coversAList());
    screen.click(dialog, {4, 4});
    EXPECT_FALSE(coversAList());
    screen.key(Qt::Key_Escape);
  });
  // With room below its list it opens there.
  auto& child = *qobject_cast<QWidget*>(named("XYQueueList").parentWidget());

  child.setGeometry(40, 10, 640, 360);
  screen.settle();
  ask([&] {
    const QPoint corner = child.mapToGlobal(QPoint(0, child.height()));
    EXPECT_EQ(dialog.pos(), corner + QPoint(-7, 1));
    screen.key(Qt::Key_Escape);
  });
}

TEST_F(Looping, WhateverIsDroppedOnTheDialogIsToldInABox) {
  screen.expectBox("OLE DRAGDROP");
  ask([&] {
    QWidget& dialog = named("frmLoop");
    QMimeData cueSheet;
    cueSheet.setText("cue sheet");
    QWidget& field = named("frmLoop/txtLastCue");
    const QPoint place = field.mapTo(&dialog, field.rect().center());
    QDragEnterEvent enter(place, Qt::MoveAction | Qt::CopyAction, &cueSheet, Qt::LeftButton,
                          Qt::ShiftModifier);
    QApplication::sendEvent(dialog.windowHandle(), &enter);
    QDropEvent drop(place, Qt::MoveAction | Qt::CopyAction, &cueSheet, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(dialog.windowHandle(), &drop);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
    screen.settle();
    screen.key(Qt::Key_Escape);
  });
}

TEST_F(Editing, TheWarningBeforeAPasteGoesByItsButtonsAndByEscape) {
  frmConfirmPaste& form = house.desk.windows.ConfirmPaste;
  const auto shown = [] { return named("frmConfirmPaste").isVisible(); };
  for (const char* button : {"Yes", "No"}) {
    screen.onDesk([&] { form.Show(); });
    EXPECT_TRUE(shown());
    screen.click(named(QString("frmConfirmPaste/") + button));
    EXPECT_FALSE(shown()) << button;
  }
  screen.onDesk([&] { form.Show(); });
  named("frmConfirmPaste").activateWindow();
  screen.key(Qt::Key_Escape);
  EXPECT_FALSE(shown());
  EXPECT_FALSE(form.Window.Loaded);
}

}  // namespace
}  // namespace velgrove::test
