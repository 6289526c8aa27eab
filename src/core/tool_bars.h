#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velgrove {

/// One command of the frame, as menus and tool bars show it. The same tool may stand in several of them.
struct Tool {
  std::string Id;
  std::string Caption;  ///< "&" stands before the mnemonic
  std::string ToolTip;
  bool Enabled = true;
  bool Pressed = false;
  std::string Name;  ///< what the handlers know it by: the id without "ID_"
  std::string Key;   ///< that presses it, "Ctrl+S"; empty when there is none
};

/// A menu or a pop-up: ids of tools in order, "-" for a line between groups.
struct MenuSet {
  std::string_view Caption;  ///< of a menu; of a pop-up the id of the tool that opens it
  std::vector<std::string_view> Items;
};

/// All tools of the frame with their state, and the menus and pop-ups made of them.
class ToolBars {
 public:
  ToolBars();

  /// A tool by its id; Fault::ObjectMissing when there is none.
  [[nodiscard]] Tool& tool(std::string_view id);
  /// The same; null when there is none.
  [[nodiscard]] Tool* find(std::string_view id);
  [[nodiscard]] const std::vector<Tool>& tools() const { return m_tools; }

  /// The menu bar, left to right.
  [[nodiscard]] static std::span<const MenuSet> menus();
  [[nodiscard]] static std::span<const MenuSet> popUps();

  /// Asks for a pop-up at a place of the frame in pixels; without one it comes up at its tool.
  void PopupMenu(std::string_view set, int x = -1, int y = -1);

  struct PopUp {
    std::string Set;
    int x = -1;
    int y = -1;
    unsigned Count = 0;  ///< how many were asked for; the face looks at it
  };
  [[nodiscard]] const PopUp& lastPopUp() const { return m_popUp; }

 private:
  std::vector<Tool> m_tools;
  PopUp m_popUp;
};

}  // namespace velgrove
