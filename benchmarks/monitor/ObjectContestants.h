#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <filter/detection/ZoneDetector.h>

#include "monitor/Scenes.h"

namespace orvantis::benchmarks {

/// A way to tell which zones each object of some frames is in.
class ObjectContestant {
 public:
  ObjectContestant() = default;
  ObjectContestant(const ObjectContestant&) = delete;
  ObjectContestant& operator=(const ObjectContestant&) = delete;
  virtual ~ObjectContestant() = default;
  /// One mask for each object of the frame.
  virtual void run(std::size_t frame, std::vector<std::uint32_t>& masks) const = 0;
};

// They refer to the frames.

/// Asks each zone for each object.
std::unique_ptr<ObjectContestant> zoneByZone(const filter::detection::ZoneDetector& detector,
                                             const std::vector<Objects>& frames);
/// Takes an object for inside when one of its corners is: quick, and wrong for what lies across.
std::unique_ptr<ObjectContestant> cornersOnly(const filter::detection::ZoneDetector& detector,
                                              const std::vector<Objects>& frames);
/// Prepared geometries of GEOS, for zones that are polygons; the objects are made into geometries beforehand,
/// and heights are not looked at.
std::unique_ptr<ObjectContestant> preparedGeometries(const filter::detection::ZoneDetector& detector,
                                                     const std::vector<Objects>& frames);

}  // namespace orvantis::benchmarks
