#include "controls/widgets.h"

#include <gtest/gtest.h>

#include "controls/list_view.h"

namespace velgrove {
namespace {

TEST(Widgets, ASetPropertyRaisesChangeOnlyWhenItReallyChanges) {
  int changes = 0;
  TextBox text("a");
  text.Change = [&] { ++changes; };
  text.setText("a");
  text.setText("b");
  EXPECT_EQ(changes, 1);

  Slider slider(0, 100);
  slider.Change = [&] { ++changes; };
  slider.Scroll = [&] { FAIL() << "no hand"; };
  slider.setValue(150);
  slider.setValue(100);
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(slider.value(), 100);
}

TEST(Widgets, AFaderDraggedByHandScrollsThenChanges) {
  std::string log;
  Slider slider(0, 255);
  slider.Scroll = [&] { log += "scroll "; };
  slider.Change = [&] { log += "change "; };
  slider.drag(300);
  slider.drag(255);
  EXPECT_EQ(log, "scroll change ");
}

TEST(Widgets, ASpinnerReadsItsBuddyStepsWithinItsRangeAndRaisesChange) {
  TextBox text("98");
  UpDown spinner(0, 100, 0);
  spinner.Buddy = &text;
  int changes = 0;
  spinner.Change = [&] { ++changes; };
  spinner.up();
  spinner.up();
  spinner.up();
  EXPECT_EQ(text.text(), "100");
  EXPECT_EQ(changes, 2);
  text.setText("x");
  EXPECT_THROW(spinner.down(), RunTimeError);
}

TEST(Widgets, OnlyTheHandClicksAComboAndOnlyAnEnabledButton) {
  ComboBox combo;
  int clicks = 0;
  combo.Click = [&] { ++clicks; };
  combo.add("None");
  combo.add("AB");
  combo.setListIndex(0);
  EXPECT_EQ(clicks, 0);
  combo.choose(1);
  EXPECT_EQ(combo.text(), "AB");
  EXPECT_THROW(combo.setListIndex(2), RunTimeError);
  Button button;
  button.Click = [&] { ++clicks; };
  button.Enabled = false;
  button.click();
  EXPECT_EQ(clicks, 1);
}

TEST(ListView, KeepsRowsInOrderAndFindsThemByTheirWholeText) {
  ListView list;
  list.add(1, "2.00");
  list.add(1, "1.00");
  list.add(3, "abc");
  list.add(4, "ABC");
  EXPECT_EQ(list.findItem("Abc"), 3) << "the first one, without regard to case";
  EXPECT_EQ(list.findItem("2"), 0);
  EXPECT_THROW(list.add(6, "x"), RunTimeError);
  EXPECT_THROW((void)list.row(0), RunTimeError);
  list.select(2);
  list.add(1, "0.00");
  EXPECT_EQ(list.selected(), 3) << "the row, not the place";
  list.remove(1);
  EXPECT_EQ(list.selected(), 2);
  list.remove(2);
  EXPECT_EQ(list.selected(), 0);
  EXPECT_EQ(list.text(2), "abc");
}

}  // namespace
}  // namespace velgrove
