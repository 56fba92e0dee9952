#pragma once

#include <cstddef>
#include <cstdint>

#include "classify/Folding.h"
#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Lattice.h"

namespace orvantis::filter::classify {

/// What looking up points needs from the tables, by value. With references, the compiler would have to expect
/// that writing masks changes it.
struct LookupTables {
  LookupTables(const Grid& grid, const Heights& heights)
      : columns(grid.columns),
        rows(grid.rows),
        buckets(heights.buckets),
        farthest(static_cast<float>(Lattice::farthest) * columns.stepsPerUnit),
        numRows(static_cast<float>(rows.last() + 1)),
        cellOfNaN(static_cast<std::uint32_t>(grid.cellOfNaN())),
        cellFarAway(static_cast<std::uint32_t>(grid.cellFarAway())),
        codes(grid.codes.data()),
        palette(grid.palette.data()),
        lowestInside(heights.lowestInside),
        highestInside(heights.highestInside),
        bucketOfNaN(static_cast<float>(heights.slabs.size() - 2)),
        bucketOfInfinite(static_cast<float>(heights.slabs.size() - 1)),
        slabs(heights.slabs.data()),
        heightMasks(heights.masks.data()) {}

  Folding columns;
  Folding rows;
  Folding buckets;
  float farthest;  // in cells
  float numRows;
  std::uint32_t cellOfNaN;
  std::uint32_t cellFarAway;
  const std::uint16_t* codes;
  const std::uint64_t* palette;
  float lowestInside;
  float highestInside;
  float bucketOfNaN;
  float bucketOfInfinite;
  const std::uint8_t* slabs;
  const std::uint64_t* heightMasks;
};

/// The bits of `wholeNumbers`. The bits of `wholeNumbers` plus a whole number, less these, are that number.
inline constexpr std::uint32_t wholeBits = 0x4B400000;

}  // namespace orvantis::filter::classify
