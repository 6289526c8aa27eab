#include "desktop/loop_dialog.h"

#include <QDropEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QScreen>
#include <algorithm>
#include <tuple>

#include "desktop/room.h"
#include "desktop/theme.h"
#include "desktop/twips.h"

namespace velgrove {
namespace {

constexpr int Gap = 8;

int covered(const QRect& area, const std::vector<QRect>& lists) {
  int dots = 0;
  for (const QRect& list : lists) {
    const QRect both = area & list;
    dots += both.width() * both.height();
  }
  return dots;
}

}  // namespace

LoopDialog::LoopDialog(FrameWindow& frame, Face& face, frmLoop& form)
    : FormDialog("frmLoop", &frame, face, form.Window, [&form] { form.Unload(); }),
      m_frame(frame),
      m_form(form) {
  setAcceptDrops(true);
  m_group.setObjectName("Frame1");
  bindings().bind(&m_group, [&form] { return &form.Frame1; });
  tie({.row = m_start,
       .caption = {"lblStartCue", &frmLoop::lblStartCue},
       .field = {"txtStartCue", &frmLoop::txtStartCue},
       .spinner = {"UpDownStartCue", &frmLoop::UpDownStartCue},
       .spoken = "First cue of the loop"});
  tie({.row = m_last,
       .caption = {"lblLastCue", &frmLoop::lblLastCue},
       .field = {"txtLastCue", &frmLoop::txtLastCue},
       .spinner = {"UpDownLastCue", &frmLoop::UpDownLastCue},
       .spoken = "Last cue of the loop"});
  tie({.row = m_count,
       .caption = {"lblLoopCount", &frmLoop::lblLoopCount},
       .field = {"txtLoopCount", &frmLoop::txtLoopCount},
       .spinner = {"UpDownLoopCount", &frmLoop::UpDownLoopCount},
       .spoken = "Number of passes, 0 ends a loop"});
  for (auto [button, name, control] : {std::tuple(&m_ok, "Command1", &frmLoop::Command1),
                                       std::tuple(&m_cancel, "cmdCancel", &frmLoop::cmdCancel),
                                       std::tuple(&m_clear, "cmdClear", &frmLoop::cmdClear)}) {
    button->setObjectName(name);
    button->setProperty("role", "dialog");
    bindings().bind(button, [&form, control] { return &(form.*control); });
  }
  setDefault(m_ok);
  layOut();
  // Tied last: the fields have their texts when the first one is marked.
  bindings().mirror([&form] { return std::pair(form.Window.Visible, placeOf(form.Window).topLeft()); },
                    [this](const std::pair<bool, QPoint>& look) {
                      if (look.first) openAt(look.second);
                    });
}

void LoopDialog::tie(const Tie& tie) {
  Row& row = tie.row;
  row.caption.setObjectName(tie.caption.first);
  row.caption.setBuddy(&row.field);
  row.field.setObjectName(tie.field.first);
  row.field.setAccessibleName(tie.spoken);
  row.field.setToolTip(tie.spoken);
  row.field.setAcceptDrops(false);  // what is dropped is dropped on the dialog
  row.spinner.setObjectName(tie.spinner.first);
  row.spinner.setAccessibleName(QString("Step: ") + tie.spoken);
  bindings().bind(&row.caption, [this, label = tie.caption.second] { return &(m_form.*label); });
  bindings().bind(&row.field, [this, text = tie.field.second] { return &(m_form.*text); });
  bindings().bind(&row.spinner, [this, arrows = tie.spinner.second] { return &(m_form.*arrows); });
}

void LoopDialog::layOut() {
  auto* rows = new QGridLayout(&m_group);
  rows->setContentsMargins(12, 10, 12, 12);
  rows->setHorizontalSpacing(16);
  rows->setVerticalSpacing(8);
  int at = 0;
  for (Row* row : {&m_start, &m_last, &m_count}) {
    constexpr int FieldWidth = 110;
    row->caption.setProperty("tone", "quiet");
    row->field.setFixedWidth(FieldWidth);
    rows->addWidget(&row->caption, at, 0);
    rows->addWidget(&row->field, at++, 1, Qt::AlignRight);
  }
  rows->setColumnStretch(0, 1);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  for (QPushButton* button : {&m_ok, &m_cancel, &m_clear}) buttons->addWidget(button, 1);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(16, 12, 16, 16);
  all->setSpacing(14);
  all->addWidget(&m_group);
  all->addLayout(buttons);
  all->setSizeConstraint(QLayout::SetFixedSize);
}

// ---- Its place

/// `wanted` counts from the corner of the frame's ground.
void LoopDialog::openAt(QPoint wanted) {
  standClear(m_frame.ground().topLeft() + wanted);
  m_start.field.setFocus();
  m_start.field.selectAll();
}

/// Goes where it is wanted, or beside the nearest list, so that it covers none: the numbers of the cues are
/// what is asked for here.
void LoopDialog::standClear(QPoint wanted) {
  const QRect room = m_frame.ground() & m_frame.screen()->availableGeometry();
  const auto lists = m_frame.lists();
  const QSize size = frameGeometry().size();
  std::vector<QPoint> corners{wanted};
  for (const QRect& list : lists) {
    corners.emplace_back(list.left() - Gap - size.width(), wanted.y());
    corners.emplace_back(list.right() + Gap, wanted.y());
    corners.emplace_back(wanted.x(), list.top() - Gap - size.height());
    corners.emplace_back(wanted.x(), list.bottom() + Gap);
  }
  const auto cost = [&](QPoint corner) {
    const QRect place = within({corner, size}, room);
    return std::pair(covered(place, lists), (place.topLeft() - wanted).manhattanLength());
  };
  move(within({std::ranges::min(corners, {}, cost), size}, room).topLeft());
}

/// Moved over a list, it steps aside again.
void LoopDialog::mouseReleaseEvent(QMouseEvent* event) {
  FormDialog::mouseReleaseEvent(event);
  standClear(pos());
}

// ---- What is dropped on it

void LoopDialog::dragEnterEvent(QDragEnterEvent* event) {
  event->setDropAction(Qt::CopyAction);  // nothing leaves the place that it came from
  event->accept();
}

/// The box comes when the drop is through: until then the other program waits.
void LoopDialog::dropEvent(QDropEvent* event) {
  event->setDropAction(Qt::CopyAction);
  event->accept();
  QMetaObject::invokeMethod(
      this, [this] { bindings().face().deliver([this] { m_form.Form_OLEDragDrop(); }); },
      Qt::QueuedConnection);
}

}  // namespace velgrove
