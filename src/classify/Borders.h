#pragma once

#include <optional>
#include <vector>

#include <filter/detection/Zone.h>

#include "classify/Lattice.h"

namespace orvantis::filter::classify {

/// One piece of the border of a zone.
struct Border {
  enum class Kind {
    Edge,     ///< of a polygon, from (x1, y1) to (x2, y2)
    Bearing,  ///< of a sector, from its origin (x1, y1) to its arc at (x2, y2)
    Arc       ///< of a sector, about its origin (x1, y1)
  };

  Kind kind;
  double x1{};
  double y1{};
  double x2{};
  double y2{};
  double radius{};   // of an arc
  double opening{};  // how far it runs counterclockwise, in radians
  double beginX{};   // the directions of its ends, as seen from its origin
  double beginY{};
  double endX{};
  double endY{};
};

/// The border of a zone. The zone's verdict changes only across these pieces.
struct Outline {
  std::vector<Border> pieces;  ///< empty: the zone contains nothing
  Bounds bounds;
};

/// @return nothing for a shape whose border is unknown or has numbers that are too large or not finite; such
///   a zone is always asked
std::optional<Outline> outlineOf(const detection::Zone& shape);

/// A line or a circle: the sign of q (u^2 + v^2) + a u + b v + c tells the side, with (u, v) the point less
/// (x, y), in floats. It is scaled so that values from -1 to 1 are those whose sign rounding may turn.
struct Curve {
  float q;
  float a;
  float b;
  float c;
  float x;
  float y;

  float operator()(float u, float v) const { return (u * (q * u + a) + v * (q * v + b)) + c; }
};

/// Cells of one column of a patch, from row `first` to row `last`.
struct Span {
  int column;
  int first;
  int last;
};

/// Where the borders of a zone lie on its patch of the lattice, with margins for all rounding.
/// docs/classifier.md explains why the margins are large enough.
class Margins {
 public:
  /// @param zone bounds the border of the zone
  /// @param scale 1, except in the test that shows that the margins are needed
  Margins(const Bounds& zone, const Patch& patch, double scale);

  Curve curveOf(const Border& border) const;

  /// Whether the edge is so close to upright, without being upright, that a point far above or below it may
  /// be taken to lie on it.
  bool isSteep(const Border& border) const;

  /// Appends the cells that hold points too close to the border to be decided without looking at it.
  void cover(const Border& border, std::vector<Span>& spans) const;

 private:
  Curve scaled(double q, double a, double b, double c, double band) const;
  void coverSegment(const Border& segment, std::vector<Span>& spans) const;
  void coverArc(const Border& arc, std::vector<Span>& spans) const;
  void coverArcRows(const Border& arc, int column, double low, double high, std::vector<Span>& spans) const;

  Patch patch_;
  // The columns and rows that borders may mark.
  int firstColumn_;
  int lastColumn_;
  int firstRow_;
  int lastRow_;
  float centreX_;  // of the zone: curves count coordinates from there
  float centreY_;
  double farthestX_;  // how far from the centre a point that a curve decides can be
  double farthestY_;
  double scale_;
  double slack_;        // more than the distance by which a point may lie outside the cell it is put into
  double reach_;        // bounds the coordinate differences between points of the lattice and vertices
  double determinant_;  // a side determinant above this has the right sign
  double tolerance_;    // coordinates as close as this may count as equal
  double steepWidth_;
};

}  // namespace orvantis::filter::classify
