#include "core/windows.h"

#include <algorithm>

namespace velgrove {
namespace {

QueueList& loaded(const std::unique_ptr<QueueList>& player) {
  if (player == nullptr) throw RunTimeError(Fault::ObjectMissing, "no show is open");
  return *player;
}

float twips(double pixels) {
  constexpr double TwipsPerPixel = 15;
  return static_cast<float>(pixels * TwipsPerPixel);
}

/// The levels of a player's stage cue; none when it has no such cue.
const ChannelBytes* stageCue(const QueueList* player, const PlayerTraits& traits) {
  if (player == nullptr || player->State.QueueData == nullptr) return nullptr;
  const int row = player->State.StageCue;
  if (row < 1 || row > player->ListView2.count()) return nullptr;
  const float number = toCueNumber(player->ListView2.text(row));
  for (const auto& entry : player->State.QueueData->colQueueEntries())
    if (entry->EntryNum == number && entry->EntryQueueList == traits.Mark) return &entry->Values;
  return nullptr;
}

}  // namespace

Windows::Windows(ShowState& show, Machine& machine, Wiring wiring)
    : Comm(show, machine, interfaceWiring(wiring.interface)),
      Effects(show, machine),
      Loop(
          show, machine, [this]() -> QueueList& { return abPlayer(); },
          [this]() -> QueueList& { return xyPlayer(); }),
      Fixture(show, machine, fixtureWiring()),
      MovingFixture(show, machine, fixtureWiring()),
      SubPane(show, machine, [this] { return activeDocument().GetCurrentView(); }),
      GrandMaster(show, machine),
      Timings(show, machine, timingsWiring()),
      Preferences(show, machine, preferencesWiring()),
      CheckShow(show, machine, checkWiring()),
      PrintSheets(show, machine, printWiring()),
      ShowView(show, showViewWiring()),
      m_show(show),
      m_machine(machine),
      m_wiring(std::move(wiring)),
      m_links(show, machine,
              {.ABQ = [this]() -> QueueList& { return abPlayer(); },
               .XYQ = [this]() -> QueueList& { return xyPlayer(); },
               .startEffect = [this](const std::string& number) { startEffect(number); }}) {}

VelgroveComm::Wiring Windows::interfaceWiring(VelgroveComm::Wiring wiring) {
  wiring.triggerEnabled = [this] { return Preferences.triggerEnabled(); };
  wiring.triggerGo = [this] { goByTrigger(); };
  return wiring;
}

frmTimings::Wiring Windows::timingsWiring() {
  return {.SendTimer = [this]() -> Timer& { return Comm.SendTimer; },
          .RecieveTimer = [this]() -> Timer& { return Comm.RecieveTimer; },
          .fadeTimer = [this] { return XYQ == nullptr ? nullptr : &XYQ->q_timer; }};
}

frmPreferences::Wiring Windows::preferencesWiring() {
  return {.setting = [this](const std::string& key) { return m_wiring.setting(key); },
          .saveSettings = [this](const SettingTexts& texts) { m_wiring.saveSettings(texts); },
          .showSubPane = [this](bool visible) { m_wiring.showSubPane(visible); },
          .maximiseDocument = [this] { activeDocument().Window.WindowState = WindowState::Maximised; },
          .showTimings = [this] { Timings.Show(); }};
}

frmCheckShow::Wiring Windows::checkWiring() {
  return {.abPlayer = [this]() -> QueueList& { return abPlayer(); },
          .xyPlayer = [this]() -> QueueList& { return xyPlayer(); },
          .document = [this]() -> frmDocument& { return activeDocument(); },
          .effects = [this] { return Effects.ListViewEffects.rows(); },
          .showStatus = [this](const std::string& text) { m_wiring.showStatus(text); }};
}

frmPrintSheets::Wiring Windows::printWiring() {
  return {.abPlayer = [this]() -> QueueList& { return abPlayer(); },
          .xyPlayer = [this]() -> QueueList& { return xyPlayer(); },
          .showStatus = [this](const std::string& text) { m_wiring.showStatus(text); }};
}

frmShowView::Wiring Windows::showViewWiring() {
  return {.abPlayer = [this] { return ABQ.get(); },
          .xyPlayer = [this] { return XYQ.get(); },
          .interfaceState = [this] { return m_wiring.interfaceState(); },
          .settingsChanged = [this] { m_wiring.boothChanged(); }};
}

QueueList& Windows::abPlayer() const {
  return loaded(ABQ);
}
QueueList& Windows::xyPlayer() const {
  return loaded(XYQ);
}

frmDocument& Windows::activeDocument() const {
  if (ActiveDocument == nullptr) throw RunTimeError(Fault::ObjectMissing, "no document is open");
  return *ActiveDocument;
}

std::unique_ptr<QueueList> Windows::makePlayer(const PlayerTraits& traits) {
  return std::make_unique<QueueList>(
      traits, m_show, m_machine,
      PlayerWiring{
          .GetCurrentView = [this] { return activeDocument().GetCurrentView(); },
          .redrawLevel =
              [this](clsFixture& fixture) {
                frmDocument& document = activeDocument();
                document.DeleteTextOnShape(fixture);
                document.DrawTextOnShape(fixture);
              },
          .SimultaneousStart = [this](const std::string& list,
                                      const std::string& number) { m_links.SimultaneousStart(list, number); },
          .showCuePanel = m_wiring.showCuePanel,
          .showStatus = m_wiring.showStatus,
          .modesChanged =
              [this] {
                for (auto* player : {&ABQ, &XYQ})
                  if (*player != nullptr) (*player)->showModes();
              },
          .linkTargets = [this](const std::string& list) { return linkTargets(list); },
          .configureLoop = [this] { Loop.ShowModal(); },
          .cueEdited = m_wiring.cueEdited});
}

/// A list needs two rows to be worth a link; of the effects one will do.
std::vector<std::string> Windows::linkTargets(const std::string& list) const {
  const auto texts = [](const ListView& rows, int count) {
    std::vector<std::string> targets;
    for (int row = 1; row <= count; ++row) targets.push_back(rows.text(row));
    return targets;
  };
  if (list == "EF") return texts(Effects.ListViewEffects, m_show.EffectListNext - 1);
  if (list != "AB" && list != "XY") return {};
  const ListView& rows = (list == "AB" ? abPlayer() : xyPlayer()).ListView2;
  return rows.count() < 2 ? std::vector<std::string>() : texts(rows, rows.count());
}

FixtureForm::Wiring Windows::fixtureWiring() {
  return {.document = [this]() -> frmDocument& { return activeDocument(); },
          .setPointer =
              [this](int pointer) {
                for (const auto& document : Documents)
                  document->Window.MousePointer = document->FlpCAD1.ViewMousePointer = pointer;
              },
          .focusFrame = [this] { raise(m_wiring.focusFrame); }};
}

void Windows::openFixture(Pixel at) {
  const auto show = [this, at](auto& dialog) {
    if (!dialog.shows(*m_show.CurrentFixture)) closeFixture();
    dialog.SetFixtureID(m_show.CurrentFixture->Channel);
    dialog.Dialog.Window.Left = twips(at.x);
    dialog.Dialog.Window.Top = twips(at.y);
    dialog.Show();
  };
  m_show.CurrentFixture->IconShape == MovingLight ? show(MovingFixture) : show(Fixture);
}

void Windows::closeFixture() {
  Fixture.Unload();
  MovingFixture.Unload();
}

template <class Window>
void Windows::retire(std::unique_ptr<Window> window) {
  m_retired.emplace_back(std::move(window));
}

void Windows::forgetRetired() {
  if (!m_machine.timers.isRunning()) m_retired.clear();
}

void Windows::loadPlayers() {
  unloadPlayers();
  for (auto [player, traits] : {std::pair(&ABQ, &AB), std::pair(&XYQ, &XY)}) {
    // A box of the load lets the operator close the show meanwhile: what was made is held by nobody then.
    QueueList& made = *(*player = makePlayer(*traits));
    made.Form_Load();
    made.Window.Visible = true;
  }
}

void Windows::unloadPlayers() {
  CheckShow.Unload();  // its findings lead to their rows
  PrintSheets.Unload();
  for (auto* player : {&XYQ, &ABQ})
    if (*player != nullptr) unloadPlayer(*player);
}

void Windows::unloadPlayer(std::unique_ptr<QueueList>& player) {
  player->q_timer.setEnabled(false);
  player->Window.Unload();
  retire(std::move(player));
}

frmDocument::Wiring Windows::documentWiring() {
  return {.followInput = [this] { SubPane.SubsInput_Timer(); },
          .rebuildSubMasters = [this] { SubPane.showNames(*activeDocument().GetCurrentView()); },
          .abStageCue = [this] { return stageCue(ABQ.get(), AB); },
          .xyStageCue = [this] { return stageCue(XYQ.get(), XY); },
          .graphics = m_wiring.graphics,
          .openFixture = [this](Pixel at) { openFixture(at); },
          .closeFixture = [this] { closeFixture(); }};
}

void Windows::openDocument() {
  Documents.push_back(std::make_unique<frmDocument>(m_show, m_machine, documentWiring()));
  frmDocument& made = *Documents.back();
  DocumentForm = ActiveDocument = &made;
  made.Form_Load();
  made.Window.Enabled = !m_show.FixturesLocked;
  made.Window.Visible = true;
}

void Windows::closeDocument() {
  if (DocumentForm == nullptr) return;
  DocumentForm->stopTimers();
  const auto open = std::ranges::find(Documents, DocumentForm, &std::unique_ptr<frmDocument>::get);
  retire(std::move(*open));
  Documents.erase(open);
  if (ActiveDocument == DocumentForm) ActiveDocument = Documents.empty() ? nullptr : Documents.back().get();
  DocumentForm = nullptr;
}

void Windows::closeDocuments() {
  while (!Documents.empty()) {
    DocumentForm = Documents.back().get();
    DocumentForm->CloseView();
    closeDocument();
  }
}

void Windows::openBars(const std::string& what) {
  Bars.push_back(std::make_unique<frmBars>(m_show, m_machine));
  frmBars& made = *Bars.back();
  made.Form_Load();
  made.Window.Show();
  made.Window.Caption = "Bar Style - DMX " + what;
  made.StartUpdate(what);
}

void Windows::closeBars(const frmBars& bars) {
  const auto open = std::ranges::find(Bars, &bars, &std::unique_ptr<frmBars>::get);
  if (open == Bars.end()) return;
  (*open)->Form_Unload();
  retire(std::move(*open));
  Bars.erase(open);
}

std::vector<OpenForm> Windows::openForms() {
  std::vector<OpenForm> open;
  const auto note = [&open](Form& form, std::function<void()> unload) {
    if (form.Loaded || form.Visible) open.push_back({.form = &form, .unload = std::move(unload)});
  };
  note(Comm.Window, [this] { Comm.Window.Unload(); });
  for (const auto& document : Documents)
    open.push_back({.form = &document->Window, .unload = [this, form = document.get()] {
                      DocumentForm = form;
                      form->CloseView();
                      closeDocument();
                    }});
  for (auto* player : {&ABQ, &XYQ})
    if (*player != nullptr)
      open.push_back({.form = &(*player)->Window, .unload = [this, player] { unloadPlayer(*player); }});
  note(Loop.Window, [this] { Loop.Unload(); });
  note(ConfirmPaste.Window, [this] { ConfirmPaste.Unload(); });
  note(Effects.Window, [this] { Effects.Unload(); });
  note(Fixture.Dialog.Window, [this] { Fixture.Unload(); });
  note(MovingFixture.Dialog.Window, [this] { MovingFixture.Unload(); });
  note(SubPane.Window, [this] { SubPane.Form_Unload(); });
  note(SubPane.Fader.Window, [this] { SubPane.Fader.Unload(); });
  note(SubPane.Record.Window, [this] { SubPane.Record.Unload(); });
  note(GrandMaster.Window, [this] { GrandMaster.Unload(); });
  note(Timings.Window, [this] { Timings.Unload(); });
  note(Preferences.Window, [this] { Preferences.Unload(); });
  note(CheckShow.Window, [this] { CheckShow.Unload(); });
  note(PrintSheets.Window, [this] { PrintSheets.Unload(); });
  note(Keys.Window, [this] { Keys.Unload(); });
  note(ShowView.Window, [this] { ShowView.Unload(); });
  for (const auto& bars : Bars)
    open.push_back({.form = &bars->Window, .unload = [this, form = bars.get()] { closeBars(*form); }});
  return open;
}

void Windows::endRepaints() const {
  for (QueueList* player : {&abPlayer(), &xyPlayer()}) player->endRepaint();
}

void Windows::startEffect(const std::string& number) {
  Effects.load();
  if (m_show.GoFromInput) Effects.Window.WindowState = WindowState::Minimised;
  Effects.doEffect(number);
}

/// The box's trigger is a hardware Go of XY; AB is never started from there.
void Windows::goByTrigger() {
  QueueList& player = xyPlayer();
  const GoFromOutside outside(m_show);
  if (!player.Window.Visible) {
    player.Window.Visible = true;
    player.Window.WindowState = WindowState::Minimised;
  }
  player.cmdGoForward_Click();
  endRepaints();
}

}  // namespace velgrove
