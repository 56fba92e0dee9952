#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <filter/detection/ZoneDetector.h>

#include "monitor/Scenes.h"

namespace orvantis::benchmarks {

/// A way to compute which zones each object of some frames is in.
class ObjectContestant {
 public:
  ObjectContestant() = default;
  ObjectContestant(const ObjectContestant&) = delete;
  ObjectContestant& operator=(const ObjectContestant&) = delete;
  virtual ~ObjectContestant() = default;
  /// One mask for each object of the frame.
  virtual void run(std::size_t frame, std::vector<std::uint32_t>& masks) const = 0;
};

// They keep references to the frames.

/// Asks each zone for each object.
std::unique_ptr<ObjectContestant> zoneByZone(const filter::detection::ZoneDetector& detector,
                                             const std::vector<Objects>& frames);
/// Takes an object to be inside if one of its corners is inside. Fast, but wrong for an object that lies
/// across a zone.
std::unique_ptr<ObjectContestant> cornersOnly(const filter::detection::ZoneDetector& detector,
                                              const std::vector<Objects>& frames);
/// Prepared geometries of GEOS, for zones that are polygons. The objects are made into geometries before the
/// timing, and heights are ignored.
std::unique_ptr<ObjectContestant> preparedGeometries(const filter::detection::ZoneDetector& detector,
                                                     const std::vector<Objects>& frames);

}  // namespace orvantis::benchmarks
