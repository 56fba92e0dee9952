#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <filter/detection/ZoneDetector.h>

#include "classify/Clouds.h"

namespace orvantis::benchmarks {

/// A way to compute the masks of the first `size` points of a cloud.
class Contestant {
 public:
  Contestant() = default;
  Contestant(const Contestant&) = delete;
  Contestant& operator=(const Contestant&) = delete;
  virtual ~Contestant() = default;
  virtual void run(const Cloud& cloud, std::size_t size, std::uint64_t* masks) const = 0;
};

/// Calls Zone3dBase::within of each zone for each point.
std::unique_ptr<Contestant> perZoneCalls(const filter::detection::ZoneDetector& detector);
/// The same, but a zone is asked only for points in its bounding box and between its heights.
std::unique_ptr<Contestant> boxedCalls(const filter::detection::ZoneDetector& detector);
/// Prepared geometries of GEOS, for zones that are polygons. The points are made into geometries before the
/// timing, and only the zones at the point's height are asked.
std::unique_ptr<Contestant> preparedGeometries(const filter::detection::ZoneDetector& detector,
                                               const Cloud& cloud);
}  // namespace orvantis::benchmarks
