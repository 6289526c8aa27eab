#pragma once

#include "controls/widgets.h"

namespace velgrove {

/// The background of a row of a cue list: `left` up to `split` of the row's width, 0 to 1, `right` behind
/// it. Both are the same but in the two rows of a fade, where the light runs out of the one and into the
/// other.
struct RowPaint {
  static constexpr Colour Text = 0;

  Colour left = 0;
  Colour right = 0;
  float split = 1;

  friend bool operator==(const RowPaint&, const RowPaint&) = default;
};

}  // namespace velgrove
