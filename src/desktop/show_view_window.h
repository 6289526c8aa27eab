#pragma once

#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include "desktop/binding.h"
#include "desktop/cue_table.h"
#include "desktop/show_view_panel.h"
#include "surfaces/frm_show_view.h"

namespace velgrove {

/// The window of the show view, frmShowView: its words, and below them the cue list around the stage. Where
/// the window is too small for the type that was chosen, all of it shrinks together.
class ShowViewWindow : public QWidget {
  Q_OBJECT

 public:
  ShowViewWindow(Face& face, frmShowView& form);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void dress();
  void layOut();
  void bindControls();
  void tieKeys();
  void fit();
  [[nodiscard]] bool fits(double scale) const;
  [[nodiscard]] int insideWidth() const;

  frmShowView& m_form;
  QWidget m_choices;  ///< the buttons stand in it
  QPushButton m_xy, m_ab, m_smaller, m_larger;
  QLabel m_typeSize;
  ShowViewPanel m_panel;
  CueTable m_table;
  Bindings m_bindings;
  int m_percent = BoothSettings::UsualType;
};

}  // namespace velgrove
