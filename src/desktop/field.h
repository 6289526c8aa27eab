#pragma once

#include <QInputMethodEvent>
#include <QLineEdit>

namespace velgrove {

/// A text field that tells when an input method composes in it.
class Field : public QLineEdit {
  Q_OBJECT

 public:
  using QLineEdit::QLineEdit;
  [[nodiscard]] bool composing() const { return m_composing; }

 protected:
  void inputMethodEvent(QInputMethodEvent* event) override {
    m_composing = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
  }

 private:
  bool m_composing = false;
};

}  // namespace velgrove
