// Three days before all its windows: the desk with its face, on a screen that nobody sees and a hand-moved
// clock. The screen is brought up to date every few seconds and after each Go; windows, widgets and memory
// stay.

#include <CLI/CLI.hpp>
#include <QApplication>
#include <cstdio>
#include <iostream>

#include <gtest/gtest.h>

#include "desktop/style.h"
#include "desktop/theme.h"
#include "soak/evening.h"
#include "support/desk_on_screen.h"

namespace velgrove::soak {
namespace {

using test::DeskOnScreen;

constexpr double MsPerHour = 3'600'000;

struct Options {
  double hours = 72;
  double seconds = 5;
};

/// What stands on the screen.
struct Standing {
  qsizetype windows = 0;
  qsizetype widgets = 0;

  static Standing now() {
    const auto windows = QApplication::topLevelWidgets();
    return {.windows = std::ranges::count_if(windows, &QWidget::isVisible),
            .widgets = QApplication::allWidgets().size()};
  }
  friend bool operator==(const Standing&, const Standing&) = default;
};

std::ostream& operator<<(std::ostream& out, const Standing& standing) {
  return out << standing.windows << " windows, " << standing.widgets << " widgets";
}

class Booth {
 public:
  Booth(const Options& options, const std::filesystem::path& show)
      : m_options(options), m_desk({1280, 800}, show) {
    m_desk.house.box.onFrame = [this](InterfaceBox::Frame) { ++m_frames; };
  }

  void run() {
    m_desk.open();
    m_evening.begin();
    const auto gos = static_cast<long>(m_options.hours * MsPerHour / Evening::BetweenGos);
    for (long at = 0; at < gos; ++at) {
      m_evening.go();
      if (at % GosToWindows == 0) openAndClose();
      if (at % GosToLook == 0) m_memory.look(static_cast<double>(at) / static_cast<double>(gos));
      if (at == GosToLook) m_before = Standing::now();
    }
    m_memory.look(1);
  }

  void report() {
    const Standing after = Standing::now();
    const long wanted = m_evening.gos() * Evening::BetweenGos / 30;
    std::cout << m_evening.gos() << " Gos, and " << m_evening.byLinks()
              << " more by links: none missed, none doubled\n"
              << m_frames << " frames of " << wanted << "\n"
              << m_before << " after " << GosToLook << " Gos; " << after << " at the end\n";
    constexpr long Room = 8192;  // kB; the toolkit keeps fonts and pictures that were painted
    m_memory.report(Room);
    if (m_frames != wanted) throw Finding("frames are missing, or too many");
    if (after != m_before) throw Finding("windows or widgets stay behind");
    if (testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed())
      throw Finding("a box that nobody expected, or a complaint of the toolkit");
  }

  [[nodiscard]] double hoursDone() const {
    return static_cast<double>(m_evening.gos() * Evening::BetweenGos) / MsPerHour;
  }

 private:
  static constexpr long GosToWindows = 50;
  static constexpr long GosToLook = 100;

  /// The operator acts, and the screen follows.
  void act(const std::function<void()>& work) {
    m_desk.screen.face.deliver(work);
    m_desk.screen.settle();
  }

  /// In pieces, each with what it changed on the screen.
  void runTo(std::int64_t ms) {
    const auto piece = static_cast<std::int64_t>(m_options.seconds * 1000);
    for (; m_now + piece < ms; m_now += piece) m_desk.runTo(m_now + piece);
    m_desk.runTo(m_now = ms);
  }

  void openAndClose() {
    Windows& windows = m_desk.desk.windows;
    const auto tool = [this](const char* id) {
      act([this, id] { m_desk.desk.frame.SSActiveToolBars1_ToolClick(id); });
    };
    tool("ID_BarsOutput");
    tool("ID_Effects");
    tool("mnuEditPreferences");
    act([&windows] { windows.closeBars(*windows.Bars.back()); });
    act([&windows] { windows.Effects.Window.Visible = false; });
    act([&windows] { windows.Preferences.cmdCancel.click(); });
  }

  Options m_options;
  DeskOnScreen m_desk;
  std::int64_t m_now = 0;
  long m_frames = 0;
  Standing m_before;
  MemoryWatch m_memory;
  Evening m_evening{m_desk.house,
                    {.act = [this](const auto& work) { act(work); },
                     .runTo = [this](std::int64_t ms) { runTo(ms); },
                     .whenAsked = [this](auto step) { m_desk.screen.whenAsked(std::move(step)); }}};
};

int run(const Options& options) {
  const TempFolder folder;
  const auto show = folder / "evening.kel";
  Evening::write(show);
  Booth booth(options, show);
  try {
    booth.run();
    booth.report();
    std::cout << "soak_face: " << booth.hoursDone() << " hours, no finding\n";
    return 0;
  } catch (const std::exception& fault) {
    std::cout << "soak_face: FINDING after " << booth.hoursDone() << " hours: " << fault.what() << "\n";
    return 1;
  }
}

void findOnWarning(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtDebugMsg || type == QtInfoMsg) return;
  if (text.startsWith("This plugin does not support")) return;  // there is no window manager to tell
  ADD_FAILURE() << "the toolkit complains: " << text.toStdString();
}

int start(int count, char** arguments) {
  Options options;
  CLI::App parser("Three days of show before all windows of the desk, on a screen that nobody sees.");
  parser.add_option("--hours", options.hours, "how long; 72 without it");
  parser.add_option("--seconds", options.seconds, "of show between two looks at the screen; 5 without it");
  CLI11_PARSE(parser, count, arguments);
  const TempFolder home;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  for (const char* place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
    qputenv(place, home.path().c_str());
  QApplication app(count, arguments);
  qInstallMessageHandler(findOnWarning);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(new DeskStyle);
  theme::apply(Density::Compact);
  return run(options);
}

}  // namespace
}  // namespace velgrove::soak

int main(int count, char** arguments) {
  try {
    testing::InitGoogleTest(&count, arguments);
    return velgrove::soak::start(count, arguments);
  } catch (const std::exception& fault) {
    std::fputs(fault.what(), stderr);
    return 2;
  }
}
