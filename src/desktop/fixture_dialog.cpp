#include "desktop/fixture_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QScreen>
#include <algorithm>

#include "desktop/dress.h"
#include "desktop/room.h"
#include "desktop/theme.h"
#include "desktop/twips.h"

namespace velgrove {
namespace {

constexpr int FullLevel = 255;
constexpr int OnePercent = 3;  // DMX values: a step that always comes to the next whole percent
constexpr int TenPercent = 26;

bool isText(std::size_t index) {
  return index != FixtureForm::NoText;
}

}  // namespace

template <class Dialog>
FixtureDialog::Parts FixtureDialog::partsOf(const char* name, Dialog& dialog, const char* sliderName,
                                            Slider& slider) {
  return {
      .name = name, .form = dialog.Dialog, .sliderName = sliderName, .slider = slider, .close = [&dialog] {
        dialog.Unload();
      }};
}

FixtureDialog::FixtureDialog(FrameWindow& frame, Face& face, LightingDesk& desk, FixtureDlg& dialog)
    : FixtureDialog(frame, face, desk, partsOf("FixtureDlg", dialog, "VSlider1", dialog.VSlider1)) {
  orderFocus();
}

FixtureDialog::FixtureDialog(FrameWindow& frame, Face& face, LightingDesk& desk, MovingFixtureDlg& dialog)
    : FixtureDialog(frame, face, desk, partsOf("MovingFixtureDlg", dialog, "VSlider2", dialog.VSlider2)) {
  m_position = new PositionPanel(bindings(), dialog);
  m_settings->addSpacing(12);
  m_settings->addWidget(m_position);
  orderFocus();
}

FixtureDialog::FixtureDialog(FrameWindow& frame, Face& face, LightingDesk& desk, const Parts& parts)
    : FormDialog(parts.name, &frame, face, parts.form.Window, parts.close),
      m_frame(frame),
      m_desk(desk),
      m_form(parts.form),
      m_symbol(bindings(), [this] { return subject(); }) {
  dress(parts.sliderName);
  layOut();
  bindControls(parts.slider);
  bindProperties();
  bindState();
}

// ---- Names and ties

void FixtureDialog::dress(const char* sliderName) {
  dressAll({{&m_channel, "Channel", "DMX channel"},
            {&m_level, "Level", "Level, per cent"},
            {&m_arrows, "UpDown1", "Step: level"},
            {&m_name, "Moniker", "Name of the light"},
            {&m_fader, sliderName, "Level, 0 to 255"},
            {&m_tabs, "TabStrip1", "Pages of the fixture"},
            {&m_ok, "Command1", "OK"},
            {&m_cancel, "CancelButton", "Cancel"}});
  m_channel.setProperty("type", "channel");
  m_level.setProperty("type", "level");
  m_name.setProperty("type", "moniker");
  for (QPushButton* button : {&m_ok, &m_cancel}) button->setProperty("role", "dialog");
  setDefault(m_ok);
  m_fader.setSingleStep(OnePercent);
  m_fader.setPageStep(TenPercent);
  std::vector<Fader::ScaleMark> scale{{.value = FullLevel, .words = "FL"}};
  for (const int percent : {75, 50, 25, 0})
    scale.push_back({.value = PctToDMX(static_cast<float>(percent)), .words = QString::number(percent)});
  m_fader.setScale(std::move(scale));
}

void FixtureDialog::bindControls(Slider& slider) {
  FixtureForm& form = m_form;
  m_channelCaption.setBuddy(&m_channel);
  m_levelCaption.setBuddy(&m_level);
  bindings().bind(&m_channelCaption, [&form] { return &form.lblChannel; });
  bindings().bind(&m_nameCaption, [&form] { return &form.lblMoniker; });
  bindings().bind(&m_levelCaption, [&form] { return &form.lblLevel; });
  bindings().bind(&m_name, [&form] { return &form.Moniker; });
  bindings().bind(&m_channel, [&form] { return &form.Channel; });
  bindings().bind(&m_level, [&form] { return &form.Level; });
  bindings().bind(&m_arrows, [&form] { return &form.UpDown1; });
  bindings().bind(&m_fader, [&slider] { return &slider; });
  bindings().bind(&m_tabs, [&form] { return &form.TabStrip1; });
  bindings().bind(&m_ok, [&form] { return &form.Command1; });
  bindings().bind(&m_cancel, [&form] { return &form.CancelButton; });
}

void FixtureDialog::bindProperties() {
  for (std::size_t i = 0; i < m_texts.size(); ++i) {
    if (!isText(i)) continue;
    m_texts[i].setObjectName(QString("Text1_%1").arg(i));
    m_textLabels[i].setObjectName(i == 1 ? QString("Area") : QString("TextLabels_%1").arg(i));
    m_textLabels[i].setBuddy(&m_texts[i]);
    bindings().bind(&m_textLabels[i], [this, i] { return &m_form.TextLabels[i]; });
    bindings().bind(&m_texts[i], [this, i] { return &m_form.Text1[i]; });
    bindings().mirror([this, i] { return m_form.TextLabels[i].Caption; },
                      [this, i](const std::string& caption) {
                        m_texts[i].setAccessibleName(QString::fromStdString(caption));
                      });
  }
}

void FixtureDialog::bindState() {
  bindings().mirror(
      [this] { return std::pair(m_form.Frame1[0].Visible, m_form.Frame1[1].Visible); },
      [this](const std::pair<bool, bool>& visible) {
        m_pages.setCurrentIndex(visible.first ? FixtureForm::Settings : FixtureForm::Properties);
      });
  bindings().mirror([this] { return held(); }, [this](const Held& held) { show(held); });
  bindings().mirror(
      [this] { return m_form.Window.MousePointer; },
      [this](int pointer) { pointer == pointers::Cross ? setCursor(Qt::CrossCursor) : unsetCursor(); });
  // Last: the fields have their texts when the level is marked.
  m_place = bindings().mirror([this] { return place(); },
                              [this](const Place& place) {
                                if (!place.visible) return;
                                if (m_stands != place) takePlace();
                                focusFirst(FixtureForm::Settings);
                              });
}

/// The fixture as long as the plot holds it: when another show was opened, its numbers mean other shapes.
FixtureSymbol::Subject FixtureDialog::subject() const {
  const frmDocument* plot = m_desk.windows.ActiveDocument;
  const auto& fixture = m_desk.show.CurrentFixture;
  if (!m_form.Window.Visible || plot == nullptr || plot->ActiveView == nullptr) return {};
  const auto& fixtures = plot->ActiveView->colFixtures();
  if (std::ranges::find(fixtures, fixture) == fixtures.end()) return {};
  return {.plot = plot, .fixture = fixture};
}

FixtureDialog::Held FixtureDialog::held() const {
  const ShowState& show = m_desk.show;
  const int channel = show.CurrentFixture == nullptr ? 0 : show.CurrentFixture->Channel;
  const bool patched = channel >= 1 && channel <= ChannelCount;
  return {.blind = show.BlindOn, .input = patched ? show.DMXInput[static_cast<std::size_t>(channel - 1)] : 0};
}

void FixtureDialog::show(const Held& held) {
  m_fader.setFill(held.blind ? "blind" : "manual");
  const int percent = qRound(DMXToPct(static_cast<std::int16_t>(held.input)));
  m_fader.setMark(percent > 0 ? std::optional(held.input) : std::nullopt);
  m_inputHolds.setLevel(percent);
  theme::setState(&m_level, "state", held.blind ? "blind" : "stage");
}

// ---- Layout

QWidget* FixtureDialog::makeSettings() {
  auto* naming = new QVBoxLayout;
  naming->setSpacing(4);
  naming->addWidget(&m_channelCaption);
  m_channel.setFixedWidth(92);
  naming->addWidget(&m_channel);
  naming->addSpacing(14);
  naming->addWidget(&m_nameCaption);
  m_name.setFixedWidth(106);
  naming->addWidget(&m_name);
  naming->addStretch(1);
  auto* head = new QHBoxLayout;
  head->setSpacing(14);
  head->addWidget(&m_symbol, 0, Qt::AlignTop);
  head->addLayout(naming);
  head->addStretch(1);
  auto* left = new QVBoxLayout;
  left->setSpacing(4);
  left->addLayout(head);
  left->addSpacing(10);
  left->addWidget(&m_levelCaption);
  m_level.setFixedWidth(190);
  left->addWidget(&m_level);
  left->addSpacing(8);
  left->addWidget(&m_inputHolds);
  left->addStretch(1);
  for (QLabel* caption : {&m_channelCaption, &m_nameCaption, &m_levelCaption})
    caption->setProperty("tone", "quiet");

  auto* page = new QWidget;
  page->setObjectName("Frame1_0");
  m_settings = new QHBoxLayout(page);
  m_settings->setContentsMargins(16, 16, 24, 16);
  m_settings->setSpacing(12);
  m_settings->addLayout(left);
  m_settings->addStretch(1);
  m_settings->addWidget(&m_fader);
  return page;
}

QWidget* FixtureDialog::makeProperties() {
  auto* page = new QWidget;
  page->setObjectName("Frame1_1");
  auto* rows = new QGridLayout(page);
  rows->setContentsMargins(16, 10, 21, 10);
  rows->setHorizontalSpacing(12);
  rows->setVerticalSpacing(4);
  int row = 0;
  for (std::size_t i = 0; i < m_texts.size(); ++i) {
    if (!isText(i)) continue;
    m_textLabels[i].setProperty("tone", "quiet");
    m_texts[i].setProperty("type", "property");
    rows->addWidget(&m_textLabels[i], row, 0, Qt::AlignRight | Qt::AlignVCenter);
    rows->addWidget(&m_texts[i], row, 1);
    rows->setRowStretch(row++, 1);
  }
  rows->setColumnStretch(1, 1);
  return page;
}

void FixtureDialog::layOut() {
  m_pages.addWidget(makeSettings());
  m_pages.addWidget(makeProperties());
  m_pages.setObjectName("pages");
  connect(&m_pages, &QStackedWidget::currentChanged, this, [this](int page) {
    if (!m_tabs.hasFocus()) focusFirst(page);
  });
  m_scroll.setObjectName("pane");
  m_scroll.setWidget(&m_pages);
  m_scroll.setWidgetResizable(true);
  m_scroll.setFocusPolicy(Qt::NoFocus);
  m_tabs.setDrawBase(false);
  m_tabs.setExpanding(false);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  buttons->addStretch(1);
  buttons->addWidget(&m_ok);
  buttons->addWidget(&m_cancel);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(15, 12, 15, 15);
  all->setSpacing(0);
  all->addWidget(&m_tabs);
  all->addSpacing(-1);  // the tab in front stands open to its page
  all->addWidget(&m_scroll, 1);
  all->addSpacing(10);
  all->addLayout(buttons);
  m_tabs.raise();
}

void FixtureDialog::orderFocus() {
  std::vector<QWidget*> way{&m_level, &m_fader};
  if (m_position != nullptr)
    for (QWidget* control : m_position->controls()) way.push_back(control);
  way.push_back(&m_channel);
  for (std::size_t i = 0; i < m_texts.size(); ++i)
    if (isText(i)) way.push_back(&m_texts[i]);
  for (QWidget* last : std::initializer_list<QWidget*>{&m_ok, &m_cancel, &m_tabs}) way.push_back(last);
  for (std::size_t i = 1; i < way.size(); ++i) setTabOrder(way[i - 1], way[i]);
}

/// Both pages are as large as the larger one. What a small screen can't hold scrolls.
void FixtureDialog::fit() {
  constexpr QSize Usual(476, 448);  // below the title
  constexpr int WidthOfMoving = 660;
  constexpr int Frame = 2;  // of the pane
  const QSize beside = layout()->sizeHint() - m_scroll.sizeHint();
  QSize whole = m_pages.sizeHint() + QSize(Frame, Frame) + beside;
  whole = whole.expandedTo(m_position == nullptr ? Usual : QSize(WidthOfMoving, Usual.height()));
  setFixedSize(whole.boundedTo(m_frame.screen()->availableGeometry().size() - decoration()));
}

void FixtureDialog::changeEvent(QEvent* event) {
  FormDialog::changeEvent(event);
  if (event->type() == QEvent::StyleChange && isVisible()) fit();
}

void FixtureDialog::focusFirst(int page) {
  Field& first = page == FixtureForm::Settings ? m_level : m_texts[0];
  first.setFocus();
  first.selectAll();
}

// ---- Its place

void FixtureDialog::takePlace() {
  fit();
  m_stands = m_place->value;
  standBeside(m_frame.plotCorner(m_stands.document) + m_stands.pointer);
}

void FixtureDialog::appear() {
  m_wheel.watch();
  fit();
}

FixtureDialog::Place FixtureDialog::place() const {
  const frmDocument* document = m_desk.windows.ActiveDocument;
  return {.visible = m_form.Window.Visible,
          .pointer = placeOf(m_form.Window).topLeft(),
          .document = document == nullptr ? 0 : document->Window.Identity};
}

/// Beside the fixture that was pointed at, on the ground below the band if that holds it.
void FixtureDialog::standBeside(QPoint pointer) {
  constexpr int Gap = 40;  // half a fixture
  const QSize size = geometry().size() + decoration();
  const QRect screen = m_frame.screen()->availableGeometry();
  const QRect ground = m_frame.ground() & screen;
  const QRect room(QPoint(screen.left(), ground.height() < size.height() ? screen.top() : ground.top()),
                   screen.bottomRight());
  QPoint corner(pointer.x() + Gap, pointer.y() - size.height() / 2);
  if (corner.x() + size.width() > room.right() + 1) corner.setX(pointer.x() - Gap - size.width());
  move(within({corner, size}, room).topLeft());
}

// ---- The wheel

void FixtureDialog::turn(int rotation) {
  bindings().face().deliver([this, rotation] {
    bool handled = false;
    const auto& wheeled = m_form.MouseHelper1.MouseWheel;
    if (m_form.Window.Visible && wheeled) wheeled(rotation, handled);
  });
}

}  // namespace velgrove
