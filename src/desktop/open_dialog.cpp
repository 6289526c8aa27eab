#include "desktop/open_dialog.h"

#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QStyle>

#include "desktop/spoken.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

QString text(const std::string& desk) {
  return QString::fromStdString(desk);
}

}  // namespace

OpenDialog::OpenDialog(QWidget* above, Face& face, frmOpenProject& form)
    : FormDialog("frmOpenProject", above, face, form.Window, [&form] { form.Form_QueryUnload(); }),
      m_form(form) {
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(12, 12, 12, 12);
  all->setSpacing(12);
  m_tabs.setObjectName("Tabs");
  m_tabs.setAccessibleName("Existing or new show");
  m_tabs.addTab(makeExisting(), "Existing");
  m_tabs.addTab(makeNew(), "New");
  all->addWidget(&m_tabs, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  for (auto [button, name] : {std::pair(&m_open, "cmdOpenButton"), std::pair(&m_cancel, "CancelButton")}) {
    button->setObjectName(name);
    button->setProperty("role", "dialog");
    buttons->addWidget(button);
  }
  setDefault(m_open);
  m_cancel.setAutoDefault(false);
  all->addLayout(buttons);
  bindings().bind(&m_open, [this] { return &m_form.cmdOpenButton; });
  bindings().bind(&m_cancel, [this] { return &m_form.CancelButton; });
  bindLists();
  bindTabs();
  resize(640, 460);
}

QWidget* OpenDialog::makeExisting() {
  auto* page = new QWidget;
  auto* grid = new QGridLayout(page);
  grid->setContentsMargins(12, 12, 12, 12);
  grid->setSpacing(8);
  m_drives.setObjectName("drvList");
  m_drives.setAccessibleName("Places");
  m_folders.setObjectName("dirList");
  m_folders.setAccessibleName("Folders");
  m_files.setObjectName("filList");
  m_files.setAccessibleName("Shows");
  m_pattern.setObjectName("txtSearchSpec");
  m_pattern.setAccessibleName("Files of type");
  grid->addWidget(&m_drives, 0, 0);
  speakLabel(m_drives, "Places");
  grid->addWidget(&m_folders, 1, 0);
  grid->addWidget(&m_files, 0, 1, 2, 1);
  auto* below = new QHBoxLayout;
  auto* caption = new QLabel("Files of Type");
  caption->setProperty("tone", "quiet");
  below->addWidget(caption);
  below->addWidget(&m_pattern, 1);
  grid->addLayout(below, 2, 0, 1, 2);
  grid->setColumnStretch(0, 2);
  grid->setColumnStretch(1, 3);
  bindings().bind(&m_pattern, [this] { return &m_form.txtSearchSpec; });
  m_pattern.installEventFilter(this);
  m_folders.installEventFilter(this);
  m_files.installEventFilter(this);
  return page;
}

QWidget* OpenDialog::makeNew() {
  auto* page = new QWidget;
  auto* rows = new QFormLayout(page);
  rows->setContentsMargins(16, 20, 16, 16);
  rows->setSpacing(12);
  rows->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
  m_showName.setObjectName("ProjectName");
  m_showName.setAccessibleName("Show name");
  m_description.setObjectName("ProjectDescription");
  m_description.setAccessibleName("Show description");
  m_location.setObjectName("Location");
  m_location.setAccessibleName("Location");
  m_browse.setObjectName("cmdNewBrowse");
  m_browse.setAccessibleName("Choose the location");
  m_browse.setAutoDefault(false);
  rows->addRow("Show Name:", &m_showName);
  rows->addRow("Show Description:", &m_description);
  auto* place = new QHBoxLayout;
  place->addWidget(&m_location, 1);
  place->addWidget(&m_browse);
  rows->addRow("Location:", place);
  bindings().bind(&m_showName, [this] { return &m_form.ProjectName; });
  bindings().bind(&m_description, [this] { return &m_form.ProjectDescription; });
  bindings().bind(&m_location, [this] { return &m_form.Location; });
  bindings().bind(&m_browse, [this] { return &m_form.cmdNewBrowse; });
  return page;
}

void OpenDialog::show(QListWidget& list, const Listing& listing, bool folders) {
  const QSignalBlocker quiet(&list);
  const bool sameItems = list.count() == static_cast<int>(listing.items.size()) && [&] {
    for (int i = 0; i < list.count(); ++i)
      if (list.item(i)->data(Qt::UserRole).toString() != text(listing.items[static_cast<std::size_t>(i)]))
        return false;
    return true;
  }();
  if (!sameItems) {
    list.clear();
    for (std::size_t i = 0; i < listing.items.size(); ++i) {
      auto* item = new QListWidgetItem(text(listing.items[i]), &list);
      item->setData(Qt::UserRole, text(listing.items[i]));
      if (!folders) continue;
      constexpr int Indent = 2;
      item->setText(QString(qsizetype{Indent} * listing.depths[i], ' ') + text(listing.items[i]));
      item->setForeground(theme::colour(listing.open[i] ? "text" : "text2"));
    }
  }
  list.setCurrentRow(listing.index);
  if (listing.index < 0) list.clearSelection();
  if (listing.index >= 0) list.scrollToItem(list.item(listing.index));
}

/// Ties a list of the form to its widget. The items are copied only when they changed and somebody looks: a
/// folder can hold thousands.
std::shared_ptr<OpenDialog::Chosen> OpenDialog::bindList(const ListSource& source,
                                                         std::function<void(const Listing&)> show) {
  struct State {
    Listing listing;
    unsigned revision = 0;
    bool copied = false;
  };
  const auto state = std::make_shared<State>();
  auto chosen = std::make_shared<Chosen>();
  bindings().add({.copy =
                      [this, source, state, chosen] {
                        if (!m_form.Window.Visible || chosen->underway.any()) return false;
                        const bool fresh = !state->copied || state->revision != source.revision();
                        if (!fresh && chosen->row == source.index()) return false;
                        if (fresh) state->listing = source.items();
                        state->copied = true;
                        state->revision = source.revision();
                        chosen->row = state->listing.index = source.index();
                        return true;
                      },
                  .apply = [state, show = std::move(show)] { show(state->listing); }});
  return chosen;
}

/// While the choice is on its way, the list doesn't go back to the one before.
template <class Act>
void OpenDialog::deliverChoice(const std::shared_ptr<Chosen>& chosen, int row, Act act) {
  chosen->row = row;
  chosen->underway.deliver(bindings().face(), [row, act = std::move(act)] { act(row); });
}

void OpenDialog::bindLists() {
  (void)bindList({.revision = [this] { return m_form.drvList.revision(); },
                  .index = [this] { return m_form.drvList.listIndex(); },
                  .items =
                      [this] {
                        Listing listing;
                        for (const auto& drive : m_form.drvList.items()) listing.items.push_back(drive.Label);
                        return listing;
                      }},
                 [this](const Listing& listing) {
                   const QSignalBlocker quiet(&m_drives);
                   m_drives.clear();
                   for (const std::string& item : listing.items) m_drives.addItem(text(item));
                   m_drives.setCurrentIndex(listing.index);
                 });
  connect(&m_drives, &QComboBox::activated, this,
          [this](int index) { bindings().face().deliver([this, index] { m_form.drvList.choose(index); }); });

  const auto folder = bindList({.revision = [this] { return m_form.dirList.revision(); },
                                .index = [this] { return m_form.dirList.listIndex(); },
                                .items =
                                    [this] {
                                      Listing listing;
                                      for (const auto& row : m_form.dirList.rows()) {
                                        listing.items.push_back(row.Name);
                                        listing.depths.push_back(row.Depth);
                                        listing.open.push_back(row.IsOpen);
                                      }
                                      return listing;
                                    }},
                               [this](const Listing& listing) { show(m_folders, listing, true); });
  connect(&m_folders, &QListWidget::currentRowChanged, this, [this, folder](int row) {
    if (row < 0) return;
    deliverChoice(folder, row, [this](int chosen) { m_form.dirList.highlight(chosen); });
  });
  connect(&m_folders, &QListWidget::itemActivated, this,
          [this] { bindings().face().deliver([this] { m_form.dirList.openHighlighted(); }); });

  const auto file = bindList({.revision = [this] { return m_form.filList.revision(); },
                              .index = [this] { return m_form.filList.listIndex(); },
                              .items =
                                  [this] {
                                    Listing listing;
                                    listing.items = m_form.filList.items();
                                    return listing;
                                  }},
                             [this](const Listing& listing) { show(m_files, listing, false); });
  // The focus makes the first file the current one: it is chosen only when it is marked.
  connect(&m_files, &QListWidget::itemSelectionChanged, this, [this, file] {
    if (m_files.selectedItems().isEmpty()) return;
    deliverChoice(file, m_files.row(m_files.selectedItems().constFirst()),
                  [this](int chosen) { m_form.filList.choose(chosen); });
  });
  connect(&m_files, &QListWidget::itemDoubleClicked, this, [this](const QListWidgetItem* item) {
    bindings().face().deliver([this, row = m_files.row(item)] { m_form.filList.doubleClick(row); });
  });
}

void OpenDialog::bindTabs() {
  const auto shown = bindings().mirror([this] { return m_form.Tabs.selected(); },
                                       [this](int tab) {
                                         const QSignalBlocker quiet(&m_tabs);
                                         m_tabs.setCurrentIndex(tab - 1);
                                         if (tab == 2 && isVisible()) m_showName.setFocus();
                                       });
  connect(&m_tabs, &QTabWidget::currentChanged, this, [this, shown](int index) {
    shown->value = index + 1;
    bindings().face().deliver([this, index] { m_form.Tabs.choose(index + 1); });
    appear();
  });
}

/// While no file is marked, a key of movement marks the first or the last one.
bool OpenDialog::chooseByKey(int key) {
  const bool first = key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_Home || key == Qt::Key_PageUp;
  const bool last = key == Qt::Key_End || key == Qt::Key_PageDown;
  if ((!first && !last) || m_files.count() == 0) return false;
  const int row = first ? 0 : m_files.count() - 1;
  m_files.setCurrentRow(row);
  if (QListWidgetItem* item = m_files.item(row))
    item->setSelected(true);  // the folder may have been read anew
  return true;
}

bool OpenDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &m_pattern && event->type() == QEvent::FocusIn) {
    bindings().face().deliver([this] { m_form.txtSearchSpec_GotFocus(); });
    m_pattern.selectAll();
  }
  if (watched == &m_folders && event->type() == QEvent::FocusOut) {
    const auto why = static_cast<QFocusEvent*>(event)->reason();
    const bool leftTheList = why != Qt::ActiveWindowFocusReason && why != Qt::PopupFocusReason;
    if (leftTheList && isVisible()) bindings().face().deliver([this] { m_form.dirList_LostFocus(); });
  }
  if (watched == &m_files && event->type() == QEvent::KeyPress && m_files.selectedItems().isEmpty()) {
    return chooseByKey(static_cast<QKeyEvent*>(event)->key());
  }
  return FormDialog::eventFilter(watched, event);
}

void OpenDialog::appear() {
  if (m_tabs.currentIndex() == 1) {
    m_showName.setFocus();
    return;
  }
  m_files.setFocus();
}

}  // namespace velgrove
