#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/serial_port.h"
#include "controls/widgets.h"
#include "core/show_state.h"
#include "dmx/discovery.h"

namespace velgrove {

/// State of the link to the interface.
enum class Link : std::int16_t {
  Up = 0,
  FoundOpen = 1,  ///< the port was open before this desk opened it; nothing is sent
  Down = 2,       ///< starting, or no interface
};

/// How the desk stands to the interface, for the eye.
struct InterfaceState {
  enum class Lamp { None, Starting, Up };

  Lamp lamp = Lamp::None;
  std::string text;       ///< how far the link has come up
  std::string condition;  ///< what is wrong, in plain words; "" while all is well

  friend bool operator==(const InterfaceState&, const InterfaceState&) = default;
};

/// The one object that talks to the interface box: sends DMXOutput, fetches DMXInput, polls the electronic
/// trigger. Its window shows how far the link has come up. The host always speaks first; nothing is
/// acknowledged.
class VelgroveComm {
 public:
  struct Wiring {
    SerialLine line;
    /// All interfaces attached, in order; the last one decides.
    std::function<std::vector<InterfaceDevice>()> findInterfaces;
    /// Where a lost interface stands again.
    std::function<std::optional<std::string>(const InterfaceDevice&)> findAgain;
    /// Whether the operator has the electronic trigger switched on.
    std::function<bool()> triggerEnabled;
    /// A Go from the trigger.
    std::function<void()> triggerGo;
    /// The status window changed and is to be painted now.
    std::function<void()> repaint;
  };

  VelgroveComm(ShowState& show, Machine& machine, Wiring wiring);
  VelgroveComm(const VelgroveComm&) = delete;
  VelgroveComm& operator=(const VelgroveComm&) = delete;

  Form Window;
  ProgressBar ProgressBar1;
  Label Version;
  Label Label1;
  Label Condition;  ///< what is wrong with the interface, in plain words; "" while all is well
  SerialPort VelgroveCom;
  Timer SendTimer;
  Timer RecieveTimer;
  Timer TriggerTimer;

  std::int32_t NumDevices = 0;
  std::int16_t PortNumber = 0;
  Link LinkState = Link::Up;
  bool TxToggle = false;  ///< flipped after every frame
  bool RxToggle = false;  ///< flipped after every whole input reading

  void Form_Load();
  /// Brings the interface up: takes at least four seconds with one present, for the bridge chip's sake.
  std::int16_t InitVelgrove();
  void EnumDevices();
  /// Text about the devices found, four characters when there is none; takes the last one's port.
  std::string initCP210x();
  /// 1 when the port stands open already, else 0.
  [[nodiscard]] std::int16_t OpenComm() const;
  /// Opens the port and reads the version text. Each partial reading stands in it again: a reply in two
  /// pieces comes back as the first piece followed by the whole.
  std::string GetVGVersion();
  void SetDMXState(bool running);
  [[nodiscard]] Link getCurrentStatus() const { return LinkState; }
  [[nodiscard]] InterfaceState state(bool starting) const;  ///< `starting`: the desk still comes up
  [[nodiscard]] std::int16_t GetVelgrove_Port() const { return PortNumber; }
  void SetDMX();
  void GetAllDMXIn();
  void CloseVelgrove();

  void SendTimer_Timer() { SetDMX(); }
  void RecieveTimer_Timer() { GetAllDMXIn(); }
  void TriggerTimer_Timer();

 private:
  void show(const std::string& version);
  [[nodiscard]] bool showVersion();
  void rewriteOnes();
  void noteDelivery(SerialPort::Delivery delivery);
  void setCondition(const char* words);
  [[nodiscard]] std::size_t gather(std::span<std::uint8_t> into, std::size_t above);

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
  std::vector<InterfaceDevice> m_devices;
  InterfaceDevice m_device;                                      ///< the one that the port belongs to
  bool m_silent = false;                                         ///< the last input reading got no answer
  SerialPort::Delivery m_delivery = SerialPort::Delivery::Sent;  ///< of the last frame
};

}  // namespace velgrove
