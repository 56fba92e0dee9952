#include "monitor/ZoneTable.h"

#include <algorithm>
#include <cstring>
#include <typeinfo>
#include <utility>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>

#include "monitor/SectorContact.h"
#include "zones/ShapeCopy.h"

namespace orvantis::filter::monitor {
namespace {

using detection::Point;
using detection::Polygon;
using detection::Sector;
using detection::ZoneDetector;

// Not by comparison of values: a NaN is the same as itself, and -0 may be rounded another way than 0.
bool sameBits(double a, double b) {
  return std::memcmp(&a, &b, sizeof(double)) == 0;
}

bool samePoint(const Point& a, const Point& b) {
  return sameBits(a.x(), b.x()) && sameBits(a.y(), b.y());
}

bool sameGeometry(const Polygon& a, const Polygon& b) {
  std::vector<Point> first;
  std::vector<Point> second;
  a.getPolygon(first);
  b.getPolygon(second);
  return std::equal(first.begin(), first.end(), second.begin(), second.end(), samePoint);
}

bool sameGeometry(const Sector& a, const Sector& b) {
  const SectorLimits first = limitsOf(a);
  const SectorLimits second = limitsOf(b);
  return sameBits(first.minAngle, second.minAngle) && sameBits(first.maxAngle, second.maxAngle) &&
         sameBits(first.radius, second.radius) && samePoint(a.getOrigin(), b.getOrigin());
}

// Shapes of another kind than the library's cannot be looked into, so they are never the same.
bool sameShape(const detection::Zone& a, const detection::Zone& b) {
  if (typeid(a) != typeid(b)) {
    return false;
  }
  if (const auto* polygon = dynamic_cast<const Polygon*>(&a)) {
    return sameGeometry(*polygon, static_cast<const Polygon&>(b));
  }
  if (const auto* sector = dynamic_cast<const Sector*>(&a)) {
    return sameGeometry(*sector, static_cast<const Sector&>(b));
  }
  return false;
}

// A polygon with a coordinate that is not finite meets nothing, so any bounds will do for it.
std::optional<Bounds> boundsOfShape(const detection::Zone& shape) {
  // A shape that a host derived from a polygon may reach beyond its vertices.
  if (typeid(shape) != typeid(Polygon) && typeid(shape) != typeid(detection::Rectangle)) {
    return std::nullopt;
  }
  std::vector<Point> vertices;
  static_cast<const Polygon&>(shape).getPolygon(vertices);
  core::PlanarPolygon::ring_type ring;
  for (const Point& vertex : vertices) {
    ring.emplace_back(vertex.x(), vertex.y());
  }
  return ring.empty() ? std::nullopt : std::optional(boundsOf(ring));
}

// A range whose lower end is above its upper one, or not a number, holds no height and touches nothing.
bool heightsTouch(double zMin, double zMax, double otherMin, double otherMax) {
  return zMin <= zMax && otherMin <= otherMax && zMax >= otherMin && otherMax >= zMin;
}

bool holds(const detection::Zone& shape, const core::PlanarPolygon& footprint) {
  if (const auto* sector = dynamic_cast<const Sector*>(&shape)) {
    return shareAnyPoint(*sector, footprint);
  }
  return shape.within(footprint) || shape.intersects(footprint);
}

}  // namespace

ZoneTable::ZoneTable(const ZoneDetector& detector) {
  for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
    const auto evaluationField = detector.getEvaluationField(field);
    if (!evaluationField) {
      continue;
    }
    fieldNames_[static_cast<std::size_t>(field)] = evaluationField->name;
    for (int zone = 0; zone < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++zone) {
      const auto volume = detector.getZone(field, zone);
      if (volume && volume->getZone2d()) {
        auto shape = detection::exactCopy(*volume->getZone2d());
        const auto bounds = boundsOfShape(*shape);
        entries_[zoneSlotIndex(field, zone)] =
            Entry{volume->getName(), std::move(shape), bounds, volume->getZMin(), volume->getZMax()};
      }
    }
  }
  for (const auto& volume : detector.getExclusionZoneVector()) {
    exclusionZoneNames_.push_back(volume ? volume->getName() : std::string());
  }
}

ZoneSlot ZoneTable::describe(std::size_t slot) const {
  const auto zonesPerField = static_cast<std::size_t>(ZoneDetector::NUM_ZONES_PER_EVAL_FIELD);
  const std::size_t field = slot / zonesPerField;
  return {static_cast<int>(field), static_cast<int>(slot % zonesPerField), fieldNames_[field],
          entries_[slot]->name};
}

bool ZoneTable::hasSameZone(std::size_t slot, const ZoneTable& other) const {
  const auto& a = entries_[slot];
  const auto& b = other.entries_[slot];
  if (!a || !b) {
    return !a && !b;
  }
  return sameBits(a->zMin, b->zMin) && sameBits(a->zMax, b->zMax) && sameShape(*a->shape, *b->shape);
}

std::uint32_t ZoneTable::zonesOf(const core::PlanarPolygon& footprint, double zMin, double zMax) const {
  const Bounds bounds = boundsOf(footprint.outer());
  std::uint32_t zones = 0;
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    const auto& entry = entries_[slot];
    // Most objects are far from most zones; that is told without the polygons' relations.
    if (entry && heightsTouch(entry->zMin, entry->zMax, zMin, zMax) &&
        !(entry->bounds && areApart(*entry->bounds, bounds)) && holds(*entry->shape, footprint)) {
      zones |= std::uint32_t{1} << slot;
    }
  }
  return zones;
}

}  // namespace orvantis::filter::monitor
