#include "desktop/cue_window.h"

#include <QEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "desktop/spoken.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

// Inside the frame of a window that is 640 or 560 wide.
constexpr int ButtonsBreakCompact = 634;
constexpr int ButtonsBreakRoomy = 554;

// Two of the four arrangements: with one row of buttons, and with three.
constexpr int WideCompact = 0;
constexpr int NarrowRoomy = 3;

void setType(QLabel& label, const char* type) {
  label.setProperty("type", type);
}

// The longest texts that stand in the window's numbers and times.
constexpr const char* WidestNumber = "000.00";
constexpr const char* WidestTime = "-32768";

/// What a text takes, in the type of the fields.
int widthOf(const char* text) {
  return QFontMetrics(theme::font(theme::sized(14, 16))).horizontalAdvance(text);
}

/// Room for every number of a cue, as large as it is written.
int widestStatusNumber() {
  return QFontMetrics(theme::font(theme::sized(25, 42), true)).horizontalAdvance(WidestNumber) + 2;
}

void discard(QLayout* layout) {
  while (QLayoutItem* item = layout->takeAt(0)) {
    if (QLayout* inner = item->layout())
      discard(inner);
    else
      delete item;
  }
  delete layout;
}

}  // namespace

CueWindow::CueWindow(const Names& names, Face& face, FindPlayer find)
    : m_find(std::move(find)), m_bindings(face) {
  setObjectName(names.window);
  nameStatusLine(m_stage, "STAGE:", "stage",
                 {{&m_stage.number, "lblStageNum"},
                  {&m_stage.desc, "StageDescText"},
                  {&m_stage.down, "lblStageDown2"},
                  {&m_stage.delay, "lblStageDelay2"},
                  {&m_stage.up, "lblStageUp2"}});
  nameStatusLine(m_next, "NEXT:", "next",
                 {{&m_next.number, "lblNextNum"},
                  {&m_next.desc, "NextDescText"},
                  {&m_next.down, "lblNextDown"},
                  {&m_next.delay, "lblNextDelay"},
                  {&m_next.up, "lblNextUp"}});
  dressButtons();
  dressEditors(names.editorSuffix);
  m_table.setObjectName(names.list);
  m_table.setAccessibleName(names.spoken);
  bindControls();
  setFocusOrder();
  setFocusProxy(&m_table);
  layOut();
  speakLabel(m_linkList, "List to start");
  speakLabel(m_linkNumber, "Cue to start");
}

void CueWindow::nameStatusLine(StatusLine& line, const char* caption, const char* tone,
                               const std::vector<std::pair<QLabel*, const char*>>& names) {
  line.caption.setText(caption);
  line.caption.setProperty("tone", tone);
  line.number.setProperty("tone", tone);
  setType(line.number, "number");
  setType(line.desc, "desc");
  for (QLabel* quiet : {&line.downCaption, &line.delayCaption, &line.upCaption}) setType(*quiet, "caption");
  for (const auto& [label, name] : names) label->setObjectName(name);
  line.desc.setMinimumWidth(60);
}

void CueWindow::dressButtons() {
  struct Dress {
    QPushButton* button;
    const char* name;
    const char* role;
    const char* spoken;
  };
  const std::array dresses{
      Dress{&m_go, "cmdGoForward", "go", "Go"},
      Dress{&m_stop, "cmdStop", "stop", "Stop"},
      Dress{&m_stepUp, "cmdDecrementStageCue", "key", "Stage cue back"},
      Dress{&m_stepDown, "cmdAdvanceStageCue", "key", "Stage cue on"},
      Dress{&m_record, "cmdRecord", "key", "Record cue"},
      Dress{&m_update, "cmdUpdate", "key", "Update cue"},
      Dress{&m_insert, "cmdInsertCue", "key", "Insert cue"},
      Dress{&m_delete, "cmdDeleteCue", "key", "Delete cue"},
      Dress{&m_copyCue, "cmdCopy", "key", "Copy cue"},
      Dress{&m_paste, "cmdPaste", "key", "Paste cue"},
      Dress{&m_stageCue, "cmdMakeStageCue", "key", "Make stage cue"},
      Dress{&m_nextCue, "cmdMakeNextCue", "key", "Make next cue"},
      Dress{&m_loop, "cmdLoop", "key", "Loop"},
      Dress{&m_live, "cmdLiveView", "mode", "Live"},
      Dress{&m_blind, "cmdBlindView", "mode", "Blind"},
  };
  for (const Dress& dress : dresses) {
    dress.button->setObjectName(dress.name);
    dress.button->setProperty("role", dress.role);
    dress.button->setAccessibleName(dress.spoken);
    dress.button->setAutoDefault(false);
    dress.button->setFocusPolicy(Qt::StrongFocus);
  }
  m_stepUp.setIcon(theme::icon("arrow_up"));
  m_stepDown.setIcon(theme::icon("arrow_down"));
}

void CueWindow::dressEditors(const QString& suffix) {
  struct Dress {
    QWidget* widget;
    const char* name;
    const char* spoken;
  };
  const std::array fields{
      Dress{&m_number.field, "CueNum", "Cue number"},
      Dress{&m_down.field, "CueDown", "Down, seconds"},
      Dress{&m_delay.field, "CueDelay", "Delay, seconds"},
      Dress{&m_up.field, "CueUp", "Up, seconds"},
      Dress{&m_desc, "CueDesc", "Description"},
      Dress{&m_linkList, "QListCombo", "List to start"},
      Dress{&m_linkNumber, "QListNumberCombo", "Cue to start"},
  };
  for (const Dress& dress : fields) {
    dress.widget->setObjectName(dress.name + suffix);
    dress.widget->setAccessibleName(dress.spoken);
    dress.widget->setToolTip(dress.spoken);
  }
  constexpr int LettersOfAChoice = 5;  // as wide empty as filled, whenever the desk is dressed anew
  for (QComboBox* choice : {&m_linkList, &m_linkNumber}) {
    choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    choice->setMinimumContentsLength(LettersOfAChoice);
  }
  const std::array spinners{
      Dress{&m_number.spinner, "UpDownCueNum", "Walk through the cues"},
      Dress{&m_down.spinner, "UpDownCueDown", "Step Down and Up"},
      Dress{&m_delay.spinner, "UpDownCueDelay", "Step Delay"},
      Dress{&m_up.spinner, "UpDownCueUp", "Step Up"},
  };
  for (const Dress& dress : spinners) {
    dress.widget->setObjectName(dress.name);
    dress.widget->setAccessibleName(dress.spoken);
    dress.widget->setToolTip(dress.spoken);
  }
  for (const auto& [editor, caption] : {std::pair(&m_number, "#"), std::pair(&m_down, "Dwn"),
                                        std::pair(&m_delay, "Dly"), std::pair(&m_up, "Up")})
    editor->caption.setText(caption);
  for (QLabel* caption :
       {&m_number.caption, &m_down.caption, &m_delay.caption, &m_up.caption, &m_descCaption})
    setType(*caption, "caption");
}

void CueWindow::bindControls() {
  const auto tie = [this](auto* widget, auto QueueList::*control) {
    using Control = std::remove_reference_t<decltype(std::declval<QueueList>().*control)>;
    m_bindings.bind(widget, Bindings::Find<Control>([this, control]() -> Control* {
                      QueueList* player = m_find();
                      return player == nullptr ? nullptr : &(player->*control);
                    }));
  };
  const auto tieButton = [&](QPushButton& button, Button QueueList::*control) {
    tie(static_cast<QAbstractButton*>(&button), control);
  };
  tie(&m_stage.number, &QueueList::lblStageNum);
  tie(&m_stage.down, &QueueList::lblStageDown2);
  tie(&m_stage.delay, &QueueList::lblStageDelay2);
  tie(&m_stage.up, &QueueList::lblStageUp2);
  tie(&m_stage.desc, &QueueList::StageDescText);
  tie(&m_next.number, &QueueList::lblNextNum);
  tie(&m_next.down, &QueueList::lblNextDown);
  tie(&m_next.delay, &QueueList::lblNextDelay);
  tie(&m_next.up, &QueueList::lblNextUp);
  tie(&m_next.desc, &QueueList::NextDescText);
  tieButton(m_go, &QueueList::cmdGoForward);
  tieButton(m_stop, &QueueList::cmdStop);
  tieButton(m_stepUp, &QueueList::cmdDecrementStageCue);
  tieButton(m_stepDown, &QueueList::cmdAdvanceStageCue);
  tieButton(m_record, &QueueList::cmdRecord);
  tieButton(m_update, &QueueList::cmdUpdate);
  tieButton(m_insert, &QueueList::cmdInsertCue);
  tieButton(m_delete, &QueueList::cmdDeleteCue);
  tieButton(m_copyCue, &QueueList::cmdCopy);
  tieButton(m_paste, &QueueList::cmdPaste);
  tieButton(m_stageCue, &QueueList::cmdMakeStageCue);
  tieButton(m_nextCue, &QueueList::cmdMakeNextCue);
  tieButton(m_loop, &QueueList::cmdLoop);
  tieButton(m_live, &QueueList::cmdLiveView);
  tieButton(m_blind, &QueueList::cmdBlindView);
  tie(&m_number.field, &QueueList::CueNum);
  tie(&m_number.spinner, &QueueList::UpDownCueNum);
  tie(&m_down.field, &QueueList::CueDown);
  tie(&m_down.spinner, &QueueList::UpDownCueDown);
  tie(&m_delay.field, &QueueList::CueDelay);
  tie(&m_delay.spinner, &QueueList::UpDownCueDelay);
  tie(&m_up.field, &QueueList::CueUp);
  tie(&m_up.spinner, &QueueList::UpDownCueUp);
  tie(&m_desc, &QueueList::CueDesc);
  tie(&m_linkList, &QueueList::QListCombo);
  tie(&m_linkNumber, &QueueList::QListNumberCombo);
  m_table.bind(m_bindings, m_find);
  m_bindings.mirror(
      [this] {
        const QueueList* player = m_find();
        return player == nullptr || !someoneListens() ? std::string() : statusOf(*player);
      },
      [this](const std::string& status) {
        m_statusGroup.setAccessibleDescription(QString::fromStdString(status));
      });
}

/// Both lines as one sentence, for who doesn't see which numbers stand beside which words.
std::string CueWindow::statusOf(const QueueList& player) {
  const auto line = [](const std::string& mark, const Label& number, const Label& words, const Label& down,
                       const Label& delay, const Label& up) {
    return mark + " " + number.Caption + " " + words.Caption + ", down " + down.Caption + ", delay " +
           delay.Caption + ", up " + up.Caption;
  };
  return line("Stage", player.lblStageNum, player.StageDescText, player.lblStageDown2, player.lblStageDelay2,
              player.lblStageUp2) +
         ". " +
         line("Next", player.lblNextNum, player.NextDescText, player.lblNextDown, player.lblNextDelay,
              player.lblNextUp);
}

// ---- Layout

/// Density and the number of button rows decide the arrangement.
int CueWindow::shapeNow() const {
  const bool narrow = width() < theme::sized(ButtonsBreakCompact, ButtonsBreakRoomy);
  return theme::sized(0, 2) + (narrow ? 1 : 0);
}

std::vector<std::vector<QPushButton*>> CueWindow::buttonRows() {
  const std::vector<QPushButton*> keeping{&m_record, &m_update, &m_insert, &m_delete, &m_copyCue, &m_paste};
  const std::vector<QPushButton*> marking{&m_stageCue, &m_nextCue, &m_loop, &m_live, &m_blind};
  switch (m_shape) {
    case WideCompact: {
      auto all = keeping;
      all.insert(all.end(), marking.begin(), marking.end());
      return {all};
    }
    case NarrowRoomy:
      return {{&m_record, &m_update, &m_insert, &m_delete},
              {&m_copyCue, &m_paste, &m_stageCue, &m_nextCue},
              {&m_loop, &m_live, &m_blind}};
    default:
      return {keeping, marking};
  }
}

/// "Dwn 5  Dly 1  Up 8" for each line, below each other.
QGridLayout* CueWindow::timesOf(std::initializer_list<StatusLine*> lines, bool narrow) {
  constexpr int Each = 3;  // columns: caption, time, and what keeps it from the next
  auto* times = new QGridLayout;
  times->setHorizontalSpacing(narrow ? 2 : 3);
  times->setVerticalSpacing(0);
  int row = 0;
  for (StatusLine* line : lines) {
    int column = 0;
    for (const auto& [caption, value] :
         {std::pair(&line->downCaption, &line->down), std::pair(&line->delayCaption, &line->delay),
          std::pair(&line->upCaption, &line->up)}) {
      times->addWidget(caption, row, column);
      times->addWidget(value, row, column + 1);
      times->setColumnMinimumWidth(column + 1, widthOf("00"));
      times->setColumnMinimumWidth(column + 2, narrow ? 0 : 2);
      column += Each;
    }
    times->setRowStretch(row++, 1);
  }
  return times;
}

void CueWindow::layOutCompactStatus() {
  auto* grid = new QGridLayout(&m_statusGroup);
  grid->setContentsMargins(6, 2, 6, 2);
  grid->setHorizontalSpacing(6);
  grid->setVerticalSpacing(0);
  int row = 0;
  for (const auto& [line, button] : {std::pair(&m_stage, &m_stepUp), std::pair(&m_next, &m_stepDown)}) {
    line->number.setFixedHeight(theme::sized(27, 46));
    line->number.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    button->setFixedSize(26, 24);
    grid->addWidget(&line->caption, row, 0);
    grid->addWidget(&line->number, row, 1);
    grid->addWidget(&line->desc, row, 2);
    grid->addWidget(button, row, 4);
    ++row;
  }
  grid->addLayout(timesOf({&m_stage, &m_next}, false), 0, 3, 2, 1);
  grid->setColumnMinimumWidth(1, widestStatusNumber());
  grid->setColumnStretch(2, 1);

  auto* fading = new QHBoxLayout(&m_fadingGroup);
  fading->setContentsMargins(6, 3, 6, 4);
  fading->setSpacing(6);
  m_go.setFixedSize(72, 46);
  m_stop.setFixedSize(60, 46);
  fading->addWidget(&m_go);
  fading->addWidget(&m_stop);
}

void CueWindow::layOutRoomyStatus() {
  const bool narrow = m_shape == NarrowRoomy;
  const int beside = narrow ? 6 : 10;
  auto* grid = new QGridLayout(&m_statusGroup);
  grid->setContentsMargins(beside, 8, beside, 6);
  grid->setHorizontalSpacing(narrow ? 6 : 12);
  grid->setVerticalSpacing(0);
  int row = 0;
  for (const auto& [line, button] : {std::pair(&m_stage, &m_stepUp), std::pair(&m_next, &m_stepDown)}) {
    line->number.setFixedHeight(theme::sized(27, 46));
    line->number.setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QGridLayout* times = timesOf({line}, narrow);
    times->setColumnStretch(times->columnCount(), 1);
    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    words->addWidget(&line->desc);
    words->addLayout(times);
    auto* numbers = new QVBoxLayout;
    numbers->setSpacing(0);
    numbers->addWidget(&line->caption);
    numbers->addWidget(&line->number);
    button->setFixedSize(narrow ? 28 : 34, 32);
    grid->addLayout(numbers, row, 0);
    grid->addLayout(words, row, 1);
    grid->addWidget(button, row, 2);
    ++row;
  }
  if (!narrow) grid->setColumnMinimumWidth(0, widestStatusNumber());
  grid->setColumnStretch(1, 1);

  auto* fading = new QVBoxLayout(&m_fadingGroup);
  fading->setContentsMargins(8, 8, 8, 8);
  fading->setSpacing(8);
  const int wide = narrow ? 72 : 104;
  m_go.setFixedSize(wide, 76);
  m_stop.setFixedSize(wide, 48);
  fading->addWidget(&m_go);
  fading->addWidget(&m_stop);
}

/// The editors in the order of the list's columns, their captions above them.
QGridLayout* CueWindow::editorRow() {
  auto* row = new QGridLayout;
  row->setHorizontalSpacing(4);
  row->setVerticalSpacing(theme::sized(0, 2));
  int column = 0;
  const auto add = [&](QLabel& caption, Field& field) {
    caption.setIndent(theme::sized(6, 7));  // above the text of the field
    row->addWidget(&caption, 0, column, Qt::AlignBottom);
    row->addWidget(&field, 1, column++);
  };
  for (Editor* editor : {&m_number, &m_down, &m_delay, &m_up}) {
    const char* widest = editor == &m_number ? WidestNumber : WidestTime;
    editor->field.setFixedWidth(editor->field.widthAround(widthOf(widest)));
    add(editor->caption, editor->field);
  }
  row->setColumnStretch(column, 1);
  m_desc.setMinimumWidth(80);
  add(m_descCaption, m_desc);
  return row;
}

/// The buttons stand in the groups in which the hand looks for them, and fill their row.
QHBoxLayout* CueWindow::rowOf(const std::vector<QPushButton*>& buttons) {
  auto* row = new QHBoxLayout;
  row->setSpacing(theme::sized(4, 6));
  const bool oneRow = m_shape == WideCompact;
  for (QPushButton* button : buttons) {
    const bool beginsGroup =
        button == &m_insert || button == &m_copyCue || button == &m_stageCue || button == &m_live;
    if (beginsGroup && button != buttons.front() && theme::density() == Density::Compact) row->addSpacing(6);
    row->addWidget(button, oneRow ? button->sizeHint().width() : 1);
  }
  return row;
}

void CueWindow::layOut() {
  m_shape = shapeNow();
  const bool roomy = theme::density() == Density::Roomy;
  for (QLayout* old : {m_statusGroup.layout(), m_fadingGroup.layout(), m_linkGroup.layout(), layout()})
    if (old != nullptr) discard(old);
  m_linkGroup.setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);  // its combos are never squeezed
  roomy ? layOutRoomyStatus() : layOutCompactStatus();

  constexpr int ArrowAndPadding = 36;
  m_linkList.setMinimumWidth(std::max(theme::sized(62, 130), widthOf("None") + ArrowAndPadding));
  m_linkNumber.setMinimumWidth(std::max(theme::sized(62, 130), widthOf(WidestNumber) + ArrowAndPadding));
  auto* links = new QHBoxLayout(&m_linkGroup);
  links->setContentsMargins(6, roomy ? 6 : 4, 6, roomy ? 6 : 4);
  links->setSpacing(6);
  links->addWidget(&m_linkList);
  links->addWidget(&m_linkNumber);

  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(6, 4, 6, 6);
  all->setSpacing(theme::sized(4, 8));
  auto* top = new QHBoxLayout;
  top->setSpacing(8);
  top->addWidget(&m_statusGroup, 1);
  top->addWidget(&m_fadingGroup);
  all->addLayout(top);
  m_table.setMinimumHeight(theme::sized(80, 102));  // its header and two rows: stage and next
  all->addWidget(&m_table, 1);
  QGridLayout* editors = editorRow();
  if (roomy) {
    all->addLayout(editors);
    auto* linkRow = new QHBoxLayout;
    linkRow->addWidget(&m_linkGroup);
    linkRow->addStretch(1);
    all->addLayout(linkRow);
  } else {
    constexpr int FootOfGroup = 5;  // so that fields and combos stand in one line
    editors->setContentsMargins(0, 0, 0, FootOfGroup);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addLayout(editors, 1);
    row->addWidget(&m_linkGroup, 0, Qt::AlignBottom);
    all->addLayout(row);
  }
  for (const auto& buttons : buttonRows()) all->addLayout(rowOf(buttons));
}

/// Tab goes in the order in which the widgets come into their window. Changing it later would leave the
/// window itself, whose focus is the list's, in the middle of the way.
void CueWindow::setFocusOrder() {
  const std::vector<QWidget*> order{&m_table,    &m_number.field, &m_down.field, &m_delay.field, &m_up.field,
                                    &m_desc,     &m_linkList,     &m_linkNumber, &m_record,      &m_update,
                                    &m_insert,   &m_delete,       &m_copyCue,    &m_paste,       &m_stageCue,
                                    &m_nextCue,  &m_loop,         &m_live,       &m_blind,       &m_stepUp,
                                    &m_stepDown, &m_stop,         &m_go};
  for (QGroupBox* group : {&m_statusGroup, &m_fadingGroup, &m_linkGroup}) group->setParent(this);
  for (QWidget* widget : order) widget->setParent(this);
}

void CueWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::StyleChange && m_shape >= 0 && m_shape != shapeNow()) layOut();
}

void CueWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (m_shape != shapeNow()) layOut();
}

void CueWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) m_table.setFocus();  // a frame that comes back from its icon leaves the focus
}

}  // namespace velgrove
