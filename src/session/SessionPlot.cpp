#include "session/SessionPlot.h"

#include "drawing/SitePlan.h"
#include "session/EventText.h"
#include "text/StampText.h"

namespace orvantis::toolkit {

using filter::detection::CounterLineDirectionType;
using filter::monitor::Crossing;
using filter::monitor::Stamp;
using filter::monitor::TrackedObject;
using filter::monitor::zoneSlotIndex;

SessionPlot::SessionPlot(const Configuration& configuration, const SessionInputs& inputs,
                         filter::monitor::Duration forgetAfter)
    : zones_(zonesOf(configuration.detector)), plan_(planOf(configuration)), forgetAfter_(forgetAfter) {
  TimelineContent& timeline = plan_.timeline.emplace();
  timeline.hasPoints = inputs.points;
  timeline.hasObjects = inputs.objects;
  for (const FieldZone& zone : zones_) {
    timeline.zones.push_back({zone.name(), zone.field, {}, {}});
  }
  if (inputs.objects) {
    for (const auto& [name, line] : configuration.lines) {
      lineRows_[name] = timeline.lines.size();
      timeline.lines.push_back({name, {}});
    }
  }
}

void SessionPlot::setInputs(const SessionInputs& inputs) {
  plan_.timeline->hasPoints = inputs.points;
  plan_.timeline->hasObjects = inputs.objects;
  if (!inputs.objects) {
    plan_.timeline->lines.clear();
    lineRows_.clear();
  }
}

void SessionPlot::extend(std::vector<TimelineContent::Interval>& intervals, bool wasOn, bool isOn,
                         double time) {
  if (wasOn) {
    intervals.back().second = time;
  } else if (isOn) {
    intervals.emplace_back(time, time);
  }
}

void SessionPlot::followTracks(Stamp stamp, const std::vector<TrackedObject>& objects) {
  for (const TrackedObject& object : objects) {
    const auto place = filter::monitor::referencePoint(object.footprint);
    if (object.id < 0 || !place) {
      continue;
    }
    const auto found = tracks_.find(object.id);
    // An id that was out of sight so long that it begins anew is drawn as a new track.
    const bool isKnown = found != tracks_.end() && stamp - found->second.lastSeen < forgetAfter_;
    if (!isKnown) {
      tracks_.insert_or_assign(object.id, OpenTrack{plan_.tracks.size(), stamp});
      plan_.tracks.push_back({object.id, {}, object.className});
    }
    OpenTrack& track = tracks_.at(object.id);
    track.lastSeen = stamp;
    plan_.tracks[track.index].path.emplace_back(place->x(), place->y());
  }
}

void SessionPlot::add(const SessionFrame& frame, const std::vector<TrackedObject>* objects) {
  TimelineContent& timeline = *plan_.timeline;
  const double time = toSeconds(frame.stamp);
  if (!isBegun_) {
    timeline.begin = time;
    isBegun_ = true;
  }
  timeline.end = time;
  for (std::size_t i = 0; i < zones_.size(); ++i) {
    const std::size_t slot = zoneSlotIndex(zones_[i].field, zones_[i].zone);
    TimelineContent::ZoneRow& row = timeline.zones[i];
    if (frame.points) {
      extend(row.occupied, wasOccupied_[slot], frame.points->isOccupied[slot], time);
      wasOccupied_[slot] = frame.points->isOccupied[slot];
    }
    if (frame.objects) {
      extend(row.inhabited, wasInhabited_[slot], frame.objects->inside[slot] > 0, time);
      wasInhabited_[slot] = frame.objects->inside[slot] > 0;
    }
  }
  if (objects != nullptr) {
    followTracks(frame.stamp, *objects);
  }
  for (const Event& event : frame.events) {
    if (const auto* crossing = std::get_if<Crossing>(&event)) {
      plan_.crossings.push_back({filter::detection::Point(crossing->where.x(), crossing->where.y()),
                                 toLine(frame.stamp, *crossing)});
      timeline.lines[lineRows_.at(crossing->line)].crossings.push_back(
          {toSeconds(crossing->met), crossing->to == CounterLineDirectionType::LEFT, crossing->id});
    }
  }
}

std::string SessionPlot::draw(const std::string& title, const std::optional<PlanContent::Extent>& extent) {
  plan_.extent = extent;
  plan_.title = title;
  return drawPlan(plan_);
}

}  // namespace orvantis::toolkit
