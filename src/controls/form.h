#pragma once

#include <string>

namespace velgrove {

enum class WindowState { Normal, Minimised, Maximised };

/// What every window of the desk has. Position and size are in twips, 15 to a pixel.
struct Form {
  std::string Caption;
  bool Visible = false;
  bool Enabled = true;
  velgrove::WindowState WindowState = velgrove::WindowState::Normal;
  float Left = 0;
  float Top = 0;
  float Width = 0;
  float Height = 0;
};

}  // namespace velgrove
