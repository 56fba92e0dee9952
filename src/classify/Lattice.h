#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "classify/Bounds.h"
#include "classify/Folding.h"

namespace orvantis::filter::classify {

/// Square cells over a part of the plan, without gaps.
struct Patch {
  double x0 = 0.0;
  double y0 = 0.0;
  double cell = 1.0;
  int columns = 1;
  int rows = 1;
  int firstColumn = 0;  ///< in the lattice
  int firstRow = 0;
  /// By how much the marks of a border are widened: more than twice the distance by which a point may lie
  /// outside its cell.
  double slack = 0.0;

  int column(double x) const { return index(x - x0, columns); }
  int row(double y) const { return index(y - y0, rows); }

 private:
  int index(double offset, int count) const {
    return static_cast<int>(std::clamp(std::floor(offset / cell), 0.0, count - 1.0));
  }
};

/// The columns or the rows of a lattice. Wide gaps in which no zone lies are left out.
class Axis {
 public:
  struct Interval {
    double low;
    double high;
  };

  Axis() = default;
  /// @param pieces where zones lie, in ascending order, up to Folding::mostPieces
  Axis(const std::vector<Interval>& pieces, float cellsPerMetre);

  const Folding& folding() const { return folding_; }
  int size() const { return folding_.last() + 1; }

  /// The piece that a value lies in: where its first cell begins, the number of that cell, how many cells it
  /// has, and how far the last cell is from the origin.
  struct Piece {
    double begin;
    int first;
    int count;
    double farthest;
  };
  Piece pieceAt(double value) const;

 private:
  Folding folding_;
};

/// Where zones lie along one axis. Leaves out the widest gaps as long as that at least halves the length.
std::vector<Axis::Interval> piecesOf(std::vector<Axis::Interval> intervals);

/// Cells over the parts of the plan where zones lie. A point outside of them is looked up at the rim of the
/// nearest piece.
struct Lattice {
  /// A point farther than this from the origin in y is not looked up.
  static constexpr double farthest = 0x1p25;

  double cell = 1.0;
  Axis columns;
  Axis rows;

  /// The part that a zone lies in, with a margin that its borders do not reach.
  Patch patchOf(const Bounds& zone) const;
};

/// Lattices for zones with given bounds, from a fine one to coarser ones.
class Lattices {
 public:
  explicit Lattices(const std::vector<Bounds>& zones);

  /// The lattice whose cells are `factor` times as long as those of the finest one.
  Lattice coarser(double factor) const;

 private:
  std::vector<Axis::Interval> columns_;
  std::vector<Axis::Interval> rows_;
  double cell_ = 1.0;
};

}  // namespace orvantis::filter::classify
