#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velgrove::robot {

/// The dice: the same starting number gives the same throws on every machine.
class Chance {
 public:
  explicit Chance(std::uint64_t number) : m_state(number) {}

  /// 0 to `count` - 1; 0 for a count of 0.
  int below(int count) { return count <= 0 ? 0 : static_cast<int>(next() % static_cast<unsigned>(count)); }
  int between(int lowest, int highest) { return lowest + below(highest - lowest + 1); }
  bool oneIn(int times) { return below(times) == 0; }
  template <class Items>
  auto& of(Items& items) {
    return items[static_cast<std::size_t>(below(static_cast<int>(std::size(items))))];
  }

 private:
  /// The splitmix generator: one addition and a mix of the bits.
  std::uint64_t next() {
    std::uint64_t bits = m_state += 0x9E3779B97F4A7C15ULL;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9ULL;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBULL;
    return (bits ^ (bits >> 31)) >> 1;
  }

  std::uint64_t m_state;
};

}  // namespace velgrove::robot
