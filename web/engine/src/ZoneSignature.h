#pragma once

#include <vector>

#include <filter/detection/Zone3dBase.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::engine {

/// Boxes along the axes; an empty one has its least above its greatest.
struct Box {
  double xMin = 0.0;
  double xMax = -1.0;
  double yMin = 0.0;
  double yMax = -1.0;
  double zMin = 0.0;
  double zMax = -1.0;

  bool isEmpty() const { return !(xMin <= xMax && yMin <= yMax && zMin <= zMax); }
  /// Whether they have a point in common; an empty one has none with any.
  bool touches(const Box& other) const {
    return !isEmpty() && !other.isEmpty() && xMin <= other.xMax && other.xMin <= xMax && yMin <= other.yMax &&
           other.yMin <= yMax && zMin <= other.zMax && other.zMin <= zMax;
  }
};

/// All that decides which points a zone holds: its kind of shape, geometry and heights. Names play no part.
struct ZoneSignature {
  std::vector<double> numbers;
  Box box;  ///< holds every point that the zone can hold, and a little more

  /// Bit by bit: -0 may be rounded another way than 0.
  bool isSame(const ZoneSignature& other) const;
};

/// The zones of a detector by what they hold: 24 slots, then its exclusion zones.
class ZoneSignatures {
 public:
  ZoneSignatures() = default;
  explicit ZoneSignatures(const filter::detection::ZoneDetector& detector);

  /// Of a zone by its number.
  const Box& boxOf(std::size_t zone) const { return zones_[zone].box; }
  /// The boxes of all zones that differ, as they were and as they are; empty: the zones are the same.
  std::vector<Box> changesFrom(const ZoneSignatures& before) const;
  bool isSame(const ZoneSignatures& other) const { return changesFrom(other).empty(); }

 private:
  std::vector<ZoneSignature> zones_;
};

}  // namespace orvantis::engine
