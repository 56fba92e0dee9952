#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <filter/classify/PointClassifier.h>

#include "document/FieldZones.h"
#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// Notes whether there are points between the heights of each zone. If there are none, the points are
/// probably in another frame of reference than the zones, which would look like an empty scene.
class HeightWatch {
 public:
  struct ZoneHeights {
    FieldZone zone;
    bool isSeen = false;  ///< whether any finite point was between its heights
    // How many points inside the outline there are among a few thousand evenly chosen points of each frame.
    std::uint64_t inside = 0;
    std::uint64_t between = 0;                                ///< those of them that are between the heights
    double lowest = std::numeric_limits<double>::infinity();  ///< of those that are not between the heights
    double highest = -std::numeric_limits<double>::infinity();

    /// Whether less than 1 % of the points inside the outline are between the heights.
    bool isNearlyUnseen() const { return isSeen && inside > 100 * between; }
  };

  /// @param zones of one detector
  explicit HeightWatch(const std::vector<FieldZone>& zones);

  /// A frame.
  void add(const Points& points) {
    look(points);
    sample(points);
  }

  // The two parts of it, for whoever has other things to do with each point: all of a frame must be looked
  // at, in whatever pieces, and its sample is taken from the whole.

  void look(const Points& points);
  void sample(const Points& points);

  /// In the order of the zones.
  const std::vector<ZoneHeights>& zones() const { return zones_; }

 private:
  template <typename Real>
  void lookAt(const filter::classify::PointsView<Real>& points);
  template <typename Real>
  void addSample(const filter::classify::PointsView<Real>& points);

  void note(double z);
  std::pair<double, double> heightsOfUnseen() const;

  std::vector<ZoneHeights> zones_;
  std::vector<std::size_t> unseen_;             // those of them whose heights no point was between
  filter::classify::PointClassifier outlines_;  // the zones without their heights
  std::array<std::size_t, 24> byBit_{};         // which of the zones has a bit of its masks
  std::vector<std::uint64_t> masks_;
};

}  // namespace orvantis::toolkit
