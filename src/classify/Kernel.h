#pragma once

#include <cstddef>
#include <cstdint>

#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Undecided.h"

namespace orvantis::filter::classify {

/// The points of a block that the tables alone do not decide.
struct Pending {
  PointList cut;
  PointList crossed;
  PointList heights;
};

/// Looks up to PointList::capacity points up: their cells' zones and their heights' zones in `masks`, and
/// those of undecided cells in `pending`. Runs on the best instructions that the processor has.
/// @return the number of points with a coordinate that is not finite
std::size_t lookUp(const Grid& grid, const Heights& heights, const float* x, const float* y, const float* z,
                   std::size_t size, std::uint64_t* masks, Pending& pending);
std::size_t lookUp(const Grid& grid, const Heights& heights, const double* x, const double* y,
                   const double* z, std::size_t size, std::uint64_t* masks, Pending& pending);

}  // namespace orvantis::filter::classify
