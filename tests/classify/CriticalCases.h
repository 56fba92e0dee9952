#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include <filter/detection/Zone3dBase.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::testing {

struct Point3 {
  double x;
  double y;
  double z;
};

/// Detectors and points made to be hard: shapes that are degenerate, self-crossing, turned by odd angles or
/// needle-thin, and points on their borders and a few rounding steps beside them.
class CriticalCases {
 public:
  explicit CriticalCases(std::uint64_t seed) : random_(seed) {}

  filter::detection::ZoneDetector detector(int numZones);

  /// @param asFloat the coordinates are floats, and so are the steps beside a border
  std::vector<Point3> points(const filter::detection::ZoneDetector& detector, std::size_t size, bool asFloat);

 private:
  using Zone = filter::detection::Zone;
  using Zone3dBase = filter::detection::Zone3dBase;
  using Shape = std::shared_ptr<Zone>;

  double uniform(double low, double high);
  int oneOf(int count);
  template <typename T>
  T oneOf(const std::vector<T>& values);

  Shape shape();
  Shape ring();
  Shape rectangle();
  Shape sector();
  double height();

  Point3 pointFor(const Zone3dBase& zone, bool asFloat);
  Point3 nearRing(const Zone3dBase& zone, bool asFloat);
  Point3 nearSector(const Zone3dBase& zone, bool asFloat);
  double heightFor(const Zone3dBase& zone, bool asFloat);
  double nudged(double value, bool asFloat);
  double special();

  std::mt19937_64 random_;
  double centreX_ = 0.0;
  double centreY_ = 0.0;
  double extent_ = 1.0;
};

}  // namespace orvantis::testing
