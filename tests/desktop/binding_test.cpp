// The ties between single widgets and the desk's values: what the desk changes is shown, what the hand does
// reaches the desk, and neither comes back as the other.

#include "desktop/binding.h"

#include <QPushButton>
#include <QVBoxLayout>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/fader.h"
#include "playback/queue_list.h"
#include "support/screen.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;

/// A window with one widget that is tied to a control.
template <class Widget, class Control>
struct Tied {
  explicit Tied(Control made, const char* role = "") : control(std::make_unique<Control>(std::move(made))) {
    screen.face.act = [this](const auto& action) {
      ++actions;
      action();
    };
    widget.setProperty("role", role);
    auto* column = new QVBoxLayout(&window);
    column->addWidget(&widget);
    column->addWidget(&other);
    using Base = std::conditional_t<std::is_same_v<Widget, QPushButton>, QAbstractButton, Widget>;
    ties.bind(static_cast<Base*>(&widget), Bindings::Find<Control>([this] { return control.get(); }));
    window.show();
    window.activateWindow();
    screen.settle();
    screen.face.pull();
  }

  /// The desk changes something; that is no action of the operator.
  void desk(const std::function<void(Control&)>& change) {
    const int before = actions;
    screen.onDesk([&] { change(*control); });
    EXPECT_EQ(actions, before) << "the desk's own value came back as the operator's";
  }

  Screen screen;
  std::unique_ptr<Control> control;
  int actions = 0;  ///< how many reached the desk
  QWidget window;
  Widget widget;
  QLineEdit other;
  Bindings ties{screen.face};
};

TEST(Binding, ALabelShowsItsCaptionAndNothingWhenItsWindowHasGone) {
  Tied<QLabel, Label> label({.Caption = "12.50"});
  EXPECT_EQ(label.widget.text(), "12.50");
  const int narrow = label.widget.sizeHint().width();
  label.desk([](Label& control) { control.Caption = "<i>Storm</i>"; });
  EXPECT_EQ(label.widget.text(), "<i>Storm</i>");
  EXPECT_GT(label.widget.sizeHint().width(), 2 * narrow) << "taken for markup";
  label.screen.onDesk([&] { label.control = nullptr; });
  EXPECT_EQ(label.widget.text(), "");
}

TEST(Binding, AClickAndTheMnemonicReachTheButtonOfTheDesk) {
  int clicks = 0;
  Tied<QPushButton, Button> button(
      {.Caption = "&Go", .ToolTip = "Run Cue", .Click = [&clicks] { ++clicks; }});
  EXPECT_EQ(button.widget.text(), "&Go");
  EXPECT_EQ(button.widget.toolTip(), "Run Cue");
  button.screen.click(button.widget);
  button.screen.key(Qt::Key_G, Qt::AltModifier);
  EXPECT_EQ(clicks, 2);
}

TEST(Binding, AMnemonicThatIsHeldDownClicksOnce) {
  int clicks = 0;
  Tied<QPushButton, Button> button({.Caption = "&Go", .Click = [&clicks] { ++clicks; }});
  for (const bool again : {false, true, true})
    QTest::simulateEvent(button.window.windowHandle(), true, Qt::Key_G, Qt::AltModifier, "g", again);
  EXPECT_EQ(clicks, 1);
}

TEST(Binding, ADisabledButtonAndOneWithoutADeskTakeNoClick) {
  int clicks = 0;
  Tied<QPushButton, Button> button({.Caption = "Stop", .Click = [&clicks] { ++clicks; }});
  button.desk([](Button& control) { control.Enabled = false; });
  EXPECT_FALSE(button.widget.isEnabled());
  button.screen.click(button.widget);
  button.desk([](Button& control) { control.Enabled = true; });
  button.screen.onDesk([&] { button.control = nullptr; });
  EXPECT_FALSE(button.widget.isEnabled());
  button.screen.click(button.widget);
  EXPECT_EQ(clicks, 0);
}

TEST(Binding, TheColoursOfAButtonBecomeStatesOfItsLook) {
  struct Case {
    const char* role;
    Colour colour;
    const char* state;
    const char* key;
  };
  for (const Case& each :
       {Case{"go", QueueList::BrightGreen, "ready", ""}, Case{"go", QueueList::Grey, "quiet", ""},
        Case{"stop", QueueList::BrightGreen, "ready", ""}, Case{"mode", QueueList::Green, "on", "magenta"},
        Case{"mode", 0, "off", "magenta"}, Case{"mode", QueueList::Magenta, "off", "magenta"},
        Case{"key", QueueList::Red, "", "red"}, Case{"key", QueueList::Yellow, "", "yellow"}}) {
    Tied<QPushButton, Button> button({.Caption = "x"}, each.role);
    button.desk([&](Button& control) { control.BackColour = each.colour; });
    EXPECT_EQ(button.widget.property("state").toString(), each.state) << each.role << each.colour;
    EXPECT_EQ(button.widget.property("key").toString(), each.key) << each.role << each.colour;
  }
}

TEST(Binding, EachTypedLetterReachesTheFieldOfTheDesk) {
  Tied<Field, TextBox> field(TextBox("1"));
  std::vector<std::string> changes;
  field.control->Change = [&] { changes.push_back(field.control->text()); };
  field.widget.setFocus();
  field.screen.key(Qt::Key_End);
  field.screen.type("2.");
  EXPECT_THAT(changes, ElementsAre("12", "12."));
  EXPECT_EQ(field.widget.text(), "12.");
}

TEST(Binding, TheDesksTextComesWithCaretAndSelectionKept) {
  Tied<Field, TextBox> field(TextBox("Storm"));
  field.widget.setSelection(1, 3);
  field.desk([](TextBox& control) { control.setText("Shore"); });
  EXPECT_EQ(field.widget.text(), "Shore");
  EXPECT_EQ(field.widget.selectedText(), "hor");
  field.widget.setCursorPosition(2);
  field.desk([](TextBox& control) { control.setText("Sheep-shearing"); });
  EXPECT_EQ(field.widget.cursorPosition(), 2);
  field.widget.selectAll();
  field.desk([](TextBox& control) { control.setText("Dance"); });
  EXPECT_EQ(field.widget.selectedText(), "Dance");
}

TEST(Binding, ATextThatIsThereAlreadyIsntWrittenAgain) {
  Tied<Field, TextBox> field(TextBox("1"));
  field.widget.setFocus();
  field.screen.key(Qt::Key_End);
  field.screen.type("2");
  for (const bool enabled : {false, true})
    field.desk([enabled](TextBox& control) { control.Enabled = enabled; });
  EXPECT_TRUE(field.widget.isUndoAvailable());  // writing would have ended it
}

TEST(Binding, WhereTheDeskRefusesATypedTextItsOwnIsShown) {
  Tied<Field, TextBox> field(TextBox("5"));
  field.control->Change = [&] {
    if (field.control->text() != "5") field.control->setText("5");
  };
  field.widget.setFocus();
  field.screen.key(Qt::Key_End);
  field.screen.type("x");
  EXPECT_EQ(field.control->text(), "5");
  EXPECT_EQ(field.widget.text(), "5");
}

TEST(Binding, NothingIsWrittenIntoAFieldWhileAnInputMethodComposes) {
  Tied<Field, TextBox> field(TextBox("a"));
  field.widget.setFocus();
  field.screen.key(Qt::Key_End);
  QInputMethodEvent composing("ni", {});
  QApplication::sendEvent(&field.widget, &composing);
  field.desk([](TextBox& control) { control.setText("b"); });
  EXPECT_EQ(field.widget.text(), "a");
  QInputMethodEvent given("", {});
  QApplication::sendEvent(&field.widget, &given);
  field.screen.onDesk([] {});
  EXPECT_EQ(field.widget.text(), "b");

  QApplication::sendEvent(&field.widget, &composing);
  QInputMethodEvent done;
  done.setCommitString("x");
  QApplication::sendEvent(&field.widget, &done);
  field.screen.settle();
  EXPECT_EQ(field.control->text(), "bx");
  EXPECT_EQ(field.widget.text(), "bx");
}

TEST(Binding, AnItemChosenByHandRaisesClickOnce) {
  Tied<QComboBox, ComboBox> combo{ComboBox()};
  int clicks = 0;
  combo.control->Click = [&] { ++clicks; };
  combo.desk([](ComboBox& control) {
    for (const char* item : {"None", "XY", "EF"}) control.add(item);
    control.setListIndex(0);
  });
  EXPECT_EQ(combo.widget.currentText(), "None");
  combo.widget.setFocus();
  combo.screen.key(Qt::Key_Down);
  EXPECT_EQ(combo.control->text(), "XY");
  EXPECT_EQ(clicks, 1);

  combo.control->Click = [&] { combo.control->setListIndex(0); };
  combo.screen.key(Qt::Key_Down);
  EXPECT_EQ(combo.widget.currentText(), "None");  // the desk wouldn't have it
}

TEST(Binding, ItemsOfAComboComeAndGoWithoutTouchingTheOthers) {
  Tied<QComboBox, ComboBox> combo{ComboBox()};
  combo.desk([](ComboBox& control) {
    for (const char* item : {"None", "1.00", "3.00"}) control.add(item);
  });
  const QPersistentModelIndex third(combo.widget.model()->index(2, 0));
  combo.desk([](ComboBox& control) {
    control.clear();
    for (const char* item : {"None", "1.00", "2.00", "3.00"}) control.add(item);
    control.setListIndex(3);
  });
  EXPECT_EQ(third.row(), 3);
  EXPECT_EQ(combo.widget.currentText(), "3.00");
  combo.desk([](ComboBox& control) {
    control.clear();
    control.add("None");
  });
  EXPECT_EQ(combo.widget.count(), 1);
  EXPECT_EQ(combo.widget.currentIndex(), -1);
}

TEST(Binding, ATickReachesTheDeskAndShowsWhatTheDeskMakesOfIt) {
  Tied<QCheckBox, CheckBox> box({.Caption = "No Manual  Input"});
  EXPECT_EQ(box.widget.text(), "No Manual  Input");
  const QPoint middle(8, box.widget.height() / 2);
  box.screen.click(box.widget, middle);
  EXPECT_EQ(box.control->Value, 1);
  box.desk([](CheckBox& control) { control.Value = 0; });
  EXPECT_FALSE(box.widget.isChecked());

  box.control->Click = [&] { box.control->Value = 0; };
  box.screen.click(box.widget, middle);
  EXPECT_FALSE(box.widget.isChecked()) << "the desk wouldn't have it";

  box.control->Click = {};
  box.screen.whileBusy([&] {
    hand::key(Qt::Key_Space);
    box.screen.face.pull();
    EXPECT_TRUE(box.widget.isChecked()) << "taken back before the desk has heard of it";
  });
  EXPECT_EQ(box.control->Value, 1);
}

TEST(Binding, ADragThatABusyDeskCantTakeReachesItOnceWhereItEnded) {
  Tied<Fader, Slider> fader(Slider(0, 255));
  std::vector<int> heard;
  fader.control->Scroll = [&] { heard.push_back(fader.control->value()); };
  const auto at = [&](int value) { return fader.widget.placeOf(value).toPoint(); };
  fader.screen.press(fader.widget, at(40));
  heard.clear();
  fader.screen.whileBusy([&] {
    for (const int value : {80, 120, 160}) hand::mouse(QTest::MouseMove, fader.widget, at(value));
    hand::mouse(QTest::MouseRelease, fader.widget, at(160));
    const int held = fader.widget.value();
    fader.screen.face.pull();
    EXPECT_EQ(fader.widget.value(), held);
    hand::key(Qt::Key_Up);
  });
  ASSERT_EQ(heard.size(), 2U);
  EXPECT_NEAR(heard[0], 160, 2);
  EXPECT_EQ(heard[1], heard[0] + 1);
  EXPECT_EQ(fader.widget.value(), heard[1]);
}

}  // namespace
}  // namespace velgrove::test
