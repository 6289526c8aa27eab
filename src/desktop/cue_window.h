#pragma once

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QWidget>
#include <functional>
#include <initializer_list>
#include <vector>

#include "desktop/binding.h"
#include "desktop/cue_table.h"
#include "desktop/eliding_label.h"

namespace velgrove {

/// The window of a cue player: status and Go on top, the list, editing below.
class CueWindow : public QWidget {
  Q_OBJECT

 public:
  using FindPlayer = std::function<QueueList*()>;

  /// What the windows of the two players and their widgets are called.
  struct Names {
    QString window;
    QString list;
    QString editorSuffix;  ///< of fields and combos
    QString spoken;        ///< the list, by assistive tools
  };

  CueWindow(const Names& names, Face& face, FindPlayer find);

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  /// What the panel says of the stage or the next cue.
  struct StatusLine {
    QLabel caption;
    QLabel number;
    ElidingLabel desc;
    QLabel down;
    QLabel delay;
    QLabel up;
    QLabel downCaption{"Dwn"};
    QLabel delayCaption{"Dly"};
    QLabel upCaption{"Up"};
  };

  /// A field with what stands above it, and the arrows that step it.
  struct Editor {
    QLabel caption;
    Field field;
    Spinner spinner{field};
  };

  static void nameStatusLine(StatusLine& line, const char* caption, const char* tone,
                             const std::vector<std::pair<QLabel*, const char*>>& names);
  [[nodiscard]] static std::string statusOf(const QueueList& player);
  void dressButtons();
  void dressEditors(const QString& suffix);
  void bindControls();
  [[nodiscard]] static QGridLayout* timesOf(std::initializer_list<StatusLine*> lines, bool narrow);
  void layOutCompactStatus();
  void layOutRoomyStatus();
  void layOut();
  [[nodiscard]] int shapeNow() const;
  void setFocusOrder();
  [[nodiscard]] std::vector<std::vector<QPushButton*>> buttonRows();
  [[nodiscard]] QGridLayout* editorRow();
  [[nodiscard]] QHBoxLayout* rowOf(const std::vector<QPushButton*>& buttons);

  FindPlayer m_find;
  // The groups go after what stands in them.
  QGroupBox m_statusGroup{"Cue Status"};
  QGroupBox m_fadingGroup{"Fading"};
  QGroupBox m_linkGroup{"Simultaneous Start"};
  StatusLine m_stage;
  StatusLine m_next;
  QPushButton m_stepUp, m_stepDown, m_go, m_stop;
  QPushButton m_record, m_update, m_insert, m_delete, m_copyCue, m_paste;
  QPushButton m_stageCue, m_nextCue, m_loop, m_live, m_blind;
  Editor m_number, m_down, m_delay, m_up;
  QLabel m_descCaption{"Desc"};
  Field m_desc;
  QComboBox m_linkList, m_linkNumber;
  CueTable m_table;
  int m_shape = -1;     ///< the arrangement in use
  Bindings m_bindings;  // last: its ties go first
};

}  // namespace velgrove
