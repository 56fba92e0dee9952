#pragma once

#include <cstddef>
#include <random>

namespace orvantis::fuzz {

/// Chooses; always in the same way for a seed.
class Chance {
 public:
  explicit Chance(unsigned seed) : engine_(seed) {}

  /// 0 to `count` - 1. At least 1 must be given.
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(engine_()) % count; }
  bool oneIn(std::size_t count) { return below(count) == 0; }

 private:
  std::minstd_rand engine_;
};

}  // namespace orvantis::fuzz
