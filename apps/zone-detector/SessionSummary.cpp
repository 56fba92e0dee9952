#include "SessionSummary.h"

#include <algorithm>

namespace orvantis::app {

using filter::monitor::Duration;
using filter::monitor::NUM_ZONE_SLOTS;
using filter::monitor::ObjectEvent;
using filter::monitor::ObjectFrame;
using filter::monitor::Occupant;
using filter::monitor::PointFrame;
using filter::monitor::zoneSlotIndex;

std::optional<Duration> median(std::vector<Duration> values) {
  if (values.empty()) {
    return std::nullopt;
  }
  std::ranges::sort(values);
  const Duration upper = values[values.size() / 2];
  const Duration lower = values[(values.size() - 1) / 2];
  return lower + (upper - lower) / 2;
}

void SessionSummary::add(const SessionFrame& frame) {
  begin_ = begin_.value_or(frame.stamp);
  end_ = frame.stamp;
  taken_.push_back(frame.taken);
  if (frame.points) {
    addPoints(*frame.points);
  }
  if (frame.objects) {
    addObjects(*frame.objects);
  }
}

void SessionSummary::addPoints(const PointFrame& frame) {
  ++pointFrames_;
  for (std::size_t i = 0; i < NUM_ZONE_SLOTS; ++i) {
    ZoneSummary& summary = zones_[i].summary;
    summary.peakPoints = std::max(summary.peakPoints, frame.counts[i]);
    if (wasOccupied_[i]) {
      summary.occupied += frame.stamp - *lastPoints_;
    } else if (frame.isOccupied[i]) {
      ++summary.activations;
    }
  }
  wasOccupied_ = frame.isOccupied;
  lastPoints_ = frame.stamp;
}

void SessionSummary::addObjects(const ObjectFrame& frame) {
  ++objectFrames_;
  for (std::size_t i = 0; i < NUM_ZONE_SLOTS; ++i) {
    ZoneSummary& summary = zones_[i].summary;
    summary.peakObjects = std::max<std::uint64_t>(summary.peakObjects, frame.inside[i]);
  }
  for (const ObjectEvent& event : frame.events) {
    ZoneRecord& record = zones_[zoneSlotIndex(event.slot.field, event.slot.zone)];
    if (event.kind == ObjectEvent::Kind::Entered) {
      ++record.summary.visits;
    } else {
      record.dwells.push_back(event.dwell);
    }
  }
}

ZoneSummary SessionSummary::of(const FieldZone& zone, const filter::monitor::ObjectMonitor& objects) const {
  const ZoneRecord& record = zones_[zoneSlotIndex(zone.field, zone.zone)];
  std::vector<Duration> dwells = record.dwells;
  for (const Occupant& occupant : objects.occupants(zone.field, zone.zone)) {
    dwells.push_back(occupant.lastSeen - occupant.entered);
  }
  ZoneSummary summary = record.summary;
  if (!dwells.empty()) {
    summary.longestDwell = *std::ranges::max_element(dwells);
    summary.medianDwell = median(std::move(dwells));
  }
  return summary;
}

}  // namespace orvantis::app
