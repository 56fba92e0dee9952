#include <stdexcept>
#include <utility>

#include <filter/monitor/ObjectMonitor.h>

#include "monitor/ObjectIds.h"
#include "monitor/Stamps.h"
#include "monitor/ZoneTable.h"

namespace orvantis::filter::monitor {
namespace {

using Kind = ObjectEvent::Kind;
using detection::ZoneDetector;

constexpr std::uint32_t bit(std::size_t slot) {
  return std::uint32_t{1} << slot;
}

// The zones that an object is in; nothing for one that cannot be placed.
std::optional<std::uint32_t> zonesOf(const ZoneTable& table, const TrackedObject& object) {
  return referencePoint(object.footprint)
             ? std::optional(table.zonesOf(object.footprint.polygon(), object.zMin, object.zMax))
             : std::nullopt;
}

// Visits the slots of the zones, in ascending order.
template <typename Visit>
void forEachSlot(std::uint32_t zones, const Visit& visit) {
  for (std::size_t slot = 0; zones >> slot != 0; ++slot) {
    if ((zones >> slot & 1U) != 0) {
      visit(slot);
    }
  }
}

void addTo(std::array<std::size_t, NUM_ZONE_SLOTS>& inside, std::uint32_t zones) {
  forEachSlot(zones, [&](std::size_t slot) { ++inside[slot]; });
}

}  // namespace

ObjectMonitor::ObjectMonitor(const ZoneDetector& detector, Duration forgetAfter)
    : table_(std::make_shared<const ZoneTable>(detector)), forgetAfter_(forgetAfter) {
  if (forgetAfter <= Duration::zero()) {
    throw std::invalid_argument("The time after which tracks are forgotten must be above zero");
  }
}

std::vector<ObjectEvent> ObjectMonitor::reconfigure(const ZoneDetector& detector) {
  auto table = std::make_shared<const ZoneTable>(detector);
  std::uint32_t changed = 0;
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    if (!table_->hasSameZone(slot, *table)) {
      changed |= bit(slot);
    }
  }
  std::vector<ObjectEvent> events;
  for (const auto& [id, track] : tracks_) {
    report(Kind::Lost, track.zones & changed, id, track, *lastStamp_, events);
  }
  for (auto& [id, track] : tracks_) {
    track.zones &= ~changed;
  }
  table_ = std::move(table);
  return events;
}

ObjectFrame ObjectMonitor::update(Stamp stamp, const std::vector<TrackedObject>& objects) {
  requireLater(stamp, lastStamp_);
  requireUniqueIds(objects);
  lastStamp_ = stamp;

  ObjectFrame frame;
  frame.stamp = stamp;
  forgetTracks(stamp, frame.events);
  for (const TrackedObject& object : objects) {
    const auto zones = zonesOf(*table_, object);
    frame.zones.push_back(zones.value_or(0));
    if (!zones) {
      continue;
    }
    if (object.id < 0) {
      addTo(frame.inside, *zones);
    } else {
      follow(object, *zones, stamp, frame.events);
    }
  }
  for (const auto& [id, track] : tracks_) {
    addTo(frame.inside, track.zones);
  }
  return frame;
}

void ObjectMonitor::forgetTracks(Stamp stamp, std::vector<ObjectEvent>& events) {
  std::erase_if(tracks_, [&](const auto& entry) {
    const auto& [id, track] = entry;
    if (elapsed(track.lastSeen, stamp) < forgetAfter_) {
      return false;
    }
    report(Kind::Lost, track.zones, id, track, track.lastSeen, events);
    return true;
  });
}

void ObjectMonitor::follow(const TrackedObject& object, std::uint32_t zones, Stamp stamp,
                           std::vector<ObjectEvent>& events) {
  Track& track = tracks_[object.id];
  track.className = object.className;
  track.lastSeen = stamp;
  const std::uint32_t left = track.zones & ~zones;
  const std::uint32_t entered = zones & ~track.zones;
  forEachSlot(entered, [&](std::size_t slot) { track.entered[slot] = stamp; });
  report(Kind::Left, left, object.id, track, stamp, events);
  report(Kind::Entered, entered, object.id, track, stamp, events);
  track.zones = zones;
}

// One event for each of the zones, in the order of the slots.
void ObjectMonitor::report(ObjectEvent::Kind kind, std::uint32_t zones, std::int32_t id, const Track& track,
                           Stamp stamp, std::vector<ObjectEvent>& events) const {
  forEachSlot(zones, [&](std::size_t slot) {
    events.push_back(
        {kind, table_->describe(slot), id, track.className, stamp, elapsed(track.entered[slot], stamp)});
  });
}

std::vector<Occupant> ObjectMonitor::occupants(int field, int zone) const {
  if (field < 0 || field >= ZoneDetector::NUM_EVAL_FIELDS || zone < 0 ||
      zone >= ZoneDetector::NUM_ZONES_PER_EVAL_FIELD) {
    throw std::out_of_range("There is no zone " + std::to_string(zone) + " of field " +
                            std::to_string(field));
  }
  const std::size_t slot = zoneSlotIndex(field, zone);
  std::vector<Occupant> occupants;
  for (const auto& [id, track] : tracks_) {
    if ((track.zones & bit(slot)) != 0) {
      occupants.push_back({id, track.className, track.entered[slot], track.lastSeen});
    }
  }
  return occupants;
}

}  // namespace orvantis::filter::monitor
