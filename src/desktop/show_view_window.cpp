#include "desktop/show_view_window.h"

#include <QHBoxLayout>
#include <QResizeEvent>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/dress.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr QSize Content(760, 460);  // what stands inside the child window
constexpr QSize LeastContent(320, 200);
constexpr double RowsOfType = 1.3;  ///< a row of the list, beside its usual size
constexpr int StageAndNext = 2;     ///< rows that there is always room for

}  // namespace

ShowViewWindow::ShowViewWindow(Face& face, frmShowView& form) : m_form(form), m_bindings(face) {
  setObjectName("frmShowView");
  dress();
  layOut();
  bindControls();
  tieKeys();
  setFocusProxy(&m_table);
}

QSize ShowViewWindow::sizeHint() const {
  return theme::sized(Content, Content * 1.4);
}

void ShowViewWindow::dress() {
  dressAll({{&m_xy, "cmdXY", "XY list"},
            {&m_ab, "cmdAB", "AB list"},
            {&m_smaller, "cmdSmaller", "Smaller type"},
            {&m_larger, "cmdLarger", "Larger type"},
            {&m_typeSize, "lblTypeSize", "Size of type"},
            {&m_table, "Cues", "Cues around the stage"}});
  for (QPushButton* choice : {&m_xy, &m_ab}) choice->setProperty("role", "mode");
  for (QPushButton* button : {&m_xy, &m_ab, &m_smaller, &m_larger}) {
    button->setAutoDefault(false);
    button->setMinimumWidth(44);
  }
  m_typeSize.setProperty("tone", "quiet");
  m_typeSize.setAlignment(Qt::AlignCenter);
  m_table.showFromAfar();
  setMinimumSize(LeastContent);
}

/// Tab goes in the order in which the widgets come into the window.
void ShowViewWindow::layOut() {
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(4, 4, 4, 4);
  all->setSpacing(4);
  auto* choices = new QHBoxLayout(&m_choices);
  choices->setContentsMargins(4, 0, 4, 0);
  choices->setSpacing(6);
  choices->addWidget(&m_xy);
  choices->addWidget(&m_ab);
  choices->addStretch(1);
  choices->addWidget(&m_smaller);
  choices->addWidget(&m_typeSize);
  choices->addWidget(&m_larger);
  all->addWidget(&m_choices);
  all->addWidget(&m_panel);
  all->addWidget(&m_table, 1);
  m_table.setMinimumHeight(1);
}

void ShowViewWindow::bindControls() {
  m_bindings.bind(&m_xy, [this] { return &m_form.cmdXY; });
  m_bindings.bind(&m_ab, [this] { return &m_form.cmdAB; });
  m_bindings.bind(&m_smaller, [this] { return &m_form.cmdSmaller; });
  m_bindings.bind(&m_larger, [this] { return &m_form.cmdLarger; });
  m_bindings.bind(&m_typeSize, [this] { return &m_form.lblTypeSize; });
  // A window that nobody sees costs nothing.
  m_table.bind(m_bindings, [this] { return m_form.Window.Visible ? m_form.player() : nullptr; });
  m_bindings.mirror([this] { return m_form.Window.Visible ? m_form.look() : ShowViewLook(); },
                    [this](const ShowViewLook& look) {
                      if (m_panel.show(look)) fit();
                    });
  m_bindings.mirror([this] { return m_form.typeSize(); },
                    [this](int percent) {
                      m_percent = percent;
                      fit();
                    });
}

void ShowViewWindow::tieKeys() {
  const auto tie = [this](const char* keys, void (*action)(frmShowView&)) {
    auto* shortcut = new QShortcut(QKeySequence(keys), this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this,
            [this, action] { m_bindings.face().deliver([this, action] { action(m_form); }); });
  };
  const auto larger = [](frmShowView& form) { form.cmdLarger_Click(); };
  tie("Ctrl+-", [](frmShowView& form) { form.cmdSmaller_Click(); });
  tie("Ctrl++", larger);
  tie("Ctrl+=", larger);  // the same key without Shift
  tie("Ctrl+0", [](frmShowView& form) { form.UsualTypeSize(); });
}

// ---- The size of the type

/// As large as it was chosen, or as the window has room for.
void ShowViewWindow::fit() {
  constexpr double Step = 0.95;
  constexpr double Smallest = 0.35;
  double scale = m_percent / 100.0 * theme::sized(1.0, 1.4);
  while (scale > Smallest && !fits(scale)) scale *= Step;
  m_panel.setScale(scale);
  m_panel.setFixedHeight(m_panel.heightAt(insideWidth(), scale));
  // Its own sizes grow with the density by themselves.
  m_table.setScale(RowsOfType * scale / theme::sized(1.0, 1.4));
}

int ShowViewWindow::insideWidth() const {
  const QMargins margins = layout()->contentsMargins();
  return width() - margins.left() - margins.right();
}

bool ShowViewWindow::fits(double scale) const {
  const int wide = insideWidth();
  const double listScale = RowsOfType * scale / theme::sized(1.0, 1.4);
  const int room = height() - m_choices.height() - 4 * layout()->spacing();
  return m_panel.leastWidth(scale) <= wide && m_table.leastWidth(listScale) <= wide &&
         m_panel.heightAt(wide, scale) + CueTable::heightOf(StageAndNext, listScale) <= room;
}

void ShowViewWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  fit();
}

void ShowViewWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::StyleChange && layout() != nullptr) fit();
}

}  // namespace velgrove
