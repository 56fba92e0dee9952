#include "classify/Lattice.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numeric>

namespace orvantis::filter::classify {
namespace {

// The codes of that many cells fit into the second-level cache of most processors.
constexpr double numCells = 0x1p17;
// The rounding errors of curves and positions grow with the number of cells along an axis.
constexpr double mostAlong = 2000.0;
constexpr double smallestCell = 0x1p-13;
// With this the corner of the lattice is at most 2^23 cells from the origin, so that a float holds it to an
// eighth of a cell.
constexpr double cellPerCoordinate = 0x1p-22;
// Cells before and behind the zones of a piece. Points outside are looked up at the rim, so no border may
// mark the rim.
constexpr double margin = 3.0;

double lengthOf(const std::vector<Axis::Interval>& pieces) {
  double length = 0.0;
  for (const Axis::Interval& piece : pieces) {
    length += piece.high - piece.low;
  }
  return length;
}

// Joins pieces when the margins on both sides of the gap would fill it.
std::vector<Axis::Interval> joined(const std::vector<Axis::Interval>& pieces, double cell) {
  std::vector<Axis::Interval> result;
  for (const Axis::Interval& piece : pieces) {
    if (!result.empty() && piece.low - result.back().high < (2.0 * margin + 2.0) * cell) {
      result.back().high = piece.high;
    } else {
      result.push_back(piece);
    }
  }
  return result;
}

double largestIn(const std::vector<Axis::Interval>& pieces) {
  return pieces.empty() ? 0.0 : std::max(std::abs(pieces.front().low), std::abs(pieces.back().high));
}

}  // namespace

Axis::Axis(const std::vector<Interval>& pieces, float cellsPerMetre) {
  folding_.stepsPerUnit = cellsPerMetre;
  if (pieces.empty()) {
    return;
  }
  const double perMetre = cellsPerMetre;
  folding_.origin = static_cast<float>(pieces.front().low - margin / perMetre);
  const auto origin = static_cast<double>(folding_.origin);
  folding_.numPieces = pieces.size();
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    folding_.offsets[k] = k == 0 ? 0.0F : static_cast<float>(pieces[k].low - margin / perMetre - origin);
    const double length = pieces[k].high - origin - static_cast<double>(folding_.offsets[k]);
    folding_.counts[k] = static_cast<float>(std::ceil(length * perMetre + margin));
  }
}

Axis::Piece Axis::pieceAt(double value) const {
  const auto origin = static_cast<double>(folding_.origin);
  const double cell = 1.0 / static_cast<double>(folding_.stepsPerUnit);
  std::size_t k = 0;
  int first = 0;
  while (k + 1 < folding_.numPieces && value >= origin + static_cast<double>(folding_.offsets[k + 1])) {
    first += static_cast<int>(folding_.counts[k]);
    ++k;
  }
  // A cell has the number of the value in its middle.
  const auto offset = static_cast<double>(folding_.offsets[k]);
  const auto count = static_cast<double>(folding_.counts[k]);
  return {origin + offset - 0.5 * cell, first, static_cast<int>(count) + 1, offset + (count + 1.0) * cell};
}

std::vector<Axis::Interval> piecesOf(std::vector<Axis::Interval> intervals) {
  using Interval = Axis::Interval;
  std::sort(intervals.begin(), intervals.end(),
            [](const Interval& a, const Interval& b) { return a.low < b.low; });
  std::vector<Interval> pieces;
  for (const Interval& interval : intervals) {
    if (!pieces.empty() && interval.low <= pieces.back().high) {
      pieces.back().high = std::max(pieces.back().high, interval.high);
    } else {
      pieces.push_back(interval);
    }
  }
  // The widest gaps stay, in the order of the pieces; the others are closed.
  std::vector<double> gaps;
  for (std::size_t i = 1; i < pieces.size(); ++i) {
    gaps.push_back(pieces[i].low - pieces[i - 1].high);
  }
  std::vector<double> widest = gaps;
  std::sort(widest.begin(), widest.end(), std::greater<>());
  // Added up from the narrowest gap on, for a wide one would take the digits of the others with it.
  const auto left = [&](std::size_t kept) {
    return std::accumulate(widest.rbegin(), widest.rend() - static_cast<std::ptrdiff_t>(kept),
                           lengthOf(pieces));
  };
  std::size_t numKept = 0;
  while (numKept < widest.size() && numKept + 1 < Folding::mostPieces &&
         widest[numKept] > 0.5 * left(numKept)) {
    ++numKept;
  }
  std::vector<Interval> result;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i > 0 && (result.size() > numKept || gaps[i - 1] < widest[numKept - 1])) {
      result.back().high = pieces[i].high;
    } else {
      result.push_back(pieces[i]);
    }
  }
  return result;
}

Patch Lattice::patchOf(const Bounds& zone) const {
  const Axis::Piece x = columns.pieceAt(0.5 * (zone.minX + zone.maxX));
  const Axis::Piece y = rows.pieceAt(0.5 * (zone.minY + zone.maxY));
  Patch patch;
  patch.x0 = x.begin;
  patch.y0 = y.begin;
  patch.cell = cell;
  patch.columns = x.count;
  patch.rows = y.count;
  patch.firstColumn = x.first;
  patch.firstRow = y.first;
  patch.slack = std::ldexp(cell, -8) + 1.0e-6 + std::ldexp(std::max(x.farthest, y.farthest), -22);
  return patch;
}

Lattices::Lattices(const std::vector<Bounds>& zones) {
  for (const Bounds& zone : zones) {
    columns_.push_back({zone.minX, zone.maxX});
    rows_.push_back({zone.minY, zone.maxY});
  }
  columns_ = piecesOf(std::move(columns_));
  rows_ = piecesOf(std::move(rows_));
  const double width = lengthOf(columns_);
  const double height = lengthOf(rows_);
  cell_ = std::max({std::sqrt(width * height / numCells), std::max(width, height) / mostAlong, smallestCell,
                    2.0 * std::max(largestIn(columns_), largestIn(rows_)) * cellPerCoordinate});
}

Lattice Lattices::coarser(double factor) const {
  const auto cellsPerMetre = static_cast<float>(1.0 / (cell_ * factor));
  const double cell = 1.0 / static_cast<double>(cellsPerMetre);
  return {cell, Axis(joined(columns_, cell), cellsPerMetre), Axis(joined(rows_, cell), cellsPerMetre)};
}

}  // namespace orvantis::filter::classify
