#pragma once

#include <optional>
#include <string>

#include "core/lighting_desk.h"

namespace velgrove {

/// What the mouse is over on a plot, or else what the keys picked there, for the foot of the frame.
class UnderPointer {
 public:
  struct Fixture {
    int channel = 0;
    std::string_view type;
    int level = 0;                  ///< per cent
    std::optional<int> blind = {};  ///< per cent, in Blind
    friend bool operator==(const Fixture&, const Fixture&) = default;
  };
  struct Look {
    std::optional<std::pair<int, int>> place;  ///< world units; none while the mouse is elsewhere
    std::optional<Fixture> fixture;
    std::string name = {};  ///< of a fixture that the keys picked
    friend bool operator==(const Look&, const Look&) = default;

    [[nodiscard]] std::string placeText() const;    ///< "X 512  Y 340", or the name
    [[nodiscard]] std::string fixtureText() const;  ///< "12 leko, 46 %", in Blind "12 leko, 46 %, blind 30 %"
  };

  /// Called with the desk held. Only a mouse that moved, or another picture, is looked for anew.
  [[nodiscard]] Look read(const LightingDesk& desk);

 private:
  Look read(const ShowState& show, const frmDocument& document, Point at);

  struct Known {
    unsigned document = 0;
    unsigned revision = 0;
    Point at;
    friend bool operator==(const Known&, const Known&) = default;
  };
  Known m_known;
  ShapeNumber m_shape = 0;
};

}  // namespace velgrove
