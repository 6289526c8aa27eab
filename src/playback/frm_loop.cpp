#include "playback/frm_loop.h"

namespace velgrove {
namespace {

// Where the dialog opens, in twips from the lower left corner of the player's window.
constexpr float LeftOfPlayer = 100;
constexpr float BelowPlayer = 20;

constexpr std::int16_t PlayerXY = 2;

}  // namespace

frmLoop::frmLoop(ShowState& show, Machine& machine, FindPlayer abPlayer, FindPlayer xyPlayer)
    : m_show(show), m_machine(machine), m_abPlayer(std::move(abPlayer)), m_xyPlayer(std::move(xyPlayer)) {
  UpDownStartCue.Buddy = &txtStartCue;
  UpDownLastCue.Buddy = &txtLastCue;
  UpDownLoopCount.Buddy = &txtLoopCount;
  UpDownStartCue.Change = [this] { UpDownStartCue_Change(); };
  UpDownLastCue.Change = [this] { UpDownLastCue_Change(); };
  UpDownLoopCount.Change = [this] { UpDownLoopCount_Change(); };
}

QueueList& frmLoop::player() const {
  return m_show.CurrentPlayer == PlayerXY ? m_xyPlayer() : m_abPlayer();
}

void frmLoop::ShowModal() {
  Form_Load();
  m_machine.showModal(Window);
}

void frmLoop::Form_Load() {
  Window.Loaded = true;
  txtStartCue.setText("1.0");
  txtLastCue.setText("2.0");
  txtLoopCount.setText("");
  const auto number = [this](float stored, int row) {
    return stored != 0 ? formatCueNumber(stored) : player().ListView2.text(row);
  };
  m_machine.errors.steps([&] { txtStartCue.setText(number(player().State.LoopStartCue, 2)); },
                         [&] { txtLastCue.setText(number(player().State.LoopLastCue, 3)); },
                         [&] {
                           const int count = player().State.LoopCount;
                           txtLoopCount.setText(count != 0 ? formatWhole(count) : "1");
                         },
                         [&] {
                           const Form& edited = player().Window;
                           Window.Left = edited.Left - LeftOfPlayer;
                           Window.Top = edited.Top + edited.Height + BelowPlayer;
                         });
}

void frmLoop::Command1_Click() {
  m_machine.errors.run([&] {
    const float start = toCueNumber(txtStartCue.text());
    const float last = toCueNumber(txtLastCue.text());
    const auto count = toInteger<std::int16_t>(txtLoopCount.text());
    QueuePlayerState& edited = player().State;
    edited.LoopStartCue = start;
    edited.LoopLastCue = last;
    edited.LoopCount = count;
    m_xyPlayer().endRepaint();
    Unload();
  });
}

void frmLoop::UpDownStartCue_Change() {
  txtStartCue.setText(formatCueNumber(UpDownStartCue.value()));
}

void frmLoop::UpDownLastCue_Change() {
  txtLastCue.setText(formatCueNumber(UpDownLastCue.value()));
}

void frmLoop::UpDownLoopCount_Change() {
  txtLoopCount.setText(std::to_string(UpDownLoopCount.value()));
}

void frmLoop::Form_OLEDragDrop() const {
  m_machine.boxes.show({.text = "OLE DRAGDROP"});
}

void frmLoop::Unload() {
  Window.Unload();
}

}  // namespace velgrove
