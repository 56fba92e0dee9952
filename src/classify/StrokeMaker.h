#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "classify/Strokes.h"

namespace orvantis::filter::classify {

/// Makes the strokes of zones, one zone after the other.
class StrokeMaker {
 public:
  /// A stroke and its column.
  struct Placed {
    std::uint32_t column;
    Stroke stroke;
  };

  StrokeMaker(const Lattice& lattice, double safety);

  void add(const OutlinedZone& zone);

  const std::vector<Placed>& strokes() const { return strokes_; }
  const std::vector<Curve>& curves() const { return curves_; }

 private:
  // The rows that one piece of the border marks in a column; all rows when it is steep.
  struct Mark {
    int column;
    int first;
    int last;
    std::uint32_t curve;
    bool isSteep;
  };
  // Rows of a column.
  struct Rows {
    int first;
    int last;
  };
  // Rows that no border marks, which have the same verdict.
  struct Gap {
    Rows rows;
    bool isInside;
  };
  // Rows that borders mark without a gap, and the verdicts below and above them.
  struct Run {
    Rows rows;
    bool isInsideBelow;
    bool isInsideAbove;
  };

  void markBorders(const Margins& margins);
  void sortMarks();
  void makeColumn(Mark* first, Mark* end);
  bool isInside(const Rows& rows) const;
  void makeRun(const Run& run, const Mark* firstOfRun, const Mark* endOfRun);
  void makePart(const Run& run, const Rows& rows, const Mark* first, const Mark* end);
  template <typename SideAt>
  Sides toldByNeighbours(const Run& run, const Rows& rows, const SideAt& sideAt) const;
  Sides sidesOf(const Run& run, const Rows& rows, const Curve& curve) const;
  Sides sidesOf(const Run& run, const Rows& rows, const std::array<const Curve*, 2>& curves) const;
  void append(const Rows& rows, Stroke::Kind kind, const Sides& sides = {}, std::uint32_t curve = 0,
              std::uint32_t otherCurve = 0);
  Box boxOf(const Rows& rows) const;
  double middleX() const { return patch_.x0 + (column_ + 0.5) * patch_.cell; }
  double middleY(int row) const { return patch_.y0 + (row + 0.5) * patch_.cell; }

  const Lattice lattice_;
  const double safety_;
  std::vector<Placed> strokes_;
  std::vector<Curve> curves_;

  // The state for one zone.
  const OutlinedZone* zone_ = nullptr;
  Patch patch_;
  std::vector<Span> spans_;
  std::vector<Mark> marks_;
  std::vector<Mark> sortedMarks_;
  int firstColumn_ = 0;            // the first column with a mark
  std::vector<std::size_t> ends_;  // the end of each column's marks, from that column on

  // The state for one column.
  int column_ = 0;
  std::vector<Gap> gaps_;
  std::vector<Gap> gapsBefore_;  // in the column before
  std::vector<int> starts_;      // the first rows of the parts of a run
};

}  // namespace orvantis::filter::classify
