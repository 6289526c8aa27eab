#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "controls/numbers.h"

/// The controls that windows are made of, as plain values with the events of their kind. The face binds a
/// widget to each; tests and scripts use them directly.
namespace velgrove {

/// Colour values: red + 256 x green + 65536 x blue.
using Colour = std::int32_t;

namespace colours {
inline constexpr Colour Black = 0;
inline constexpr Colour Red = 255;
inline constexpr Colour Green = 65280;
inline constexpr Colour Blue = 16711680;
inline constexpr Colour White = 16777215;
}  // namespace colours

using Event = std::function<void()>;

inline void raise(const Event& event) {
  if (event) event();
}

/// Takes a new value; whether it really is one.
inline bool takeNew(int& value, int now) {
  return std::exchange(value, now) != now;
}

struct Label {
  std::string Caption;
  Colour ForeColour = 0;
  std::string ToolTip = {};
};

/// Holds the controls of a part of a window, which come and go together. While it is disabled the hand
/// reaches none of them.
struct Frame {
  std::string Caption;
  bool Visible = true;
  bool Enabled = true;
};

/// A text field. A text set from code raises Change as the operator's typing does, when it really changes.
class TextBox {
 public:
  explicit TextBox(std::string text = "") : m_text(std::move(text)) {}

  bool Enabled = true;
  std::string ToolTip;
  Event Change;
  Event GotFocus;
  std::function<void(int keyCode)> KeyUp;  ///< a key came up; the face tells of Enter, 13
  unsigned Focuses = 0;     ///< how often it was asked to take the focus; the face looks at the counts
  unsigned Selections = 0;  ///< how often its whole text was to be selected

  void SetFocus() { ++Focuses; }
  void SelectAll() { ++Selections; }

  [[nodiscard]] const std::string& text() const { return m_text; }
  void setText(std::string text) {
    if (text == m_text) return;
    m_text = std::move(text);
    raise(Change);
  }
  /// Back to the design, without an event.
  void reset(std::string text = "") { m_text = std::move(text); }

 private:
  std::string m_text;
};

/// A button. `click` is the operator's hand: a disabled button does nothing.
struct Button {
  std::string Caption;
  std::string ToolTip = {};
  bool Enabled = true;
  Colour BackColour = 0;
  Event Click = {};

  void click() const {
    if (Enabled) raise(Click);
  }
};

/// A list to choose from. Only the hand raises Click.
class ComboBox {
 public:
  Event Click;

  void clear() {
    if (!m_items.empty()) ++m_revision;
    m_items.clear();
    setListIndex(-1);
  }
  void add(std::string item) {
    m_items.push_back(std::move(item));
    ++m_revision;
  }
  [[nodiscard]] const std::vector<std::string>& items() const { return m_items; }
  /// Moves when the items or the text of its own change.
  [[nodiscard]] unsigned revision() const { return m_revision; }
  [[nodiscard]] int listIndex() const { return m_index; }  ///< from 0; -1 when nothing is chosen
  void setListIndex(int index) {
    if (index < -1 || index >= static_cast<int>(m_items.size()))
      throw RunTimeError(Fault::Subscript, "no item " + std::to_string(index) + " to choose");
    m_index = index;
    if (!m_ownText.empty()) ++m_revision;
    m_ownText.clear();
  }
  [[nodiscard]] std::string text() const {
    return m_index < 0 ? m_ownText : m_items[static_cast<std::size_t>(m_index)];
  }
  /// Shows a text that is none of the items, until one is chosen.
  void setText(std::string text) {
    m_index = -1;
    m_ownText = std::move(text);
    ++m_revision;
  }

  /// The operator's choice; one that isn't offered any more is none.
  void choose(int index) {
    if (index < -1 || index >= static_cast<int>(m_items.size())) return;
    setListIndex(index);
    raise(Click);
  }

 private:
  std::vector<std::string> m_items;
  std::string m_ownText;  ///< shown while nothing is chosen
  int m_index = -1;
  unsigned m_revision = 0;
};

/// A slider: values stay within its range. Change comes with every new value, Scroll only from the hand.
class Slider {
 public:
  Slider(int min, int max) : m_min(min), m_max(max), m_value(min) {}

  std::string ToolTip;
  Event Change;
  Event Scroll;
  Event MouseUp;

  [[nodiscard]] int value() const { return m_value; }
  [[nodiscard]] int min() const { return m_min; }
  [[nodiscard]] int max() const { return m_max; }
  void setMax(int max) {
    m_max = max;
    setValue(m_value);
  }
  void setValue(int value) {
    if (take(value)) raise(Change);
  }
  /// The operator drags the thumb. A place that the desk has put it to already is still a motion of the hand.
  /// A value that Scroll's handler has replaced has had its Change already.
  void drag(int value) {
    const bool changed = take(value);
    const int place = m_value;
    const bool moved = takeNew(m_hand, std::clamp(value, m_min, m_max));
    if (changed || moved) raise(Scroll);
    if (changed && m_value == place) raise(Change);
  }
  /// The operator lets go of the thumb.
  void letGo() const { raise(MouseUp); }
  /// Back to the design, without an event.
  void reset() { reset(m_min); }
  void reset(int value) { m_value = m_hand = value; }

 private:
  bool take(int value) { return takeNew(m_value, std::clamp(value, m_min, m_max)); }

  int m_min;
  int m_max;
  int m_value;
  int m_hand = m_min;  ///< where the hand put it last
};

/// A spinner: two arrows that step a value within a range. With a buddy it reads the buddy's text first (one
/// that is no number leaves the value), writes the value into it, and then raises Change, also at the end of
/// the range: what was typed counts with the arrow.
class UpDown {
 public:
  UpDown(int min, int max, int value) : m_min(min), m_max(max), m_value(value) {}

  TextBox* Buddy = nullptr;
  std::string ToolTip;
  Event Change;
  Event UpClick;
  Event DownClick;

  [[nodiscard]] int value() const { return m_value; }
  void setMax(int max) { m_max = max; }
  void setValue(int value) {
    if (takeNew(m_value, std::clamp(value, m_min, m_max))) raise(Change);
  }
  void up() { step(1, UpClick); }
  void down() { step(-1, DownClick); }
  /// Back to the design, without an event.
  void reset(int value) { m_value = value; }

 private:
  void step(int by, const Event& click) {
    readBuddy();
    if (takeNew(m_value, std::clamp(m_value + by, m_min, m_max)) || Buddy != nullptr) {
      if (Buddy != nullptr) Buddy->setText(std::to_string(m_value));
      raise(Change);
    }
    raise(click);
  }

  void readBuddy() {
    if (Buddy == nullptr) return;
    try {
      m_value = std::clamp(toInteger<std::int32_t>(Buddy->text()), m_min, m_max);
    } catch (const RunTimeError&) {  // NOLINT(bugprone-empty-catch): the spinner goes on from its own value
    }
  }

  int m_min;
  int m_max;
  int m_value;
};

/// A dial whose hand shows a value. Change comes when the operator turns it.
class Gauge {
 public:
  bool Visible = false;
  Event Change;

  [[nodiscard]] double value() const { return m_value; }
  void show(double value) { m_value = value; }
  /// The operator turns it.
  void setValue(double value) {
    if (std::exchange(m_value, value) != value) raise(Change);
  }

 private:
  double m_value = 0;
};

/// One of a few that exclude each other. Only the hand raises Click.
struct OptionButton {
  std::string Caption;
  bool Value = false;
  Event Click = {};

  /// The operator's choice; what becomes of the others is the window's business.
  void choose() {
    Value = true;
    raise(Click);
  }
};

/// A box to tick. Only the hand raises Click.
struct CheckBox {
  std::string Caption;
  int Value = 0;  ///< 1 while it is ticked, else 0
  Event Click = {};

  /// The operator's click.
  void toggle() {
    Value = Value == 0 ? 1 : 0;
    raise(Click);
  }
};

/// Watches the mouse, wherever it is. The face writes what it sees.
struct MouseSource {
  std::int32_t X = 0;  ///< pixels of the screen, y downwards
  std::int32_t Y = 0;
  bool ButtonDown = false;
  /// The wheel turned over the window: 120 a notch, above 0 away from the operator. `handled` says whether
  /// anything was done.
  std::function<void(int rotation, bool& handled)> MouseWheel;
};

struct ProgressBar {
  int Value = 0;  ///< 0 to 100
  Colour BarColour = 0;
};

}  // namespace velgrove
