#include "desktop/grand_master.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include "desktop/dress.h"
#include "desktop/room.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr int PageStep = 10;
constexpr int Resting = 200;  // ms

}  // namespace

GrandMasterDialog::GrandMasterDialog(FrameWindow& frame, Face& face, frmGrandMaster& form)
    : FormDialog("frmGrandMaster", &frame, face, form.Window, [&form] { form.Unload(); }),
      m_frame(frame),
      m_wheel(*this, face, form.Window, form.MouseHelper3) {
  dress();
  layOut();
  bindControls(form);
  m_moving.setObjectName("moving");
  m_moving.setSingleShot(true);
  m_moving.setInterval(Resting);
  connect(&m_moving, &QTimer::timeout, this, &GrandMasterDialog::stepAside);
}

void GrandMasterDialog::dress() {
  dressAll({{&m_level, "Level", "Grand master level, -100 to 100"},
            {&m_arrows, "UpDown1", "Step: grand master level"},
            {&m_fader, "VSlider1", "Grand master, -100 to 100"},
            {&m_ok, "cmdOK", "OK, keep these levels"},
            {&m_cancel, "cmdCancel", "Cancel, bring back the levels from before"}});
  m_caption.setObjectName("Label1");
  m_caption.setProperty("tone", "quiet");
  m_caption.setBuddy(&m_level);
  m_level.setProperty("type", "master");
  m_fader.setFill("stageLit", 0);
  std::vector<Fader::ScaleMark> scale;
  for (const int value : {100, 50, 0, -50, -100})
    scale.push_back({.value = value, .words = QString::number(value)});
  m_fader.setScale(std::move(scale));
  m_fader.setPageStep(PageStep);
  for (QPushButton* button : {&m_ok, &m_cancel}) {
    button->setProperty("role", "dialog");
    button->setAutoDefault(false);
  }
}

void GrandMasterDialog::bindControls(frmGrandMaster& form) {
  bindings().bind(&m_caption, [&form] { return &form.Label1; });
  bindings().bind(&m_level, [&form] { return &form.Level; });
  bindings().bind(&m_arrows, [&form] { return &form.UpDown1; });
  bindings().bind(&m_fader, [&form] { return &form.VSlider1; });
  bindings().bind(&m_ok, [&form] { return &form.cmdOK; });
  bindings().bind(&m_cancel, [&form] { return &form.cmdCancel; });
  bindings().mirror([&form] { return form.VSlider1.value() == frmGrandMaster::Bottom; },
                    [this](bool atBottom) { showBottom(atBottom); });
}

void GrandMasterDialog::layOut() {
  constexpr int Margin = 14;
  auto* number = new QHBoxLayout;
  number->setSpacing(10);
  m_level.setFixedWidth(112);
  number->addWidget(&m_caption);
  number->addWidget(&m_level);
  number->addStretch(1);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  for (QPushButton* button : {&m_ok, &m_cancel}) buttons->addWidget(button, 1);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(Margin, Margin, Margin, Margin);
  all->setSpacing(12);
  all->addLayout(number);
  all->addWidget(&m_fader, 1, Qt::AlignHCenter);
  all->addLayout(buttons);
}

// ---- At the bottom

void GrandMasterDialog::showBottom(bool atBottom) {
  m_atBottom = atBottom;
  theme::setState(&m_level, "state", atBottom ? "bottom" : "");
  update();
}

void GrandMasterDialog::paintEvent(QPaintEvent* event) {
  FormDialog::paintEvent(event);
  if (!m_atBottom) return;
  constexpr int Wide = 2;
  QPainter painter(this);
  painter.setPen(QPen(theme::colour("stageText"), Wide, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

// ---- The keys

/// No button is the default: Enter behind a typed number may not end the way back to the levels from before.
void GrandMasterDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) FormDialog::keyPressEvent(event);
}

// ---- Its place

/// Always at the same one, in the corner where the tools are that open it: the hand finds it there.
void GrandMasterDialog::takePlace() {
  fit();
  move(within({m_frame.ground().topLeft(), geometry().size() + decoration()}, room()).topLeft());
}

void GrandMasterDialog::appear() {
  m_fader.setFocus();
}

/// On a low screen the fader gets shorter.
void GrandMasterDialog::fit() {
  constexpr QSize Usual(236, 428);  // below the title
  const QSize least = layout()->minimumSize();
  setFixedSize(Usual.boundedTo(room().size() - decoration()).expandedTo(least));
}

/// Below the band.
QRect GrandMasterDialog::room() const {
  const QRect screen = m_frame.screen()->availableGeometry();
  return {QPoint(screen.left(), std::max(screen.top(), m_frame.band().bottom() + 1)), screen.bottomRight()};
}

void GrandMasterDialog::moveEvent(QMoveEvent* event) {
  FormDialog::moveEvent(event);
  m_moving.start();
}

void GrandMasterDialog::stepAside() {
  if (isVisible() && frameGeometry().intersects(m_frame.band()))
    move(within(frameGeometry(), room()).topLeft());
}

}  // namespace velgrove
