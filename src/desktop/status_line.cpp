#include "desktop/status_line.h"

#include <QHBoxLayout>
#include <QPainter>

#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr int IconSize = 16;

/// The icon and its words beside each other, as one part of the bar.
QWidget* together(std::initializer_list<QWidget*> parts) {
  auto* both = new QWidget;
  auto* row = new QHBoxLayout(both);
  row->setContentsMargins(8, 0, 8, 0);
  row->setSpacing(6);
  for (QWidget* part : parts) row->addWidget(part);
  return both;
}

}  // namespace

StatusLine::StatusLine(LightingDesk& desk, Bindings& bindings) {
  setObjectName("sbStatusBar");
  setSizeGripEnabled(false);
  m_online.setObjectName("online");
  m_message.setObjectName("message");
  m_input.setObjectName("inputMode");
  m_mode.setObjectName("displayMode");
  m_interface.setObjectName("interfaceState");
  m_pointerPlace.setObjectName("pointerPlace");
  m_pointerFixture.setObjectName("pointerFixture");
  for (QLabel* label :
       std::initializer_list<QLabel*>{&m_online, &m_pointerPlace, &m_pointerFixture, &m_message})
    label->setContentsMargins(8, 0, 8, 0);
  for (QLabel* label : {&m_online, &m_pointerFixture, &m_input, &m_mode, &m_interface})
    label->setTextFormat(Qt::PlainText);
  addWidget(&m_online);
  addWidget(&m_pointerPlace);
  addWidget(&m_pointerFixture);
  addWidget(&m_message, 1);
  addPermanentWidget(together({&m_inputIcon, &m_input}));
  addPermanentWidget(together({&m_mode}));
  addPermanentWidget(together({&m_lamp, &m_interfaceIcon, &m_interface}));
  m_interfaceIcon.setPixmap(
      theme::picture("ID_viewStatus", IconSize, theme::colour("text2"), devicePixelRatioF()));
  sizePointer();

  bindings.mirror([&desk] { return desk.frame.sbStatusBar.Text; },
                  [this](const std::string& text) { m_online.setText(QString::fromStdString(text)); });
  bindings.mirror([&desk] { return desk.frame.StatusMessage; },
                  [this](const std::string& text) { m_message.setText(QString::fromStdString(text)); });
  bindings.mirror([this, &desk] { return m_underPointer.read(desk); },
                  [this](const UnderPointer::Look& now) {
                    m_pointerPlace.setText(QString::fromStdString(now.placeText()));
                    m_pointerPlace.setToolTip(QString::fromStdString(now.name));
                    m_pointerFixture.setText(QString::fromStdString(now.fixtureText()));
                  });
  bindings.mirror([&desk] { return std::pair(desk.show.DMXDimmers, desk.show.DMXSubmasters); },
                  [this](const std::pair<bool, bool>& mode) {
                    if (mode.first)
                      showInput("ID_manualOn", "Input To Fixtures");
                    else if (mode.second)
                      showInput("ID_subsOn", "Input to Subs");
                    else
                      showInput("ID_noInput", "No Input");
                  });
  bindings.mirror([&desk] { return std::pair(desk.show.BlindOn, desk.show.LiveOn); },
                  [this](const std::pair<bool, bool>& mode) {
                    if (mode.first)
                      showMode("Blind", "blindFill");
                    else if (mode.second)
                      showMode("Live", "nextLit");
                    else
                      showMode("Stage", "");
                  });
  bindings.mirror([&desk] { return interfaceOf(desk); },
                  [this](const Interface& now) { showInterface(now); });
}

/// As wide as the longest that they say on a plot in sight, so that nothing moves with the mouse.
void StatusLine::sizePointer() {
  constexpr int Margins = 2 * 8 + 2;
  const UnderPointer::Look longest{
      .place = std::pair(-8888, -8888),
      .fixture = UnderPointer::Fixture{.channel = 888, .type = "practical", .level = 100, .blind = 100}};
  for (const auto& [label, text] :
       {std::pair<QLabel*, std::string>(&m_pointerPlace, longest.placeText()),
        std::pair<QLabel*, std::string>(&m_pointerFixture, longest.fixtureText())})
    label->setFixedWidth(label->fontMetrics().horizontalAdvance(QString::fromStdString(text)) + Margins);
}

void StatusLine::changeEvent(QEvent* event) {
  QStatusBar::changeEvent(event);
  if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) sizePointer();
}

/// On a small screen the interface's state comes first.
void StatusLine::resizeEvent(QResizeEvent* event) {
  QStatusBar::resizeEvent(event);
  constexpr int RoomForPointer = 900;
  for (QLabel* label : std::initializer_list<QLabel*>{&m_pointerPlace, &m_pointerFixture})
    label->setVisible(width() >= RoomForPointer);
}

StatusLine::Interface StatusLine::interfaceOf(const LightingDesk& desk) {
  const VelgroveComm& comm = desk.windows.Comm;
  const bool up =
      comm.getCurrentStatus() == Link::Up && comm.SendTimer.enabled() && comm.Condition.Caption.empty();
  const Lamp dark = desk.Splash.Window.Visible ? Lamp::Starting : Lamp::None;
  return {.lamp = up ? Lamp::Up : dark, .text = comm.Version.Caption};
}

const char* StatusLine::wordsOf(Lamp lamp) {
  switch (lamp) {
    case Lamp::Up:
      return "Interface up";
    case Lamp::Starting:
      return "Interface starts";
    case Lamp::None:
      return "No interface";
  }
  return "";
}

void StatusLine::showInput(const QString& tool, const QString& words) {
  m_inputIcon.setPixmap(theme::picture(tool, IconSize, theme::colour("text2"), devicePixelRatioF()));
  m_input.setText(words);
}

void StatusLine::showMode(const QString& words, const char* background) {
  m_mode.setText(words);
  const QString name = background;
  m_mode.setStyleSheet(name.isEmpty()
                           ? QString()
                           : QString("background: %1; color: %2; padding: 0 8px;")
                                 .arg(theme::colour(background).name(), theme::colour("nextInk").name()));
}

/// A disc while the interface is up, a ring while it starts, a triangle when there is none.
void StatusLine::showInterface(const Interface& now) {
  m_interface.setText(QString::fromStdString(now.text));
  m_lamp.setAccessibleName(wordsOf(now.lamp));
  constexpr int Size = 12;
  QPixmap lamp(QSize(Size, Size) * devicePixelRatioF());
  lamp.setDevicePixelRatio(devicePixelRatioF());
  lamp.fill(Qt::transparent);
  QPainter painter(&lamp);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor colour = theme::colour(now.lamp == Lamp::None ? "text" : "ok");
  painter.setPen(QPen(colour, 2));
  painter.setBrush(now.lamp == Lamp::Up ? QBrush(colour) : QBrush(Qt::NoBrush));
  if (now.lamp == Lamp::None)
    painter.drawPolygon(QPolygonF{QPointF(6, 2), QPointF(11, 10), QPointF(1, 10)});
  else
    painter.drawEllipse(QRectF(2, 2, 8, 8));
  painter.end();
  m_lamp.setPixmap(lamp);
}

}  // namespace velgrove
