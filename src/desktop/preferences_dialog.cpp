#include "desktop/preferences_dialog.h"

#include <QEvent>
#include <QHBoxLayout>
#include <algorithm>

#include "desktop/dress.h"

namespace velgrove {
namespace {

constexpr int FieldWidth = 76;
constexpr int NarrowField = 58;
constexpr int Margin = 12;       // of a group
constexpr int FrameOfFocus = 4;  // around a box to tick

QGridLayout* rowsIn(QGroupBox& group, int left = Margin) {
  auto* rows = new QGridLayout(&group);
  rows->setContentsMargins(left, 10, Margin, Margin);
  rows->setHorizontalSpacing(6);
  rows->setVerticalSpacing(6);
  return rows;
}

void addFields(QGroupBox& group, std::initializer_list<LabelledField*> fields) {
  QGridLayout* rows = rowsIn(group);
  for (LabelledField* field : fields) field->addTo(*rows, rows->rowCount(), FieldWidth);
}

QGridLayout* addBoxes(QGroupBox& group, std::initializer_list<QCheckBox*> boxes) {
  QGridLayout* rows = rowsIn(group, Margin - FrameOfFocus);
  rows->setVerticalSpacing(2);
  for (QCheckBox* box : boxes) rows->addWidget(box, rows->rowCount(), 0, 1, 2);
  return rows;
}

}  // namespace

PreferencesDialog::PreferencesDialog(QWidget* above, Face& face, frmPreferences& form)
    : FormDialog("frmPreferences", above, face, form.Window, [&form] { form.Unload(); }) {
  dress();
  layOut();
  bindControls(form);
  bindFields(form);
  // Last: the fields have their texts when the first one is marked.
  bindings().mirror([&form] { return form.Window.Visible; },
                    [this](bool visible) {
                      if (!visible) return;
                      m_up.field.setFocus();
                      m_up.field.selectAll();
                    });
}

void PreferencesDialog::dress() {
  m_up.dress("lblUp", "txtUp", "Fade-up time of a new cue, seconds");
  m_down.dress("lblDown", "txtDown", "Fade-down time of a new cue, seconds");
  m_delay.dress("lblDelay", "txtDelay", "Delay of a new cue, seconds");
  m_columns.dress("lblColumns", "txtColumns", "Columns of the bar display");
  m_rows.dress("lblRows", "txtRows", "Rows of the bar display");
  m_gap.dress("lblGap", "txtGap", "Gap between the bars, twips");
  m_subs.dress("lblNumSubs", "txtNumSubs", "Submasters that follow the DMX input");
  dressAll({{&m_cueValues, "fraCueValues", "Cue values"},
            {&m_barValues, "fraBarValues", "Bar values"},
            {&m_input, "frmDMXIn", "Manual input"},
            {&m_panel, "subFrame", "Submaster panel"},
            {&m_confirmation, "fraConfirmation", "Confirmation settings"},
            {&m_nothing, "chkDMXNothing", "No manual input"},
            {&m_dimmers, "chkDMXDimmers", "Manual input to dimmers"},
            {&m_submasters, "chkDMXSubmasters", "Manual input to submasters"},
            {&m_showPanel, "chkShowSub", "Show submaster panel"},
            {&m_logging, "chkRecord", "Enable logging"},
            {&m_trigger, "chkTrigger", "Enable electronic trigger"},
            {&m_timings, "buttonTimings", "Velgrove timings"},
            {&m_save, "cmdSave", "Save"},
            {&m_reset, "cmdReset", "Reset"},
            {&m_cancel, "cmdCancel", "Cancel"}});
  for (QPushButton* button : {&m_timings, &m_save, &m_reset, &m_cancel})
    button->setProperty("role", "dialog");
  setDefault(m_save);
}

void PreferencesDialog::bindControls(frmPreferences& form) {
  bindings().bind(&m_cueValues, [&form] { return &form.fraCueValues; });
  bindings().bind(&m_barValues, [&form] { return &form.fraBarValues; });
  bindings().bind(&m_input, [&form] { return &form.frmDMXIn; });
  bindings().bind(&m_panel, [&form] { return &form.subFrame; });
  bindings().bind(&m_confirmation, [&form] { return &form.fraConfirmation; });
  bindings().bind(&m_nothing, [&form] { return &form.chkDMXNothing; });
  bindings().bind(&m_dimmers, [&form] { return &form.chkDMXDimmers; });
  bindings().bind(&m_submasters, [&form] { return &form.chkDMXSubmasters; });
  bindings().bind(&m_showPanel, [&form] { return &form.chkShowSub; });
  bindings().bind(&m_logging, [&form] { return &form.chkRecord; });
  bindings().bind(&m_trigger, [&form] { return &form.chkTrigger; });
  bindings().bind(&m_timings, [&form] { return &form.buttonTimings; });
  bindings().bind(&m_save, [&form] { return &form.cmdSave; });
  bindings().bind(&m_reset, [&form] { return &form.cmdReset; });
  bindings().bind(&m_cancel, [&form] { return &form.cmdCancel; });
}

void PreferencesDialog::bindFields(frmPreferences& form) {
  const auto bind = [this, &form](LabelledField& field, Label frmPreferences::*label,
                                  TextBox frmPreferences::*text) {
    field.bind(
        bindings(), [&form, label] { return &(form.*label); }, [&form, text] { return &(form.*text); });
  };
  bind(m_up, &frmPreferences::lblUp, &frmPreferences::txtUp);
  bind(m_down, &frmPreferences::lblDown, &frmPreferences::txtDown);
  bind(m_delay, &frmPreferences::lblDelay, &frmPreferences::txtDelay);
  bind(m_columns, &frmPreferences::lblColumns, &frmPreferences::txtColumns);
  bind(m_rows, &frmPreferences::lblRows, &frmPreferences::txtRows);
  bind(m_gap, &frmPreferences::lblGap, &frmPreferences::txtGap);
  bind(m_subs, &frmPreferences::lblNumSubs, &frmPreferences::txtNumSubs);
}

/// Tab goes in the order in which the widgets come into the window.
void PreferencesDialog::layOut() {
  constexpr int Around = 14;
  auto* page = new QWidget;
  auto* groups = m_groups = new QGridLayout(page);
  groups->setContentsMargins(Around, Around, Around, 0);
  groups->setSpacing(Around);
  groups->addWidget(&m_cueValues, 0, 0);
  groups->addWidget(&m_barValues, 0, 1);
  groups->addWidget(&m_input, 1, 0);
  groups->addWidget(&m_panel, 1, 1);
  groups->addWidget(&m_confirmation, 2, 0);
  addFields(m_cueValues, {&m_up, &m_down, &m_delay});
  addFields(m_barValues, {&m_columns, &m_rows, &m_gap});
  addBoxes(m_input, {&m_nothing, &m_dimmers, &m_submasters});
  QGridLayout* panel = addBoxes(m_panel, {&m_showPanel});
  m_subs.addTo(*panel, panel->rowCount(), NarrowField);
  m_subs.label.setContentsMargins(FrameOfFocus, 0, 0, 0);
  panel->setRowStretch(panel->rowCount(), 1);
  addBoxes(m_confirmation, {&m_logging, &m_trigger});
  groups->addWidget(&m_timings, 2, 1, Qt::AlignBottom);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  for (QPushButton* button : {&m_save, &m_reset, &m_cancel}) buttons->addWidget(button);
  layOutAround(m_scroll, *page, *buttons, Around);
}

/// Both columns are as wide as the widest group.
void PreferencesDialog::fit() {
  int widest = 0;
  for (const QGroupBox* group : {&m_cueValues, &m_barValues, &m_input, &m_panel, &m_confirmation})
    widest = std::max(widest, group->sizeHint().width());
  for (const int column : {0, 1}) {
    m_groups->setColumnMinimumWidth(column, widest);
    m_groups->setColumnStretch(column, 1);
  }
  constexpr QSize Usual(540, 416);  // below the title
  fitAround(m_scroll, Usual);
}

void PreferencesDialog::changeEvent(QEvent* event) {
  FormDialog::changeEvent(event);
  if (event->type() == QEvent::StyleChange && isVisible()) fit();
}

}  // namespace velgrove
