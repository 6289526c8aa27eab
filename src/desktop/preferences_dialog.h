#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>

#include "desktop/form_dialog.h"
#include "desktop/labelled_field.h"
#include "surfaces/frm_preferences.h"

namespace velgrove {

/// The preferences, frmPreferences: two columns of groups above Save, Reset and Cancel.
class PreferencesDialog : public FormDialog {
  Q_OBJECT

 public:
  PreferencesDialog(QWidget* above, Face& face, frmPreferences& form);

 protected:
  void takePlace() override { fit(); }
  void appear() override { fit(); }
  void changeEvent(QEvent* event) override;

 private:
  void dress();
  void bindControls(frmPreferences& form);
  void bindFields(frmPreferences& form);
  void layOut();
  void fit();

  QScrollArea m_scroll;  // before what stands in it, and so the groups
  QGroupBox m_cueValues, m_barValues, m_input, m_panel, m_confirmation;
  LabelledField m_up, m_down, m_delay, m_columns, m_rows, m_gap, m_subs;
  QCheckBox m_nothing, m_dimmers, m_submasters, m_showPanel, m_logging, m_trigger;
  QGridLayout* m_groups = nullptr;
  QPushButton m_timings, m_save, m_reset, m_cancel;
};

}  // namespace velgrove
