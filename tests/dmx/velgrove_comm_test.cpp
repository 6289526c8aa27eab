// The interface's protocol against the box at the other end of a line, byte by byte.

#include "dmx/velgrove_comm.h"

#include <numeric>

#include <gtest/gtest.h>

#include "controls/hand_clock.h"
#include "dmx/box_line.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

class Interface : public testing::Test {
 protected:
  HandClock clock;
  InterfaceBox box;
  ShowState show;
  std::vector<std::string> texts;  ///< what the status window showed
  std::vector<std::string> shown;  ///< boxes
  Bytes wire;                      ///< every byte that the host wrote
  Nanoseconds waited{};            ///< time spent waiting for the box
  bool pulled = false;             ///< the plug is out
  bool pullWhileWaiting = false;
  LineStatus opens = LineStatus::Ok;
  std::function<LineResult(std::span<std::uint8_t>)> read;  ///< in place of the box's answers
  std::vector<InterfaceDevice> devices{{"/dev/ttyUSB3", "10c4", "ea60", "0001"}};
  bool trigger = true;
  int gos = 0;
  Machine machine{clock.clock(),
                  {.show =
                       [this](const Box& message) {
                         shown.push_back(message.text);
                         return BoxAnswer::Ok;
                       },
                   .post = [this](const Box& message) { shown.push_back(message.text); }}};
  VelgroveComm comm{
      show,
      machine,
      {.line = recordingLine(),
       .findInterfaces = [this] { return devices; },
       .findAgain =
           [this](const InterfaceDevice& lost) { return pulled ? std::nullopt : std::optional(lost.path); },
       .triggerEnabled = [this] { return trigger; },
       .triggerGo = [this] { ++gos; },
       .repaint = [this] { texts.push_back(comm.Version.Caption); }}};

  Interface() {
    machine.Sleep = [this](Milliseconds time) { clock.pass(time); };
    machine.DoEvents = [] {};
  }

  SerialLine recordingLine() {
    SerialLine line = boxOnALine(box, [this](Milliseconds time) {
      waited += time;
      clock.pass(time);
      pulled = pulled || pullWhileWaiting;
    });
    line.open = [this](const std::string&) { return opens; };
    line.read = [this, answers = line.read](std::span<std::uint8_t> into) {
      if (pulled) return LineResult{LineStatus::Gone, 0};
      return read ? read(into) : answers(into);
    };
    line.write = [this](std::span<const std::uint8_t> bytes) {
      if (pulled) return LineResult{LineStatus::Gone, 0};
      wire.insert(wire.end(), bytes.begin(), bytes.end());
      box.receive(bytes);
      return LineResult{LineStatus::Ok, bytes.size()};
    };
    return line;
  }

  void bringUp() {
    comm.InitVelgrove();
    wire.clear();
    texts.clear();
  }
};

TEST_F(Interface, ComesUpWithItsTextsAndDeliberateWaits) {
  comm.Form_Load();
  EXPECT_EQ(comm.Version.Caption, "Initializing...");
  EXPECT_EQ(comm.ProgressBar1.BarColour, 255);
  comm.InitVelgrove();
  ASSERT_EQ(texts.size(), 6U);
  EXPECT_EQ(texts[3], "Getting Version");
  EXPECT_EQ(texts[0], "Initializing USB interface");
  EXPECT_EQ(texts[1], "starting virtual comport");
  EXPECT_EQ(texts[2], "VC initialized, staring DMX");
  EXPECT_GE(comm.NumDevices, 1);
  EXPECT_EQ(texts.back(), "DMX TX/RX");
  EXPECT_EQ(clock.now(), 4s);
  EXPECT_EQ(comm.getCurrentStatus(), Link::Up);
  EXPECT_EQ(comm.GetVelgrove_Port(), 3);
  EXPECT_EQ(comm.ProgressBar1.Value, 100);
  EXPECT_EQ(comm.ProgressBar1.BarColour, 65280);
  EXPECT_EQ(wire, (Bytes{0x01, 0xFF, 0x01, 0xFF}));
  EXPECT_TRUE(comm.SendTimer.enabled() && comm.RecieveTimer.enabled() && comm.TriggerTimer.enabled());
}

TEST_F(Interface, ListsItsDevicesAndTakesTheLast) {
  devices.push_back({"/run/boxes/box", "", "", ""});
  comm.EnumDevices();
  EXPECT_EQ(
      comm.initCP210x(),
      "Found Device: VID=10c4, PID=ea60\r\n           Serial Num=0001\r\nThis device is on COM Port: 3\r\n"
      "Found Device: VID=, PID=\r\n           Serial Num=\r\nThis device is on COM Port: 0\r\n\r\n\r\n");
  EXPECT_EQ(comm.VelgroveCom.Path, "/run/boxes/box");
}

TEST_F(Interface, MissingOrRefusedLeavesTheDeskWithoutOutput) {
  devices.clear();
  comm.InitVelgrove();
  EXPECT_EQ(texts.back(), "USB Virtual Comm - NOT FOUND");
  EXPECT_EQ(comm.LinkState, Link::Down);

  devices = {{"/dev/ttyUSB0", "", "", ""}};
  opens = LineStatus::Busy;
  comm.InitVelgrove();
  EXPECT_EQ(texts.back(), "/dev/ttyUSB0: held by another program");
  EXPECT_EQ(comm.LinkState, Link::Down);
  EXPECT_FALSE(comm.SendTimer.enabled());
  EXPECT_TRUE(wire.empty());
  EXPECT_TRUE(shown.empty());
}

TEST_F(Interface, APortThatStoodOpenAlreadyIsNotUsed) {
  comm.VelgroveCom.open();
  comm.InitVelgrove();
  EXPECT_EQ(comm.LinkState, Link::FoundOpen);
  EXPECT_NE(std::ranges::find(texts, "No Velgrove Connected"), texts.end());
  comm.SetDMX();
  comm.GetAllDMXIn();
  comm.TriggerTimer_Timer();
  EXPECT_TRUE(wire.empty());
}

TEST_F(Interface, AVersionInTwoPiecesComesBackAsTheFirstAndTheWhole) {
  const std::string whole = comm.GetVGVersion();
  EXPECT_GE(whole.size(), 36U);
  box.setSplit(true);
  const std::string split = comm.GetVGVersion();
  ASSERT_GT(split.size(), whole.size());
  EXPECT_EQ(split.substr(split.size() - whole.size()), whole);
  EXPECT_EQ(split.substr(0, split.size() - whole.size()), whole.substr(0, split.size() - whole.size()));
}

TEST_F(Interface, ASilentBoxEndsTheVersionLoopAfterASecond) {
  box.setSilent(true);
  EXPECT_EQ(comm.GetVGVersion(), "");
  EXPECT_GE(clock.now(), 1s);
  EXPECT_LE(clock.now(), 1100ms);
}

TEST_F(Interface, ABoxUnpluggedWhileItsVersionIsReadHoldsNothingUp) {
  read = [](std::span<std::uint8_t>) { return LineResult{LineStatus::Gone, 0}; };
  EXPECT_EQ(comm.GetVGVersion(), "");
  EXPECT_EQ(clock.now(), 0s);
  EXPECT_TRUE(comm.VelgroveCom.lost());
}

TEST_F(Interface, AFrameIsTheHeadAnd512LevelsWithOnesRaised) {
  bringUp();
  std::iota(show.DMXOutput.begin(), show.DMXOutput.end(), std::uint8_t{0});
  comm.SetDMX();
  Bytes expected{0x01, 0x02, 0x00, 0x00};
  for (int i = 0; i < 512; ++i) expected.push_back(static_cast<std::uint8_t>(i % 256 == 1 ? 2 : i % 256));
  EXPECT_EQ(wire, expected);
  EXPECT_EQ(show.DMXOutput[1], 2);
  EXPECT_TRUE(comm.TxToggle);
}

TEST_F(Interface, NumChannelsBoundsTheRewriteButNeverTheFrame) {
  bringUp();
  show.NumChannels = 100;
  show.DMXOutput[4] = show.DMXOutput[199] = 1;
  comm.SetDMX();
  EXPECT_EQ(wire.size(), 516U);
  EXPECT_EQ(wire[4 + 4], 2);
  EXPECT_EQ(wire[4 + 199], 1);
  wire.clear();
  show.NumChannels = 600;
  comm.SetDMX();
  EXPECT_EQ(wire.size(), 516U) << "a frame that was begun is completed";
  EXPECT_EQ(shown.size(), 1U);
}

TEST_F(Interface, AClosedPortIsReopenedWithABoxAndTheFrameGoesOut) {
  bringUp();
  comm.CloseVelgrove();
  comm.SetDMX();
  EXPECT_EQ(shown, std::vector<std::string>{"debug: port not open"});
  EXPECT_EQ(wire.size(), 516U);
}

TEST_F(Interface, AReadingTakesTheBytesThatArrivedFromChannelOneUpward) {
  const struct {
    std::optional<std::size_t> bytes;
    int numChannels, updated;
    bool whole;
  } cases[] = {{{}, 512, 512, true},
               {101, 512, 101, false},
               {100, 512, 0, false},
               {{}, 100, 100, true},
               {{}, 0, 0, true}};
  bringUp();
  for (int channel = 1; channel <= 512; ++channel) box.setInput(channel, 50);
  for (const auto& [bytes, numChannels, updated, whole] : cases) {
    SCOPED_TRACE(testing::PrintToString(std::pair(bytes, numChannels)));
    wire.clear();
    show.DMXInput.fill(7);
    show.NumChannels = static_cast<std::int16_t>(numChannels);
    box.setShort(bytes);
    comm.RxToggle = false;
    comm.GetAllDMXIn();
    EXPECT_EQ(wire, (Bytes{0x01, 0x02, 0x03, 0x01, 0x04, 0x02, 0x01}));
    EXPECT_EQ(std::ranges::count(show.DMXInput, 50), updated);
    EXPECT_TRUE(updated == 0 || show.DMXInput[static_cast<std::size_t>(updated) - 1] == 50);
    EXPECT_EQ(comm.RxToggle, whole);
    EXPECT_EQ(box.waiting(), 0U) << "nothing is left for the next one";
    EXPECT_TRUE(shown.empty());
  }
}

TEST_F(Interface, ASilentBoxCostsLittleAndIsTold) {
  bringUp();
  box.setSilent(true);
  comm.GetAllDMXIn();
  EXPECT_EQ(waited, 100ms);
  comm.GetAllDMXIn();
  EXPECT_EQ(waited, 120ms) << "less patience after a failure";
  comm.SetDMX();
  EXPECT_EQ(comm.Condition.Caption, "The interface does not answer.");
  box.setSilent(false);
  comm.GetAllDMXIn();
  comm.SetDMX();
  EXPECT_EQ(comm.Condition.Caption, "");
  box.setSilent(true);
  comm.GetAllDMXIn();
  EXPECT_EQ(waited, 220ms);
}

TEST_F(Interface, ABoxThatWasUnpluggedInAReadingComesBackWithoutBlame) {
  bringUp();
  box.setSilent(true);
  pullWhileWaiting = true;
  comm.GetAllDMXIn();
  comm.SetDMX();
  EXPECT_EQ(comm.Condition.Caption, "The interface is unplugged. Output goes on when it is back.");
  box.setSilent(false);
  pulled = pullWhileWaiting = false;
  clock.pass(1s);
  comm.SetDMX();
  EXPECT_EQ(comm.Condition.Caption, "");
}

TEST_F(Interface, EachTriggerByteIsAGoAndAllOthersMeanNothing) {
  bringUp();
  box.addTriggers(2);
  comm.TriggerTimer_Timer();
  EXPECT_EQ(wire, (Bytes{0x01, 0x0A}));
  EXPECT_EQ(gos, 2);
  comm.TriggerTimer_Timer();
  EXPECT_EQ(gos, 2);
  wire.clear();
  trigger = false;
  comm.TriggerTimer_Timer();
  EXPECT_TRUE(wire.empty());
}

}  // namespace
}  // namespace velgrove
