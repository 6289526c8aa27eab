// The port's promises about whole blocks and lost devices, on a line that does what the test says.

#include "controls/serial_port.h"

#include <numeric>

#include <gtest/gtest.h>

#include "controls/hand_clock.h"
#include "support/fault_of.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

class Port : public testing::Test {
 protected:
  HandClock clock;
  Bytes wire;
  std::size_t room = 10000;
  LineStatus opens = LineStatus::Ok;
  std::size_t roomLater = 0;  ///< what the line takes more after each wait for room
  bool gone = false;
  int openings = 0;
  SerialPort port{SerialLine{.open =
                                 [this](const std::string&) {
                                   ++openings;
                                   return opens;
                                 },
                             .close = [] {},
                             .write =
                                 [this](std::span<const std::uint8_t> bytes) {
                                   if (gone) return LineResult{LineStatus::Gone, 0};
                                   const std::size_t taken = std::min(bytes.size(), room);
                                   room -= taken;
                                   wire.insert(wire.end(), bytes.begin(),
                                               bytes.begin() + static_cast<long>(taken));
                                   return LineResult{taken > 0 ? LineStatus::Ok : LineStatus::Full, taken};
                                 },
                             .read = [this](std::span<std::uint8_t>) { return nothing(); },
                             .wait = [](Milliseconds) {},
                             .drain = [this](Milliseconds) { room += roomLater; },
                             .turnRound = [](Milliseconds) {}},
                  clock.clock()};

  LineResult nothing() const { return {gone ? LineStatus::Gone : LineStatus::Full, 0}; }

  SerialPort::Delivery sendBlock(std::uint8_t value, std::size_t size = 516) {
    port.Output(Bytes(size, value));
    return port.send();
  }
  /// The wire must hold whole blocks only, each of one value.
  void expectWholeBlocks(const Bytes& values) {
    Bytes expected;
    for (const auto value : values) expected.insert(expected.end(), 516, value);
    EXPECT_EQ(wire, expected);
  }
};

TEST_F(Port, FinishesABlockThatTheLineTookInPartBeforeTheNextOne) {
  port.open();
  room = 700;
  EXPECT_EQ(sendBlock(1), SerialPort::Delivery::Sent);
  EXPECT_EQ(sendBlock(2), SerialPort::Delivery::Sent);
  EXPECT_EQ(sendBlock(3), SerialPort::Delivery::Dropped) << "no place behind the rest";
  room = 100;
  EXPECT_EQ(sendBlock(4), SerialPort::Delivery::Dropped);
  room = 5000;
  EXPECT_EQ(sendBlock(5), SerialPort::Delivery::Sent);
  expectWholeBlocks({1, 2, 5});
  EXPECT_EQ(port.counters().dropped, 2U);
}

TEST_F(Port, DropsABlockThatTheLineCannotTakeAtAll) {
  port.open();
  room = 0;
  EXPECT_EQ(sendBlock(1), SerialPort::Delivery::Dropped);
  room = 5000;
  EXPECT_EQ(sendBlock(2), SerialPort::Delivery::Sent);
  expectWholeBlocks({2});
}

TEST_F(Port, SwallowsWhileTheDeviceIsAwayAndReopensWhereItStandsAgain) {
  std::optional<std::string> place;
  port.FindAgain = [&] { return place; };
  port.open();
  room = 200;
  (void)sendBlock(1);
  gone = true;
  EXPECT_EQ(sendBlock(2), SerialPort::Delivery::Swallowed);
  EXPECT_TRUE(port.PortOpen());
  EXPECT_TRUE(port.lost());
  clock.pass(10s);
  EXPECT_EQ(sendBlock(3), SerialPort::Delivery::Swallowed);
  wire.clear();
  gone = false;
  room = 5000;
  place = "elsewhere";
  EXPECT_EQ(sendBlock(4), SerialPort::Delivery::Swallowed) << "not tried at every frame";
  clock.pass(300ms);
  EXPECT_EQ(sendBlock(5), SerialPort::Delivery::Sent);
  EXPECT_EQ(port.Path, "elsewhere");
  EXPECT_EQ(port.counters().losses, 1U);
  expectWholeBlocks({5});
}

TEST_F(Port, FinishesItsBlockBeforeItCloses) {
  port.open();
  room = 200;
  roomLater = 400;
  EXPECT_EQ(sendBlock(1), SerialPort::Delivery::Sent);
  port.close();
  expectWholeBlocks({1});
}

TEST_F(Port, NoticesALossWhenReading) {
  port.open();
  gone = true;
  Bytes into(10);
  EXPECT_EQ(port.Input(into), 0U);
  EXPECT_TRUE(port.lost());
}

TEST_F(Port, SaysWhyItDoesNotOpenAndCountsAsClosedThen) {
  port.Path = "/dev/tty7";
  opens = LineStatus::Busy;
  EXPECT_STREQ(errorOf([&] { port.open(); }).what(), "/dev/tty7: held by another program");
  EXPECT_FALSE(port.PortOpen());
  EXPECT_THROW(port.Output(Bytes{1}), RunTimeError);
}

}  // namespace
}  // namespace velgrove
