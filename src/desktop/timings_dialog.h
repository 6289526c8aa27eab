#pragma once

#include <QPushButton>
#include <array>

#include "desktop/form_dialog.h"
#include "desktop/labelled_field.h"
#include "surfaces/frm_timings.h"

namespace velgrove {

/// The rates of the desk's timers, frmTimings.
class TimingsDialog : public FormDialog {
  Q_OBJECT

 public:
  TimingsDialog(QWidget* above, Face& face, frmTimings& form);

 protected:
  void takePlace() override { fit(); }
  void appear() override { fit(); }
  void changeEvent(QEvent* event) override;

 private:
  void dress();
  void bindControls(frmTimings& form);
  void layOut();
  void fit();

  QScrollArea m_scroll;  // before what stands in it
  std::array<LabelledField, frmTimings::FieldCount> m_fields;
  QPushButton m_update, m_reset, m_save;
};

}  // namespace velgrove
