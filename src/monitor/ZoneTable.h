#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <core/State.h>
#include <filter/detection/Zone.h>
#include <filter/detection/ZoneDetector.h>
#include <filter/monitor/ZoneSlot.h>

#include "monitor/BoxContact.h"
#include "monitor/ZoneBounds.h"
#include "monitor/ZoneTally.h"

namespace orvantis::filter::monitor {

/// The zones of a detector at one moment, by slot index: deep copies that no later change reaches. Immutable.
class ZoneTable {
 public:
  /// @throws std::invalid_argument for a shape that gives no copy of itself
  explicit ZoneTable(const detection::ZoneDetector& detector);

  /// Whether the slot has a zone with a shape.
  bool hasZone(std::size_t slot) const { return entries_[slot].has_value(); }
  /// @param slot one that has a zone
  ZoneSlot describe(std::size_t slot) const;
  /// @param k below the number of the detector's exclusion zones
  const std::string& exclusionZoneName(std::size_t k) const { return exclusionZoneNames_[k]; }
  /// The field zones and exclusion zones that the points of a sensor count for: all but those that are bound
  /// only to other sensors, and those that are bound and not enabled. Each zone has the bit that it has in
  /// the masks of the classifier; the bits of zones that do not exist are set.
  ZoneBits zonesThatCount(const std::string& sensor) const;
  /// Whether both tables have the same zone in the slot: the type of shape, the geometry and the heights are
  /// equal bit by bit. Names do not matter. Two slots without a zone are the same.
  bool hasSameZone(std::size_t slot, const ZoneTable& other) const;

  /// A bit for each zone whose heights touch the given ones and whose shape shares a point with the
  /// footprint.
  /// @param footprint of finite coordinates, with at least one vertex
  std::uint32_t zonesOf(const core::State& footprint, double zMin, double zMax) const;

 private:
  struct Entry {
    std::string name;
    std::shared_ptr<const detection::Zone> shape;
    std::optional<BoxContact> boxContact;  // for a polygon, if it can answer
    double zMin;
    double zMax;
  };

  // A zone that does not count the points of every sensor.
  struct Binding {
    ZoneBits zone;
    std::set<std::string> sensors;  // empty: the zone counts no points
  };

  void bind(const detection::Zone3dBase& volume, std::size_t bit);

  std::array<std::string, detection::ZoneDetector::NUM_EVAL_FIELDS> fieldNames_;
  std::array<std::optional<Entry>, NUM_ZONE_SLOTS> entries_;
  ZoneBounds bounds_;
  std::vector<std::string> exclusionZoneNames_;
  std::vector<Binding> bindings_;
};

}  // namespace orvantis::filter::monitor
