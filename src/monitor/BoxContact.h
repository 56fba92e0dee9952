#pragma once

#include <optional>
#include <vector>

#include <core/Planar.h>

#include "monitor/Box.h"

namespace orvantis::filter::monitor {

/// Whether boxes share a point with a polygon, told from separating axes in rounded numbers.
///
/// It answers only where both are apart, or one inside the other, by a margin far above all rounding; there
/// the exact answer and that of every sound algorithm are the same. Allocates nothing.
class BoxContact {
 public:
  /// Nothing for a ring that it cannot answer for: of more than 64 vertices, with a vertex that is not
  /// finite, with very short edges, or one that touches or crosses itself.
  /// @param ring in either winding, the first vertex repeated at the end or not
  static std::optional<BoxContact> of(std::vector<core::PlanarPoint> ring);

  /// Nothing where they are too close to each other's border to tell, and for a box that is very thin.
  std::optional<bool> sharesAnyPoint(const Box& box) const;

 private:
  explicit BoxContact(std::vector<core::PlanarPoint> ring);

  std::vector<core::PlanarPoint> ring_;  // the first vertex is repeated at the end
  double largest_ = 0.0;                 // coordinate, without sign
};

}  // namespace orvantis::filter::monitor
