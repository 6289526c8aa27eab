#include "desktop/sub_record.h"

#include <QGridLayout>
#include <QHBoxLayout>

#include "desktop/dress.h"

namespace velgrove {

SubRecord::SubRecord(FrameWindow& frame, Face& face, frmSubPane& panel, const ShowState& show)
    : SubDialog(frame, face,
                {.name = "frmSubMasterRecord",
                 .form = panel.Record.Window,
                 .size = {270, 150},
                 .index = [&show] { return show.CurrentSubMasterIndex; },
                 .close = [&panel] { panel.Record.Command1_Click(); }}) {
  dressAll({{&m_caption, "Label1", ""},
            {&m_number, "lblSM", "Number of the submaster"},
            {&m_nameCaption, "Label2", ""},
            {&m_name, "txtName", "Name of the submaster"},
            {&m_record, "cmdRecord", "Record what the stage shows"},
            {&m_cancel, "Command1", "Cancel"},
            {&m_delete, "Command2", "Delete the submaster"}});
  m_nameCaption.setBuddy(&m_name);
  layOut();
  setDefault(m_record);
  frmSubMasterRecord& form = panel.Record;
  bindings().bind(&m_caption, [&form] { return &form.Label1; });
  bindings().bind(&m_number, [&form] { return &form.lblSM; });
  bindings().bind(&m_nameCaption, [&form] { return &form.Label2; });
  bindings().bind(&m_name, [&form] { return &form.txtName; });
  bindings().bind(&m_record, [&form] { return &form.cmdRecord; });
  bindings().bind(&m_cancel, [&form] { return &form.Command1; });
  bindings().bind(&m_delete, [&form] { return &form.Command2; });
  bindPlace();
}

void SubRecord::layOut() {
  for (QLabel* caption : {&m_caption, &m_nameCaption}) caption->setProperty("tone", "quiet");
  m_number.setProperty("type", "subNumber");
  m_name.setProperty("type", "property");
  auto* rows = new QGridLayout;
  rows->setHorizontalSpacing(8);
  rows->setVerticalSpacing(6);
  rows->addWidget(&m_caption, 0, 0);
  rows->addWidget(&m_number, 0, 1);
  rows->addWidget(&m_nameCaption, 1, 0);
  rows->addWidget(&m_name, 1, 1);
  rows->setColumnStretch(1, 1);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  for (QPushButton* button : {&m_record, &m_cancel, &m_delete}) {
    button->setProperty("role", "dialog");
    buttons->addWidget(button, 1);
  }
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(14, 10, 14, 14);
  all->addLayout(rows);
  all->addStretch(1);
  all->addLayout(buttons);
}

void SubRecord::begin() {
  m_name.setFocus();
  m_name.selectAll();
}

}  // namespace velgrove
