#pragma once

#include <atomic>
#include <string>

namespace velgrove {

enum class WindowState { Normal, Minimised, Maximised };

/// What the mouse pointer looks like over a window.
namespace pointers {
inline constexpr int Default = 0;
inline constexpr int Cross = 2;
}  // namespace pointers

/// What every window of the desk has. Position and size are in twips, 15 to a pixel.
struct Form {
  std::string Caption;
  bool Loaded = false;
  bool Visible = false;
  bool Enabled = true;
  bool Modal = false;  ///< while it is visible, no other window takes the operator's hand
  velgrove::WindowState WindowState = velgrove::WindowState::Normal;
  float Left = 0;
  float Top = 0;
  float Width = 0;
  float Height = 0;
  int MousePointer = 0;            ///< one of `pointers`
  unsigned Fronts = 0;             ///< how often it was asked to the front; the face looks at the count
  unsigned Identity = ++lastMade;  ///< no other window of this process has the same

  /// Asks for the window to come to the front with the focus.
  void SetFocus() { ++Fronts; }
  void Show() {
    Visible = true;
    SetFocus();
  }
  /// Gone from the screen; the next load begins anew.
  void Unload() { Visible = Loaded = false; }
  void Restore() {
    if (WindowState == velgrove::WindowState::Minimised) WindowState = velgrove::WindowState::Normal;
  }

 private:
  inline static std::atomic<unsigned> lastMade = 0;
};

}  // namespace velgrove
