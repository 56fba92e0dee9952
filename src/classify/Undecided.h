#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <filter/detection/Zone.h>

#include "classify/Grid.h"
#include "classify/Heights.h"

namespace orvantis::filter::classify {

/// Points of a block with the codes of their cells.
struct PointList {
  static constexpr std::size_t capacity = 1024;
  static constexpr std::size_t padding = 64;  ///< a vector may be written past the last entry

  std::size_t size = 0;
  std::array<std::uint32_t, capacity + padding> entries;  // not initialised: a block fills what it reads

  std::uint32_t point(std::size_t i) const { return entries[i] & 0xFFFFU; }
  std::uint32_t code(std::size_t i) const { return entries[i] >> 16U; }
};

/// The shapes to ask, by bit; null where there is no zone.
using ShapesByBit = std::array<const detection::Zone*, 64>;

// What the tables leave open. Each call takes away the zones that do not hold the points of the list; before,
// their masks have the zones that may.

/// In cells that one border crosses.
template <typename Real>
void decideCut(const Grid& grid, const ShapesByBit& shapes, const Real* x, const Real* y,
               const PointList& list, std::uint64_t* masks);
/// In cells that several borders cross.
template <typename Real>
void decideCrossed(const Grid& grid, const ShapesByBit& shapes, const Real* x, const Real* y,
                   const PointList& list, std::uint64_t* masks);
/// At heights near which several slabs start.
template <typename Real>
void decideHeights(const Heights& heights, const Real* z, const PointList& list, std::uint64_t* masks);

}  // namespace orvantis::filter::classify
