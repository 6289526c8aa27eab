#pragma once

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionFrame>
#include <utility>

namespace velgrove {

/// A text field that tells when an input method composes in it, and when Enter comes up that went down in it.
class Field : public QLineEdit {
  Q_OBJECT

 public:
  using QLineEdit::QLineEdit;
  [[nodiscard]] bool composing() const { return m_composing; }

  /// The field's width, in pixels, when a text of that many pixels is to stand in it whole.
  [[nodiscard]] int widthAround(int text) const {
    constexpr int BesideText = 2;  // which the toolkit leaves at both ends
    constexpr int Caret = 1;
    const QMargins margins = textMargins();
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QSize content(text + 2 * BesideText + Caret + margins.left() + margins.right(), 0);
    return style()->sizeFromContents(QStyle::CT_LineEdit, &option, content, this).width();
  }

 signals:
  void enterCameUp();

 protected:
  void inputMethodEvent(QInputMethodEvent* event) override {
    m_composing = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (isEnter(*event)) m_enterIsDown = true;
    QLineEdit::keyPressEvent(event);
  }
  void keyReleaseEvent(QKeyEvent* event) override {
    QLineEdit::keyReleaseEvent(event);
    if (isEnter(*event) && !event->isAutoRepeat() && std::exchange(m_enterIsDown, false)) emit enterCameUp();
  }
  void focusOutEvent(QFocusEvent* event) override {
    m_enterIsDown = false;
    QLineEdit::focusOutEvent(event);
  }

 private:
  static bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  }

  bool m_composing = false;
  bool m_enterIsDown = false;
};

}  // namespace velgrove
