#include "desktop/sub_strip.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <optional>

#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr int Last = frmSubPane::Count - 1;
constexpr int InGroup = 6;

/// Where a key leads from a cell.
std::optional<int> wayOf(int key, int from) {
  switch (key) {
    case Qt::Key_Left:
      return std::max(from - 1, 0);
    case Qt::Key_Right:
      return std::min(from + 1, Last);
    case Qt::Key_Home:
      return 0;
    case Qt::Key_End:
      return Last;
    default:
      return {};
  }
}

}  // namespace

SubStrip::SubStrip(LightingDesk& desk, Bindings& bindings) {
  setObjectName("SSScroll1");
  setAccessibleName("Submasters");
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  layOut();
  for (int index = 0; index <= Last; ++index) bind(index, desk.windows.SubPane, desk.show, bindings);
  makeCurrent(0);
}

void SubStrip::layOut() {
  constexpr int Gap = 2;
  constexpr int BesideGroup = 8;
  auto* strip = new QWidget;
  strip->setObjectName("frmSubPane");
  strip->setAttribute(Qt::WA_StyledBackground);
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(5, 0, 5, 0);
  row->setSpacing(0);
  for (int index = 0; index <= Last; ++index) {
    if (index > 0) row->addSpacing(index % InGroup == 0 ? BesideGroup : Gap);
    auto* cell = new SubCell;
    cell->setObjectName(QString("Command1_%1").arg(index));
    row->addWidget(cell, 1, Qt::AlignVCenter);
    m_cells[static_cast<std::size_t>(index)] = cell;
  }
  setWidget(strip);
}

void SubStrip::bind(int index, frmSubPane& panel, const ShowState& show, Bindings& bindings) {
  const auto at = static_cast<std::size_t>(index);
  SubCell* cell = m_cells[at];
  bindings.mirror(
      [&panel, &show, at]() -> SubCell::Look {
        return {.number = panel.Command1[at].Caption,
                .name = panel.Text1[at].text(),
                .level = panel.Label1[at].Caption,
                .follows = panel.Label1[at].ForeColour == frmSubPane::Magenta,
                .shut = show.DMXSubmasters};
      },
      [cell](const SubCell::Look& look) { cell->setLook(look); });
  Face& face = bindings.face();
  connect(cell, &SubCell::opened, this,
          [&face, &panel, at] { face.deliver([&panel, at] { panel.Command1[at].click(); }); });
  const auto control = static_cast<std::int16_t>(index);
  connect(cell, &SubCell::toggled, this,
          [&face, &panel, control] { face.deliver([&panel, control] { panel.Label1_Click(control); }); });
  connect(cell, &SubCell::recordAsked, this, [&face, &panel, control] {
    constexpr std::int16_t RightButton = 2;
    face.deliver([&panel, control] { panel.Command1_MouseDown(control, RightButton, 0, 0, 0); });
  });
  connect(cell, &SubCell::focused, this, [this, index] { makeCurrent(index); });
}

QRect SubStrip::button(int index) const {
  const SubCell* cell = m_cells[static_cast<std::size_t>(std::clamp(index, 0, Last))];
  const QRect place = cell->place(SubCell::Part::Button);
  return {cell->mapToGlobal(place.topLeft()), place.size()};
}

// ---- The focus

void SubStrip::makeCurrent(int index) {
  m_cells[static_cast<std::size_t>(m_current)]->setFocusPolicy(Qt::NoFocus);
  m_current = index;
  SubCell* cell = m_cells[static_cast<std::size_t>(index)];
  cell->setFocusPolicy(Qt::TabFocus);
  setFocusProxy(cell);
  ensureWidgetVisible(cell, cell->width() / 2, 0);
}

void SubStrip::keyPressEvent(QKeyEvent* event) {
  const auto next = wayOf(event->key(), m_current);
  if (!next)
    event->ignore();
  else
    m_cells[static_cast<std::size_t>(*next)]->focusOn(
        m_cells[static_cast<std::size_t>(m_current)]->current());
}

// ---- Its size

/// Moves a strip that is wider than the frame, and never a level.
void SubStrip::wheelEvent(QWheelEvent* event) {
  QApplication::sendEvent(horizontalScrollBar(), event);
}

void SubStrip::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  QMetaObject::invokeMethod(this, &SubStrip::fit, Qt::QueuedConnection);  // the frame is just being laid out
}

void SubStrip::changeEvent(QEvent* event) {
  QScrollArea::changeEvent(event);
  if (event->type() == QEvent::StyleChange && widget() != nullptr) fit();
}

/// As high as the cells, and the scroll bar when there is one.
void SubStrip::fit() {
  const bool scrolls = widget()->minimumSizeHint().width() > width();
  const int height = theme::sized(72, 96) + (scrolls ? horizontalScrollBar()->sizeHint().height() : 0);
  if (height == minimumHeight()) return;
  setFixedHeight(height);
  emit heightChanged();
}

}  // namespace velgrove
