#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include "desktop/form_dialog.h"
#include "desktop/frame_window.h"
#include "playback/frm_loop.h"

namespace velgrove {

/// The dialog that asks for a loop, frmLoop.
class LoopDialog : public FormDialog {
  Q_OBJECT

 public:
  LoopDialog(FrameWindow& frame, Face& face, frmLoop& form);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  /// A number with its name, and the arrows that step it.
  struct Row {
    QLabel caption;
    Field field;
    Spinner spinner{field, Spinner::InDialog};
  };
  /// The controls of a row, by the names that they have in the form.
  struct Tie {
    Row& row;
    std::pair<const char*, Label frmLoop::*> caption;
    std::pair<const char*, TextBox frmLoop::*> field;
    std::pair<const char*, UpDown frmLoop::*> spinner;
    const char* spoken;
  };

  void tie(const Tie& tie);
  void layOut();
  void openAt(QPoint wanted);
  void standClear(QPoint wanted);

  FrameWindow& m_frame;
  frmLoop& m_form;
  QGroupBox m_group;  // before what stands in it
  Row m_start, m_last, m_count;
  QPushButton m_ok, m_cancel, m_clear;
};

}  // namespace velgrove
