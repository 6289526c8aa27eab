#pragma once

#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "core/headless_desk.h"
#include "core/places.h"
#include "desktop/desk_windows.h"
#include "model/registry_settings.h"
#include "support/screen.h"
#include "support/temp_folder.h"

namespace velgrove::test {

/// The whole desk with all its windows on a screen, on a clock that is moved by hand. Its data folder holds
/// one show: the demo, when no other is given.
class DeskOnScreen {
 public:
  explicit DeskOnScreen(QSize size = {1280, 800},
                        const std::filesystem::path& show = SHOW_DATA_DIR "/demo.kel", int left = 0,
                        std::filesystem::path opened = {})
      : offered(std::move(opened)) {
    std::filesystem::create_directory(folder / "data");
    std::filesystem::copy_file(show, showFile);
    setting("MainMaximised", "0");
    constexpr int TwipsPerPixel = 15;
    setting("MainWidth", std::to_string(size.width() * TwipsPerPixel));
    setting("MainHeight", std::to_string(size.height() * TwipsPerPixel));
    setting("MainLeft", std::to_string(left * TwipsPerPixel));
    setting("MainTop", "0");
    screen.showBox = [this](const Box& box, bool waitedFor, std::function<void(BoxAnswer)> answered) {
      windows.showBox(box, waitedFor, std::move(answered));
    };
    Machine& machine = desk.machine;
    machine.boxes.post = [this](const Box& box) { screen.face.postBox(box); };
    machine.waitUntil = [this](const auto& condition) { screen.face.until(condition); };
    machine.aside = [this](const auto& work) { screen.face.aside(work); };
    screen.face.act = [this](const auto& action) { desk.act(action); };
    desk.Splash.Painted = false;
  }

  const std::filesystem::path offered;  ///< the show with which the desk is opened
  Screen screen;
  TempFolder folder;
  const std::filesystem::path showFile = folder / "data" / "show.kel";
  HeadlessDesk house{[this](const Box& box) { return show(box); },
                     {.settings = folder.path(),
                      .data = folder / "data",
                      .graphics = thisProcessPlaces().graphics,
                      .drives = {.home = folder.path(), .mediaFolders = {}, .isMounted = {}},
                      .manual = thisProcessPlaces().manual,
                      .offered = offered}};
  LightingDesk& desk = house.desk;
  DeskWindows windows{desk, screen.face};

  /// Starts the desk, up to the open dialog and through it: its answer is what the operator does when asked.
  void start() {
    screen.onDesk([this] { house.start(); });
  }
  /// Starts it and opens the show.
  void open() {
    screen.whenAsked([this] {
      screen.key(Qt::Key_Down);
      screen.key(Qt::Key_Return);
    });
    start();
  }
  /// Runs the timers up to and including an instant in milliseconds.
  void runTo(std::int64_t ms) {
    screen.onDesk([this, ms] { house.runTo(ms); });
  }

  [[nodiscard]] bool quit() const { return house.quit; }
  QueueList& ab() { return desk.windows.abPlayer(); }
  QueueList& xy() { return desk.windows.xyPlayer(); }
  QWidget& frame() { return named("frmMain"); }
  CueTable& table(const QString& player) {
    return named<CueTable>(player + (player.startsWith("XY") ? "/ListView1" : "/ListView2"));
  }
  /// A place in a row of a list, at a share of its width, above the words.
  QPoint inRow(CueTable& table, int row, double share = 0.5) {
    const QRect cell = table.visualRect(table.model()->index(row - 1, 0));
    return {qRound(table.viewport()->width() * share), cell.top() + 2};
  }

 private:
  void setting(const std::string& key, const std::string& value) {
    SaveStringSetting(desk.store, "Velgrove", "Settings", key, value);
  }

  BoxAnswer show(const Box& box) {
    if (!ErrorPattern::mustNotWait())
      return screen.face.showBox(box, [this](const auto& condition) { screen.face.until(condition); });
    screen.face.postBox(box);
    return BoxAnswer::Ok;
  }
};

}  // namespace velgrove::test
