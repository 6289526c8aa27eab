#include "desktop/binding.h"

#include <QShortcutEvent>
#include <QSignalBlocker>
#include <algorithm>

#include "desktop/theme.h"

namespace velgrove {
namespace {

QString text(const std::string& desk) {
  return QString::fromStdString(desk);
}

/// Writes a text and leaves caret and selection where they were.
void write(QLineEdit& field, const QString& text) {
  if (field.text() == text) return;
  const QSignalBlocker quiet(field);
  const int caret = field.cursorPosition();
  const int start = field.selectionStart();
  const int length = field.selectionLength();
  const bool all = length > 0 && length == field.text().size();
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
  if (!look.tip.empty()) button.setToolTip(text(look.tip));
  if (!look.enabled) leave(button);
  button.setEnabled(look.enabled);
  const QString role = button.property("role").toString();
  if (role == "key") theme::setState(&button, "key", theme::keyOf(look.back));
  if (role == "mode") theme::setState(&button, "key", "magenta");
  theme::setState(&button, "state", stateOf(role, look.back));
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
  bool enabled = false;
  unsigned focuses = 0;
  unsigned selections = 0;
  bool operator==(const FieldLook&) const = default;
};

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
        return control == nullptr ? std::string() : control->Caption;
      },
      [label](const std::string& caption) { label->setText(text(caption)); });
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

}  // namespace velgrove
