#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "controls/face.h"

namespace velgrove {

/// The way of a motion to the desk. While the desk has no time, only the newest value waits, so that the
/// desk never falls behind the hand.
template <class Value>
class Newest {
 public:
  void deliver(Face& face, Value value, std::function<void(const Value&)> take) {
    if (waits()) {
      *m_waiting = std::move(value);
      return;
    }
    m_waiting = std::make_shared<std::optional<Value>>(std::move(value));
    face.deliver([waiting = m_waiting, take = std::move(take)] {
      const auto newest = std::exchange(*waiting, std::nullopt);
      if (newest) take(*newest);
    });
  }
  /// Whether the desk hasn't heard of the newest value yet.
  [[nodiscard]] bool waits() const { return m_waiting != nullptr && m_waiting->has_value(); }
  /// The motion ends here: what moves from now on comes behind whatever is delivered next.
  void end() { m_waiting.reset(); }

 private:
  std::shared_ptr<std::optional<Value>> m_waiting;
};

}  // namespace velgrove
