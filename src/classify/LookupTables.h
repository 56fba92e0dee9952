#pragma once

#include <cstddef>
#include <cstdint>

#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Pending.h"

namespace orvantis::filter::classify {

// What looking a point up takes from the tables, by value: what is written could otherwise change it, for all
// the compiler knows.
struct LookupTables {
  LookupTables(const Grid& grid, const Heights& heights)
      : firstColumn(grid.lattice.x0 + 0.5 * grid.lattice.cell),
        firstRow(grid.lattice.y0 + 0.5 * grid.lattice.cell),
        cellsPerMetre(static_cast<float>(1.0 / grid.lattice.cell)),
        lastColumn(static_cast<std::uint32_t>(grid.lattice.columns - 1)),
        lastRow(static_cast<std::uint32_t>(grid.lattice.rows - 1)),
        farthest(static_cast<float>(Lattice::farthest / grid.lattice.cell)),
        numRows(grid.lattice.rows),
        codes(grid.codes.data()),
        palette(grid.palette.data()),
        firstCut(static_cast<std::int32_t>(grid.firstCut)),
        firstCrossed(static_cast<std::int32_t>(grid.firstCrossed)),
        codeOfNaN(static_cast<std::int32_t>(grid.codeOfNaN)),
        codeOfFarAway(static_cast<std::int32_t>(grid.codeOfFarAway)),
        lowestInside(heights.lowestInside),
        highestInside(heights.highestInside),
        lowestHeight(heights.origin),
        bucketsPerMetre(heights.bucketsPerMetre),
        lastBucket(heights.lastBucket),
        bucketOfNaN(heights.lastBucket + 1),
        starts(heights.startsAsFloat.data()),
        exactStarts(heights.starts.data()),
        heightMasks(heights.masks.data()) {}

  double firstColumn;  // the middle of the first cell
  double firstRow;
  float cellsPerMetre;
  std::uint32_t lastColumn;
  std::uint32_t lastRow;
  float farthest;  // in cells
  std::int32_t numRows;
  const std::uint16_t* codes;
  const std::uint64_t* palette;
  std::int32_t firstCut;
  std::int32_t firstCrossed;
  std::int32_t codeOfNaN;
  std::int32_t codeOfFarAway;

  float lowestInside;
  float highestInside;
  float lowestHeight;
  float bucketsPerMetre;
  std::int32_t lastBucket;
  std::int32_t bucketOfNaN;
  const float* starts;
  const double* exactStarts;
  const std::uint64_t* heightMasks;
};

// Where the next entries of the lists go.
struct Ends {
  explicit Ends(Pending& pending)
      : cut(pending.cut.entries.data()),
        crossed(pending.crossed.entries.data()),
        heights(pending.heights.entries.data()) {}

  void finish(Pending& pending) const {
    pending.cut.size = static_cast<std::size_t>(cut - pending.cut.entries.data());
    pending.crossed.size = static_cast<std::size_t>(crossed - pending.crossed.entries.data());
    pending.heights.size = static_cast<std::size_t>(heights - pending.heights.entries.data());
  }

  std::uint32_t* cut;
  std::uint32_t* crossed;
  std::uint32_t* heights;
};

// A position is rounded to a whole number by adding `wholeNumbers`: the bits of the sum less these are that
// number. Up to 2^22 away from zero, the sum has the sign and the exponent of `wholeNumbers`. Beyond, it has
// others, and the difference may have any sign, but is far from zero.
//
// A cell's number is cut off at the last one as an unsigned number. So left of the first cell is taken for
// right of the last one, which is outside of all zones as well.
inline constexpr std::uint32_t wholeBits = 0x4B400000;
inline constexpr std::uint32_t signAndExponent = 0xFF800000;

}  // namespace orvantis::filter::classify
