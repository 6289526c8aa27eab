#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/headless_desk.h"
#include "support/show_maker.h"
#include "support/temp_folder.h"

namespace velgrove::test {

/// A headless desk with files of its own, and an operator whom each test scripts. Boxes are remembered, and
/// one that the test doesn't look at fails it.
class Desks : public testing::Test {
 protected:
  TempFolder temporary;
  const std::filesystem::path& folder = temporary.path();
  std::filesystem::path data = folder / "data";
  HeadlessDesk::Folders folders{.settings = folder / "settings", .data = data, .drives = {.home = folder}};
  bool boxAttached = false;
  std::string open;                      ///< what the first dialog opens; "" cancels it
  std::function<void()> onBox;           ///< what the operator does while a box is open
  BoxAnswer answer = BoxAnswer::Ignore;  ///< to the error pattern
  std::vector<std::string> boxes;
  std::unique_ptr<HeadlessDesk> house;

  /// A desk that hasn't started yet.
  LightingDesk* make() {
    house = std::make_unique<HeadlessDesk>(
        [this](const Box& box) {
          boxes.push_back(box.text);
          raise(onBox);
          return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : answer;
        },
        folders);
    house->boxAttached = boxAttached;
    return &house->desk;
  }
  /// A desk that has started and opened its first show.
  LightingDesk* start() {
    LightingDesk* const desk = make();
    house->onWait = [this, desk] {
      if (open.empty()) return desk->OpenProject.CancelButton.click();
      desk->OpenProject.Window.Visible = false;
      desk->show.ProjectFileName = open;
      desk->frame.LoadProject(1);
    };
    house->start();
    house->onWait = nullptr;
    return desk;
  }

  void runOn(int ms) {
    house->clock.advanceTo(house->clock.now() + Milliseconds(ms), house->desk.machine.timers);
  }
  void tool(const char* id) { house->desk.frame.SSActiveToolBars1_ToolClick(id); }
  [[nodiscard]] Tool& toolState(const char* id) { return house->desk.frame.SSActiveToolBars1.tool(id); }

  std::vector<std::string> takeBoxes() { return std::exchange(boxes, {}); }
  static constexpr const char* SystemError = "Application may close, Would you like to continue?";

  std::string write(const std::string& name, const std::string& bytes) {
    const auto path = folder / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  void writeSettings(const std::string& text) { write("settings/settings.toml", text); }
  std::string writeShow(const ShowMaker& maker = {}, const std::string& name = "a.kel") {
    return write(name, velgrove::writeShow(*maker.project()));
  }

  void TearDown() override { EXPECT_THAT(boxes, testing::IsEmpty()) << "boxes that nobody expected"; }
};

}  // namespace velgrove::test
