// The face's tests, on a screen that nobody sees. What the toolkit complains about fails the test.

#include <QApplication>
#include <QFile>

#include <gtest/gtest.h>

#include "desktop/style.h"
#include "desktop/theme.h"
#include "support/temp_folder.h"

namespace velgrove::test {
namespace {

void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtDebugMsg || type == QtInfoMsg) return;
  if (text.startsWith("This plugin does not support")) return;  // there is no window manager to tell
  ADD_FAILURE() << "the toolkit complains: " << text.toStdString();
}

/// Three monitors beside each other, the main one by its name first; one draws two pixels for one, and one is
/// as small as a desk of 1280 x 800 that does so.
constexpr const char* Monitors = R"({"screens": [
  {"name": "2 fine", "x": 1920, "y": 0, "width": 1920, "height": 1080, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 2},
  {"name": "3 small", "x": 3840, "y": 0, "width": 640, "height": 400, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
  {"name": "1 plain", "x": 0, "y": 0, "width": 1920, "height": 1080, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}
]})";

int runTests(int argc, char** argv) {
  const TempFolder home;
  QFile monitors((home / "monitors.json").c_str());
  if (!monitors.open(QIODevice::WriteOnly) || monitors.write(Monitors) < 0) return 1;
  monitors.close();
  qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + monitors.fileName()).toUtf8());
  for (const char* place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
    qputenv(place, home.path().c_str());
  QApplication app(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(new DeskStyle);
  theme::apply(Density::Compact);
  qInstallMessageHandler(failOnWarning);
  return RUN_ALL_TESTS();
}

}  // namespace
}  // namespace velgrove::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return velgrove::test::runTests(argc, argv);
}
