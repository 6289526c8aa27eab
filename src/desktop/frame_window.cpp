#include "desktop/frame_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/bars_window.h"
#include "desktop/check_window.h"
#include "desktop/effects_window.h"
#include "desktop/keys_window.h"
#include "desktop/show_keys.h"
#include "desktop/show_view_window.h"
#include "desktop/spoken.h"
#include "desktop/theme.h"
#include "desktop/twips.h"

namespace velgrove {
namespace {

template <class Forms>
std::vector<unsigned> identitiesOf(const Forms& forms) {
  std::vector<unsigned> identities;
  identities.reserve(forms.size());
  for (const auto& form : forms) identities.push_back(form->Window.Identity);
  return identities;
}

template <class Forms>
auto* withIdentity(const Forms& forms, unsigned identity) {
  const auto found =
      std::ranges::find_if(forms, [&](const auto& form) { return form->Window.Identity == identity; });
  return found == forms.end() ? nullptr : found->get();
}

/// Takes the windows away whose forms are gone, and makes those of new ones.
template <class Shown, class Add>
void showAll(Shown& shown, const std::vector<unsigned>& identities, Add add) {
  std::erase_if(shown, [&](const auto& known) {
    const bool gone = std::ranges::find(identities, known.first) == identities.end();
    if (gone) {
      known.second->deleteLater();
      known.second->hide();
    }
    return gone;
  });
  for (const unsigned identity : identities)
    if (!shown.contains(identity)) add(identity);
}

}  // namespace

FrameWindow::FrameWindow(LightingDesk& desk, Face& face)
    : m_desk(desk), m_face(face), m_bindings(face), m_tools(desk, m_bindings) {
  setObjectName("frmMain");
  setMinimumSize(640, 400);
  setContextMenuPolicy(Qt::DefaultContextMenu);
  build();
  size();
  bindFrame();
  bindRequests();
}

/// The toolkit closes the window behind this, and its children still tell who is active.
FrameWindow::~FrameWindow() {
  m_children->disconnect(this);
}

// ---- What stands in the frame

void FrameWindow::build() {
  m_tools.fill(*menuBar());
  auto* all = new QWidget;
  all->setObjectName("page");
  auto* column = new QVBoxLayout(all);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  m_band = new ShowBar(m_desk, m_tools, m_bindings);
  column->addWidget(m_band);
  column->addWidget(makeBanner());
  auto* middle = new QHBoxLayout;
  middle->setSpacing(0);
  m_toolColumn = makeToolColumn();
  middle->addWidget(scrolling(m_toolColumn));
  m_children = new ChildArea;
  middle->addWidget(m_children, 1);
  auto* upper = new QWidget;
  upper->setLayout(middle);
  middle->setContentsMargins(0, 0, 0, 0);
  m_splitter = new QSplitter(Qt::Vertical);
  m_splitter->setObjectName("SSSplitter1");
  m_splitter->setChildrenCollapsible(false);
  m_splitter->addWidget(upper);
  m_strip = new SubStrip(m_desk, m_bindings);
  m_strip->hide();
  m_splitter->addWidget(m_strip);
  connect(m_strip, &SubStrip::heightChanged, this, [this] {  // a splitter gives nothing back by itself
    const int strip = m_strip->height();
    m_splitter->setSizes({m_splitter->height() - m_splitter->handleWidth() - strip, strip});
  });
  m_splitter->setStretchFactor(0, 1);
  m_splitter->handle(1)->setEnabled(false);  // the strip has one height
  m_splitter->handle(1)->unsetCursor();
  column->addWidget(m_splitter, 1);
  setCentralWidget(all);
  setStatusBar(new StatusLine(m_desk, m_bindings));

  addPlayer({.window = "XYQueueList", .list = "ListView1", .editorSuffix = "1", .spoken = "XY cues"},
            &Windows::XYQ, ChildArea::Place::UpperList);
  addPlayer({.window = "ABQueueList", .list = "ListView2", .editorSuffix = "", .spoken = "AB cues"},
            &Windows::ABQ, ChildArea::Place::LowerList);
  addFloating<EffectsQueue, EffectsWindow>(m_desk.windows.Effects, &EffectsQueue::Unload);
  addFloating<frmCheckShow, CheckWindow>(m_desk.windows.CheckShow, &frmCheckShow::Unload);
  addFloating<frmShowView, ShowViewWindow>(m_desk.windows.ShowView, &frmShowView::Close);
  addFloating<frmKeys, KeysWindow>(m_desk.windows.Keys, &frmKeys::Unload);
  connect(m_children, &QMdiArea::subWindowActivated, this, &FrameWindow::onActivated);
  connect(new QShortcut(Qt::Key_F6, this), &QShortcut::activated, this, &FrameWindow::focusNextPart);
  m_children->takeKeysOf(*this);
  new ShowKeys(m_desk, m_face, m_tools, *this);
}

/// On a low screen the tools scroll, by the wheel and with the focus.
QWidget* FrameWindow::scrolling(QWidget* column) {
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidgetResizable(true);
  area->setWidget(column);
  return area;
}

QWidget* FrameWindow::makeToolColumn() {
  auto* column = new QWidget;
  column->setObjectName("toolColumn");
  column->setAttribute(Qt::WA_StyledBackground);
  auto* tools = new QVBoxLayout(column);
  tools->setContentsMargins(4, 4, 4, 4);
  tools->setSpacing(2);
  const char* const ids[] = {"ID_SelectPointer",
                             "ID_Stop",
                             "-",
                             "ID_AddLight",
                             "ID_DelLight",
                             "ID_Rotate",
                             "-",
                             "ID_SelectGrid",
                             "ID_ZoomIn",
                             "ID_ZoomOut",
                             "ID_FluidZoom",
                             "ID_Pan",
                             "-",
                             "ID_EnableCAD",
                             "ID_Test"};
  for (const char* id : ids) {
    if (QString(id) == "-") {
      auto* line = new QFrame;
      line->setFrameShape(QFrame::HLine);
      line->setProperty("type", "line");
      tools->addSpacing(3);
      tools->addWidget(line);
      tools->addSpacing(3);
      continue;
    }
    QToolButton* button = m_tools.button(id, false, column);
    button->setProperty("column", true);
    tools->addWidget(button, 0, Qt::AlignHCenter);
  }
  tools->addStretch(1);
  return column;
}

QWidget* FrameWindow::makeBanner() {
  m_banner = new QFrame;
  m_banner->setObjectName("banner");
  m_banner->setFixedHeight(40);
  auto* row = new QHBoxLayout(m_banner);
  row->setContentsMargins(14, 0, 14, 0);
  row->setSpacing(12);
  m_bannerText = new QLabel;
  m_bannerText->setObjectName("bannerText");
  m_bannerMark = new QLabel;
  row->addWidget(m_bannerMark);
  row->addWidget(m_bannerText, 1);
  m_banner->hide();
  speak(*m_banner, {.role = QAccessible::AlertMessage, .name = [this] { return m_bannerText->text(); }});
  return m_banner;
}

void FrameWindow::addPlayer(const CueWindow::Names& names, std::unique_ptr<QueueList> Windows::*player,
                            ChildArea::Place place) {
  const auto find = [this, player] { return (m_desk.windows.*player).get(); };
  auto* window = new ChildWindow(
      new CueWindow(names, m_face, find), m_face,
      [find]() -> Form* {
        QueueList* found = find();
        return found == nullptr ? nullptr : &found->Window;
      },
      [find] {
        if (QueueList* found = find()) (void)found->Form_QueryUnload(false);
      });
  window->hide();
  m_children->add(window, place);
}

/// F6 takes the focus from the window in use to the band, on to the tools beside the plot, to the submasters,
/// and back; within a part Tab goes on.
void FrameWindow::focusNextPart() {
  const auto focusFirst = [](const QWidget& part) {
    for (auto* button : part.findChildren<QAbstractButton*>()) {
      if (!button->isVisible() || !button->isEnabled()) continue;
      button->setFocus(Qt::ShortcutFocusReason);
      return;
    }
  };
  const QWidget* from = QApplication::focusWidget();
  QMdiSubWindow* window = m_children->currentSubWindow();
  const bool fromTools = m_toolColumn->isAncestorOf(from);
  if (m_band->isAncestorOf(from))
    focusFirst(*m_toolColumn);
  else if (fromTools && m_strip->isVisible())
    m_strip->setFocus(Qt::ShortcutFocusReason);
  else if (window != nullptr && (fromTools || m_strip->isAncestorOf(from)))
    window->widget()->setFocus(Qt::ShortcutFocusReason);
  else
    focusFirst(*m_band);
}

/// A window that stands over the plot, as long as the desk. `closed`: its close box was pressed.
template <class Window, class Content>
void FrameWindow::addFloating(Window& window, void (Window::*closed)()) {
  auto* child = new ChildWindow(
      new Content(m_face, window), m_face, [&window] { return &window.Window; },
      [&window, closed] { (window.*closed)(); });
  child->hide();
  m_children->add(child, ChildArea::Place::Floating);
}

QRect FrameWindow::band() const {
  return {m_band->mapToGlobal(QPoint(0, 0)), m_band->rect().size()};
}

QRect FrameWindow::ground() const {
  const QWidget& ground = *m_children->viewport();
  return {ground.mapToGlobal(QPoint(0, 0)), ground.size()};
}

QPoint FrameWindow::plotCorner(unsigned document) const {
  const auto found = m_documents.find(document);
  const PlotView* plot = found == m_documents.end() ? nullptr : found->second->findChild<PlotView*>();
  return plot == nullptr ? ground().topLeft() : plot->mapToGlobal(QPoint(0, 0));
}

std::vector<QRect> FrameWindow::lists() const {
  std::vector<QRect> places;
  for (const CueWindow* list : m_children->findChildren<CueWindow*>())
    if (list->isVisible()) places.emplace_back(list->mapToGlobal(QPoint(0, 0)), list->size());
  return places;
}

QRect FrameWindow::subButton(int index) const {
  return m_strip->button(index);
}

QRect FrameWindow::aboveStrip() const {
  QRect room = screen()->availableGeometry();
  const int strip = m_strip->mapToGlobal(QPoint(0, 0)).y();
  room.setBottom(std::clamp(strip - 1, room.center().y(), room.bottom()));
  return room;
}

// ---- Documents and bars come and go

frmDocument* FrameWindow::documentOf(unsigned identity) const {
  return withIdentity(m_desk.windows.Documents, identity);
}
frmBars* FrameWindow::barsOf(unsigned identity) const {
  return withIdentity(m_desk.windows.Bars, identity);
}

void FrameWindow::showDocuments(const std::vector<unsigned>& identities) {
  showAll(m_documents, identities, [this](unsigned identity) { addDocument(identity); });
  if (!identities.empty()) activateWindow();
}

void FrameWindow::addDocument(unsigned identity) {
  const auto find = [this, identity] { return documentOf(identity); };
  auto* window = new ChildWindow(
      new DocumentWindow(m_face, find, [this] { return mode(); }), m_face,
      [find]() -> Form* {
        frmDocument* found = find();
        return found == nullptr ? nullptr : &found->Window;
      },
      // The light leans on this window: its close box puts it out of the way, and no more.
      [find] {
        if (frmDocument* found = find()) found->Window.WindowState = WindowState::Minimised;
      });
  m_documents.emplace(identity, window);
  m_children->add(window, ChildArea::Place::Plot);
}

void FrameWindow::addBars(unsigned identity) {
  const auto find = [this, identity] { return barsOf(identity); };
  auto* window = new ChildWindow(
      new BarsWindow(m_face, find), m_face,
      [find]() -> Form* {
        frmBars* found = find();
        return found == nullptr ? nullptr : &found->Window;
      },
      [this, find] {
        if (const frmBars* found = find()) m_desk.windows.closeBars(*found);
      });
  window->leavePlaceToContent();
  window->hide();
  m_bars.emplace(identity, window);
  m_children->add(window, ChildArea::Place::Floating);
}

/// The windows of the desk itself come to the front; a dialog in between doesn't count.
void FrameWindow::onActivated(const QMdiSubWindow* window) {
  for (const auto& [identity, child] : m_documents) {
    if (child != window || identity == m_activeDocument) continue;
    m_activeDocument = identity;
    QMetaObject::invokeMethod(
        this,
        [this, identity = identity] {
          m_face.deliver([this, identity] {
            frmDocument* document = documentOf(identity);
            if (document == nullptr) return;
            m_desk.windows.ActiveDocument = document;
            document->Form_Activate();
          });
        },
        Qt::QueuedConnection);
  }
  if (window != nullptr &&
      std::ranges::none_of(m_documents, [window](const auto& known) { return known.second == window; }))
    m_activeDocument = 0;
}

PlotView::Mode FrameWindow::mode() const {
  if (m_desk.show.BlindOn) return PlotView::Mode::Blind;
  return m_desk.show.LiveOn ? PlotView::Mode::Live : PlotView::Mode::Stage;
}

// ---- The frame's own state

void FrameWindow::bindFrame() {
  m_look = m_bindings.mirror(
      [this]() -> Look {
        const Form& form = m_desk.frame.Window;
        return {.caption = form.Caption,
                .visible = form.Visible,
                .state = form.WindowState,
                .place = placeOf(form)};
      },
      [this](const Look& look) { show(look); });
  m_bindings.mirror([this] { return identitiesOf(m_desk.windows.Documents); },
                    [this](const std::vector<unsigned>& identities) { showDocuments(identities); });
  m_bindings.mirror([this] { return identitiesOf(m_desk.windows.Bars); },
                    [this](const std::vector<unsigned>& identities) {
                      showAll(m_bars, identities, [this](unsigned identity) { addBars(identity); });
                    });
  m_bindings.mirror([this] { return m_desk.show.Booth.DimScreen; },
                    [](bool dim) { theme::apply(dim ? Tone::Dim : Tone::Usual); });
  m_bindings.mirror([this] { return m_desk.frame.SubPaneVisible; },
                    [this](bool visible) { m_strip->setVisible(visible); });
  m_bindings.mirror([this] { return m_desk.windows.Comm.Condition.Caption; },
                    [this](const std::string& condition) {
                      m_bannerText->setText(QString::fromStdString(condition));
                      m_banner->setVisible(!condition.empty());
                      if (condition.empty()) return;
                      QAccessibleEvent alert(m_banner, QAccessible::Alert);
                      QAccessible::updateAccessibility(&alert);
                    });
}

void FrameWindow::bindRequests() {
  m_bindings.mirror([this] { return std::pair(m_desk.frame.Arrange.How, m_desk.frame.Arrange.Count); },
                    [this](const std::pair<Arrangement::Code, unsigned>& asked) {
                      if (asked.second > 0) m_children->arrange(asked.first);
                    });
  m_bindings.mirror([this] { return m_desk.frame.Window.Fronts; },
                    [this](unsigned fronts) {
                      if (fronts > 0 && isVisible()) activateWindow();
                    });
  struct Asked {
    ToolBars::PopUp popUp;
    bool operator==(const Asked& other) const { return popUp.Count == other.popUp.Count; }
  };
  m_bindings.mirror([this] { return Asked{m_desk.frame.SSActiveToolBars1.lastPopUp()}; },
                    [this](const Asked& asked) {
                      if (asked.popUp.Count > 0) showPopUp(asked.popUp);
                    });
}

void FrameWindow::show(const Look& look) {
  setWindowTitle(QString::fromStdString(look.caption));
  if (!look.visible) {
    hide();
    return;
  }
  if (isVisible()) return;
  const auto holdsIt = [&look](const QScreen* screen) {
    return screen->availableGeometry().intersects(look.place);
  };
  QRect place = look.place;
  if (std::ranges::none_of(QApplication::screens(), holdsIt))
    place.moveTopLeft(QApplication::primaryScreen()->availableGeometry().topLeft());
  setGeometry(place);
  look.state == WindowState::Maximised ? showMaximized() : QMainWindow::show();
}

/// The frame's place is kept between evenings: that of its normal state.
void FrameWindow::noteGeometry() {
  if (!isVisible() || !m_look->known) return;
  const WindowState state = isMinimized()   ? WindowState::Minimised
                            : isMaximized() ? WindowState::Maximised
                                            : WindowState::Normal;
  const QRect place = state == WindowState::Normal ? geometry() : m_look->value.place;
  if (m_look->value.state == state && m_look->value.place == place) return;
  m_look->value.state = state;
  m_look->value.place = place;
  m_face.deliver([this, state, place] {
    Form& form = m_desk.frame.Window;
    form.WindowState = state;
    setPlace(form, place);
  });
}

void FrameWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  theme::apply(width() < theme::RoomyFrom ? Density::Compact : Density::Roomy);
  noteGeometry();
  m_face.deliver([this] { m_desk.frame.MDIForm_Resize(); });
}

void FrameWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  noteGeometry();
}

void FrameWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) noteGeometry();
  if (event->type() == QEvent::StyleChange && m_toolColumn != nullptr) size();
}

void FrameWindow::size() {
  m_toolColumn->parentWidget()->parentWidget()->setFixedWidth(theme::sized(44, 52));
  m_toolColumn->setFixedWidth(theme::sized(44, 52));
  for (QToolButton* button : m_toolColumn->findChildren<QToolButton*>()) {
    button->setFixedSize(theme::sized(QSize(34, 34), QSize(44, 44)));
    button->setIconSize(theme::sized(QSize(24, 24), QSize(28, 28)));
  }
  m_bannerMark->setPixmap(theme::picture("mark_warning", 24, theme::colour("warnInk"), devicePixelRatioF()));
  m_children->layOut();
}

void FrameWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  m_face.deliver([this] {
    bool cancel = false;
    m_desk.frame.MDIForm_QueryUnload(cancel, 0);
  });
}

void FrameWindow::contextMenuEvent(QContextMenuEvent* event) {
  const QWidget* under = QApplication::widgetAt(event->globalPos());
  if (under == nullptr) return;
  QString id = under->objectName();
  if (!id.startsWith("ID_") || !under->isEnabled()) return;
  id.remove(0, 3);
  m_face.deliver([this, id = id.toStdString(), at = mapFromGlobal(event->globalPos())] {
    m_desk.frame.SSActiveToolBars1_ToolDropDown(id, at.x(), at.y());
  });
}

void FrameWindow::showPopUp(const ToolBars::PopUp& popUp) {
  QMenu* menu = m_tools.popUp(popUp.Set, this);
  if (menu == nullptr) return;
  QPoint at = mapToGlobal(QPoint(popUp.x, popUp.y));
  if (popUp.x < 0) {
    const char* tool = popUp.Set == "mnuLightRotate" ? "ID_Rotate" : "ID_AddLight";
    const auto* button = m_toolColumn->findChild<QToolButton*>(tool);
    at = button->mapToGlobal(QPoint(button->width(), 0));
  }
  menu->popup(at);
}

}  // namespace velgrove
