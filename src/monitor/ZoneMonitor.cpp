#include <algorithm>
#include <stdexcept>
#include <utility>

#include <filter/monitor/ZoneMonitor.h>

#include "monitor/Stamps.h"
#include "monitor/ZoneTable.h"
#include "monitor/ZoneTally.h"

namespace orvantis::filter::monitor {
namespace {

using detection::ZoneDetector;

using classify::ZoneCounts;
using Level = PointFrame::Level;

int checkedField(int field) {
  if (field < 0 || field >= ZoneDetector::NUM_EVAL_FIELDS) {
    throw std::out_of_range("The active field is " + std::to_string(field) + "; it must be 0 to " +
                            std::to_string(ZoneDetector::NUM_EVAL_FIELDS - 1));
  }
  return field;
}

bool reaches(std::uint64_t count, int minPoints) {
  return count >= static_cast<std::uint64_t>(std::max(minPoints, 0));
}

Level opposite(Level level) {
  return level == Level::HIGH ? Level::LOW : Level::HIGH;
}

ZoneCounts& operator+=(ZoneCounts& sum, const ZoneCounts& counts) {
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    sum.inside[slot] += counts.inside[slot];
  }
  sum.excluded += counts.excluded;
  sum.noReturns += counts.noReturns;
  return sum;
}

}  // namespace

ZoneMonitor::ZoneMonitor(const ZoneDetector& detector)
    : table_(std::make_shared<const ZoneTable>(detector)),
      classifier_(detector),
      minPoints_(detector.getMinPoints()),
      debounceTime_(detector.getDebounceTime()),
      triggerLevel_(detector.getTriggerZone()),
      activeField_(checkedField(detector.getEvaluationFieldIndex())) {}

std::vector<ZoneEvent> ZoneMonitor::reconfigure(const ZoneDetector& detector) {
  ZoneMonitor next(detector);
  next.lastStamp_ = lastStamp_;
  std::vector<ZoneEvent> events;
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    if (table_->hasSameZone(slot, *next.table_)) {
      next.states_[slot] = states_[slot];
    } else if (states_[slot].isOccupied) {
      events.push_back({table_->describe(slot), false, *lastStamp_, *lastStamp_});
    }
  }
  *this = next;
  return events;
}

void ZoneMonitor::setActiveField(int field) {
  activeField_ = checkedField(field);
}

PointFrame ZoneMonitor::update(Stamp stamp, const classify::PointsView<float>& points) {
  requireLater(stamp, lastStamp_);
  return follow(stamp, classifier_.count(points));
}

PointFrame ZoneMonitor::update(Stamp stamp, const classify::PointsView<double>& points) {
  requireLater(stamp, lastStamp_);
  return follow(stamp, classifier_.count(points));
}

PointFrame ZoneMonitor::update(Stamp stamp, const std::vector<SensorPoints>& sensors) {
  requireLater(stamp, lastStamp_);
  ZoneCounts counted;
  for (const auto& [sensor, points] : sensors) {
    counted += count(classifier_, points, table_->zonesThatCount(sensor));
  }
  return follow(stamp, counted);
}

PointFrame ZoneMonitor::update(Stamp stamp, const ZoneCounts& counts) {
  requireLater(stamp, lastStamp_);
  return follow(stamp, counts);
}

// Changes the state only at its end, so that nothing is changed when memory runs out.
PointFrame ZoneMonitor::follow(Stamp stamp, const ZoneCounts& counted) {
  PointFrame frame;
  frame.stamp = stamp;
  frame.counts = counted.inside;
  frame.excluded = counted.excluded;
  frame.noReturns = counted.noReturns;
  ZoneStates states = states_;
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    if (!table_->hasZone(slot)) {
      continue;
    }
    ZoneState& state = states[slot];
    frame.isOccupiedNow[slot] = reaches(frame.counts[slot], minPoints_);
    if (frame.isOccupiedNow[slot] == state.isOccupied) {
      state.differsSince.reset();
    } else {
      const Stamp began = state.differsSince.value_or(stamp);
      state.differsSince = began;
      if (elapsed(began, stamp) >= debounceTime_) {
        state = {!state.isOccupied, std::nullopt};
        frame.events.push_back({table_->describe(slot), state.isOccupied, began, stamp});
      }
    }
    frame.isOccupied[slot] = state.isOccupied;
  }
  frame.activeField = activeField_;
  for (int zone = 0; zone < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++zone) {
    const bool isOccupied = frame.isOccupied[zoneSlotIndex(activeField_, zone)];
    frame.outputs[static_cast<std::size_t>(zone)] = isOccupied ? triggerLevel_ : opposite(triggerLevel_);
  }

  states_ = states;
  lastStamp_ = stamp;
  return frame;
}

std::vector<ZoneExplanation> ZoneMonitor::explain(const classify::PointsView<float>& points) const {
  ZoneTallies tallies;
  tally(classifier_, points, allZones, tallies);
  return explanationsOf(tallies);
}

std::vector<ZoneExplanation> ZoneMonitor::explain(const classify::PointsView<double>& points) const {
  ZoneTallies tallies;
  tally(classifier_, points, allZones, tallies);
  return explanationsOf(tallies);
}

std::vector<ZoneExplanation> ZoneMonitor::explain(const std::vector<SensorPoints>& sensors) const {
  ZoneTallies tallies;
  for (const auto& [sensor, points] : sensors) {
    tally(classifier_, points, table_->zonesThatCount(sensor), tallies);
  }
  return explanationsOf(tallies);
}

std::vector<ZoneExplanation> ZoneMonitor::explanationsOf(
    const std::array<ZoneTally, NUM_ZONE_SLOTS>& tallies) const {
  std::vector<ZoneExplanation> explanations;
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    if (!table_->hasZone(slot)) {
      continue;
    }
    const ZoneTally& zone = tallies[slot];
    const ZoneState& state = states_[slot];
    ZoneExplanation& explanation = explanations.emplace_back();
    explanation.slot = table_->describe(slot);
    explanation.counted = zone.counted;
    explanation.minPoints = minPoints_;
    explanation.taken = zone.taken;
    for (std::size_t k = 0; k < zone.takenBy.size(); ++k) {
      if (zone.takenBy[k] != 0) {
        explanation.takenBy.push_back({k, table_->exclusionZoneName(k), zone.takenBy[k]});
      }
    }
    explanation.isOccupied = state.isOccupied;
    explanation.isOccupiedNow = state.isOccupied != state.differsSince.has_value();
    explanation.differsSince = state.differsSince;
    if (state.differsSince) {
      explanation.missing = debounceTime_ - elapsed(*state.differsSince, *lastStamp_);
    }
  }
  return explanations;
}

}  // namespace orvantis::filter::monitor
