#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <filter/detection/Zone.h>

#include "classify/Grid.h"

namespace orvantis::filter::classify {

/// Points of a block, by their place in it, with the codes of their cells.
struct PointList {
  static constexpr std::size_t capacity = 512;
  static constexpr std::size_t padding = 64;  ///< a vector may be written past the last entry

  std::uint32_t size = 0;
  std::array<std::uint32_t, capacity + padding> points;  // not initialised: a block fills what it reads
  std::array<std::uint32_t, capacity + padding> codes;
};

/// The shapes to ask, by bit; null where there is no zone.
using Shapes = std::array<const detection::Zone*, 64>;

/// Takes away the zones that do not hold the points of cut or crossed cells. Before the call, the mask of
/// such a point has the zones at its height.
template <typename Real>
void decideCut(const Grid& grid, const Shapes& shapes, const Real* x, const Real* y, const PointList& list,
               std::uint64_t* masks);
template <typename Real>
void decideCrossed(const Grid& grid, const Shapes& shapes, const Real* x, const Real* y,
                   const PointList& list, std::uint64_t* masks);

}  // namespace orvantis::filter::classify
