#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

/// A recorded look at a part of its full level.
struct ScaledLook {
  const ChannelBytes* look = nullptr;
  double scale = 0;

  /// The level on a channel, counted from 0: to nearest, halves to even.
  [[nodiscard]] int on(std::size_t channel) const;
};

/// The light that the submasters of a view give at the levels that their labels tell. It looks into the view,
/// and is for one pass over the channels.
class SubmasterLooks {
 public:
  /// Reads the labels, one a submaster; one behind the last label takes no part. Fault::TypeMismatch for a
  /// label that is no number.
  SubmasterLooks(const colSubMasters& submasters, std::span<const Label> labels);

  /// A submaster, counted from 0. Fault::Subscript when it isn't there.
  [[nodiscard]] const ScaledLook& at(int submaster) const;
  /// The highest level that any submaster gives a channel.
  [[nodiscard]] int highest(std::size_t channel) const;

 private:
  using Looks = std::array<ScaledLook, ShowState::SubMasterCount>;

  Looks m_all;
  std::size_t m_count = 0;
  Looks m_lit;  ///< those that are up; the others give nothing
  std::size_t m_litCount = 0;
};

}  // namespace velgrove
