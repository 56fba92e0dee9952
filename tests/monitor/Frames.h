#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <core/State.h>
#include <filter/classify/PointClassifier.h>
#include <filter/detection/CounterLine.h>
#include <filter/detection/Zone3dBase.h>
#include <filter/detection/ZoneDetector.h>
#include <filter/monitor/Stamp.h>
#include <filter/monitor/TrackedObject.h>

/// Hand-made frames and detectors for the tests of the monitor.
namespace orvantis::filter::monitor::testing {

using core::PlanarPoint;
using core::PlanarPolygon;
using detection::Zone3dBase;
using detection::ZoneDetector;

constexpr Stamp ms(std::int64_t milliseconds) {
  return std::chrono::milliseconds(milliseconds);
}

/// The axis-parallel rectangle of the two corners, between the heights 0 and 2.
std::shared_ptr<Zone3dBase> rectangleZone(const std::string& name, double x1, double y1, double x2,
                                          double y2);

/// A detector with one zone, "Gate" of field "Yard": the square (0, 0) to (10, 10), in slot (0, 0).
ZoneDetector detectorWithGate();

/// Points as a host holds them: x, y, z in one block.
class Points {
 public:
  Points() = default;
  Points(std::initializer_list<std::array<float, 3>> points) : points_(points) {}
  /// `count` points at one place.
  Points(std::size_t count, std::array<float, 3> point) : points_(count, point) {}

  operator classify::PointsView<float>() const {
    return classify::PointsView<float>::interleaved(points_.data(), sizeof(points_[0]), points_.size());
  }

 private:
  std::vector<std::array<float, 3>> points_;
};

/// `count` points inside the zone "Gate".
Points inGate(std::size_t count);

PlanarPolygon ring(const std::vector<PlanarPoint>& vertices);

/// An axis-parallel box of 2 by 1 about the centre, between the heights 0 and 1.
TrackedObject box(std::int32_t id, double x, double y, const std::string& className = "");

/// The line named "L" from the first to the second point.
std::map<std::string, detection::CounterLine> oneLine(const PlanarPoint& first, const PlanarPoint& second);

}  // namespace orvantis::filter::monitor::testing
