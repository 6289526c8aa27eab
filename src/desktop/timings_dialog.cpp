#include "desktop/timings_dialog.h"

#include <QEvent>
#include <QHBoxLayout>

#include "desktop/dress.h"

namespace velgrove {
namespace {

struct Name {
  const char* field;
  const char* spoken;
};
constexpr std::array<Name, frmTimings::FieldCount> Names{
    {{"txtOutRate", "DMX output rate, milliseconds"},
     {"txtInRate", "DMX input rate, milliseconds"},
     {"txtFadeRate", "Fade refresh rate, milliseconds"},
     {"txtDisplayRate", "Display update rate, milliseconds"},
     {"txtSubsRate", "Submaster refresh rate, milliseconds"},
     {"txtCalcRate", "Calculation rate, milliseconds"},
     {"txtNumFixtures", "Channels that are calculated"}}};

}  // namespace

TimingsDialog::TimingsDialog(QWidget* above, Face& face, frmTimings& form)
    : FormDialog("frmTimings", above, face, form.Window, [&form] { form.Unload(); }) {
  dress();
  layOut();
  bindControls(form);
  // Last: the fields have their texts when the first one is marked.
  bindings().mirror([&form] { return form.Window.Visible; },
                    [this](bool visible) {
                      if (!visible) return;
                      m_fields[0].field.setFocus();
                      m_fields[0].field.selectAll();
                    });
}

void TimingsDialog::dress() {
  for (std::size_t i = 0; i < m_fields.size(); ++i)
    m_fields[i].dress(QString("Captions_%1").arg(i), Names[i].field, Names[i].spoken);
  dressAll(
      {{&m_update, "cmdRefresh", "Update"}, {&m_reset, "cmdDefault", "Reset"}, {&m_save, "cmdSave", "Save"}});
  for (QPushButton* button : {&m_update, &m_reset, &m_save}) button->setProperty("role", "dialog");
  setDefault(m_update);
}

void TimingsDialog::bindControls(frmTimings& form) {
  for (std::size_t i = 0; i < m_fields.size(); ++i)
    m_fields[i].bind(
        bindings(), [&form, i] { return &form.Captions[i]; }, [&form, i] { return form.fields()[i]; });
  bindings().bind(&m_update, [&form] { return &form.cmdRefresh; });
  bindings().bind(&m_reset, [&form] { return &form.cmdDefault; });
  bindings().bind(&m_save, [&form] { return &form.cmdSave; });
}

/// Tab goes in the order in which the widgets come into the window.
void TimingsDialog::layOut() {
  constexpr int FieldWidth = 76;
  constexpr int Margin = 16;
  auto* page = new QWidget;
  auto* rows = new QGridLayout(page);
  rows->setContentsMargins(Margin, Margin, Margin, 0);
  rows->setHorizontalSpacing(16);
  rows->setVerticalSpacing(8);
  for (std::size_t i = 0; i < m_fields.size(); ++i) m_fields[i].addTo(*rows, static_cast<int>(i), FieldWidth);
  rows->setRowStretch(rows->rowCount(), 1);
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {&m_update, &m_reset, &m_save}) buttons->addWidget(button, 1);
  layOutAround(m_scroll, *page, *buttons, Margin);
}

void TimingsDialog::fit() {
  constexpr QSize Usual(300, 320);  // below the title
  fitAround(m_scroll, Usual);
}

void TimingsDialog::changeEvent(QEvent* event) {
  FormDialog::changeEvent(event);
  if (event->type() == QEvent::StyleChange && isVisible()) fit();
}

}  // namespace velgrove
