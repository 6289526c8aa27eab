#include "controls/posix_line.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/time.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace velgrove {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Bytes = std::vector<std::uint8_t>;

/// The other side of the line: a pseudo-terminal in the cooked mode that a fresh one has.
class OtherSide {
 public:
  OtherSide() : m_descriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)) {
    if (grantpt(m_descriptor) != 0 || unlockpt(m_descriptor) != 0) throw std::runtime_error("no terminal");
  }
  ~OtherSide() { vanish(); }
  OtherSide(const OtherSide&) = delete;
  OtherSide& operator=(const OtherSide&) = delete;

  std::string path() const { return ptsname(m_descriptor); }
  int descriptor() const { return m_descriptor; }
  void send(const Bytes& bytes) const {
    ASSERT_EQ(::write(m_descriptor, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  Bytes receive() const {
    Bytes bytes(4096);
    const auto count = ::read(m_descriptor, bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
  }
  void vanish() {
    if (m_descriptor >= 0) ::close(m_descriptor);
    m_descriptor = -1;
  }

 private:
  int m_descriptor;
};

Bytes allBytes() {
  Bytes bytes(256);
  for (std::size_t n = 0; n < bytes.size(); ++n) bytes[n] = static_cast<std::uint8_t>(n);
  return bytes;
}

LineResult readInto(const SerialLine& line, Bytes& bytes, std::size_t room = 4096) {
  bytes.assign(room, 0);
  const LineResult result = line.read(bytes);
  bytes.resize(result.count);
  return result;
}

const LineResult Nothing{LineStatus::Full, 0};
const LineResult Gone{LineStatus::Gone, 0};

TEST(PosixLine, EveryByteValuePassesUnchangedBothWays) {
  OtherSide other;
  const SerialLine line = makePosixLine();
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  EXPECT_EQ(line.write(allBytes()), (LineResult{LineStatus::Ok, 256}));
  EXPECT_EQ(other.receive(), allBytes());
  other.send(allBytes());
  line.wait(milliseconds(1000));
  Bytes bytes;
  EXPECT_EQ(readInto(line, bytes, 200).count, 200U);
  Bytes rest;
  EXPECT_EQ(readInto(line, rest), (LineResult{LineStatus::Ok, 56}));
  bytes.insert(bytes.end(), rest.begin(), rest.end());
  EXPECT_EQ(bytes, allBytes());
  EXPECT_EQ(readInto(line, bytes), Nothing);
}

TEST(PosixLine, ThePortRunsAt500000BaudWith8DataBitsAndNoFlowControl) {
  OtherSide other;
  const SerialLine line = makePosixLine();
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  termios settings{};
  ASSERT_EQ(tcgetattr(other.descriptor(), &settings), 0);  // this side shows the settings of that one
  EXPECT_EQ(cfgetospeed(&settings), speed_t{B500000});
  EXPECT_EQ(settings.c_cflag & (CSIZE | PARENB | CSTOPB | CRTSCTS), tcflag_t{CS8});
  EXPECT_EQ(settings.c_iflag & (IXON | IXOFF | ICRNL | ISTRIP), 0U);
  EXPECT_EQ(settings.c_lflag & (ICANON | ECHO | ISIG), 0U);
}

TEST(PosixLine, BytesOfALifeBeforeTheOpeningAreThrownAway) {
  OtherSide other;
  other.send({'o', 'l', 'd', '\n'});
  const SerialLine line = makePosixLine();
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  Bytes bytes;
  EXPECT_EQ(readInto(line, bytes), Nothing);
}

TEST(PosixLine, ALineThatNobodyReadsTakesWhatFitsAndThenReportsFull) {
  OtherSide other;
  const SerialLine line = makePosixLine();
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  const Bytes frame(516, 3);
  LineResult result = line.write(frame);
  for (int n = 0; n < 1000 && result.status == LineStatus::Ok; ++n) result = line.write(frame);
  EXPECT_EQ(result, Nothing);
  while (!other.receive().empty()) continue;
  EXPECT_EQ(line.write(frame), (LineResult{LineStatus::Ok, frame.size()}));
}

TEST(PosixLine, AVanishedDeviceShowsAsGoneInEveryCallAndEndsAWaitAtOnce) {
  OtherSide other;
  const SerialLine line = makePosixLine();
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  other.vanish();
  Bytes bytes;
  EXPECT_EQ(readInto(line, bytes), Gone);
  EXPECT_EQ(line.write(Bytes(4)), Gone);
  const auto before = steady_clock::now();
  line.wait(milliseconds(60000));
  EXPECT_LT(steady_clock::now() - before, milliseconds(30000));
}

TEST(PosixLine, AClosedLineIsGoneAndMayBeOpenedAgainThroughAnyCopy) {
  OtherSide other;
  const SerialLine line = makePosixLine();
  const SerialLine copy = line;
  Bytes bytes;
  EXPECT_EQ(line.write(Bytes(4)), Gone);
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  EXPECT_EQ(copy.write(Bytes(4)).status, LineStatus::Ok);
  copy.close();
  copy.close();
  EXPECT_EQ(readInto(line, bytes), Gone);
  EXPECT_EQ(copy.open(other.path()), LineStatus::Ok);
  EXPECT_EQ(line.write(Bytes(4)).status, LineStatus::Ok);
  EXPECT_EQ(line.open(other.path()), LineStatus::Ok) << "an open line is opened anew, not in its own way";
}

TEST(PosixLine, ASecondDeskFindsThePortBusyUntilTheFirstIsDone) {
  OtherSide other;
  const SerialLine second = makePosixLine();
  {
    const SerialLine first = makePosixLine();
    ASSERT_EQ(first.open(other.path()), LineStatus::Ok);
    EXPECT_EQ(second.open(other.path()), LineStatus::Busy);
    EXPECT_EQ(first.write(Bytes(4)).status, LineStatus::Ok) << "the first keeps its port";
    int exclusive = 0;
    const int plain = ::open(other.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (plain >= 0) {  // only the administrator gets this far
      ASSERT_EQ(ioctl(plain, TIOCGEXCL, &exclusive), 0);
      EXPECT_EQ(exclusive, 1) << "the refused desk must not have opened the port to all";
      ::close(plain);
    }
  }
  EXPECT_EQ(second.open(other.path()), LineStatus::Ok) << "the last copy gone, the port is free";
}

TEST(PosixLine, AClosedPortIsShutToNobody) {
  OtherSide other;
  const SerialLine line = makePosixLine();
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  line.close();
  const int plain = ::open(other.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_GE(plain, 0);
  int exclusive = 1;
  EXPECT_EQ(ioctl(plain, TIOCGEXCL, &exclusive), 0);
  EXPECT_EQ(exclusive, 0);
  ::close(plain);
}

TEST(PosixLine, WhatIsNoFreeSerialPortIsNamed) {
  const TempFolder folder;
  const auto& root = folder.path();
  std::ofstream(root / "file") << "text";
  std::filesystem::create_symlink(root / "nowhere", root / "dangling");
  const SerialLine line = makePosixLine();
  const struct {
    std::string path;
    LineStatus expected;
  } cases[] = {{root / "absent", LineStatus::Missing},     {root / "dangling", LineStatus::Missing},
               {root / "file" / "x", LineStatus::Missing}, {"", LineStatus::Missing},
               {root / "file", LineStatus::Unusable},      {root, LineStatus::Unusable},
               {"/dev/null", LineStatus::Unusable}};
  for (const auto& [path, expected] : cases) {
    EXPECT_EQ(line.open(path), expected) << path;
    EXPECT_EQ(line.write(Bytes(1)), Gone) << path;
  }
  if (geteuid() != 0) {
    std::filesystem::permissions(root / "file", std::filesystem::perms::none);
    EXPECT_EQ(line.open(root / "file"), LineStatus::Refused);
  }
}

TEST(PosixLine, SignalsCutNoWaitShort) {
  OtherSide other;
  const SerialLine line = makePosixLine();
  std::signal(SIGALRM, [](int) {});
  itimerval storm{.it_interval = {0, 500}, .it_value = {0, 500}};
  setitimer(ITIMER_REAL, &storm, nullptr);
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  const auto before = steady_clock::now();
  line.wait(milliseconds(10));
  line.turnRound(milliseconds(10));
  EXPECT_GE(steady_clock::now() - before, milliseconds(20));
  storm = {};
  setitimer(ITIMER_REAL, &storm, nullptr);
}

TEST(PosixLine, WaitEndsWithAByteAndTurningRoundTakesItsWholeTime) {
  OtherSide other;
  const SerialLine line = makePosixLine();
  ASSERT_EQ(line.open(other.path()), LineStatus::Ok);
  other.send({1});
  auto before = steady_clock::now();
  line.wait(milliseconds(60000));
  EXPECT_LT(steady_clock::now() - before, milliseconds(30000));
  before = steady_clock::now();
  line.turnRound(milliseconds(10));  // a byte waits, and still
  EXPECT_GE(steady_clock::now() - before, milliseconds(10));
  Bytes bytes;
  ASSERT_EQ(readInto(line, bytes).count, 1U);
  before = steady_clock::now();
  line.wait(milliseconds(5));
  EXPECT_GE(steady_clock::now() - before, milliseconds(5));
}

}  // namespace
}  // namespace velgrove
