#include "desktop/message_boxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <vector>

#include "desktop/theme.h"

namespace velgrove {
namespace {

struct Choice {
  BoxAnswer answer;
  const char* caption;
};

/// The buttons of a box, left to right; the last one also answers Escape and the closing of the box.
std::vector<Choice> choices(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::YesNo:
      return {{BoxAnswer::Yes, "&Yes"}, {BoxAnswer::No, "&No"}};
    case BoxButtons::AbortRetryIgnore:
      return {{BoxAnswer::Abort, "&Abort"}, {BoxAnswer::Retry, "&Retry"}, {BoxAnswer::Ignore, "&Ignore"}};
    default:
      return {{BoxAnswer::Ok, "OK"}};
  }
}

QMessageBox::Icon iconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Critical:
      return QMessageBox::Critical;
    case BoxIcon::Warning:
      return QMessageBox::Warning;
    case BoxIcon::Question:
      return QMessageBox::Question;
    case BoxIcon::Information:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

/// A box that nobody waits for and that may have come to lie behind a dialog.
QWidget* boxLeft(const QWidget& closing) {
  for (QWidget* other : QApplication::topLevelWidgets())
    if (other != &closing && other->isVisible() && !other->isModal() && other->objectName() == "box")
      return other;
  return nullptr;
}

/// A box that closes gives the operator back the window that he had before him, or shows him the next box.
/// The system would take the frame.
void giveBack(QWidget* before, const QWidget& box) {
  QWidget* const next = QApplication::activeModalWidget() == nullptr ? boxLeft(box) : nullptr;
  if (next != nullptr) {
    next->raise();
    next->activateWindow();
    return;
  }
  const QWidget* active = QApplication::activeWindow();
  const bool wentOn = active != nullptr && active != &box;
  if (before != nullptr && before->isVisible() && !wentOn) before->activateWindow();
}

}  // namespace

void showMessageBox(QWidget* above, const Box& box, bool waitedFor, std::function<void(BoxAnswer)> answered) {
  auto* shown = new QMessageBox(above);
  shown->setAttribute(Qt::WA_DeleteOnClose);
  shown->setObjectName("box");
  shown->setWindowTitle(QString::fromStdString(box.title));
  shown->setTextFormat(Qt::PlainText);
  shown->setText(QString::fromStdString(box.text));
  shown->setIcon(iconOf(box.icon));
  shown->setWindowModality(waitedFor ? Qt::ApplicationModal : Qt::NonModal);

  const auto all = choices(box.buttons);
  QPushButton* first = nullptr;
  QPushButton* last = nullptr;
  for (const Choice& choice : all) {
    last =
        shown->addButton(QString(choice.caption), QMessageBox::ActionRole);  // the one that keeps our order
    if (first == nullptr) first = last;
    theme::setState(last, "role", "dialog");
    last->setProperty("answer", static_cast<int>(choice.answer));
  }
  shown->setEscapeButton(last);
  // Aborting ends the desk: it is never a key press away.
  shown->setDefaultButton(box.buttons == BoxButtons::YesNo ? first : last);
  const BoxAnswer byClosing = all.back().answer;
  const QPointer before = QApplication::activeWindow();
  QObject::connect(
      shown, &QMessageBox::finished, shown, [shown, before, byClosing, answered = std::move(answered)] {
        giveBack(before, *shown);
        const QAbstractButton* clicked = shown->clickedButton();
        answered(clicked == nullptr ? byClosing
                                    : static_cast<BoxAnswer>(clicked->property("answer").toInt()));
      });
  shown->show();
  shown->raise();
  shown->activateWindow();
}

}  // namespace velgrove
