#include "desktop/help_window.h"

#include <QHBoxLayout>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/dress.h"
#include "desktop/frame_window.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr const char* FirstPage = "index.html";
constexpr int FileOfRow = Qt::UserRole;
constexpr QSize Usual(1040, 780);
constexpr int ContentsWidth = 240;
constexpr int PageMargin = 18;

constexpr int SmallestType = 70;  // per cent
constexpr int LargestType = 250;
constexpr int TypeStep = 10;

/// The page's colours. Sizes are words, which grow with the type.
QString pageColours() {
  QString sheet = R"(
    body { color: @text; }
    h1 { font-size: xx-large; color: @text; }
    h2 { font-size: x-large; color: @text; margin-top: 22px; }
    h3 { font-size: large; color: @text2; }
    p, li { margin-top: 6px; margin-bottom: 6px; }
    a { color: @nextText; text-decoration: none; }
    code, kbd { color: @queue; }
    pre { background-color: @well; color: @text2; }
    table { margin-top: 8px; margin-bottom: 12px; border-color: @line; border-collapse: collapse; border-style: solid; border-width: 1px; }
    td, th { border: 1px solid @line; padding: 4px 9px; }
    th { color: @text2; background-color: @raised; text-align: left; }
    blockquote { color: @warn; margin-left: 18px; margin-right: 18px; }
    .pager { color: @text2; }
  )";
  for (const char* token : {"text2", "nextText", "text", "queue", "warn", "well", "line", "raised"})
    sheet.replace(QString("@") + token, theme::colour(token).name());
  return sheet;
}

}  // namespace

HelpWindow::HelpWindow(FrameWindow& frame, Face& face, frmHelp& form)
    : FormDialog(
          "frmHelp", &frame, face, form.Window, [&form] { form.Unload(); },
          Qt::Dialog | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
      m_frame(frame),
      m_folder(QString::fromStdString(form.Folder.string())) {
  dress();
  layOut();
  listen();
  addKeys();
}

void HelpWindow::dress() {
  dressAll({{&m_back, "cmdBack", "Page before"},
            {&m_forward, "cmdForward", "Page after"},
            {&m_home, "cmdHome", "First page"},
            {&m_search, "txtSearch", "Search the manual"},
            {&m_found, "lblFound", ""},
            {&m_contents, "lstContents", "Pages"},
            {&m_page, "Page", "Page of the manual"}});
  m_page.verticalScrollBar()->setAccessibleName("Page up and down");
  for (QPushButton* button : {&m_back, &m_forward, &m_home}) {
    button->setProperty("role", "key");
    button->setProperty("place", "dialog");
    button->setAutoDefault(false);
  }
  m_back.setToolTip("The page before (Alt+Left)");
  m_forward.setToolTip("On again (Alt+Right)");
  m_home.setToolTip("The first page, with the contents (Alt+Home)");
  m_search.setPlaceholderText("Search (Ctrl+F)");
  m_search.setClearButtonEnabled(true);
  m_found.setProperty("tone", "quiet");
  m_found.hide();
  m_contents.setWordWrap(true);
  m_contents.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_page.document()->setDocumentMargin(PageMargin);
  m_page.setOpenExternalLinks(false);
}

/// Tab goes in the order in which the widgets come into the window.
void HelpWindow::layOut() {
  auto* head = new QHBoxLayout;
  for (QPushButton* button : {&m_back, &m_forward, &m_home}) head->addWidget(button);
  head->addStretch(1);
  auto* left = new QVBoxLayout;
  left->addLayout(head);
  left->addWidget(&m_search);
  left->addWidget(&m_found);
  left->addWidget(&m_contents, 1);
  m_contents.setFixedWidth(ContentsWidth);
  m_search.setFixedWidth(ContentsWidth);
  auto* all = new QHBoxLayout(this);
  all->setContentsMargins(12, 12, 12, 12);
  all->setSpacing(12);
  all->addLayout(left);
  all->addWidget(&m_page, 1);
}

void HelpWindow::listen() {
  connect(&m_back, &QPushButton::clicked, &m_page, &QTextBrowser::backward);
  connect(&m_forward, &QPushButton::clicked, &m_page, &QTextBrowser::forward);
  connect(&m_home, &QPushButton::clicked, this, &HelpWindow::goHome);
  m_back.setEnabled(false);
  m_forward.setEnabled(false);
  connect(&m_page, &QTextBrowser::backwardAvailable, &m_back, &QPushButton::setEnabled);
  connect(&m_page, &QTextBrowser::forwardAvailable, &m_forward, &QPushButton::setEnabled);
  connect(&m_page, &QTextBrowser::historyChanged, this, &HelpWindow::markRow);
  connect(&m_contents, &QListWidget::itemClicked, this, &HelpWindow::openRow);
  connect(&m_contents, &QListWidget::itemActivated, this, &HelpWindow::openRow);
  connect(&m_search, &QLineEdit::textChanged, this, &HelpWindow::search);
  connect(&m_search, &QLineEdit::returnPressed, this, [this] {
    openRow(m_contents.item(0));
    if (m_contents.count() > 0) m_page.setFocus();
  });
}

void HelpWindow::addKeys() {
  const auto on = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  on(Qt::CTRL | Qt::Key_Plus, [this] { enlarge(1); });
  on(Qt::CTRL | Qt::Key_Equal, [this] { enlarge(1); });  // Plus without Shift
  on(Qt::CTRL | Qt::Key_Minus, [this] { enlarge(-1); });
  on(Qt::CTRL | Qt::Key_F, [this] {
    m_search.setFocus();
    m_search.selectAll();
  });
  on(Qt::ALT | Qt::Key_Left, [this] { m_page.backward(); });
  on(Qt::ALT | Qt::Key_Right, [this] { m_page.forward(); });
  on(Qt::ALT | Qt::Key_Home, [this] { goHome(); });
}

/// Below the band at first, so that Go and the cue on stage are seen beside it.
void HelpWindow::takePlace() {
  if (std::exchange(m_placed, true)) return;
  const QRect room = m_frame.isVisible() ? m_frame.ground() : m_frame.screen()->availableGeometry();
  resize(Usual.boundedTo(room.size() - decoration()));
  move(room.topLeft());
}

void HelpWindow::appear() {
  if (m_pages.empty()) readPages();
  m_page.setFocus();
}

void HelpWindow::readPages() {
  m_pages = readHelpPages(m_folder);
  colourPage();
  enlarge(0);
  showContents();
  openPage(FirstPage);
}

// ---- What is read

void HelpWindow::openPage(const QString& file) {
  m_page.setSource(QUrl::fromLocalFile(m_folder + '/' + file));
}

void HelpWindow::openRow(const QListWidgetItem* row) {
  if (row == nullptr) return;
  openPage(row->data(FileOfRow).toString());
  markWords();
}

void HelpWindow::goHome() {
  m_search.clear();
  openPage(FirstPage);
}

void HelpWindow::search() {
  const QStringList words = searchWords(m_search.text());
  m_found.setVisible(!words.isEmpty());
  if (words.isEmpty()) return showContents();
  m_contents.clear();
  for (const HelpHit& hit : searchHelp(m_pages, words))
    addRow(hit.page->title + '\n' + hit.around, hit.page->file);
  const int count = m_contents.count();
  m_found.setText(count == 0 ? "No page has these words"
                             : QString("%1 page%2").arg(count).arg(count == 1 ? "" : "s"));
}

void HelpWindow::showContents() {
  m_contents.clear();
  for (const HelpPage& page : m_pages) addRow(page.title, page.file);
  m_page.setExtraSelections({});
  markRow();
}

void HelpWindow::addRow(const QString& text, const QString& file) {
  auto* row = new QListWidgetItem(text, &m_contents);
  row->setData(FileOfRow, file);
}

/// The row of the page that is open.
void HelpWindow::markRow() {
  const QString open = m_page.source().fileName();
  m_contents.setCurrentItem(nullptr);
  for (int row = 0; row < m_contents.count(); ++row)
    if (m_contents.item(row)->data(FileOfRow).toString() == open) m_contents.setCurrentRow(row);
}

/// All places of the words that were looked for; the first comes into view.
void HelpWindow::markWords() {
  QList<QTextEdit::ExtraSelection> places;
  for (const QString& word : searchWords(m_search.text()))
    for (auto at = m_page.document()->find(word); !at.isNull(); at = m_page.document()->find(word, at)) {
      QTextEdit::ExtraSelection place{.cursor = at, .format = {}};
      place.format.setBackground(theme::colour("nextLit"));
      place.format.setForeground(theme::colour("nextInk"));
      places.push_back(place);
    }
  m_page.setExtraSelections(places);
  if (places.isEmpty()) return;
  const auto first =
      std::ranges::min_element(places, {}, [](const auto& place) { return place.cursor.position(); });
  QTextCursor before = first->cursor;
  before.clearSelection();
  m_page.setTextCursor(before);
  m_page.ensureCursorVisible();
}

// ---- How it looks

void HelpWindow::enlarge(int steps) {
  m_percent = std::clamp(m_percent + steps * TypeStep, SmallestType, LargestType);
  const int pixels = theme::sized(16, 18) * m_percent / 100;
  m_page.setStyleSheet(QString("font-size: %1px;").arg(pixels));
}

/// A page that is open takes the colours when it is made anew.
void HelpWindow::colourPage() {
  const QString colours = pageColours();
  if (std::exchange(m_colours, colours) == colours) return;
  m_page.document()->setDefaultStyleSheet(colours);
  if (m_page.source().isEmpty()) return;
  const int place = m_page.verticalScrollBar()->value();
  m_page.reload();
  m_page.verticalScrollBar()->setValue(place);
}

void HelpWindow::changeEvent(QEvent* event) {
  FormDialog::changeEvent(event);
  if (event->type() == QEvent::StyleChange && !m_pages.empty()) colourPage();
}

}  // namespace velgrove
