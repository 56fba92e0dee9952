#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "classify/Block.h"

namespace orvantis::filter::classify {

/// Points with a coordinate that is not finite.
struct NoReturns {
  std::size_t count = 0;
  bool haveInfinite = false;
};

/// The groups of a block that have some point between the lowest and the highest zone.
struct Places {
  static constexpr std::size_t capacity = Block<float>::capacity;

  /// The first point of each of them. Not initialised, because only what was written is read.
  std::array<std::uint32_t, capacity / Block<float>::groupSize> groups;
  std::size_t numGroups = 0;
  NoReturns noReturns;  ///< counted only if asked for
};

}  // namespace orvantis::filter::classify
