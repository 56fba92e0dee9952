#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <filter/classify/PointClassifier.h>

#include "classify/Block.h"
#include "classify/FrozenZones.h"
#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Lookup.h"
#include "classify/Undecided.h"

namespace orvantis::filter::classify {

/// The zones of a detector, prepared for look-up. Immutable.
class ZoneIndex {
 public:
  /// @param safety 1, except in tests that show that the safety margins are needed
  explicit ZoneIndex(const detection::ZoneDetector& detector, double safety = 1.0);

  template <typename Real>
  void classify(const PointsView<Real>& points, std::uint64_t* masks) const;
  template <typename Real>
  ZoneCounts count(const PointsView<Real>& points, std::uint64_t* masks) const;

  const Grid& grid() const { return grid_; }
  /// The memory of the tables, without the copies of the shapes.
  std::size_t bytes() const { return grid_.bytes() + heights_.bytes(); }

 private:
  template <typename Real>
  NoReturns classifyBlock(const Block<Real>& block, Purpose purpose) const;
  template <typename Real>
  void askAlways(const Block<Real>& block) const;

  std::vector<FrozenZone> zones_;
  Grid grid_;
  Heights heights_;
  ShapesByBit shapes_{};
};

}  // namespace orvantis::filter::classify
