#include "desktop/child_area.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QShortcut>
#include <QVariant>
#include <algorithm>

#include "desktop/child_window.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr int Gap = 3;

}  // namespace

ChildArea::ChildArea(QWidget* parent) : QMdiArea(parent) {
  setObjectName("children");
  setBackground(theme::colour("well"));
  setActivationOrder(QMdiArea::ActivationHistoryOrder);
  setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
  // The toolkit raises a window after it has told of it.
  connect(this, &QMdiArea::subWindowActivated, this, &ChildArea::raiseFloating, Qt::QueuedConnection);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { bringIntoView(now); });
}

/// The focus moves on while the windows inside go.
ChildArea::~ChildArea() {
  disconnect(qApp, nullptr, this, nullptr);
}

void ChildArea::add(QMdiSubWindow* window, Place place) {
  window->setProperty("place", static_cast<int>(place));
  addSubWindow(window, Qt::WindowFlags());
  const auto* child = qobject_cast<ChildWindow*>(window);
  if (child != nullptr && place != Place::Floating)
    connect(child, &ChildWindow::movedByHand, this, [this] { m_byHand = true; });
  layOut();
}

/// The ground is the toolkit's own brush, which no style sheet reaches.
void ChildArea::changeEvent(QEvent* event) {
  QMdiArea::changeEvent(event);
  if (event->type() == QEvent::StyleChange) setBackground(theme::colour("well"));
}

void ChildArea::resizeEvent(QResizeEvent* event) {
  QMdiArea::resizeEvent(event);
  layOut();
}

/// Compact: XY above AB beside the plot. Roomy: both lists over the whole height.
QRect ChildArea::placeOf(Place place) const {
  const QRect area = viewport()->rect().adjusted(Gap, Gap, -Gap, -Gap);
  const bool roomy = theme::density() == Density::Roomy;
  constexpr int NarrowestPlot = 300;
  const int lists = roomy ? area.width() * 61 / 100 : std::min(644, area.width() - NarrowestPlot);
  const int plot = area.width() - lists - Gap;
  const int left = area.left() + plot + Gap;
  if (place == Place::Plot) return {area.left(), area.top(), plot, area.height()};
  const bool upper = place == Place::UpperList;
  if (roomy) {
    const int each = (lists - Gap) / 2;
    return {upper ? left : left + each + Gap, area.top(), each, area.height()};
  }
  const int height = area.height() * 55 / 100;
  return upper ? QRect(left, area.top(), lists, height)
               : QRect(left, area.top() + height + Gap, lists, area.height() - height - Gap);
}

/// In a tight frame windows overlap rather than cut off what they hold; each keeps its corner, and what lies
/// beyond the frame scrolls.
QRect ChildArea::grown(QRect area, QSize least, Place place) {
  const QSize size = area.size().expandedTo(least);
  QRect window(area.topLeft(), size);
  if (place != Place::Plot) window.moveRight(area.right());
  if (place == Place::LowerList) window.moveBottom(area.bottom());
  return window;
}

void ChildArea::layOut() {
  if (m_layingOut) return;  // a scroll bar takes its room
  const QScopedValueRollback layingOut(m_layingOut, true);
  bool tight = false;
  for (QMdiSubWindow* window : subWindowList()) {
    if (window->isMinimized() || window->isMaximized()) continue;
    const Place place = placeIn(*window);
    if (place == Place::Floating)
      placeFloating(*window);
    else if (!m_byHand) {
      window->setGeometry(grown(placeOf(place), window->minimumSizeHint(), place));
      tight = tight || (window->isVisible() && !viewport()->rect().contains(window->geometry()));
    }
  }
  const auto policy = tight ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff;
  setVerticalScrollBarPolicy(policy);
  setHorizontalScrollBarPolicy(policy);
}

/// Whoever goes on by the keyboard sees where he is.
void ChildArea::bringIntoView(const QWidget* widget) {
  if (widget == nullptr || !viewport()->isAncestorOf(widget)) return;
  const QRect place(widget->mapTo(viewport(), QPoint(0, 0)), widget->size());
  const auto scroll = [](QScrollBar* bar, int start, int end, int visible) {
    if (start < 0)
      bar->setValue(bar->value() + start);
    else if (end > visible)
      bar->setValue(bar->value() + std::min(start, end - visible));
  };
  scroll(verticalScrollBar(), place.top(), place.bottom() + 1, viewport()->height());
  scroll(horizontalScrollBar(), place.left(), place.right() + 1, viewport()->width());
}

ChildArea::Place ChildArea::placeIn(const QMdiSubWindow& window) {
  return static_cast<Place>(window.property("place").toInt());
}

QMdiSubWindow* ChildArea::whole() const {
  for (QMdiSubWindow* window : subWindowList())
    if (window->isVisible() && window->isMaximized() && placeIn(*window) == Place::Floating) return window;
  return nullptr;
}

void ChildArea::bringForward(QMdiSubWindow& window, bool asked) {
  window.raise();
  if (asked || whole() == nullptr)
    setActiveSubWindow(&window);
  else
    keepInFront();
}

void ChildArea::keepInFront() {
  QMdiSubWindow* const window = whole();
  if (window == nullptr) return;
  window->raise();
  setActiveSubWindow(window);
}

void ChildArea::raiseFloating() {
  for (QMdiSubWindow* window : subWindowList(QMdiArea::StackingOrder))
    if (placeIn(*window) == Place::Floating && !window->isMaximized()) window->raise();
}

void ChildArea::placeFloating(QMdiSubWindow& window) const {
  constexpr QPoint Step(24, 24);  // from the corner, and from a window that begins there already
  const QSize least = window.minimumSizeHint();
  if (window.isVisible()) {
    window.resize(window.size().expandedTo(least));
    return;
  }
  QRect room = viewport()->rect().adjusted(Step.x(), Step.y(), -Gap, -Gap);
  const auto taken = [&](const QMdiSubWindow* other) {
    return other != &window && other->isVisible() && other->pos() == room.topLeft();
  };
  while (std::ranges::any_of(subWindowList(), taken)) room.setTopLeft(room.topLeft() + Step);
  window.setGeometry(QRect(room.topLeft(), window.sizeHint().boundedTo(room.size()).expandedTo(least)));
}

QList<QMdiSubWindow*> ChildArea::openWindows() const {
  QList<QMdiSubWindow*> open = subWindowList(QMdiArea::CreationOrder);
  open.removeIf([](const QMdiSubWindow* window) { return !window->isVisible() || window->isMinimized(); });
  return open;
}

void ChildArea::activateNext(int step) {
  auto windows = subWindowList(QMdiArea::CreationOrder);
  windows.removeIf([](const QMdiSubWindow* window) { return !window->isVisible(); });
  if (windows.isEmpty()) return;
  const auto next = (windows.indexOf(currentSubWindow()) + step + windows.size()) % windows.size();
  if (windows[next]->isMinimized()) windows[next]->showNormal();
  setActiveSubWindow(windows[next]);
  windows[next]->widget()->setFocus(Qt::ShortcutFocusReason);
}

void ChildArea::takeKeysOf(QWidget& frame) {
  connect(new QShortcut(QKeySequence::Close, &frame), &QShortcut::activated, this,
          &QMdiArea::closeActiveSubWindow);
  for (const auto& [keys, step] :
       {std::pair(QKeySequence::NextChild, 1), std::pair(QKeySequence::PreviousChild, -1)})
    connect(new QShortcut(keys, &frame), &QShortcut::activated, this, [this, step] { activateNext(step); });
}

void ChildArea::arrange(Arrangement::Code how) {
  m_byHand = true;
  switch (how) {
    case Arrangement::Cascade:
      cascadeSubWindows();
      break;
    case Arrangement::TileHorizontal:
      tile(false);
      break;
    case Arrangement::TileVertical:
      tile(true);
      break;
    case Arrangement::ArrangeIcons:
      lineUpIcons();
      break;
  }
}

void ChildArea::tile(bool sideBySide) {
  const auto open = openWindows();
  if (open.isEmpty()) return;
  const QRect area = viewport()->rect();
  const int count = static_cast<int>(open.size());
  for (int i = 0; i < count; ++i) {
    open[i]->showNormal();
    if (sideBySide) {
      const int left = area.width() * i / count;
      open[i]->setGeometry(left, 0, area.width() * (i + 1) / count - left, area.height());
    } else {
      const int top = area.height() * i / count;
      open[i]->setGeometry(0, top, area.width(), area.height() * (i + 1) / count - top);
    }
  }
}

void ChildArea::lineUpIcons() {
  int x = 0;
  for (QMdiSubWindow* window : subWindowList(QMdiArea::CreationOrder)) {
    if (!window->isVisible() || !window->isMinimized()) continue;
    window->move(x, viewport()->height() - window->height());
    x += window->width();
  }
}

}  // namespace velgrove
