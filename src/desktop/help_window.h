#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTextBrowser>

#include "core/plain_windows.h"
#include "desktop/form_dialog.h"
#include "desktop/help_pages.h"

namespace velgrove {

class FrameWindow;

/// The help, frmHelp: the manual's pages, their contents at the left, and a search over all of them. It reads
/// the pages when it first comes up, and keeps the one that was open while the desk runs.
class HelpWindow : public FormDialog {
  Q_OBJECT

 public:
  HelpWindow(FrameWindow& frame, Face& face, frmHelp& form);

 protected:
  void takePlace() override;
  void appear() override;
  void changeEvent(QEvent* event) override;

 private:
  void dress();
  void layOut();
  void listen();
  void addKeys();
  void readPages();
  void openPage(const QString& file);
  void openRow(const QListWidgetItem* row);
  void goHome();
  void search();
  void showContents();
  void addRow(const QString& text, const QString& file);
  void markRow();
  void markWords();
  void enlarge(int steps);
  void colourPage();

  const FrameWindow& m_frame;
  const QString m_folder;
  std::vector<HelpPage> m_pages;
  bool m_placed = false;
  int m_percent = 100;  ///< of the type's size
  QString m_colours;    ///< in which the page is shown
  QPushButton m_back{"Back"};
  QPushButton m_forward{"Forward"};
  QPushButton m_home{"Home"};
  QLineEdit m_search;
  QLabel m_found;
  QListWidget m_contents;
  QTextBrowser m_page;
};

}  // namespace velgrove
