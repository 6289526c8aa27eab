#pragma once

#include <QLabel>
#include <QPushButton>

#include "core/show_state.h"
#include "desktop/sub_dialog.h"

namespace velgrove {

/// The dialog that records a submaster, frmSubMasterRecord.
class SubRecord : public SubDialog {
  Q_OBJECT

 public:
  SubRecord(FrameWindow& frame, Face& face, frmSubPane& panel, const ShowState& show);

 protected:
  void begin() override;

 private:
  void layOut();

  QLabel m_caption, m_number, m_nameCaption;
  Field m_name;
  QPushButton m_record, m_cancel, m_delete;
};

}  // namespace velgrove
