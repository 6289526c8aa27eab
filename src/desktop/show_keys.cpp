#include "desktop/show_keys.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPushButton>
#include <QToolButton>

#include "core/keys.h"

namespace velgrove {
namespace {

constexpr std::string_view Go = "ID_Go";

/// Whether the widget with the focus takes the key as a letter of a text; it says so itself.
bool types(const QKeyEvent& key) {
  QWidget* focus = QApplication::focusWidget();
  if (focus == nullptr) return false;
  QKeyEvent question(QEvent::ShortcutOverride, key.key(), key.modifiers(), key.text());
  question.ignore();
  QApplication::sendEvent(focus, &question);
  return question.isAccepted();
}

void closePopUps() {
  while (QWidget* open = QApplication::activePopupWidget())
    if (!open->close()) return;
}

bool isEnter(const QKeyEvent& key) {
  return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

/// The button with the focus, when Enter is nothing to it by the toolkit's own rules.
QAbstractButton* deafToEnter() {
  if (QApplication::activePopupWidget() != nullptr) return nullptr;
  auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
  const auto* push = qobject_cast<QPushButton*>(button);
  const bool hears = push != nullptr && (push->autoDefault() || push->isDefault());
  return hears ? nullptr : button;
}

/// A key that is held down presses once.
bool press(QAbstractButton* button, const QKeyEvent& key) {
  if (button == nullptr) return false;
  auto* tool = qobject_cast<QToolButton*>(button);
  if (key.isAutoRepeat()) return true;
  if (tool != nullptr && tool->menu() != nullptr)
    QMetaObject::invokeMethod(tool, &QToolButton::showMenu,
                              Qt::QueuedConnection);  // it stays until it closes
  else
    button->click();
  return true;
}

}  // namespace

ShowKeys::ShowKeys(LightingDesk& desk, Face& face, Tools& tools, QWidget& frame)
    : QObject(&frame), m_desk(desk), m_face(face), m_go(*tools.action(Go)) {
  for (const FrameKey& key : frameKeys()) {
    QAction& action = *tools.action(key.Tool);
    const QKeySequence sequence(QString::fromUtf8(key.Key.data(), static_cast<qsizetype>(key.Key.size())));
    if (key.Tool == Go) {
      m_goKey = sequence;  // heard below, where it is known when it was pressed
      continue;
    }
    action.setShortcut(sequence);
    action.setShortcutContext(Qt::ApplicationShortcut);
    action.setAutoRepeat(false);
    frame.addAction(&action);
  }
  qApp->installEventFilter(this);
}

bool ShowKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || QApplication::activeModalWidget() != nullptr)
    return QObject::eventFilter(watched, event);
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (isGo(key)) return pressGo(key);
  return isEnter(key) && press(deafToEnter(), key);
}

bool ShowKeys::isGo(const QKeyEvent& key) const {
  return QKeySequence(key.keyCombination()) == m_goKey;
}

/// A key that is held down goes once.
bool ShowKeys::pressGo(const QKeyEvent& key) {
  if (types(key)) return false;
  closePopUps();
  if (!key.isAutoRepeat() && m_go.isEnabled())
    m_face.deliver([this, at = static_cast<std::uint32_t>(key.timestamp())] { m_desk.frame.goKey(at); });
  return true;
}

}  // namespace velgrove
