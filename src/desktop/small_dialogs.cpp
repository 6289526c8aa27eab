#include "desktop/small_dialogs.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr int TravelInterval = 40;  // ms

void dress(QPushButton& button, const char* name) {
  button.setObjectName(name);
  button.setProperty("role", "dialog");
}

}  // namespace

// ---- Splash

SplashWindow::SplashWindow(QWidget* above, Face& face, frmSplash& form)
    : FormDialog(
          "frmSplash", above, face, form.Window, [] {}, Qt::SplashScreen),
      m_form(form) {
  setFixedSize(480, 240);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(36, 40, 36, 30);
  auto* name = new QLabel("Velgrove");
  name->setObjectName("splashName");
  auto* words = new QLabel("Lighting desk for the theatre");
  words->setProperty("tone", "quiet");
  m_status.setObjectName("splashStatus");
  m_status.setProperty("tone", "quiet");
  column->addWidget(name);
  column->addWidget(words);
  column->addStretch(1);
  column->addWidget(&m_status);
  column->addSpacing(16);
  bindings().bind(&m_status, [&form] { return &form.Status; });
  m_travel.setInterval(TravelInterval);
  connect(&m_travel, &QTimer::timeout, this, [this] {
    ++m_step;
    update(0, height() - 24, width(), 24);
  });
}

void SplashWindow::appear() {
  const QRect screen = QApplication::primaryScreen()->availableGeometry();
  move(screen.center() - QPoint(width() / 2, height() / 2 + screen.height() / 8));
  m_told = false;
  m_travel.start();
}

void SplashWindow::hideEvent(QHideEvent* event) {
  m_travel.stop();
  FormDialog::hideEvent(event);
}

void SplashWindow::paintEvent(QPaintEvent* event) {
  FormDialog::paintEvent(event);
  QPainter painter(this);
  painter.setPen(theme::colour("edge"));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  constexpr int Lamps = 12;
  constexpr double Reach = 3;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const double lit = std::fmod(m_step * 0.3, Lamps + 2 * Reach) - Reach;
  for (int lamp = 0; lamp < Lamps; ++lamp) {
    QColor glow = theme::colour("text");
    glow.setAlphaF(static_cast<float>(std::max(0.12, 1 - std::abs(lamp - lit) / Reach)));
    painter.setBrush(glow);
    painter.drawEllipse(QPointF(40 + lamp * (width() - 80) / (Lamps - 1.0), height() - 18), 4, 4);
  }
  if (std::exchange(m_told, true)) return;
  QMetaObject::invokeMethod(
      this, [this] { bindings().face().deliver([this] { m_form.Painted = true; }); }, Qt::QueuedConnection);
}

// ---- The interface's window

StatusWindow::StatusWindow(QWidget* above, Face& face, VelgroveComm& comm)
    : FormDialog("VelgroveComm", above, face, comm.Window, [&comm] { comm.Window.Visible = false; }) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(16, 14, 16, 16);
  column->setSpacing(8);
  m_title.setObjectName("Label1");
  m_version.setObjectName("Version");
  m_version.setProperty("type", "desc");
  m_condition.setObjectName("Condition");
  m_condition.setWordWrap(true);
  m_progress.setObjectName("ProgressBar1");
  m_progress.setAccessibleName("Interface start");
  m_progress.setTextVisible(false);
  m_progress.setRange(0, 100);
  m_progress.setFixedHeight(10);
  for (QWidget* part : std::initializer_list<QWidget*>{&m_title, &m_version, &m_progress, &m_condition})
    column->addWidget(part);
  column->addStretch(1);
  setFixedSize(380, 150);
  bindings().bind(&m_title, [&comm] { return &comm.Label1; });
  bindings().bind(&m_version, [&comm] { return &comm.Version; });
  bindings().bind(&m_condition, [&comm] { return &comm.Condition; });
  bindings().mirror([&comm] { return std::pair(comm.ProgressBar1.Value, comm.ProgressBar1.BarColour); },
                    [this](const std::pair<int, Colour>& bar) {
                      constexpr Colour Red = 255;
                      m_progress.setValue(bar.first);
                      theme::setState(&m_progress, "state", bar.second == Red ? "red" : "green");
                    });
}

/// In the corner, clear of the splash and of the open dialog.
void StatusWindow::appear() {
  constexpr QPoint FromCorner(24, 64);
  const QRect screen = QApplication::primaryScreen()->availableGeometry();
  move(screen.bottomRight() - QPoint(width(), height()) - FromCorner);
}

// ---- The question whether to save

SaveQuestion::SaveQuestion(QWidget* above, Face& face, frmWanttoSave& form)
    : FormDialog("frmWanttoSave", above, face, form.Window, [&form] { form.Form_QueryUnload(); }) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(20, 20, 20, 16);
  column->setSpacing(20);
  m_words.setObjectName("Label1");
  m_words.setProperty("type", "desc");
  column->addWidget(&m_words);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  for (auto [button, name] :
       {std::pair(&m_save, "Save"), std::pair(&m_dontSave, "DontSave"), std::pair(&m_cancel, "Cancel")}) {
    dress(*button, name);
    row->addWidget(button);
  }
  setDefault(m_save);
  column->addLayout(row);
  setMinimumWidth(460);
  bindings().bind(&m_words, [&form] { return &form.Label1; });
  bindings().bind(&m_save, [&form] { return &form.Save; });
  bindings().bind(&m_dontSave, [&form] { return &form.DontSave; });
  bindings().bind(&m_cancel, [&form] { return &form.Cancel; });
}

// ---- The warning before a paste

PasteQuestion::PasteQuestion(QWidget* above, Face& face, frmConfirmPaste& form)
    : FormDialog("frmConfirmPaste", above, face, form.Window, [&form] { form.Unload(); }) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(20, 20, 20, 16);
  column->setSpacing(8);
  m_question.setObjectName("Question");
  m_warning.setObjectName("Warning");
  m_warning.setProperty("tone", "quiet");
  column->addWidget(&m_question);
  column->addWidget(&m_warning);
  column->addSpacing(12);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  for (auto [button, name] : {std::pair(&m_yes, "Yes"), std::pair(&m_no, "No")}) {
    dress(*button, name);
    row->addWidget(button);
  }
  setDefault(m_no);
  column->addLayout(row);
  bindings().bind(&m_question, [&form] { return &form.Question; });
  bindings().bind(&m_warning, [&form] { return &form.Warning; });
  bindings().bind(&m_yes, [&form] { return &form.Yes; });
  bindings().bind(&m_no, [&form] { return &form.No; });
}

// ---- About

AboutWindow::AboutWindow(QWidget* above, Face& face, frmAbout& form)
    : FormDialog("frmAbout", above, face, form.Window, [&form] { form.Unload(); }) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(24, 24, 24, 16);
  column->setSpacing(20);
  m_words.setObjectName("Description");
  column->addWidget(&m_words);
  dress(m_ok, "cmdOK");
  setDefault(m_ok);
  column->addWidget(&m_ok, 0, Qt::AlignRight);
  setMinimumWidth(320);
  bindings().bind(&m_words, [&form] { return &form.Description; });
  bindings().bind(&m_ok, [&form] { return &form.cmdOK; });
}

}  // namespace velgrove
