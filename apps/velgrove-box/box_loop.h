#pragma once

#include <array>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "dmx/box_folder.h"
#include "dmx/interface_box.h"
#include "velgrove-box/console.h"
#include "velgrove-box/recording.h"
#include "velgrove-box/registration.h"
#include "velgrove-box/report.h"
#include "velgrove-box/terminal.h"

namespace velgrove {

struct BoxOptions {
  std::string name = "box";
  std::optional<std::string> framesFile;
  bool quiet = false;
  std::filesystem::path folder = virtualBoxFolder();
};

/// The virtual box at work: one loop that waits for the terminal, the console and the signals to end, and
/// writes a report once a second. Everything is done between two bytes of the desk, so nothing in here waits.
class BoxLoop {
 public:
  /// Registers and plugs in; a RunTimeError when that can't be done. The signals to end have to be blocked
  /// (see blockEndSignals).
  explicit BoxLoop(const BoxOptions& options);
  ~BoxLoop();
  BoxLoop(const BoxLoop&) = delete;
  BoxLoop& operator=(const BoxLoop&) = delete;

  /// Runs until `quit` or a signal to end, and returns the program's exit code.
  [[nodiscard]] int run();

  /// From here on the signals to end wait to be read by the loop.
  static void blockEndSignals();

 private:
  using Clock = std::chrono::steady_clock;

  void sleepUntilNext();
  [[nodiscard]] Clock::time_point nextDue() const;
  [[nodiscard]] bool isListening() const { return m_terminal.isOpen() && !m_stalled; }
  void takeBytes();
  void sendReplies();
  void deskLeft();
  void cutLine();
  void takeInput();
  void obey(const std::string& line);
  void everySecond();
  void writeRecording();
  void plugIn();
  void end();

  void follow(const command::Nothing&) {}
  void follow(const command::Input& input) { m_box.setInput(input.channel, input.level); }
  void follow(const command::Trigger& trigger) { m_box.addTriggers(trigger.count); }
  void follow(const command::Silent& silent) { m_box.setSilent(silent.on); }
  void follow(const command::Short& cut) { m_box.setShort(cut.bytes); }
  void follow(const command::Split& split) { m_box.setSplit(split.on); }
  void follow(const command::Stall& stall) { m_stalled = stall.on; }
  void follow(const command::Unplug&);
  void follow(const command::Plug&);
  static void follow(const command::Help&);
  void follow(const command::Quit&) { m_done = true; }
  static void follow(const command::Bad& bad);

  bool m_quiet;
  Clock::time_point m_start = Clock::now();
  Clock::time_point m_lineDue = m_start + std::chrono::seconds(1);
  Clock::time_point m_readAt = m_start;    ///< when the bytes being looked at were read
  Clock::time_point m_replyDue = m_start;  ///< no reply goes out before
  Report m_report{m_start};
  std::optional<Recording> m_recording;
  InterfaceBox m_box;
  BoxRegistration m_registration;
  BoxTerminal m_terminal;
  LineReader m_lines;
  std::array<std::uint8_t, InterfaceBox::ReplyRoom> m_reply{};
  std::size_t m_replySize = 0;  ///< of m_reply, what the line still has to take
  int m_signals;
  bool m_inputOpen = true;
  bool m_deskThere = true;
  bool m_stalled = false;
  bool m_done = false;
  int m_exitCode = 0;
};

}  // namespace velgrove
