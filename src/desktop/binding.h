#pragma once

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QTabBar>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "controls/face.h"
#include "controls/tab_strip.h"
#include "controls/widgets.h"
#include "desktop/field.h"
#include "desktop/spinner.h"

namespace velgrove {

/// What the hand did to a widget and the desk hasn't heard of yet. Until then the desk's value is the one of
/// before, and isn't shown.
class Underway {
 public:
  [[nodiscard]] bool any() const { return *m_count > 0; }
  void deliver(Face& face, std::function<void()> action) const {
    ++*m_count;
    face.deliver([count = m_count, action = std::move(action)] {
      --*count;
      action();
    });
  }

 private:
  std::shared_ptr<int> m_count = std::make_shared<int>(0);
};

/// The ties between the widgets of one window and the desk's values. They end with it.
class Bindings {
 public:
  explicit Bindings(Face& face) : m_face(face) {}

  [[nodiscard]] Face& face() const { return m_face; }

  /// What a widget shows at this moment. A widget that the hand can change notes it here, so that the desk's
  /// answer is shown even when it is the value of before.
  template <class Value>
  struct Seen {
    Value value{};
    bool known = false;  ///< false: the desk's value is shown at the next pull, whatever it is
  };
  template <class Value>
  using Shown = std::shared_ptr<Seen<Value>>;

  /// Shows a value whenever it differs from what is shown. `read` runs with the desk held and gives a copy,
  /// `show` with the desk free.
  template <class Read, class Show>
  auto mirror(Read read, Show show) {
    using Value = std::decay_t<decltype(read())>;
    auto shown = std::make_shared<Seen<Value>>();
    add({.copy =
             [read = std::move(read), shown] {
               Value now = read();
               if (shown->known && shown->value == now) return false;
               *shown = {.value = std::move(now), .known = true};
               return true;
             },
         .apply = [show = std::move(show), shown] { show(shown->value); }});
    return shown;
  }

  void add(Binder binder) { m_ties.push_back(m_face.bind(std::move(binder))); }

  // Each control is looked up anew, with the desk held: the window behind it may have been closed. A look-up
  // that gives nothing shows an empty, disabled control.

  template <class T>
  using Find = std::function<T*()>;

  void bind(QLabel* label, const Find<Label>& find);
  /// Caption, tip and state; a click goes to the control.
  void bind(QAbstractButton* button, const Find<Button>& find);
  /// The text both ways. What the hand types goes to the control; the desk's text comes with the caret kept,
  /// and not while an input method composes. An Enter that comes up is told behind the text.
  void bind(Field* field, const Find<TextBox>& find);
  /// Its steps go to the control; it has nothing to show but a tip.
  void bind(Spinner* spinner, const Find<UpDown>& find);
  void bind(QComboBox* combo, const Find<ComboBox>& find);
  /// Caption and state; a disabled group takes the hand from all that stands in it.
  void bind(QGroupBox* group, const Find<Frame>& find);
  /// Range, value and tip. The hand's drags go to the control, its keys as steps from where the control
  /// stands. A slider in the hand isn't written; when it is let go the control hears of it behind the last
  /// drag, and the slider shows what the desk has made of it. Of the drags that a busy desk couldn't take,
  /// only the newest reaches it.
  void bind(QAbstractSlider* slider, const Find<Slider>& find);
  void bind(QRadioButton* button, const Find<OptionButton>& find);
  void bind(QCheckBox* box, const Find<CheckBox>& find);
  void bind(QTabBar* tabs, const Find<TabStrip>& find);

 private:
  Face& m_face;
  std::vector<std::shared_ptr<void>> m_ties;
};

}  // namespace velgrove
