#include "core/plain_windows.h"

#include <system_error>
#include <utility>

namespace velgrove {
namespace {

constexpr int SplashStands = 2500;  // ms

bool holdsPages(const std::filesystem::path& folder) {
  std::error_code missing;
  return !folder.empty() && std::filesystem::exists(folder / "pages.json", missing);
}

}  // namespace

frmSplash::frmSplash(Machine& machine)
    : Timer1(machine.timers, TimerRank::Dialog, SplashStands, [this] { Timer1_Timer(); }) {}

void frmSplash::Form_Load() {
  Window.Loaded = true;
  Window.Modal = true;
  Window.Show();
  Timer1.setEnabled(true);
}

/// A screen that doesn't paint, because it is locked or dark, holds up no light.
void frmSplash::Timer1_Timer() {
  if (Starting)
    Painted = true;
  else
    Unload();
}

void frmSplash::Unload() {
  Timer1.setEnabled(false);
  Window.Unload();
}

void frmAbout::Form_Load() {
  Window.Loaded = true;
  Window.Show();
}

void frmAbout::Unload() {
  Window.Unload();
}

frmHelp::frmHelp(std::filesystem::path folder) : Folder(std::move(folder)), Exists(holdsPages(Folder)) {}

void frmHelp::Show() {
  Window.Loaded = true;
  Window.Show();
}

void frmHelp::Unload() {
  Window.Unload();
}

}  // namespace velgrove
