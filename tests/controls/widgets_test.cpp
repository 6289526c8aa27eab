#include "controls/widgets.h"

#include <map>
#include <set>

#include <gtest/gtest.h>

#include "controls/list_view.h"
#include "controls/scroll_controller.h"

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
  EXPECT_EQ(changes, 3) << "also at the end: what was typed counts";
  text.setText("x");
  spinner.down();
  EXPECT_EQ(text.text(), "99") << "text that is no number isn't stepped: the spinner goes on by itself";
}

TEST(Widgets, OnlyTheHandClicksAComboAndOnlyAnEnabledButton) {
  ComboBox combo;
  int clicks = 0;
  combo.Click = [&] { ++clicks; };
  combo.add("None");
  combo.add("AB");
  const unsigned revision = combo.revision();
  combo.setListIndex(0);
  EXPECT_EQ(clicks, 0);
  combo.choose(1);
  EXPECT_EQ(combo.revision(), revision) << "the items are the same";
  EXPECT_EQ(combo.text(), "AB");
  EXPECT_THROW(combo.setListIndex(2), RunTimeError);
  combo.setText("Select List");
  EXPECT_EQ(combo.listIndex(), -1);
  EXPECT_EQ(combo.text(), "Select List");
  combo.choose(0);
  combo.setListIndex(-1);
  EXPECT_EQ(combo.text(), "") << "a choice ended the text";
  Button button;
  button.Click = [&] { ++clicks; };
  button.Enabled = false;
  button.click();
  EXPECT_EQ(clicks, 2);
}

int byText(const ListView::Row& a, const ListView::Row& b) {
  return a.Texts[0].compare(b.Texts[0]);
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

TEST(ListView, MovesItsRevisionWhenItShowsSomethingNewAndOnlyThen) {
  struct Change {
    const char* name;
    std::function<void(ListView&)> act;
    bool shows;
  };
  const Change changes[] = {
      {"a row", [](ListView& list) { list.add(3, "3"); }, true},
      {"a new text", [](ListView& list) { list.setText(1, 4, "x"); }, true},
      {"the same text", [](ListView& list) { list.setText(1, 4, "x"); }, false},
      {"a new icon", [](ListView& list) { list.setIcon(2, 1); }, true},
      {"the same icon", [](ListView& list) { list.setIcon(2, 1); }, false},
      {"a selection", [](ListView& list) { list.select(2); }, true},
      {"the same selection", [](ListView& list) { list.select(2); }, false},
      {"a row asked into view", [](ListView& list) { list.ensureVisible(2); }, true},
      {"the same row again", [](ListView& list) { list.ensureVisible(2); }, true},
      {"a sort of sorted rows", [](ListView& list) { list.sort(byText); }, false},
      {"a sort", [](ListView& list) { list.sort([](auto& a, auto& b) { return byText(b, a); }); }, true},
      {"a row that goes", [](ListView& list) { list.remove(1); }, true},
      {"a clear", [](ListView& list) { list.clear(); }, true},
      {"a clear of nothing", [](ListView& list) { list.clear(); }, false},
  };
  ListView list;
  list.add(1, "1");
  list.add(2, "2");
  for (const Change& change : changes) {
    const unsigned before = list.revision();
    change.act(list);
    EXPECT_EQ(list.revision() != before, change.shows) << change.name;
  }
  EXPECT_THROW(list.setText(1, 0, "x"), RunTimeError);
  list.add(1, "1");
  EXPECT_THROW(list.setText(1, ListView::MaxColumns, "x"), RunTimeError);
}

TEST(ListView, RowsKeepTheirIdentityWhereverTheyMove) {
  const auto identities = [](const ListView& list) {
    std::map<std::string, unsigned> found;
    for (const auto& row : list.rows()) found.emplace(row.Texts[0], row.Identity);
    return found;
  };
  ListView list;
  for (const char* text : {"3", "1", "2"}) list.add(1, text);
  const auto before = identities(list);
  EXPECT_EQ(std::set<unsigned>({before.at("1"), before.at("2"), before.at("3")}).size(), 3U);
  list.sort(byText);
  EXPECT_EQ(identities(list), before);
  list.clear();
  for (const char* text : {"1", "3", "2"}) list.add(1, text);
  EXPECT_EQ(identities(list), before) << "filled again";
  list.add(1, "2");
  EXPECT_NE(list.row(1).Identity, before.at("2")) << "a second row of that text is another row";
  list.remove(1);
  list.add(1, "4");
  EXPECT_EQ(identities(list).size(), 4U);
  for (const auto& [text, identity] : before) EXPECT_NE(list.row(1).Identity, identity);
}

TEST(ScrollController, ScrollsAnItemIntoViewWithRoomBehindIt) {
  struct Case {
    ScrollItem item;
    double left, top;
  };
  for (const Case& c : {Case{{100, 100, 200, 200}, 50, 70},
                        {{-30, -20, 200, 200}, 20, 50},
                        {{900, 100, 200, 200}, 425, 70},
                        {{100, 3000, 200, 2500}, 50, 3070}}) {
    ScrollContainer container{.Width = 1000, .Height = 2000, .ScrollLeft = 50, .ScrollTop = 70};
    ScrollController controller{.Container = &container};
    controller.ScrollToView(c.item);
    EXPECT_EQ(std::pair(container.ScrollLeft, container.ScrollTop), std::pair(c.left, c.top));
    ScrollController().ScrollToView(c.item);
  }
}

}  // namespace
}  // namespace velgrove
