#include <stdexcept>
#include <utility>

#include <filter/monitor/ObjectMonitor.h>

#include "monitor/ObjectIds.h"
#include "monitor/Stamps.h"
#include "monitor/Tracks.h"
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
             ? std::optional(table.zonesOf(object.footprint, object.zMin, object.zMax))
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

}  // namespace

class __attribute__((visibility("hidden"))) ObjectMonitor::Impl {
 public:
  Impl(const ZoneDetector& detector, Duration forgetAfter)
      : table_(std::make_shared<const ZoneTable>(detector)), forgetAfter_(forgetAfter) {
    requireForgetAfter(forgetAfter);
  }

  std::vector<ObjectEvent> reconfigure(const ZoneDetector& detector);
  ObjectFrame update(Stamp stamp, const std::vector<TrackedObject>& objects);
  std::vector<ObjectEvent> advance(Stamp stamp);
  std::vector<Occupant> occupants(std::size_t slot) const;
  std::size_t numTracks() const { return tracks_.size(); }

 private:
  struct Track {
    std::string className;
    std::uint32_t zones = 0;                      // a bit for each zone it is in
    std::array<Stamp, NUM_ZONE_SLOTS> entered{};  // by slot, for the zones it is in
  };

  void forgetTracks(Stamp stamp, std::vector<ObjectEvent>& events);
  void follow(const TrackedObject& object, std::uint32_t zones, Stamp stamp,
              std::vector<ObjectEvent>& events);
  void report(ObjectEvent::Kind kind, std::uint32_t zones, std::int32_t id, const Track& track, Stamp stamp,
              std::vector<ObjectEvent>& events) const;

  std::shared_ptr<const ZoneTable> table_;
  Duration forgetAfter_;
  Tracks<Track> tracks_;
  std::array<std::size_t, NUM_ZONE_SLOTS> inside_{};  // tracks in each zone
  Clock clock_;
};

std::vector<ObjectEvent> ObjectMonitor::Impl::reconfigure(const ZoneDetector& detector) {
  auto table = std::make_shared<const ZoneTable>(detector);
  std::uint32_t changed = 0;
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    if (!table_->hasSameZone(slot, *table)) {
      changed |= bit(slot);
    }
  }
  std::vector<ObjectEvent> events;
  tracks_.forEach([&](std::int32_t id, const Track& track, Stamp) {
    report(Kind::Lost, track.zones & changed, id, track, *clock_.lastFrame(), events);
  });
  tracks_.forEach([&](std::int32_t, Track& track, Stamp) { track.zones &= ~changed; });
  forEachSlot(changed, [&](std::size_t slot) { inside_[slot] = 0; });
  table_ = std::move(table);
  return events;
}

ObjectFrame ObjectMonitor::Impl::update(Stamp stamp, const std::vector<TrackedObject>& objects) {
  clock_.requireFrame(stamp);
  requireUniqueIds(objects);
  clock_.takeFrame(stamp);

  ObjectFrame frame;
  frame.stamp = stamp;
  forgetTracks(stamp, frame.events);
  frame.zones.reserve(objects.size());
  for (const TrackedObject& object : objects) {
    const auto zones = zonesOf(*table_, object);
    frame.zones.push_back(zones.value_or(0));
    if (!zones) {
      continue;
    }
    if (object.id < 0) {
      forEachSlot(*zones, [&](std::size_t slot) { ++frame.inside[slot]; });
    } else {
      follow(object, *zones, stamp, frame.events);
    }
  }
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    frame.inside[slot] += inside_[slot];
  }
  return frame;
}

std::vector<ObjectEvent> ObjectMonitor::Impl::advance(Stamp stamp) {
  clock_.requirePassing(stamp);
  clock_.pass(stamp);
  std::vector<ObjectEvent> events;
  forgetTracks(stamp, events);
  return events;
}

void ObjectMonitor::Impl::forgetTracks(Stamp stamp, std::vector<ObjectEvent>& events) {
  tracks_.forget(stamp, forgetAfter_, [&](std::int32_t id, const Track& track, Stamp lastSeen) {
    report(Kind::Lost, track.zones, id, track, lastSeen, events);
    forEachSlot(track.zones, [&](std::size_t slot) { --inside_[slot]; });
  });
}

void ObjectMonitor::Impl::follow(const TrackedObject& object, std::uint32_t zones, Stamp stamp,
                                 std::vector<ObjectEvent>& events) {
  Track& track = tracks_.see(object.id, stamp, [] { return Track(); }).track;
  track.className = object.className;
  const std::uint32_t left = track.zones & ~zones;
  const std::uint32_t entered = zones & ~track.zones;
  forEachSlot(entered, [&](std::size_t slot) { track.entered[slot] = stamp; });
  report(Kind::Left, left, object.id, track, stamp, events);
  report(Kind::Entered, entered, object.id, track, stamp, events);
  // What cannot fail comes last: so the numbers agree with the tracks also when memory runs out above.
  track.zones = zones;
  forEachSlot(left, [&](std::size_t slot) { --inside_[slot]; });
  forEachSlot(entered, [&](std::size_t slot) { ++inside_[slot]; });
}

// One event for each of the zones, in the order of the slots.
void ObjectMonitor::Impl::report(ObjectEvent::Kind kind, std::uint32_t zones, std::int32_t id,
                                 const Track& track, Stamp stamp, std::vector<ObjectEvent>& events) const {
  forEachSlot(zones, [&](std::size_t slot) {
    events.push_back(
        {kind, table_->describe(slot), id, track.className, stamp, elapsed(track.entered[slot], stamp)});
  });
}

std::vector<Occupant> ObjectMonitor::Impl::occupants(std::size_t slot) const {
  std::vector<Occupant> occupants;
  tracks_.forEach([&](std::int32_t id, const Track& track, Stamp lastSeen) {
    if ((track.zones & bit(slot)) != 0) {
      occupants.push_back({id, track.className, track.entered[slot], lastSeen});
    }
  });
  return occupants;
}

ObjectMonitor::ObjectMonitor(const ZoneDetector& detector, Duration forgetAfter)
    : impl_(std::make_unique<Impl>(detector, forgetAfter)) {}

ObjectMonitor::ObjectMonitor(const ObjectMonitor& other) : impl_(std::make_unique<Impl>(other.impl())) {}

ObjectMonitor::ObjectMonitor(ObjectMonitor&& other) noexcept = default;

ObjectMonitor& ObjectMonitor::operator=(const ObjectMonitor& other) {
  return *this = ObjectMonitor(other);
}

ObjectMonitor& ObjectMonitor::operator=(ObjectMonitor&& other) noexcept = default;

ObjectMonitor::~ObjectMonitor() = default;

// A monitor that was moved from goes on as one without zones.
const ObjectMonitor::Impl& ObjectMonitor::impl() const {
  static const Impl withoutZones(ZoneDetector(), DEFAULT_FORGET_AFTER);
  return impl_ ? *impl_ : withoutZones;
}

ObjectMonitor::Impl& ObjectMonitor::impl() {
  if (!impl_) {
    impl_ = std::make_unique<Impl>(ZoneDetector(), DEFAULT_FORGET_AFTER);
  }
  return *impl_;
}

std::vector<ObjectEvent> ObjectMonitor::reconfigure(const ZoneDetector& detector) {
  return impl().reconfigure(detector);
}

ObjectFrame ObjectMonitor::update(Stamp stamp, const std::vector<TrackedObject>& objects) {
  return impl().update(stamp, objects);
}

std::vector<ObjectEvent> ObjectMonitor::advance(Stamp stamp) {
  return impl().advance(stamp);
}

std::vector<Occupant> ObjectMonitor::occupants(int field, int zone) const {
  if (field < 0 || field >= ZoneDetector::NUM_EVAL_FIELDS || zone < 0 ||
      zone >= ZoneDetector::NUM_ZONES_PER_EVAL_FIELD) {
    throw std::out_of_range("There is no zone " + std::to_string(zone) + " of field " +
                            std::to_string(field));
  }
  return impl().occupants(zoneSlotIndex(field, zone));
}

std::size_t ObjectMonitor::numTracks() const {
  return impl().numTracks();
}

}  // namespace orvantis::filter::monitor
