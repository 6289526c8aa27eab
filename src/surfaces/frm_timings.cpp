#include "surfaces/frm_timings.h"

#include "controls/numbers.h"

namespace velgrove {
namespace {

constexpr const char* Warning =
    "Warning: Modifying the default timings are an Advanced Operation.  It may be necessary for slower "
    "computers, however, improper configuration may render the software inoperable!";

struct Rate {
  const char* caption;
  int design;
};
/// In the order of `Captions`.
constexpr std::array<Rate, frmTimings::FieldCount> Rates{{{"DMX Output Rate", 30},
                                                          {"DMX Input Rate", 100},
                                                          {"Fade Refresh Rate", 30},
                                                          {"Display update rate", 333},
                                                          {"Subs Refresh Rate", 333},
                                                          {"Calculation Rate", 40},
                                                          {"Max Fixtures", ChannelCount}}};
constexpr std::size_t Fade = 2;
constexpr std::size_t Display = 3;
constexpr std::size_t Subs = 4;
constexpr std::size_t Calculation = 5;

}  // namespace

DefaultDocument::DefaultDocument(TimerSet& timers)
    : TallyInputs(timers, TimerRank::Merge, Rates[Calculation].design, [] {}),
      SubsInput(timers, TimerRank::SubmasterInput, Rates[Subs].design, [] {}),
      UpdateDisplay(timers, TimerRank::Display, Rates[Display].design, [] {}) {}

frmTimings::frmTimings(ShowState& show, Machine& machine, Wiring wiring)
    : m_show(show), m_machine(machine), m_wiring(std::move(wiring)) {
  for (std::size_t i = 0; i < FieldCount; ++i) Captions[i].Caption = Rates[i].caption;
}

std::array<TextBox*, frmTimings::FieldCount> frmTimings::fields() {
  return {&txtOutRate,  &txtInRate,   &txtFadeRate,   &txtDisplayRate,
          &txtSubsRate, &txtCalcRate, &txtNumFixtures};
}

std::array<Timer*, frmTimings::FieldCount - 1> frmTimings::timers() {
  return {&m_wiring.SendTimer(),     &m_wiring.RecieveTimer(), m_wiring.fadeTimer(),
          &m_document.UpdateDisplay, &m_document.SubsInput,    &m_document.TallyInputs};
}

void frmTimings::Show() {
  if (!Window.Loaded) Form_Load();
  if (Window.Loaded) Window.Show();
}

/// Players that a show brings have the design's rate.
void frmTimings::Form_Load() {
  Window.Loaded = true;
  m_machine.errors.steps([&] { m_machine.boxes.show({.text = Warning, .icon = BoxIcon::Warning}); },
                         [&] {
                           const auto all = timers();
                           for (std::size_t i = 0; i < all.size(); ++i) {
                             const int interval = all[i] != nullptr ? all[i]->interval() : Rates[Fade].design;
                             fields()[i]->setText(std::to_string(interval));
                           }
                           txtNumFixtures.setText(std::to_string(m_show.NumChannels));
                         });
}

void frmTimings::cmdRefresh_Click() {
  const Box question{.text = "Are you sure you would like to update the timings?",
                     .buttons = BoxButtons::YesNo,
                     .icon = BoxIcon::Question};
  bool agreed = false;
  Timer& display = m_document.UpdateDisplay;
  m_machine.errors.run([&] { agreed = m_machine.boxes.show(question) == BoxAnswer::Yes; });
  if (!agreed) return;
  m_machine.errors.steps([&] { display.setEnabled(false); },
                         [&] { display.setInterval(toInteger<std::int16_t>(txtDisplayRate.text())); },
                         [&] { display.setEnabled(true); },
                         [&] { m_show.NumChannels = toInteger<std::int16_t>(txtNumFixtures.text()); },
                         [&] { m_machine.boxes.show({.text = "done"}); });
}

void frmTimings::cmdDefault_Click() {
  m_machine.errors.steps(
      [&] {
        for (std::size_t i = 0; i < FieldCount; ++i) fields()[i]->setText(std::to_string(Rates[i].design));
      },
      [&] {
        const auto all = timers();
        for (std::size_t i = 0; i < all.size(); ++i)
          if (all[i] != nullptr) all[i]->setInterval(Rates[i].design);
      },
      [&] { m_show.NumChannels = ChannelCount; });
}

void frmTimings::cmdSave_Click() {
  m_machine.errors.run([&] { m_machine.boxes.show({.text = "Function not active."}); });
}

}  // namespace velgrove
