#include "ZoneSignature.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

#include <filter/detection/Sector.h>

#include "document/Shapes.h"

namespace orvantis::engine {
namespace {

using filter::detection::Point;
using filter::detection::Sector;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

constexpr double endless = std::numeric_limits<double>::infinity();

// The outlines are rounded, and a box that is a little too large costs nothing.
void widen(Box& box) {
  const double most =
      std::max({std::fabs(box.xMin), std::fabs(box.xMax), std::fabs(box.yMin), std::fabs(box.yMax)});
  const double margin = 1e-6 * (1.0 + most);
  box.xMin -= margin;
  box.xMax += margin;
  box.yMin -= margin;
  box.yMax += margin;
}

void add(ZoneSignature& zone, const Point& vertex) {
  zone.numbers.insert(zone.numbers.end(), {vertex.x(), vertex.y()});
  Box& box = zone.box;
  if (std::isnan(vertex.x()) || std::isnan(vertex.y())) {
    box.xMin = box.yMin = -endless;
    box.xMax = box.yMax = endless;
    return;
  }
  box.xMin = std::min(box.xMin, vertex.x());
  box.xMax = std::max(box.xMax, vertex.x());
  box.yMin = std::min(box.yMin, vertex.y());
  box.yMax = std::max(box.yMax, vertex.y());
}

ZoneSignature signatureOf(const Zone3dBase* zone) {
  ZoneSignature result;
  const auto shape = zone == nullptr ? nullptr : zone->getZone2d();
  if (!shape) {
    return result;
  }
  result.box = {endless, -endless, endless, -endless, zone->getZMin(), zone->getZMax()};
  if (const auto* sector = dynamic_cast<const Sector*>(shape.get())) {
    double minAngle = 0.0;
    double maxAngle = 0.0;
    double radius = 0.0;
    sector->getSector(minAngle, maxAngle, radius);
    const Point& origin = sector->getOrigin();
    result.numbers = {1.0,      zone->getZMin(), zone->getZMax(), minAngle,
                      maxAngle, radius,          origin.x(),      origin.y()};
    // The whole disc: where its arc lies costs more to find out than the tiles of the rest.
    ZoneSignature corners;
    corners.box = result.box;
    add(corners, Point(origin.x() - radius, origin.y() - radius));
    add(corners, Point(origin.x() + radius, origin.y() + radius));
    result.box = corners.box;
  } else {
    result.numbers = {0.0, zone->getZMin(), zone->getZMax()};
    for (const Point& vertex : toolkit::vertices(*shape)) {
      add(result, vertex);
    }
  }
  widen(result.box);
  return result;
}

}  // namespace

bool ZoneSignature::isSame(const ZoneSignature& other) const {
  return numbers.size() == other.numbers.size() &&
         (numbers.empty() ||
          std::memcmp(numbers.data(), other.numbers.data(), numbers.size() * sizeof(double)) == 0);
}

ZoneSignatures::ZoneSignatures(const ZoneDetector& detector) {
  for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
    for (int zone = 0; zone < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++zone) {
      zones_.push_back(signatureOf(detector.getZone(field, zone).get()));
    }
  }
  for (const auto& zone : detector.getExclusionZoneVector()) {
    zones_.push_back(signatureOf(zone.get()));
  }
}

std::vector<Box> ZoneSignatures::changesFrom(const ZoneSignatures& before) const {
  static const ZoneSignature none;
  std::vector<Box> boxes;
  for (std::size_t i = 0; i < std::max(zones_.size(), before.zones_.size()); ++i) {
    const ZoneSignature& was = i < before.zones_.size() ? before.zones_[i] : none;
    const ZoneSignature& is = i < zones_.size() ? zones_[i] : none;
    if (!is.isSame(was)) {
      boxes.push_back(was.box);
      boxes.push_back(is.box);
    }
  }
  return boxes;
}

}  // namespace orvantis::engine
