#include "monitor/ZoneTable.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <typeinfo>
#include <utility>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dTarsel.h>

#include "monitor/Bounds.h"
#include "monitor/PolygonRing.h"
#include "monitor/SectorContact.h"
#include "zones/ShapeCopy.h"

namespace orvantis::filter::monitor {
namespace {

using detection::Polygon;
using detection::Sector;
using detection::ZoneDetector;

// Compares bits, because == would call a NaN different from itself, and -0 equal to 0, which may round
// otherwise.
bool sameBits(double a, double b) {
  std::uint64_t bitsOfA = 0;
  std::uint64_t bitsOfB = 0;
  std::memcpy(&bitsOfA, &a, sizeof(a));
  std::memcpy(&bitsOfB, &b, sizeof(b));
  return bitsOfA == bitsOfB;
}

bool samePoint(const core::PlanarPoint& a, const core::PlanarPoint& b) {
  return sameBits(a.x(), b.x()) && sameBits(a.y(), b.y());
}

bool sameGeometry(const Polygon& a, const Polygon& b) {
  const auto first = ringOf(a);
  const auto second = ringOf(b);
  return std::equal(first.begin(), first.end(), second.begin(), second.end(), samePoint);
}

bool sameGeometry(const Sector& a, const Sector& b) {
  const SectorLimits first = limitsOf(a);
  const SectorLimits second = limitsOf(b);
  return sameBits(first.minAngle, second.minAngle) && sameBits(first.maxAngle, second.maxAngle) &&
         sameBits(first.radius, second.radius) && sameBits(a.getOrigin().x(), b.getOrigin().x()) &&
         sameBits(a.getOrigin().y(), b.getOrigin().y());
}

// The geometry of a host's own shape is not known, so two of them are never the same.
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

std::optional<BoxContact> boxContactOf(const detection::Zone& shape) {
  // A shape that a host derived from a polygon may answer in its own way.
  if (typeid(shape) != typeid(Polygon) && typeid(shape) != typeid(detection::Rectangle)) {
    return std::nullopt;
  }
  return BoxContact::of(ringOf(static_cast<const Polygon&>(shape)));
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
        auto boxContact = boxContactOf(*shape);
        const std::size_t slot = zoneSlotIndex(field, zone);
        bind(*volume, slot);
        bounds_.set(slot, *shape, volume->getZMin(), volume->getZMax());
        entries_[slot] = Entry{volume->getName(), std::move(shape), std::move(boxContact), volume->getZMin(),
                               volume->getZMax()};
      }
    }
  }
  for (const auto& volume : detector.getExclusionZoneVector()) {
    if (volume) {
      bind(*volume, NUM_ZONE_SLOTS + exclusionZoneNames_.size());
    }
    exclusionZoneNames_.push_back(volume ? volume->getName() : std::string());
  }
}

void ZoneTable::bind(const detection::Zone3dBase& volume, std::size_t bit) {
  constexpr std::size_t maskSize = 64;  // PointClassifier refuses a detector with more zones
  const auto* bound = dynamic_cast<const detection::Zone3dTarsel*>(&volume);
  if (bound == nullptr || bit >= maskSize) {
    return;
  }
  std::set<std::string> sensors = bound->getSpecificSensors();
  if (!bound->enabled()) {
    bindings_.push_back({ZoneBits{1} << bit, {}});
  } else if (!sensors.empty()) {
    bindings_.push_back({ZoneBits{1} << bit, std::move(sensors)});
  }
}

ZoneBits ZoneTable::zonesThatCount(const std::string& sensor) const {
  ZoneBits zones = allZones;
  for (const Binding& binding : bindings_) {
    if (!binding.sensors.contains(sensor)) {
      zones &= ~binding.zone;
    }
  }
  return zones;
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

std::uint32_t ZoneTable::zonesOf(const core::State& footprint, double zMin, double zMax) const {
  const std::optional<Box> box = boxOf(footprint);
  std::uint32_t zones = 0;
  // Most objects are far from most zones.
  for (std::uint32_t near = bounds_.near(boundsOf(footprint.polygon().outer()), zMin, zMax); near != 0;
       near &= near - 1) {
    const Entry& entry = *entries_[static_cast<std::size_t>(std::countr_zero(near))];
    const auto sharesAny = box && entry.boxContact ? entry.boxContact->sharesAnyPoint(*box) : std::nullopt;
    if (sharesAny ? *sharesAny : holds(*entry.shape, footprint.polygon())) {
      zones |= near & (~near + 1);
    }
  }
  return zones;
}

}  // namespace orvantis::filter::monitor
