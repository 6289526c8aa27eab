#include "desktop/spoken.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QHash>
#include <QLabel>

namespace velgrove {
namespace {

/// Told by the toolkit when the first tool comes and the last one goes.
class Listener : public QAccessible::ActivationObserver {
 public:
  Listener() : there(QAccessible::isActive()) { QAccessible::installActivationObserver(this); }
  ~Listener() override { QAccessible::removeActivationObserver(this); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  void accessibilityActiveChanged(bool active) override { there = active; }
  bool there;
};

/// Stays with its widget, and is how the toolkit's question finds what to say.
class Voice : public QObject {
 public:
  Voice(QWidget& widget, Spoken of, SpokenParts inside)
      : QObject(&widget), whole(std::move(of)), parts(std::move(inside)) {}
  const Spoken whole;
  const SpokenParts parts;

  [[nodiscard]] QWidget& widget() const { return *static_cast<QWidget*>(parent()); }
  [[nodiscard]] int count() const { return parts.count ? parts.count() : 0; }
  [[nodiscard]] int current() const { return parts.current ? parts.current() : -1; }
};

class SpokenPart : public QAccessibleInterface {
 public:
  SpokenPart(const Voice& voice, int index) : m_voice(voice), m_index(index) {}

  [[nodiscard]] bool isValid() const override { return m_index < m_voice.count(); }
  [[nodiscard]] QObject* object() const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(&m_voice.widget());
  }
  [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
  [[nodiscard]] int index() const { return m_index; }
  [[nodiscard]] QAccessible::Role role() const override { return m_voice.parts.role; }
  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name && isValid() ? m_voice.parts.name(m_index) : QString();
  }
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  [[nodiscard]] QRect rect() const override {
    if (!isValid()) return {};
    const QRect place = m_voice.parts.place(m_index);
    return {m_voice.widget().mapToGlobal(place.topLeft()), place.size()};
  }
  [[nodiscard]] QAccessible::State state() const override {
    const bool current = m_index == m_voice.current();
    QAccessible::State state;
    state.focusable = state.selectable = 1;
    state.selected = current;
    state.focused = current && m_voice.widget().hasFocus();
    state.disabled = !m_voice.widget().isEnabled();
    state.invisible = !m_voice.widget().isVisible();
    state.offscreen = !m_voice.widget().rect().intersects(m_voice.parts.place(m_index));
    return state;
  }

 private:
  const Voice& m_voice;
  int m_index;
};

class SpokenWidget : public QAccessibleWidget {
 public:
  SpokenWidget(QWidget& widget, const Voice& voice)
      : QAccessibleWidget(&widget, voice.whole.role), m_voice(voice) {}
  ~SpokenWidget() override {
    for (const QAccessible::Id id : std::as_const(m_parts)) QAccessible::deleteAccessibleInterface(id);
  }
  SpokenWidget(const SpokenWidget&) = delete;
  SpokenWidget& operator=(const SpokenWidget&) = delete;

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name && m_voice.whole.name) return m_voice.whole.name();
    if (kind == QAccessible::Description && m_voice.whole.description) return m_voice.whole.description();
    return QAccessibleWidget::text(kind);
  }
  [[nodiscard]] int childCount() const override {
    return m_voice.parts.count ? m_voice.count() : QAccessibleWidget::childCount();
  }
  /// Made at the first question.
  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    if (!m_voice.parts.count) return QAccessibleWidget::child(index);
    if (index < 0 || index >= m_voice.count()) return nullptr;
    auto known = m_parts.constFind(index);
    if (known == m_parts.constEnd())
      known = m_parts.insert(index, QAccessible::registerAccessibleInterface(new SpokenPart(m_voice, index)));
    return QAccessible::accessibleInterface(*known);
  }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* part = dynamic_cast<const SpokenPart*>(child);
    return part == nullptr ? QAccessibleWidget::indexOfChild(child) : part->index();
  }
  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
    if (!m_voice.parts.count) return QAccessibleWidget::childAt(x, y);
    const QPoint at = m_voice.widget().mapFromGlobal(QPoint(x, y));
    for (int part = 0; part < m_voice.count(); ++part)
      if (m_voice.parts.place(part).contains(at)) return child(part);
    return nullptr;
  }
  [[nodiscard]] QAccessibleInterface* focusChild() const override {
    if (!widget()->hasFocus()) return QAccessibleWidget::focusChild();
    const int current = m_voice.current();
    return current < 0 ? const_cast<SpokenWidget*>(this) : child(current);
  }

 private:
  const Voice& m_voice;
  mutable QHash<int, QAccessible::Id> m_parts;
};

QAccessibleInterface* spoken(const QString& /*kind*/, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) return nullptr;
  for (QObject* child : widget->children())
    if (const auto* voice = dynamic_cast<const Voice*>(child)) return new SpokenWidget(*widget, *voice);
  return nullptr;
}

}  // namespace

bool someoneListens() {
  static const Listener listener;
  return listener.there;
}

void speak(QWidget& widget, Spoken spoken, SpokenParts parts) {
  QAccessible::installFactory(velgrove::spoken);
  new Voice(widget, std::move(spoken), std::move(parts));
}

void speakCurrent(QWidget& widget) {
  if (!someoneListens()) return;
  const QAccessibleInterface* whole = QAccessible::queryAccessibleInterface(&widget);
  QAccessibleEvent event(&widget, QAccessible::Focus);
  if (const QAccessibleInterface* now = whole->focusChild(); now != nullptr && now != whole)
    event.setChild(whole->indexOfChild(now));
  if (widget.hasFocus()) QAccessible::updateAccessibility(&event);
}

void speakState(QWidget& widget, const QString& state) {
  const bool plain = state.isEmpty() || state == "quiet";
  widget.setAccessibleDescription(plain ? QString() : widget.toolTip() + ", " + state);
}

void speakLabel(QComboBox& choice, const QString& label) {
  auto* words = new QLabel(label, choice.parentWidget());
  words->setBuddy(&choice);
  words->hide();
  choice.view()->setAccessibleName(label);
}

}  // namespace velgrove
