#pragma once

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>

#include "core/frm_open_project.h"
#include "desktop/form_dialog.h"

namespace velgrove {

/// The dialog that opens a show or begins a new one, frmOpenProject.
class OpenDialog : public FormDialog {
  Q_OBJECT

 public:
  OpenDialog(QWidget* above, Face& face, frmOpenProject& form);

 protected:
  void appear() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Listing {
    std::vector<std::string> items;
    std::vector<int> depths;  ///< of folders
    std::vector<bool> open;   ///< of folders
    int index = -1;
  };
  /// What is chosen in a list, by the desk or by the hand.
  struct Chosen {
    int row = -1;
    Underway underway;
  };
  struct ListSource {
    std::function<unsigned()> revision;
    std::function<int()> index;
    std::function<Listing()> items;
  };

  [[nodiscard]] QWidget* makeExisting();
  [[nodiscard]] QWidget* makeNew();
  [[nodiscard]] std::shared_ptr<Chosen> bindList(const ListSource& source,
                                                 std::function<void(const Listing&)> show);
  template <class Act>
  void deliverChoice(const std::shared_ptr<Chosen>& chosen, int row, Act act);
  void bindLists();
  void bindTabs();
  bool chooseByKey(int key);
  static void show(QListWidget& list, const Listing& listing, bool folders);

  frmOpenProject& m_form;
  QTabWidget m_tabs;
  QComboBox m_drives;
  QListWidget m_folders;
  QListWidget m_files;
  Field m_pattern;
  Field m_showName;
  Field m_description;
  Field m_location;
  QPushButton m_browse;
  QPushButton m_open;
  QPushButton m_cancel;
};

}  // namespace velgrove
