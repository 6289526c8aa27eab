#include "desktop/status_line.h"

#include <QHBoxLayout>
#include <QPainter>

#include "desktop/marks.h"
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
  m_pointerPlace.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
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
  drawIcons();
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
                      showMode("Blind", "blind");
                    else if (mode.second)
                      showMode("Live", "live");
                    else
                      showMode("Stage", "");
                  });
  bindings.mirror([&desk] { return desk.interfaceState(); },
                  [this](const InterfaceState& now) { showInterface(now); });
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
  if (event->type() == QEvent::StyleChange) drawIcons();
}

/// On a small screen the interface's state comes first.
void StatusLine::resizeEvent(QResizeEvent* event) {
  QStatusBar::resizeEvent(event);
  constexpr int RoomForPointer = 900;
  for (QLabel* label : std::initializer_list<QLabel*>{&m_pointerPlace, &m_pointerFixture})
    label->setVisible(width() >= RoomForPointer);
}

void StatusLine::showInput(const QString& tool, const QString& words) {
  m_inputTool = tool;
  m_input.setText(words);
  drawIcons();
}

void StatusLine::showMode(const QString& words, const char* state) {
  m_mode.setText(words);
  theme::setState(&m_mode, "state", state);
}

void StatusLine::showInterface(const InterfaceState& now) {
  m_lampShows = now.lamp;
  m_interface.setText(QString::fromStdString(now.text));
  m_lamp.setAccessibleName(wordsOf(now.lamp));
  drawIcons();
}

void StatusLine::drawIcons() {
  const auto draw = [this](const QString& name) {
    return theme::picture(name, IconSize, theme::colour("text2"), devicePixelRatioF());
  };
  m_interfaceIcon.setPixmap(draw("ID_viewStatus"));
  m_inputIcon.setPixmap(draw(m_inputTool));
  constexpr int Size = 12;
  QPixmap lamp(QSize(Size, Size) * devicePixelRatioF());
  lamp.setDevicePixelRatio(devicePixelRatioF());
  lamp.fill(Qt::transparent);
  QPainter painter(&lamp);
  drawLamp(painter, m_lampShows, QRectF(0, 0, Size, Size),
           theme::colour(m_lampShows == InterfaceState::Lamp::None ? "text" : "ok"));
  painter.end();
  m_lamp.setPixmap(lamp);
}

}  // namespace velgrove
