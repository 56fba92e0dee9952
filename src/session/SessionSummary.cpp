#include "session/SessionSummary.h"

#include <algorithm>

namespace orvantis::toolkit {

using filter::monitor::NUM_ZONE_SLOTS;
using filter::monitor::ObjectEvent;
using filter::monitor::ObjectFrame;
using filter::monitor::Occupant;
using filter::monitor::PointFrame;
using filter::monitor::zoneSlotIndex;

std::int64_t netToLeft(const filter::monitor::CrossingCounts& counts) {
  return static_cast<std::int64_t>(counts.toLeft) - static_cast<std::int64_t>(counts.toRight);
}

void SessionSummary::add(const SessionFrame& frame) {
  begin_ = begin_.value_or(frame.stamp);
  end_ = frame.stamp;
  taken_.add(frame.taken);
  if (frame.points) {
    ++pointFrames_;
    zones_.add(*frame.points);
  }
  if (frame.sensorZones) {
    sensorZones_.add(*frame.sensorZones);
  }
  if (frame.objects) {
    addObjects(*frame.objects);
  }
  addVisits(frame.lost);
}

void SessionSummary::ZoneHistory::add(const PointFrame& frame) {
  for (std::size_t i = 0; i < NUM_ZONE_SLOTS; ++i) {
    ZoneSummary& summary = zones[i];
    summary.peakPoints = std::max(summary.peakPoints, frame.counts[i]);
    if (wasOccupied[i]) {
      summary.occupied += frame.stamp - *last;
    } else if (frame.isOccupied[i]) {
      ++summary.activations;
    }
  }
  wasOccupied = frame.isOccupied;
  last = frame.stamp;
}

void SessionSummary::addObjects(const ObjectFrame& frame) {
  ++objectFrames_;
  for (std::size_t i = 0; i < NUM_ZONE_SLOTS; ++i) {
    ZoneSummary& summary = zones_.zones[i];
    summary.peakObjects = std::max<std::uint64_t>(summary.peakObjects, frame.inside[i]);
  }
  addVisits(frame.events);
}

void SessionSummary::addVisits(const std::vector<ObjectEvent>& events) {
  for (const ObjectEvent& event : events) {
    const std::size_t slot = zoneSlotIndex(event.slot.field, event.slot.zone);
    if (event.kind == ObjectEvent::Kind::Entered) {
      ++zones_.zones[slot].visits;
    } else {
      dwells_[slot].add(event.dwell);
    }
  }
}

ZoneSummary SessionSummary::of(const FieldZone& zone, const filter::monitor::ObjectMonitor& objects) const {
  const std::size_t slot = zoneSlotIndex(zone.field, zone.zone);
  Durations dwells = dwells_[slot];
  for (const Occupant& occupant : objects.occupants(zone.field, zone.zone)) {
    dwells.add(occupant.lastSeen - occupant.entered);
  }
  ZoneSummary summary = zones_.zones[slot];
  summary.medianDwell = dwells.median();
  summary.longestDwell = dwells.longest();
  return summary;
}

}  // namespace orvantis::toolkit
