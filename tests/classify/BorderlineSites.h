#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include <filter/detection/Zone3dBase.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::testing {

/// Sites whose points lie on the borders of their zones or a rounding step beside them: on the bearings and
/// the arcs of sectors, on the corners and edges of turned rectangles, on vertices and edges of polygons, at
/// the heights where zones end.
///
/// The same sites and points on every machine: of the standard library only what every one must answer alike
/// is used, sums, products, quotients and square roots.
class BorderlineSites {
 public:
  explicit BorderlineSites(std::uint64_t seed) : random_(seed) {}

  struct Point {
    double x;
    double y;
    double z;
  };

  /// 24 zones and 8 exclusion zones, over and beside each other.
  filter::detection::ZoneDetector site();

  /// Points of the site that was made last; coordinates that floats hold when `asFloat`.
  std::vector<Point> points(std::size_t size, bool asFloat);

 private:
  using Shape = std::shared_ptr<filter::detection::Zone>;

  double fraction();
  double from(double low, double high);
  std::size_t below(std::size_t limit);
  std::shared_ptr<filter::detection::Zone3dBase> zone();
  Shape sector();
  Shape rectangle();
  Shape polygon();
  Point onBorder(const filter::detection::Zone3dBase& zone);
  double nudged(double value, bool asFloat);

  std::mt19937_64 random_;
  double centre_ = 0.0;
  std::vector<std::shared_ptr<filter::detection::Zone3dBase>> zones_;
};

}  // namespace orvantis::testing
