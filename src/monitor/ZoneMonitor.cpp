#include <cmath>
#include <cstring>
#include <stdexcept>
#include <utility>

#include <filter/monitor/ZoneMonitor.h>

#include "monitor/Stamps.h"
#include "monitor/ZoneTable.h"

namespace orvantis::filter::monitor {
namespace {

using detection::ZoneDetector;

using Level = PointFrame::Level;

int checkedField(int field) {
  if (field < 0 || field >= ZoneDetector::NUM_EVAL_FIELDS) {
    throw std::out_of_range("The active field is " + std::to_string(field) + "; it must be 0 to " +
                            std::to_string(ZoneDetector::NUM_EVAL_FIELDS - 1));
  }
  return field;
}

bool reaches(std::uint64_t count, int minPoints) {
  return minPoints <= 0 || count >= static_cast<std::uint64_t>(minPoints);
}

Level opposite(Level level) {
  return level == Level::HIGH ? Level::LOW : Level::HIGH;
}

// Whether the point is finite. Others are no returns, even where a shape holds them: a whole disc holds a
// NaN.
template <typename Real>
bool isReturn(const classify::PointsView<Real>& points, std::size_t point) {
  for (const void* const values : {points.x, points.y, points.z}) {
    Real value;
    std::memcpy(&value, static_cast<const unsigned char*>(values) + point * points.stride, sizeof(Real));
    if (!std::isfinite(value)) {
      return false;
    }
  }
  return true;
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
  return updateWith(stamp, points);
}

PointFrame ZoneMonitor::update(Stamp stamp, const classify::PointsView<double>& points) {
  return updateWith(stamp, points);
}

template <typename Real>
PointFrame ZoneMonitor::updateWith(Stamp stamp, const classify::PointsView<Real>& points) {
  requireLater(stamp, lastStamp_);
  const classify::ZoneCounts counted = classifier_.count(points);

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
  return explainWith(points);
}

std::vector<ZoneExplanation> ZoneMonitor::explain(const classify::PointsView<double>& points) const {
  return explainWith(points);
}

template <typename Real>
std::vector<ZoneExplanation> ZoneMonitor::explainWith(const classify::PointsView<Real>& points) const {
  std::vector<std::uint64_t> masks(points.size);
  classifier_.count(points, masks.data());

  constexpr std::size_t maxExclusionZones = ZoneDetector::MAX_NUM_EXCLUSION_ZONES;
  struct Tally {
    std::uint64_t counted = 0;
    std::uint64_t taken = 0;
    std::array<std::uint64_t, maxExclusionZones> takenBy{};
  };
  std::array<Tally, NUM_ZONE_SLOTS> tallies;
  for (std::size_t i = 0; i < points.size; ++i) {
    if (!isReturn(points, i)) {
      continue;
    }
    const std::uint64_t mask = masks[i];
    const std::uint64_t exclusions = mask >> NUM_ZONE_SLOTS;
    for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
      if ((mask >> slot & 1U) == 0) {
        continue;
      }
      ++(exclusions == 0 ? tallies[slot].counted : tallies[slot].taken);
      for (std::size_t k = 0; k < maxExclusionZones; ++k) {
        tallies[slot].takenBy[k] += exclusions >> k & 1U;
      }
    }
  }

  std::vector<ZoneExplanation> explanations;
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    if (!table_->hasZone(slot)) {
      continue;
    }
    const Tally& tally = tallies[slot];
    const ZoneState& state = states_[slot];
    ZoneExplanation& explanation = explanations.emplace_back();
    explanation.slot = table_->describe(slot);
    explanation.counted = tally.counted;
    explanation.minPoints = minPoints_;
    explanation.taken = tally.taken;
    for (std::size_t k = 0; k < maxExclusionZones; ++k) {
      if (tally.takenBy[k] != 0) {
        explanation.takenBy.push_back({k, table_->exclusionZoneName(k), tally.takenBy[k]});
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
