#pragma once

#include <functional>
#include <string>

#include "controls/form.h"
#include "controls/widgets.h"
#include "core/show_state.h"
#include "dmx/velgrove_comm.h"
#include "playback/queue_list.h"

namespace velgrove {

/// What the show view says, in words. A cue that isn't there has no number, and its description says why.
struct ShowViewLook {
  struct Cue {
    std::string number;
    std::string description;
    friend bool operator==(const Cue&, const Cue&) = default;
  };

  Cue stage;
  Cue next;
  std::string timeLeft;  ///< seconds; "" when nothing fades
  std::string fade;      ///< what stands below the time, or in its place
  std::string nextLink;  ///< what Go to the next cue also starts; "" for nothing
  std::string started;   ///< what the Go of the running fade has started; "" for nothing
  std::string loop;      ///< "" outside of a loop
  std::string mode;      ///< "Blind", "Live" or ""
  InterfaceState::Lamp lamp = InterfaceState::Lamp::None;
  std::string interface;

  friend bool operator==(const ShowViewLook&, const ShowViewLook&) = default;
};

/// The show view: one cue list in large type, to be read from where the operator stands. It changes nothing
/// of the show.
class frmShowView {
 public:
  struct Wiring {
    std::function<QueueList*()> abPlayer;  ///< null while no show is open, and so is the other
    std::function<QueueList*()> xyPlayer;
    std::function<InterfaceState()> interfaceState;
    std::function<void()> settingsChanged;  ///< those of the booth
  };

  frmShowView(ShowState& show, Wiring wiring);
  frmShowView(const frmShowView&) = delete;
  frmShowView& operator=(const frmShowView&) = delete;

  static constexpr Colour Green = 0x00C000;

  Form Window{.Caption = "Show View"};
  Button cmdXY{.Caption = "XY", .ToolTip = "Show the XY list", .Click = [this] { cmdXY_Click(); }};
  Button cmdAB{.Caption = "AB", .ToolTip = "Show the AB list", .Click = [this] { cmdAB_Click(); }};
  Button cmdSmaller{
      .Caption = "A-", .ToolTip = "Smaller type (Ctrl+-)", .Click = [this] { cmdSmaller_Click(); }};
  Button cmdLarger{
      .Caption = "A+", .ToolTip = "Larger type (Ctrl++)", .Click = [this] { cmdLarger_Click(); }};
  Label lblTypeSize;  ///< percent

  /// Brings the window to the front.
  void Show();
  /// What the evening before left, once: when the first show has opened, so that it hides no dialog.
  void restore();
  /// The operator closes the window.
  void Close();
  /// Notes how the window stands, for the next evening.
  void noteWindow();
  void Unload();

  void cmdXY_Click() { chooseList(false); }
  void cmdAB_Click() { chooseList(true); }
  void cmdSmaller_Click() { setTypeSize(m_show.Booth.TypeSize - BoothSettings::TypeStep); }
  void cmdLarger_Click() { setTypeSize(m_show.Booth.TypeSize + BoothSettings::TypeStep); }
  void UsualTypeSize() { setTypeSize(BoothSettings::UsualType); }

  [[nodiscard]] int typeSize() const { return m_show.Booth.TypeSize; }  ///< percent, 60 to 200
  /// The player whose list is shown; null while no show is open.
  [[nodiscard]] QueueList* player() const;
  [[nodiscard]] ShowViewLook look() const;

 private:
  void chooseList(bool ab);
  void setTypeSize(int percent);
  void showChoices();
  static void lookAtCues(const QueueList& player, ShowViewLook& look);
  void lookAtInterface(ShowViewLook& look) const;

  ShowState& m_show;
  Wiring m_wiring;
  bool m_restored = false;
};

}  // namespace velgrove
