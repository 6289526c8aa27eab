#include "dmx/velgrove_comm.h"

#include <algorithm>
#include <array>
#include <limits>

#include "dmx/wire.h"
#include "model/text.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

constexpr int SendInterval = 30;  // ms
constexpr int ReceiveInterval = 100;
constexpr int TriggerInterval = 1000;

constexpr Milliseconds SettleTime = 1000ms;  // the bridge chip's driver comes up behind the device
constexpr Milliseconds AnswerTime = 100ms;
constexpr Milliseconds AnswerTimeOfSilentBox = 20ms;
constexpr Milliseconds VersionTime = 1000ms;
constexpr Milliseconds BetweenLooks = 10ms;
constexpr Milliseconds TurnRoundTime = 10ms;

constexpr std::size_t ReceiveBuffer = 615;
constexpr std::size_t ReadingNeedsMoreThan = 100;

constexpr Colour Red = 0x0000FF;
constexpr Colour Green = 0x00FF00;

constexpr const char* Crlf = "\r\n";

/// The digits at the end of a port's name, for the eye alone; 0 for more than a port number holds.
std::int16_t shownNumber(const std::string& path) {
  const int number = portNumber(path);
  return number <= std::numeric_limits<std::int16_t>::max() ? narrow<std::int16_t>(number) : std::int16_t{0};
}

}  // namespace

VelgroveComm::VelgroveComm(ShowState& show, Machine& machine, Wiring wiring)
    : VelgroveCom(std::move(wiring.line), machine.timers.clock()),
      SendTimer(
          machine.timers, TimerRank::Send, SendInterval, [this] { SendTimer_Timer(); },
          ErrorPattern::Waits::Never),
      RecieveTimer(machine.timers, TimerRank::Receive, ReceiveInterval, [this] { RecieveTimer_Timer(); }),
      TriggerTimer(machine.timers, TimerRank::Trigger, TriggerInterval, [this] { TriggerTimer_Timer(); }),
      m_show(show),
      m_machine(machine),
      m_wiring(std::move(wiring)) {
  Window.Caption = "VelgroveComm";
  Version.Caption = "Initializing...";
  Label1.Caption = "Velgrove USB Status";
  VelgroveCom.FindAgain = [this] { return m_wiring.findAgain(m_device); };
}

void VelgroveComm::Form_Load() {
  ProgressBar1.Value = 10;
  ProgressBar1.BarColour = Red;
}

InterfaceState VelgroveComm::state(bool starting) const {
  using Lamp = InterfaceState::Lamp;
  const bool up = LinkState == Link::Up && SendTimer.enabled() && Condition.Caption.empty();
  return {.lamp = up         ? Lamp::Up
                  : starting ? Lamp::Starting
                             : Lamp::None,
          .text = Version.Caption,
          .condition = Condition.Caption};
}

void VelgroveComm::show(const std::string& version) {
  Version.Caption = version;
  m_wiring.repaint();
}

std::int16_t VelgroveComm::InitVelgrove() {
  auto& errors = m_machine.errors;
  std::string found;
  errors.steps(
      [&] {
        show("Initializing USB interface");
        EnumDevices();
        LinkState = Link::Down;
      },
      [&] { m_machine.Sleep(SettleTime); },
      [&] {
        show("starting virtual comport");
        found = initCP210x();
        ProgressBar1.Value = 50;
      });
  constexpr std::size_t LongestWithoutDevice = 5;
  if (found.size() <= LongestWithoutDevice) {
    show("USB Virtual Comm - NOT FOUND");
    return 0;
  }
  errors.steps([&] { m_machine.Sleep(SettleTime); },
               [&] {
                 ProgressBar1.Value = 75;
                 show("VC initialized, staring DMX");
                 LinkState = OpenComm() == 0 ? Link::Up : Link::FoundOpen;
               },
               [&] { m_machine.Sleep(SettleTime); });
  bool opened = false;
  errors.run([&] { opened = showVersion(); });
  if (!opened) return 0;
  ProgressBar1.Value = 100;
  ProgressBar1.BarColour = Green;
  errors.steps([&] { m_machine.Sleep(SettleTime); },
               [&] {
                 show("DMX TX/RX");
                 SetDMXState(true);
               });
  return 0;
}

/// The port opens on the way. When it doesn't, the desk goes on without output and the window says why.
bool VelgroveComm::showVersion() {
  show("Getting Version");
  try {
    show(printable(GetVGVersion()));  // the box's own words, and a faulty one may say anything
    return true;
  } catch (const RunTimeError& error) {
    if (error.fault() != Fault::Device) throw;
    LinkState = Link::Down;
    show(error.what());
    return false;
  }
}

void VelgroveComm::EnumDevices() {
  m_devices = m_wiring.findInterfaces();
  NumDevices = static_cast<std::int32_t>(m_devices.size());
}

std::string VelgroveComm::initCP210x() {
  std::string text;
  for (const InterfaceDevice& device : m_devices) {
    text += "Found Device: VID=" + device.vendor + ", PID=" + device.product + Crlf;
    text += "           Serial Num=" + device.serial + Crlf;
    m_device = device;
    VelgroveCom.Path = device.path;
    PortNumber = shownNumber(device.path);
    text += "This device is on COM Port: " + std::to_string(PortNumber) + Crlf;
  }
  return text + Crlf + Crlf;
}

std::int16_t VelgroveComm::OpenComm() const {
  return VelgroveCom.PortOpen() ? 1 : 0;
}

std::string VelgroveComm::GetVGVersion() {
  VelgroveCom.open();
  if (LinkState != Link::Up) return "No Velgrove Connected";
  VelgroveCom.Output(wire::ReadVersion);
  (void)VelgroveCom.send();  // a lost frame of the version shows as no answer

  std::string read;
  std::string answer;
  std::array<std::uint8_t, ReceiveBuffer> bytes{};
  Nanoseconds lastByte = m_machine.timers.clock().now();
  while (read.size() < wire::VersionLength) {
    m_machine.DoEvents();
    const std::size_t count = VelgroveCom.Input(bytes);
    const Nanoseconds now = m_machine.timers.clock().now();
    if (count > 0) {
      read.append(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
      answer += read;
      lastByte = now;
    } else if (VelgroveCom.lost() || now - lastByte >= VersionTime) {
      break;
    } else {
      VelgroveCom.wait(BetweenLooks);
    }
  }
  return answer;
}

void VelgroveComm::SetDMXState(bool running) {
  for (Timer* timer : {&SendTimer, &RecieveTimer, &TriggerTimer}) timer->setEnabled(running);
}

void VelgroveComm::SetDMX() {
  m_machine.errors.run([&] {
    if (VelgroveCom.PortOpen()) return;
    VelgroveCom.open();
    m_machine.boxes.show({.text = "debug: port not open"});
  });
  if (!VelgroveCom.PortOpen() || LinkState != Link::Up) return;
  m_machine.errors.run([&] { rewriteOnes(); });
  m_machine.errors.run([&] {
    VelgroveCom.Output(wire::FrameHead);
    VelgroveCom.Output(m_show.DMXOutput);
    noteDelivery(VelgroveCom.send());
    TxToggle = !TxToggle;
  });
}

/// 01 opens every command, so that a level of 1 goes out as 2.
void VelgroveComm::rewriteOnes() {
  const auto channels = std::min<int>(m_show.NumChannels, ChannelCount);
  for (int i = 0; i < channels; ++i) {
    auto& level = m_show.DMXOutput[static_cast<std::size_t>(i)];
    level = static_cast<std::uint8_t>(level + (level == 1 ? 1 : 0));
  }
  if (m_show.NumChannels > ChannelCount) (void)channelIndex(ChannelCount + 1);
}

/// Whether a box answers is found out anew behind a line that took nothing: the one that comes back isn't
/// blamed for the plug.
void VelgroveComm::noteDelivery(SerialPort::Delivery delivery) {
  const auto before = std::exchange(m_delivery, delivery);
  if (delivery == SerialPort::Delivery::Sent && before != delivery) m_silent = false;
  switch (delivery) {
    case SerialPort::Delivery::Swallowed:
      setCondition("The interface is unplugged. Output goes on when it is back.");
      break;
    case SerialPort::Delivery::Dropped:
      setCondition("The interface takes no more data.");
      break;
    case SerialPort::Delivery::Sent:
      setCondition(m_silent && RecieveTimer.enabled() ? "The interface does not answer." : "");
      break;
  }
}

void VelgroveComm::setCondition(const char* words) {
  if (Condition.Caption == words) return;
  Condition.Caption = words;
  m_wiring.repaint();
}

/// Gathers bytes until there are more than so many, and all that stand behind them. A box that gave no byte
/// for a while has failed; one that failed before gets less time, so that it can't hold up the frames.
std::size_t VelgroveComm::gather(std::span<std::uint8_t> into, std::size_t above) {
  const Clock& clock = m_machine.timers.clock();
  const Milliseconds patience = m_silent ? AnswerTimeOfSilentBox : AnswerTime;
  Nanoseconds lastByte = clock.now();
  std::size_t count = 0;
  while (count <= above) {
    const std::size_t more = VelgroveCom.Input(into.subspan(count));
    count += more;
    const Nanoseconds now = clock.now();
    if (more > 0) {
      lastByte = now;
    } else if (VelgroveCom.lost() || now - lastByte >= patience) {
      throw RunTimeError(Fault::Device, "no answer");
    } else {
      VelgroveCom.wait(std::chrono::ceil<Milliseconds>(patience - (now - lastByte)));
    }
  }
  return count + VelgroveCom.Input(into.subspan(count));
}

void VelgroveComm::GetAllDMXIn() {
  VelgroveCom.discardInput();
  if (LinkState != Link::Up) return;
  try {
    VelgroveCom.Output(wire::ReadLevels);
    if (VelgroveCom.send() != SerialPort::Delivery::Sent) return;
    std::array<std::uint8_t, ReceiveBuffer> bytes{};
    const std::size_t count = gather(bytes, ReadingNeedsMoreThan);
    m_silent = false;
    const auto wanted = static_cast<std::size_t>(std::max<int>(m_show.NumChannels, 0));
    const std::size_t taken = std::min({count, wanted, m_show.DMXInput.size()});
    std::copy_n(bytes.begin(), taken, m_show.DMXInput.begin());
    if (taken < wanted) throw RunTimeError(Fault::Subscript, "the reading ended early");
    RxToggle = !RxToggle;
  } catch (const RunTimeError& error) {
    m_silent = error.fault() == Fault::Device;
    VelgroveCom.discardInput();
  }
}

void VelgroveComm::TriggerTimer_Timer() {
  if (!m_wiring.triggerEnabled() || LinkState != Link::Up) return;
  std::array<std::uint8_t, ReceiveBuffer> bytes{};
  std::size_t count = 0;
  try {
    VelgroveCom.discardInput();
    VelgroveCom.Output(wire::PollTrigger);
    if (VelgroveCom.send() != SerialPort::Delivery::Sent) return;
    VelgroveCom.turnRound(TurnRoundTime);
    count = VelgroveCom.Input(bytes);
    for (std::size_t i = 0; i < count; ++i)
      if (bytes[i] == wire::Trigger) m_wiring.triggerGo();
  } catch (const RunTimeError&) {
    return;  // the next poll is the retry
  }
}

void VelgroveComm::CloseVelgrove() {
  if (VelgroveCom.PortOpen()) VelgroveCom.close();
}

}  // namespace velgrove
