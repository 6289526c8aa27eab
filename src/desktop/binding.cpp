#include "desktop/binding.h"

#include <QShortcutEvent>
#include <QSignalBlocker>
#include <algorithm>

#include "desktop/lost_release.h"
#include "desktop/newest.h"
#include "desktop/spoken.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

QString text(const std::string& desk) {
  return QString::fromStdString(desk);
}

/// Writes a text and leaves caret and selection where they were. What comes into a field that the hand has
/// just emptied is marked, so that the next key takes its place.
void write(QLineEdit& field, const QString& text) {
  if (field.text() == text) return;
  const QSignalBlocker quiet(field);
  const int caret = field.cursorPosition();
  const int start = field.selectionStart();
  const int length = field.selectionLength();
  const bool all = length == field.text().size() && (length > 0 || field.hasFocus());
  field.setText(text);
  if (all)
    field.selectAll();
  else if (start >= 0)
    field.setSelection(start, length);
  else
    field.setCursorPosition(caret);
}

struct ButtonLook {
  std::string caption;
  std::string tip;
  bool enabled = false;
  Colour back = 0;
  bool operator==(const ButtonLook&) const = default;
};

/// Go and Stop stand ready in bright green; Live and Blind are on in the green of the next cue.
const char* stateOf(const QString& role, Colour back) {
  constexpr Colour Ready = 0x00FF00;
  constexpr Colour On = 0x00C000;
  if (role == "go" || role == "stop") return back == Ready ? "ready" : "quiet";
  if (role == "mode") return back == On ? "on" : "off";
  return "";
}

/// A control without a tip leaves that of its widget.
void showTip(QWidget& widget, const std::string& tip) {
  if (!tip.empty()) widget.setToolTip(text(tip));
}

/// A button that goes dark under the focus gives it back to where its window begins: the next button in the
/// way of the focus may be one that nobody meant to press.
void leave(const QAbstractButton& button) {
  if (!button.hasFocus()) return;
  const QWidget* above = button.parentWidget();
  while (above != nullptr && above->focusProxy() == nullptr) above = above->parentWidget();
  if (above != nullptr) above->focusProxy()->setFocus();
}

void show(QAbstractButton& button, const ButtonLook& look) {
  if (!look.caption.empty()) button.setText(text(look.caption));
  showTip(button, look.tip);
  if (!look.enabled) leave(button);
  button.setEnabled(look.enabled);
  const QString role = button.property("role").toString();
  if (role == "key") theme::setState(&button, "key", theme::keyOf(look.back));
  if (role == "mode") theme::setState(&button, "key", "magenta");
  theme::setState(&button, "state", stateOf(role, look.back));
  speakState(button, stateOf(role, look.back));
}

/// A mnemonic clicks at once, where the toolkit first shows the button down for a tenth of a second: a Go may
/// not wait for that. A key that is held down clicks once: Go after Go would run through the show.
class Mnemonic : public QObject {
 public:
  explicit Mnemonic(QAbstractButton* button) : QObject(button) { button->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Shortcut) return false;
    const auto& shortcut = *static_cast<QShortcutEvent*>(event);
    if (shortcut.isAmbiguous()) return false;
    auto& button = *static_cast<QAbstractButton*>(watched);
    button.setShortcutAutoRepeat(shortcut.shortcutId(), false);
    button.click();
    return true;
  }
};

/// The wheel turns a combo with the focus alone: a hand that passes over it changes no link.
class WheelWithFocus : public QObject {
 public:
  explicit WheelWithFocus(QComboBox* combo) : QObject(combo) { combo->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(watched)->hasFocus()) return false;
    event->ignore();
    return true;
  }
};

struct FieldLook {
  std::string text;
  std::string tip;
  bool enabled = false;
  unsigned focuses = 0;
  unsigned selections = 0;
  bool operator==(const FieldLook&) const = default;
};

struct SliderLook {
  int min = 0;
  int max = 0;
  int value = 0;
  std::string tip;
  bool enabled = false;
  bool operator==(const SliderLook&) const = default;
};

/// What a key means to a slider: one of its ends, or by how much from where the control stands.
std::function<void(Slider&)> moveOf(const QAbstractSlider& slider, int action) {
  const int to = slider.sliderPosition();
  switch (action) {
    case QAbstractSlider::SliderToMinimum:
    case QAbstractSlider::SliderToMaximum:
      return [to](Slider& control) { control.drag(to); };
    default:
      return [by = to - slider.value()](Slider& control) { control.drag(control.value() + by); };
  }
}

struct OptionLook {
  std::string caption;
  bool chosen = false;
  bool enabled = false;
  bool operator==(const OptionLook&) const = default;
};

/// The hand clicks a button, also one that is chosen already; an assistive tool turns it over without a
/// click.
void whenChosen(const QAbstractButton& button, const std::function<void()>& choose) {
  const auto inHand = std::make_shared<bool>(false);
  QObject::connect(&button, &QAbstractButton::pressed, &button, [inHand] { *inHand = true; });
  QObject::connect(&button, &QAbstractButton::released, &button, [inHand] { *inHand = false; });
  QObject::connect(&button, &QAbstractButton::clicked, &button, choose);
  QObject::connect(&button, &QAbstractButton::toggled, &button, [inHand, choose](bool on) {
    if (on && !*inHand) choose();
  });
}

/// Buttons that exclude each other keep one chosen by themselves; the desk may have none.
void show(QRadioButton& button, const OptionLook& look) {
  const QSignalBlocker quiet(button);
  button.setText(text(look.caption));
  button.setEnabled(look.enabled);
  button.setAutoExclusive(look.chosen);
  button.setChecked(look.chosen);
  button.setAutoExclusive(true);
}

struct CheckLook {
  std::string caption;
  bool ticked = false;
  bool enabled = false;
  bool operator==(const CheckLook&) const = default;
};

struct TabsLook {
  std::vector<std::string> captions;
  int selected = 0;  ///< from 1
  bool operator==(const TabsLook&) const = default;
};

void show(QTabBar& tabs, const TabsLook& look) {
  const QSignalBlocker quiet(tabs);
  const int wanted = static_cast<int>(look.captions.size());
  while (tabs.count() > wanted) tabs.removeTab(wanted);
  while (tabs.count() < wanted) tabs.addTab({});
  for (int tab = 0; tab < wanted; ++tab)
    tabs.setTabText(tab, text(look.captions[static_cast<std::size_t>(tab)]));
  tabs.setCurrentIndex(look.selected - 1);
}

struct ComboLook {
  const ComboBox* control = nullptr;
  unsigned revision = 0;
  int index = -1;
  bool operator==(const ComboLook&) const = default;
};

struct ComboContent {
  std::vector<std::string> items;
  std::string ownText;  ///< shown while no item is
};

/// Changes what differs between the first and the last items, so that an open list doesn't jump.
void showItems(QComboBox& combo, const std::vector<std::string>& items) {
  const int wanted = static_cast<int>(items.size());
  const auto item = [&items](int at) { return text(items[static_cast<std::size_t>(at)]); };
  int head = 0;
  while (head < std::min(combo.count(), wanted) && combo.itemText(head) == item(head)) ++head;
  int tail = 0;
  while (tail < std::min(combo.count(), wanted) - head &&
         combo.itemText(combo.count() - 1 - tail) == item(wanted - 1 - tail))
    ++tail;
  while (combo.count() > head + tail) combo.removeItem(head);
  for (int at = head; at < wanted - tail; ++at) combo.insertItem(at, item(at));
}

}  // namespace

void Bindings::bind(QLabel* label, const Find<Label>& find) {
  label->setTextFormat(Qt::PlainText);  // a description may look like markup
  mirror(
      [find] {
        const Label* control = find();
        return control == nullptr ? std::pair<std::string, std::string>()
                                  : std::pair(control->Caption, control->ToolTip);
      },
      [label](const std::pair<std::string, std::string>& look) {
        label->setText(text(look.first));
        if (!look.second.empty()) label->setToolTip(text(look.second));
      });
}

void Bindings::bind(QAbstractButton* button, const Find<Button>& find) {
  mirror(
      [find] {
        const Button* control = find();
        return control == nullptr ? ButtonLook{}
                                  : ButtonLook{.caption = control->Caption,
                                               .tip = control->ToolTip,
                                               .enabled = control->Enabled,
                                               .back = control->BackColour};
      },
      [button](const ButtonLook& look) { show(*button, look); });
  new Mnemonic(button);
  QObject::connect(button, &QAbstractButton::clicked, button, [this, find] {
    m_face.deliver([find] {
      if (const Button* control = find()) control->click();
    });
  });
}

void Bindings::bind(Field* field, const Find<TextBox>& find) {
  const Underway underway;
  const auto shown = std::make_shared<FieldLook>();
  add({.copy =
           [field, find, shown, underway] {
             if (field->composing() || underway.any()) return false;
             const TextBox* control = find();
             FieldLook now = control == nullptr ? FieldLook{}
                                                : FieldLook{.text = control->text(),
                                                            .tip = control->ToolTip,
                                                            .enabled = control->Enabled,
                                                            .focuses = control->Focuses,
                                                            .selections = control->Selections};
             if (now == *shown) return false;
             *shown = std::move(now);
             return true;
           },
       .apply =
           [field, shown, obeyed = FieldLook{}]() mutable {
             field->setEnabled(shown->enabled);
             showTip(*field, shown->tip);
             write(*field, text(shown->text));
             if (obeyed.focuses != shown->focuses) field->setFocus();
             if (obeyed.selections != shown->selections) field->selectAll();
             obeyed = *shown;
           }});
  QObject::connect(field, &QLineEdit::textEdited, field, [this, find, shown, underway](const QString& typed) {
    shown->text = typed.toStdString();
    underway.deliver(m_face, [find, typed = shown->text] {
      if (TextBox* control = find()) control->setText(typed);
    });
  });
  QObject::connect(field, &Field::enterCameUp, field, [this, find] {
    m_face.deliver([find] {
      constexpr int EnterKey = 13;
      const TextBox* control = find();
      if (control != nullptr && control->KeyUp) control->KeyUp(EnterKey);
    });
  });
}

void Bindings::bind(Spinner* spinner, const Find<UpDown>& find) {
  mirror(
      [find] {
        const UpDown* control = find();
        return control == nullptr ? std::string() : control->ToolTip;
      },
      [spinner](const std::string& tip) { showTip(*spinner, tip); });
  QObject::connect(spinner, &Spinner::stepped, spinner, [this, find](bool up) {
    m_face.deliver([find, up] {
      UpDown* control = find();
      if (control != nullptr) up ? control->up() : control->down();
    });
  });
}

void Bindings::bind(QComboBox* combo, const Find<ComboBox>& find) {
  new WheelWithFocus(combo);
  const Underway underway;
  const auto shown = std::make_shared<ComboLook>();
  const auto content = std::make_shared<ComboContent>();
  add({.copy =
           [find, shown, content, underway] {
             if (underway.any()) return false;
             const ComboBox* control = find();
             const ComboLook now = control == nullptr ? ComboLook{}
                                                      : ComboLook{.control = control,
                                                                  .revision = control->revision(),
                                                                  .index = control->listIndex()};
             if (now == *shown) return false;
             if (control == nullptr)
               *content = {};
             else if (control != shown->control || now.revision != shown->revision)
               *content = {.items = control->items(), .ownText = now.index < 0 ? control->text() : ""};
             *shown = now;
             return true;
           },
       .apply =
           [combo, shown, content] {
             const QSignalBlocker quiet(combo);
             showItems(*combo, content->items);
             combo->setPlaceholderText(text(content->ownText));
             combo->setCurrentIndex(shown->index);
           }});
  QObject::connect(combo, &QComboBox::activated, combo, [this, find, shown, underway](int index) {
    shown->index = index;
    underway.deliver(m_face, [find, index] {
      if (ComboBox* control = find()) control->choose(index);
    });
  });
}

void Bindings::bind(QGroupBox* group, const Find<Frame>& find) {
  mirror(
      [find] {
        const Frame* control = find();
        return control == nullptr ? std::pair(std::string(), false)
                                  : std::pair(control->Caption, control->Enabled);
      },
      [group](const std::pair<std::string, bool>& look) {
        group->setTitle(text(look.first));
        group->setEnabled(look.second);
      });
}

void Bindings::bind(QAbstractSlider* slider, const Find<Slider>& find) {
  new LostRelease(slider);
  const Underway underway;
  const auto drag = std::make_shared<Newest<int>>();
  const auto shown = std::make_shared<SliderLook>();
  shown->max = -1;  // as no control has it
  add({.copy =
           [slider, find, shown, underway, drag] {
             if (slider->isSliderDown() || underway.any() || drag->waits()) return false;
             const Slider* control = find();
             SliderLook now = control == nullptr ? SliderLook{}
                                                 : SliderLook{.min = control->min(),
                                                              .max = control->max(),
                                                              .value = control->value(),
                                                              .tip = control->ToolTip,
                                                              .enabled = true};
             if (now == *shown) return false;
             *shown = std::move(now);
             return true;
           },
       .apply =
           [slider, shown] {
             const QSignalBlocker quiet(slider);
             slider->setEnabled(shown->enabled);
             showTip(*slider, shown->tip);
             slider->setRange(shown->min, shown->max);
             slider->setValue(shown->value);
           }});
  QObject::connect(slider, &QAbstractSlider::actionTriggered, slider,
                   [this, slider, find, shown, underway, drag](int action) {
                     if (action == QAbstractSlider::SliderNoAction) return;
                     shown->value = slider->sliderPosition();
                     if (action == QAbstractSlider::SliderMove) {
                       drag->deliver(m_face, shown->value, [find](int to) {
                         if (Slider* control = find()) control->drag(to);
                       });
                       return;
                     }
                     drag->end();
                     underway.deliver(m_face, [find, move = moveOf(*slider, action)] {
                       if (Slider* control = find()) move(*control);
                     });
                   });
  QObject::connect(slider, &QAbstractSlider::sliderReleased, slider, [this, find, drag] {
    drag->end();
    m_face.deliver([find] {
      if (const Slider* control = find()) control->letGo();
    });
  });
}

void Bindings::bind(QRadioButton* button, const Find<OptionButton>& find) {
  const auto shown = mirror(
      [find] {
        const OptionButton* control = find();
        return control == nullptr
                   ? OptionLook{}
                   : OptionLook{.caption = control->Caption, .chosen = control->Value, .enabled = true};
      },
      [button](const OptionLook& look) { show(*button, look); });
  whenChosen(*button, [this, find, shown] {
    shown->known = false;  // the desk says what has become of it
    m_face.deliver([find] {
      if (OptionButton* control = find()) control->choose();
    });
  });
}

void Bindings::bind(QCheckBox* box, const Find<CheckBox>& find) {
  const Underway underway;
  const auto shown = std::make_shared<CheckLook>();
  add({.copy =
           [find, shown, underway] {
             if (underway.any()) return false;
             const CheckBox* control = find();
             CheckLook now =
                 control == nullptr
                     ? CheckLook{}
                     : CheckLook{.caption = control->Caption, .ticked = control->Value != 0, .enabled = true};
             if (now == *shown) return false;
             *shown = std::move(now);
             return true;
           },
       .apply =
           [box, shown] {
             const QSignalBlocker quiet(box);
             box->setText(text(shown->caption));
             box->setEnabled(shown->enabled);
             box->setChecked(shown->ticked);
           }});
  // By the hand or by an assistive tool, which clicks nothing.
  QObject::connect(box, &QAbstractButton::toggled, box, [this, find, shown, underway](bool ticked) {
    shown->ticked = ticked;
    underway.deliver(m_face, [find] {
      if (CheckBox* control = find()) control->toggle();
    });
  });
}

void Bindings::bind(QTabBar* tabs, const Find<TabStrip>& find) {
  const Underway underway;
  const auto shown = std::make_shared<TabsLook>();
  shown->selected = -1;  // as no control has it
  add({.copy =
           [find, shown, underway] {
             if (underway.any()) return false;
             const TabStrip* control = find();
             TabsLook now = control == nullptr
                                ? TabsLook{}
                                : TabsLook{.captions = control->captions(), .selected = control->selected()};
             if (now == *shown) return false;
             *shown = std::move(now);
             return true;
           },
       .apply = [tabs, shown] { show(*tabs, *shown); }});
  QObject::connect(tabs, &QTabBar::currentChanged, tabs, [this, find, shown, underway](int tab) {
    shown->selected = tab + 1;
    underway.deliver(m_face, [find, chosen = tab + 1] {
      if (TabStrip* control = find()) control->choose(chosen);
    });
  });
}

}  // namespace velgrove
