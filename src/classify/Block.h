#pragma once

#include <cstddef>
#include <cstdint>

namespace orvantis::filter::classify {

/// Points that are classified together: their coordinates as three arrays, and where their masks go.
template <typename Real>
struct Block {
  static constexpr std::size_t capacity = 1024;

  const Real* x;
  const Real* y;
  const Real* z;
  std::size_t size;  ///< at most the capacity
  std::uint64_t* masks;
};

}  // namespace orvantis::filter::classify
