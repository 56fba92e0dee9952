#pragma once

#include <optional>
#include <vector>

#include <core/Planar.h>

#include "monitor/Box.h"

namespace orvantis::filter::monitor {

/// Whether boxes share a point with a polygon, computed from separating axes in rounded numbers.
///
/// It answers only when both are apart, or one is inside the other, by a margin far above all rounding. Then
/// the answer is the exact one.
class BoxContact {
 public:
  /// @param ring in either winding, the first vertex repeated at the end or not
  /// @return nothing for a ring that it cannot answer for: one of more than 64 vertices, with a vertex that
  ///   is not finite, with very short edges, or that touches or crosses itself
  static std::optional<BoxContact> of(std::vector<core::PlanarPoint> ring);

  /// @return nothing when the borders are too close to each other to be sure, and for a very thin box
  std::optional<bool> sharesAnyPoint(const Box& box) const;

 private:
  explicit BoxContact(std::vector<core::PlanarPoint> ring);

  std::vector<core::PlanarPoint> ring_;  // the first vertex is repeated at the end
  double largest_ = 0.0;                 // the largest coordinate, without sign
};

}  // namespace orvantis::filter::monitor
