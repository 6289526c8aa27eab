#pragma once

#include <span>
#include <string_view>

namespace velgrove {

/// A key that presses a tool of the frame, wherever the focus is but in a text that is being typed.
struct FrameKey {
  std::string_view Key;   ///< in the words of menus: "Ctrl+S"
  std::string_view Tool;  ///< the id that it presses
  std::string_view Twin;  ///< another tool that does the same from another place; empty when there is none
  std::string_view Does;
};

/// A key that one window knows, or that is no tool of the frame.
struct WindowKey {
  std::string_view Key;
  std::string_view Where;
  std::string_view Does;
};

/// Go, and no other, lies under the widest key. All others are out of the way of letters and digits.
[[nodiscard]] std::span<const FrameKey> frameKeys();
[[nodiscard]] std::span<const WindowKey> windowKeys();

/// The key of a tool or of its twin; empty when it has none.
[[nodiscard]] std::string_view keyOf(std::string_view tool);

}  // namespace velgrove
