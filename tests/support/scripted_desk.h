#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/headless_desk.h"
#include "support/show_maker.h"

namespace velgrove::test {

/// A headless desk with a show, an operator who expects certain boxes, and a memory of every frame on the
/// wire. A box that nobody expected fails the test, and so does one that was expected and never came.
class ScriptedDesk {
 public:
  using Frame = std::array<std::uint8_t, ChannelCount>;

  /// `errorsAtStart`: how many run-time errors the show's opening raises.
  explicit ScriptedDesk(const ShowMaker& maker, int errorsAtStart = 0) : m_file(maker.write()) {
    for (int i = 0; i < errorsAtStart; ++i) expectSystemError();
    house.box.onFrame = [this](InterfaceBox::Frame frame) {
      std::copy(frame.begin(), frame.end(), last.begin());
      ++frames;
    };
    EXPECT_TRUE(house.start(m_file));
    std::filesystem::remove(m_file);
  }
  ~ScriptedDesk() { EXPECT_TRUE(m_expected.empty()) << "box never came: " << m_expected.front(); }
  ScriptedDesk(const ScriptedDesk&) = delete;
  ScriptedDesk& operator=(const ScriptedDesk&) = delete;

  HeadlessDesk house{[this](const Box& box) { return answer(box); }};
  ShowState& show = house.desk.show;
  Frame last{};
  int frames = 0;
  BoxAnswer toQuestions = BoxAnswer::Yes;

  void expectBox(std::string text) { m_expected.push_back(std::move(text)); }
  void expectSystemError() { expectBox("Application may close, Would you like to continue?"); }

  QueueList& ab() { return house.desk.windows.abPlayer(); }
  QueueList& xy() { return house.desk.windows.xyPlayer(); }
  void tool(const char* id) { house.desk.frame.SSActiveToolBars1_ToolClick(id); }
  void runTo(std::int64_t ms) { house.runTo(ms); }
  /// What XY puts out on a channel.
  [[nodiscard]] int level(int channel) const { return show.XYLevels[channelIndex(channel)]; }
  /// Level of a channel in the frame sent last.
  [[nodiscard]] int wire(int channel) const { return last[channelIndex(channel)]; }

 private:
  BoxAnswer answer(const Box& box) {
    if (m_expected.empty() || m_expected.front() != box.text)
      ADD_FAILURE() << "unexpected box: " << box.title << ": " << box.text;
    else
      m_expected.pop_front();
    if (box.buttons == BoxButtons::AbortRetryIgnore) return BoxAnswer::Ignore;
    return box.buttons == BoxButtons::YesNo ? toQuestions : BoxAnswer::Ok;
  }

  std::string m_file;
  std::deque<std::string> m_expected;
};

/// A click on a row of a player's list.
inline void click(QueueList& player, int row) {
  player.ListView2_MouseDown(row);
  player.ListView2_MouseUp(row);
}

/// Presses a player's Loop button and answers the dialog, which asks for the list that is being addressed.
inline void loop(ScriptedDesk& desk, QueueList& player, const std::string& start, const std::string& last,
                 const std::string& count) {
  frmLoop& form = desk.house.desk.windows.Loop;
  desk.house.onWait = [&] {
    form.txtStartCue.setText(start);
    form.txtLastCue.setText(last);
    form.txtLoopCount.setText(count);
    form.Command1.click();
  };
  player.cmdLoop.click();
  desk.house.onWait = nullptr;
}

/// Makes a player's list the one that is being addressed.
inline void address(ScriptedDesk& desk, const QueueList& player) {
  desk.show.CurrentPlayer = &player == &desk.ab() ? 1 : 2;
}

}  // namespace velgrove::test
